#include "vorn/solver/open_terms.h"

#include <cstddef>
#include <unordered_set>

namespace vorn::solver {
namespace {

bool is_conversion(const Term* t) {
  return t->get_tag() == SymbolTag::fp_to_sbv || t->get_tag() == SymbolTag::fp_to_ubv;
}

bool is_open(const Term* t) {
  return is_conversion(t) || t->get_tag() == SymbolTag::fp_min || t->get_tag() == SymbolTag::fp_max;
}

struct Visit {
  const Term* term;
  std::size_t next = 0;
};

}  // namespace

std::vector<const Term*> find_open_terms(std::span<const Term* const> formulas) {
  std::vector<const Term*> found;
  std::unordered_set<const Term*> seen;
  std::vector<Visit> stack;
  for (const Term* formula : formulas) {
    if (seen.insert(formula).second) stack.push_back({formula});
    while (!stack.empty()) {
      Visit& top = stack.back();
      if (top.next < top.term->get_arity()) {
        const Term* arg = top.term->get_arg(top.next++);
        if (seen.insert(arg).second) stack.push_back({arg});
        continue;
      }
      if (is_open(top.term)) found.push_back(top.term);
      stack.pop_back();
    }
  }
  return found;
}

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
    if (!is_conversion(a) || encoder.get_choice(a) == nullptr) continue;
    for (const Term* b : open_terms.subspan(i + 1)) {
      if (b->get_symbol() != a->get_symbol() || encoder.get_choice(b) == nullptr) continue;
      const Term* statement = state_congruence(manager, encoder, a, b);
      if (statement != manager.make_true()) statements.push_back(statement);
    }
  }
  return statements;
}

}  // namespace vorn::solver
