// Dropping terms: what is kept stays as it is, what is dropped makes room for new terms.
#include <gtest/gtest.h>

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

TEST_F(Collection, ForgetsLiterals) {
  const Term* number = mgr.make_bv_number(1, 8);
  const std::uint64_t with_number = mgr.get_live_count();
  mgr.collect({});
  EXPECT_EQ(mgr.get_live_count(), with_number - 1);
  number = mgr.make_bv_number(1, 8);
  EXPECT_EQ(number->to_string(), "#x01");
  EXPECT_EQ(mgr.make_bv_number(1, 8), number);
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
