// Equality and order.
//
// Bit patterns of one sign are ordered as their magnitudes, because the exponent field lies above
// the significand: one unsigned comparison over the whole width decides them. What is left are the
// signs, the two zeros, which are equal, and NaN, which is unordered.
#include "vorn/fp/fp_bv_encoder.h"

namespace vorn::fp {

/// Equality of terms, not of numbers: of bit patterns, or of rounding-mode codes.
const Term* FpBvEncoder::encode_equality(const Term* t) {
  const auto encoding_of = [&](const Term* arg) {
    return cache.insert({arg, nullptr})->value.second;
  };
  const Term* a = encoding_of(t->get_arg(0));
  const Term* b = encoding_of(t->get_arg(1));
  return dst_mgr->make_equal(a, b);
}

const Term* FpBvEncoder::encode_fp_equal(const Term* t) {
  return enc_fp_comparison(t, FpComp::equal);
}

const Term* FpBvEncoder::encode_lt(const Term* t) {
  return enc_fp_comparison(t, FpComp::less_than);
}

const Term* FpBvEncoder::encode_le(const Term* t) {
  return enc_fp_comparison(t, FpComp::less_or_equal);
}

void FpBvEncoder::debug_track_comparison(const Term* /*t*/) {}

const Term* FpBvEncoder::enc_fp_comparison(const Term* t, FpComp kind) {
  if (debug) debug_track_comparison(t);
  TermManager& mgr = *dst_mgr;
  const Symbol* symbol = t->get_symbol();
  format fmt{};
  switch (kind) {
    case FpComp::less_than:
      src_mgr->is_fp_lt(symbol, &fmt.e, &fmt.m);
      break;
    case FpComp::less_or_equal:
      src_mgr->is_fp_le(symbol, &fmt.e, &fmt.m);
      break;
    case FpComp::equal:
      src_mgr->is_fp_equal(symbol, &fmt.e, &fmt.m);
      break;
  }
  const Term* a = encoded_arg(t, 0);
  const Term* b = encoded_arg(t, 1);
  const std::size_t w = fmt.e + fmt.m;
  const Term* one = mgr.make_bv_number(1, 1);

  const Term* nan_a = enc_is_nan(a, fmt);
  const Term* nan_b = enc_is_nan(b, fmt);
  const Term* nan = mgr.make_equal(mgr.make_bv_or(nan_a, nan_b), one);
  const Term* zero_a = enc_is_zero(a, fmt);
  const Term* zero_b = enc_is_zero(b, fmt);
  const Term* zeros = mgr.make_equal(mgr.make_bv_and(zero_a, zero_b), one);
  const Term* sign_a = mgr.make_bv_extract(w, w, a);
  const Term* sign_b = mgr.make_bv_extract(w, w, b);
  const Term* neg_a = mgr.make_equal(sign_a, one);
  const Term* same = mgr.make_equal(a, b);
  if (kind == FpComp::equal) {
    const Term* equal = mgr.make_or(same, zeros);
    return mgr.make_and(equal, mgr.make_not(nan));
  }

  const Term* diff = mgr.make_not(mgr.make_equal(sign_a, sign_b));
  const Term* ult = mgr.make_bv_ult(a, b);
  const Term* both_neg = mgr.make_equal(mgr.make_bv_and(sign_a, sign_b), one);
  // Of two negative numbers the one of larger magnitude is the smaller.
  const Term* mag = mgr.make_not(mgr.make_iff(ult, both_neg));
  const Term* below = enc_make_ite(diff, neg_a, mag);
  // `below` also holds for -0 against +0 and for equal negative numbers.
  if (kind == FpComp::less_than) {
    const Term* not_same = mgr.make_not(same);
    const Term* not_zeros = mgr.make_not(zeros);
    const Term* ordered = mgr.make_and(not_zeros, mgr.make_not(nan));
    return mgr.make_and(below, mgr.make_and(not_same, ordered));
  }
  const Term* not_nan = mgr.make_not(nan);
  const Term* equal = mgr.make_or(zeros, same);
  return mgr.make_and(not_nan, mgr.make_or(below, equal));
}

}  // namespace vorn::fp
