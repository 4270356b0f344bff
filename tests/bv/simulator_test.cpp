// Bit-parallel simulation against truth tables.
#include "vorn/bv/simulator.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/bv/random_graph.h"

namespace vorn::bv {
namespace {

TEST(Simulator, ComputesTheTablesOfRandomGraphs) {
  for (std::uint64_t seed = 0; seed < 100; ++seed) {
    RandomGraph random(seed);
    for (int i = 0; i < 200; ++i)
      random.grow();
    std::vector<Lit> outputs;
    std::vector<std::uint64_t> tables;
    for (int i = 0; i < 10; ++i) {
      const Function f = random.pick();
      outputs.push_back(f.lit);
      tables.push_back(f.table);
    }
    Simulator simulator(random.graph, outputs);
    for (std::size_t i = 0; i < RandomGraph::kInputs; ++i) {
      simulator.set_input(random.get_input(i), Simulator::count_from(0, i));
    }
    simulator.run();
    for (std::size_t i = 0; i < outputs.size(); ++i) {
      for (const std::uint64_t word : simulator.get_output(i).words) {
        ASSERT_EQ(word, tables[i]) << "seed " << seed;
      }
    }
  }
}

TEST(Simulator, AnswersAlikeOnARepeatedRun) {
  RandomGraph random(3);
  for (int i = 0; i < 500; ++i)
    random.grow();
  std::vector<Lit> outputs;
  for (const Function& f : random.functions)
    outputs.push_back(f.lit);
  Simulator simulator(random.graph, outputs);
  for (int round = 0; round < 3; ++round) {
    for (std::size_t i = 0; i < RandomGraph::kInputs; ++i) {
      simulator.set_input(random.get_input(i), Simulator::count_from(0, i));
    }
    simulator.run();
    for (std::size_t i = 0; i < outputs.size(); ++i) {
      ASSERT_EQ(simulator.get_output(i).words[5], random.functions[i].table) << "round " << round;
    }
  }
}

TEST(Simulator, KeepsInputsFromRunToRun) {
  Aig graph;
  const Lit a = graph.make_input();
  const Lit b = graph.make_input();
  Simulator simulator(graph, std::vector<Lit>{graph.make_and(a, b), a, !a, kTrue});
  const auto block = Simulator::count_from(0, 4);
  simulator.set_input(a, block);
  simulator.run();
  EXPECT_EQ(simulator.get_output(0), Simulator::Block{});
  simulator.set_input(b, block);
  simulator.run();
  EXPECT_EQ(simulator.get_output(0), block);
  EXPECT_EQ(simulator.get_output(1), block);
  EXPECT_EQ(simulator.get_output(2).words[0], ~block.words[0]);
  EXPECT_EQ(simulator.get_output(3).words[7], ~std::uint64_t{0});
}

TEST(Simulator, CompilesOnlyWhatTheOutputsDependOn) {
  Aig graph;
  const Lit a = graph.make_input();
  const Lit b = graph.make_input();
  const Lit c = graph.make_input();
  const Lit wanted = graph.make_xor3(a, b, c);
  graph.make_ite(wanted, a, b);
  const Simulator simulator(graph, std::vector<Lit>{wanted});
  EXPECT_EQ(simulator.get_instruction_count(), 2U);
}

TEST(Simulator, ReusesBlocksOfValuesThatAreRead) {
  Aig graph;
  Lit chain = graph.make_input();
  const Lit b = graph.make_input();
  const Lit c = graph.make_input();
  for (int i = 0; i < 1000; ++i)
    chain = graph.make_xor(graph.make_maj(chain, b, c), i % 2 ? b : c);
  const Simulator simulator(graph, std::vector<Lit>{chain});
  EXPECT_LT(simulator.get_block_count(), 10U);
}

TEST(Simulator, AcceptsInputsThatNoOutputDependsOn) {
  Aig graph;
  const Lit a = graph.make_input();
  const Lit b = graph.make_input();
  Simulator simulator(graph, std::vector<Lit>{a});
  simulator.set_input(b, Simulator::count_from(0, 0));
  simulator.run();
  EXPECT_EQ(simulator.get_output(0), Simulator::Block{});
}

TEST(Simulator, CountsThroughLanes) {
  const std::uint64_t first = 3 * Simulator::kLanes;
  for (std::size_t bit = 0; bit < 20; ++bit) {
    const auto block = Simulator::count_from(first, bit);
    for (std::size_t lane = 0; lane < Simulator::kLanes; ++lane) {
      ASSERT_EQ(block.get(lane), ((first + lane) >> bit & 1U) != 0);
    }
  }
}

TEST(Simulator, WritesSingleLanes) {
  Simulator::Block block;
  block.set(77, true);
  EXPECT_TRUE(block.get(77));
  EXPECT_FALSE(block.get(76));
  block.set(77, false);
  EXPECT_EQ(block, Simulator::Block{});
}

}  // namespace
}  // namespace vorn::bv
