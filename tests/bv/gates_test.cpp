// Gates that are found in a graph compute what their nodes compute.
#include "vorn/bv/gates.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "tests/bv/random_graph.h"

namespace vorn::bv {
namespace {

using Table = std::uint64_t;

Table value_of(const std::vector<Table>& tables, Lit lit) {
  return lit.is_negated() ? ~tables[lit.get_node()] : tables[lit.get_node()];
}

/// The tables of all nodes, from the conjunctions that they are.
std::vector<Table> compute_tables(const RandomGraph& random) {
  std::vector<Table> tables(random.graph.get_node_count(), 0);
  for (std::size_t i = 0; i < RandomGraph::kInputs; ++i)
    tables[random.get_input(i).get_node()] = random.functions[1 + i].table;
  for (std::uint32_t node = 0; node < tables.size(); ++node) {
    if (!random.graph.is_and(node)) continue;
    tables[node] = value_of(tables, random.graph.get_left(node)) &
                   value_of(tables, random.graph.get_right(node));
  }
  return tables;
}

Table compute(const Gate& gate, const std::vector<Table>& tables) {
  const Table a = value_of(tables, gate.inputs[0]);
  const Table b = value_of(tables, gate.inputs[1]);
  switch (gate.kind) {
    case GateKind::conjunction:
      return a & b;
    case GateKind::exclusive_or:
      return a ^ b;
    case GateKind::if_then_else:
      return (a & b) | (~a & value_of(tables, gate.inputs[2]));
    case GateKind::majority:
      break;
  }
  return (a & b) | ((a | b) & value_of(tables, gate.inputs[2]));
}

TEST(Gates, ComputeWhatTheirNodesCompute) {
  std::array<std::size_t, 4> found = {};
  for (std::uint64_t seed = 0; seed < 200; ++seed) {
    RandomGraph random(seed);
    for (int i = 0; i < 100; ++i)
      random.grow();
    const std::vector<Table> tables = compute_tables(random);
    for (std::uint32_t node = 0; node < random.graph.get_node_count(); ++node) {
      if (!random.graph.is_and(node)) continue;
      const Gate gate = match_gate(random.graph, node);
      ++found[static_cast<std::size_t>(gate.kind)];
      ASSERT_EQ(compute(gate, tables), tables[node]) << "seed " << seed << " node " << node;
      for (const Lit input : gate.get_inputs())
        ASSERT_LT(input.get_node(), node) << "seed " << seed;
    }
  }
  for (const std::size_t count : found)
    EXPECT_GT(count, 100U);
}

class GatesTest : public testing::Test {
 protected:
  Gate match(Lit lit) { return match_gate(graph, lit.get_node()); }

  static bool reads(const Gate& gate, Lit lit) {
    const auto inputs = gate.get_inputs();
    return std::any_of(inputs.begin(), inputs.end(),
                       [&](Lit input) { return input.get_node() == lit.get_node(); });
  }

  Aig graph;
  Lit a = graph.make_input();
  Lit b = graph.make_input();
  Lit c = graph.make_input();
  Lit d = graph.make_input();
};

TEST_F(GatesTest, AreFoundInTheShapesThatTheGraphBuilds) {
  EXPECT_EQ(match(graph.make_and(a, !b)).kind, GateKind::conjunction);
  EXPECT_EQ(match(graph.make_xor(a, b)).kind, GateKind::exclusive_or);
  EXPECT_EQ(match(graph.make_ite(a, b, c)).kind, GateKind::if_then_else);
  EXPECT_EQ(match(graph.make_maj(a, b, c)).kind, GateKind::majority);
}

TEST_F(GatesTest, AreFoundUnderNegatedInputs) {
  for (const bool x : {false, true}) {
    for (const bool y : {false, true}) {
      for (const bool z : {false, true}) {
        EXPECT_EQ(match(graph.make_xor(a ^ x, b ^ y)).kind, GateKind::exclusive_or);
        EXPECT_EQ(match(graph.make_ite(a ^ x, b ^ y, c ^ z)).kind, GateKind::if_then_else);
        EXPECT_EQ(match(graph.make_maj(a ^ x, b ^ y, c ^ z)).kind, GateKind::majority);
      }
    }
  }
}

TEST_F(GatesTest, ReadTheirOperands) {
  const Gate both = match(graph.make_xor(a, b));
  EXPECT_EQ(both.get_arity(), 2U);
  EXPECT_TRUE(reads(both, a) && reads(both, b));
  const Gate chosen = match(graph.make_ite(a, b, c));
  EXPECT_EQ(chosen.get_arity(), 3U);
  EXPECT_EQ(chosen.inputs[0].get_node(), a.get_node());
  EXPECT_TRUE(reads(chosen, b) && reads(chosen, c));
  const Gate most = match(graph.make_maj(a, b, c));
  EXPECT_EQ(most.get_arity(), 3U);
  EXPECT_TRUE(reads(most, a) && reads(most, b) && reads(most, c));
}

TEST_F(GatesTest, AreTheConjunctionWhereNoLargerGateFits) {
  // Two conjunctions without a literal in common, and one that is not negated.
  const Lit apart = graph.make_and(!graph.make_and(a, b), !graph.make_and(c, d));
  EXPECT_EQ(match(apart).kind, GateKind::conjunction);
  EXPECT_EQ(match(apart).get_arity(), 2U);
  const Lit nested = graph.make_and(graph.make_and(a, b), !graph.make_and(c, d));
  EXPECT_EQ(match(nested).kind, GateKind::conjunction);
  EXPECT_EQ(match(graph.make_and(a, !graph.make_and(c, d))).kind, GateKind::conjunction);
}

}  // namespace
}  // namespace vorn::bv
