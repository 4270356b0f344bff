// What ranges of values live on: bounds of constants, and claims about terms made of them.
//
// Formulas without either say little of intervals. Where a constant occurs twice in the term of a
// claim, its bounds may refute the claim, but only once they are split.
#ifndef VORN_TESTS_RANDOM_BOUNDS_H
#define VORN_TESTS_RANDOM_BOUNDS_H

#include "tests/random/random.h"
#include "tests/random/script.h"

namespace vorn::random {

/// Whether the sort has bounds: bit-vectors and floats have.
bool has_bounds(const Sort& sort);

/// Limits a term of such a sort: to an interval whose ends are literals, or to a class of floats.
Expression random_bounds(const Expression& term, Random& random);

/// Compares a term of such a sort with a literal.
Expression random_claim(const Expression& term, Random& random);

}  // namespace vorn::random

#endif
