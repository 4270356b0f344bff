// The IEEE remainder x - y * n, with n the integer nearest to x / y.
//
// With significands X and Y as integers and d the distance of the exponents, x is X * 2^d in units
// of y's last place. That number modulo 2Y tells both the remainder of the division and whether its
// quotient is odd, which settles ties. If d is -1, the quotient is 0 or 1; further below, x is its
// own remainder.
//
// Where there are few exponents for the width of the significand, X is shifted by d and divided: a
// step for each bit of the longest dividend, of which there are 2^e and more. Elsewhere the power
// of two is raised modulo 2Y by squaring, so that the circuit is polynomial in the widths: one
// squaring and one reduction for each bit of d, less those that a shift takes care of.
#include <algorithm>
#include <bit>

#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::fp {
namespace {

// Up to so many steps for each bit of the modulus, division has no more clauses than squaring; the
// sizes of (5, 2), (6, 6), (7, 14) and (8, 30) are about the same either way.
constexpr std::size_t kStepsPerBit = 8;
// Bits of the widest exponent that is divided step by step.
constexpr std::size_t kMostStepped = 8;

}  // namespace

const Term* IeeeBvEncoder::encode_rem(const Term* t) {
  TermManager& mgr = *dst_mgr;
  const format fmt = arg_format(t, 0);
  const auto [e, m] = fmt;
  const Operand x = enc_unpack(t, 0);
  const Operand y = enc_unpack(t, 1);
  enc_track_operand("rem_", 1, x);
  enc_track_operand("rem_", 2, y);
  const Term* d =
      mgr.make_bv_sub(mgr.make_bv_sign_extend(1, x.exp), mgr.make_bv_sign_extend(1, y.exp));
  const Term* below = mgr.make_equal(mgr.make_bv_extract(e, e, d), bv(1, 1));
  const Term* far = mgr.make_bv_slt(d, mgr.make_bv_not(bv(0, e + 1)));
  debug_track_term(d, "rem_distance");

  const Term* Y = mgr.make_bv_zero_extend(1, y.mant);
  const Term* twice_Y = mgr.make_bv_concat(y.mant, bv(0, 1));
  const Term* power_rest = enc_scale_modulo(x.mant, mgr.make_bv_extract(e - 1, 0, d), twice_Y);
  const Term* dividend = enc_make_term_ite(below, mgr.make_bv_zero_extend(1, x.mant), power_rest);
  const Term* divisor = enc_make_term_ite(below, twice_Y, Y);
  const Term* odd = mgr.make_bv_ule(divisor, dividend);
  const Term* difference = enc_make_term_ite(odd, mgr.make_bv_sub(dividend, divisor), dividend);
  // That what is left is below the divisor takes an induction over all steps to find out, and most
  // that is to be proved of a remainder rests on it: said here, it costs one comparison.
  const Term* is_below = mgr.make_bv_ult(difference, divisor);
  const Term* rest = enc_make_term_ite(is_below, difference, bv(0, m + 2));
  const Term* twice_rest = mgr.make_bv_concat(rest, bv(0, 1));
  const Term* wide_divisor = mgr.make_bv_zero_extend(1, divisor);
  const Term* tie = mgr.make_and(odd, mgr.make_equal(twice_rest, wide_divisor));
  const Term* up = mgr.make_or(mgr.make_bv_ult(wide_divisor, twice_rest), tie);
  debug_track_term(power_rest, "rem_power_rest");
  debug_track_term(dividend, "rem_dividend");
  debug_track_term(divisor, "rem_divisor");
  debug_track_term(odd, "rem_odd");
  debug_track_term(rest, "rem_rest");
  debug_track_term(up, "rem_up");

  // Half the divisor at most: m + 1 bits hold it.
  const Term* nearest = enc_make_term_ite(up, mgr.make_bv_sub(divisor, rest), rest);
  const Term* mant = mgr.make_bv_extract(m, 0, nearest);
  const Term* exp = enc_make_term_ite(below, x.exp, y.exp);
  const Term* sign = mgr.make_bv_xor(x.sign, enc_make_term_ite(up, bv(1, 1), bv(0, 1)));
  const Term* invalid = mgr.make_bv_or(x.inf, y.zero);
  const Term* nan = mgr.make_bv_or(invalid, mgr.make_bv_or(x.nan, y.nan));
  debug_track_term(mant, "rem_mant");
  debug_track_term(exp, "rem_exp");
  debug_track_term(sign, "rem_sign");
  debug_track_term(nan, "rem_nan");
  const Term* never = bv(0, 1);
  const Term* rounded = enc_round(rm_even_bv, fmt, {nan, never, sign, exp, mant, false, 0});

  const Term* is_number = mgr.make_equal(nan, bv(0, 1));
  const Term* unreached = mgr.make_or(far, mgr.make_equal(y.inf, bv(1, 1)));
  const Term* result = enc_make_term_ite(mgr.make_and(is_number, unreached), x.packed, rounded);
  debug_track_term(unreached, "rem_unreached");
  debug_track_term(result, "rem_result");
  return result;
}

const Term* IeeeBvEncoder::enc_scale_modulo(const Term* x, const Term* d, const Term* modulus) {
  TermManager& mgr = *dst_mgr;
  const std::size_t n = width_of(modulus);
  const std::size_t D = width_of(d);
  if (D <= kMostStepped && std::size_t{1} << D <= kStepsPerBit * n) {
    const std::size_t shifts = (std::size_t{1} << D) - 3;  // between the largest and least exponent
    const Term* dividend = mgr.make_bv_zero_extend(shifts, x);
    const Term* distance = mgr.make_bv_zero_extend(width_of(dividend) - D, d);
    return enc_reduce(mgr.make_bv_lshl(dividend, distance), modulus);
  }
  // The leading bits of d at once: 2^(2^first - 1) is still within 2n bits.
  const std::size_t first = std::min(D, static_cast<std::size_t>(std::bit_width(2 * n)) - 1);
  const Term* lead = mgr.make_bv_extract(D - 1, D - first, d);
  const Term* shifted =
      mgr.make_bv_lshl(bv(1, 2 * n), mgr.make_bv_zero_extend(2 * n - first, lead));
  const Term* power = enc_reduce(shifted, modulus);
  for (std::size_t i = D - first; i-- > 0;) {
    const Term* wide = mgr.make_bv_zero_extend(n, power);
    power = enc_reduce(mgr.make_bv_mul(wide, wide), modulus);
    const Term* twice = mgr.make_bv_concat(power, bv(0, 1));
    const Term* wide_modulus = mgr.make_bv_zero_extend(1, modulus);
    const Term* over = mgr.make_bv_ule(wide_modulus, twice);
    const Term* reduced = enc_make_term_ite(over, mgr.make_bv_sub(twice, wide_modulus), twice);
    const Term* doubled = mgr.make_bv_extract(n - 1, 0, reduced);
    const Term* bit = mgr.make_bv_extract(i, i, d);
    power = enc_make_term_ite(mgr.make_equal(bit, bv(1, 1)), doubled, power);
  }
  const Term* wide_x = mgr.make_bv_zero_extend(2 * n - width_of(x), x);
  return enc_reduce(mgr.make_bv_mul(wide_x, mgr.make_bv_zero_extend(n, power)), modulus);
}

const Term* IeeeBvEncoder::enc_reduce(const Term* a, const Term* b) {
  const std::size_t n = width_of(b);
  const Term* rest = dst_mgr->make_bv_urem(a, dst_mgr->make_bv_zero_extend(width_of(a) - n, b));
  return dst_mgr->make_bv_extract(n - 1, 0, rest);
}

}  // namespace vorn::fp
