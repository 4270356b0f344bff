#include "vorn/utils/trail.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

namespace vorn {
namespace {

using Items = std::vector<int>;

/// Notes what is undone.
struct Undone {
  void operator()(int item) const { items->push_back(item); }
  Items* items;
};

TEST(Trail, ItemsLeaveWithTheirLevel) {
  Trail<int> trail;
  trail.add(1);
  trail.push();
  trail.add(2);
  trail.push();
  trail.add(3);
  EXPECT_EQ(trail.get_items(), (Items{1, 2, 3}));
  EXPECT_EQ(trail.get_level(), 2U);
  trail.pop();
  EXPECT_EQ(trail.get_items(), (Items{1, 2}));
  trail.add(4);
  trail.pop();
  EXPECT_EQ(trail.get_items(), (Items{1}));
  EXPECT_EQ(trail.get_level(), 0U);
}

TEST(Trail, TheNewestItemIsUndoneFirst) {
  Trail<int> trail;
  Items undone;
  trail.add(1);
  trail.push();
  for (const int item : {2, 3, 4})
    trail.add(item);
  trail.pop(Undone{&undone});
  EXPECT_EQ(undone, (Items{4, 3, 2}));
}

TEST(Trail, TheSizeOfALevelCountsThoseAroundIt) {
  Trail<int> trail;
  trail.push();
  trail.add(1);
  trail.add(2);
  trail.push();
  trail.push();
  trail.add(3);
  EXPECT_EQ(trail.get_size(0), 0U);
  EXPECT_EQ(trail.get_size(1), 2U);
  EXPECT_EQ(trail.get_size(2), 2U);
  EXPECT_EQ(trail.get_size(3), 3U);
  EXPECT_EQ(trail.get_size(), 3U);
}

TEST(Trail, AMergedLevelLeavesItsItemsToTheOneAround) {
  Trail<int> trail;
  trail.push();
  trail.add(1);
  trail.push();
  trail.add(2);
  trail.merge();
  EXPECT_EQ(trail.get_items(), (Items{1, 2}));
  EXPECT_EQ(trail.get_level(), 1U);
  trail.pop();
  EXPECT_TRUE(trail.get_items().empty());
}

TEST(Trail, RetractsWithinALevel) {
  Trail<int> trail;
  Items undone;
  trail.add(1);
  trail.push();
  trail.add(2);
  const std::size_t size = trail.get_size();
  trail.add(3);
  trail.add(4);
  trail.retract(size, Undone{&undone});
  EXPECT_EQ(undone, (Items{4, 3}));
  trail.retract(size, Undone{&undone});
  EXPECT_EQ(undone.size(), 2U) << "nothing is left to retract";
  EXPECT_EQ(trail.get_items(), (Items{1, 2}));
  EXPECT_EQ(trail.get_level(), 1U);
}

TEST(Trail, ClearForgetsItemsAndLevels) {
  Trail<std::string> trail;
  trail.add("a");
  trail.push();
  trail.add("b");
  trail.clear();
  EXPECT_EQ(trail.get_size(), 0U);
  EXPECT_EQ(trail.get_level(), 0U);
  trail.add("c");
  EXPECT_EQ(trail.get_items(), (std::vector<std::string>{"c"}));
}

/// Against a copy of the items for each level.
TEST(Trail, GoesBackToWhereEachLevelBegan) {
  std::mt19937 random(7);
  Trail<int> trail;
  Items items;
  std::vector<Items> saved;
  for (int step = 0; step < 20'000; ++step) {
    switch (random() % 8) {
      case 0:
        trail.push();
        saved.push_back(items);
        break;
      case 1:
        if (saved.empty()) break;
        trail.pop([&items](int item) {
          ASSERT_EQ(item, items.back());
          items.pop_back();
        });
        ASSERT_EQ(items, saved.back());
        saved.pop_back();
        break;
      case 2:
        if (saved.empty()) break;
        trail.merge();
        saved.pop_back();
        break;
      default:
        trail.add(step);
        items.push_back(step);
        break;
    }
    ASSERT_EQ(trail.get_items(), items);
    ASSERT_EQ(trail.get_level(), saved.size());
    const std::size_t level = random() % (saved.size() + 1);
    ASSERT_EQ(trail.get_size(level), level < saved.size() ? saved[level].size() : items.size());
  }
}

}  // namespace
}  // namespace vorn
