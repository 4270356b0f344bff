#include "vorn/smt2/model_text.h"

#include <fmt/format.h>

#include <vector>

#include "vorn/terms/printer.h"

namespace vorn::smt2 {
namespace {

/// A choice for each entry, one within the other, under parameters that no name of the script is.
std::string define_values(const SymbolTable& symbols, const Symbol* function,
                          const FunctionValue& value) {
  std::vector<std::string> parameters;
  std::string text = "(";
  for (const DataType* type : function->get_domain()) {
    std::string name = fmt::format("x!{}", parameters.size());
    while (symbols.find(name) != nullptr)
      name.insert(0, 1, 'x');
    text += fmt::format("{}({} {})", parameters.empty() ? "" : " ", name, type->to_string());
    parameters.push_back(std::move(name));
  }
  text += fmt::format(") {} ", function->get_output_type()->to_string());
  for (const FunctionValue::Entry& entry : value.entries) {
    std::string condition;
    for (std::size_t i = 0; i < parameters.size(); ++i)
      condition += fmt::format(" (= {} {})", parameters[i], entry.arguments[i]->to_string());
    if (parameters.size() > 1) condition = fmt::format(" (and{})", condition);
    text += fmt::format("(ite{} {} ", condition, entry.value->to_string());
  }
  return text + value.otherwise->to_string() + std::string(value.entries.size(), ')');
}

}  // namespace

std::string define_in_model(Engine& engine, const SymbolTable& symbols,
                            const SymbolTable::Declaration& declared) {
  const Term* term = declared.constant;
  const Symbol* symbol = term->get_symbol();
  const std::string definition = symbol->is_function()
                                     ? define_values(symbols, symbol, engine.get_function(symbol))
                                     : fmt::format("() {} {}", term->get_type()->to_string(),
                                                   engine.get_value(term)->to_string());
  return fmt::format("(define-fun {} {})", quote_symbol(declared.name), definition);
}

}  // namespace vorn::smt2
