// Circuits as pictures, in the language of Graphviz.
#ifndef TOOLS_DOT_H
#define TOOLS_DOT_H

#include <ostream>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vorn/fp/labels.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn::tools {

/// What is to be drawn: the terms below `outputs` and below what is tied or defined.
struct Picture {
  std::vector<std::pair<std::string, const Term*>> outputs;
  std::vector<fp::Tie> ties;
  /// Clauses "not this case, or that value" that define fresh constants.
  struct Case {
    const Term* constant;
    const Term* other_case;
    const Term* value;
  };
  std::vector<Case> cases;
  std::unordered_map<const Term*, std::string> names;  // of inputs
};

/// Sorts constraints beside an encoding: ties, cases, and what is merely asserted, which becomes an
/// output.
void add_constraints(Picture& picture, TermManager& manager,
                     std::span<const Term* const> constraints);

/// Writes a directed graph: a node for each operation, labelled edges for the values that have
/// names, a cluster for each stage.
void write_dot(std::ostream& out, const Picture& picture);

}  // namespace vorn::tools

#endif
