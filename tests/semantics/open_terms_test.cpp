#include "vorn/semantics/open_terms.h"

#include <vector>

#include "tests/solver/solver_fixture.h"
#include "vorn/semantics/evaluator.h"

namespace vorn::semantics {
namespace {

using Terms = std::vector<const Term*>;

class OpenTerms : public solver::SolverTest {
 protected:
  const DataType* type = mgr.get_fp_type(3, 4);
  const Term* x = variable("x", type);
  const Term* rm = mgr.make_fprounding_even();
  const Term* min = mgr.make_fp_min(x, mgr.make_fp_neg(x));
  const Term* max = mgr.make_fp_max(min, x);
  const Term* to_sbv = mgr.make_fp_to_sbv(4, rm, max);
  const Term* to_ubv = mgr.make_fp_to_ubv(4, rm, x);
};

TEST_F(OpenTerms, AreConversionsAndSelections) {
  for (const Term* t : {min, max}) {
    EXPECT_TRUE(is_selection(t));
    EXPECT_FALSE(is_conversion(t));
  }
  for (const Term* t : {to_sbv, to_ubv}) {
    EXPECT_TRUE(is_conversion(t));
    EXPECT_FALSE(is_selection(t));
  }
  for (const Term* t : {x, mgr.make_fp_neg(x), mgr.make_fp_to_bits(x)}) {
    EXPECT_FALSE(is_conversion(t));
    EXPECT_FALSE(is_selection(t));
  }
}

TEST_F(OpenTerms, AreFoundOnceArgumentsFirst) {
  const Terms formulas{mgr.make_bv_ult(to_ubv, to_sbv), mgr.make_fp_isnan(max)};
  EXPECT_EQ(find_open_terms(formulas), (Terms{to_ubv, min, max, to_sbv}));
}

/// Bit s of a choice is the sign where the first zero has sign s.
TEST_F(OpenTerms, AChoiceHasABitForEachOrderOfTheZeros) {
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
TEST_F(OpenTerms, ChoicesAreReadAsTheEncoderMeansThem) {
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
