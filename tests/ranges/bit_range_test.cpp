// Sets of bit-vectors against lists of the values in them, of every interval and known bits.
#include "vorn/ranges/bit_range.h"

#include <gtest/gtest.h>

#include <bitset>
#include <map>
#include <random>
#include <vector>

#include "vorn/terms/bv_number.h"

namespace vorn::ranges {
namespace {

constexpr int kWidth = 4;
constexpr int kValues = 1 << kWidth;
using Members = std::bitset<kValues>;

Members list(const BitRange& range) {
  Members members;
  for (int i = 0; i < kValues; ++i)
    members[static_cast<std::size_t>(i)] = range.contains(i);
  return members;
}

/// Each set that an interval and known bits make, with its values.
std::vector<std::pair<BitRange, Members>> list_ranges() {
  std::vector<std::pair<BitRange, Members>> ranges;
  for (int ones = 0; ones < kValues; ++ones) {
    for (int possible = 0; possible < kValues; ++possible) {
      for (int least = -1; least <= kValues; ++least) {
        for (int greatest = -1; greatest <= kValues; ++greatest) {
          Members members;
          for (int v = 0; v < kValues; ++v) {
            members[static_cast<std::size_t>(v)] =
                least <= v && v <= greatest && (v & ones) == ones && (v & ~possible) == 0;
          }
          ranges.emplace_back(BitRange::of_bits(kWidth, ones, possible)
                                  .intersect(BitRange::between(kWidth, least, greatest)),
                              members);
        }
      }
    }
  }
  return ranges;
}

TEST(BitRange, IsOneObjectForOneSet) {
  std::map<std::string, BitRange> by_members;
  for (const auto& [range, members] : list_ranges()) {
    ASSERT_EQ(list(range), members) << range.to_string();
    const auto [row, is_new] = by_members.emplace(members.to_string(), range);
    ASSERT_EQ(row->second, range) << row->second.to_string() << " and " << range.to_string();
    ASSERT_EQ(range.is_empty(), members.none());
    ASSERT_EQ(range.is_value(), members.count() == 1);
  }
  EXPECT_GT(by_members.size(), 300U);
}

TEST(BitRange, KnowsTheBitsThatItsValuesShare) {
  for (const auto& [range, members] : list_ranges()) {
    if (members.none()) continue;
    int ones = kValues - 1;
    int possible = 0;
    for (int v = 0; v < kValues; ++v) {
      if (!members[static_cast<std::size_t>(v)]) continue;
      ones &= v;
      possible |= v;
    }
    ASSERT_EQ(range.get_ones(), QNumber(ones)) << range.to_string();
    ASSERT_EQ(range.get_possible(), QNumber(possible)) << range.to_string();
    ASSERT_TRUE(range.contains(range.get_least()));
    ASSERT_TRUE(range.contains(range.get_greatest()));
    int known = 0;
    while (known < kWidth && ((ones ^ possible) >> known & 1) == 0)
      ++known;
    ASSERT_EQ(range.count_low_known(), static_cast<std::uint64_t>(known));
  }
}

TEST(BitRange, IntersectsAndJoins) {
  const auto ranges = list_ranges();
  std::mt19937_64 engine(2);
  for (int i = 0; i < 20000; ++i) {
    const auto& [a, in_a] = ranges[engine() % ranges.size()];
    const auto& [b, in_b] = ranges[engine() % ranges.size()];
    ASSERT_EQ(list(a.intersect(b)), in_a & in_b) << a.to_string() << ' ' << b.to_string();
    const BitRange joined = a.hull(b);
    ASSERT_EQ(joined.intersect(a), a);
    ASSERT_EQ(joined.intersect(b), b);
    if (joined.is_empty() || joined.is_value()) continue;
    for (const QNumber& end : {joined.get_least(), joined.get_greatest()})
      ASSERT_TRUE(a.contains(end) || b.contains(end));
  }
}

TEST(BitRange, ReadsSignedNumbers) {
  for (int least = -kValues; least <= kValues; ++least) {
    for (int greatest = -kValues; greatest <= kValues; ++greatest) {
      const BitRange range = BitRange::between_signed(kWidth, least, greatest);
      int first = kValues;
      int last = -kValues;
      for (int v = 0; v < kValues; ++v) {
        const int value = v < kValues / 2 ? v : v - kValues;
        const bool is_in = least <= value && value <= greatest;
        if (is_in) {
          ASSERT_TRUE(range.contains(v)) << range.to_string() << ' ' << v;
          first = std::min(first, value);
          last = std::max(last, value);
        }
      }
      ASSERT_EQ(range.is_empty(), first > last) << least << ' ' << greatest;
      if (range.is_empty()) continue;
      // The interval of patterns may hold more than that of numbers, but not other ends.
      if (least >= 0 || greatest < 0) {
        ASSERT_EQ(range.get_signed_least(), QNumber(first));
        ASSERT_EQ(range.get_signed_greatest(), QNumber(last));
      }
    }
  }
}

TEST(BitRange, KeepsToWideVectors) {
  const BitRange all = BitRange::everything(200);
  const QNumber half = BVNumber::power_of_two(199);
  EXPECT_EQ(all.with_sign(true).get_least(), half);
  EXPECT_EQ(all.get_signed_least(), half.neg());
  const BitRange odd = BitRange::of_bits(200, 1, BVNumber::all_ones(200));
  EXPECT_EQ(odd.intersect(BitRange::between(200, half, half + 1)),
            BitRange::of_value(200, half + 1));
}

}  // namespace
}  // namespace vorn::ranges
