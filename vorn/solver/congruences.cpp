#include "vorn/solver/congruences.h"

#include <cstddef>

#include "vorn/semantics/open_terms.h"

namespace vorn::solver {

const Term* state_congruence(TermManager& manager, const fp::FpBvEncoder& encoder, const Term* a,
                             const Term* b) {
  const Term* differ = manager.make_false();
  for (std::size_t i = 0; i < a->get_arity(); ++i) {
    const Term* same =
        manager.make_equal(encoder.get_cached(a->get_arg(i)), encoder.get_cached(b->get_arg(i)));
    differ = manager.make_or(differ, manager.make_not(same));
  }
  const Term* agree = manager.make_equal(encoder.get_choice(a), encoder.get_choice(b));
  return manager.make_or(differ, agree);
}

std::vector<const Term*> state_congruences(TermManager& manager, const fp::FpBvEncoder& encoder,
                                           std::span<const Term* const> open_terms) {
  std::vector<const Term*> statements;
  for (std::size_t i = 0; i < open_terms.size(); ++i) {
    const Term* a = open_terms[i];
    if (!semantics::is_conversion(a) || encoder.get_choice(a) == nullptr) continue;
    for (const Term* b : open_terms.subspan(i + 1)) {
      if (b->get_symbol() != a->get_symbol() || encoder.get_choice(b) == nullptr) continue;
      const Term* statement = state_congruence(manager, encoder, a, b);
      if (statement != manager.make_true()) statements.push_back(statement);
    }
  }
  return statements;
}

}  // namespace vorn::solver
