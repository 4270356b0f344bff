// The oracles against each other, against the hardware, and against results known by heart.
//
// Three statements carry the rest of the test suite: the integer IEEE oracle equals MPFR and the
// machine's own arithmetic; the base model differs from IEEE 754 exactly where the departures say;
// and the model's circuits have well-formed widths exactly for the formats that it calls supported.
// Small formats are tried on every operand, large ones on random operands drawn toward the
// boundaries where rounding, underflow and overflow happen.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/oracle/base_model.h"
#include "tests/oracle/departures.h"
#include "tests/oracle/ieee_oracle.h"
#include "tests/oracle/mpfr_oracle.h"
#include "tests/oracle/random_operands.h"
#include "tests/oracle/strict_bits.h"
#include "tests/oracle/test_support.h"

namespace vorn::oracle {
namespace {

/// The operations on two operands, with every implementation of each.
struct BinaryOperation {
  const char* name;
  Bits (*model)(RoundingMode, Format, const Bits&, const Bits&, bool);
  bool (*supports_symbolic)(Format);
  Bits (*ieee)(RoundingMode, Format, const Bits&, const Bits&);
  Bits (*mpfr)(RoundingMode, Format, const Bits&, const Bits&);
  Departures (*departures)(RoundingMode, Format, const Bits&, const Bits&);
};

bool supports_symbolic_division(Format f) {
  return base::supports_division(f, true);
}

const std::vector<BinaryOperation> kBinary = {
    {"add", base::add, base::supports_arithmetic, ieee::add, by_mpfr::add, departures::add},
    {"sub", base::sub, base::supports_arithmetic, ieee::sub, by_mpfr::sub, departures::sub},
    {"mul", base::mul, base::supports_arithmetic, ieee::mul, by_mpfr::mul, departures::mul},
    {"div", base::div, supports_symbolic_division, ieee::div, by_mpfr::div, departures::div},
};

/// Conversions from integers, likewise.
struct IntegerOperation {
  const char* name;
  Bits (*model)(RoundingMode, unsigned, Format, const Bits&, bool);
  Bits (*ieee)(RoundingMode, unsigned, Format, const Bits&);
  Bits (*mpfr)(RoundingMode, unsigned, Format, const Bits&);
  Departures (*departures)(RoundingMode, unsigned, Format, const Bits&);
};

const std::vector<IntegerOperation> kFromInteger = {
    {"from_sbv", base::from_sbv, ieee::from_sbv, by_mpfr::from_sbv, departures::from_sbv},
    {"from_ubv", base::from_ubv, ieee::from_ubv, by_mpfr::from_ubv, departures::from_ubv},
};

// The IEEE oracle ---------------------------------------------------------------------------------

void expect_mpfr_agrees(Format f, const Bits& x, const Bits& y) {
  for (const BinaryOperation& op : kBinary) {
    for (const RoundingMode rm : kAllModes) {
      const Bits ours = op.ieee(rm, f, x, y);
      const Bits theirs = op.mpfr(rm, f, x, y);
      ASSERT_TRUE(ours == theirs) << line(op.name, rm, {f}, {x, y, ours, theirs});
    }
  }
}

class IeeeOracleOnSmallFormats : public testing::TestWithParam<Format> {};

TEST_P(IeeeOracleOnSmallFormats, EqualsMpfrOnEveryPair) {
  const Format f = GetParam();
  const auto patterns = all_patterns(f.width());
  for (const Bits& x : first_operands(f.width())) {
    for (const Bits& y : patterns)
      ASSERT_NO_FATAL_FAILURE(expect_mpfr_agrees(f, x, y));
  }
}

TEST_P(IeeeOracleOnSmallFormats, ComparesAndNegatesAsMpfrDoes) {
  const Format f = GetParam();
  const auto patterns = all_patterns(f.width());
  for (const Bits& x : patterns) {
    EXPECT_TRUE(ieee::neg(f, x) == by_mpfr::neg(f, x)) << x;
    for (const Bits& y : patterns) {
      EXPECT_EQ(ieee::eq(f, x, y), by_mpfr::eq(f, x, y)) << x << ' ' << y;
      EXPECT_EQ(ieee::lt(f, x, y), by_mpfr::lt(f, x, y)) << x << ' ' << y;
      EXPECT_EQ(ieee::le(f, x, y), by_mpfr::le(f, x, y)) << x << ' ' << y;
    }
  }
}

TEST_P(IeeeOracleOnSmallFormats, PutsEveryPatternInOneClass) {
  const Format f = GetParam();
  Bits nans = 0;
  Bits infinities = 0;
  Bits zeros = 0;
  Bits subnormals = 0;
  for (const Bits& x : all_patterns(f.width())) {
    nans += ieee::is_nan(f, x);
    infinities += ieee::is_inf(f, x);
    zeros += ieee::is_zero(f, x);
    subnormals += ieee::is_subnormal(f, x);
  }
  EXPECT_EQ(nans, 2 * (power(f.m) - 1));
  EXPECT_EQ(infinities, 2);
  EXPECT_EQ(zeros, 2);
  EXPECT_EQ(subnormals, 2 * (power(f.m) - 1));
}

TEST_P(IeeeOracleOnSmallFormats, ConvertsAsMpfrDoes) {
  const Format f = GetParam();
  for (const Format to : {Format{2, 1}, Format{3, 3}, Format{5, 2}, Format{2, 6}, kHalf}) {
    for (const Bits& x : all_patterns(f.width())) {
      for (const RoundingMode rm : kAllModes) {
        ASSERT_TRUE(ieee::cast(rm, f, to, x) == by_mpfr::cast(rm, f, to, x))
            << line("cast", rm, {f, to}, {x});
      }
    }
  }
  for (const IntegerOperation& op : kFromInteger) {
    for (unsigned w = 1; w <= 8; ++w) {
      for (const Bits& v : all_patterns(w)) {
        for (const RoundingMode rm : kAllModes) {
          ASSERT_TRUE(op.ieee(rm, w, f, v) == op.mpfr(rm, w, f, v)) << line(op.name, rm, w, f, v);
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, IeeeOracleOnSmallFormats,
                         testing::Values(Format{2, 1}, Format{2, 3}, Format{4, 1}, Format{3, 3}),
                         format_name);

class IeeeOracleOnLargeFormats : public testing::TestWithParam<Format> {};

TEST_P(IeeeOracleOnLargeFormats, EqualsMpfrOnRandomOperands) {
  const Format f = GetParam();
  RandomOperands random(f.width());
  for (unsigned i = 0; i < 2000 / kShare; ++i) {
    const Bits x = random.float_pattern(f);
    ASSERT_NO_FATAL_FAILURE(expect_mpfr_agrees(f, x, random.partner(f, x)));
  }
}

TEST_P(IeeeOracleOnLargeFormats, ConvertsRandomOperandsAsMpfrDoes) {
  const Format f = GetParam();
  RandomOperands random(f.width());
  for (unsigned i = 0; i < 3000 / kShare; ++i) {
    const RoundingMode rm = kAllModes[random.below(5)];
    for (const Format to : {kHalf, kBfloat, kSingle, kDouble, kQuad}) {
      const Bits x = random.source(f, to);
      ASSERT_TRUE(ieee::cast(rm, f, to, x) == by_mpfr::cast(rm, f, to, x))
          << line("cast", rm, {f, to}, {x});
    }
    const unsigned w = 1 + random.below(200);
    const Bits v = random.bits(w);
    for (const IntegerOperation& op : kFromInteger) {
      ASSERT_TRUE(op.ieee(rm, w, f, v) == op.mpfr(rm, w, f, v)) << line(op.name, rm, w, f, v);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, IeeeOracleOnLargeFormats,
                         testing::Values(kHalf, kBfloat, kSingle, kDouble, kQuad), format_name);

template <class Float, class Word>
void expect_hardware_agrees(Format f) {
  RandomOperands random(f.width());
  for (unsigned i = 0; i < 50000 / kShare; ++i) {
    const Bits x = random.float_pattern(f);
    const Bits y = random.partner(f, x);
    // Volatile operands and results keep the operations between the changes of direction.
    const volatile Float a = std::bit_cast<Float>(static_cast<Word>(x.get_ui()));
    const volatile Float b = std::bit_cast<Float>(static_cast<Word>(y.get_ui()));
    for (const RoundingMode rm : kBaseModes) {
      volatile Float results[4];
      {
        const HardwareRounding rounding(rm);
        results[0] = a + b;
        results[1] = a - b;
        results[2] = a * b;
        results[3] = a / b;
      }
      for (std::size_t op = 0; op < kBinary.size(); ++op) {
        const Float result = results[op];
        const Bits theirs = result != result ? ieee::nan(f) : Bits{std::bit_cast<Word>(result)};
        const Bits ours = kBinary[op].ieee(rm, f, x, y);
        ASSERT_TRUE(ours == theirs) << line(kBinary[op].name, rm, {f}, {x, y, ours, theirs});
      }
    }
  }
}

TEST(IeeeOracle, EqualsHardwareFloatInFourModes) {
  expect_hardware_agrees<float, std::uint32_t>(kSingle);
}

TEST(IeeeOracle, EqualsHardwareDoubleInFourModes) {
  expect_hardware_agrees<double, std::uint64_t>(kDouble);
}

TEST(IeeeOracle, GivesKnownResults) {
  using enum RoundingMode;
  EXPECT_EQ(ieee::add(rne, kSingle, hex("80000000"), hex("80000000")), hex("80000000"));
  EXPECT_EQ(ieee::add(rtn, kSingle, 0, 0), 0);
  EXPECT_EQ(ieee::cast(rne, kSingle, kDouble, 1), hex("36a0000000000000"));
  EXPECT_EQ(ieee::mul(rne, {5, 2}, 1, hex("3c")), 1);
  EXPECT_EQ(ieee::div(rna, kSingle, 0, 0), hex("ff800001"));
  EXPECT_EQ(ieee::neg(kSingle, hex("7fc00000")), hex("ff800001"));
}

TEST(IeeeOracle, GivesZeroSumsTheSignOfTheStandard) {
  const Bits one = hex("3f800000");
  const Bits plus_zero = 0;
  const Bits minus_zero = hex("80000000");
  for (const RoundingMode rm : kAllModes) {
    const Bits cancelled = rm == RoundingMode::rtn ? minus_zero : plus_zero;
    EXPECT_EQ(ieee::sub(rm, kSingle, one, one), cancelled);
    EXPECT_EQ(ieee::add(rm, kSingle, plus_zero, minus_zero), cancelled);
    EXPECT_EQ(ieee::add(rm, kSingle, minus_zero, plus_zero), cancelled);
    EXPECT_EQ(ieee::add(rm, kSingle, plus_zero, plus_zero), plus_zero);
    EXPECT_EQ(ieee::add(rm, kSingle, minus_zero, minus_zero), minus_zero);
  }
}

TEST(IeeeOracle, BreaksTiesToAwayBetweenNeighboursAndAtOverflow) {
  constexpr auto kAway = RoundingMode::rna;
  // 1 + 2^-24 is halfway between 1 and the next number; 2^-25 above it is no tie.
  EXPECT_EQ(ieee::add(kAway, kSingle, hex("3f800000"), hex("33800000")), hex("3f800001"));
  EXPECT_EQ(ieee::add(kAway, kSingle, hex("bf800000"), hex("b3800000")), hex("bf800001"));
  EXPECT_EQ(ieee::add(kAway, kSingle, hex("3f800000"), hex("33000000")), hex("3f800000"));
  // Half a unit above the largest finite number, and half the smallest subnormal.
  EXPECT_EQ(ieee::add(kAway, kSingle, hex("7f7fffff"), hex("73000000")), hex("7f800000"));
  EXPECT_EQ(ieee::mul(kAway, kSingle, hex("00000001"), hex("3f000000")), 1);
}

TEST(IeeeOracle, TellsTermsApartByValueButNotByNaN) {
  EXPECT_TRUE(ieee::same(kHalf, hex("7c01"), hex("fe00")));
  EXPECT_FALSE(ieee::same(kHalf, hex("0000"), hex("8000")));
  EXPECT_TRUE(ieee::same(kHalf, hex("3c00"), hex("3c00")));
}

// The base model ----------------------------------------------------------------------------------

TEST(BaseModel, GivesKnownResults) {
  using enum RoundingMode;
  for (const bool symbolic : {false, true}) {
    EXPECT_EQ(base::add(rne, kSingle, hex("3f800000"), hex("3f800000"), symbolic), hex("40000000"));
    EXPECT_EQ(base::mul(rne, kSingle, 1, 1, symbolic), 0);
    EXPECT_EQ(base::mul(rtz, kSingle, hex("7f7fffff"), hex("40000000"), symbolic), hex("7f7fffff"));
    EXPECT_EQ(base::div(rne, kSingle, hex("3f800000"), 0, symbolic), hex("7f800000"));
    EXPECT_EQ(base::div(rne, kSingle, 0, 0, symbolic), hex("ff800001"));
    EXPECT_EQ(base::cast(rne, kDouble, kSingle, hex("3ff8000000000000"), symbolic),
              hex("3fc00000"));
    EXPECT_EQ(base::from_sbv(rne, 1, kSingle, 1, symbolic), hex("bf800000"));
    EXPECT_EQ(base::from_ubv(rne, 1, kSingle, 1, symbolic), hex("3f800000"));
    EXPECT_EQ(base::from_sbv(rne, 8, kSingle, hex("80"), symbolic), hex("c3000000"));
  }
}

TEST(BaseModel, RefusesTiesToAway) {
  EXPECT_THROW(base::add(RoundingMode::rna, kHalf, 0, 0), std::invalid_argument);
}

TEST(BaseModel, RefusesPatternsWiderThanTheirOperand) {
  EXPECT_THROW(base::neg(kHalf, hex("10000")), WidthError);
  EXPECT_THROW(base::from_ubv(RoundingMode::rne, 3, kHalf, 8), WidthError);
}

/// Folded and symbolic values are one, and differ from IEEE 754 exactly in the departures.
void expect_departures_are_exact(Format f, const Bits& x, const Bits& y) {
  for (const BinaryOperation& op : kBinary) {
    for (const RoundingMode rm : kBaseModes) {
      const Bits folded = op.model(rm, f, x, y, false);
      const Bits exact = op.ieee(rm, f, x, y);
      ASSERT_EQ(op.departures(rm, f, x, y).any(), folded != exact)
          << line(op.name, rm, {f}, {x, y, folded, exact});
      if (!op.supports_symbolic(f)) continue;
      ASSERT_TRUE(folded == op.model(rm, f, x, y, true)) << line(op.name, rm, {f}, {x, y});
    }
  }
}

void expect_cast_departures_are_exact(Format from, Format to, const Bits& x) {
  for (const RoundingMode rm : kBaseModes) {
    const Bits folded = base::cast(rm, from, to, x, false);
    const Bits exact = ieee::cast(rm, from, to, x);
    ASSERT_EQ(departures::cast(rm, from, to, x).any(), folded != exact)
        << line("cast", rm, {from, to}, {x, folded, exact});
    ASSERT_TRUE(folded == base::cast(rm, from, to, x, true)) << line("cast", rm, {from, to}, {x});
  }
}

void expect_integer_departures_are_exact(unsigned w, Format f, const Bits& v) {
  for (const IntegerOperation& op : kFromInteger) {
    for (const RoundingMode rm : kBaseModes) {
      const Bits folded = op.model(rm, w, f, v, false);
      const Bits exact = op.ieee(rm, w, f, v);
      ASSERT_EQ(op.departures(rm, w, f, v).any(), folded != exact) << line(op.name, rm, w, f, v);
      ASSERT_TRUE(folded == op.model(rm, w, f, v, true)) << line(op.name, rm, w, f, v);
    }
  }
}

class BaseModelOnSmallFormats : public testing::TestWithParam<Format> {};

TEST_P(BaseModelOnSmallFormats, DiffersFromIeeeExactlyInTheDepartures) {
  const Format f = GetParam();
  const auto patterns = all_patterns(f.width());
  for (const Bits& x : first_operands(f.width())) {
    for (const Bits& y : patterns)
      ASSERT_NO_FATAL_FAILURE(expect_departures_are_exact(f, x, y));
  }
}

TEST_P(BaseModelOnSmallFormats, CastsDifferFromIeeeExactlyInTheDepartures) {
  const Format f = GetParam();
  for (const Format to : {Format{2, 2}, Format{3, 3}, Format{3, 4}, Format{4, 3}, Format{5, 2},
                          Format{2, 9}, Format{6, 5}, kHalf, kBfloat, kSingle}) {
    for (const Bits& x : all_patterns(f.width())) {
      ASSERT_NO_FATAL_FAILURE(expect_cast_departures_are_exact(f, to, x));
    }
  }
}

TEST_P(BaseModelOnSmallFormats, IntegersDifferFromIeeeExactlyInTheDepartures) {
  for (unsigned w = 1; w <= 8; ++w) {
    for (const Bits& v : all_patterns(w)) {
      ASSERT_NO_FATAL_FAILURE(expect_integer_departures_are_exact(w, GetParam(), v));
    }
  }
}

TEST_P(BaseModelOnSmallFormats, ClassifiesAndComparesAsIeee) {
  const Format f = GetParam();
  const auto patterns = all_patterns(f.width());
  for (const Bits& x : patterns) {
    EXPECT_EQ(base::is_nan(f, x), ieee::is_nan(f, x));
    EXPECT_EQ(base::is_inf(f, x), ieee::is_inf(f, x));
    EXPECT_EQ(base::is_zero(f, x), ieee::is_zero(f, x));
    EXPECT_EQ(base::neg(f, x) != ieee::neg(f, x), departures::neg(f, x).any());
    for (const Bits& y : patterns) {
      EXPECT_EQ(base::eq(f, x, y), ieee::eq(f, x, y)) << x << ' ' << y;
      EXPECT_EQ(base::lt(f, x, y), ieee::lt(f, x, y)) << x << ' ' << y;
      EXPECT_EQ(base::le(f, x, y), ieee::le(f, x, y)) << x << ' ' << y;
      EXPECT_EQ(base::same(f, x, y) != ieee::same(f, x, y), departures::same(f, x, y).any());
    }
  }
}

TEST_P(BaseModelOnSmallFormats, ZeroSumsConflictWhereTheFirstOperandHasTheOtherSign) {
  const Format f = GetParam();
  const auto patterns = all_patterns(f.width());
  for (const RoundingMode rm : kBaseModes) {
    for (const Bits& x : first_operands(f.width())) {
      for (const Bits& y : patterns) {
        const bool other_sign = ieee::is_negative(f, x) != (rm == RoundingMode::rtn);
        const bool zero_sum = ieee::is_zero(f, ieee::add(rm, f, x, y));
        const bool zero_difference = ieee::is_zero(f, ieee::sub(rm, f, x, y));
        ASSERT_EQ(base::add_zero_conflict(rm, f, x, y), zero_sum && other_sign);
        ASSERT_EQ(base::sub_zero_conflict(rm, f, x, y), zero_difference && other_sign);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, BaseModelOnSmallFormats,
                         testing::Values(Format{3, 3}, Format{3, 4}, Format{4, 3}, Format{4, 2},
                                         Format{2, 4}),
                         format_name);

class BaseModelOnLargeFormats : public testing::TestWithParam<Format> {};

TEST_P(BaseModelOnLargeFormats, DiffersFromIeeeExactlyInTheDepartures) {
  const Format f = GetParam();
  RandomOperands random(f.width());
  const unsigned count = (f == kQuad ? 1500 : 8000) / kShare;
  for (unsigned i = 0; i < count; ++i) {
    const Bits x = random.float_pattern(f);
    ASSERT_NO_FATAL_FAILURE(expect_departures_are_exact(f, x, random.partner(f, x)));
  }
}

TEST_P(BaseModelOnLargeFormats, ConversionsDifferFromIeeeExactlyInTheDepartures) {
  const Format f = GetParam();
  RandomOperands random(f.width());
  for (unsigned i = 0; i < 1500 / kShare; ++i) {
    for (const Format to : {kHalf, kBfloat, kSingle, kDouble, kQuad, Format{2, 9}, Format{3, 60}}) {
      ASSERT_NO_FATAL_FAILURE(expect_cast_departures_are_exact(f, to, random.source(f, to)));
    }
    const unsigned w = 1 + random.below(160);
    ASSERT_NO_FATAL_FAILURE(expect_integer_departures_are_exact(w, f, random.bits(w)));
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, BaseModelOnLargeFormats,
                         testing::Values(kHalf, kBfloat, kSingle, kDouble, kQuad, Format{2, 9},
                                         Format{2, 40}, Format{3, 20}, Format{9, 3}),
                         format_name);

/// Whether an evaluation trips over its widths.
template <class Evaluate>
bool has_widths(Evaluate evaluate) {
  try {
    evaluate();
    return true;
  } catch (const WidthError&) {
    return false;
  }
}

TEST(BaseModel, HasWellFormedWidthsExactlyForTheSupportedFormats) {
  constexpr auto kMode = RoundingMode::rne;
  for (unsigned e = 2; e <= 8; ++e) {
    for (unsigned m = 1; m <= 10; ++m) {
      const Format f{e, m};
      SCOPED_TRACE(format_name({f, 0}));
      EXPECT_EQ(has_widths([&] { base::neg(f, 1); }), base::supports_unrounded(f));
      EXPECT_EQ(has_widths([&] { base::le(f, 1, 2); }), base::supports_unrounded(f));
      for (const bool symbolic : {false, true}) {
        EXPECT_EQ(has_widths([&] { base::add(kMode, f, 1, 2, symbolic); }),
                  base::supports_arithmetic(f));
        EXPECT_EQ(has_widths([&] { base::mul(kMode, f, 1, 2, symbolic); }),
                  base::supports_arithmetic(f));
        EXPECT_EQ(has_widths([&] { base::div(kMode, f, 1, 2, symbolic); }),
                  base::supports_division(f, symbolic));
        for (const Format to : {Format{2, 1}, Format{2, 2}, Format{4, 1}, Format{6, 2}, kHalf}) {
          EXPECT_EQ(has_widths([&] { base::cast(kMode, f, to, 1, symbolic); }),
                    base::supports_cast(f, to));
        }
        for (unsigned w = 1; w <= 20; ++w) {
          EXPECT_EQ(has_widths([&] { base::from_sbv(kMode, w, f, 1, symbolic); }),
                    base::supports_integer(w, f));
          EXPECT_EQ(has_widths([&] { base::from_ubv(kMode, w, f, 1, symbolic); }),
                    base::supports_integer(w, f));
        }
      }
    }
  }
}

// One reader's example of each departure ----------------------------------------------------------

TEST(Departures, DenormalisationLosesStickyBits) {
  constexpr auto kMode = RoundingMode::rne;
  // 2^-128 * (1 + 2^-22 + 2^-46): the last bit tells this product from a tie.
  const Bits x = hex("1f800001");
  EXPECT_TRUE(departures::mul(kMode, kSingle, x, x).lost_sticky);
  EXPECT_EQ(base::mul(kMode, kSingle, x, x), hex("00200000"));
  EXPECT_EQ(ieee::mul(kMode, kSingle, x, x), hex("00200001"));
}

TEST(Departures, ASubnormalThatRoundsUpToNormalIsPackedAsZero) {
  constexpr auto kUp = RoundingMode::rtp;
  const Bits x = hex("00ffffff");
  const Bits half = hex("3f000000");
  EXPECT_TRUE(departures::mul(kUp, kSingle, x, half).rounds_up_to_normal);
  EXPECT_EQ(base::mul(kUp, kSingle, x, half), 0);
  EXPECT_EQ(ieee::mul(kUp, kSingle, x, half), hex("00800000"));
}

TEST(Departures, AZeroSumTakesItsSignFromTheModeAlone) {
  const Bits minus_zero = hex("80000000");
  constexpr auto kMode = RoundingMode::rne;
  EXPECT_TRUE(departures::add(kMode, kSingle, minus_zero, minus_zero).zero_sum);
  EXPECT_EQ(base::add(kMode, kSingle, minus_zero, minus_zero), 0);
  EXPECT_TRUE(base::add_zero_conflict(kMode, kSingle, minus_zero, minus_zero));
}

TEST(Departures, AWidenedSubnormalKeepsItsFractionAsItIs) {
  constexpr auto kMode = RoundingMode::rne;
  EXPECT_TRUE(departures::cast(kMode, kSingle, kDouble, 1).widened_subnormal);
  EXPECT_EQ(base::cast(kMode, kSingle, kDouble, 1), hex("20000000"));
  EXPECT_EQ(ieee::cast(kMode, kSingle, kDouble, 1), hex("36a0000000000000"));
  EXPECT_FALSE(departures::cast(kMode, kSingle, {8, 30}, 1).any());
}

TEST(Departures, ANarrowSignificandOverflowsToInfinityInEveryMode) {
  constexpr auto kDown = RoundingMode::rtz;
  const Bits two_to_16 = hex("4780");
  EXPECT_TRUE(departures::cast(kDown, kBfloat, kHalf, two_to_16).narrow_significand);
  EXPECT_EQ(base::cast(kDown, kBfloat, kHalf, two_to_16), hex("7c00"));
  EXPECT_EQ(ieee::cast(kDown, kBfloat, kHalf, two_to_16), hex("7bff"));
}

TEST(Departures, TheExponentWrapsInNarrowingCastsOfInterchangeFormats) {
  constexpr auto kMode = RoundingMode::rne;
  // From 2^899 on, the distance from single precision's smallest exponent needs twelve bits.
  EXPECT_FALSE(departures::cast(kMode, kDouble, kSingle, hex("7810000000000000")).any());
  EXPECT_TRUE(departures::cast(kMode, kDouble, kSingle, hex("7820000000000000")).wrapped_exponent);
  EXPECT_EQ(base::cast(kMode, kDouble, kSingle, hex("7fefffffffffffff")), 0);
  EXPECT_TRUE(departures::cast(kMode, kSingle, kHalf, 1).wrapped_exponent);
  EXPECT_EQ(base::cast(kMode, kSingle, kHalf, 1), hex("7c00"));
}

TEST(Departures, TheExponentWrapsWhereManyIntegerBitsMeetFewExponentBits) {
  constexpr auto kMode = RoundingMode::rne;
  EXPECT_FALSE(departures::from_ubv(kMode, 32, kHalf, hex("7ffff")).any());
  EXPECT_TRUE(departures::from_ubv(kMode, 32, kHalf, hex("80000")).wrapped_exponent);
  EXPECT_EQ(base::from_ubv(kMode, 32, kHalf, hex("ffffffff")), 0);
}

TEST(Departures, TheExponentOfAProductWrapsInFormatsOfLongSignificands) {
  constexpr auto kMode = RoundingMode::rne;
  const Format f{2, 23};
  EXPECT_TRUE(departures::mul(kMode, f, 1, 1).wrapped_exponent);
  EXPECT_EQ(base::mul(kMode, f, 1, 1), power(23) * 3);
  EXPECT_EQ(ieee::mul(kMode, f, 1, 1), 0);
}

TEST(Departures, ANaNKeepsItsPayloadUnderNegation) {
  EXPECT_TRUE(departures::neg(kSingle, hex("7fc00000")).nan_payload);
  EXPECT_EQ(base::neg(kSingle, hex("7fc00000")), hex("ffc00000"));
  EXPECT_FALSE(departures::neg(kSingle, hex("ff800001")).any());
}

}  // namespace
}  // namespace vorn::oracle
