// What the theory leaves open is free, but a function: equal arguments, equal results.
#include <vector>

#include "tests/solver/solver_fixture.h"

namespace vorn::solver {
namespace {

class Choices : public SolverTest {
 protected:
  const DataType* type = mgr.get_fp_type(3, 4);
  const Term* x = variable("x", type);
  const Term* y = variable("y", type);
  const Term* rm = variable("r", mgr.get_fprounding_type());
  const Term* nan = mgr.make_fp_nan(3, 4);
  const Term* pos_zero = fp(0, 3, 4);
  const Term* neg_zero = fp(0x80, 3, 4);

  const Term* differ(const Term* a, const Term* b) { return mgr.make_not(mgr.make_equal(a, b)); }
  const Term* bits(int value) { return mgr.make_bv_number(value, 8); }
  Answer check(std::vector<const Term*> formulas) {
    solver.push();
    for (const Term* f : formulas)
      solver.assert_formula(f);
    const Answer answer = solver.check_sat();
    solver.pop();
    return answer;
  }
};

TEST_F(Choices, AConversionOutOfRangeHasAnyValue) {
  const Term* of_nan = mgr.make_fp_to_ubv(8, mgr.make_fprounding_even(), nan);
  EXPECT_EQ(check({mgr.make_equal(of_nan, bits(0))}), Answer::sat);
  EXPECT_EQ(check({mgr.make_equal(of_nan, bits(0xab))}), Answer::sat);
  const Term* narrow = mgr.make_fp_to_sbv(2, mgr.make_fprounding_even(), fp(0x40, 3, 4));
  EXPECT_EQ(check({mgr.make_equal(narrow, mgr.make_bv_number(3, 2))}), Answer::sat);
}

TEST_F(Choices, EqualArgumentsHaveEqualConversions) {
  const Term* of_x = mgr.make_fp_to_ubv(8, rm, x);
  const Term* of_y = mgr.make_fp_to_ubv(8, rm, y);
  EXPECT_EQ(check({differ(of_x, of_y), mgr.make_equal(x, y)}), Answer::unsat);
  EXPECT_EQ(check({differ(of_x, of_y), mgr.make_fp_isnan(x), mgr.make_fp_isnan(y)}), Answer::unsat);
  EXPECT_EQ(check({differ(of_x, of_y), mgr.make_fp_isnan(x), mgr.make_fp_isinf(y)}), Answer::sat);
  const Term* other = mgr.make_fp_to_ubv(8, variable("s", mgr.get_fprounding_type()), x);
  EXPECT_EQ(check({differ(of_x, other), mgr.make_fp_isnan(x)}), Answer::sat);
}

TEST_F(Choices, ConversionsOfOtherKindsAndWidthsHaveChoicesOfTheirOwn) {
  const Term* even = mgr.make_fprounding_even();
  const Term* ubv = mgr.make_fp_to_ubv(8, even, nan);
  const Term* sbv = mgr.make_fp_to_sbv(8, even, nan);
  const Term* wide = mgr.make_fp_to_ubv(9, even, nan);
  EXPECT_EQ(check({differ(ubv, sbv), differ(mgr.make_bv_zero_extend(1, ubv), wide)}), Answer::sat);
}

TEST_F(Choices, ManyConversionsOfEqualValuesAgree) {
  // Pairwise different results for NaN operands cannot be had; two values out of range can.
  std::vector<const Term*> formulas;
  std::vector<const Term*> results;
  for (int i = 0; i < 6; ++i) {
    const Term* v = variable("v", type);
    formulas.push_back(mgr.make_or(mgr.make_fp_isnan(v), mgr.make_fp_isinf(v)));
    results.push_back(mgr.make_fp_to_sbv(8, mgr.make_fprounding_even(), v));
  }
  // NaN and two infinities: three different results at most.
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < i; ++j)
      formulas.push_back(differ(results[i], results[j]));
  }
  EXPECT_EQ(check(formulas), Answer::sat);
  for (int i = 0; i < 3; ++i)
    formulas.push_back(differ(results[3], results[i]));
  EXPECT_EQ(check(formulas), Answer::unsat);
}

TEST_F(Choices, TheValueOfATermThatWasNotAssertedKeepsToTheModel) {
  const Term* of_x = mgr.make_fp_to_ubv(8, rm, x);
  solver.assert_formula(mgr.make_equal(of_x, bits(0x5c)));
  solver.assert_formula(mgr.make_fp_isnan(x));
  solver.assert_formula(mgr.make_equal(rm, mgr.make_fprounding_zero()));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_value(mgr.make_fp_to_ubv(8, mgr.make_fprounding_zero(), nan)), bits(0x5c));
  EXPECT_EQ(solver.get_value(of_x), bits(0x5c));
}

/// What comes from an integer is no NaN, so rewriting drops the integer.
TEST_F(Choices, AConversionThatRewritingDropsKeepsToTheModel) {
  const auto drop = [this](const Term* conversion) {
    return mgr.make_not(mgr.make_fp_isnan(mgr.make_fp_from_ubv(3, 4, rm, conversion)));
  };
  const Term* first = mgr.make_fp_to_ubv(8, rm, x);
  const Term* second = mgr.make_fp_to_ubv(8, rm, y);
  const Term* third = mgr.make_fp_to_ubv(8, rm, nan);
  solver.assert_formula(mgr.make_and(drop(first), drop(third)));
  solver.assert_formula(mgr.make_and(mgr.make_fp_isnan(x), mgr.make_fp_isnan(y)));
  solver.assert_formula(mgr.make_equal(second, bits(0xab)));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  for (const Term* conversion : {first, second, third})
    EXPECT_EQ(solver.get_value(conversion), bits(0xab));
  // Dropped on one level, needed on another.
  solver.push();
  solver.assert_formula(mgr.make_equal(first, bits(0xcd)));
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
  solver.pop();
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_value(first), bits(0xab));
}

TEST_F(Choices, MinimumOfDifferentZerosIsAFunctionOfTheOperands) {
  const Term* min = mgr.make_fp_min(pos_zero, neg_zero);
  const Term* swapped = mgr.make_fp_min(neg_zero, pos_zero);
  EXPECT_EQ(check({mgr.make_equal(min, pos_zero)}), Answer::sat);
  EXPECT_EQ(check({mgr.make_equal(min, neg_zero)}), Answer::sat);
  EXPECT_EQ(check({differ(min, swapped)}), Answer::sat);
  EXPECT_EQ(check({differ(min, mgr.make_fp_max(pos_zero, neg_zero))}), Answer::sat);
  EXPECT_EQ(check({differ(min, pos_zero), differ(min, neg_zero)}), Answer::unsat);
  EXPECT_EQ(check({differ(mgr.make_fp_min(x, y), min), mgr.make_equal(x, pos_zero),
                   mgr.make_equal(y, neg_zero)}),
            Answer::unsat);
}

TEST_F(Choices, ComeBackAfterAPop) {
  const Term* of_nan = mgr.make_fp_to_ubv(8, rm, nan);
  const Term* of_x = mgr.make_fp_to_ubv(8, rm, x);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(check({differ(of_nan, of_x), mgr.make_fp_isnan(x)}), Answer::unsat);
    EXPECT_EQ(check({differ(of_nan, of_x)}), Answer::sat);
  }
}

// Assumptions, garbage and limits ---------------------------------------------------------------

TEST_F(Choices, UnsatAssumptionsAreUnsatisfiable) {
  const Term* p = variable("p", mgr.get_bool_type());
  solver.assert_formula(mgr.make_implies(p, mgr.make_fp_isnan(x)));
  const Term* assumed[] = {mgr.make_fp_isinf(y), p, mgr.make_fp_isinf(x)};
  ASSERT_EQ(solver.check_sat(assumed), Answer::unsat);
  EXPECT_EQ(solver.get_unsat_assumptions(), (std::vector<std::size_t>{1, 2}));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_THROW(solver.get_unsat_assumptions(), std::logic_error);
}

TEST_F(Choices, CollectingGarbageKeepsAssertionsAndLevels) {
  solver.assert_formula(mgr.make_fp_lt(x, y));
  solver.push();
  solver.assert_formula(mgr.make_fp_lt(y, fp(0x11, 3, 4)));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  const Term* kept[] = {x, y, pos_zero};
  const std::uint64_t before = mgr.get_live_count();
  solver.collect_garbage(kept);
  EXPECT_THROW(solver.get_value(x), std::logic_error);
  EXPECT_LE(mgr.get_live_count(), before);
  EXPECT_EQ(check({mgr.make_fp_lt(fp(0x11, 3, 4), x)}), Answer::unsat);
  EXPECT_EQ(solver.check_sat(), Answer::sat);
  solver.pop();
  EXPECT_EQ(check({mgr.make_fp_lt(fp(0x11, 3, 4), x)}), Answer::sat);
}

TEST_F(Choices, WhatIsAssertedAgainIsTheSameFormula) {
  const auto round = [&] {
    check({mgr.make_fp_lt(mgr.make_fp_add(rm, x, y), mgr.make_fp_mul(rm, x, y)),
           mgr.make_equal(mgr.make_fp_to_sbv(8, rm, x), bits(5))});
  };
  round();
  const std::uint64_t terms = mgr.get_live_count();
  for (int i = 0; i < 20; ++i)
    round();
  EXPECT_EQ(mgr.get_live_count(), terms);
}

TEST_F(Choices, TheBaseEncoderRefusesWhatItHasNoCircuitFor) {
  Options options;
  options.encoder = EncoderKind::base;
  Solver base(mgr, options);
  EXPECT_THROW(base.assert_formula(mgr.make_fp_isnan(mgr.make_fp_sqrt(rm, x))),
               std::invalid_argument);
  EXPECT_THROW(base.assert_formula(mgr.make_fp_isnegative(x)), std::invalid_argument);
  base.assert_formula(mgr.make_fp_isnan(x));
  EXPECT_EQ(base.check_sat(), Answer::sat);
}

/// Ends work after a number of questions.
class Countdown : public TerminationTest {
 public:
  explicit Countdown(int questions) : left(questions) {}
  bool terminate() const override { return left-- <= 0; }

 private:
  mutable int left;
};

TEST_F(Choices, ACheckCanBeEndedWhileCircuitsAreBuilt) {
  const Countdown soon(20);
  Options options = circuits_only();
  options.abstraction = AbstractionKind::none;
  options.termination_test = &soon;
  Solver limited(mgr, options);
  const DataType* wide = mgr.get_fp_type(11, 52);
  const Term* a = variable("a", wide);
  const Term* b = variable("b", wide);
  limited.assert_formula(mgr.make_fp_lt(mgr.make_fp_rem(a, b), a));
  EXPECT_EQ(limited.check_sat(), Answer::unknown);
  EXPECT_LT(limited.get_statistics().variables, 1000U);
  EXPECT_TRUE(limited.get_statistics().interrupted);
}

TEST_F(Choices, ACheckCanBeEndedAtAnyQuestion) {
  const Term* of_x = mgr.make_fp_to_ubv(8, rm, x);
  const Term* of_y = mgr.make_fp_to_ubv(8, rm, y);
  bool decided = false;
  for (int questions = 0; !decided; ++questions) {
    const Countdown limit(questions);
    Options options = circuits_only();
    options.termination_test = &limit;
    Solver limited(mgr, options);
    limited.assert_formula(mgr.make_fp_isnan(x));
    limited.assert_formula(mgr.make_fp_isnan(y));
    limited.assert_formula(differ(of_x, of_y));
    const Answer answer = limited.check_sat();
    ASSERT_NE(answer, Answer::sat);
    decided = answer == Answer::unsat;
    // The limit is still over: what is no check must not ask.
    limited.set_seed(1);
    limited.push();
    limited.pop();
  }
}

}  // namespace
}  // namespace vorn::solver
