// Executes scripts: reads one command after the other, keeps the names and options of the session,
// passes assertions to an engine and prints the answers (SMT-LIB 2.6, chapter 4).
//
// An error ends the script at once, as the standard calls `immediate-exit`: what was printed stays,
// and a ScriptError tells the caller where it was. Names are kept as the user wrote them, because
// the term manager may have to rename what is declared again after a pop.
#ifndef VORN_SMT2_INTERPRETER_H
#define VORN_SMT2_INTERPRETER_H

#include <cstdint>
#include <deque>
#include <optional>
#include <ostream>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "vorn/smt2/engine.h"
#include "vorn/smt2/parser.h"
#include "vorn/smt2/symbol_table.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn::smt2 {

/// How a session presents itself and starts.
struct InterpreterOptions {
  std::string name = "vorn";
  std::string version = "0.1.0";
  std::string authors = "the Vorn developers";
  bool print_success = false;
  bool produce_models = true;
};

/// One session: names, options and assertions last from one script to the next until `(reset)`.
class VORN_EXPORT Interpreter {
 public:
  /// All of these are borrowed; terms are built by `manager`, answers printed on `stream`.
  Interpreter(TermManager& manager, Engine& solver, std::ostream& stream,
              InterpreterOptions session = {});

  /// Runs a script up to its end or to `(exit)`; `file` names it in errors. Throws ScriptError.
  void run(std::string text, const std::string& file);

  /// What the scripts declared and defined.
  const SymbolTable& get_symbols() const { return symbols; }

 private:
  using Handler = void (Interpreter::*)(Parser& parser, const Token& command);
  struct Command {
    std::string_view name;
    Handler handler = nullptr;  // null: known, and refused by name
  };
  struct Flag {
    std::string_view name;
    bool InterpreterOptions::*value;
  };

  static const Command kCommands[];
  static const Flag kFlags[];

  static const Command* find_command(std::string_view name);
  static const Flag* find_flag(std::string_view name);
  bool execute(Parser& parser);
  void respond(std::string_view text);

  // Session (interpreter.cpp)
  void set_logic(Parser& parser, const Token& command);
  void set_info(Parser& parser, const Token& command);
  void get_info(Parser& parser, const Token& command);
  void set_option(Parser& parser, const Token& command);
  void get_option(Parser& parser, const Token& command);
  void echo(Parser& parser, const Token& command);
  void exit(Parser& parser, const Token& command);
  std::string info(Parser& parser, const Token& key) const;

  // Names and assertions (declarations.cpp)
  void declare_const(Parser& parser, const Token& command);
  void declare_fun(Parser& parser, const Token& command);
  void define_const(Parser& parser, const Token& command);
  void define_fun(Parser& parser, const Token& command);
  void define_sort(Parser& parser, const Token& command);
  void assert_formula(Parser& parser, const Token& command);
  void push(Parser& parser, const Token& command);
  void pop(Parser& parser, const Token& command);
  void reset(Parser& parser, const Token& command);
  void reset_assertions(Parser& parser, const Token& command);
  void declare(const Token& name, const DataType* type);
  void define(Parser& parser, std::span<const Parameter> parameters, const Token& name);
  static std::uint32_t read_count(Parser& parser);

  // Answers (answers.cpp)
  void check_sat(Parser& parser, const Token& command);
  void check_sat_assuming(Parser& parser, const Token& command);
  void get_model(Parser& parser, const Token& command);
  void get_value(Parser& parser, const Token& command);
  void get_assertions(Parser& parser, const Token& command);
  void decide(Parser& parser, const Token& command, std::span<const Term* const> assumptions);
  void require_model(Parser& parser, const Token& command) const;

  TermManager& mgr;
  Engine& engine;
  std::ostream& out;
  const InterpreterOptions defaults;

  InterpreterOptions options;
  SymbolTable symbols;
  std::deque<std::string> texts;             // the scripts, for the views of assertions
  std::vector<std::string_view> assertions;  // as the user wrote them
  std::vector<std::size_t> levels;           // number of assertions at each push
  std::optional<Answer> last_answer;         // of the assertions as they stand
  std::uint64_t checks = 0;
  bool exited = false;
  bool answered = false;  // the command has printed its response
};

/// Runs `ask`, a call of the engine; what the engine refuses is an error at `place`.
template <class Ask>
auto ask_engine(const Parser& parser, Position place, const Ask& ask) {
  try {
    return ask();
  } catch (const std::logic_error& error) {
    parser.fail(place, error.what());
  } catch (const std::runtime_error& error) {
    parser.fail(place, error.what());
  }
}

}  // namespace vorn::smt2

#endif
