#include "vorn/rewrite/bv_cases.h"

#include <algorithm>

namespace vorn::rewrite {
namespace {

using T = SymbolTag;

// Boolean operations of one condition. Those that are as large are of other kinds than the case
// distinctions on signs and on equality that cases are for; and the walk over one is recursive.
constexpr std::size_t kMostOperations = 16;

bool is_boolean_operation(const Term* t) {
  switch (t->get_tag()) {
    case T::bool_not:
    case T::bool_and:
    case T::bool_or:
    case T::bool_xor:
      return true;
    default:
      return false;
  }
}

}  // namespace

BvCase::BvCase(const TermManager& manager, const std::vector<const Term*>& atoms,
               std::uint32_t number)
    : mgr(manager) {
  for (std::size_t i = 0; i < atoms.size(); ++i) {
    const Term* atom = atoms[i];
    const bool value = (number >> i & 1U) != 0;
    values[atom->get_id()] = value;
    if (value && atom->get_tag() == T::equal) make_equal(atom->get_arg(0), atom->get_arg(1));
  }
}

/// Every step leads to a number or to a smaller identifier, so that following them ends.
void BvCase::make_equal(const Term* a, const Term* b) {
  if (a->get_type()->get_kind() != DataType::Kind::bit_vector) return;
  const auto rank = [this](const Term* t) {
    return std::pair(!mgr.is_number(t, nullptr), t->get_id());
  };
  if (rank(b) < rank(a)) std::swap(a, b);
  if (!mgr.is_number(b, nullptr)) representatives[b->get_id()] = a;
}

const Term* BvCase::resolve(const Term* t) const {
  for (;;) {
    const Term* next = nullptr;
    if (const auto found = representatives.find(t->get_id()); found != representatives.end()) {
      next = found->second;
    } else if (t->get_tag() == T::ite) {
      const std::optional<bool> value = find_value(t->get_arg(0));
      if (value) next = t->get_arg(*value ? 1 : 2);
    }
    if (next == nullptr) return t;
    t = next;
  }
}

/// None for a condition that was not added to the cases.
std::optional<bool> BvCase::find_value(const Term* condition) const {
  if (const auto found = values.find(condition->get_id()); found != values.end()) {
    return found->second;
  }
  if (!is_boolean_operation(condition)) return std::nullopt;
  const std::optional<bool> a = find_value(condition->get_arg(0));
  if (!a) return std::nullopt;
  if (condition->get_tag() == T::bool_not) return !*a;
  const std::optional<bool> b = find_value(condition->get_arg(1));
  if (!b) return std::nullopt;
  if (condition->get_tag() == T::bool_and) return *a && *b;
  return condition->get_tag() == T::bool_or ? *a || *b : *a != *b;
}

bool BvCases::add_condition(const Term* condition) {
  std::vector<const Term*> stack = {condition};
  std::size_t operations = 0;
  while (!stack.empty()) {
    const Term* t = stack.back();
    stack.pop_back();
    if (is_boolean_operation(t)) {
      if (++operations > kMostOperations) return false;
      stack.insert(stack.end(), t->get_args().begin(), t->get_args().end());
      continue;
    }
    const auto place = std::ranges::lower_bound(atoms, t->get_id(), {}, &Term::get_id);
    if (place != atoms.end() && *place == t) continue;
    if (atoms.size() == kMostAtoms) return false;
    atoms.insert(place, t);
  }
  return true;
}

const Term* BvCases::select(const std::function<const Term*(const BvCase&)>& evaluate) const {
  std::vector<const Term*> results;
  for (std::uint32_t number = 0; number < 1U << atoms.size(); ++number) {
    results.push_back(evaluate(BvCase(mgr, atoms, number)));
    if (results.back() == nullptr) return nullptr;
  }
  // The last atom is what tells the two halves apart, so the first one comes to stand outermost.
  for (std::size_t i = atoms.size(); i-- > 0;) {
    const std::size_t half = results.size() / 2;
    for (std::size_t k = 0; k < half; ++k) {
      const Term* otherwise = results[k];
      const Term* then = results[k + half];
      results[k] = then == otherwise ? then : mgr.make_term_ite(atoms[i], then, otherwise);
    }
    results.resize(half);
  }
  return results.front();
}

}  // namespace vorn::rewrite
