#include "vorn/rewrite/bv_polynomial.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <span>
#include <unordered_map>

#include "vorn/rewrite/bounded_walk.h"
#include "vorn/terms/bv_number.h"

namespace vorn::rewrite {
namespace {

using T = SymbolTag;

// Bounds, so that a comparison costs no more than some thousands of steps. The laws that people
// write have some ten operations; a product of two sums of eight terms is within them. Where
// products are kept, it is to see what cancels at the top.
constexpr std::size_t kMostSummands = 64;
constexpr std::size_t kMostFactors = 12;
constexpr std::size_t kMostOperations = 32;
constexpr std::size_t kMostAtTheTop = 8;

/// Whether `t` is the low bits of an operation: they are the operation on the low bits.
bool is_low_part(const TermManager& mgr, const Term* t) {
  return is_low_extract(t) && is_bv_arithmetic(mgr, t->get_arg(0));
}

/// The operands of an operation that is taken apart; none for a factor or a number.
std::span<const Term* const> get_operands(const TermManager& mgr, const Term* t,
                                          Products products) {
  if (products == Products::multiply_out && is_low_part(mgr, t)) return t->get_args();
  if (!is_bv_arithmetic(mgr, t)) return {};
  return t->get_tag() == T::bv_shl ? t->get_args().first(1) : t->get_args();
}

/// Walks down from one term, with its own stack.
class Expansion {
 public:
  Expansion(TermManager& manager, Products kind, const BvCase* one)
      : mgr(manager), products(kind), in_case(one) {}

  const BvPolynomial& expand(const Term* term) {
    return complete(
        resolve(term), &known,
        [this](const Term* t, std::vector<const Term*>* stack) { return push_operands(t, stack); },
        [this](const Term* t) { return combine(t); });
  }

 private:
  const Term* resolve(const Term* t) const { return in_case == nullptr ? t : in_case->resolve(t); }

  /// False where there are none to be done first, or no more operations are taken apart.
  bool push_operands(const Term* t, std::vector<const Term*>* stack) {
    const std::size_t depth = stack->size();
    if (!entered.contains(t->get_id()) && entered.size() < limit) {
      for (const Term* operand : get_operands(mgr, t, products)) {
        const Term* arg = resolve(operand);
        if (!known.contains(arg->get_id())) stack->push_back(arg);
      }
      if (stack->size() > depth) entered.insert(t->get_id());
    }
    return stack->size() > depth;
  }

  BvPolynomial combine(const Term* t) const {
    const std::size_t width = width_of(t);
    BvPolynomial result(width);
    if (QNumber value; mgr.is_number(t, &value)) {
      result.add({}, value);
      return result;
    }
    if (apply(t, &result) && result.get_summands().size() <= kMostSummands) return result;
    BvPolynomial factor(width);
    factor.add({t}, QNumber(1));
    return factor;
  }

  /// The operation on polynomials; false where it is none, or is not to be taken apart.
  bool apply(const Term* t, BvPolynomial* result) const {
    std::vector<const BvPolynomial*> args;
    for (const Term* operand : get_operands(mgr, t, products)) {
      const auto found = known.find(resolve(operand)->get_id());
      if (found == known.end()) return false;
      args.push_back(&found->second);
    }
    if (args.empty()) return false;
    const std::size_t width = width_of(t);
    switch (t->get_tag()) {
      case T::bv_add:
        result->add(*args[0], QNumber(1));
        result->add(*args[1], QNumber(1));
        return true;
      case T::bv_sub:
        result->add(*args[0], QNumber(1));
        result->add(*args[1], minus_one(width));
        return true;
      case T::bv_not:
        result->add({}, minus_one(width));
        result->add(*args[0], minus_one(width));
        return true;
      case T::bv_neg:
        result->add(*args[0], minus_one(width));
        return true;
      case T::bv_shl:
        result->add(*args[0], BVNumber::bv_shl(QNumber(1), get_distance(t), width));
        return true;
      case T::bv_extract:
        add_low_part(*args[0], result);
        return true;
      default:
        return multiply(*args[0], *args[1], result);
    }
  }

  void add_low_part(const BvPolynomial& whole, BvPolynomial* result) const {
    const std::size_t width = result->get_width();
    for (const auto& [product, coefficient] : whole.get_summands()) {
      BvPolynomial::Product low;
      for (const Term* factor : product)
        low.push_back(mgr.make_bv_extract(width - 1, 0, factor));
      std::ranges::sort(low, {}, &Term::get_id);
      result->add(low, BVNumber::modulo(coefficient, width));
    }
  }

  QNumber get_distance(const Term* shift) const {
    return *mgr.get_number(shift->get_arg(1)->get_symbol());
  }

  bool multiply(const BvPolynomial& a, const BvPolynomial& b, BvPolynomial* result) const {
    if (products == Products::keep && !a.is_constant() && !b.is_constant()) return false;
    if (a.get_summands().size() * b.get_summands().size() > kMostSummands) return false;
    if (a.count_factors() + b.count_factors() > kMostFactors) return false;
    result->add_product(a, b);
    return true;
  }

  TermManager& mgr;
  const Products products;
  const std::size_t limit = products == Products::keep ? kMostAtTheTop : kMostOperations;
  const BvCase* in_case;
  std::unordered_map<std::size_t, BvPolynomial> known;  // by identifier
  std::set<std::size_t> entered;
};

}  // namespace

std::size_t width_of(const Term* t) {
  return t->get_type()->get_width();
}

bool is_low_extract(const Term* t) {
  return t->get_tag() == T::bv_extract && t->get_symbol()->get_indices()[1] == 0;
}

QNumber minus_one(std::size_t width) {
  return BVNumber::all_ones(width);
}

bool is_bv_arithmetic(const TermManager& mgr, const Term* t) {
  switch (t->get_tag()) {
    case T::bv_add:
    case T::bv_sub:
    case T::bv_mul:
    case T::bv_neg:
    case T::bv_not:
      return true;
    case T::bv_shl:
      return mgr.is_number(t->get_arg(1), nullptr);
    default:
      return false;
  }
}

bool is_expanded(const TermManager& mgr, const Term* t, Products products) {
  return !get_operands(mgr, t, products).empty();
}

bool BvPolynomial::ProductOrder::operator()(const Product& a, const Product& b) const {
  return std::ranges::lexicographical_compare(a, b, {}, &Term::get_id, &Term::get_id);
}

void BvPolynomial::add(const Product& product, const QNumber& coefficient) {
  if (coefficient.sign() == 0) return;
  const auto [place, is_new] = summands.try_emplace(product, coefficient);
  if (is_new) return;
  place->second = BVNumber::bv_add(place->second, coefficient, width);
  if (place->second.sign() == 0) summands.erase(place);
}

void BvPolynomial::add(const BvPolynomial& other, const QNumber& coefficient) {
  for (const auto& [product, factor] : other.summands)
    add(product, BVNumber::bv_mul(factor, coefficient, width));
}

void BvPolynomial::add_product(const BvPolynomial& a, const BvPolynomial& b) {
  for (const auto& [x, m] : a.summands) {
    for (const auto& [y, n] : b.summands) {
      Product product;
      std::ranges::merge(x, y, std::back_inserter(product), {}, &Term::get_id, &Term::get_id);
      add(product, BVNumber::bv_mul(m, n, width));
    }
  }
}

bool BvPolynomial::is_constant() const {
  return summands.empty() || (summands.size() == 1 && summands.begin()->first.empty());
}

std::size_t BvPolynomial::count_factors() const {
  std::size_t most = 0;
  for (const auto& [product, coefficient] : summands)
    most = std::max(most, product.size());
  return most;
}

bool BvPolynomial::is_never_zero() const {
  const auto constant = summands.find({});
  if (constant == summands.end()) return false;
  std::size_t lowest = 0;  // bit that is set in the constant
  while (!constant->second.test_bit(lowest))
    ++lowest;
  for (const auto& [product, coefficient] : summands) {
    if (product.empty()) continue;
    for (std::size_t i = 0; i <= lowest; ++i)
      if (coefficient.test_bit(i)) return false;
  }
  return true;
}

BvPolynomial expand(TermManager& mgr, const Term* t, Products products, const BvCase* in_case) {
  return Expansion(mgr, products, in_case).expand(t);
}

}  // namespace vorn::rewrite
