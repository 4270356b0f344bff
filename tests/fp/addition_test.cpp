// The adder: every value that it names, against the circuit built by hand.
#include <algorithm>
#include <utility>

#include "tests/fp/tracked_labels.h"

namespace vorn::fp {
namespace {

class AdditionTest : public EncoderTest {
 protected:
  void combine(format f, bool is_sub, const Term* mode) {
    fmt = f;
    encoder.set_debug_flag(true);
    const Term* x = variable("x", fmt);
    const Term* y = variable("y", fmt);
    a = encode(x);
    b = encode(y);
    rm = encode(mode);
    const Term* t = is_sub ? src.make_fp_sub(mode, x, y) : src.make_fp_add(mode, x, y);
    result = encode(t);
    encoder.set_debug_flag(false);
  }
  void add(format f) { combine(f, false, rounding_variable("r")); }

  /// The zero and the rounded value that the result chooses between, by its two clauses.
  void expect_result(const Term* zero, const Term* rounded) {
    const Term* is_zero = dst.make_equal(dst.make_bv_extract(30, 0, rounded), bv(0, 31));
    const Term* to_zero = dst.make_or(dst.make_not(is_zero), dst.make_equal(result, zero));
    const Term* to_rounded =
        dst.make_or(dst.make_not(dst.make_true()), dst.make_equal(result, rounded));
    const auto at = std::find(side.begin(), side.end(), to_zero);
    ASSERT_NE(at, side.end());
    EXPECT_EQ(at[1], to_rounded);
  }
  /// The rounded value with the sign given.
  const Term* signed_zero(int sign, const Term* rounded) {
    return dst.make_bv_concat(bv(sign, 1), dst.make_bv_extract(30, 0, rounded));
  }

  format fmt{};
  const Term* a = nullptr;
  const Term* b = nullptr;
  const Term* rm = nullptr;
  const Term* result = nullptr;
};
INSTANTIATE_TEST_SUITE_P(, AdditionTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

// Labels ------------------------------------------------------------------------------------------

const Labels kSingleSum = {
    {"add_exp1", 8},       {"add_exp2", 8},          {"add_mant1", 24},      {"add_mant2", 24},
    {"add_exp_bigger", 8}, {"add_exp1_biased", 8},   {"add_exp2_biased", 8}, {"add_distance", 24},
    {"add_addres", 29},    {"add_mant1_ext", 29},    {"add_mant2_ext", 29},  {"add_sticky_bit", 1},
    {"add_samesign", 1},   {"add_mant_res_sign", 1}, {"add_mant_res", 29},   {"add_res_exp", 9},
    {"add_inf", 1},        {"add_nan", 1},           {"add_add_sub_sign", 1}};
const Labels kSingleResult = {{"add_absres", 31},
                              {"add_sub_arg0", 2},
                              {"add_sub_arg1", 32},
                              {"add_sub_arg2", 32},
                              {"add_sub_result", 32}};

TEST_P(AdditionTest, TracksItsValuesInOrderAtSinglePrecision) {
  add({8, 23});
  EXPECT_EQ(Tracked(dst, side).labels,
            kSingleSum + bisection_labels(9, 29) + rounding_labels(fmt, 9, 29) + kSingleResult);
}

TEST_P(AdditionTest, TracksTheSameValuesForADifference) {
  combine({8, 23}, true, rounding_variable("r"));
  EXPECT_EQ(Tracked(dst, side).labels,
            kSingleSum + bisection_labels(9, 29) + rounding_labels(fmt, 9, 29) + kSingleResult);
}

TEST_P(AdditionTest, TracksTheSameValuesInAConstantMode) {
  combine({8, 23}, false, src.make_fprounding_even());
  EXPECT_EQ(Tracked(dst, side).labels,
            kSingleSum + bisection_labels(9, 29) + rounding_labels(fmt, 9, 29) + kSingleResult);
}

TEST_P(AdditionTest, TracksItsValuesInOrderAtHalfPrecision) {
  add({5, 10});
  const Labels sum = {{"add_exp1", 5},        {"add_exp2", 5},          {"add_mant1", 11},
                      {"add_mant2", 11},      {"add_exp_bigger", 5},    {"add_exp1_biased", 5},
                      {"add_exp2_biased", 5}, {"add_distance", 11},     {"add_addres", 16},
                      {"add_mant1_ext", 16},  {"add_mant2_ext", 16},    {"add_sticky_bit", 1},
                      {"add_samesign", 1},    {"add_mant_res_sign", 1}, {"add_mant_res", 16},
                      {"add_res_exp", 6},     {"add_inf", 1},           {"add_nan", 1},
                      {"add_add_sub_sign", 1}};
  const Labels after = {{"add_absres", 15},
                        {"add_sub_arg0", 2},
                        {"add_sub_arg1", 16},
                        {"add_sub_arg2", 16},
                        {"add_sub_result", 16}};
  EXPECT_EQ(Tracked(dst, side).labels,
            sum + bisection_labels(6, 16) + rounding_labels(fmt, 6, 16) + after);
}

// The circuit -------------------------------------------------------------------------------------

TEST_P(AdditionTest, OrdersTheOperandsByExponent) {
  add({8, 23});
  const Tracked tracked(dst, side);
  const Term* ex = encoder.enc_get_exponent(a, fmt, true);
  const Term* ey = encoder.enc_get_exponent(b, fmt, true);
  const Term* x_bigger = dst.make_bv_sle(ey, ex);
  EXPECT_EQ(tracked.get("add_exp1"), ex);
  EXPECT_EQ(tracked.get("add_exp2"), ey);
  EXPECT_EQ(tracked.get("add_mant1"), encoder.enc_get_mantissa(a, fmt, true));
  EXPECT_EQ(tracked.get("add_mant2"), encoder.enc_get_mantissa(b, fmt, true));
  EXPECT_EQ(tracked.get("add_exp1_biased"), dst.make_bv_extract(30, 23, a));
  EXPECT_EQ(tracked.get("add_exp2_biased"), dst.make_bv_extract(30, 23, b));
  EXPECT_EQ(tracked.get("add_exp_bigger"), chosen(x_bigger, ex, ey));
  EXPECT_EQ(name_of(tracked.get("add_exp_bigger")), ".fp.i1");
  EXPECT_EQ(tracked.get("add_res_exp"),
            dst.make_bv_add(dst.make_bv_sign_extend(1, tracked.get("add_exp_bigger")), bv(2, 9)));

  const Term* d = dst.make_bv_sub(ex, ey);
  const Term* distance = dst.make_bv_zero_extend(16, chosen(x_bigger, d, dst.make_bv_neg(d)));
  const Term* cap = bv(26, 24);
  EXPECT_EQ(tracked.get("add_distance"), chosen(dst.make_bv_ult(distance, cap), distance, cap));
}

TEST_P(AdditionTest, AlignsTheSmallerSignificandOverAStickyBit) {
  add({8, 23});
  const Tracked tracked(dst, side);
  const Term* x_bigger = dst.make_bv_sle(tracked.get("add_exp2"), tracked.get("add_exp1"));
  const Term* mx = tracked.get("add_mant1");
  const Term* my = tracked.get("add_mant2");
  const Term* big = chosen(x_bigger, mx, my);
  const Term* small = chosen(x_bigger, my, mx);
  const Term* distance = tracked.get("add_distance");
  EXPECT_EQ(tracked.get("add_mant1_ext"),
            dst.make_bv_zero_extend(2, dst.make_bv_concat(big, bv(0, 3))));

  const Term* lost = dst.make_bv_lshl(small, dst.make_bv_sub(bv(26, 24), distance));
  const Term* sticky = dst.make_bv_not(dst.make_bv_comp(lost, bv(0, 24)));
  EXPECT_EQ(tracked.get("add_sticky_bit"), sticky);
  const Term* padded = dst.make_bv_concat(small, bv(0, 2));
  const Term* shifted = dst.make_bv_lshr(padded, dst.make_bv_zero_extend(2, distance));
  EXPECT_EQ(tracked.get("add_mant2_ext"),
            dst.make_bv_zero_extend(2, dst.make_bv_concat(shifted, sticky)));
}

TEST_P(AdditionTest, AddsInTwosComplementAndTakesTheMagnitude) {
  add({8, 23});
  const Tracked tracked(dst, side);
  const Term* m1 = tracked.get("add_mant1_ext");
  const Term* m2 = tracked.get("add_mant2_ext");
  const Term* same =
      dst.make_bv_comp(dst.make_bv_extract(31, 31, a), dst.make_bv_extract(31, 31, b));
  EXPECT_EQ(tracked.get("add_samesign"), same);
  const Term* sum =
      chosen(dst.make_equal(same, bv(1, 1)), dst.make_bv_add(m1, m2), dst.make_bv_sub(m1, m2));
  EXPECT_EQ(tracked.get("add_addres"), sum);
  const Term* sign = dst.make_bv_extract(28, 28, sum);
  EXPECT_EQ(tracked.get("add_mant_res_sign"), sign);
  EXPECT_EQ(tracked.get("add_mant_res"),
            chosen(dst.make_equal(sign, bv(0, 1)), sum, dst.make_bv_neg(sum)));
  EXPECT_EQ(tracked.get("norm_shift_mant"), tracked.get("add_mant_res"));
}

TEST_P(AdditionTest, DecidesNaNInfinityAndSign) {
  add({8, 23});
  const Tracked tracked(dst, side);
  const Term* sx = dst.make_bv_extract(31, 31, a);
  const Term* sy = dst.make_bv_extract(31, 31, b);
  const Term* ix = encoder.enc_is_inf(a, fmt);
  const Term* iy = encoder.enc_is_inf(b, fmt);
  const Term* opposite =
      dst.make_bv_and(dst.make_bv_and(ix, iy), dst.make_bv_not(tracked.get("add_samesign")));
  const Term* nan = dst.make_bv_or(
      opposite, dst.make_bv_or(encoder.enc_is_nan(a, fmt), encoder.enc_is_nan(b, fmt)));
  const Term* inf = dst.make_bv_and(dst.make_bv_not(nan), dst.make_bv_or(ix, iy));
  EXPECT_EQ(tracked.get("add_nan"), nan);
  EXPECT_EQ(tracked.get("add_inf"), inf);

  const Term* x_bigger = dst.make_bv_sle(tracked.get("add_exp2"), tracked.get("add_exp1"));
  const Term* finite =
      dst.make_bv_not(dst.make_bv_comp(chosen(x_bigger, sx, sy), tracked.get("add_mant_res_sign")));
  EXPECT_EQ(tracked.get("add_add_sub_sign"), finite);
  const Term* sign = encoder.enc_make_ite(inf, encoder.enc_make_ite(ix, sx, sy), finite);
  EXPECT_EQ(tracked.get("pack_res_sign"),
            encoder.enc_make_ite(dst.make_bv_or(nan, sign), bv(1, 1), bv(0, 1)));
}

TEST_P(AdditionTest, FlipsTheSecondSignOfADifferenceFirst) {
  combine({8, 23}, true, rounding_variable("r"));
  const Tracked tracked(dst, side);
  const Term* flipped = dst.make_bv_concat(dst.make_bv_not(dst.make_bv_extract(31, 31, b)),
                                           dst.make_bv_extract(30, 0, b));
  EXPECT_EQ(tracked.get("add_sub_arg0"), rm);
  EXPECT_EQ(tracked.get("add_sub_arg1"), a);
  EXPECT_EQ(tracked.get("add_sub_arg2"), flipped);
  EXPECT_EQ(tracked.get("add_exp2"), encoder.enc_get_exponent(flipped, fmt, true));
}

// Zero results ------------------------------------------------------------------------------------

TEST_P(AdditionTest, ChoosesTheZeroOfASymbolicModeByAFreshConstant) {
  add({8, 23});
  const Term* rounded = Tracked(dst, side).get("round_ret");
  EXPECT_EQ(Tracked(dst, side).get("add_absres"), dst.make_bv_extract(30, 0, rounded));
  const Term* downward = dst.make_equal(rm, bv(3, 2));
  expect_result(chosen(downward, signed_zero(1, rounded), signed_zero(0, rounded)), rounded);
}

TEST_P(AdditionTest, TakesTheZeroOfAConstantModeDirectly) {
  const Term* modes[] = {src.make_fprounding_even(), src.make_fprounding_zero(),
                         src.make_fprounding_plus_inf(), src.make_fprounding_minus_inf()};
  for (const Term* mode : modes) {
    combine({8, 23}, false, mode);
    const Term* rounded = Tracked(dst, side).get("round_ret");
    expect_result(signed_zero(mode == modes[3] ? 1 : 0, rounded), rounded);
  }
}

TEST_P(AdditionTest, KnowsTheStandardsSignOfASumOfZerosAsWell) {
  const Term* x = bits("x", 32);
  const Term* y = bits("y", 32);
  const auto zero = [&](const Term* t) { return encoder.enc_is_zero(t, {8, 23}); };
  const auto negative = [&](const Term* t) {
    return dst.make_equal(dst.make_bv_extract(31, 31, t), bv(1, 1));
  };
  const Term* both = dst.make_equal(dst.make_bv_and(zero(x), zero(y)), bv(1, 1));
  for (const bool is_sub : {false, true}) {
    const Term* minus_y = is_sub ? dst.make_not(negative(y)) : negative(y);
    const Term* plus_y = is_sub ? negative(y) : dst.make_not(negative(y));
    const Term* pos = dst.make_and(dst.make_not(negative(x)), plus_y);
    const Term* neg = dst.make_and(negative(x), minus_y);
    const Term* mode = bits("rm", 2);
    const std::pair<const Term*, const Term*> downward[] = {{bv(0, 2), dst.make_false()},
                                                            {bv(2, 2), dst.make_false()},
                                                            {bv(3, 2), dst.make_true()},
                                                            {mode, dst.make_equal(mode, bv(3, 2))}};
    for (const auto& [code, rtn] : downward) {
      const Term* pos_out = nullptr;
      const Term* neg_out = nullptr;
      const Term* returned =
          encoder.enc_add_sub_both_zero(code, {8, 23}, is_sub, x, y, &pos_out, &neg_out);
      EXPECT_EQ(pos_out, dst.make_and(both, encoder.enc_make_ite(rtn, pos, dst.make_not(neg))));
      EXPECT_EQ(neg_out, dst.make_and(both, encoder.enc_make_ite(rtn, dst.make_not(pos), neg)));
      EXPECT_EQ(returned, neg_out);
    }
  }
}

// Wide exponents ----------------------------------------------------------------------------------

TEST_P(AdditionTest, CapsTheDistanceBeforeNarrowingAWideExponent) {
  add({8, 4});
  const Tracked tracked(dst, side);
  const Term* ex = tracked.get("add_exp1");
  const Term* ey = tracked.get("add_exp2");
  const Term* d = dst.make_bv_sub(ex, ey);
  const Term* distance = chosen(dst.make_bv_sle(ey, ex), d, dst.make_bv_neg(d));
  const Term* cap = bv(7, 8);
  const Term* capped = chosen(dst.make_bv_ult(distance, cap), distance, cap);
  EXPECT_EQ(tracked.get("add_distance"), dst.make_bv_extract(4, 0, capped));
}

}  // namespace
}  // namespace vorn::fp
