// The session: reading, dispatch, errors.
#include "vorn/smt2/interpreter.h"

#include <fmt/format.h>

#include <new>
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
    {"get-proof", &Interpreter::answer_unsupported},
    {"get-unsat-core", &Interpreter::get_unsat_core},

    {"declare-datatype"},
    {"declare-datatypes"},
    {"define-fun-rec"},
    {"define-funs-rec"},
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
  errors = Errors::thrown;
  execute_all(std::move(text), file);
}

bool Interpreter::run_script(std::string text, const std::string& file) {
  errors = Errors::answered;
  clean = true;
  try {
    execute_all(std::move(text), file);
  } catch (const LimitError& error) {
    answer_remaining(error);
  } catch (const ScriptError& error) {
    respond_error(error);
  }
  return clean;
}

/// Each check of a script has an answer: those that were not reached have that one.
void Interpreter::answer_remaining(const LimitError& error) {
  limited = true;
  if (options.diagnostics != nullptr) *options.diagnostics << error.what() << '\n';
  const std::uint64_t all = count_checks(*script, error.get_file());
  for (; checks_of_script < all; ++checks_of_script)
    respond(answer_text(Answer::unknown));
  out.flush();
}

void Interpreter::execute_all(std::string text, const std::string& file) {
  script = std::make_shared<const std::string>(std::move(text));
  checks_of_script = 0;
  Parser parser(mgr, symbols, *script, file, {}, {&dialect, &poll});
  exited = false;
  if (!execute_next(parser, file, {})) parser.fail({}, "the script has no commands");
  while (!exited && execute_next(parser, file, {})) {
  }
}

bool Interpreter::run_interactive(std::istream& in, const std::string& file) {
  CommandReader reader(in);
  errors = Errors::answered;
  clean = true;
  exited = false;
  while (!exited) {
    try {
      if (!answer_next(reader, file)) break;
    } catch (const std::bad_alloc&) {
      respond_out_of_memory(file, reader.get_position());
    }
  }
  return clean;
}

/// The response to lack of memory where there is none for an error either.
void Interpreter::respond_out_of_memory(const std::string& file, Position position) {
  out << "(error \"";
  for (const char c : file)
    out << (c == '"' ? "\"\"" : std::string_view(&c, 1));
  out << ':' << position.line << ':' << position.column << ": error: out of memory\")" << std::endl;
  limited = true;
}

/// Executes the next command of a stream; false if there is none.
bool Interpreter::answer_next(CommandReader& reader, const std::string& file) {
  std::optional<CommandText> command = reader.next();
  if (!command) return false;
  try {
    script = std::make_shared<const std::string>(std::move(command->text));
    Parser parser(mgr, symbols, *script, file, command->position, {&dialect, &poll});
    execute_next(parser, file, command->position);
  } catch (const ScriptError& error) {
    respond_error(error);
  }
  return true;
}

/// Reads and executes a command, which starts at `start` or behind it; false if there is none.
/// Whatever ends it early, it has had no effect then: commands change levels only once nothing can
/// fail any more, and what is to be undone are names that were given on the way.
bool Interpreter::execute_next(Parser& parser, const std::string& file, Position start) {
  if (options.before_command) options.before_command();
  const SymbolTable::Mark mark = symbols.get_mark();
  try {
    const std::optional<Token> name = parser.open_command();
    if (!name) return false;
    start = name->position;
    execute(parser, *name);
  } catch (const StateError& error) {
    if (errors == Errors::thrown) throw;
    symbols.retract(mark);
    respond_error(error);
  } catch (const ScriptError&) {
    symbols.retract(mark);
    throw;
  } catch (const Terminated&) {
    symbols.retract(mark);
    throw LimitError(file, start, "the limit of time or memory was reached");
  } catch (const std::bad_alloc&) {
    symbols.retract(mark);
    throw LimitError(file, start, "out of memory");
  }
  return true;
}

/// An error that is owed to unknown or to a limit does not count: that has told so much.
void Interpreter::respond_error(const ScriptError& error) {
  respond("(error " + quoted_string(error.what()) + ")");
  out.flush();
  const auto* state = dynamic_cast<const StateError*>(&error);
  if (dynamic_cast<const LimitError*>(&error) != nullptr) {
    limited = true;
  } else if (state == nullptr || !state->is_owed_to_unknown()) {
    clean = false;
  }
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
  (this->*command->handler)(parser, name);
  if (!answered && options.print_success) out << "success\n";
  out.flush();
}

void Interpreter::respond(std::string_view text) {
  out << text << '\n';
  answered = true;
}

/// What is not supported and changes nothing is no error.
void Interpreter::answer_unsupported(Parser& parser, const Token& /*command*/) {
  parser.close_command();
  respond("unsupported");
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
  for (const SortDefinition* sort : symbols.get_declared_sorts()) {
    text += fmt::format("(declare-sort {} {})\n", quote_symbol(sort->constructor->name),
                        sort->parameters);
  }
  for (const SymbolTable::Declaration& d : symbols.get_declarations()) {
    const Symbol* symbol = d.constant->get_symbol();
    const std::string type = symbol->get_output_type()->to_string();
    if (!symbol->is_function()) {
      text += fmt::format("(declare-const {} {})\n", head_text(symbol), type);
      continue;
    }
    std::string domain;
    for (const DataType* argument : symbol->get_domain())
      domain += (domain.empty() ? "" : " ") + argument->to_string();
    text += fmt::format("(declare-fun {} ({}) {})\n", head_text(symbol), domain, type);
  }
  for (const std::vector<Assertion>* formulas : {&assertions.get_items(), &assumptions}) {
    for (const Assertion& formula : *formulas)
      text += fmt::format("(assert {})\n", formula.term->to_string());
  }
  return text + "(check-sat)\n";
}

}  // namespace vorn::smt2
