// The encoders: encodings and constraints, definitions, retraction, labels.
#include "tests/c/check.h"

static vorn_term* constant(vorn_manager* manager, const char* name, const vorn_sort* sort) {
  vorn_term* result;
  OK(vorn_declare_constant(manager, name, sort, &result));
  return result;
}

// What the encodings say is decided by a solver over the target.
static void test_two_managers(vorn_encoder_kind kind) {
  vorn_manager *manager, *target;
  STATUS(vorn_manager_create(true, &manager), VORN_OK);
  STATUS(vorn_manager_create(true, &target), VORN_OK);
  const vorn_sort* half;
  OK(vorn_get_fp_sort(manager, 5, 11, &half));
  vorn_term *x = constant(manager, "x", half), *y = constant(manager, "y", half);
  vorn_encoder* encoder;
  OK(vorn_encoder_create(manager, target, kind, &encoder));
  FAILS(vorn_manager_destroy(manager), VORN_WRONG_STATE, "encoders 1");
  STATUS(vorn_manager_destroy(target), VORN_WRONG_STATE);

  vorn_term *atom, *encoding, *bits, *cached;
  vorn_term_list constraints;
  OK(vorn_make_fp_lt(manager, x, y, &atom));
  OK(vorn_encoder_get_cached(encoder, atom, &cached));
  CHECK(cached == NULL);
  OK(vorn_encoder_encode(encoder, atom, &encoding, &constraints));
  CHECK(constraints.count == 2);
  OK(vorn_encoder_get_cached(encoder, atom, &cached));
  CHECK(cached == encoding);
  OK(vorn_encoder_get_cached(encoder, x, &bits));

  vorn_solver* solver;
  STATUS(vorn_solver_create(target, &solver), VORN_OK);
  for (size_t i = 0; i < constraints.count; ++i)
    STATUS(vorn_solver_assert(solver, constraints.items[i]), VORN_OK);
  STATUS(vorn_solver_assert(solver, encoding), VORN_OK);
  vorn_answer answer = VORN_UNKNOWN;
  STATUS(vorn_solver_check(solver, NULL, 0, &answer), VORN_OK);
  CHECK(answer == VORN_SAT);
  vorn_term *infinity, *is_infinity;
  STATUS(vorn_make_bv_uint64(target, 16, 0x7c00, &infinity), VORN_OK);
  STATUS(vorn_make_equal(target, bits, infinity, &is_infinity), VORN_OK);
  STATUS(vorn_solver_check(solver, &is_infinity, 1, &answer), VORN_OK);
  CHECK(answer == VORN_UNSAT);
  STATUS(vorn_solver_destroy(solver), VORN_OK);

  STATUS(vorn_release_list(manager, &constraints), VORN_FOREIGN_HANDLE);
  STATUS(vorn_release_list(target, &constraints), VORN_OK);
  FAILS(vorn_encoder_encode(encoder, encoding, &cached, &constraints), VORN_FOREIGN_HANDLE,
        "another manager");
  CHECK(cached == NULL && constraints.items == NULL);
  OK(vorn_encoder_retract(encoder, atom));
  OK(vorn_encoder_get_cached(encoder, x, &cached));
  CHECK(cached == NULL);
  OK(vorn_encoder_destroy(encoder));
  FAILS(vorn_encoder_retract(encoder, atom), VORN_RELEASED_HANDLE, "destroyed");
  OK(vorn_manager_destroy(manager));
  STATUS(vorn_manager_destroy(target), VORN_OK);
}

static void test_definitions(vorn_manager* manager, vorn_encoder* encoder) {
  const vorn_sort *half, *boolean, *bits;
  OK(vorn_get_fp_sort(manager, 5, 11, &half));
  OK(vorn_get_bool_sort(manager, &boolean));
  OK(vorn_get_bv_sort(manager, 16, &bits));
  vorn_term *c = constant(manager, "c", boolean), *a = constant(manager, "a", half);
  vorn_term *b = constant(manager, "b", half), *v = constant(manager, "v", bits);
  vorn_term *choice, *atom, *encoding, *defined, *rm, *number;
  vorn_term_list list;
  OK(vorn_make_ite(manager, c, a, b, &choice));
  OK(vorn_make_fp_isnan(manager, choice, &atom));
  FAILS(vorn_encoder_encode(encoder, atom, &encoding, &list), VORN_INVALID_ARGUMENT,
        "define_encoding");
  OK(vorn_make_bv_uint64(manager, 16, 0x3c00, &number));
  FAILS(vorn_encoder_define(encoder, choice, c), VORN_INVALID_ARGUMENT, "(_ BitVec 16)");
  OK(vorn_encoder_define(encoder, choice, number));
  FAILS(vorn_encoder_define(encoder, choice, number), VORN_INVALID_ARGUMENT, "has an encoding");
  OK(vorn_encoder_encode(encoder, atom, &encoding, &list));
  bool truth = true;
  OK(vorn_value_get_bool(manager, encoding, &truth));
  CHECK(!truth && list.count == 0);
  FAILS(vorn_encoder_encode(encoder, c, &encoding, &list), VORN_INVALID_ARGUMENT, "atom");

  OK(vorn_encoder_take_bv_terms(encoder, &list));
  CHECK(list.count == 0);
  OK(vorn_make_rounding_mode(manager, VORN_RNE, &rm));
  OK(vorn_make_fp_from_sbv(manager, 5, 11, rm, v, &atom));
  OK(vorn_encoder_encode(encoder, atom, &encoding, &list));
  OK(vorn_release_list(manager, &list));
  OK(vorn_encoder_take_bv_terms(encoder, &list));
  CHECK(list.count == 1 && list.items[0] == v);
  OK(vorn_release_list(manager, &list));
  OK(vorn_encoder_get_cached(encoder, v, &defined));
  CHECK(defined != NULL && defined != v);

  bool known = false;
  OK(vorn_encoder_supports(encoder, VORN_FP_FMA, &known));
  CHECK(known);
  OK(vorn_encoder_supports(encoder, VORN_BV_ADD, &known));
  CHECK(!known);
  OK(vorn_make_fp_to_sbv(manager, 8, rm, a, &atom));
  FAILS(vorn_encoder_get_choice(encoder, atom, &defined), VORN_WRONG_STATE, "not been encoded");
  OK(vorn_encoder_encode(encoder, atom, &encoding, &list));
  OK(vorn_release_list(manager, &list));
  OK(vorn_encoder_get_choice(encoder, atom, &defined));
  CHECK(defined != NULL);
  OK(vorn_encoder_get_choice(encoder, a, &defined));
  CHECK(defined == NULL);

  OK(vorn_encoder_set_free_constants(encoder, true));
  OK(vorn_make_ite(manager, c, b, a, &choice));
  OK(vorn_encoder_encode(encoder, choice, &encoding, &list));
  CHECK(encoding != NULL);
  OK(vorn_release_list(manager, &list));
}

static void test_labels(vorn_manager* manager) {
  vorn_encoder* encoder;
  OK(vorn_encoder_create(manager, manager, VORN_ENCODER_IEEE, &encoder));
  OK(vorn_encoder_set_debug(encoder, true));
  vorn_term *p, *q, *rm, *sum, *encoding;
  const vorn_sort* half;
  OK(vorn_get_fp_sort(manager, 5, 11, &half));
  p = constant(manager, "p", half);
  q = constant(manager, "q", half);
  OK(vorn_make_rounding_mode(manager, VORN_RNE, &rm));
  OK(vorn_make_fp_add(manager, rm, p, q, &sum));
  vorn_term_list constraints;
  OK(vorn_encoder_encode(encoder, sum, &encoding, &constraints));
  vorn_tie_list ties;
  OK(vorn_encoder_find_ties(encoder, constraints.items, constraints.count, &ties));
  CHECK(ties.count > 10);
  bool has_distance = false;
  for (size_t i = 0; i < ties.count; ++i) {
    const vorn_tie* tie = &ties.items[i];
    CHECK(tie->occurrence >= 1 && tie->constant != NULL && tie->value != NULL);
    CHECK(strcmp(tie->stage, "") != 0 && strcmp(tie->reading, "") != 0);
    char* name = NULL;
    OK(vorn_term_get_name(manager, tie->constant, &name));
    CHECK(strncmp(name, tie->label, strlen(tie->label)) == 0);
    vorn_free_string(name);
    has_distance = has_distance || strcmp(tie->label, "add_distance") == 0;
  }
  CHECK(has_distance);
  OK(vorn_release_ties(encoder, &ties));
  CHECK(ties.items == NULL && ties.count == 0);
  OK(vorn_encoder_find_ties(encoder, NULL, 0, &ties));
  CHECK(ties.count == 0);
  OK(vorn_release_list(manager, &constraints));
  OK(vorn_encoder_destroy(encoder));
}

int main(void) {
  test_two_managers(VORN_ENCODER_IEEE);
  test_two_managers(VORN_ENCODER_BASE);
  vorn_manager* manager;
  vorn_encoder* encoder;
  STATUS(vorn_manager_create(true, &manager), VORN_OK);
  OK(vorn_encoder_create(manager, manager, VORN_ENCODER_IEEE, &encoder));
  test_definitions(manager, encoder);
  OK(vorn_encoder_destroy(encoder));
  test_labels(manager);
  FAILS(vorn_encoder_create(manager, manager, (vorn_encoder_kind)7, &encoder),
        VORN_INVALID_ARGUMENT, "encoder 7");
  FAILS(vorn_encoder_create(manager, NULL, VORN_ENCODER_IEEE, &encoder), VORN_NULL_POINTER,
        "build in");
  STATUS(vorn_manager_destroy(manager), VORN_OK);
  return check_end();
}
