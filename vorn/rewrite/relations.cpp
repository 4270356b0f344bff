#include "vorn/rewrite/relations.h"

#include <algorithm>

#include "vorn/rewrite/fp_patterns.h"

namespace vorn::rewrite {
namespace {

using T = SymbolTag;

/// Partners of a term that a kind looks at: most operands have few uses, and a sum over an array
/// has ever so many.
constexpr std::size_t kMostPartners = 8;

std::vector<const Term*> last_of(const std::vector<const Term*>& all) {
  const std::size_t count = std::min(all.size(), kMostPartners);
  return {all.end() - static_cast<std::ptrdiff_t>(count), all.end()};
}

bool is_literal(const Term* t) {
  return t->get_symbol()->get_literal() != nullptr;
}

std::uint64_t pair_of(const Term* a, const Term* b) {
  return std::uint64_t{std::min(a->get_id(), b->get_id())} << 32U |
         std::max(a->get_id(), b->get_id());
}

/// No two terms have one identifier.
std::uint64_t single(const Term* t) {
  return pair_of(t, t);
}

}  // namespace

const Term* find_only_operand(const Term* t) {
  const Term* found = nullptr;
  for (const Term* arg : t->get_args()) {
    if (is_literal(arg) || arg->get_type()->get_kind() == DataType::Kind::rounding_mode) continue;
    if (found != nullptr) return nullptr;
    found = arg;
  }
  return found;
}

Relations::Relations(TermManager& manager) : mgr(manager) {}

// Notes -----------------------------------------------------------------------------------------

void Relations::add_use(const Term* operand, const Term* t) {
  users.make_room();
  std::vector<const Term*>& known = uses[operand];
  if (!known.empty() && known.back() == t) return;  // both operands
  known.push_back(t);
  users.add(operand);
}

Relations::Function Relations::get_function(const Term* t, const Term* operand) {
  Function function = {t->get_tag(), t->get_type()->get_id(), operand->get_type()->get_id()};
  const std::span<const Term* const> args = t->get_args();
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i]->get_type()->get_kind() == DataType::Kind::rounding_mode) {
      function[3] = args[i]->get_id() + 1;
    } else if (args[i] == operand) {
      function[5] = has_tag(t, T::fp_add) || has_tag(t, T::fp_mul) ? 0 : i;
    } else {
      function[4] = args[i]->get_id() + 1;
    }
  }
  return function;
}

void Relations::add_comparison(const Term* t) {
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  for (const std::uint64_t key : {pair_of(a, b), single(a), single(b)}) {
    comparisons.make_room();
    if (compared.insert(key).second) comparisons.add(key);
  }
  for (const Term* side : {a, b})
    find_lemmas(side);
  for (const Term* use : get_uses(a))
    find_lemmas(use);
}

void Relations::add(const Term* t) {
  ++noted;
  switch (t->get_tag()) {
    case T::fp_equal:
    case T::fp_lt:
    case T::fp_le:
      add_comparison(t);
      return;
    default:
      break;
  }
  if (!is_float(t) || t->get_arity() == 0) return;
  find_lemmas(t);
  for (const Term* arg : t->get_args()) {
    if (is_float(arg) && !is_literal(arg)) add_use(arg, t);
  }
  if (const Term* operand = find_only_operand(t); operand != nullptr && t->get_arity() <= 3) {
    const Function function = get_function(t, operand);
    functions.make_room();
    alike[function].push_back(t);
    functions.add(function);
  }
}

void Relations::push() {
  users.push();
  functions.push();
  comparisons.push();
  lemmas.push();
}

void Relations::pop() {
  users.pop([this](const Term* operand) { uses.at(operand).pop_back(); });
  functions.pop([this](const Function& function) { alike.at(function).pop_back(); });
  comparisons.pop([this](std::uint64_t key) { compared.erase(key); });
  lemmas.pop([this](const Term* lemma) { stated.erase(lemma); });
  taken = std::min(taken, lemmas.get_size());
}

// Lemmas ----------------------------------------------------------------------------------------

void Relations::find_lemmas(const Term* t) {
  if (t->get_tag() == T::none) return;
  for (const RelationKind& kind : get_relation_kinds()) {
    if (std::ranges::find(kind.tags, t->get_tag()) == kind.tags.end()) continue;
    current_kind = kind.name;
    kind.find(*this, t);
  }
}

/// Comparisons that lemmas bring bring lemmas in their turn, but no more than there are terms.
void Relations::state(const Term* lemma) {
  if (lemma == mgr.make_true() || lemmas.get_size() > noted) return;
  lemmas.make_room();
  if (!stated.insert(lemma).second) return;
  lemmas.add(lemma);
  ++counts[current_kind];
}

std::vector<const Term*> Relations::take_lemmas() {
  const std::vector<const Term*>& all = lemmas.get_items();
  std::vector<const Term*> found(all.begin() + static_cast<std::ptrdiff_t>(taken), all.end());
  taken = all.size();
  return found;
}

std::vector<const Term*> Relations::get_uses(const Term* operand) const {
  const auto found = uses.find(operand);
  return found == uses.end() ? std::vector<const Term*>() : last_of(found->second);
}

std::vector<const Term*> Relations::get_alike(const Term* t, const Term* operand) const {
  const auto found = alike.find(get_function(t, operand));
  return found == alike.end() ? std::vector<const Term*>() : last_of(found->second);
}

bool Relations::is_compared(const Term* a, const Term* b) const {
  return compared.contains(pair_of(a, b));
}

bool Relations::is_compared(const Term* t) const {
  return compared.contains(single(t));
}

std::string Relations::describe_counts() const {
  std::string text;
  for (const auto& [name, count] : counts)
    text += (text.empty() ? "" : ", ") + name + ' ' + std::to_string(count);
  return text;
}

std::uint64_t Relations::get_count(const std::string& kind) const {
  const auto found = counts.find(kind);
  return found == counts.end() ? 0 : found->second;
}

}  // namespace vorn::rewrite
