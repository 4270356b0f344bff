// Dropping terms that nobody needs any more.
//
// A manager only grows while terms are made. A session that works for hours has an owner who knows
// which terms are in use; everything else is found by marking and swept: out of the tables, and its
// memory, identifier included, goes to the next term of the same arity. Operands are ordered by
// identifier, so the order in which identifiers are given again is part of what a session computes:
// it is that of the identifiers, whatever the order of the tables.
#include <algorithm>
#include <iterator>
#include <utility>

#include "vorn/terms/term_manager.h"

namespace vorn {

void TermManager::add_holder(const std::shared_ptr<const Holder>& holder) {
  std::erase_if(holders, [](const auto& known) { return known.expired(); });
  holders.push_back(holder);
}

void TermManager::collect(std::span<const Term* const> roots) {
  ++collections;
  const std::vector<bool> live = mark_live(roots);
  std::vector<const Term*> dead(next_id, nullptr);  // by identifier
  const std::vector<bool> applied = mark_functions(live);
  make_room_for_dead(live, applied);
  drop_operations(live, &dead);
  drop_constants(live, &dead);
  // What is freed last is used first.
  for (std::size_t id = dead.size(); id-- > 0;) {
    if (dead[id] != nullptr) free_term(dead[id]);
  }
  // Only now: until then the arity of an application is that of its function.
  drop_functions(applied);
}

/// Makes room for what is given again, so that nothing is lost to lack of memory on the way.
void TermManager::make_room_for_dead(const std::vector<bool>& live,
                                     const std::vector<bool>& applied) {
  std::vector<std::size_t> counts(1);  // by arity
  for (const Term* term : term_table) {
    if (term == nullptr || live[term->get_id()]) continue;
    if (term->get_arity() >= counts.size()) counts.resize(term->get_arity() + 1);
    ++counts[term->get_arity()];
  }
  for (const Symbol& symbol : symbols) {
    if (symbol.constant != nullptr && !live[symbol.constant->get_id()]) ++counts[0];
  }
  if (free_terms.size() < counts.size()) free_terms.resize(counts.size());
  for (std::size_t arity = 0; arity < counts.size(); ++arity)
    free_terms[arity].reserve(free_terms[arity].size() + counts[arity]);
  const auto functions = std::ranges::count_if(
      symbols, [&](const Symbol& s) { return s.is_function() && !applied[s.id]; });
  free_symbols.reserve(free_symbols.size() + counts[0] + static_cast<std::size_t>(functions));
}

/// Drops the operations that are not live from the table.
void TermManager::drop_operations(const std::vector<bool>& live, std::vector<const Term*>* dead) {
  // Open addressing knows no erasing: the table is filled anew.
  std::vector<const Term*> terms(term_table.size(), nullptr);
  std::vector<std::uint32_t> hashes(term_table.size());
  const std::size_t mask = terms.size() - 1;
  for (std::size_t i = 0; i < term_table.size(); ++i) {
    const Term* term = term_table[i];
    if (term == nullptr) continue;
    if (!live[term->get_id()]) {
      (*dead)[term->get_id()] = term;
      --table_count;
      continue;
    }
    std::size_t slot = term_hashes[i] & mask;
    while (terms[slot] != nullptr)
      slot = (slot + 1) & mask;
    terms[slot] = term;
    hashes[slot] = term_hashes[i];
  }
  term_table = std::move(terms);
  term_hashes = std::move(hashes);
}

/// Which identifiers belong to terms that stay.
std::vector<bool> TermManager::mark_live(std::span<const Term* const> roots) const {
  std::vector<bool> live(next_id);
  std::vector<const Term*> stack(roots.begin(), roots.end());
  stack.insert(stack.end(), {true_term, false_term});
  stack.insert(stack.end(), rounding_terms.begin(), rounding_terms.end());
  std::vector<const Term*> held;
  for (const auto& known : holders) {
    if (const auto holder = known.lock()) (*holder)(&held);
  }
  std::ranges::copy_if(held, std::back_inserter(stack), [this](const Term* t) { return owns(t); });
  while (!stack.empty()) {
    const Term* term = stack.back();
    stack.pop_back();
    if (live[term->get_id()]) continue;
    live[term->get_id()] = true;
    stack.insert(stack.end(), term->get_args().begin(), term->get_args().end());
  }
  return live;
}

/// Drops the constants and literals that are not live, with what the tables know of them.
void TermManager::drop_constants(const std::vector<bool>& live, std::vector<const Term*>* dead) {
  const auto is_dead = [&](const Term* term) { return term != nullptr && !live[term->get_id()]; };
  for (auto& numbers : common_numbers) {
    for (const Term*& number : numbers) {
      if (is_dead(number)) number = nullptr;
    }
  }
  std::erase_if(number_table, [&](const auto& entry) { return is_dead(entry.second); });
  for (Symbol& symbol : symbols) {
    if (!is_dead(symbol.constant)) continue;
    if (!symbol.is_number) names.erase(symbol.name);
    (*dead)[symbol.constant->get_id()] = symbol.constant;
    symbol = Symbol(this, symbol.id, SymbolTag::none, 0, bool_type, {});
    free_symbols.push_back(&symbol);
  }
}

/// Which identifiers belong to functions that terms that stay apply.
std::vector<bool> TermManager::mark_functions(const std::vector<bool>& live) const {
  std::vector<bool> applied(symbols.size());
  for (const Term* term : term_table) {
    if (term != nullptr && live[term->get_id()]) applied[term->get_symbol()->id] = true;
  }
  return applied;
}

void TermManager::drop_functions(const std::vector<bool>& applied) {
  for (Symbol& symbol : symbols) {
    if (!symbol.is_function() || applied[symbol.id]) continue;
    names.erase(symbol.name);
    symbol = Symbol(this, symbol.id, SymbolTag::none, 0, bool_type, {});
    free_symbols.push_back(&symbol);
  }
}

void TermManager::free_term(const Term* term) {
  const std::size_t arity = term->get_arity();
  // The term is this manager's own, and nobody looks at it any more.
  free_terms[arity].push_back(const_cast<Term*>(term));
  ++free_count;
}

}  // namespace vorn
