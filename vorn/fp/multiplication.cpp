// Multiplication: significands multiplied at double width, exponents added. The product of two
// normal significands has its leading one in one of the two top bits; the exponent is that of the
// topmost. Zeros, signs and overflow are left to rounding.
#include "vorn/fp/fp_bv_encoder.h"

namespace vorn::fp {

const Term* FpBvEncoder::encode_mul(const Term* t) {
  TermManager& mgr = *dst_mgr;
  format fmt{};
  src_mgr->is_fp_mul(t->get_symbol(), &fmt.e, &fmt.m);
  const auto [e, m] = fmt;
  const Term* rm = encoded_arg(t, 0);
  Operand x{};
  Operand y{};
  enc_unpack_operands(t, fmt, "mul_", &x, &y);

  const Term* wide_x = mgr.make_bv_zero_extend(m + 1, x.mant);
  const Term* mant = mgr.make_bv_mul(wide_x, mgr.make_bv_zero_extend(m + 1, y.mant));
  const Term* ex = mgr.make_bv_sign_extend(2, x.exp);
  const Term* ey = mgr.make_bv_sign_extend(2, y.exp);
  const Term* exp = mgr.make_bv_add(mgr.make_bv_add(ex, ey), bv(1, e + 2));
  debug_track_term(mant, "mul_mant");
  debug_track_term(exp, "mul_exp");

  const Term* sign = mgr.make_bv_not(mgr.make_bv_comp(x.sign, y.sign));
  const Term* inf = mgr.make_bv_or(x.inf, y.inf);
  const Term* zero_inf = mgr.make_bv_and(x.zero, y.inf);
  const Term* invalid = mgr.make_bv_or(zero_inf, mgr.make_bv_and(x.inf, y.zero));
  const Term* nan = mgr.make_bv_or(x.nan, mgr.make_bv_or(y.nan, invalid));
  const Term* result = enc_round(rm, fmt, {nan, inf, sign, exp, mant});
  debug_track_term(rm, "mul_arg0");
  debug_track_term(x.packed, "mul_arg1");
  debug_track_term(y.packed, "mul_arg2");
  debug_track_term(result, "mul_result");
  return result;
}

}  // namespace vorn::fp
