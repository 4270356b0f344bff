// The oracle of unsat: assignments that are tried out by exact evaluation.
#ifndef VORN_TESTS_RANDOM_MODEL_SPACE_H
#define VORN_TESTS_RANDOM_MODEL_SPACE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/random/script.h"
#include "vorn/terms/term_manager.h"

namespace vorn::random {

/// Assignments tried where there are too many to try all.
inline constexpr std::size_t kSamples = 300;
/// Spaces up to this size are tried out completely.
inline constexpr std::uint64_t kEnumerable = 4096;

struct Search {
  std::optional<std::string> model;  // an assignment under which everything holds
  bool complete = false;  // all assignments were tried, each with one choice of what is left open
  /// Besides that nothing was left open, and elements enough for any model: without a model here
  /// there is none.
  bool exhaustive = false;
};

/// Whether assignments of a space that is too large to try all are tried.
enum class Sampling : std::uint8_t { yes, no };

/// Looks for a model of a script without checks, levels or rewriting.
Search search_models(const Script& script, std::uint64_t seed, Sampling sampling = Sampling::yes);
/// That of formulas that are terms.
Search search_models(TermManager& manager, const std::vector<const Term*>& assertions,
                     std::uint64_t seed, Sampling sampling = Sampling::yes);

}  // namespace vorn::random

#endif
