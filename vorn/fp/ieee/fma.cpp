// Fused multiplication and addition: the exact product, to which the addend is added before the one
// rounding.
//
// Product and addend stand side by side as numbers of 2m + 2 bits with the point behind the second;
// the one with the smaller exponent is shifted down, with three bits below for what it loses and a
// sticky bit for the rest. The factors are normalised, so that a product that loses bits of the
// addend is truly the larger of the two. The addend is not: where it is subnormal, all that it
// takes from the product lies below what the format can hold.
#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::fp {

const Term* IeeeBvEncoder::encode_fma(const Term* t) {
  TermManager& mgr = *dst_mgr;
  const format fmt = arg_format(t, 1);
  const Term* rm = encoded_arg(t, 0);
  const Operand x = enc_unpack(t, 1);
  const Operand y = enc_unpack(t, 2);
  const Operand z = enc_unpack(t, 3);
  debug_track_term(rm, "fma_arg0");
  enc_track_operand("fma_", 1, x);
  enc_track_operand("fma_", 2, y);
  enc_track_operand("fma_", 3, z);
  const Term* product_sign = mgr.make_bv_not(mgr.make_bv_comp(x.sign, y.sign));
  const Term* product_zero = mgr.make_bv_or(x.zero, y.zero);
  debug_track_term(product_sign, "fma_product_sign");
  debug_track_term(product_zero, "fma_product_zero");
  const Sum sum = enc_fma_sum(rm, fmt, enc_normalise(fmt, x), enc_normalise(fmt, y), z,
                              product_sign, product_zero);

  const Term* product_inf = mgr.make_bv_or(x.inf, y.inf);
  const Term* opposite = mgr.make_bv_not(mgr.make_bv_comp(product_sign, z.sign));
  const Term* against = mgr.make_bv_and(mgr.make_bv_and(product_inf, z.inf), opposite);
  const Term* invalid = mgr.make_bv_or(mgr.make_bv_and(product_inf, product_zero), against);
  const Term* operand_nan = mgr.make_bv_or(x.nan, mgr.make_bv_or(y.nan, z.nan));
  const Term* nan = mgr.make_bv_or(operand_nan, invalid);
  const Term* inf = mgr.make_bv_or(product_inf, z.inf);
  const Term* inf_sign = enc_make_ite(product_inf, product_sign, z.sign);
  const Term* sign = enc_make_ite(inf, inf_sign, sum.sign);
  debug_track_term(nan, "fma_nan");
  debug_track_term(inf, "fma_inf");
  debug_track_term(sign, "fma_sign");
  const Term* result = enc_round(rm, fmt, {nan, inf, sign, sum.exp, sum.mant, true, 0});
  debug_track_term(result, "fma_result");
  return result;
}

IeeeBvEncoder::Sum IeeeBvEncoder::enc_fma_sum(const Term* rm, format fmt, const Normalised& x,
                                              const Normalised& y, const Operand& z,
                                              const Term* product_sign, const Term* product_zero) {
  TermManager& mgr = *dst_mgr;
  const std::size_t m = fmt.m;
  const std::size_t K = 2 * m + 2;
  debug_track_term(x.exp, "fma_exp1_norm");
  debug_track_term(x.mant, "fma_mant1_norm");
  debug_track_term(y.exp, "fma_exp2_norm");
  debug_track_term(y.mant, "fma_mant2_norm");
  const Term* wide_x = mgr.make_bv_zero_extend(m + 1, x.mant);
  const Term* product = mgr.make_bv_mul(wide_x, mgr.make_bv_zero_extend(m + 1, y.mant));
  const Term* addend = mgr.make_bv_concat(mgr.make_bv_zero_extend(1, z.mant), bv(0, m));
  const std::size_t E = width_of(x.exp) + 2;
  const Term* ep =
      mgr.make_bv_add(mgr.make_bv_sign_extend(2, x.exp), mgr.make_bv_sign_extend(2, y.exp));
  const Term* ez = mgr.make_bv_sign_extend(E - fmt.e, z.exp);
  debug_track_term(product, "fma_product");
  debug_track_term(ep, "fma_product_exp");

  // A product of zero has no exponent to speak of.
  const Term* product_above =
      mgr.make_and(mgr.make_bv_sle(ez, ep), mgr.make_equal(product_zero, bv(0, 1)));
  const Term* exp = enc_make_term_ite(product_above, ep, ez);
  const Term* big = enc_make_term_ite(product_above, product, addend);
  const Term* small = enc_make_term_ite(product_above, addend, product);
  const Term* d = mgr.make_bv_sub(ep, ez);
  const Term* distance = enc_make_term_ite(product_above, d, mgr.make_bv_neg(d));
  const Term* aligned = enc_shift_right_sticky(mgr.make_bv_concat(small, bv(0, 3)), distance);
  debug_track_term(exp, "fma_exp");
  debug_track_term(big, "fma_big");
  debug_track_term(small, "fma_small");
  debug_track_term(distance, "fma_distance");
  debug_track_term(aligned, "fma_aligned");

  const Term* a = mgr.make_bv_zero_extend(2, mgr.make_bv_concat(big, bv(0, 3)));
  const Term* b = mgr.make_bv_zero_extend(2, aligned);
  const Term* same = mgr.make_equal(product_sign, z.sign);
  const Term* sum = enc_make_term_ite(same, mgr.make_bv_add(a, b), mgr.make_bv_sub(a, b));
  const Term* flipped = mgr.make_bv_extract(K + 4, K + 4, sum);
  const Term* magnitude =
      enc_make_term_ite(mgr.make_equal(flipped, bv(1, 1)), mgr.make_bv_neg(sum), sum);
  const Term* mant = mgr.make_bv_extract(K + 3, 0, magnitude);
  debug_track_term(mant, "fma_sum");

  // An exact zero of two signs has that of the rounding mode (IEEE 754-2019, clause 6.3).
  const Term* big_sign = enc_make_term_ite(product_above, product_sign, z.sign);
  const Term* sum_sign = mgr.make_bv_xor(big_sign, flipped);
  const Term* cancelled = mgr.make_and(mgr.make_not(same), mgr.make_equal(mant, bv(0, K + 4)));
  const Term* zero_sign = mgr.make_bv_comp(rm, rm_minus_inf_bv);
  const Term* sign = enc_make_term_ite(cancelled, zero_sign, sum_sign);
  return {sign, mgr.make_bv_add(exp, bv(2, E)), mant};
}

}  // namespace vorn::fp
