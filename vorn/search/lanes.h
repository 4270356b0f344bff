// Values of one sort for a block of assignments at once, and operations on such blocks.
//
// A block has kLanes lanes, one for each assignment. A lane is a word of 32 or 64 bits: a truth
// value is all zeros or all ones, a rounding mode its code, a bit-vector its number. A float is
// carried as one of the processor's two formats that has its value exactly, whatever pattern NaN
// has there, so that arithmetic on small formats is the processor's too, and one step that rounds
// again to the format. That step changes nothing: in one direction rounding twice is rounding once,
// and to nearest it is where the first precision is at least 2p + 2 (Figueroa, "When is double
// rounding innocuous?", 1995). Floats of other formats are their patterns, with the one NaN.
#ifndef VORN_SEARCH_LANES_H
#define VORN_SEARCH_LANES_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "vorn/terms/ieee_float.h"
#include "vorn/terms/term.h"

namespace vorn::search {

/// A kilobyte or two for each term: the blocks of a small formula stay in the first-level cache.
inline constexpr std::size_t kLanes = 512;

/// How values of a sort of at most 64 bits are kept in lanes.
struct LaneSort {
  enum class Kind : std::uint8_t { truth, mode, bits, floats };

  Kind kind = Kind::bits;
  std::uint8_t lane = 32;      // bits of a lane, of floats those of the carrying format
  std::uint8_t width = 0;      // bits of a value
  std::uint8_t e = 0;          // of floats
  std::uint8_t m = 0;          // of floats
  bool is_own_format = false;  // floats that are the carrying format's

  static LaneSort of(const DataType* type);
  bool operator==(const LaneSort&) const = default;

  /// A value in the form of Evaluator as a lane, and back.
  std::uint64_t to_lane(std::uint64_t word) const;
  std::uint64_t to_word(std::uint64_t lane_bits) const;
};

/// An operation on blocks: where operands and result are, and of which sorts.
struct LaneCall {
  void* out = nullptr;
  std::array<const void*, 3> in{};  // without the rounding mode
  std::uint32_t* open = nullptr;    // all ones where the theory leaves the value open
  LaneSort sort;                    // of the result
  LaneSort from;                    // of the first operand
  std::uint8_t second_width = 0;    // bits of the second operand, if there is one
  std::uint8_t lowest = 0;          // bit of an extraction
  IEEEFloat::rounding_mode mode = IEEEFloat::rounding_mode::nearest_even;
};

/// Computes all lanes, in the mode that the processor is in, which is that of the call, or to
/// nearest where the operation has none.
using LaneKernel = void (*)(const LaneCall& call);

/// The kernel of the operation of a term whose arguments are of sorts with at most 64 bits; null if
/// there is none. Rounding to nearest, ties away, is beyond all kernels.
LaneKernel find_kernel(const Term* t);
/// Those of truth values and bit-vectors, of floats, and between floats and bit-vectors.
LaneKernel find_bit_kernel(const Term* t);
LaneKernel find_float_kernel(const Term* t);
LaneKernel find_conversion_kernel(const Term* t);

}  // namespace vorn::search

#endif
