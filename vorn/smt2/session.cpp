// What a session knows about itself: logic, information and options (SMT-LIB 2.6, section 4.1).
#include <fmt/format.h>

#include <array>

#include "vorn/smt2/interpreter.h"
#include "vorn/terms/printer.h"

namespace vorn::smt2 {
namespace {

/// Whether the name is put together like those of the standard's logics: QF_BVFP, UFNIRA, ALL.
bool is_logic(std::string_view name) {
  static constexpr auto kParts =
      std::to_array<std::string_view>({"AX", "A", "UF", "BV", "FP", "DT", "S", "LIRA", "NIRA",
                                       "LIA", "LRA", "NIA", "NRA", "IDL", "RDL"});
  if (name == "ALL" || name == "QF_ALL" || name == "ALL_SUPPORTED" || name == "HORN") return true;
  if (name.starts_with("QF_")) name.remove_prefix(3);
  if (name.empty()) return false;
  while (!name.empty()) {
    bool found = false;
    for (const std::string_view part : kParts) {
      if (found || !name.starts_with(part)) continue;
      name.remove_prefix(part.size());
      found = true;
    }
    if (!found) return false;
  }
  return true;
}

}  // namespace

const Interpreter::Option Interpreter::kOptions[] = {
    {":print-success", &InterpreterOptions::print_success},
    {":produce-models", &InterpreterOptions::produce_models},
    {":produce-assertions", &InterpreterOptions::produce_assertions},
    {":interactive-mode", &InterpreterOptions::produce_assertions},  // its name before 2.5
    {":produce-assignments", &InterpreterOptions::produce_assignments},
    {":produce-unsat-assumptions", &InterpreterOptions::produce_unsat_assumptions},
    {":global-declarations", &InterpreterOptions::global_declarations},
    {":random-seed", nullptr, &InterpreterOptions::random_seed},
    {":verbosity", nullptr, &InterpreterOptions::verbosity},
    {":produce-unsat-cores", &InterpreterOptions::produce_unsat_cores},
    {":minimize-unsat-cores", &InterpreterOptions::minimize_unsat_cores},
    {":produce-proofs", &InterpreterOptions::produce_proofs},
    {":incremental", &InterpreterOptions::incremental},
    {":timeout", nullptr, &InterpreterOptions::timeout},
    {":reproducible-resource-limit", nullptr, &InterpreterOptions::reproducible_resource_limit},
    {":regular-output-channel", nullptr, nullptr, "stdout"},
    {":diagnostic-output-channel", nullptr, nullptr, "stderr"},
};

const Interpreter::Option* Interpreter::find_option(std::string_view name) {
  for (const Option& option : kOptions) {
    if (option.name == name) return &option;
  }
  return nullptr;
}

/// Any logic of the standard is accepted: what it allows beyond this reader is refused where it is
/// used.
void Interpreter::set_logic(Parser& parser, const Token& command) {
  const Token name = parser.get_tokens().expect_symbol("the name of a logic");
  parser.close_command();
  if (!is_logic(name.text)) {
    parser.fail(name.position, fmt::format("unknown logic '{}'", name.text));
  }
  if (has_logic) parser.fail_state(command.position, "set-logic: the logic is already set");
  has_logic = true;
}

void Interpreter::set_info(Parser& parser, const Token& /*command*/) {
  TokenStream& tokens = parser.get_tokens();
  const Token key = tokens.expect(Token::Kind::keyword, "a keyword");
  const Token value = tokens.peek();
  if (!tokens.at_close()) tokens.skip_expression();
  parser.close_command();
  if (key.text != ":status") return;
  stated_answer.reset();
  for (const Answer answer : {Answer::sat, Answer::unsat, Answer::unknown}) {
    if (value.is_word(answer_text(answer))) stated_answer = answer;
  }
}

void Interpreter::get_info(Parser& parser, const Token& /*command*/) {
  const Token key = parser.get_tokens().expect(Token::Kind::keyword, "a keyword");
  parser.close_command();
  respond(info(parser, key));
}

std::string Interpreter::info(Parser& parser, const Token& key) const {
  if (key.text == ":name") return fmt::format("(:name {})", quoted_string(options.name));
  if (key.text == ":version") return fmt::format("(:version {})", quoted_string(options.version));
  if (key.text == ":authors") return fmt::format("(:authors {})", quoted_string(options.authors));
  if (key.text == ":error-behavior") {
    return fmt::format("(:error-behavior {})",
                       errors == Errors::answered ? "continued-execution" : "immediate-exit");
  }
  if (key.text == ":assertion-stack-levels") {
    return fmt::format("(:assertion-stack-levels {})", assertions.get_level());
  }
  if (key.text == ":all-statistics") {
    return fmt::format("(:assertions {} :check-sat {} :terms {})", assertions.get_size(), checks,
                       mgr.get_term_count());
  }
  if (key.text == ":status") {
    const Answer known = last_answer.value_or(stated_answer.value_or(Answer::unknown));
    return fmt::format("(:status {})", answer_text(known));
  }
  if (key.text == ":reason-unknown") {
    if (last_answer != Answer::unknown) {
      parser.fail_state(key.position, ":reason-unknown: the last answer was not unknown");
    }
    return fmt::format("(:reason-unknown {})", quoted_string(engine.get_reason_unknown()));
  }
  return "unsupported";
}

// Options ---------------------------------------------------------------------------------------

void Interpreter::set_option(Parser& parser, const Token& /*command*/) {
  TokenStream& tokens = parser.get_tokens();
  const Token key = tokens.expect(Token::Kind::keyword, "an option");
  const Option* option = find_option(key.text);
  if (option == nullptr) {
    if (!tokens.at_close()) tokens.skip_expression();
    parser.close_command();
    respond("unsupported");
    return;
  }
  if (option->flag != nullptr) set_flag(parser, key, *option);
  if (option->number != nullptr) set_number(parser, *option);
  if (!option->channel.empty()) set_channel(parser, *option);
}

void Interpreter::set_flag(Parser& parser, const Token& key, const Option& option) {
  TokenStream& tokens = parser.get_tokens();
  const Token value = tokens.next();
  if (!value.is_word("true") && !value.is_word("false")) {
    tokens.fail_expected("true or false", value);
  }
  parser.close_command();
  if (option.flag == &InterpreterOptions::global_declarations && !symbols.is_empty()) {
    parser.fail_state(key.position,
                      ":global-declarations must be set before the first declaration");
  }
  const bool is_on = value.is_word("true");
  // What was asserted before could be in no core.
  if (option.flag == &InterpreterOptions::produce_unsat_cores &&
      is_on != options.produce_unsat_cores && assertions.get_size() != 0) {
    parser.fail_state(key.position, ":produce-unsat-cores must be set before the first assertion");
  }
  options.*option.flag = is_on;
  symbols.set_global(options.global_declarations);
}

void Interpreter::set_number(Parser& parser, const Option& option) {
  const std::uint32_t value = parser.get_tokens().expect_index();
  parser.close_command();
  const bool is_new = options.*option.number != value;
  options.*option.number = value;
  if (is_new && option.number == &InterpreterOptions::random_seed) {
    last_answer.reset();
    engine.set_seed(value);
  }
}

void Interpreter::set_channel(Parser& parser, const Option& option) {
  const Token value = parser.get_tokens().expect(Token::Kind::string, "the name of a channel");
  parser.close_command();
  if (value.text != option.channel) respond("unsupported");
}

void Interpreter::get_option(Parser& parser, const Token& /*command*/) {
  const Token key = parser.get_tokens().expect(Token::Kind::keyword, "an option");
  parser.close_command();
  const Option* option = find_option(key.text);
  if (option == nullptr) {
    respond("unsupported");
  } else if (option->flag != nullptr) {
    respond(options.*option->flag ? "true" : "false");
  } else if (option->number != nullptr) {
    respond(std::to_string(options.*option->number));
  } else {
    respond(quoted_string(option->channel));
  }
}

/// Fails unless the option that allows `command` is set.
void Interpreter::check_flag(const Parser& parser, const Token& command,
                             std::string_view option) const {
  if (options.*find_option(option)->flag) return;
  parser.fail_state(command.position,
                    fmt::format("{}: the option {} is false", command.text, option));
}

}  // namespace vorn::smt2
