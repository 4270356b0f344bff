// Which terms the theory does not say everything of: for some arguments it leaves their value open,
// and asks only that it be a function of them.
#ifndef VORN_SEMANTICS_OPEN_TERMS_H
#define VORN_SEMANTICS_OPEN_TERMS_H

#include <span>
#include <vector>

#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/utils/export.h"

namespace vorn::semantics {

/// Whether the theory leaves the value of `t` open for some arguments.
VORN_EXPORT bool is_open(const Term* t);

/// Whether `t` is a conversion to an integer, open where no integer of its width is right.
VORN_EXPORT bool is_conversion(const Term* t);
/// Whether `t` is fp.min or fp.max, open for two zeros of different sign.
VORN_EXPORT bool is_selection(const Term* t);

/// The terms within the formulas that the theory leaves open for some arguments: conversions to
/// integers, minimum and maximum. Each comes once, in an order that the formulas alone decide.
VORN_EXPORT std::vector<const Term*> find_open_terms(std::span<const Term* const> formulas);

// A selection chooses between two zeros by two bits, the same for all terms of its operation and
// format: bit s is the sign of the result where the first zero has sign s.

/// The sign, 1 for minus, of the zero that `choice` gives a selection of floats of sort `type`, the
/// first of which is `first`: what OpenValue is to give.
VORN_EXPORT QNumber get_chosen_sign(const QNumber& choice, const DataType* type,
                                    const QNumber& first);
/// The choice that gives the zero with the sign of `zero`, a float of sort `type`, whichever zero
/// comes first.
VORN_EXPORT QNumber make_zero_choice(const DataType* type, const QNumber& zero);

}  // namespace vorn::semantics

#endif
