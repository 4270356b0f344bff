// The two directions of a definition are one thing: a gate is implied unless the node is false, and
// its complement, a gate of the same kinds, is implied unless the node is true. An assertion is a
// gate that is implied without any "unless".
#include "vorn/bv/cnf.h"

#include <array>
#include <bit>
#include <cassert>

#include "vorn/bv/gates.h"

namespace vorn::bv {
namespace {

constexpr std::uint8_t kPositive = 1;
constexpr std::uint8_t kNegative = 2;
constexpr std::uint8_t kBoth = 3;

constexpr std::uint32_t kStepsBetweenTests = 1U << 12U;

/// Directions of use of a literal, as those of its node.
std::uint8_t of_node(Lit lit, std::uint8_t use) {
  if (!lit.is_negated() || use == kBoth) return use;
  return use == kPositive ? kNegative : kPositive;
}

}  // namespace

// Interface -----------------------------------------------------------------------------------

int Cnf::literal(Lit lit, Polarity use) {
  if (lit.is_constant()) return lit == kTrue ? true_literal() : -true_literal();
  prepare(lit);
  const int result = require(lit, static_cast<Directions>(use));
  define_required();
  return result;
}

void Cnf::assert_true(Lit lit) {
  std::vector<Lit> conjuncts = {lit};
  while (!conjuncts.empty()) {
    const Lit conjunct = conjuncts.back();
    conjuncts.pop_back();
    if (conjunct == kFalse) solver.add_clause({});
    if (conjunct.is_constant()) continue;
    prepare(conjunct);
    assert_node(conjunct, &conjuncts);
  }
  define_required();
}

bool Cnf::value(Lit lit) const {
  if (lit.is_constant()) return lit == kTrue;
  const std::uint32_t node = lit.get_node();
  assert(graph.is_input(node));
  const int variable = node < nodes.size() ? nodes[node].variable : 0;
  return (variable != 0 && solver.value(variable)) != lit.is_negated();
}

// Gates of the graph --------------------------------------------------------------------------

void Cnf::count_step() {
  if (++steps % kStepsBetweenTests == 0 && termtest != nullptr && termtest->terminate()) {
    throw Terminated();
  }
}

/// Makes room for the graph as it is now and counts the uses of nodes below `root`, itself used by
/// the caller. Uses decide only which nodes are drawn into the gates above them; a node that gets
/// another use later is then defined beside the gate that it is in.
void Cnf::prepare(Lit root) {
  nodes.resize(graph.get_node_count());
  ++nodes[root.get_node()].uses;
  std::vector<std::uint32_t> stack = {root.get_node()};
  while (!stack.empty()) {
    const std::uint32_t node = stack.back();
    stack.pop_back();
    if (nodes[node].visited) continue;
    count_step();
    nodes[node].visited = true;
    if (!graph.is_and(node)) continue;
    for (const Lit operand : {graph.get_left(node), graph.get_right(node)}) {
      ++nodes[operand.get_node()].uses;
      stack.push_back(operand.get_node());
    }
  }
}

/// Loads `gate` with the gate that computes `node`.
void Cnf::load_gate(std::uint32_t node) {
  const Gate core = match_gate(graph, node);
  switch (core.kind) {
    case GateKind::conjunction:
      gate.shape = Shape::conjunction;
      load_conjunction(node);
      return;
    case GateKind::exclusive_or:
      gate.shape = Shape::exclusive_or;
      load_parity(node, core.get_inputs());
      return;
    case GateKind::if_then_else:
      gate.shape = Shape::if_then_else;
      break;
    case GateKind::majority:
      gate.shape = Shape::majority;
      break;
  }
  gate.inputs.assign(core.inputs.begin(), core.inputs.end());
}

/// A tree of conjunctions that nothing else uses becomes one conjunction.
void Cnf::load_conjunction(std::uint32_t node) {
  gate.inputs.clear();
  tree.assign({graph.get_right(node), graph.get_left(node)});
  while (!tree.empty()) {
    const Lit lit = tree.back();
    tree.pop_back();
    const std::uint32_t inner = lit.get_node();
    if (!lit.is_negated() && nodes[inner].uses == 1 && graph.is_and(inner) &&
        match_gate(graph, inner).kind == GateKind::conjunction) {
      tree.push_back(graph.get_right(inner));
      tree.push_back(graph.get_left(inner));
    } else {
      gate.inputs.push_back(lit);
    }
  }
}

/// An exclusive or takes in one of its inputs that is an exclusive or itself and used by this one
/// alone, which uses an input twice: in two conjunctions, which an adder's carry would share.
void Cnf::load_parity(std::uint32_t node, std::span<const Lit> inputs) {
  gate.inputs.assign(inputs.begin(), inputs.end());
  const std::uint32_t both = graph.get_left(node).get_node();
  const std::uint32_t neither = graph.get_right(node).get_node();
  if (nodes[both].uses != 1 || nodes[neither].uses != 1) return;
  for (Lit& input : gate.inputs) {
    const std::uint32_t inner = input.get_node();
    if (nodes[inner].uses != 2 || !graph.is_and(inner)) continue;
    const Gate core = match_gate(graph, inner);
    if (core.kind != GateKind::exclusive_or) continue;
    const bool flip = input.is_negated();
    input = core.inputs[0];
    gate.inputs.push_back(core.inputs[1] ^ flip);
    return;
  }
}

/// Turns `gate` into the gate of its negation.
void Cnf::complement_gate() {
  std::vector<Lit>& in = gate.inputs;
  switch (gate.shape) {
    case Shape::conjunction:
    case Shape::disjunction:
      gate.shape = gate.shape == Shape::conjunction ? Shape::disjunction : Shape::conjunction;
      for (Lit& input : in)
        input = !input;
      return;
    case Shape::exclusive_or:
      in[0] = !in[0];
      return;
    case Shape::if_then_else:
      in[1] = !in[1];
      in[2] = !in[2];
      return;
    case Shape::majority:
      for (Lit& input : in)
        input = !input;
      return;
  }
}

// Definitions and assertions ------------------------------------------------------------------

/// The solver's literal; the missing clauses for this use are put off to define_required.
int Cnf::require(Lit lit, Directions use) {
  assert(!lit.is_constant());
  const std::uint32_t node = lit.get_node();
  const int variable = get_variable(node);
  const auto missing =
      static_cast<Directions>(of_node(lit, use) & static_cast<unsigned>(~nodes[node].defined));
  if (missing != 0) {
    nodes[node].defined |= missing;
    if (graph.is_and(node)) required.push_back({node, missing});
  }
  return lit.is_negated() ? -variable : variable;
}

/// The variable of a node. That the node was asserted before it had one is caught up on.
int Cnf::get_variable(std::uint32_t node) {
  Node& entry = nodes[node];
  if (entry.variable == 0) {
    entry.variable = solver.new_variable();
    if ((entry.asserted & kPositive) != 0) solver.add_clause({entry.variable});
    if ((entry.asserted & kNegative) != 0) solver.add_clause({-entry.variable});
  }
  return entry.variable;
}

int Cnf::true_literal() {
  if (constant == 0) {
    constant = solver.new_variable();
    solver.add_clause({constant});
  }
  return constant;
}

/// Asserts a literal that is not constant, or appends what it is the conjunction of.
void Cnf::assert_node(Lit lit, std::vector<Lit>* conjuncts) {
  const std::uint32_t node = lit.get_node();
  const Directions side = of_node(lit, kPositive);
  if ((nodes[node].asserted & side) != 0) return;
  const bool is_defined = (nodes[node].defined & side) != 0 || !graph.is_and(node);
  nodes[node].asserted |= side;
  nodes[node].defined = kBoth;  // the node has a known value and so has its function
  if (nodes[node].variable != 0) {
    solver.add_clause({lit.is_negated() ? -nodes[node].variable : nodes[node].variable});
  } else if (is_defined) {
    get_variable(node);
  }
  if (is_defined) return;
  load_gate(node);
  if (lit.is_negated()) complement_gate();
  if (gate.shape == Shape::conjunction) {
    conjuncts->insert(conjuncts->end(), gate.inputs.begin(), gate.inputs.end());
  } else {
    imply_gate(0);
  }
}

void Cnf::define_required() {
  while (!required.empty()) {
    const auto [node, directions] = required.back();
    required.pop_back();
    count_step();
    const int variable = nodes[node].variable;
    load_gate(node);
    if ((directions & kPositive) != 0) imply_gate(-variable);
    if ((directions & kNegative) != 0) {
      complement_gate();
      imply_gate(variable);
    }
  }
}

// Clauses -------------------------------------------------------------------------------------

/// Makes `gate` hold unless the solver's literal `unless` does; 0: always.
void Cnf::imply_gate(int unless) {
  const std::vector<Lit>& in = gate.inputs;
  switch (gate.shape) {
    case Shape::conjunction:
      for (const Lit& input : in)
        imply_clause(unless, {&input, 1});
      return;
    case Shape::disjunction:
      imply_clause(unless, in);
      return;
    case Shape::exclusive_or:
      imply_parity(unless);
      return;
    case Shape::if_then_else:
      imply_mixed(unless, !in[0], in[1]);
      imply_mixed(unless, in[0], in[2]);
      return;
    case Shape::majority:
      for (const auto& pair : {std::array{in[0], in[1]}, {in[0], in[2]}, {in[1], in[2]}}) {
        imply_clause(unless, pair);
      }
      return;
  }
}

/// One clause for each assignment of even parity, which it forbids.
void Cnf::imply_parity(int unless) {
  const std::size_t count = gate.inputs.size();
  for (unsigned assignment = 0; assignment < (1U << count); ++assignment) {
    if (std::popcount(assignment) % 2 != 0) continue;
    clause.clear();
    if (unless != 0) clause.push_back(unless);
    for (std::size_t i = 0; i < count; ++i) {
      const int literal = require(gate.inputs[i], kBoth);
      clause.push_back((assignment >> i & 1U) != 0 ? -literal : literal);
    }
    solver.add_clause(clause);
  }
}

void Cnf::imply_clause(int unless, std::span<const Lit> lits) {
  clause.clear();
  if (unless != 0) clause.push_back(unless);
  for (const Lit lit : lits)
    clause.push_back(require(lit, kPositive));
  solver.add_clause(clause);
}

/// A clause of a condition that is used in both directions and a literal.
void Cnf::imply_mixed(int unless, Lit condition, Lit lit) {
  require(condition, kBoth);
  imply_clause(unless, std::array{condition, lit});
}

}  // namespace vorn::bv
