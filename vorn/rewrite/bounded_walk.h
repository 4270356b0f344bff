// A walk over the operands that its user chooses, and only over so many: what it makes of a term
// that is not taken apart is up to the user too.
#ifndef VORN_REWRITE_BOUNDED_WALK_H
#define VORN_REWRITE_BOUNDED_WALK_H

#include <vector>

#include "vorn/terms/term.h"

namespace vorn::rewrite {

/// The value of `root` in `known`, a map by identifiers of terms that gets those of the terms on
/// the way. `push_operands(t, &stack)` pushes operands of `t` without a value that are to have one
/// first, and says whether there are any; `combine(t)` makes the value of `t` of theirs.
template <class Known, class PushOperands, class Combine>
const typename Known::mapped_type& complete(const Term* root, Known* known,
                                            const PushOperands& push_operands,
                                            const Combine& combine) {
  std::vector<const Term*> stack = {root};
  while (!stack.empty()) {
    const Term* t = stack.back();
    if (!known->contains(t->get_id())) {
      if (push_operands(t, &stack)) continue;
      known->emplace(t->get_id(), combine(t));
    }
    stack.pop_back();
  }
  return known->at(root->get_id());
}

}  // namespace vorn::rewrite

#endif
