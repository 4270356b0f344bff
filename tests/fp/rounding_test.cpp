// The rounding back end up to the cut: widening, the three ways to normalise, denormalisation.
#include <algorithm>
#include <bit>
#include <string>

#include "tests/fp/tracked_labels.h"

namespace vorn::fp {
namespace {

constexpr IEEEFloat::format kSingle{8, 23};

class RoundingTest : public EncoderTest {
 protected:
  /// What a stage leaves in its slots.
  struct Slots {
    const Term* exp;
    const Term* mant;
  };
  Slots normalise(const Term* exp, const Term* mant, std::uint64_t max_shift) {
    encoder.enc_normalization_shift(kSingle, &exp, &mant, max_shift);
    return {exp, mant};
  }
  /// The constant shift by k.
  void expect_shift(const Slots& out, const Term* exp, const Term* mant, std::int64_t k) {
    EXPECT_EQ(out.mant, dst.make_bv_lshl(mant, bv(k, width_of(mant))));
    EXPECT_EQ(out.exp, dst.make_bv_add(exp, bv(-k, width_of(exp))));
  }

  const Term* e = bits("e", 10);
};
INSTANTIATE_TEST_SUITE_P(, RoundingTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

// Widening ----------------------------------------------------------------------------------------

TEST_P(RoundingTest, SignExtendsANarrowExponent) {
  const Term* exp = bits("exp", 4);
  const Term* mant = bits("mant", 30);
  const Term* wide = exp;
  const Term* same = mant;
  encoder.enc_widen(kSingle, &wide, &same);
  EXPECT_EQ(wide, dst.make_bv_sign_extend(5, exp));
  EXPECT_EQ(same, mant);
}

TEST_P(RoundingTest, MakesRoomForTheShiftsOfAWideSignificand) {
  const Term* exp = bits("exp", 3);
  const Term* mant = bits("mant", 80);
  encoder.enc_widen({3, 64}, &exp, &mant);
  EXPECT_EQ(width_of(exp), 8U);
}

TEST_P(RoundingTest, NeverNarrowsAnExponent) {
  const Term* exp = bits("exp", 12);
  const Term* mant = bits("mant", 30);
  const Term* same = exp;
  encoder.enc_widen(kSingle, &same, &mant);
  EXPECT_EQ(same, exp);
}

TEST_P(RoundingTest, AppendsZerosToASignificandNarrowerThanItsExponent) {
  const Term* exp = bits("exp", 12);
  const Term* mant = bits("mant", 5);
  const Term* wide = mant;
  encoder.enc_widen(kSingle, &exp, &wide);
  EXPECT_EQ(wide, dst.make_bv_concat(mant, bv(0, 7)));
}

// Normalisation of a constant ---------------------------------------------------------------------

TEST_P(RoundingTest, ShiftsAConstantByItsLeadingZeros) {
  const Term* mant = bv(0b00010110, 8);
  expect_shift(normalise(e, mant, 0), e, mant, 3);
}

TEST_P(RoundingTest, ShiftsANormalConstantByNothing) {
  const Term* mant = bv(0x80, 8);
  expect_shift(normalise(e, mant, 0), e, mant, 0);
}

TEST_P(RoundingTest, LeavesAConstantZeroAlone) {
  const Term* mant = bv(0, 8);
  const Slots out = normalise(e, mant, 0);
  EXPECT_EQ(out.exp, e);
  EXPECT_EQ(out.mant, mant);
}

TEST_P(RoundingTest, MakesNoPartialShiftOfAConstantBeyondTheLimit) {
  const Term* within = bv(0b01000000, 8);
  expect_shift(normalise(e, within, 2), e, within, 1);
  const Term* beyond = bv(0b00100000, 8);
  const Slots out = normalise(e, beyond, 2);
  EXPECT_EQ(out.exp, e);
  EXPECT_EQ(out.mant, beyond);
  expect_shift(normalise(e, bv(1, 8), 100), e, bv(1, 8), 7);
}

TEST_P(RoundingTest, FindsTheLeadingOneOfAWideConstant) {
  const Term* high = dst.make_bv_number(QNumber::from_string("1" + std::string(30, '0'), 16), 128);
  expect_shift(normalise(e, high, 0), e, high, 7);
  const Term* low = bv(1, 128);
  expect_shift(normalise(e, low, 0), e, low, 127);
}

TEST_P(RoundingTest, TracksNothingOfAConstant) {
  encoder.set_debug_flag(true);
  EXPECT_TRUE(constraints_of([&] { normalise(e, bv(1, 8), 2); }).empty());
}

// Normalisation by a chain of tests ---------------------------------------------------------------

TEST_P(RoundingTest, TestsEachLeadingZeroWhereABoundIsKnown) {
  const Term* mant = bits("mant", 12);
  const Term* count = bv(0, 10);
  for (std::size_t i = 0; i < 2; ++i) {
    const Term* top = dst.make_bv_extract(11, 11 - i, mant);
    const Term* mask = dst.make_bv_sign_extend(9, dst.make_bv_comp(top, bv(1, i + 1)));
    const Term* term = dst.make_bv_and(mask, bv(static_cast<std::int64_t>(i), 10));
    count = dst.make_bv_or(count, term);
  }
  const Slots out = normalise(e, mant, 2);
  EXPECT_EQ(out.mant, dst.make_bv_lshl(mant, dst.make_bv_zero_extend(2, count)));
  EXPECT_EQ(out.exp, dst.make_bv_sub(e, count));
}

TEST_P(RoundingTest, BoundsTheTestsByTheWidth) {
  const Term* mant = bits("mant", 10);
  const Slots bounded = normalise(e, mant, 10);
  const Slots beyond = normalise(e, mant, 11);
  EXPECT_EQ(beyond.exp, bounded.exp);
  EXPECT_EQ(beyond.mant, bounded.mant);
  const Term* exp = e;
  encoder.enc_normalization_shift_linear(kSingle, &exp, &mant, 0);
  EXPECT_EQ(exp, bounded.exp);
  EXPECT_EQ(mant, bounded.mant);
}

TEST_P(RoundingTest, TracksTheInputsOfTheTests) {
  encoder.set_debug_flag(true);
  const Term* mant = bits("mant", 12);
  const Tracked tracked(dst, constraints_of([&] { normalise(e, mant, 2); }));
  EXPECT_EQ(tracked.labels, (Labels{{"norm_shift_exp", 10}, {"norm_shift_mant", 12}}));
  EXPECT_EQ(tracked.get("norm_shift_exp"), e);
  EXPECT_EQ(tracked.get("norm_shift_mant"), mant);
}

// Normalisation by bisection ----------------------------------------------------------------------

TEST_P(RoundingTest, BisectsForTheLeadingOneWhereNoBoundIsKnown) {
  const Term* mant = bits("mant", 12);
  const Term* v = dst.make_bv_zero_extend(4, mant);
  const Term* r = bv(0, 16);
  for (const std::size_t s : {8U, 4U, 2U, 1U}) {
    const Term* ones = dst.make_bv_sign_extend(s - 1, bv(1, 1));
    const Term* zeros = dst.make_bv_zero_extend(s - 1, bv(0, 1));
    const Term* mask = dst.make_bv_zero_extend(16 - 2 * s, dst.make_bv_concat(ones, zeros));
    const Term* hit = dst.make_bv_not(dst.make_bv_comp(dst.make_bv_and(v, mask), bv(0, 16)));
    const Term* step = bv(static_cast<std::int64_t>(s), 16);
    const Term* d = dst.make_bv_and(step, dst.make_bv_sign_extend(15, hit));
    v = dst.make_bv_lshr(v, d);
    r = dst.make_bv_or(r, d);
  }
  const Term* zeros = dst.make_bv_sub(bv(11, 16), r);

  encoder.set_debug_flag(true);
  Slots out{};
  const Tracked tracked(dst, constraints_of([&] { out = normalise(e, mant, 0); }));
  EXPECT_EQ(out.mant, dst.make_bv_lshl(mant, dst.make_bv_extract(11, 0, zeros)));
  EXPECT_EQ(out.exp, dst.make_bv_sub(e, dst.make_bv_extract(9, 0, zeros)));
  EXPECT_EQ(tracked.labels, (Labels{{"norm_shift_exp", 10},
                                    {"norm_shift_mant", 12},
                                    {"enc_norm_log_shift", 16},
                                    {"enc_norm_log_mant", 12}}));
  EXPECT_EQ(tracked.get("enc_norm_log_shift"), zeros);
  EXPECT_EQ(tracked.get("enc_norm_log_mant"), mant);
}

TEST_P(RoundingTest, BisectsInAPowerOfTwoAboveTheWidth) {
  encoder.set_debug_flag(true);
  for (const std::size_t width : {15U, 16U, 17U}) {
    const Term* mant = bits("mant", width);
    const Tracked tracked(dst, constraints_of([&] { normalise(e, mant, 0); }));
    EXPECT_EQ(width_of(tracked.get("enc_norm_log_shift")), width < 16 ? 16U : 32U);
  }
}

// Denormalisation ---------------------------------------------------------------------------------

TEST_P(RoundingTest, ShiftsWhatLiesBelowTheSmallestNormalNumber) {
  const Term* mant = bits("mant", 29);
  encoder.set_debug_flag(true);
  const Term* exp_out = e;
  const Term* mant_out = mant;
  side = constraints_of([&] { encoder.enc_denormalization_shift(kSingle, &exp_out, &mant_out); });

  const Term* d = dst.make_bv_sub(bv(-126, 10), e);
  const Term* denormal = dst.make_bv_slt(bv(0, 10), d);
  const Term* wide = dst.make_bv_zero_extend(19, d);
  const Term* amount = chosen(dst.make_bv_ult(wide, bv(28, 29)), wide, bv(28, 29));
  EXPECT_EQ(exp_out, chosen(denormal, bv(-127, 10), e));
  EXPECT_EQ(mant_out, chosen(denormal, dst.make_bv_lshr(mant, amount), mant));
  EXPECT_EQ(name_of(exp_out), ".fp.i1");
  EXPECT_EQ(name_of(amount), ".fp.i2");
  EXPECT_EQ(name_of(mant_out), ".fp.i3");

  const Tracked tracked(dst, side);
  EXPECT_EQ(tracked.labels, (Labels{{"denorm_shift_exp", 10},
                                    {"denorm_shift_mant", 29},
                                    {"denorm_shift_smallexp", 10},
                                    {"denorm_shift_denormal", 0},
                                    {"denorm_shift_rshift", 29},
                                    {"denorm_shift_out_mant", 29},
                                    {"denorm_shift_out_exp", 10}}));
  EXPECT_EQ(tracked.get("denorm_shift_exp"), e);
  EXPECT_EQ(tracked.get("denorm_shift_mant"), mant);
  EXPECT_EQ(tracked.get("denorm_shift_smallexp"), bv(-126, 10));
  EXPECT_EQ(tracked.get("denorm_shift_denormal"), denormal);
  EXPECT_EQ(tracked.get("denorm_shift_rshift"), amount);
  EXPECT_EQ(tracked.get("denorm_shift_out_mant"), mant_out);
  EXPECT_EQ(tracked.get("denorm_shift_out_exp"), exp_out);
}

TEST_P(RoundingTest, UsesADistanceOfTheSignificandsWidthAsItIs) {
  const Term* mant = bits("mant", 10);
  const Term* exp_out = e;
  const Term* mant_out = mant;
  side = constraints_of([&] { encoder.enc_denormalization_shift(kSingle, &exp_out, &mant_out); });
  const Term* d = dst.make_bv_sub(bv(-126, 10), e);
  const Term* amount = chosen(dst.make_bv_ult(d, bv(9, 10)), d, bv(9, 10));
  EXPECT_EQ(mant_out, chosen(dst.make_bv_slt(bv(0, 10), d), dst.make_bv_lshr(mant, amount), mant));
}

// The driver --------------------------------------------------------------------------------------

TEST_P(RoundingTest, RunsItsStagesInOrder) {
  encoder.set_debug_flag(true);
  const Term* one = bits("one", 1);
  const Term* mant = bits("mant", 48);
  const Term* result = nullptr;
  const Tracked tracked(dst, constraints_of([&] {
                          result = encoder.enc_do_rounding(bits("rm", 2), kSingle, one, one, one, e,
                                                           mant, 0);
                        }));
  const Labels expected = {{"norm_shift_exp", 10},
                           {"norm_shift_mant", 48},
                           {"enc_norm_log_shift", 64},
                           {"enc_norm_log_mant", 48},
                           {"denorm_shift_exp", 10},
                           {"denorm_shift_mant", 48},
                           {"denorm_shift_smallexp", 10},
                           {"denorm_shift_denormal", 0},
                           {"denorm_shift_rshift", 48},
                           {"denorm_shift_out_mant", 48},
                           {"denorm_shift_out_exp", 10},
                           {"round_mant_before", 48},
                           {"round_rounding", 2},
                           {"round_mant_lastbits", 23},
                           {"round_sticky_bit", 1},
                           {"round_rounding_bit", 1},
                           {"round_mant_after_chop", 24},
                           {"round_rounding_least", 1},
                           {"round_increment", 1},
                           {"out_correction_bit", 1},
                           {"round_overflow", 1},
                           {"mant_round_mant", 24},
                           {"exp_round_mant", 10},
                           {"exp_exponent_too_large", 1},
                           {"exp_out_correction_bit", 1},
                           {"exp_round_exp", 8},
                           {"round_correction_bit", 1},
                           {"biased_exp", 8},
                           {"pack_denormal", 8},
                           {"pack_res_sign", 1},
                           {"pack_res_exp", 8},
                           {"pack_res_mant", 23},
                           {"pack_nan", 1},
                           {"pack_inf", 1},
                           {"round_ret", 32}};
  EXPECT_EQ(tracked.labels, expected);
  EXPECT_EQ(tracked.get("round_ret"), result);
  EXPECT_EQ(tracked.get("round_correction_bit"), tracked.get("exp_out_correction_bit"));
}

TEST_P(RoundingTest, TracksNoCorrectionWhereThereIsNothingToRound) {
  encoder.set_debug_flag(true);
  const Term* one = bits("one", 1);
  const Term* mant = bits("mant", 24);
  const Tracked tracked(dst, constraints_of([&] {
                          encoder.enc_do_rounding(bits("rm", 2), kSingle, one, one, one, e, mant,
                                                  0);
                        }));
  EXPECT_EQ(tracked.labels, bisection_labels(10, 24) + rounding_labels(kSingle, 10, 24));
  for (const auto& [label, width] : tracked.labels)
    EXPECT_NE(label, "round_correction_bit");
}

// Values ------------------------------------------------------------------------------------------

class NormalisationValuesTest : public ::testing::Test {
 protected:
  const Term* bv(std::int64_t value, std::size_t width) {
    return mgr.make_bv_number(QNumber(value), width);
  }
  /// The pair after the shift is the one before, shifted by k.
  void expect_shift(const Term* exp, const Term* mant, std::int64_t before, std::int64_t k) {
    EXPECT_EQ(mant, bv(before << k, 7)) << before;
    EXPECT_EQ(exp, bv(5 - k, 6)) << before;
  }

  TermManager mgr;
  OpenEncoder encoder{&mgr, &mgr};
};

TEST_F(NormalisationValuesTest, BisectionCountsTheLeadingZerosOfEveryPattern) {
  for (std::int64_t pattern = 0; pattern < 128; ++pattern) {
    const Term* exp = bv(5, 6);
    const Term* mant = bv(pattern, 7);
    encoder.enc_normalization_shift_log(kSingle, &exp, &mant);
    // A zero counts as 1: it moves by the whole width but one.
    const auto length = std::bit_width(static_cast<unsigned>(pattern == 0 ? 1 : pattern));
    expect_shift(exp, mant, pattern, 7 - length);
  }
}

TEST_F(NormalisationValuesTest, TestsShiftNothingWhereTheLeadingOneIsBeyondThem) {
  for (std::int64_t pattern = 0; pattern < 128; ++pattern) {
    const Term* exp = bv(5, 6);
    const Term* mant = bv(pattern, 7);
    encoder.enc_normalization_shift_linear(kSingle, &exp, &mant, 2);
    expect_shift(exp, mant, pattern, pattern >= 32 && pattern < 64 ? 1 : 0);
  }
}

TEST_F(NormalisationValuesTest, DenormalisationShiftsByTheMissingExponent) {
  for (std::int64_t below = -2; below < 12; ++below) {
    const Term* exp = bv(-2 - below, 6);  // -2 is the smallest normal exponent
    const Term* mant = bv(0x7F, 7);
    encoder.enc_denormalization_shift({3, 3}, &exp, &mant);
    const std::int64_t shift = below <= 0 ? 0 : std::min<std::int64_t>(below, 6);
    EXPECT_EQ(mant, bv(0x7F >> shift, 7)) << below;
    EXPECT_EQ(exp, bv(below <= 0 ? -2 - below : -3, 6)) << below;
  }
}

}  // namespace
}  // namespace vorn::fp
