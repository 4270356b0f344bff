// The value of one operation, by exact arithmetic: software floats and integers, no circuits.
#ifndef VORN_SEMANTICS_APPLICATION_H
#define VORN_SEMANTICS_APPLICATION_H

#include <functional>
#include <span>

#include "vorn/semantics/array_values.h"
#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"

namespace vorn::semantics {

/// Gives what the theory leaves open of an application `t` to arguments with these values: the
/// bits of a conversion where no integer of the width is right, 1 where fp.min or fp.max of two
/// different zeros is to be the negative one, or the value of an uninterpreted function. It must be
/// a function of symbol and values.
using OpenValue = std::function<QNumber(const Term* t, std::span<const QNumber> values)>;

/// The value of the application `t` to arguments with these values, in the form that Evaluator has
/// them. Arrays are those of the table, which may be missing where there are none. Without
/// `choices`, what the theory leaves open is plain. Throws std::logic_error for constants.
QNumber apply(const Term* t, std::span<const QNumber* const> args, const OpenValue& choices,
              ArrayValues* arrays = nullptr);

/// The bits of a float of sort `type`, where NaN has one pattern.
QNumber canonical_bits(const DataType* type, const QNumber& bits);

}  // namespace vorn::semantics

#endif
