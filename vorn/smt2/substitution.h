// Instances of defined functions.
#ifndef VORN_SMT2_SUBSTITUTION_H
#define VORN_SMT2_SUBSTITUTION_H

#include <span>

#include "vorn/smt2/instances.h"
#include "vorn/smt2/symbol_table.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/termination_poll.h"

namespace vorn::smt2 {

/// The body of `function`, which has parameters, with `args` in their place. The arguments have the
/// sorts of the parameters; they are not looked into, so a tower of applications costs one pass
/// over what depends on the parameters for each. Applications that the cache knows cost a lookup.
/// Throws Terminated where the poll, which may be null, says so.
const Term* instantiate(TermManager& mgr, const Function& function,
                        std::span<const Term* const> args, InstanceCache& cache,
                        TerminationPoll* poll);

}  // namespace vorn::smt2

#endif
