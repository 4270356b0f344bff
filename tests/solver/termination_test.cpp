// Checks that end early, wherever they can, and what the solver is afterwards.
#include "vorn/utils/termination_test.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/solver/solver_fixture.h"
#include "vorn/terms/ieee_float.h"

namespace vorn::solver {
namespace {

/// Says stop at the question with the given number, counted from 0, and ever after.
class StopAt final : public TerminationTest {
 public:
  bool terminate() const override { return asked++ >= question; }
  void set(std::uint64_t next) {
    question = next;
    asked = 0;
  }
  void clear() { set(~std::uint64_t{0}); }

 private:
  std::uint64_t question = ~std::uint64_t{0};
  mutable std::uint64_t asked = 0;
};

class Termination : public SolverTest {
 protected:
  Termination() { options.termination_test = &stop; }

  /// Quotients 1 / x, where x is 1, that are all 1 or not all 1: many terms and circuits, and
  /// nothing to search. No equation says that x is 1, so that nothing is substituted.
  const Term* quotients_are_one(const std::string& name) {
    IEEEFloat value({11, 52}, IEEEFloat::rounding_mode::nearest_even);
    value.self_round(QNumber(1));
    const Term* one = mgr.make_fp_number(value);
    const Term* f = mgr.make_true();
    for (int i = 0; i < 4; ++i) {
      const Term* v = variable(name + std::to_string(i), mgr.get_fp_type(11, 52));
      const Term* quotient = mgr.make_fp_div(mgr.make_fprounding_even(), one, v);
      const Term* is_one = mgr.make_and(mgr.make_fp_le(v, one), mgr.make_fp_le(one, v));
      f = mgr.make_and(f, mgr.make_and(is_one, mgr.make_equal(quotient, one)));
    }
    return f;
  }

  StopAt stop;
  Options options = circuits_only();
  const Term* x = variable("x", mgr.get_fp_type(4, 6));
  const Term* y = variable("y", mgr.get_fp_type(4, 6));
};

/// Questions at which a check is ended: all of the first, then ever fewer.
std::uint64_t after(std::uint64_t question) {
  return question + 1 + question / 2;
}

TEST_F(Termination, LeavesAssertionsAndLevelsAsTheyWere) {
  const Term* long_formula = quotients_are_one("a");
  const Term* x_is_zero = mgr.make_fp_iszero(x);
  const Term* y_is_nan = mgr.make_fp_isnan(y);
  bool ended = false;
  std::uint64_t stopped = 0;
  for (std::uint64_t question = 0; !ended; question = after(question)) {
    Solver limited(mgr, options);
    limited.assert_formula(x_is_zero);
    limited.push();
    stop.set(question);
    limited.assert_formula(long_formula);
    limited.push();
    limited.assert_formula(y_is_nan);
    const Answer answer = limited.check_sat();
    ASSERT_NE(answer, Answer::unsat);
    ended = answer == Answer::sat;
    if (!ended) {
      ++stopped;
      EXPECT_EQ(limited.get_reason_unknown(), "resource limit");
      EXPECT_TRUE(limited.get_statistics().interrupted);
      EXPECT_THROW(limited.get_value(x), std::logic_error);
      EXPECT_THROW(limited.get_unsat_assumptions(), std::logic_error);
    }
    stop.clear();
    ASSERT_EQ(limited.check_sat(), Answer::sat) << question;
    EXPECT_EQ(limited.get_value(x_is_zero), mgr.make_true());
    EXPECT_EQ(limited.get_value(long_formula), mgr.make_true());
    EXPECT_EQ(limited.get_value(y_is_nan), mgr.make_true());
    limited.assert_formula(mgr.make_fp_equal(y, y));
    ASSERT_EQ(limited.check_sat(), Answer::unsat) << question;
    limited.pop();
    ASSERT_EQ(limited.check_sat(), Answer::sat) << question;
    EXPECT_EQ(limited.get_value(long_formula), mgr.make_true());
    limited.pop();
    limited.assert_formula(mgr.make_fp_isinf(y));
    ASSERT_EQ(limited.check_sat(), Answer::sat) << question;
    EXPECT_EQ(limited.get_value(x_is_zero), mgr.make_true());
    limited.assert_formula(mgr.make_fp_isnormal(x));
    ASSERT_EQ(limited.check_sat(), Answer::unsat) << question;
    EXPECT_THROW(limited.pop(), std::logic_error);
  }
  EXPECT_GT(stopped, 5U);
}

TEST_F(Termination, LeavesNothingOfAssumptionsBehind) {
  const Term* long_formula = quotients_are_one("a");
  const Term* refuted = mgr.make_not(mgr.make_fp_equal(x, x));
  bool ended = false;
  for (std::uint64_t question = 0; !ended; question = after(question)) {
    Solver limited(mgr, options);
    limited.assert_formula(mgr.make_fp_iszero(x));
    stop.set(question);
    const Answer answer = limited.check_sat(std::vector{long_formula, refuted});
    ASSERT_NE(answer, Answer::sat);
    ended = answer == Answer::unsat;
    stop.clear();
    ASSERT_EQ(limited.check_sat(), Answer::sat) << question;
    ASSERT_EQ(limited.check_sat(std::vector{long_formula, refuted}), Answer::unsat) << question;
    EXPECT_EQ(limited.get_unsat_assumptions(), std::vector<std::size_t>{1});
    ASSERT_EQ(limited.check_sat(std::vector{long_formula}), Answer::sat) << question;
  }
}

TEST_F(Termination, ReachesTheNextCheckWhereAnAssertionWasNotSeenToBeRefused) {
  options.encoder = EncoderKind::base;
  Solver limited(mgr, options);
  limited.assert_formula(mgr.make_fp_iszero(x));
  limited.push();
  stop.set(0);
  for (const char* name : {"a", "b", "c"})
    limited.assert_formula(quotients_are_one(name));
  const Term* root = mgr.make_fp_sqrt(mgr.make_fprounding_even(), x);
  limited.assert_formula(mgr.make_fp_isnan(root));
  stop.clear();
  EXPECT_THROW(limited.check_sat(), std::invalid_argument);
  EXPECT_THROW(limited.check_sat(), std::invalid_argument);
  limited.pop();
  EXPECT_EQ(limited.check_sat(), Answer::sat);
}

TEST_F(Termination, OfOneSolverIsNoneOfTheManagers) {
  Solver limited(mgr, options);
  stop.set(0);
  limited.assert_formula(quotients_are_one("a"));
  EXPECT_EQ(limited.check_sat(), Answer::unknown);
  EXPECT_EQ(mgr.get_termination_test(), nullptr);
  solver.assert_formula(quotients_are_one("b"));
  EXPECT_EQ(solver.check_sat(), Answer::sat);
}

TEST_F(Termination, OfAManagerEndsAnAssertionThatIsMadeAgain) {
  mgr.set_termination_test(&stop);
  const Term* long_formula = quotients_are_one("a");
  Solver limited(mgr, options);
  stop.set(0);
  limited.assert_formula(long_formula);
  EXPECT_EQ(limited.check_sat(), Answer::unknown);
  limited.free_discarded();
  stop.clear();
  EXPECT_EQ(limited.check_sat(), Answer::sat);
  EXPECT_EQ(mgr.get_termination_test(), &stop);
  mgr.set_termination_test(nullptr);
}

}  // namespace
}  // namespace vorn::solver
