// Random formulas over a few constants of sorts with few values, and all their models.
#ifndef VORN_TESTS_RANGES_SMALL_FORMULA_H
#define VORN_TESTS_RANGES_SMALL_FORMULA_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include "vorn/ranges/propagation.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/term_manager.h"

namespace vorn::ranges {

/// Makes formulas over one to three constants: floats of one format, of which the first is one, a
/// rounding mode and a bit-vector.
class SmallFormulas {
 public:
  explicit SmallFormulas(std::uint64_t seed);

  TermManager& get_manager() { return mgr; }
  /// Some formulas that are to hold together.
  std::vector<const Term*> make_conjunction();

  /// Calls `visit` with an evaluator for each model, until it says false. What the theory leaves
  /// open of conversions and zeros is zero.
  void visit_models(const std::vector<const Term*>& formulas,
                    const std::function<bool(semantics::Evaluator&)>& visit);

 private:
  const Term* make_mode();
  const Term* make_float(unsigned depth);
  const Term* make_rounded(unsigned depth);
  const Term* make_bits(unsigned depth);
  const Term* make_atom(unsigned depth);
  const Term* make_formula(unsigned depth);
  const Term* make_literal(const DataType* type);
  std::size_t below(std::size_t n) { return random() % n; }

  TermManager mgr{false};
  std::mt19937_64 random;
  const DataType* number;
  const DataType* bits;
  std::vector<const Term*> floats;
  const Term* mode = nullptr;  // null: there is none
  const Term* word = nullptr;  // likewise
};

/// Asserts all of them and follows what that means to the end.
void assert_all(const std::vector<const Term*>& formulas, Propagation* ranges);

}  // namespace vorn::ranges

#endif
