// Numbers as people write them, for literals. Floats are read by parse_float.
#ifndef VORN_C_NUMBER_TEXT_H
#define VORN_C_NUMBER_TEXT_H

#include <string_view>

#include "vorn/terms/qnumber.h"

namespace vorn::c {

/// An integer in decimal, with or without a sign. Throws std::invalid_argument where it is
/// none.
QNumber read_integer(std::string_view text);

/// A text of `0` and `1`, at least one, as a number. Throws likewise.
QNumber read_binary(std::string_view text);

}  // namespace vorn::c

#endif
