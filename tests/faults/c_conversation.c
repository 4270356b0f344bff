#include "tests/faults/c_conversation.h"

#include <stdio.h>
#include <string.h>

#include "vorn/c/vorn.h"

static int failures;
static bool expects_all;  // memory comes back, so everything has to be right

static void expect(bool holds, const char* what) {
  if (holds || !expects_all) return;
  ++failures;
  fprintf(stderr, "failed: %s\n", what);
}

// A call that lacks memory has had no effect, so that it can be made again.
#define DO(call)                                       \
  do {                                                 \
    vorn_status status = (call);                       \
    if (status == VORN_OUT_OF_MEMORY) status = (call); \
    expect(status == VORN_OK, #call);                  \
  } while (0)

static vorn_answer check(vorn_solver* solver) {
  vorn_answer answer = VORN_UNKNOWN;
  DO(vorn_solver_check(solver, NULL, 0, &answer));
  if (answer == VORN_UNKNOWN) {
    char* reason = NULL;
    DO(vorn_solver_get_reason_unknown(solver, &reason));
    expect(reason != NULL && strcmp(reason, "memout") == 0, "the reason is memout");
    vorn_free_string(reason);
    DO(vorn_solver_check(solver, NULL, 0, &answer));
  }
  return answer;
}

static void decide(vorn_manager* manager) {
  const vorn_sort* half = NULL;
  vorn_term *x = NULL, *y = NULL, *formula = NULL, *wrong = NULL, *value = NULL;
  vorn_solver* solver = NULL;
  vorn_term_list core = {NULL, 0};
  char* text = NULL;
  DO(vorn_get_fp_sort(manager, 5, 11, &half));
  DO(vorn_declare_constant(manager, "x", half, &x));
  DO(vorn_declare_constant(manager, "y", half, &y));
  DO(vorn_read_term(manager, "(= (fp.add RNE x ((_ to_fp 5 11) RNE 1.5)) ((_ to_fp 5 11) RNE 4.0))",
                    &formula));
  DO(vorn_make_distinct(manager, y, x, &wrong));
  DO(vorn_solver_create(manager, &solver));
  DO(vorn_solver_set_option(solver, "local-search", "false"));
  DO(vorn_solver_assert(solver, formula));
  DO(vorn_solver_push(solver));
  expect(check(solver) == VORN_SAT, "there is a model");
  DO(vorn_solver_get_value(solver, x, &value));
  DO(vorn_value_get_decimal(manager, value, &text));
  expect(text != NULL && strcmp(text, "2.5") == 0, "the value is 2.5");
  vorn_free_string(text);
  DO(vorn_make_equal(manager, y, x, &formula));
  DO(vorn_solver_assert_tracked(solver, formula));
  DO(vorn_solver_assert_tracked(solver, wrong));
  expect(check(solver) == VORN_UNSAT, "there is no model");
  DO(vorn_solver_get_unsat_core(solver, &core));
  expect(core.count == 2, "the core has two assertions");
  DO(vorn_release_list(manager, &core));
  DO(vorn_solver_pop(solver));
  DO(vorn_manager_collect(manager));
  expect(check(solver) == VORN_SAT, "there is a model again");
  DO(vorn_solver_destroy(solver));
}

static void encode(vorn_manager* manager) {
  vorn_term *product = NULL, *encoding = NULL;
  vorn_encoder* encoder = NULL;
  vorn_term_list constraints = {NULL, 0};
  vorn_tie_list ties = {NULL, 0};
  char* text = NULL;
  DO(vorn_read_term(manager, "(fp.mul RNE x y)", &product));
  DO(vorn_encoder_create(manager, manager, VORN_ENCODER_IEEE, &encoder));
  DO(vorn_encoder_set_debug(encoder, true));
  DO(vorn_encoder_encode(encoder, product, &encoding, &constraints));
  expect(constraints.count > 2, "there are constraints");
  DO(vorn_encoder_find_ties(encoder, constraints.items, constraints.count, &ties));
  expect(ties.count > 2, "there are ties");
  DO(vorn_write_script(manager, constraints.items, constraints.count, &text));
  expect(text != NULL && strstr(text, "declare-const") != NULL, "there is a script");
  vorn_free_string(text);
  DO(vorn_release_ties(encoder, &ties));
  DO(vorn_release_list(manager, &constraints));
  DO(vorn_encoder_destroy(encoder));
}

static void use_names(vorn_manager* manager) {
  const vorn_sort *object = NULL, *array = NULL, *bits = NULL;
  vorn_function *f = NULL, *found = NULL;
  vorn_term *element = NULL, *applied = NULL, *number = NULL, *all = NULL;
  char* text = NULL;
  DO(vorn_push_names(manager));
  DO(vorn_get_uninterpreted_sort(manager, "Object", NULL, 0, &object));
  DO(vorn_get_bv_sort(manager, 100, &bits));
  DO(vorn_get_array_sort(manager, object, bits, &array));
  DO(vorn_declare_function(manager, "f", &object, 1, bits, &f));
  DO(vorn_make_element(manager, object, 2, &element));
  DO(vorn_apply(manager, f, &element, 1, &applied));
  DO(vorn_term_get_function(manager, applied, &found));
  expect(f == found, "the function is the same");
  DO(vorn_make_bv_decimal(manager, 100, "1267650600228229401496703205375", &number));
  DO(vorn_make_const_array(manager, array, number, &all));
  DO(vorn_value_get_binary(manager, number, &text));
  expect(text != NULL && strlen(text) == 100, "the number has 100 bits");
  vorn_free_string(text);
  DO(vorn_pop_names(manager));
}

int hold_c_conversation(int is_lasting) {
  failures = 0;
  expects_all = is_lasting == 0;
  vorn_manager* manager = NULL;
  DO(vorn_manager_create(true, &manager));
  decide(manager);
  encode(manager);
  use_names(manager);
  if (manager != NULL) {
    // To give back takes no memory.
    expects_all = true;
    expect(vorn_manager_destroy(manager) == VORN_OK, "the manager is destroyed");
  }
  return failures == 0 ? 0 : 1;
}
