// Equality and order: the circuits, and what they say of pairs of values.
#include "tests/fp/encoder_fixture.h"
#include "tests/fp/evaluation.h"

namespace vorn::fp {
namespace {

/// Builds the circuit of the three comparisons by hand, for single precision.
class ComparisonShapeTest : public EncoderTest {
 protected:
  const Term* is_one(const Term* t) { return dst.make_equal(t, bv(1, 1)); }
  const Term* zero_flag(const Term* t) {
    return dst.make_bv_comp(dst.make_bv_extract(30, 0, t), bv(0, 31));
  }

  const Term* x = variable("x", {8, 23});
  const Term* y = variable("y", {8, 23});
  const Term* a = encode(x);
  const Term* b = encode(y);

  const Term* nan =
      is_one(dst.make_bv_or(encoder.enc_is_nan(a, {8, 23}), encoder.enc_is_nan(b, {8, 23})));
  const Term* zeros = is_one(dst.make_bv_and(zero_flag(a), zero_flag(b)));
  const Term* sign_a = dst.make_bv_extract(31, 31, a);
  const Term* sign_b = dst.make_bv_extract(31, 31, b);
  const Term* same = dst.make_equal(a, b);

  const Term* diff = dst.make_not(dst.make_equal(sign_a, sign_b));
  const Term* both_negative = is_one(dst.make_bv_and(sign_a, sign_b));
  const Term* magnitude = dst.make_not(dst.make_iff(dst.make_bv_ult(a, b), both_negative));
  const Term* below =
      dst.make_and(dst.make_or(dst.make_not(diff), is_one(sign_a)), dst.make_or(diff, magnitude));
};
INSTANTIATE_TEST_SUITE_P(, ComparisonShapeTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(ComparisonShapeTest, EqualityOfTermsIsEqualityOfPatterns) {
  EXPECT_EQ(encode(src.make_equal(x, y)), same);
  EXPECT_TRUE(side.empty());
}

TEST_P(ComparisonShapeTest, EqualityOfRoundingModesIsEqualityOfCodes) {
  const Term* r = rounding_variable("r");
  const Term* k = encode(r);
  EXPECT_EQ(encode(src.make_equal(r, src.make_fprounding_zero())), dst.make_equal(k, bv(1, 2)));
  EXPECT_EQ(encode(src.make_equal(src.make_fprounding_even(), src.make_fprounding_minus_inf())),
            dst.make_equal(bv(0, 2), bv(3, 2)));
}

TEST_P(ComparisonShapeTest, IeeeEqualityAdmitsBothZerosAndNoNaN) {
  EXPECT_EQ(encode(src.make_fp_equal(x, y)),
            dst.make_and(dst.make_or(same, zeros), dst.make_not(nan)));
  EXPECT_TRUE(side.empty());
}

TEST_P(ComparisonShapeTest, LessThanExcludesEqualPatternsZerosAndNaN) {
  const Term* ordered = dst.make_and(dst.make_not(zeros), dst.make_not(nan));
  EXPECT_EQ(encode(src.make_fp_lt(x, y)),
            dst.make_and(below, dst.make_and(dst.make_not(same), ordered)));
  EXPECT_TRUE(side.empty());
}

TEST_P(ComparisonShapeTest, LessOrEqualAdmitsZerosAndEqualPatterns) {
  EXPECT_EQ(encode(src.make_fp_le(x, y)),
            dst.make_and(dst.make_not(nan), dst.make_or(below, dst.make_or(zeros, same))));
  EXPECT_TRUE(side.empty());
}

TEST_P(ComparisonShapeTest, NeedsNoConstraintsButThoseOfItsLeaves) {
  const Term* u = variable("u", {5, 10});
  const Term* v = variable("v", {5, 10});
  encode(src.make_fp_le(u, v));
  EXPECT_EQ(side.size(), 2U);
}

// Values ------------------------------------------------------------------------------------------

/// What holds of a pair.
struct Order {
  bool same;
  bool equal;
  bool less;
  bool less_or_equal;
  bool operator==(const Order&) const = default;
};

Order compare(Evaluator& run, std::uint64_t a, std::uint64_t b) {
  const Term* x = run.literal(a);
  const Term* y = run.literal(b);
  return {run.holds(run.source.make_equal(x, y)), run.holds(run.source.make_fp_equal(x, y)),
          run.holds(run.source.make_fp_lt(x, y)), run.holds(run.source.make_fp_le(x, y))};
}

TEST(ComparisonValuesTest, AgreesWithExactRationalsOnEverySmallPair) {
  constexpr IEEEFloat::format kTiny{3, 3};
  Evaluator run(kTiny);
  for (std::uint64_t a = 0; a < 128; ++a) {
    for (std::uint64_t b = 0; b < 128; ++b) {
      const SmallFloat x(a, kTiny);
      const SmallFloat y(b, kTiny);
      const bool ordered = !x.is_nan() && !y.is_nan();
      const Order expected{a == b, ordered && x.value() == y.value(),
                           ordered && x.value() < y.value(), ordered && x.value() <= y.value()};
      ASSERT_EQ(compare(run, a, b), expected) << a << " and " << b;
    }
  }
}

template <class Float>
class HardwareComparisonTest : public ::testing::Test {
 protected:
  void expect_agreement(std::uint64_t a, std::uint64_t b) {
    const Float x = Hardware<Float>::value(a);
    const Float y = Hardware<Float>::value(b);
    const Order expected{a == b, x == y, x < y, x <= y};
    ASSERT_EQ(compare(run, a, b), expected) << a << " and " << b;
  }

  Evaluator run{Hardware<Float>::kFormat};
};
using HardwareFloats = ::testing::Types<float, double>;
TYPED_TEST_SUITE(HardwareComparisonTest, HardwareFloats);

TYPED_TEST(HardwareComparisonTest, AgreesOnEveryPairOfBoundaries) {
  const std::vector<std::uint64_t> patterns = boundary_patterns(Hardware<TypeParam>::kFormat);
  for (const std::uint64_t a : patterns) {
    for (const std::uint64_t b : patterns)
      this->expect_agreement(a, b);
  }
}

TYPED_TEST(HardwareComparisonTest, AgreesOnRandomPairsAndTheirNeighbours) {
  const std::vector<std::uint64_t> patterns = random_patterns(Hardware<TypeParam>::kFormat, 2000);
  for (std::size_t i = 1; i < patterns.size(); ++i) {
    this->expect_agreement(patterns[i - 1], patterns[i]);
    this->expect_agreement(patterns[i], patterns[i]);
    this->expect_agreement(patterns[i], patterns[i] ^ 1);
  }
}

TEST(ComparisonValuesTest, ComparesTheRoundingModes) {
  Evaluator run({3, 3});
  TermManager& src = run.source;
  EXPECT_TRUE(run.holds(src.make_equal(src.make_fprounding_even(), src.make_fprounding_even())));
  EXPECT_FALSE(run.holds(src.make_equal(src.make_fprounding_even(), src.make_fprounding_zero())));
}

}  // namespace
}  // namespace vorn::fp
