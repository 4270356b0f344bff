// The multiplier: every value that it names, against the circuit built by hand.
#include "tests/fp/tracked_labels.h"

namespace vorn::fp {
namespace {

class MultiplicationTest : public EncoderTest {
 protected:
  void multiply(format f) {
    fmt = f;
    encoder.set_debug_flag(true);
    const Term* x = variable("x", fmt);
    const Term* y = variable("y", fmt);
    const Term* r = rounding_variable("r");
    a = encode(x);
    b = encode(y);
    rm = encode(r);
    result = encode(src.make_fp_mul(r, x, y));
  }

  format fmt{};
  const Term* a = nullptr;
  const Term* b = nullptr;
  const Term* rm = nullptr;
  const Term* result = nullptr;
};
INSTANTIATE_TEST_SUITE_P(, MultiplicationTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(MultiplicationTest, TracksItsValuesInOrderAtSinglePrecision) {
  multiply({8, 23});
  const Labels operands = {{"mul_exp1", 8},   {"mul_exp2", 8},   {"mul_sign1", 1}, {"mul_sign2", 1},
                           {"mul_mant1", 24}, {"mul_mant2", 24}, {"mul_inf1", 1},  {"mul_inf2", 1},
                           {"mul_nan1", 1},   {"mul_nan2", 1},   {"mul_zero1", 1}, {"mul_zero2", 1},
                           {"mul_mant", 48},  {"mul_exp", 10}};
  const Labels arguments = {
      {"mul_arg0", 2}, {"mul_arg1", 32}, {"mul_arg2", 32}, {"mul_result", 32}};
  EXPECT_EQ(Tracked(dst, side).labels,
            operands + bisection_labels(10, 48) + rounding_labels(fmt, 10, 48) + arguments);
}

TEST_P(MultiplicationTest, TracksItsValuesInOrderAtHalfPrecision) {
  multiply({5, 10});
  const Labels operands = {{"mul_exp1", 5},   {"mul_exp2", 5},   {"mul_sign1", 1}, {"mul_sign2", 1},
                           {"mul_mant1", 11}, {"mul_mant2", 11}, {"mul_inf1", 1},  {"mul_inf2", 1},
                           {"mul_nan1", 1},   {"mul_nan2", 1},   {"mul_zero1", 1}, {"mul_zero2", 1},
                           {"mul_mant", 22},  {"mul_exp", 7}};
  const Labels arguments = {
      {"mul_arg0", 2}, {"mul_arg1", 16}, {"mul_arg2", 16}, {"mul_result", 16}};
  EXPECT_EQ(Tracked(dst, side).labels,
            operands + bisection_labels(7, 22) + rounding_labels(fmt, 7, 22) + arguments);
}

TEST_P(MultiplicationTest, MultipliesSignificandsAtDoubleWidthAndAddsExponents) {
  multiply({8, 23});
  const Tracked tracked(dst, side);
  const Term* mx = encoder.enc_get_mantissa(a, fmt, true);
  const Term* my = encoder.enc_get_mantissa(b, fmt, true);
  EXPECT_EQ(tracked.get("mul_mant"),
            dst.make_bv_mul(dst.make_bv_zero_extend(24, mx), dst.make_bv_zero_extend(24, my)));
  const Term* ex = dst.make_bv_sign_extend(2, encoder.enc_get_exponent(a, fmt, true));
  const Term* ey = dst.make_bv_sign_extend(2, encoder.enc_get_exponent(b, fmt, true));
  EXPECT_EQ(tracked.get("mul_exp"), dst.make_bv_add(dst.make_bv_add(ex, ey), bv(1, 10)));
}

TEST_P(MultiplicationTest, HandsFlagsAndSignToRounding) {
  multiply({8, 23});
  const Tracked tracked(dst, side);
  const Term* ix = encoder.enc_is_inf(a, fmt);
  const Term* iy = encoder.enc_is_inf(b, fmt);
  const Term* invalid = dst.make_bv_or(dst.make_bv_and(encoder.enc_is_zero(a, fmt), iy),
                                       dst.make_bv_and(ix, encoder.enc_is_zero(b, fmt)));
  const Term* nan = dst.make_bv_or(encoder.enc_is_nan(a, fmt),
                                   dst.make_bv_or(encoder.enc_is_nan(b, fmt), invalid));
  EXPECT_EQ(tracked.get("pack_nan"), nan);
  EXPECT_EQ(tracked.get("pack_inf"),
            dst.make_bv_or(dst.make_bv_or(ix, iy), tracked.get("exp_exponent_too_large")));
  const Term* sign = dst.make_bv_not(
      dst.make_bv_comp(dst.make_bv_extract(31, 31, a), dst.make_bv_extract(31, 31, b)));
  EXPECT_EQ(tracked.get("pack_res_sign"),
            encoder.enc_make_ite(dst.make_bv_or(nan, sign), bv(1, 1), bv(0, 1)));
}

TEST_P(MultiplicationTest, ReturnsTheRoundedValueAsItIs) {
  multiply({8, 23});
  const Tracked tracked(dst, side);
  EXPECT_EQ(tracked.get("mul_arg0"), rm);
  EXPECT_EQ(tracked.get("mul_arg1"), a);
  EXPECT_EQ(tracked.get("mul_arg2"), b);
  EXPECT_EQ(tracked.get("round_ret"), result);
  EXPECT_EQ(tracked.get("mul_result"), result);
}

TEST_P(MultiplicationTest, TracksNothingUnlessAsked) {
  const Term* x = variable("x", {8, 23});
  encode(src.make_fp_mul(src.make_fprounding_even(), x, x));
  EXPECT_TRUE(Tracked(dst, side).labels.empty());
}

}  // namespace
}  // namespace vorn::fp
