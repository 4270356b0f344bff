// Shifts of every small operand by every distance, with every filling.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/bv/circuit_fixture.h"

namespace vorn::bv {
namespace {

/// Shifts of a number by any distance, the one to the right being arithmetic.
Word shift_left(Word a, Word distance) {
  return distance < 64 ? a << distance : 0;
}
Word shift_right(std::int64_t a, Word distance) {
  return static_cast<Word>(a >> std::min<Word>(distance, 63));
}

// Widths that are powers of two and widths that are not: only the latter have distances that the
// lower bits of the second operand reach and that shift everything out.
constexpr std::size_t kWidths[] = {1, 2, 3, 4, 5, 6, 7};

TEST(Shifting, LeftOfEveryOperandByEveryDistanceIsThatOfNumbers) {
  for (const std::size_t w : kWidths) {
    CircuitTester tester;
    const Bits a = tester.make_inputs(w);
    const Bits b = tester.make_inputs(w);
    tester.expect_outputs(
        tester.circuits.shift_left(a, b), [&](Word v) { return shift_left(v & mask(w), v >> w); },
        width_text(w));
  }
}

TEST(Shifting, RightFillsTheVacatedBits) {
  for (const std::size_t w : kWidths) {
    CircuitTester tester;
    const Bits a = tester.make_inputs(w);
    const Bits b = tester.make_inputs(w);
    const Lit fill = tester.make_input();
    tester.expect_outputs(
        tester.circuits.shift_right(a, b, fill),
        [&](Word v) {
          const Word above = v >> (2 * w) != 0 ? ~mask(w) : 0;
          return shift_right(static_cast<std::int64_t>((v & mask(w)) | above), v >> w & mask(w));
        },
        width_text(w));
  }
}

TEST(Shifting, RightFilledWithTheTopBitIsArithmetic) {
  for (const std::size_t w : kWidths) {
    CircuitTester tester;
    const Bits a = tester.make_inputs(w);
    const Bits b = tester.make_inputs(w);
    tester.expect_outputs(
        tester.circuits.shift_right(a, b, a.back()),
        [&](Word v) { return shift_right(read_signed(v & mask(w), w), v >> w); }, width_text(w));
  }
}

TEST(Shifting, ByAConstantMovesLiteralsAndTakesNoGate) {
  constexpr std::size_t kWidth = 5;
  CircuitTester tester;
  const Bits a = tester.make_inputs(kWidth);
  const Lit fill = tester.make_input();
  for (Word distance = 0; distance <= mask(kWidth); ++distance) {
    Bits left;
    Bits right;
    for (std::size_t i = 0; i < kWidth; ++i) {
      left.push_back(i >= distance ? a[i - distance] : kFalse);
      right.push_back(i + distance < kWidth ? a[i + distance] : fill);
    }
    const Bits b = constant(distance, kWidth);
    EXPECT_EQ(tester.circuits.shift_left(a, b), left) << distance;
    EXPECT_EQ(tester.circuits.shift_right(a, b, fill), right) << distance;
  }
  EXPECT_EQ(tester.graph.get_and_count(), 0U);
}

TEST(Shifting, OfAConstantIsThatOfTheNumber) {
  constexpr std::size_t kWidth = 5;
  for (Word number = 0; number <= mask(kWidth); ++number) {
    CircuitTester tester;
    const Bits b = tester.make_inputs(kWidth);
    const std::string what = "of " + std::to_string(number);
    tester.expect_outputs(
        tester.circuits.shift_left(constant(number, kWidth), b),
        [&](Word v) { return number << v; }, what);
    tester.expect_outputs(
        tester.circuits.shift_right(constant(number, kWidth), b, kFalse),
        [&](Word v) { return number >> v; }, what);
  }
}

TEST(Shifting, OfBitsThatAllEqualTheFillingIsConstant) {
  CircuitTester tester;
  const Bits b = tester.make_inputs(6);
  EXPECT_EQ(tester.circuits.shift_left(constant(0, 6), b), constant(0, 6));
  EXPECT_EQ(tester.circuits.shift_right(constant(0, 6), b, kFalse), constant(0, 6));
  EXPECT_EQ(tester.circuits.shift_right(constant(mask(6), 6), b, kTrue), constant(mask(6), 6));
}

}  // namespace
}  // namespace vorn::bv
