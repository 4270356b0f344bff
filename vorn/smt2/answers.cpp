// Commands that ask the engine and print what it found.
#include <fmt/format.h>

#include <utility>

#include "vorn/smt2/interpreter.h"
#include "vorn/smt2/model_text.h"
#include "vorn/terms/printer.h"

namespace vorn::smt2 {
namespace {

constexpr std::string_view kNoModel = "there is no model, the last answer is not sat";

}  // namespace

std::string_view Interpreter::answer_text(Answer answer) {
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

void Interpreter::decide(Parser& parser, const Token& command) {
  last_answer.reset();
  ++checks;
  ++checks_of_script;
  refutation.reset();
  std::vector<const Term*> assumed;
  for (const Assertion* assertion : list_core_candidates())
    assumed.push_back(assertion->term);
  for (const Assertion& assumption : assumptions)
    assumed.push_back(assumption.term);
  const std::optional<Answer> expected = std::exchange(stated_answer, std::nullopt);
  last_answer = check(parser, command.position, assumed);
  respond(answer_text(*last_answer));
  if (expected) compare_status(parser, command, *expected);
}

/// One of the two is wrong where one is sat and the other unsat.
void Interpreter::compare_status(Parser& parser, const Token& command, Answer expected) {
  const bool is_open = expected == Answer::unknown || last_answer == Answer::unknown;
  if (is_open || expected == last_answer) return;
  clean = false;
  if (options.diagnostics == nullptr) return;
  out.flush();
  *options.diagnostics << fmt::format("{}:{}:{}: warning: the script says {}, the answer is {}\n",
                                      parser.get_tokens().get_file(), command.position.line,
                                      command.position.column, answer_text(expected),
                                      answer_text(*last_answer));
}

void Interpreter::check_sat(Parser& parser, const Token& command) {
  parser.close_command();
  assumptions.clear();
  decide(parser, command);
}

void Interpreter::check_sat_assuming(Parser& parser, const Token& command) {
  TokenStream& tokens = parser.get_tokens();
  std::vector<Assertion> assumed;
  tokens.expect_open("'(' to open the assumptions");
  while (!tokens.at_close()) {
    const ParsedTerm formula = parser.read_formula("an assumption");
    assumed.push_back({formula.text, script, formula.term, formula.position});
  }
  tokens.next();
  parser.close_command();
  assumptions = std::move(assumed);
  decide(parser, command);
}

/// Fails unless the last answer is the one that `command` needs.
void Interpreter::require_answer(const Parser& parser, const Token& command, Answer answer,
                                 std::string_view complaint) const {
  if (last_answer == answer) return;
  parser.fail_state(command.position, fmt::format("{}: {}", command.text, complaint),
                    last_answer == Answer::unknown);
}

void Interpreter::get_model(Parser& parser, const Token& command) {
  parser.close_command();
  check_flag(parser, command, ":produce-models");
  require_answer(parser, command, Answer::sat, kNoModel);
  std::string model = "(\n";
  for (const SymbolTable::Declaration& d : symbols.get_declarations()) {
    model +=
        "  " +
        ask_engine(parser, command.position, [&] { return define_in_model(engine, symbols, d); }) +
        "\n";
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
  check_flag(parser, command, ":produce-models");
  require_answer(parser, command, Answer::sat, kNoModel);

  std::string values;
  for (const ParsedTerm& t : terms) {
    const Term* value = ask_engine(parser, t.position, [&] { return engine.get_value(t.term); });
    if (!values.empty()) values += "\n ";
    values += fmt::format("({} {})", collapse(t.text), value->to_string());
  }
  respond("(" + values + ")");
}

void Interpreter::get_assertions(Parser& parser, const Token& command) {
  parser.close_command();
  check_flag(parser, command, ":produce-assertions");
  std::string text = "(";
  for (const Assertion& assertion : assertions.get_items()) {
    if (text.size() > 1) text += "\n ";
    text += collapse(assertion.text);
  }
  respond(text + ")");
}

/// The values of the formulas that :named has given a name.
void Interpreter::get_assignment(Parser& parser, const Token& command) {
  parser.close_command();
  check_flag(parser, command, ":produce-assignments");
  require_answer(parser, command, Answer::sat, kNoModel);
  std::string text = "(";
  for (const SymbolTable::Declaration& label : symbols.get_labels()) {
    const Term* value =
        ask_engine(parser, command.position, [&] { return engine.get_value(label.constant); });
    if (text.size() > 1) text += ' ';
    text += fmt::format("({} {})", quote_symbol(label.name), value->to_string());
  }
  respond(text + ")");
}

}  // namespace vorn::smt2
