// Exact rounding.
//
// The significand is shifted so that its top bit is the hidden bit of the result: left over its
// leading zeros, but no further than the smallest normal exponent; right, with a sticky bit, where
// the exponent lies below that. Exponent field and fraction then stand side by side as one integer,
// and rounding away from zero adds one to it: a carry out of the fraction makes a subnormal normal,
// raises the exponent, or arrives at infinity, all by the order of IEEE patterns. What overflows
// before rounding is infinity or the largest finite magnitude, as mode and sign have it.
#include <algorithm>
#include <bit>

#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::fp {

const Term* IeeeBvEncoder::enc_round(const Term* rm, format fmt, const Unrounded& value) {
  TermManager& mgr = *dst_mgr;
  const auto [e, m] = fmt;
  if (value.is_field && is_debugging()) {
    const Term* bias = mgr.make_bv_number(fmt.bias(), width_of(value.exp));
    debug_track_term(mgr.make_bv_sub(value.exp, bias), "scale_exp_before");
  } else if (!value.is_field) {
    debug_track_term(value.exp, "scale_exp_before");
  }
  debug_track_term(value.mant, "scale_mant_before");
  const auto [mant, field] = enc_scale(fmt, value);
  debug_track_term(rm, "round_rounding");
  const std::size_t W = width_of(mant);
  const std::size_t x = W - (m + 1);  // bits below the kept ones, at least 2

  const Term* sticky = enc_any(mgr.make_bv_extract(x - 2, 0, mant));
  const Term* round = mgr.make_bv_extract(x - 1, x - 1, mant);
  const Term* least = mgr.make_bv_extract(x, x, mant);
  debug_track_term(sticky, "round_sticky_bit");
  debug_track_term(round, "round_rounding_bit");
  debug_track_term(least, "round_rounding_least");
  const auto [increment, correction] = enc_select_rounding(rm, value.sign, round, least, sticky);
  debug_track_term(increment, "round_increment");
  debug_track_term(correction, "round_correction_bit");

  const Term* hidden = mgr.make_bv_extract(W - 1, W - 1, mant);
  const Term* max = mgr.make_bv_number(fmt.max_exponent(), width_of(field));
  const Term* one_bit = bv(1, 1);
  const Term* no_bit = bv(0, 1);
  const Term* too_large = enc_make_term_ite(mgr.make_bv_slt(field, max), no_bit, one_bit);
  const Term* overflow = mgr.make_bv_and(hidden, too_large);
  debug_track_term(overflow, "exp_exponent_too_large");

  const Term* mask = enc_mask(hidden, e);
  const Term* kept_field = mgr.make_bv_and(mask, mgr.make_bv_extract(e - 1, 0, field));
  const Term* kept = mgr.make_bv_concat(kept_field, mgr.make_bv_extract(W - 2, x, mant));
  const Term* body = mgr.make_bv_add(kept, mgr.make_bv_zero_extend(e + m - 1, increment));
  debug_track_term(kept, "round_kept");
  debug_track_term(body, "round_body");
  const Term* saturates = mgr.make_bv_and(overflow, correction);
  const Term* result = enc_assemble(fmt, value, overflow, saturates, body);
  debug_track_term(result, "round_ret");
  return result;
}

IeeeBvEncoder::Scaled IeeeBvEncoder::enc_scale(format fmt, const Unrounded& value) {
  TermManager& mgr = *dst_mgr;
  const auto [e, m] = fmt;
  // Below the m + 1 kept bits there is room for a rounding bit and a sticky bit.
  const std::size_t given = width_of(value.mant);
  const std::size_t W = std::max<std::size_t>(given, m + 3);
  const Term* mant = W == given ? value.mant : mgr.make_bv_concat(value.mant, bv(0, W - given));

  const std::size_t lead = value.lead_limit == 0 ? given : std::min(value.lead_limit, given);
  const Term* lz = enc_leading_zeros(mgr.make_bv_extract(W - 1, W - lead, mant));
  if (value.is_field) return enc_scale_field(mant, lz, value);
  const std::size_t S = width_of(lz);
  const std::size_t given_e = width_of(value.exp);
  const std::size_t E = std::max({given_e, static_cast<std::size_t>(e), S}) + 2;

  // d is the distance above the smallest normal exponent.
  const Term* exp = mgr.make_bv_sign_extend(E - given_e, value.exp);
  const Term* d = mgr.make_bv_sub(exp, bv_signed(fmt.bias().neg() + 1, E));
  const Term* zero = bv(0, E);
  const Term* below = value.may_underflow ? mgr.make_bv_slt(d, zero) : mgr.make_false();
  const Term* wide_lz = mgr.make_bv_zero_extend(E - S, lz);
  const Term* near = mgr.make_bv_slt(d, wide_lz);
  debug_track_term(lz, "scale_leading_zeros");
  debug_track_term(d, "scale_distance");
  debug_track_term(below, "scale_below");
  const Term* capped = enc_make_term_ite(near, mgr.make_bv_extract(S - 1, 0, d), lz);
  const Term* left = enc_make_term_ite(below, bv(0, S), capped);
  mant = mgr.make_bv_lshl(mant, mgr.make_bv_zero_extend(W - S, left));
  debug_track_term(left, "scale_left");
  if (below != mgr.make_false()) {
    const Term* right = enc_make_term_ite(below, mgr.make_bv_neg(d), zero);
    mant = enc_shift_right_sticky(mant, right);
    debug_track_term(right, "scale_right");
  }
  const Term* moved = mgr.make_bv_sub(d, mgr.make_bv_zero_extend(E - S, left));
  const Term* field = mgr.make_bv_add(moved, bv(1, E));
  debug_track_term(mant, "scale_mant");
  debug_track_term(field, "scale_field");
  return {mant, field};
}

/// The shift is the number of leading zeros, or one less than the field where that is not more: at
/// the field 1 it ends.
IeeeBvEncoder::Scaled IeeeBvEncoder::enc_scale_field(const Term* mant, const Term* lz,
                                                     const Unrounded& value) {
  TermManager& mgr = *dst_mgr;
  const std::size_t W = width_of(mant);
  const std::size_t S = width_of(lz);
  const std::size_t given = width_of(value.exp);
  const std::size_t E = std::max(given, S);
  const Term* field = mgr.make_bv_zero_extend(E - given, value.exp);
  const Term* near = mgr.make_bv_ule(field, mgr.make_bv_zero_extend(E - S, lz));
  const Term* to_first = mgr.make_bv_sub(mgr.make_bv_extract(S - 1, 0, field), bv(1, S));
  const Term* left = enc_make_term_ite(near, to_first, lz);
  debug_track_term(lz, "scale_leading_zeros");
  if (is_debugging()) {
    debug_track_term(mgr.make_bv_sub(field, bv(1, E)), "scale_distance");
    debug_track_term(mgr.make_false(), "scale_below");
  }
  mant = mgr.make_bv_lshl(mant, mgr.make_bv_zero_extend(W - S, left));
  debug_track_term(left, "scale_left");
  field = mgr.make_bv_sub(field, mgr.make_bv_zero_extend(E - S, left));
  field = mgr.make_bv_zero_extend(1, field);  // signed, as enc_round has it
  debug_track_term(mant, "scale_mant");
  debug_track_term(field, "scale_field");
  return {mant, field};
}

const Term* IeeeBvEncoder::enc_assemble(format fmt, const Unrounded& value, const Term* overflow,
                                        const Term* saturates, const Term* body) {
  TermManager& mgr = *dst_mgr;
  const auto [e, m] = fmt;
  const Term* special = mgr.make_bv_or(value.nan, value.inf);
  const Term* finite_max = mgr.make_bv_and(saturates, mgr.make_bv_not(special));
  // All ones but for the last bit of the field of the largest finite number, then its fraction; a
  // NaN has fraction 0...01, an infinity 0...0.
  const Term* ones = enc_mask(bv(1, 1), e - 1);
  const Term* field = mgr.make_bv_concat(ones, mgr.make_bv_not(finite_max));
  const Term* last = mgr.make_bv_or(finite_max, value.nan);
  const Term* fraction = m == 1 ? last : mgr.make_bv_concat(enc_mask(finite_max, m - 1), last);
  const Term* at_edge = mgr.make_bv_or(special, overflow);
  const Term* edge = mgr.make_equal(at_edge, bv(1, 1));
  const Term* edge_value = mgr.make_bv_concat(field, fraction);
  const Term* magnitude = enc_make_term_ite(edge, edge_value, body);
  const Term* sign = mgr.make_bv_or(value.nan, value.sign);
  debug_track_term(value.nan, "pack_nan");
  debug_track_term(value.inf, "pack_inf");
  debug_track_term(finite_max, "pack_finite_max");
  debug_track_term(sign, "pack_res_sign");
  debug_track_term(magnitude, "pack_magnitude");
  return mgr.make_bv_concat(sign, magnitude);
}

FpBvEncoder::RoundingChoice IeeeBvEncoder::enc_select_rounding(const Term* rm, const Term* sign,
                                                               const Term* round, const Term* least,
                                                               const Term* sticky) {
  if (rm == rm_away_bv) return {round, bv(0, 1)};
  const RoundingChoice other = FpBvEncoder::enc_select_rounding(rm, sign, round, least, sticky);
  if (dst_mgr->get_number(rm->get_symbol()) != nullptr) return other;
  const Term* away = dst_mgr->make_equal(rm, rm_away_bv);
  const Term* increment = enc_make_term_ite(away, round, other.increment);
  return {increment, enc_make_term_ite(away, bv(0, 1), other.correction)};
}

// Shifts and counts -----------------------------------------------------------------------------

const Term* IeeeBvEncoder::enc_leading_zeros(const Term* t) {
  const std::size_t W = width_of(t);
  if (W == 1) return dst_mgr->make_bv_not(t);
  // Ones below do not change the count, and stop it where t is zero.
  const std::size_t P = std::bit_ceil(W);
  return enc_count_zeros(P == W ? t : dst_mgr->make_bv_concat(t, enc_mask(bv(1, 1), P - W))).count;
}

/// The count of a half decides, the upper one unless it is all zero; its number is the top bit.
IeeeBvEncoder::ZeroCount IeeeBvEncoder::enc_count_zeros(const Term* t) {
  TermManager& mgr = *dst_mgr;
  const std::size_t half = width_of(t) / 2;
  const Term* high = mgr.make_bv_extract(2 * half - 1, half, t);
  const Term* low = mgr.make_bv_extract(half - 1, 0, t);
  if (half == 1) {
    const Term* no_high = mgr.make_bv_not(high);
    const Term* no_low = mgr.make_bv_not(low);
    return {mgr.make_bv_and(no_high, no_low), no_high};
  }
  const ZeroCount h = enc_count_zeros(high);
  const ZeroCount l = enc_count_zeros(low);
  const Term* rest = enc_make_term_ite(mgr.make_equal(h.all, bv(1, 1)), l.count, h.count);
  const Term* all = mgr.make_bv_and(h.all, l.all);
  return {all, mgr.make_bv_concat(h.all, rest)};
}

const Term* IeeeBvEncoder::enc_shift_right_sticky(const Term* t, const Term* amount) {
  TermManager& mgr = *dst_mgr;
  const std::size_t W = width_of(t);
  const std::size_t A = width_of(amount);
  const std::size_t steps = std::min(A, static_cast<std::size_t>(std::bit_width(W)));
  const Term* sticky = bv(0, 1);
  if (steps < A) {
    // All steps together move everything out, as does any distance beyond them.
    const Term* far = enc_any(mgr.make_bv_extract(A - 1, steps, amount));
    amount = mgr.make_bv_or(mgr.make_bv_extract(steps - 1, 0, amount), enc_mask(far, steps));
  }
  for (std::size_t j = 0; j < steps; ++j) {
    const std::size_t s = std::size_t{1} << j;  // W at most
    const Term* bit = mgr.make_bv_extract(j, j, amount);
    const Term* lost = enc_any(mgr.make_bv_extract(s - 1, 0, t));
    sticky = mgr.make_bv_or(sticky, mgr.make_bv_and(bit, lost));
    // The last step of a width that is a power of two is that width.
    const Term* shifted =
        s == W ? bv(0, W) : mgr.make_bv_zero_extend(s, mgr.make_bv_extract(W - 1, s, t));
    t = enc_make_term_ite(mgr.make_equal(bit, bv(1, 1)), shifted, t);
  }
  return mgr.make_bv_or(t, mgr.make_bv_zero_extend(W - 1, sticky));
}

const Term* IeeeBvEncoder::enc_any(const Term* t) {
  return dst_mgr->make_bv_not(dst_mgr->make_bv_comp(t, bv(0, width_of(t))));
}

const Term* IeeeBvEncoder::enc_mask(const Term* bit, std::size_t n) {
  return dst_mgr->make_bv_sign_extend(n - 1, bit);
}

}  // namespace vorn::fp
