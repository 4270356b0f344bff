// Conversions: which way each takes, and every value that it names.
#include <utility>

#include "tests/fp/tracked_labels.h"

namespace vorn::fp {
namespace {

constexpr IEEEFloat::format kHalf{5, 10};
constexpr IEEEFloat::format kBrain{8, 7};
constexpr IEEEFloat::format kSingle{8, 23};

class CastTest : public EncoderTest {
 protected:
  void cast(format source, format target) {
    encoder.set_debug_flag(true);
    const Term* v = variable("x", source);
    const Term* r = rounding_variable("r");
    x = encode(v);
    rm = encode(r);
    result = encode(src.make_fp_cast(target.e, target.m, r, v));
  }

  static Labels operand_labels(format f) {
    return {{"cast_exp1", f.e},
            {"cast_sign1", 1},
            {"cast_mant1", f.m + 1},
            {"cast_inf1", 1},
            {"cast_nan1", 1}};
  }
  static Labels result_labels(format source, format target) {
    return {{"cast_arg0", 2}, {"cast_arg1", source.width()}, {"cast_result", target.width()}};
  }

  const Term* x = nullptr;
  const Term* rm = nullptr;
  const Term* result = nullptr;
};
INSTANTIATE_TEST_SUITE_P(, CastTest, one_and_two_managers(), ::testing::PrintToStringParamName());

TEST_P(CastTest, TracksAndRoundsWhenNarrowing) {
  cast(kSingle, kHalf);
  EXPECT_EQ(Tracked(dst, side).labels, operand_labels(kSingle) + bisection_labels(8, 24) +
                                           rounding_labels(kHalf, 8, 24) +
                                           result_labels(kSingle, kHalf));
}

TEST_P(CastTest, TracksAndPacksWhenWidening) {
  cast(kHalf, kSingle);
  EXPECT_EQ(Tracked(dst, side).labels,
            operand_labels(kHalf) + packing_labels(kSingle) + result_labels(kHalf, kSingle));
}

TEST_P(CastTest, TracksAndPacksWhenNothingChanges) {
  cast(kSingle, kSingle);
  EXPECT_EQ(Tracked(dst, side).labels,
            operand_labels(kSingle) + packing_labels(kSingle) + result_labels(kSingle, kSingle));
}

TEST_P(CastTest, RoundsWhenOnlyTheExponentNarrows) {
  cast(kBrain, kHalf);
  EXPECT_EQ(Tracked(dst, side).labels, operand_labels(kBrain) + bisection_labels(8, 8) +
                                           rounding_labels(kHalf, 8, 8) +
                                           result_labels(kBrain, kHalf));
}

TEST_P(CastTest, RoundsWhenOnlyTheSignificandNarrows) {
  cast(kHalf, kBrain);
  EXPECT_EQ(Tracked(dst, side).labels, operand_labels(kHalf) + bisection_labels(9, 11) +
                                           rounding_labels(kBrain, 9, 11) +
                                           result_labels(kHalf, kBrain));
}

TEST_P(CastTest, UnpacksTheOperandInItsOwnFormat) {
  cast(kSingle, kHalf);
  const Tracked tracked(dst, side);
  EXPECT_EQ(tracked.get("cast_exp1"), encoder.enc_get_exponent(x, kSingle, true));
  EXPECT_EQ(tracked.get("cast_sign1"), dst.make_bv_extract(31, 31, x));
  EXPECT_EQ(tracked.get("cast_mant1"), encoder.enc_get_mantissa(x, kSingle, true));
  EXPECT_EQ(tracked.get("cast_inf1"), encoder.enc_is_inf(x, kSingle));
  EXPECT_EQ(tracked.get("cast_nan1"), encoder.enc_is_nan(x, kSingle));
  EXPECT_EQ(tracked.get("cast_arg0"), rm);
  EXPECT_EQ(tracked.get("cast_arg1"), x);
  EXPECT_EQ(tracked.get("cast_result"), result);
  EXPECT_EQ(tracked.get("round_ret"), result);
}

TEST_P(CastTest, PacksAWiderValueWithoutACorrection) {
  cast(kHalf, kSingle);
  const Tracked tracked(dst, side);
  encoder.set_debug_flag(false);
  const Term* exp = dst.make_bv_sign_extend(3, tracked.get("cast_exp1"));
  const Term* mant = dst.make_bv_concat(tracked.get("cast_mant1"), bv(0, 13));
  EXPECT_EQ(result,
            encoder.enc_pack_and_bias(kSingle, tracked.get("cast_nan1"), tracked.get("cast_inf1"),
                                      tracked.get("cast_sign1"), exp, mant, nullptr));
}

TEST_P(CastTest, IgnoresTheRoundingModeWhenWidening) {
  const Term* v = variable("x", kHalf);
  const Term* even = encode(src.make_fp_cast(8, 23, src.make_fprounding_even(), v));
  const Term* zero = encode(src.make_fp_cast(8, 23, src.make_fprounding_zero(), v));
  EXPECT_EQ(even, zero);
  EXPECT_TRUE(side.empty());
}

// Integers ----------------------------------------------------------------------------------------

class FromIntegerTest : public EncoderTest {
 protected:
  const Term* even = src.make_fprounding_even();
};
INSTANTIATE_TEST_SUITE_P(, FromIntegerTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(FromIntegerTest, TracksRoundingOnly) {
  encoder.set_debug_flag(true);
  const Term* v = bv_variable("v", 32);
  const Labels single = bisection_labels(9, 32) + rounding_labels(kSingle, 9, 32);
  encode(src.make_fp_from_ubv(8, 23, even, v));
  EXPECT_EQ(Tracked(dst, side).labels, single);
  encode(src.make_fp_from_sbv(8, 23, even, v));
  EXPECT_EQ(Tracked(dst, side).labels, single);
  const Labels half = bisection_labels(6, 32) + rounding_labels(kHalf, 6, 32);
  encode(src.make_fp_from_ubv(5, 10, even, v));
  EXPECT_EQ(Tracked(dst, side).labels, half);
}

TEST_P(FromIntegerTest, WidensANarrowIntegerToTheExponent) {
  encoder.set_debug_flag(true);
  const Term* v = bv_variable("v", 3);
  encode(src.make_fp_from_ubv(8, 23, even, v));
  const Tracked tracked(dst, side);
  EXPECT_EQ(tracked.labels, bisection_labels(9, 9) + rounding_labels(kSingle, 9, 9));
  EXPECT_EQ(tracked.get("norm_shift_mant"), dst.make_bv_concat(encoder.get_cached(v), bv(0, 6)));
}

TEST_P(FromIntegerTest, GivesTheTopBitItsWeightInTheNarrowestExponent) {
  const std::pair<std::size_t, std::size_t> widths[] = {
      {1, 2}, {2, 2}, {3, 3}, {4, 3}, {5, 4}, {8, 4}, {9, 5}, {32, 6}, {33, 7}, {64, 7}, {65, 8}};
  encoder.set_debug_flag(true);
  for (const auto& [w, ew] : widths) {
    encode(src.make_fp_from_ubv(11, 52, even, bv_variable("v", w)));
    EXPECT_EQ(Tracked(dst, side).get("norm_shift_exp"),
              dst.make_bv_sign_extend(12 - ew, bv(static_cast<std::int64_t>(w) - 1, ew)))
        << w;
  }
}

TEST_P(FromIntegerTest, TakesTheMagnitudeOfASignedInteger) {
  encoder.set_debug_flag(true);
  const Term* v = bv_variable("v", 16);
  const Term* k = encode(v);
  encode(src.make_fp_from_sbv(5, 10, even, v));
  const Term* sign = dst.make_bv_extract(15, 15, k);
  const Term* magnitude = chosen(dst.make_equal(sign, bv(0, 1)), k, dst.make_bv_neg(k));
  EXPECT_EQ(name_of(magnitude), ".fp.i1");
  const Tracked tracked(dst, side);
  EXPECT_EQ(tracked.get("norm_shift_mant"), magnitude);
  EXPECT_EQ(tracked.get("pack_res_sign"),
            encoder.enc_make_ite(dst.make_bv_or(bv(0, 1), sign), bv(1, 1), bv(0, 1)));
}

TEST_P(FromIntegerTest, TakesAnUnsignedIntegerAsItIs) {
  encoder.set_debug_flag(true);
  const Term* v = bv_variable("v", 16);
  const Term* k = encode(v);
  encode(src.make_fp_from_ubv(5, 10, even, v));
  const Tracked tracked(dst, side);
  EXPECT_EQ(tracked.get("norm_shift_mant"), k);
  EXPECT_EQ(tracked.get("pack_nan"), bv(0, 1));
  EXPECT_EQ(tracked.get("pack_res_sign"),
            encoder.enc_make_ite(dst.make_bv_or(bv(0, 1), bv(0, 1)), bv(1, 1), bv(0, 1)));
}

}  // namespace
}  // namespace vorn::fp
