// The operators that random terms are made of: those of the library's table, each with how often it
// is to come and what it costs, and the forms that only the reader has.
//
// A row says by a signature which sorts belong together, so that the generator can start from the
// sort that it needs: it binds the letters of the result, then chooses the others.
#ifndef VORN_TESTS_RANDOM_OPERATORS_H
#define VORN_TESTS_RANDOM_OPERATORS_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tests/random/random.h"
#include "tests/random/script.h"
#include "vorn/terms/operations.h"

namespace vorn::random {

/// How a circuit grows with the width of its operands.
enum class Growth : std::uint8_t {
  linear,
  quadratic,
  exponential  // in the width of the exponent
};

/// The letters of a signature are those of vorn::Signature, and besides them
///   Q Real, P the exponent of F, M its trailing significand
struct Operator {
  std::string_view name;
  std::string_view signature;
  unsigned weight = 3;
  Growth growth = Growth::linear;
  unsigned factor = 1;  // of the cost, which is about the number of gates
  Indexing index = Indexing::none;
  bool takes_more = false;  // arguments like the last

  char result() const { return signature[0]; }
};

std::span<const Operator> get_operators();

/// The sorts that a script prefers; none of bit-vectors or floats may be missing only where the
/// script is to do without.
struct Palette {
  std::vector<std::size_t> widths;
  std::vector<Sort> floats;
  std::vector<Sort> arrays;
  bool has_people = false;  // the uninterpreted sort

  Sort random_sort(Random& random) const;
};

/// An operator with its indices, and the sorts of its arguments.
struct Application {
  std::string head;
  std::vector<Sort> args;
  std::uint64_t cost = 0;
};

/// Whether the operator can have a result of this sort.
bool can_make(const Operator& op, const Sort& result, const Palette& palette);
/// Chooses sorts of arguments. Nothing where the palette has none that fit.
std::optional<Application> apply(const Operator& op, const Sort& result, const Palette& palette,
                                 Random& random);

}  // namespace vorn::random

#endif
