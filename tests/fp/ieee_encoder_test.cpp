// The exact encoder as an object: its codes of rounding modes, leaves that come back, and what it
// tracks of comparisons. What its circuits compute is tested elsewhere.
#include "vorn/fp/ieee_bv_encoder.h"

#include "tests/fp/tracked_labels.h"

namespace vorn::fp {
namespace {

class IeeeEncoderObjectTest : public EncoderTest {
 protected:
  const Term* encode_exactly(const Term* t) { return exact.get_bv_encoding(t, &side); }

  IeeeBvEncoder exact{&src, &dst};
};
INSTANTIATE_TEST_SUITE_P(, IeeeEncoderObjectTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(IeeeEncoderObjectTest, KnowsTheFiveRoundingModesFromTheStart) {
  const Term* const modes[] = {src.make_fprounding_even(), src.make_fprounding_zero(),
                               src.make_fprounding_plus_inf(), src.make_fprounding_minus_inf(),
                               src.make_fprounding_away()};
  std::int64_t code = 0;
  for (const Term* mode : modes)
    EXPECT_EQ(exact.get_cached(mode), bv(code++, 3)) << mode->to_string();
}

TEST_P(IeeeEncoderObjectTest, EncodesARetractedModeAsBefore) {
  for (const Term* mode : {src.make_fprounding_minus_inf(), src.make_fprounding_away()}) {
    const Term* code = encode_exactly(mode);
    exact.retract_upto(mode);
    EXPECT_EQ(exact.get_cached(mode), nullptr);
    EXPECT_EQ(encode_exactly(mode), code);
    EXPECT_TRUE(side.empty());
  }
}

TEST_P(IeeeEncoderObjectTest, ConstrainsARoundingVariableToTheFiveCodes) {
  const Term* k = encode_exactly(rounding_variable("r"));
  EXPECT_EQ(name_of(k), ".fp.r1");
  EXPECT_EQ(k->get_type(), dst.get_bv_type(3));
  EXPECT_EQ(side, Terms{dst.make_bv_ule(k, bv(4, 3))});
}

TEST_P(IeeeEncoderObjectTest, GivesARetractedVariableItsConstantAndConstraintAgain) {
  for (const Term* t : {rounding_variable("r"), variable("x", {3, 4})}) {
    const Term* k = encode_exactly(t);
    const Terms constraints = side;
    EXPECT_EQ(constraints.size(), 1U);
    exact.retract_upto(t);
    EXPECT_EQ(encode_exactly(t), k);
    EXPECT_EQ(side, constraints);
  }
}

TEST_P(IeeeEncoderObjectTest, EncodesAnIfThenElseWithoutAConstant) {
  const Term* x = variable("x", {3, 4});
  encode_exactly(src.make_fp_mul(rounding_variable("r"), x, variable("y", {3, 4})));
  EXPECT_EQ(side.size(), 3U) << "constraints that are not those of the leaves";
}

// Labels ------------------------------------------------------------------------------------------

TEST_P(IeeeEncoderObjectTest, TracksWhatAComparisonReads) {
  exact.set_debug_flag(true);
  const Term* x = variable("x", {3, 4});
  const Term* y = variable("y", {3, 4});
  encode_exactly(x);
  encode_exactly(y);
  const Labels expected = {{"compare_arg1", 8},  {"compare_exp1", 3},  {"compare_sign1", 1},
                           {"compare_mant1", 5}, {"compare_inf1", 1},  {"compare_nan1", 1},
                           {"compare_zero1", 1}, {"compare_arg2", 8},  {"compare_exp2", 3},
                           {"compare_sign2", 1}, {"compare_mant2", 5}, {"compare_inf2", 1},
                           {"compare_nan2", 1},  {"compare_zero2", 1}, {"compare_ult", 0}};
  for (const Term* t : {src.make_fp_equal(x, y), src.make_fp_lt(x, y), src.make_fp_le(x, y)}) {
    encode_exactly(t);
    const Tracked tracked(dst, side);
    EXPECT_EQ(tracked.labels, expected) << t->to_string();
    EXPECT_EQ(tracked.get("compare_arg1"), exact.get_cached(x));
    EXPECT_EQ(tracked.get("compare_arg2"), exact.get_cached(y));
  }
}

TEST_P(IeeeEncoderObjectTest, LeavesComparisonsOfTheBaseUntracked) {
  encoder.set_debug_flag(true);
  const Term* x = variable("x", {3, 4});
  encode(x);
  for (const Term* t : {src.make_fp_equal(x, x), src.make_fp_lt(x, x), src.make_fp_le(x, x)}) {
    encode(t);
    EXPECT_TRUE(side.empty()) << t->to_string();
  }
}

}  // namespace
}  // namespace vorn::fp
