// Circuits on the inputs of a graph, and what they compute on every assignment of these inputs.
#ifndef VORN_TESTS_BV_CIRCUIT_FIXTURE_H
#define VORN_TESTS_BV_CIRCUIT_FIXTURE_H

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "vorn/bv/aig.h"
#include "vorn/bv/circuits.h"
#include "vorn/bv/simulator.h"

namespace vorn::bv {

using Word = std::uint64_t;

inline Word mask(std::size_t width) {
  return (Word{1} << width) - 1;
}

/// A word of `width` bits read as two's complement.
inline std::int64_t read_signed(Word a, std::size_t width) {
  const auto value = static_cast<std::int64_t>(a);
  return (a >> (width - 1) & 1U) != 0 ? value - (std::int64_t{1} << width) : value;
}

/// The literals of a number's bits, least significant first.
inline Bits constant(Word value, std::size_t width) {
  Bits bits;
  for (std::size_t i = 0; i < width; ++i)
    bits.push_back((value >> i & 1U) != 0 ? kTrue : kFalse);
  return bits;
}

/// One graph, the circuits in it and its inputs.
class CircuitTester {
 public:
  /// Fresh inputs, which become the next bits of an assignment.
  Bits make_inputs(std::size_t width) {
    Bits bits;
    for (std::size_t i = 0; i < width; ++i)
      bits.push_back(graph.make_input());
    inputs.insert(inputs.end(), bits.begin(), bits.end());
    return bits;
  }
  Lit make_input() { return make_inputs(1).front(); }

  /// Checks that the outputs spell expected(assignment), modulo 2^(their number), on every
  /// assignment of the inputs; the input that was made first is bit 0 of the assignment.
  template <class Expected>
  void expect_outputs(BitsView outputs, Expected expected, const std::string& what) const {
    Simulator simulator(graph, outputs);
    for (Word first = 0; first <= mask(inputs.size()); first += Simulator::kLanes) {
      for (std::size_t i = 0; i < inputs.size(); ++i)
        simulator.set_input(inputs[i], Simulator::count_from(first, i));
      simulator.run();
      for (std::size_t lane = 0; lane < Simulator::kLanes; ++lane) {
        Word value = 0;
        for (std::size_t i = 0; i < outputs.size(); ++i)
          value |= Word{simulator.get_output(i).get(lane)} << i;
        const Word assignment = (first + lane) & mask(inputs.size());
        ASSERT_EQ(value, expected(assignment) & mask(outputs.size()))
            << what << " on assignment " << assignment;
      }
    }
  }
  template <class Expected>
  void expect_output(Lit output, Expected expected, const std::string& what) const {
    expect_outputs({&output, 1}, expected, what);
  }

  Aig graph;
  Circuits circuits{graph};

 private:
  Bits inputs;
};

inline std::string width_text(std::size_t width) {
  return "width " + std::to_string(width);
}

}  // namespace vorn::bv

#endif
