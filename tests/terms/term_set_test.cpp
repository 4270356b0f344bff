#include "vorn/terms/term_set.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <unordered_set>
#include <vector>

#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

TEST(TermSet, InsertsATermOnce) {
  TermManager mgr;
  TermSet set;
  const Term* t = mgr.make_true();
  EXPECT_FALSE(set.contains(t));
  EXPECT_TRUE(set.insert(t));
  EXPECT_TRUE(set.contains(t));
  EXPECT_FALSE(set.insert(t));
  EXPECT_FALSE(set.contains(mgr.make_false()));
}

TEST(TermSet, HoldsWhatWasInserted) {
  TermManager mgr;
  std::vector<const Term*> terms;
  terms.reserve(30'000);
  for (int i = 0; i < 30'000; ++i)
    terms.push_back(mgr.make_bv_number(i, 16));
  std::mt19937 random(11);
  TermSet set;
  std::unordered_set<const Term*> expected;
  for (int i = 0; i < 2'000; ++i) {
    const Term* t = terms[random() % terms.size()];
    ASSERT_EQ(set.insert(t), expected.insert(t).second);
  }
  for (const Term* t : terms)
    ASSERT_EQ(set.contains(t), expected.contains(t));
}

}  // namespace
}  // namespace vorn
