// Operations of bit-vectors on ranges: what of all operands in the ranges the results are.
//
// Of arithmetic, intervals are known where nothing wraps around, or everything once, and besides
// the low bits up to the first that is not known of both operands.
#ifndef VORN_RANGES_BIT_OPERATIONS_H
#define VORN_RANGES_BIT_OPERATIONS_H

#include <cstdint>

#include "vorn/ranges/bit_range.h"
#include "vorn/terms/term.h"

/// Operands are not empty; widths are in bits. Results are those of the functions of the same names
/// in vorn/terms/bv_number.h, and hold all of them, perhaps more.
namespace vorn::ranges {

BitRange bv_add(const BitRange& x, const BitRange& y);
BitRange bv_sub(const BitRange& x, const BitRange& y);
BitRange bv_mul(const BitRange& x, const BitRange& y);
BitRange bv_udiv(const BitRange& x, const BitRange& y);
BitRange bv_urem(const BitRange& x, const BitRange& y);
BitRange bv_not(const BitRange& x);
BitRange bv_and(const BitRange& x, const BitRange& y);
BitRange bv_or(const BitRange& x, const BitRange& y);
BitRange bv_xor(const BitRange& x, const BitRange& y);
BitRange bv_concat(const BitRange& high, const BitRange& low);
BitRange bv_extract(std::uint64_t msb, std::uint64_t lsb, const BitRange& x);
/// Extended by `count` > 0 copies of the top bit.
BitRange bv_sign_extend(std::uint64_t count, const BitRange& x);
/// One of the three shifts: bits move where the distance is one value.
BitRange bv_shift(SymbolTag::tag tag, const BitRange& x, const BitRange& distance);

}  // namespace vorn::ranges

#endif
