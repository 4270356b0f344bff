// The encoders, in C: floating-point terms as terms of bit-vectors, for whoever has a solver of his
// own. docs/embedding.md tells how to work with one.
#ifndef VORN_C_ENCODER_H
#define VORN_C_ENCODER_H

#include "vorn/c/kinds.h"
#include "vorn/c/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/// The encoders.
typedef enum vorn_encoder_kind VORN_INT {
  VORN_ENCODER_IEEE = 0,  // exact: IEEE 754-2019 and SMT-LIB, five rounding modes
  VORN_ENCODER_BASE = 1,  // departs from both where it rounds, four rounding modes
} vorn_encoder_kind;

/// An intermediate value of a circuit, tied to a constant of its name.
typedef struct vorn_tie {
  char* label;          // the name of the value
  size_t occurrence;    // counts the ties of that label, from 1
  const char* stage;    // in which stage of the operation it comes up, a constant text
  const char* reading;  // how its bits are to be read, a constant text
  vorn_term* constant;  // of that name
  vorn_term* value;     // what the constant is equal to
} vorn_tie;

/// Ties. A list that a call has filled is the caller's; vorn_release_ties hands it back.
typedef struct vorn_tie_list {
  vorn_tie* items;  // null without any
  size_t count;     // of ties
} vorn_tie_list;

/// Stores an encoder that reads terms of `source` and builds in `target`, which may be the same.
/// Neither can be destroyed before it. It is one of `source`: messages are there.
VORN_EXPORT vorn_status vorn_encoder_create(vorn_manager* source, vorn_manager* target,
                                            vorn_encoder_kind kind, vorn_encoder** result);
/// Destroys an encoder.
VORN_EXPORT vorn_status vorn_encoder_destroy(vorn_encoder* encoder);

/// In debug mode every named intermediate value is tied to a constant by a constraint.
VORN_EXPORT vorn_status vorn_encoder_set_debug(vorn_encoder* encoder, bool on);
/// Whether a term that nothing is known of becomes a constant that may have any value, or is an
/// error. The exact encoder starts with false, the base encoder with true.
VORN_EXPORT vorn_status vorn_encoder_set_free_constants(vorn_encoder* encoder, bool on);

/// Stores the encoding of a floating-point atom or term, a rounding mode, or a bit-vector argument
/// of a conversion: a truth value for an atom, eb + sb bits for a float, 3 bits (2 of the base
/// encoder) for a rounding mode. The list gets the constraints that define the constants of this
/// call, which are to be asserted beside any use of the encoding. Where the term has no encoding,
/// VORN_INVALID_ARGUMENT; after any error but those of handles the encoder is as after
/// vorn_encoder_retract of the term.
VORN_EXPORT vorn_status vorn_encoder_encode(vorn_encoder* encoder, vorn_term* term,
                                            vorn_term** result, vorn_term_list* constraints);
/// Stores the encoding that a term has, or null.
VORN_EXPORT vorn_status vorn_encoder_get_cached(vorn_encoder* encoder, vorn_term* term,
                                                vorn_term** result);
/// Makes a term of the target the encoding of a term of the source, which must not have one: the
/// meaning of an if-then-else, of bits read as a float, of a bit-vector argument. A float's must
/// have no NaN but the canonical one.
VORN_EXPORT vorn_status vorn_encoder_define(vorn_encoder* encoder, vorn_term* term,
                                            vorn_term* encoding);
/// Stores whether the encoder has a circuit for operations of a kind.
VORN_EXPORT vorn_status vorn_encoder_supports(vorn_encoder* encoder, vorn_kind kind, bool* result);
/// Stores the constant that stands for what the theory leaves open of an encoded term, or null.
VORN_EXPORT vorn_status vorn_encoder_get_choice(vorn_encoder* encoder, vorn_term* term,
                                                vorn_term** result);
/// Forgets encodings, newest first, back to and including the latest mention of a term; all of them
/// when it was never asked for.
VORN_EXPORT vorn_status vorn_encoder_retract(vorn_encoder* encoder, vorn_term* term);
/// Fills a list with the bit-vector terms of the source that were replaced by constants since the
/// last call, oldest first. vorn_encoder_get_cached of each is its constant, to which the caller
/// ties it.
VORN_EXPORT vorn_status vorn_encoder_take_bv_terms(vorn_encoder* encoder, vorn_term_list* result);

/// Fills a list with the ties among constraints of encodings in debug mode, in order. Constants
/// that are declared in the target are none of a tie, whatever their names.
VORN_EXPORT vorn_status vorn_encoder_find_ties(vorn_encoder* encoder, vorn_term* const* constraints,
                                               size_t count, vorn_tie_list* result);
/// Hands back the texts, the references and the memory of a list, which is empty then.
VORN_EXPORT vorn_status vorn_release_ties(vorn_encoder* encoder, vorn_tie_list* list);

#ifdef __cplusplus
}
#endif

#endif
