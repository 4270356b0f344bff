// Cuts a failing script down to one in which no single step can be spared.
#ifndef VORN_TESTS_RANDOM_SHRINKER_H
#define VORN_TESTS_RANDOM_SHRINKER_H

#include <functional>

#include "tests/random/script.h"

namespace vorn::random {

/// Whether a script still shows the failure.
using Fails = std::function<bool(const Script&)>;

/// The smallest script that the steps lead to from `script`, which must fail. Steps remove
/// commands, close levels, put constants, names or parts of a term in its place, and substitute
/// definitions.
Script shrink(Script script, const Fails& fails);

}  // namespace vorn::random

#endif
