// The oracles' operations that the base circuits lack: square root, fused multiplication and
// addition, remainder, rounding to an integer, conversion to one, minimum and maximum, and the
// classes of SMT-LIB.
//
// The integer oracle is compared with MPFR, with the machine where it has the operation, and with
// results worked out by hand. Small formats are tried on every operand, large ones on random
// operands near cancellation, ties, and the limits of formats and integers.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/oracle/ieee_oracle.h"
#include "tests/oracle/mpfr_oracle.h"
#include "tests/oracle/random_operands.h"
#include "tests/oracle/test_support.h"

namespace vorn::oracle {
namespace {

constexpr RoundingMode kNoMode = RoundingMode::rne;

std::string shown(const std::optional<Bits>& v) {
  return v ? v->get_str(16) : "none";
}

struct UnaryOperation {
  const char* name;
  Bits (*ieee)(RoundingMode, Format, const Bits&);
  Bits (*mpfr)(RoundingMode, Format, const Bits&);
};
const std::vector<UnaryOperation> kUnary = {
    {"sqrt", ieee::sqrt, by_mpfr::sqrt},
    {"rti", ieee::rti, by_mpfr::rti},
};

struct ToInteger {
  const char* name;
  std::optional<Bits> (*ieee)(RoundingMode, Format, unsigned, const Bits&);
  std::optional<Bits> (*mpfr)(RoundingMode, Format, unsigned, const Bits&);
};
const std::vector<ToInteger> kToInteger = {
    {"to_sbv", ieee::to_sbv, by_mpfr::to_sbv},
    {"to_ubv", ieee::to_ubv, by_mpfr::to_ubv},
};

struct Choice {
  const char* name;
  std::optional<Bits> (*ieee)(Format, const Bits&, const Bits&);
  std::optional<Bits> (*mpfr)(Format, const Bits&, const Bits&);
};
const std::vector<Choice> kChoices = {
    {"min", ieee::min, by_mpfr::min},
    {"max", ieee::max, by_mpfr::max},
};

struct Predicate {
  const char* name;
  bool (*ieee)(Format, const Bits&);
  bool (*mpfr)(Format, const Bits&);
};
const std::vector<Predicate> kPredicates = {
    {"is_normal", ieee::is_normal, by_mpfr::is_normal},
    {"is_subnormal", ieee::is_subnormal, by_mpfr::is_subnormal},
    {"smt_is_negative", ieee::smt_is_negative, by_mpfr::smt_is_negative},
    {"smt_is_positive", ieee::smt_is_positive, by_mpfr::smt_is_positive},
};

void expect_unary_agrees(Format f, const Bits& x) {
  for (const UnaryOperation& op : kUnary) {
    for (const RoundingMode rm : kAllModes) {
      const Bits ours = op.ieee(rm, f, x);
      const Bits theirs = op.mpfr(rm, f, x);
      ASSERT_TRUE(ours == theirs) << line(op.name, rm, {f}, {x, ours, theirs});
    }
  }
}

void expect_to_integer_agrees(Format f, unsigned w, const Bits& x) {
  for (const ToInteger& op : kToInteger) {
    for (const RoundingMode rm : kAllModes) {
      const auto ours = op.ieee(rm, f, w, x);
      const auto theirs = op.mpfr(rm, f, w, x);
      ASSERT_TRUE(ours == theirs) << line(op.name, rm, w, f, x) << ' ' << shown(ours) << ' '
                                  << shown(theirs);
    }
  }
}

void expect_fma_agrees(Format f, const Bits& x, const Bits& y, const Bits& z) {
  for (const RoundingMode rm : kAllModes) {
    const Bits ours = ieee::fma(rm, f, x, y, z);
    const Bits theirs = by_mpfr::fma(rm, f, x, y, z);
    ASSERT_TRUE(ours == theirs) << line("fma", rm, {f}, {x, y, z, ours, theirs});
  }
}

void expect_modeless_agree(Format f, const Bits& x, const Bits& y) {
  const Bits ours = ieee::rem(f, x, y);
  const Bits theirs = by_mpfr::rem(f, x, y);
  ASSERT_TRUE(ours == theirs) << line("rem", kNoMode, {f}, {x, y, ours, theirs});
  for (const Choice& op : kChoices) {
    const auto our_choice = op.ieee(f, x, y);
    const auto their_choice = op.mpfr(f, x, y);
    ASSERT_TRUE(our_choice == their_choice) << line(op.name, kNoMode, {f}, {x, y}) << ' '
                                            << shown(our_choice) << ' ' << shown(their_choice);
  }
}

void expect_classes_agree(Format f, const Bits& x) {
  ASSERT_TRUE(ieee::abs(f, x) == by_mpfr::abs(f, x)) << line("abs", kNoMode, {f}, {x});
  for (const Predicate& p : kPredicates) {
    ASSERT_EQ(p.ieee(f, x), p.mpfr(f, x)) << line(p.name, kNoMode, {f}, {x});
  }
}

// Every operand of small formats ------------------------------------------------------------------

class IeeeOperationsOnSmallFormats : public testing::TestWithParam<Format> {};

TEST_P(IeeeOperationsOnSmallFormats, EqualMpfrOnEveryOperand) {
  const Format f = GetParam();
  for (const Bits& x : all_patterns(f.width())) {
    ASSERT_NO_FATAL_FAILURE(expect_unary_agrees(f, x));
    ASSERT_NO_FATAL_FAILURE(expect_classes_agree(f, x));
    for (unsigned w = 1; w <= 10; ++w)
      ASSERT_NO_FATAL_FAILURE(expect_to_integer_agrees(f, w, x));
  }
}

TEST_P(IeeeOperationsOnSmallFormats, EqualMpfrOnEveryPair) {
  const Format f = GetParam();
  const auto patterns = all_patterns(f.width());
  for (const Bits& x : first_operands(f.width())) {
    for (const Bits& y : patterns)
      ASSERT_NO_FATAL_FAILURE(expect_modeless_agree(f, x, y));
  }
}

TEST_P(IeeeOperationsOnSmallFormats, PutEveryPatternInOneClassOfOneSign) {
  const Format f = GetParam();
  for (const Bits& x : all_patterns(f.width())) {
    const int classes = ieee::is_nan(f, x) + ieee::is_inf(f, x) + ieee::is_zero(f, x) +
                        ieee::is_subnormal(f, x) + ieee::is_normal(f, x);
    const int signs = ieee::smt_is_negative(f, x) + ieee::smt_is_positive(f, x);
    EXPECT_EQ(classes, 1) << x;
    EXPECT_EQ(signs, ieee::is_nan(f, x) ? 0 : 1) << x;
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, IeeeOperationsOnSmallFormats,
                         testing::Values(Format{2, 1}, Format{2, 2}, Format{3, 2}, Format{2, 3},
                                         Format{4, 1}, Format{3, 4}, Format{2, 5}),
                         format_name);

class FmaOnSmallFormats : public testing::TestWithParam<Format> {};

TEST_P(FmaOnSmallFormats, EqualsMpfrOnEveryTriple) {
  const Format f = GetParam();
  const auto patterns = all_patterns(f.width());
  for (const Bits& x : first_operands(f.width())) {
    for (const Bits& y : patterns) {
      for (const Bits& z : patterns)
        ASSERT_NO_FATAL_FAILURE(expect_fma_agrees(f, x, y, z));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, FmaOnSmallFormats,
                         testing::Values(Format{2, 1}, Format{2, 2}, Format{3, 1}), format_name);

// Random operands of large formats ----------------------------------------------------------------

class IeeeOperationsOnLargeFormats : public testing::TestWithParam<Format> {};

TEST_P(IeeeOperationsOnLargeFormats, EqualMpfrOnRandomOperands) {
  const Format f = GetParam();
  RandomOperands random(f.width());
  for (unsigned i = 0; i < 3000 / kShare; ++i) {
    const unsigned w = 1 + random.below(80);
    const Bits x = random.below(2) == 0 ? random.float_pattern(f) : random.near_integer(f, w);
    ASSERT_NO_FATAL_FAILURE(expect_unary_agrees(f, x));
    ASSERT_NO_FATAL_FAILURE(expect_classes_agree(f, x));
    ASSERT_NO_FATAL_FAILURE(expect_to_integer_agrees(f, w, x));
  }
}

TEST_P(IeeeOperationsOnLargeFormats, EqualMpfrOnRandomPairs) {
  const Format f = GetParam();
  RandomOperands random(f.width());
  for (unsigned i = 0; i < 3000 / kShare; ++i) {
    const Bits x = random.float_pattern(f);
    const Bits y = random.partner(f, x);
    ASSERT_NO_FATAL_FAILURE(expect_modeless_agree(f, x, y));
    ASSERT_NO_FATAL_FAILURE(expect_fma_agrees(f, x, y, random.third(f, x, y)));
  }
}

TEST_P(IeeeOperationsOnLargeFormats, RootsOfSquaresAreExact) {
  const Format f = GetParam();
  RandomOperands random(f.width());
  for (unsigned i = 0; i < 2000 / kShare; ++i) {
    // Half of the significand's bits and of the exponent's range, so that the square is exact.
    const unsigned fraction_bits = (f.m + 1) / 2 - 1;
    const auto range = static_cast<unsigned>((f.bias() - 1) / 2);
    const Bits exponent = Bits{f.bias()} - range + random.below(2 * range + 1);
    const Bits x = exponent * power(f.m) + random.bits(fraction_bits) * power(f.m - fraction_bits);
    const Bits square = ieee::mul(RoundingMode::rtz, f, x, x);
    ASSERT_TRUE(square == ieee::mul(RoundingMode::rtp, f, x, x)) << x;
    for (const RoundingMode rm : kAllModes) {
      ASSERT_TRUE(ieee::sqrt(rm, f, square) == x) << line("sqrt", rm, {f}, {square, x});
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, IeeeOperationsOnLargeFormats,
                         testing::Values(kHalf, kBfloat, kSingle, kDouble, kQuad, Format{2, 40},
                                         Format{12, 3}),
                         format_name);

// The machine -------------------------------------------------------------------------------------

template <class Float, class Word>
void expect_hardware_agrees(Format f) {
  RandomOperands random(f.width());
  const auto number = [](const Bits& x) {
    return std::bit_cast<Float>(static_cast<Word>(x.get_ui()));
  };
  const auto pattern = [f](Float v) {
    return v != v ? ieee::nan(f) : Bits{std::bit_cast<Word>(v)};
  };
  for (unsigned i = 0; i < 30000 / kShare; ++i) {
    const Bits x = random.float_pattern(f);
    const Bits y = random.partner(f, x);
    const Bits z = random.third(f, x, y);
    const Bits t = random.near_integer(f, 1 + random.below(2 * f.m));
    // Volatile operands and results keep the operations between the changes of direction.
    const volatile Float a = number(x);
    const volatile Float b = number(y);
    const volatile Float c = number(z);
    const volatile Float d = number(t);
    // In the widest format, as libraries are known to give zero remainders of doubles a wrong sign.
    // The result fits the operands' format.
    const auto r = static_cast<Float>(std::remainder(static_cast<long double>(a), b));
    ASSERT_TRUE(ieee::rem(f, x, y) == pattern(r)) << line("rem", kNoMode, {f}, {x, y});
    for (const RoundingMode rm : kBaseModes) {
      volatile Float results[3];
      {
        const HardwareRounding rounding(rm);
        results[0] = std::sqrt(a);
        results[1] = std::fma(a, b, c);
        results[2] = std::nearbyint(d);
      }
      ASSERT_TRUE(ieee::sqrt(rm, f, x) == pattern(results[0])) << line("sqrt", rm, {f}, {x});
      ASSERT_TRUE(ieee::fma(rm, f, x, y, z) == pattern(results[1]))
          << line("fma", rm, {f}, {x, y, z});
      ASSERT_TRUE(ieee::rti(rm, f, t) == pattern(results[2])) << line("rti", rm, {f}, {t});
    }
  }
}

TEST(IeeeOperations, EqualHardwareFloat) {
  expect_hardware_agrees<float, std::uint32_t>(kSingle);
}

TEST(IeeeOperations, EqualHardwareDouble) {
  expect_hardware_agrees<double, std::uint64_t>(kDouble);
}

// Known results -----------------------------------------------------------------------------------

const Bits kMinusZero = hex("80000000");
const Bits kOne = hex("3f800000");
const Bits kInf = hex("7f800000");
const Bits kNan = hex("ff800001");

/// The single-precision pattern of an integer.
Bits single(int v) {
  return ieee::from_sbv(RoundingMode::rtz, 32, kSingle, v < 0 ? Bits(power(32) + v) : Bits{v});
}

/// The half-precision pattern of v / 2 for |v| < 2048.
Bits halves(int v) {
  const Bits twice =
      ieee::from_sbv(RoundingMode::rtz, 32, kHalf, v < 0 ? Bits(power(32) + v) : Bits{v});
  return ieee::mul(RoundingMode::rtz, kHalf, twice, hex("3800"));
}

TEST(IeeeOperations, SquareRootHasKnownResults) {
  using enum RoundingMode;
  const Bits two = hex("40000000");
  for (const RoundingMode rm : {rne, rna, rtz, rtn}) {
    EXPECT_EQ(ieee::sqrt(rm, kSingle, two), hex("3fb504f3"));
  }
  EXPECT_EQ(ieee::sqrt(rtp, kSingle, two), hex("3fb504f4"));
  for (const RoundingMode rm : kAllModes) {
    EXPECT_EQ(ieee::sqrt(rm, kSingle, 0), 0);
    EXPECT_EQ(ieee::sqrt(rm, kSingle, kMinusZero), kMinusZero);
    EXPECT_EQ(ieee::sqrt(rm, kSingle, single(-1)), kNan);
    EXPECT_EQ(ieee::sqrt(rm, kSingle, hex("80000001")), kNan);
    EXPECT_EQ(ieee::sqrt(rm, kSingle, kInf), kInf);
    EXPECT_EQ(ieee::sqrt(rm, kSingle, hex("ff800000")), kNan);
    EXPECT_EQ(ieee::sqrt(rm, kSingle, hex("7fc00000")), kNan);
  }
  // The root of 2^-149 is 2^-75 times that of two.
  EXPECT_EQ(ieee::sqrt(rne, kSingle, 1), hex("1a3504f3"));
  // Subnormal roots in units of 2^-10: of 2^-10 it is 32, of 2^-9 between 45.25 and 45.26.
  EXPECT_EQ(ieee::sqrt(rtp, {2, 10}, 1), 32);
  EXPECT_EQ(ieee::sqrt(rna, {2, 10}, 2), 45);
  EXPECT_EQ(ieee::sqrt(rtp, {2, 10}, 2), 46);
}

TEST(IeeeOperations, FmaRoundsOnce) {
  using enum RoundingMode;
  const Bits above_one = hex("3f800001");
  const Bits below_one = hex("3f7ffffe");
  // (1 + 2^-23) * (1 - 2^-23) - 1 = -2^-46.
  EXPECT_EQ(ieee::fma(rne, kSingle, above_one, below_one, single(-1)), hex("a8800000"));
  // The product, 2^-24 - 2^-70, is short of half a unit of 1 + 2^-23 by less than double precision
  // can tell beside it: rounded there or to single first, it makes a tie, which goes up to even.
  const Bits small = hex("33800001");
  const Bits product = ieee::mul(rne, kSingle, small, below_one);
  const auto wide = [](const Bits& x) { return ieee::cast(rne, kSingle, kDouble, x); };
  const Bits wide_sum = ieee::add(
      rne, kDouble, ieee::mul(rne, kDouble, wide(small), wide(below_one)), wide(above_one));
  EXPECT_EQ(ieee::add(rne, kSingle, product, above_one), hex("3f800002"));
  EXPECT_EQ(ieee::cast(rne, kDouble, kSingle, wide_sum), hex("3f800002"));
  EXPECT_EQ(ieee::fma(rne, kSingle, small, below_one, above_one), hex("3f800001"));
  EXPECT_EQ(ieee::fma(rna, kSingle, small, below_one, above_one), hex("3f800001"));
  EXPECT_EQ(ieee::fma(rtp, kSingle, small, below_one, above_one), hex("3f800002"));
  // 2^-24 itself is half a unit of 1: ties to even stay, ties away do not.
  EXPECT_EQ(ieee::fma(rne, kSingle, hex("39800000"), hex("39800000"), kOne), kOne);
  EXPECT_EQ(ieee::fma(rna, kSingle, hex("39800000"), hex("39800000"), kOne), above_one);
  // 2^127 * 2 - 2^127 overflows on the way only.
  for (const RoundingMode rm : kAllModes) {
    EXPECT_EQ(ieee::fma(rm, kSingle, hex("7f000000"), single(2), hex("ff000000")), hex("7f000000"));
  }
}

TEST(IeeeOperations, FmaGivesZerosTheSignOfTheStandard) {
  const Bits minus_one = single(-1);
  for (const RoundingMode rm : kAllModes) {
    const Bits cancelled = rm == RoundingMode::rtn ? kMinusZero : Bits{0};
    EXPECT_EQ(ieee::fma(rm, kSingle, kOne, 0, kMinusZero), cancelled);
    EXPECT_EQ(ieee::fma(rm, kSingle, minus_one, 0, 0), cancelled);
    EXPECT_EQ(ieee::fma(rm, kSingle, minus_one, kOne, kOne), cancelled);
    EXPECT_EQ(ieee::fma(rm, kSingle, minus_one, 0, kMinusZero), kMinusZero);
    EXPECT_EQ(ieee::fma(rm, kSingle, kOne, 0, 0), 0);
    // A product below the range keeps its sign beside a zero of the other one.
    const Bits vanishing = rm == RoundingMode::rtn ? hex("80000001") : kMinusZero;
    EXPECT_EQ(ieee::fma(rm, kSingle, hex("80000001"), 1, 0), vanishing);
  }
}

TEST(IeeeOperations, FmaOfInfinities) {
  for (const RoundingMode rm : kAllModes) {
    EXPECT_EQ(ieee::fma(rm, kSingle, kInf, 0, kOne), kNan);
    EXPECT_EQ(ieee::fma(rm, kSingle, 0, kInf, hex("7fc00000")), kNan);
    EXPECT_EQ(ieee::fma(rm, kSingle, kInf, kOne, hex("ff800000")), kNan);
    EXPECT_EQ(ieee::fma(rm, kSingle, kInf, single(-1), hex("ff800000")), hex("ff800000"));
    EXPECT_EQ(ieee::fma(rm, kSingle, hex("7f7fffff"), hex("7f7fffff"), hex("ff800000")),
              hex("ff800000"));
  }
}

TEST(IeeeOperations, RemainderTakesTheNearestMultiple) {
  const struct {
    int x, y, remainder;
  } kCases[] = {{5, 3, -1}, {4, 3, 1},  {-5, 3, 1}, {5, -3, -1}, {1, 2, 1},   {3, 2, -1},
                {5, 2, 1},  {7, 2, -1}, {-3, 2, 1}, {-1, 2, -1}, {2, 100, 2}, {51, 100, -49}};
  for (const auto& [x, y, remainder] : kCases) {
    EXPECT_EQ(ieee::rem(kSingle, single(x), single(y)), single(remainder)) << x << ' ' << y;
  }
  EXPECT_EQ(ieee::rem(kSingle, single(6), single(-3)), 0);
  EXPECT_EQ(ieee::rem(kSingle, single(-6), single(3)), kMinusZero);
}

TEST(IeeeOperations, RemainderOfSpecials) {
  EXPECT_EQ(ieee::rem(kSingle, kInf, kOne), kNan);
  EXPECT_EQ(ieee::rem(kSingle, kOne, 0), kNan);
  EXPECT_EQ(ieee::rem(kSingle, 0, kMinusZero), kNan);
  EXPECT_EQ(ieee::rem(kSingle, hex("80000001"), kInf), hex("80000001"));
  EXPECT_EQ(ieee::rem(kSingle, kMinusZero, kOne), kMinusZero);
  EXPECT_EQ(ieee::rem(kSingle, kOne, hex("7fc00000")), kNan);
}

TEST(IeeeOperations, RemainderOfOperandsFarApart) {
  // Modulo 3, an odd power of two is 2: the largest double, (2^53 - 1) * 2^971, is 1 * 2, and the
  // largest quadruple, (2^113 - 1) * 2^16271, as well.
  EXPECT_EQ(ieee::rem(kDouble, hex("7fefffffffffffff"), hex("4008000000000000")),
            hex("bff0000000000000"));
  EXPECT_EQ(ieee::rem(kQuad, hex("7ffeffffffffffffffffffffffffffff"),
                      hex("40008000000000000000000000000000")),
            hex("bfff0000000000000000000000000000"));
  EXPECT_EQ(ieee::rem(kDouble, hex("7fefffffffffffff"), 1), 0);
  // Modulo 5, powers of two have the period four: 7 * 2^(2^23 - 3) is 7 * 2, one less than 15.
  const Format wide{24, 2};
  const Bits largest = (power(24) - 2) * 4 + 3;
  const Bits five = (power(23) + 1) * 4 + 1;
  const Bits minus_one = power(26) + (power(23) - 1) * 4;
  EXPECT_EQ(ieee::rem(wide, largest, five), minus_one);
  EXPECT_EQ(ieee::rem(wide, five, largest), five);
  EXPECT_EQ(by_mpfr::rem(wide, largest, five), minus_one);
}

TEST(IeeeOperations, RoundingToAnIntegerBreaksTiesByMode) {
  // Twice the operand, and the results of the modes in their order: rne, rtz, rtp, rtn, rna.
  const struct {
    int twice;
    int results[5];
  } kCases[] = {{1, {0, 0, 1, 0, 1}},      {3, {2, 1, 2, 1, 2}},       {5, {2, 2, 3, 2, 3}},
                {7, {4, 3, 4, 3, 4}},      {-3, {-2, -1, -1, -2, -2}}, {-5, {-2, -2, -2, -3, -3}},
                {-8, {-4, -4, -4, -4, -4}}};
  for (const auto& [twice, results] : kCases) {
    for (const RoundingMode rm : kAllModes) {
      const int expected = results[static_cast<unsigned>(rm)];
      EXPECT_EQ(ieee::rti(rm, kHalf, halves(twice)), halves(2 * expected))
          << line("rti", rm, {kHalf}, {halves(twice)});
    }
  }
}

TEST(IeeeOperations, RoundingToAnIntegerKeepsSignsAndSpecials) {
  using enum RoundingMode;
  EXPECT_EQ(ieee::rti(rne, kSingle, hex("bf000000")), kMinusZero);
  EXPECT_EQ(ieee::rti(rtp, kSingle, hex("80000001")), kMinusZero);
  EXPECT_EQ(ieee::rti(rtn, kSingle, hex("80000001")), single(-1));
  EXPECT_EQ(ieee::rti(rtp, kSingle, 1), kOne);
  for (const RoundingMode rm : kAllModes) {
    EXPECT_EQ(ieee::rti(rm, kSingle, kMinusZero), kMinusZero);
    EXPECT_EQ(ieee::rti(rm, kSingle, kInf), kInf);
    EXPECT_EQ(ieee::rti(rm, kSingle, hex("7fc00000")), kNan);
    EXPECT_EQ(ieee::rti(rm, kSingle, hex("7f7fffff")), hex("7f7fffff"));
  }
}

TEST(IeeeOperations, RoundingToAnIntegerOverflowsFormatsOfLongSignificands) {
  using enum RoundingMode;
  // The largest finite number is 4 - 2^-4; 4 is no number of the format, 3 is.
  const Format f{2, 5};
  const Bits largest = hex("5f");
  const Bits minus = hex("80");
  for (const RoundingMode rm : {rne, rna, rtp}) {
    EXPECT_EQ(ieee::rti(rm, f, largest), hex("60"));
  }
  for (const RoundingMode rm : {rne, rna, rtn}) {
    EXPECT_EQ(ieee::rti(rm, f, largest + minus), hex("e0"));
  }
  for (const RoundingMode rm : {rtz, rtn}) {
    EXPECT_EQ(ieee::rti(rm, f, largest), hex("50"));
  }
  EXPECT_EQ(ieee::rti(rtp, f, largest + minus), hex("d0"));
}

TEST(IeeeOperations, ConversionToIntegersHonoursTheRange) {
  using enum RoundingMode;
  const auto to_sbv = [](RoundingMode rm, int twice) {
    return ieee::to_sbv(rm, kHalf, 8, halves(twice));
  };
  const auto to_ubv = [](RoundingMode rm, int twice) {
    return ieee::to_ubv(rm, kHalf, 8, halves(twice));
  };
  EXPECT_EQ(to_sbv(rne, -257), hex("80"));
  EXPECT_EQ(to_sbv(rtz, -257), hex("80"));
  EXPECT_EQ(to_sbv(rtn, -257), std::nullopt);
  EXPECT_EQ(to_sbv(rna, -257), std::nullopt);
  EXPECT_EQ(to_sbv(rne, 255), std::nullopt);
  EXPECT_EQ(to_sbv(rtz, 255), hex("7f"));
  EXPECT_EQ(to_sbv(rne, -3), hex("fe"));
  EXPECT_EQ(to_ubv(rtz, 511), hex("ff"));
  EXPECT_EQ(to_ubv(rne, 511), std::nullopt);
  EXPECT_EQ(to_ubv(rne, -1), Bits{0});
  EXPECT_EQ(to_ubv(rna, -1), std::nullopt);
  EXPECT_EQ(to_ubv(rne, -2), std::nullopt);
  EXPECT_EQ(ieee::to_sbv(rne, kHalf, 1, halves(-2)), Bits{1});
  EXPECT_EQ(ieee::to_sbv(rne, kHalf, 1, halves(2)), std::nullopt);
  EXPECT_EQ(ieee::to_ubv(rne, kHalf, 1, halves(2)), Bits{1});
  // The smallest numbers of 24 bits' exponents are millions of bits away from an integer.
  EXPECT_EQ(ieee::to_ubv(rtp, {24, 3}, 4, 1), Bits{1});
  EXPECT_EQ(ieee::to_ubv(rtn, {24, 3}, 4, 1 + power(27)), std::nullopt);
  for (const char* special : {"7c00", "fc00", "7e00"}) {
    EXPECT_EQ(ieee::to_sbv(rtz, kHalf, 64, hex(special)), std::nullopt);
    EXPECT_EQ(ieee::to_ubv(rtz, kHalf, 64, hex(special)), std::nullopt);
  }
}

TEST(IeeeOperations, MinimumAndMaximumPreferNumbersAndLeaveZerosOpen) {
  const Bits other_nan = hex("7fc00000");
  EXPECT_EQ(ieee::min(kSingle, kOne, other_nan), kOne);
  EXPECT_EQ(ieee::max(kSingle, other_nan, kOne), kOne);
  EXPECT_EQ(ieee::min(kSingle, other_nan, other_nan), kNan);
  EXPECT_EQ(ieee::min(kSingle, 0, kMinusZero), std::nullopt);
  EXPECT_EQ(ieee::max(kSingle, kMinusZero, 0), std::nullopt);
  EXPECT_EQ(ieee::max(kSingle, kMinusZero, kMinusZero), kMinusZero);
  EXPECT_EQ(ieee::min(kSingle, single(-2), kInf), single(-2));
  EXPECT_EQ(ieee::max(kSingle, single(-2), single(-3)), single(-2));
}

TEST(IeeeOperations, ClassesAreThoseOfTheTheory) {
  for (const char* nan : {"7fc00000", "ff800001", "ffffffff"}) {
    EXPECT_FALSE(ieee::smt_is_negative(kSingle, hex(nan)));
    EXPECT_FALSE(ieee::smt_is_positive(kSingle, hex(nan)));
    EXPECT_EQ(ieee::abs(kSingle, hex(nan)), kNan);
  }
  EXPECT_TRUE(ieee::smt_is_negative(kSingle, kMinusZero));
  EXPECT_TRUE(ieee::smt_is_positive(kSingle, 0));
  EXPECT_EQ(ieee::abs(kSingle, kMinusZero), 0);
  EXPECT_EQ(ieee::abs(kSingle, hex("ff800000")), kInf);
  EXPECT_TRUE(ieee::is_subnormal(kSingle, hex("807fffff")));
  EXPECT_FALSE(ieee::is_normal(kSingle, hex("807fffff")));
  EXPECT_TRUE(ieee::is_normal(kSingle, hex("00800000")));
  EXPECT_FALSE(ieee::is_normal(kSingle, 0) || ieee::is_normal(kSingle, kInf));
}

}  // namespace
}  // namespace vorn::oracle
