// The rounding back end: from an exact, unrounded result to a packed value.
//
// What comes in is a sign, a signed exponent and a significand of any width W whose top bit carries
// the weight 2^exp, so the value is mant / 2^(W-1) * 2^exp. The significand is normalised (its
// leading one brought to the top), denormalised where the exponent lies below that of the smallest
// normal number, rounded, and packed. Three strategies normalise: a shift known at encoding time
// for a constant, a short chain of tests where the caller knows a bound on the leading zeros, and a
// bisection over powers of two for the rest.
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

void FpBvEncoder::enc_normalization_shift(format fmt, const Term** exp, const Term** mant,
                                          std::uint64_t max_shift) {
  if (dst_mgr->get_number((*mant)->get_symbol()) != nullptr) {
    return enc_normalization_shift_const(fmt, exp, mant, max_shift);
  }
  if (max_shift != 0) return enc_normalization_shift_linear(fmt, exp, mant, max_shift);
  enc_normalization_shift_log(fmt, exp, mant);
}

void FpBvEncoder::enc_normalization_shift_const(format /*fmt*/, const Term** exp, const Term** mant,
                                                std::uint64_t max_shift) {
  const QNumber v = *dst_mgr->get_number((*mant)->get_symbol());
  const std::size_t W = width_of(*mant);
  const std::size_t E = width_of(*exp);
  const std::uint64_t limit = max_shift == 0 ? W : std::min<std::uint64_t>(max_shift, W);
  std::uint64_t k = 0;
  while (k < limit && !v.test_bit(W - 1 - k))
    ++k;
  // No leading one within the limit: there is no partial shift.
  if (k == limit) return;
  const QNumber shift(static_cast<std::int64_t>(k));
  *mant = dst_mgr->make_bv_lshl(*mant, dst_mgr->make_bv_number(shift, W));
  *exp = dst_mgr->make_bv_add(*exp, bv_signed(shift.neg(), E));
}

void FpBvEncoder::enc_normalization_shift_linear(format /*fmt*/, const Term** exp,
                                                 const Term** mant, std::uint64_t max_shift) {
  TermManager& mgr = *dst_mgr;
  debug_track_term(*exp, "norm_shift_exp");
  debug_track_term(*mant, "norm_shift_mant");
  const std::size_t W = width_of(*mant);
  const std::size_t E = width_of(*exp);
  const std::uint64_t limit = max_shift == 0 ? W : std::min<std::uint64_t>(max_shift, W);
  // At most one test holds: exactly i leading zeros, then a one.
  const Term* count = bv(0, E);
  for (std::uint64_t i = 0; i < limit; ++i) {
    const Term* top = mgr.make_bv_extract(W - 1, W - 1 - i, *mant);
    const Term* hit = mgr.make_bv_comp(top, bv(1, i + 1));
    const Term* mask = mgr.make_bv_sign_extend(E - 1, hit);
    count = mgr.make_bv_or(count, mgr.make_bv_and(mask, bv(i, E)));
  }
  *mant = mgr.make_bv_lshl(*mant, mgr.make_bv_zero_extend(W - E, count));
  *exp = mgr.make_bv_sub(*exp, count);
}

void FpBvEncoder::enc_normalization_shift_log(format /*fmt*/, const Term** exp, const Term** mant) {
  TermManager& mgr = *dst_mgr;
  debug_track_term(*exp, "norm_shift_exp");
  debug_track_term(*mant, "norm_shift_mant");
  const std::size_t W = width_of(*mant);
  const std::size_t E = width_of(*exp);
  const std::size_t S = bit_length(W);
  const QNumber power = BVNumber::power_of_two(S);
  std::int64_t word = 0;
  power.get_int64(&word);
  const auto P = static_cast<std::size_t>(word);  // above W

  // Step j looks for a set bit among the positions 2^j to 2^(j+1) - 1.
  std::vector<const Term*> steps;
  std::vector<const Term*> masks;
  for (std::size_t j = 0; j < S; ++j) {
    const std::size_t s = std::size_t{1} << j;
    steps.push_back(bv(s, P));
    const Term* ones = mgr.make_bv_sign_extend(s - 1, bv(1, 1));
    const Term* zeros = mgr.make_bv_zero_extend(s - 1, bv(0, 1));
    masks.push_back(mgr.make_bv_zero_extend(P - 2 * s, mgr.make_bv_concat(ones, zeros)));
  }

  const Term* v = mgr.make_bv_zero_extend(P - W, *mant);
  const Term* r = bv(0, P);  // in the end the index of the leading one
  for (std::size_t j = S; j-- > 0;) {
    const Term* t = mgr.make_bv_and(v, masks[j]);
    const Term* hit = mgr.make_bv_not(mgr.make_bv_comp(t, bv(0, P)));
    const Term* d = mgr.make_bv_and(steps[j], mgr.make_bv_sign_extend(P - 1, hit));
    v = mgr.make_bv_lshr(v, d);
    r = mgr.make_bv_or(r, d);
  }

  const Term* lz = mgr.make_bv_sub(bv(W - 1, P), r);  // W - 1 for a zero significand
  debug_track_term(lz, "enc_norm_log_shift");
  debug_track_term(*mant, "enc_norm_log_mant");
  *mant = mgr.make_bv_lshl(*mant, mgr.make_bv_extract(W - 1, 0, lz));
  *exp = mgr.make_bv_sub(*exp, mgr.make_bv_extract(E - 1, 0, lz));
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
