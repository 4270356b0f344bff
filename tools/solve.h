// `vorn FILE...`: decide SMT-LIB scripts.
#ifndef TOOLS_SOLVE_H
#define TOOLS_SOLVE_H

#include <optional>
#include <string>
#include <vector>

#include "vorn/solver/solver.h"

namespace vorn::tools {

/// Exit statuses of the command.
enum ExitStatus : int {
  kDone = 0,
  kInputError = 1,
  kUsageError = 2,
  kLimitReached = 3,
  kInternalError = 4,
};

struct SolveOptions {
  std::vector<std::string> files;  // "-" is standard input
  solver::EncoderKind encoder = solver::EncoderKind::ieee;
  std::optional<double> time_limit;    // seconds for each check; more than 0
  std::optional<double> memory_limit;  // megabytes for all; more than 0
  // Of a single file with a single check; empty for nowhere.
  std::string cnf_file;
  std::string proof_file;
  bool local_search = true;
  bool ranges = true;
  bool reals = true;
  bool enumeration = true;
  unsigned threads = 1;
  bool relations = true;
  bool substitution = true;
  solver::AbstractionKind abstraction = solver::AbstractionKind::floats;
  bool rewrite = true;  // formulas over floats, before they are encoded
  bool statistics = false;
  bool verbose = false;
  bool strict = false;  // spellings beyond the standard are errors
};

/// Runs the scripts one after the other, each in a session of its own. Answers and errors of
/// scripts go to standard output; warnings, statistics, progress and other errors to standard
/// error. Returns the gravest exit status, see choose_status. Ends early where standard output
/// cannot be written.
int solve(const SolveOptions& options);

}  // namespace vorn::tools

#endif
