// All floats of binary16 that are their own square, each found by a model that the next question
// excludes.
#include "example.h"

static int compare(const void* a, const void* b) {
  const uint64_t left = *(const uint64_t*)a, right = *(const uint64_t*)b;
  return (left > right) - (left < right);
}

int main(void) {
  vorn_manager* manager;
  if (vorn_manager_create(true, &manager) != VORN_OK) return 1;
  const vorn_sort* half;
  vorn_term *x, *rm, *square, *equal;
  DO(vorn_get_fp_sort(manager, 5, 11, &half));
  DO(vorn_declare_constant(manager, "x", half, &x));
  DO(vorn_make_rounding_mode(manager, VORN_RNE, &rm));
  DO(vorn_make_fp_mul(manager, rm, x, x, &square));
  DO(vorn_make_equal(manager, x, square, &equal));

  vorn_solver* solver;
  vorn_answer answer;
  DO(vorn_solver_create(manager, &solver));
  DO(vorn_solver_assert(solver, equal));
  uint64_t found[16];
  size_t count = 0;
  DO(vorn_solver_check(solver, NULL, 0, &answer));
  while (answer == VORN_SAT && count < 16) {
    vorn_term *value, *other;
    DO(vorn_solver_get_value(solver, x, &value));
    DO(vorn_value_get_uint64(manager, value, &found[count++]));
    DO(vorn_make_distinct(manager, x, value, &other));
    DO(vorn_solver_assert(solver, other));
    DO(vorn_term_release(manager, value));
    DO(vorn_term_release(manager, other));
    DO(vorn_solver_check(solver, NULL, 0, &answer));
  }

  // In the order of their bits, since models come in any.
  qsort(found, count, sizeof *found, compare);
  for (size_t i = 0; i < count; ++i) {
    vorn_term* value;
    char* decimal;
    DO(vorn_make_fp_bits(manager, half, found[i], &value));
    DO(vorn_value_get_decimal(manager, value, &decimal));
    printf("0x%04x %s\n", (unsigned)found[i], decimal);
    vorn_free_string(decimal);
  }
  printf("%s\n", answer == VORN_UNSAT ? "no others" : "perhaps others");
  DO(vorn_solver_destroy(solver));
  return vorn_manager_destroy(manager) == VORN_OK ? 0 : 1;
}
