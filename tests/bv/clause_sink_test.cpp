// Clauses handed to a function, against those that a recorder keeps.
#include "vorn/bv/clause_sink.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>
#include <span>
#include <stdexcept>
#include <vector>

#include "tests/bv/random_graph.h"
#include "vorn/bv/cnf.h"
#include "vorn/bv/dimacs.h"

namespace vorn::bv {
namespace {

TEST(ClauseSink, GetsTheClausesThatARecorderGets) {
  for (std::uint64_t seed = 0; seed < 200; ++seed) {
    RandomGraph random(seed);
    for (int i = 0; i < 40; ++i)
      random.grow();
    const Function f = random.pick();
    ClauseRecorder recorder;
    Cnf(random.graph, recorder).assert_true(f.lit);

    std::vector<int> clauses;
    ClauseSink sink([&](std::span<const int> literals) {
      clauses.insert(clauses.end(), literals.begin(), literals.end());
      clauses.push_back(0);
    });
    Cnf(random.graph, sink).assert_true(f.lit);
    const std::span<const int> expected = recorder.get_clauses();
    EXPECT_EQ(clauses, std::vector<int>(expected.begin(), expected.end())) << seed;
    EXPECT_EQ(sink.get_variable_count(), recorder.get_variable_count());
    EXPECT_EQ(sink.get_clause_count(), recorder.get_clause_count());
  }
}

TEST(ClauseSink, ReadsModelsOfItsOwner) {
  Aig graph;
  const Lit a = graph.make_input();
  const Lit b = graph.make_input();
  const Lit unused = graph.make_input();
  const auto solver = make_cadical_solver();
  int made = 0;
  ClauseSink sink(
      [&](std::span<const int> literals) {
        for (const int literal : literals) {
          while (made < std::abs(literal))
            made = solver->new_variable();
        }
        solver->add_clause(literals);
      },
      [&](int literal) { return solver->value(literal); });
  Cnf cnf(graph, sink);
  cnf.assert_true(graph.make_or(graph.make_and(a, !b), kFalse));
  ASSERT_EQ(solver->solve(), SatSolver::Result::sat);
  EXPECT_TRUE(cnf.value(a));
  EXPECT_FALSE(cnf.value(b));
  EXPECT_TRUE(cnf.value(!b));
  EXPECT_FALSE(cnf.value(unused));
}

TEST(ClauseSink, HasNoValuesWithoutAFunctionForThem) {
  ClauseSink sink([](std::span<const int>) {});
  const int x = sink.new_variable();
  EXPECT_EQ(x, 1);
  EXPECT_THROW(sink.value(x), std::logic_error);
  EXPECT_THROW(sink.solve(), std::logic_error);
  EXPECT_THROW(sink.assume(x), std::logic_error);
  EXPECT_THROW(sink.failed(x), std::logic_error);
  EXPECT_THROW(ClauseSink(nullptr), std::invalid_argument);
}

TEST(ClauseSink, RefusesLiteralsOfNoVariable) {
  int calls = 0;
  ClauseSink sink([&](std::span<const int>) { ++calls; });
  sink.new_variable();
  for (const int literal : {0, 2, -2, std::numeric_limits<int>::min()})
    EXPECT_THROW(sink.add_clause({1, literal}), std::invalid_argument) << literal;
  EXPECT_EQ(calls, 0);
  sink.add_clause({-1});
  sink.add_clause({});
  EXPECT_EQ(calls, 2);
  EXPECT_EQ(sink.get_clause_count(), 2U);
}

TEST(ClauseSink, LetsExceptionsOfTheFunctionPass) {
  ClauseSink sink([](std::span<const int>) { throw std::bad_alloc(); });
  sink.new_variable();
  EXPECT_THROW(sink.add_clause({1}), std::bad_alloc);
  EXPECT_EQ(sink.get_clause_count(), 0U);
}

}  // namespace
}  // namespace vorn::bv
