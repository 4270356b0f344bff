// What arrays, functions and elements are in a model, made out of the values of the stand-ins; or,
// where these cannot be such, statements that say why.
#ifndef VORN_THEORIES_INTERPRETATION_H
#define VORN_THEORIES_INTERPRETATION_H

#include <functional>
#include <map>
#include <span>
#include <unordered_map>
#include <vector>

#include "vorn/semantics/array_values.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/theories/theory_terms.h"
#include "vorn/utils/termination_test.h"

namespace vorn::theories {

/// An uninterpreted function: values at some arguments, and one everywhere else.
struct FunctionTable {
  std::map<std::vector<QNumber>, QNumber> entries;
  QNumber otherwise;
};

/// The interpretation of one candidate for a model.
class Interpretation {
 public:
  /// The value that a candidate has for a stand-in.
  using StandInValue = std::function<QNumber(const Term* stand_in)>;

  Interpretation() = default;
  Interpretation(const Interpretation&) = delete;
  Interpretation& operator=(const Interpretation&) = delete;

  /// Forgets everything.
  void clear();
  /// Interprets the terms, whose stand-ins have these values. `candidate` evaluates what is around
  /// them; it has get_arrays() as its table. Returns formulas that hold in every model and that
  /// this candidate breaks: some if there are any, and the interpretation is one only if there are
  /// none. The test is borrowed and may be null; throws Terminated where it says so.
  std::vector<const Term*> interpret(TermManager& manager, TheoryTerms* terms,
                                     const StandInValue& stand_in_value,
                                     semantics::Evaluator* candidate, const TerminationTest* test);

  /// Whether the formulas that were returned last hold only where uninterpreted sorts have as many
  /// elements as one wants.
  bool assumes_infinity() const { return is_infinity_assumed; }

  semantics::ArrayValues& get_arrays() { return arrays; }
  /// The value of a constant of an array sort or an uninterpreted one; a plain one where no formula
  /// has it.
  QNumber get_value(const Term* constant);
  /// The value of an application of an uninterpreted function.
  QNumber apply(const Symbol* function, std::span<const QNumber> arguments);
  /// The function as a whole; null where no formula has it.
  const FunctionTable* find_function(const Symbol* function) const;

 private:
  using Terms = std::vector<const Term*>;

  void assume_stand_ins(TheoryTerms* terms, const StandInValue& stand_in_value,
                        semantics::Evaluator* candidate);
  QNumber number_element(const DataType* type, const QNumber& bits);
  void compare_applications(TermManager& manager, const Terms& terms,
                            semantics::Evaluator* candidate, Terms* lemmas);

  semantics::ArrayValues arrays;
  bool is_infinity_assumed = false;
  std::unordered_map<const Term*, QNumber> constants;
  std::unordered_map<const Symbol*, FunctionTable> functions;
  /// The numbers of elements: their own of literals, the others in the order in which they are met.
  struct Elements {
    std::map<QNumber, QNumber> numbers;  // by bits
    std::int64_t next = 0;
  };
  std::map<std::uint32_t, Elements> elements;  // by sort
};

}  // namespace vorn::theories

#endif
