// Follows a sum of two floats of 8 bits through the circuit of the exact encoder: in debug mode
// each named intermediate value is tied to a constant, and a model of the constraints has their
// values.
#include <string.h>

#include "example.h"

// The constraint that the encoding of an operand has these bits.
static vorn_term* fix(vorn_manager* manager, vorn_encoder* encoder, vorn_term* operand,
                      const vorn_sort* sort, const char* number) {
  vorn_term *bits, *encoding, *value, *equal;
  vorn_term_list none;
  DO(vorn_make_fp_string(manager, sort, VORN_RNE, number, &value));
  DO(vorn_encoder_encode(encoder, value, &bits, &none));
  DO(vorn_encoder_get_cached(encoder, operand, &encoding));
  DO(vorn_make_equal(manager, encoding, bits, &equal));
  return equal;
}

static void print_value(vorn_manager* manager, vorn_solver* solver, const char* stage,
                        const char* label, vorn_term* term) {
  vorn_term* value;
  char* bits;
  DO(vorn_solver_get_value(solver, term, &value));
  DO(vorn_value_get_binary(manager, value, &bits));
  printf("%-8s %-16s %s\n", stage, label, bits);
  vorn_free_string(bits);
}

int main(void) {
  vorn_manager* manager;
  if (vorn_manager_create(true, &manager) != VORN_OK) return 1;
  const vorn_sort* tiny;
  vorn_term *x, *y, *rm, *sum, *encoding;
  DO(vorn_get_fp_sort(manager, 4, 4, &tiny));
  DO(vorn_declare_constant(manager, "x", tiny, &x));
  DO(vorn_declare_constant(manager, "y", tiny, &y));
  DO(vorn_make_rounding_mode(manager, VORN_RNE, &rm));
  DO(vorn_make_fp_add(manager, rm, x, y, &sum));

  vorn_encoder* encoder;
  vorn_term_list constraints;
  vorn_tie_list ties;
  DO(vorn_encoder_create(manager, manager, VORN_ENCODER_IEEE, &encoder));
  DO(vorn_encoder_set_debug(encoder, true));
  DO(vorn_encoder_encode(encoder, sum, &encoding, &constraints));
  DO(vorn_encoder_find_ties(encoder, constraints.items, constraints.count, &ties));

  // The constraints belong to the encoding wherever it is used.
  vorn_solver* solver;
  vorn_answer answer;
  DO(vorn_solver_create(manager, &solver));
  for (size_t i = 0; i < constraints.count; ++i)
    DO(vorn_solver_assert(solver, constraints.items[i]));
  DO(vorn_solver_assert(solver, fix(manager, encoder, x, tiny, "1.5")));
  DO(vorn_solver_assert(solver, fix(manager, encoder, y, tiny, "0.375")));
  DO(vorn_solver_check(solver, NULL, 0, &answer));
  if (answer != VORN_SAT) return 1;
  for (size_t i = 0; i < ties.count; ++i) {
    const vorn_tie* tie = &ties.items[i];
    if (strcmp(tie->stage, "align") != 0) continue;
    print_value(manager, solver, tie->stage, tie->label, tie->constant);
  }
  print_value(manager, solver, "result", "x + y", encoding);

  DO(vorn_solver_destroy(solver));
  DO(vorn_release_ties(encoder, &ties));
  DO(vorn_release_list(manager, &constraints));
  DO(vorn_encoder_destroy(encoder));
  return vorn_manager_destroy(manager) == VORN_OK ? 0 : 1;
}
