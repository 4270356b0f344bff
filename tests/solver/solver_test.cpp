#include "vorn/solver/solver.h"

#include <stdexcept>

#include "tests/solver/solver_fixture.h"

namespace vorn::solver {
namespace {

TEST_F(SolverTest, AnEmptySetOfAssertionsIsSat) {
  EXPECT_EQ(solver.check_sat(), Answer::sat);
}

TEST_F(SolverTest, AssertionsMustBeBoolean) {
  EXPECT_THROW(solver.assert_formula(fp(0, 3, 3)), std::invalid_argument);
}

TEST_F(SolverTest, AConstantThatNoAssertionMentionsHasAValue) {
  const Term* x = variable("x", mgr.get_fp_type(3, 3));
  const Term* r = variable("r", mgr.get_fprounding_type());
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_value(x), fp(0, 3, 3));
  EXPECT_EQ(solver.get_value(r), mgr.make_fprounding_even());
  EXPECT_EQ(solver.get_value(mgr.make_fp_iszero(x)), mgr.make_true());
}

TEST_F(SolverTest, ThereIsNoModelBeforeACheckOrAfterANewAssertion) {
  EXPECT_THROW(solver.get_value(mgr.make_true()), std::logic_error);
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  solver.assert_formula(mgr.make_true());
  EXPECT_THROW(solver.get_value(mgr.make_true()), std::logic_error);
}

TEST_F(SolverTest, AssumptionsHoldForOneCheckOnly) {
  const Term* x = variable("x", mgr.get_fp_type(3, 3));
  const Term* nan = mgr.make_fp_isnan(x);
  solver.assert_formula(mgr.make_not(nan));
  const Term* const assumptions[] = {nan};
  EXPECT_EQ(solver.check_sat(assumptions), Answer::unsat);
  EXPECT_EQ(solver.check_sat(), Answer::sat);
}

TEST_F(SolverTest, TheModelOfAnAssumptionCanBeAskedFor) {
  const Term* x = variable("x", mgr.get_fp_type(3, 3));
  const Term* const assumptions[] = {mgr.make_fp_isnan(x)};
  ASSERT_EQ(solver.check_sat(assumptions), Answer::sat);
  EXPECT_EQ(solver.get_value(x), mgr.make_fp_nan(3, 3));
}

TEST_F(SolverTest, PopTakesBackWhatItsLevelSaid) {
  const Term* x = variable("x", mgr.get_fp_type(3, 3));
  solver.assert_formula(mgr.make_fp_lt(x, fp(0, 3, 3)));
  solver.push();
  solver.assert_formula(mgr.make_fp_lt(fp(0, 3, 3), x));
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
  solver.pop();
  EXPECT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_THROW(solver.pop(), std::logic_error);
}

TEST_F(SolverTest, AVariableKeepsItsIdentityWhenALaterLevelIsPopped) {
  // x is first encoded in level 0; asking for it again in level 1 must not make the pop forget it.
  const Term* x = variable("x", mgr.get_fp_type(3, 3));
  solver.assert_formula(mgr.make_fp_lt(x, fp(0, 3, 3)));
  solver.push();
  solver.assert_formula(mgr.make_equal(x, variable("y", mgr.get_fp_type(3, 3))));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  solver.pop();
  solver.assert_formula(mgr.make_fp_lt(fp(0, 3, 3), x));
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
}

TEST_F(SolverTest, ResetAssertionsForgetsEverything) {
  solver.push();
  solver.assert_formula(mgr.make_false());
  ASSERT_EQ(solver.check_sat(), Answer::unsat);
  solver.reset_assertions();
  EXPECT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_THROW(solver.pop(), std::logic_error);
}

class Stop : public TerminationTest {
 public:
  bool terminate() const override { return true; }
};

TEST_F(SolverTest, ATerminationTestEndsTheSearchWithUnknown) {
  const Stop stop;
  Options options;
  options.termination_test = &stop;
  options.rewrite = false;  // there are rules for polynomials
  Solver interrupted(mgr, options);
  // x * y = y * x on integers of 24 bits: out of reach for a search that is stopped at once.
  const Term* x = variable("x", mgr.get_bv_type(24));
  const Term* y = variable("y", mgr.get_bv_type(24));
  const Term* sum = mgr.make_bv_mul(mgr.make_bv_add(x, y), mgr.make_bv_add(x, y));
  const Term* twice = mgr.make_bv_mul(mgr.make_bv_number(2, 24), mgr.make_bv_mul(x, y));
  const Term* squares = mgr.make_bv_add(mgr.make_bv_mul(x, x), mgr.make_bv_mul(y, y));
  interrupted.assert_formula(mgr.make_not(mgr.make_equal(sum, mgr.make_bv_add(squares, twice))));
  EXPECT_EQ(interrupted.check_sat(), Answer::unknown);
  EXPECT_EQ(interrupted.get_reason_unknown(), "resource limit");
  EXPECT_TRUE(interrupted.get_statistics().interrupted);
}

TEST_F(SolverTest, CountsWhatItDoes) {
  const Term* x = variable("x", mgr.get_fp_type(8, 23));
  solver.assert_formula(mgr.make_fp_lt(x, fp(1, 8, 23)));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  const Statistics statistics = solver.get_statistics();
  EXPECT_EQ(statistics.checks, 1U);
  EXPECT_GT(statistics.variables, 31U);
  EXPECT_GT(statistics.clauses, statistics.variables / 2);
}

}  // namespace
}  // namespace vorn::solver
