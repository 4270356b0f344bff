// Square root: the operand is normalised, its exponent made even, and the root of the significand
// is found digit by digit, as on paper. The m + 2 digits are one more than the format keeps, and
// the remainder is a sticky bit.
#include <cstdint>

#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::fp {

const Term* IeeeBvEncoder::encode_sqrt(const Term* t) {
  TermManager& mgr = *dst_mgr;
  const format fmt = arg_format(t, 1);
  const std::size_t m = fmt.m;
  const Term* rm = encoded_arg(t, 0);
  const Operand x = enc_unpack(t, 1);
  debug_track_term(rm, "sqrt_arg0");
  enc_track_operand("sqrt_", 1, x);
  const auto [exp, mant] = enc_normalise(fmt, x);
  debug_track_term(exp, "sqrt_exp1_norm");
  debug_track_term(mant, "sqrt_mant1_norm");
  const std::size_t E = width_of(exp);
  const Term* odd = mgr.make_equal(mgr.make_bv_extract(0, 0, exp), bv(1, 1));
  const Term* once = mgr.make_bv_concat(bv(0, 1), mant);
  const Term* twice = mgr.make_bv_concat(mant, bv(0, 1));
  const Term* even = enc_make_term_ite(odd, twice, once);
  const Term* inexact = nullptr;
  const Term* root = enc_square_root(mgr.make_bv_concat(even, bv(0, m + 2)), &inexact);
  const Term* half = mgr.make_bv_sign_extend(1, mgr.make_bv_extract(E - 1, 1, exp));
  debug_track_term(odd, "sqrt_odd");
  debug_track_term(even, "sqrt_radicand");
  debug_track_term(half, "sqrt_exp");
  debug_track_term(root, "sqrt_root");
  debug_track_term(inexact, "sqrt_sticky_bit");

  const Term* negative = mgr.make_bv_and(x.sign, mgr.make_bv_not(x.zero));
  const Term* nan = mgr.make_bv_or(x.nan, negative);
  debug_track_term(nan, "sqrt_nan");
  // Roots lie nearer to one than their squares, so only the subnormals of formats with far more
  // digits than exponents have roots below the normal numbers.
  const bool may_underflow = fmt.e < 63 && m + 2 > (std::uint64_t{1} << (fmt.e - 1));
  const Term* digits = mgr.make_bv_concat(root, inexact);
  const Term* result = enc_round(rm, fmt, {nan, x.inf, x.sign, half, digits, may_underflow, 1});
  debug_track_term(result, "sqrt_result");
  return result;
}

IeeeBvEncoder::Normalised IeeeBvEncoder::enc_normalise(format fmt, const Operand& x) {
  const Term* exp = dst_mgr->make_bv_sign_extend(enc_div_extension(fmt), x.exp);
  const Term* mant = x.mant;
  enc_normalization_shift_log(fmt, &exp, &mant);
  return {exp, mant};
}

const Term* IeeeBvEncoder::enc_square_root(const Term* radicand, const Term** inexact) {
  TermManager& mgr = *dst_mgr;
  const std::size_t n = width_of(radicand) / 2;
  const Term* root = nullptr;  // i digits
  const Term* rest = nullptr;  // at most twice the root: i + 1 bits
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t low = 2 * (n - i) - 2;
    const Term* next = mgr.make_bv_extract(low + 1, low, radicand);
    // The next digit is 1 if (2 root + 1)^2 - (2 root)^2 = 4 root + 1 fits into what is left.
    const Term* left = i == 0 ? next : mgr.make_bv_concat(rest, next);
    const Term* step = i == 0 ? bv(1, 2) : mgr.make_bv_concat(root, bv(1, 2));
    const std::size_t D = width_of(left) + 1;
    const Term* difference = mgr.make_bv_sub(mgr.make_bv_zero_extend(1, left),
                                             mgr.make_bv_zero_extend(D - width_of(step), step));
    const Term* borrow = mgr.make_bv_extract(D - 1, D - 1, difference);
    const Term* digit = mgr.make_bv_not(borrow);
    rest = enc_make_term_ite(mgr.make_equal(borrow, bv(1, 1)), mgr.make_bv_extract(i + 1, 0, left),
                             mgr.make_bv_extract(i + 1, 0, difference));
    root = i == 0 ? digit : mgr.make_bv_concat(root, digit);
  }
  *inexact = enc_any(rest);
  return root;
}

}  // namespace vorn::fp
