// The divider: every value that it names, against the circuit built by hand.
#include <stdexcept>

#include "tests/fp/tracked_labels.h"

namespace vorn::fp {
namespace {

class DivisionTest : public EncoderTest {
 protected:
  void divide(format f) {
    fmt = f;
    encoder.set_debug_flag(true);
    const Term* x = variable("x", fmt);
    const Term* y = variable("y", fmt);
    const Term* r = rounding_variable("r");
    a = encode(x);
    b = encode(y);
    rm = encode(r);
    result = encode(src.make_fp_div(r, x, y));
  }

  format fmt{};
  const Term* a = nullptr;
  const Term* b = nullptr;
  const Term* rm = nullptr;
  const Term* result = nullptr;
};
INSTANTIATE_TEST_SUITE_P(, DivisionTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(DivisionTest, TracksItsValuesInOrderAtSinglePrecision) {
  divide({8, 23});
  const Labels operands = {{"div_exp1", 8},  {"div_exp2", 8},   {"div_sign1", 1},
                           {"div_sign2", 1}, {"div_mant1", 24}, {"div_mant2", 24},
                           {"div_inf1", 1},  {"div_inf2", 1},   {"div_nan1", 1},
                           {"div_nan2", 1},  {"div_zero1", 1},  {"div_zero2", 1}};
  const Labels quotient = {{"div_exp1_norm", 10},  {"div_exp2_norm", 10}, {"div_mant1_norm", 24},
                           {"div_mant2_norm", 24}, {"div_mant1_pad", 51}, {"div_mant2_pad", 51},
                           {"div_div", 51},        {"div_rem", 51},       {"div_mant", 29},
                           {"div_exp1_ext", 10},   {"div_exp2_ext", 10},  {"div_exp", 10}};
  const Labels linear = {{"norm_shift_exp", 10}, {"norm_shift_mant", 29}};
  const Labels flags = {{"div_sign", 1}, {"div_inf", 1},   {"div_nan", 1},   {"div_zero_cond", 1},
                        {"div_arg0", 2}, {"div_arg1", 32}, {"div_arg2", 32}, {"div_result", 32}};
  EXPECT_EQ(Tracked(dst, side).labels, operands + bisection_labels(10, 24) +
                                           bisection_labels(10, 24) + quotient + linear +
                                           rounding_labels(fmt, 10, 29) + flags);
}

TEST_P(DivisionTest, TracksItsValuesInOrderAtHalfPrecision) {
  divide({5, 10});
  const Labels operands = {{"div_exp1", 5},  {"div_exp2", 5},   {"div_sign1", 1},
                           {"div_sign2", 1}, {"div_mant1", 11}, {"div_mant2", 11},
                           {"div_inf1", 1},  {"div_inf2", 1},   {"div_nan1", 1},
                           {"div_nan2", 1},  {"div_zero1", 1},  {"div_zero2", 1}};
  const Labels quotient = {{"div_exp1_norm", 7},   {"div_exp2_norm", 7},  {"div_mant1_norm", 11},
                           {"div_mant2_norm", 11}, {"div_mant1_pad", 25}, {"div_mant2_pad", 25},
                           {"div_div", 25},        {"div_rem", 25},       {"div_mant", 16},
                           {"div_exp1_ext", 7},    {"div_exp2_ext", 7},   {"div_exp", 7}};
  const Labels linear = {{"norm_shift_exp", 7}, {"norm_shift_mant", 16}};
  const Labels flags = {{"div_sign", 1}, {"div_inf", 1},   {"div_nan", 1},   {"div_zero_cond", 1},
                        {"div_arg0", 2}, {"div_arg1", 16}, {"div_arg2", 16}, {"div_result", 16}};
  EXPECT_EQ(Tracked(dst, side).labels, operands + bisection_labels(7, 11) +
                                           bisection_labels(7, 11) + quotient + linear +
                                           rounding_labels(fmt, 7, 16) + flags);
}

TEST_P(DivisionTest, NormalisesTheDividendAndThenTheDivisor) {
  divide({8, 23});
  const Tracked tracked(dst, side);
  const Term* ex = dst.make_bv_sign_extend(2, encoder.enc_get_exponent(a, fmt, true));
  const Term* ey = dst.make_bv_sign_extend(2, encoder.enc_get_exponent(b, fmt, true));
  const Term* mx = encoder.enc_get_mantissa(a, fmt, true);
  const Term* my = encoder.enc_get_mantissa(b, fmt, true);
  EXPECT_EQ(tracked.get("norm_shift_exp"), ex);
  EXPECT_EQ(tracked.get("norm_shift_exp", 2), ey);
  encoder.set_debug_flag(false);
  encoder.enc_normalization_shift_log(fmt, &ex, &mx);
  encoder.enc_normalization_shift_log(fmt, &ey, &my);
  EXPECT_EQ(tracked.get("div_exp1_norm"), ex);
  EXPECT_EQ(tracked.get("div_exp2_norm"), ey);
  EXPECT_EQ(tracked.get("div_mant1_norm"), mx);
  EXPECT_EQ(tracked.get("div_mant2_norm"), my);
}

TEST_P(DivisionTest, DividesPaddedSignificandsAndKeepsAStickyBit) {
  divide({8, 23});
  const Tracked tracked(dst, side);
  const Term* dividend = dst.make_bv_concat(tracked.get("div_mant1_norm"), bv(0, 27));
  const Term* divisor = dst.make_bv_zero_extend(27, tracked.get("div_mant2_norm"));
  const Term* quotient = dst.make_bv_udiv(dividend, divisor);
  const Term* remainder = dst.make_bv_urem(dividend, divisor);
  EXPECT_EQ(tracked.get("div_mant1_pad"), dividend);
  EXPECT_EQ(tracked.get("div_mant2_pad"), divisor);
  EXPECT_EQ(tracked.get("div_div"), quotient);
  EXPECT_EQ(tracked.get("div_rem"), remainder);
  EXPECT_EQ(tracked.get("div_mant"),
            dst.make_bv_concat(dst.make_bv_extract(27, 0, quotient),
                               dst.make_bv_not(dst.make_bv_comp(remainder, bv(0, 51)))));
  EXPECT_EQ(tracked.get("div_exp"),
            dst.make_bv_sub(tracked.get("div_exp1_norm"), tracked.get("div_exp2_norm")));
}

TEST_P(DivisionTest, LooksForTwoLeadingZerosOfTheQuotient) {
  divide({8, 23});
  const Tracked tracked(dst, side);
  const Term* exp = tracked.get("div_exp");
  const Term* mant = tracked.get("div_mant");
  EXPECT_EQ(tracked.get("norm_shift_mant", 3), mant);
  encoder.set_debug_flag(false);
  encoder.enc_normalization_shift_linear(fmt, &exp, &mant, 2);
  EXPECT_EQ(tracked.get("denorm_shift_exp"), exp);
  EXPECT_EQ(tracked.get("denorm_shift_mant"), mant);
}

TEST_P(DivisionTest, MasksZeroResultsIntoTheRoundedValue) {
  divide({8, 23});
  const Tracked tracked(dst, side);
  const Term* ix = encoder.enc_is_inf(a, fmt);
  const Term* iy = encoder.enc_is_inf(b, fmt);
  const Term* zx = encoder.enc_is_zero(a, fmt);
  const Term* zy = encoder.enc_is_zero(b, fmt);
  const Term* sign = dst.make_bv_not(
      dst.make_bv_comp(dst.make_bv_extract(31, 31, a), dst.make_bv_extract(31, 31, b)));
  const Term* invalid = dst.make_bv_or(dst.make_bv_and(zx, zy), dst.make_bv_and(ix, iy));
  const Term* nan = dst.make_bv_or(encoder.enc_is_nan(a, fmt),
                                   dst.make_bv_or(encoder.enc_is_nan(b, fmt), invalid));
  const Term* not_nan = dst.make_bv_not(nan);
  const Term* by_zero = dst.make_bv_and(dst.make_bv_not(zx), zy);
  const Term* inf = dst.make_bv_and(not_nan, dst.make_bv_or(by_zero, ix));
  EXPECT_EQ(tracked.get("div_sign"), sign);
  EXPECT_EQ(tracked.get("div_nan"), nan);
  EXPECT_EQ(tracked.get("div_inf"), inf);

  const Term* by_inf = dst.make_bv_and(dst.make_bv_not(inf), iy);
  const Term* of_zero = dst.make_bv_and(zx, dst.make_bv_not(zy));
  const Term* zero = dst.make_bv_and(not_nan, dst.make_bv_or(by_inf, of_zero));
  EXPECT_EQ(tracked.get("div_zero_cond"), zero);
  const Term* mask = dst.make_bv_sign_extend(31, dst.make_bv_not(zero));
  const Term* kept = dst.make_bv_and(mask, tracked.get("round_ret"));
  const Term* signed_zero = dst.make_bv_concat(dst.make_bv_and(not_nan, sign), bv(0, 31));
  EXPECT_EQ(result, dst.make_bv_or(kept, signed_zero));
  EXPECT_EQ(tracked.get("div_result"), result);
}

TEST_P(DivisionTest, RefusesFormatsWhoseExponentOutgrowsTheShift) {
  const Term* x = variable("x", {8, 3});
  EXPECT_THROW(encode(src.make_fp_div(src.make_fprounding_even(), x, x)), std::invalid_argument);
}

}  // namespace
}  // namespace vorn::fp
