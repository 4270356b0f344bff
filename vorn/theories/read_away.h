// Formulas whose arrays and functions are no more than names for constants.
//
// A program that keeps its memory at known addresses reads it at known addresses. Reads that the
// writes have not settled are then at constant indices of memory as it was at first, and
// different ones are as independent of each other as constants are.
#ifndef VORN_THEORIES_READ_AWAY_H
#define VORN_THEORIES_READ_AWAY_H

#include <optional>
#include <span>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/theories/theory_terms.h"

namespace vorn::theories {

/// The formulas with the stand-ins of reads and applications in their place, if all of these have
/// literals as indices and arguments and there is nothing else of arrays, functions and
/// uninterpreted sorts: any model of the stand-ins is a model of the formulas then. Nothing if not.
std::optional<std::vector<const Term*>> read_away(TermManager& manager, TheoryTerms* terms,
                                                  std::span<const Term* const> formulas);

}  // namespace vorn::theories

#endif
