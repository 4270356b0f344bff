// Random well-sorted scripts.
#ifndef VORN_TESTS_RANDOM_GENERATOR_H
#define VORN_TESTS_RANDOM_GENERATOR_H

#include <cstdint>

#include "tests/random/script.h"

namespace vorn::random {

/// The script of a seed; the same for ever, as long as the operator table and the generator stay.
/// The script of a seed; with arrays, functions and an uninterpreted sort if these are asked for.
Script generate(std::uint64_t seed, bool with_arrays = false);

}  // namespace vorn::random

#endif
