// Which terms the theory does not say everything of: for some arguments it leaves their value open,
// and asks only that it be a function of them.
#ifndef VORN_SEMANTICS_OPEN_TERMS_H
#define VORN_SEMANTICS_OPEN_TERMS_H

#include <span>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/utils/export.h"

namespace vorn::semantics {

/// Whether the theory leaves the value of `t` open for some arguments.
VORN_EXPORT bool is_open(const Term* t);

/// Whether `t` is a conversion to an integer, open where no integer of its width is right.
VORN_EXPORT bool is_conversion(const Term* t);

/// The terms within the formulas that the theory leaves open for some arguments: conversions to
/// integers, minimum and maximum. Each comes once, in an order that the formulas alone decide.
VORN_EXPORT std::vector<const Term*> find_open_terms(std::span<const Term* const> formulas);

}  // namespace vorn::semantics

#endif
