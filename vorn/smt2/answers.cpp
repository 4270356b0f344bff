// Commands that ask the engine and print what it found.
#include <fmt/format.h>

#include "vorn/smt2/interpreter.h"
#include "vorn/terms/printer.h"

namespace vorn::smt2 {
namespace {

const char* answer_text(Answer answer) {
  switch (answer) {
    case Answer::sat:
      return "sat";
    case Answer::unsat:
      return "unsat";
    case Answer::unknown:
      break;
  }
  return "unknown";
}

}  // namespace

void Interpreter::decide(Parser& parser, const Token& command,
                         std::span<const Term* const> assumptions) {
  last_answer.reset();
  ++checks;
  last_answer = ask_engine(parser, command.position, [&] { return engine.check_sat(assumptions); });
  respond(answer_text(*last_answer));
}

void Interpreter::check_sat(Parser& parser, const Token& command) {
  parser.close_command();
  decide(parser, command, {});
}

void Interpreter::check_sat_assuming(Parser& parser, const Token& command) {
  TokenStream& tokens = parser.get_tokens();
  std::vector<const Term*> assumptions;
  tokens.expect_open("'(' to open the assumptions");
  while (!tokens.at_close())
    assumptions.push_back(parser.read_formula("an assumption").term);
  tokens.next();
  parser.close_command();
  decide(parser, command, assumptions);
}

void Interpreter::require_model(Parser& parser, const Token& command) const {
  if (!options.produce_models) {
    parser.fail(command.position,
                fmt::format("{}: the option :produce-models is false", command.text));
  }
  if (last_answer != Answer::sat) {
    parser.fail(command.position,
                fmt::format("{}: there is no model, the last answer is not sat", command.text));
  }
}

void Interpreter::get_model(Parser& parser, const Token& command) {
  parser.close_command();
  require_model(parser, command);
  std::string model = "(\n";
  for (const SymbolTable::Declaration& d : symbols.get_declarations()) {
    const Term* value =
        ask_engine(parser, command.position, [&] { return engine.get_value(d.constant); });
    model += fmt::format("  (define-fun {} () {} {})\n", quote_symbol(d.name),
                         d.constant->get_type()->to_string(), value->to_string());
  }
  respond(model + ")");
}

void Interpreter::get_value(Parser& parser, const Token& command) {
  TokenStream& tokens = parser.get_tokens();
  std::vector<ParsedTerm> terms;
  tokens.expect_open("'(' to open the terms");
  do {
    terms.push_back(parser.read_term());
  } while (!tokens.at_close());
  tokens.next();
  parser.close_command();
  require_model(parser, command);

  std::string values;
  for (const ParsedTerm& t : terms) {
    const Term* value = ask_engine(parser, t.position, [&] { return engine.get_value(t.term); });
    if (!values.empty()) values += "\n ";
    values += fmt::format("({} {})", collapse(t.text), value->to_string());
  }
  respond("(" + values + ")");
}

void Interpreter::get_assertions(Parser& parser, const Token& /*command*/) {
  parser.close_command();
  std::string text = "(";
  for (const std::string_view assertion : assertions) {
    if (text.size() > 1) text += "\n ";
    text += collapse(assertion);
  }
  respond(text + ")");
}

}  // namespace vorn::smt2
