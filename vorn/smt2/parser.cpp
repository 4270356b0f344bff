// Commands and the pieces of them that are not terms.
#include "vorn/smt2/parser.h"

#include <fmt/format.h>

#include <utility>

#include "vorn/smt2/sort_parser.h"

namespace vorn::smt2 {
namespace {

/// Nesting depth of names that are bound around a whole term; forms inside have depths from 1 on.
constexpr std::size_t kParameterDepth = 0;

}  // namespace

Parser::Parser(TermManager& manager, SymbolTable& table, std::string_view text, std::string file,
               Position start, ReaderHooks hooks)
    : mgr(manager), symbols(table), tokens(text, std::move(file), start, hooks) {}

// Commands and their pieces ---------------------------------------------------------------------

std::optional<Token> Parser::open_command() {
  if (tokens.at_end()) return std::nullopt;
  tokens.expect_open("'(' to open a command");
  const Token name = tokens.next();
  if (!name.is(Token::Kind::symbol)) tokens.fail_expected("the name of a command", name);
  return name;
}

void Parser::close_command() {
  tokens.expect_close("')' to close the command");
}

Token Parser::read_new_symbol() {
  const Token name = tokens.expect_symbol("a symbol");
  const Operator* op = find_operator(name.text);
  if (op != nullptr && op->is_supported() && !op->needs_sort()) {
    fail(name.position,
         fmt::format("'{}' is a symbol of the theory and cannot be declared", name.text));
  }
  if (symbols.find(name.text) != nullptr) {
    fail(name.position, fmt::format("'{}' is already declared", name.text));
  }
  return name;
}

Token Parser::read_new_sort_symbol() {
  const Token name = tokens.expect_symbol("a symbol");
  if (is_builtin_sort(name.text) || symbols.find_sort(name.text) != nullptr) {
    fail(name.position, fmt::format("the sort '{}' is already defined", name.text));
  }
  return name;
}

const DataType* Parser::read_sort() {
  return SortParser(mgr, symbols, tokens).parse().type;
}

std::vector<const DataType*> Parser::read_sorts() {
  std::vector<const DataType*> sorts;
  tokens.expect_open("'(' to open the sorts of the arguments");
  while (!tokens.at_close())
    sorts.push_back(read_sort());
  tokens.next();
  return sorts;
}

SortDefinition Parser::read_sort_definition() {
  std::vector<Token> parameters;
  tokens.expect_open("'(' to open the parameters");
  while (!tokens.at_close()) {
    const Token name = tokens.expect_symbol("a parameter");
    for (const Token& other : parameters) {
      if (other.text == name.text) {
        fail(name.position, fmt::format("'{}' is bound twice", name.text));
      }
    }
    parameters.push_back(name);
  }
  tokens.next();
  SortValue body = SortParser(mgr, symbols, tokens, parameters).parse();
  return {static_cast<std::uint32_t>(parameters.size()), std::move(body)};
}

ParsedTerm Parser::read_term() {
  const Token first = tokens.peek();
  outer_name.reset();
  const Value value = read_value();
  if (value.real) {
    fail(first.position,
         "a number is no term here; to_fp makes it a float, (_ bvN width) writes a bit-vector");
  }
  return {value.term, first.position, tokens.text_from(first), outer_name};
}

ParsedTerm Parser::read_formula(std::string_view what) {
  const ParsedTerm formula = read_term();
  if (!mgr.is_bool_type(formula.term->get_type())) {
    fail(formula.position, fmt::format("{} must be a Bool, got a term of {}", what,
                                       formula.term->get_type()->to_string()));
  }
  return formula;
}

std::vector<Parameter> Parser::read_parameters() {
  std::vector<Parameter> parameters;
  LocalScope seen;
  tokens.expect_open("'(' to open the parameters");
  while (!tokens.at_close()) {
    tokens.expect_open("'(' to open a parameter");
    const Token name = tokens.expect_symbol("a parameter");
    if (!seen.bind(name.text, {}, kParameterDepth)) {
      fail(name.position, fmt::format("'{}' is bound twice", name.text));
    }
    // Under a name of its own, lest it take one that the script declares later.
    const Symbol* fresh =
        mgr.make_unique_symbol(".parameter." + make_term_name(name.text), read_sort());
    parameters.push_back({name.text, mgr.make_constant(fresh)});
    tokens.expect_close("')' to close the parameter");
  }
  tokens.next();
  return parameters;
}

ParsedTerm Parser::read_body(std::span<const Parameter> parameters) {
  in_macro = !parameters.empty();
  for (const Parameter& p : parameters) {
    locals.bind(p.name, Value::of(p.constant), kParameterDepth);
  }
  const ParsedTerm body = read_term();
  for (const Parameter& p : parameters)
    locals.unbind(p.name);
  in_macro = false;
  return body;
}

}  // namespace vorn::smt2
