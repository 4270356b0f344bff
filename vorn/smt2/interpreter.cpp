// The session: reading, dispatch, errors.
#include "vorn/smt2/interpreter.h"

#include <fmt/format.h>

#include <utility>

#include "vorn/smt2/command_reader.h"
#include "vorn/terms/printer.h"

namespace vorn::smt2 {

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
    {"declare-sort", &Interpreter::declare_sort},
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
    {"get-assignment", &Interpreter::get_assignment},
    {"get-unsat-assumptions", &Interpreter::get_unsat_assumptions},

    {"declare-datatype"},
    {"declare-datatypes"},
    {"define-fun-rec"},
    {"define-funs-rec"},
    {"get-proof"},
    {"get-unsat-core"},
};

const Interpreter::Command* Interpreter::find_command(std::string_view name) {
  for (const Command& command : kCommands) {
    if (command.name == name) return &command;
  }
  return nullptr;
}

Interpreter::Interpreter(TermManager& manager, Engine& solver, std::ostream& stream,
                         InterpreterOptions session)
    : mgr(manager),
      engine(solver),
      out(stream),
      defaults(std::move(session)),
      options(defaults),
      dialect(defaults.strict, defaults.warn),
      poll(defaults.termination_test) {}

void Interpreter::run(std::string text, const std::string& file) {
  script = std::make_shared<const std::string>(std::move(text));
  Parser parser(mgr, symbols, *script, file, {}, {&dialect, &poll});
  interactive = false;
  exited = false;
  std::optional<Token> name = parser.open_command();
  if (!name) parser.fail({}, "the script has no commands");
  for (; name; name = exited ? std::nullopt : parser.open_command())
    execute(parser, *name);
}

bool Interpreter::run_interactive(std::istream& in, const std::string& file) {
  CommandReader reader(in);
  bool clean = true;
  interactive = true;
  exited = false;
  while (!exited) {
    std::optional<CommandText> command = reader.next();
    if (!command) break;
    script = std::make_shared<const std::string>(std::move(command->text));
    const SymbolTable::Mark mark = symbols.get_mark();
    try {
      Parser parser(mgr, symbols, *script, file, command->position, {&dialect, &poll});
      if (const std::optional<Token> name = parser.open_command()) execute(parser, *name);
    } catch (const ScriptError& error) {
      // Commands change levels only once nothing can fail any more: what is to be undone are names
      // that were given on the way.
      symbols.retract(mark);
      respond("(error " + quoted_string(error.what()) + ")");
      out.flush();
      clean = false;
    }
  }
  return clean;
}

void Interpreter::execute(Parser& parser, const Token& name) {
  const Command* command = find_command(name.text);
  if (command == nullptr) {
    parser.fail(name.position, fmt::format("unknown command '{}'", name.text));
  }
  if (command->handler == nullptr) {
    parser.fail(name.position, fmt::format("{} is not supported", name.text));
  }
  answered = false;
  const SymbolTable::Mark mark = symbols.get_mark();
  try {
    (this->*command->handler)(parser, name);
  } catch (const ReadingInterrupted&) {
    symbols.retract(mark);  // levels change once a command has been read
    throw;
  }
  if (!answered && options.print_success) out << "success\n";
  out.flush();
}

void Interpreter::respond(std::string_view text) {
  out << text << '\n';
  answered = true;
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

std::string Interpreter::get_state_script() const {
  std::string text;
  for (const SymbolTable::Declaration& d : symbols.get_declarations()) {
    text += fmt::format("(declare-const {} {})\n", d.constant->to_string(),
                        d.constant->get_type()->to_string());
  }
  for (const std::vector<Assertion>* formulas : {&assertions.get_items(), &assumptions}) {
    for (const Assertion& formula : *formulas)
      text += fmt::format("(assert {})\n", formula.term->to_string());
  }
  return text + "(check-sat)\n";
}

}  // namespace vorn::smt2
