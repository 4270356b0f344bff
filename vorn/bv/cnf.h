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
// A gate that costs no more clauses where it is written out in those of the gate above it than it
// would with a variable of its own gets none. That is what a solver's elimination of variables
// would make of it (Een and Biere, "Effective Preprocessing in SAT through Variable and Clause
// Elimination", 2005), but variables and clauses take memory, and most of it, until they are
// eliminated.
//
// With one direction only, the variable of an inner node need not have the value of its function;
// inputs are what a model tells.
#ifndef VORN_BV_CNF_H
#define VORN_BV_CNF_H

#include <array>
#include <cstddef>
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
  /// A literal of a clause that is put together.
  struct Part {
    Lit lit;
    bool is_inner = false;  // the clauses of its gate stand in for it
  };
  /// What is known of a node, in as little as that takes: graphs have millions of them.
  struct Mark {
    std::uint8_t uses : 2 = 0;      // by nodes and callers seen so far, counted up to kManyUses
    std::uint8_t visited : 1 = 0;   // its operands have been counted
    std::uint8_t defined : 2 = 0;   // Directions whose clauses are there
    std::uint8_t asserted : 2 = 0;  // Directions: the values that it was asserted to have
  };
  static_assert(sizeof(Mark) == 1);
  static constexpr std::uint8_t kManyUses = 3;
  /// How many inner gates there can be, one within the other.
  static constexpr std::size_t kMostInner = 3;
  struct Definition {
    std::uint32_t node;
    Directions directions;
  };

  void count_step();
  void count_use(std::uint32_t node);
  void prepare(Lit root);
  void load_gate(std::uint32_t node, WideGate* gate);
  void load_conjunction(std::uint32_t node, WideGate* gate);
  void load_parity(std::uint32_t node, std::span<const Lit> inputs, WideGate* gate);
  static void complement_gate(WideGate* gate);
  int require(Lit lit, Directions use);
  int get_variable(std::uint32_t node);
  int true_literal();
  void assert_node(Lit lit, std::vector<Lit>* conjuncts);
  void define_required();
  bool is_free(Lit lit, std::uint8_t uses) const;
  bool can_be_inner(const WideGate& gate, std::size_t input, std::size_t depth) const;
  void imply_gate(int unless, const WideGate& gate);
  void imply_clauses(int unless, const WideGate& gate, std::size_t depth);
  void imply_parity(int unless, const WideGate& gate, std::size_t depth);
  void imply_clause(int unless, std::size_t depth);
  void add_clause(int unless, std::span<const Part> parts, bool mixed);

  const Aig& graph;
  SatSolver& solver;
  std::vector<Mark> marks;           // by node
  std::vector<int> variables;        // by node; 0: none yet
  std::vector<Definition> required;  // definitions still to be written
  int constant = 0;                  // a variable that is true; 0: none yet
  std::uint32_t steps = 0;           // for asking the test only now and then
  const TerminationTest* termtest = nullptr;

  // Scratch, kept for its capacity.
  std::array<WideGate, kMostInner + 1> gates;  // by depth: the one that is written, those within
  std::array<std::vector<Part>, kMostInner + 1> clauses;  // likewise: the one that is put together
  std::array<std::size_t, kMostInner + 1> taken = {};     // likewise: parts from the gates around
  std::vector<int> clause;
  std::vector<Lit> tree;
};

}  // namespace vorn::bv

#endif
