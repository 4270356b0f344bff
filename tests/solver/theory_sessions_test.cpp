// Arrays, functions and sorts in the course of a session: levels, assumptions, collections, checks
// that end early, values, traces, and thousands of rounds.
#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/solver/solver_fixture.h"
#include "vorn/utils/termination_test.h"

namespace vorn::solver {
namespace {

using Terms = std::vector<const Term*>;
using Sorts = std::vector<const DataType*>;

class TheorySessions : public SolverTest {
 protected:
  const Term* differ(const Term* s, const Term* t) { return mgr.make_not(mgr.make_equal(s, t)); }
  const Term* byte(int value) { return mgr.make_bv_number(value, 8); }
  const Term* apply(const Term* t) { return mgr.make_application(f, Terms{t}); }

  const DataType* byte_type = mgr.get_bv_type(8);
  const DataType* memory = mgr.get_array_type(byte_type, byte_type);
  const DataType* people = mgr.get_uninterpreted_type("People");
  const Term* a = variable("a", memory);
  const Term* b = variable("b", memory);
  const Term* i = variable("i", byte_type);
  const Term* j = variable("j", byte_type);
  const Term* p = variable("p", people);
  const Term* q = variable("q", people);
  const Symbol* f = mgr.make_unique_symbol("f", Sorts{people}, memory);
  const Term* reads_differ = differ(mgr.make_select(a, i), mgr.make_select(b, j));
  const Term* values_differ = differ(mgr.make_select(apply(p), i), mgr.make_select(apply(q), i));
};

TEST_F(TheorySessions, StatementsGoWithTheirLevel) {
  solver.assert_formula(reads_differ);
  for (int round = 0; round < 3; ++round) {
    solver.push();
    solver.assert_formula(mgr.make_equal(a, b));
    ASSERT_EQ(solver.check_sat(), Answer::sat);
    EXPECT_NE(solver.get_value(i), solver.get_value(j));
    solver.push();
    solver.assert_formula(mgr.make_equal(i, j));
    ASSERT_EQ(solver.check_sat(), Answer::unsat);
    solver.pop();
    ASSERT_EQ(solver.check_sat(), Answer::sat);
    solver.pop();
    ASSERT_EQ(solver.check_sat(Terms{mgr.make_equal(i, j)}), Answer::sat);
    EXPECT_NE(solver.get_value(a), solver.get_value(b));
  }
}

TEST_F(TheorySessions, AssumptionsAreRefutedByWhatIsNeededOfThem) {
  solver.assert_formula(values_differ);
  const Terms assumed = {mgr.make_equal(i, j), mgr.make_equal(p, q), reads_differ};
  for (int round = 0; round < 3; ++round) {
    ASSERT_EQ(solver.check_sat(assumed), Answer::unsat);
    EXPECT_EQ(solver.get_unsat_assumptions(), std::vector<std::size_t>{1});
    ASSERT_EQ(solver.check_sat(Terms{assumed[0], assumed[2]}), Answer::sat);
    EXPECT_NE(solver.get_value(p), solver.get_value(q));
  }
}

TEST_F(TheorySessions, GoOnAfterAResetAndACollection) {
  const Terms all = {reads_differ, values_differ, mgr.make_equal(a, b)};
  for (int round = 0; round < 3; ++round) {
    for (const Term* formula : all)
      solver.assert_formula(formula);
    ASSERT_EQ(solver.check_sat(), Answer::sat);
    solver.collect_garbage(Terms{a, b, i, j, p, q, apply(p), all[0], all[1], all[2]});
    ASSERT_EQ(solver.check_sat(), Answer::sat);
    for (const Term* formula : all)
      EXPECT_EQ(solver.get_value(formula), mgr.make_true());
    ASSERT_EQ(solver.check_sat(Terms{mgr.make_equal(i, j)}), Answer::unsat);
    solver.reset_assertions();
    ASSERT_EQ(solver.check_sat(Terms{mgr.make_equal(i, j), reads_differ}), Answer::sat);
  }
}

TEST_F(TheorySessions, InfiniteSortsAreForgottenWithTheirLevel) {
  const DataType* type = mgr.get_array_type(people, byte_type);
  const Term* few = mgr.make_store(mgr.make_const_array(type, byte(0)), p, byte(1));
  const Term* same = mgr.make_equal(few, mgr.make_const_array(type, byte(1)));
  const Term* never = mgr.make_and(values_differ, mgr.make_equal(p, q));
  for (int round = 0; round < 3; ++round) {
    solver.push();
    solver.assert_formula(same);
    EXPECT_EQ(solver.check_sat(), Answer::unknown);
    EXPECT_THROW(solver.get_unsat_assumptions(), std::logic_error);
    solver.pop();
    EXPECT_EQ(solver.check_sat(Terms{never}), Answer::unsat);
    EXPECT_EQ(solver.check_sat(Terms{same}), Answer::unknown);
    EXPECT_EQ(solver.check_sat(Terms{never}), Answer::unsat);
    EXPECT_EQ(solver.check_sat(), Answer::sat);
  }
}

TEST_F(TheorySessions, ValuesFitTogether) {
  EXPECT_THROW(solver.get_function(f), std::logic_error);
  solver.assert_formula(values_differ);
  solver.assert_formula(differ(a, apply(p)));
  solver.assert_formula(mgr.make_equal(mgr.make_select(a, i), byte(77)));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_value(mgr.make_select(solver.get_value(a), solver.get_value(i))), byte(77));
  const auto look_up = [&](const FunctionValue& function, const Term* argument) {
    for (const FunctionValue::Entry& entry : function.entries) {
      if (entry.arguments == Terms{argument}) return entry.value;
    }
    return function.otherwise;
  };
  const FunctionValue function = solver.get_function(f);
  for (const Term* t : {p, q})
    EXPECT_EQ(look_up(function, solver.get_value(t)), solver.get_value(apply(t)));
  EXPECT_NE(solver.get_value(apply(p)), solver.get_value(apply(q)));
  // What no formula has is plain.
  const Symbol* g = mgr.make_unique_symbol("g", Sorts{byte_type}, byte_type);
  EXPECT_TRUE(solver.get_function(g).entries.empty());
  EXPECT_EQ(solver.get_function(g).otherwise, byte(0));
  EXPECT_EQ(solver.get_value(mgr.make_application(g, Terms{i})), byte(0));
  EXPECT_EQ(solver.get_value(mgr.make_select(variable("c", memory), i)), byte(0));
}

// Ends ------------------------------------------------------------------------------------------

/// Says stop at the question with the given number, counted from 0, and ever after.
class StopAt final : public TerminationTest {
 public:
  bool terminate() const override { return asked++ >= question; }
  std::uint64_t question = ~std::uint64_t{0};
  mutable std::uint64_t asked = 0;
};

TEST_F(TheorySessions, AChecksEndIsNotThatOfTheNext) {
  StopAt stop;
  Options options = circuits_only();
  options.termination_test = &stop;
  const Term* indices_equal = mgr.make_equal(i, j);
  const Term* sorted = mgr.make_true();
  for (int k = 0; k < 12; ++k) {
    const Term* low = mgr.make_select(mgr.make_store(a, i, byte(k)), byte(k));
    sorted = mgr.make_and(sorted, mgr.make_bv_ult(low, mgr.make_select(a, byte(k + 1))));
  }
  int stopped = 0;
  bool ended = false;
  for (std::uint64_t question = 0; !ended; question += 1 + question / 3) {
    Solver limited(mgr, options);
    stop.question = question;
    stop.asked = 0;
    for (const Term* formula : {mgr.make_equal(a, b), sorted, reads_differ, values_differ})
      limited.assert_formula(formula);
    const Answer answer = limited.check_sat();
    ASSERT_NE(answer, Answer::unsat);
    ended = answer == Answer::sat;
    stopped += ended ? 0 : 1;
    stop.question = ~std::uint64_t{0};
    ASSERT_EQ(limited.check_sat(), Answer::sat) << question;
    EXPECT_EQ(limited.get_value(sorted), mgr.make_true());
    EXPECT_EQ(limited.get_value(reads_differ), mgr.make_true());
    ASSERT_EQ(limited.check_sat(Terms{indices_equal}), Answer::unsat) << question;
  }
  EXPECT_GT(stopped, 5);
}

/// Rounds with constants and a function of their own, and a collection now and then.
TEST_F(TheorySessions, TenThousandRoundsStayWithinBounds) {
  std::uint64_t early = 0;
  std::uint64_t late = 0;
  for (int round = 0; round < 10'000; ++round) {
    solver.push();
    const Term* c = variable("c", memory);
    const Term* r = variable("r", people);
    const Symbol* g = mgr.make_unique_symbol("g", Sorts{people, memory}, byte_type);
    const Term* written = mgr.make_store(c, i, byte(round % 256));
    const Term* at_p = mgr.make_application(g, Terms{p, written});
    const Term* at_r = mgr.make_application(g, Terms{r, c});
    solver.assert_formula(differ(at_p, at_r));
    solver.assert_formula(mgr.make_equal(p, r));
    if (round % 2 == 0) solver.assert_formula(mgr.make_equal(written, c));
    ASSERT_EQ(solver.check_sat(), round % 2 == 0 ? Answer::unsat : Answer::sat) << round;
    solver.pop();
    if (round % 100 == 99) {
      solver.collect_garbage(Terms{a, b, i, j, p, q, apply(p), reads_differ, values_differ});
      std::uint64_t& most = round < 2'000 ? early : late;
      most = std::max(most, mgr.get_live_count());
    }
  }
  EXPECT_LE(late, early + early / 2);
}

// Traces ----------------------------------------------------------------------------------------

TEST_F(TheorySessions, ATraceHasTheStatements) {
  for (const bool is_refuted : {true, false}) {
    Options options = circuits_only();
    options.cnf_file = testing::TempDir() + "vorn_theory.cnf";
    options.proof_file = testing::TempDir() + "vorn_theory.drat";
    Solver traced(mgr, options);
    traced.push();
    traced.assert_formula(mgr.make_equal(a, b));
    traced.assert_formula(reads_differ);
    const Answer expected = is_refuted ? Answer::unsat : Answer::sat;
    const Term* indices = mgr.make_equal(i, j);
    ASSERT_EQ(traced.check_sat(Terms{is_refuted ? indices : mgr.make_not(indices)}), expected);
    EXPECT_EQ(traced.get_statistics().lemmas > 0, is_refuted);
    expect_clauses_of(traced, options.cnf_file, 0);
    if (!is_refuted) {
      EXPECT_EQ(traced.get_value(reads_differ), mgr.make_true());
    }
  }
}

}  // namespace
}  // namespace vorn::solver
