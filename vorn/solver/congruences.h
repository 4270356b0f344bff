// That what the theory leaves open is a function nevertheless, as formulas of the encoding.
//
// A conversion to an integer has a constant of its own for the case that no integer is right. The
// solver states that equal arguments give equal constants for pairs whose values clash; where a
// formula leaves the solver, all pairs are stated beforehand.
#ifndef VORN_SOLVER_CONGRUENCES_H
#define VORN_SOLVER_CONGRUENCES_H

#include <span>
#include <vector>

#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn::solver {

/// That two conversions of one symbol, which the encoder has encoded, agree on equal arguments.
VORN_EXPORT const Term* state_congruence(TermManager& manager, const fp::FpBvEncoder& encoder,
                                         const Term* a, const Term* b);

/// That statement for all pairs of conversions among the terms, but for those where it is trivial.
VORN_EXPORT std::vector<const Term*> state_congruences(TermManager& manager,
                                                       const fp::FpBvEncoder& encoder,
                                                       std::span<const Term* const> open_terms);

}  // namespace vorn::solver

#endif
