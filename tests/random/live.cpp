#include "tests/random/live.h"

#include <algorithm>
#include <utility>

namespace vorn::random {

using Kind = Command::Kind;

namespace {

/// Whether the term means the same outside of the assertion that it stands in.
bool is_plain(const Expression& e) {
  if (e.kind == Expression::Kind::let || e.kind == Expression::Kind::named) return false;
  return std::all_of(e.args.begin(), e.args.end(), is_plain);
}

bool is_access(const Expression& e) {
  if (e.args.empty()) return false;
  return e.kind == Expression::Kind::name || e.head == "select" || e.head == "store";
}

/// Collects accesses outside of what variables are bound in.
void collect(const Expression& e, std::vector<std::string>* found) {
  if (is_access(e) && is_plain(e)) {
    std::string text = to_string(e);
    if (std::find(found->begin(), found->end(), text) == found->end()) {
      found->push_back(std::move(text));
    }
  }
  const bool binds = e.kind == Expression::Kind::let;
  for (std::size_t i = 0; i + (binds ? 1 : 0) < e.args.size(); ++i)
    collect(e.args[i], found);
}

}  // namespace

void LiveCommands::execute(const Command& command) {
  switch (command.kind) {
    case Kind::declare_sort:
    case Kind::declare:
    case Kind::define:
    case Kind::assertion:
      commands.add(command);
      break;
    case Kind::push:
      for (std::size_t i = 0; i < command.levels; ++i)
        commands.push();
      break;
    case Kind::pop:
      for (std::size_t i = 0; i < command.levels; ++i)
        commands.pop();
      break;
    case Kind::reset_assertions:
      commands.clear();
      break;
    case Kind::check:
    case Kind::check_assuming:
      break;
  }
}

Script LiveCommands::at(const Command& check) const {
  Script script = commands.get_items();
  for (const Expression& assumption : check.terms)
    script.push_back(make_assertion(assumption));
  return script;
}

std::vector<std::string> LiveCommands::get_declared() const {
  std::vector<std::string> names;
  for (const Command& command : commands.get_items()) {
    if (command.kind == Kind::declare) names.push_back(command.name);
  }
  return names;
}

std::vector<std::string> LiveCommands::get_defined() const {
  std::vector<std::string> names;
  for (const Command& command : commands.get_items()) {
    if (command.kind == Kind::define && command.parameters.empty()) names.push_back(command.name);
    if (command.kind != Kind::assertion) continue;
    for (const Expression* e : nodes_of(command.terms[0])) {
      if (e->kind == Expression::Kind::named) names.push_back(e->head);
    }
  }
  return names;
}

std::vector<std::string> LiveCommands::get_accesses() const {
  std::vector<std::string> found;
  for (const Command& command : commands.get_items()) {
    if (command.kind == Kind::assertion) collect(command.terms[0], &found);
  }
  return found;
}

}  // namespace vorn::random
