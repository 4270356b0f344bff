// From formulas to bit-vector formulas.
//
// The encoder translates floating-point operations and nothing around them. The translator keeps
// the Boolean and bit-vector structure: it walks a formula bottom-up, hands each floating-point
// operation to the encoder once its arguments are done, and builds everything else again on what
// comes back. Three kinds of terms that the encoder would replace by fresh constants get their
// encoding here: if-then-else terms, bit-vectors read as floats, and the bit-vector arguments of
// conversions. So do reads of arrays and applications of functions, which constants stand for, and
// operations whose circuits are put off.
#ifndef VORN_SOLVER_TRANSLATOR_H
#define VORN_SOLVER_TRANSLATOR_H

#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/solver/abstraction.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/theories/theory_terms.h"
#include "vorn/utils/trail.h"

namespace vorn::solver {

/// Translates formulas of one manager within that manager, level by level.
class Translator {
 public:
  /// The encoder is to make no free constants from here on. What is for the theories of arrays and
  /// functions is noted with `theory_terms`, whose stand-ins it becomes; so is what `put_off`
  /// wants, with that, unless it is null.
  Translator(TermManager& manager, fp::FpBvEncoder& fp_encoder, theories::TheoryTerms& theory_terms,
             Abstraction* put_off = nullptr)
      : mgr(manager), encoder(fp_encoder), theory(theory_terms), abstraction(put_off) {
    encoder.set_free_constants(false);
  }

  /// The translation of a Boolean term. The constraints that must hold beside it are appended to
  /// `constraints`; they stay in force until the level in which they were made is popped.
  /// Throws std::invalid_argument where the encoder does not support a term.
  const Term* translate(const Term* formula, Trail<const Term*>* constraints);
  /// That the constant which stands for `t`, an operation that was put off, is its result: what
  /// translate is to a formula. Its operands are translated.
  const Term* translate_result(const Term* t, Trail<const Term*>* constraints);
  /// False once a translation was ended by any other exception: then some of what is known of terms
  /// and constraints is missing, and the translator and its encoder can only be destroyed.
  bool is_whole() const { return !is_half_done; }
  /// Floats, rounding modes, predicates on them and conversions of them that have an encoding, each
  /// behind its arguments. Terms that were refused are among them.
  const Trail<const Term*>& get_encoded() const { return encoded; }

  void push();
  /// Forgets what was translated since the matching push.
  void pop();

 private:
  bool is_fp_term(const Term* t) const;
  bool reads_fp(const Term* t) const;
  const Term* find(const Term* t) const;
  void finish(const Term* t, Trail<const Term*>* constraints);
  void note(const Term* t, const Term* translation);
  void stand_for(const Term* t, const Term* stand_in, Trail<const Term*>* constraints);
  bool finish_theory_term(const Term* t, Trail<const Term*>* constraints);
  void encode(const Term* t, Trail<const Term*>* constraints);
  void define(const Term* t, const Term* encoding);
  const Term* read_bits(const Term* bits, std::size_t e, std::size_t m);

  TermManager& mgr;
  fp::FpBvEncoder& encoder;
  theories::TheoryTerms& theory;
  Abstraction* abstraction;  // of operations; null for none

  TermMap translations;           // of all terms but floats and rounding modes
  Trail<const Term*> translated;  // its keys
  Trail<const Term*> encoded;     // terms that entered the encoder's cache
  bool is_half_done = false;      // a formula is being translated, or that was ended
};

}  // namespace vorn::solver

#endif
