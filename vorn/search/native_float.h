// The processor's floating-point operations on bit patterns.
#ifndef VORN_SEARCH_NATIVE_FLOAT_H
#define VORN_SEARCH_NATIVE_FLOAT_H

#include <cstdint>
#include <optional>
#include <span>

#include "vorn/terms/term.h"

namespace vorn::search {

/// Bits of the processor's format that an operation on the sort `type` can be computed in: 32, 64,
/// or 0 for none.
std::uint8_t find_native_format(const DataType* type);

/// The value of operation `tag` on arguments of the format of 32 or 64 bits, as Evaluator has it;
/// `values` begin with the rounding mode where the operation has one. None for an operation or mode
/// that the processor does not have.
std::optional<std::uint64_t> apply_native(SymbolTag::tag tag, std::uint8_t format,
                                          std::span<const std::uint64_t> values);

/// The float of one of the two formats in the other, or in the same one, rounded in mode `mode`.
std::optional<std::uint64_t> convert_native(std::uint8_t from, std::uint8_t to, std::uint64_t mode,
                                            std::uint64_t bits);

/// Sets the processor's rounding mode for this thread; false for one that it does not have. Setting
/// it is slow, so it is done only where the mode changes.
bool set_rounding(IEEEFloat::rounding_mode mode);
/// Whether the processor computes with subnormal numbers in this thread, as IEEE 754 has it: a
/// program may have told it to take them for zeros.
bool keeps_subnormals();

/// Calls of these functions with other modes than to nearest leave theirs set; this sets to
/// nearest.
void reset_rounding();

}  // namespace vorn::search

#endif
