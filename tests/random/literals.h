// Constants of each sort, in all the ways to write them. Values at the borders are favoured: most
// of a circuit's cases lie there, and random bits of a wide sort never hit them.
#ifndef VORN_TESTS_RANDOM_LITERALS_H
#define VORN_TESTS_RANDOM_LITERALS_H

#include <gmpxx.h>

#include <vector>

#include "tests/random/random.h"
#include "tests/random/script.h"

namespace vorn::random {

/// The bits of a bit-vector or float.
mpz_class random_pattern(const Sort& sort, Random& random);

Expression random_literal(const Sort& sort, Random& random);

/// The plainest constants of a sort, the plainest first: what the shrinker puts in place of terms.
std::vector<Expression> plain_literals(const Sort& sort);

}  // namespace vorn::random

#endif
