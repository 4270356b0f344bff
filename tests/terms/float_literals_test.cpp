// Literals from numbers of programs, and numbers from literals.
#include "vorn/terms/float_literals.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>

#include "vorn/terms/float_text.h"

namespace vorn {
namespace {

using Mode = IEEEFloat::rounding_mode;

class FloatLiterals : public testing::Test {
 protected:
  /// What an exact literal is refused with; empty where it is not.
  std::string refusal(const DataType* type, const FloatValue& value) {
    try {
      make_fp_literal(mgr, type, value);
      return "";
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
  }

  TermManager mgr;
  const DataType* half = mgr.get_fp_type(5, 10);
  const DataType* single = mgr.get_fp_type(8, 23);
  const DataType* twice = mgr.get_fp_type(11, 52);
};

TEST_F(FloatLiterals, AreOneTermHoweverTheNumberIsGiven) {
  const Term* expected = mgr.make_fp_number(0x3E00, 5, 10);
  EXPECT_EQ(make_fp_literal(mgr, half, 1.5), expected);
  EXPECT_EQ(make_fp_literal(mgr, half, 1.5F), expected);
  EXPECT_EQ(make_fp_literal(mgr, half, QNumber(3) / QNumber(2)), expected);
  EXPECT_EQ(make_fp_literal(mgr, half, get_float(make_fp_literal(mgr, twice, 1.5))), expected);
  for (const char* text : {"1.5", "3/2", "+1.5", "15e-1", "0x1.8p0", "0x.3p3", "01.50"})
    EXPECT_EQ(make_fp_literal(mgr, half, text), expected) << text;
  EXPECT_EQ(make_fp_literal(mgr, half, std::string("1.5")), expected);
}

TEST_F(FloatLiterals, TakeIntegersOfAllWidths) {
  EXPECT_EQ(get_double(make_fp_literal(mgr, half, -3)), -3);
  EXPECT_EQ(get_double(make_fp_literal(mgr, half, std::uint8_t{200})), 200);
  EXPECT_EQ(get_double(make_fp_literal(mgr, single, std::numeric_limits<std::int64_t>::min())),
            -std::ldexp(1, 63));
  const auto most = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(get_double(make_fp_literal(mgr, single, Mode::nearest_even, most)), std::ldexp(1, 64));
  EXPECT_EQ(get_double(make_fp_literal(mgr, twice, Mode::toward_zero, most)),
            std::ldexp(1, 64) - 2048);
  EXPECT_EQ(refusal(twice, most).substr(0, 20), std::to_string(most));
  EXPECT_EQ(make_fp_literal(mgr, half, 0), mgr.make_fp_number(0, 5, 10));
}

TEST_F(FloatLiterals, WithoutAModeAreExactOrRefused) {
  EXPECT_EQ(refusal(single, 0.1),
            "0.1 is no value of (_ FloatingPoint 8 24): a rounding mode has to say which of its "
            "neighbours is meant");
  EXPECT_EQ(refusal(single, 0.1F), "");
  EXPECT_EQ(refusal(twice, 0.1F), "");
  EXPECT_NE(refusal(half, 0.1F), "");
  EXPECT_NE(refusal(half, "1/3"), "");
  EXPECT_NE(refusal(half, QNumber(2049)), "");
  EXPECT_EQ(refusal(half, 2050), "");
  // Beyond the largest number, and below the smallest.
  EXPECT_EQ(refusal(half, 65504), "");
  EXPECT_NE(refusal(half, 65536), "");
  EXPECT_EQ(refusal(half, "0x1p-24"), "");
  EXPECT_NE(refusal(half, "0x1p-25"), "");
  EXPECT_NE(refusal(half, "-0x1p-1000000000000000000000000"), "");
}

TEST_F(FloatLiterals, AreRoundedOnceInTheModeAskedFor) {
  // Between 1 and 1 + 2^-10, a little above the middle: rounded to 24 bits first it would be a tie.
  const double x = 1 + std::ldexp(1, -11) + std::ldexp(1, -40);
  const auto value = [&](Mode mode, double number) {
    return get_double(make_fp_literal(mgr, half, mode, number));
  };
  const double above = 1 + std::ldexp(1, -10);
  EXPECT_EQ(value(Mode::nearest_even, x), above);
  EXPECT_EQ(value(Mode::nearest_away, x), above);
  EXPECT_EQ(value(Mode::plus_inf, x), above);
  EXPECT_EQ(value(Mode::minus_inf, x), 1);
  EXPECT_EQ(value(Mode::toward_zero, -x), -1);
  EXPECT_EQ(value(Mode::minus_inf, -x), -above);
  EXPECT_EQ(value(Mode::nearest_even, 1e9), std::numeric_limits<double>::infinity());
  EXPECT_EQ(value(Mode::toward_zero, 1e9), 65504);
}

TEST_F(FloatLiterals, KeepTheSignOfZeroAndWhatIsNotFinite) {
  const Term* minus_zero = mgr.make_fp_number(0x8000, 5, 10);
  EXPECT_EQ(make_fp_literal(mgr, half, -0.0), minus_zero);
  EXPECT_EQ(make_fp_literal(mgr, half, "-0"), minus_zero);
  EXPECT_EQ(make_fp_literal(mgr, half, "-0x0p3"), minus_zero);
  EXPECT_TRUE(std::signbit(get_double(minus_zero)));
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(make_fp_literal(mgr, half, -infinity), mgr.make_fp_number(0xFC00, 5, 10));
  EXPECT_EQ(make_fp_literal(mgr, half, "+oo"), make_fp_literal(mgr, half, "inf"));
  EXPECT_EQ(get_double(make_fp_literal(mgr, half, "-oo")), -infinity);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(make_fp_literal(mgr, half, nan), mgr.make_fp_nan(5, 10));
  EXPECT_EQ(make_fp_literal(mgr, half, "NaN"), mgr.make_fp_nan(5, 10));
  EXPECT_TRUE(std::isnan(get_double(mgr.make_fp_nan(5, 10))));
}

TEST_F(FloatLiterals, GiveBackEveryDouble) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 10'000; ++i) {
    const auto bits = random();
    const auto x = std::bit_cast<double>(bits);
    const double back = get_double(make_fp_literal(mgr, twice, x));
    if (std::isnan(x)) {
      EXPECT_TRUE(std::isnan(back));
    } else {
      EXPECT_EQ(std::bit_cast<std::uint64_t>(back), bits);
    }
    const auto narrow = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
    if (std::isnan(narrow)) continue;
    EXPECT_EQ(get_double(make_fp_literal(mgr, single, narrow)), narrow);
    const auto rounded = static_cast<float>(x);
    if (std::isnan(x)) continue;
    EXPECT_EQ(get_double(make_fp_literal(mgr, single, Mode::nearest_even, x)), rounded);
  }
}

TEST_F(FloatLiterals, OfWiderFormatsAreDoublesWhereTheyCanBe) {
  const DataType* quad = mgr.get_fp_type(15, 112);
  EXPECT_EQ(get_double(make_fp_literal(mgr, quad, 0.1)), 0.1);
  const Term* tenth = make_fp_literal(mgr, quad, Mode::nearest_even, "0.1");
  EXPECT_THROW(get_double(tenth), std::invalid_argument);
  EXPECT_EQ(get_double(tenth, Mode::nearest_even), 0.1);
  EXPECT_LT(get_double(tenth, Mode::minus_inf), 0.1);
  EXPECT_THROW(get_double(make_fp_literal(mgr, quad, "0x1p2000")), std::invalid_argument);
}

TEST_F(FloatLiterals, AreOfFloatsOnly) {
  EXPECT_EQ(refusal(mgr.get_bv_type(16), 1),
            "a floating-point literal needs a floating-point sort, got (_ BitVec 16)");
  EXPECT_NE(refusal(nullptr, 1), "");
  EXPECT_THROW(make_fp_literal(mgr, mgr.get_bool_type(), Mode::plus_inf, 1), std::invalid_argument);
  EXPECT_THROW(get_float(mgr.make_bv_number(1, 16)), std::invalid_argument);
  EXPECT_THROW(get_double(mgr.make_constant("x", half)), std::invalid_argument);
  EXPECT_THROW(get_double(mgr.make_true(), Mode::plus_inf), std::invalid_argument);
}

TEST_F(FloatLiterals, OfTextsThatAreNoNumbersAreRefused) {
  for (const char* text :
       {"",     "-",   "+",     ".",   "-.",     "1e",   "e1",    "1e+",      "--1", "+-1",
        "1 ",   " 1",  "1/0",   "1/",  "/2",     "1/-2", "1.5/2", "0x",       "0x.", "0xg",
        "0x1p", "1p3", "1.2.3", "1_0", "nan(1)", "-NaN", "OO",    "infinity", "1,5"}) {
    EXPECT_EQ(refusal(half, text), "\"" + std::string(text) + "\" is no number");
  }
  EXPECT_THROW(make_fp_literal(mgr, half, "1e100001"), std::length_error);
  EXPECT_THROW(make_fp_literal(mgr, half, "1e-100001"), std::length_error);
}

TEST_F(FloatLiterals, ComeBackFromTheirTexts) {
  constexpr IEEEFloat::format kTiny = {4, 3};
  for (int bits = 0; bits < 256; ++bits) {
    const IEEEFloat value = IEEEFloat::from_bits(kTiny, bits);
    const QNumber expected = value.is_nan() ? IEEEFloat::make_nan(kTiny).get_bits() : bits;
    for (const std::string& text : {decimal_text(value), hexadecimal_text(value)})
      EXPECT_EQ(parse_float(text, kTiny, Mode::nearest_even).get_bits(), expected) << text;
  }
}

}  // namespace
}  // namespace vorn
