// AIGER text is read back by a reader of its own and evaluated; the graph that it was written from
// is evaluated by truth tables and by the simulator.
#include "vorn/bv/aiger.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/bv/random_graph.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/simulator.h"
#include "vorn/terms/term_manager.h"

namespace vorn::bv {
namespace {

/// A circuit as the file says it.
struct Circuit {
  struct And {
    unsigned out, left, right;
  };
  unsigned maximum = 0;
  std::vector<unsigned> inputs;
  unsigned output = 0;
  std::vector<And> ands;
  std::vector<std::string> symbols;

  /// The output on 64 assignments at once, bit by bit.
  std::uint64_t evaluate(const std::vector<std::uint64_t>& values) const {
    std::vector<std::uint64_t> nodes(maximum + 1, 0);
    const auto get = [&](unsigned code) {
      return (code & 1U) != 0 ? ~nodes.at(code / 2) : nodes.at(code / 2);
    };
    for (std::size_t i = 0; i < inputs.size(); ++i)
      nodes.at(inputs[i] / 2) = values.at(i);
    for (const And& gate : ands)
      nodes.at(gate.out / 2) = get(gate.left) & get(gate.right);
    return get(output);
  }
};

unsigned read_delta(std::istream& in) {
  unsigned value = 0;
  for (unsigned shift = 0;; shift += 7) {
    const int c = in.get();
    EXPECT_GE(c, 0) << "the file ends within a number";
    value |= (static_cast<unsigned>(c) & 0x7fU) << shift;
    if ((c & 0x80) == 0) return value;
  }
}

Circuit read(const std::string& text) {
  Circuit circuit;
  std::istringstream in(text);
  std::string kind;
  unsigned inputs = 0;
  unsigned latches = 0;
  unsigned outputs = 0;
  unsigned ands = 0;
  in >> kind >> circuit.maximum >> inputs >> latches >> outputs >> ands;
  EXPECT_EQ(latches, 0U);
  EXPECT_EQ(outputs, 1U);
  EXPECT_EQ(circuit.maximum, inputs + ands);
  circuit.inputs.resize(inputs);
  for (unsigned i = 0; i < inputs; ++i) {
    circuit.inputs[i] = 2 * (i + 1);
    if (kind == "aag") in >> circuit.inputs[i];
  }
  in >> circuit.output;
  if (kind == "aig") in.get();
  for (unsigned i = 0; i < ands; ++i) {
    Circuit::And gate{};
    if (kind == "aag") {
      in >> gate.out >> gate.left >> gate.right;
    } else {
      gate.out = 2 * (inputs + i + 1);
      gate.left = gate.out - read_delta(in);
      gate.right = gate.left - read_delta(in);
    }
    EXPECT_GT(gate.out, gate.left);
    EXPECT_GE(gate.left, gate.right);
    circuit.ands.push_back(gate);
  }
  if (kind == "aag") in.get();
  for (std::string line; std::getline(in, line);)
    circuit.symbols.push_back(line);
  return circuit;
}

std::string write(const Aig& graph, std::span<const AigerInput> inputs, Lit output,
                  AigerFormat format) {
  std::ostringstream out;
  write_aiger(out, graph, inputs, output, "all", format);
  return out.str();
}

constexpr std::array kFormats = {AigerFormat::ascii, AigerFormat::binary};

TEST(Aiger, IsTheTextOfAGate) {
  Aig graph;
  const Lit a = graph.make_input();
  const Lit b = graph.make_input();
  const std::vector<AigerInput> inputs = {{b, "b"}, {a, "a name"}};
  EXPECT_EQ(write(graph, inputs, !graph.make_and(a, !b), AigerFormat::ascii),
            "aag 3 2 0 1 1\n2\n4\n7\n6 4 3\ni0 b\ni1 a name\no0 all\n");
  EXPECT_EQ(write(graph, inputs, !graph.make_and(a, !b), AigerFormat::binary),
            "aig 3 2 0 1 1\n7\n\x02\x01i0 b\ni1 a name\no0 all\n");
  EXPECT_EQ(write(graph, {}, kTrue, AigerFormat::ascii), "aag 0 0 0 1 0\n1\no0 all\n");
}

TEST(Aiger, ComputesTheTruthTablesOfRandomGraphs) {
  for (std::uint64_t seed = 0; seed < 300; ++seed) {
    RandomGraph random(seed);
    for (int i = 0; i < 60; ++i)
      random.grow();
    std::vector<AigerInput> inputs;
    std::vector<std::uint64_t> tables;
    for (std::size_t i = 0; i < RandomGraph::kInputs; ++i) {
      inputs.push_back({random.get_input(i), "x" + std::to_string(i)});
      tables.push_back(random.functions[1 + i].table);
    }
    const Function f = random.pick();
    for (const AigerFormat format : kFormats) {
      const Circuit circuit = read(write(random.graph, inputs, f.lit, format));
      ASSERT_EQ(circuit.evaluate(tables), f.table) << "seed " << seed;
      ASSERT_EQ(circuit.symbols.size(), 7U) << "seed " << seed;
      EXPECT_EQ(circuit.symbols[5], "i5 x5");
      EXPECT_EQ(circuit.symbols[6], "o0 all");
    }
  }
}

TEST(Aiger, ComputesWhatTheSimulatorComputesOfArithmetic) {
  TermManager terms;
  const DataType* type = terms.get_bv_type(10);
  const Term* x = terms.make_constant(terms.make_unique_symbol("x", type));
  const Term* y = terms.make_constant(terms.make_unique_symbol("y", type));
  const Term* formula = terms.make_bv_ult(terms.make_bv_mul(x, y), terms.make_bv_udiv(x, y));
  Aig graph;
  BitBlaster blaster(terms, graph);
  const Lit output = blaster.blast_bool(formula);
  std::vector<AigerInput> inputs;
  for (const BitBlaster::Input& input : blaster.get_inputs()) {
    for (const Lit bit : input.bits)
      inputs.push_back({bit, "bit"});
  }
  ASSERT_EQ(inputs.size(), 20U);

  Simulator simulator(graph, {&output, 1});
  std::mt19937_64 random(1);
  for (int round = 0; round < 20; ++round) {
    std::vector<Simulator::Block> blocks(inputs.size());
    for (std::size_t i = 0; i < inputs.size(); ++i) {
      for (std::uint64_t& word : blocks[i].words)
        word = random();
      simulator.set_input(inputs[i].lit, blocks[i]);
    }
    simulator.run();
    const Simulator::Block expected = simulator.get_output(0);
    for (const AigerFormat format : kFormats) {
      const Circuit circuit = read(write(graph, inputs, output, format));
      for (std::size_t word = 0; word < Simulator::kWords; ++word) {
        std::vector<std::uint64_t> values;
        for (const Simulator::Block& block : blocks)
          values.push_back(block.words[word]);
        ASSERT_EQ(circuit.evaluate(values), expected.words[word]);
      }
    }
  }
}

TEST(Aiger, RefusesInputsThatDoNotFit) {
  Aig graph;
  const Lit a = graph.make_input();
  const Lit b = graph.make_input();
  const Lit both = graph.make_and(a, b);
  const auto refuses = [&](const std::vector<AigerInput>& inputs) {
    EXPECT_THROW(write(graph, inputs, both, AigerFormat::ascii), std::invalid_argument);
  };
  refuses({{a, "a"}});
  refuses({{a, "a"}, {b, "b"}, {a, "again"}});
  refuses({{a, "a"}, {!b, "b"}});
  refuses({{a, "a"}, {b, "b"}, {both, "both"}});
  refuses({{a, "a"}, {b, "two\nlines"}});
}

}  // namespace
}  // namespace vorn::bv
