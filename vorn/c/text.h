// SMT-LIB in and out, in C.
#ifndef VORN_C_TEXT_H
#define VORN_C_TEXT_H

#include "vorn/c/solver.h"
#include "vorn/c/sorts.h"
#include "vorn/c/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Stores the term that a text spells. The names in it are those declared with the manager; what
/// the text names by `:named` is declared from then on. VORN_SCRIPT_ERROR where it is wrong, with
/// line and column in the message.
VORN_EXPORT vorn_status vorn_read_term(vorn_manager* manager, const char* text, vorn_term** result);
/// Stores the sort that a text spells, likewise.
VORN_EXPORT vorn_status vorn_read_sort(vorn_manager* manager, const char* text,
                                       const vorn_sort** result);
/// Stores a script that declares what truth values are made of and asserts them, without set-logic
/// and check-sat: a text of the caller's.
VORN_EXPORT vorn_status vorn_write_script(vorn_manager* manager, vorn_term* const* assertions,
                                          size_t count, char** result);
/// Runs a whole script as the command does, with terms and a solver of its own, which has the
/// options of `solver`, time limit and interrupts included; what that one has asserted has no part
/// in it. Stores what the script prints, errors included, a text of the caller's, and whether it
/// went well: without errors and without answers that its set-info contradicts.
VORN_EXPORT vorn_status vorn_run_script(vorn_solver* solver, const char* text, char** output,
                                        bool* went_well);

#ifdef __cplusplus
}
#endif

#endif
