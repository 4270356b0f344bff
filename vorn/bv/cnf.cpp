// The two directions of a definition are one thing: a gate is implied unless the node is false, and
// its complement, a gate of the same kinds, is implied unless the node is true. An assertion is a
// gate that is implied without any "unless".
#include "vorn/bv/cnf.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>

#include "vorn/bv/gates.h"

namespace vorn::bv {
namespace {

constexpr std::uint8_t kPositive = 1;
constexpr std::uint8_t kNegative = 2;
constexpr std::uint8_t kBoth = 3;

constexpr std::size_t kMostInputsAroundInner = 6;

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
  const int variable = node < variables.size() ? variables[node] : 0;
  return (variable != 0 && solver.value(variable)) != lit.is_negated();
}

// Gates of the graph --------------------------------------------------------------------------

void Cnf::count_step() {
  if (++steps % kStepsBetweenTests == 0 && termtest != nullptr && termtest->terminate()) {
    throw Terminated();
  }
}

void Cnf::count_use(std::uint32_t node) {
  if (marks[node].uses < kManyUses) ++marks[node].uses;
}

/// Makes room for the graph as it is now and counts the uses of nodes below `root`, itself used by
/// the caller. Uses decide only which nodes are drawn into the gates above them; a node that gets
/// another use later is then defined beside the gate that it is in.
void Cnf::prepare(Lit root) {
  marks.resize(graph.get_node_count());
  variables.resize(graph.get_node_count());
  count_use(root.get_node());
  std::vector<std::uint32_t> stack = {root.get_node()};
  while (!stack.empty()) {
    const std::uint32_t node = stack.back();
    stack.pop_back();
    if (marks[node].visited) continue;
    count_step();
    marks[node].visited = 1;
    if (!graph.is_and(node)) continue;
    for (const Lit operand : {graph.get_left(node), graph.get_right(node)}) {
      count_use(operand.get_node());
      stack.push_back(operand.get_node());
    }
  }
}

/// Loads `gate` with the gate that computes `node`.
void Cnf::load_gate(std::uint32_t node, WideGate* gate) {
  const Gate core = match_gate(graph, node);
  switch (core.kind) {
    case GateKind::conjunction:
      gate->shape = Shape::conjunction;
      load_conjunction(node, gate);
      return;
    case GateKind::exclusive_or:
      gate->shape = Shape::exclusive_or;
      load_parity(node, core.get_inputs(), gate);
      return;
    case GateKind::if_then_else:
      gate->shape = Shape::if_then_else;
      break;
    case GateKind::majority:
      gate->shape = Shape::majority;
      break;
  }
  gate->inputs.assign(core.inputs.begin(), core.inputs.end());
}

/// A tree of conjunctions that nothing else uses becomes one conjunction.
void Cnf::load_conjunction(std::uint32_t node, WideGate* gate) {
  gate->inputs.clear();
  tree.assign({graph.get_right(node), graph.get_left(node)});
  while (!tree.empty()) {
    const Lit lit = tree.back();
    tree.pop_back();
    const std::uint32_t inner = lit.get_node();
    if (!lit.is_negated() && marks[inner].uses == 1 && graph.is_and(inner) &&
        match_gate(graph, inner).kind == GateKind::conjunction) {
      tree.push_back(graph.get_right(inner));
      tree.push_back(graph.get_left(inner));
    } else {
      gate->inputs.push_back(lit);
    }
  }
}

/// An exclusive or takes in one of its inputs that is an exclusive or itself and used by this one
/// alone, which uses an input twice: in two conjunctions, which an adder's carry would share.
void Cnf::load_parity(std::uint32_t node, std::span<const Lit> inputs, WideGate* gate) {
  gate->inputs.assign(inputs.begin(), inputs.end());
  const std::uint32_t both = graph.get_left(node).get_node();
  const std::uint32_t neither = graph.get_right(node).get_node();
  if (marks[both].uses != 1 || marks[neither].uses != 1) return;
  for (Lit& input : gate->inputs) {
    const std::uint32_t inner = input.get_node();
    if (marks[inner].uses != 2 || !graph.is_and(inner)) continue;
    const Gate core = match_gate(graph, inner);
    if (core.kind != GateKind::exclusive_or) continue;
    const bool flip = input.is_negated();
    input = core.inputs[0];
    gate->inputs.push_back(core.inputs[1] ^ flip);
    return;
  }
}

/// Turns `gate` into the gate of its negation.
void Cnf::complement_gate(WideGate* gate) {
  std::vector<Lit>& in = gate->inputs;
  switch (gate->shape) {
    case Shape::conjunction:
    case Shape::disjunction:
      gate->shape = gate->shape == Shape::conjunction ? Shape::disjunction : Shape::conjunction;
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
      static_cast<Directions>(of_node(lit, use) & static_cast<unsigned>(~marks[node].defined));
  if (missing != 0) {
    marks[node].defined = (marks[node].defined | missing) & kBoth;
    if (graph.is_and(node)) required.push_back({node, missing});
  }
  return lit.is_negated() ? -variable : variable;
}

/// The variable of a node. That the node was asserted before it had one is caught up on.
int Cnf::get_variable(std::uint32_t node) {
  int& variable = variables[node];
  if (variable == 0) {
    variable = solver.new_variable();
    if ((marks[node].asserted & kPositive) != 0) solver.add_clause({variable});
    if ((marks[node].asserted & kNegative) != 0) solver.add_clause({-variable});
  }
  return variable;
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
  if ((marks[node].asserted & side) != 0) return;
  const bool is_defined = (marks[node].defined & side) != 0 || !graph.is_and(node);
  marks[node].asserted = (marks[node].asserted | side) & kBoth;
  marks[node].defined = kBoth;  // the node has a known value and so has its function
  if (variables[node] != 0) {
    solver.add_clause({lit.is_negated() ? -variables[node] : variables[node]});
  } else if (is_defined) {
    get_variable(node);
  }
  if (is_defined) return;
  WideGate& gate = gates[0];
  load_gate(node, &gate);
  if (lit.is_negated()) complement_gate(&gate);
  if (gate.shape == Shape::conjunction) {
    conjuncts->insert(conjuncts->end(), gate.inputs.begin(), gate.inputs.end());
  } else {
    imply_gate(0, gate);
  }
}

void Cnf::define_required() {
  while (!required.empty()) {
    const auto [node, directions] = required.back();
    required.pop_back();
    count_step();
    const int variable = variables[node];
    WideGate& gate = gates[0];
    load_gate(node, &gate);
    if ((directions & kPositive) != 0) imply_gate(-variable, gate);
    if ((directions & kNegative) != 0) {
      complement_gate(&gate);
      imply_gate(variable, gate);
    }
  }
}

// Clauses -------------------------------------------------------------------------------------

/// Whether the literal is a gate that has so many uses, and no variable yet.
bool Cnf::is_free(Lit lit, std::uint8_t uses) const {
  const Mark mark = marks[lit.get_node()];
  return mark.uses == uses && variables[lit.get_node()] == 0 && mark.asserted == 0 &&
         graph.is_and(lit.get_node());
}

/// Whether the clauses of that input's gate stand in for it in those of `gate`.
///
/// An input that occurs once in the clauses of either direction costs no more clauses than it has
/// by itself; two fewer without those that would define it. So does a branch of an if-then-else
/// that is a plain if-then-else and a branch of two, as in shifters: each of its four clauses
/// stands there twice instead of once beside two that name it, four times over all. Of a
/// conjunction's inputs, all of which are in one clause, one can be written out.
bool Cnf::can_be_inner(const WideGate& gate, std::size_t input, std::size_t depth) const {
  if (depth == kMostInner) return false;
  switch (gate.shape) {
    case Shape::conjunction:
    case Shape::disjunction: {
      if (gate.inputs.size() > kMostInputsAroundInner) return false;
      for (std::size_t i = 0; i < input; ++i) {
        if (is_free(gate.inputs[i], 1)) return false;
      }
      return is_free(gate.inputs[input], 1);
    }
    case Shape::if_then_else:
      if (input == 0) return false;
      if (is_free(gate.inputs[input], 1)) return true;
      return depth == 0 && is_free(gate.inputs[input], 2) &&
             match_gate(graph, gate.inputs[input].get_node()).kind == GateKind::if_then_else;
    case Shape::exclusive_or:
    case Shape::majority:
      break;
  }
  return false;
}

/// Makes `gate` hold unless the solver's literal `unless` does; 0: always.
void Cnf::imply_gate(int unless, const WideGate& gate) {
  clauses[0].clear();
  taken[0] = 0;
  imply_clauses(unless, gate, 0);
}

/// Writes the clauses of `gate`, each with the parts that were taken from the gates around it.
void Cnf::imply_clauses(int unless, const WideGate& gate, std::size_t depth) {
  const auto part = [&](std::size_t input) {
    return Part{gate.inputs[input], can_be_inner(gate, input, depth)};
  };
  const auto imply = [&](std::initializer_list<Part> parts) {
    clauses[depth].resize(taken[depth]);
    clauses[depth].insert(clauses[depth].end(), parts);
    imply_clause(unless, depth);
  };
  switch (gate.shape) {
    case Shape::conjunction:
      for (std::size_t i = 0; i < gate.inputs.size(); ++i)
        imply({part(i)});
      return;
    case Shape::disjunction:
      clauses[depth].resize(taken[depth]);
      for (std::size_t i = 0; i < gate.inputs.size(); ++i)
        clauses[depth].push_back(part(i));
      imply_clause(unless, depth);
      return;
    case Shape::exclusive_or:
      imply_parity(unless, gate, depth);
      return;
    case Shape::if_then_else: {
      const Part condition{gate.inputs[0]};
      const Part unlike{!gate.inputs[0]};
      imply({unlike, part(1)});
      imply({condition, part(2)});
      return;
    }
    case Shape::majority:
      imply({part(0), part(1)});
      imply({part(0), part(2)});
      imply({part(1), part(2)});
      return;
  }
}

/// One clause for each assignment of even parity, which it forbids.
void Cnf::imply_parity(int unless, const WideGate& gate, std::size_t depth) {
  const std::size_t count = gate.inputs.size();
  for (unsigned assignment = 0; assignment < (1U << count); ++assignment) {
    if (std::popcount(assignment) % 2 != 0) continue;
    clauses[depth].resize(taken[depth]);
    for (std::size_t i = 0; i < count; ++i)
      clauses[depth].push_back({gate.inputs[i] ^ ((assignment >> i & 1U) != 0)});
    imply_clause(unless, depth);
  }
}

/// Writes the clause that was put together at that depth: as it stands, or once for each clause of
/// its inner gate. There is one such gate at most.
void Cnf::imply_clause(int unless, std::size_t depth) {
  const std::vector<Part>& parts = clauses[depth];
  const auto inner = std::ranges::find_if(parts, &Part::is_inner);
  if (inner == parts.end()) {
    add_clause(unless, parts, depth > 0);
    return;
  }
  const Lit lit = inner->lit;
  // What is written out twice is not to be made larger.
  const std::size_t next = marks[lit.get_node()].uses > 1 ? kMostInner : depth + 1;
  clauses[next].assign(parts.begin(), inner);
  clauses[next].insert(clauses[next].end(), inner + 1, parts.end());
  taken[next] = clauses[next].size();
  WideGate& gate = gates[next];
  load_gate(lit.get_node(), &gate);
  if (lit.is_negated()) complement_gate(&gate);
  imply_clauses(unless, gate, next);
}

/// Gates that are `mixed` may read the same literals.
void Cnf::add_clause(int unless, std::span<const Part> parts, bool mixed) {
  const auto has_before = [&](std::size_t i, Lit lit) {
    return std::ranges::find(parts.first(i), lit, &Part::lit) !=
           parts.begin() + static_cast<std::ptrdiff_t>(i);
  };
  for (std::size_t i = 0; mixed && i < parts.size(); ++i) {
    if (has_before(i, !parts[i].lit)) return;  // it holds anyway
  }
  clause.clear();
  if (unless != 0) clause.push_back(unless);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (!mixed || !has_before(i, parts[i].lit)) clause.push_back(require(parts[i].lit, kPositive));
  }
  solver.add_clause(clause);
}

}  // namespace vorn::bv
