// Scripts as the commands of this folder read them: as a whole, or up to the first check.
#ifndef TOOLS_SCRIPT_H
#define TOOLS_SCRIPT_H

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "vorn/smt2/symbol_table.h"
#include "vorn/solver/encoding.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/engine.h"
#include "vorn/terms/term_manager.h"

namespace vorn::tools {

/// How messages name a file: standard input is "-".
std::string display_name(const std::string& file);

/// The text of a file, or all of standard input for "-". Throws std::runtime_error.
std::string read_all(const std::string& file);

/// What a script asks first: the assertions and assumptions that are in force at its first check,
/// translated by `engine`, and what is declared there.
struct FirstCheck {
  std::unique_ptr<solver::Solver> engine;
  solver::Encoding encoding;
  smt2::SymbolTable symbols;
  std::vector<smt2::SymbolTable::Declaration> constants;  // that have bits
  std::optional<Answer> answer;                           // where it was decided

  /// Whether nothing else is declared: no array, function or element of a sort.
  bool has_bits_only() const { return constants.size() == symbols.get_declarations().size(); }
};

/// How a script is read.
struct ReadingOptions {
  bool strict = false;  // spellings beyond the standard are errors
  bool decide = false;  // the check is decided
  solver::Theories theories = solver::Theories::open;
};

/// Reads a script up to its first check. Throws smt2::ScriptError, and std::runtime_error where
/// there is no check.
FirstCheck read_first_check(TermManager& manager, const std::string& text, const std::string& file,
                            const solver::Options& options, const ReadingOptions& reading = {});

}  // namespace vorn::tools

#endif
