#include "tests/sweep/circuit.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vorn::sweep {
namespace {

constexpr std::size_t kAllModes[] = {0, 1, 2, 3, 4};

const Operation& find(std::string_view name) {
  for (const Operation& operation : get_operations()) {
    if (operation.name == name) return operation;
  }
  throw std::out_of_range("no such operation");
}

TEST(Transposition, SwapsRowsAndColumnsOfEachWord) {
  std::mt19937_64 random(1);
  Matrix before;
  for (auto& block : before) {
    for (std::uint64_t& word : block.words)
      word = random();
  }
  Matrix after = before;
  transpose(after);
  for (std::size_t row = 0; row < 64; ++row) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      const std::size_t word = lane / 64;
      const bool bit = (after[lane % 64].words[word] >> row & 1U) != 0;
      ASSERT_EQ(bit, before[row].get(lane)) << row << ' ' << lane;
    }
  }
}

TEST(SweptCircuit, FindsNothingWhereCircuitAndReferenceAgree) {
  SweptCircuit circuit(find("e5m2.fma"), kAllModes);
  EXPECT_TRUE(circuit.check_row(0x3c, 8).empty());
}

/// The reference of the product with one bit wrong, for 3c00 * 4242 toward zero alone.
void fill_with_fault(std::uint64_t first, Expected& expected) {
  find("binary16.mul").fill(first, expected);
  constexpr std::uint64_t kWrong = 0x3c004242;
  if (kWrong - first < kLanes) expected[1][kWrong - first] ^= 0x10U;
}

TEST(SweptCircuit, FindsOneWrongBitInOneMode) {
  Operation faulty = find("binary16.mul");
  faulty.fill = fill_with_fault;
  SweptCircuit circuit(faulty, kAllModes);
  EXPECT_EQ(circuit.check_row(0x3c00, 8),
            (std::vector<std::string>{"binary16.mul rtz 3c00 4242: 4242, expected 4252"}));
  EXPECT_TRUE(circuit.check_row(0x3c01, 8).empty());
}

TEST(SweptCircuit, ReportsAsManyAsAreAskedFor) {
  Operation wrong = find("binary16.add");
  wrong.fill = find("binary16.sub").fill;
  SweptCircuit circuit(wrong, kAllModes);
  EXPECT_EQ(circuit.check_row(0x3c00, 3).size(), 3U);
}

/// An open result is the value that it is given: with any other expectation, all of them differ.
TEST(SweptCircuit, SeesTheResultsThatTheTheoryLeavesOpen) {
  Operation other = find("binary32.to_sbv8");
  other.fill = [](std::uint64_t first, Expected& expected) {
    find("binary32.to_sbv8").fill(first, expected);
    for (auto& results : expected)
      results[7] ^= 1U;
  };
  const std::size_t mode[] = {2};
  SweptCircuit circuit(other, mode);
  const std::uint64_t row_of_infinity = 0x7f80;
  EXPECT_EQ(circuit.check_row(row_of_infinity, 1000).size(), kRowSize / kLanes);
}

}  // namespace
}  // namespace vorn::sweep
