// Definitions in the solver: values of constants that are gone, levels, assumptions, what leaves
// it.
#include <algorithm>
#include <string>
#include <vector>

#include "tests/solver/solver_fixture.h"

namespace vorn::solver {
namespace {

class Substitution : public SolverTest {
 protected:
  const Term* bits(int value) { return mgr.make_bv_number(value, 8); }

  const Term* x = variable("x", mgr.get_fp_type(8, 23));
  const Term* y = variable("y", mgr.get_fp_type(8, 23));
  const Term* rm = mgr.make_fprounding_even();
  const Term* sum = mgr.make_fp_add(rm, y, y);
  const Term* one = mgr.make_fp_number(QNumber(0x3F800000), 8, 23);
  const Term* b = variable("b", mgr.get_bv_type(8));
  const Term* c = variable("c", mgr.get_bv_type(8));
  const Term* p = variable("p", mgr.get_bool_type());
};

TEST_F(Substitution, GivesValuesToWhatIsGone) {
  solver.assert_formula(mgr.make_equal(x, sum));
  solver.assert_formula(mgr.make_equal(p, mgr.make_fp_lt(y, x)));
  solver.assert_formula(mgr.make_fp_equal(y, one));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_statistics().definitions, 3U);
  EXPECT_EQ(solver.get_value(x)->to_string(), solver.get_value(sum)->to_string());
  EXPECT_EQ(solver.get_value(p), mgr.make_true());
  EXPECT_EQ(solver.get_value(mgr.make_fp_lt(one, x)), mgr.make_true());
}

TEST_F(Substitution, LastsAsLongAsItsLevel) {
  solver.assert_formula(mgr.make_bv_ult(c, bits(9)));
  for (int i = 0; i < 3; ++i) {
    solver.push();
    solver.assert_formula(mgr.make_equal(b, bits(i)));
    ASSERT_EQ(solver.check_sat(), Answer::sat);
    EXPECT_EQ(solver.get_value(b), bits(i));
    solver.assert_formula(mgr.make_bv_ult(b, bits(i)));
    EXPECT_EQ(solver.check_sat(), Answer::unsat);
    solver.pop();
  }
  solver.assert_formula(mgr.make_bv_ult(bits(7), b));
  EXPECT_EQ(solver.check_sat(), Answer::sat);
}

/// What was translated on an outer level has to agree with what is defined later.
TEST_F(Substitution, BindsWhatWasTranslatedBefore) {
  solver.assert_formula(mgr.make_bv_ult(b, c));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  solver.push();
  solver.assert_formula(mgr.make_equal(b, bits(200)));
  solver.assert_formula(mgr.make_equal(c, mgr.make_bv_add(b, bits(100))));
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
  solver.pop();
  solver.assert_formula(mgr.make_equal(c, bits(100)));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_value(c), bits(100));
}

TEST_F(Substitution, BlamesAssumptionsThatBecomeFalse) {
  solver.assert_formula(mgr.make_equal(b, bits(3)));
  const Term* const assumed[] = {p, mgr.make_bv_ult(b, bits(3)), mgr.make_bv_ult(c, b)};
  ASSERT_EQ(solver.check_sat(assumed), Answer::unsat);
  EXPECT_EQ(solver.get_unsat_assumptions(), std::vector<std::size_t>{1});
  Options plain = circuits_only();
  plain.ranges = false;
  Solver other(mgr, plain);
  other.assert_formula(mgr.make_equal(b, bits(3)));
  ASSERT_EQ(other.check_sat(assumed), Answer::unsat);
  EXPECT_EQ(other.get_unsat_assumptions(), std::vector<std::size_t>{1});
}

/// An assumption is true for its check only, and defines nothing in it.
TEST_F(Substitution, DefinesNothingByAssumptions) {
  solver.assert_formula(mgr.make_bv_ult(b, bits(10)));
  const Term* const assumed[] = {mgr.make_equal(c, bits(20)), mgr.make_equal(c, b)};
  ASSERT_EQ(solver.check_sat(assumed), Answer::unsat);
  EXPECT_EQ(solver.get_unsat_assumptions().size(), 2U);
  EXPECT_EQ(solver.get_statistics().definitions, 0U);
  EXPECT_EQ(solver.check_sat(), Answer::sat);
}

TEST_F(Substitution, IsForgottenWithTheAssertions) {
  solver.assert_formula(mgr.make_equal(b, bits(3)));
  EXPECT_EQ(solver.check_sat(), Answer::sat);
  solver.collect_garbage({});
  b = variable("b2", mgr.get_bv_type(8));
  solver.assert_formula(mgr.make_equal(b, bits(4)));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_value(b), bits(4));
  solver.set_seed(7);
  EXPECT_EQ(solver.check_sat(), Answer::sat);
  solver.reset_assertions();
  solver.assert_formula(mgr.make_equal(b, bits(5)));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_value(b), bits(5));
}

TEST_F(Substitution, IsNoPartOfAnEncoding) {
  solver.assert_formula(mgr.make_equal(b, c));
  EXPECT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.encode({}).conjuncts, std::vector<const Term*>{mgr.make_equal(b, c)});
}

/// What the theory leaves open of a conversion is the same in a definition as in what is stated.
TEST_F(Substitution, LeavesOpenResultsTheSame) {
  const Term* big = mgr.make_fp_lt(mgr.make_fp_number(QNumber(0x50000000), 8, 23), y);
  const Term* integer = mgr.make_fp_to_ubv(8, rm, y);
  solver.assert_formula(big);
  solver.assert_formula(mgr.make_equal(b, integer));
  solver.assert_formula(mgr.make_equal(x, y));
  solver.assert_formula(mgr.make_bv_ult(bits(77), mgr.make_fp_to_ubv(8, rm, x)));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_value(b)->to_string(), solver.get_value(integer)->to_string());
}

TEST_F(Substitution, DefinesByReadsAndFunctions) {
  const DataType* byte = mgr.get_bv_type(8);
  const Term* a = variable("a", mgr.get_array_type(byte, byte));
  const Term* read = mgr.make_select(a, c);
  solver.assert_formula(mgr.make_equal(b, read));
  solver.assert_formula(mgr.make_equal(c, bits(4)));
  solver.assert_formula(mgr.make_bv_ult(bits(250), b));
  solver.assert_formula(mgr.make_bv_ult(b, mgr.make_select(a, bits(5))));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_value(b), solver.get_value(mgr.make_select(a, bits(4))));
}

/// Walks, models and clean-up are no deeper for a hundred thousand definitions.
TEST_F(Substitution, FollowsLongChains) {
  std::vector<const Term*> chain{b};
  for (int i = 0; i < 100'000; ++i) {
    chain.push_back(variable("c", mgr.get_bv_type(8)));
    solver.assert_formula(mgr.make_equal(chain.back(), mgr.make_bv_add(chain[i], bits(1))));
  }
  solver.assert_formula(mgr.make_equal(b, bits(5)));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_value(chain.back()), bits((5 + 100'000) % 256));
  EXPECT_EQ(solver.get_statistics().definitions, 100'001U);
}

/// The models of local search have them too.
TEST_F(Substitution, IsPartOfModelsFoundByTrying) {
  Solver searching(mgr);
  searching.assert_formula(mgr.make_equal(x, sum));
  searching.assert_formula(mgr.make_fp_lt(one, x));
  ASSERT_EQ(searching.check_sat(), Answer::sat);
  EXPECT_EQ(searching.get_statistics().tried_models, 1U);
  EXPECT_EQ(searching.get_value(mgr.make_fp_lt(one, sum)), mgr.make_true());
}

TEST_F(Substitution, IsOffWhereItIsNotWanted) {
  Options base = circuits_only();
  base.encoder = EncoderKind::base;
  Options off = circuits_only();
  off.substitution = false;
  for (const Options& options : {base, off}) {
    Solver other(mgr, options);
    other.assert_formula(mgr.make_equal(b, bits(3)));
    ASSERT_EQ(other.check_sat(), Answer::sat);
    EXPECT_EQ(other.get_statistics().definitions, 0U);
    EXPECT_EQ(other.get_value(b), bits(3));
  }
}

}  // namespace
}  // namespace vorn::solver
