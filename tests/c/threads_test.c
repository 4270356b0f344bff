// What ends work: requests of other threads and time. And two managers in two threads.
#define _POSIX_C_SOURCE 200809L

#include <pthread.h>
#include <time.h>

#include "tests/c/check.h"

// Two factors of 32 bits of a product of two primes: no search finds them in the time of a test.
static const char* const kHard =
    "(and (= (bvmul ((_ zero_extend 32) p) ((_ zero_extend 32) q)) #x76833b0e3f201c33)"
    " (bvugt p #x00000001) (bvugt q #x00000001))";

static vorn_solver* pose(vorn_manager* manager) {
  const vorn_sort* bits;
  vorn_term *p, *q, *hard;
  OK(vorn_get_bv_sort(manager, 32, &bits));
  OK(vorn_declare_constant(manager, "p", bits, &p));
  OK(vorn_declare_constant(manager, "q", bits, &q));
  OK(vorn_read_term(manager, kHard, &hard));
  vorn_solver* solver;
  OK(vorn_solver_create(manager, &solver));
  OK(vorn_solver_assert(solver, hard));
  return solver;
}

static void* interrupt_later(void* solver) {
  const struct timespec pause = {0, 100 * 1000 * 1000};
  nanosleep(&pause, NULL);
  return (void*)(size_t)vorn_solver_interrupt(solver);
}

static void test_interrupt(vorn_manager* manager, vorn_solver* solver) {
  pthread_t thread;
  void* status = NULL;
  vorn_answer answer = VORN_SAT;
  char* text = NULL;
  CHECK(pthread_create(&thread, NULL, interrupt_later, solver) == 0);
  OK(vorn_solver_check(solver, NULL, 0, &answer));
  CHECK(pthread_join(thread, &status) == 0);
  CHECK(status == (void*)VORN_OK);
  CHECK(answer == VORN_UNKNOWN);
  TEXT(vorn_solver_get_reason_unknown(solver, &text), "interrupted");

  // A request that comes before the check is not lost, unless it is taken back.
  OK(vorn_solver_interrupt(solver));
  OK(vorn_solver_check(solver, NULL, 0, &answer));
  CHECK(answer == VORN_UNKNOWN);
  TEXT(vorn_solver_get_reason_unknown(solver, &text), "interrupted");
  OK(vorn_solver_interrupt(solver));
  OK(vorn_solver_clear_interrupt(solver));
  OK(vorn_solver_set_option(solver, "time-limit", "0.2"));
  OK(vorn_solver_check(solver, NULL, 0, &answer));
  CHECK(answer == VORN_UNKNOWN);
  TEXT(vorn_solver_get_reason_unknown(solver, &text), "timeout");

  // After that the solver goes on.
  vorn_term* easy;
  OK(vorn_read_term(manager, "(and (= p #xffffffff) (= q #xffffffff))", &easy));
  OK(vorn_solver_set_option(solver, "time-limit", "0"));
  OK(vorn_solver_check(solver, &easy, 1, &answer));
  CHECK(answer == VORN_UNSAT);
}

// Building ends too: a term that is read, and an encoding.
static void test_building(vorn_manager* manager) {
  const vorn_sort* wide;
  vorn_term *x, *root, *rm, *result;
  OK(vorn_get_fp_sort(manager, 15, 4000, &wide));
  OK(vorn_declare_constant(manager, "wide", wide, &x));
  OK(vorn_make_rounding_mode(manager, VORN_RNE, &rm));
  OK(vorn_make_fp_sqrt(manager, rm, x, &root));
  vorn_encoder* encoder;
  vorn_term_list constraints;
  OK(vorn_encoder_create(manager, manager, VORN_ENCODER_IEEE, &encoder));
  OK(vorn_manager_interrupt(manager));
  FAILS(vorn_encoder_encode(encoder, root, &result, &constraints), VORN_INTERRUPTED, "stop");
  CHECK(result == NULL && constraints.items == NULL);
  OK(vorn_make_fp_isnan(manager, x, &root));
  OK(vorn_encoder_encode(encoder, root, &result, &constraints));
  OK(vorn_release_list(manager, &constraints));
  OK(vorn_encoder_destroy(encoder));
}

// One thread's work: the same result whatever the others do.
static void* work(void* number) {
  vorn_manager* manager = NULL;
  vorn_solver* solver = NULL;
  const vorn_sort* half = NULL;
  vorn_term *x = NULL, *square = NULL, *value = NULL;
  vorn_answer answer = VORN_UNKNOWN;
  char* text = NULL;
  bool well = vorn_manager_create(true, &manager) == VORN_OK;
  for (int i = 0; well && i < 50; ++i) {
    well = vorn_push_names(manager) == VORN_OK &&
           vorn_get_fp_sort(manager, 5, 11, &half) == VORN_OK &&
           vorn_declare_constant(manager, "x", half, &x) == VORN_OK &&
           vorn_read_term(manager,
                          "(and (fp.isPositive x) (= (fp.mul RNE x x) ((_ to_fp 5 11) RNE 6.25)))",
                          &square) == VORN_OK &&
           vorn_solver_create(manager, &solver) == VORN_OK &&
           vorn_solver_assert(solver, square) == VORN_OK &&
           vorn_solver_check(solver, NULL, 0, &answer) == VORN_OK && answer == VORN_SAT &&
           vorn_solver_get_value(solver, x, &value) == VORN_OK &&
           vorn_value_get_decimal(manager, value, &text) == VORN_OK && strcmp(text, "2.5") == 0 &&
           vorn_solver_destroy(solver) == VORN_OK && vorn_pop_names(manager) == VORN_OK;
    vorn_free_string(text);
    text = NULL;
  }
  well = vorn_manager_destroy(manager) == VORN_OK && well;
  *(bool*)number = well;
  return NULL;
}

static void test_two_threads(void) {
  pthread_t threads[2];
  bool well[2] = {false, false};
  for (int i = 0; i < 2; ++i)
    CHECK(pthread_create(&threads[i], NULL, work, &well[i]) == 0);
  for (int i = 0; i < 2; ++i)
    CHECK(pthread_join(threads[i], NULL) == 0);
  CHECK(well[0] && well[1]);
}

int main(void) {
  vorn_manager* manager;
  STATUS(vorn_manager_create(true, &manager), VORN_OK);
  vorn_solver* solver = pose(manager);
  test_interrupt(manager, solver);
  OK(vorn_solver_destroy(solver));
  test_building(manager);
  STATUS(vorn_manager_destroy(manager), VORN_OK);
  test_two_threads();
  return check_end();
}
