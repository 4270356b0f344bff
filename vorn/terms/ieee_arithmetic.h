// Correctly rounded arithmetic on software floats: the reference that models are checked against.
//
// IEEE 754-2019 with the conventions of the SMT-LIB FloatingPoint theory: there is one NaN, and
// every operation that yields it yields the canonical pattern. Nothing here knows of circuits.
#ifndef VORN_TERMS_IEEE_ARITHMETIC_H
#define VORN_TERMS_IEEE_ARITHMETIC_H

#include <compare>

#include "vorn/terms/ieee_float.h"
#include "vorn/utils/export.h"

namespace vorn {

/// Operands of one format, results of the same (IEEE 754-2019, clauses 5.4.1 and 6.3).
VORN_EXPORT IEEEFloat ieee_add(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b);
VORN_EXPORT IEEEFloat ieee_sub(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b);
VORN_EXPORT IEEEFloat ieee_mul(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b);
VORN_EXPORT IEEEFloat ieee_div(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b);
/// The sign flipped; NaN stays the canonical NaN.
VORN_EXPORT IEEEFloat ieee_neg(const IEEEFloat& a);

/// The value of `a` in another format (clause 5.4.2).
VORN_EXPORT IEEEFloat ieee_cast(IEEEFloat::format to, IEEEFloat::rounding_mode rm,
                                const IEEEFloat& a);
/// The integer `value` in the format; zero is +0.
VORN_EXPORT IEEEFloat ieee_from_integer(IEEEFloat::format to, IEEEFloat::rounding_mode rm,
                                        const QNumber& value);

/// Numeric order: the zeros are equivalent, NaN is unordered (clause 5.11).
VORN_EXPORT std::partial_ordering ieee_compare(const IEEEFloat& a, const IEEEFloat& b);

}  // namespace vorn

#endif
