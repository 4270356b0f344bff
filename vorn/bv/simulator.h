// Bit-parallel evaluation of and-inverter graphs.
//
// A circuit is compiled once into a list of gates and then run on many inputs at a time: every
// value is a block of 512 lanes, and one instruction works on a whole block, which compilers turn
// into vector instructions. Gates of gates.h are one instruction each. A block is reused as soon as
// the last reader of its value has run, so that the blocks in use stay in the fastest cache. This
// is the engine of exhaustive tests.
#ifndef VORN_BV_SIMULATOR_H
#define VORN_BV_SIMULATOR_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "vorn/bv/aig.h"
#include "vorn/bv/gates.h"
#include "vorn/utils/export.h"

namespace vorn::bv {

/// Runs a circuit on 512 assignments at once. The graph is read at construction only.
class VORN_EXPORT Simulator {
 public:
  /// Assignments at once, in words of 64.
  static constexpr std::size_t kWords = 8;
  static constexpr std::size_t kLanes = 64 * kWords;

  /// One bit of each lane; lane i is bit i % 64 of word i / 64.
  struct alignas(64) Block {
    std::array<std::uint64_t, kWords> words = {};  // the bits
    /// The bit of one lane.
    bool get(std::size_t lane) const { return (words[lane / 64] >> (lane % 64) & 1U) != 0; }
    void set(std::size_t lane, bool bit) {
      const std::uint64_t mask = std::uint64_t{1} << (lane % 64);
      words[lane / 64] = bit ? words[lane / 64] | mask : words[lane / 64] & ~mask;
    }
    bool operator==(const Block&) const = default;
  };

  /// Compiles what `results`, the outputs of the circuit, depend on.
  Simulator(const Aig& graph, std::span<const Lit> results);

  /// Sets an input of the graph, for this and later runs; inputs start as zeros. An input that no
  /// output depends on may be set, to no effect.
  void set_input(Lit input, const Block& block);
  /// Computes the outputs of all lanes.
  void run();
  /// The i-th output of the last run.
  Block get_output(std::size_t i) const;

  /// Bit `bit` of first, first + 1, ..., first + kLanes - 1: with the bits of a counter as inputs,
  /// runs go through all assignments. `first` is a multiple of kLanes.
  static Block count_from(std::uint64_t first, std::size_t bit);

  /// Number of instructions that a run executes.
  std::size_t get_instruction_count() const { return program.size(); }
  /// Number of blocks that a run works on.
  std::size_t get_block_count() const { return blocks.size(); }

 private:
  /// A block and whether it is read inverted: twice the block, plus one when inverted.
  using Operand = std::uint32_t;
  struct Instruction {
    GateKind kind;
    std::uint32_t output;
    std::array<Operand, 3> inputs;
  };
  class Compiler;

  std::vector<Instruction> program;
  std::vector<Block> blocks;
  std::vector<Operand> outputs;
  std::vector<std::uint32_t> input_blocks;  // by node; 0: the outputs do not depend on it
};

}  // namespace vorn::bv

#endif
