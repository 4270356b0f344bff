#include "vorn/smt2/substitution.h"

#include <algorithm>
#include <cassert>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vorn/smt2/literals.h"
#include "vorn/terms/post_order.h"
#include "vorn/terms/term_set.h"

namespace vorn::smt2 {
namespace {

void step(TerminationPoll* poll) {
  if (poll != nullptr && poll->is_over()) throw Terminated();
}

/// The terms of the body that change when the parameters do, arguments first, without the
/// parameters themselves.
std::vector<const Term*> list_dependents(const Function& function, TerminationPoll* poll) {
  TermSet seen;
  TermSet dependent;
  for (const Term* parameter : function.parameters) {
    seen.insert(parameter);
    dependent.insert(parameter);
  }
  std::vector<const Term*> result;
  walk_post_order<ArgumentOrder::last_to_first>(
      function.body, [&](const Term* t) { return seen.contains(t); },
      [&](const Term* t) {
        step(poll);
        seen.insert(t);
        if (std::ranges::none_of(t->get_args(),
                                 [&](const Term* arg) { return dependent.contains(arg); })) {
          return;
        }
        dependent.insert(t);
        result.push_back(t);
      });
  return result;
}

/// Rebuilds terms, each once; what has no image stays.
class Substitution {
 public:
  Substitution(TermManager& manager, std::size_t count) : mgr(manager) { images.reserve(count); }

  void map(const Term* from, const Term* to) { images.emplace(from->get_id(), to); }
  const Term* get_image(const Term* t) const {
    const auto found = images.find(t->get_id());
    return found == images.end() ? t : found->second;
  }

  /// The term with the images of its arguments.
  const Term* rebuilt(const Term* t) {
    args.clear();
    for (const Term* arg : t->get_args())
      args.push_back(get_image(arg));
    if (std::ranges::equal(args, t->get_args())) return t;
    if (t->get_tag() == SymbolTag::fp_from_bits) {
      // Bits that have become known make a literal, as they do where they are written out.
      return make_float_from_bits(mgr, t->get_type()->get_format(), args[0]);
    }
    return mgr.rebuild(t, args);
  }

 private:
  TermManager& mgr;
  std::unordered_map<std::uint64_t, const Term*> images;  // by identifier
  std::vector<const Term*> args;
};

}  // namespace

const Term* instantiate(TermManager& mgr, const Function& function,
                        std::span<const Term* const> args, InstanceCache& cache,
                        TerminationPoll* poll) {
  assert(args.size() == function.parameters.size() && !args.empty());
  cache.renew(mgr);
  const Term* first = function.parameters.front();
  InstanceCache::Application application{first};
  application.insert(application.end(), args.begin(), args.end());
  if (const Term* known = cache.find(application)) return known;

  const std::vector<const Term*>* dependents = cache.find_dependents(first);
  if (dependents == nullptr) {
    dependents = &cache.add_dependents(first, list_dependents(function, poll));
  }
  Substitution substitution(mgr, args.size() + dependents->size());
  for (std::size_t i = 0; i < args.size(); ++i)
    substitution.map(function.parameters[i], args[i]);
  for (const Term* t : *dependents) {
    step(poll);
    substitution.map(t, substitution.rebuilt(t));
  }
  const Term* instance = substitution.get_image(function.body);
  cache.add(application, instance);
  return instance;
}

}  // namespace vorn::smt2
