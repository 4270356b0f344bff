#include "vorn/terms/script_printer.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "vorn/terms/post_order.h"
#include "vorn/terms/printer.h"
#include "vorn/terms/term_set.h"
#include "vorn/terms/theory_symbol.h"

namespace vorn {
namespace {

struct Visit {
  const Term* term;
  std::size_t next = 0;
};

bool is_control(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < 0x20 && c != '\t' && c != '\n' && c != '\r') || byte == 0x7F;
}

/// Whether no script can hold it, even between bars.
bool is_unprintable(const std::string& name) {
  return std::ranges::any_of(name, is_control);
}

/// Whether it belongs to solvers, or scripts cannot hold it.
bool is_reserved(const std::string& name) {
  return name.starts_with('.') || name.starts_with('@') || is_unprintable(name);
}

bool is_free_for_symbols(const std::string& name) {
  return !is_reserved(name) && !is_theory_symbol(name);
}

bool is_free_for_sorts(const std::string& name) {
  return !is_reserved(name) && !is_theory_sort(name);
}

/// A name in place of one that scripts may not declare; empty where it could not be written.
std::string replace_name(const std::string& name) {
  if (is_unprintable(name)) return "";
  return is_reserved(name) ? "vorn" + name : "vorn." + name;
}

/// The theory's own constants have these names before anybody can take them.
bool is_rounding_mode(const Symbol* symbol) {
  static constexpr std::array<std::string_view, 5> kNames = {
      "roundNearestTiesToEven", "roundTowardZero", "roundTowardPositive", "roundTowardNegative",
      "roundNearestTiesToAway"};
  return symbol->get_output_type()->get_kind() == DataType::Kind::rounding_mode &&
         symbol->get_arity() == 0 && std::ranges::find(kNames, symbol->get_name()) != kNames.end();
}

bool is_uninterpreted(const Symbol* symbol) {
  return symbol->get_tag() == SymbolTag::none && symbol->get_literal() == nullptr &&
         !is_rounding_mode(symbol);
}

}  // namespace

ScriptPrinter::ScriptPrinter(std::span<const Term* const> assertions)
    : formulas(assertions.begin(), assertions.end()) {
  const TermSet shared = collect();
  name_sorts();
  name_symbols();
  name_operations(shared);
}

std::string ScriptPrinter::get_name(const Symbol* symbol) const {
  const auto found = symbol_names.find(symbol);
  return found == symbol_names.end() ? "" : found->second;
}

/// Finds what is to be declared, and the operations; returns what occurs more than once.
TermSet ScriptPrinter::collect() {
  TermSet used;
  TermSet shared;
  const auto use = [&](const Term* t) {
    if (!used.insert(t)) shared.insert(t);
  };
  for (const Term* t : list_post_order(formulas)) {
    add_symbol(t->get_symbol());
    if (t->get_arity() != 0) operations.push_back(t);
    std::ranges::for_each(t->get_args(), use);
  }
  std::ranges::for_each(formulas, use);
  return shared;
}

void ScriptPrinter::add_symbol(const Symbol* symbol) {
  add_sorts(symbol->get_output_type());
  if (!is_uninterpreted(symbol) || !symbol_names.try_emplace(symbol).second) return;
  symbols.push_back(symbol);
  for (const DataType* type : symbol->get_domain())
    add_sorts(type);
}

/// The uninterpreted sorts that the text of a sort names.
void ScriptPrinter::add_sorts(const DataType* type) {
  switch (type->get_kind()) {
    case DataType::Kind::array:
      add_sorts(type->get_index());
      add_sorts(type->get_element());
      break;
    case DataType::Kind::uninterpreted:
      for (const DataType* argument : type->get_arguments())
        add_sorts(argument);
      sorts.try_emplace(type->get_name(), SortName{type->get_arguments().size(), {}});
      break;
    default:
      break;
  }
}

/// Names of sorts are apart from those of terms.
void ScriptPrinter::name_sorts() {
  std::unordered_set<std::string> others;
  for (auto& [name, sort] : sorts) {
    if (!is_free_for_sorts(name)) continue;
    others.insert(name);
    sort.text = quote_symbol(name);
  }
  std::size_t number = 0;
  for (auto& [name, sort] : sorts) {
    if (is_free_for_sorts(name)) continue;
    std::string candidate = replace_name(name);
    while (candidate.empty() || !others.insert(candidate).second)
      candidate = "S" + std::to_string(++number);
    sort.text = quote_symbol(candidate);
  }
}

/// Names that can stay are taken before any is made.
void ScriptPrinter::name_symbols() {
  std::vector<const Symbol*> others;
  for (const Symbol* symbol : symbols) {
    const std::string& name = symbol->get_name();
    if (is_free_for_symbols(name)) {
      taken.insert(name);
      symbol_names[symbol] = quote_symbol(name);
    } else {
      others.push_back(symbol);
    }
  }
  for (const Symbol* symbol : others) {
    const std::string& name = symbol->get_name();
    const std::string candidate = replace_name(name);
    const bool is_new = !candidate.empty() && taken.insert(candidate).second;
    symbol_names[symbol] = quote_symbol(is_new ? candidate : fresh_name("c"));
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

/// The sort over the names of the script.
std::string ScriptPrinter::sort_text(const DataType* type) const {
  if (type->get_kind() == DataType::Kind::array) {
    return "(Array " + sort_text(type->get_index()) + " " + sort_text(type->get_element()) + ")";
  }
  if (type->get_kind() != DataType::Kind::uninterpreted) return type->to_string();
  std::string text = sorts.at(type->get_name()).text;
  if (type->get_arguments().empty()) return text;
  for (const DataType* argument : type->get_arguments())
    text += " " + sort_text(argument);
  return "(" + text + ")";
}

std::string ScriptPrinter::head(const Symbol* symbol) const {
  const auto name = symbol_names.find(symbol);
  if (name != symbol_names.end()) return name->second;
  if (symbol->get_tag() != SymbolTag::array_const) return head_text(symbol);
  return "(as const " + sort_text(symbol->get_output_type()) + ")";
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
      out += name != names.end() ? name->second : head(t->get_symbol());
      stack.pop_back();
    } else if (top.next < t->get_arity()) {
      out += top.next == 0 ? "(" + head(t->get_symbol()) + " " : " ";
      stack.push_back({t->get_arg(top.next++)});
    } else {
      out += ")";
      stack.pop_back();
    }
  }
  return out;
}

void ScriptPrinter::print(std::ostream& out) const {
  for (const auto& [name, sort] : sorts)
    out << "(declare-sort " << sort.text << ' ' << sort.arguments << ")\n";
  for (const Symbol* symbol : symbols) {
    const bool is_function = symbol->is_function();
    out << (is_function ? "(declare-fun " : "(declare-const ") << symbol_names.at(symbol) << ' ';
    if (is_function) {
      const char* separator = "(";
      for (const DataType* type : symbol->get_domain()) {
        out << separator << sort_text(type);
        separator = " ";
      }
      out << ") ";
    }
    out << sort_text(symbol->get_output_type()) << ")\n";
  }
  for (const Term* t : operations) {
    const auto name = names.find(t);
    if (name == names.end()) continue;
    out << "(define-fun " << name->second << " () " << sort_text(t->get_type()) << ' ' << text(t)
        << ")\n";
  }
  for (const Term* formula : formulas) {
    const auto name = names.find(formula);
    out << "(assert " << (name != names.end() ? name->second : text(formula)) << ")\n";
  }
}

}  // namespace vorn
