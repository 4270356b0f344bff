// Instances of defined functions.
#ifndef VORN_SMT2_SUBSTITUTION_H
#define VORN_SMT2_SUBSTITUTION_H

#include <span>

#include "vorn/smt2/symbol_table.h"
#include "vorn/terms/term_manager.h"

namespace vorn::smt2 {

/// The body of `function` with `args` in place of its parameters. The arguments have the sorts of
/// the parameters; they are not looked into, so a tower of applications costs one pass over a body
/// for each.
const Term* instantiate(TermManager& mgr, const Function& function,
                        std::span<const Term* const> args);

}  // namespace vorn::smt2

#endif
