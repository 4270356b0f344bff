// Rules for literals, special operands and operands that occur twice.
//
// The reasons lean on three facts of IEEE 754-2019: a result is the exact result rounded once
// (clause 4.3), the sign of a product or quotient is the exclusive or of the operands' signs, and
// an exact sum of zero is +0, or -0 toward negative, unless both addends are zeros of one sign
// (clause 6.3).
#include <utility>

#include "vorn/rewrite/fp_patterns.h"
#include "vorn/rewrite/fp_rules.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/ieee_arithmetic.h"

namespace vorn::rewrite {
namespace {

using T = SymbolTag;

/// Above this exponent width exact numbers are too long to be computed on the way.
constexpr std::size_t kMaxFoldedExponent = 16;

bool can_fold(const TermManager& mgr, const Term* t) {
  if (mode_literal(mgr, t)) return true;
  if (t->get_symbol()->get_literal() == nullptr) return false;
  return !is_float(t) || t->get_type()->get_e() <= kMaxFoldedExponent;
}

/// An operation on literals is its value, unless the theory leaves that open.
const Term* fold(TermManager& mgr, const Term* t) {
  for (const Term* arg : t->get_args()) {
    if (!can_fold(mgr, arg)) return nullptr;
  }
  bool is_open = false;
  semantics::Evaluator evaluator(
      mgr, [](const Term*) { return QNumber(); },
      [&is_open](const Term*, std::span<const QNumber>) {
        is_open = true;
        return QNumber();
      });
  const QNumber value = evaluator.evaluate(t);
  return is_open ? nullptr : semantics::make_literal(mgr, t->get_type(), value);
}

// Special operands ------------------------------------------------------------------------------

/// x if `unit` is 1, -x if it is -1, which change neither zeros nor infinities; null otherwise.
const Term* times_unit(TermManager& mgr, const Term* x, const Term* unit) {
  const auto value = float_literal(unit);
  if (!value) return nullptr;
  if (is_one(*value)) return x;
  return is_one(ieee_neg(*value)) ? mgr.make_fp_neg(x) : nullptr;
}

/// x * 1 = x, x * -1 = -x: nothing is rounded.
const Term* mul_by_one(TermManager& mgr, const Term* t) {
  if (const Term* product = times_unit(mgr, t->get_arg(1), t->get_arg(2))) return product;
  return times_unit(mgr, t->get_arg(2), t->get_arg(1));
}

const Term* div_by_one(TermManager& mgr, const Term* t) {
  return times_unit(mgr, t->get_arg(1), t->get_arg(2));
}

/// 1 / c, if that is a value other than an infinity: c is a power of two then.
OptionalFloat exact_reciprocal(const Term* t) {
  const auto c = float_literal(t);
  if (!c || c->is_nan() || c->is_inf() || c->is_zero()) return {};
  const IEEEFloat one = make_one(c->get_format());
  const IEEEFloat below = ieee_div(Mode::minus_inf, one, *c);
  const IEEEFloat above = ieee_div(Mode::plus_inf, one, *c);
  return below.get_bits() == above.get_bits() ? OptionalFloat(below) : OptionalFloat();
}

/// x * 2 = x / (1/2) = x + x: all are the exact double rounded, and of zeros and infinities all are
/// x. Where both addends are one, most of an adder goes away.
const Term* double_is_sum(TermManager& mgr, const Term* t) {
  const IEEEFloat one = make_one(format_of(t));
  const IEEEFloat two = ieee_add(Mode::nearest_even, one, one);
  const Term* x = t->get_arg(1);
  auto factor = float_literal(t->get_arg(2));
  if (has_tag(t, T::fp_div)) {
    factor = exact_reciprocal(t->get_arg(2));
  } else if (!factor) {
    factor = float_literal(x);
    x = t->get_arg(2);
  }
  if (!factor || factor->get_bits() != two.get_bits()) return nullptr;
  return mgr.make_fp_add(t->get_arg(0), x, x);
}

/// x * c = x / (1 / c) where 1 / c is a value: the same number is rounded. Of the two circuits the
/// divider has less to normalise.
const Term* mul_by_power(TermManager& mgr, const Term* t) {
  for (const auto& [x, c] :
       {std::pair(t->get_arg(1), t->get_arg(2)), std::pair(t->get_arg(2), t->get_arg(1))}) {
    const auto reciprocal = exact_reciprocal(c);
    if (reciprocal) return mgr.make_fp_div(t->get_arg(0), x, mgr.make_fp_number(*reciprocal));
  }
  return nullptr;
}

/// x / x is 1, or NaN for NaN, infinities and zeros.
const Term* div_by_itself(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(1);
  if (x != t->get_arg(2)) return nullptr;
  const Term* invalid =
      mgr.make_or(mgr.make_or(mgr.make_fp_isnan(x), mgr.make_fp_isinf(x)), mgr.make_fp_iszero(x));
  const Format f = format_of(t);
  return mgr.make_term_ite(invalid, mgr.make_fp_nan(f.e, f.m), mgr.make_fp_number(make_one(f)));
}

/// x - x is an exact zero, whose sign the mode decides, or NaN for NaN and infinities.
const Term* sub_itself(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(1);
  if (x != t->get_arg(2)) return nullptr;
  const Format f = format_of(t);
  const Term* zero =
      mgr.make_term_ite(mgr.make_equal(t->get_arg(0), mgr.make_fprounding_minus_inf()),
                        mgr.make_fp_number(IEEEFloat::make_zero(f, true)),
                        mgr.make_fp_number(IEEEFloat::make_zero(f, false)));
  return mgr.make_term_ite(mgr.make_or(mgr.make_fp_isnan(x), mgr.make_fp_isinf(x)),
                           mgr.make_fp_nan(f.e, f.m), zero);
}

/// The sign of the zero that is neutral for sums in the mode: a zero of the other sign stays, too.
bool neutral_is_negative(Mode mode) {
  return mode != Mode::minus_inf;
}

/// x + 0 = x for the neutral zero. For the other one x is changed only where it is the neutral one.
/// 0 - x is the same with -x.
const Term* add_zero(TermManager& mgr, const Term* t) {
  const auto mode = mode_literal(mgr, t->get_arg(0));
  if (!mode) return nullptr;
  for (std::size_t i = 1; i < 3; ++i) {
    const auto value = float_literal(t->get_arg(i));
    if (!value || !value->is_zero()) continue;
    const Term* x = t->get_arg(3 - i);
    if (has_tag(t, T::fp_sub)) {
      if (i == 2) return nullptr;
      x = mgr.make_fp_neg(x);
    }
    if (value->is_sign_set() == neutral_is_negative(*mode)) return x;
    return mgr.make_term_ite(mgr.make_fp_iszero(x), t->get_arg(i), x);
  }
  return nullptr;
}

/// x * 1 + z = x + z, x * -1 + z = -x + z: the product is exact.
const Term* fma_by_one(TermManager& mgr, const Term* t) {
  const Term* x = times_unit(mgr, t->get_arg(1), t->get_arg(2));
  if (x == nullptr) x = times_unit(mgr, t->get_arg(2), t->get_arg(1));
  return x == nullptr ? nullptr : mgr.make_fp_add(t->get_arg(0), x, t->get_arg(3));
}

/// x * y + 0 = x * y for the zero that is neutral in the mode: the exact product is rounded once,
/// and a product of zero keeps its sign.
const Term* fma_with_zero(TermManager& mgr, const Term* t) {
  const auto mode = mode_literal(mgr, t->get_arg(0));
  const auto z = float_literal(t->get_arg(3));
  if (!mode || !z || !z->is_zero() || z->is_sign_set() != neutral_is_negative(*mode)) {
    return nullptr;
  }
  return mgr.make_fp_mul(t->get_arg(0), t->get_arg(1), t->get_arg(2));
}

/// min(x, x) = max(x, x) = x: which zero is chosen is open for different zeros only.
const Term* select_of_same(TermManager&, const Term* t) {
  return t->get_arg(0) == t->get_arg(1) ? t->get_arg(0) : nullptr;
}

/// min(x, NaN) = max(x, NaN) = x.
const Term* select_of_nan(TermManager&, const Term* t) {
  for (std::size_t i = 0; i < 2; ++i) {
    const auto value = float_literal(t->get_arg(i));
    if (value && value->is_nan()) return t->get_arg(1 - i);
  }
  return nullptr;
}

/// What is an integer, an infinity or NaN stays so. Integers that a conversion rounds are integers
/// still where the format has them all.
const Term* integral_of_integral(TermManager&, const Term* t) {
  const Term* x = t->get_arg(1);
  const bool is_integral =
      has_tag(x, T::fp_round_to_integral) || (converted_integer(x) && has_integers(format_of(x)));
  return is_integral ? x : nullptr;
}

constexpr FpRule kRules[] = {
    {"fold", {}, fold},
    {"sub-itself", {T::fp_sub}, sub_itself},
    {"add-zero", {T::fp_add, T::fp_sub}, add_zero},
    {"mul-by-one", {T::fp_mul}, mul_by_one},
    {"div-by-one", {T::fp_div}, div_by_one},
    {"double-is-sum", {T::fp_mul, T::fp_div}, double_is_sum},
    {"mul-by-power", {T::fp_mul}, mul_by_power},
    {"div-by-itself", {T::fp_div}, div_by_itself},
    {"fma-by-one", {T::fp_fma}, fma_by_one},
    {"fma-with-zero", {T::fp_fma}, fma_with_zero},
    {"select-of-same", {T::fp_min, T::fp_max}, select_of_same},
    {"select-of-nan", {T::fp_min, T::fp_max}, select_of_nan},
    {"integral-of-integral", {T::fp_round_to_integral}, integral_of_integral},
};

}  // namespace

std::span<const FpRule> get_arithmetic_rules() {
  return kRules;
}

}  // namespace vorn::rewrite
