// From formulas to bit-vector formulas.
//
// The encoder translates floating-point atoms and nothing above them. The translator keeps the
// Boolean and bit-vector structure, hands the atoms to the encoder and builds the structure again on
// what comes back. Three kinds of leaves are fresh constants to the encoder and get their meaning
// here, by constraints on those constants: if-then-else terms, bit-vectors read as floats, and the
// bit-vector arguments of conversions.
#ifndef VORN_SOLVER_TRANSLATOR_H
#define VORN_SOLVER_TRANSLATOR_H

#include <vector>

#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn::solver {

/// Translates formulas of one manager within that manager, level by level.
class Translator {
 public:
  /// Without `rounding` operations that round are refused.
  Translator(TermManager& manager, fp::FpBvEncoder& fp_encoder, bool rounding);

  /// The translation of a Boolean term. The constraints that must hold beside it are appended to
  /// `constraints`; they stay in force until the level in which they were made is popped.
  /// Throws std::invalid_argument where the encoder does not support a term.
  const Term* translate(const Term* formula, std::vector<const Term*>* constraints);

  void push();
  /// Forgets what was translated since the matching push.
  void pop();

  /// Whether a rounding-mode variable occurs in what is translated now.
  bool has_rounding_variable() const { return rounding_variables != 0; }

 private:
  struct Mark {
    std::size_t translated, noted, roots, rounding_variables;
  };

  bool is_fp_atom(const Term* t) const;
  const Term* walk(const Term* root);
  const Term* encode(const Term* t);
  void note_leaves(const Term* root);
  void note(const Term* t);
  void check_supported(const Term* t) const;
  void define(const Term* leaf);
  void define_ite(const Term* leaf, const Term* k);
  void define_from_bits(const Term* leaf, const Term* k);
  void remember(const Term* t, const Term* translation);

  TermManager& mgr;
  fp::FpBvEncoder& encoder;
  const bool allow_rounding;

  TermMap translations;  // Boolean and bit-vector terms
  TermMap noted_leaves;  // floating-point terms searched for leaves; maps to themselves
  std::vector<const Term*> translated;  // keys of `translations` in order
  std::vector<const Term*> noted;       // keys of `noted_leaves` in order
  std::vector<const Term*> roots;       // terms asked of the encoder, in order
  std::size_t rounding_variables = 0;
  std::vector<Mark> marks;

  std::vector<const Term*> pending;  // leaves to define
  std::vector<const Term*>* out = nullptr;
};

}  // namespace vorn::solver

#endif
