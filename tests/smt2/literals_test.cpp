// Literals in all notations, at the bounds of their widths and beyond.
#include "vorn/smt2/literals.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

#include "vorn/semantics/evaluator.h"

namespace vorn::smt2 {
namespace {

/// The sentence of the error that a call throws.
std::string error_of(const std::function<void()>& call) {
  try {
    call();
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
  return "no error";
}

class LiteralsTest : public testing::Test {
 protected:
  const Term* variable(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }
  const Term* bits(int value, std::size_t width) { return mgr.make_bv_number(value, width); }
  const Term* single(std::int64_t pattern) { return mgr.make_fp_number(QNumber(pattern), 8, 23); }
  const Term* rounded(const Term* rm, const QNumber& real) {
    return make_float_from_real(mgr, {8, 23}, rm, real);
  }
  /// 2^k
  static QNumber power(int k) {
    QNumber value(1);
    for (; k > 0; --k)
      value += value;
    return value;
  }

  TermManager mgr;
  const Term* rne = mgr.make_fprounding_even();
  const Term* rna = mgr.make_fprounding_away();
  const Term* rtp = mgr.make_fprounding_plus_inf();
  const Term* rtn = mgr.make_fprounding_minus_inf();
  const Term* rtz = mgr.make_fprounding_zero();
};

// Formats ----------------------------------------------------------------------------------------

TEST_F(LiteralsTest, AFormatDoesNotCountTheHiddenBit) {
  EXPECT_EQ(make_format(8, 24), (IEEEFloat::format{8, 23}));
  EXPECT_EQ(make_format(2, 2), (IEEEFloat::format{2, 1}));
}

TEST_F(LiteralsTest, AFormatHasAtLeastTwoBitsInBothWidths) {
  EXPECT_EQ(error_of([] { make_format(1, 24); }),
            "a floating-point sort with exponent width 1 and significand width 24: both must be "
            "greater than 1");
  EXPECT_THROW(make_format(8, 1), std::invalid_argument);
  EXPECT_THROW(make_format(0, 0), std::invalid_argument);
}

TEST_F(LiteralsTest, AFormatIsAsWideAsABitVectorCanBe) {
  const auto widest = static_cast<std::uint32_t>(TermManager::kMaxWidth);
  EXPECT_EQ(make_format(2, widest - 2).width(), TermManager::kMaxWidth);
  EXPECT_EQ(error_of([&] { make_format(2, widest - 1); }),
            "a floating-point sort with exponent width 2 and significand width 1048575: widths go "
            "up to 1048576 in sum");
  EXPECT_THROW(make_format(0xffffffffU, 0xffffffffU), std::invalid_argument);
}

// Bit-vectors ------------------------------------------------------------------------------------

TEST_F(LiteralsTest, DigitsGiveValueAndWidth) {
  EXPECT_EQ(make_bv_digits(mgr, "0", 1), bits(0, 1));
  EXPECT_EQ(make_bv_digits(mgr, "00101", 1), bits(5, 5));
  EXPECT_EQ(make_bv_digits(mgr, "0aF", 4), bits(0xaf, 12));
  EXPECT_EQ(make_bv_digits(mgr, std::string(40, 'f'), 4),
            mgr.make_bv_number(power(160) - QNumber(1), 160));
}

TEST_F(LiteralsTest, MoreDigitsThanTheWidestBitVectorHasBitsAreRefused) {
  const std::string digits(TermManager::kMaxWidth / 4, '0');
  EXPECT_EQ(make_bv_digits(mgr, digits, 4)->get_type()->get_width(), TermManager::kMaxWidth);
  EXPECT_THROW(make_bv_digits(mgr, digits + '0', 4), std::invalid_argument);
}

TEST_F(LiteralsTest, ADecimalIsBvAndDigits) {
  for (const char* name : {"bv0", "bv7", "bv0010", "bv123456789012345678901234567890"})
    EXPECT_TRUE(is_bv_decimal(name)) << name;
  for (const char* name : {"", "b", "bv", "BV1", "bvx", "bv1x", "bv-1", "bv 1", "bv1.0", "7"})
    EXPECT_FALSE(is_bv_decimal(name)) << name;
}

TEST_F(LiteralsTest, ADecimalFillsItsWidthAndNoMore) {
  EXPECT_EQ(make_bv_decimal(mgr, "bv0", 1), bits(0, 1));
  EXPECT_EQ(make_bv_decimal(mgr, "bv007", 4), bits(7, 4));
  EXPECT_EQ(make_bv_decimal(mgr, "bv255", 8), bits(255, 8));
  EXPECT_EQ(error_of([&] { make_bv_decimal(mgr, "bv256", 8); }),
            "the value 256 does not fit (_ BitVec 8)");
  EXPECT_EQ(make_bv_decimal(mgr, "bv18446744073709551616", 65), mgr.make_bv_number(power(64), 65));
  EXPECT_THROW(make_bv_decimal(mgr, "bv18446744073709551616", 64), std::invalid_argument);
  EXPECT_THROW(make_bv_decimal(mgr, "bv0", 0), std::invalid_argument);
}

// Floats from bits -------------------------------------------------------------------------------

TEST_F(LiteralsTest, EveryNotationOfAPatternIsOneTermAndEveryNaNIsOne) {
  constexpr std::size_t kE = 2;
  constexpr std::size_t kM = 2;
  for (int pattern = 0; pattern < 1 << (1 + kE + kM); ++pattern) {
    const IEEEFloat value = IEEEFloat::from_bits({kE, kM}, QNumber(pattern));
    const bool is_nan = (pattern >> kM & 3) == 3 && (pattern & 3) != 0;
    const Term* expected =
        is_nan ? mgr.make_fp_nan(kE, kM) : mgr.make_fp_number(QNumber(pattern), kE, kM);
    EXPECT_EQ(mgr.make_fp_number(value), expected) << pattern;
    EXPECT_EQ(make_float_from_bits(mgr, {kE, kM}, bits(pattern, 1 + kE + kM)), expected);
    EXPECT_EQ(make_float_from_fields(mgr, bits(pattern >> (kE + kM), 1),
                                     bits(pattern >> kM & 3, kE), bits(pattern & 3, kM)),
              expected);
  }
}

TEST_F(LiteralsTest, UnknownBitsAreReadAsTheyAre) {
  const Term* v = variable("v", mgr.get_bv_type(7));
  EXPECT_EQ(make_float_from_bits(mgr, {3, 3}, v), mgr.make_fp_from_bits(3, 3, v));
}

TEST_F(LiteralsTest, BitsHaveTheWidthOfTheFormat) {
  EXPECT_THROW(make_float_from_bits(mgr, {3, 3}, bits(0, 8)), std::invalid_argument);
  EXPECT_THROW(make_float_from_bits(mgr, {3, 3}, variable("v", mgr.get_bv_type(6))),
               std::invalid_argument);
  EXPECT_THROW(make_float_from_bits(mgr, {3, 3}, mgr.make_true()), std::invalid_argument);
}

TEST_F(LiteralsTest, OneUnknownFieldMakesTheWholeUnknown) {
  const Term* sign = variable("s", mgr.get_bv_type(1));
  const Term* exponent = variable("x", mgr.get_bv_type(3));
  const Term* fraction = variable("y", mgr.get_bv_type(4));
  const Term* fields[] = {bits(1, 1), bits(5, 3), bits(9, 4)};
  const auto expect_joined = [&](const Term* s, const Term* x, const Term* y) {
    const Term* joined = mgr.make_bv_concat(s, mgr.make_bv_concat(x, y));
    EXPECT_EQ(make_float_from_fields(mgr, s, x, y), mgr.make_fp_from_bits(3, 4, joined));
  };
  expect_joined(sign, fields[1], fields[2]);
  expect_joined(fields[0], exponent, fields[2]);
  expect_joined(fields[0], fields[1], fraction);
}

TEST_F(LiteralsTest, FieldsHaveTheWidthsOfAFloat) {
  EXPECT_EQ(error_of([&] { make_float_from_fields(mgr, bits(0, 2), bits(0, 8), bits(0, 23)); }),
            "fp: the sign takes 1 bit and the exponent at least 2, got 2 and 8");
  EXPECT_EQ(error_of([&] { make_float_from_fields(mgr, bits(0, 1), bits(0, 1), bits(0, 23)); }),
            "fp: the sign takes 1 bit and the exponent at least 2, got 1 and 1");
  EXPECT_EQ(
      error_of([&] { make_float_from_fields(mgr, bits(0, 1), mgr.make_true(), bits(0, 23)); }),
      "fp: expected a bit-vector, got a term of Bool");
  const std::size_t half = TermManager::kMaxWidth / 2;
  EXPECT_THROW(make_float_from_fields(mgr, bits(0, 1), variable("x", mgr.get_bv_type(half)),
                                      variable("y", mgr.get_bv_type(half))),
               std::invalid_argument);
}

// Floats from numbers ----------------------------------------------------------------------------

TEST_F(LiteralsTest, ANumberIsRoundedInEachMode) {
  const QNumber tenth = QNumber(1) / QNumber(10);
  EXPECT_EQ(rounded(rne, tenth), single(0x3dcccccd));
  EXPECT_EQ(rounded(rna, tenth), single(0x3dcccccd));
  EXPECT_EQ(rounded(rtp, tenth), single(0x3dcccccd));
  EXPECT_EQ(rounded(rtn, tenth), single(0x3dcccccc));
  EXPECT_EQ(rounded(rtz, tenth), single(0x3dcccccc));
  EXPECT_EQ(rounded(rtp, QNumber(0) - tenth), single(0xbdcccccc));
  EXPECT_EQ(rounded(rtn, QNumber(0) - tenth), single(0xbdcccccd));
  EXPECT_EQ(rounded(rtz, QNumber(0) - tenth), single(0xbdcccccc));
}

TEST_F(LiteralsTest, ATieGoesToEvenOrAway) {
  const QNumber tie = QNumber(1) + QNumber(1) / power(24);
  EXPECT_EQ(rounded(rne, tie), single(0x3f800000));
  EXPECT_EQ(rounded(rna, tie), single(0x3f800001));
}

TEST_F(LiteralsTest, ANumberThatIsTooLargeOverflowsByItsMode) {
  EXPECT_EQ(rounded(rne, power(128)), single(0x7f800000));
  EXPECT_EQ(rounded(rtz, power(128)), single(0x7f7fffff));
  EXPECT_EQ(rounded(rtp, QNumber(0) - power(128)), single(0xff7fffff));
  EXPECT_EQ(rounded(rtn, QNumber(0) - power(128)), single(0xff800000));
}

TEST_F(LiteralsTest, AScaledNumberIsRoundedOnce) {
  const auto scaled = [&](const Term* rm, const QNumber& real, const QNumber& exponent) {
    return make_float_from_real(mgr, {8, 23}, rm, real, exponent);
  };
  EXPECT_EQ(scaled(rne, QNumber(1) / QNumber(2), 3), single(0x40800000));
  EXPECT_EQ(scaled(rne, 4, -3), single(0x3f000000));
  // What no float in between could hold: each is the number written out, rounded.
  for (const int k : {-190, -150, -149, -127, -126, -1, 0, 1, 100, 127, 128}) {
    const QNumber factor = k < 0 ? QNumber(1) / power(-k) : power(k);
    for (const Term* rm : {rne, rna, rtp, rtn, rtz}) {
      for (const int numerator : {1, -1, 3, -7, 12345679}) {
        const QNumber real = QNumber(numerator) / QNumber(3);
        EXPECT_EQ(scaled(rm, real, k), rounded(rm, real * factor)) << numerator << " " << k;
      }
    }
  }
}

TEST_F(LiteralsTest, AScaleMayBeBeyondAllFormats) {
  const QNumber huge = QNumber::from_string("1000000000000000000000000000000");
  const auto scaled = [&](const Term* rm, int real, const QNumber& exponent) {
    return make_float_from_real(mgr, {8, 23}, rm, QNumber(real) / QNumber(3), exponent);
  };
  EXPECT_EQ(scaled(rne, 1, huge), single(0x7f800000));
  EXPECT_EQ(scaled(rtz, 1, huge), single(0x7f7fffff));
  EXPECT_EQ(scaled(rtn, -1, huge), single(0xff800000));
  EXPECT_EQ(scaled(rtp, -1, huge), single(0xff7fffff));
  EXPECT_EQ(scaled(rne, 1, huge.neg()), single(0));
  EXPECT_EQ(scaled(rtp, 1, huge.neg()), single(1));
  EXPECT_EQ(scaled(rne, -1, huge.neg()), single(0x80000000));
  EXPECT_EQ(scaled(rtn, -1, huge.neg()), single(0x80000001));
  for (const QNumber& exponent : {huge, huge.neg()})
    EXPECT_EQ(scaled(rtn, 0, exponent), single(0));
  EXPECT_EQ(error_of([&] { scaled(rne, 1, QNumber(1) / QNumber(2)); }),
            "to_fp: the exponent must be an integer, got 1/2");
}

TEST_F(LiteralsTest, ZeroIsPositiveInEveryMode) {
  for (const Term* rm : {rne, rna, rtp, rtn, rtz})
    EXPECT_EQ(rounded(rm, QNumber(0)), single(0));
}

TEST_F(LiteralsTest, AnUnknownModeChoosesBetweenTheLiteralsOfTheFive) {
  const Term* rm = variable("rm", mgr.get_fprounding_type());
  const QNumber tie = QNumber(0) - QNumber(1) - QNumber(1) / power(24);
  const Term* choice = rounded(rm, tie);
  using enum IEEEFloat::rounding_mode;
  for (const auto mode : {nearest_even, toward_zero, plus_inf, minus_inf, nearest_away}) {
    semantics::Evaluator evaluator(mgr, [&](const Term* t) {
      EXPECT_EQ(t, rm);
      return QNumber(static_cast<int>(mode));
    });
    QNumber expected;
    ASSERT_TRUE(mgr.is_number(rounded(mgr.make_fprounding(mode), tie), &expected));
    EXPECT_EQ(evaluator.evaluate(choice), expected) << static_cast<int>(mode);
  }
}

TEST_F(LiteralsTest, AnUnknownModeDoesNotMatterToAnExactNumber) {
  const Term* rm = variable("rm", mgr.get_fprounding_type());
  EXPECT_EQ(rounded(rm, QNumber(3)), single(0x40400000));
}

TEST_F(LiteralsTest, ANumberIsRoundedByAModeAndNothingElse) {
  EXPECT_EQ(error_of([&] { rounded(bits(0, 3), QNumber(1)); }),
            "to_fp: expected a rounding mode, got a term of (_ BitVec 3)");
}

}  // namespace
}  // namespace vorn::smt2
