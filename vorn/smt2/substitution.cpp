#include "vorn/smt2/substitution.h"

#include <algorithm>
#include <cassert>
#include <unordered_map>
#include <vector>

#include "vorn/smt2/literals.h"
#include "vorn/terms/post_order.h"

namespace vorn::smt2 {
namespace {

/// Rebuilds terms bottom-up, each shared subterm once.
class Substitution {
 public:
  explicit Substitution(TermManager& manager) : mgr(manager) {}

  void map(const Term* from, const Term* to) { images.emplace(from, to); }

  const Term* apply(const Term* root) {
    walk_post_order<ArgumentOrder::last_to_first>(
        root, [this](const Term* t) { return images.contains(t); },
        [this](const Term* t) { images.emplace(t, rebuilt(t)); });
    return images.at(root);
  }

 private:
  const Term* rebuilt(const Term* t) {
    args.clear();
    for (const Term* arg : t->get_args())
      args.push_back(images.at(arg));
    if (std::ranges::equal(args, t->get_args())) return t;
    if (t->get_tag() == SymbolTag::fp_from_bits) {
      // Bits that have become known make a literal, as they do where they are written out.
      return make_float_from_bits(mgr, t->get_type()->get_format(), args[0]);
    }
    return mgr.rebuild(t, args);
  }

  TermManager& mgr;
  std::unordered_map<const Term*, const Term*> images;
  std::vector<const Term*> args;
};

}  // namespace

const Term* instantiate(TermManager& mgr, const Function& function,
                        std::span<const Term* const> args) {
  assert(args.size() == function.parameters.size());
  Substitution substitution(mgr);
  for (std::size_t i = 0; i < args.size(); ++i)
    substitution.map(function.parameters[i], args[i]);
  return substitution.apply(function.body);
}

}  // namespace vorn::smt2
