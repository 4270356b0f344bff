// Sums, differences and negations of every pair of small operands.
#include <gtest/gtest.h>

#include "tests/bv/circuit_fixture.h"

namespace vorn::bv {
namespace {

TEST(Addition, OfEveryPairOfOperandsWithEitherCarryIsThatOfNumbers) {
  for (std::size_t w = 1; w <= 5; ++w) {
    CircuitTester tester;
    const Bits a = tester.make_inputs(w);
    const Bits b = tester.make_inputs(w);
    const Lit carry = tester.make_input();
    tester.expect_outputs(
        tester.circuits.add(a, b, carry),
        [&](Word v) { return (v & mask(w)) + (v >> w & mask(w)) + (v >> (2 * w)); }, width_text(w));
  }
}

TEST(Addition, OfZeroIsTheOperandItself) {
  CircuitTester tester;
  const Bits a = tester.make_inputs(5);
  const Bits zero = constant(0, 5);
  EXPECT_EQ(tester.circuits.add(a, zero, kFalse), a);
  EXPECT_EQ(tester.circuits.add(zero, a, kFalse), a);
  EXPECT_EQ(tester.circuits.add(a, constant(mask(5), 5), kTrue), a);
  EXPECT_EQ(tester.graph.get_and_count(), 0U);
}

TEST(Addition, OfConstantsTakesNoGate) {
  CircuitTester tester;
  for (Word a = 0; a < 8; ++a) {
    for (Word b = 0; b < 8; ++b) {
      EXPECT_EQ(tester.circuits.add(constant(a, 3), constant(b, 3), kFalse), constant(a + b, 3));
      EXPECT_EQ(tester.circuits.subtract(constant(a, 3), constant(b, 3)), constant(a - b, 3));
    }
  }
  EXPECT_EQ(tester.graph.get_and_count(), 0U);
}

TEST(Addition, BuildsNoCarryOutOfTheTopBit) {
  CircuitTester tester;
  const Bits a = tester.make_inputs(1);
  const Bits b = tester.make_inputs(1);
  const Lit carry = tester.make_input();
  tester.circuits.add(a, b, carry);
  const auto count = tester.graph.get_and_count();
  tester.graph.make_xor3(a[0], b[0], carry);
  EXPECT_EQ(tester.graph.get_and_count(), count);
  tester.graph.make_maj(a[0], b[0], carry);
  EXPECT_GT(tester.graph.get_and_count(), count);
}

TEST(Subtraction, OfEveryPairOfOperandsIsThatOfNumbers) {
  for (std::size_t w = 1; w <= 5; ++w) {
    CircuitTester tester;
    const Bits a = tester.make_inputs(w);
    const Bits b = tester.make_inputs(w);
    tester.expect_outputs(
        tester.circuits.subtract(a, b), [&](Word v) { return (v & mask(w)) - (v >> w); },
        width_text(w));
  }
}

TEST(Subtraction, FromItselfIsZeroWithoutGates) {
  CircuitTester tester;
  const Bits a = tester.make_inputs(5);
  EXPECT_EQ(tester.circuits.subtract(a, a), constant(0, 5));
  EXPECT_EQ(tester.circuits.subtract(a, constant(0, 5)), a);
  EXPECT_EQ(tester.graph.get_and_count(), 0U);
}

TEST(Negation, IsDoneWhereTheConditionHolds) {
  for (std::size_t w = 1; w <= 6; ++w) {
    CircuitTester tester;
    const Lit c = tester.make_input();
    const Bits a = tester.make_inputs(w);
    tester.expect_outputs(
        tester.circuits.negate_if(c, a),
        [](Word v) { return (v & 1U) != 0 ? 0 - (v >> 1) : v >> 1; }, width_text(w));
  }
}

TEST(Negation, UnderAFalseConditionIsTheOperandItself) {
  CircuitTester tester;
  const Bits a = tester.make_inputs(5);
  EXPECT_EQ(tester.circuits.negate_if(kFalse, a), a);
}

TEST(Negation, OfConstantsTakesNoGate) {
  CircuitTester tester;
  for (Word a = 0; a < 8; ++a)
    EXPECT_EQ(tester.circuits.negate_if(kTrue, constant(a, 3)), constant(0 - a, 3));
  EXPECT_EQ(tester.graph.get_and_count(), 0U);
}

}  // namespace
}  // namespace vorn::bv
