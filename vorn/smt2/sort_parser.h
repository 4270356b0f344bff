// Sorts: built in, indexed, declared, defined. Applications of sorts can nest, so they are read
// with a stack, as terms are.
#ifndef VORN_SMT2_SORT_PARSER_H
#define VORN_SMT2_SORT_PARSER_H

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "vorn/smt2/symbol_table.h"
#include "vorn/smt2/token_stream.h"
#include "vorn/terms/term_manager.h"

namespace vorn::smt2 {

/// Whether the sort is one that scripts may use without defining it.
bool is_builtin_sort(std::string_view name);

class SortParser {
 public:
  /// `parameters` are the names that stand for sorts in the body of a definition.
  SortParser(TermManager& manager, const SymbolTable& table, TokenStream& stream,
             std::span<const Token> sort_parameters = {})
      : mgr(manager), symbols(table), tokens(stream), parameters(sort_parameters) {}

  /// Reads one sort; without parameters it is a type. Throws ScriptError.
  SortValue parse();

 private:
  struct Frame {
    Token head;
    const SortDefinition* definition;
    std::size_t first_arg;
  };

  /// A sort comes back from these when one is complete.
  std::optional<SortValue> read_step(const Token& token);
  std::optional<SortValue> open_form();
  SortValue close_form(const Token& close);
  SortValue named(const Token& name) const;
  SortValue indexed();
  SortValue apply(const Token& head, const SortDefinition& definition,
                  std::span<const SortValue> sorts) const;
  const SortDefinition& find(const Token& name) const;
  bool is_parameter(const Token& name) const;
  void note_parentheses(const Token& name) const;
  [[noreturn]] void fail_unknown(const Token& name) const;
  [[noreturn]] void fail_applied(const Token& name) const;

  TermManager& mgr;
  const SymbolTable& symbols;
  TokenStream& tokens;
  std::span<const Token> parameters;
  std::vector<Frame> frames;
  std::vector<SortValue> args;
};

}  // namespace vorn::smt2

#endif
