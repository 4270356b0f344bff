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

/// Whether constants of the sort can be written without a name.
bool has_literals(const Sort& sort);

/// One of a sort that has them.
Expression random_literal(const Sort& sort, Random& random);

/// The bit-vector or float of that pattern, in one of the ways to write it.
Expression pattern_literal(const Sort& sort, const mpz_class& bits, Random& random);

/// The plainest constants of a sort, the plainest first: what the shrinker puts in place of terms.
/// Empty for a sort without literals.
std::vector<Expression> plain_literals(const Sort& sort);

}  // namespace vorn::random

#endif
