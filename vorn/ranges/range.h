// What is known of the value of a term of any sort.
#ifndef VORN_RANGES_RANGE_H
#define VORN_RANGES_RANGE_H

#include <string>
#include <variant>

#include "vorn/ranges/bit_range.h"
#include "vorn/ranges/finite_sets.h"
#include "vorn/ranges/float_range.h"
#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"

namespace vorn::ranges {

/// A set of values of one sort. Of arrays and uninterpreted sorts nothing is known: their sets are
/// the empty alternative, which stands for everything.
using Range = std::variant<std::monostate, BoolRange, RoundingModeSet, BitRange, FloatRange>;

/// All values of the sort, and none where its sets are known.
Range make_everything(const DataType* type);
Range make_nothing(const DataType* type);
/// The value alone, in the form that semantics::Evaluator has it: bits, a truth value, or the code
/// of a rounding mode.
Range make_value(const DataType* type, const QNumber& value);

/// Whether no value, or exactly one, is in the set.
bool is_empty(const Range& range);
bool is_value(const Range& range);
/// Whether that truth value, and no other, is in the set.
bool is_truth(const Range& range, bool value);
/// That value.
QNumber get_value(const Range& range);
bool contains(const Range& range, const QNumber& value);

/// The values of both, and the least set with the values of both. Both sets are of one sort.
Range intersect(const Range& a, const Range& b);
Range hull(const Range& a, const Range& b);
/// A set without `value`, where what is left is a set of this kind; else as it is.
Range exclude(const Range& range, const QNumber& value);
/// The set in words, for messages.
std::string to_string(const Range& range);

}  // namespace vorn::ranges

#endif
