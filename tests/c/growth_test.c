// Terms that are made and released do not pile up, and nothing that is in use goes with them.
#include "tests/c/check.h"

// Below this many the manager does not look.
#define LIMIT 500000

static void make_and_release(vorn_manager* manager, vorn_term* x, uint64_t first, uint64_t count,
                             uint64_t* most) {
  for (uint64_t i = 0; i < count; ++i) {
    vorn_term *number, *sum;
    OK(vorn_make_bv_uint64(manager, 32, first + i, &number));
    OK(vorn_make_bv_mul(manager, x, number, &sum));
    OK(vorn_term_release(manager, number));
    OK(vorn_term_release(manager, sum));
    uint64_t terms = 0;
    if (i % 1000 == 0) OK(vorn_manager_count_terms(manager, &terms));
    if (terms > *most) *most = terms;
  }
}

int main(void) {
  vorn_manager* manager;
  STATUS(vorn_manager_create(true, &manager), VORN_OK);
  const vorn_sort* bits;
  vorn_term *x, *formula, *kept, *value;
  OK(vorn_get_bv_sort(manager, 32, &bits));
  OK(vorn_declare_constant(manager, "x", bits, &x));
  OK(vorn_read_term(manager, "(= (bvadd x #x00000001) #x00000009)", &formula));
  OK(vorn_read_term(manager, "(bvmul x #x0000abcd)", &kept));
  vorn_solver* solver;
  OK(vorn_solver_create(manager, &solver));
  OK(vorn_solver_push(solver));
  OK(vorn_solver_assert(solver, formula));
  // The solver has it now.
  OK(vorn_term_release(manager, formula));

  uint64_t most = 0;
  make_and_release(manager, x, 1U << 20, 1000000, &most);
  CHECK(most > 0 && most <= LIMIT + 2);
  char* text = NULL;
  TEXT(vorn_term_to_string(manager, kept, &text), "(bvmul x #x0000abcd)");

  // While there is a model, terms stay, and so does the model.
  vorn_answer answer = VORN_UNKNOWN;
  OK(vorn_solver_check(solver, NULL, 0, &answer));
  CHECK(answer == VORN_SAT);
  make_and_release(manager, x, 1U << 21, LIMIT, &most);
  CHECK(most > LIMIT + 2);
  OK(vorn_solver_get_value(solver, x, &value));
  TEXT(vorn_term_to_string(manager, value, &text), "#x00000008");

  // The next assertion ends that.
  OK(vorn_solver_push(solver));
  uint64_t terms = 0;
  OK(vorn_manager_count_terms(manager, &terms));
  CHECK(terms < 1000);
  OK(vorn_solver_check(solver, NULL, 0, &answer));
  CHECK(answer == VORN_SAT);
  OK(vorn_solver_get_value(solver, x, &value));
  TEXT(vorn_term_to_string(manager, value, &text), "#x00000008");
  OK(vorn_solver_destroy(solver));
  STATUS(vorn_manager_destroy(manager), VORN_OK);
  return check_end();
}
