// What an operation's circuit computes on given operands, value by value.
//
// The circuit is that of variables: the operands are free constants to the encoder, in debug mode,
// and rewriting is off, so that every intermediate value is there and in its place. The side
// constraints then define each fresh constant from those before it, so the values follow from the
// operands by evaluation, without a search. All constraints are evaluated on them in the end.
#ifndef VORN_SOLVER_EXPLANATION_H
#define VORN_SOLVER_EXPLANATION_H

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "vorn/solver/solver.h"
#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn::solver {

/// A named intermediate value.
struct Intermediate {
  /// The debug label.
  std::string label;
  /// Counts the values of this label, from 1 on.
  std::size_t occurrence;
  /// In bits; 1 for a Boolean.
  std::size_t width;
  /// The bits; 0 or 1 for a Boolean.
  QNumber value;
};

/// An operation, its operands, and each named value of its circuit on them.
struct Explanation {
  /// Whose circuit it is.
  EncoderKind encoder;
  /// The application that is explained.
  const Term* operation;
  /// In the form of Evaluator, rounding mode included.
  std::vector<QNumber> operands;
  /// In the order of the circuit.
  std::vector<Intermediate> intermediates;
  /// In the form of Evaluator.
  QNumber result;
  /// The theory does not say what the result is.
  bool is_open = false;
  /// Where the operands are variables, the side constraints exclude these values.
  bool is_excluded = false;
  /// There is no circuit of variables for this format: the values are those of a circuit of
  /// literals, which has fewer.
  bool is_folded = false;
};

/// Evaluates the circuit of `operation`, a floating-point operation, on operands with these values.
/// What the theory leaves open is decided so that the result is `model_value`, or zero where that
/// is null. Throws std::invalid_argument where the encoder does not support the operation.
VORN_EXPORT Explanation explain(TermManager& manager, const Term* operation,
                                std::span<const QNumber> operands, EncoderKind kind,
                                const QNumber* model_value = nullptr);

/// The values of literals, truth values and rounding modes. Throws std::invalid_argument for any
/// other term.
VORN_EXPORT std::vector<QNumber> read_literals(const TermManager& manager,
                                               std::span<const Term* const> terms);

/// Whether `t` applies an operation that `explain` takes.
VORN_EXPORT bool is_explainable(const Term* t);

}  // namespace vorn::solver

#endif
