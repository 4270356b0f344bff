#include "tools/solve.h"

#include <fmt/format.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "vorn/smt2/error.h"
#include "vorn/smt2/interpreter.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/term_manager.h"

namespace vorn::tools {
namespace {

using Clock = std::chrono::steady_clock;

/// Asks for an end once a point in time has passed.
class Deadline : public TerminationTest {
 public:
  explicit Deadline(double seconds)
      : end(Clock::now() +
            std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds))) {}
  bool terminate() const override { return Clock::now() >= end; }

 private:
  Clock::time_point end;
};

std::string read_all(const std::string& file) {
  if (file == "-") {
    return {std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
  }
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) {
    throw std::runtime_error(fmt::format("{}: error: is a directory", file));
  }
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    throw std::runtime_error(fmt::format("{}: error: cannot read the file: {}", file,
                                         std::generic_category().message(errno)));
  }
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void print_statistics(const std::string& file, const solver::Statistics& s) {
  std::cerr << fmt::format(
      "{}: checks {}, terms {}, conjunctions {}, variables {}, clauses {}, "
      "translation {:.3f} s, search {:.3f} s\n",
      file, s.checks, s.terms, s.aig_nodes, s.variables, s.clauses, s.translation_seconds,
      s.search_seconds);
}

int solve_one(const std::string& file, const SolveOptions& options) {
  const std::string text = read_all(file);
  const std::string name = file == "-" ? "<stdin>" : file;
  Logger logger(&std::cerr);
  std::optional<Deadline> deadline;
  if (options.time_limit) deadline.emplace(*options.time_limit);

  TermManager manager;
  solver::Options solver_options;
  solver_options.encoder = options.encoder;
  solver_options.termination_test = deadline ? &*deadline : nullptr;
  solver_options.logger = options.verbose ? &logger : nullptr;
  solver::Solver engine(manager, solver_options);
  smt2::InterpreterOptions session;
  session.version = VORN_VERSION;
  smt2::Interpreter interpreter(manager, engine, std::cout, session);

  int status = kDone;
  try {
    interpreter.run(text, name);
  } catch (const smt2::ScriptError& error) {
    std::cout.flush();
    std::cerr << error.what() << '\n';
    status = kInputError;
  }
  if (options.statistics) print_statistics(name, engine.get_statistics());
  if (status == kDone && engine.get_statistics().interrupted) status = kLimitReached;
  return status;
}

}  // namespace

int solve(const SolveOptions& options) {
  int status = kDone;
  for (const std::string& file : options.files) {
    int result = kDone;
    try {
      result = solve_one(file, options);
    } catch (const std::bad_alloc&) {
      std::cerr << file << ": error: out of memory\n";
      result = kLimitReached;
    } catch (const std::exception& error) {
      std::cerr << error.what() << '\n';
      result = kInputError;
    }
    std::cout.flush();
    if (status == kDone) status = result;
  }
  return status;
}

}  // namespace vorn::tools
