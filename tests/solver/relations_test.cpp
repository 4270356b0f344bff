// Theorems beside the assertions: they come and go with their level, change no answer, and stay out
// of what leaves the solver.
#include "tests/solver/solver_fixture.h"

namespace vorn::solver {
namespace {

class Relations : public SolverTest {
 protected:
  const Term* x = variable("x", mgr.get_fp_type(8, 23));
  const Term* y = variable("y", mgr.get_fp_type(8, 23));
  const Term* z = variable("z", mgr.get_fp_type(8, 23));
  const Term* rm = mgr.make_fprounding_even();
  const Term* above = mgr.make_fp_lt(y, mgr.make_fp_add(rm, x, z));
  const Term* below = mgr.make_fp_lt(z, mgr.make_fp_sub(rm, y, x));
};

/// Circuits alone do not see this within seconds.
TEST_F(Relations, RefuteLevelByLevel) {
  solver.assert_formula(above);
  EXPECT_EQ(solver.check_sat(), Answer::sat);
  for (int i = 0; i < 3; ++i) {
    solver.push();
    solver.assert_formula(below);
    EXPECT_EQ(solver.check_sat(), Answer::unsat);
    solver.pop();
    EXPECT_EQ(solver.check_sat(), Answer::sat);
  }
  const Term* const assumed[] = {below};
  EXPECT_EQ(solver.check_sat(assumed), Answer::unsat);
  EXPECT_EQ(solver.get_unsat_assumptions().size(), 1U);
  EXPECT_EQ(solver.check_sat(), Answer::sat);
}

TEST_F(Relations, AreNoPartOfAnEncoding) {
  const auto count_conjuncts = [this](bool relations) {
    Options options = circuits_only();
    options.relations = relations;
    Solver other(mgr, options);
    other.assert_formula(above);
    other.assert_formula(below);
    return other.encode({}).conjuncts.size();
  };
  EXPECT_EQ(count_conjuncts(true), count_conjuncts(false));
}

}  // namespace
}  // namespace vorn::solver
