// Declared names: what terms that are read as text know.
#include "vorn/c/names.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>
#include <vector>

#include "vorn/c/guard.h"
#include "vorn/c/terms.h"
#include "vorn/smt2/operators.h"
#include "vorn/smt2/sort_parser.h"

using vorn::DataType;
using vorn::Term;

namespace vorn::c {

std::size_t uncount_hidden_bit(std::size_t sb) {
  if (sb >= 2) return sb - 1;
  throw std::invalid_argument("a significand of " + std::to_string(sb) +
                              " bits (hidden bit counted): it must have at least 2");
}

void check_position(std::size_t position, std::size_t count, std::string_view things) {
  if (position < count) return;
  throw std::invalid_argument("there is nothing at position " + std::to_string(position) + " of " +
                              std::to_string(count) + " " + std::string(things));
}

void declare_sort_name(vorn_manager& manager, const std::string& name, std::size_t count) {
  if (smt2::is_builtin_sort(name)) {
    throw std::invalid_argument("'" + name + "' is a sort of the theory and cannot be declared");
  }
  const auto arity = static_cast<std::uint32_t>(count);
  manager.symbols.define_sort(name, {arity, {}, smt2::SortStep::declared(name, arity)});
}

namespace {

/// The text of a name that may be declared. Others print as it does not know them or not at all.
std::string read_new_name(const vorn_manager& manager, const char* name) {
  std::string text(get_text(name, "the name"));
  const smt2::Operator* op = smt2::find_operator(text);
  if (op != nullptr && op->is_supported() && !op->needs_sort()) {
    throw std::invalid_argument("'" + text + "' is a symbol of the theory and cannot be declared");
  }
  if (manager.symbols.find(text) != nullptr) {
    throw std::invalid_argument("'" + text + "' is already declared");
  }
  return text;
}

const smt2::Function& find_name(const vorn_manager& manager, const char* name, bool is_function) {
  const std::string text(get_text(name, "the name"));
  const smt2::Function* found = manager.symbols.find(text);
  if (found == nullptr || (found->symbol != nullptr) != is_function) {
    throw Failure(VORN_UNKNOWN_NAME, "no " + std::string(is_function ? "function" : "constant") +
                                         " is declared as '" + text + "'");
  }
  return *found;
}

vorn_function* declare_function(vorn_manager& manager, const std::string& name,
                                const std::vector<const DataType*>& domain, const DataType* range) {
  if (domain.empty()) throw std::invalid_argument("a function needs arguments");
  TermManager& terms = manager.terms;
  const Symbol* symbol = terms.make_unique_symbol(name, domain, range);
  std::vector<const Term*> parameters;
  parameters.reserve(domain.size());
  for (const DataType* sort : domain)
    parameters.push_back(terms.make_constant(terms.make_unique_symbol(".parameter", sort)));
  const Term* body = terms.make_application(symbol, parameters);
  vorn_function* held = manager.hold(symbol, body);
  try {
    manager.symbols.declare(name, {std::move(parameters), body, symbol});
  } catch (...) {
    manager.release(held);
    throw;
  }
  return held;
}

}  // namespace
}  // namespace vorn::c

using namespace vorn::c;

vorn_status vorn_declare_constant(vorn_manager* manager, const char* name, const vorn_sort* sort,
                                  vorn_term** result) {
  return produce(manager, __func__, result, [&] {
    manager->tidy();
    const DataType* type = get(*manager, sort, "the sort");
    const std::string text = read_new_name(*manager, name);
    vorn::TermManager& terms = manager->terms;
    const Term* constant = terms.make_constant(terms.make_unique_symbol(text, type));
    vorn_term* held = manager->hold(constant);
    try {
      manager->symbols.declare(text, constant);
    } catch (...) {
      manager->release(held);
      throw;
    }
    return held;
  });
}

vorn_status vorn_declare_function(vorn_manager* manager, const char* name,
                                  const vorn_sort* const* domain, size_t count,
                                  const vorn_sort* range, vorn_function** result) {
  return produce(manager, __func__, result, [&] {
    manager->tidy();
    const std::vector<const DataType*> sorts = get_all(*manager, domain, count);
    const DataType* type = get(*manager, range, "the sort of the values");
    return declare_function(*manager, read_new_name(*manager, name), sorts, type);
  });
}

vorn_status vorn_make_fresh_constant(vorn_manager* manager, const char* prefix,
                                     const vorn_sort* sort, vorn_term** result) {
  return produce(manager, __func__, result, [&] {
    manager->tidy();
    const DataType* type = get(*manager, sort, "the sort");
    const std::string text(get_text(prefix, "the prefix"));
    vorn::TermManager& terms = manager->terms;
    return manager->hold(terms.make_constant(terms.make_unique_symbol(text, type)));
  });
}

vorn_status vorn_find_constant(vorn_manager* manager, const char* name, vorn_term** result) {
  return produce(manager, __func__, result,
                 [&] { return manager->hold(find_name(*manager, name, false).body); });
}

vorn_status vorn_find_function(vorn_manager* manager, const char* name, vorn_function** result) {
  return produce(manager, __func__, result, [&] {
    const vorn::smt2::Function& found = find_name(*manager, name, true);
    return manager->hold(found.symbol, found.body);
  });
}

vorn_status vorn_push_names(vorn_manager* manager) {
  return enter(manager, __func__, [&] { manager->symbols.push(); });
}

vorn_status vorn_pop_names(vorn_manager* manager) {
  return enter(manager, __func__, [&] {
    if (manager->symbols.get_level() == 0) {
      throw Failure(VORN_WRONG_STATE, "no level of names is open");
    }
    manager->symbols.pop();
  });
}
