// Recorded clauses and the texts that go to SAT solvers and come from them.
#include "vorn/bv/dimacs.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/bv/random_graph.h"
#include "vorn/bv/cnf.h"

namespace vorn::bv {
namespace {

using Result = SatSolver::Result;

/// A formula in DIMACS as a reader that knows nothing of the writer sees it.
struct Formula {
  std::vector<std::string> comments;
  int variables = 0;
  std::vector<std::vector<int>> clauses;
};

Formula read_formula(const std::string& text) {
  Formula formula;
  std::istringstream in(text);
  std::string line;
  while (in.peek() == 'c' && std::getline(in, line))
    formula.comments.push_back(line);
  std::string p;
  std::string cnf;
  std::size_t count = 0;
  in >> p >> cnf >> formula.variables >> count;
  EXPECT_EQ(p + " " + cnf, "p cnf");
  std::vector<int> clause;
  for (int literal = 0; in >> literal;) {
    if (literal != 0) {
      clause.push_back(literal);
    } else {
      formula.clauses.push_back(std::exchange(clause, {}));
    }
  }
  EXPECT_TRUE(in.eof() && clause.empty());
  EXPECT_EQ(formula.clauses.size(), count);
  return formula;
}

std::string write(const ClauseRecorder& recorder, const std::vector<std::string>& comments = {}) {
  std::ostringstream out;
  write_dimacs(out, recorder, comments);
  return out.str();
}

TEST(Dimacs, WritesWhatWasRecorded) {
  ClauseRecorder recorder;
  const int a = recorder.new_variable();
  const int b = recorder.new_variable();
  recorder.add_clause({a, -b});
  recorder.add_clause({});
  recorder.add_clause({b});
  EXPECT_EQ(write(recorder, {"one", "two words"}),
            "c one\nc two words\np cnf 2 3\n1 -2 0\n0\n2 0\n");
  EXPECT_EQ(recorder.get_variable_count(), 2U);
  EXPECT_EQ(recorder.get_clause_count(), 3U);
  EXPECT_EQ(write(ClauseRecorder()), "p cnf 0 0\n");
}

TEST(Dimacs, SaysOfACircuitWhatItsTruthTableSays) {
  int satisfiable = 0;
  for (std::uint64_t seed = 0; seed < 400; ++seed) {
    RandomGraph random(seed);
    for (int i = 0; i < 40; ++i)
      random.grow();
    const Function f = random.pick();
    const Function g = random.pick();
    ClauseRecorder recorder;
    Cnf cnf(random.graph, recorder);
    cnf.assert_true(f.lit);
    cnf.assert_true(g.lit);
    std::vector<int> inputs;
    for (std::size_t i = 0; i < RandomGraph::kInputs; ++i)
      inputs.push_back(cnf.literal(random.get_input(i)));

    const Formula formula = read_formula(write(recorder));
    const auto solver = make_cadical_solver();
    for (int v = 0; v < formula.variables; ++v)
      solver->new_variable();
    for (const std::vector<int>& clause : formula.clauses)
      solver->add_clause(clause);
    const std::uint64_t models = f.table & g.table;
    ASSERT_EQ(solver->solve(), models != 0 ? Result::sat : Result::unsat) << "seed " << seed;
    if (models == 0) continue;
    ++satisfiable;
    std::size_t assignment = 0;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
      if (solver->value(inputs[i])) assignment |= std::size_t{1} << i;
    }
    ASSERT_TRUE((models >> assignment & 1U) != 0) << "seed " << seed;
  }
  EXPECT_GT(satisfiable, 50);
  EXPECT_LT(satisfiable, 400);
}

TEST(ClauseRecorder, DecidesNothingAlone) {
  ClauseRecorder recorder;
  const int a = recorder.new_variable();
  EXPECT_THROW(recorder.solve(), std::logic_error);
  EXPECT_THROW(recorder.assume(a), std::logic_error);
  EXPECT_THROW(static_cast<void>(recorder.value(a)), std::logic_error);
  EXPECT_THROW(recorder.add_clause({a + 1}), std::invalid_argument);
  EXPECT_THROW(recorder.add_clause({0}), std::invalid_argument);
  EXPECT_EQ(recorder.get_clause_count(), 0U);
}

TEST(ClauseRecorder, DecidesAsTheSolverBehindItDoes) {
  ClauseRecorder recorder(make_cadical_solver());
  const int a = recorder.new_variable();
  const int b = recorder.new_variable();
  recorder.add_clause({a, b});
  recorder.assume(-a);
  ASSERT_EQ(recorder.solve(), Result::sat);
  EXPECT_TRUE(recorder.value(b));
  recorder.add_clause({-b});
  recorder.assume(-a);
  ASSERT_EQ(recorder.solve(), Result::unsat);
  EXPECT_TRUE(recorder.failed(-a));
  EXPECT_EQ(write(recorder), "p cnf 2 2\n1 2 0\n-2 0\n");
}

Solution read(const std::string& text, std::uint64_t variables = 3) {
  std::istringstream in(text);
  return read_solution(in, variables);
}

TEST(Solution, IsReadFromAnAnswer) {
  const Solution sat = read("c comment\n\ns SATISFIABLE\r\nv 1 -2\nv 0\nc bye\n");
  EXPECT_EQ(sat.result, Result::sat);
  EXPECT_TRUE(sat.value(1));
  EXPECT_FALSE(sat.value(-1));
  EXPECT_FALSE(sat.value(2));
  EXPECT_TRUE(sat.value(-2));
  EXPECT_FALSE(sat.value(3)) << "left out";
  EXPECT_EQ(read("v 3 0\ns SATISFIABLE").value(3), true) << "the order is free";
  EXPECT_EQ(read("s UNSATISFIABLE\n").result, Result::unsat);
  EXPECT_EQ(read("s UNKNOWN\n").result, Result::unknown);
}

TEST(Solution, IsRefusedWhereItIsWrong) {
  struct Case {
    std::string text;
    std::uint32_t line;
    std::string message;
  };
  const Case cases[] = {
      {"", 1, "there is no answer"},
      {"c\nc\n", 3, "there is no answer"},
      {"s MAYBE\n", 1, "expected SATISFIABLE"},
      {"s UNSATISFIABLE\ns UNSATISFIABLE\n", 2, "a second answer"},
      {"s SATISFIABLE\nv 1 2\n", 1, "not ended by 0"},
      {"s SATISFIABLE\nv 1 -1 0\n", 2, "both"},
      {"s SATISFIABLE\nv 1\nv 4 0\n", 3, "literal 4 is of none of the 3 variables"},
      {"s SATISFIABLE\nv 1 0 2\n", 2, "after the 0"},
      {"s SATISFIABLE\nv 1x 0\n", 2, "'1x' is no literal"},
      {"s SATISFIABLE\nv 99999999999 0\n", 2, "is no literal"},
      {"SAT\n1 2 0\n", 1, "expected a line that begins"},
  };
  for (const Case& c : cases) {
    try {
      read(c.text);
      ADD_FAILURE() << "accepted: " << c.text;
    } catch (const DimacsError& error) {
      EXPECT_EQ(error.get_line(), c.line) << c.text;
      EXPECT_NE(std::string(error.what()).find(c.message), std::string::npos) << error.what();
    }
  }
}

}  // namespace
}  // namespace vorn::bv
