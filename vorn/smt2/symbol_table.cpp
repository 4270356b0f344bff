#include "vorn/smt2/symbol_table.h"

#include <algorithm>
#include <cassert>

namespace vorn::smt2 {

void SymbolTable::declare(std::string_view name, const Term* constant) {
  define(name, {{}, constant});
  declarations.push_back({std::string(name), constant});
}

void SymbolTable::define(std::string_view name, const Function& function) {
  const bool fresh = functions.try_emplace(std::string(name), function).second;
  assert(fresh);
  static_cast<void>(fresh);
  function_trail.emplace_back(name);
}

void SymbolTable::define_sort(std::string_view name, const SortDefinition& definition) {
  const bool fresh = sorts.try_emplace(std::string(name), definition).second;
  assert(fresh);
  static_cast<void>(fresh);
  sort_trail.emplace_back(name);
}

const Function* SymbolTable::find(std::string_view name) const {
  const auto found = functions.find(name);
  return found == functions.end() ? nullptr : &found->second;
}

const SortDefinition* SymbolTable::find_sort(std::string_view name) const {
  const auto found = sorts.find(name);
  return found == sorts.end() ? nullptr : &found->second;
}

void SymbolTable::add_label(std::string_view name, const Term* term) {
  labels.push_back({std::string(name), term});
}

void SymbolTable::append_terms(std::vector<const Term*>* terms) const {
  for (const auto& [name, function] : functions) {
    terms->push_back(function.body);
    terms->insert(terms->end(), function.parameters.begin(), function.parameters.end());
  }
}

SymbolTable::Mark SymbolTable::get_mark() const {
  return {function_trail.size(), sort_trail.size(), declarations.size(), labels.size()};
}

void SymbolTable::retract(const Mark& mark) {
  for (; function_trail.size() > mark.functions; function_trail.pop_back()) {
    functions.erase(function_trail.back());
  }
  for (; sort_trail.size() > mark.sorts; sort_trail.pop_back())
    sorts.erase(sort_trail.back());
  declarations.resize(std::min(declarations.size(), mark.declarations));
  labels.resize(std::min(labels.size(), mark.labels));
}

void SymbolTable::push() {
  levels.push_back(get_mark());
}

void SymbolTable::pop() {
  assert(!levels.empty());
  if (!global) retract(levels.back());
  levels.pop_back();
}

void SymbolTable::clear_levels() {
  levels.clear();
  if (!global) retract({});
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
