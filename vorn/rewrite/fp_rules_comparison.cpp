// Rules for fp.eq, fp.lt, fp.leq and equality of floats.
//
// Order and fp.eq are false where an operand is NaN and take the zeros for one number; equality
// tells the zeros apart and NaN from everything else.
#include <algorithm>
#include <utility>

#include "vorn/rewrite/fp_patterns.h"
#include "vorn/rewrite/fp_rules.h"
#include "vorn/terms/bv_number.h"
#include "vorn/terms/ieee_arithmetic.h"

namespace vorn::rewrite {
namespace {

using T = SymbolTag;

bool is_order(T::tag tag) {
  return tag == T::fp_lt || tag == T::fp_le;
}

const Term* relate(TermManager& mgr, T::tag tag, const Term* a, const Term* b) {
  switch (tag) {
    case T::fp_lt:
      return mgr.make_fp_lt(a, b);
    case T::fp_le:
      return mgr.make_fp_le(a, b);
    case T::fp_equal:
      return mgr.make_fp_equal(a, b);
    default:
      return mgr.make_equal(a, b);
  }
}

const Term* is_number(TermManager& mgr, const Term* x) {
  return mgr.make_not(mgr.make_fp_isnan(x));
}

/// Without sorts of its own, equality comes here for all terms.
bool compares_floats(const Term* t) {
  return is_float(t->get_arg(0));
}

/// x = x holds, x < x does not, and x <= x and fp.eq(x, x) hold for all but NaN.
const Term* compare_same(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(0);
  if (x != t->get_arg(1) || !compares_floats(t)) return nullptr;
  if (has_tag(t, T::equal)) return mgr.make_true();
  return has_tag(t, T::fp_lt) ? mgr.make_false() : is_number(mgr, x);
}

/// x = -x holds for NaN, fp.eq(x, -x) for zeros.
const Term* compare_opposite(TermManager& mgr, const Term* t) {
  if (!compares_floats(t)) return nullptr;
  const Term* x = t->get_arg(0);
  const Term* y = t->get_arg(1);
  if (has_tag(x, T::fp_neg)) std::swap(x, y);
  if (!has_tag(y, T::fp_neg) || y->get_arg(0) != x) return nullptr;
  return has_tag(t, T::equal) ? mgr.make_fp_isnan(x) : mgr.make_fp_iszero(x);
}

// Literals --------------------------------------------------------------------------------------

/// Nothing compares with NaN, and NaN is the only term equal to it.
const Term* compare_with_nan(TermManager& mgr, const Term* t) {
  for (std::size_t i = 0; i < 2; ++i) {
    const auto c = float_literal(t->get_arg(i));
    if (!c || !c->is_nan()) continue;
    return has_tag(t, T::equal) ? mgr.make_fp_isnan(t->get_arg(1 - i)) : mgr.make_false();
  }
  return nullptr;
}

/// Nothing lies beyond an infinity, and all but NaN on this side of it.
const Term* compare_with_infinity(TermManager& mgr, const Term* t) {
  const bool strict = has_tag(t, T::fp_lt);
  for (std::size_t i = 0; i < 2; ++i) {
    const auto c = float_literal(t->get_arg(i));
    if (!c || !c->is_inf()) continue;
    const Term* x = t->get_arg(1 - i);
    const bool is_least = c->is_sign_set();
    const bool is_lower = i == 0;
    if (is_least != is_lower && strict) return mgr.make_false();
    if (is_least != is_lower) return mgr.make_equal(x, t->get_arg(i));
    if (!strict) return is_number(mgr, x);
  }
  return nullptr;
}

/// Comparisons with zero, of either sign, are tests of sign and class.
const Term* compare_with_zero(TermManager& mgr, const Term* t) {
  for (std::size_t i = 0; i < 2; ++i) {
    const auto c = float_literal(t->get_arg(i));
    if (!c || !c->is_zero()) continue;
    const Term* x = t->get_arg(1 - i);
    const Term* zero = mgr.make_fp_iszero(x);
    if (has_tag(t, T::fp_equal)) return zero;
    const Term* sign = i == 0 ? mgr.make_fp_ispositive(x) : mgr.make_fp_isnegative(x);
    return has_tag(t, T::fp_lt) ? mgr.make_and(sign, mgr.make_not(zero)) : mgr.make_or(sign, zero);
  }
  return nullptr;
}

/// Of all values but zeros and NaN there is one each.
const Term* eq_is_equality(TermManager& mgr, const Term* t) {
  for (std::size_t i = 0; i < 2; ++i) {
    const auto c = float_literal(t->get_arg(i));
    if (c && !c->is_zero() && !c->is_nan()) return mgr.make_equal(t->get_arg(0), t->get_arg(1));
  }
  return nullptr;
}

// Signs, order and widenings --------------------------------------------------------------------

/// Negation mirrors the order and keeps equality; that of a literal is a literal.
const Term* compare_negations(TermManager& mgr, const Term* t) {
  if (!compares_floats(t)) return nullptr;
  const Term* x = t->get_arg(0);
  const Term* y = t->get_arg(1);
  const bool x_neg = has_tag(x, T::fp_neg);
  const bool y_neg = has_tag(y, T::fp_neg);
  if (!(x_neg && (y_neg || float_literal(y))) && !(y_neg && float_literal(x))) return nullptr;
  const Term* a = x_neg ? x->get_arg(0) : mgr.make_fp_neg(x);
  const Term* b = y_neg ? y->get_arg(0) : mgr.make_fp_neg(y);
  if (is_order(t->get_tag())) std::swap(a, b);
  return relate(mgr, t->get_tag(), a, b);
}

const Term* eq_commutes(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(0);
  const Term* y = t->get_arg(1);
  return x->get_id() <= y->get_id() ? nullptr : mgr.make_fp_equal(y, x);
}

/// What `t`, or what it is the negation or absolute value of, was widened from.
const Term* widened_from(const Term* t) {
  while (has_tag(t, T::fp_neg) || has_tag(t, T::fp_abs))
    t = t->get_arg(0);
  return is_widening(t) ? t->get_arg(1) : nullptr;
}

/// Widened values compare as they did before.
const Term* compare_widenings(TermManager& mgr, const Term* t) {
  for (const Term* side : t->get_args()) {
    if (!is_float(side)) return nullptr;
    const Term* source = widened_from(side);
    if (source == nullptr) continue;
    const Term* x = narrowed(mgr, t->get_arg(0), format_of(source));
    const Term* y = narrowed(mgr, t->get_arg(1), format_of(source));
    if (x != nullptr && y != nullptr) return relate(mgr, t->get_tag(), x, y);
  }
  return nullptr;
}

/// A literal that the narrow format does not have lies between two neighbours there: to be below it
/// is to be at most the lower one. Nothing that was widened is equal to it.
const Term* compare_widening_with_literal(TermManager& mgr, const Term* t) {
  for (std::size_t i = 0; i < 2; ++i) {
    if (!is_float(t->get_arg(i))) return nullptr;
    const auto c = float_literal(t->get_arg(i));
    const Term* source = c ? widened_from(t->get_arg(1 - i)) : nullptr;
    if (source == nullptr) continue;
    const Format f = format_of(source);
    if (narrowed(mgr, t->get_arg(i), f) != nullptr) return nullptr;
    if (!is_order(t->get_tag())) return mgr.make_false();
    const Term* x = narrowed(mgr, t->get_arg(1 - i), f);
    const bool is_lower = i == 0;
    const Term* neighbour =
        mgr.make_fp_number(ieee_cast(f, is_lower ? Mode::plus_inf : Mode::minus_inf, *c));
    return is_lower ? mgr.make_fp_le(neighbour, x) : mgr.make_fp_le(x, neighbour);
  }
  return nullptr;
}

// Integers --------------------------------------------------------------------------------------

const Term* relate_integers(TermManager& mgr, T::tag tag, const Integer& a, const Term* x,
                            const Term* y) {
  switch (tag) {
    case T::fp_lt:
      return a.is_signed ? mgr.make_bv_slt(x, y) : mgr.make_bv_ult(x, y);
    case T::fp_le:
      return a.is_signed ? mgr.make_bv_sle(x, y) : mgr.make_bv_ule(x, y);
    default:
      return mgr.make_equal(x, y);
  }
}

const Term* extend(TermManager& mgr, const Integer& a, std::size_t width) {
  const std::size_t n = width - a.width();
  if (n == 0) return a.bits;
  return a.is_signed ? mgr.make_bv_sign_extend(n, a.bits) : mgr.make_bv_zero_extend(n, a.bits);
}

std::optional<Integer> exact_integer(const Term* t) {
  const auto integer = converted_integer(t);
  return integer && is_exact(*integer, format_of(t)) ? integer : std::nullopt;
}

/// Integers that are converted exactly compare as integers; there is one zero among them.
const Term* compare_integers(TermManager& mgr, const Term* t) {
  if (!compares_floats(t)) return nullptr;
  const auto a = exact_integer(t->get_arg(0));
  const auto b = exact_integer(t->get_arg(1));
  if (!a || !b || a->is_signed != b->is_signed) return nullptr;
  const std::size_t width = std::max(a->width(), b->width());
  return relate_integers(mgr, t->get_tag(), *a, extend(mgr, *a, width), extend(mgr, *b, width));
}

/// The integer as a number of that width and kind, if it is one.
const Term* make_integer(TermManager& mgr, const Integer& like, const QNumber& value) {
  const std::size_t w = like.width();
  const QNumber half = BVNumber::power_of_two(w - 1);
  const QNumber limit = like.is_signed ? half : half + half;
  if (value >= limit || value < (like.is_signed ? half.neg() : QNumber(0))) return nullptr;
  return mgr.make_bv_number(value, w);
}

/// Equal to a literal is the integer that it is, if it is one; -0 is none.
const Term* integer_is_literal(TermManager& mgr, const Integer& integer, const IEEEFloat& c) {
  if (c.is_zero() && c.is_sign_set()) return mgr.make_false();
  if (c.get_rounded_magnitude(Mode::minus_inf) != c.get_rounded_magnitude(Mode::plus_inf)) {
    return mgr.make_false();
  }
  const Term* number = make_integer(mgr, integer, c.get_value());
  return number == nullptr ? mgr.make_false() : mgr.make_equal(integer.bits, number);
}

/// Below a literal are the integers below the least one that is not less, and so on.
const Term* compare_integer_with_literal(TermManager& mgr, const Term* t) {
  if (!compares_floats(t)) return nullptr;
  for (std::size_t i = 0; i < 2; ++i) {
    const auto c = float_literal(t->get_arg(i));
    const auto integer = c ? exact_integer(t->get_arg(1 - i)) : std::nullopt;
    if (!integer || c->is_nan() || c->is_inf()) continue;
    // Literals far away are rare, and their integers large.
    if (c->get_exponent() > mpz_class(static_cast<unsigned long>(integer->width()))) return nullptr;
    if (has_tag(t, T::equal)) return integer_is_literal(mgr, *integer, *c);
    const bool is_lower = i == 0;
    const bool strict = has_tag(t, T::fp_lt);
    const Mode mode = strict == is_lower ? Mode::minus_inf : Mode::plus_inf;
    QNumber bound = QNumber::from_mpz(c->get_rounded_magnitude(mode));
    if (c->is_sign_set()) bound = bound.neg();
    const Term* number = make_integer(mgr, *integer, bound);
    if (number == nullptr) return nullptr;
    return is_lower ? relate_integers(mgr, t->get_tag(), *integer, number, integer->bits)
                    : relate_integers(mgr, t->get_tag(), *integer, integer->bits, number);
  }
  return nullptr;
}

/// A comparison with a choice between literals is a choice between comparisons with them, and one
/// of a literal with a choice where one of both is a literal.
const Term* lift_comparison(TermManager& mgr, const Term* t) {
  if (!compares_floats(t)) return nullptr;
  for (std::size_t i = 0; i < 2; ++i) {
    const Term* ite = t->get_arg(i);
    const Term* other = t->get_arg(1 - i);
    if (!has_tag(ite, T::ite)) continue;
    const int literals = (float_literal(ite->get_arg(1)) ? 1 : 0) +
                         (float_literal(ite->get_arg(2)) ? 1 : 0) + (float_literal(other) ? 1 : 0);
    if (literals < 2) continue;
    const auto compare = [&](const Term* branch) {
      return i == 0 ? relate(mgr, t->get_tag(), branch, other)
                    : relate(mgr, t->get_tag(), other, branch);
    };
    return mgr.make_term_ite(ite->get_arg(0), compare(ite->get_arg(1)), compare(ite->get_arg(2)));
  }
  return nullptr;
}

constexpr FpRule kRules[] = {
    {"compare-same", {T::fp_equal, T::fp_lt, T::fp_le, T::equal}, compare_same},
    {"compare-opposite", {T::fp_equal, T::equal}, compare_opposite},
    {"compare-with-nan", {T::fp_equal, T::fp_lt, T::fp_le, T::equal}, compare_with_nan},
    {"compare-with-infinity", {T::fp_lt, T::fp_le}, compare_with_infinity},
    {"compare-with-zero", {T::fp_equal, T::fp_lt, T::fp_le}, compare_with_zero},
    {"eq-is-equality", {T::fp_equal}, eq_is_equality},
    {"compare-negations", {T::fp_equal, T::fp_lt, T::fp_le, T::equal}, compare_negations},
    {"compare-widenings", {T::fp_equal, T::fp_lt, T::fp_le, T::equal}, compare_widenings},
    {"compare-widening-with-literal",
     {T::fp_equal, T::fp_lt, T::fp_le, T::equal},
     compare_widening_with_literal},
    {"compare-integers", {T::fp_equal, T::fp_lt, T::fp_le, T::equal}, compare_integers},
    {"compare-integer-with-literal", {T::fp_lt, T::fp_le, T::equal}, compare_integer_with_literal},
    {"lift-comparison", {T::fp_equal, T::fp_lt, T::fp_le, T::equal}, lift_comparison},
    {"eq-commutes", {T::fp_equal}, eq_commutes},
};

}  // namespace

std::span<const FpRule> get_comparison_rules() {
  return kRules;
}

}  // namespace vorn::rewrite
