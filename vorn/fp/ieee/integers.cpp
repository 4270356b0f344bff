// Rounding to integers: roundToIntegral and the conversions to bit-vectors.
//
// The significand is put below the point of a register with w integer bits and shifted up by the
// exponent, so that the integer part, the rounding bit below it and the bits of the sticky bit
// below that all come to fixed places. Magnitudes below one half are not shifted; those of 2^w and
// more do not matter to either operation.
#include <algorithm>
#include <bit>

#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::fp {

IeeeBvEncoder::Integral IeeeBvEncoder::enc_integral(const Term* rm, format fmt, const Operand& x,
                                                    std::size_t w) {
  TermManager& mgr = *dst_mgr;
  const auto [e, m] = fmt;
  const auto S = static_cast<std::size_t>(std::bit_width(w));
  const std::size_t E = std::max<std::size_t>(e, S + 1) + 1;
  debug_track_term(rm, "integral_arg0");
  enc_track_operand("integral_", 1, x);
  // The exponent of 1/2 is where the significand lies without a shift.
  const Term* places = mgr.make_bv_add(mgr.make_bv_sign_extend(E - e, x.exp), bv(1, E));
  const Term* tiny = mgr.make_bv_extract(E - 1, E - 1, places);
  const Term* too_large = mgr.make_bv_slt(bv(w, E), places);
  const Term* amount =
      mgr.make_bv_and(mgr.make_bv_extract(S - 1, 0, places), enc_mask(mgr.make_bv_not(tiny), S));
  const std::size_t R = w + m + 1;
  const Term* shifted =
      mgr.make_bv_lshl(mgr.make_bv_zero_extend(w, x.mant), mgr.make_bv_zero_extend(R - S, amount));
  const Term* integer = mgr.make_bv_extract(R - 1, m + 1, shifted);
  const Term* top = mgr.make_bv_extract(m, m, shifted);
  const Term* round = mgr.make_bv_and(top, mgr.make_bv_not(tiny));
  const Term* below = enc_any(mgr.make_bv_extract(m - 1, 0, shifted));
  const Term* sticky = mgr.make_bv_or(below, mgr.make_bv_and(tiny, top));
  const Term* least = mgr.make_bv_extract(0, 0, integer);
  debug_track_term(places, "integral_places");
  debug_track_term(tiny, "integral_tiny");
  debug_track_term(amount, "integral_amount");
  debug_track_term(integer, "integral_integer");
  debug_track_term(round, "integral_rounding_bit");
  debug_track_term(sticky, "integral_sticky_bit");

  const Term* increment = enc_select_rounding(rm, x.sign, round, least, sticky).increment;
  debug_track_term(increment, "integral_increment");
  const Term* value =
      mgr.make_bv_add(mgr.make_bv_zero_extend(1, integer), mgr.make_bv_zero_extend(w, increment));
  debug_track_term(value, "integral_value");
  debug_track_term(too_large, "integral_too_large");
  return {value, enc_make_term_ite(too_large, bv(1, 1), bv(0, 1))};
}

/// From 2^m on every float is an integer. Integers below are floats of the format, unless its
/// exponents end before.
const Term* IeeeBvEncoder::encode_round_to_integral(const Term* t) {
  TermManager& mgr = *dst_mgr;
  const format fmt = arg_format(t, 1);
  const std::size_t m = fmt.m;
  const Term* rm = encoded_arg(t, 0);
  const Operand x = enc_unpack(t, 1);
  const Integral integral = enc_integral(rm, fmt, x, m);
  const Term* exp = bv(m, static_cast<std::size_t>(std::bit_width(m)) + 1);
  const Unrounded value{x.nan, x.inf, x.sign, exp, integral.value, false, 0};
  const Term* rounded = enc_round(rm, fmt, value);
  const Term* whole = mgr.make_equal(integral.too_large, bv(1, 1));
  const Term* result = enc_make_term_ite(whole, x.packed, rounded);
  debug_track_term(result, "integral_result");
  return result;
}

const Term* IeeeBvEncoder::encode_to_sbv(const Term* t) {
  return enc_to_integer(t, true);
}

const Term* IeeeBvEncoder::encode_to_ubv(const Term* t) {
  return enc_to_integer(t, false);
}

const Term* IeeeBvEncoder::enc_to_integer(const Term* t, bool is_signed) {
  TermManager& mgr = *dst_mgr;
  const format fmt = arg_format(t, 1);
  const std::size_t w = t->get_type()->get_width();
  const Operand x = enc_unpack(t, 1);
  const auto [value, too_large] = enc_integral(encoded_arg(t, 0), fmt, x, w);
  const Term* magnitude = mgr.make_bv_extract(w - 1, 0, value);
  const Term* carry = mgr.make_bv_extract(w, w, value);
  const Term* no_number = mgr.make_bv_or(x.nan, x.inf);
  const Term* outside = mgr.make_bv_or(no_number, mgr.make_bv_or(too_large, carry));
  const Term* bits = magnitude;
  const Term* beyond = nullptr;
  if (is_signed) {
    // The top bit is the sign's, but for the one negative number that has no positive twin.
    const Term* top = mgr.make_bv_extract(w - 1, w - 1, value);
    const Term* least = mgr.make_bv_not(enc_any(mgr.make_bv_lshl(magnitude, bv(1, w))));
    beyond = mgr.make_bv_and(top, mgr.make_bv_not(mgr.make_bv_and(x.sign, least)));
    const Term* negative = mgr.make_equal(x.sign, bv(1, 1));
    bits = enc_make_term_ite(negative, mgr.make_bv_neg(magnitude), magnitude);
  } else {
    beyond = mgr.make_bv_and(x.sign, enc_any(magnitude));
  }
  outside = mgr.make_bv_or(outside, beyond);
  debug_track_term(bits, "to_int_bits");
  debug_track_term(outside, "to_int_outside");
  const Term* open = make_leaf(t, "fp.u", &spare_counter, mgr.get_bv_type(w));
  const Term* result = enc_make_term_ite(mgr.make_equal(outside, bv(1, 1)), open, bits);
  debug_track_term(result, "to_int_result");
  return result;
}

}  // namespace vorn::fp
