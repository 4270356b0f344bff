// Scopes of a script. The shrinker proposes scripts without looking at names, so a script that
// lost a declaration has to be told from one that the solver refuses for no good reason.
#include <algorithm>
#include <string>
#include <vector>

#include "tests/random/script.h"

namespace vorn::random {
namespace {

using Kind = Command::Kind;

class Scopes {
 public:
  bool execute(const Command& command) {
    switch (command.kind) {
      case Kind::declare_sort:
        return add({kSort, command.sort, {}});
      case Kind::declare:
        return is_known(command.sort) && are_known(command.parameters) &&
               add({command.name, command.sort, command.parameters});
      case Kind::define:
        return define(command);
      case Kind::assertion:
      case Kind::check_assuming:
        for (const Expression& term : command.terms) {
          if (!(term.sort == kBool && check(term))) return false;
        }
        return true;
      case Kind::push:
        levels.insert(levels.end(), command.levels, names.size());
        return true;
      case Kind::pop:
        return pop(command.levels);
      case Kind::reset_assertions:
        names.clear();
        levels.clear();
        return true;
      case Kind::check:
        break;
    }
    return true;
  }

 private:
  struct Name {
    std::string text;
    Sort sort;
    std::vector<Parameter> parameters;
  };

  /// Under which a declaration of the sort is kept, which is no symbol.
  static constexpr const char* kSort = "a sort";

  bool is_known(const Sort& sort) const { return !names_people(sort) || find(kSort) != nullptr; }
  bool are_known(const std::vector<Parameter>& parameters) const {
    return std::all_of(parameters.begin(), parameters.end(),
                       [this](const Parameter& p) { return is_known(p.sort); });
  }

  /// Names of the top level are unique; what terms bind may hide them.
  bool add(Name name) {
    for (const Name& other : names) {
      if (other.text == name.text) return false;
    }
    names.push_back(std::move(name));
    return true;
  }

  bool define(const Command& command) {
    if (!is_known(command.sort) || !are_known(command.parameters)) return false;
    const std::size_t before = names.size();
    for (const Parameter& p : command.parameters)
      names.push_back({p.name, p.sort, {}});
    const bool good = check(command.terms[0]) && command.terms[0].sort == command.sort;
    names.erase(names.begin() + static_cast<std::ptrdiff_t>(before),
                names.begin() + static_cast<std::ptrdiff_t>(before + command.parameters.size()));
    return good && add({command.name, command.sort, command.parameters});
  }

  bool pop(std::size_t count) {
    if (count > levels.size()) return false;
    levels.resize(levels.size() - count + 1);
    names.resize(levels.back());
    levels.pop_back();
    return true;
  }

  const Name* find(const std::string& text) const {
    for (std::size_t i = names.size(); i-- > 0;) {
      if (names[i].text == text) return &names[i];
    }
    return nullptr;
  }

  bool fits(const Expression& e) const {
    const Name* name = find(e.head);
    if (name == nullptr || name->sort != e.sort) return false;
    if (name->parameters.size() != e.args.size()) return false;
    for (std::size_t i = 0; i < e.args.size(); ++i) {
      if (name->parameters[i].sort != e.args[i].sort) return false;
    }
    return true;
  }

  bool check(const Expression& e) {
    if (e.kind == Expression::Kind::name && !fits(e)) return false;
    if (e.kind != Expression::Kind::let) {
      for (const Expression& arg : e.args) {
        if (!check(arg)) return false;
      }
      return e.kind != Expression::Kind::named || add({e.head, e.sort, {}});
    }
    for (std::size_t i = 0; i + 1 < e.args.size(); ++i) {
      if (!check(e.args[i])) return false;
    }
    const std::size_t before = names.size();
    for (std::size_t i = 0; i < e.bound.size(); ++i)
      names.push_back({e.bound[i], e.args[i].sort, {}});
    const bool good = check(e.args.back());
    names.resize(before);
    return good;
  }

  std::vector<Name> names;
  std::vector<std::size_t> levels;  // number of names at each push
};

}  // namespace

bool is_well_formed(const Script& script) {
  Scopes scopes;
  for (const Command& command : script) {
    if (!scopes.execute(command)) return false;
  }
  return true;
}

}  // namespace vorn::random
