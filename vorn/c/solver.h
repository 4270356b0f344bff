// The solver, in C: assertions in, answers and models out.
#ifndef VORN_C_SOLVER_H
#define VORN_C_SOLVER_H

#include "vorn/c/terms.h"
#include "vorn/c/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/// What a check answers.
typedef enum vorn_answer VORN_INT {
  VORN_SAT = 0,      // there is a model, which was checked by exact arithmetic
  VORN_UNSAT = 1,    // there is none
  VORN_UNKNOWN = 2,  // time, memory or the theory ended the search
} vorn_answer;

/// Stores a solver without assertions. The manager cannot be destroyed before it.
VORN_EXPORT vorn_status vorn_solver_create(vorn_manager* manager, vorn_solver** result);
/// Destroys a solver.
VORN_EXPORT vorn_status vorn_solver_destroy(vorn_solver* solver);

/// Sets an option by its name; values are texts. VORN_UNKNOWN_NAME for another name,
/// VORN_INVALID_ARGUMENT for another value. All but `seed` and `time-limit` are set before the
/// first assertion, level or check, afterwards VORN_WRONG_STATE.
///
///     encoder          ieee or base: which circuits stand for operations; ieee
///     rewrite          true or false: whether formulas are rewritten first; true
///     local-search     true or false: whether models are looked for by trying values; true
///     ranges           true or false: refutations by what values terms can have; true
///     relations        true or false: theorems stated beside the assertions; true
///     debug-labels     true or false: intermediate values tied to constants; false
///     seed             from 0 to 2^30 - 1: where decisions are left to chance; 0
///     time-limit       seconds that a check may take, with a fraction, 0 for any; 0
///     cnf-file         where the clauses of the one check go, in DIMACS; empty
///     proof-file       where the proof of their refutation goes, in DRAT; empty
VORN_EXPORT vorn_status vorn_solver_set_option(vorn_solver* solver, const char* name,
                                               const char* value);
/// Stores the value of an option, a text of the caller's.
VORN_EXPORT vorn_status vorn_solver_get_option(vorn_solver* solver, const char* name,
                                               char** result);

/// Adds a truth value to the current level. One that is tracked is given to each check as an
/// assumption, so that vorn_solver_get_unsat_core tells whether it was needed.
VORN_EXPORT vorn_status vorn_solver_assert(vorn_solver* solver, vorn_term* formula);
VORN_EXPORT vorn_status vorn_solver_assert_tracked(vorn_solver* solver, vorn_term* formula);
/// Opens a level.
VORN_EXPORT vorn_status vorn_solver_push(vorn_solver* solver);
/// Closes the current level, and its assertions leave. Without one, VORN_WRONG_STATE.
VORN_EXPORT vorn_status vorn_solver_pop(vorn_solver* solver);
/// Drops all assertions and levels.
VORN_EXPORT vorn_status vorn_solver_reset(vorn_solver* solver);
/// Fills a list with the assertions, tracked ones included, in their order.
VORN_EXPORT vorn_status vorn_solver_get_assertions(vorn_solver* solver, vorn_term_list* result);

/// Decides the assertions and the assumptions, truth values that hold for this call only. Time,
/// memory and an interrupt are no error: the answer is unknown then, and the solver can be asked
/// again.
VORN_EXPORT vorn_status vorn_solver_check(vorn_solver* solver, vorn_term* const* assumptions,
                                          size_t count, vorn_answer* result);
/// Ends the check that is running. If none is, the next one ends at once, so that a request that
/// comes a moment early is not lost; vorn_solver_clear_interrupt takes it back, and so does the
/// check that it ends. May be called from any thread and from a signal handler, as long as the
/// solver is there.
VORN_EXPORT vorn_status vorn_solver_interrupt(vorn_solver* solver);
VORN_EXPORT vorn_status vorn_solver_clear_interrupt(vorn_solver* solver);

// What follows asks about the last check, up to the next assertion, level, check or collection.
// Where it had another answer, VORN_WRONG_STATE.

/// After sat, stores the value of any term in the model: a literal, or for an array, writes into an
/// array of one value.
VORN_EXPORT vorn_status vorn_solver_get_value(vorn_solver* solver, vorn_term* term,
                                              vorn_term** result);
/// After sat, fills a list with the points that the model gives to a function, for each its
/// arguments and the value there, and stores the value everywhere else.
VORN_EXPORT vorn_status vorn_solver_get_function(vorn_solver* solver, vorn_function* function,
                                                 vorn_term_list* points, vorn_term** otherwise);
/// After unsat, fills a list with assumptions that, beside the assertions, have no model.
VORN_EXPORT vorn_status vorn_solver_get_unsat_assumptions(vorn_solver* solver,
                                                          vorn_term_list* result);
/// After unsat, fills a list with tracked assertions that, beside the others and the assumptions,
/// have no model.
VORN_EXPORT vorn_status vorn_solver_get_unsat_core(vorn_solver* solver, vorn_term_list* result);
/// After unknown, stores why, a text of the caller's: timeout, interrupted, memout or others.
VORN_EXPORT vorn_status vorn_solver_get_reason_unknown(vorn_solver* solver, char** result);

/// Stores a number of what the solver has done so far, by its name: checks, terms, aig-nodes,
/// variables, clauses, translation-seconds, search-seconds, tried-models, refutations, lemmas.
VORN_EXPORT vorn_status vorn_solver_get_statistic(vorn_solver* solver, const char* name,
                                                  double* result);
/// Stores the name of a statistic, by its position from 0, a constant text. VORN_UNKNOWN_NAME
/// beyond the last.
VORN_EXPORT vorn_status vorn_solver_get_statistic_name(vorn_solver* solver, size_t position,
                                                       const char** result);

#ifdef __cplusplus
}
#endif

#endif
