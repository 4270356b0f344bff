// Assertions, answers, models, refutations, options.
#include "tests/c/check.h"

static vorn_term* constant(vorn_manager* manager, const char* name, size_t eb, size_t sb) {
  const vorn_sort* sort;
  vorn_term* result;
  OK(vorn_get_fp_sort(manager, eb, sb, &sort));
  OK(vorn_declare_constant(manager, name, sort, &result));
  return result;
}

static vorn_term* read(vorn_manager* manager, const char* text) {
  vorn_term* result = NULL;
  OK(vorn_read_term(manager, text, &result));
  return result;
}

static vorn_answer check(vorn_manager* manager, vorn_solver* solver) {
  vorn_answer answer = VORN_UNKNOWN;
  OK(vorn_solver_check(solver, NULL, 0, &answer));
  return answer;
}

static void test_models(vorn_manager* manager) {
  vorn_solver* solver;
  OK(vorn_solver_create(manager, &solver));
  vorn_term *x = constant(manager, "x", 8, 24), *y = constant(manager, "y", 8, 24), *value;
  OK(vorn_solver_assert(solver, read(manager, "(= y (fp.add RNE x ((_ to_fp 8 24) RNE 1.0)))")));
  OK(vorn_solver_push(solver));
  OK(vorn_solver_assert(solver, read(manager, "(= x ((_ to_fp 8 24) RNE 1.0))")));
  FAILS(vorn_solver_get_value(solver, x, &value), VORN_WRONG_STATE, "no answer");
  CHECK(check(manager, solver) == VORN_SAT);
  OK(vorn_solver_get_value(solver, y, &value));
  char* text = NULL;
  TEXT(vorn_value_get_decimal(manager, value, &text), "2.0");
  OK(vorn_solver_get_value(solver, read(manager, "(fp.mul RNE y y)"), &value));
  TEXT(vorn_value_get_decimal(manager, value, &text), "4.0");
  vorn_term_list list;
  FAILS(vorn_solver_get_unsat_core(solver, &list), VORN_WRONG_STATE, "the last answer is sat");
  CHECK(list.items == NULL && list.count == 0);
  FAILS(vorn_solver_get_reason_unknown(solver, &text), VORN_WRONG_STATE, "after unknown only");
  OK(vorn_solver_get_assertions(solver, &list));
  CHECK(list.count == 2);
  TEXT(vorn_write_script(manager, list.items, list.count, &text),
       "(declare-const y (_ FloatingPoint 8 24))\n"
       "(declare-const x (_ FloatingPoint 8 24))\n"
       "(assert (= y (fp.add roundNearestTiesToEven x "
       "(fp #b0 #b01111111 #b00000000000000000000000))))\n"
       "(assert (= x (fp #b0 #b01111111 #b00000000000000000000000)))\n");
  OK(vorn_release_list(manager, &list));
  CHECK(list.items == NULL && list.count == 0);
  OK(vorn_solver_assert(solver, read(manager, "(fp.isNaN y)")));
  CHECK(check(manager, solver) == VORN_UNSAT);
  OK(vorn_solver_pop(solver));
  FAILS(vorn_solver_pop(solver), VORN_WRONG_STATE, "no level");
  CHECK(check(manager, solver) == VORN_SAT);
  OK(vorn_manager_collect(manager));
  FAILS(vorn_solver_get_value(solver, x, &value), VORN_WRONG_STATE, "no answer");
  CHECK(check(manager, solver) == VORN_SAT);
  OK(vorn_solver_reset(solver));
  OK(vorn_solver_get_assertions(solver, &list));
  CHECK(list.count == 0);
  CHECK(check(manager, solver) == VORN_SAT);
  FAILS(vorn_solver_assert(solver, x), VORN_INVALID_ARGUMENT,
        "expected a formula of Bool, got a term of (_ FloatingPoint 8 24)");
  OK(vorn_solver_destroy(solver));
  FAILS(vorn_solver_push(solver), VORN_RELEASED_HANDLE, "destroyed");
  STATUS(vorn_solver_interrupt(solver), VORN_RELEASED_HANDLE);
}

static void test_cores(vorn_manager* manager) {
  vorn_solver* solver;
  OK(vorn_solver_create(manager, &solver));
  constant(manager, "a", 5, 11);
  vorn_term *nan = read(manager, "(fp.isNaN a)"), *zero = read(manager, "(fp.isZero a)");
  vorn_term *positive = read(manager, "(fp.isPositive a)"), *truth = read(manager, "(= a a)");
  OK(vorn_solver_assert_tracked(solver, truth));
  OK(vorn_solver_assert_tracked(solver, nan));
  vorn_term* assumptions[] = {positive, zero};
  vorn_answer answer = VORN_SAT;
  OK(vorn_solver_check(solver, assumptions, 1, &answer));
  CHECK(answer == VORN_UNSAT);
  vorn_term_list core, failed;
  OK(vorn_solver_get_unsat_core(solver, &core));
  CHECK(core.count == 1 && core.items[0] == nan);
  OK(vorn_solver_get_unsat_assumptions(solver, &failed));
  CHECK(failed.count == 1 && failed.items[0] == positive);
  OK(vorn_release_list(manager, &core));
  OK(vorn_release_list(manager, &failed));
  OK(vorn_solver_push(solver));
  OK(vorn_solver_assert_tracked(solver, zero));
  CHECK(check(manager, solver) == VORN_UNSAT);
  OK(vorn_solver_get_unsat_core(solver, &core));
  CHECK(core.count == 2 && core.items[0] == nan && core.items[1] == zero);
  OK(vorn_solver_get_unsat_assumptions(solver, &failed));
  CHECK(failed.count == 0 && failed.items == NULL);
  OK(vorn_release_list(manager, &core));
  OK(vorn_solver_pop(solver));
  CHECK(check(manager, solver) == VORN_SAT);
  FAILS(vorn_solver_check(solver, NULL, 2, &answer), VORN_NULL_POINTER, "assumptions");
  OK(vorn_solver_destroy(solver));
}

static void test_functions_and_arrays(vorn_manager* manager) {
  const vorn_sort *bits, *array;
  OK(vorn_get_bv_sort(manager, 4, &bits));
  OK(vorn_get_array_sort(manager, bits, bits, &array));
  vorn_function* f;
  vorn_term *m, *value, *otherwise;
  OK(vorn_declare_function(manager, "f", &bits, 1, bits, &f));
  OK(vorn_declare_constant(manager, "m", array, &m));
  vorn_solver* solver;
  OK(vorn_solver_create(manager, &solver));
  OK(vorn_solver_assert(solver, read(manager, "(= (f #x1) #x7)")));
  OK(vorn_solver_assert(solver, read(manager, "(= (f #x2) #x9)")));
  OK(vorn_solver_assert(
      solver,
      read(manager,
           "(= m (store ((as const (Array (_ BitVec 4) (_ BitVec 4))) #x3) #x5 (f #x1)))")));
  CHECK(check(manager, solver) == VORN_SAT);
  vorn_term_list points;
  OK(vorn_solver_get_function(solver, f, &points, &otherwise));
  CHECK(otherwise != NULL && points.count % 2 == 0);
  uint64_t at_one = 99, at_two = 99, rest = 99;
  OK(vorn_value_get_uint64(manager, otherwise, &rest));
  at_one = at_two = rest;
  for (size_t i = 0; i + 1 < points.count; i += 2) {
    uint64_t argument = 0, result = 0;
    OK(vorn_value_get_uint64(manager, points.items[i], &argument));
    OK(vorn_value_get_uint64(manager, points.items[i + 1], &result));
    if (argument == 1) at_one = result;
    if (argument == 2) at_two = result;
  }
  CHECK(at_one == 7 && at_two == 9);
  OK(vorn_release_list(manager, &points));
  OK(vorn_solver_get_value(solver, m, &value));
  char* text = NULL;
  TEXT(vorn_term_to_string(manager, value, &text),
       "(store ((as const (Array (_ BitVec 4) (_ BitVec 4))) #x3) #x5 #x7)");
  OK(vorn_solver_destroy(solver));
}

static void test_options(vorn_manager* manager) {
  static const char* const rows[][2] = {
      {"encoder", "base"},      {"rewrite", "false"},   {"local-search", "false"},
      {"ranges", "false"},      {"relations", "false"}, {"debug-labels", "true"},
      {"seed", "12"},           {"time-limit", "2.5"},  {"cnf-file", "a.cnf"},
      {"proof-file", "a.drat"},
  };
  vorn_solver* solver;
  OK(vorn_solver_create(manager, &solver));
  char* text = NULL;
  for (size_t i = 0; i < sizeof rows / sizeof *rows; ++i) {
    OK(vorn_solver_set_option(solver, rows[i][0], rows[i][1]));
    TEXT(vorn_solver_get_option(solver, rows[i][0], &text), rows[i][1]);
  }
  FAILS(vorn_solver_set_option(solver, "sed", "1"), VORN_UNKNOWN_NAME, "'sed'");
  FAILS(vorn_solver_get_option(solver, "sed", &text), VORN_UNKNOWN_NAME, "'sed'");
  static const char* const wrong[][2] = {
      {"encoder", "IEEE"}, {"rewrite", "1"},     {"seed", "-1"},        {"seed", "1073741824"},
      {"seed", "1x"},      {"time-limit", "-1"}, {"time-limit", "nan"}, {"time-limit", ""},
  };
  for (size_t i = 0; i < sizeof wrong / sizeof *wrong; ++i)
    FAILS(vorn_solver_set_option(solver, wrong[i][0], wrong[i][1]), VORN_INVALID_ARGUMENT,
          "expected");
  OK(vorn_solver_set_option(solver, "cnf-file", "/no/such/folder/a.cnf"));
  OK(vorn_solver_set_option(solver, "proof-file", ""));
  const vorn_sort* sort;
  vorn_term* b;
  OK(vorn_get_bv_sort(manager, 8, &sort));
  OK(vorn_declare_constant(manager, "b", sort, &b));
  OK(vorn_solver_assert(solver, read(manager, "(= (bvmul b b) #x31)")));
  FAILS(vorn_solver_set_option(solver, "ranges", "true"), VORN_WRONG_STATE, "before");
  OK(vorn_solver_set_option(solver, "seed", "13"));
  vorn_answer answer = VORN_UNKNOWN;
  FAILS(vorn_solver_check(solver, NULL, 0, &answer), VORN_FILE_ERROR, "/no/such/folder");
  OK(vorn_solver_destroy(solver));

  // A mode that the base encoder does not have.
  OK(vorn_solver_create(manager, &solver));
  OK(vorn_solver_set_option(solver, "encoder", "base"));
  constant(manager, "t", 5, 11);
  FAILS(vorn_solver_assert(solver, read(manager, "(fp.isNaN (fp.add RNA t t))")),
        VORN_INVALID_ARGUMENT, "roundNearestTiesToAway");
  vorn_term_list list;
  OK(vorn_solver_get_assertions(solver, &list));
  CHECK(list.count == 0);
  CHECK(check(manager, solver) == VORN_SAT);
  OK(vorn_solver_destroy(solver));
}

static void test_statistics(vorn_manager* manager) {
  vorn_solver* solver;
  OK(vorn_solver_create(manager, &solver));
  double number = -1;
  OK(vorn_solver_get_statistic(solver, "checks", &number));
  CHECK(number == 0);
  check(manager, solver);
  check(manager, solver);
  OK(vorn_solver_get_statistic(solver, "checks", &number));
  CHECK(number == 2);
  const char* name = NULL;
  size_t count = 0;
  for (; vorn_solver_get_statistic_name(solver, count, &name) == VORN_OK; ++count)
    OK(vorn_solver_get_statistic(solver, name, &number));
  CHECK(count == 10 && name == NULL);
  FAILS(vorn_solver_get_statistic(solver, "speed", &number), VORN_UNKNOWN_NAME, "'speed'");
  OK(vorn_solver_destroy(solver));
}

int main(void) {
  vorn_manager* manager;
  STATUS(vorn_manager_create(true, &manager), VORN_OK);
  test_models(manager);
  test_cores(manager);
  test_functions_and_arrays(manager);
  test_options(manager);
  test_statistics(manager);
  STATUS(vorn_manager_destroy(manager), VORN_OK);
  return check_end();
}
