// Leaves: rounding modes, variables and literals, with their names and constraints.
#include <string>
#include <utility>

#include "tests/fp/encoder_fixture.h"

namespace vorn::fp {
namespace {

class LeavesTest : public EncoderTest {
 protected:
  /// The constraint on the constant of a floating-point variable, built by hand: it is no NaN, or
  /// it is `nan`.
  const Term* no_other_nan(const Term* k, format fmt, const QNumber& nan) {
    const Term* exponent = dst.make_bv_extract(fmt.e + fmt.m - 1, fmt.m, k);
    const Term* significand = dst.make_bv_extract(fmt.m - 1, 0, k);
    const Term* max = dst.make_bv_number(fmt.max_exponent(), fmt.e);
    const Term* zero = bv(0, fmt.m);
    const Term* is_nan = dst.make_bv_and(dst.make_bv_comp(exponent, max),
                                         dst.make_bv_not(dst.make_bv_comp(significand, zero)));
    const Term* pattern = dst.make_bv_number(nan, fmt.width());
    return dst.make_or(dst.make_equal(is_nan, bv(0, 1)), dst.make_equal(k, pattern));
  }
};
INSTANTIATE_TEST_SUITE_P(, LeavesTest, one_and_two_managers(), ::testing::PrintToStringParamName());

// Rounding modes ----------------------------------------------------------------------------------

TEST_P(LeavesTest, EncodesTheFourModesAsTheirCodes) {
  EXPECT_EQ(encode(src.make_fprounding_even()), bv(0, 2));
  EXPECT_EQ(encode(src.make_fprounding_zero()), bv(1, 2));
  EXPECT_EQ(encode(src.make_fprounding_plus_inf()), bv(2, 2));
  EXPECT_EQ(encode(src.make_fprounding_minus_inf()), bv(3, 2));
}

TEST_P(LeavesTest, EncodesARoundingVariableAsAFreeTwoBitConstant) {
  const Term* k = encode(rounding_variable("r"));
  EXPECT_EQ(name_of(k), ".fp.r1");
  EXPECT_EQ(k->get_type(), dst.get_bv_type(2));
  EXPECT_TRUE(side.empty());
  EXPECT_EQ(name_of(encode(rounding_variable("s"))), ".fp.r2");
}

// Floating-point variables ------------------------------------------------------------------------

TEST_P(LeavesTest, EncodesAVariableAsAConstantWithoutOtherNaNs) {
  constexpr format kSingle{8, 23};
  const Term* k = encode(variable("x", kSingle));
  EXPECT_EQ(name_of(k), ".fp.f1");
  EXPECT_EQ(k->get_type(), dst.get_bv_type(32));
  EXPECT_EQ(side, Terms{no_other_nan(k, kSingle, QNumber(0xFF800001))});
}

TEST_P(LeavesTest, KnowsTheCanonicalNaNOfEveryFormat) {
  const std::pair<format, const char*> cases[] = {
      {{2, 1}, "f"},
      {{3, 4}, "f1"},
      {{5, 10}, "fc01"},
      {{8, 7}, "ff81"},
      {{11, 52}, "fff0000000000001"},
      {{15, 112}, "ffff0000000000000000000000000001"},
  };
  for (const auto& [fmt, nan] : cases) {
    const Term* k = encode(variable("x", fmt));
    EXPECT_EQ(width_of(k), fmt.width());
    EXPECT_EQ(side, Terms{no_other_nan(k, fmt, QNumber::from_string(nan, 16))}) << nan;
  }
}

// Bit-vector variables ----------------------------------------------------------------------------

TEST_P(LeavesTest, EncodesABitVectorAsAFreeConstantAndListsIt) {
  const Term* v = bv_variable("v", 16);
  const Term* k = encode(v);
  EXPECT_EQ(name_of(k), ".fp.bv1");
  EXPECT_EQ(k->get_type(), dst.get_bv_type(16));
  EXPECT_TRUE(side.empty());
  Terms waiting;
  EXPECT_TRUE(encoder.get_new_bv_terms(waiting));
  EXPECT_EQ(waiting, Terms{v});
}

// Literals ----------------------------------------------------------------------------------------

TEST_P(LeavesTest, EncodesALiteralAsItsBits) {
  EXPECT_EQ(encode(number(0, {8, 23})), bv(0, 32));
  EXPECT_EQ(encode(number(0x80000000, {8, 23})), bv(0x80000000, 32));
  EXPECT_EQ(encode(number(0x3F800000, {8, 23})), bv(0x3F800000, 32));
  EXPECT_EQ(encode(number(0x7FC00000, {8, 23})), bv(0x7FC00000, 32));
  EXPECT_TRUE(side.empty());
}

TEST_P(LeavesTest, EncodesALiteralWiderThanAMachineWord) {
  const QNumber bits = QNumber::from_string("bfff8000000000000000000000000001", 16);
  EXPECT_EQ(encode(src.make_fp_number(bits, 15, 112)), dst.make_bv_number(bits, 128));
}

TEST_P(LeavesTest, ReadsASymbolWithoutAValueAsZero) {
  EXPECT_EQ(encoder.encode_number(variable("x", {5, 10})), bv(0, 16));
}

// Names -------------------------------------------------------------------------------------------

TEST_P(LeavesTest, NumbersFloatsAndBitVectorsTogether) {
  EXPECT_EQ(name_of(encode(variable("x", {8, 23}))), ".fp.f1");
  EXPECT_EQ(name_of(encode(bv_variable("v", 16))), ".fp.bv2");
  EXPECT_EQ(name_of(encode(rounding_variable("r"))), ".fp.r1");
  EXPECT_EQ(name_of(encode(bv_variable("w", 16))), ".fp.bv3");
  EXPECT_EQ(name_of(encode(variable("y", {8, 23}))), ".fp.f4");
}

TEST_P(LeavesTest, NumbersEachEncoderFromOne) {
  OpenEncoder other(&src, &dst);
  const Term* x = variable("x", {8, 23});
  EXPECT_EQ(name_of(encode(x)), ".fp.f1");
  const Term* k = other.get_bv_encoding(x, &side);
  EXPECT_NE(k, encoder.get_cached(x));
  EXPECT_EQ(name_of(k).substr(0, 6), ".fp.f1");
}

TEST_P(LeavesTest, StepsAsideForANameThatIsTaken) {
  const Term* taken = bits(".fp.f1", 32);
  const Term* k = encode(variable("x", {8, 23}));
  EXPECT_NE(k, taken);
  EXPECT_NE(name_of(k), name_of(taken));
  EXPECT_EQ(name_of(encode(variable("y", {8, 23}))), ".fp.f2");
}

}  // namespace
}  // namespace vorn::fp
