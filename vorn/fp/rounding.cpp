// Base encoder only: its way from an exact, unrounded result to a packed value.
//
// What comes in is a sign, a signed exponent and a significand of any width W whose top bit carries
// the weight 2^exp, so the value is mant / 2^(W-1) * 2^exp. The significand is normalised,
// denormalised where the exponent lies below that of the smallest normal number, rounded, and
// packed.
#include <algorithm>
#include <bit>

#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/terms/bv_number.h"

namespace vorn::fp {
namespace {

/// Number of significant bits, at least 1.
std::size_t bit_length(std::size_t n) {
  return static_cast<std::size_t>(std::bit_width(std::max<std::size_t>(n, 1)));
}

}  // namespace

const Term* FpBvEncoder::enc_round(const Term* rm, format fmt, const Unrounded& value) {
  // With n leading zeros at most, there are n + 1 places for the leading one.
  const std::uint64_t max_shift = value.lead_limit == 0 ? 0 : value.lead_limit + 1;
  return enc_do_rounding(rm, fmt, value.nan, value.inf, value.sign, value.exp, value.mant,
                         max_shift);
}

const Term* FpBvEncoder::enc_do_rounding(const Term* rm, format fmt, const Term* is_nan,
                                         const Term* is_inf, const Term* sign, const Term* exp,
                                         const Term* mant, std::uint64_t max_shift) {
  enc_widen(fmt, &exp, &mant);
  enc_normalization_shift(fmt, &exp, &mant, max_shift);
  enc_denormalization_shift(fmt, &exp, &mant);
  const Term* correction = nullptr;
  enc_round_mantissa(rm, fmt, sign, &exp, &mant, &correction);
  enc_round_exponent(fmt, is_nan, mant, &exp, &is_inf, &correction);
  debug_track_term(correction, "round_correction_bit");
  const Term* result = enc_pack_and_bias(fmt, is_nan, is_inf, sign, exp, mant, correction);
  debug_track_term(result, "round_ret");
  return result;
}

void FpBvEncoder::enc_widen(format fmt, const Term** exp, const Term** mant) {
  // Room for the bias and for every shift distance, and one bit for the sign.
  const std::size_t target = std::max<std::size_t>(bit_length(fmt.m), fmt.e) + 1;
  const std::size_t e = width_of(*exp);
  if (e < target) *exp = dst_mgr->make_bv_sign_extend(target - e, *exp);

  // A shift distance has the significand's width, so it must be able to hold the exponent. Zeros
  // below the significand change nothing: its top bit carries the weight.
  const std::size_t E = width_of(*exp);
  const std::size_t W = width_of(*mant);
  if (W >= E) return;
  if (const QNumber* constant = dst_mgr->get_number((*mant)->get_symbol())) {
    // A constant stays one, so that it is normalised as one.
    *mant = dst_mgr->make_bv_number(*constant * BVNumber::power_of_two(E - W), E);
  } else {
    *mant = dst_mgr->make_bv_concat(*mant, bv(0, E - W));
  }
}

void FpBvEncoder::enc_denormalization_shift(format fmt, const Term** exp, const Term** mant) {
  TermManager& mgr = *dst_mgr;
  debug_track_term(*exp, "denorm_shift_exp");
  debug_track_term(*mant, "denorm_shift_mant");
  const std::size_t E = width_of(*exp);
  const std::size_t W = width_of(*mant);
  const QNumber bias = fmt.bias();
  const Term* smallexp = bv_signed(bias.neg() + 1, E);
  debug_track_term(smallexp, "denorm_shift_smallexp");
  const Term* d = mgr.make_bv_sub(smallexp, *exp);
  const Term* denormal = mgr.make_bv_slt(bv(0, E), d);
  debug_track_term(denormal, "denorm_shift_denormal");
  // Packing turns the exponent -bias into the biased exponent 0.
  *exp = enc_make_term_ite(denormal, bv_signed(bias.neg(), E), *exp);

  if (E < W) d = mgr.make_bv_zero_extend(W - E, d);
  const Term* cap = bv(W - 1, W);
  const Term* amount = enc_make_term_ite(mgr.make_bv_ult(d, cap), d, cap);
  *mant = enc_make_term_ite(denormal, mgr.make_bv_lshr(*mant, amount), *mant);
  debug_track_term(amount, "denorm_shift_rshift");
  debug_track_term(*mant, "denorm_shift_out_mant");
  debug_track_term(*exp, "denorm_shift_out_exp");
}

}  // namespace vorn::fp
