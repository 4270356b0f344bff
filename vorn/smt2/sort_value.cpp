#include "vorn/smt2/sort_value.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <stdexcept>
#include <utility>

namespace vorn::smt2 {
namespace {

/// The sort that an array or declared sort is of known sorts.
const DataType* make_type(TermManager& mgr, const SortStep& step, std::span<const SortValue> args) {
  std::vector<const DataType*> types;
  for (const SortValue& arg : args)
    types.push_back(arg.type);
  if (step.kind == SortStep::Kind::array) return mgr.get_array_type(types[0], types[1]);
  return mgr.get_uninterpreted_type(step.name, types);
}

/// Steps one after the other name as many sorts as the sort that they make, or fewer.
void append(std::vector<SortStep>* steps, std::span<const SortStep> more) {
  if (more.size() > TermManager::kMaxParts - steps->size()) {
    throw std::invalid_argument(
        fmt::format("a sort that names more than {} sorts", TermManager::kMaxParts));
  }
  steps->insert(steps->end(), more.begin(), more.end());
}

SortValue construct(TermManager& mgr, const SortStep& step, std::span<const SortValue> args) {
  assert(args.size() == step.number);
  if (std::ranges::all_of(args, [](const SortValue& arg) { return arg.type != nullptr; })) {
    return {make_type(mgr, step, args)};
  }
  SortValue result;
  for (const SortValue& arg : args) {
    if (arg.type != nullptr) {
      append(&result.steps, std::array{SortStep{SortStep::Kind::sort, arg.type}});
    } else {
      append(&result.steps, arg.steps);
    }
  }
  append(&result.steps, {&step, 1});
  return result;
}

}  // namespace

SortValue apply_sort(TermManager& mgr, const SortDefinition& definition,
                     std::span<const SortValue> args) {
  assert(args.size() == definition.parameters);
  if (definition.constructor) return construct(mgr, *definition.constructor, args);
  if (definition.body.type != nullptr) return definition.body;
  std::vector<SortValue> stack;
  for (const SortStep& step : definition.body.steps) {
    switch (step.kind) {
      case SortStep::Kind::sort:
        stack.push_back({step.type});
        break;
      case SortStep::Kind::parameter:
        stack.push_back(args[step.number]);
        break;
      case SortStep::Kind::array:
      case SortStep::Kind::declared: {
        const std::size_t rest = stack.size() - step.number;
        SortValue made = construct(mgr, step, std::span(stack).subspan(rest));
        stack.resize(rest);
        stack.push_back(std::move(made));
        break;
      }
    }
  }
  return std::move(stack.back());
}

}  // namespace vorn::smt2
