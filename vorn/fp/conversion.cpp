// Conversions into a floating-point format: from another format and from integers.
//
// A cast that widens both fields is exact and goes straight to packing. An integer of w bits is a
// significand whose top bit has the weight 2^(w-1); the rest is rounding.
#include <algorithm>
#include <bit>

#include "vorn/fp/fp_bv_encoder.h"

namespace vorn::fp {
namespace {

/// Width in which w - 1 is a non-negative signed number, at least 2.
std::size_t exponent_width(std::size_t w) {
  return std::max<std::size_t>(2, 1 + static_cast<std::size_t>(std::bit_width(w - 1)));
}

}  // namespace

const Term* FpBvEncoder::encode_cast(const Term* t) {
  TermManager& mgr = *dst_mgr;
  format from{};
  format to{};
  src_mgr->is_fp_cast(t->get_symbol(), &from.e, &from.m, &to.e, &to.m);
  const std::size_t w = from.e + from.m;
  const Term* rm = encoded_arg(t, 0);
  const Term* x = encoded_arg(t, 1);
  const Term* exp = enc_get_exponent(x, from, true);
  const Term* sign = mgr.make_bv_extract(w, w, x);
  const Term* mant = enc_get_mantissa(x, from, true);
  const Term* inf = enc_is_inf(x, from);
  const Term* nan = enc_is_nan(x, from);
  debug_track_term(exp, "cast_exp1");
  debug_track_term(sign, "cast_sign1");
  debug_track_term(mant, "cast_mant1");
  debug_track_term(inf, "cast_inf1");
  debug_track_term(nan, "cast_nan1");

  const Unrounded value{nan, inf, sign, exp, mant, to.e < from.e};
  const Term* result = enc_cast_finish(rm, from, to, value);
  debug_track_term(rm, "cast_arg0");
  debug_track_term(x, "cast_arg1");
  debug_track_term(result, "cast_result");
  return result;
}

const Term* FpBvEncoder::enc_cast_finish(const Term* rm, format from, format to,
                                         const Unrounded& value) {
  if (to.e < from.e || to.m < from.m) return enc_round(rm, to, value);
  const Term* mant = value.mant;
  if (to.m > from.m) mant = dst_mgr->make_bv_concat(mant, bv(0, to.m - from.m));
  const Term* exp = dst_mgr->make_bv_sign_extend(to.e - from.e, value.exp);
  return enc_pack_and_bias(to, value.nan, value.inf, value.sign, exp, mant, nullptr);
}

const Term* FpBvEncoder::encode_from_sbv(const Term* t) {
  TermManager& mgr = *dst_mgr;
  std::size_t w = 0;
  format fmt{};
  src_mgr->is_fp_from_sbv(t->get_symbol(), &w, &fmt.e, &fmt.m);
  const Term* rm = encoded_arg(t, 0);
  const Term* v = encoded_arg(t, 1);
  const Term* sign = mgr.make_bv_extract(w - 1, w - 1, v);
  const Term* positive = mgr.make_equal(sign, bv(0, 1));
  // The most negative integer keeps its pattern, which read as unsigned is its magnitude.
  const Term* mag = enc_make_term_ite(positive, v, mgr.make_bv_neg(v));
  const Term* exp = bv(w - 1, exponent_width(w));
  const Term* z = bv(0, 1);
  return enc_round(rm, fmt, {z, z, sign, exp, mag});
}

const Term* FpBvEncoder::encode_from_ubv(const Term* t) {
  std::size_t w = 0;
  format fmt{};
  src_mgr->is_fp_from_ubv(t->get_symbol(), &w, &fmt.e, &fmt.m);
  const Term* rm = encoded_arg(t, 0);
  const Term* v = encoded_arg(t, 1);
  const Term* exp = bv(w - 1, exponent_width(w));
  const Term* z = bv(0, 1);
  return enc_round(rm, fmt, {z, z, z, exp, v});
}

}  // namespace vorn::fp
