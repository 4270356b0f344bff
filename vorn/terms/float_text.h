// Floats as text for people: shortest decimals, and hexadecimals as C has them; and back.
#ifndef VORN_TERMS_FLOAT_TEXT_H
#define VORN_TERMS_FLOAT_TEXT_H

#include <string>
#include <string_view>

#include "vorn/terms/ieee_float.h"
#include "vorn/utils/export.h"

namespace vorn {

/// A decimal that, rounded to nearest even, is this float and no other: the shortest one, or the
/// first of the digits that are always enough where there are more than a hundred. Infinities are
/// "+oo" and "-oo", NaNs "NaN". Empty where the exact value would take more than 2^16 bits.
VORN_EXPORT std::string decimal_text(const IEEEFloat& value);

/// The exact value as `printf("%a")` writes it (C17, 7.21.6.1), subnormals with a leading zero.
/// "inf", "-inf" and "nan" for what is not finite.
VORN_EXPORT std::string hexadecimal_text(const IEEEFloat& value);

/// The float that a text stands for, rounded once: a decimal with or without an exponent, a
/// fraction of integers, a hexadecimal as C has it (C17, 6.4.4.2), and what the functions above
/// write for infinities and NaNs. A sign in front of zero is kept. Throws std::invalid_argument
/// where the text is none of these, and std::length_error for an exponent of ten beyond 100,000.
VORN_EXPORT IEEEFloat parse_float(std::string_view text, IEEEFloat::format format,
                                  IEEEFloat::rounding_mode mode);

}  // namespace vorn

#endif
