// Division: both significands are normalised first, so that the quotient of the padded dividend
// always has m + 4 or m + 5 significant bits; the remainder becomes a sticky bit. The divider works
// on 2m + 5 bits, the narrowest width that holds that quotient for every pair of normalised
// significands. Zero results are masked in after rounding, since a zero dividend or an infinite
// divisor leaves nothing meaningful in the quotient.
#include "vorn/fp/fp_bv_encoder.h"

namespace vorn::fp {

const Term* FpBvEncoder::encode_div(const Term* t) {
  TermManager& mgr = *dst_mgr;
  format fmt{};
  src_mgr->is_fp_div(t->get_symbol(), &fmt.e, &fmt.m);
  const auto [e, m] = fmt;
  const Term* rm = encoded_arg(t, 0);
  Operand x{};
  Operand y{};
  enc_unpack_operands(t, fmt, "div_", &x, &y);

  const Term* exp = nullptr;
  const Term* mant = enc_div_significands(fmt, x, y, &exp);
  const Term* sign = mgr.make_bv_not(mgr.make_bv_comp(x.sign, y.sign));
  const Term* zeros = mgr.make_bv_and(x.zero, y.zero);
  const Term* invalid = mgr.make_bv_or(zeros, mgr.make_bv_and(x.inf, y.inf));
  const Term* nan = mgr.make_bv_or(x.nan, mgr.make_bv_or(y.nan, invalid));
  const Term* by_zero = mgr.make_bv_and(mgr.make_bv_not(x.zero), y.zero);
  const Term* not_nan = mgr.make_bv_not(nan);
  const Term* inf = mgr.make_bv_and(not_nan, mgr.make_bv_or(by_zero, x.inf));
  Unrounded value{nan, inf, sign, exp, mant};
  value.lead_limit = 1;  // the quotient has m + 4 significant bits of m + 5, or all of them
  const Term* rounded = enc_round(rm, fmt, value);

  const Term* finite_by_inf = mgr.make_bv_and(mgr.make_bv_not(inf), y.inf);
  const Term* of_zero = mgr.make_bv_and(x.zero, mgr.make_bv_not(y.zero));
  const Term* zero_cond = mgr.make_bv_and(not_nan, mgr.make_bv_or(finite_by_inf, of_zero));
  const Term* mask = mgr.make_bv_sign_extend(e + m, mgr.make_bv_not(zero_cond));
  const Term* zero_sign = mgr.make_bv_and(not_nan, sign);
  const Term* zero = mgr.make_bv_concat(zero_sign, bv(0, e + m));
  const Term* result = mgr.make_bv_or(mgr.make_bv_and(mask, rounded), zero);
  debug_track_term(sign, "div_sign");
  debug_track_term(inf, "div_inf");
  debug_track_term(nan, "div_nan");
  debug_track_term(zero_cond, "div_zero_cond");
  debug_track_term(rm, "div_arg0");
  debug_track_term(x.packed, "div_arg1");
  debug_track_term(y.packed, "div_arg2");
  debug_track_term(result, "div_result");
  return result;
}

std::size_t FpBvEncoder::enc_div_extension(format /*fmt*/) const {
  return 2;
}

const Term* FpBvEncoder::enc_div_significands(format fmt, const Operand& x, const Operand& y,
                                              const Term** exp) {
  TermManager& mgr = *dst_mgr;
  const std::size_t m = fmt.m;
  const std::size_t extension = enc_div_extension(fmt);
  const Term* ex = mgr.make_bv_sign_extend(extension, x.exp);
  const Term* ey = mgr.make_bv_sign_extend(extension, y.exp);
  const Term* mx = x.mant;
  const Term* my = y.mant;
  enc_normalization_shift(fmt, &ex, &mx, 0);
  enc_normalization_shift(fmt, &ey, &my, 0);
  debug_track_term(ex, "div_exp1_norm");
  debug_track_term(ey, "div_exp2_norm");
  debug_track_term(mx, "div_mant1_norm");
  debug_track_term(my, "div_mant2_norm");

  const Term* a = mgr.make_bv_concat(mx, bv(0, m + 4));
  const Term* b = mgr.make_bv_zero_extend(m + 4, my);
  debug_track_term(a, "div_mant1_pad");
  debug_track_term(b, "div_mant2_pad");
  const Term* q = mgr.make_bv_udiv(a, b);
  const Term* r = mgr.make_bv_urem(a, b);
  const Term* sticky = mgr.make_bv_not(mgr.make_bv_comp(r, bv(0, 2 * m + 5)));
  const Term* mant = mgr.make_bv_concat(mgr.make_bv_extract(m + 4, 0, q), sticky);
  debug_track_term(q, "div_div");
  debug_track_term(r, "div_rem");

  *exp = mgr.make_bv_sub(ex, ey);
  debug_track_term(mant, "div_mant");
  debug_track_term(ex, "div_exp1_ext");
  debug_track_term(ey, "div_exp2_ext");
  debug_track_term(*exp, "div_exp");
  return mant;
}

}  // namespace vorn::fp
