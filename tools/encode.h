// `vorn encode FILE`: a script as a formula for other solvers.
#ifndef TOOLS_ENCODE_H
#define TOOLS_ENCODE_H

#include <cstdint>
#include <string>

#include "vorn/solver/solver.h"

namespace vorn::tools {

struct EncodeOptions {
  enum class Target : std::uint8_t { smt2, dimacs, aiger, dot };

  std::string file;       // "-" is standard input
  std::string operation;  // in the place of a script; for dot
  Target target = Target::smt2;
  std::string output;  // empty: standard output
  solver::EncoderKind encoder = solver::EncoderKind::ieee;
  bool keep_arrays = false;  // arrays and functions stay, for smt2
  bool strict = false;       // spellings of a script beyond the standard are errors
};

/// Writes what the first check of the script decides. Returns the exit status.
int encode(const EncodeOptions& options);

}  // namespace vorn::tools

#endif
