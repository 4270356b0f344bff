// The operators that random terms are made of, one row each.
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

namespace vorn::random {

/// How a circuit grows with the width of its operands.
enum class Growth : std::uint8_t {
  linear,
  quadratic,
  exponential  // in the width of the exponent
};

enum class Index : std::uint8_t {
  none,
  format,  // widths of the resulting float
  width,   // width of the resulting bit-vector
  extraction,
  extension,
  repetition,
  rotation
};

/// A signature is the letter of the result, a colon and the letters of the arguments; a plus at the
/// end allows more arguments like the last. The letters:
///   B Bool, R RoundingMode, Q Real, 1 one bit, A any sort
///   V bit-vector, W another one, N at most as wide, X at least as wide, D a divisor of the width,
///   H and L two parts of it
///   F float, G another one, T all its bits, E its exponent, M its trailing significand
struct Operator {
  std::string_view name;
  std::string_view signature;
  unsigned weight = 4;
  Growth growth = Growth::linear;
  unsigned factor = 1;  // of the cost, which is about the number of gates
  Index index = Index::none;
  bool available = true;

  char result() const { return signature[0]; }
};

std::span<const Operator> get_operators();

/// The sorts that a script prefers; none of bit-vectors or floats may be missing only where the
/// script is to do without.
struct Palette {
  std::vector<std::size_t> widths;
  std::vector<Sort> floats;

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
