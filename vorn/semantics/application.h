// The value of one operation, by exact arithmetic: software floats and integers, no circuits.
#ifndef VORN_SEMANTICS_APPLICATION_H
#define VORN_SEMANTICS_APPLICATION_H

#include <functional>
#include <span>

#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"

namespace vorn::semantics {

/// Gives what the theory leaves open of an application `t` to arguments with these values: the
/// bits of a conversion where no integer of the width is right, or 1 where fp.min or fp.max of
/// two different zeros is to be the negative one. It must be a function of symbol and values.
using OpenValue = std::function<QNumber(const Term* t, std::span<const QNumber> values)>;

/// The value of the application `t` to arguments with these values, in the form that Evaluator has
/// them. Without `choices`, what the theory leaves open is zero. Throws std::logic_error for
/// constants.
QNumber apply(const Term* t, std::span<const QNumber* const> args, const OpenValue& choices);

/// The bits of a float of sort `type`, where NaN has one pattern.
QNumber canonical_bits(const DataType* type, const QNumber& bits);

}  // namespace vorn::semantics

#endif
