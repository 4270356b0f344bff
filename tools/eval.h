// `vorn eval`: evaluate operations on bit patterns, one a line.
#ifndef TOOLS_EVAL_H
#define TOOLS_EVAL_H

#include <istream>
#include <ostream>

#include "vorn/solver/solver.h"

namespace vorn::tools {

/// Answers each line of `in` with one line on `out`: the result by the circuits of that encoder, or
/// "error: " and the reason. A defect of the program ends that. Returns the exit status, which is
/// that of a limit where a line found no room.
int evaluate_lines(std::istream& in, std::ostream& out, solver::EncoderKind encoder);

}  // namespace vorn::tools

#endif
