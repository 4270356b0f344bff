// Facts about results: which classes operands lead to (IEEE 754-2019, clauses 6.1 to 6.3 and 7.2),
// and where one or zero as an operand puts the result. Rounding is monotone and leaves values of
// the format alone, so that a factor of at most one does not make a number larger.
#include <cstdint>

#include "vorn/solver/result_lemmas.h"

namespace vorn::solver {
namespace {

using T = SymbolTag;
using Mode = IEEEFloat::rounding_mode;

/// Collects facts about the result `t`.
class Facts {
 public:
  Facts(TermManager& manager, const Term* result) : mgr(manager), t(result) {}

  void state_product(const Term* x, const Term* y);
  void state_quotient(const Term* x, const Term* y);
  void state_root(const Term* x);
  void state_fused(const Term* x, const Term* y, const Term* z);
  void state_remainder(const Term* x, const Term* y);
  void state_bits_product(const Term* x, const Term* y);
  void state_bits_quotient(const Term* x, const Term* y);
  void state_bits_remainder(const Term* x, const Term* y);

  std::vector<const Term*> take() { return std::move(facts); }

 private:
  const Term* nan(const Term* a) { return mgr.make_fp_isnan(a); }
  const Term* inf(const Term* a) { return mgr.make_fp_isinf(a); }
  const Term* zero(const Term* a) { return mgr.make_fp_iszero(a); }
  const Term* negative(const Term* a) { return mgr.make_fp_isnegative(a); }
  const Term* both(const Term* a, const Term* b) { return mgr.make_and(a, b); }
  const Term* either(const Term* a, const Term* b) { return mgr.make_or(a, b); }
  const Term* not_(const Term* a) { return mgr.make_not(a); }
  const Term* le(const Term* a, const Term* b) { return mgr.make_fp_le(a, b); }
  const Term* size(const Term* a) { return mgr.make_fp_abs(a); }
  const Term* one();
  const Term* bits(std::int64_t value) {
    return mgr.make_bv_number(QNumber(value), t->get_type()->get_width());
  }
  const Term* ule(const Term* a, const Term* b) { return mgr.make_bv_ule(a, b); }
  const Term* equal(const Term* a, const Term* b) { return mgr.make_equal(a, b); }
  void state(const Term* fact) {
    if (fact != mgr.make_true()) facts.push_back(fact);
  }
  void state_if(const Term* condition, const Term* fact) {
    state(mgr.make_implies(condition, fact));
  }
  void state_sign(const Term* x, const Term* y);
  void state_low_zeros(const Term* x);

  TermManager& mgr;
  const Term* t;
  std::vector<const Term*> facts;
};

const Term* Facts::one() {
  IEEEFloat value(t->get_type()->get_format(), Mode::nearest_even);
  value.self_round(QNumber(1));
  return mgr.make_fp_number(value);
}

/// A product or quotient has the exclusive or of the operands' signs.
void Facts::state_sign(const Term* x, const Term* y) {
  const Term* differ = mgr.make_xor(negative(x), negative(y));
  state_if(not_(nan(t)), mgr.make_iff(negative(t), differ));
}

void Facts::state_product(const Term* x, const Term* y) {
  const Term* invalid = either(both(inf(x), zero(y)), both(zero(x), inf(y)));
  state(mgr.make_iff(nan(t), either(either(nan(x), nan(y)), invalid)));
  state_sign(x, y);
  for (const auto& [a, b] : {std::pair(x, y), std::pair(y, x)}) {
    state_if(both(inf(a), not_(nan(t))), inf(t));
    state_if(both(zero(a), not_(nan(t))), zero(t));
    state_if(both(le(size(a), one()), not_(nan(t))), le(size(t), size(b)));
    state_if(both(le(one(), size(a)), not_(nan(t))), le(size(b), size(t)));
  }
}

void Facts::state_quotient(const Term* x, const Term* y) {
  const Term* invalid = either(both(zero(x), zero(y)), both(inf(x), inf(y)));
  state(mgr.make_iff(nan(t), either(either(nan(x), nan(y)), invalid)));
  state_sign(x, y);
  state_if(both(either(inf(x), zero(y)), not_(nan(t))), inf(t));
  state_if(both(either(zero(x), inf(y)), not_(nan(t))), zero(t));
  state_if(both(le(size(y), one()), not_(nan(t))), le(size(x), size(t)));
  state_if(both(le(one(), size(y)), not_(nan(t))), le(size(t), size(x)));
  const Term* smaller = le(size(x), size(y));
  state_if(both(smaller, not_(nan(t))), le(size(t), one()));
  state_if(both(le(size(y), size(x)), not_(nan(t))), le(one(), size(t)));
}

void Facts::state_root(const Term* x) {
  state(mgr.make_iff(nan(t), either(nan(x), both(negative(x), not_(zero(x))))));
  state(mgr.make_iff(zero(t), zero(x)));
  state_if(zero(x), equal(t, x));
  state_if(not_(nan(t)), mgr.make_iff(inf(t), inf(x)));
  state_if(not_(either(nan(t), zero(t))), not_(negative(t)));
  state_if(le(one(), x), both(le(one(), t), le(t, x)));
  state_if(both(le(x, one()), not_(nan(t))), both(le(x, t), le(t, one())));
}

void Facts::state_fused(const Term* x, const Term* y, const Term* z) {
  state_if(either(either(nan(x), nan(y)), nan(z)), nan(t));
  state_if(either(both(inf(x), zero(y)), both(zero(x), inf(y))), nan(t));
  const Term* numbers = not_(either(either(nan(x), nan(y)), nan(z)));
  const Term* finite = not_(either(either(inf(x), inf(y)), inf(z)));
  state_if(both(numbers, finite), not_(nan(t)));
  const Term* product_sign = mgr.make_xor(negative(x), negative(y));
  const Term* same = mgr.make_iff(product_sign, negative(z));
  state_if(both(same, not_(nan(t))), mgr.make_iff(negative(t), negative(z)));
  state_if(both(same, not_(nan(t))), le(size(z), size(t)));
  state_if(both(either(inf(x), either(inf(y), inf(z))), not_(nan(t))), inf(t));
}

void Facts::state_remainder(const Term* x, const Term* y) {
  const Term* invalid = either(inf(x), zero(y));
  state(mgr.make_iff(nan(t), either(either(nan(x), nan(y)), invalid)));
  state(not_(inf(t)));
  state_if(both(inf(y), not_(nan(t))), equal(t, x));
  state_if(not_(nan(t)), both(le(size(t), size(x)), le(size(t), size(y))));
  state_if(zero(t), mgr.make_iff(negative(t), negative(x)));
}

/// A product of numbers, one of which has n lowest zeros, has these too: its bits are among those
/// of x and -x together, which are all bits from the lowest one on.
void Facts::state_low_zeros(const Term* x) {
  const Term* above = mgr.make_bv_or(x, mgr.make_bv_neg(x));
  state(equal(mgr.make_bv_and(t, above), t));
}

void Facts::state_bits_product(const Term* x, const Term* y) {
  state_low_zeros(x);
  state_low_zeros(y);
  const auto lowest = [this](const Term* a) { return mgr.make_bv_extract(0, 0, a); };
  state(equal(lowest(t), mgr.make_bv_and(lowest(x), lowest(y))));
  for (const auto& [a, b] : {std::pair(x, y), std::pair(y, x)}) {
    state_if(equal(a, bits(1)), equal(t, b));
    state_if(equal(a, bits(2)), equal(t, mgr.make_bv_add(b, b)));
    state_if(equal(a, mgr.make_bv_not(bits(0))), equal(t, mgr.make_bv_neg(b)));
  }
}

void Facts::state_bits_quotient(const Term* x, const Term* y) {
  const Term* divides = not_(equal(y, bits(0)));
  state_if(not_(divides), equal(t, mgr.make_bv_not(bits(0))));
  state_if(equal(y, bits(1)), equal(t, x));
  state_if(divides, ule(t, x));
  state_if(divides, mgr.make_iff(equal(t, bits(0)), mgr.make_bv_ult(x, y)));
  state_if(both(divides, equal(x, y)), equal(t, bits(1)));
  state_if(ule(bits(2), y), ule(t, mgr.make_bv_lshr(x, bits(1))));
}

void Facts::state_bits_remainder(const Term* x, const Term* y) {
  const Term* divides = not_(equal(y, bits(0)));
  state_if(either(not_(divides), mgr.make_bv_ult(x, y)), equal(t, x));
  state_if(divides, mgr.make_bv_ult(t, y));
  state(ule(t, x));
  state_if(equal(x, y), equal(t, bits(0)));
}

}  // namespace

std::vector<const Term*> state_result_facts(TermManager& manager, const Term* t) {
  Facts facts(manager, t);
  const auto arg = [t](std::size_t i) { return t->get_arg(i); };
  switch (t->get_tag()) {
    case T::fp_mul:
      facts.state_product(arg(1), arg(2));
      break;
    case T::fp_div:
      facts.state_quotient(arg(1), arg(2));
      break;
    case T::fp_sqrt:
      facts.state_root(arg(1));
      break;
    case T::fp_fma:
      facts.state_fused(arg(1), arg(2), arg(3));
      break;
    case T::fp_rem:
      facts.state_remainder(arg(0), arg(1));
      break;
    case T::bv_mul:
      facts.state_bits_product(arg(0), arg(1));
      break;
    case T::bv_udiv:
      facts.state_bits_quotient(arg(0), arg(1));
      break;
    case T::bv_urem:
      facts.state_bits_remainder(arg(0), arg(1));
      break;
    default:
      break;
  }
  return facts.take();
}

}  // namespace vorn::solver
