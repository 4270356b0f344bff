// `vorn lift MAP SOLUTION`: the answer of a SAT solver as an answer to the script.
#ifndef TOOLS_LIFT_H
#define TOOLS_LIFT_H

#include <string>

namespace vorn::tools {

struct LiftOptions {
  std::string map;       // DIMACS, or its comments
  std::string solution;  // "-" is standard input
  std::string script;    // to check the model with; empty: no check
};

/// Prints the answer and, after sat, the model. Returns the exit status.
int lift(const LiftOptions& options);

}  // namespace vorn::tools

#endif
