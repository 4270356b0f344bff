// Numbers as people write them, for literals.
#ifndef VORN_C_NUMBER_TEXT_H
#define VORN_C_NUMBER_TEXT_H

#include <string_view>

#include "vorn/terms/ieee_float.h"
#include "vorn/terms/qnumber.h"

namespace vorn::c {

/// The float of a format that a text stands for, rounded once: a decimal with or without an
/// exponent, a hexadecimal (C17, 6.4.4.2), a fraction of integers, an infinity or NaN. A sign in
/// front of zero is kept. Throws std::invalid_argument where it is none of these, and
/// std::length_error for an exponent of ten beyond 100,000.
IEEEFloat read_float(std::string_view text, IEEEFloat::format format,
                     IEEEFloat::rounding_mode mode);

/// An integer in decimal, with or without a sign. Throws std::invalid_argument likewise.
QNumber read_integer(std::string_view text);

/// A text of `0` and `1`, at least one, as a number. Throws std::invalid_argument likewise.
QNumber read_binary(std::string_view text);

}  // namespace vorn::c

#endif
