#include "vorn/rewrite/bv_fingerprint.h"

#include <bit>
#include <unordered_map>
#include <vector>

#include "vorn/rewrite/bounded_walk.h"
#include "vorn/rewrite/bv_polynomial.h"

namespace vorn::rewrite {
namespace {

using T = SymbolTag;

/// The finaliser of SplitMix64 (Steele, Lea and Flood, "Fast splittable pseudorandom number
/// generators", 2014).
std::uint64_t mix(std::uint64_t x) {
  x += 0x9e3779b97f4a7c15U;
  x = (x ^ (x >> 30U)) * 0xbf58476d1ce4e5b9U;
  x = (x ^ (x >> 27U)) * 0x94d049bb133111ebU;
  return x ^ (x >> 31U);
}

std::uint64_t low_word(const QNumber& value) {
  if (std::int64_t small = 0; value.get_int64(&small)) return static_cast<std::uint64_t>(small);
  std::uint64_t word = 0;
  for (unsigned i = 0; i < 64; ++i)
    word |= std::uint64_t{value.test_bit(i)} << i;
  return word;
}

/// What has the same low bits as `t`, so that a term and a part of it get values that agree.
const Term* find_low_part(const Term* t) {
  for (;;) {
    if (is_low_extract(t) || t->get_tag() == T::bv_zero_extend ||
        t->get_tag() == T::bv_sign_extend) {
      t = t->get_arg(0);
    } else if (t->get_tag() == T::bv_concat) {
      t = t->get_arg(1);
    } else {
      return t;
    }
  }
}

class Evaluation {
 public:
  explicit Evaluation(const TermManager& manager) : mgr(manager) {}

  BvFingerprint evaluate(const Term* term) {
    return complete(
        find_low_part(term), &values,
        [this](const Term* t, std::vector<const Term*>* stack) { return push_operands(t, stack); },
        [this](const Term* t) { return combine(t); });
  }

 private:
  bool push_operands(const Term* t, std::vector<const Term*>* stack) {
    const std::size_t depth = stack->size();
    if (!is_bv_arithmetic(mgr, t) || values.size() + depth > kMostOperations) return false;
    for (const Term* operand : t->get_args()) {
      const Term* arg = find_low_part(operand);
      if (!values.contains(arg->get_id())) stack->push_back(arg);
    }
    return stack->size() > depth;
  }

  BvFingerprint combine(const Term* t) const {
    BvFingerprint result{};
    const QNumber* number = mgr.get_number(t->get_symbol());
    const BvFingerprint* a = is_bv_arithmetic(mgr, t) ? find(t, 0) : nullptr;
    const BvFingerprint* b = a == nullptr ? nullptr : find(t, t->get_arity() - 1);
    for (std::size_t i = 0; i < result.size(); ++i) {
      if (number != nullptr) {
        result[i] = low_word(*number);
      } else if (b == nullptr) {
        result[i] = mix(result.size() * t->get_id() + i);
      } else {
        result[i] = apply(t->get_tag(), (*a)[i], (*b)[i]);
      }
    }
    return result;
  }

  const BvFingerprint* find(const Term* t, std::size_t i) const {
    const auto found = values.find(find_low_part(t->get_arg(i))->get_id());
    return found == values.end() ? nullptr : &found->second;
  }

  static std::uint64_t apply(SymbolTag::tag tag, std::uint64_t a, std::uint64_t b) {
    switch (tag) {
      case T::bv_add:
        return a + b;
      case T::bv_sub:
        return a - b;
      case T::bv_neg:
        return 0 - a;
      case T::bv_not:
        return ~a;
      case T::bv_shl:
        return b < 64 ? a << b : 0;
      default:
        return a * b;
    }
  }

  static constexpr std::size_t kMostOperations = 64;

  const TermManager& mgr;
  std::unordered_map<std::size_t, BvFingerprint> values;  // by identifier
};

}  // namespace

BvFingerprint make_fingerprint(const TermManager& mgr, const Term* t) {
  return Evaluation(mgr).evaluate(t);
}

bool may_be_decided(const BvFingerprint& a, const BvFingerprint& b, std::size_t width) {
  const std::uint64_t mask = width < 64 ? (std::uint64_t{1} << width) - 1 : ~std::uint64_t{0};
  const int zeros = std::countr_zero((a[0] - b[0]) & mask);
  for (std::size_t i = 1; i < a.size(); ++i)
    if (std::countr_zero((a[i] - b[i]) & mask) != zeros) return false;
  return true;
}

}  // namespace vorn::rewrite
