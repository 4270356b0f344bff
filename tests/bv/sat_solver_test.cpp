// The SAT interface with CaDiCaL behind it.
#include "vorn/bv/sat_solver.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace vorn::bv {
namespace {

using Result = SatSolver::Result;

class CadicalSolver : public ::testing::Test {
 protected:
  std::unique_ptr<SatSolver> solver = make_cadical_solver();
};

/// Says stop after it was asked a number of times.
class CountedTest final : public TerminationTest {
 public:
  explicit CountedTest(int questions) : left(questions) {}
  bool terminate() const override { return left-- <= 0; }

 private:
  mutable int left;
};

/// n + 1 pigeons in n holes: unsatisfiable, and hard enough to be interrupted.
void add_pigeons(SatSolver& solver, int holes) {
  std::vector<std::vector<int>> at;
  for (int pigeon = 0; pigeon <= holes; ++pigeon) {
    std::vector<int> somewhere(static_cast<std::size_t>(holes));
    for (int& at_hole : somewhere)
      at_hole = solver.new_variable();
    solver.add_clause(somewhere);
    for (const auto& other : at) {
      for (std::size_t hole = 0; hole < other.size(); ++hole) {
        solver.add_clause({-other[hole], -somewhere[hole]});
      }
    }
    at.push_back(somewhere);
  }
}

TEST_F(CadicalSolver, FindsModels) {
  const int a = solver->new_variable();
  const int b = solver->new_variable();
  solver->add_clause({a, b});
  solver->add_clause({-a});
  ASSERT_EQ(solver->solve(), Result::sat);
  EXPECT_FALSE(solver->value(a));
  EXPECT_TRUE(solver->value(-a));
  EXPECT_TRUE(solver->value(b));
  EXPECT_FALSE(solver->value(-b));
}

TEST_F(CadicalSolver, GivesVariablesThatNoClauseMentionsAValue) {
  const int a = solver->new_variable();
  ASSERT_EQ(solver->solve(), Result::sat);
  EXPECT_NE(solver->value(a), solver->value(-a));
}

TEST_F(CadicalSolver, ForgetsAssumptionsAfterOneAnswer) {
  const int a = solver->new_variable();
  const int b = solver->new_variable();
  const int c = solver->new_variable();
  solver->add_clause({-a, -b});
  solver->assume(a);
  solver->assume(b);
  solver->assume(c);
  ASSERT_EQ(solver->solve(), Result::unsat);
  EXPECT_TRUE(solver->failed(a) || solver->failed(b));
  EXPECT_FALSE(solver->failed(c));
  EXPECT_EQ(solver->solve(), Result::sat);
}

TEST_F(CadicalSolver, IsUnsatForGoodAfterTheEmptyClause) {
  solver->add_clause({});
  EXPECT_EQ(solver->solve(), Result::unsat);
  EXPECT_EQ(solver->solve(), Result::unsat);
}

TEST_F(CadicalSolver, StopsWithUnknownWhenTheTestSaysSo) {
  add_pigeons(*solver, 12);
  const CountedTest test(5);
  solver->set_termination_test(&test);
  EXPECT_EQ(solver->solve(), Result::unknown);
}

TEST_F(CadicalSolver, DoesNotStartWhenTheTestSaysStopAtOnce) {
  const int a = solver->new_variable();
  solver->add_clause({a});
  const CountedTest test(0);
  solver->set_termination_test(&test);
  solver->assume(-a);
  EXPECT_EQ(solver->solve(), Result::unknown);
  solver->set_termination_test(nullptr);
  EXPECT_EQ(solver->solve(), Result::sat) << "the assumption went with the call";
}

TEST_F(CadicalSolver, GoesOnWhereItWasStoppedWhileClausesAreHandedOver) {
  // A chain of implications: what follows from its beginning needs every clause.
  const int first = solver->new_variable();
  int last = first;
  for (int i = 0; i < 20'000; ++i) {
    const int next = solver->new_variable();
    solver->add_clause({-last, next});
    last = next;
  }
  for (int chunk = 0; chunk < 3; ++chunk) {
    const CountedTest test(1);
    solver->set_termination_test(&test);
    solver->assume(first);
    ASSERT_EQ(solver->solve(), Result::unknown);
  }
  solver->set_termination_test(nullptr);
  solver->assume(first);
  ASSERT_EQ(solver->solve(), Result::sat);
  EXPECT_TRUE(solver->value(last));
  solver->assume(first);
  solver->assume(-last);
  EXPECT_EQ(solver->solve(), Result::unsat);
}

TEST_F(CadicalSolver, HasNoLimitOfConflictsAfterACallThatWasStopped) {
  add_pigeons(*solver, 6);
  const CountedTest test(0);
  solver->set_termination_test(&test);
  solver->limit_conflicts(1);
  ASSERT_EQ(solver->solve(), Result::unknown);
  solver->set_termination_test(nullptr);
  EXPECT_EQ(solver->solve(), Result::unsat);
}

TEST_F(CadicalSolver, RefusesLiteralsOfNoVariable) {
  const int a = solver->new_variable();
  EXPECT_THROW(solver->add_clause({a, 0}), std::invalid_argument);
  EXPECT_THROW(solver->add_clause({a + 1}), std::invalid_argument);
  EXPECT_THROW(solver->assume(-a - 1), std::invalid_argument);
  EXPECT_EQ(solver->get_clause_count(), 0U);
}

TEST_F(CadicalSolver, RefusesQuestionsThatTheLastAnswerDoesNotSettle) {
  const int a = solver->new_variable();
  EXPECT_THROW(solver->value(a), std::logic_error);
  EXPECT_THROW(solver->failed(a), std::logic_error);
  ASSERT_EQ(solver->solve(), Result::sat);
  EXPECT_THROW(solver->failed(a), std::logic_error);
  solver->add_clause({a});
  EXPECT_THROW(solver->value(a), std::logic_error);
}

TEST_F(CadicalSolver, CountsVariablesAndClauses) {
  add_pigeons(*solver, 2);
  EXPECT_EQ(solver->get_variable_count(), 6U);
  EXPECT_EQ(solver->get_clause_count(), 9U);
}

}  // namespace
}  // namespace vorn::bv
