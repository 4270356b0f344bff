// What all of the C interface speaks of: handles, statuses, lists, and who owns what.
//
// Handles are pointers to what the library keeps. A manager owns whatever is made with it. Terms
// and functions are counted: each call that gives one to its caller gives a reference, which the
// caller hands back by the release function of that kind or leaves to the manager. Terms that no
// handle, solver, encoder or declared name needs are dropped now and then, so a program that
// releases what it has done with stays small however many terms it makes.
//
// Every function returns a status. Nothing throws and nothing ends the process, with one exception:
// GMP does where it gets no memory, unless vorn_catch_gmp_memory has been called. A null handle, a
// handle of another manager and one that was released or destroyed are errors. The last is told as
// long as the manager is there and the handle's memory has not been given to another one, which it
// is after a thousand others at the earliest. What is no handle at all, and a manager that was
// destroyed, cannot be told.
//
// Results are written through pointers, which must not be null. Where a call fails, pointers
// among the results are null, lists are empty and other results are as they were.
//
// One thread at a time for a manager and all that was made with it; what may be called from another
// thread says so. Managers share nothing.
#ifndef VORN_C_TYPES_H
#define VORN_C_TYPES_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#include "vorn/utils/export.h"

// In C an enumeration may have any number, which is checked; in C++ only one that is of this type.
#ifdef __cplusplus
#define VORN_INT : int
#else
#define VORN_INT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/// Owns sorts, terms, functions, declared names, solvers and encoders.
typedef struct vorn_manager vorn_manager;
/// A sort. Sorts live as long as their manager and are not counted; equal sorts are one handle.
typedef struct vorn_sort vorn_sort;
/// A term, counted. Terms are shared: of equal terms of a manager there is one handle.
typedef struct vorn_term vorn_term;
/// An uninterpreted function of one or more arguments, counted.
typedef struct vorn_function vorn_function;
/// Decides assertions.
typedef struct vorn_solver vorn_solver;
/// Translates floating-point terms into terms of bit-vectors.
typedef struct vorn_encoder vorn_encoder;

/// What has become of a call. The numbers stay.
typedef enum vorn_status VORN_INT {
  VORN_OK = 0,                // all went well
  VORN_NULL_POINTER = 1,      // a handle, text or place for a result is missing
  VORN_RELEASED_HANDLE = 2,   // a handle of what was released or destroyed
  VORN_FOREIGN_HANDLE = 3,    // a handle of another manager
  VORN_INVALID_ARGUMENT = 4,  // a sort, width, count, number or text that does not fit
  VORN_UNKNOWN_NAME = 5,      // no option, statistic, operation or symbol has the name
  VORN_WRONG_STATE = 6,       // right at another time: no model is there, no level is open
  VORN_SCRIPT_ERROR = 7,      // a text in SMT-LIB that is wrong; the message tells where
  VORN_LIMIT_REACHED = 8,     // a number or a graph would be too large
  VORN_INTERRUPTED = 9,       // the call was told to stop
  VORN_OUT_OF_MEMORY = 10,    // an allocation failed
  VORN_FILE_ERROR = 11,       // a file cannot be written
  VORN_INTERNAL_ERROR = 12,   // a defect of the library; destroy what was at work
} vorn_status;

/// Terms. A list that a call has filled is the caller's, each term in it a reference;
/// vorn_release_list hands all of it back.
typedef struct vorn_term_list {
  vorn_term** items;  // null without any
  size_t count;       // of terms
} vorn_term_list;

/// What a status says, in a few words; of a number that is none, "no status". The text is constant.
VORN_EXPORT const char* vorn_status_text(vorn_status status);
/// What was wrong with the last call that was given this manager, or anything made with it: a
/// sentence that names the function, the operation and the sorts or widths. Empty where that call
/// went well. The text belongs to the manager and lasts until the next call. Of a null pointer, a
/// sentence that says so.
VORN_EXPORT const char* vorn_last_error(const vorn_manager* manager);
/// The version of the library, "MAJOR.MINOR.PATCH". The text is constant.
VORN_EXPORT const char* vorn_version(void);

/// Stores a manager without terms. With `rewrite`, which is the usual, what is built is simplified:
/// operations on literals are literals. Without, a term has exactly the shape that was asked for.
VORN_EXPORT vorn_status vorn_manager_create(bool rewrite, vorn_manager** result);
/// Destroys the manager with its sorts, terms and functions, released or not. Refused with
/// VORN_WRONG_STATE while a solver or an encoder of it is there: nothing has changed then.
VORN_EXPORT vorn_status vorn_manager_destroy(vorn_manager* manager);
/// Drops at once what is otherwise dropped now and then: all terms that no handle, declared name,
/// assertion or encoder needs. Models and refutations of the manager's solvers are gone after that.
/// What is dropped by itself spares them: it happens while terms are made or asserted, once there
/// are half a million terms, and only where no solver has an answer of which one may still ask.
VORN_EXPORT vorn_status vorn_manager_collect(vorn_manager* manager);
/// Stores the number of terms that there are, those included that are still to be dropped.
VORN_EXPORT vorn_status vorn_manager_count_terms(vorn_manager* manager, uint64_t* result);
/// Tells the manager to stop what it is building, which ends the call that is at work, or the next
/// one with much to do, with VORN_INTERRUPTED. Checks have vorn_solver_interrupt. May be called
/// from any thread and from a signal handler, as long as the manager is there.
VORN_EXPORT vorn_status vorn_manager_interrupt(vorn_manager* manager);

/// Hands back a text that a call has stored. Null is none.
VORN_EXPORT void vorn_free_string(char* text);
/// Hands back the references and the memory of a list, which is empty then. An empty list is fine.
VORN_EXPORT vorn_status vorn_release_list(vorn_manager* manager, vorn_term_list* list);

/// Makes GMP, with which large numbers are computed, report lack of memory in a way that calls
/// can answer with VORN_OUT_OF_MEMORY; otherwise GMP ends the process. It changes GMP's allocation
/// functions for the whole process, so it is for the owner of `main`, who calls it before the first
/// number is made and before there are other threads.
VORN_EXPORT void vorn_catch_gmp_memory(void);

#ifdef __cplusplus
}
#endif

#endif
