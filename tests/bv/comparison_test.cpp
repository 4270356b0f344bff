// Selection, equality and order on every pair of small operands.
#include <gtest/gtest.h>

#include <string>

#include "tests/bv/circuit_fixture.h"

namespace vorn::bv {
namespace {

TEST(Significant, BitsEndWithTheTopmostThatCanBeSet) {
  Aig graph;
  const Lit x = graph.make_input();
  EXPECT_EQ(count_significant(Bits{}), 0U);
  EXPECT_EQ(count_significant(Bits{kFalse, kFalse}), 0U);
  EXPECT_EQ(count_significant(Bits{kFalse, kTrue, kFalse}), 2U);
  EXPECT_EQ(count_significant(Bits{kFalse, !x, kFalse, kFalse}), 2U);
  EXPECT_EQ(count_significant(Bits{kFalse, kFalse, x}), 3U);
}

TEST(Select, TakesTheFirstOperandWhereTheConditionHolds) {
  for (std::size_t w = 1; w <= 4; ++w) {
    CircuitTester tester;
    const Lit c = tester.make_input();
    const Bits t = tester.make_inputs(w);
    const Bits e = tester.make_inputs(w);
    tester.expect_outputs(
        tester.circuits.select(c, t, e),
        [&](Word v) { return (v & 1U) != 0 ? v >> 1 : v >> (1 + w); }, width_text(w));
  }
}

TEST(Select, ByAConstantIsTheOperandItself) {
  CircuitTester tester;
  const Bits t = tester.make_inputs(3);
  const Bits e = tester.make_inputs(3);
  EXPECT_EQ(tester.circuits.select(kTrue, t, e), t);
  EXPECT_EQ(tester.circuits.select(kFalse, t, e), e);
  EXPECT_EQ(tester.circuits.select(tester.make_input(), t, t), t);
  EXPECT_EQ(tester.graph.get_and_count(), 0U);
}

TEST(Comparison, OfEveryPairOfOperandsIsThatOfNumbers) {
  for (std::size_t w = 1; w <= 5; ++w) {
    CircuitTester tester;
    const Bits a = tester.make_inputs(w);
    const Bits b = tester.make_inputs(w);
    const auto left = [&](Word v) { return v & mask(w); };
    const auto right = [&](Word v) { return v >> w; };
    tester.expect_output(
        tester.circuits.equal(a, b), [&](Word v) { return Word{left(v) == right(v)}; },
        "equal, " + width_text(w));
    tester.expect_output(
        tester.circuits.less(a, b), [&](Word v) { return Word{left(v) < right(v)}; },
        "less, " + width_text(w));
  }
}

TEST(Comparison, WithABorrowTakesEqualOperandsForLess) {
  for (std::size_t w = 1; w <= 5; ++w) {
    CircuitTester tester;
    const Bits a = tester.make_inputs(w);
    const Bits b = tester.make_inputs(w);
    const Lit borrow = tester.make_input();
    const auto expect = [&](Lit output, auto read, const char* name) {
      tester.expect_output(
          output,
          [&](Word v) {
            const auto left = read(v & mask(w));
            const auto right = read(v >> w & mask(w));
            return Word{v >> (2 * w) != 0 ? left <= right : left < right};
          },
          name + width_text(w));
    };
    expect(
        tester.circuits.borrow(a, b, borrow), [](Word x) { return x; }, "unsigned, ");
    expect(
        tester.circuits.signed_borrow(a, b, borrow), [&](Word x) { return read_signed(x, w); },
        "signed, ");
  }
}

TEST(Comparison, WithItselfTakesNoGate) {
  CircuitTester tester;
  const Bits a = tester.make_inputs(6);
  const Lit borrow = tester.make_input();
  EXPECT_EQ(tester.circuits.equal(a, a), kTrue);
  EXPECT_EQ(tester.circuits.less(a, a), kFalse);
  EXPECT_EQ(tester.circuits.borrow(a, a, borrow), borrow);
  EXPECT_EQ(tester.circuits.signed_borrow(a, a, borrow), borrow);
  EXPECT_EQ(tester.graph.get_and_count(), 0U);
}

TEST(Comparison, WithAConstantIsThatOfTheNumber) {
  constexpr std::size_t kWidth = 4;
  for (Word number = 0; number <= mask(kWidth); ++number) {
    CircuitTester tester;
    const Bits a = tester.make_inputs(kWidth);
    const Bits b = constant(number, kWidth);
    const std::string what = "with " + std::to_string(number);
    tester.expect_output(
        tester.circuits.equal(a, b), [&](Word v) { return Word{v == number}; }, what);
    tester.expect_output(
        tester.circuits.less(a, b), [&](Word v) { return Word{v < number}; }, what);
    tester.expect_output(
        tester.circuits.less(b, a), [&](Word v) { return Word{number < v}; }, what);
  }
}

TEST(Comparison, OfConstantsIsDecidedWithoutGates) {
  constexpr std::size_t kWidth = 3;
  CircuitTester tester;
  for (Word a = 0; a <= mask(kWidth); ++a) {
    for (Word b = 0; b <= mask(kWidth); ++b) {
      const Bits x = constant(a, kWidth);
      const Bits y = constant(b, kWidth);
      EXPECT_EQ(tester.circuits.equal(x, y), a == b ? kTrue : kFalse);
      EXPECT_EQ(tester.circuits.less(x, y), a < b ? kTrue : kFalse);
      EXPECT_EQ(tester.circuits.signed_borrow(x, y, kFalse),
                read_signed(a, kWidth) < read_signed(b, kWidth) ? kTrue : kFalse);
    }
  }
  EXPECT_EQ(tester.graph.get_and_count(), 0U);
}

TEST(Comparison, OfNothingIsThatOfEqualNumbers) {
  CircuitTester tester;
  EXPECT_EQ(tester.circuits.equal({}, {}), kTrue);
  EXPECT_EQ(tester.circuits.less({}, {}), kFalse);
  EXPECT_EQ(tester.circuits.borrow({}, {}, kTrue), kTrue);
}

}  // namespace
}  // namespace vorn::bv
