// The functions that a script can write: those of the table of operations, and the forms that are
// the reader's alone.
//
// Reading a term and every complaint about it come from here: how many arguments and indices a
// function takes, and what builds the term. Names of the theories that nothing builds are known and
// refused by name.
#ifndef VORN_SMT2_OPERATORS_H
#define VORN_SMT2_OPERATORS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "vorn/smt2/dialect.h"
#include "vorn/smt2/value.h"
#include "vorn/terms/operations.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn::smt2 {

/// One application: the numerals of `(_ f i j)`, the arguments, and the sort of `(as f sort)`.
struct Call {
  TermManager& mgr;
  std::span<const std::uint32_t> indices;
  std::span<const Value> args;
  const DataType* sort = nullptr;

  const Term* term(std::size_t i) const { return args[i].term; }
};

/// A name with what builds it: an operation, or a form of the reader.
struct VORN_EXPORT Operator {
  std::string_view name = {};
  const Operation* operation = nullptr;
  Value (*build)(const Call& call) = nullptr;
  std::size_t min_args = 0;
  std::size_t max_args = 0;
  std::size_t indices = 0;
  bool takes_reals = false;
  /// The numbers of arguments that the standard has, and what another one is. There are none where
  /// the least is above the most: the standard has the name in other theories only.
  std::size_t standard_min_args = min_args;
  std::size_t standard_max_args = max_args;
  Departure departure = Departure::one_argument;

  bool is_supported() const { return operation != nullptr || build != nullptr; }
  /// Whether it stands in (as name sort) only, and the name alone is nobody's.
  bool needs_sort() const { return operation != nullptr && operation->indexing == Indexing::sort; }
  /// Whether an application to that many arguments is accepted and beyond the standard.
  bool is_departure(std::size_t args) const {
    return args >= min_args && args <= max_args &&
           (args < standard_min_args || args > standard_max_args);
  }
  /// What the standard would have instead.
  std::string describe_departure(std::size_t args) const;
};

/// The row of `name`; null when no theory has it.
VORN_EXPORT const Operator* find_operator(std::string_view name);

/// Applies a supported operator, departures from the standard included. Throws
/// std::invalid_argument when the numbers of indices or arguments or the arguments' sorts do not
/// fit.
VORN_EXPORT Value apply_operator(const Operator& op, const Call& call);

}  // namespace vorn::smt2

#endif
