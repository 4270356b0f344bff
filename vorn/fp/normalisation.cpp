// Normalisation: the leading one of a significand is brought to its top, and the exponent lowered
// by as many places.
//
// There are three strategies: a shift known at encoding time for a constant, a short chain of tests
// where the caller knows a bound on the leading zeros, and a bisection over powers of two for the
// rest. The exact encoder uses the first for the operands of a divider, never asks for the second
// and replaces the third.
#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/terms/bv_number.h"

namespace vorn::fp {

void FpBvEncoder::enc_normalization_shift(format fmt, const Term** exp, const Term** mant,
                                          std::uint64_t max_shift) {
  if (dst_mgr->get_number((*mant)->get_symbol()) != nullptr) {
    return enc_normalization_shift_const(fmt, exp, mant, max_shift);
  }
  if (max_shift != 0) return enc_normalization_shift_linear(fmt, exp, mant, max_shift);
  enc_normalization_shift_log(fmt, exp, mant);
}

void FpBvEncoder::enc_normalization_shift_const(format /*fmt*/, const Term** exp, const Term** mant,
                                                std::uint64_t max_shift) {
  const QNumber v = *dst_mgr->get_number((*mant)->get_symbol());
  const std::size_t W = width_of(*mant);
  const std::size_t E = width_of(*exp);
  const std::uint64_t limit = max_shift == 0 ? W : std::min<std::uint64_t>(max_shift, W);
  std::uint64_t k = 0;
  while (k < limit && !v.test_bit(W - 1 - k))
    ++k;
  // No leading one within the limit: there is no partial shift.
  if (k == limit) return;
  const QNumber shift(static_cast<std::int64_t>(k));
  *mant = dst_mgr->make_bv_lshl(*mant, dst_mgr->make_bv_number(shift, W));
  *exp = dst_mgr->make_bv_add(*exp, bv_signed(shift.neg(), E));
}

void FpBvEncoder::enc_normalization_shift_linear(format /*fmt*/, const Term** exp,
                                                 const Term** mant, std::uint64_t max_shift) {
  TermManager& mgr = *dst_mgr;
  debug_track_term(*exp, "norm_shift_exp");
  debug_track_term(*mant, "norm_shift_mant");
  const std::size_t W = width_of(*mant);
  const std::size_t E = width_of(*exp);
  const std::uint64_t limit = max_shift == 0 ? W : std::min<std::uint64_t>(max_shift, W);
  // At most one test holds: exactly i leading zeros, then a one.
  const Term* count = bv(0, E);
  for (std::uint64_t i = 0; i < limit; ++i) {
    const Term* top = mgr.make_bv_extract(W - 1, W - 1 - i, *mant);
    const Term* hit = mgr.make_bv_comp(top, bv(1, i + 1));
    const Term* mask = mgr.make_bv_sign_extend(E - 1, hit);
    count = mgr.make_bv_or(count, mgr.make_bv_and(mask, bv(i, E)));
  }
  *mant = mgr.make_bv_lshl(*mant, mgr.make_bv_zero_extend(W - E, count));
  *exp = mgr.make_bv_sub(*exp, count);
}

void FpBvEncoder::enc_normalization_shift_log(format /*fmt*/, const Term** exp, const Term** mant) {
  TermManager& mgr = *dst_mgr;
  debug_track_term(*exp, "norm_shift_exp");
  debug_track_term(*mant, "norm_shift_mant");
  const std::size_t W = width_of(*mant);
  const std::size_t E = width_of(*exp);
  const auto S = static_cast<std::size_t>(std::bit_width(W));
  const QNumber power = BVNumber::power_of_two(S);
  std::int64_t word = 0;
  power.get_int64(&word);
  const auto P = static_cast<std::size_t>(word);  // above W

  // Step j looks for a set bit among the positions 2^j to 2^(j+1) - 1.
  std::vector<const Term*> steps;
  std::vector<const Term*> masks;
  for (std::size_t j = 0; j < S; ++j) {
    const std::size_t s = std::size_t{1} << j;
    steps.push_back(bv(s, P));
    const Term* ones = mgr.make_bv_sign_extend(s - 1, bv(1, 1));
    const Term* zeros = mgr.make_bv_zero_extend(s - 1, bv(0, 1));
    masks.push_back(mgr.make_bv_zero_extend(P - 2 * s, mgr.make_bv_concat(ones, zeros)));
  }

  const Term* v = mgr.make_bv_zero_extend(P - W, *mant);
  const Term* r = bv(0, P);  // in the end the index of the leading one
  for (std::size_t j = S; j-- > 0;) {
    const Term* t = mgr.make_bv_and(v, masks[j]);
    const Term* hit = mgr.make_bv_not(mgr.make_bv_comp(t, bv(0, P)));
    const Term* d = mgr.make_bv_and(steps[j], mgr.make_bv_sign_extend(P - 1, hit));
    v = mgr.make_bv_lshr(v, d);
    r = mgr.make_bv_or(r, d);
  }

  const Term* lz = mgr.make_bv_sub(bv(W - 1, P), r);  // W - 1 for a zero significand
  debug_track_term(lz, "enc_norm_log_shift");
  debug_track_term(*mant, "enc_norm_log_mant");
  *mant = mgr.make_bv_lshl(*mant, mgr.make_bv_extract(W - 1, 0, lz));
  *exp = mgr.make_bv_sub(*exp, mgr.make_bv_extract(E - 1, 0, lz));
}

}  // namespace vorn::fp
