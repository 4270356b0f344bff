// NaN, infinity and zero tests, and negation: the circuits, and what they say of values.
#include <cmath>

#include "tests/fp/encoder_fixture.h"
#include "tests/fp/evaluation.h"

namespace vorn::fp {
namespace {

class ClassificationShapeTest : public EncoderTest {
 protected:
  const Term* x = variable("x", {8, 23});
  const Term* k = encode(x);
};
INSTANTIATE_TEST_SUITE_P(, ClassificationShapeTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(ClassificationShapeTest, IsNaNComparesTheFlagWithOne) {
  const Term* flag = encoder.enc_is_nan(k, {8, 23});
  EXPECT_EQ(encode(src.make_fp_isnan(x)), dst.make_equal(flag, bv(1, 1)));
  EXPECT_TRUE(side.empty());
}

TEST_P(ClassificationShapeTest, IsInfiniteComparesTheFlagWithOne) {
  const Term* flag = encoder.enc_is_inf(k, {8, 23});
  EXPECT_EQ(encode(src.make_fp_isinf(x)), dst.make_equal(flag, bv(1, 1)));
  EXPECT_TRUE(side.empty());
}

TEST_P(ClassificationShapeTest, IsZeroLooksAtEverythingButTheSign) {
  const Term* flag = dst.make_bv_comp(dst.make_bv_extract(30, 0, k), bv(0, 31));
  EXPECT_EQ(encode(src.make_fp_iszero(x)), dst.make_equal(flag, bv(1, 1)));
  EXPECT_TRUE(side.empty());
}

TEST_P(ClassificationShapeTest, NegationFlipsTheSignUnlessANaNSetsIt) {
  const Term* sign = dst.make_bv_extract(31, 31, k);
  const Term* nan = encoder.enc_is_nan(k, {8, 23});
  const Term* negated = dst.make_bv_or(nan, dst.make_bv_not(sign));
  EXPECT_EQ(encode(src.make_fp_neg(x)), dst.make_bv_concat(negated, dst.make_bv_extract(30, 0, k)));
  EXPECT_TRUE(side.empty());
}

TEST_P(ClassificationShapeTest, EachFormatHasItsOwnFields) {
  const Term* y = variable("y", {5, 10});
  const Term* ky = encode(y);
  EXPECT_EQ(encode(src.make_fp_isinf(y)),
            dst.make_equal(encoder.enc_is_inf(ky, {5, 10}), bv(1, 1)));
  EXPECT_EQ(width_of(encode(src.make_fp_neg(y))), 16U);
}

// Values ------------------------------------------------------------------------------------------

/// The operations on one literal, with the pattern that negation gives.
struct Classified {
  bool nan;
  bool inf;
  bool zero;
  std::uint64_t negated;
};

Classified classify(Evaluator& run, std::uint64_t pattern) {
  const Term* x = run.literal(pattern);
  return {run.holds(run.source.make_fp_isnan(x)), run.holds(run.source.make_fp_isinf(x)),
          run.holds(run.source.make_fp_iszero(x)), run.pattern_of(run.source.make_fp_neg(x))};
}

TEST(ClassificationValuesTest, AgreesWithTheFieldsOfEverySmallPattern) {
  constexpr IEEEFloat::format kTiny{3, 3};
  Evaluator run(kTiny);
  for (std::uint64_t pattern = 0; pattern < 128; ++pattern) {
    const SmallFloat expected(pattern, kTiny);
    const Classified actual = classify(run, pattern);
    EXPECT_EQ(actual.nan, expected.is_nan()) << pattern;
    EXPECT_EQ(actual.inf, expected.is_inf()) << pattern;
    EXPECT_EQ(actual.zero, expected.is_zero()) << pattern;
    EXPECT_EQ(actual.negated, expected.is_nan() ? pattern | 64 : pattern ^ 64) << pattern;
  }
}

template <class Float>
class HardwareClassificationTest : public ::testing::Test {};
using HardwareFloats = ::testing::Types<float, double>;
TYPED_TEST_SUITE(HardwareClassificationTest, HardwareFloats);

TYPED_TEST(HardwareClassificationTest, AgreesOnBoundaryAndRandomPatterns) {
  using Machine = Hardware<TypeParam>;
  Evaluator run(Machine::kFormat);
  std::vector<std::uint64_t> patterns = boundary_patterns(Machine::kFormat);
  for (const std::uint64_t p : random_patterns(Machine::kFormat, 2000))
    patterns.push_back(p);

  const std::uint64_t sign = std::uint64_t{1} << (Machine::kFormat.width() - 1);
  for (const std::uint64_t pattern : patterns) {
    const auto value = Machine::value(pattern);
    const Classified actual = classify(run, pattern);
    EXPECT_EQ(actual.nan, std::isnan(value)) << pattern;
    EXPECT_EQ(actual.inf, std::isinf(value)) << pattern;
    EXPECT_EQ(actual.zero, std::fpclassify(value) == FP_ZERO) << pattern;
    // The sign of a negated NaN is set, whatever it was.
    const auto negated = std::bit_cast<typename Machine::Pattern>(-value);
    EXPECT_EQ(actual.negated, std::isnan(value) ? pattern | sign : negated) << pattern;
  }
}

TEST(ClassificationValuesTest, NegatesTheKnownPatterns) {
  Evaluator run({8, 23});
  const auto negated = [&](std::uint64_t pattern) {
    return run.pattern_of(run.source.make_fp_neg(run.literal(pattern)));
  };
  EXPECT_EQ(negated(0x3F800000), 0xBF800000U);
  EXPECT_EQ(negated(0x80000000), 0x00000000U);
  EXPECT_EQ(negated(0x7FC00000), 0xFFC00000U);
  EXPECT_EQ(negated(0xFFC00000), 0xFFC00000U);
}

}  // namespace
}  // namespace vorn::fp
