// And-inverter graphs: the form in which circuits reach the solver and the simulator.
//
// Every function is conjunctions and negations, and a negation is one bit of a reference, so a
// circuit is an array of pairs. Nodes are hashed on their operands, and a conjunction is simplified
// against its operands and their operands before it gets a node, by those rules of Brummayer and
// Biere, "Local Two-Level And-Inverter Graph Minimization without Blowup" (2006), that never cost a
// node. Exclusive or, if-then-else and majority are built in one shape each, which gates.h finds
// again. Operands always have smaller indices than the node that uses them, so that index order is
// a topological order.
#ifndef VORN_BV_AIG_H
#define VORN_BV_AIG_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "vorn/utils/export.h"
#include "vorn/utils/termination_test.h"

namespace vorn::bv {

/// A node of a graph, or its negation. Node 0 is the constant false.
class Lit {
 public:
  constexpr Lit() = default;  // false
  /// The node, negated where asked for.
  constexpr Lit(std::uint32_t node, bool negated) : code(2 * node + (negated ? 1U : 0U)) {}

  /// The parts of the literal, and whether it is one of the two of node 0.
  constexpr std::uint32_t get_node() const { return code >> 1U; }
  constexpr bool is_negated() const { return (code & 1U) != 0; }
  constexpr bool is_constant() const { return code < 2; }
  /// Twice the node, plus one when negated.
  constexpr std::uint32_t get_code() const { return code; }

  /// The negation.
  constexpr Lit operator!() const { return {get_node(), !is_negated()}; }
  /// This literal, negated when `flip`.
  constexpr Lit operator^(bool flip) const { return {get_node(), is_negated() != flip}; }
  constexpr bool operator==(const Lit&) const = default;
  constexpr bool operator<(const Lit& other) const { return code < other.code; }

 private:
  std::uint32_t code = 0;
};

/// The two literals of node 0.
inline constexpr Lit kFalse{0, false};
inline constexpr Lit kTrue{0, true};

/// A growing graph of inputs and two-input conjunctions.
class VORN_EXPORT Aig {
 public:
  /// With terms, clauses and the SAT solver's own, 200 bytes belong to each node of a large graph:
  /// ten gigabytes, which an ordinary machine has.
  static constexpr std::size_t kMaxNodes = 50'000'000;

  Aig();

  /// Borrows `t`, asked now and then by the functions below, which then throw Terminated and can
  /// be called again later. Null for none.
  void set_termination_test(const TerminationTest* t) { termtest = t; }

  /// Gives back the memory of what only construction needs, which the next one makes again.
  void release_table();

  // Construction. Each throws std::length_error when the graph would pass kMaxNodes. -----------

  /// A function that nothing is known of.
  Lit make_input();
  /// Functions of two.
  Lit make_and(Lit a, Lit b);
  Lit make_or(Lit a, Lit b) { return !make_and(!a, !b); }
  Lit make_xor(Lit a, Lit b);
  Lit make_iff(Lit a, Lit b) { return !make_xor(a, b); }
  /// t where c holds, e elsewhere.
  Lit make_ite(Lit c, Lit t, Lit e);
  /// Parity of three: the sum bit of a full adder.
  Lit make_xor3(Lit a, Lit b, Lit c);
  /// Whether at least two of three hold: the carry bit of a full adder.
  Lit make_maj(Lit a, Lit b, Lit c);
  /// Conjunction and disjunction of any number, as balanced trees.
  Lit make_and(std::span<const Lit> lits);
  Lit make_or(std::span<const Lit> lits);

  // Inspection --------------------------------------------------------------------------------

  /// All nodes: the constant, inputs and conjunctions.
  std::uint32_t get_node_count() const { return static_cast<std::uint32_t>(nodes.size()); }
  std::uint32_t get_input_count() const { return input_count; }
  std::uint32_t get_and_count() const { return get_node_count() - 1 - input_count; }
  bool is_input(std::uint32_t node) const { return node != 0 && nodes[node].left.is_constant(); }
  bool is_and(std::uint32_t node) const { return !nodes[node].left.is_constant(); }
  /// Operands of a conjunction; the left one is the smaller literal.
  Lit get_left(std::uint32_t node) const { return nodes[node].left; }
  Lit get_right(std::uint32_t node) const { return nodes[node].right; }

 private:
  struct Node {
    Lit left, right;  // both constant for the constant and for inputs
  };

  bool settle(Lit a, Lit b, Lit* result) const;
  bool settle_by_operand(Lit a, Lit b, Lit* result) const;
  bool settle_by_operands(Lit a, Lit b, Lit* result) const;
  bool reduce(Lit* a, Lit b) const;
  Lit add_node(Lit left, Lit right);
  Lit find_or_add(Lit left, Lit right);
  std::size_t find_slot(Lit left, Lit right) const;
  void grow_table();
  std::array<Lit, 3> order_adder_inputs(Lit a, Lit b, Lit c) const;

  std::vector<Node> nodes;
  std::vector<std::uint32_t> table;  // open addressing; 0: free
  std::uint32_t input_count = 0;
  std::uint32_t steps = 0;  // for asking the test only now and then
  const TerminationTest* termtest = nullptr;
};

}  // namespace vorn::bv

#endif
