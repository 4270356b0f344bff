#include "tools/solve.h"

#include <fmt/format.h>

#include <unistd.h>

#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "tools/defect.h"
#include "tools/failure.h"
#include "tools/limits.h"
#include "tools/memory.h"
#include "tools/script.h"
#include "vorn/smt2/command_reader.h"
#include "vorn/smt2/interpreter.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/engine.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/output_file.h"

namespace vorn::tools {
namespace {

void print_statistics(const std::string& file, const solver::Statistics& s) {
  std::cerr << fmt::format(
      "{}: checks {}, terms {}, conjunctions {}, variables {}, clauses {}, "
      "models by local search {}, refutations by ranges {}, parts by sums {}, "
      "checks by enumeration {}, assignments {} in {:.3f} s, circuits put off {}, results excluded "
      "{}, circuits made after all {}, translation {:.3f} s, search {:.3f} s\n",
      file, s.checks, s.terms, s.aig_nodes, s.variables, s.clauses, s.tried_models, s.refutations,
      s.convictions, s.enumerations, s.assignments, s.assignment_seconds, s.abstracted,
      s.refinements, s.circuits, s.translation_seconds, s.search_seconds);
}

/// Writes what the session was asked to a file of its own and says so. Returns the exit status.
int report_session(const smt2::Interpreter& interpreter, const std::exception& error) {
  std::string where;
  try {
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    where = (folder / fmt::format("vorn-report-{}.smt2", ::getpid())).string();
    OutputFile file(where, "the report");
    file.get_stream() << "; " << describe_defect(error) << '\n' << interpreter.get_state_script();
    file.commit();
  } catch (const std::system_error& failure) {
    where = fmt::format("({})", failure.what());
  }
  return report_defect(error, "with the script that shows it: " + where);
}

/// Scripts are read as a whole, standard input as it comes.
int run(smt2::Interpreter& interpreter, const std::string& file, std::string text) {
  try {
    const bool clean = file == "-" ? interpreter.run_interactive(std::cin, display_name(file))
                                   : interpreter.run_script(std::move(text), file);
    return clean ? kDone : kInputError;
  } catch (const std::logic_error& error) {
    if (!is_internal(error)) throw;
    return report_session(interpreter, error);
  }
}

solver::Options choose_solver(const SolveOptions& options, const Limits& limits, Logger* logger) {
  solver::Options chosen;
  chosen.encoder = options.encoder;
  chosen.rewrite = options.rewrite;
  chosen.termination_test = &limits;
  chosen.logger = options.verbose ? logger : nullptr;
  chosen.local_search = options.local_search;
  chosen.ranges = options.ranges;
  chosen.reals = options.reals;
  chosen.enumeration = options.enumeration;
  chosen.threads = options.threads;
  chosen.relations = options.relations;
  chosen.substitution = options.substitution;
  chosen.abstraction = options.abstraction;
  chosen.cnf_file = options.cnf_file;
  chosen.proof_file = options.proof_file;
  return chosen;
}

smt2::InterpreterOptions choose_session(const SolveOptions& options, Limits& limits) {
  smt2::InterpreterOptions session;
  session.strict = options.strict;
  // Assumptions are clauses in what such a check leaves.
  session.has_cores = options.cnf_file.empty() && options.proof_file.empty();
  if (options.verbose) {
    session.warn = [](const std::string& warning) { std::cerr << warning << '\n'; };
  }
  session.termination_test = &limits;
  session.diagnostics = &std::cerr;
  session.before_command = [&limits] { limits.start_command(); };
  return session;
}

/// What a script is executed by.
struct Session {
  explicit Session(const SolveOptions& options)
      : limits(options.time_limit),
        engine(manager, choose_solver(options, limits, &logger), limits),
        interpreter(manager, engine, std::cout, choose_session(options, limits)) {
    manager.set_termination_test(&limits);
  }

  Logger logger{&std::cerr};
  Limits limits;
  TermManager manager;
  LimitedSolver engine;
  smt2::Interpreter interpreter;
};

int solve_one(Session& session, const std::string& file, const SolveOptions& options) {
  if (file != "-") session.limits.start_script();
  std::string text = file == "-" ? "" : read_all(file);
  if (!options.cnf_file.empty() || !options.proof_file.empty()) {
    const std::size_t checks = smt2::count_checks(text, file);
    if (checks != 1) {
      throw std::runtime_error(fmt::format(
          "{}: error: --cnf and --proof take a script with one check-sat, this one has {}", file,
          checks));
    }
  }
  const int status = run(session.interpreter, file, std::move(text));
  const solver::Statistics statistics = session.engine.get_statistics();
  if (options.statistics) print_statistics(display_name(file), statistics);
  const bool is_limited = statistics.interrupted || session.interpreter.was_limited();
  return status == kDone && is_limited ? kLimitReached : status;
}

}  // namespace

int solve(const SolveOptions& options) {
  install_interrupt_handler();
  if (options.memory_limit) limit_memory(*options.memory_limit);
  int status = kDone;
  // The last session is not taken down: the end of the process does that in no time.
  static auto& session = *new std::unique_ptr<Session>;
  for (const std::string& file : options.files) {
    int result = kDone;
    session.reset();
    try {
      session = std::make_unique<Session>(options);
      result = solve_one(*session, file, options);
    } catch (const std::exception&) {
      result = report_failure(display_name(file), "with " + file + ".");
    }
    status = choose_status(status, result);
    if (!std::cout) break;  // nobody would get the answers
  }
  return status;
}

}  // namespace vorn::tools
