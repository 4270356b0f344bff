// What a sort of a script stands for while it is read.
//
// The body of a sort's definition may have parameters anywhere in it. It is kept as the steps that
// make it, parts first, so that other sorts are put in their place by a loop with a stack, however
// deep it is.
#ifndef VORN_SMT2_SORT_VALUE_H
#define VORN_SMT2_SORT_VALUE_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn::smt2 {

/// One step: it puts a sort on a stack, or takes sorts from there and leaves what they make.
struct SortStep {
  enum class Kind : std::uint8_t { sort, parameter, array, declared };

  Kind kind = Kind::sort;
  const DataType* type = nullptr;  // the sort
  std::uint32_t number = 0;        // of the parameter, or of the sorts that are taken
  std::string name = {};           // of a declared sort, as terms have it

  static SortStep array() { return {Kind::array, nullptr, 2}; }
  /// A sort that was declared with that number of arguments.
  static SortStep declared(std::string text, std::uint32_t arity) {
    return {Kind::declared, nullptr, arity, std::move(text)};
  }
};

/// A sort, or the steps that make one as soon as the parameters in them are known.
struct SortValue {
  const DataType* type = nullptr;
  std::vector<SortStep> steps = {};  // when there is no type

  static SortValue parameter(std::uint32_t number) {
    return {nullptr, {{SortStep::Kind::parameter, nullptr, number}}};
  }
};

/// What a name is applied to sorts for: a body in which they stand for parameters, or one step.
struct SortDefinition {
  std::uint32_t parameters = 0;
  SortValue body = {};
  std::optional<SortStep> constructor = {};  // of arrays and declared sorts, which have no body

  bool is_declared() const { return constructor && constructor->kind == SortStep::Kind::declared; }
};

/// The sort that a definition makes of as many as it has parameters. Throws std::invalid_argument
/// where that sort, or its steps, would name more than TermManager::kMaxParts.
VORN_EXPORT SortValue apply_sort(TermManager& mgr, const SortDefinition& definition,
                                 std::span<const SortValue> args);

}  // namespace vorn::smt2

#endif
