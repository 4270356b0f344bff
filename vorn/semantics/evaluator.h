// Evaluation of terms on a model, by exact arithmetic.
//
// This is what stands between a bug in a circuit and a wrong "sat": it shares nothing with the
// encoders or the bit-blaster. Floating-point operations are computed on software floats,
// bit-vector operations on integers.
#ifndef VORN_SEMANTICS_EVALUATOR_H
#define VORN_SEMANTICS_EVALUATOR_H

#include <cstdint>
#include <functional>
#include <span>
#include <unordered_map>
#include <utility>

#include "vorn/semantics/application.h"
#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"
#include "vorn/utils/termination_test.h"

namespace vorn::semantics {

/// Evaluates terms under one assignment of the uninterpreted constants; results are kept.
///
/// A value is a non-negative integer: the bits of a bit-vector or float (any NaN as the canonical
/// one), 0 or 1 for a Boolean, the number of a rounding mode.
class VORN_EXPORT Evaluator {
 public:
  /// Gives the value of an uninterpreted constant.
  using Assignment = std::function<QNumber(const Term*)>;

  /// Without `choices`, what is left open is zero.
  explicit Evaluator(const TermManager& manager, Assignment constants, OpenValue choices = {})
      : mgr(manager), assignment(std::move(constants)), open_value(std::move(choices)) {}

  /// Borrows `t`, asked now and then by `evaluate`, which then throws Terminated. Null for none.
  void set_termination_test(const TerminationTest* t) { termtest = t; }

  /// The value of `t`. Throws std::length_error where a number on the way is beyond a gigabit.
  const QNumber& evaluate(const Term* t);

 private:
  QNumber leaf(const Term* t);
  QNumber apply(const Term* t);

  const TermManager& mgr;
  Assignment assignment;
  OpenValue open_value;
  std::unordered_map<const Term*, QNumber> values;
  const TerminationTest* termtest = nullptr;
  std::uint32_t steps = 0;  // for asking the test only now and then
};

/// Whether `t` is a literal, truth value or rounding mode; stores its value, as an Evaluator has
/// it.
VORN_EXPORT bool read_literal(const TermManager& manager, const Term* t, QNumber* value);

/// The literal of sort `type` with the value that an Evaluator computed.
VORN_EXPORT const Term* make_literal(TermManager& manager, const DataType* type,
                                     const QNumber& value);

}  // namespace vorn::semantics

#endif
