// Recognition of larger gates in an and-inverter graph.
//
// The graph knows conjunctions only, but clauses and simulation are cheaper for exclusive or,
// if-then-else and majority as a whole. The nodes inside such a gate vanish when nothing else uses
// them. Recognition is by shape alone, so it also finds gates that rewriting or hashing put
// together.
#ifndef VORN_BV_GATES_H
#define VORN_BV_GATES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "vorn/bv/aig.h"

namespace vorn::bv {

enum class GateKind : std::uint8_t { conjunction, exclusive_or, if_then_else, majority };

/// A function of up to three literals that a node computes.
struct Gate {
  GateKind kind;
  std::array<Lit, 3> inputs;  // if-then-else: condition, then, else

  std::size_t get_arity() const {
    return kind == GateKind::if_then_else || kind == GateKind::majority ? 3 : 2;
  }
  std::span<const Lit> get_inputs() const { return {inputs.data(), get_arity()}; }
};

/// The largest gate whose output is `node`, a conjunction of `graph`.
VORN_EXPORT Gate match_gate(const Aig& graph, std::uint32_t node);

}  // namespace vorn::bv

#endif
