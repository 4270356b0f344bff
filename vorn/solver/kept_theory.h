// Arrays and functions as they are, over the bits of what they hold, for solvers that know them.
//
// A stand-in is defined by the read or application that it stands for. Floats and rounding modes
// have bit patterns that encode none of them, the elements of an uninterpreted sort may be fewer or
// more than the codes are: an array over their codes says more than one over their values.
#ifndef VORN_SOLVER_KEPT_THEORY_H
#define VORN_SOLVER_KEPT_THEORY_H

#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vorn/solver/translator.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/theories/theory_terms.h"
#include "vorn/utils/trail.h"

namespace vorn::solver {

/// The definitions of the stand-ins of a formula.
class KeptTheory {
 public:
  /// Borrows all three. Modes have codes of `mode_width` bits.
  KeptTheory(TermManager& manager, theories::TheoryTerms& terms, Translator& scalars,
             std::size_t mode_width)
      : mgr(manager), theory(terms), translator(scalars), modes(mode_width) {}

  /// Appends to `conjuncts` what defines the stand-ins. Throws std::invalid_argument where arrays
  /// over bits would not do for arrays over values: where floats, modes or elements of
  /// uninterpreted sorts are in arrays that are indices or arguments, or are the indices of arrays
  /// that are compared and of which some are the same everywhere.
  void define(Trail<const Term*>* conjuncts);

  /// The symbols of arrays and functions whose sorts differ over bits, and those in their place.
  const std::vector<std::pair<const Symbol*, const Symbol*>>& get_symbols() const {
    return symbols;
  }

 private:
  void check() const;
  const DataType* convert(const DataType* type);
  const Symbol* convert(const Symbol* symbol);
  const Term* convert(const Term* t);
  const Term* apply(const Term* t);
  std::vector<const Term*> convert_arguments(const Term* t);

  TermManager& mgr;
  theories::TheoryTerms& theory;
  Translator& translator;
  std::size_t modes;
  Trail<const Term*>* constraints = nullptr;
  std::unordered_map<const Term*, const Term*> arrays;
  std::unordered_map<const Symbol*, const Symbol*> converted;
  std::vector<std::pair<const Symbol*, const Symbol*>> symbols;
};

}  // namespace vorn::solver

#endif
