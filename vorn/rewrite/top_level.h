// What assertions say of each other: definitions of constants, and formulas that hold.
//
// An asserted equation between a constant and a term in which it does not occur is a definition:
// the term takes the constant's place everywhere, and the equation need not be stated. An asserted
// formula is true, and one whose negation is asserted false, wherever it occurs in another
// assertion. Conjunctions are taken apart first. What is found makes more of the same, so this goes
// on for some rounds.
//
// Assertions come level by level, those of a level in one or more groups. A group is simplified by
// what it asserts itself and by what came before it. What came before stays as it is, since it is
// translated by then: a constant that it mentions gets no definition any more. If such a constant
// has the value of a literal, later groups see the literal, and the equation is stated.
//
// Why this is sound, round by round: a formula replaced by its truth value is stated, with smaller
// formulas in it replaced likewise, so that by induction on size what is stated holds if what was
// asserted does and the other way about. After that, definitions that do not lead back to
// themselves are expanded.
#ifndef VORN_REWRITE_TOP_LEVEL_H
#define VORN_REWRITE_TOP_LEVEL_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/terms/term_set.h"
#include "vorn/utils/termination_poll.h"
#include "vorn/utils/trail.h"

namespace vorn::rewrite {

/// A constant and the term that takes its place, in which no constant with a definition occurs.
struct Definition {
  const Term* constant;
  const Term* value;
};

/// Simplifies the assertions of one manager within that manager, level by level.
class TopLevel {
 public:
  /// Borrows both. The test is asked by whatever takes long, which then throws Terminated; null for
  /// none. Anything that is thrown leaves an object that can only be destroyed.
  explicit TopLevel(TermManager& manager, const TerminationTest* test = nullptr)
      : mgr(manager), poll(test) {}

  /// What is to be stated in place of these assertions on the current level. With the definitions,
  /// and beside what was stated before, it has the same models.
  std::vector<const Term*> simplify(std::span<const Term* const> assertions);
  /// What has the truth value of `f` wherever what was asserted so far holds. Nothing follows from
  /// it for others: `f` may be assumed.
  const Term* simplify_assumption(const Term* f);

  void push();
  /// Forgets what came since the matching push.
  void pop();

  /// Those of all levels. A model of what is stated has values for all constants but these, which
  /// have the values of their terms.
  const std::vector<Definition>& get_definitions() const { return definitions.get_items(); }
  /// How many constants got a definition, and how many formulas gave way to their truth values, on
  /// levels that were popped too.
  std::uint64_t get_definition_count() const { return defined; }
  std::uint64_t get_truth_count() const { return propagated; }

 private:
  /// An asserted equation that may become a definition.
  struct Candidate {
    enum class State : std::uint8_t { untried, open, closed, dropped };

    const Term* value;
    std::size_t item;  // the assertion
    State state = State::untried;
    std::size_t depth = 0;  // of the constant on the stack, while open
  };
  /// An asserted formula.
  struct Asserted {
    const Term* truth;
    std::size_t item;
  };

  void flatten(std::span<const Term* const> assertions);
  bool run_round();
  void collect();
  bool collect_equation(std::size_t item);
  bool add_candidate(const Definition& equation, std::size_t item);
  bool state(const Definition& equation, std::size_t item);
  void define_candidates();
  bool simplify_items();
  bool is_asserted_by(const Term* f, std::size_t item) const;
  void keep_asserted();
  void keep_definitions(std::size_t first);
  void settle();
  void forget_results();

  const Term* simplify(const Term* root);
  const Term* find_result(const Term* t) const;
  const Term* find_replacement(const Term* t);
  const Term* find_truth(const Term* t) const;
  bool push_arguments(const Term* t);
  void open(const Term* constant, Candidate* candidate);
  void cut_cycle();
  const Term* rebuild(const Term* t);
  void note(const Term* t, const Term* result);
  void add_fact(const Term* t, const Term* replacement);

  TermManager& mgr;
  TerminationPoll poll;

  TermMap facts;                  // constants and formulas, and what replaces them
  Trail<const Term*> fact_keys;   // its keys
  Trail<Definition> definitions;  // those of the facts that are not stated
  TermMap settled;                // what terms of earlier groups became
  Trail<const Term*> settled_keys;

  // Of the current group.
  std::vector<const Term*> items;   // what is asserted, as far as it has got; null where that left
  std::vector<const Term*> stated;  // equations that later terms are simplified by, as they are
  std::unordered_map<const Term*, Asserted> asserted;
  std::unordered_map<const Term*, Candidate> candidates;
  std::vector<const Term*> candidate_order;

  // Of the current walk.
  TermMap results;
  std::vector<const Term*> result_keys;
  std::vector<const Term*> stack;
  std::vector<const Term*> opened;  // constants on the stack whose values are being simplified
  std::size_t wasted = 0;           // terms on the stack that cycles took off again

  std::uint64_t defined = 0;
  std::uint64_t propagated = 0;
};

/// The definitions that an asserted formula may be read as, the preferred one first: none, one, or
/// two for an equation of two constants. Whether a constant occurs in its value is not looked at.
std::vector<Definition> read_definitions(TermManager& manager, const Term* formula);

/// Whether `t` is an uninterpreted constant that has bits for values.
bool is_bit_constant(const TermManager& manager, const Term* t);
/// Whether `t` is a literal, truth value or rounding mode.
bool is_literal(const TermManager& manager, const Term* t);

}  // namespace vorn::rewrite

#endif
