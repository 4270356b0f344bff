// Floats as real numbers of the processor, for what is computed with their values.
#ifndef VORN_SEARCH_REAL_VALUES_H
#define VORN_SEARCH_REAL_VALUES_H

#include <cstdint>
#include <optional>

#include "vorn/terms/ieee_float.h"

namespace vorn::search {

/// Whether every number of the format is one of binary64.
bool has_real_values(IEEEFloat::format f);
/// The number with this pattern; none for infinities and NaN.
std::optional<double> real_of_bits(std::uint64_t bits, IEEEFloat::format f);
/// The finite number of the format that is the nearest one to `x`, which is no NaN.
std::uint64_t bits_of_real(double x, IEEEFloat::format f);

}  // namespace vorn::search

#endif
