// Sterbenz's lemma in binary32: where y / 2 <= x <= 2 * y, the difference x - y is exact, so it
// makes no difference whether it is rounded up or down. And the smallest b in binary16 for which
// addition is not associative: (1 + b) + b is not 1 + (b + b). Each counterexample is followed by
// the question for a smaller one.
#include "example.h"

static const char lemma[] =
    "(and (fp.leq (fp.div RNE y ((_ to_fp 8 24) RNE 2.0)) x)"
    "     (fp.leq x (fp.mul RNE y ((_ to_fp 8 24) RNE 2.0)))"
    "     (not (= (fp.sub RTP x y) (fp.sub RTN x y)))"
    "     (not (fp.isZero (fp.sub RNE x y))) (not (fp.isInfinite y)))";

static void prove_lemma(vorn_manager* manager) {
  const vorn_sort* single;
  vorn_term *x, *y, *violation;
  DO(vorn_get_fp_sort(manager, 8, 24, &single));  // the hidden bit counts
  DO(vorn_declare_constant(manager, "x", single, &x));
  DO(vorn_declare_constant(manager, "y", single, &y));
  DO(vorn_read_term(manager, lemma, &violation));

  vorn_solver* solver;
  vorn_answer answer;
  DO(vorn_solver_create(manager, &solver));
  DO(vorn_solver_assert(solver, violation));
  DO(vorn_solver_check(solver, NULL, 0, &answer));
  printf("Sterbenz's lemma %s\n", answer == VORN_UNSAT ? "holds" : "is violated");
  DO(vorn_solver_destroy(solver));
}

static void find_smallest(vorn_manager* manager) {
  const vorn_sort* half;
  vorn_term *b, *one, *rm, *once, *left, *twice, *right, *differ, *positive;
  DO(vorn_get_fp_sort(manager, 5, 11, &half));
  DO(vorn_declare_constant(manager, "b", half, &b));
  DO(vorn_make_fp_string(manager, half, VORN_RNE, "1", &one));
  DO(vorn_make_rounding_mode(manager, VORN_RNE, &rm));
  DO(vorn_make_fp_add(manager, rm, one, b, &once));
  DO(vorn_make_fp_add(manager, rm, once, b, &left));
  DO(vorn_make_fp_add(manager, rm, b, b, &twice));
  DO(vorn_make_fp_add(manager, rm, one, twice, &right));
  DO(vorn_make_distinct(manager, left, right, &differ));
  DO(vorn_make_fp_ispositive(manager, b, &positive));

  vorn_solver* solver;
  vorn_answer answer;
  vorn_term *value = NULL, *smaller;
  DO(vorn_solver_create(manager, &solver));
  DO(vorn_solver_assert(solver, differ));
  DO(vorn_solver_assert(solver, positive));
  DO(vorn_solver_check(solver, NULL, 0, &answer));
  while (answer == VORN_SAT) {
    DO(vorn_solver_get_value(solver, b, &value));
    DO(vorn_make_fp_lt(manager, b, value, &smaller));
    DO(vorn_solver_assert(solver, smaller));
    DO(vorn_solver_check(solver, NULL, 0, &answer));
  }
  DO(vorn_solver_destroy(solver));

  char *decimal, *hexadecimal, *bits;
  DO(vorn_value_get_decimal(manager, value, &decimal));
  DO(vorn_value_get_hexadecimal(manager, value, &hexadecimal));
  DO(vorn_value_get_binary(manager, value, &bits));
  printf("the smallest b is %s, %s, #b%s\n", decimal, hexadecimal, bits);
  vorn_free_string(decimal);
  vorn_free_string(hexadecimal);
  vorn_free_string(bits);
}

int main(void) {
  vorn_manager* manager;
  if (vorn_manager_create(true, &manager) != VORN_OK) return 1;
  prove_lemma(manager);
  find_smallest(manager);
  // Terms that were not released go with their manager.
  return vorn_manager_destroy(manager) == VORN_OK ? 0 : 1;
}
