#include "vorn/semantics/open_terms.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "vorn/terms/term_manager.h"

namespace vorn::semantics {
namespace {

using Terms = std::vector<const Term*>;

class OpenTermsTest : public testing::Test {
 protected:
  const Term* variable(const std::string& name) {
    return mgr.make_constant(mgr.make_unique_symbol(name, mgr.get_fp_type(3, 3)));
  }
  Terms find(const Terms& formulas) { return find_open_terms(formulas); }

  TermManager mgr;
  const Term* x = variable("x");
  const Term* y = variable("y");
  const Term* rm = mgr.make_fprounding_zero();
};

TEST_F(OpenTermsTest, ConversionsToIntegersAreConversions) {
  EXPECT_TRUE(is_conversion(mgr.make_fp_to_sbv(8, rm, x)));
  EXPECT_TRUE(is_conversion(mgr.make_fp_to_ubv(8, rm, x)));
}

TEST_F(OpenTermsTest, OtherTermsAreNoConversions) {
  const Term* bits = mgr.make_bv_number(5, 8);
  for (const Term* t :
       {mgr.make_fp_from_sbv(3, 3, rm, bits), mgr.make_fp_from_ubv(3, 3, rm, bits),
        mgr.make_fp_cast(4, 4, rm, x), mgr.make_fp_to_bits(x), mgr.make_fp_round_to_integral(rm, x),
        mgr.make_fp_min(x, y), mgr.make_fp_max(x, y), x, bits}) {
    EXPECT_FALSE(is_conversion(t)) << t->to_string();
  }
}

TEST_F(OpenTermsTest, NothingIsOpenWhereTheTheorySaysEverything) {
  EXPECT_TRUE(find({}).empty());
  EXPECT_TRUE(find({mgr.make_fp_isnan(mgr.make_fp_div(rm, x, y)),
                    mgr.make_equal(mgr.make_fp_to_bits(x), mgr.make_bv_number(0, 7))})
                  .empty());
}

TEST_F(OpenTermsTest, ConversionsMinimumAndMaximumAreFound) {
  const Term* zero = mgr.make_bv_number(0, 8);
  for (const Term* t : {mgr.make_fp_to_sbv(8, rm, x), mgr.make_fp_to_ubv(8, rm, x)})
    EXPECT_EQ(find({mgr.make_bv_ult(zero, t)}), Terms{t});
  for (const Term* t : {mgr.make_fp_min(x, y), mgr.make_fp_max(x, y)})
    EXPECT_EQ(find({mgr.make_fp_isnan(t)}), Terms{t});
}

TEST_F(OpenTermsTest, AFormulaMayBeOpenItself) {
  const Term* t = mgr.make_fp_to_sbv(8, rm, x);
  EXPECT_EQ(find({t}), Terms{t});
}

TEST_F(OpenTermsTest, ATermComesOnceHoweverOftenItOccurs) {
  const Term* smaller = mgr.make_fp_min(x, y);
  const Term* twice = mgr.make_fp_lt(smaller, mgr.make_fp_neg(smaller));
  EXPECT_EQ(find({twice, mgr.make_fp_isnan(smaller), twice}), Terms{smaller});
}

TEST_F(OpenTermsTest, OperandsOfAnotherOrderAreAnotherTerm) {
  const Term* one = mgr.make_fp_min(x, y);
  const Term* other = mgr.make_fp_min(y, x);
  EXPECT_EQ(find({mgr.make_fp_lt(one, other)}), (Terms{one, other}));
}

TEST_F(OpenTermsTest, ArgumentsComeBeforeWhatUsesThemAndLeftBeforeRight) {
  const Term* inner = mgr.make_fp_min(x, y);
  const Term* right = mgr.make_fp_max(y, x);
  const Term* outer = mgr.make_fp_max(inner, right);
  const Term* last = mgr.make_fp_to_ubv(8, rm, inner);
  EXPECT_EQ(find({mgr.make_fp_isnan(outer), mgr.make_bv_ult(last, mgr.make_bv_number(5, 8))}),
            (Terms{inner, right, outer, last}));
}

TEST_F(OpenTermsTest, TheOrderIsThatOfTheFormulasWhateverWasBuiltFirst) {
  const auto texts = [](bool reversed) {
    TermManager manager;
    const DataType* type = manager.get_fp_type(3, 3);
    const Term* a = manager.make_constant(manager.make_unique_symbol("a", type));
    const Term* b = manager.make_constant(manager.make_unique_symbol("b", type));
    if (reversed) {
      manager.make_fp_max(b, a);
      manager.make_fp_min(a, b);
    }
    const Term* left = manager.make_fp_min(a, b);
    const Term* formula = manager.make_fp_lt(left, manager.make_fp_max(b, a));
    std::vector<std::string> found;
    for (const Term* t : find_open_terms(Terms{formula}))
      found.push_back(t->to_string());
    return found;
  };
  EXPECT_EQ(texts(false), (std::vector<std::string>{"(fp.min a b)", "(fp.max b a)"}));
  EXPECT_EQ(texts(true), texts(false));
}

TEST_F(OpenTermsTest, DeepTermsDoNotExhaustTheNativeStack) {
  constexpr std::size_t kDepth = 200'000;
  const Term* t = x;
  for (std::size_t i = 0; i < kDepth; ++i)
    t = mgr.make_fp_min(t, y);
  const Terms found = find({mgr.make_fp_isnan(t)});
  ASSERT_EQ(found.size(), kDepth);
  EXPECT_EQ(found.back(), t);
}

}  // namespace
}  // namespace vorn::semantics
