// Random operands for tests of rounded operations.
//
// Uniform patterns of a large format hardly ever meet the cases that matter: results at either end
// of the exponent range, ties, carries through the whole significand, cancellation. This generator
// steers exponents to those limits and favours significands that make such results, and leaves a
// share of the operands uniform. A seed determines the sequence.
#ifndef VORN_TESTS_ORACLE_RANDOM_OPERANDS_H
#define VORN_TESTS_ORACLE_RANDOM_OPERANDS_H

#include <cstdint>
#include <random>

#include "tests/oracle/format.h"
#include "tests/oracle/word.h"

namespace vorn::oracle {

class RandomOperands {
 public:
  explicit RandomOperands(std::uint64_t seed) : engine(seed) {}

  /// Any number in [0, n).
  unsigned below(unsigned n) { return static_cast<unsigned>(engine() % n); }

  /// Uniform bits; a few runs of ones and zeros; or a number within 8 of either end. The latter
  /// two make carries, ties and products with long gaps.
  Bits bits(unsigned width) {
    Bits result = 0;
    switch (below(3)) {
      case 0:
        for (unsigned i = 0; i < width; i += 32) {
          result = (result << 32) + static_cast<unsigned long>(engine() & 0xffffffffU);
        }
        break;
      case 1:
        for (unsigned runs = 1 + below(3); runs > 0; --runs) {
          result = two_to(below(width + 1)) - result;
        }
        break;
      default:
        result = Bits{below(16)} - 8;
    }
    return low_bits(result, width);
  }

  /// Exponents of every class, those at the ends of the range and around one often.
  Bits float_pattern(Format f) {
    const Bits top = two_to(f.e) - 1;
    switch (below(8)) {
      case 0:
        return assemble(f, 0);
      case 1:
        return assemble(f, 1 + Bits{below(2)});
      case 2:
        return assemble(f, top - below(3));
      case 3:
        return assemble(f, Bits{f.bias()} + below(3) - 1);
      default:
        return assemble(f, bits(f.e));
    }
  }

  /// A second operand whose sum, product or quotient with the first is likely to be near a limit
  /// of the format.
  Bits partner(Format f, const Bits& x) {
    const long ex = Bits(x / two_to(f.m) % two_to(f.e)).get_si();
    const long wobble = below(2) == 0 ? distance(3) : distance(f.m + 3);
    long ey = 0;
    switch (below(8)) {
      case 0:
        ey = ex + wobble;  // significands that overlap, and a quotient near 1
        break;
      case 1:
        ey = f.bias() - ex + wobble;  // a product near the smallest normal
        break;
      case 2:
        ey = 3 * f.bias() - ex + distance(2);  // a product near overflow
        break;
      case 3:
        ey = ex + f.bias() + wobble;  // a quotient near the smallest normal
        break;
      case 4:
        ey = ex - f.bias() + distance(2);  // a quotient near overflow
        break;
      case 5:
        return low_bits(x, f.e + f.m) + sign(f);  // a sum of zero
      case 6:  // a product just below the smallest normal with nearly the bits of x
        ey = f.bias() - ex - below(4);
        return ey < 0 ? float_pattern(f) : join(f, Bits{ey}, below(8));
      default:
        return float_pattern(f);
    }
    return in_range(f, ey);
  }

  /// An operand for a cast: often near a limit of the target or where a narrow exponent would wrap.
  Bits source(Format from, Format to) {
    const long half_range = 1L << (from.e - 1);
    switch (below(5)) {
      case 0:
        return in_range(from, from.bias() + to.min_exponent() + distance(to.m + 3));
      case 1:
        return in_range(from, from.bias() + to.min_exponent() - below(4));
      case 2:
        return in_range(from, from.bias() + to.max_exponent() + distance(2));
      case 3:
        return in_range(from, from.bias() + to.min_exponent() + half_range + distance(2));
      default:
        return float_pattern(from);
    }
  }

 private:
  static Bits two_to(unsigned n) { return Bits{1} << n; }

  /// In [-limit, limit].
  long distance(unsigned limit) { return long{below(2 * limit + 1)} - long{limit}; }

  Bits sign(Format f) { return Bits{below(2)} * two_to(f.e + f.m); }
  Bits join(Format f, const Bits& exponent, const Bits& fraction) {
    return sign(f) + exponent * two_to(f.m) + fraction;
  }
  Bits assemble(Format f, const Bits& exponent) { return join(f, exponent, bits(f.m)); }
  Bits in_range(Format f, long biased) {
    const bool inside = 0 <= biased && biased < 1L << f.e;
    return inside ? assemble(f, Bits{biased}) : float_pattern(f);
  }

  std::mt19937_64 engine;
};

}  // namespace vorn::oracle

#endif
