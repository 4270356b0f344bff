// What operations on bit-vectors say of the ranges of their operands and results.
#ifndef VORN_RANGES_BIT_TRANSFER_H
#define VORN_RANGES_BIT_TRANSFER_H

#include "vorn/ranges/bit_range.h"
#include "vorn/ranges/finite_sets.h"
#include "vorn/ranges/range.h"
#include "vorn/terms/term.h"

namespace vorn::ranges {

/// A range of the results of the bit-vector operation `t`, whose operands have these ranges, none
/// of them empty. Unary operations read x only.
Range apply_bits(const Term* t, const BitRange& x, const BitRange& y);

/// Takes values from the ranges of the operands that do not give a value of `result`, of one or two
/// operands of such a `t`, as far as that is seen. Unary operations leave y as it is. The ranges
/// are not empty, but may become so.
void narrow_bits(const Term* t, const Range& result, BitRange* x, BitRange* y);

}  // namespace vorn::ranges

#endif
