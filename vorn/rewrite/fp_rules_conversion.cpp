// Rules between formats, and between floats and integers.
//
// A cast into a format that has every value of the other changes nothing, whatever its mode: what
// is done with the result can be done with the operand. Beyond that stands the question when two
// roundings give what one gives, which each rule answers for itself.
#include <vector>

#include "vorn/rewrite/fp_patterns.h"
#include "vorn/rewrite/fp_rules.h"

namespace vorn::rewrite {
namespace {

using T = SymbolTag;

const Term* cast_to(TermManager& mgr, const Term* like, const Term* mode, const Term* x) {
  const Format f = format_of(like);
  return f == format_of(x) ? x : mgr.make_fp_cast(f.e, f.m, mode, x);
}

/// A cast into the operand's own format does nothing.
const Term* cast_to_same(TermManager&, const Term* t) {
  const Term* x = t->get_arg(1);
  return format_of(t) == format_of(x) ? x : nullptr;
}

/// What a widening hands on is cast from the operand at once.
const Term* cast_of_widening(TermManager& mgr, const Term* t) {
  const Term* inner = t->get_arg(1);
  return is_widening(inner) ? cast_to(mgr, t, t->get_arg(0), inner->get_arg(1)) : nullptr;
}

/// Two roundings in one direction are one, if the second format is part of the first: the value
/// next to x there is next to it here, or beyond.
const Term* cast_twice(TermManager& mgr, const Term* t) {
  const Term* inner = t->get_arg(1);
  const auto mode = mode_literal(mgr, t->get_arg(0));
  if (!mode || !is_directed(*mode) || !has_tag(inner, T::fp_cast)) return nullptr;
  if (inner->get_arg(0) != t->get_arg(0) || !contains(format_of(inner), format_of(t))) {
    return nullptr;
  }
  return cast_to(mgr, t, t->get_arg(0), inner->get_arg(1));
}

/// Signs move out of casts: the negation in the mirrored mode, the absolute value where the mode is
/// symmetric; either in any mode where the cast is exact.
const Term* cast_of_sign(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(1);
  const bool is_neg = has_tag(x, T::fp_neg);
  if (!is_neg && !has_tag(x, T::fp_abs)) return nullptr;
  const Term* rm = t->get_arg(0);
  if (!is_widening(t)) {
    const auto mode = mode_literal(mgr, rm);
    if (!mode || (!is_neg && !is_symmetric(*mode))) return nullptr;
    rm = mgr.make_fprounding(mirrored(*mode));
  }
  const Term* cast = cast_to(mgr, t, rm, x->get_arg(0));
  return is_neg ? mgr.make_fp_neg(cast) : mgr.make_fp_abs(cast);
}

// Operations in a wider format ------------------------------------------------------------------

/// The operation within the cast `t`, in the narrow format, if its operands are values of that.
const Term* in_narrow(TermManager& mgr, const Term* t) {
  const Term* op = t->get_arg(1);
  const Format f = format_of(t);
  const Term* rm = t->get_arg(0);
  const Term* x = narrowed(mgr, op->get_arg(1), f);
  if (x == nullptr) return nullptr;
  if (has_tag(op, T::fp_sqrt)) return mgr.make_fp_sqrt(rm, x);
  const Term* y = narrowed(mgr, op->get_arg(2), f);
  if (y == nullptr) return nullptr;
  switch (op->get_tag()) {
    case T::fp_add:
      return mgr.make_fp_add(rm, x, y);
    case T::fp_sub:
      return mgr.make_fp_sub(rm, x, y);
    case T::fp_mul:
      return mgr.make_fp_mul(rm, x, y);
    default:
      return mgr.make_fp_div(rm, x, y);
  }
}

bool is_sum(const Term* t) {
  return has_tag(t, T::fp_add) || has_tag(t, T::fp_sub);
}

/// Whether the cast `t` and the operation within it round in one mode.
bool rounds_twice_alike(const Term* t) {
  return t->get_arg(1)->get_arg(0) == t->get_arg(0);
}

/// Whether a result of `wide` may be wide enough for one of the rules to the nearest: exponents
/// so wide that exact products and quotients of the narrow format's values are normal, and finite.
bool has_room(Format wide, Format narrow) {
  return contains(wide, narrow) && bias_of(wide) >= 2 * (bias_of(narrow) + narrow.m) + 2;
}

/// Two roundings of a result in one direction are one, as in cast_twice.
const Term* narrow_directed(TermManager& mgr, const Term* t) {
  const Term* op = t->get_arg(1);
  const bool fits =
      is_sum(op) || has_tag(op, T::fp_mul) || has_tag(op, T::fp_div) || has_tag(op, T::fp_sqrt);
  if (!fits || !rounds_twice_alike(t) || !contains(format_of(op), format_of(t))) return nullptr;
  const auto mode = mode_literal(mgr, t->get_arg(0));
  return mode && is_directed(*mode) ? in_narrow(mgr, t) : nullptr;
}

// To the nearest, two roundings are one unless the first ends in the middle between two values of
// the narrow format without having been there. How near an inexact result can come to such a
// place decides about the precision that keeps the first rounding from it (Figueroa, "When is
// double rounding innocuous?", SIGNUM Newsletter 30(3), 1995), with p the narrow precision, m + 1.

/// Sums: 2p + 1 bits. Those below the normal range are exact, so the exponents may be the same.
const Term* narrow_sum(TermManager& mgr, const Term* t) {
  const Term* op = t->get_arg(1);
  if (!is_sum(op) || !rounds_twice_alike(t)) return nullptr;
  const Format wide = format_of(op);
  const Format narrow = format_of(t);
  const bool innocuous = contains(wide, narrow) && wide.m >= 2 * (narrow.m + 1);
  return innocuous ? in_narrow(mgr, t) : nullptr;
}

/// Products: with 2p bits they are exact, so the mode in which they were rounded does not matter.
const Term* narrow_product(TermManager& mgr, const Term* t) {
  const Term* op = t->get_arg(1);
  if (!has_tag(op, T::fp_mul)) return nullptr;
  const Format wide = format_of(op);
  const Format narrow = format_of(t);
  return has_room(wide, narrow) && wide.m >= 2 * narrow.m + 1 ? in_narrow(mgr, t) : nullptr;
}

/// Quotients: 2p + 1 bits, square roots: 2p + 2.
const Term* narrow_quotient_or_root(TermManager& mgr, const Term* t) {
  const Term* op = t->get_arg(1);
  const bool is_root = has_tag(op, T::fp_sqrt);
  if ((!is_root && !has_tag(op, T::fp_div)) || !rounds_twice_alike(t)) return nullptr;
  const Format wide = format_of(op);
  const Format narrow = format_of(t);
  const std::uint64_t least = 2 * (narrow.m + 1) + (is_root ? 1 : 0);
  return has_room(wide, narrow) && wide.m >= least ? in_narrow(mgr, t) : nullptr;
}

/// The integer nearest to a widened value is the widened integer, where the narrow format has it.
const Term* integral_of_widening(TermManager& mgr, const Term* t) {
  const Term* cast = t->get_arg(1);
  if (!is_widening(cast) || !has_integers(format_of(cast->get_arg(1)))) return nullptr;
  const Term* integral = mgr.make_fp_round_to_integral(t->get_arg(0), cast->get_arg(1));
  return cast_to(mgr, t, cast->get_arg(0), integral);
}

/// A remainder is exact: that of widened values is widened.
const Term* remainder_of_widenings(TermManager& mgr, const Term* t) {
  for (std::size_t i = 0; i < 2; ++i) {
    if (!is_widening(t->get_arg(i))) continue;
    const Format f = format_of(t->get_arg(i)->get_arg(1));
    const Term* x = narrowed(mgr, t->get_arg(0), f);
    const Term* y = narrowed(mgr, t->get_arg(1), f);
    if (x == nullptr || y == nullptr) continue;
    return cast_to(mgr, t, mgr.make_fprounding_even(), mgr.make_fp_rem(x, y));
  }
  return nullptr;
}

// Integers --------------------------------------------------------------------------------------

const Term* convert(TermManager& mgr, const Term* like, const Term* mode, const Integer& integer) {
  const Format f = format_of(like);
  return integer.is_signed ? mgr.make_fp_from_sbv(f.e, f.m, mode, integer.bits)
                           : mgr.make_fp_from_ubv(f.e, f.m, mode, integer.bits);
}

/// An extension does not change an integer.
const Term* convert_extended(TermManager& mgr, const Term* t) {
  const Term* v = t->get_arg(1);
  const bool zeros = has_tag(v, T::bv_zero_extend);
  const bool is_signed = has_tag(t, T::fp_from_sbv);
  if (!zeros && !(is_signed && has_tag(v, T::bv_sign_extend))) return nullptr;
  return convert(mgr, t, t->get_arg(0), {v->get_arg(0), is_signed && !zeros});
}

/// An integer that a format has is cast from there as it is converted.
const Term* cast_of_integer(TermManager& mgr, const Term* t) {
  const Term* inner = t->get_arg(1);
  const auto integer = converted_integer(inner);
  if (!integer || !is_exact(*integer, format_of(inner))) return nullptr;
  return convert(mgr, t, t->get_arg(0), *integer);
}

/// Bits that come from a float are read as that float: NaN has bits of NaN.
const Term* read_written_bits(TermManager&, const Term* t) {
  const Term* bits = t->get_arg(0);
  if (!has_tag(bits, T::fp_to_bits)) return nullptr;
  const Term* x = bits->get_arg(0);
  return format_of(x) == format_of(t) ? x : nullptr;
}

/// A conversion or sign of one of two literals is one of two literals.
const Term* lift_literals(TermManager& mgr, const Term* t) {
  std::vector<const Term*> args(t->get_args().begin(), t->get_args().end());
  const Term* ite = args.back();
  if (!has_tag(ite, T::ite) || (args.size() == 2 && !mode_literal(mgr, args[0]))) return nullptr;
  if (!float_literal(ite->get_arg(1)) || !float_literal(ite->get_arg(2))) return nullptr;
  args.back() = ite->get_arg(1);
  const Term* first = mgr.rebuild(t, args);
  args.back() = ite->get_arg(2);
  return mgr.make_term_ite(ite->get_arg(0), first, mgr.rebuild(t, args));
}

constexpr FpRule kRules[] = {
    {"cast-to-same", {T::fp_cast}, cast_to_same},
    {"cast-of-widening", {T::fp_cast}, cast_of_widening},
    {"cast-twice", {T::fp_cast}, cast_twice},
    {"cast-of-sign", {T::fp_cast}, cast_of_sign},
    {"narrow-directed", {T::fp_cast}, narrow_directed},
    {"narrow-sum", {T::fp_cast}, narrow_sum},
    {"narrow-product", {T::fp_cast}, narrow_product},
    {"narrow-quotient-or-root", {T::fp_cast}, narrow_quotient_or_root},
    {"integral-of-widening", {T::fp_round_to_integral}, integral_of_widening},
    {"remainder-of-widenings", {T::fp_rem}, remainder_of_widenings},
    {"convert-extended", {T::fp_from_sbv, T::fp_from_ubv}, convert_extended},
    {"cast-of-integer", {T::fp_cast}, cast_of_integer},
    {"read-written-bits", {T::fp_from_bits}, read_written_bits},
    {"lift-literals", {T::fp_cast, T::fp_neg, T::fp_abs, T::fp_round_to_integral}, lift_literals},
};

}  // namespace

std::span<const FpRule> get_conversion_rules() {
  return kRules;
}

}  // namespace vorn::rewrite
