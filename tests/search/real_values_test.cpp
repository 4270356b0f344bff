#include "vorn/search/real_values.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>

namespace vorn::search {
namespace {

constexpr IEEEFloat::format kSmall[] = {{2, 1}, {3, 2}, {4, 3}, {5, 2}, {5, 10}, {8, 7}};

TEST(RealValues, OfEveryPatternLeadBackToIt) {
  for (const IEEEFloat::format f : kSmall) {
    const std::uint64_t count = std::uint64_t{1} << (1 + f.e + f.m);
    for (std::uint64_t bits = 0; bits < count; ++bits) {
      const IEEEFloat value = IEEEFloat::from_bits(f, QNumber(static_cast<std::int64_t>(bits)));
      const std::optional<double> real = real_of_bits(bits, f);
      ASSERT_EQ(real.has_value(), !value.is_nan() && !value.is_inf()) << bits;
      if (!real) continue;
      ASSERT_EQ(bits_of_real(*real, f), bits) << f.e << ' ' << f.m;
    }
  }
}

TEST(RealValues, AreThoseOfTheProcessor) {
  for (const float x : {0.0F, -0.0F, 1.5F, -3.25e-40F, 3.4e38F, 1e-45F}) {
    const std::uint64_t bits = std::bit_cast<std::uint32_t>(x);
    EXPECT_EQ(real_of_bits(bits, {8, 23}), static_cast<double>(x));
    EXPECT_EQ(bits_of_real(x, {8, 23}), bits);
  }
  for (const double x : {0.0, -1.5, 5e-324, 1.7e308, -2.2e-308}) {
    EXPECT_EQ(real_of_bits(std::bit_cast<std::uint64_t>(x), {11, 52}), x);
    EXPECT_EQ(bits_of_real(x, {11, 52}), std::bit_cast<std::uint64_t>(x));
  }
}

TEST(RealValues, AreRoundedToFiniteNumbers) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(bits_of_real(1e300, {8, 23}), 0x7f7fffffU);
  EXPECT_EQ(bits_of_real(-kInfinity, {8, 23}), 0xff7fffffU);
  EXPECT_EQ(bits_of_real(1.0 + std::ldexp(3.0, -25), {8, 23}), 0x3f800001U);
  EXPECT_EQ(bits_of_real(2.0 - std::ldexp(1.0, -30), {8, 23}), 0x40000000U) << "a carry";
  EXPECT_EQ(bits_of_real(std::ldexp(0.9, -149), {8, 23}), 1U);
  EXPECT_EQ(bits_of_real(std::ldexp(0.4, -149), {8, 23}), 0U);
}

TEST(RealValues, AreNotOfLargerFormats) {
  EXPECT_TRUE(has_real_values({11, 52}));
  EXPECT_FALSE(has_real_values({12, 40}));
  EXPECT_FALSE(has_real_values({11, 53}));
}

}  // namespace
}  // namespace vorn::search
