#include "tools/solve.h"

#include <fmt/format.h>

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <span>
#include <stdexcept>
#include <utility>

#include "tools/defect.h"
#include "tools/script.h"
#include "vorn/smt2/error.h"
#include "vorn/smt2/interpreter.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/engine.h"
#include "vorn/terms/term_manager.h"

namespace vorn::tools {
namespace {

using Clock = std::chrono::steady_clock;

/// What the signal handler and a running check tell each other.
volatile std::sig_atomic_t check_is_running = 0;
volatile std::sig_atomic_t interrupted = 0;

/// An interrupt ends the check that is running, or the command if none is or if it is the second.
extern "C" void handle_interrupt(int signal) {
  if (check_is_running != 0 && interrupted == 0) {
    interrupted = 1;
    return;
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

/// Ends a check when its time is over or the user interrupts it.
class Limit : public TerminationTest {
 public:
  explicit Limit(std::optional<double> limit) : seconds(limit) {}

  void start() {
    if (!seconds) return;
    const std::chrono::duration<double> span(*seconds);
    end = Clock::now() + std::chrono::duration_cast<Clock::duration>(span);
  }
  bool terminate() const override { return interrupted != 0 || (seconds && Clock::now() >= end); }

 private:
  std::optional<double> seconds;
  Clock::time_point end;
};

/// The solver with limits on each check.
class LimitedSolver final : public solver::Solver {
 public:
  LimitedSolver(TermManager& manager, const solver::Options& chosen, Limit& check_limit)
      : Solver(manager, chosen), limit(check_limit) {}

  Answer check_sat(std::span<const Term* const> assumed) override {
    const Running running;
    limit.start();
    const Answer answer = Solver::check_sat(assumed);
    was_interrupted = interrupted != 0;
    return answer;
  }
  std::string get_reason_unknown() const override {
    std::string reason = Solver::get_reason_unknown();
    if (reason != "resource limit") return reason;
    return was_interrupted ? "interrupted" : "timeout";
  }

 private:
  struct Running {
    Running() {
      interrupted = 0;
      check_is_running = 1;
    }
    ~Running() { check_is_running = 0; }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
  };

  Limit& limit;
  bool was_interrupted = false;
};

void print_statistics(const std::string& file, const solver::Statistics& s) {
  std::cerr << fmt::format(
      "{}: checks {}, terms {}, conjunctions {}, variables {}, clauses {}, "
      "models by local search {}, translation {:.3f} s, search {:.3f} s\n",
      file, s.checks, s.terms, s.aig_nodes, s.variables, s.clauses, s.tried_models,
      s.translation_seconds, s.search_seconds);
}

/// Writes what the session was asked to a file of its own and says so. Returns the exit status.
int report_session(const smt2::Interpreter& interpreter, const std::exception& error) {
  const std::filesystem::path file =
      std::filesystem::temp_directory_path() / fmt::format("vorn-report-{}.smt2", ::getpid());
  std::ofstream stream(file);
  stream << "; " << describe_defect(error) << '\n' << interpreter.get_state_script();
  stream.close();
  return report_defect(
      error, "with the script that shows it: " +
                 (stream ? file.string() : "(it could not be written to " + file.string() + ")"));
}

/// Scripts are read as a whole, standard input as it comes.
int run(smt2::Interpreter& interpreter, const std::string& file, std::string text) {
  try {
    if (file == "-") return interpreter.run_interactive(std::cin, "<stdin>") ? kDone : kInputError;
    interpreter.run(std::move(text), file);
  } catch (const smt2::ScriptError& error) {
    std::cout.flush();
    std::cerr << error.what() << '\n';
    return kInputError;
  } catch (const std::logic_error& error) {
    if (!is_internal(error)) throw;
    return report_session(interpreter, error);
  }
  return kDone;
}

int solve_one(const std::string& file, const SolveOptions& options) {
  std::string text = file == "-" ? "" : read_all(file);
  if (!options.cnf_file.empty() || !options.proof_file.empty()) {
    const std::size_t checks = count_checks(text, file);
    if (checks != 1) {
      throw std::runtime_error(fmt::format(
          "{}: error: --cnf and --proof take a script with one check-sat, this one has {}", file,
          checks));
    }
  }
  Logger logger(&std::cerr);
  Limit limit(options.time_limit);
  TermManager manager;
  solver::Options solver_options;
  solver_options.encoder = options.encoder;
  solver_options.rewrite = options.rewrite;
  solver_options.termination_test = &limit;
  solver_options.logger = options.verbose ? &logger : nullptr;
  solver_options.local_search = options.local_search;
  solver_options.cnf_file = options.cnf_file;
  solver_options.proof_file = options.proof_file;
  LimitedSolver engine(manager, solver_options, limit);
  smt2::InterpreterOptions session;
  session.strict = options.strict;
  if (options.verbose) {
    session.warn = [](const std::string& warning) { std::cerr << warning << '\n'; };
  }
  smt2::Interpreter interpreter(manager, engine, std::cout, session);

  int status = run(interpreter, file, std::move(text));
  if (options.statistics) {
    print_statistics(display_name(file), engine.get_statistics());
  }
  if (status == kDone && engine.get_statistics().interrupted) status = kLimitReached;
  return status;
}

}  // namespace

int solve(const SolveOptions& options) {
  std::signal(SIGINT, handle_interrupt);
  int status = kDone;
  for (const std::string& file : options.files) {
    int result = kDone;
    try {
      result = solve_one(file, options);
    } catch (const std::bad_alloc&) {
      std::cerr << file << ": error: out of memory\n";
      result = kLimitReached;
    } catch (const std::exception& error) {
      if (is_internal(error)) {
        result = report_defect(error, "with " + file + ".");
      } else {
        std::cerr << error.what() << '\n';
        result = kInputError;
      }
    }
    std::cout.flush();
    if (status == kDone) status = result;
  }
  return status;
}

}  // namespace vorn::tools
