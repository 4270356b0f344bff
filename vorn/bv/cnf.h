// Clauses from an and-inverter graph, on demand.
//
// A node gets a variable when something asks for it, and clauses only in the directions in which it
// is used (Plaisted and Greenbaum, "A Structure-Preserving Clause Form Translation", 1986): if a
// formula needs a node to be true, that the node implies its function is enough. Which directions
// are there already is kept per node, and a later use adds what is missing, so assertions and
// assumptions can come in any order. Gates of gates.h get their own clauses, parity of three and
// trees of conjunctions are put together from them, and nodes that end up inside a gate get neither
// variable nor clause.
//
// With one direction only, the variable of an inner node need not have the value of its function;
// inputs are what a model tells.
#ifndef VORN_BV_CNF_H
#define VORN_BV_CNF_H

#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

#include "vorn/bv/aig.h"
#include "vorn/bv/sat_solver.h"
#include "vorn/utils/export.h"
#include "vorn/utils/termination_test.h"

namespace vorn::bv {

/// Writes the clauses of one graph into one solver. The graph may grow meanwhile.
class VORN_EXPORT Cnf {
 public:
  /// How a literal is used: to be made true, to be made false, or either.
  enum class Polarity : std::uint8_t { positive = 1, negative = 2, both = 3 };

  /// Borrows both.
  Cnf(const Aig& aig, SatSolver& sat) : graph(aig), solver(sat) {}

  /// Borrows `t`, asked now and then by the functions below, which then throw Terminated. What they
  /// throw, be it that or a lack of memory, leaves definitions half written: neither this nor the
  /// solver is of use afterwards. Null for none.
  void set_termination_test(const TerminationTest* t) { termtest = t; }

  /// The solver's literal of `lit`, with the clauses that its use needs. A literal that is only
  /// ever assumed or asserted as it stands is used positively.
  int literal(Lit lit, Polarity use = Polarity::both);
  /// Adds the clauses that make `lit` true for good.
  void assert_true(Lit lit);
  /// The value of an input, its negation or a constant in the solver's model; an input that no
  /// clause mentions is false. Throws std::logic_error where the solver has no model.
  bool value(Lit lit) const;

 private:
  using Directions = std::uint8_t;  // Polarity of a node as a set of bits

  enum class Shape : std::uint8_t {
    conjunction,
    disjunction,
    exclusive_or,  // of two or three
    if_then_else,
    majority
  };
  /// A gate with what was drawn into it: any number of inputs for the first two shapes.
  struct WideGate {
    Shape shape = Shape::conjunction;
    std::vector<Lit> inputs;
  };
  struct Node {
    int variable = 0;         // 0: none yet
    std::uint32_t uses = 0;   // by nodes and callers seen so far
    bool visited = false;     // its operands have been counted
    Directions defined = 0;   // directions whose clauses are there
    Directions asserted = 0;  // the values that it was asserted to have
  };
  struct Definition {
    std::uint32_t node;
    Directions directions;
  };

  void count_step();
  void prepare(Lit root);
  void load_gate(std::uint32_t node);
  void load_conjunction(std::uint32_t node);
  void load_parity(std::uint32_t node, std::span<const Lit> inputs);
  void complement_gate();
  int require(Lit lit, Directions use);
  int get_variable(std::uint32_t node);
  int true_literal();
  void assert_node(Lit lit, std::vector<Lit>* conjuncts);
  void define_required();
  void imply_gate(int unless);
  void imply_parity(int unless);
  void imply_clause(int unless, std::span<const Lit> lits);
  void imply_mixed(int unless, Lit condition, Lit lit);

  const Aig& graph;
  SatSolver& solver;
  std::vector<Node> nodes;
  std::vector<Definition> required;  // definitions still to be written
  int constant = 0;                  // a variable that is true; 0: none yet
  std::uint32_t steps = 0;           // for asking the test only now and then
  const TerminationTest* termtest = nullptr;

  // Scratch, kept for its capacity.
  WideGate gate;
  std::vector<int> clause;
  std::vector<Lit> tree;
};

}  // namespace vorn::bv

#endif
