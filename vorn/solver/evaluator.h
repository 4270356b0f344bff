// Evaluation of terms on a model, by exact arithmetic.
//
// This is what stands between a bug in a circuit and a wrong "sat": it shares nothing with the
// encoders or the bit-blaster. Floating-point operations are computed on software floats,
// bit-vector operations on integers.
#ifndef VORN_SOLVER_EVALUATOR_H
#define VORN_SOLVER_EVALUATOR_H

#include <functional>
#include <span>
#include <unordered_map>
#include <utility>

#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn::solver {

/// Evaluates terms under one assignment of the uninterpreted constants; results are kept.
///
/// A value is a non-negative integer: the bits of a bit-vector or float (any NaN as the canonical
/// one), 0 or 1 for a Boolean, the number of a rounding mode.
class VORN_EXPORT Evaluator {
 public:
  /// Gives the value of an uninterpreted constant.
  using Assignment = std::function<QNumber(const Term*)>;
  /// Gives what the theory leaves open of an application `t` to arguments with these values: the
  /// bits of a conversion where no integer of the width is right, or 1 where fp.min or fp.max of
  /// two different zeros is to be the negative one. It must be a function of symbol and values.
  using OpenValue = std::function<QNumber(const Term* t, std::span<const QNumber> values)>;

  /// Without `choices`, what is left open is zero.
  explicit Evaluator(const TermManager& manager, Assignment constants, OpenValue choices = {})
      : mgr(manager), assignment(std::move(constants)), open_value(std::move(choices)) {}

  /// The value of `t`. Throws std::length_error where a number on the way is beyond a gigabit.
  const QNumber& evaluate(const Term* t);

 private:
  QNumber leaf(const Term* t);
  QNumber apply(const Term* t);
  QNumber apply_fp(const Term* t);
  const QNumber& arg(const Term* t, std::size_t i) { return values.at(t->get_arg(i)); }
  IEEEFloat float_arg(const Term* t, std::size_t i);
  IEEEFloat::rounding_mode mode_arg(const Term* t);
  QNumber choose(const Term* t);
  QNumber to_integer(const Term* t, bool is_signed);
  QNumber select(const Term* t);

  const TermManager& mgr;
  Assignment assignment;
  OpenValue open_value;
  std::unordered_map<const Term*, QNumber> values;
};

/// The literal of sort `type` with the value that an Evaluator computed.
VORN_EXPORT const Term* make_literal(TermManager& manager, const DataType* type,
                                     const QNumber& value);

}  // namespace vorn::solver

#endif
