// Correctly rounded arithmetic on software floats: the reference that models are checked against.
//
// IEEE 754-2019 with the conventions of the SMT-LIB FloatingPoint theory: there is one NaN, and
// every operation that yields it yields the canonical pattern. Nothing here knows of circuits.
#ifndef VORN_TERMS_IEEE_ARITHMETIC_H
#define VORN_TERMS_IEEE_ARITHMETIC_H

#include <compare>
#include <cstddef>
#include <optional>

#include "vorn/terms/ieee_float.h"
#include "vorn/utils/export.h"

namespace vorn {

/// Operands of one format, results of the same (IEEE 754-2019, clauses 5.4.1 and 6.3).
VORN_EXPORT IEEEFloat ieee_add(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b);
VORN_EXPORT IEEEFloat ieee_sub(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b);
VORN_EXPORT IEEEFloat ieee_mul(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b);
VORN_EXPORT IEEEFloat ieee_div(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b);
/// a * b + c, rounded once.
VORN_EXPORT IEEEFloat ieee_fma(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b,
                               const IEEEFloat& c);
VORN_EXPORT IEEEFloat ieee_sqrt(IEEEFloat::rounding_mode rm, const IEEEFloat& a);
/// a - b * n for the integer n nearest to a / b, the even one of two (clause 5.3.1); a zero has the
/// sign of a. It is exact.
VORN_EXPORT IEEEFloat ieee_rem(const IEEEFloat& a, const IEEEFloat& b);
/// The nearest integer in the mode, as a float; a zero has the sign of a. Where the format ends
/// below that integer, it is rounded like any other result.
VORN_EXPORT IEEEFloat ieee_round_to_integral(IEEEFloat::rounding_mode rm, const IEEEFloat& a);

/// The sign flipped or cleared; NaN stays the canonical NaN.
VORN_EXPORT IEEEFloat ieee_neg(const IEEEFloat& a);
VORN_EXPORT IEEEFloat ieee_abs(const IEEEFloat& a);
/// The smaller or larger operand, a number rather than a NaN. Of zeros with opposite signs either
/// may be the result: `negative_zero` says which.
VORN_EXPORT IEEEFloat ieee_min(const IEEEFloat& a, const IEEEFloat& b, bool negative_zero);
VORN_EXPORT IEEEFloat ieee_max(const IEEEFloat& a, const IEEEFloat& b, bool negative_zero);

/// The value of `a` in another format (clause 5.4.2).
VORN_EXPORT IEEEFloat ieee_cast(IEEEFloat::format to, IEEEFloat::rounding_mode rm,
                                const IEEEFloat& a);
/// The integer `value` in the format; zero is +0.
VORN_EXPORT IEEEFloat ieee_from_integer(IEEEFloat::format to, IEEEFloat::rounding_mode rm,
                                        const QNumber& value);

/// `a` rounded to an integer, as a pattern of `width` bits, two's complement if `is_signed`; none
/// for NaN, infinities and integers that need more bits.
VORN_EXPORT std::optional<QNumber> ieee_to_integer(IEEEFloat::rounding_mode rm, const IEEEFloat& a,
                                                   std::size_t width, bool is_signed);

/// Numeric order: the zeros are equivalent, NaN is unordered (clause 5.11).
VORN_EXPORT std::partial_ordering ieee_compare(const IEEEFloat& a, const IEEEFloat& b);

}  // namespace vorn

#endif
