// Whether the processor computes as IEEE 754 has it, which an unsat by enumeration rests on.
//
// What can differ is not only the processor: a compiler may keep more bits than the format has or
// fuse a product with a sum, and a program that uses the library may have told the processor to
// take subnormal numbers for zeros.
#ifndef VORN_SEARCH_KERNEL_CHECK_H
#define VORN_SEARCH_KERNEL_CHECK_H

#include <cstdint>
#include <random>
#include <string>

#include "vorn/search/block_program.h"

namespace vorn::search {

/// A word of the sort: of floats, where rounding, overflow and underflow happen, for some the
/// neighbourhood of `near`, another word of the sort; of integers numbers next to powers of two.
std::uint64_t draw_operand(const LaneSort& sort, std::uint64_t near, std::mt19937_64& random);

/// Whether the kernel of a step gives in every lane what exact arithmetic gives, on `tuples`
/// operands, at most kLanes, in each mode. Steps without kernel are exact. Rounding is to nearest
/// afterwards. Stores the first difference, in words, where `difference` is not null.
bool is_exact(const LaneStep& step, std::size_t tuples, std::uint64_t seed,
              std::string* difference = nullptr);

/// Whether this holds of every step of a program, on some dozens of operands each, which takes
/// milliseconds; a kernel is tried once in a process.
bool is_exact(const BlockProgram& program);

}  // namespace vorn::search

#endif
