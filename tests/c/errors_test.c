// Handles that are missing, foreign or released: an error each, and no harm.
#include "tests/c/check.h"

static void test_null(vorn_manager* manager) {
  vorn_term *term = NULL, *one;
  const vorn_sort* sort = NULL;
  char* text = NULL;
  STATUS(vorn_manager_create(true, NULL), VORN_NULL_POINTER);
  STATUS(vorn_manager_destroy(NULL), VORN_NULL_POINTER);
  STATUS(vorn_manager_interrupt(NULL), VORN_NULL_POINTER);
  STATUS(vorn_get_bool_sort(NULL, &sort), VORN_NULL_POINTER);
  STATUS(vorn_make_bool(NULL, true, &term), VORN_NULL_POINTER);
  STATUS(vorn_solver_push(NULL), VORN_NULL_POINTER);
  STATUS(vorn_solver_interrupt(NULL), VORN_NULL_POINTER);
  STATUS(vorn_encoder_set_debug(NULL, true), VORN_NULL_POINTER);
  CHECK(strcmp(vorn_last_error(NULL), "there is no manager") == 0);
  vorn_free_string(NULL);

  OK(vorn_make_bool(manager, true, &one));
  CHECK(strcmp(vorn_last_error(manager), "") == 0);
  FAILS(vorn_make_bool(manager, true, NULL), VORN_NULL_POINTER, "place for the result");
  FAILS(vorn_make_and(manager, one, NULL, &term), VORN_NULL_POINTER, "argument 2 is missing");
  FAILS(vorn_term_to_string(manager, NULL, &text), VORN_NULL_POINTER, "the term is missing");
  FAILS(vorn_term_is_literal(manager, one, NULL), VORN_NULL_POINTER, "place");
  FAILS(vorn_sort_get_kind(manager, NULL, &(vorn_sort_kind){0}), VORN_NULL_POINTER, "the sort");
  FAILS(vorn_get_array_sort(manager, NULL, NULL, &sort), VORN_NULL_POINTER, "indices");
  FAILS(vorn_declare_constant(manager, "x", NULL, &term), VORN_NULL_POINTER, "the sort");
  FAILS(vorn_apply(manager, NULL, NULL, 0, &term), VORN_NULL_POINTER, "the function");
  OK(vorn_make_bool(manager, true, &one));
  CHECK(strcmp(vorn_last_error(manager), "") == 0);
}

static void test_foreign(vorn_manager* manager, vorn_manager* other) {
  const vorn_sort *theirs, *made;
  vorn_term *one, *foreign, *result;
  vorn_function* f;
  STATUS(vorn_get_bv_sort(other, 8, &theirs), VORN_OK);
  STATUS(vorn_make_bool(other, true, &foreign), VORN_OK);
  STATUS(vorn_declare_function(other, "f", &theirs, 1, theirs, &f), VORN_OK);
  OK(vorn_make_bool(manager, true, &one));
  FAILS(vorn_make_and(manager, one, foreign, &result), VORN_FOREIGN_HANDLE,
        "argument 2 belongs to another manager");
  FAILS(vorn_get_array_sort(manager, theirs, theirs, &made), VORN_FOREIGN_HANDLE, "indices");
  FAILS(vorn_declare_constant(manager, "x", theirs, &result), VORN_FOREIGN_HANDLE, "the sort");
  FAILS(vorn_term_release(manager, foreign), VORN_FOREIGN_HANDLE, "the term");
  FAILS(vorn_function_release(manager, f), VORN_FOREIGN_HANDLE, "the function");
  vorn_solver* solver;
  OK(vorn_solver_create(manager, &solver));
  FAILS(vorn_solver_assert(solver, foreign), VORN_FOREIGN_HANDLE, "the formula");
  vorn_answer answer = VORN_UNKNOWN;
  FAILS(vorn_solver_check(solver, &foreign, 1, &answer), VORN_FOREIGN_HANDLE, "the formula");
  FAILS(vorn_manager_destroy(manager), VORN_WRONG_STATE, "solvers 1");
  OK(vorn_solver_destroy(solver));
  FAILS(vorn_solver_destroy(solver), VORN_RELEASED_HANDLE, "destroyed");
}

// Handles are given again, but not while it matters.
static void test_released(vorn_manager* manager) {
  const vorn_sort* bits;
  vorn_term *first, *other, *result;
  OK(vorn_get_bv_sort(manager, 32, &bits));
  OK(vorn_make_bv_uint64(manager, 32, 1, &first));
  OK(vorn_term_release(manager, first));
  for (uint64_t i = 2; i < 1000; ++i) {
    OK(vorn_make_bv_uint64(manager, 32, i, &other));
    CHECK(other != first);
    OK(vorn_term_release(manager, other));
    FAILS(vorn_make_bv_not(manager, first, &result), VORN_RELEASED_HANDLE, "argument 1");
  }
  // A list in which the same reference stands twice.
  vorn_term_list list = {malloc(2 * sizeof(vorn_term*)), 2};
  OK(vorn_make_bv_uint64(manager, 32, 5000, &first));
  list.items[0] = list.items[1] = first;
  OK(vorn_release_list(manager, &list));
  FAILS(vorn_term_release(manager, first), VORN_RELEASED_HANDLE, "released");
  for (int i = 0; i < 3000; ++i) {
    vorn_solver* solver;
    OK(vorn_solver_create(manager, &solver));
    OK(vorn_solver_destroy(solver));
  }
}

static void test_statuses(void) {
  for (int status = VORN_OK; status <= VORN_INTERNAL_ERROR; ++status) {
    CHECK(strcmp(vorn_status_text((vorn_status)status), "no status") != 0);
    for (int other = VORN_OK; other < status; ++other)
      CHECK(strcmp(vorn_status_text((vorn_status)status), vorn_status_text((vorn_status)other)) !=
            0);
  }
  CHECK(strcmp(vorn_status_text((vorn_status)-1), "no status") == 0);
  CHECK(strcmp(vorn_status_text((vorn_status)99), "no status") == 0);
}

int main(void) {
  vorn_manager *manager, *other;
  STATUS(vorn_manager_create(true, &manager), VORN_OK);
  STATUS(vorn_manager_create(true, &other), VORN_OK);
  test_null(manager);
  test_foreign(manager, other);
  test_released(manager);
  test_statuses();
  STATUS(vorn_manager_destroy(other), VORN_OK);
  STATUS(vorn_manager_destroy(manager), VORN_OK);
  return check_end();
}
