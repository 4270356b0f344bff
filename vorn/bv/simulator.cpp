// Compilation: the gates that the outputs depend on, operands first, then a block for each value,
// given back after its last use. Constants and inputs keep their blocks; so do outputs, which are
// read after the run.
#include "vorn/bv/simulator.h"

#include <cassert>
#include <cstdint>

namespace vorn::bv {
namespace {

using Block = Simulator::Block;

/// A block read through an operand's sign.
struct Source {
  const Block* block;
  std::uint64_t flip;
  std::uint64_t get(std::size_t word) const { return block->words[word] ^ flip; }
};

/// Word by word; no source is the output.
template <class Function>
void compute(Block* __restrict output, Function function) {
  for (std::size_t word = 0; word < Simulator::kWords; ++word)
    output->words[word] = function(word);
}

void compute_gate(GateKind kind, Source a, Source b, Source c, Block* output) {
  switch (kind) {
    case GateKind::conjunction:
      return compute(output, [&](std::size_t w) { return a.get(w) & b.get(w); });
    case GateKind::exclusive_or:
      return compute(output, [&](std::size_t w) { return a.get(w) ^ b.get(w); });
    case GateKind::if_then_else:
      return compute(output,
                     [&](std::size_t w) { return c.get(w) ^ (a.get(w) & (b.get(w) ^ c.get(w))); });
    case GateKind::majority:
      return compute(output, [&](std::size_t w) {
        return (a.get(w) & b.get(w)) | (c.get(w) & (a.get(w) | b.get(w)));
      });
  }
}

}  // namespace

// Compilation ---------------------------------------------------------------------------------

class Simulator::Compiler {
 public:
  Compiler(const Aig& aig, Simulator& simulator)
      : graph(aig),
        sim(simulator),
        states(aig.get_node_count(), State::unseen),
        last_use(aig.get_node_count(), 0),
        block_of(aig.get_node_count(), 0) {}

  void compile(std::span<const Lit> results) {
    for (const Lit result : results)
      collect(result.get_node());
    find_last_uses(results);
    sim.input_blocks.assign(graph.get_node_count(), 0);
    for (std::uint32_t node = 1; node < graph.get_node_count(); ++node) {
      if (graph.is_input(node) && states[node] == State::done) {
        sim.input_blocks[node] = block_of[node] = block_count++;
      }
    }
    for (std::size_t i = 0; i < order.size(); ++i)
      emit(i);
    for (const Lit result : results)
      sim.outputs.push_back(operand(result));
    sim.blocks.resize(block_count);
  }

 private:
  enum class State : std::uint8_t { unseen, done };
  struct Step {
    std::uint32_t node;
    Gate gate;
  };
  static constexpr std::size_t kForever = SIZE_MAX;

  /// Appends the gates below `root`, and its own, to the order.
  void collect(std::uint32_t root) {
    std::vector<std::uint32_t> stack = {root};
    while (!stack.empty()) {
      const std::uint32_t node = stack.back();
      const std::size_t height = stack.size();
      if (states[node] == State::unseen && graph.is_and(node)) {
        const Gate gate = match_gate(graph, node);
        for (const Lit input : gate.get_inputs()) {
          if (states[input.get_node()] == State::unseen) stack.push_back(input.get_node());
        }
        if (stack.size() == height) order.push_back({node, gate});
      }
      if (stack.size() != height) continue;
      states[node] = State::done;
      stack.pop_back();
    }
  }

  void find_last_uses(std::span<const Lit> results) {
    for (std::size_t i = 0; i < order.size(); ++i) {
      for (const Lit input : order[i].gate.get_inputs())
        last_use[input.get_node()] = i;
    }
    for (const Lit result : results)
      last_use[result.get_node()] = kForever;
  }

  void emit(std::size_t i) {
    const auto& [node, gate] = order[i];
    Instruction instruction = {gate.kind, 0, {}};
    for (std::size_t k = 0; k < gate.get_arity(); ++k) {
      instruction.inputs[k] = operand(gate.inputs[k]);
    }
    // The output gets its block before those of its inputs are given back.
    if (free_blocks.empty()) free_blocks.push_back(block_count++);
    instruction.output = block_of[node] = free_blocks.back();
    free_blocks.pop_back();
    sim.program.push_back(instruction);
    for (const Lit input : gate.get_inputs()) {
      if (graph.is_and(input.get_node()) && last_use[input.get_node()] == i) {
        free_blocks.push_back(block_of[input.get_node()]);
        last_use[input.get_node()] = kForever;
      }
    }
  }

  Operand operand(Lit lit) const {
    return 2 * block_of[lit.get_node()] + (lit.is_negated() ? 1U : 0U);
  }

  const Aig& graph;
  Simulator& sim;
  std::vector<State> states;
  std::vector<Step> order;
  std::vector<std::size_t> last_use;  // by node: its last step
  std::vector<std::uint32_t> block_of;
  std::vector<std::uint32_t> free_blocks;
  std::uint32_t block_count = 1;  // block 0 is the constant false
};

Simulator::Simulator(const Aig& graph, std::span<const Lit> results) {
  Compiler(graph, *this).compile(results);
}

// Evaluation ----------------------------------------------------------------------------------

void Simulator::set_input(Lit input, const Block& block) {
  assert(!input.is_negated() && input.get_node() < input_blocks.size());
  const std::uint32_t target = input_blocks[input.get_node()];
  if (target != 0) blocks[target] = block;
}

void Simulator::run() {
  const auto source = [this](Operand operand) {
    return Source{&blocks[operand >> 1U], std::uint64_t{0} - (operand & 1U)};
  };
  for (const Instruction& step : program) {
    const auto& in = step.inputs;
    compute_gate(step.kind, source(in[0]), source(in[1]), source(in[2]), &blocks[step.output]);
  }
}

Simulator::Block Simulator::get_output(std::size_t i) const {
  Block result = blocks[outputs[i] >> 1U];
  if ((outputs[i] & 1U) != 0) {
    for (std::uint64_t& word : result.words)
      word = ~word;
  }
  return result;
}

Simulator::Block Simulator::count_from(std::uint64_t first, std::size_t bit) {
  static constexpr std::array<std::uint64_t, 6> kLaneBits = {
      0xaaaaaaaaaaaaaaaaU, 0xccccccccccccccccU, 0xf0f0f0f0f0f0f0f0U,
      0xff00ff00ff00ff00U, 0xffff0000ffff0000U, 0xffffffff00000000U};
  assert(first % kLanes == 0 && bit < 64);
  Block result;
  for (std::size_t word = 0; word < kWords; ++word) {
    const std::uint64_t value = first + 64 * word;
    result.words[word] =
        bit < kLaneBits.size() ? kLaneBits[bit] : std::uint64_t{0} - (value >> bit & 1U);
  }
  return result;
}

}  // namespace vorn::bv
