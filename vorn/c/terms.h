// Terms, in C: names, operations of any kind, references, and what a term is made of.
#ifndef VORN_C_TERMS_H
#define VORN_C_TERMS_H

#include "vorn/c/kinds.h"
#include "vorn/c/sorts.h"
#include "vorn/c/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Takes another reference to a term or function.
VORN_EXPORT vorn_status vorn_term_retain(vorn_manager* manager, vorn_term* term);
VORN_EXPORT vorn_status vorn_function_retain(vorn_manager* manager, vorn_function* function);
/// Hands back a reference. With the last one the handle is of no more use; the term or function
/// stays where others need it.
VORN_EXPORT vorn_status vorn_term_release(vorn_manager* manager, vorn_term* term);
VORN_EXPORT vorn_status vorn_function_release(vorn_manager* manager, vorn_function* function);

// Names ---------------------------------------------------------------------------------------

/// Declares a constant, or a function with `count` arguments, at least 1, and stores it. Texts that
/// are read know it by its name, and it stays until its name leaves, held or not. A name that is
/// declared already, or is an operation's, is VORN_INVALID_ARGUMENT, and so is one with a bar or a
/// backslash. While a former constant of that name is in use, the new one prints with a suffix.
VORN_EXPORT vorn_status vorn_declare_constant(vorn_manager* manager, const char* name,
                                              const vorn_sort* sort, vorn_term** result);
VORN_EXPORT vorn_status vorn_declare_function(vorn_manager* manager, const char* name,
                                              const vorn_sort* const* domain, size_t count,
                                              const vorn_sort* range, vorn_function** result);
/// Stores a constant that no text knows, named `prefix` or, if that is taken, with a suffix.
VORN_EXPORT vorn_status vorn_make_fresh_constant(vorn_manager* manager, const char* prefix,
                                                 const vorn_sort* sort, vorn_term** result);
/// Stores the constant, or the function, that is declared under a name.
VORN_EXPORT vorn_status vorn_find_constant(vorn_manager* manager, const char* name,
                                           vorn_term** result);
VORN_EXPORT vorn_status vorn_find_function(vorn_manager* manager, const char* name,
                                           vorn_function** result);
/// Opens a level of names: what is declared from now on leaves with the next pop.
VORN_EXPORT vorn_status vorn_push_names(vorn_manager* manager);
/// Closes a level of names. Without one, VORN_WRONG_STATE.
VORN_EXPORT vorn_status vorn_pop_names(vorn_manager* manager);

// Construction --------------------------------------------------------------------------------

/// Stores an operation of any kind on its indices and arguments, either of which may be null for
/// none. Indices are those of the name in SMT-LIB: msb and lsb of an extraction, the width of a
/// conversion to an integer, eb and sb of a format. Binary operations that SMT-LIB takes as
/// associative, chainable or pairwise take more arguments. A sort or width that does not fit is
/// VORN_INVALID_ARGUMENT.
VORN_EXPORT vorn_status vorn_make(vorn_manager* manager, vorn_kind kind, const size_t* indices,
                                  size_t index_count, vorn_term* const* arguments, size_t count,
                                  vorn_term** result);
/// Stores the array of sort `sort` with `element` at every index.
VORN_EXPORT vorn_status vorn_make_const_array(vorn_manager* manager, const vorn_sort* sort,
                                              vorn_term* element, vorn_term** result);
/// Stores a function applied to as many arguments as it has.
VORN_EXPORT vorn_status vorn_apply(vorn_manager* manager, vorn_function* function,
                                   vorn_term* const* arguments, size_t count, vorn_term** result);

// Inspection ----------------------------------------------------------------------------------

/// Stores the kind of a term: VORN_LEAF for what is no operation.
VORN_EXPORT vorn_status vorn_term_get_kind(vorn_manager* manager, vorn_term* term,
                                           vorn_kind* result);
/// Stores the sort of a term.
VORN_EXPORT vorn_status vorn_term_get_sort(vorn_manager* manager, vorn_term* term,
                                           const vorn_sort** result);
/// Stores how many arguments a term has.
VORN_EXPORT vorn_status vorn_term_count_arguments(vorn_manager* manager, vorn_term* term,
                                                  size_t* result);
/// Stores an argument, by its position from 0.
VORN_EXPORT vorn_status vorn_term_get_argument(vorn_manager* manager, vorn_term* term,
                                               size_t position, vorn_term** result);
/// Stores how many indices a term has, and up to two of them, as vorn_make takes them.
VORN_EXPORT vorn_status vorn_term_get_indices(vorn_manager* manager, vorn_term* term,
                                              size_t indices[2], size_t* count);
/// Stores the name under which a constant, or the function that an application applies, prints,
/// without bars: a text of the caller's. Of an operation, its name in SMT-LIB. A literal has none.
VORN_EXPORT vorn_status vorn_term_get_name(vorn_manager* manager, vorn_term* term, char** result);
/// Stores the function that an application applies.
VORN_EXPORT vorn_status vorn_term_get_function(vorn_manager* manager, vorn_term* term,
                                               vorn_function** result);
/// Stores whether a term is a literal: a truth value, a rounding mode, a bit-vector or float with
/// known bits, an element of an uninterpreted sort.
VORN_EXPORT vorn_status vorn_term_is_literal(vorn_manager* manager, vorn_term* term, bool* result);
/// Stores a number below vorn_manager_count_terms at its largest, that no other term has as long as
/// this one is there.
VORN_EXPORT vorn_status vorn_term_get_id(vorn_manager* manager, vorn_term* term, uint64_t* result);
/// Stores a term in SMT-LIB, a text of the caller's. Subterms that occur more than once are bound
/// by `let`.
VORN_EXPORT vorn_status vorn_term_to_string(vorn_manager* manager, vorn_term* term, char** result);

#ifdef __cplusplus
}
#endif

#endif
