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
/// one), 0 or 1 for a Boolean, the number of a rounding mode, of an element of an uninterpreted
/// sort, or of an array in the table of arrays.
class VORN_EXPORT Evaluator {
 public:
  /// Gives the value of an uninterpreted constant.
  using Assignment = std::function<QNumber(const Term*)>;

  /// Without `choices`, what is left open is plain: zero, or an array of zeros. The table of arrays
  /// is borrowed; without one the evaluator has its own.
  explicit Evaluator(const TermManager& manager, Assignment constants, OpenValue choices = {},
                     ArrayValues* arrays = nullptr)
      : mgr(manager),
        assignment(std::move(constants)),
        open_value(std::move(choices)),
        array_values(arrays == nullptr ? &own_arrays : arrays) {}
  Evaluator(const Evaluator&) = delete;
  Evaluator& operator=(const Evaluator&) = delete;

  /// Borrows `t`, asked now and then by `evaluate`, which then throws Terminated. Null for none.
  void set_termination_test(const TerminationTest* t) { termtest = t; }

  /// The value of `t`. Throws std::length_error where a number on the way is beyond a gigabit.
  const QNumber& evaluate(const Term* t);
  /// Gives `t` that value from the first, whatever its arguments have.
  void assume(const Term* t, const QNumber& value) { values.insert_or_assign(t, value); }
  /// The table of its values of arrays.
  ArrayValues& get_array_values() { return *array_values; }

 private:
  QNumber leaf(const Term* t);
  QNumber apply(const Term* t);

  const TermManager& mgr;
  Assignment assignment;
  OpenValue open_value;
  ArrayValues own_arrays;
  ArrayValues* array_values;
  std::unordered_map<const Term*, QNumber> values;
  const TerminationTest* termtest = nullptr;
  std::uint32_t steps = 0;  // for asking the test only now and then
};

/// Whether `t` is a literal, truth value or rounding mode; stores its value, as an Evaluator has
/// it. Arrays are no literals.
VORN_EXPORT bool read_literal(const TermManager& manager, const Term* t, QNumber* value);

/// The literal of sort `type` with the value that an Evaluator computed; of an array, which is one
/// of the table, writes over an array with one element at every index.
VORN_EXPORT const Term* make_literal(TermManager& manager, const DataType* type,
                                     const QNumber& value, ArrayValues& arrays);
/// The same of any other sort. Throws std::logic_error for an array.
VORN_EXPORT const Term* make_literal(TermManager& manager, const DataType* type,
                                     const QNumber& value);

}  // namespace vorn::semantics

#endif
