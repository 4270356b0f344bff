// Texts of floats against the machine's own conversions and, for formats that it does not have, by
// reading them back.
#include "vorn/terms/float_text.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace vorn {
namespace {

constexpr IEEEFloat::format kDouble{11, 52};

IEEEFloat from_bits(IEEEFloat::format f, std::uint64_t bits) {
  return IEEEFloat::from_bits(f, QNumber::from_string(std::to_string(bits)));
}

std::string decimal(double x) {
  return decimal_text(from_bits(kDouble, std::bit_cast<std::uint64_t>(x)));
}

/// Significant digits of a text.
std::size_t count_digits(std::string text) {
  text = text.substr(0, text.find('e'));
  std::erase_if(text, [](char c) { return c < '0' || c > '9'; });
  text.erase(0, text.find_first_not_of('0'));
  text.erase(text.find_last_not_of('0') + 1);
  return text.size();
}

TEST(FloatText, DecimalsAreWrittenAsUsual) {
  EXPECT_EQ(decimal(0.1), "0.1");
  EXPECT_EQ(decimal(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(decimal(-1), "-1.0");
  EXPECT_EQ(decimal(1200), "1200.0");
  EXPECT_EQ(decimal(0.00001), "0.00001");
  EXPECT_EQ(decimal(0.000001), "1e-6");
  EXPECT_EQ(decimal(1.5e-7), "1.5e-7");
  EXPECT_EQ(decimal(1e16), "10000000000000000.0");
  EXPECT_EQ(decimal(1e17), "1e+17");
  EXPECT_EQ(decimal(1e23), "1e+23");
  EXPECT_EQ(decimal(5e-324), "5e-324");
  EXPECT_EQ(decimal(std::numeric_limits<double>::max()), "1.7976931348623157e+308");
  EXPECT_EQ(decimal(-0.0), "-0.0");
  EXPECT_EQ(decimal(-INFINITY), "-oo");
  EXPECT_EQ(decimal(INFINITY), "+oo");
  EXPECT_EQ(decimal(NAN), "NaN");
}

/// std::to_chars gives the shortest text that is read back as the same number.
TEST(FloatText, DecimalsOfDoublesAreShortest) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 3000; ++i) {
    std::uint64_t bits = random();
    if (i % 4 == 0) bits &= 0x800fffffffffffffU;                          // subnormal
    if (i % 4 == 1) bits = (bits & 0xfffffU) | (random() % 2047) << 52U;  // few digits
    const double x = std::bit_cast<double>(bits);
    if (!std::isfinite(x)) continue;
    const std::string text = decimal(x);
    double back = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), back);
    ASSERT_EQ(end, text.data() + text.size()) << text;
    ASSERT_EQ(std::bit_cast<std::uint64_t>(back), bits) << text;
    std::array<char, 64> shortest{};
    const auto written = std::to_chars(shortest.data(), shortest.data() + shortest.size(), x,
                                       std::chars_format::scientific);
    ASSERT_EQ(count_digits(text), count_digits({shortest.data(), written.ptr})) << text;
  }
}

/// By the C library, which normalises no subnormal double.
TEST(FloatText, HexadecimalsOfDoublesAreThoseOfPrintf) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 3000; ++i) {
    std::uint64_t bits = random();
    if (i % 4 == 0) bits &= 0x800fffffffffffffU;
    if (i % 8 == 1) bits &= 0xffff000000000000U;
    const double x = std::bit_cast<double>(bits);
    if (std::isnan(x)) continue;
    std::array<char, 64> expected{};
    std::snprintf(expected.data(), expected.size(), "%a", x);
    ASSERT_EQ(hexadecimal_text(from_bits(kDouble, bits)), expected.data());
  }
  EXPECT_EQ(hexadecimal_text(from_bits(kDouble, 0)), "0x0p+0");
  EXPECT_EQ(hexadecimal_text(from_bits(kDouble, 0xfff0000000000000U)), "-inf");
  EXPECT_EQ(hexadecimal_text(from_bits(kDouble, 0x7ff8000000000000U)), "nan");
}

/// The value of a decimal, which no arithmetic of the library made.
mpq_class read_decimal(const std::string& text) {
  const std::size_t e = text.find('e');
  std::string digits = text.substr(0, e);
  long exponent = e == std::string::npos ? 0 : std::stol(text.substr(e + 1));
  if (const std::size_t point = digits.find('.'); point != std::string::npos) {
    exponent -= static_cast<long>(digits.size() - point - 1);
    digits.erase(point, 1);
  }
  mpz_class power;
  mpz_ui_pow_ui(power.get_mpz_t(), 10, static_cast<unsigned long>(std::labs(exponent)));
  mpq_class value{mpz_class(digits, 10)};
  if (exponent < 0) {
    value /= power;
  } else {
    value *= power;
  }
  return value;
}

/// Nearer to the float than to its neighbours.
TEST(FloatText, DecimalsOfOtherFormatsAreUnambiguous) {
  for (const IEEEFloat::format f : {IEEEFloat::format{3, 3}, {2, 1}, {4, 2}, {5, 10}, {2, 9}}) {
    const std::uint64_t end = (std::uint64_t{1} << f.e) - 1;
    for (std::uint64_t bits = 1; bits < end << f.m; ++bits) {
      const IEEEFloat x = from_bits(f, bits);
      const mpq_class value(x.get_value().get_numerator(), x.get_value().get_denominator());
      const IEEEFloat below = from_bits(f, bits - 1);
      const mpq_class gap_below =
          value - mpq_class(below.get_value().get_numerator(), below.get_value().get_denominator());
      const mpq_class gap_above = value / mpq_class(x.get_significand());
      const mpq_class error = read_decimal(decimal_text(x)) - value;
      const mpq_class distance = abs(error);
      const mpq_class gap = error < 0 ? gap_below : gap_above;
      ASSERT_LE(distance, gap / 2) << decimal_text(x);
    }
  }
}

TEST(FloatText, LargeFormatsHaveTextAsWell) {
  const IEEEFloat::format quad{15, 112};
  const IEEEFloat third =
      IEEEFloat::from_bits(quad, QNumber::from_string("3ffd5555555555555555555555555555", 16));
  EXPECT_EQ(decimal_text(third), "0.3333333333333333333333333333333333");
  EXPECT_EQ(hexadecimal_text(third), "0x1.5555555555555555555555555555p-2");
  // The decimal of 2^(2^29) would have a hundred million digits.
  const IEEEFloat::format wide{31, 4};
  const IEEEFloat far = from_bits(wide, std::uint64_t{0x60000000} << 4U);
  EXPECT_EQ(decimal_text(far), "");
  EXPECT_EQ(hexadecimal_text(far), "0x1p+536870913");
  const IEEEFloat::format long_format{5, 1000};
  IEEEFloat one_third(long_format, IEEEFloat::rounding_mode::nearest_even);
  one_third.self_round(QNumber(mpz_class(1), mpz_class(3)));
  EXPECT_EQ(count_digits(decimal_text(one_third)), 303U);
}

}  // namespace
}  // namespace vorn
