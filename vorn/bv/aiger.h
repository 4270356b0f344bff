// And-inverter graphs in AIGER 1.9, the format of tools for hardware.
//
// The graph's nodes are numbered anew: inputs first, then the conjunctions that the output needs,
// operands before the nodes that use them. That order is what the binary variant asks for, and it
// leaves out what other formulas left behind in the graph.
#ifndef VORN_BV_AIGER_H
#define VORN_BV_AIGER_H

#include <cstdint>
#include <ostream>
#include <span>
#include <string>

#include "vorn/bv/aig.h"
#include "vorn/utils/export.h"

namespace vorn::bv {

/// The variants of the format: text, "aag", and binary, "aig".
enum class AigerFormat : std::uint8_t { ascii, binary };

/// An input of the circuit and its name.
struct AigerInput {
  /// The input itself, not negated.
  Lit lit;
  std::string name;  // one line
};

/// Writes a combinational circuit with one output, named `output_name`. `inputs` lists, in their
/// order, inputs of the graph, all that the output depends on among them.
/// Throws std::invalid_argument where one is missing, listed twice or no input, or where a name is
/// more than a line.
VORN_EXPORT void write_aiger(std::ostream& out, const Aig& graph,
                             std::span<const AigerInput> inputs, Lit output,
                             const std::string& output_name, AigerFormat format);

}  // namespace vorn::bv

#endif
