// Addition and subtraction.
//
// The significand of the operand with the smaller exponent is shifted to the scale of the other,
// keeping three bits below it: two that the shift moves into and one sticky bit that stands for all
// that the shift loses, which is enough to round in every mode. The sum is formed in two's
// complement, two bits wider, so that its top bit is its sign. Subtraction flips the sign of the
// second operand first.
#include <algorithm>

#include "vorn/fp/fp_bv_encoder.h"

namespace vorn::fp {

const Term* FpBvEncoder::encode_add(const Term* t) {
  return enc_add_sub(t, false);
}

const Term* FpBvEncoder::encode_sub(const Term* t) {
  return enc_add_sub(t, true);
}

const Term* FpBvEncoder::enc_add_sub(const Term* t, bool is_sub) {
  TermManager& mgr = *dst_mgr;
  format fmt{};
  if (is_sub) {
    src_mgr->is_fp_sub(t->get_symbol(), &fmt.e, &fmt.m);
  } else {
    src_mgr->is_fp_add(t->get_symbol(), &fmt.e, &fmt.m);
  }
  const auto [e, m] = fmt;
  const Term* rm = encoded_arg(t, 0);
  const Term* x = encoded_arg(t, 1);
  const Term* y = encoded_arg(t, 2);
  if (debug) {
    // For readers of the term graph only: the sign of a zero result is chosen at the end, by the
    // rounding mode alone.
    const Term* pos_zero = nullptr;
    const Term* neg_zero = nullptr;
    enc_add_sub_both_zero(rm, fmt, is_sub, x, y, &pos_zero, &neg_zero);
  }
  if (is_sub) {
    const Term* flipped = mgr.make_bv_not(mgr.make_bv_extract(e + m, e + m, y));
    y = mgr.make_bv_concat(flipped, mgr.make_bv_extract(e + m - 1, 0, y));
  }

  const Addends in = enc_add_unpack(fmt, x, y);
  const Term* res_sign = nullptr;
  const Term* mant_res = enc_add_significands(fmt, in, &res_sign);
  const Term* res_exp = enc_add_exponent(fmt, in);

  const Term* ix = enc_is_inf(x, fmt);
  const Term* iy = enc_is_inf(y, fmt);
  const Term* nx = enc_is_nan(x, fmt);
  const Term* ny = enc_is_nan(y, fmt);
  const Term* both_inf = mgr.make_bv_and(ix, iy);
  const Term* opposite = mgr.make_bv_and(both_inf, mgr.make_bv_not(in.samesign));
  const Term* nan = mgr.make_bv_or(opposite, mgr.make_bv_or(nx, ny));
  const Term* not_nan = mgr.make_bv_not(nan);
  const Term* inf = mgr.make_bv_and(not_nan, mgr.make_bv_or(ix, iy));
  const Term* bigsign = enc_make_term_ite(in.x_bigger, in.sx, in.sy);
  const Term* add_sub_sign = mgr.make_bv_not(mgr.make_bv_comp(bigsign, res_sign));
  const Term* inf_sign = enc_make_ite(ix, in.sx, in.sy);
  const Term* sign = enc_make_ite(inf, inf_sign, add_sub_sign);
  debug_track_term(inf, "add_inf");
  debug_track_term(nan, "add_nan");
  debug_track_term(add_sub_sign, "add_add_sub_sign");

  Unrounded value{nan, inf, sign, res_exp, mant_res};
  value.may_underflow = false;  // the exponent is that of an operand and two more
  value.is_field = in.has_field;
  const Term* rounded = enc_round(rm, fmt, value);
  const Term* result = enc_add_zero_result(rm, fmt, x, y, rounded);
  debug_track_term(rm, "add_sub_arg0");
  debug_track_term(x, "add_sub_arg1");
  debug_track_term(y, "add_sub_arg2");
  debug_track_term(result, "add_sub_result");
  return result;
}

FpBvEncoder::Addends FpBvEncoder::enc_add_unpack(format fmt, const Term* x, const Term* y) {
  TermManager& mgr = *dst_mgr;
  const std::size_t w = fmt.e + fmt.m;
  Addends in{};
  const Term* ex = enc_get_exponent(x, fmt, true);
  const Term* ey = enc_get_exponent(y, fmt, true);
  in.sx = mgr.make_bv_extract(w, w, x);
  in.sy = mgr.make_bv_extract(w, w, y);
  const Term* mx = enc_get_mantissa(x, fmt, true);
  const Term* my = enc_get_mantissa(y, fmt, true);
  in.samesign = mgr.make_bv_comp(in.sx, in.sy);

  // On a tie x counts as the larger. Unbiased exponents lie within the bias of zero, so the
  // distance, read as unsigned, is exact in e bits.
  in.x_bigger = mgr.make_bv_sle(ey, ex);
  in.exp_bigger = enc_make_term_ite(in.x_bigger, ex, ey);
  const Term* d = mgr.make_bv_sub(ex, ey);
  in.distance = enc_make_term_ite(in.x_bigger, d, mgr.make_bv_neg(d));
  debug_track_term(ex, "add_exp1");
  debug_track_term(ey, "add_exp2");
  debug_track_term(mx, "add_mant1");
  debug_track_term(my, "add_mant2");
  debug_track_term(in.exp_bigger, "add_exp_bigger");
  if (debug) {
    debug_track_term(enc_get_exponent(x, fmt, false), "add_exp1_biased");
    debug_track_term(enc_get_exponent(y, fmt, false), "add_exp2_biased");
  }
  in.big = enc_make_term_ite(in.x_bigger, mx, my);
  in.small = enc_make_term_ite(in.x_bigger, my, mx);
  return in;
}

const Term* FpBvEncoder::enc_add_exponent(format fmt, const Addends& in) {
  const Term* wide_exp = dst_mgr->make_bv_sign_extend(1, in.exp_bigger);
  const Term* res_exp = dst_mgr->make_bv_add(wide_exp, bv(2, fmt.e + 1));
  debug_track_term(res_exp, "add_res_exp");
  return res_exp;
}

const Term* FpBvEncoder::enc_add_distance(format fmt, const Term* dist0) {
  TermManager& mgr = *dst_mgr;
  const auto [e, m] = fmt;
  // The distance is capped where every bit of the smaller significand is in the sticky bit. An
  // exponent wider than the significand is capped before it is narrowed.
  const std::size_t w = std::max<std::size_t>(m + 1, e);
  const Term* dw = e > m + 1 ? dist0 : mgr.make_bv_zero_extend(m + 1 - e, dist0);
  const Term* cap = bv(m + 3, w);
  const Term* distance = enc_make_term_ite(mgr.make_bv_ult(dw, cap), dw, cap);
  return e > m + 1 ? mgr.make_bv_extract(m, 0, distance) : distance;
}

const Term* FpBvEncoder::enc_add_align(format fmt, const Term* small, const Term* dist0,
                                       const Term** sticky) {
  TermManager& mgr = *dst_mgr;
  const std::size_t m = fmt.m;
  const Term* small_p = mgr.make_bv_concat(small, bv(0, 2));
  const Term* distance = enc_add_distance(fmt, dist0);
  debug_track_term(distance, "add_distance");

  // What the alignment shift loses, brought to the top: the low distance - 2 bits of `small`.
  const Term* up = mgr.make_bv_sub(bv(m + 3, m + 1), distance);
  const Term* lost = mgr.make_bv_lshl(small, up);
  *sticky = mgr.make_bv_not(mgr.make_bv_comp(lost, bv(0, m + 1)));
  const Term* shifted = mgr.make_bv_lshr(small_p, mgr.make_bv_zero_extend(2, distance));
  return mgr.make_bv_concat(shifted, *sticky);
}

const Term* FpBvEncoder::enc_add_significands(format fmt, const Addends& in,
                                              const Term** res_sign) {
  TermManager& mgr = *dst_mgr;
  const std::size_t m = fmt.m;
  const Term* big_p = mgr.make_bv_concat(in.big, bv(0, 3));
  const Term* sticky = nullptr;
  const Term* aligned = enc_add_align(fmt, in.small, in.distance, &sticky);

  const Term* a = mgr.make_bv_zero_extend(2, big_p);
  const Term* b = mgr.make_bv_zero_extend(2, aligned);
  const Term* sum = mgr.make_bv_add(a, b);
  const Term* dif = mgr.make_bv_sub(a, b);
  const Term* same = mgr.make_equal(in.samesign, bv(1, 1));
  const Term* addres = enc_make_term_ite(same, sum, dif);
  debug_track_term(addres, "add_addres");
  debug_track_term(a, "add_mant1_ext");
  debug_track_term(b, "add_mant2_ext");
  debug_track_term(sticky, "add_sticky_bit");
  debug_track_term(in.samesign, "add_samesign");

  *res_sign = mgr.make_bv_extract(m + 5, m + 5, addres);
  debug_track_term(*res_sign, "add_mant_res_sign");
  const Term* positive = mgr.make_equal(*res_sign, bv(0, 1));
  const Term* mant_res = enc_make_term_ite(positive, addres, mgr.make_bv_neg(addres));
  debug_track_term(mant_res, "add_mant_res");
  return mant_res;
}

const Term* FpBvEncoder::enc_add_zero_result(const Term* rm, format fmt, const Term* /*x*/,
                                             const Term* /*y*/, const Term* rounded) {
  TermManager& mgr = *dst_mgr;
  const std::size_t w = fmt.e + fmt.m;
  const Term* absres = mgr.make_bv_extract(w - 1, 0, rounded);
  const Term* iszero = mgr.make_equal(absres, bv(0, w));
  const Term* pz = mgr.make_bv_concat(bv(0, 1), absres);
  const Term* nz = mgr.make_bv_concat(bv(1, 1), absres);
  const Term* zero = pz;
  if (rm == rm_minus_inf_bv) {
    zero = nz;
  } else if (rm != rm_even_bv && rm != rm_zero_bv && rm != rm_plus_inf_bv) {
    zero = enc_make_term_ite(mgr.make_equal(rm, rm_minus_inf_bv), nz, pz);
  }
  debug_track_term(absres, "add_absres");
  return enc_make_term_cond({iszero, mgr.make_true()}, {zero, rounded});
}

const Term* FpBvEncoder::enc_add_sub_both_zero(const Term* rm, format fmt, bool is_sub,
                                               const Term* x, const Term* y,
                                               const Term** pos_zero_out,
                                               const Term** neg_zero_out) {
  TermManager& mgr = *dst_mgr;
  const std::size_t w = fmt.e + fmt.m;
  const Term* one = bv(1, 1);
  const Term* zx = enc_is_zero(x, fmt);
  const Term* zy = enc_is_zero(y, fmt);
  const Term* sx = mgr.make_equal(mgr.make_bv_extract(w, w, x), one);
  const Term* sy = mgr.make_equal(mgr.make_bv_extract(w, w, y), one);
  const Term* rtn = nullptr;
  if (rm == rm_even_bv || rm == rm_zero_bv || rm == rm_plus_inf_bv) {
    rtn = mgr.make_false();
  } else if (rm == rm_minus_inf_bv) {
    rtn = mgr.make_true();
  } else {
    rtn = mgr.make_equal(rm, rm_minus_inf_bv);
  }
  const Term* both = mgr.make_equal(mgr.make_bv_and(zx, zy), one);
  const Term* not_sx = mgr.make_not(sx);
  const Term* pos = mgr.make_and(not_sx, is_sub ? sy : mgr.make_not(sy));
  const Term* neg = is_sub ? mgr.make_and(sx, mgr.make_not(sy)) : mgr.make_and(sx, sy);
  *pos_zero_out = mgr.make_and(both, enc_make_ite(rtn, pos, mgr.make_not(neg)));
  *neg_zero_out = mgr.make_and(both, enc_make_ite(rtn, mgr.make_not(pos), neg));
  return *neg_zero_out;
}

}  // namespace vorn::fp
