// Terms and polynomials as real numbers in a model.
#ifndef VORN_TESTS_REALS_MODEL_VALUES_H
#define VORN_TESTS_REALS_MODEL_VALUES_H

#include "vorn/ranges/propagation.h"
#include "vorn/reals/polynomial.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"

namespace vorn::reals {

/// What number the value of a term is, in the form of Evaluator: a finite float, or bits.
QNumber real_of(const Term* t, const QNumber& value);

/// The value of a polynomial, of which unknowns are slots.
QNumber evaluate(const Polynomial& p, const ranges::Propagation& ranges,
                 semantics::Evaluator& model);

}  // namespace vorn::reals

#endif
