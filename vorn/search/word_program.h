// Formulas as a program over machine words, for evaluating one formula under many assignments.
//
// Each term is a slot; slots are in topological order. Operations on binary32 and binary64 are the
// processor's own, in its rounding mode; all others are computed exactly on numbers. The one use of
// the results is to look for assignments that are worth an exact evaluation, so a processor that
// departs from IEEE 754 can make a search fail, but not an answer wrong.
//
// A Boolean slot also has the costs of being true and of being false: 0 for the one that it is, and
// for the other an estimate of how far the arguments are from making it so. Costs of comparisons
// are logarithms of the number of floats in between, so that one step of a search can tell progress
// at any magnitude (after Fu and Su, "XSat: A Fast Floating-Point Satisfiability Solver", 2016,
// which minimises such distances).
#ifndef VORN_SEARCH_WORD_PROGRAM_H
#define VORN_SEARCH_WORD_PROGRAM_H

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn::search {

class WordProgram {
 public:
  using Slot = std::uint32_t;
  using Test = std::function<bool(const Term*)>;
  struct Cost {
    float of_true = 0;
    float of_false = 0;
  };

  /// The program of these formulas; none where a term has more than 64 bits or where there are more
  /// than `limit` terms. A constant that a formula equates with a term is computed as that term, as
  /// long as it does not depend on itself, and as `defines` does not say that this equation may
  /// hold of different bits, as fp.eq does of zeros.
  static std::optional<WordProgram> compile(const TermManager& manager,
                                            std::span<const Term* const> formulas,
                                            std::size_t limit, const Test& defines = {});

  /// The slots of the formulas, of uninterpreted constants, and of literals.
  std::span<const Slot> get_roots() const { return roots; }
  std::span<const Slot> get_constants() const { return constants; }
  /// Slots of uninterpreted constants that are computed.
  std::span<const Slot> get_defined() const { return defined; }
  std::span<const Slot> get_literals() const { return literals; }
  /// Whether a slot is a literal, a truth value or a rounding mode.
  bool is_literal(Slot slot) const {
    return nodes[slot].arity == 0 && !std::binary_search(constants.begin(), constants.end(), slot);
  }
  std::size_t get_size() const { return nodes.size(); }
  /// Whether a term is a float.
  bool has_floats() const { return floats; }
  const Term* get_term(Slot slot) const { return nodes[slot].term; }
  /// Slots of the arguments.
  std::span<const Slot> get_args(Slot slot) const;

  /// The value of a slot in the form of Evaluator, as a word.
  std::uint64_t get_value(Slot slot) const { return values[slot]; }
  QNumber get_number(Slot slot) const;
  Cost get_cost(Slot slot) const { return costs[slot]; }
  /// Stores the value of a constant; NaNs become the one NaN.
  void set_value(Slot slot, std::uint64_t value);
  /// Takes back what a slot had before.
  void restore(Slot slot, std::uint64_t value, Cost cost) {
    values[slot] = value;
    costs[slot] = cost;
  }
  /// About what it takes to compute these slots, in operations of the processor.
  std::uint64_t get_effort(std::span<const Slot> slots) const;
  /// Computes these slots, in this order, from their arguments.
  void run(std::span<const Slot> slots);

 private:
  struct Node {
    const Term* term;
    std::uint32_t first_arg;
    std::uint8_t arity;
    std::uint8_t native;  // bits of the processor's format that the operation is on; 0: none
    bool is_boolean;
  };

  using Definitions = std::unordered_map<const Term*, const Term*>;

  static Definitions find_definitions(const TermManager& manager,
                                      std::span<const Term* const> formulas, const Test& defines);
  Slot add(const TermManager& manager, const Term* t, std::span<const Slot> args);
  void compute(Slot slot);
  std::optional<std::uint64_t> compute_natively(const Node& node) const;
  std::uint64_t compute_exactly(const Node& node) const;
  std::uint64_t arg(const Node& node, std::size_t i) const {
    return values[args[node.first_arg + i]];
  }
  Cost arg_cost(const Node& node, std::size_t i) const { return costs[args[node.first_arg + i]]; }
  Cost find_cost(const Node& node, bool holds) const;
  float measure_atom(const Node& node) const;

  std::vector<Node> nodes;
  std::vector<Slot> args;
  std::vector<std::uint64_t> values;
  std::vector<Cost> costs;
  std::vector<Slot> roots;
  std::vector<Slot> constants;
  std::vector<Slot> defined;
  std::vector<Slot> literals;
  bool floats = false;
};

/// A value of at most 64 bits as a number, and back.
QNumber to_number(std::uint64_t word);
std::uint64_t to_word(const QNumber& number);

/// The patterns of a format of at most 64 bits in numeric order, the zeros together at 0: negative
/// ones for floats below zero. NaNs are beyond the infinities.
std::int64_t order_of(std::uint64_t bits, std::size_t width);
/// The pattern with this order; +0 for 0.
std::uint64_t bits_of_order(std::int64_t order, std::size_t width);

}  // namespace vorn::search

#endif
