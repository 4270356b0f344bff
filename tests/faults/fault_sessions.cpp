// Runs a session again and again, each time with another allocation that fails, or another question
// of the termination test that throws. The command at which it happens has to end with an error, or
// a check with unknown, without any other effect; sent once more, it and all that follow have to be
// answered as if nothing had been.
#include <sys/wait.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <istream>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/faults/conversation.h"
#include "tests/faults/fault.h"
#include "vorn/smt2/interpreter.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/term_manager.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace vorn::faults {
namespace {

/// What is tried: a kind of fault, and what it is tried on.
struct Row {
  const char* name;
  bool is_memory;
  bool local_search;
  bool rewrite;
  bool collecting;  // whether terms are dropped before each check, and not only where they are many
  solver::EncoderKind encoder = solver::EncoderKind::ieee;
};

constexpr Row kRows[] = {
    {"memory", true, true, true, false},
    {"memory-circuits", true, false, true, true},
    {"questions", false, true, true, false},
    {"questions-circuits", false, false, false, false},
};

/// Throws at the question that the fault says.
class Questions final : public TerminationTest {
 public:
  bool terminate() const override {
    if (fault.strikes()) throw std::runtime_error("stop");
    return false;
  }
  mutable Fault fault;
};

std::vector<std::string> read_commands(const std::string& file) {
  std::ifstream in(file);
  std::vector<std::string> commands;
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with('(')) commands.push_back(line);
  }
  if (commands.empty()) throw std::runtime_error("no commands in " + file);
  return commands;
}

/// One session. Places of the fault that are chosen fail in children, which end here; null: none.
Answers run_session(const Row& row, const std::vector<std::string>& commands,
                    const Answers& expected, const Choice* places, Fault& fault,
                    const Questions& questions) {
  Answers answers;
  {
    TermManager mgr;
    solver::Options options;
    options.local_search = row.local_search;
    options.rewrite = row.rewrite;
    options.encoder = row.encoder;
    options.termination_test = &questions;
    solver::Solver solver(mgr, options);
    Printed printed(fault);
    std::ostream out(&printed);
    const smt2::Interpreter* session = nullptr;
    Conversation conversation(fault, commands, expected,
                              row.is_memory ? "error: out of memory" : "error: stop", printed, [&] {
                                return std::to_string(session->get_symbols().get_level()) +
                                       session->get_state_script();
                              });
    smt2::InterpreterOptions session_options;
    session_options.print_success = true;
    session_options.before_command = [&] {
      if (!row.collecting || conversation.get_command() != "(check-sat)") return;
      try {
        std::vector<const Term*> kept;
        session->get_symbols().append_terms(&kept);
        solver.collect_garbage(kept);
      } catch (const std::bad_alloc&) {
        // As in an interpreter: the garbage stays for another time.
      }
    };
    smt2::Interpreter interpreter(mgr, solver, out, session_options);
    session = &interpreter;
    std::istream in(&conversation);
    if (places != nullptr) fault.start(*places);
    interpreter.run_interactive(in, "s");
    fault.stop();
    answers = conversation.get_answers();
  }
  if (!fault.has_struck()) return answers;
#if defined(__SANITIZE_ADDRESS__)
  if (__lsan_do_recoverable_leak_check() != 0) _exit(EXIT_FAILURE);
#endif
  _exit(answers.size() == commands.size() ? EXIT_SUCCESS : EXIT_FAILURE);
}

/// The answers of a session that nothing disturbs. It runs in a process of its own, so that what is
/// made once in a process is made in the one that is tried.
Answers record(const std::function<Answers()>& run) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("no process");
  if (child == 0) {
    std::FILE* out = fdopen(ends[1], "w");
    for (const std::string& answer : run())
      std::fwrite(answer.c_str(), 1, answer.size() + 1, out);
    std::fclose(out);
    _exit(EXIT_SUCCESS);
  }
  close(ends[1]);
  std::FILE* in = fdopen(ends[0], "r");
  Answers answers;
  std::string answer;
  for (int c = std::fgetc(in); c != EOF; c = std::fgetc(in)) {
    if (c == 0) {
      answers.push_back(std::move(answer));
      answer.clear();
    } else {
      answer.push_back(static_cast<char>(c));
    }
  }
  std::fclose(in);
  int status = 0;
  waitpid(child, &status, 0);
  if (status != 0) throw std::runtime_error("the undisturbed session failed");
  return answers;
}

/// Whether all went well.
bool try_row(const Row& row, const std::vector<std::string>& commands, const Choice& places,
             bool shows) {
  Questions questions;
  Fault& fault = row.is_memory ? get_memory_fault() : questions.fault;
  const Answers expected =
      record([&] { return run_session(row, commands, {}, nullptr, fault, questions); });
  if (shows) {
    for (std::size_t i = 0; i < commands.size(); ++i)
      std::printf("%s\n    %s\n", commands[i].c_str(), expected[i].c_str());
  }
  run_session(row, commands, expected, &places, fault, questions);
  std::printf("%s: %llu places, %llu failed, %llu badly\n", row.name,
              static_cast<unsigned long long>(fault.get_count()),
              static_cast<unsigned long long>(fault.get_tried()),
              static_cast<unsigned long long>(fault.get_bad()));
  std::fflush(stdout);
  return fault.get_bad() == 0 && fault.get_tried() > 0;
}

int run(int argc, char** argv) {
  CLI::App app("Sessions in which something fails");
  std::string file;
  std::string only;
  Choice places;
  bool shows = false;
  app.add_option("FILE", file, "commands, one a line")->required();
  app.add_option("--row", only, "one kind of session instead of all");
  app.add_option("--first", places.first, "the first place that fails");
  app.add_option("--last", places.last, "the last one");
  app.add_option("--every", places.every, "from one to the next");
  app.add_flag("--lasting", places.is_lasting, "all that follow fail too, to the command's end");
  app.add_flag("--show", shows, "print the answers of the undisturbed session");
  CLI11_PARSE(app, argc, argv);
  const std::vector<std::string> commands = read_commands(file);
  bool is_good = true;
  for (const Row& row : kRows) {
    if (only.empty() || only == row.name) is_good &= try_row(row, commands, places, shows);
  }
  return is_good ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace vorn::faults

int main(int argc, char** argv) {
  vorn::faults::guard_numbers();
  try {
    return vorn::faults::run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "error: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
