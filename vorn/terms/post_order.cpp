#include "vorn/terms/post_order.h"

#include "vorn/terms/term_set.h"

namespace vorn {

std::vector<const Term*> list_post_order(std::span<const Term* const> roots) {
  std::vector<const Term*> terms;
  TermSet listed;
  const auto is_listed = [&](const Term* t) { return listed.contains(t); };
  for (const Term* root : roots) {
    walk_post_order<ArgumentOrder::first_to_last>(root, is_listed, [&](const Term* t) {
      listed.insert(t);
      terms.push_back(t);
    });
  }
  return terms;
}

}  // namespace vorn
