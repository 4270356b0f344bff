// The reference operations beyond the basic four against an oracle with code of its own: every
// operand of small formats, boundary and random operands of large ones.
#include <gtest/gtest.h>

#include "tests/oracle/ieee_oracle.h"
#include "tests/oracle/random_operands.h"
#include "vorn/terms/ieee_arithmetic.h"

namespace vorn {
namespace {

using oracle::Bits;
using oracle::RoundingMode;
namespace ieee = oracle::ieee;

struct Case {
  IEEEFloat::format f;
  oracle::Format p{static_cast<unsigned>(f.e), static_cast<unsigned>(f.m)};

  IEEEFloat value(const Bits& x) const { return IEEEFloat::from_bits(f, QNumber::from_mpz(x)); }
};

IEEEFloat::rounding_mode mode(RoundingMode rm) {
  return static_cast<IEEEFloat::rounding_mode>(rm);
}

Bits bits(const IEEEFloat& x) {
  return x.get_bits().get_numerator();
}

std::optional<Bits> bits(const std::optional<QNumber>& x) {
  if (!x) return std::nullopt;
  return x->get_numerator();
}

void check_unary(const Case& c, const Bits& x) {
  const IEEEFloat a = c.value(x);
  for (const RoundingMode rm : oracle::kAllModes) {
    ASSERT_EQ(bits(ieee_sqrt(mode(rm), a)), ieee::sqrt(rm, c.p, x)) << x;
    ASSERT_EQ(bits(ieee_round_to_integral(mode(rm), a)), ieee::rti(rm, c.p, x)) << x;
    for (const unsigned w : {1U, 2U, 5U, 8U, 32U}) {
      ASSERT_EQ(bits(ieee_to_integer(mode(rm), a, w, true)), ieee::to_sbv(rm, c.p, w, x)) << x;
      ASSERT_EQ(bits(ieee_to_integer(mode(rm), a, w, false)), ieee::to_ubv(rm, c.p, w, x)) << x;
    }
  }
  ASSERT_EQ(bits(ieee_abs(a)), ieee::abs(c.p, x)) << x;
  ASSERT_EQ(a.is_normal(), ieee::is_normal(c.p, x)) << x;
  ASSERT_EQ(a.is_subnormal(), ieee::is_subnormal(c.p, x)) << x;
}

void check_binary(const Case& c, const Bits& x, const Bits& y) {
  const IEEEFloat a = c.value(x);
  const IEEEFloat b = c.value(y);
  ASSERT_EQ(bits(ieee_rem(a, b)), ieee::rem(c.p, x, y)) << x << " " << y;
  for (const bool negative_zero : {false, true}) {
    const Bits zero = negative_zero ? Bits(Bits(1) << (c.f.e + c.f.m)) : Bits(0);
    ASSERT_EQ(bits(ieee_min(a, b, negative_zero)), ieee::min(c.p, x, y).value_or(zero)) << x << y;
    ASSERT_EQ(bits(ieee_max(a, b, negative_zero)), ieee::max(c.p, x, y).value_or(zero)) << x << y;
  }
}

void check_fma(const Case& c, const Bits& x, const Bits& y, const Bits& z) {
  for (const RoundingMode rm : oracle::kAllModes) {
    ASSERT_EQ(bits(ieee_fma(mode(rm), c.value(x), c.value(y), c.value(z))),
              ieee::fma(rm, c.p, x, y, z))
        << x << " " << y << " " << z;
  }
}

/// Patterns with the one NaN that operands have.
std::vector<Bits> patterns(const Case& c) {
  std::vector<Bits> result;
  for (unsigned long i = 0; i < 1UL << c.f.width(); ++i) {
    if (!ieee::is_nan(c.p, Bits(i)) || Bits(i) == ieee::nan(c.p)) result.emplace_back(i);
  }
  return result;
}

TEST(IeeeFunctions, AreCorrectOnEveryOperandOfSmallFormats) {
  for (const IEEEFloat::format f : {IEEEFloat::format{2, 1}, {2, 2}, {3, 2}, {2, 4}, {4, 1}}) {
    const Case c{f};
    for (const Bits& x : patterns(c)) {
      check_unary(c, x);
      for (const Bits& y : patterns(c))
        check_binary(c, x, y);
    }
  }
}

TEST(IeeeFunctions, FmaIsCorrectOnEveryTripleOfASmallFormat) {
  const Case c{{2, 1}};
  for (const Bits& x : patterns(c)) {
    for (const Bits& y : patterns(c)) {
      for (const Bits& z : patterns(c))
        check_fma(c, x, y, z);
    }
  }
}

TEST(IeeeFunctions, AreCorrectOnBoundaryAndRandomOperandsOfLargeFormats) {
  for (const IEEEFloat::format f : {IEEEFloat::format{5, 10}, {8, 23}, {11, 52}, {15, 112}}) {
    const Case c{f};
    oracle::RandomOperands random(f.width());
    const auto operand = [&](Bits x) { return ieee::is_nan(c.p, x) ? ieee::nan(c.p) : x; };
    for (int i = 0; i < 2000; ++i) {
      const Bits x = operand(random.float_pattern(c.p));
      const Bits y = operand(random.partner(c.p, x));
      check_unary(c, x);
      check_unary(c, operand(random.near_integer(c.p, 32)));
      check_binary(c, x, y);
      check_binary(c, x, operand(random.float_pattern(c.p)));
      check_fma(c, x, y, operand(random.third(c.p, x, y)));
    }
  }
}

TEST(IeeeFunctions, TakeExponentsOfAnyWidth) {
  // 2^(2^60) and 3 * 2^-(2^60): only powers modulo the divisor can be formed.
  const IEEEFloat::format f{62, 3};
  const mpz_class big = mpz_class(1) << 60;
  IEEEFloat x(f, IEEEFloat::rounding_mode::nearest_even);
  IEEEFloat y = x;
  x.self_round(false, 1, big, false);
  y.self_round(false, 3, -big, false);
  // 2^n is 1 modulo 3 for even n; the nearest multiple of 3 is one below.
  IEEEFloat expected = x;
  expected.self_round(false, 1, -big, false);
  EXPECT_EQ(ieee_rem(x, y).get_bits(), expected.get_bits());
  EXPECT_EQ(ieee_to_integer(IEEEFloat::rounding_mode::plus_inf, y, 4, false), QNumber(1));
  EXPECT_EQ(ieee_to_integer(IEEEFloat::rounding_mode::plus_inf, x, 4, false), std::nullopt);
  IEEEFloat root = x;
  root.self_round(false, 1, big / 2, false);
  EXPECT_EQ(ieee_sqrt(IEEEFloat::rounding_mode::nearest_even, x).get_bits(), root.get_bits());
}

}  // namespace
}  // namespace vorn
