// Rules for the tests of classes: what is asked of a result is asked of the operands.
#include "vorn/rewrite/fp_patterns.h"
#include "vorn/rewrite/fp_rules.h"

namespace vorn::rewrite {
namespace {

using T = SymbolTag;

const Term* test(TermManager& mgr, const Term* like, const Term* x) {
  switch (like->get_tag()) {
    case T::fp_isnan:
      return mgr.make_fp_isnan(x);
    case T::fp_isinf:
      return mgr.make_fp_isinf(x);
    case T::fp_iszero:
      return mgr.make_fp_iszero(x);
    case T::fp_isnormal:
      return mgr.make_fp_isnormal(x);
    case T::fp_issubnormal:
      return mgr.make_fp_issubnormal(x);
    case T::fp_isnegative:
      return mgr.make_fp_isnegative(x);
    default:
      return mgr.make_fp_ispositive(x);
  }
}

bool is_sign_test(const Term* t) {
  return has_tag(t, T::fp_isnegative) || has_tag(t, T::fp_ispositive);
}

/// Signs do not change classes. A negation exchanges negative and positive; an absolute value is
/// positive unless it is NaN, which is neither.
const Term* class_of_sign(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(0);
  const bool is_neg = has_tag(x, T::fp_neg);
  if (!is_neg && !has_tag(x, T::fp_abs)) return nullptr;
  x = x->get_arg(0);
  if (!is_sign_test(t)) return test(mgr, t, x);
  const bool negative = has_tag(t, T::fp_isnegative);
  if (is_neg) return negative ? mgr.make_fp_ispositive(x) : mgr.make_fp_isnegative(x);
  return negative ? mgr.make_false() : mgr.make_not(mgr.make_fp_isnan(x));
}

/// Rounding keeps NaN and the sign, also where it gives zero.
const Term* class_of_rounded(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(0);
  if (!has_tag(x, T::fp_cast) && !has_tag(x, T::fp_round_to_integral)) return nullptr;
  return test(mgr, t, x->get_arg(1));
}

/// A widening keeps infinities and zeros. Subnormal numbers stay so in the same range of exponents
/// and are normal where the range has their leading bit.
const Term* class_of_widening(TermManager& mgr, const Term* t) {
  const Term* cast = t->get_arg(0);
  if (!is_widening(cast)) return nullptr;
  const Term* x = cast->get_arg(1);
  const Format wide = format_of(cast);
  const Format narrow = format_of(x);
  const bool is_normal = has_tag(t, T::fp_isnormal);
  if ((!is_normal && !has_tag(t, T::fp_issubnormal)) || wide.e == narrow.e) return test(mgr, t, x);
  if (bias_of(wide) < bias_of(narrow) + narrow.m) return nullptr;
  if (!is_normal) return mgr.make_false();
  return mgr.make_or(mgr.make_fp_isnormal(x), mgr.make_fp_issubnormal(x));
}

/// Integers are numbers.
const Term* never_nan(TermManager& mgr, const Term* t) {
  return is_never_nan(t->get_arg(0)) ? mgr.make_false() : nullptr;
}

/// A converted integer is zero if it was, never subnormal, and has its sign; it is finite where the
/// format reaches as far.
const Term* class_of_integer(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(0);
  const auto integer = converted_integer(x);
  if (!integer) return nullptr;
  const std::size_t w = integer->width();
  const Term* zero = mgr.make_equal(integer->bits, mgr.make_bv_number(0, w));
  const Term* negative = mgr.make_false();
  if (integer->is_signed) {
    negative =
        mgr.make_equal(mgr.make_bv_extract(w - 1, w - 1, integer->bits), mgr.make_bv_number(1, 1));
  }
  const bool is_finite = w <= bias_of(format_of(x));
  switch (t->get_tag()) {
    case T::fp_iszero:
      return zero;
    case T::fp_issubnormal:
      return mgr.make_false();
    case T::fp_isnegative:
      return negative;
    case T::fp_ispositive:
      return mgr.make_not(negative);
    case T::fp_isinf:
      return is_finite ? mgr.make_false() : nullptr;
    default:
      return is_finite ? mgr.make_not(zero) : nullptr;
  }
}

/// Classes of bits read as a float are written in the bits.
const Term* class_of_bits(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(0);
  if (!has_tag(x, T::fp_from_bits)) return nullptr;
  const Format f = format_of(x);
  const auto [e, m] = f;
  const Term* bits = x->get_arg(0);
  const Term* exponent = mgr.make_bv_extract(e + m - 1, m, bits);
  const Term* at_max = mgr.make_equal(exponent, mgr.make_bv_number(f.max_exponent(), e));
  const Term* at_min = mgr.make_equal(exponent, mgr.make_bv_number(0, e));
  const Term* no_fraction =
      mgr.make_equal(mgr.make_bv_extract(m - 1, 0, bits), mgr.make_bv_number(0, m));
  const Term* is_nan = mgr.make_and(at_max, mgr.make_not(no_fraction));
  const Term* sign_set =
      mgr.make_equal(mgr.make_bv_extract(e + m, e + m, bits), mgr.make_bv_number(1, 1));
  switch (t->get_tag()) {
    case T::fp_isnan:
      return is_nan;
    case T::fp_isinf:
      return mgr.make_and(at_max, no_fraction);
    case T::fp_iszero:
      return mgr.make_and(at_min, no_fraction);
    case T::fp_isnormal:
      return mgr.make_not(mgr.make_or(at_min, at_max));
    case T::fp_issubnormal:
      return mgr.make_and(at_min, mgr.make_not(no_fraction));
    case T::fp_isnegative:
      return mgr.make_and(sign_set, mgr.make_not(is_nan));
    default:
      return mgr.make_not(mgr.make_or(sign_set, is_nan));
  }
}

/// The operations that IEEE 754-2019, clause 7.2, calls invalid, and those on NaN: infinities of
/// opposite sign added, zero times infinity, zero by zero, infinity by infinity, the square root of
/// a negative number, the remainder of infinity or by zero. A minimum or maximum is NaN if both
/// operands are.
const Term* nan_of_operation(TermManager& mgr, const Term* t) {
  const Term* op = t->get_arg(0);
  if (has_tag(op, T::fp_sqrt)) {
    const Term* x = op->get_arg(1);
    const Term* negative =
        mgr.make_and(mgr.make_fp_isnegative(x), mgr.make_not(mgr.make_fp_iszero(x)));
    return mgr.make_or(mgr.make_fp_isnan(x), negative);
  }
  const bool is_sum = has_tag(op, T::fp_add) || has_tag(op, T::fp_sub);
  const bool has_mode = is_sum || has_tag(op, T::fp_mul) || has_tag(op, T::fp_div);
  const bool selects = has_tag(op, T::fp_min) || has_tag(op, T::fp_max);
  if (!has_mode && !selects && !has_tag(op, T::fp_rem)) return nullptr;
  const Term* x = op->get_arg(has_mode ? 1 : 0);
  const Term* y = op->get_arg(has_mode ? 2 : 1);
  if (selects) return mgr.make_and(mgr.make_fp_isnan(x), mgr.make_fp_isnan(y));

  const Term* x_inf = mgr.make_fp_isinf(x);
  const Term* y_inf = mgr.make_fp_isinf(y);
  const Term* x_zero = mgr.make_fp_iszero(x);
  const Term* y_zero = mgr.make_fp_iszero(y);
  const Term* invalid = nullptr;
  switch (op->get_tag()) {
    case T::fp_add:
    case T::fp_sub: {
      const Term* differ = mgr.make_xor(mgr.make_fp_isnegative(x), mgr.make_fp_isnegative(y));
      const Term* opposite = has_tag(op, T::fp_add) ? differ : mgr.make_not(differ);
      invalid = mgr.make_and(mgr.make_and(x_inf, y_inf), opposite);
      break;
    }
    case T::fp_mul:
      invalid = mgr.make_or(mgr.make_and(x_inf, y_zero), mgr.make_and(x_zero, y_inf));
      break;
    case T::fp_div:
      invalid = mgr.make_or(mgr.make_and(x_inf, y_inf), mgr.make_and(x_zero, y_zero));
      break;
    default:
      invalid = mgr.make_or(x_inf, y_zero);
      break;
  }
  return mgr.make_or(mgr.make_or(mgr.make_fp_isnan(x), mgr.make_fp_isnan(y)), invalid);
}

/// The class of a choice is a choice of classes, one of which is known.
const Term* lift_class(TermManager& mgr, const Term* t) {
  const Term* ite = t->get_arg(0);
  if (!has_tag(ite, T::ite)) return nullptr;
  if (!float_literal(ite->get_arg(1)) && !float_literal(ite->get_arg(2))) return nullptr;
  return mgr.make_term_ite(ite->get_arg(0), test(mgr, t, ite->get_arg(1)),
                           test(mgr, t, ite->get_arg(2)));
}

constexpr FpRule kRules[] = {
    {"class-of-sign",
     {T::fp_isnan, T::fp_isinf, T::fp_iszero, T::fp_isnormal, T::fp_issubnormal, T::fp_isnegative,
      T::fp_ispositive},
     class_of_sign},
    {"never-nan", {T::fp_isnan}, never_nan},
    {"class-of-rounded", {T::fp_isnan, T::fp_isnegative, T::fp_ispositive}, class_of_rounded},
    {"class-of-widening",
     {T::fp_isinf, T::fp_iszero, T::fp_isnormal, T::fp_issubnormal},
     class_of_widening},
    {"class-of-integer",
     {T::fp_isinf, T::fp_iszero, T::fp_isnormal, T::fp_issubnormal, T::fp_isnegative,
      T::fp_ispositive},
     class_of_integer},
    {"class-of-bits",
     {T::fp_isnan, T::fp_isinf, T::fp_iszero, T::fp_isnormal, T::fp_issubnormal, T::fp_isnegative,
      T::fp_ispositive},
     class_of_bits},
    {"nan-of-operation", {T::fp_isnan}, nan_of_operation},
    {"lift-class",
     {T::fp_isnan, T::fp_isinf, T::fp_iszero, T::fp_isnormal, T::fp_issubnormal, T::fp_isnegative,
      T::fp_ispositive},
     lift_class},
};

}  // namespace

std::span<const FpRule> get_class_rules() {
  return kRules;
}

}  // namespace vorn::rewrite
