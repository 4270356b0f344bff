// Class tests, and negation, which is free in this representation: the sign bit flips, except that
// the negation of a NaN has sign 1, so that NaNs keep to their one pattern.
#include "vorn/fp/fp_bv_encoder.h"

namespace vorn::fp {

const Term* FpBvEncoder::encode_isnan(const Term* t) {
  format fmt{};
  src_mgr->is_fp_isnan(t->get_symbol(), &fmt.e, &fmt.m);
  const Term* nan = enc_is_nan(encoded_arg(t, 0), fmt);
  return dst_mgr->make_equal(nan, dst_mgr->make_bv_number(1, 1));
}

const Term* FpBvEncoder::encode_isinf(const Term* t) {
  format fmt{};
  src_mgr->is_fp_isinf(t->get_symbol(), &fmt.e, &fmt.m);
  const Term* inf = enc_is_inf(encoded_arg(t, 0), fmt);
  return dst_mgr->make_equal(inf, dst_mgr->make_bv_number(1, 1));
}

const Term* FpBvEncoder::encode_iszero(const Term* t) {
  format fmt{};
  src_mgr->is_fp_iszero(t->get_symbol(), &fmt.e, &fmt.m);
  const Term* zero = enc_is_zero(encoded_arg(t, 0), fmt);
  return dst_mgr->make_equal(zero, dst_mgr->make_bv_number(1, 1));
}

const Term* FpBvEncoder::encode_neg(const Term* t) {
  format fmt{};
  src_mgr->is_fp_neg(t->get_symbol(), &fmt.e, &fmt.m);
  const Term* x = encoded_arg(t, 0);
  const std::size_t w = fmt.e + fmt.m;
  const Term* s = dst_mgr->make_bv_extract(w, w, x);
  const Term* nan = enc_is_nan(x, fmt);
  const Term* sign = dst_mgr->make_bv_or(nan, dst_mgr->make_bv_not(s));
  const Term* rest = dst_mgr->make_bv_extract(w - 1, 0, x);
  return dst_mgr->make_bv_concat(sign, rest);
}

}  // namespace vorn::fp
