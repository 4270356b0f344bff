#include "tests/random/script.h"

#include <fmt/format.h>

#include <algorithm>
#include <deque>
#include <utility>

namespace vorn::random {
namespace {

using Kind = Command::Kind;

void print(const Expression& e, std::string* out) {
  if (e.args.empty()) {
    *out += e.head;
    return;
  }
  switch (e.kind) {
    case Expression::Kind::let:
      *out += "(let (";
      for (std::size_t i = 0; i < e.bound.size(); ++i) {
        *out += fmt::format("{}({} ", i == 0 ? "" : " ", e.bound[i]);
        print(e.args[i], out);
        *out += ')';
      }
      *out += ") ";
      print(e.args.back(), out);
      *out += ')';
      return;
    case Expression::Kind::named:
      *out += "(! ";
      print(e.args[0], out);
      *out += fmt::format(" :named {})", e.head);
      return;
    default:
      *out += '(' + e.head;
      for (const Expression& arg : e.args) {
        *out += ' ';
        print(arg, out);
      }
      *out += ')';
  }
}

void collect(Expression& e, std::vector<Expression*>* nodes) {
  nodes->push_back(&e);
  for (Expression& arg : e.args)
    collect(arg, nodes);
}

void collect(const Expression& e, std::vector<const Expression*>* nodes) {
  nodes->push_back(&e);
  for (const Expression& arg : e.args)
    collect(arg, nodes);
}

/// What stands between name and sort of a declaration.
std::string domain_of(const Command& declaration) {
  if (declaration.keyword != "declare-fun") return "";
  std::string text;
  for (const Parameter& p : declaration.parameters)
    text += (text.empty() ? "" : " ") + to_string(p.sort);
  return " (" + text + ")";
}

/// Indices and elements of the sorts of arrays that came up.
std::deque<std::pair<Sort, Sort>>& array_parts() {
  static std::deque<std::pair<Sort, Sort>> parts;
  return parts;
}

}  // namespace

Sort array_sort(const Sort& index, const Sort& element) {
  auto& parts = array_parts();
  const auto found = std::find(parts.begin(), parts.end(), std::pair(index, element));
  const auto number = static_cast<std::size_t>(found - parts.begin());
  if (found == parts.end()) parts.emplace_back(index, element);
  return {Sort::Kind::array, number};
}

const Sort& index_of(const Sort& array) {
  return array_parts()[array.w0].first;
}

const Sort& element_of(const Sort& array) {
  return array_parts()[array.w0].second;
}

bool names_people(const Sort& sort) {
  if (sort.kind != Sort::Kind::array) return sort == kPeople;
  return names_people(index_of(sort)) || names_people(element_of(sort));
}

std::size_t Sort::width() const {
  if (kind == Kind::uninterpreted) return 4;
  if (kind != Kind::array) return w0 + w1;
  return 4 + index_of(*this).width() + 2 * element_of(*this).width();
}

std::string to_string(const Sort& sort) {
  switch (sort.kind) {
    case Sort::Kind::array:
      return fmt::format("(Array {} {})", to_string(index_of(sort)), to_string(element_of(sort)));
    case Sort::Kind::uninterpreted:
      return "People";
    case Sort::Kind::boolean:
      return "Bool";
    case Sort::Kind::mode:
      return "RoundingMode";
    case Sort::Kind::bits:
      return fmt::format("(_ BitVec {})", sort.w0);
    case Sort::Kind::real:
      return "Real";
    case Sort::Kind::floating:
      break;
  }
  if (sort == float_sort(5, 11)) return "Float16";
  if (sort == float_sort(8, 24)) return "Float32";
  if (sort == float_sort(11, 53)) return "Float64";
  return fmt::format("(_ FloatingPoint {} {})", sort.w0, sort.w1);
}

std::string to_string(const Expression& e) {
  std::string text;
  print(e, &text);
  return text;
}

std::string to_string(const Command& command) {
  std::string text = '(' + command.keyword;
  switch (command.kind) {
    case Kind::declare_sort:
      text += fmt::format(" {} 0", to_string(command.sort));
      break;
    case Kind::declare:
      text += fmt::format(" {}{} {}", command.name, domain_of(command), to_string(command.sort));
      break;
    case Kind::define:
      text += ' ' + command.name;
      if (command.keyword == "define-fun") {
        text += " (";
        for (const Parameter& p : command.parameters)
          text += fmt::format("({} {})", p.name, to_string(p.sort));
        text += ')';
      }
      text += fmt::format(" {} {}", to_string(command.sort), to_string(command.terms[0]));
      break;
    case Kind::assertion:
      text += ' ' + to_string(command.terms[0]);
      break;
    case Kind::push:
    case Kind::pop:
      text += fmt::format(" {}", command.levels);
      break;
    case Kind::check_assuming:
      text += " (";
      for (std::size_t i = 0; i < command.terms.size(); ++i)
        text += (i == 0 ? "" : " ") + to_string(command.terms[i]);
      text += ')';
      break;
    case Kind::check:
    case Kind::reset_assertions:
      break;
  }
  return text + ')';
}

std::string to_string(const Script& script) {
  std::string text;
  for (const Command& command : script)
    text += to_string(command) + '\n';
  return text;
}

Command make_assertion(Expression formula) {
  Command command;
  command.kind = Kind::assertion;
  command.keyword = "assert";
  command.terms.push_back(std::move(formula));
  return command;
}

Command make_check() {
  Command command;
  command.keyword = "check-sat";
  return command;
}

Script name_assertions(Script script) {
  std::size_t count = 0;
  for (Command& command : script) {
    if (command.kind != Kind::assertion) continue;
    Expression& formula = command.terms[0];
    const std::string label = fmt::format("part{}", count++);
    if (formula.kind == Expression::Kind::named) continue;
    formula = {Expression::Kind::named, label, kBool, {std::move(formula)}, {}};
  }
  return script;
}

std::vector<Expression*> nodes_of(Script& script) {
  std::vector<Expression*> nodes;
  for (Command& command : script) {
    for (Expression& term : command.terms)
      collect(term, &nodes);
  }
  return nodes;
}

std::vector<const Expression*> nodes_of(const Expression& e) {
  std::vector<const Expression*> nodes;
  collect(e, &nodes);
  return nodes;
}

}  // namespace vorn::random
