// Walks over terms, arguments before the operations that use them.
//
// Terms share subterms and may be as deep as memory allows, so a walk keeps its own stack and comes
// to each term once. In which order arguments are visited decides the order of what is made on the
// way (new terms, inputs of a graph, lines of a file), so it is part of what a walk promises.
#ifndef VORN_TERMS_POST_ORDER_H
#define VORN_TERMS_POST_ORDER_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "vorn/terms/term.h"

namespace vorn {

/// From which end the arguments of a term are visited.
enum class ArgumentOrder : std::uint8_t { first_to_last, last_to_first };

/// Calls `finish` with `root` and with each term below it that is not done, all of whose arguments
/// are done by then. `is_done` says which are: it must hold for a term from its `finish` on, and
/// what is below a term for which it holds already is not looked at. Terms stay as they are while
/// the walk lasts. What `finish` throws ends the walk, which may be begun again.
template <ArgumentOrder order, class IsDone, class Finish>
void walk_post_order(const Term* root, const IsDone& is_done, const Finish& finish) {
  struct Visit {
    const Term* term;
    bool is_expanded = false;  // the arguments are on the stack, or were
  };
  std::vector<Visit> stack{{root}};
  while (!stack.empty()) {
    const auto [t, is_expanded] = stack.back();
    if (!is_expanded && is_done(t)) {
      stack.pop_back();
      continue;
    }
    const std::size_t depth = stack.size();
    if (!is_expanded) {
      stack.back().is_expanded = true;
      for (const Term* arg : t->get_args()) {
        if (!is_done(arg)) stack.push_back({arg});
      }
    }
    if (stack.size() == depth) {
      stack.pop_back();
      finish(t);
    } else if constexpr (order == ArgumentOrder::first_to_last) {
      std::reverse(stack.begin() + static_cast<std::ptrdiff_t>(depth), stack.end());
    }
  }
}

/// The terms at and below `roots`, each once, arguments first; roots and arguments in their order.
std::vector<const Term*> list_post_order(std::span<const Term* const> roots);

}  // namespace vorn

#endif
