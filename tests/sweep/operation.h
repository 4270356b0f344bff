// What a sweep runs over: an operation on formats so small that all its operands can be tried.
//
// The operands of an application, read as one number with the last operand in the lowest bits, make
// its index; consecutive indices go through a circuit together. A row is 2^16 of them.
#ifndef TESTS_SWEEP_OPERATION_H
#define TESTS_SWEEP_OPERATION_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "tests/sweep/integer_reference.h"
#include "vorn/bv/simulator.h"
#include "vorn/terms/ieee_float.h"
#include "vorn/terms/term_manager.h"

namespace vorn::sweep {

inline constexpr std::size_t kLanes = bv::Simulator::kLanes;
inline constexpr unsigned kRowBits = 16;
inline constexpr std::uint64_t kRowSize = std::uint64_t{1} << kRowBits;

inline constexpr std::array<const char*, kModes> kModeNames = {"rne", "rtz", "rtp", "rtn", "rna"};

/// The expected results of kLanes consecutive indices, by mode and index.
using Expected = std::array<std::array<std::uint64_t, kLanes>, kModes>;

/// What a sweep gives to an operation as its result where the theory leaves that open: other bits
/// for every index in turn, and none of them zeros for infinities.
constexpr std::uint64_t get_open_value(std::uint64_t index, unsigned width) {
  return ~index & ((std::uint64_t{1} << width) - 1);
}

/// An operation and its reference.
struct Operation {
  std::string_view name;     // the format of the operands, a dot, and what is done
  IEEEFloat::format format;  // of all operands
  std::size_t arity;
  bool rounded;  // without a mode, the results of all modes are the same
  const Term* (*build)(TermManager& t, const Term* rm, std::span<const Term* const> x);
  /// The results of the kLanes indices from `first` on, a multiple of kLanes.
  void (*fill)(std::uint64_t first, Expected& expected);

  std::uint64_t get_row_count() const {
    return std::uint64_t{1} << (format.width() * arity - kRowBits);
  }
  /// Whether it is called that, or belongs to the operand format of that name.
  bool is_named(std::string_view wanted) const {
    return name == wanted || name.substr(0, name.find('.')) == wanted;
  }
};

std::span<const Operation> get_operations();

}  // namespace vorn::sweep

#endif
