// Termination tests that throw: whatever asked, the solver goes on as if it had not been asked to
// work.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "tests/solver/solver_fixture.h"

namespace vorn::solver {
namespace {

/// Stops at the given question by an exception.
class Thrower : public TerminationTest {
 public:
  bool terminate() const override {
    if (left-- == 0) throw std::runtime_error("stop");
    return false;
  }
  mutable int left = -1;
};

TEST_F(SolverTest, GoesOnAfterATerminationTestThatThrows) {
  const Thrower thrower;
  Options options;
  options.termination_test = &thrower;
  Solver interrupted(mgr, options);
  const Term* x = variable("x", mgr.get_fp_type(4, 6));
  const Term* y = variable("y", mgr.get_fp_type(4, 6));
  const Term* rm = variable("rm", mgr.get_fprounding_type());
  const Term* product = mgr.make_fp_mul(rm, x, y);
  interrupted.assert_formula(mgr.make_fp_lt(product, mgr.make_fp_mul(rm, y, x)));
  int throws = 0;
  for (int question = 0; question < 12; ++question) {
    thrower.left = question;
    interrupted.push();
    interrupted.assert_formula(mgr.make_fp_lt(fp(question, 4, 6), product));
    try {
      interrupted.check_sat();
    } catch (const std::runtime_error&) {
      ++throws;
    }
    interrupted.pop();
  }
  EXPECT_GT(throws, 0);
  thrower.left = -1;
  EXPECT_EQ(interrupted.check_sat(), Answer::unsat);
  interrupted.reset_assertions();
  interrupted.assert_formula(mgr.make_fp_lt(fp(3, 4, 6), product));
  EXPECT_EQ(interrupted.check_sat(), Answer::sat);
}

/// The number of questions in the life of a solver that `work` is done with; one more or less in
/// another life, since the manager of terms asks once in so many steps.
template <class Work>
int count_questions(TermManager& mgr, const Work& work, Options options = circuits_only()) {
  constexpr int kMany = 1 << 30;
  Thrower thrower;
  thrower.left = kMany;
  options.termination_test = &thrower;
  Solver solver(mgr, options);
  work(solver);
  return kMany - thrower.left;
}

/// A check whose answer is sat throws at many of its questions, each in a life of its own, has its
/// answer afterwards, and leaves a solver for `further`.
template <class Check, class Further>
void expect_answers_after_throws(TermManager& mgr, const Check& check, const Further& further) {
  const int questions = count_questions(mgr, check);
  ASSERT_GT(questions, 20);
  for (int question = 0; question < questions - 1; question += 1 + questions / 50) {
    Thrower thrower;
    thrower.left = question;
    Options options = circuits_only();
    options.termination_test = &thrower;
    Solver s(mgr, options);
    EXPECT_THROW(check(s), std::runtime_error) << question;
    EXPECT_EQ(check(s), Answer::sat) << question;
    further(s, question);
  }
}

TEST_F(SolverTest, AnswersWhereverATerminationTestHasThrown) {
  // Terms, gates, clauses and conflicts: all of them ask.
  const Term* x = variable("x", mgr.get_fp_type(11, 52));
  const Term* y = variable("y", mgr.get_fp_type(11, 52));
  const Term* b = variable("b", mgr.get_bv_type(8));
  const Term* d = variable("d", mgr.get_bv_type(8));
  const Term* rm = variable("rm", mgr.get_fprounding_type());
  const Term* sum = mgr.make_fp_mul(rm, x, y);
  const Term* is_sum = mgr.make_and(mgr.make_fp_lt(sum, y), mgr.make_not(mgr.make_fp_iszero(sum)));
  const Term* square = mgr.make_equal(mgr.make_bv_mul(b, b), mgr.make_bv_add(d, b));
  const auto check = [&](Solver& s) { return s.check_sat(std::vector{square, is_sum}); };
  expect_answers_after_throws(mgr, check, [](Solver&, int) {});
}

TEST_F(SolverTest, AnswersWhereverATestHasThrownWhileArraysAreDecided) {
  // What is stated of arrays makes the terms that ask.
  const DataType* index = mgr.get_fp_type(3, 4);
  const Term* array = variable("a", mgr.get_array_type(index, index));
  const Term* read = variable("x", index);
  std::vector<const Term*> formulas;
  for (int i = 0; i < 40; ++i) {
    const Term* at = variable("i" + std::to_string(i), index);
    array = mgr.make_store(array, at, fp(i, 3, 4));
    read = mgr.make_select(array, mgr.make_fp_neg(read));
  }
  formulas.push_back(mgr.make_fp_lt(read, fp(7, 3, 4)));
  formulas.push_back(mgr.make_fp_isnormal(mgr.make_select(array, read)));
  const auto check = [&](Solver& s) { return s.check_sat(formulas); };
  expect_answers_after_throws(mgr, check, [&](Solver& s, int question) {
    s.assert_formula(mgr.make_not(mgr.make_fp_le(read, fp(7, 3, 4))));
    EXPECT_EQ(check(s), Answer::unsat) << question;
  });
}

TEST_F(SolverTest, WhatWasNotAssertedSinceATestHasThrownDoesNotHold) {
  // Asserting takes no search, so that the terms are what asks.
  const Term* x = variable("x", mgr.get_fp_type(11, 52));
  const Term* rm = variable("rm", mgr.get_fprounding_type());
  const Term* f = mgr.make_not(mgr.make_fp_isnan(x));
  const Term* sum = x;
  for (int i = 0; i < 12; ++i)
    sum = mgr.make_fp_add(rm, sum, mgr.make_fp_fma(rm, sum, x, fp(i, 11, 52)));
  const Term* contradiction = mgr.make_and(mgr.make_fp_isnan(x), mgr.make_fp_isnan(sum));
  const auto assert_it = [&](Solver& s) { s.assert_formula(contradiction); };
  Options options = circuits_only();
  options.substitution = false;  // which would put off all work to the check
  const int questions = count_questions(mgr, assert_it, options);
  ASSERT_GT(questions, 2);
  for (int question = 0; question < questions - 1; ++question) {
    Thrower thrower;
    options.termination_test = &thrower;
    Solver s(mgr, options);
    s.assert_formula(f);
    thrower.left = question;
    EXPECT_THROW(assert_it(s), std::runtime_error) << question;
    EXPECT_EQ(s.check_sat(), Answer::sat) << question;
    assert_it(s);
    EXPECT_EQ(s.check_sat(), Answer::unsat) << question;
  }
}

}  // namespace
}  // namespace vorn::solver
