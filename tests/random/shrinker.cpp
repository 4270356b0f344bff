// Every accepted step makes the script smaller in one order, so the loop ends; the order counts
// commands and terms first and compares the length of the text last. Steps need not keep the
// meaning of the script: whatever still fails is as good a report, and a shorter one.
#include "tests/random/shrinker.h"

#include <algorithm>
#include <compare>
#include <span>
#include <utility>

#include "tests/random/literals.h"
#include "tests/random/operators.h"

namespace vorn::random {
namespace {

struct Size {
  std::size_t parts;  // commands, terms, levels
  std::size_t names;  // terms that are no plain constant
  std::size_t text;

  auto operator<=>(const Size&) const = default;
};

bool is_plain(const Expression& e) {
  const std::vector<Expression> literals = plain_literals(e.sort);
  return std::find(literals.begin(), literals.end(), e) != literals.end();
}

Size size_of(Script script) {
  Size size = {script.size(), 0, to_string(script).size()};
  for (const Command& command : script)
    size.parts += command.levels;
  for (const Expression* e : nodes_of(script)) {
    ++size.parts;
    if (!is_plain(*e)) ++size.names;
  }
  return size;
}

void substitute(Expression* e, const std::string& name, const Expression& value) {
  if (e->kind == Expression::Kind::name && e->head == name && e->args.empty()) {
    *e = value;
    return;
  }
  for (Expression& arg : e->args)
    substitute(&arg, name, value);
}

/// The body of a function in place of a call of it.
Expression inlined(const Command& function, const Expression& call) {
  Expression body = function.terms[0];
  for (std::size_t i = 0; i < function.parameters.size(); ++i)
    substitute(&body, function.parameters[i].name, call.args[i]);
  return body;
}

void inline_calls(Expression* e, const Command& function) {
  for (Expression& arg : e->args)
    inline_calls(&arg, function);
  const bool call = e->kind == Expression::Kind::name && e->head == function.name &&
                    e->args.size() == function.parameters.size();
  if (call) *e = inlined(function, *e);
}

/// Whether the operator takes any number of arguments and has one to spare.
bool takes_fewer(const Expression& e) {
  const std::span<const Operator> operators = get_operators();
  return e.args.size() > 2 &&
         std::any_of(operators.begin(), operators.end(),
                     [&e](const Operator& op) { return op.name == e.head && op.takes_more; });
}

class Shrinker {
 public:
  Shrinker(Script start, const Fails& failure)
      : script(std::move(start)), size(size_of(script)), fails(failure) {}

  Script run() {
    Size before = size;
    do {
      before = size;
      remove_commands();
      remove_levels();
      remove_assumptions();
      inline_definitions();
      replace_terms();
    } while (size < before);
    return std::move(script);
  }

 private:
  bool attempt(Script candidate) {
    const Size smaller = size_of(candidate);
    if (!(smaller < size) || !is_well_formed(candidate) || !fails(candidate)) return false;
    script = std::move(candidate);
    size = smaller;
    return true;
  }

  /// Takes out runs of commands, long ones first.
  void remove_commands() {
    for (std::size_t length = script.size(); length > 0; length /= 2) {
      for (std::size_t at = 0; at + length <= script.size();) {
        Script candidate = script;
        const auto first = candidate.begin() + static_cast<std::ptrdiff_t>(at);
        candidate.erase(first, first + static_cast<std::ptrdiff_t>(length));
        if (!attempt(std::move(candidate))) ++at;
      }
    }
  }

  /// Takes out a push and a pop with or without what lies between, or a level of both.
  void remove_levels() {
    for (std::size_t i = 0; i < script.size(); ++i) {
      if (script[i].kind != Command::Kind::push) continue;
      for (std::size_t k = i + 1; k < script.size(); ++k) {
        if (script[k].kind == Command::Kind::pop && remove_pair(i, k)) break;
      }
    }
    for (std::size_t i = 0; i < script.size(); ++i) {
      if (script[i].levels < 2) continue;
      Script candidate = script;
      --candidate[i].levels;
      attempt(std::move(candidate));
    }
  }

  bool remove_pair(std::size_t push, std::size_t pop) {
    const auto at = [](Script& s, std::size_t i) {
      return s.begin() + static_cast<std::ptrdiff_t>(i);
    };
    Script all = script;
    all.erase(at(all, push), at(all, pop + 1));
    if (attempt(std::move(all))) return true;
    Script pair = script;
    pair.erase(at(pair, pop));
    pair.erase(at(pair, push));
    if (attempt(std::move(pair))) return true;
    Script level = script;
    if (level[push].levels < 2 || level[pop].levels < 2) return false;
    --level[push].levels;
    --level[pop].levels;
    return attempt(std::move(level));
  }

  void remove_assumptions() {
    for (std::size_t i = 0; i < script.size(); ++i) {
      if (script[i].kind != Command::Kind::check_assuming) continue;
      for (std::size_t k = 0; k < script[i].terms.size();) {
        Script candidate = script;
        candidate[i].terms.erase(candidate[i].terms.begin() + static_cast<std::ptrdiff_t>(k));
        if (!attempt(std::move(candidate))) ++k;
      }
      Script candidate = script;
      candidate[i] = make_check();
      attempt(std::move(candidate));
    }
  }

  void inline_definitions() {
    for (std::size_t i = 0; i < script.size(); ++i) {
      if (script[i].kind != Command::Kind::define) continue;
      Script candidate = script;
      candidate.erase(candidate.begin() + static_cast<std::ptrdiff_t>(i));
      for (std::size_t k = i; k < candidate.size(); ++k) {
        for (Expression& term : candidate[k].terms)
          inline_calls(&term, script[i]);
      }
      if (attempt(std::move(candidate))) --i;
    }
  }

  void replace_terms() {
    for (std::size_t i = 0; i < nodes_of(script).size();) {
      if (!replace_term(i)) ++i;
    }
  }

  /// Puts something smaller in place of the term that is number `i` of all.
  bool replace_term(std::size_t i) {
    for (Expression& smaller : replacements(*nodes_of(script)[i])) {
      Script candidate = script;
      *nodes_of(candidate)[i] = std::move(smaller);
      if (attempt(std::move(candidate))) return true;
    }
    return false;
  }

  std::vector<Expression> replacements(const Expression& e) const {
    std::vector<Expression> result = plain_literals(e.sort);
    for (const Expression* part : nodes_of(e)) {
      if (part != &e && part->sort == e.sort) result.push_back(*part);
    }
    for (const Command& command : script) {
      const bool is_constant = command.kind == Command::Kind::declare && !command.is_function();
      if (is_constant && command.sort == e.sort) {
        result.push_back({Expression::Kind::name, command.name, e.sort, {}, {}});
      }
    }
    if (e.sort == kBool) add_equations(e, &result);
    if (e.kind == Expression::Kind::let) add_inlined(e, &result);
    if (takes_fewer(e)) add_shorter(e, &result);
    return result;
  }

  /// Parts of other sorts become formulas, lest what leads to them has to stay.
  static void add_equations(const Expression& formula, std::vector<Expression>* result) {
    for (const Expression* part : nodes_of(formula)) {
      if (part->sort == kBool || part->sort == kReal || part->args.empty()) continue;
      if (!has_literals(part->sort)) continue;
      const Expression constant = plain_literals(part->sort)[0];
      result->push_back({Expression::Kind::theory, "=", kBool, {*part, constant}, {}});
    }
  }

  static void add_inlined(const Expression& let, std::vector<Expression>* result) {
    Expression body = let.args.back();
    for (std::size_t i = 0; i < let.bound.size(); ++i)
      substitute(&body, let.bound[i], let.args[i]);
    result->push_back(std::move(body));
    for (std::size_t i = 0; i < let.bound.size() && let.bound.size() > 1; ++i) {
      Expression one = let;
      substitute(&one.args.back(), let.bound[i], let.args[i]);
      one.args.erase(one.args.begin() + static_cast<std::ptrdiff_t>(i));
      one.bound.erase(one.bound.begin() + static_cast<std::ptrdiff_t>(i));
      result->push_back(std::move(one));
    }
  }

  static void add_shorter(const Expression& e, std::vector<Expression>* result) {
    for (std::size_t i = 0; i < e.args.size(); ++i) {
      Expression shorter = e;
      shorter.args.erase(shorter.args.begin() + static_cast<std::ptrdiff_t>(i));
      result->push_back(std::move(shorter));
    }
  }

  Script script;
  Size size;
  const Fails& fails;
};

}  // namespace

Script shrink(Script script, const Fails& fails) {
  return Shrinker(std::move(script), fails).run();
}

}  // namespace vorn::random
