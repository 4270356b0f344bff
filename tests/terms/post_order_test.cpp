#include "vorn/terms/post_order.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <string>
#include <unordered_set>
#include <vector>

#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

using Terms = std::vector<const Term*>;

class PostOrder : public testing::Test {
 protected:
  const Term* proposition(const char* name) {
    return mgr.make_constant(mgr.make_unique_symbol(name, mgr.get_bool_type()));
  }
  static Terms list(const Terms& roots) { return list_post_order(roots); }
  /// What a walk with a memory of its own finishes.
  template <ArgumentOrder order>
  Terms walk(const Term* root) {
    Terms finished;
    walk_post_order<order>(
        root, [this](const Term* t) { return done.contains(t); },
        [&](const Term* t) {
          done.insert(t);
          finished.push_back(t);
        });
    return finished;
  }

  TermManager mgr{false};
  const Term* p = proposition("p");
  const Term* q = proposition("q");
  const Term* r = proposition("r");
  const Term* both = mgr.make_and(p, q);
  const Term* either = mgr.make_or(both, r);
  std::unordered_set<const Term*> done;
};

TEST_F(PostOrder, ArgumentsComeFirstAndEachTermOnce) {
  const Term* top = mgr.make_xor(either, mgr.make_not(both));
  EXPECT_EQ(list({top}), (Terms{p, q, both, r, either, top->get_arg(1), top}));
}

TEST_F(PostOrder, RootsComeInTheirOrderAndOnce) {
  EXPECT_EQ(list({either, r, both, either}), (Terms{p, q, both, r, either}));
  EXPECT_EQ(list({r, either}), (Terms{r, p, q, both, either}));
  EXPECT_EQ(list({q}), (Terms{q}));
  EXPECT_TRUE(list({}).empty());
}

TEST_F(PostOrder, ArgumentsAreVisitedFromEitherEnd) {
  EXPECT_EQ(walk<ArgumentOrder::first_to_last>(either), (Terms{p, q, both, r, either}));
  done.clear();
  EXPECT_EQ(walk<ArgumentOrder::last_to_first>(either), (Terms{r, q, p, both, either}));
}

TEST_F(PostOrder, WhatIsDoneIsNotLookedInto) {
  done.insert(both);
  EXPECT_EQ(walk<ArgumentOrder::first_to_last>(either), (Terms{r, either}));
  EXPECT_TRUE(walk<ArgumentOrder::first_to_last>(either).empty()) << "the root is done";
}

TEST_F(PostOrder, AWalkThatEndedEarlyCanBeBegunAgain) {
  const auto is_done = [this](const Term* t) { return done.contains(t); };
  const auto refuse = [this](const Term* t) {
    if (t == both) throw std::invalid_argument("refused");
    done.insert(t);
  };
  EXPECT_THROW(walk_post_order<ArgumentOrder::last_to_first>(either, is_done, refuse),
               std::invalid_argument);
  EXPECT_EQ(walk<ArgumentOrder::last_to_first>(either), (Terms{both, either}));
}

TEST_F(PostOrder, DeepTermsDoNotExhaustTheNativeStack) {
  const Term* t = p;
  for (int i = 0; i < 300'000; ++i)
    t = mgr.make_not(t);
  const Terms terms = list({t});
  EXPECT_EQ(terms.size(), 300'001U);
  EXPECT_EQ(terms.front(), p);
  EXPECT_EQ(terms.back(), t);
}

/// The definition, by native recursion.
void list_recursively(const Term* t, std::unordered_set<const Term*>& seen, Terms& terms) {
  if (!seen.insert(t).second) return;
  for (const Term* arg : t->get_args())
    list_recursively(arg, seen, terms);
  terms.push_back(t);
}

TEST_F(PostOrder, IsThatOfARecursionOnRandomTerms) {
  std::mt19937 random(3);
  for (int round = 0; round < 50; ++round) {
    Terms pool{p, q, r};
    const auto pick = [&] { return pool[pool.size() - 1 - random() % pool.size()]; };
    for (int i = 0; i < 200; ++i) {
      const Term* a = pick();
      const Term* b = pick();
      pool.push_back(i % 3 == 0 ? mgr.make_term_ite(a, b, pick()) : mgr.make_xor(a, b));
    }
    const Terms roots{pick(), pool.back(), pick()};
    Terms expected;
    std::unordered_set<const Term*> seen;
    for (const Term* root : roots)
      list_recursively(root, seen, expected);
    ASSERT_EQ(list(roots), expected);
  }
}

TEST_F(PostOrder, IdentifiersMayBeFarApart) {
  for (int i = 0; i < 20'000; ++i)
    proposition("spare");
  const Term* late = proposition("late");
  ASSERT_GT(late->get_id(), p->get_id() + 20'000);
  const Term* top = mgr.make_and(late, mgr.make_or(p, late));
  EXPECT_EQ(list({top}), (Terms{late, p, top->get_arg(1), top}));
}

}  // namespace
}  // namespace vorn
