// Operations whose circuits are put off until a candidate for a model asks for them.
//
// The circuit of a product, a quotient, a root or a remainder is most of the clauses of a formula,
// and often nothing depends on all of its bits. So a constant stands for the result at first, with
// facts that cost little beside it (result_lemmas.h). What a candidate for a model gives such a
// constant is compared with the exact value of the operation on what the candidate gives its
// operands; where they differ, a lemma excludes this, and after a few lemmas the circuit comes
// (after Brain, Schanda and Sun, "Building Better Bit-Blasting for Floating-Point Problems", 2019,
// and Niemetz, Preiner and Zohar, "Scalable Bit-Blasting with Abstractions", 2024).
#ifndef VORN_SOLVER_ABSTRACTION_H
#define VORN_SOLVER_ABSTRACTION_H

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/trail.h"

namespace vorn::solver {

/// Whether the circuit of `t` is so large that it is worth being put off: by operation, widths, and
/// whether an operand is a literal. Of operations on bit-vectors, only where `with_bits` says so.
bool is_expensive(const Term* t, bool with_bits);

/// The terms for which constants stand, level by level. A level takes lemmas and circuits with it
/// when it is closed. That a term has needed its circuit is kept, so that it has it from the start
/// when it comes back.
class Abstraction {
 public:
  /// Borrows the manager, which makes the constants. Operations on bit-vectors are wanted only
  /// `with_bits`.
  Abstraction(TermManager& manager, bool with_bits) : mgr(manager), has_bits(with_bits) {}

  /// Whether a constant is to stand for `t`.
  bool is_wanted(const Term* t) const;
  /// Notes `t`, which is wanted and not noted yet, on the current level. Returns the constant that
  /// stands for it, of the same sort.
  const Term* add(const Term* t);
  /// The constant that stands for `t`, which was noted.
  const Term* get_stand_in(const Term* t) const { return entries.at(t).stand_in; }
  /// The terms of all levels, arguments before the terms that use them.
  const std::vector<const Term*>& get_terms() const { return terms.get_items(); }

  /// A constant in the place of an operand, always the same one, so that there is a second term of
  /// an operation that already has an encoding.
  const Term* get_alias(const Term* operand);

  /// Whether there is to be another lemma on `t`, which is then counted; if not, its circuit is
  /// due.
  bool take_lemma(const Term* t);
  /// Notes on the current level that the circuit of `t` has been stated.
  void add_circuit(const Term* t);
  bool has_circuit(const Term* t) const { return entries.at(t).has_circuit; }
  /// Whether every term has its circuit.
  bool is_complete() const { return circuits.get_size() == terms.get_size(); }

  void push();
  /// Forgets what was noted since the matching push.
  void pop();

 private:
  struct Entry {
    const Term* stand_in = nullptr;
    std::uint32_t lemmas = 0;
    bool has_circuit = false;
    bool needs_circuit = false;  // had one, be it on a level that was closed
  };

  TermManager& mgr;
  bool has_bits;
  std::unordered_map<const Term*, Entry> entries;
  std::unordered_map<const Term*, const Term*> aliases;
  Trail<const Term*> terms;
  Trail<const Term*> circuits;  // terms that have theirs
};

}  // namespace vorn::solver

#endif
