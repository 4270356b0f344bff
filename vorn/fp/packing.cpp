// Base encoder only: the last stages of its rounding. Cut the significand, check the exponent,
// pack.
//
// They talk to each other through the correction bit: 1 where, in this rounding mode and with this
// sign, an overflow gives the largest finite magnitude instead of infinity. Packing makes it from
// the pattern of infinity by subtracting one.
#include "vorn/fp/fp_bv_encoder.h"

namespace vorn::fp {

void FpBvEncoder::enc_round_mantissa(const Term* rm, format fmt, const Term* sign, const Term** exp,
                                     const Term** mant, const Term** correction) {
  TermManager& mgr = *dst_mgr;
  debug_track_term(*mant, "round_mant_before");
  debug_track_term(rm, "round_rounding");
  const std::size_t W = width_of(*mant);
  const std::size_t K = fmt.m + 1;
  if (W < K) *mant = mgr.make_bv_concat(*mant, bv(0, K - W));
  if (W <= K) return;

  const std::size_t x = W - K;  // bits below the kept ones
  const Term* sticky = bv(0, 1);
  if (x > 1) {
    const Term* lastbits = mgr.make_bv_extract(x - 2, 0, *mant);
    debug_track_term(lastbits, "round_mant_lastbits");
    sticky = mgr.make_bv_not(mgr.make_bv_comp(lastbits, bv(0, x - 1)));
  }
  debug_track_term(sticky, "round_sticky_bit");
  const Term* round = mgr.make_bv_extract(x - 1, x - 1, *mant);
  debug_track_term(round, "round_rounding_bit");
  const Term* chop = mgr.make_bv_extract(W - 1, x, *mant);
  const Term* least = mgr.make_bv_extract(0, 0, chop);
  debug_track_term(chop, "round_mant_after_chop");
  debug_track_term(least, "round_rounding_least");

  const RoundingChoice choice = enc_select_rounding(rm, sign, round, least, sticky);
  *correction = choice.correction;
  const Term* wide_chop = mgr.make_bv_zero_extend(1, chop);
  const Term* sum = mgr.make_bv_add(wide_chop, mgr.make_bv_zero_extend(K, choice.increment));
  debug_track_term(choice.increment, "round_increment");
  debug_track_term(*correction, "out_correction_bit");

  const Term* overflow = mgr.make_bv_extract(K, K, sum);  // the significand reached 2.0
  debug_track_term(overflow, "round_overflow");
  *exp = mgr.make_bv_add(*exp, mgr.make_bv_zero_extend(width_of(*exp) - 1, overflow));
  // The low bits of 2.0 are zero, as those of 1.0 are: no shift is needed after an overflow.
  const Term* top = mgr.make_bv_extract(K, fmt.m, sum);
  const Term* hidden = mgr.make_bv_not(mgr.make_bv_comp(top, bv(0, 2)));
  *mant = mgr.make_bv_concat(hidden, mgr.make_bv_extract(fmt.m - 1, 0, sum));
  debug_track_term(*mant, "mant_round_mant");
  debug_track_term(*exp, "exp_round_mant");
}

void FpBvEncoder::enc_round_exponent(format fmt, const Term* is_nan, const Term* mant,
                                     const Term** exp, const Term** is_inf,
                                     const Term** correction) {
  TermManager& mgr = *dst_mgr;
  const std::size_t E = width_of(*exp);
  if (E == fmt.e) return;

  const Term* exp_low = mgr.make_bv_extract(fmt.e - 1, 0, *exp);
  const Term* limit = mgr.make_bv_number(fmt.max_exponent() - fmt.bias(), E);
  const Term* in_range = mgr.make_bv_slt(*exp, limit);
  const Term* zero = mgr.make_equal(mant, bv(0, width_of(mant)));
  const Term* out_of_range = mgr.make_not(in_range);
  const Term* overflows = mgr.make_and(out_of_range, mgr.make_not(zero));
  const Term* one_bit = bv(1, 1);
  const Term* too_large = enc_make_term_ite(overflows, one_bit, bv(0, 1));
  debug_track_term(too_large, "exp_exponent_too_large");
  if (*correction != nullptr) {
    // Saturation is for finite results that really overflow.
    const Term* finite = mgr.make_bv_and(mgr.make_bv_not(*is_inf), too_large);
    const Term* saturates = mgr.make_bv_and(mgr.make_bv_not(is_nan), finite);
    *correction = enc_make_ite(saturates, *correction, bv(0, 1));
    debug_track_term(*correction, "exp_out_correction_bit");
  }
  *is_inf = mgr.make_bv_or(*is_inf, too_large);
  *exp = exp_low;
  debug_track_term(*exp, "exp_round_exp");
}

const Term* FpBvEncoder::enc_pack_and_bias(format fmt, const Term* is_nan, const Term* is_inf,
                                           const Term* sign, const Term* exp, const Term* mant,
                                           const Term* correction) {
  TermManager& mgr = *dst_mgr;
  const auto [e, m] = fmt;
  const Term* biased = mgr.make_bv_add(exp, mgr.make_bv_number(fmt.bias(), e));
  debug_track_term(biased, "biased_exp");
  const Term* no_hidden = mgr.make_bv_not(mgr.make_bv_extract(m, m, mant));
  const Term* denormal = mgr.make_bv_sign_extend(e - 1, no_hidden);
  debug_track_term(denormal, "pack_denormal");
  const Term* exp_field = mgr.make_bv_and(mgr.make_bv_not(denormal), biased);
  const Term* frac = mgr.make_bv_extract(m - 1, 0, mant);

  const Term* negative = mgr.make_bv_or(is_nan, sign);
  const Term* one_bit = bv(1, 1);
  const Term* res_sign = enc_make_ite(negative, one_bit, bv(0, 1));
  const Term* special = mgr.make_bv_or(is_nan, is_inf);
  // A NaN has fraction 0...01, an infinity 0...0.
  const Term* keep = mgr.make_bv_sign_extend(m - 2, mgr.make_bv_not(special));
  const Term* high = mgr.make_bv_and(keep, mgr.make_bv_extract(m - 1, 1, frac));
  const Term* not_inf = mgr.make_bv_not(is_inf);
  const Term* finite_low = mgr.make_bv_and(not_inf, mgr.make_bv_extract(0, 0, frac));
  const Term* res_mant = mgr.make_bv_concat(high, mgr.make_bv_or(is_nan, finite_low));
  const Term* res_exp = mgr.make_bv_or(mgr.make_bv_sign_extend(e - 1, special), exp_field);
  const Term* body = mgr.make_bv_concat(res_exp, res_mant);

  // Infinity minus one is the largest finite magnitude.
  if (correction != nullptr) {
    const QNumber* number = src_mgr->get_number(correction->get_symbol());
    if (number == nullptr || number->sign() != 0) {
      body = mgr.make_bv_sub(body, mgr.make_bv_zero_extend(e + m - 1, correction));
    }
  }
  const Term* result = mgr.make_bv_concat(res_sign, body);
  debug_track_term(res_sign, "pack_res_sign");
  debug_track_term(res_exp, "pack_res_exp");
  debug_track_term(res_mant, "pack_res_mant");
  debug_track_term(is_nan, "pack_nan");
  debug_track_term(is_inf, "pack_inf");
  return result;
}

}  // namespace vorn::fp
