// Sets of floats against lists of the values in them, of every class and interval of a small
// format.
#include "vorn/ranges/float_range.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <map>
#include <random>
#include <vector>

#include "vorn/terms/bv_number.h"

namespace vorn::ranges {
namespace {

// The smallest format: one subnormal number and four normal ones of each sign.
constexpr IEEEFloat::format kFormat = {2, 1};
constexpr std::size_t kPatterns = 16;
using Members = std::bitset<kPatterns>;

IEEEFloat pattern(std::size_t bits) {
  return IEEEFloat::from_bits(kFormat, QNumber::from_integer(bits));
}

FloatClassSet find_class(const IEEEFloat& x) {
  if (x.is_nan()) return kNaN;
  const FloatClassSet sign = x.is_sign_set() ? kNegative : kPositive;
  if (x.is_zero()) return kZeros & sign;
  if (x.is_inf()) return kInfinities & sign;
  return (x.is_normal() ? kNormals : kSubnormals) & sign;
}

Members list(const FloatRange& range) {
  Members members;
  for (std::size_t i = 0; i < kPatterns; ++i)
    members[i] = range.contains(pattern(i));
  return members;
}

/// The ends of intervals: ranks of all numbers, and one beyond.
constexpr int kFirst = -8;
constexpr int kLast = 7;

/// Each set that classes and an interval make.
std::vector<FloatRange> list_ranges() {
  std::vector<FloatRange> ranges;
  for (FloatClassSet classes = 0; classes <= kAllClasses; ++classes) {
    for (int least = kFirst; least <= kLast; ++least) {
      for (int greatest = least; greatest <= kLast; ++greatest) {
        ranges.push_back(
            FloatRange::of_classes(kFormat, classes).at_least(least).at_most(greatest));
      }
    }
  }
  return ranges;
}

TEST(FloatRange, RanksNumberTheValuesInTheirOrder) {
  EXPECT_EQ(rank_of(IEEEFloat::make_inf(kFormat, true)), QNumber(-7));
  EXPECT_EQ(rank_of(IEEEFloat::make_zero(kFormat, true)), QNumber(-1));
  EXPECT_EQ(rank_of(IEEEFloat::make_zero(kFormat, false)), QNumber(0));
  EXPECT_EQ(rank_of(IEEEFloat::make_inf(kFormat, false)), infinity_rank(kFormat));
  for (int rank = -7; rank <= 6; ++rank) {
    const IEEEFloat x = float_of_rank(kFormat, rank);
    EXPECT_EQ(rank_of(x), QNumber(rank));
    EXPECT_EQ(rank_of(float_of_rank(kFormat, negate_rank(rank))), negate_rank(rank));
    if (rank > -6 && rank < 6) {
      EXPECT_LE(float_of_rank(kFormat, rank - 1).get_value(), x.get_value());
    }
  }
}

TEST(FloatRange, HoldsTheValuesOfItsClassesThatLieInItsInterval) {
  for (FloatClassSet classes = 0; classes <= kAllClasses; ++classes) {
    for (int least = kFirst; least <= kLast; ++least) {
      for (int greatest = kFirst; greatest <= kLast; ++greatest) {
        const FloatRange range = FloatRange::of_classes(kFormat, classes)
                                     .intersect(FloatRange::between(kFormat, least, greatest)
                                                    .hull(FloatRange::of_classes(kFormat, kNaN)));
        for (std::size_t i = 0; i < kPatterns; ++i) {
          const IEEEFloat x = pattern(i);
          const bool is_between =
              x.is_nan() || (QNumber(least) <= rank_of(x) && rank_of(x) <= QNumber(greatest));
          ASSERT_EQ(range.contains(x), (find_class(x) & classes) != 0 && is_between)
              << range.to_string() << " and pattern " << i;
        }
      }
    }
  }
}

TEST(FloatRange, IsOneObjectForOneSet) {
  std::map<std::string, FloatRange> by_members;
  for (const FloatRange& range : list_ranges()) {
    const Members members = list(range);
    const auto [row, is_new] = by_members.emplace(members.to_string(), range);
    ASSERT_EQ(row->second, range) << row->second.to_string() << " and " << range.to_string();
    ASSERT_EQ(range.is_empty(), members.none());
    // NaN has a pattern of either sign.
    const bool nan = range.has(kNaN);
    ASSERT_EQ(range.is_value(), members.count() == (nan ? 2U : 1U)) << range.to_string();
    if (!range.has(kNumbers)) continue;
    ASSERT_TRUE(range.contains(float_of_rank(kFormat, range.get_least())));
    ASSERT_TRUE(range.contains(float_of_rank(kFormat, range.get_greatest())));
  }
  EXPECT_GT(by_members.size(), 500U);
}

TEST(FloatRange, IntersectsAndJoins) {
  const std::vector<FloatRange> ranges = list_ranges();
  std::mt19937_64 engine(1);
  for (int i = 0; i < 20000; ++i) {
    const FloatRange& a = ranges[engine() % ranges.size()];
    const FloatRange& b = ranges[engine() % ranges.size()];
    ASSERT_EQ(list(a.intersect(b)), list(a) & list(b)) << a.to_string() << ' ' << b.to_string();
    const FloatRange joined = a.hull(b);
    ASSERT_EQ(joined.intersect(a), a);
    ASSERT_EQ(joined.intersect(b), b);
    // No value can be taken from an end or a class.
    const auto is_needed = [&](const FloatRange& less) {
      return less.intersect(a) != a || less.intersect(b) != b;
    };
    for (FloatClassSet c = 1; c <= kNaN; c <<= 1U) {
      ASSERT_TRUE(!joined.has(c) || is_needed(joined.restrict_to(kAllClasses & ~c)));
    }
    if (!joined.has(kNumbers)) continue;
    ASSERT_TRUE(is_needed(joined.at_least(joined.get_least() + 1)) ||
                joined.get_least() == joined.get_greatest());
    ASSERT_TRUE(is_needed(joined.at_most(joined.get_greatest() - QNumber(1))) ||
                joined.get_least() == joined.get_greatest());
  }
}

TEST(FloatRange, MovesItsEndsToClassesThatItHas) {
  const FloatRange positive = FloatRange::everything(kFormat).restrict_to(kNormals).at_least(-2);
  EXPECT_EQ(positive.get_least(), QNumber(2));
  EXPECT_EQ(positive.get_classes(), kNormals & kPositive);
  const FloatRange nonzero = FloatRange::between(kFormat, -1, 5).restrict_to(kAllClasses & ~kZeros);
  EXPECT_EQ(nonzero, FloatRange::between(kFormat, 1, 5));
}

TEST(FloatRange, ExcludesAValueWhereItIsAnEndOrAClass) {
  const FloatRange range = FloatRange::between(kFormat, -4, 5).extend_by(kNaN);
  EXPECT_EQ(range.exclude(float_of_rank(kFormat, -4)), range.at_least(-3));
  EXPECT_EQ(range.exclude(float_of_rank(kFormat, 5)), range.at_most(4));
  EXPECT_EQ(range.exclude(float_of_rank(kFormat, 0)),
            range.restrict_to(kAllClasses & ~zero_of(false)));
  EXPECT_EQ(range.exclude(IEEEFloat::make_nan(kFormat)), range.restrict_to(kNumbers));
  EXPECT_EQ(range.exclude(float_of_rank(kFormat, 3)), range);
  const FloatRange one = FloatRange::between(kFormat, 2, 2);
  EXPECT_TRUE(one.exclude(float_of_rank(kFormat, 2)).is_empty());
}

TEST(FloatRange, NegatesEveryValue) {
  for (const FloatRange& range : list_ranges()) {
    const FloatRange negated = range.negate();
    for (std::size_t i = 0; i < kPatterns; ++i) {
      ASSERT_EQ(negated.contains(pattern(i)), range.contains(pattern(i ^ (kPatterns / 2))));
    }
  }
}

TEST(FloatRange, KeepsToLargeFormats) {
  for (const IEEEFloat::format fmt : {IEEEFloat::format{8, 23}, IEEEFloat::format{11, 52},
                                      IEEEFloat::format{15, 112}, IEEEFloat::format{19, 236}}) {
    const FloatRange all = FloatRange::everything(fmt);
    EXPECT_EQ(all.negate(), all);
    EXPECT_TRUE(all.contains(IEEEFloat::make_largest(fmt, true)));
    const FloatRange normal = all.restrict_to(kNormals & kNegative);
    EXPECT_EQ(float_of_rank(fmt, normal.get_least()).get_bits(),
              IEEEFloat::make_largest(fmt, true).get_bits());
    const FloatRange below = all.at_most(normal.get_greatest()).restrict_to(kNumbers);
    EXPECT_EQ(below.get_classes(),
              class_set(FloatClass::negative_infinity, FloatClass::negative_normal));
  }
}

}  // namespace
}  // namespace vorn::ranges
