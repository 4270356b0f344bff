// Floats in lanes: patterns of small formats as values of a larger one, and rounding to them.
//
// Only for the kernels: what includes this is compiled with the options that keep operations as
// they are written, one by one and in the processor's rounding mode.
#ifndef VORN_SEARCH_LANE_FLOATS_H
#define VORN_SEARCH_LANE_FLOATS_H

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "vorn/search/lanes.h"

namespace vorn::search {

template <class F>
using BitsOf = std::conditional_t<sizeof(F) == 4, std::uint32_t, std::uint64_t>;

template <class F>
inline constexpr int kFraction = std::numeric_limits<F>::digits - 1;
template <class F>
inline constexpr int kBias = std::numeric_limits<F>::max_exponent - 1;
template <class F>
inline constexpr BitsOf<F> kSignBit = BitsOf<F>{1} << (sizeof(F) * 8 - 1);
template <class F>
inline constexpr BitsOf<F> kExponentBits = (kSignBit<F> - 1) & ~((BitsOf<F>{1} << kFraction<F>)-1);

/// 2^k, a normal number of F.
template <class F>
F power_of_two(int k) {
  return std::bit_cast<F>(static_cast<BitsOf<F>>(k + kBias<F>) << kFraction<F>);
}

/// `magnitude`, which is not negative, or its negation, as the sign of `x` is.
template <class F>
F with_sign(F magnitude, F x) {
  return std::bit_cast<F>((std::bit_cast<BitsOf<F>>(magnitude) & ~kSignBit<F>) |
                          (std::bit_cast<BitsOf<F>>(x) & kSignBit<F>));
}

template <class F>
F magnitude_of(F x) {
  return std::bit_cast<F>(std::bit_cast<BitsOf<F>>(x) & ~kSignBit<F>);
}

/// A format of width at most that of F, all of whose values F has as normal numbers, or F itself.
template <class F>
class SmallFormat {
 public:
  SmallFormat(int exponent_width, int fraction_width)
      : e(exponent_width),
        m(fraction_width),
        bias((1 << (e - 1)) - 1),
        unit(power_of_two<F>(1 - bias)) {}

  /// The value of a pattern; of F itself the pattern.
  F decode(BitsOf<F> pattern) const {
    const BitsOf<F> one = 1;
    const BitsOf<F> sign = (pattern >> (e + m) & 1U) << (sizeof(F) * 8 - 1);
    const BitsOf<F> exponent = pattern >> m & ((one << e) - 1);
    const BitsOf<F> fraction = pattern & ((one << m) - 1);
    const BitsOf<F> normal =
        ((exponent + static_cast<BitsOf<F>>(kBias<F> - bias)) << kFraction<F>) |
        fraction << (kFraction<F> - m);
    // What is below the least normal number: that much above it in its binade, less it.
    const F sum = std::bit_cast<F>(std::bit_cast<BitsOf<F>>(unit) | fraction << (kFraction<F> - m));
    const BitsOf<F> subnormal = std::bit_cast<BitsOf<F>>(sum - unit) & ~kSignBit<F>;
    const BitsOf<F> special = kExponentBits<F> | fraction << (kFraction<F> - m);
    const bool is_special = exponent == (one << e) - 1;
    return std::bit_cast<F>(sign | (is_special ? special : exponent == 0 ? subnormal : normal));
  }

  /// The pattern of a value, of NaN the canonical one.
  BitsOf<F> encode(F value) const {
    const BitsOf<F> one = 1;
    const BitsOf<F> bits = std::bit_cast<BitsOf<F>>(value);
    const F magnitude = magnitude_of(value);
    const BitsOf<F> sign = (bits >> (sizeof(F) * 8 - 1)) << (e + m);
    const BitsOf<F> infinity = ((one << e) - 1) << m;
    const BitsOf<F> normal = ((bits & ~kSignBit<F>) >> (kFraction<F> - m)) -
                             (static_cast<BitsOf<F>>(kBias<F> - bias) << m);
    const F sum = magnitude + unit;
    const BitsOf<F> subnormal =
        (std::bit_cast<BitsOf<F>>(sum) - std::bit_cast<BitsOf<F>>(unit)) >> (kFraction<F> - m);
    const BitsOf<F> number = magnitude < unit ? subnormal : normal;
    const bool is_infinite = magnitude == std::numeric_limits<F>::infinity();
    const BitsOf<F> canonical = (one << (e + m)) | infinity | one;
    return magnitude != magnitude ? canonical : sign | (is_infinite ? infinity : number);
  }

 private:
  int e;
  int m;
  int bias;
  F unit;  // the least normal number
};

/// Rounds values of F to a small format in the processor's mode, the one that is given.
template <class F>
class SmallRounding {
 public:
  SmallRounding(const LaneSort& sort, IEEEFloat::rounding_mode mode) {
    using enum IEEEFloat::rounding_mode;
    const int bias = (1 << (sort.e - 1)) - 1;
    lowest = power_of_two<F>(1 - bias);
    beyond = power_of_two<F>(bias + 1);
    scale = power_of_two<F>(kFraction<F> - sort.m);
    const F one_less = F{2} - power_of_two<F>(-sort.m);
    largest = power_of_two<F>(bias) * one_less;
    const F infinity = std::numeric_limits<F>::infinity();
    above = mode == nearest_even || mode == plus_inf ? infinity : largest;
    below = mode == nearest_even || mode == minus_inf ? -infinity : -largest;
  }

  /// Adding 2^k to a number and taking it away leaves what is a multiple of the last place of 2^k.
  F round(F x) const {
    const F binade = std::bit_cast<F>(std::bit_cast<BitsOf<F>>(x) & kExponentBits<F>);
    const F at_least = binade < lowest ? lowest : binade;
    const F within = at_least > beyond ? beyond : at_least;
    const F shift = with_sign(within * scale, x);
    const F rounded = with_sign((x + shift) - shift, x);
    const F overflow = std::bit_cast<BitsOf<F>>(x) >= kSignBit<F> ? below : above;
    const F finite = magnitude_of(rounded) > largest ? overflow : rounded;
    return magnitude_of(x) == std::numeric_limits<F>::infinity() ? x : finite;
  }

 private:
  F lowest;   // the least normal number
  F beyond;   // the power of two above the largest number
  F scale;    // from a power of two to the one whose last place is that of the format
  F largest;  // of the format
  F above;    // what is above and below it
  F below;
};

/// The integer next to x in the processor's mode.
template <class F>
F round_to_integer(F x) {
  const F whole = power_of_two<F>(kFraction<F>);
  const F shift = with_sign(whole, x);
  const F rounded = with_sign((x + shift) - shift, x);
  return magnitude_of(x) < whole ? rounded : x;
}

/// The lanes of an operand and of a result.
template <class T>
const T* lanes_in(const LaneCall& call, std::size_t i) {
  return static_cast<const T*>(__builtin_assume_aligned(call.in[i], 64));
}
template <class T>
T* lanes_out(const LaneCall& call) {
  return static_cast<T*>(__builtin_assume_aligned(call.out, 64));
}

inline std::uint32_t truth_lane(bool holds) {
  return holds ? ~std::uint32_t{0} : 0;
}

}  // namespace vorn::search

#endif
