// Operators that are left open for some operands are functions all the same: equal operands, equal
// results. Stated as assertions, this must not make a difference to a solver.
#ifndef VORN_TESTS_RANDOM_CONGRUENCE_H
#define VORN_TESTS_RANDOM_CONGRUENCE_H

#include "tests/random/script.h"

namespace vorn::random {

/// Assertions that say so of pairs of applications in `script`, of a limited number of pairs.
Script make_congruences(const Script& script);

}  // namespace vorn::random

#endif
