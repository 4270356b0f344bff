// Quotients and remainders of every pair of small operands, zero divisors included.
#include <gtest/gtest.h>

#include <string>

#include "tests/bv/circuit_fixture.h"

namespace vorn::bv {
namespace {

// As in the SMT-LIB theory FixedSizeBitVectors.
Word quotient(Word a, Word b, std::size_t width) {
  return b == 0 ? mask(width) : a / b;
}
Word remainder(Word a, Word b) {
  return b == 0 ? a : a % b;
}
std::int64_t signed_quotient(std::int64_t a, std::int64_t b) {
  if (b == 0) return a < 0 ? 1 : -1;
  return a / b;
}
std::int64_t signed_remainder(std::int64_t a, std::int64_t b) {
  return b == 0 ? a : a % b;
}
std::int64_t signed_modulus(std::int64_t a, std::int64_t b) {
  const std::int64_t r = signed_remainder(a, b);
  return r != 0 && b != 0 && (r < 0) != (b < 0) ? r + b : r;
}

TEST(Division, OfEveryPairOfOperandsIsThatOfNumbers) {
  for (std::size_t w = 1; w <= 6; ++w) {
    CircuitTester tester;
    const Bits a = tester.make_inputs(w);
    const Bits b = tester.make_inputs(w);
    const Circuits::Division& division = tester.circuits.divide(a, b);
    tester.expect_outputs(
        division.quotient, [&](Word v) { return quotient(v & mask(w), v >> w, w); },
        "quotient, " + width_text(w));
    tester.expect_outputs(
        division.remainder, [&](Word v) { return remainder(v & mask(w), v >> w); },
        "remainder, " + width_text(w));
  }
}

TEST(Division, OfZeroExtendedOperandsIsThatOfNumbers) {
  constexpr std::size_t kWidth = 7;
  for (std::size_t k = 1; k <= 5; ++k) {
    for (std::size_t l = 1; l <= 5; ++l) {
      CircuitTester tester;
      Bits a = tester.make_inputs(k);
      Bits b = tester.make_inputs(l);
      a.resize(kWidth, kFalse);
      b.resize(kWidth, kFalse);
      const Circuits::Division& division = tester.circuits.divide(a, b);
      const std::string what = std::to_string(k) + " by " + std::to_string(l) + " bits";
      tester.expect_outputs(
          division.quotient, [&](Word v) { return quotient(v & mask(k), v >> k, kWidth); }, what);
      tester.expect_outputs(
          division.remainder, [&](Word v) { return remainder(v & mask(k), v >> k); }, what);
    }
  }
}

TEST(Division, WithAConstantIsThatOfTheNumber) {
  constexpr std::size_t kWidth = 4;
  for (Word number = 0; number <= mask(kWidth); ++number) {
    CircuitTester tester;
    const Bits a = tester.make_inputs(kWidth);
    const Bits b = constant(number, kWidth);
    const std::string what = "with " + std::to_string(number);
    tester.expect_outputs(
        tester.circuits.divide(a, b).quotient, [&](Word v) { return quotient(v, number, kWidth); },
        what);
    tester.expect_outputs(
        tester.circuits.divide(a, b).remainder, [&](Word v) { return remainder(v, number); }, what);
    tester.expect_outputs(
        tester.circuits.divide(b, a).quotient, [&](Word v) { return quotient(number, v, kWidth); },
        what);
    tester.expect_outputs(
        tester.circuits.divide(b, a).remainder, [&](Word v) { return remainder(number, v); }, what);
  }
}

TEST(Division, ByTheConstantsZeroAndOneTakesNoGate) {
  CircuitTester tester;
  const Bits a = tester.make_inputs(5);
  const Circuits::Division& by_zero = tester.circuits.divide(a, constant(0, 5));
  EXPECT_EQ(by_zero.quotient, constant(mask(5), 5));
  EXPECT_EQ(by_zero.remainder, a);
  const Circuits::Division& by_one = tester.circuits.divide(a, constant(1, 5));
  EXPECT_EQ(by_one.quotient, a);
  EXPECT_EQ(by_one.remainder, constant(0, 5));
  EXPECT_EQ(tester.graph.get_and_count(), 0U);
}

TEST(Division, OfConstantsTakesNoGate) {
  CircuitTester tester;
  for (Word a = 0; a < 8; ++a) {
    for (Word b = 0; b < 8; ++b) {
      const Circuits::Division& division = tester.circuits.divide(constant(a, 3), constant(b, 3));
      EXPECT_EQ(division.quotient, constant(quotient(a, b, 3), 3));
      EXPECT_EQ(division.remainder, constant(remainder(a, b), 3));
    }
  }
  EXPECT_EQ(tester.graph.get_and_count(), 0U);
}

TEST(Division, IsMadeOnceForAPairOfOperandsAndStaysValid) {
  CircuitTester tester;
  const Bits a = tester.make_inputs(8);
  const Bits b = tester.make_inputs(8);
  const Circuits::Division& first = tester.circuits.divide(a, b);
  const Bits quotient_bits = first.quotient;
  const auto count = tester.graph.get_and_count();
  EXPECT_EQ(&tester.circuits.divide(a, b), &first);
  EXPECT_EQ(tester.graph.get_and_count(), count);
  for (Word number = 1; number < 256; ++number)
    tester.circuits.divide(a, constant(number, 8));
  EXPECT_EQ(&tester.circuits.divide(a, b), &first);
  EXPECT_EQ(first.quotient, quotient_bits);
}

TEST(Division, OfTheOperandsTheOtherWayRoundIsAnother) {
  CircuitTester tester;
  const Bits a = tester.make_inputs(3);
  const Bits b = tester.make_inputs(3);
  EXPECT_NE(tester.circuits.divide(a, b).quotient, tester.circuits.divide(b, a).quotient);
}

TEST(SignedDivision, OfEveryPairOfOperandsIsThatOfNumbers) {
  struct Operation {
    const char* name;
    Bits (Circuits::*build)(BitsView, BitsView);
    std::int64_t (*compute)(std::int64_t, std::int64_t);
  };
  const Operation operations[] = {
      {"quotient, ", &Circuits::signed_quotient, signed_quotient},
      {"remainder, ", &Circuits::signed_remainder, signed_remainder},
      {"modulus, ", &Circuits::signed_modulus, signed_modulus},
  };
  for (const Operation& operation : operations) {
    for (std::size_t w = 1; w <= 6; ++w) {
      CircuitTester tester;
      const Bits a = tester.make_inputs(w);
      const Bits b = tester.make_inputs(w);
      tester.expect_outputs((tester.circuits.*operation.build)(a, b),
                            [&](Word v) {
                              return static_cast<Word>(operation.compute(
                                  read_signed(v & mask(w), w), read_signed(v >> w, w)));
                            },
                            operation.name + width_text(w));
    }
  }
}

TEST(SignedDivision, SharesOneDividerOfMagnitudes) {
  constexpr std::size_t kWidth = 16;
  CircuitTester tester;
  const Bits a = tester.make_inputs(kWidth);
  const Bits b = tester.make_inputs(kWidth);
  tester.circuits.signed_quotient(a, b);
  const auto divider = tester.graph.get_and_count();
  tester.circuits.signed_remainder(a, b);
  tester.circuits.signed_modulus(a, b);
  // A negation, an addition and what selects the divisor: some gates a bit, no row of a divider.
  EXPECT_LT(tester.graph.get_and_count() - divider, 20 * kWidth);
  EXPECT_GT(divider, 5 * 20 * kWidth);
}

}  // namespace
}  // namespace vorn::bv
