// What a term says of the ranges of its value and of its arguments.
//
// The layer that knows ranges of values: sets of values of each sort (range.h), and what operations
// do with them (float_transfer.h, bit_transfer.h). Here the two directions are one function each,
// for terms of any kind.
#ifndef VORN_RANGES_TRANSFER_H
#define VORN_RANGES_TRANSFER_H

#include <span>

#include "vorn/ranges/range.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn::ranges {

/// The values that `t` may have where its arguments have values in these ranges, one for each
/// argument and of its sort: all of them, and perhaps more. Of constants, and of kinds that nothing
/// is known of, that is every value; of literals, their own. Nothing where an argument has no
/// value.
Range forward(const TermManager& manager, const Term* t, std::span<const Range> arguments);

/// Takes values from the ranges of the arguments of `t` that do not give a value in `result` with
/// any values of the other arguments: none that do, and perhaps not all that do not. Ranges only
/// become smaller; all are empty where it is seen that no arguments are left. It says most if
/// `result` has been intersected with the range that `forward` gives.
void backward(const Term* t, const Range& result, std::span<Range> arguments);

}  // namespace vorn::ranges

#endif
