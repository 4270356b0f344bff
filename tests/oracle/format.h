// The vocabulary that the oracles share: formats, rounding modes and bit patterns.
//
// It holds types and constants only. The base model and the IEEE oracle each take patterns apart
// with code of their own, so that a mistake in one cannot hide in the other.
#ifndef VORN_TESTS_ORACLE_FORMAT_H
#define VORN_TESTS_ORACLE_FORMAT_H

#include <gmpxx.h>

#include <array>

namespace vorn::oracle {

/// A bit pattern, read as a non-negative integer. A float's has its sign on top, then the biased
/// exponent, then the trailing significand.
using Bits = mpz_class;

/// A binary interchange format: exponent width and significand width without the hidden bit.
struct Format {
  unsigned e;
  unsigned m;

  constexpr unsigned width() const { return 1 + e + m; }
  constexpr long bias() const { return (1L << (e - 1)) - 1; }
  /// The exponent of the smallest normal number and of every subnormal.
  constexpr long min_exponent() const { return 1 - bias(); }
  /// The exponent of the largest finite number.
  constexpr long max_exponent() const { return bias(); }
  bool operator==(const Format&) const = default;
};

/// IEEE 754-2019, clause 4.3. The base circuits know the first four, under these codes.
enum class RoundingMode : unsigned char { rne = 0, rtz = 1, rtp = 2, rtn = 3, rna = 4 };

inline constexpr std::array kAllModes = {RoundingMode::rne, RoundingMode::rtz, RoundingMode::rtp,
                                         RoundingMode::rtn, RoundingMode::rna};
inline constexpr std::array kBaseModes = {RoundingMode::rne, RoundingMode::rtz, RoundingMode::rtp,
                                          RoundingMode::rtn};

}  // namespace vorn::oracle

#endif
