// The last stages of rounding: the cut, the exponent check, packing.
#include <stdexcept>

#include "tests/fp/tracked_labels.h"

namespace vorn::fp {
namespace {

constexpr IEEEFloat::format kSingle{8, 23};

// The cut -----------------------------------------------------------------------------------------

class MantissaTest : public EncoderTest {
 protected:
  /// Rounds `mant` under `rm`; what the stage leaves is in the slots and in `side`.
  void round(const Term* rm, std::size_t width) {
    encoder.set_debug_flag(true);
    mant_in = bits("mant", width);
    mant = mant_in;
    exp = e;
    correction = nullptr;
    side = constraints_of(
        [&] { encoder.enc_round_mantissa(rm, kSingle, sign, &exp, &mant, &correction); });
    encoder.set_debug_flag(false);
  }

  const Term* e = bits("e", 10);
  const Term* sign = bits("sign", 1);
  const Term* mant_in = nullptr;
  const Term* exp = nullptr;
  const Term* mant = nullptr;
  const Term* correction = nullptr;
};
INSTANTIATE_TEST_SUITE_P(, MantissaTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(MantissaTest, SplitsTheBitsBelowTheKeptOnes) {
  round(bv(1, 2), 29);
  const Tracked tracked(dst, side);
  const Term* last = dst.make_bv_extract(3, 0, mant_in);
  const Term* kept = dst.make_bv_extract(28, 5, mant_in);
  EXPECT_EQ(tracked.get("round_mant_before"), mant_in);
  EXPECT_EQ(tracked.get("round_rounding"), bv(1, 2));
  EXPECT_EQ(tracked.get("round_mant_lastbits"), last);
  EXPECT_EQ(tracked.get("round_sticky_bit"), dst.make_bv_not(dst.make_bv_comp(last, bv(0, 4))));
  EXPECT_EQ(tracked.get("round_rounding_bit"), dst.make_bv_extract(4, 4, mant_in));
  EXPECT_EQ(tracked.get("round_mant_after_chop"), kept);
  EXPECT_EQ(tracked.get("round_rounding_least"), dst.make_bv_extract(0, 0, kept));
}

TEST_P(MantissaTest, HasNoStickyBitsBelowASingleBit) {
  round(bv(0, 2), 25);
  const Tracked tracked(dst, side);
  EXPECT_EQ(tracked.get("round_sticky_bit"), bv(0, 1));
  EXPECT_EQ(tracked.labels[2].first, "round_sticky_bit");
  EXPECT_EQ(tracked.get("round_rounding_bit"), dst.make_bv_extract(0, 0, mant_in));
}

TEST_P(MantissaTest, BuildsTheRowOfAConstantModeOnly) {
  for (const std::int64_t mode : {0, 1, 2, 3}) {
    round(bv(mode, 2), 29);
    const Tracked tracked(dst, side);
    const Term* half = tracked.get("round_rounding_bit");
    const Term* sticky = tracked.get("round_sticky_bit");
    const Term* least = tracked.get("round_rounding_least");
    const Term* not_sign = dst.make_bv_not(sign);
    const Term* inexact = dst.make_bv_or(half, sticky);
    const Term* increments[] = {dst.make_bv_and(half, dst.make_bv_or(least, sticky)), bv(0, 1),
                                dst.make_bv_and(not_sign, inexact), dst.make_bv_and(sign, inexact)};
    const Term* corrections[] = {bv(0, 1), bv(1, 1), sign, not_sign};
    EXPECT_EQ(tracked.get("round_increment"), increments[mode]);
    EXPECT_EQ(tracked.get("out_correction_bit"), corrections[mode]);
    EXPECT_EQ(correction, corrections[mode]);
    for (const Term* constraint : side)
      EXPECT_NE(constraint->get_tag(), SymbolTag::bool_or);
  }
}

TEST_P(MantissaTest, ChoosesTheRowOfASymbolicModeByTwoChains) {
  const Term* rm = bits("rm", 2);
  round(rm, 29);
  const Tracked tracked(dst, side);
  const Term* half = tracked.get("round_rounding_bit");
  const Term* sticky = tracked.get("round_sticky_bit");
  const Term* not_sign = dst.make_bv_not(sign);
  const Term* inexact = dst.make_bv_or(half, sticky);
  const Term* even =
      dst.make_bv_and(half, dst.make_bv_or(tracked.get("round_rounding_least"), sticky));
  const Term* plus = dst.make_bv_and(not_sign, inexact);
  const Term* minus = dst.make_bv_and(sign, inexact);
  const Term* is_even = dst.make_equal(rm, bv(0, 2));
  const Term* is_zero = dst.make_equal(rm, bv(1, 2));
  const Term* is_plus = dst.make_equal(rm, bv(2, 2));

  const Term* increment =
      chosen(is_even, even, chosen(is_zero, bv(0, 1), chosen(is_plus, plus, minus)));
  EXPECT_EQ(tracked.get("round_increment"), increment);
  EXPECT_EQ(name_of(increment), ".fp.i3");
  EXPECT_EQ(correction,
            chosen(is_even, bv(0, 1), chosen(is_zero, bv(1, 1), chosen(is_plus, sign, not_sign))));
  EXPECT_EQ(name_of(correction), ".fp.i6");
}

TEST_P(MantissaTest, CarriesAnOverflowIntoTheExponent) {
  round(bv(0, 2), 29);
  const Tracked tracked(dst, side);
  const Term* kept = dst.make_bv_zero_extend(1, tracked.get("round_mant_after_chop"));
  const Term* sum =
      dst.make_bv_add(kept, dst.make_bv_zero_extend(24, tracked.get("round_increment")));
  const Term* overflow = dst.make_bv_extract(24, 24, sum);
  EXPECT_EQ(tracked.get("round_overflow"), overflow);
  EXPECT_EQ(exp, dst.make_bv_add(e, dst.make_bv_zero_extend(9, overflow)));
  const Term* hidden =
      dst.make_bv_not(dst.make_bv_comp(dst.make_bv_extract(24, 23, sum), bv(0, 2)));
  EXPECT_EQ(mant, dst.make_bv_concat(hidden, dst.make_bv_extract(22, 0, sum)));
  EXPECT_EQ(tracked.get("mant_round_mant"), mant);
  EXPECT_EQ(tracked.get("exp_round_mant"), exp);
}

TEST_P(MantissaTest, LeavesASignificandOfTheKeptWidthAlone) {
  round(bv(0, 2), 24);
  EXPECT_EQ(mant, mant_in);
  EXPECT_EQ(exp, e);
  EXPECT_EQ(correction, nullptr);
  EXPECT_EQ(Tracked(dst, side).labels, (Labels{{"round_mant_before", 24}, {"round_rounding", 2}}));
}

TEST_P(MantissaTest, FillsANarrowSignificandWithZeros) {
  round(bv(0, 2), 20);
  EXPECT_EQ(mant, dst.make_bv_concat(mant_in, bv(0, 4)));
  EXPECT_EQ(exp, e);
  EXPECT_EQ(correction, nullptr);
  EXPECT_EQ(Tracked(dst, side).labels, (Labels{{"round_mant_before", 20}, {"round_rounding", 2}}));
}

// The exponent check ------------------------------------------------------------------------------

class ExponentTest : public EncoderTest {
 protected:
  const Term* mant = bits("mant", 24);
  const Term* is_nan = bits("is_nan", 1);
  const Term* inf = bits("inf", 1);
};
INSTANTIATE_TEST_SUITE_P(, ExponentTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(ExponentTest, TurnsAnOverflowIntoInfinityOrKeepsTheCorrection) {
  encoder.set_debug_flag(true);
  const Term* wanted = bits("wanted", 1);
  const Term* wide = bits("e", 10);
  const Term* exp = wide;
  const Term* is_inf = inf;
  const Term* correction = wanted;
  side = constraints_of(
      [&] { encoder.enc_round_exponent(kSingle, is_nan, mant, &exp, &is_inf, &correction); });

  const Term* above = dst.make_not(dst.make_bv_slt(wide, bv(128, 10)));
  const Term* not_zero = dst.make_not(dst.make_equal(mant, bv(0, 24)));
  const Term* too_large = chosen(dst.make_and(above, not_zero), bv(1, 1), bv(0, 1));
  const Term* finite = dst.make_bv_and(dst.make_bv_not(inf), too_large);
  const Term* saturates = dst.make_bv_and(dst.make_bv_not(is_nan), finite);
  EXPECT_EQ(correction, encoder.enc_make_ite(saturates, wanted, bv(0, 1)));
  EXPECT_EQ(is_inf, dst.make_bv_or(inf, too_large));
  EXPECT_EQ(exp, dst.make_bv_extract(7, 0, wide));

  const Tracked tracked(dst, side);
  EXPECT_EQ(
      tracked.labels,
      (Labels{{"exp_exponent_too_large", 1}, {"exp_out_correction_bit", 1}, {"exp_round_exp", 8}}));
  EXPECT_EQ(tracked.get("exp_exponent_too_large"), too_large);
  EXPECT_EQ(tracked.get("exp_out_correction_bit"), correction);
  EXPECT_EQ(tracked.get("exp_round_exp"), exp);
}

TEST_P(ExponentTest, KeepsAMissingCorrectionMissing) {
  encoder.set_debug_flag(true);
  const Term* exp = bits("e", 10);
  const Term* is_inf = inf;
  const Term* correction = nullptr;
  const Tracked tracked(dst, constraints_of([&] {
                          encoder.enc_round_exponent(kSingle, is_nan, mant, &exp, &is_inf,
                                                     &correction);
                        }));
  EXPECT_EQ(correction, nullptr);
  EXPECT_EQ(tracked.labels, (Labels{{"exp_exponent_too_large", 1}, {"exp_round_exp", 8}}));
}

TEST_P(ExponentTest, DoesNothingToAnExponentOfTheFieldsWidth) {
  encoder.set_debug_flag(true);
  const Term* narrow = bits("e", 8);
  const Term* wanted = bits("wanted", 1);
  const Term* exp = narrow;
  const Term* is_inf = inf;
  const Term* correction = wanted;
  EXPECT_TRUE(constraints_of([&] {
                encoder.enc_round_exponent(kSingle, is_nan, mant, &exp, &is_inf, &correction);
              }).empty());
  EXPECT_EQ(exp, narrow);
  EXPECT_EQ(is_inf, inf);
  EXPECT_EQ(correction, wanted);
}

// Packing -----------------------------------------------------------------------------------------

class PackingTest : public EncoderTest {
 protected:
  const Term* pack(const Term* correction) {
    return encoder.enc_pack_and_bias(kSingle, nan, inf, sign, exp, mant, correction);
  }
  /// The packed value built by hand; `subtracted` is null where nothing saturates.
  const Term* packed(const Term* subtracted) {
    const Term* special = dst.make_bv_or(nan, inf);
    const Term* keep = dst.make_bv_sign_extend(21, dst.make_bv_not(special));
    const Term* frac = dst.make_bv_extract(22, 0, mant);
    const Term* high = dst.make_bv_and(keep, dst.make_bv_extract(22, 1, frac));
    const Term* low = dst.make_bv_and(dst.make_bv_not(inf), dst.make_bv_extract(0, 0, frac));
    res_mant = dst.make_bv_concat(high, dst.make_bv_or(nan, low));
    biased = dst.make_bv_add(exp, bv(127, 8));
    denormal = dst.make_bv_sign_extend(7, dst.make_bv_not(dst.make_bv_extract(23, 23, mant)));
    const Term* field = dst.make_bv_and(dst.make_bv_not(denormal), biased);
    res_exp = dst.make_bv_or(dst.make_bv_sign_extend(7, special), field);
    res_sign = encoder.enc_make_ite(dst.make_bv_or(nan, sign), bv(1, 1), bv(0, 1));
    const Term* body = dst.make_bv_concat(res_exp, res_mant);
    if (subtracted != nullptr) {
      body = dst.make_bv_sub(body, dst.make_bv_zero_extend(30, subtracted));
    }
    return dst.make_bv_concat(res_sign, body);
  }

  const Term* nan = bits("nan", 1);
  const Term* inf = bits("inf", 1);
  const Term* sign = bits("sign", 1);
  const Term* exp = bits("exp", 8);
  const Term* mant = bits("mant", 24);
  const Term* biased = nullptr;
  const Term* denormal = nullptr;
  const Term* res_sign = nullptr;
  const Term* res_exp = nullptr;
  const Term* res_mant = nullptr;
};
INSTANTIATE_TEST_SUITE_P(, PackingTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(PackingTest, AssemblesSignExponentAndFraction) {
  EXPECT_EQ(pack(nullptr), packed(nullptr));
}

TEST_P(PackingTest, SubtractsACorrectionFromExponentAndFraction) {
  const Term* correction = bits("correction", 1);
  EXPECT_EQ(pack(correction), packed(correction));
  EXPECT_EQ(pack(bv(1, 1)), packed(bv(1, 1)));
}

TEST_P(PackingTest, KnowsAZeroCorrectionOnlyAsANumeralOfTheSource) {
  const Term* zero = bv(0, 1);
  EXPECT_EQ(pack(zero), packed(GetParam() == Managers::one ? nullptr : zero));
}

TEST_P(PackingTest, TracksItsPartsAfterTheBias) {
  encoder.set_debug_flag(true);
  const Tracked tracked(dst, constraints_of([&] { pack(nullptr); }));
  EXPECT_EQ(tracked.labels, (Labels{{"biased_exp", 8},
                                    {"pack_denormal", 8},
                                    {"pack_res_sign", 1},
                                    {"pack_res_exp", 8},
                                    {"pack_res_mant", 23},
                                    {"pack_nan", 1},
                                    {"pack_inf", 1}}));
  packed(nullptr);
  EXPECT_EQ(tracked.get("biased_exp"), biased);
  EXPECT_EQ(tracked.get("pack_denormal"), denormal);
  EXPECT_EQ(tracked.get("pack_res_sign"), res_sign);
  EXPECT_EQ(tracked.get("pack_res_exp"), res_exp);
  EXPECT_EQ(tracked.get("pack_res_mant"), res_mant);
  EXPECT_EQ(tracked.get("pack_nan"), nan);
  EXPECT_EQ(tracked.get("pack_inf"), inf);
}

TEST_P(PackingTest, RefusesASingleFractionBit) {
  EXPECT_THROW(encoder.enc_pack_and_bias({8, 1}, nan, inf, sign, exp, bits("m", 2), nullptr),
               std::invalid_argument);
}

// Values ------------------------------------------------------------------------------------------

class RoundedValuesTest : public ::testing::Test {
 protected:
  /// The pattern of +-mant / 2^31 * 2^exp at single precision.
  std::int64_t rounded(int mode, int sign, std::int64_t exp, std::int64_t mant, int nan = 0,
                       int inf = 0) {
    const Term* result = encoder.enc_do_rounding(bv(mode, 2), kSingle, bv(nan, 1), bv(inf, 1),
                                                 bv(sign, 1), bv(exp, 10), bv(mant, 32), 0);
    QNumber value;
    std::int64_t pattern = -1;
    EXPECT_TRUE(mgr.is_number(result, &value) && value.get_int64(&pattern));
    return pattern;
  }
  const Term* bv(std::int64_t value, std::size_t width) {
    return mgr.make_bv_number(QNumber(value), width);
  }

  TermManager mgr;
  OpenEncoder encoder{&mgr, &mgr};
};

TEST_F(RoundedValuesTest, AnExactValueIsItselfInEveryMode) {
  for (const int mode : {0, 1, 2, 3}) {
    EXPECT_EQ(rounded(mode, 0, 0, 0x80000000), 0x3F800000);
    EXPECT_EQ(rounded(mode, 1, 1, 0x40000000), 0xBF800000);
    EXPECT_EQ(rounded(mode, 1, 500, 0), 0x80000000);
  }
}

TEST_F(RoundedValuesTest, AllOnesRoundUpToTwo) {
  EXPECT_EQ(rounded(0, 0, 0, 0xFFFFFF80), 0x40000000);
  EXPECT_EQ(rounded(1, 0, 0, 0xFFFFFF80), 0x3FFFFFFF);
  EXPECT_EQ(rounded(2, 0, 0, 0x80000001), 0x3F800001);
  EXPECT_EQ(rounded(3, 1, 0, 0x80000001), 0xBF800001);
}

TEST_F(RoundedValuesTest, ATieGoesToTheEvenNeighbour) {
  EXPECT_EQ(rounded(0, 0, 0, 0x80000080), 0x3F800000);
  EXPECT_EQ(rounded(0, 0, 0, 0x80000180), 0x3F800002);
  EXPECT_EQ(rounded(0, 0, 0, 0x80000081), 0x3F800001);
}

TEST_F(RoundedValuesTest, OverflowSaturatesTowardZeroOnly) {
  constexpr std::int64_t kPositive[] = {0x7F800000, 0x7F7FFFFF, 0x7F800000, 0x7F7FFFFF};
  constexpr std::int64_t kNegative[] = {0xFF800000, 0xFF7FFFFF, 0xFF7FFFFF, 0xFF800000};
  for (const int mode : {0, 1, 2, 3}) {
    EXPECT_EQ(rounded(mode, 0, 128, 0x80000000), kPositive[mode]) << mode;
    EXPECT_EQ(rounded(mode, 1, 300, 0xC0000000), kNegative[mode]) << mode;
  }
}

TEST_F(RoundedValuesTest, FlagsWinOverTheSignificand) {
  for (const int mode : {0, 1, 2, 3}) {
    EXPECT_EQ(rounded(mode, 0, 128, 0x80000000, 1, 1), 0xFF800001);
    EXPECT_EQ(rounded(mode, 0, 0, 0xDEADBEEF, 1, 0), 0xFF800001);
    EXPECT_EQ(rounded(mode, 0, 0, 0xDEADBEEF, 0, 1), 0x7F800000);
    EXPECT_EQ(rounded(mode, 1, 128, 0x80000000, 0, 1), 0xFF800000);
  }
}

TEST_F(RoundedValuesTest, ASubnormalHasExponentFieldZero) {
  EXPECT_EQ(rounded(0, 0, -126, 0x80000000), 0x00800000);
  EXPECT_EQ(rounded(0, 0, -127, 0x80000000), 0x00400000);
  EXPECT_EQ(rounded(0, 1, -149, 0x80000000), 0x80000001);
}

}  // namespace
}  // namespace vorn::fp
