// Random well-sorted scripts.
#ifndef VORN_TESTS_RANDOM_GENERATOR_H
#define VORN_TESTS_RANDOM_GENERATOR_H

#include <cstdint>

#include "tests/random/script.h"

namespace vorn::random {

/// The script of a seed; the same for ever, as long as the operator table and the generator stay.
Script generate(std::uint64_t seed);

}  // namespace vorn::random

#endif
