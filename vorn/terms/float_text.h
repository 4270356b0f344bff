// Floats as text for people: shortest decimals, and hexadecimals as C has them.
#ifndef VORN_TERMS_FLOAT_TEXT_H
#define VORN_TERMS_FLOAT_TEXT_H

#include <string>

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

}  // namespace vorn

#endif
