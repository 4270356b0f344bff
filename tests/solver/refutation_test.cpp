// Refutation by ranges through the solver: answers, what is blamed for them, and what comes after.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/solver/solver_fixture.h"

namespace vorn::solver {
namespace {

using Places = std::vector<std::size_t>;

class Refutation : public SolverTest {
 protected:
  const Term* number(int value) {
    IEEEFloat rounded({8, 23}, IEEEFloat::rounding_mode::nearest_even);
    rounded.self_round(QNumber(value));
    return mgr.make_fp_number(rounded);
  }
  const Term* at_least(const Term* t, int value) { return mgr.make_fp_le(number(value), t); }
  const Term* at_most(const Term* t, int value) { return mgr.make_fp_le(t, number(value)); }
  const Term* add(const Term* a, const Term* b) {
    return mgr.make_fp_add(mgr.make_fprounding_even(), a, b);
  }
  const Term* mul(const Term* a, const Term* b) {
    return mgr.make_fp_mul(mgr.make_fprounding_even(), a, b);
  }
  /// x * x - 3 * x, which intervals take to be as small as -30 where x is from 0 to 10.
  const Term* make_parabola() {
    return mgr.make_fp_sub(mgr.make_fprounding_even(), mul(x, x), mul(number(3), x));
  }
  static Options without_ranges() {
    Options options = circuits_only();
    options.ranges = false;
    return options;
  }
  /// Whether formulas are unsat by circuits alone.
  bool is_unsat(const std::vector<const Term*>& formulas) {
    Solver circuits(mgr, without_ranges());
    return circuits.check_sat(formulas) == Answer::unsat;
  }
  std::uint64_t count() const { return solver.get_statistics().refutations; }

  const Term* x = variable("x", mgr.get_fp_type(8, 23));
  const Term* y = variable("y", mgr.get_fp_type(8, 23));
};

// Answers ---------------------------------------------------------------------------------------

TEST_F(Refutation, TakesNoClauses) {
  solver.assert_formula(at_least(x, 1));
  solver.assert_formula(at_most(mul(x, x), 0));
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
  EXPECT_EQ(count(), 1U);
  EXPECT_EQ(solver.get_statistics().clauses, 0U);
  EXPECT_EQ(solver.get_unsat_assumptions(), Places());
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
  EXPECT_EQ(count(), 2U);
}

TEST_F(Refutation, ByCasesTakesNoClauses) {
  solver.assert_formula(mgr.make_and(at_least(x, 0), at_most(x, 10)));
  solver.assert_formula(at_most(make_parabola(), -4));
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
  EXPECT_EQ(count(), 1U);
  EXPECT_EQ(solver.get_statistics().clauses, 0U);
}

TEST_F(Refutation, IsLeftToCircuitsWithoutTheOption) {
  Solver circuits(mgr, without_ranges());
  circuits.assert_formula(at_least(x, 1));
  circuits.assert_formula(at_most(add(x, x), 1));
  EXPECT_EQ(circuits.check_sat(), Answer::unsat);
  EXPECT_EQ(circuits.get_statistics().refutations, 0U);
  EXPECT_GT(circuits.get_statistics().clauses, 0U);
}

TEST_F(Refutation, IsLeftToCircuitsByTheBaseEncoder) {
  Options options = circuits_only();
  options.encoder = EncoderKind::base;
  Solver base(mgr, options);
  base.assert_formula(mgr.make_fp_le(number(1), x));
  base.assert_formula(mgr.make_fp_lt(x, number(1)));
  EXPECT_EQ(base.check_sat(), Answer::unsat);
  EXPECT_EQ(base.get_statistics().refutations, 0U);
}

TEST_F(Refutation, IsLeftToCircuitsWithTraces) {
  const std::string directory = std::filesystem::path(testing::TempDir()) / "vorn_refutation_test";
  std::filesystem::create_directories(directory);
  for (const bool with_proof : {false, true}) {
    Options options = circuits_only();
    options.cnf_file = directory + "/clauses";
    if (with_proof) options.proof_file = directory + "/proof";
    Solver traced(mgr, options);
    traced.assert_formula(at_least(x, 1));
    traced.assert_formula(at_most(add(x, x), 1));
    EXPECT_EQ(traced.check_sat(), Answer::unsat);
    EXPECT_EQ(traced.get_statistics().refutations, 0U);
    EXPECT_TRUE(std::filesystem::exists(options.cnf_file));
    EXPECT_EQ(std::filesystem::exists(directory + "/proof"), with_proof);
  }
  std::filesystem::remove_all(directory);
}

TEST_F(Refutation, FollowsTermsOverArraysAndFunctions) {
  const DataType* number_type = mgr.get_fp_type(8, 23);
  const Term* array = variable("a", mgr.get_array_type(number_type, number_type));
  const Term* read = mgr.make_select(array, x);
  const Symbol* f = mgr.make_unique_symbol("f", std::vector{number_type}, number_type);
  const Term* applied = mgr.make_application(f, std::vector{read});
  solver.push();
  solver.assert_formula(at_least(read, 2));
  solver.assert_formula(at_most(applied, 3));
  solver.assert_formula(mgr.make_fp_lt(add(read, number(2)), applied));
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
  EXPECT_EQ(count(), 1U);
  solver.pop();
  // Equal arguments are the business of the theory, of which ranges know nothing.
  solver.assert_formula(mgr.make_equal(x, y));
  solver.assert_formula(at_least(read, 2));
  solver.push();
  solver.assert_formula(at_most(mgr.make_select(array, y), 1));
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
  solver.pop();
  EXPECT_EQ(solver.check_sat(), Answer::sat);
}

// Levels ----------------------------------------------------------------------------------------

TEST_F(Refutation, IsOfItsLevel) {
  solver.assert_formula(at_least(x, 1));
  solver.push();
  solver.assert_formula(at_most(y, 5));
  solver.push();
  solver.assert_formula(mgr.make_fp_lt(add(x, number(8)), y));
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
  EXPECT_EQ(count(), 1U);
  solver.push();
  EXPECT_EQ(solver.check_sat(), Answer::unsat) << "a level on top of a refuted one";
  solver.pop();
  solver.pop();
  EXPECT_EQ(solver.check_sat(), Answer::sat);
  solver.assert_formula(mgr.make_fp_equal(y, x));
  EXPECT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_value(mgr.make_fp_le(x, number(5))), mgr.make_true());
  solver.push();
  solver.assert_formula(at_least(y, 6));
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
  solver.pop();
  solver.pop();
  solver.assert_formula(at_least(y, 6));
  EXPECT_EQ(solver.check_sat(), Answer::sat);
  solver.reset_assertions();
  solver.assert_formula(mgr.make_fp_lt(x, number(1)));
  EXPECT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(count(), 3U);
}

/// Cases that a check has refuted stay refuted for the level only.
TEST_F(Refutation, ByCasesIsOfItsLevel) {
  solver.assert_formula(mgr.make_and(at_least(x, 0), at_most(x, 10)));
  const Term* parabola = make_parabola();
  for (int i = 0; i < 3; ++i) {
    solver.push();
    solver.assert_formula(at_most(parabola, -4));
    EXPECT_EQ(solver.check_sat(), Answer::unsat);
    solver.pop();
    solver.push();
    solver.assert_formula(at_most(parabola, -2));
    ASSERT_EQ(solver.check_sat(), Answer::sat);
    EXPECT_EQ(solver.get_value(at_most(parabola, -2)), mgr.make_true());
    solver.pop();
  }
  EXPECT_EQ(count(), 3U);
}

TEST_F(Refutation, IsMadeAgainAfterTermsAreCollected) {
  solver.assert_formula(at_least(x, 1));
  solver.push();
  solver.assert_formula(at_most(mul(x, x), 0));
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
  solver.collect_garbage(std::vector{x});
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
  solver.pop();
  solver.collect_garbage(std::vector{x});
  EXPECT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(count(), 2U);
}

// What is blamed --------------------------------------------------------------------------------

TEST_F(Refutation, BlamesAssumptionsThatItCannotDoWithout) {
  solver.assert_formula(at_least(x, 1));
  const std::vector<const Term*> assumed = {at_most(y, 100), mgr.make_fp_isnormal(y), at_most(y, 5),
                                            mgr.make_fp_lt(add(x, number(8)), y), at_least(x, 0)};
  ASSERT_EQ(solver.check_sat(assumed), Answer::unsat);
  EXPECT_EQ(count(), 1U);
  const Places blamed = solver.get_unsat_assumptions();
  EXPECT_EQ(blamed, (Places{2, 3}));
  EXPECT_EQ(solver.get_unsat_assumptions(), blamed) << "asked once more";
  EXPECT_TRUE(is_unsat({at_least(x, 1), assumed[2], assumed[3]}));
  for (const std::size_t i : blamed) {
    std::vector<const Term*> rest = assumed;
    rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(i));
    EXPECT_EQ(solver.check_sat(rest), Answer::sat) << i;
  }
  EXPECT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_THROW(solver.get_unsat_assumptions(), std::logic_error);
}

TEST_F(Refutation, BlamesNothingWhereAssertionsAreRefuted) {
  solver.assert_formula(at_least(x, 1));
  solver.assert_formula(at_most(x, 0));
  ASSERT_EQ(solver.check_sat(std::vector{at_least(y, 1), at_most(y, 0)}), Answer::unsat);
  EXPECT_EQ(solver.get_unsat_assumptions(), Places());
}

TEST_F(Refutation, BlamesWhatCasesCannotDoWithout) {
  // Beyond these bounds products overflow, and the difference may be anything.
  const std::vector<const Term*> assumed = {at_most(y, 5), at_least(x, 0), at_most(x, 10),
                                            mgr.make_not(at_least(make_parabola(), -4))};
  ASSERT_EQ(solver.check_sat(assumed), Answer::unsat);
  EXPECT_EQ(count(), 1U);
  const Places blamed = solver.get_unsat_assumptions();
  EXPECT_EQ(blamed.back(), 3U);
  EXPECT_GT(blamed.front(), 0U);
  std::vector<const Term*> core;
  for (const std::size_t place : blamed)
    core.push_back(assumed[place]);
  EXPECT_TRUE(is_unsat(core));
}

/// One way to be unsat after the other: what was blamed for the last check is that check's.
TEST_F(Refutation, AndSearchTakeTurns) {
  const Term* z = variable("z", mgr.get_fp_type(8, 23));
  const Term* small = at_most(y, 5);
  const Term* large = mgr.make_fp_lt(add(number(8), number(1)), y);
  // Ranges know nothing of orders between constants that are not bounded.
  const std::vector<const Term*> cycle = {mgr.make_fp_lt(x, y), mgr.make_fp_lt(y, z), small,
                                          mgr.make_fp_lt(z, x)};
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(solver.check_sat(std::vector{small, large}), Answer::unsat);
    EXPECT_EQ(solver.get_unsat_assumptions(), (Places{0, 1}));
    const std::uint64_t before = count();
    ASSERT_EQ(solver.check_sat(cycle), Answer::unsat);
    EXPECT_EQ(count(), before);
    std::vector<const Term*> core;
    for (const std::size_t place : solver.get_unsat_assumptions())
      core.push_back(cycle[place]);
    EXPECT_TRUE(is_unsat(core));
  }
}

// Checks that end early -------------------------------------------------------------------------

/// Ends the work at the given question, in one of several ways.
class EndAt : public TerminationTest {
 public:
  enum class Way : std::uint8_t { stop, memory, error };

  bool terminate() const override {
    if (left < 0 || left-- > 0) return false;
    if (way == Way::memory) throw std::bad_alloc();
    if (way == Way::error) throw std::runtime_error("stop");
    return true;
  }
  Way way = Way::stop;
  mutable int left = -1;
};

TEST_F(Refutation, GoesOnWhereverItWasEnded) {
  // Everything is translated before the test is asked: what asks is the ranges.
  std::vector<const Term*> formulas = {at_least(x, 1), at_most(x, 2)};
  const Term* t = x;
  for (int i = 0; i < 1'000; ++i) {
    const Term* next = variable("t" + std::to_string(i), mgr.get_fp_type(8, 23));
    formulas.push_back(mgr.make_fp_lt(t, next));
    t = next;
  }
  const Term* bound = at_most(t, 1);
  for (const EndAt::Way way : {EndAt::Way::stop, EndAt::Way::memory, EndAt::Way::error}) {
    EndAt test;
    test.way = way;
    Options options = circuits_only();
    options.termination_test = &test;
    const auto check = [&](Solver& s, int question) {
      test.left = question;
      try {
        return s.check_sat();
      } catch (const std::runtime_error&) {
        EXPECT_EQ(way, EndAt::Way::error);
        return Answer::unknown;
      }
    };
    int ended = 0;
    for (int question = 0; ended == question; ++question) {
      test.left = -1;
      Solver s(mgr, options);
      for (const Term* f : formulas)
        s.assert_formula(f);
      s.push();
      s.assert_formula(bound);
      const Answer answer = check(s, question);
      ASSERT_NE(answer, Answer::sat);
      ended += answer == Answer::unknown ? 1 : 0;
      EXPECT_EQ(s.get_statistics().clauses, 0U) << question;
      if (question % 2 == 0) {
        EXPECT_EQ(check(s, -1), Answer::unsat) << question;
      }
      s.pop();
      test.left = -1;
      ASSERT_EQ(s.check_sat(std::vector{bound}), Answer::unsat) << question;
      EXPECT_EQ(s.get_unsat_assumptions(), Places{0});
    }
    EXPECT_GT(ended, 2);
  }
}

}  // namespace
}  // namespace vorn::solver
