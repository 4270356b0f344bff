#include "vorn/semantics/open_terms.h"

#include <cstddef>
#include <unordered_set>

#include "vorn/terms/operations.h"

namespace vorn::semantics {
namespace {

struct Visit {
  const Term* term;
  std::size_t next = 0;
};

}  // namespace

bool is_open(const Term* t) {
  const Operation* operation = find_operation(t->get_tag());
  return operation != nullptr && operation->is_open;
}

bool is_conversion(const Term* t) {
  return is_open(t) && t->get_type()->get_kind() == DataType::Kind::bit_vector;
}

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

}  // namespace vorn::semantics
