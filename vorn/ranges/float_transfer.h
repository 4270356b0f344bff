// What operations on floats say of the ranges of their operands and results.
//
// Forward: a range with the results of all operands. Its ends are results, and NaN is in it only if
// it is one, but where it is said otherwise; of classes between the ends there may be too many.
// Backward, the functions that narrow: operands that give no value of `result`, whatever the other
// operands are, leave their ranges as far as that is seen. No value leaves that is possible.
// Operations are those of vorn/terms/ieee_arithmetic.h in every mode of the set. Ranges and sets of
// modes are not empty, but may become so where they are narrowed.
#ifndef VORN_RANGES_FLOAT_TRANSFER_H
#define VORN_RANGES_FLOAT_TRANSFER_H

#include <cstdint>

#include "vorn/ranges/bit_range.h"
#include "vorn/ranges/finite_sets.h"
#include "vorn/ranges/float_range.h"

namespace vorn::ranges {

// Sums ------------------------------------------------------------------------------------------

FloatRange add(RoundingModeSet modes, const FloatRange& x, const FloatRange& y);
void narrow_add(RoundingModeSet modes, const FloatRange& result, FloatRange* x, FloatRange* y);
/// x * y + z, rounded once.
FloatRange fma(RoundingModeSet modes, const FloatRange& x, const FloatRange& y,
               const FloatRange& z);
void narrow_fma(RoundingModeSet modes, const FloatRange& result, FloatRange* x, FloatRange* y,
                FloatRange* z);

// Products and quotients ------------------------------------------------------------------------

FloatRange mul(RoundingModeSet modes, const FloatRange& x, const FloatRange& y);
void narrow_mul(RoundingModeSet modes, const FloatRange& result, FloatRange* x, FloatRange* y);
FloatRange div(RoundingModeSet modes, const FloatRange& x, const FloatRange& y);
void narrow_div(RoundingModeSet modes, const FloatRange& result, FloatRange* x, FloatRange* y);
/// The remainder of clause 5.3.1, within bounds that need not be reached.
FloatRange rem(const FloatRange& x, const FloatRange& y);
void narrow_rem(const FloatRange& result, FloatRange* x, FloatRange* y);

// One operand -----------------------------------------------------------------------------------

FloatRange sqrt(RoundingModeSet modes, const FloatRange& x);
void narrow_sqrt(RoundingModeSet modes, const FloatRange& result, FloatRange* x);
FloatRange round_to_integral(RoundingModeSet modes, const FloatRange& x);
void narrow_round_to_integral(RoundingModeSet modes, const FloatRange& result, FloatRange* x);
FloatRange cast(IEEEFloat::format to, RoundingModeSet modes, const FloatRange& x);
void narrow_cast(RoundingModeSet modes, const FloatRange& result, FloatRange* x);
FloatRange abs(const FloatRange& x);
void narrow_abs(const FloatRange& result, FloatRange* x);

// Minimum and maximum ---------------------------------------------------------------------------

/// Of zeros with opposite signs either may be the result.
FloatRange min(const FloatRange& x, const FloatRange& y);
void narrow_min(const FloatRange& result, FloatRange* x, FloatRange* y);
FloatRange max(const FloatRange& x, const FloatRange& y);
void narrow_max(const FloatRange& result, FloatRange* x, FloatRange* y);

// Integers and bits -----------------------------------------------------------------------------

/// Two's-complement numbers if `is_signed`, else natural numbers.
FloatRange from_integer(IEEEFloat::format to, RoundingModeSet modes, const BitRange& x,
                        bool is_signed);
void narrow_from_integer(RoundingModeSet modes, const FloatRange& result, BitRange* x,
                         bool is_signed);
/// The integer in `width` bits; everything where some value of x has none.
BitRange to_integer(std::uint64_t width, RoundingModeSet modes, const FloatRange& x,
                    bool is_signed);
void narrow_to_integer(RoundingModeSet modes, const BitRange& result, FloatRange* x,
                       bool is_signed);
/// A pattern of 1 + e + m bits read as a float.
FloatRange from_bits(IEEEFloat::format to, const BitRange& x);
void narrow_from_bits(const FloatRange& result, BitRange* x);
/// The pattern of a float, where NaN has IEEEFloat::quiet_nan_bits.
BitRange to_bits(const FloatRange& x);
void narrow_to_bits(const BitRange& result, FloatRange* x);

// Predicates ------------------------------------------------------------------------------------

/// The comparisons of clause 5.11: NaN is unordered, the zeros are one number. In these, `truth` is
/// whether the comparison holds.
BoolRange less(const FloatRange& x, const FloatRange& y);
void narrow_less(bool truth, FloatRange* x, FloatRange* y);
BoolRange less_equal(const FloatRange& x, const FloatRange& y);
void narrow_less_equal(bool truth, FloatRange* x, FloatRange* y);
BoolRange equal_numbers(const FloatRange& x, const FloatRange& y);
void narrow_equal_numbers(bool truth, FloatRange* x, FloatRange* y);
/// Whether x is of one of these classes.
BoolRange is_of(FloatClassSet classes, const FloatRange& x);

}  // namespace vorn::ranges

#endif
