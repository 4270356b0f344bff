#include "vorn/reals/multipliers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace vorn::reals {
namespace {

constexpr std::uint64_t kEnough = 10'000'000;

/// By how much the sum of the rows is above its bound where that is the least.
double find_margin(const LinearSystem& system, const std::vector<double>& multipliers) {
  double margin = 0;
  std::vector<double> sum(system.least.size());
  for (std::size_t i = 0; i < system.rows.size(); ++i) {
    EXPECT_GE(multipliers[i], 0);
    margin -= multipliers[i] * system.bounds[i];
    for (std::size_t j = 0; j < sum.size(); ++j)
      sum[j] += multipliers[i] * system.rows[i][j];
  }
  for (std::size_t j = 0; j < sum.size(); ++j)
    margin += std::min(sum[j] * system.least[j], sum[j] * system.greatest[j]);
  return margin;
}

std::optional<std::vector<double>> find(const LinearSystem& system) {
  std::uint64_t work = 0;
  return find_multipliers(system, kEnough, &work);
}

TEST(Multipliers, OfRowsThatContradictEachOther) {
  // x + y <= 1, -x - y <= -2.
  const LinearSystem system = {{{1, 1}, {-1, -1}}, {1, -2}, {-10, -10}, {10, 10}};
  const auto multipliers = find(system);
  ASSERT_TRUE(multipliers);
  EXPECT_GT(find_margin(system, *multipliers), 0);
}

TEST(Multipliers, OfARowThatTheBoxContradicts) {
  const LinearSystem system = {{{1, 1}}, {-3}, {-1, -1}, {1, 1}};
  const auto multipliers = find(system);
  ASSERT_TRUE(multipliers);
  EXPECT_GT(find_margin(system, *multipliers), 0);
}

TEST(Multipliers, OfRowsWithoutUnknowns) {
  EXPECT_TRUE(find({{{}, {}}, {1, -1}, {}, {}}));
  EXPECT_FALSE(find({{{}, {}}, {1, 0}, {}, {}}));
  EXPECT_FALSE(find({}));
}

TEST(Multipliers, AreNoneWhereAPointSatisfiesAllRows) {
  EXPECT_FALSE(find({{{1, 1}, {-1, -1}}, {1, -1}, {-10, -10}, {10, 10}}));
  EXPECT_FALSE(find({{{1, 0}, {0, 1}, {-1, -1}}, {1, 1, -2}, {0, 0}, {1, 1}})) << "a corner";
}

TEST(Multipliers, EndInTime) {
  LinearSystem system;
  std::mt19937_64 random(1);
  system.least.assign(60, -1);
  system.greatest.assign(60, 1);
  for (int i = 0; i < 200; ++i) {
    std::vector<double> row(60);
    for (double& a : row)
      a = static_cast<double>(random() % 2001) / 1000 - 1;
    system.rows.push_back(row);
    system.bounds.push_back(0.01);
  }
  std::uint64_t work = 5;
  EXPECT_FALSE(find_multipliers(system, 10'000, &work));
  EXPECT_LE(work, 50'000U);
}

/// Rows around a random point have a solution; those of which one is moved beyond the others'
/// combination have none, and are found out.
TEST(Multipliers, DecideRandomSystems) {
  std::mt19937_64 random(7);
  const auto draw = [&random] { return static_cast<double>(random() % 2001) / 1000 - 1; };
  for (int round = 0; round < 300; ++round) {
    const std::size_t unknowns = 1 + random() % 6;
    const std::size_t count = 2 + random() % 12;
    LinearSystem system = {
        {}, {}, std::vector<double>(unknowns, -1), std::vector<double>(unknowns, 1)};
    std::vector<double> point;
    for (std::size_t j = 0; j < unknowns; ++j)
      point.push_back(draw());
    for (std::size_t i = 0; i < count; ++i) {
      std::vector<double> row;
      double value = 0;
      for (std::size_t j = 0; j < unknowns; ++j) {
        row.push_back(draw());
        value += row.back() * point[j];
      }
      system.rows.push_back(row);
      system.bounds.push_back(value + static_cast<double>(random() % 3) / 10);
    }
    EXPECT_FALSE(find(system)) << round;
    // The negation of a combination of the rows, and a little more.
    std::vector<double> opposite(unknowns);
    double bound = -0.001;
    for (std::size_t i = 0; i < count; ++i) {
      const auto factor = static_cast<double>(random() % 3);
      bound -= factor * system.bounds[i];
      for (std::size_t j = 0; j < unknowns; ++j)
        opposite[j] -= factor * system.rows[i][j];
    }
    system.rows.push_back(opposite);
    system.bounds.push_back(bound);
    const auto multipliers = find(system);
    ASSERT_TRUE(multipliers) << round;
    EXPECT_GT(find_margin(system, *multipliers), 0) << round;
  }
}

}  // namespace
}  // namespace vorn::reals
