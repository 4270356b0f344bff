// Numbers as bit-vector values.
//
// A bit-vector of width w is the non-negative integer that its bits spell, below 2^w. These
// functions are the arithmetic of such values: what the term manager folds constants with. Widths
// up to 62 bits stay in machine words.
#ifndef VORN_TERMS_BV_NUMBER_H
#define VORN_TERMS_BV_NUMBER_H

#include <cstdint>

#include "vorn/terms/qnumber.h"
#include "vorn/utils/export.h"

/// Operands and results are integers in [0, 2^width) unless stated; `width` is in bits.
namespace vorn::BVNumber {

/// Stores 2^n in `out`.
VORN_EXPORT void pow2(std::uint64_t n, QNumber* out);

/// Stores in `out` the unsigned value of `width` bits whose two's-complement reading is `x`:
/// x itself when it is not negative (it is not reduced), x + 2^width otherwise.
VORN_EXPORT void twos_complement(const QNumber& x, std::uint64_t width, QNumber* out);

/// 2^n.
VORN_EXPORT QNumber power_of_two(std::uint64_t n);
/// x modulo 2^width, for any integer x.
VORN_EXPORT QNumber modulo(const QNumber& x, std::uint64_t width);
/// 2^width - 1.
VORN_EXPORT QNumber all_ones(std::uint64_t width);
/// The two's-complement reading of x, in [-2^(width-1), 2^(width-1)).
VORN_EXPORT QNumber to_signed(const QNumber& x, std::uint64_t width);
/// Number of significant bits: 0 for 0, else floor(log2 x) + 1.
VORN_EXPORT std::uint64_t bit_length(const QNumber& x);

/// The operation on the bits of a and b, in as many bits.
VORN_EXPORT QNumber bv_not(const QNumber& a, std::uint64_t width);
VORN_EXPORT QNumber bv_neg(const QNumber& a, std::uint64_t width);
VORN_EXPORT QNumber bv_and(const QNumber& a, const QNumber& b);
VORN_EXPORT QNumber bv_or(const QNumber& a, const QNumber& b);
VORN_EXPORT QNumber bv_xor(const QNumber& a, const QNumber& b);
VORN_EXPORT QNumber bv_add(const QNumber& a, const QNumber& b, std::uint64_t width);
VORN_EXPORT QNumber bv_sub(const QNumber& a, const QNumber& b, std::uint64_t width);
VORN_EXPORT QNumber bv_mul(const QNumber& a, const QNumber& b, std::uint64_t width);
/// All ones when b is zero (SMT-LIB FixedSizeBitVectors).
VORN_EXPORT QNumber bv_udiv(const QNumber& a, const QNumber& b, std::uint64_t width);
/// a when b is zero.
VORN_EXPORT QNumber bv_urem(const QNumber& a, const QNumber& b);
/// Signed quotient, truncated toward zero; by zero: 1 for negative a, else all ones.
VORN_EXPORT QNumber bv_sdiv(const QNumber& a, const QNumber& b, std::uint64_t width);
/// Signed remainder with the sign of a.
VORN_EXPORT QNumber bv_srem(const QNumber& a, const QNumber& b, std::uint64_t width);
/// Signed remainder with the sign of b.
VORN_EXPORT QNumber bv_smod(const QNumber& a, const QNumber& b, std::uint64_t width);
/// Shifts by b bit positions; b of `width` or more shifts everything out.
VORN_EXPORT QNumber bv_shl(const QNumber& a, const QNumber& b, std::uint64_t width);
VORN_EXPORT QNumber bv_lshr(const QNumber& a, const QNumber& b, std::uint64_t width);
VORN_EXPORT QNumber bv_ashr(const QNumber& a, const QNumber& b, std::uint64_t width);
/// Bits msb down to lsb of a.
VORN_EXPORT QNumber bv_extract(std::uint64_t msb, std::uint64_t lsb, const QNumber& a);
/// a above the `low_width` bits of b.
VORN_EXPORT QNumber bv_concat(const QNumber& a, const QNumber& b, std::uint64_t low_width);
/// a extended by n copies of its top bit.
VORN_EXPORT QNumber bv_sign_extend(const QNumber& a, std::uint64_t n, std::uint64_t width);
/// Signed a < b.
VORN_EXPORT bool bv_slt(const QNumber& a, const QNumber& b, std::uint64_t width);

}  // namespace vorn::BVNumber

#endif
