#include "vorn/terms/script_printer.h"

#include <algorithm>

#include "vorn/terms/printer.h"

namespace vorn {
namespace {

struct Visit {
  const Term* term;
  std::size_t next = 0;
};

bool is_uninterpreted(const Term* t) {
  return t->get_arity() == 0 && t->get_tag() == SymbolTag::none &&
         t->get_symbol()->get_literal() == nullptr;
}

}  // namespace

ScriptPrinter::ScriptPrinter(std::span<const Term* const> assertions)
    : formulas(assertions.begin(), assertions.end()) {
  collect();
  name_constants();
  name_operations();
}

std::string ScriptPrinter::get_name(const Term* constant) const {
  const auto found = names.find(constant);
  return found == names.end() ? "" : found->second;
}

void ScriptPrinter::collect() {
  std::vector<Visit> stack;
  const auto visit = [&](const Term* t) {
    if (uses[t]++ == 0) stack.push_back({t});
  };
  for (const Term* formula : formulas) {
    visit(formula);
    while (!stack.empty()) {
      Visit& top = stack.back();
      if (top.next < top.term->get_arity()) {
        visit(top.term->get_arg(top.next++));
        continue;
      }
      if (is_uninterpreted(top.term)) constants.push_back(top.term);
      if (top.term->get_arity() != 0) operations.push_back(top.term);
      stack.pop_back();
    }
  }
}

/// Names that can stay are taken before any is made.
void ScriptPrinter::name_constants() {
  std::vector<const Term*> others;
  for (const Term* constant : constants) {
    const std::string& name = constant->get_symbol()->get_name();
    if (name.starts_with('.') || name.starts_with('@')) {
      others.push_back(constant);
    } else {
      taken.insert(name);
      names[constant] = quote_symbol(name);
    }
  }
  for (const Term* constant : others) {
    const std::string& name = constant->get_symbol()->get_name();
    const std::string candidate = "vorn" + name;
    names[constant] = quote_symbol(taken.insert(candidate).second ? candidate : fresh_name("c"));
  }
}

void ScriptPrinter::name_operations() {
  std::unordered_map<const Term*, std::size_t> depths;
  for (const Term* t : operations) {
    std::size_t depth = 1;
    for (const Term* arg : t->get_args()) {
      if (arg->get_arity() != 0 && !names.contains(arg)) depth = std::max(depth, depths[arg] + 1);
    }
    depths[t] = depth;
    if (uses[t] > 1 || depth >= kMaxDepth) names[t] = fresh_name("s");
  }
}

std::string ScriptPrinter::fresh_name(const std::string& prefix) {
  std::string name;
  do {
    name = prefix + std::to_string(++counter);
  } while (!taken.insert(name).second);
  return name;
}

/// The term `root`, whatever its own name, over the names of what is below it.
std::string ScriptPrinter::text(const Term* root) const {
  std::string out;
  std::vector<Visit> stack{{root}};
  while (!stack.empty()) {
    Visit& top = stack.back();
    const Term* t = top.term;
    const auto name = t == root && t->get_arity() != 0 ? names.end() : names.find(t);
    if (name != names.end() || t->get_arity() == 0) {
      out += name != names.end() ? name->second : head_text(t->get_symbol());
      stack.pop_back();
    } else if (top.next < t->get_arity()) {
      out += top.next == 0 ? "(" + head_text(t->get_symbol()) + " " : " ";
      stack.push_back({t->get_arg(top.next++)});
    } else {
      out += ")";
      stack.pop_back();
    }
  }
  return out;
}

void ScriptPrinter::print(std::ostream& out) const {
  for (const Term* constant : constants) {
    out << "(declare-const " << names.at(constant) << ' ' << constant->get_type()->to_string()
        << ")\n";
  }
  for (const Term* t : operations) {
    const auto name = names.find(t);
    if (name == names.end()) continue;
    out << "(define-fun " << name->second << " () " << t->get_type()->to_string() << ' ' << text(t)
        << ")\n";
  }
  for (const Term* formula : formulas) {
    const auto name = names.find(formula);
    out << "(assert " << (name != names.end() ? name->second : text(formula)) << ")\n";
  }
}

}  // namespace vorn
