// Random terms of a wanted sort, from what is in scope.
#ifndef VORN_TESTS_RANDOM_TERM_GENERATOR_H
#define VORN_TESTS_RANDOM_TERM_GENERATOR_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/random/operators.h"
#include "tests/random/random.h"
#include "tests/random/script.h"

namespace vorn::random {

/// A constant or function of the script, or a variable of a term.
struct Name {
  std::string text;
  Sort sort;
  std::vector<Parameter> parameters;
};

struct Scope {
  std::vector<Name> names;
  std::vector<Expression> closed;  // terms made so far, without labels
  std::size_t fresh = 0;           // number of the next name
};

struct Limits {
  std::size_t depth;
  std::uint64_t cost;  // of all operators together, about gates
};

/// A term over the names of the scope and the parameters, which hide names of the scope.
Expression random_term(const Sort& sort, const Limits& limits, const Scope& scope,
                       const Palette& palette, Random& random,
                       const std::vector<Name>& parameters = {});

}  // namespace vorn::random

#endif
