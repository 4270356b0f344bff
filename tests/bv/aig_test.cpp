// Construction of and-inverter graphs: rules, sharing, and that functions are kept.
#include "vorn/bv/aig.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "tests/bv/random_graph.h"
#include "vorn/bv/gates.h"

namespace vorn::bv {
namespace {

/// Truth tables of all nodes of a random graph, by its structure alone.
std::vector<std::uint64_t> evaluate(const RandomGraph& random) {
  const Aig& graph = random.graph;
  std::vector<std::uint64_t> tables(graph.get_node_count(), 0);
  const auto table = [&](Lit lit) {
    return lit.is_negated() ? ~tables[lit.get_node()] : tables[lit.get_node()];
  };
  for (std::size_t i = 0; i < RandomGraph::kInputs; ++i) {
    tables[random.get_input(i).get_node()] = random.functions[1 + i].table;
  }
  for (std::uint32_t node = 1; node < graph.get_node_count(); ++node) {
    if (graph.is_and(node))
      tables[node] = table(graph.get_left(node)) & table(graph.get_right(node));
  }
  return tables;
}

class AigRules : public ::testing::Test {
 protected:
  Aig graph;
  Lit a = graph.make_input();
  Lit b = graph.make_input();
  Lit c = graph.make_input();
  Lit d = graph.make_input();
};

TEST_F(AigRules, SettleConstantsAndRepetition) {
  EXPECT_EQ(graph.make_and(a, kTrue), a);
  EXPECT_EQ(graph.make_and(kFalse, a), kFalse);
  EXPECT_EQ(graph.make_and(a, a), a);
  EXPECT_EQ(graph.make_and(a, !a), kFalse);
  EXPECT_EQ(graph.get_and_count(), 0U);
}

TEST_F(AigRules, ShareEqualConjunctions) {
  EXPECT_EQ(graph.make_and(a, b), graph.make_and(b, a));
  EXPECT_EQ(graph.make_or(!a, !b), !graph.make_and(a, b));
  EXPECT_EQ(graph.get_and_count(), 1U);
}

TEST_F(AigRules, SettleOneOperandsConjunction) {
  const Lit ab = graph.make_and(a, b);
  EXPECT_EQ(graph.make_and(ab, a), ab) << "idempotence";
  EXPECT_EQ(graph.make_and(!b, ab), kFalse) << "contradiction";
  EXPECT_EQ(graph.make_and(!ab, !a), !a) << "subsumption";
  EXPECT_EQ(graph.make_and(!ab, b), graph.make_and(!a, b)) << "substitution";
}

TEST_F(AigRules, SettleBothOperandsConjunctions) {
  const Lit ab = graph.make_and(a, b);
  const Lit cd = graph.make_and(c, d);
  const Lit not_a_c = graph.make_and(!a, c);
  EXPECT_EQ(graph.make_and(ab, not_a_c), kFalse) << "contradiction";
  EXPECT_EQ(graph.make_and(!ab, not_a_c), not_a_c) << "subsumption";
  EXPECT_EQ(graph.make_and(!ab, !graph.make_and(a, !b)), !a) << "resolution";
  const Lit bc = graph.make_and(b, c);
  EXPECT_EQ(graph.make_and(!ab, bc), graph.make_and(!a, bc)) << "substitution";
  EXPECT_EQ(graph.make_and(cd, bc), graph.make_and(bc, cd));
  EXPECT_EQ(graph.make_and(cd, bc), graph.make_and(b, cd)) << "idempotence";
}

TEST_F(AigRules, FoldGatesWithConstantOrRelatedInputs) {
  EXPECT_EQ(graph.make_xor(a, kTrue), !a);
  EXPECT_EQ(graph.make_xor(a, !a), kTrue);
  EXPECT_EQ(graph.make_ite(kTrue, a, b), a);
  EXPECT_EQ(graph.make_ite(!c, a, b), graph.make_ite(c, b, a));
  EXPECT_EQ(graph.make_ite(c, a, a), a);
  EXPECT_EQ(graph.make_ite(c, !a, a), graph.make_xor(c, a));
  EXPECT_EQ(graph.make_ite(c, c, a), graph.make_or(c, a));
  EXPECT_EQ(graph.make_maj(a, kFalse, b), graph.make_and(a, b));
  EXPECT_EQ(graph.make_maj(a, kTrue, b), graph.make_or(a, b));
  EXPECT_EQ(graph.make_maj(a, b, !a), b);
  EXPECT_EQ(graph.make_maj(a, b, a), a);
  EXPECT_EQ(graph.make_xor3(a, b, a), b);
}

TEST_F(AigRules, BuildParityInOneShapeWhateverTheSigns) {
  const Lit x = graph.make_xor(a, b);
  const auto nodes = graph.get_node_count();
  EXPECT_EQ(graph.make_xor(!a, b), !x);
  EXPECT_EQ(graph.make_xor(b, !a), !x);
  EXPECT_EQ(graph.make_xor(!b, !a), x);
  EXPECT_EQ(graph.get_node_count(), nodes);
}

TEST_F(AigRules, BuildAFullAdderFromEightConjunctionsWhateverTheSigns) {
  for (unsigned signs = 0; signs < 8; ++signs) {
    Aig fresh;
    std::array<Lit, 3> in;
    for (unsigned i = 0; i < 3; ++i)
      in[i] = fresh.make_input() ^ ((signs >> i & 1U) != 0);
    fresh.make_xor3(in[0], in[1], in[2]);
    fresh.make_maj(in[0], in[1], in[2]);
    EXPECT_EQ(fresh.get_and_count(), 8U) << signs;
  }
}

TEST_F(AigRules, BuildGatesThatAreRecognised) {
  const Lit x = graph.make_xor(a, b);
  const Lit ite = graph.make_ite(a, b, c);
  const Lit maj = graph.make_maj(!a, b, c);
  const Lit conjunction = graph.make_and(c, d);
  EXPECT_EQ(match_gate(graph, x.get_node()).kind, GateKind::exclusive_or);
  EXPECT_EQ(match_gate(graph, ite.get_node()).kind, GateKind::if_then_else);
  EXPECT_EQ(match_gate(graph, maj.get_node()).kind, GateKind::majority);
  EXPECT_EQ(match_gate(graph, conjunction.get_node()).kind, GateKind::conjunction);
}

TEST(Aig, KeepsFunctionsInRandomGraphs) {
  for (std::uint64_t seed = 0; seed < 200; ++seed) {
    RandomGraph random(seed);
    for (int i = 0; i < 300; ++i)
      random.grow();
    const auto tables = evaluate(random);
    for (const Function& f : random.functions) {
      const std::uint64_t table = tables[f.lit.get_node()];
      ASSERT_EQ(f.lit.is_negated() ? ~table : table, f.table) << "seed " << seed;
    }
  }
}

TEST(Aig, RecognisesGatesThatComputeTheirNodes) {
  for (std::uint64_t seed = 0; seed < 200; ++seed) {
    RandomGraph random(seed);
    for (int i = 0; i < 300; ++i)
      random.grow();
    const auto tables = evaluate(random);
    const auto table = [&](Lit lit) {
      return lit.is_negated() ? ~tables[lit.get_node()] : tables[lit.get_node()];
    };
    for (std::uint32_t node = 1; node < random.graph.get_node_count(); ++node) {
      if (!random.graph.is_and(node)) continue;
      const Gate gate = match_gate(random.graph, node);
      const std::uint64_t x = table(gate.inputs[0]);
      const std::uint64_t y = table(gate.inputs[1]);
      const std::uint64_t z = table(gate.inputs[2]);
      const std::array<std::uint64_t, 4> expected = {x & y, x ^ y, (x & y) | (~x & z),
                                                     (x & y) | (x & z) | (y & z)};
      ASSERT_EQ(tables[node], expected[static_cast<std::size_t>(gate.kind)]) << "seed " << seed;
    }
  }
}

TEST(Aig, PutsOperandsBelowTheirNodes) {
  RandomGraph random(7);
  for (int i = 0; i < 1000; ++i)
    random.grow();
  const Aig& graph = random.graph;
  for (std::uint32_t node = 0; node < graph.get_node_count(); ++node) {
    if (!graph.is_and(node)) continue;
    EXPECT_LT(graph.get_left(node), graph.get_right(node));
    EXPECT_LT(graph.get_right(node).get_node(), node);
  }
  EXPECT_EQ(graph.get_input_count() + graph.get_and_count() + 1, graph.get_node_count());
}

TEST(Aig, JoinsAnyNumberOfLiterals) {
  Aig graph;
  std::vector<Lit> lits;
  EXPECT_EQ(graph.make_and(lits), kTrue);
  EXPECT_EQ(graph.make_or(lits), kFalse);
  for (int i = 0; i < 13; ++i)
    lits.push_back(graph.make_input());
  const Lit all = graph.make_and(lits);
  EXPECT_EQ(graph.get_and_count(), 12U);
  EXPECT_EQ(graph.make_and(all, lits[5]), graph.make_and(lits[5], all));
  lits.push_back(!lits[0]);
  EXPECT_EQ(graph.make_or(std::span<const Lit>(lits).last(1)), !lits[0]);
}

}  // namespace
}  // namespace vorn::bv
