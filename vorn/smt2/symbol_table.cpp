#include "vorn/smt2/symbol_table.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace vorn::smt2 {

std::string make_term_name(std::string_view name) {
  std::string result(name);
  std::ranges::replace(result, '\\', '/');
  return result;
}

void SymbolTable::declare(std::string_view name, const Function& function) {
  add_to(&declarations, Change::Kind::declaration, {std::string(name), function.body});
  define(name, function);
}

/// Appends to a list, with the change that this is. All or nothing, as below: a name without its
/// change would outlive its level.
void SymbolTable::add_to(std::vector<Declaration>* list, Change::Kind kind, Declaration entry) {
  changes.make_room();
  list->push_back(std::move(entry));
  changes.add({kind, {}});
}

void SymbolTable::define(std::string_view name, const Function& function) {
  Change change{Change::Kind::function, std::string(name)};
  changes.make_room();
  const bool fresh = functions.try_emplace(std::string(name), function).second;
  assert(fresh);
  static_cast<void>(fresh);
  changes.add(std::move(change));
}

void SymbolTable::define_sort(std::string_view name, const SortDefinition& definition) {
  Change change{Change::Kind::sort, make_term_name(name)};
  changes.make_room();
  const bool fresh = sorts.try_emplace(change.name, definition).second;
  assert(fresh);
  static_cast<void>(fresh);
  changes.add(std::move(change));
}

const Function* SymbolTable::find(std::string_view name) const {
  const auto found = functions.find(name);
  return found == functions.end() ? nullptr : &found->second;
}

const SortDefinition* SymbolTable::find_sort(std::string_view name) const {
  const auto found = name.find('\\') == std::string_view::npos ? sorts.find(name)
                                                               : sorts.find(make_term_name(name));
  return found == sorts.end() ? nullptr : &found->second;
}

std::vector<const SortDefinition*> SymbolTable::get_declared_sorts() const {
  std::vector<const SortDefinition*> declared;
  for (const Change& change : changes.get_items()) {
    if (change.kind != Change::Kind::sort) continue;
    const SortDefinition& definition = sorts.find(change.name)->second;
    if (definition.is_declared()) declared.push_back(&definition);
  }
  return declared;
}

void SymbolTable::add_label(std::string_view name, const Term* term) {
  add_to(&labels, Change::Kind::label, {std::string(name), term});
}

void SymbolTable::append_terms(std::vector<const Term*>* terms) const {
  for (const auto& [name, function] : functions) {
    terms->push_back(function.body);
    terms->insert(terms->end(), function.parameters.begin(), function.parameters.end());
  }
}

void SymbolTable::undo(const Change& change) {
  switch (change.kind) {
    case Change::Kind::function:
      functions.erase(change.name);
      break;
    case Change::Kind::sort:
      sorts.erase(change.name);
      break;
    case Change::Kind::declaration:
      declarations.pop_back();
      break;
    case Change::Kind::label:
      labels.pop_back();
      break;
  }
}

void SymbolTable::retract(Mark mark) {
  changes.retract(mark, [this](const Change& change) { undo(change); });
}

void SymbolTable::push() {
  changes.push();
}

void SymbolTable::pop() {
  if (global) {
    changes.merge();
  } else {
    changes.pop([this](const Change& change) { undo(change); });
  }
}

void SymbolTable::clear_levels() {
  while (get_level() != 0)
    changes.merge();
  if (!global) retract(0);
}

void SymbolTable::clear() {
  *this = SymbolTable();
}

bool LocalScope::bind(std::string_view name, const Value& value, std::size_t depth) {
  std::vector<Binding>& stack = bindings[name];
  if (!stack.empty() && stack.back().depth == depth) return false;
  stack.push_back({value, depth});
  return true;
}

void LocalScope::unbind(std::string_view name) {
  const auto found = bindings.find(name);
  assert(found != bindings.end());
  found->second.pop_back();
  if (found->second.empty()) bindings.erase(found);
}

const Value* LocalScope::find(std::string_view name) const {
  const auto found = bindings.find(name);
  return found == bindings.end() ? nullptr : &found->second.back().value;
}

}  // namespace vorn::smt2
