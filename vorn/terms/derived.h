// Operations that are defined by others: what each is made of.
//
// They have rows in the table of operations, so that they are read, generated and tested like all
// others, but no terms: rewriter, encoders and bit-blaster know the smaller set only. Operands have
// been checked against the signature of the row.
#ifndef VORN_TERMS_DERIVED_H
#define VORN_TERMS_DERIVED_H

#include "vorn/terms/operations.h"

namespace vorn {

const Term* derive_distinct(TermManager& mgr, Operation::Indices indices, Operation::Args args);

/// Throws std::invalid_argument unless the count is at least 1 and the result is no wider than
/// TermManager::kMaxWidth.
const Term* derive_repeat(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_rotate_left(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_rotate_right(TermManager& mgr, Operation::Indices indices, Operation::Args args);

const Term* derive_bv_nand(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_nor(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_xnor(TermManager& mgr, Operation::Indices indices, Operation::Args args);

const Term* derive_bv_ugt(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_uge(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_sgt(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_sge(TermManager& mgr, Operation::Indices indices, Operation::Args args);

/// Whether the exact result is no number of the width: of a negation, an addition, a subtraction,
/// a multiplication, a division (SMT-LIB FixedSizeBitVectors, 2.7).
const Term* derive_bv_nego(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_uaddo(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_saddo(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_usubo(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_ssubo(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_umulo(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_smulo(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_sdivo(TermManager& mgr, Operation::Indices indices, Operation::Args args);

/// One bit: the disjunction, conjunction or exclusive or of all bits.
const Term* derive_bv_redor(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_redand(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_bv_redxor(TermManager& mgr, Operation::Indices indices, Operation::Args args);
/// The second operand where the first, one bit, is 1; else the third.
const Term* derive_bv_ite(TermManager& mgr, Operation::Indices indices, Operation::Args args);

const Term* derive_fp_gt(TermManager& mgr, Operation::Indices indices, Operation::Args args);
const Term* derive_fp_ge(TermManager& mgr, Operation::Indices indices, Operation::Args args);

}  // namespace vorn

#endif
