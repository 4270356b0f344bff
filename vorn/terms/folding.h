// The value of a bit-vector operation on given values: one table for the rewriter, which folds
// constants with it, and for whoever evaluates a term.
#ifndef VORN_TERMS_FOLDING_H
#define VORN_TERMS_FOLDING_H

#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"

namespace vorn {

/// An operand: its value in [0, 2^width) and its width in bits.
struct BvOperand {
  const QNumber& value;
  std::size_t width;
};

/// The bits of the bit-vector operation `tag` on x and y, or 1 or 0 for a predicate. Unary
/// operations read x only; `indices` are those of the operation's symbol. Throws std::logic_error
/// for a kind that has no value here, which is a defect.
QNumber fold_bv_operation(SymbolTag::tag tag, const Symbol::Indices& indices, BvOperand x,
                          BvOperand y);

}  // namespace vorn

#endif
