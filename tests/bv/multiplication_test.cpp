// Products and squares of every pair of small operands, and what constant bits save.
#include <gtest/gtest.h>

#include <string>

#include "tests/bv/circuit_fixture.h"

namespace vorn::bv {
namespace {

Bits zero_extended(Bits bits, std::size_t width) {
  bits.resize(width, kFalse);
  return bits;
}

TEST(Multiplication, OfEveryPairOfOperandsIsThatOfNumbers) {
  for (std::size_t w = 1; w <= 6; ++w) {
    CircuitTester tester;
    const Bits a = tester.make_inputs(w);
    const Bits b = tester.make_inputs(w);
    tester.expect_outputs(
        tester.circuits.multiply(a, b), [&](Word v) { return (v & mask(w)) * (v >> w); },
        width_text(w));
  }
}

TEST(Multiplication, OfAnOperandWithItselfIsItsSquare) {
  for (std::size_t w = 1; w <= 10; ++w) {
    CircuitTester tester;
    const Bits a = tester.make_inputs(w);
    tester.expect_outputs(
        tester.circuits.multiply(a, a), [](Word v) { return v * v; }, width_text(w));
  }
}

TEST(Multiplication, OfZeroExtendedFactorsHasAllTheirBits) {
  constexpr std::size_t kWidth = 9;
  for (std::size_t k = 1; k <= 5; ++k) {
    CircuitTester tester;
    const Bits a = zero_extended(tester.make_inputs(k), kWidth);
    const Bits b = zero_extended(tester.make_inputs(4), kWidth);
    const Bits product = tester.circuits.multiply(a, b);
    EXPECT_LE(count_significant(product), k + 4);
    tester.expect_outputs(
        product, [&](Word v) { return (v & mask(k)) * (v >> k); }, width_text(k));
  }
}

TEST(Multiplication, WithAConstantIsThatOfTheNumber) {
  constexpr std::size_t kWidth = 5;
  for (Word number = 0; number <= mask(kWidth); ++number) {
    CircuitTester tester;
    const Bits a = tester.make_inputs(kWidth);
    const std::string what = "by " + std::to_string(number);
    const auto expected = [&](Word v) { return v * number; };
    tester.expect_outputs(tester.circuits.multiply(a, constant(number, kWidth)), expected, what);
    tester.expect_outputs(tester.circuits.multiply(constant(number, kWidth), a), expected, what);
  }
}

TEST(Multiplication, ByAPowerOfTwoTakesNoGate) {
  constexpr std::size_t kWidth = 5;
  CircuitTester tester;
  const Bits a = tester.make_inputs(kWidth);
  for (std::size_t k = 0; k < kWidth; ++k) {
    Bits shifted(k, kFalse);
    shifted.insert(shifted.end(), a.begin(), a.end() - static_cast<std::ptrdiff_t>(k));
    EXPECT_EQ(tester.circuits.multiply(a, constant(Word{1} << k, kWidth)), shifted);
  }
  EXPECT_EQ(tester.circuits.multiply(a, constant(0, kWidth)), constant(0, kWidth));
  EXPECT_EQ(tester.graph.get_and_count(), 0U);
}

TEST(Multiplication, TakesItsRowsFromTheFactorWithFewerBitsInEitherOrder) {
  constexpr std::size_t kWidth = 16;
  CircuitTester tester;
  const Bits wide = tester.make_inputs(kWidth);
  const Bits narrow = zero_extended(tester.make_inputs(3), kWidth);
  const Bits product = tester.circuits.multiply(wide, narrow);
  const auto count = tester.graph.get_and_count();
  EXPECT_EQ(tester.circuits.multiply(narrow, wide), product);
  EXPECT_EQ(tester.graph.get_and_count(), count);
}

TEST(Multiplication, OfTheSameBitsSharesItsGatesInEitherOrderAndAtAnyWidth) {
  CircuitTester tester;
  const Bits a = tester.make_inputs(4);
  const Bits b = tester.make_inputs(4);
  const Bits product = tester.circuits.multiply(a, b);
  const std::size_t gates = tester.graph.get_and_count();
  EXPECT_EQ(tester.circuits.multiply(b, a), product);
  EXPECT_EQ(tester.graph.get_and_count(), gates);
  Bits wide = tester.circuits.multiply(zero_extended(b, 8), zero_extended(a, 8));
  tester.expect_outputs(
      wide, [](Word v) { return (v & mask(4)) * (v >> 4); }, "wide");
  wide.resize(4);
  EXPECT_EQ(wide, product);
}

}  // namespace
}  // namespace vorn::bv
