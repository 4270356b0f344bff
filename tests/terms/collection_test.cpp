// Dropping terms: what is kept stays as it is, what is dropped makes room for new terms.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

class Collection : public testing::Test {
 protected:
  const Term* constant(const std::string& name) {
    return mgr.make_constant(mgr.make_unique_symbol(name, mgr.get_bv_type(8)));
  }

  TermManager mgr{false};
};

TEST_F(Collection, KeepsRootsAndWhatIsBelowThem) {
  const Term* a = constant("a");
  const Term* b = constant("b");
  const Term* sum = mgr.make_bv_add(a, mgr.make_bv_mul(a, mgr.make_bv_number(77, 8)));
  mgr.make_bv_sub(a, b);
  const std::string text = sum->to_string();
  const std::uint64_t before = mgr.get_live_count();
  const Term* roots[] = {sum};
  mgr.collect(roots);
  EXPECT_EQ(mgr.get_live_count(), before - 2);  // the difference and b
  EXPECT_EQ(sum->to_string(), text);
  // Still shared: making them again makes nothing.
  EXPECT_EQ(mgr.make_bv_add(a, mgr.make_bv_mul(a, mgr.make_bv_number(77, 8))), sum);
  EXPECT_EQ(mgr.get_live_count(), before - 2);
}

TEST_F(Collection, KeepsTruthValuesAndRoundingModes) {
  mgr.collect({});
  EXPECT_EQ(mgr.make_not(mgr.make_true())->to_string(), "(not true)");
  EXPECT_EQ(mgr.make_fprounding_away()->to_string(), "roundNearestTiesToAway");
  EXPECT_EQ(mgr.make_bool(false), mgr.make_false());
}

TEST_F(Collection, GivesDroppedMemoryIdentifiersAndNamesToNewTerms) {
  const Term* a = constant("a");
  for (int round = 0; round < 100; ++round) {
    const Term* t = constant("fresh");
    EXPECT_EQ(t->get_symbol()->get_name(), "fresh") << round;
    for (int i = 0; i < 200; ++i)
      t = mgr.make_bv_xor(mgr.make_bv_add(t, a), mgr.make_bv_number(i, 8));
    const Term* roots[] = {a};
    mgr.collect(roots);
  }
  EXPECT_LT(mgr.get_term_count(), 1000U);
  EXPECT_LT(mgr.get_live_count(), 20U);
}

TEST_F(Collection, GivesIdentifiersAgainInTheirOrder) {
  const Term* a = constant("a");
  const Term* kept = mgr.make_bv_number(200, 8);
  const auto fill = [&](int from) {
    std::vector<std::uint64_t> ids[3];
    for (int i = from; i < from + 100; ++i) {
      ids[0].push_back(constant("b")->get_id());
      const Term* number = mgr.make_bv_number(i, 8);
      ids[1].push_back(mgr.make_bv_sub(a, number)->get_id());
      if (i % 7 == 0) kept = mgr.make_bv_add(kept, mgr.make_bv_sub(a, number));
      ids[2].push_back(mgr.make_term_ite(mgr.make_true(), a, number)->get_id());
    }
    for (const auto& of_one_arity : ids)
      EXPECT_TRUE(std::ranges::is_sorted(of_one_arity)) << from;
  };
  fill(0);
  const std::uint64_t count = mgr.get_term_count();
  const Term* roots[] = {kept};
  mgr.collect(roots);
  fill(100);
  // What lives on took few of them, and the new terms have taken the others.
  EXPECT_LT(mgr.get_term_count(), count + 100);
}

TEST_F(Collection, ForgetsLiterals) {
  const Term* number = mgr.make_bv_number(1, 8);
  const std::uint64_t with_number = mgr.get_live_count();
  mgr.collect({});
  EXPECT_EQ(mgr.get_live_count(), with_number - 1);
  number = mgr.make_bv_number(1, 8);
  EXPECT_EQ(number->to_string(), "#x01");
  EXPECT_EQ(mgr.make_bv_number(1, 8), number);
}

TEST_F(Collection, KeepsWhatIsHeldForAsLongAsItIs) {
  TermManager other;
  const Term* foreign = other.make_constant(other.make_unique_symbol("f", other.get_bv_type(8)));
  const Term* held = mgr.make_bv_not(constant("a"));
  const Term* held_twice = constant("b");
  constant("c");
  const auto holder = [&](std::initializer_list<const Term*> terms) {
    return std::make_shared<const TermManager::Holder>(
        [terms = std::vector(terms)](std::vector<const Term*>* out) {
          out->insert(out->end(), terms.begin(), terms.end());
        });
  };
  auto first = holder({held, held_twice, foreign});
  auto second = holder({held_twice});
  mgr.add_holder(first);
  mgr.add_holder(second);
  const std::uint64_t before = mgr.get_live_count();
  mgr.collect({});
  EXPECT_EQ(mgr.get_live_count(), before - 1);  // c
  EXPECT_EQ(held->to_string(), "(bvnot a)");
  first.reset();
  mgr.collect({});
  EXPECT_EQ(mgr.get_live_count(), before - 3);
  EXPECT_EQ(held_twice->to_string(), "b");
  second.reset();
  mgr.collect({});
  EXPECT_EQ(mgr.get_live_count(), before - 4);
}

TEST_F(Collection, WorksOnManyTermsAtOnce) {
  const Term* a = constant("a");
  const Term* kept = a;
  for (int i = 0; i < 50'000; ++i) {
    kept = mgr.make_bv_not(mgr.make_bv_add(kept, a));
    mgr.make_bv_and(kept, a);
  }
  const std::uint64_t before = mgr.get_live_count();
  const Term* roots[] = {kept};
  mgr.collect(roots);
  EXPECT_EQ(mgr.get_live_count(), before - 50'000);
  const Term* again = a;
  for (int i = 0; i < 50'000; ++i)
    again = mgr.make_bv_not(mgr.make_bv_add(again, a));
  EXPECT_EQ(again, kept);
}

}  // namespace
}  // namespace vorn
