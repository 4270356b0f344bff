#include "vorn/semantics/open_terms.h"

#include <string>
#include <vector>

#include "tests/solver/solver_fixture.h"

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

// Choices ---------------------------------------------------------------------------------------

class ChoicesTest : public solver::SolverTest {
 protected:
  const DataType* type = mgr.get_fp_type(3, 4);
  const Term* x = variable("x", type);
  const Term* rm = mgr.make_fprounding_even();
  const Term* min = mgr.make_fp_min(x, mgr.make_fp_neg(x));
  const Term* max = mgr.make_fp_max(min, x);
  const Term* to_sbv = mgr.make_fp_to_sbv(4, rm, max);
  const Term* to_ubv = mgr.make_fp_to_ubv(4, rm, x);
};

TEST_F(ChoicesTest, AreConversionsAndSelections) {
  for (const Term* t : {min, max}) {
    EXPECT_TRUE(is_selection(t));
    EXPECT_FALSE(is_conversion(t));
  }
  for (const Term* t : {to_sbv, to_ubv}) {
    EXPECT_TRUE(is_conversion(t));
    EXPECT_FALSE(is_selection(t));
  }
  const Term* bits = mgr.make_bv_number(5, 8);
  for (const Term* t : {x, mgr.make_fp_neg(x), mgr.make_fp_to_bits(x), bits,
                        mgr.make_fp_from_sbv(3, 3, rm, bits), mgr.make_fp_cast(4, 4, rm, x)}) {
    EXPECT_FALSE(is_conversion(t));
    EXPECT_FALSE(is_selection(t));
  }
}

/// Bit s of a choice is the sign where the first zero has sign s.
TEST_F(ChoicesTest, AChoiceHasABitForEachOrderOfTheZeros) {
  const QNumber zeros[] = {QNumber(0), QNumber(0x80)};
  for (int choice = 0; choice < 4; ++choice) {
    for (const int first : {0, 1})
      EXPECT_EQ(get_chosen_sign(QNumber(choice), type, zeros[first]), QNumber(choice >> first & 1));
  }
  for (const int sign : {0, 1}) {
    const QNumber choice = make_zero_choice(type, zeros[sign]);
    for (const QNumber& first : zeros)
      EXPECT_EQ(get_chosen_sign(choice, type, first), QNumber(sign));
  }
}

/// The models come from the encoder's circuits; a wrong sign would be an internal error.
TEST_F(ChoicesTest, ChoicesAreReadAsTheEncoderMeansThem) {
  const Term* zeros[] = {fp(0, 3, 4), fp(0x80, 3, 4)};
  for (const int first : {0, 1}) {
    for (const int sign : {0, 1}) {
      for (const bool smaller : {false, true}) {
        const Term* y = variable("y", type);
        const Term* other = zeros[1 - first];
        const Term* t = smaller ? mgr.make_fp_min(y, other) : mgr.make_fp_max(y, other);
        solver.push();
        solver.assert_formula(mgr.make_equal(y, zeros[first]));
        solver.assert_formula(mgr.make_equal(t, zeros[sign]));
        ASSERT_EQ(solver.check_sat(), Answer::sat);
        EXPECT_EQ(solver.get_value(t), zeros[sign]);
        solver.pop();
      }
    }
  }
}

}  // namespace
}  // namespace vorn::semantics
