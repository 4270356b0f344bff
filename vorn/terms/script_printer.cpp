#include "vorn/terms/script_printer.h"

#include <algorithm>

#include "vorn/terms/post_order.h"
#include "vorn/terms/printer.h"
#include "vorn/terms/term_set.h"

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
  const TermSet shared = collect();
  name_constants();
  name_operations(shared);
}

std::string ScriptPrinter::get_name(const Term* constant) const {
  const auto found = names.find(constant);
  return found == names.end() ? "" : found->second;
}

/// Finds the constants and operations; returns what occurs more than once.
TermSet ScriptPrinter::collect() {
  TermSet used;
  TermSet shared;
  const auto use = [&](const Term* t) {
    if (!used.insert(t)) shared.insert(t);
  };
  for (const Term* t : list_post_order(formulas)) {
    if (is_uninterpreted(t)) constants.push_back(t);
    if (t->get_arity() != 0) operations.push_back(t);
    std::ranges::for_each(t->get_args(), use);
  }
  std::ranges::for_each(formulas, use);
  return shared;
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

void ScriptPrinter::name_operations(const TermSet& shared) {
  std::unordered_map<const Term*, std::size_t> depths;
  for (const Term* t : operations) {
    std::size_t depth = 1;
    for (const Term* arg : t->get_args()) {
      if (arg->get_arity() != 0 && !names.contains(arg)) depth = std::max(depth, depths[arg] + 1);
    }
    depths[t] = depth;
    if (shared.contains(t) || depth >= kMaxDepth) names[t] = fresh_name("s");
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
