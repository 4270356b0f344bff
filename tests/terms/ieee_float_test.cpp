#include "vorn/terms/ieee_float.h"

#include <gmpxx.h>
#include <gtest/gtest.h>
#include <mpfr.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <ostream>
#include <random>
#include <vector>

#include "vorn/terms/qnumber.h"

namespace vorn {

// In the namespace of the type, where the test framework finds it.
static std::ostream& operator<<(std::ostream& out, IEEEFloat::format f) {
  return out << "(" << f.e << ", " << f.m << ")";
}

namespace {

using Mode = IEEEFloat::rounding_mode;
using Format = IEEEFloat::format;

constexpr Mode kModes[] = {Mode::nearest_even, Mode::toward_zero, Mode::plus_inf, Mode::minus_inf,
                           Mode::nearest_away};
constexpr Format kFormats[] = {{2, 1}, {2, 5}, {3, 3}, {5, 2}, {5, 10}, {8, 23}, {11, 52}};

mpq_class value_of(const QNumber& x) {
  return mpq_class(x.get_numerator(), x.get_denominator());
}

QNumber number(const mpq_class& x) {
  return QNumber::from_mpz(x.get_num()) / QNumber::from_mpz(x.get_den());
}

mpz_class power(std::uint64_t n) {
  return mpz_class(1) << n;
}

/// 2^n for any integer n.
mpq_class scale(long n) {
  return n < 0 ? mpq_class(mpz_class(1), power(static_cast<std::uint64_t>(-n)))
               : mpq_class(power(static_cast<std::uint64_t>(n)));
}

long bias(Format f) {
  return (1L << (f.e - 1)) - 1;
}

mpz_class rounded(Format f, Mode mode, const mpq_class& x) {
  IEEEFloat result(f, mode);
  result.self_round(number(x));
  return result.get_bits().get_numerator();
}

IEEEFloat from_bits(Format f, const mpz_class& bits) {
  return IEEEFloat::from_bits(f, QNumber::from_mpz(bits));
}

mpz_class infinity_bits(Format f) {
  return (power(f.e) - 1) << f.m;
}

// Formats and patterns ----------------------------------------------------------------------------

TEST(IEEEFloat, BiasAndLargestExponentAreThoseOfTheFormat) {
  EXPECT_EQ((Format{8, 23}.bias()), QNumber(127));
  EXPECT_EQ((Format{8, 23}.max_exponent()), QNumber(255));
  EXPECT_EQ((Format{2, 1}.bias()), QNumber(1));
  EXPECT_EQ((Format{1, 1}.bias()), QNumber(0));
  EXPECT_EQ((Format{15, 112}.width()), 128U);
  for (const std::uint64_t e : {60, 62, 63, 64, 65, 100}) {
    const Format f = {e, 5};
    EXPECT_EQ(f.bias().get_numerator(), power(e - 1) - 1);
    EXPECT_EQ(f.max_exponent().get_numerator(), power(e) - 1);
  }
}

TEST(IEEEFloat, ANewFloatIsPositiveZero) {
  const IEEEFloat zero({5, 10}, Mode::nearest_even);
  EXPECT_EQ(zero.get_bits(), QNumber(0));
  EXPECT_TRUE(zero.is_zero());
  EXPECT_EQ(zero.get_format(), (Format{5, 10}));
}

TEST(IEEEFloat, TheCanonicalNanIsNegativeWithTheLowestFractionBit) {
  for (const Format f : {Format{2, 1}, Format{3, 3}, Format{8, 23}, Format{11, 52}, Format{70, 9},
                         Format{15, 112}}) {
    IEEEFloat nan(f, Mode::nearest_even);
    nan.self_nan();
    EXPECT_EQ(nan.get_bits().get_numerator(), power(f.e + f.m) + infinity_bits(f) + 1) << f;
    EXPECT_TRUE(nan.is_nan());
    EXPECT_FALSE(nan.is_inf());
    EXPECT_FALSE(nan.is_zero());
    EXPECT_TRUE(nan.is_sign_set());
  }
  IEEEFloat single({8, 23}, Mode::nearest_even);
  single.self_nan();
  EXPECT_EQ(single.get_bits(), QNumber(0xFF800001));
}

TEST(IEEEFloat, InfinitiesAndZerosHaveTheirPatterns) {
  for (const bool negative : {false, true}) {
    IEEEFloat x({3, 4}, Mode::nearest_even);
    const int sign = negative ? 0x80 : 0;
    x.self_inf(negative);
    EXPECT_EQ(x.get_bits(), QNumber(sign + 0x70));
    EXPECT_TRUE(x.is_inf());
    EXPECT_FALSE(x.is_nan());
    EXPECT_EQ(x.is_sign_set(), negative);
    x.self_zero(negative);
    EXPECT_EQ(x.get_bits(), QNumber(sign));
    EXPECT_TRUE(x.is_zero());
    EXPECT_EQ(x.is_sign_set(), negative);
  }
}

TEST(IEEEFloat, SpecialValuesAreMadeAsTheyAreAssigned) {
  for (const Format f : {Format{2, 1}, Format{3, 4}, Format{11, 52}, Format{70, 9}}) {
    IEEEFloat x(f, Mode::nearest_even);
    x.self_nan();
    EXPECT_EQ(IEEEFloat::make_nan(f).get_bits(), x.get_bits()) << f;
    for (const bool negative : {false, true}) {
      x.self_inf(negative);
      EXPECT_EQ(IEEEFloat::make_inf(f, negative).get_bits(), x.get_bits()) << f;
      x.self_zero(negative);
      EXPECT_EQ(IEEEFloat::make_zero(f, negative).get_bits(), x.get_bits()) << f;
    }
    EXPECT_EQ(IEEEFloat::make_zero(f, true).get_format(), f);
  }
}

TEST(IEEEFloat, TheLargestValueIsNextToInfinity) {
  for (const Format f : {Format{2, 1}, Format{3, 4}, Format{11, 52}, Format{70, 9}}) {
    for (const bool negative : {false, true}) {
      const IEEEFloat largest = IEEEFloat::make_largest(f, negative);
      EXPECT_EQ(largest.get_bits() + 1, IEEEFloat::make_inf(f, negative).get_bits()) << f;
      EXPECT_TRUE(largest.is_normal());
      EXPECT_EQ(largest.is_sign_set(), negative);
    }
  }
  EXPECT_EQ(IEEEFloat::make_largest({3, 4}, true).get_value(), QNumber(-31) / QNumber(2));
}

TEST(IEEEFloat, EveryPatternOfASmallFormatIsReadAsItsFieldsSay) {
  const Format f = {3, 4};
  for (int bits = 0; bits < 256; ++bits) {
    const IEEEFloat x = from_bits(f, bits);
    const int field = (bits >> 4) & 7;
    const int fraction = bits & 15;
    EXPECT_EQ(x.is_nan(), field == 7 && fraction != 0);
    EXPECT_EQ(x.is_inf(), field == 7 && fraction == 0);
    EXPECT_EQ(x.is_zero(), field == 0 && fraction == 0);
    EXPECT_EQ(x.is_sign_set(), bits >= 128);
    if (field == 7) continue;
    const int significand = field == 0 ? fraction : 16 + fraction;
    const int exponent = (field == 0 ? 1 : field) - 3 - 4;
    EXPECT_EQ(x.get_significand(), significand);
    EXPECT_EQ(x.get_exponent(), exponent);
    const mpq_class magnitude = significand * scale(exponent);
    EXPECT_EQ(value_of(x.get_value()), bits >= 128 ? mpq_class(-magnitude) : magnitude);
  }
}

TEST(IEEEFloat, ValuesOfWiderFormatsAreExact) {
  EXPECT_EQ(from_bits({8, 23}, 0x3F800000).get_value(), QNumber(1));
  EXPECT_EQ(from_bits({8, 23}, 0xC0490FDB).get_value(), QNumber(-13176795) / QNumber(4194304));
  EXPECT_EQ(value_of(from_bits({8, 23}, 1).get_value()), scale(-149));
  EXPECT_EQ(value_of(from_bits({11, 52}, power(52)).get_value()), scale(-1022));
  EXPECT_EQ(value_of(from_bits({11, 52}, infinity_bits({11, 52}) - 1).get_value()),
            mpq_class(power(1024) - power(971)));
}

// Rounding
// ------------------------------------------------------------------------------------------

TEST(IEEEFloat, EveryFiniteValueRoundsToItself) {
  for (const Format f : {Format{2, 1}, Format{2, 3}, Format{3, 3}, Format{4, 2}}) {
    for (const Mode mode : kModes) {
      for (mpz_class bits = 0; bits < power(f.width()); ++bits) {
        const IEEEFloat x = from_bits(f, bits);
        if (x.is_nan() || x.is_inf() || x.is_zero()) continue;
        ASSERT_EQ(rounded(f, mode, value_of(x.get_value())), bits) << f;
      }
    }
  }
}

TEST(IEEEFloat, ZeroRoundsToPositiveZero) {
  for (const Mode mode : kModes) {
    IEEEFloat x({3, 3}, mode);
    x.self_inf(true);
    x.self_round(QNumber(0));
    EXPECT_EQ(x.get_bits(), QNumber(0));
  }
}

/// The magnitudes of a small format by their patterns; last, in the place of infinity, the one that
/// would follow the largest finite one.
std::vector<mpq_class> magnitudes(Format f) {
  std::vector<mpq_class> values;
  for (mpz_class bits = 0; bits < infinity_bits(f); ++bits) {
    values.push_back(value_of(from_bits(f, bits).get_value()));
  }
  values.push_back(scale(bias(f) + 1));
  return values;
}

/// The pattern of x > 0 rounded, found among all magnitudes. `up` tells whether a directed mode
/// leads away from zero.
std::size_t rounded_by_search(const std::vector<mpq_class>& values, Mode mode, bool up,
                              const mpq_class& x) {
  const bool nearest = mode == Mode::nearest_even || mode == Mode::nearest_away;
  const std::size_t infinity = values.size() - 1;
  if (x >= values[infinity]) return nearest || up ? infinity : infinity - 1;
  const auto next = std::ranges::lower_bound(values, x);
  const auto above = static_cast<std::size_t>(next - values.begin());
  if (*next == x) return above;
  if (!nearest) return up ? above : above - 1;
  const mpq_class from_below = x - values[above - 1];
  const mpq_class to_above = values[above] - x;
  if (from_below != to_above) return from_below < to_above ? above - 1 : above;
  return mode == Mode::nearest_away || above % 2 == 0 ? above : above - 1;
}

TEST(IEEEFloat, RoundsToTheNeighbourThatTheModeAsksForOnAFineGrid) {
  for (const Format f : {Format{2, 1}, Format{2, 2}, Format{3, 3}, Format{1, 2}}) {
    const std::vector<mpq_class> values = magnitudes(f);
    const mpz_class sign = power(f.e + f.m);
    // From a quarter of the smallest magnitude to beyond twice the largest.
    const mpq_class unit = scale(1 - bias(f) - static_cast<long>(f.m) - 2);
    const mpq_class limit = scale(bias(f) + 2);
    for (mpq_class x = unit; x < limit; x += unit) {
      for (const Mode mode : kModes) {
        ASSERT_EQ(rounded(f, mode, x), rounded_by_search(values, mode, mode == Mode::plus_inf, x))
            << x << " in " << f << ", mode " << static_cast<int>(mode);
        ASSERT_EQ(rounded(f, mode, -x),
                  sign + rounded_by_search(values, mode, mode == Mode::minus_inf, x))
            << -x << " in " << f << ", mode " << static_cast<int>(mode);
      }
    }
  }
}

/// Random rationals over the whole range of the format and a little beyond, exact values, values
/// halfway between two, and their close neighbours.
std::vector<mpq_class> random_rationals(Format f, int count) {
  gmp_randclass random(gmp_randinit_default);
  std::mt19937_64 choose(f.e * 100 + f.m);
  const long lowest = 1 - bias(f) - static_cast<long>(f.m) - 3;
  const long highest = bias(f) + 3;
  const auto exponent = [&] {
    const auto range = static_cast<std::uint64_t>(highest - lowest);
    return lowest + static_cast<long>(choose() % range);
  };
  std::vector<mpq_class> result;
  for (int i = 0; i < count; ++i) {
    mpq_class x;
    if (i % 3 == 0) {
      x = mpq_class(mpz_class(random.get_z_bits(f.m + 10)) + 1,
                    mpz_class(random.get_z_bits(f.m + 10)) + 1);
      x.canonicalize();
      x *= scale(exponent());
    } else {
      // A finite pattern in units of a fourth of its last place.
      const IEEEFloat base = from_bits(f, random.get_z_range(infinity_bits(f)));
      const mpq_class unit = scale(base.get_exponent().get_si() - 2);
      x = 4 * base.get_significand() * unit + (static_cast<long>(choose() % 9) - 4) * unit;
      if (i % 3 == 2) x += (static_cast<long>(choose() % 3) - 1) * unit / 1000003;
    }
    if (x == 0) continue;
    result.push_back(choose() % 2 == 0 ? x : mpq_class(-x));
  }
  return result;
}

mpfr_rnd_t mpfr_mode(Mode mode) {
  switch (mode) {
    case Mode::toward_zero:
      return MPFR_RNDZ;
    case Mode::plus_inf:
      return MPFR_RNDU;
    case Mode::minus_inf:
      return MPFR_RNDD;
    default:
      return MPFR_RNDN;
  }
}

/// x rounded to the format by MPFR, which knows four of the modes with subnormals.
mpz_class rounded_by_mpfr(Format f, Mode mode, const mpq_class& x) {
  const mpfr_exp_t saved_min = mpfr_get_emin();
  const mpfr_exp_t saved_max = mpfr_get_emax();
  // MPFR's significands lie below 1, so its exponents are one higher.
  mpfr_set_emin(2 - bias(f) - static_cast<long>(f.m));
  mpfr_set_emax(bias(f) + 1);
  mpfr_t y;
  mpfr_init2(y, static_cast<mpfr_prec_t>(f.m + 1));
  const mpfr_rnd_t rnd = mpfr_mode(mode);
  mpfr_subnormalize(y, mpfr_set_q(y, x.get_mpq_t(), rnd), rnd);

  mpz_class bits = mpfr_signbit(y) != 0 ? power(f.e + f.m) : mpz_class(0);
  if (mpfr_inf_p(y) != 0) {
    bits += infinity_bits(f);
  } else if (mpfr_zero_p(y) == 0) {
    mpz_class significand;
    const long unit = mpfr_get_z_2exp(significand.get_mpz_t(), y);
    const long exponent = mpfr_get_exp(y) - 1;
    const long smallest = 1 - bias(f);
    const long last_place = (exponent < smallest ? smallest : exponent) - static_cast<long>(f.m);
    const mpq_class units = abs(mpq_class(significand)) * scale(unit - last_place);
    bits += units.get_num();
    if (exponent > smallest) bits += mpz_class(exponent - smallest) << f.m;
  }
  mpfr_clear(y);
  mpfr_set_emin(saved_min);
  mpfr_set_emax(saved_max);
  return bits;
}

TEST(IEEEFloat, RoundsRandomRationalsAsMpfrDoes) {
  for (const Format f : kFormats) {
    for (const mpq_class& x : random_rationals(f, 3000)) {
      for (const Mode mode :
           {Mode::nearest_even, Mode::toward_zero, Mode::plus_inf, Mode::minus_inf}) {
        ASSERT_EQ(rounded(f, mode, x), rounded_by_mpfr(f, mode, x))
            << x << " in " << f << ", mode " << static_cast<int>(mode);
      }
    }
  }
}

TEST(IEEEFloat, TiesAwayTakesTheNearestMagnitudeAndTheLargerOfTwo) {
  for (const Format f : kFormats) {
    const mpz_class sign = power(f.e + f.m);
    for (const mpq_class& x : random_rationals(f, 3000)) {
      const mpq_class magnitude = abs(x);
      // The two magnitudes around |x|, the upper one with the exponent range unbounded.
      const mpz_class below = rounded(f, Mode::toward_zero, magnitude);
      const mpq_class low = value_of(from_bits(f, below).get_value());
      const bool overflow = below + 1 == infinity_bits(f);
      const mpq_class high =
          overflow ? scale(bias(f) + 1) : value_of(from_bits(f, below + 1).get_value());
      const mpz_class nearest = magnitude - low < high - magnitude ? below : mpz_class(below + 1);
      ASSERT_EQ(rounded(f, Mode::nearest_away, x), x < 0 ? mpz_class(nearest + sign) : nearest)
          << x << " in " << f;
    }
  }
}

TEST(IEEEFloat, TheStickyBitStandsForARestBelowTheSignificand) {
  const Format f = {3, 3};
  for (const Mode mode : kModes) {
    for (long significand = 64; significand < 512; ++significand) {
      for (long exponent = -14; exponent < 0; ++exponent) {
        for (const bool negative : {false, true}) {
          const mpq_class sign = negative ? -1 : 1;
          IEEEFloat exact(f, mode);
          exact.self_round(negative, significand, exponent, false);
          ASSERT_EQ(exact.get_bits().get_numerator(),
                    rounded(f, mode, sign * significand * scale(exponent)));
          IEEEFloat sticky(f, mode);
          sticky.self_round(negative, significand, exponent, true);
          ASSERT_EQ(sticky.get_bits().get_numerator(),
                    rounded(f, mode, sign * (significand + mpq_class(1, 3)) * scale(exponent)))
              << significand << " * 2^" << exponent;
        }
      }
    }
  }
}

TEST(IEEEFloat, OverflowAndUnderflowFollowTheMode) {
  const Format f = {3, 4};
  const mpq_class huge = 1000;
  const mpq_class tiny = scale(-100);
  const int overflow[] = {0x70, 0x6F, 0x70, 0x6F, 0x70};
  const int negative_overflow[] = {0xF0, 0xEF, 0xEF, 0xF0, 0xF0};
  const int underflow[] = {0x00, 0x00, 0x01, 0x00, 0x00};
  const int negative_underflow[] = {0x80, 0x80, 0x80, 0x81, 0x80};
  for (std::size_t i = 0; i < std::size(kModes); ++i) {
    EXPECT_EQ(rounded(f, kModes[i], huge), overflow[i]);
    EXPECT_EQ(rounded(f, kModes[i], -huge), negative_overflow[i]);
    EXPECT_EQ(rounded(f, kModes[i], tiny), underflow[i]);
    EXPECT_EQ(rounded(f, kModes[i], -tiny), negative_underflow[i]);
  }
}

TEST(IEEEFloat, WideExponentsCostNoMoreThanNarrowOnes) {
  const Format wide = {60, 5};
  const Format narrow = {8, 5};
  const mpz_class rebias = (power(59) - power(7)) << 5;
  for (const Mode mode : kModes) {
    for (long n = 1; n < 200; ++n) {
      const mpq_class x(n, 7);
      EXPECT_EQ(rounded(wide, mode, x), rounded(narrow, mode, x) + rebias);
    }
    for (const bool negative : {false, true}) {
      const bool up = mode == (negative ? Mode::minus_inf : Mode::plus_inf);
      const bool nearest = mode == Mode::nearest_even || mode == Mode::nearest_away;
      const mpz_class sign = negative ? power(65) : mpz_class(0);
      IEEEFloat huge(wide, mode);
      huge.self_round(negative, 1, power(62), true);
      EXPECT_EQ(huge.get_bits().get_numerator(),
                sign + infinity_bits(wide) - (nearest || up ? 0 : 1));
      IEEEFloat tiny(wide, mode);
      tiny.self_round(negative, 1, mpz_class(-power(100)), false);
      EXPECT_EQ(tiny.get_bits().get_numerator(), sign + (up ? 1 : 0));
    }
  }
}

TEST(IEEEFloat, ExponentsBeyondAMachineWordAreHandled) {
  const Format f = {100, 10};
  IEEEFloat x(f, Mode::nearest_even);
  x.self_round(false, 3, power(98), false);
  EXPECT_EQ(x.get_significand(), 3 * power(9));
  EXPECT_EQ(x.get_exponent(), power(98) - 9);
  x.self_round(QNumber(1));
  EXPECT_EQ(x.get_bits().get_numerator(), (power(99) - 1) << 10);
  EXPECT_EQ(x.get_value(), QNumber(1));
}

}  // namespace
}  // namespace vorn
