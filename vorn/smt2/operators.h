// The functions of the theories: one row a name.
//
// Reading a term and every complaint about it come from this table: how many arguments and indices
// a function takes, how a binary operation extends to more, and what builds the term. Names of the
// theories that have a row but no builder are known and refused by name.
#ifndef VORN_SMT2_OPERATORS_H
#define VORN_SMT2_OPERATORS_H

#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

#include "vorn/smt2/value.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn::smt2 {

/// One application: the numerals of `(_ f i j)`, the arguments, and the name for complaints.
struct Call {
  TermManager& mgr;
  std::span<const std::uint32_t> indices;
  std::span<const Value> args;
  std::string_view name = {};  // of the operator, for messages

  const Term* term(std::size_t i) const { return args[i].term; }
};

/// How a binary operation takes more than two arguments (SMT-LIB 2.6, section 3.7.1).
enum class Arity : std::uint8_t {
  fixed,      // not at all
  left,       // (f (f a b) c)
  right,      // (f a (f b c))
  chainable,  // (and (f a b) (f b c))
  pairwise,   // and over all pairs
};

struct Operator {
  static constexpr std::uint32_t kMany = std::numeric_limits<std::uint32_t>::max();

  std::string_view name;
  Value (*build)(const Call& call) = nullptr;
  std::uint32_t min_args = 0;
  std::uint32_t max_args = 0;
  std::uint32_t indices = 0;
  Arity arity = Arity::fixed;
  bool takes_reals = false;

  bool is_supported() const { return build != nullptr; }
};

/// The row of `name`; null when no theory has it.
VORN_EXPORT const Operator* find_operator(std::string_view name);

/// Applies a supported operator. Throws std::invalid_argument when the numbers of indices or
/// arguments or the arguments' sorts do not fit.
VORN_EXPORT Value apply_operator(const Operator& op, const Call& call);

/// What is counted in a message, in both numbers.
struct Noun {
  std::string_view one;
  std::string_view many;
};

/// Throws "f takes 2 arguments, got 1" as a std::invalid_argument unless min <= count <= max.
VORN_EXPORT void check_count(std::string_view name, Noun noun, std::size_t count, std::size_t min,
                             std::size_t max);

}  // namespace vorn::smt2

#endif
