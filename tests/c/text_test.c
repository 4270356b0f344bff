// SMT-LIB in and out.
#include "tests/c/check.h"

static void test_terms(vorn_manager* manager) {
  const vorn_sort *sort, *array;
  vorn_term *x, *term, *again;
  OK(vorn_get_fp_sort(manager, 8, 24, &sort));
  OK(vorn_declare_constant(manager, "a name", sort, &x));
  OK(vorn_read_term(manager, "(fp.leq |a name| |a name|)", &term));
  OK(vorn_make_fp_le(manager, x, x, &again));
  CHECK(term == again);
  char* text = NULL;
  TEXT(vorn_term_to_string(manager, term, &text), "(fp.leq |a name| |a name|)");
  OK(vorn_read_sort(manager, "(Array Float32 Bool)", &array));
  TEXT(vorn_sort_to_string(manager, array, &text), "(Array (_ FloatingPoint 8 24) Bool)");
  FAILS(vorn_read_term(manager, "(fp.leq |a name|\n  y)", &again), VORN_SCRIPT_ERROR,
        "text:2:3: error");
  CHECK(again == NULL);
  FAILS(vorn_read_term(manager, "true false", &again), VORN_SCRIPT_ERROR, "end of the text");
  FAILS(vorn_read_term(manager, "(and true", &again), VORN_SCRIPT_ERROR, "text:1:1");
  FAILS(vorn_read_term(manager, "", &again), VORN_SCRIPT_ERROR, "text:1:1");
  FAILS(vorn_read_term(manager, NULL, &again), VORN_NULL_POINTER, "text");
  FAILS(vorn_read_sort(manager, "Object", &array), VORN_SCRIPT_ERROR, "Object");
  OK(vorn_get_uninterpreted_sort(manager, "Object", NULL, 0, &sort));
  OK(vorn_read_sort(manager, "Object", &array));
  CHECK(sort == array);

  // A name that a text gives stays if all of the text is right.
  FAILS(vorn_read_term(manager, "(! true :named t) x", &again), VORN_SCRIPT_ERROR, "end");
  OK(vorn_read_term(manager, "(! (not (fp.isNaN |a name|)) :named t)", &term));
  OK(vorn_find_constant(manager, "t", &again));
  CHECK(term == again);

  const vorn_sort* domain[] = {sort, sort};
  vorn_function* f;
  OK(vorn_declare_function(manager, "f", domain, 2, sort, &f));
  OK(vorn_read_term(
      manager, "(= (f (as @Object!1 Object) (as @Object!1 Object)) (as @Object!0 Object))", &term));
  FAILS(vorn_write_script(manager, &x, 1, &text), VORN_INVALID_ARGUMENT, "formulas of Bool");
  TEXT(vorn_write_script(manager, NULL, 0, &text), "");
}

static void test_scripts(vorn_manager* manager) {
  vorn_solver* solver;
  OK(vorn_solver_create(manager, &solver));
  char* text = NULL;
  bool went_well = false;
  TEXT(vorn_run_script(solver,
                       "(set-logic QF_FP)\n(declare-const x Float32)\n"
                       "(assert (not (fp.eq x x)))\n(check-sat)\n(get-value (x))\n",
                       &text, &went_well),
       "sat\n((x (_ NaN 8 24)))\n");
  CHECK(went_well);
  TEXT(vorn_run_script(solver, "(set-logic QF_FP)\n(assert x)\n", &text, &went_well),
       "(error \"text:2:9: error: unknown symbol 'x'\")\n");
  CHECK(!went_well);
  OK(vorn_solver_interrupt(solver));
  OK(vorn_run_script(solver,
                     "(set-logic QF_BV)\n(declare-const v (_ BitVec 8))\n"
                     "(assert (= (bvmul v v) #x31))\n(check-sat)\n(get-info :reason-unknown)\n",
                     &text, &went_well));
  CHECK(text != NULL && strncmp(text, "unknown\n", 8) == 0 && strstr(text, "interrupted") != NULL);
  vorn_free_string(text);
  // What the script declares is its own.
  vorn_term* term;
  FAILS(vorn_find_constant(manager, "x", &term), VORN_UNKNOWN_NAME, "'x'");
  OK(vorn_solver_destroy(solver));
}

int main(void) {
  vorn_manager* manager;
  STATUS(vorn_manager_create(true, &manager), VORN_OK);
  test_terms(manager);
  test_scripts(manager);
  STATUS(vorn_manager_destroy(manager), VORN_OK);
  return check_end();
}
