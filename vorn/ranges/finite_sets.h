// Sets of the values that sorts of few values have: rounding modes and truth values.
//
// Each is a set of bits, so that every set of values is one of these and nothing is widened.
#ifndef VORN_RANGES_FINITE_SETS_H
#define VORN_RANGES_FINITE_SETS_H

#include <array>
#include <cstdint>

#include "vorn/terms/ieee_float.h"

namespace vorn::ranges {

/// A set of values of a type that counts up from 0, `Count` of them, at most 8.
template <class Value, unsigned Count>
class FiniteSet {
 public:
  /// All values, none, and those that are named.
  static constexpr FiniteSet everything() { return FiniteSet((1U << Count) - 1); }
  static constexpr FiniteSet nothing() { return FiniteSet(0); }
  template <class... Values>
  static constexpr FiniteSet of(Values... values) {
    return FiniteSet((bit(values) | ... | 0U));
  }

  /// Whether there is no value, and whether there is only one.
  constexpr bool is_empty() const { return bits == 0; }
  constexpr bool is_value() const { return bits != 0 && (bits & (bits - 1U)) == 0; }
  /// The first value, if there is one.
  constexpr Value get_value() const {
    unsigned value = 0;
    while (value + 1 < Count && !contains(static_cast<Value>(value)))
      ++value;
    return static_cast<Value>(value);
  }
  constexpr bool contains(Value value) const { return (bits & bit(value)) != 0; }
  /// Whether every value is in the other set too.
  constexpr bool is_within(FiniteSet other) const { return (bits & ~other.bits) == 0; }

  /// The values of both, those of either, and those that are not in the other.
  constexpr FiniteSet intersect(FiniteSet other) const { return FiniteSet(bits & other.bits); }
  constexpr FiniteSet hull(FiniteSet other) const { return FiniteSet(bits | other.bits); }
  constexpr FiniteSet without(FiniteSet other) const { return FiniteSet(bits & ~other.bits); }
  constexpr FiniteSet include(Value value) const { return FiniteSet(bits | bit(value)); }
  constexpr bool operator==(const FiniteSet&) const = default;

 private:
  constexpr explicit FiniteSet(unsigned values) : bits(static_cast<std::uint8_t>(values)) {}
  static constexpr unsigned bit(Value value) { return 1U << static_cast<unsigned>(value); }

  std::uint8_t bits;
};

using BoolRange = FiniteSet<bool, 2>;
using RoundingModeSet = FiniteSet<IEEEFloat::rounding_mode, 5>;

/// The rounding modes of IEEE 754-2019, clause 4.3.
inline constexpr std::array kRoundingModes = {
    IEEEFloat::rounding_mode::nearest_even, IEEEFloat::rounding_mode::toward_zero,
    IEEEFloat::rounding_mode::plus_inf, IEEEFloat::rounding_mode::minus_inf,
    IEEEFloat::rounding_mode::nearest_away};

}  // namespace vorn::ranges

#endif
