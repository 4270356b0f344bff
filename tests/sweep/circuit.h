// One operation in several rounding modes as one compiled circuit, and its comparison with a
// reference.
//
// The encodings of the modes share one graph, and all that belongs to operands only is in it once.
// Consecutive indices differ in few bits, so the inputs of a run cost nothing; its outputs are
// transposed into numbers, 64 lanes of all words of a block at a time.
#ifndef TESTS_SWEEP_CIRCUIT_H
#define TESTS_SWEEP_CIRCUIT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tests/sweep/operation.h"
#include "vorn/bv/aig.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/simulator.h"
#include "vorn/terms/term_manager.h"

namespace vorn::sweep {

/// As many blocks as a word has bits: word w of all of them is a matrix of 64 rows and columns.
using Matrix = std::array<bv::Simulator::Block, 64>;

/// Transposes the matrices of all words: bit k of word w of block i changes places with bit i of
/// word w of block k.
void transpose(Matrix& matrix);

/// An operation by the exact encoder.
class SweptCircuit {
 public:
  /// `modes` are positions in kModeNames, ascending.
  SweptCircuit(const Operation& of, std::span<const std::size_t> modes);

  /// Checks the kRowSize indices of a row; the mismatches, up to `most` of them, as lines of text.
  std::vector<std::string> check_row(std::uint64_t row, std::size_t most);

 private:
  void set_inputs(std::uint64_t first);
  bool matches(std::size_t output, const std::array<std::uint64_t, kLanes>& wanted);
  std::string describe(std::uint64_t index, std::size_t mode, std::uint64_t got,
                       std::uint64_t wanted) const;

  const Operation& operation;
  std::vector<std::size_t> modes;
  TermManager mgr;
  bv::Aig aig;
  bv::BitBlaster blaster;
  std::vector<bv::Lit> index_bits;                    // lowest first
  std::vector<std::span<const bv::Lit>> open_values;  // of each mode, where there is one
  std::size_t result_width = 0;
  std::unique_ptr<bv::Simulator> simulator;
  Matrix results = {};  // of the mode that was compared last: block i % 64, word i / 64 is lane i
  Expected expected = {};
};

}  // namespace vorn::sweep

#endif
