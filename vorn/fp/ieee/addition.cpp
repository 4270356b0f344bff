// Addition and subtraction.
//
// The operands are ordered by magnitude, which on patterns is one comparison of integers, so that
// the difference of the significands is never negative: one adder makes sum and difference, and
// nothing has to be negated afterwards.
#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::fp {

FpBvEncoder::Addends IeeeBvEncoder::enc_add_unpack(format fmt, const Term* x, const Term* y) {
  TermManager& mgr = *dst_mgr;
  const auto [e, m] = fmt;
  const std::size_t w = e + m;
  Addends in{};
  in.sx = mgr.make_bv_extract(w, w, x);
  in.sy = mgr.make_bv_extract(w, w, y);
  in.samesign = mgr.make_bv_comp(in.sx, in.sy);
  const Term* x_magnitude = mgr.make_bv_extract(w - 1, 0, x);
  const Term* y_magnitude = mgr.make_bv_extract(w - 1, 0, y);
  in.x_bigger = mgr.make_bv_ule(y_magnitude, x_magnitude);
  const Term* big = enc_make_term_ite(in.x_bigger, x_magnitude, y_magnitude);
  const Term* small = enc_make_term_ite(in.x_bigger, y_magnitude, x_magnitude);

  // Of infinities and NaNs, which have no significand, nothing of this is used.
  const Term* big_field = enc_get_exponent(big, fmt, false);
  const Term* small_field = enc_get_exponent(small, fmt, false);
  const Term* big_hidden = enc_any(big_field);
  const Term* small_hidden = enc_any(small_field);
  const auto raised = [&](const Term* field, const Term* hidden) {
    // Subnormals have the exponent of the field 1.
    return mgr.make_bv_or(field,
                          mgr.make_bv_zero_extend(width_of(field) - 1, mgr.make_bv_not(hidden)));
  };
  in.exp_bigger = raised(big_field, big_hidden);
  in.has_field = true;
  in.distance = mgr.make_bv_sub(in.exp_bigger, raised(small_field, small_hidden));
  in.big = mgr.make_bv_concat(big_hidden, mgr.make_bv_extract(m - 1, 0, big));
  in.small = mgr.make_bv_concat(small_hidden, mgr.make_bv_extract(m - 1, 0, small));
  if (is_debugging()) {
    debug_track_term(enc_get_exponent(x, fmt, true), "add_exp1");
    debug_track_term(enc_get_exponent(y, fmt, true), "add_exp2");
    debug_track_term(enc_get_mantissa(x, fmt, true), "add_mant1");
    debug_track_term(enc_get_mantissa(y, fmt, true), "add_mant2");
    const Term* bias = mgr.make_bv_number(fmt.bias(), e);
    debug_track_term(mgr.make_bv_sub(in.exp_bigger, bias), "add_exp_bigger");
    debug_track_term(enc_get_exponent(x, fmt, false), "add_exp1_biased");
    debug_track_term(enc_get_exponent(y, fmt, false), "add_exp2_biased");
  }
  return in;
}

/// Fields need no bias taken off and put on again.
const Term* IeeeBvEncoder::enc_add_exponent(format fmt, const Addends& in) {
  TermManager& mgr = *dst_mgr;
  const std::size_t e = fmt.e;
  const Term* field = mgr.make_bv_add(mgr.make_bv_zero_extend(1, in.exp_bigger), bv(2, e + 1));
  if (is_debugging()) {
    const Term* bias = mgr.make_bv_number(fmt.bias(), e + 1);
    debug_track_term(mgr.make_bv_sub(field, bias), "add_res_exp");
  }
  return field;
}

const Term* IeeeBvEncoder::enc_add_significands(format fmt, const Addends& in,
                                                const Term** res_sign) {
  TermManager& mgr = *dst_mgr;
  const std::size_t W = fmt.m + 6;
  const Term* sticky = nullptr;
  const Term* aligned = enc_add_align(fmt, in.small, in.distance, &sticky);
  const Term* a = mgr.make_bv_zero_extend(2, mgr.make_bv_concat(in.big, bv(0, 3)));
  const Term* b = mgr.make_bv_zero_extend(2, aligned);
  // A difference is the sum with the complement and one, which is what comes in as the carry of a
  // further bit below.
  const Term* differ = mgr.make_bv_not(in.samesign);
  const Term* addend = mgr.make_bv_xor(b, enc_mask(differ, W));
  const Term* sum =
      mgr.make_bv_add(mgr.make_bv_concat(a, bv(1, 1)), mgr.make_bv_concat(addend, differ));
  const Term* addres = mgr.make_bv_extract(W, 1, sum);
  *res_sign = bv(0, 1);
  debug_track_term(addres, "add_addres");
  debug_track_term(a, "add_mant1_ext");
  debug_track_term(b, "add_mant2_ext");
  debug_track_term(sticky, "add_sticky_bit");
  debug_track_term(in.samesign, "add_samesign");
  debug_track_term(*res_sign, "add_mant_res_sign");
  // The alignment keeps the order of the significands, so that the top bit is never set.
  const Term* magnitude = mgr.make_bv_concat(bv(0, 1), mgr.make_bv_extract(W - 2, 0, addres));
  debug_track_term(magnitude, "add_mant_res");
  return magnitude;
}

const Term* IeeeBvEncoder::enc_add_align(format /*fmt*/, const Term* small, const Term* dist0,
                                         const Term** sticky) {
  debug_track_term(dist0, "add_distance");
  const Term* aligned = enc_shift_right_sticky(dst_mgr->make_bv_concat(small, bv(0, 3)), dist0);
  *sticky = dst_mgr->make_bv_extract(0, 0, aligned);
  debug_track_term(aligned, "add_aligned");
  return aligned;
}

/// A sum is zero only if it is exact. Of zeros of one sign it keeps that sign, which is the sign it
/// was rounded with; otherwise the rounding mode decides (IEEE 754-2019, clause 6.3).
const Term* IeeeBvEncoder::enc_add_zero_result(const Term* rm, format fmt, const Term* x,
                                               const Term* y, const Term* rounded) {
  TermManager& mgr = *dst_mgr;
  const std::size_t w = fmt.e + fmt.m;
  const Term* absres = mgr.make_bv_extract(w - 1, 0, rounded);
  debug_track_term(absres, "add_absres");
  const Term* sx = mgr.make_bv_extract(w, w, x);
  const Term* sy = mgr.make_bv_extract(w, w, y);
  const Term* opposite = mgr.make_bv_not(mgr.make_bv_comp(sx, sy));
  const Term* zero = enc_is_zero(rounded, fmt);
  const Term* cancelled = mgr.make_bv_and(zero, opposite);
  const Term* negative = mgr.make_bv_comp(rm, rm_minus_inf_bv);
  const Term* rounded_sign = mgr.make_bv_extract(w, w, rounded);
  const Term* sign = enc_make_ite(cancelled, negative, rounded_sign);
  debug_track_term(cancelled, "add_cancelled");
  debug_track_term(sign, "add_sign");
  return mgr.make_bv_concat(sign, absres);
}

}  // namespace vorn::fp
