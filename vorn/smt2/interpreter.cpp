// The session: dispatch, options and information.
#include "vorn/smt2/interpreter.h"

#include <fmt/format.h>

#include <utility>

namespace vorn::smt2 {
namespace {

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text)
    result += c == '"' ? "\"\"" : std::string(1, c);
  return result + "\"";
}

}  // namespace

const Interpreter::Command Interpreter::kCommands[] = {
    {"set-logic", &Interpreter::set_logic},
    {"set-info", &Interpreter::set_info},
    {"get-info", &Interpreter::get_info},
    {"set-option", &Interpreter::set_option},
    {"get-option", &Interpreter::get_option},
    {"echo", &Interpreter::echo},
    {"exit", &Interpreter::exit},
    {"declare-const", &Interpreter::declare_const},
    {"declare-fun", &Interpreter::declare_fun},
    {"define-const", &Interpreter::define_const},
    {"define-fun", &Interpreter::define_fun},
    {"define-sort", &Interpreter::define_sort},
    {"assert", &Interpreter::assert_formula},
    {"push", &Interpreter::push},
    {"pop", &Interpreter::pop},
    {"reset", &Interpreter::reset},
    {"reset-assertions", &Interpreter::reset_assertions},
    {"check-sat", &Interpreter::check_sat},
    {"check-sat-assuming", &Interpreter::check_sat_assuming},
    {"get-model", &Interpreter::get_model},
    {"get-value", &Interpreter::get_value},
    {"get-assertions", &Interpreter::get_assertions},

    {"declare-sort"},
    {"declare-datatype"},
    {"declare-datatypes"},
    {"define-fun-rec"},
    {"define-funs-rec"},
    {"get-assignment"},
    {"get-proof"},
    {"get-unsat-assumptions"},
    {"get-unsat-core"},
};

const Interpreter::Flag Interpreter::kFlags[] = {
    {":print-success", &InterpreterOptions::print_success},
    {":produce-models", &InterpreterOptions::produce_models},
};

const Interpreter::Command* Interpreter::find_command(std::string_view name) {
  for (const Command& command : kCommands) {
    if (command.name == name) return &command;
  }
  return nullptr;
}

const Interpreter::Flag* Interpreter::find_flag(std::string_view name) {
  for (const Flag& flag : kFlags) {
    if (flag.name == name) return &flag;
  }
  return nullptr;
}

Interpreter::Interpreter(TermManager& manager, Engine& solver, std::ostream& stream,
                         InterpreterOptions session)
    : mgr(manager), engine(solver), out(stream), defaults(std::move(session)), options(defaults) {}

void Interpreter::run(std::string text, const std::string& file) {
  texts.push_back(std::move(text));
  Parser parser(mgr, symbols, texts.back(), file);
  exited = false;
  if (!execute(parser)) parser.fail({}, "the script has no commands");
  while (!exited && execute(parser)) {
  }
}

/// Executes the next command; false when there is none.
bool Interpreter::execute(Parser& parser) {
  const std::optional<Token> name = parser.open_command();
  if (!name) return false;
  const Command* command = find_command(name->text);
  if (command == nullptr) {
    parser.fail(name->position, fmt::format("unknown command '{}'", name->text));
  }
  if (command->handler == nullptr) {
    parser.fail(name->position, fmt::format("{} is not supported", name->text));
  }
  answered = false;
  (this->*command->handler)(parser, *name);
  if (!answered && options.print_success) out << "success\n";
  out.flush();
  return true;
}

void Interpreter::respond(std::string_view text) {
  out << text << '\n';
  answered = true;
}

// Information -----------------------------------------------------------------------------------

/// Any logic is accepted: what it allows beyond this reader is refused where it is used.
void Interpreter::set_logic(Parser& parser, const Token& /*command*/) {
  parser.get_tokens().expect_symbol("the name of a logic");
  parser.close_command();
}

void Interpreter::set_info(Parser& parser, const Token& /*command*/) {
  TokenStream& tokens = parser.get_tokens();
  tokens.expect(Token::Kind::keyword, "a keyword");
  if (!tokens.at_close()) tokens.skip_expression();
  parser.close_command();
}

void Interpreter::get_info(Parser& parser, const Token& /*command*/) {
  const Token key = parser.get_tokens().expect(Token::Kind::keyword, "a keyword");
  parser.close_command();
  respond(info(parser, key));
}

std::string Interpreter::info(Parser& parser, const Token& key) const {
  if (key.text == ":name") return fmt::format("(:name {})", quoted(options.name));
  if (key.text == ":version") return fmt::format("(:version {})", quoted(options.version));
  if (key.text == ":authors") return fmt::format("(:authors {})", quoted(options.authors));
  if (key.text == ":error-behavior") return "(:error-behavior immediate-exit)";
  if (key.text == ":assertion-stack-levels") {
    return fmt::format("(:assertion-stack-levels {})", levels.size());
  }
  if (key.text == ":all-statistics") {
    return fmt::format("(:assertions {} :check-sat {} :terms {})", assertions.size(), checks,
                       mgr.get_term_count());
  }
  if (key.text == ":reason-unknown") {
    if (last_answer != Answer::unknown) {
      parser.fail(key.position, ":reason-unknown: the last answer was not unknown");
    }
    return fmt::format("(:reason-unknown {})", quoted(engine.get_reason_unknown()));
  }
  return "unsupported";
}

// Options ---------------------------------------------------------------------------------------

void Interpreter::set_option(Parser& parser, const Token& /*command*/) {
  TokenStream& tokens = parser.get_tokens();
  const Token key = tokens.expect(Token::Kind::keyword, "an option");
  const Flag* flag = find_flag(key.text);
  if (flag == nullptr) {
    if (!tokens.at_close()) tokens.skip_expression();
    parser.close_command();
    respond("unsupported");
    return;
  }
  const Token value = tokens.next();
  if (!value.is_word("true") && !value.is_word("false")) {
    tokens.fail_expected("true or false", value);
  }
  parser.close_command();
  options.*flag->value = value.is_word("true");
}

void Interpreter::get_option(Parser& parser, const Token& /*command*/) {
  const Token key = parser.get_tokens().expect(Token::Kind::keyword, "an option");
  parser.close_command();
  const Flag* flag = find_flag(key.text);
  if (flag == nullptr) {
    respond("unsupported");
  } else {
    respond(options.*flag->value ? "true" : "false");
  }
}

void Interpreter::echo(Parser& parser, const Token& /*command*/) {
  const Token text = parser.get_tokens().expect(Token::Kind::string, "a string");
  parser.close_command();
  respond(text.raw);
}

void Interpreter::exit(Parser& parser, const Token& /*command*/) {
  parser.close_command();
  exited = true;
}

}  // namespace vorn::smt2
