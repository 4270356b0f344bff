// Executes scripts: reads one command after the other, keeps the names and options of the session,
// passes assertions to an engine and prints the answers (SMT-LIB 2.6, chapter 4).
//
// What cannot be read, or names what is not there, ends a script: what follows may depend on it. A
// command that is only out of place, a StateError, has no effect, and the script goes on. In an
// interactive session every error ends its command only: a slip costs nothing that was said before.
// Names are kept as the user wrote them, because the term manager may have to rename what is
// declared again after a pop.
#ifndef VORN_SMT2_INTERPRETER_H
#define VORN_SMT2_INTERPRETER_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <istream>
#include <memory>
#include <optional>
#include <ostream>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "vorn/smt2/dialect.h"
#include "vorn/smt2/parser.h"
#include "vorn/smt2/symbol_table.h"
#include "vorn/terms/engine.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"
#include "vorn/utils/termination_poll.h"
#include "vorn/utils/termination_test.h"
#include "vorn/utils/trail.h"
#include "vorn/version.h"

namespace vorn::smt2 {

class CommandReader;

/// How a session presents itself and starts.
struct InterpreterOptions {
  /// The answers to get-info.
  std::string name = "vorn";
  std::string version = VORN_VERSION;
  std::string authors = "the Vorn developers";
  /// The options of set-option (SMT-LIB 2.6, section 4.1.7), as they are at the start.
  bool print_success = false;
  bool produce_models = true;
  bool produce_assertions = true;
  bool produce_assignments = true;
  bool produce_unsat_assumptions = true;
  bool produce_unsat_cores = false;
  bool minimize_unsat_cores = false;
  bool global_declarations = false;
  std::uint32_t random_seed = 0;
  std::uint32_t verbosity = 0;
  /// Where warnings go; borrowed, null for nowhere.
  std::ostream* diagnostics = nullptr;
  /// Called before each command is read; may be empty.
  std::function<void()> before_command = {};
  /// Options that scripts set and that have no effect here; their values can be asked for.
  bool produce_proofs = false;
  bool incremental = true;
  std::uint32_t timeout = 0;
  std::uint32_t reproducible_resource_limit = 0;
  /// Whether the engine tells which assumptions it used. Where it does not, there are no cores, and
  /// formulas with names are asserted as all others are.
  bool has_cores = true;
  /// Whether spellings beyond the standard are errors, and who gets the warnings of them otherwise;
  /// may be empty.
  bool strict = false;
  Dialect::Sink warn = nullptr;
  /// Asked now and then while scripts are read; borrowed, may be null.
  const TerminationTest* termination_test = nullptr;
};

/// One session: names, options and assertions last from one script to the next until `(reset)`.
class VORN_EXPORT Interpreter {
 public:
  /// All of these are borrowed; terms are built by `manager`, answers printed on `stream`.
  Interpreter(TermManager& manager, Engine& solver, std::ostream& stream,
              InterpreterOptions session = {});

  /// Runs a script up to its end or to `(exit)`; `file` names it in errors. Throws ScriptError at
  /// the first error, and a LimitError where the term manager's termination test or lack of memory
  /// ends a command other than a check. Where the engine or this library is wrong itself, an
  /// exception for which is_internal holds passes, here and below: the session cannot go on. A
  /// std::system_error of the engine, which could not write a file, passes too.
  void run(std::string text, const std::string& file);
  /// The same with each error printed as the response `(error "...")`. A StateError ends its
  /// command only, a LimitError the script, and each check that would have followed is answered
  /// unknown. Returns whether all went well: no error but those that are owed to the answer
  /// unknown, and no answer that contradicts the `(set-info :status ...)` before it.
  bool run_script(std::string text, const std::string& file);
  /// Executes commands as they come out of a stream, answering each before it reads the next. Every
  /// error is a response, and ends its command only. Returns as run_script does.
  bool run_interactive(std::istream& in, const std::string& file);

  /// Whether a limit has ended a command other than a check.
  bool was_limited() const { return limited; }

  /// A script that declares, asserts and checks what the session did when it last asked for a
  /// decision, with the assertion that was under way: what goes with the report of an internal
  /// error.
  std::string get_state_script() const;

  /// What the scripts declared and defined.
  const SymbolTable& get_symbols() const { return symbols; }

 private:
  /// Some tens of megabytes.
  static constexpr std::uint64_t kLeastGarbageLimit = 500'000;

  using Handler = void (Interpreter::*)(Parser& parser, const Token& command);
  struct Command {
    std::string_view name;
    Handler handler = nullptr;  // null: known, and refused by name
  };
  /// An option with a value of one of three kinds.
  struct Option {
    std::string_view name;
    bool InterpreterOptions::*flag = nullptr;
    std::uint32_t InterpreterOptions::*number = nullptr;
    std::string_view channel = {};  // the only one that there is
  };
  /// What becomes of an error.
  enum class Errors : std::uint8_t { thrown, answered };
  struct Assertion {
    std::string_view text;  // as the user wrote it, within
    std::shared_ptr<const std::string> script;
    const Term* term;
    Position position;
    /// Of one that may be part of a core: the engine is given it as an assumption of each check.
    std::optional<std::string_view> core_name = {};
  };
  /// What refuted the last check, as positions in increasing order.
  struct Refutation {
    std::vector<std::size_t> core;         // among the assertions that have a core_name
    std::vector<std::size_t> assumptions;  // among those of the check
    bool is_minimized = false;             // each part of the core was tried without
  };

  static const Command kCommands[];
  static const Option kOptions[];

  static const Command* find_command(std::string_view name);
  static const Option* find_option(std::string_view name);
  static std::string_view answer_text(Answer answer);
  void execute_all(std::string text, const std::string& file);
  bool answer_next(CommandReader& reader, const std::string& file);
  bool execute_next(Parser& parser, const std::string& file, Position start);
  void execute(Parser& parser, const Token& name);
  void answer_remaining(const LimitError& error);
  void respond(std::string_view text);
  void respond_error(const ScriptError& error);
  void respond_out_of_memory(const std::string& file, Position position);
  void answer_unsupported(Parser& parser, const Token& command);

  // Session (interpreter.cpp)
  void set_logic(Parser& parser, const Token& command);
  void set_info(Parser& parser, const Token& command);
  void get_info(Parser& parser, const Token& command);
  void set_option(Parser& parser, const Token& command);
  void set_flag(Parser& parser, const Token& key, const Option& option);
  void set_number(Parser& parser, const Option& option);
  void set_channel(Parser& parser, const Option& option);
  void get_option(Parser& parser, const Token& command);
  void echo(Parser& parser, const Token& command);
  void exit(Parser& parser, const Token& command);
  std::string info(Parser& parser, const Token& key) const;
  void check_flag(const Parser& parser, const Token& command, std::string_view option) const;

  // Names and assertions (declarations.cpp)
  void declare_const(Parser& parser, const Token& command);
  void declare_fun(Parser& parser, const Token& command);
  void define_const(Parser& parser, const Token& command);
  void define_fun(Parser& parser, const Token& command);
  void declare_sort(Parser& parser, const Token& command);
  void define_sort(Parser& parser, const Token& command);
  void assert_formula(Parser& parser, const Token& command);
  void push(Parser& parser, const Token& command);
  void pop(Parser& parser, const Token& command);
  void reset(Parser& parser, const Token& command);
  void reset_assertions(Parser& parser, const Token& command);
  void declare(const Token& name, std::span<const DataType* const> domain, const DataType* type);
  void define(Parser& parser, std::span<const Parameter> parameters, const Token& name);
  static std::uint32_t read_count(Parser& parser, const Token& command);
  void pop_to(std::size_t level);
  void drop_garbage();

  // Answers (answers.cpp)
  void check_sat(Parser& parser, const Token& command);
  void check_sat_assuming(Parser& parser, const Token& command);
  void get_model(Parser& parser, const Token& command);
  void get_value(Parser& parser, const Token& command);
  void get_assertions(Parser& parser, const Token& command);
  void get_assignment(Parser& parser, const Token& command);
  void decide(Parser& parser, const Token& command);
  void require_answer(const Parser& parser, const Token& command, Answer answer,
                      std::string_view complaint) const;
  void compare_status(Parser& parser, const Token& command, Answer expected);

  // Refutations (cores.cpp)
  void get_unsat_assumptions(Parser& parser, const Token& command);
  void get_unsat_core(Parser& parser, const Token& command);
  std::vector<const Assertion*> list_core_candidates() const;
  Answer check(Parser& parser, Position place, std::span<const Term* const> assumed);
  void refuse_assertion(const Parser& parser);
  const Refutation& find_refutation(const Parser& parser, const Token& command);
  void minimize_core(Parser& parser, const Token& command);

  TermManager& mgr;
  Engine& engine;
  std::ostream& out;
  const InterpreterOptions defaults;

  InterpreterOptions options;
  Dialect dialect;
  TerminationPoll poll;
  SymbolTable symbols;
  std::shared_ptr<const std::string> script;  // what is being executed
  Trail<Assertion> assertions;
  std::vector<Assertion> assumptions;    // of the last check
  std::optional<Answer> last_answer;     // of the assertions as they stand
  std::optional<Refutation> refutation;  // of the last check, once it was asked for
  std::optional<Answer> stated_answer;   // by set-info, to the next check
  std::uint64_t checks = 0;
  std::uint64_t garbage_limit = kLeastGarbageLimit;  // number of terms worth looking through
  bool has_logic = false;
  Errors errors = Errors::thrown;
  bool clean = true;  // of what run_script and run_interactive return
  bool limited = false;
  std::uint64_t checks_of_script = 0;  // so far
  bool exited = false;
  bool answered = false;  // the command has printed its response
};

/// Runs `ask`, a call of the engine; what the engine refuses is an error at `place`. What it does
/// wrong itself is none of the script's, nor is a file that cannot be written.
template <class Ask>
auto ask_engine(const Parser& parser, Position place, const Ask& ask) {
  try {
    return ask();
  } catch (const std::logic_error& error) {
    if (is_internal(error)) throw;
    parser.fail(place, error.what());
  } catch (const std::system_error&) {
    throw;
  } catch (const std::runtime_error& error) {
    parser.fail(place, error.what());
  }
}

}  // namespace vorn::smt2

#endif
