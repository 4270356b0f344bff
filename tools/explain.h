// `vorn explain`: what the circuits of floating-point operations compute, value by value.
#ifndef TOOLS_EXPLAIN_H
#define TOOLS_EXPLAIN_H

#include <string>
#include <vector>

#include "vorn/solver/solver.h"

namespace vorn::tools {

struct ExplainOptions {
  /// An operation as in a line of `vorn eval`, or one script; "-" is standard input.
  std::vector<std::string> words;
  solver::EncoderKind encoder = solver::EncoderKind::ieee;
  bool strict = false;  // spellings of a script beyond the standard are errors
  bool json = false;
};

/// Prints the tables. Returns the exit status.
int explain(const ExplainOptions& options);

}  // namespace vorn::tools

#endif
