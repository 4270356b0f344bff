// Random operands for tests of rounded operations.
//
// Uniform patterns of a large format hardly ever meet the cases that matter: results at either end
// of the exponent range, ties, carries through the whole significand, cancellation. This generator
// steers exponents to those limits and favours significands that make such results, and leaves a
// share of the operands uniform. A seed determines the sequence.
#ifndef VORN_TESTS_ORACLE_RANDOM_OPERANDS_H
#define VORN_TESTS_ORACLE_RANDOM_OPERANDS_H

#include <algorithm>
#include <cstdint>
#include <cstdlib>
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

  /// An addend for the product of two operands: often close to its negation, so that most of it
  /// cancels, where it makes a tie, or so far off that one of the two is a sticky bit.
  Bits third(Format f, const Bits& x, const Bits& y) {
    const Bits product = significand(f, x) * significand(f, y);
    if (product == 0) return float_pattern(f);
    const auto length = static_cast<long>(bit_length(product));
    const auto zeros = static_cast<long>(mpz_scan1(product.get_mpz_t(), 0));
    // The biased exponents of numbers that begin with the product's last bit and with its first.
    const long last = unit(f, x) + unit(f, y) - f.bias() - 2 * long{f.m};
    const long first = last + length - 1;
    const bool negative = test_bit(x, f.e + f.m) != test_bit(y, f.e + f.m);
    switch (below(7)) {
      case 0:
      case 1: {  // the product cut to the format, or a pattern beside it, negated mostly
        const Bits beside = cut(f, product, last) + (below(2) == 0 ? 0 : distance(2));
        return finite(f, negative == (below(8) == 0), beside);
      }
      case 2:  // the product's last bit that is one is half a unit of the addend
        return in_range(f, last + zeros + 1 + long{f.m});
      case 3:  // the product is about half a unit of the addend
        return in_range(f, first + 1 + long{f.m} + distance(1));
      case 4:  // one of the two is the other's half unit or lies beyond it
        return in_range(f, first + distance(2 * f.m + 4));
      case 5: {  // what the product lacks to half a unit of its own, or has above that
        if (length < long{f.m} + 2) return float_pattern(f);
        const auto dropped = static_cast<unsigned>(length - long{f.m} - 1);
        const Bits lacking = two_to(dropped - 1) - low_bits(product, dropped);
        return finite(f, negative != (lacking < 0), cut(f, abs(lacking), last));
      }
      default:
        return float_pattern(f);
    }
  }

  /// An operand for rounding to an integer, of w bits if there is such a limit: often near one half
  /// or one, halfway between integers or beside that, or about a power of two at the limit.
  Bits near_integer(Format f, unsigned w) {
    switch (below(5)) {
      case 0:
        return in_range(f, f.bias() + distance(2));
      case 1: {  // a bit of weight one half, then zeros or ones
        const long integer_bits = below(f.m);
        const auto rest = static_cast<unsigned>(long{f.m} - 1 - integer_bits);
        const Bits integer = bits(static_cast<unsigned>(integer_bits) + 1) * two_to(rest);
        const Bits fraction = low_bits(Bits(integer + distance(1)), f.m);
        const long biased = f.bias() + integer_bits;
        return biased < 1L << f.e ? join(f, Bits{biased}, fraction) : float_pattern(f);
      }
      case 2:  // units of one half, one or two
        return in_range(f, f.bias() + long{f.m} + distance(1));
      case 3: {  // a power of two at the limit, and its neighbours as far as half a unit and beyond
        const long biased = f.bias() + long{w} - below(2);
        if (biased < 1 || biased >= 1L << f.e) return float_pattern(f);
        const Bits half = f.m > w ? two_to(f.m - w) : Bits{1};
        const Bits offset = Bits{distance(2)} * half + distance(1);
        return sign(f) + low_bits(Bits(Bits{biased} * two_to(f.m) + offset), f.e + f.m);
      }
      default:
        return float_pattern(f);
    }
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

  /// A finite pattern's significand with its hidden bit, and the biased exponent that scales it.
  static Bits significand(Format f, const Bits& x) {
    const Bits fraction = low_bits(x, f.m);
    return low_bits(x, f.e + f.m) == fraction ? fraction : Bits(fraction + two_to(f.m));
  }
  static long unit(Format f, const Bits& x) {
    return std::max(Bits(low_bits(x, f.e + f.m) / two_to(f.m)).get_si(), 1L);
  }

  /// The magnitude, without its bits below the format, of an integer whose last bit has the weight
  /// of the biased exponent `last`. It may be beyond the largest of the format.
  static Bits cut(Format f, const Bits& integer, long last) {
    const long first = std::max(last + static_cast<long>(bit_length(integer)) - 1, 1L);
    const long shift = last - (first - long{f.m});
    const auto n = static_cast<std::size_t>(std::abs(shift));
    const Bits kept = shift < 0 ? shift_right(integer, n) : shift_left(integer, n);
    // A hidden bit adds the one that the exponent lacks here.
    return kept + (first - 1) * two_to(f.m);
  }
  Bits finite(Format f, bool negative, const Bits& magnitude) {
    const bool inside = 0 <= magnitude && magnitude < (two_to(f.e) - 1) * two_to(f.m);
    if (!inside) return float_pattern(f);
    return negative ? Bits(magnitude + two_to(f.e + f.m)) : magnitude;
  }

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
