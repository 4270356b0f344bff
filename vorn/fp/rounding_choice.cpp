// What the rounding mode decides: whether the kept bits are incremented, and the correction bit, 1
// where, in this rounding mode and with this sign, an overflow gives the largest finite magnitude
// instead of infinity.
#include "vorn/fp/fp_bv_encoder.h"

namespace vorn::fp {

FpBvEncoder::RoundingChoice FpBvEncoder::enc_rounding_choice(const Term* mode, const Term* sign,
                                                             const Term* round, const Term* least,
                                                             const Term* sticky) {
  TermManager& mgr = *dst_mgr;
  const Term* never = mgr.make_bv_number(0, 1);
  if (mode == rm_even_bv) {
    return {mgr.make_bv_and(round, mgr.make_bv_or(least, sticky)), never};
  }
  if (mode == rm_zero_bv) return {never, mgr.make_bv_number(1, 1)};
  const Term* inexact = mgr.make_bv_or(round, sticky);
  if (mode == rm_plus_inf_bv) return {mgr.make_bv_and(mgr.make_bv_not(sign), inexact), sign};
  return {mgr.make_bv_and(sign, inexact), mgr.make_bv_not(sign)};
}

FpBvEncoder::RoundingChoice FpBvEncoder::enc_select_rounding(const Term* rm, const Term* sign,
                                                             const Term* round, const Term* least,
                                                             const Term* sticky) {
  for (const Term* mode : {rm_even_bv, rm_zero_bv, rm_plus_inf_bv, rm_minus_inf_bv})
    if (rm == mode) return enc_rounding_choice(mode, sign, round, least, sticky);
  const RoundingChoice even = enc_rounding_choice(rm_even_bv, sign, round, least, sticky);
  const RoundingChoice zero = enc_rounding_choice(rm_zero_bv, sign, round, least, sticky);
  const RoundingChoice plus = enc_rounding_choice(rm_plus_inf_bv, sign, round, least, sticky);
  const RoundingChoice minus = enc_rounding_choice(rm_minus_inf_bv, sign, round, least, sticky);
  const Term* is_even = dst_mgr->make_equal(rm, rm_even_bv);
  const Term* is_zero = dst_mgr->make_equal(rm, rm_zero_bv);
  const Term* is_plus = dst_mgr->make_equal(rm, rm_plus_inf_bv);

  const Term* inc = enc_make_term_ite(is_plus, plus.increment, minus.increment);
  inc = enc_make_term_ite(is_zero, zero.increment, inc);
  inc = enc_make_term_ite(is_even, even.increment, inc);
  const Term* cor = enc_make_term_ite(is_plus, plus.correction, minus.correction);
  cor = enc_make_term_ite(is_zero, zero.correction, cor);
  return {inc, enc_make_term_ite(is_even, even.correction, cor)};
}

}  // namespace vorn::fp
