#include "tests/random/live.h"

namespace vorn::random {

using Kind = Command::Kind;

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

}  // namespace vorn::random
