// Clauses against truth tables: random graphs whose literals are asserted and assumed in sequence.
#include "vorn/bv/cnf.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "tests/bv/random_graph.h"
#include "vorn/bv/sat_solver.h"
#include "vorn/utils/termination_test.h"

namespace vorn::bv {
namespace {

using Result = SatSolver::Result;

/// The assignment that the model gives the inputs of a random graph, as the index of a table's bit.
std::size_t read_assignment(const RandomGraph& random, const Cnf& cnf) {
  std::size_t assignment = 0;
  for (std::size_t i = 0; i < RandomGraph::kInputs; ++i) {
    if (cnf.value(random.get_input(i))) assignment |= std::size_t{1} << i;
  }
  return assignment;
}

/// Asserts and assumes random literals of a growing graph; answers must be those of the tables.
void run_script(std::uint64_t seed) {
  RandomGraph random(seed);
  const auto solver = make_cadical_solver();
  Cnf cnf(random.graph, *solver);
  std::uint64_t asserted = ~std::uint64_t{0};
  for (int step = 0; step < 25; ++step) {
    for (int i = 0; i < 6; ++i)
      random.grow();
    if (random.draw() % 3 == 0) {
      const Function f = random.pick();
      cnf.assert_true(f.lit);
      asserted &= f.table;
    }
    std::uint64_t models = asserted;
    for (auto count = random.draw() % 4; count > 0; --count) {
      const Function f = random.pick();
      const bool positive = random.draw() % 2 == 0;
      solver->assume(cnf.literal(f.lit, positive ? Cnf::Polarity::positive : Cnf::Polarity::both));
      models &= f.table;
    }
    ASSERT_EQ(solver->solve(), models != 0 ? Result::sat : Result::unsat)
        << "seed " << seed << " step " << step;
    if (models != 0) {
      ASSERT_TRUE((models >> read_assignment(random, cnf) & 1U) != 0)
          << "seed " << seed << " step " << step;
    }
    if (asserted == 0) return;
  }
}

TEST(Cnf, AnswersAsTruthTablesDoWhateverTheOrderOfUses) {
  for (std::uint64_t seed = 0; seed < 1500; ++seed)
    run_script(seed);
}

/// A tree of gates over inputs, in which no gate but the lowest is likely to have two uses.
Function make_tree(RandomGraph& random, int depth) {
  if (depth == 0) return random.pick();
  const Function a = random.pick();
  const Function b = make_tree(random, depth - 1);
  const Function c = make_tree(random, depth - 1);
  Aig& graph = random.graph;
  Function f = {};
  switch (random.draw() % 4) {
    case 0:
      f = {graph.make_and(b.lit, c.lit), b.table & c.table};
      break;
    case 1:
      f = {graph.make_xor(b.lit, c.lit), b.table ^ c.table};
      break;
    case 2:
      f = {graph.make_maj(a.lit, b.lit, c.lit),
           (b.table & c.table) | (a.table & (b.table | c.table))};
      break;
    default:
      f = {graph.make_ite(a.lit, b.lit, c.lit), (a.table & b.table) | (~a.table & c.table)};
      break;
  }
  return random.draw() % 2 == 0 ? f : Function{!f.lit, ~f.table};
}

TEST(Cnf, OfGatesWithinGatesHasTheModelsOfTheirTables) {
  for (std::uint64_t seed = 0; seed < 1000; ++seed) {
    RandomGraph random(seed);
    const Function f = make_tree(random, 4);
    const auto solver = make_cadical_solver();
    Cnf cnf(random.graph, *solver);
    const bool is_asserted = seed % 2 == 0;
    int literal = 0;
    if (is_asserted) {
      cnf.assert_true(f.lit);
    } else {
      literal = cnf.literal(f.lit);
    }
    for (std::size_t v = 0; v < 64; v += 1 + random.draw() % 5) {
      for (std::size_t i = 0; i < RandomGraph::kInputs; ++i)
        solver->assume(cnf.literal(random.get_input(i) ^ ((v >> i & 1U) == 0)));
      const bool value = (f.table >> v & 1U) != 0;
      if (!is_asserted) solver->assume(value ? literal : -literal);
      ASSERT_EQ(solver->solve(), value || !is_asserted ? Result::sat : Result::unsat)
          << "seed " << seed << " assignment " << v;
      if (is_asserted) continue;
      for (std::size_t i = 0; i < RandomGraph::kInputs; ++i)
        solver->assume(cnf.literal(random.get_input(i) ^ ((v >> i & 1U) == 0)));
      solver->assume(value ? -literal : literal);
      ASSERT_EQ(solver->solve(), Result::unsat) << "seed " << seed << " assignment " << v;
    }
  }
}

TEST(Cnf, DefinesBothDirectionsOfALiteralThatIsUsedInBoth) {
  for (std::uint64_t seed = 0; seed < 100; ++seed) {
    RandomGraph random(seed);
    for (int i = 0; i < 60; ++i)
      random.grow();
    const auto solver = make_cadical_solver();
    Cnf cnf(random.graph, *solver);
    const Function f = random.pick();
    const int literal = cnf.literal(f.lit);
    for (std::size_t v = 0; v < 64; v += 7) {
      const bool expected = (f.table >> v & 1U) != 0;
      for (std::size_t i = 0; i < RandomGraph::kInputs; ++i) {
        solver->assume(cnf.literal(random.get_input(i) ^ ((v >> i & 1U) == 0)));
      }
      solver->assume(expected ? -literal : literal);
      ASSERT_EQ(solver->solve(), Result::unsat) << "seed " << seed;
    }
  }
}

class CnfClauses : public ::testing::Test {
 protected:
  /// Clauses that using `lit` costs a solver that has seen nothing yet.
  std::uint64_t count(Lit lit, Cnf::Polarity use) {
    const auto solver = make_cadical_solver();
    Cnf cnf(graph, *solver);
    cnf.literal(lit, use);
    variables = solver->get_variable_count();
    return solver->get_clause_count();
  }
  std::uint64_t count_asserted(Lit lit) {
    const auto solver = make_cadical_solver();
    Cnf cnf(graph, *solver);
    cnf.assert_true(lit);
    variables = solver->get_variable_count();
    return solver->get_clause_count();
  }

  Aig graph;
  Lit a = graph.make_input();
  Lit b = graph.make_input();
  Lit c = graph.make_input();
  Lit d = graph.make_input();
  std::uint64_t variables = 0;
};

TEST_F(CnfClauses, OfGatesAreThoseOfTheGateAsAWhole) {
  EXPECT_EQ(count(graph.make_xor(a, b), Cnf::Polarity::both), 4U);
  EXPECT_EQ(variables, 3U);
  EXPECT_EQ(count(graph.make_ite(a, b, c), Cnf::Polarity::both), 4U);
  EXPECT_EQ(variables, 4U);
  EXPECT_EQ(count(graph.make_maj(a, !b, c), Cnf::Polarity::both), 6U);
  EXPECT_EQ(variables, 4U);
  EXPECT_EQ(count(graph.make_xor3(a, b, !c), Cnf::Polarity::both), 8U);
  EXPECT_EQ(variables, 4U);
  EXPECT_EQ(count(graph.make_and(graph.make_and(a, b), graph.make_and(c, d)), Cnf::Polarity::both),
            5U);
  EXPECT_EQ(variables, 5U);
}

TEST_F(CnfClauses, OfAGateThatIsUsedOnceStandInThoseAroundIt) {
  const Lit both = graph.make_and(a, b);
  EXPECT_EQ(count(graph.make_ite(c, both, d), Cnf::Polarity::both), 5U);
  EXPECT_EQ(variables, 5U);
  EXPECT_EQ(count(graph.make_ite(c, both, d), Cnf::Polarity::positive), 3U);
  const Lit parity = graph.make_xor(a, d);
  EXPECT_EQ(count(graph.make_and(parity, c), Cnf::Polarity::both), 5U);
  EXPECT_EQ(variables, 4U);
  // Two inputs of one conjunction would multiply.
  EXPECT_EQ(count(graph.make_and(graph.make_xor(a, b), graph.make_xor(c, d)), Cnf::Polarity::both),
            9U);
  EXPECT_EQ(variables, 6U);
}

TEST_F(CnfClauses, OfABranchOfTwoShiftersStandInBoth) {
  const Lit inner = graph.make_ite(a, b, c);
  const Lit e = graph.make_input();
  const Lit f = graph.make_input();
  const Lit one = graph.make_ite(d, inner, e);
  const Lit other = graph.make_ite(d, f, inner);
  const auto solver = make_cadical_solver();
  Cnf cnf(graph, *solver);
  const Lit top = graph.make_xor(one, other);
  cnf.literal(top);
  // Four of the parity, and for each branch of two one if-then-else that is written out and one
  // that is not.
  EXPECT_EQ(solver->get_clause_count(), 4U + 2U * (4U + 2U));
  EXPECT_EQ(solver->get_variable_count(), 9U);
}

TEST_F(CnfClauses, OfOneDirectionAreThoseItNeeds) {
  EXPECT_EQ(count(graph.make_xor(a, b), Cnf::Polarity::positive), 2U);
  EXPECT_EQ(count(graph.make_maj(a, b, c), Cnf::Polarity::negative), 3U);
  EXPECT_EQ(count(graph.make_and(a, b), Cnf::Polarity::positive), 2U);
  EXPECT_EQ(count(graph.make_and(a, b), Cnf::Polarity::negative), 1U);
}

TEST_F(CnfClauses, OfAFullAdderNeedNoInnerVariables) {
  const auto solver = make_cadical_solver();
  Cnf cnf(graph, *solver);
  const Lit sum = graph.make_xor3(a, b, c);
  const Lit carry = graph.make_maj(a, b, c);
  cnf.literal(sum);
  cnf.literal(carry);
  EXPECT_EQ(solver->get_clause_count(), 14U);
  EXPECT_EQ(solver->get_variable_count(), 5U);
}

TEST_F(CnfClauses, OfAssertionsNeedNoVariableForTheTop) {
  EXPECT_EQ(count_asserted(graph.make_or(graph.make_or(a, b), c)), 1U);
  EXPECT_EQ(variables, 3U);
  EXPECT_EQ(count_asserted(graph.make_and(a, graph.make_or(b, c))), 2U);
  EXPECT_EQ(variables, 3U);
  EXPECT_EQ(count_asserted(graph.make_iff(a, b)), 2U);
  EXPECT_EQ(variables, 2U);
  EXPECT_EQ(count_asserted(kTrue), 0U);
}

TEST_F(CnfClauses, OfAGateWithinAnotherNeedNoVariableForIt) {
  // Seven if the conjunction had a variable.
  const Lit both = graph.make_and(b, c);
  EXPECT_EQ(count(graph.make_ite(a, both, d), Cnf::Polarity::both), 5U);
  EXPECT_EQ(variables, 5U);
  EXPECT_EQ(count(graph.make_ite(a, d, !both), Cnf::Polarity::both), 5U);
  EXPECT_EQ(variables, 5U);
  EXPECT_EQ(count_asserted(graph.make_ite(a, both, d)), 3U);
  EXPECT_EQ(variables, 4U);
  // In the disjunction a clause for each input of the conjunction.
  EXPECT_EQ(count(graph.make_or(a, both), Cnf::Polarity::both), 4U);
  EXPECT_EQ(variables, 4U);
}

TEST_F(CnfClauses, OfAGateThatHasOtherUsesNeedAVariableForIt) {
  const Lit both = graph.make_and(b, c);
  const Lit chosen = graph.make_ite(a, both, d);
  EXPECT_EQ(count_asserted(graph.make_and(chosen, graph.make_or(both, d))), 5U);
  EXPECT_EQ(variables, 5U);
}

TEST_F(CnfClauses, MeanTheSameWhereAnInnerGateIsUsedLater) {
  const Lit both = graph.make_and(b, !c);
  const Lit inner = graph.make_ite(b, both, d);
  const Lit outer = graph.make_ite(a, inner, !both);
  const auto values = [](unsigned v) {
    const bool x = (v >> 1 & 1U) != 0 && (v >> 2 & 1U) == 0;
    const bool y = (v >> 1 & 1U) != 0 ? x : (v >> 3 & 1U) != 0;
    return std::array{(v & 1U) != 0 ? y : !x, y, x};
  };
  const std::array asked = {outer, inner, both};
  for (std::size_t first = 0; first < asked.size(); ++first) {
    const auto solver = make_cadical_solver();
    Cnf cnf(graph, *solver);
    for (std::size_t turn = 0; turn < asked.size(); ++turn) {
      const std::size_t which = (first + turn) % asked.size();
      const int literal = cnf.literal(asked[which]);
      for (unsigned v = 0; v < 16; ++v) {
        const std::array inputs = {a, b, c, d};
        for (unsigned i = 0; i < inputs.size(); ++i)
          solver->assume(cnf.literal(inputs[i] ^ ((v >> i & 1U) == 0)));
        solver->assume(values(v)[which] ? -literal : literal);
        ASSERT_EQ(solver->solve(), Result::unsat) << first << ' ' << which << ' ' << v;
      }
    }
  }
}

class Stop final : public TerminationTest {
 public:
  bool terminate() const override { return true; }
};

TEST_F(CnfClauses, AreLeftUnfinishedWhenTheTestSaysStop) {
  std::vector<Lit> inputs;
  for (int i = 0; i < 10'000; ++i)
    inputs.push_back(graph.make_input());
  Lit parity = kFalse;
  Lit all = kTrue;
  for (const Lit input : inputs) {
    parity = graph.make_xor(parity, input);
    all = graph.make_and(all, graph.make_or(input, parity));
  }
  const Stop stop;
  for (const Lit lit : {parity, all}) {
    const auto solver = make_cadical_solver();
    Cnf cnf(graph, *solver);
    cnf.set_termination_test(&stop);
    EXPECT_THROW(cnf.literal(lit), Terminated);
    const auto other = make_cadical_solver();
    Cnf whole(graph, *other);
    whole.set_termination_test(&stop);
    EXPECT_THROW(whole.assert_true(lit), Terminated);
    EXPECT_LT(other->get_clause_count(), count_asserted(lit) / 2);
  }
}

TEST_F(CnfClauses, AreNotRepeated) {
  const auto solver = make_cadical_solver();
  Cnf cnf(graph, *solver);
  const Lit f = graph.make_ite(a, graph.make_xor(b, c), d);
  const int literal = cnf.literal(f, Cnf::Polarity::positive);
  const auto half = solver->get_clause_count();
  EXPECT_EQ(cnf.literal(f, Cnf::Polarity::positive), literal);
  EXPECT_EQ(solver->get_clause_count(), half);
  EXPECT_EQ(cnf.literal(!f), -literal);
  const auto whole = solver->get_clause_count();
  EXPECT_GT(whole, half);
  cnf.literal(f);
  EXPECT_EQ(solver->get_clause_count(), whole);
}

TEST_F(CnfClauses, MakeAnAssertedLiteralTrueForLaterUses) {
  const auto solver = make_cadical_solver();
  Cnf cnf(graph, *solver);
  const Lit f = graph.make_xor(a, b);
  cnf.assert_true(f);
  solver->assume(-cnf.literal(f));
  EXPECT_EQ(solver->solve(), Result::unsat);
}

TEST_F(CnfClauses, ContradictWhenBothValuesAreAsserted) {
  const auto solver = make_cadical_solver();
  Cnf cnf(graph, *solver);
  const Lit f = graph.make_maj(a, b, c);
  cnf.assert_true(!f);
  EXPECT_EQ(solver->solve(), Result::sat);
  cnf.assert_true(f);
  EXPECT_EQ(solver->solve(), Result::unsat);
}

TEST_F(CnfClauses, SpellConstants) {
  const auto solver = make_cadical_solver();
  Cnf cnf(graph, *solver);
  EXPECT_EQ(cnf.literal(kTrue), -cnf.literal(kFalse));
  solver->assume(cnf.literal(kTrue));
  EXPECT_EQ(solver->solve(), Result::sat);
  EXPECT_TRUE(cnf.value(kTrue));
  solver->assume(cnf.literal(kFalse));
  EXPECT_EQ(solver->solve(), Result::unsat);
  cnf.assert_true(kFalse);
  EXPECT_EQ(solver->solve(), Result::unsat);
}

TEST_F(CnfClauses, LeaveUnseenInputsFalse) {
  const auto solver = make_cadical_solver();
  Cnf cnf(graph, *solver);
  cnf.assert_true(a);
  ASSERT_EQ(solver->solve(), Result::sat);
  EXPECT_TRUE(cnf.value(a));
  EXPECT_FALSE(cnf.value(b));
  EXPECT_TRUE(cnf.value(!b));
  EXPECT_FALSE(cnf.value(graph.make_input()));
}

}  // namespace
}  // namespace vorn::bv
