// Managers, sorts, names, operations of any kind, and what terms are made of.
#include "tests/c/check.h"

static void test_sorts(vorn_manager* manager) {
  const vorn_sort *boolean, *mode, *bits, *again, *single, *array, *index, *element;
  OK(vorn_get_bool_sort(manager, &boolean));
  OK(vorn_get_rounding_mode_sort(manager, &mode));
  OK(vorn_get_bv_sort(manager, 8, &bits));
  OK(vorn_get_bv_sort(manager, 8, &again));
  CHECK(bits == again);
  OK(vorn_get_fp_sort(manager, 8, 24, &single));
  OK(vorn_get_array_sort(manager, bits, single, &array));

  vorn_sort_kind kind = VORN_SORT_BOOL;
  OK(vorn_sort_get_kind(manager, single, &kind));
  CHECK(kind == VORN_SORT_FLOAT);
  OK(vorn_sort_get_kind(manager, array, &kind));
  CHECK(kind == VORN_SORT_ARRAY);
  size_t width = 0, eb = 0, sb = 0;
  OK(vorn_sort_get_width(manager, bits, &width));
  CHECK(width == 8);
  OK(vorn_sort_get_format(manager, single, &eb, &sb));
  CHECK(eb == 8 && sb == 24);
  OK(vorn_sort_get_array(manager, array, &index, &element));
  CHECK(index == bits && element == single);

  char* text = NULL;
  TEXT(vorn_sort_to_string(manager, boolean, &text), "Bool");
  TEXT(vorn_sort_to_string(manager, mode, &text), "RoundingMode");
  TEXT(vorn_sort_to_string(manager, array, &text), "(Array (_ BitVec 8) (_ FloatingPoint 8 24))");

  const vorn_sort *pair, *same, *argument;
  const vorn_sort* arguments[] = {bits, single};
  OK(vorn_get_uninterpreted_sort(manager, "Pair", arguments, 2, &pair));
  OK(vorn_get_uninterpreted_sort(manager, "Pair", arguments, 2, &same));
  CHECK(pair == same);
  size_t count = 0;
  TEXT(vorn_sort_get_name(manager, pair, &text, &count), "Pair");
  CHECK(count == 2);
  OK(vorn_sort_get_argument(manager, pair, 1, &argument));
  CHECK(argument == single);
  FAILS(vorn_sort_get_argument(manager, pair, 2, &argument), VORN_INVALID_ARGUMENT, "position 2");
  CHECK(argument == NULL);
  FAILS(vorn_get_uninterpreted_sort(manager, "Pair", arguments, 1, &same), VORN_INVALID_ARGUMENT,
        "declared with 2");
  FAILS(vorn_get_uninterpreted_sort(manager, "Bool", NULL, 0, &same), VORN_INVALID_ARGUMENT,
        "'Bool'");
}

static void test_names(vorn_manager* manager) {
  const vorn_sort* single;
  OK(vorn_get_fp_sort(manager, 8, 24, &single));
  vorn_term *x, *found, *fresh, *applied;
  vorn_function *f, *found_function;
  OK(vorn_declare_constant(manager, "x", single, &x));
  OK(vorn_find_constant(manager, "x", &found));
  CHECK(x == found);
  OK(vorn_make_fresh_constant(manager, "x", single, &fresh));
  CHECK(x != fresh);
  char* text = NULL;
  TEXT(vorn_term_get_name(manager, fresh, &text), "x!1");
  FAILS(vorn_declare_constant(manager, "x", single, &found), VORN_INVALID_ARGUMENT,
        "already declared");
  FAILS(vorn_declare_constant(manager, "fp.add", single, &found), VORN_INVALID_ARGUMENT,
        "symbol of the theory");
  FAILS(vorn_declare_constant(manager, "a|b", single, &found), VORN_INVALID_ARGUMENT, "bar");
  FAILS(vorn_find_constant(manager, "y", &found), VORN_UNKNOWN_NAME, "'y'");

  OK(vorn_declare_function(manager, "f", &single, 1, single, &f));
  OK(vorn_find_function(manager, "f", &found_function));
  CHECK(f == found_function);
  OK(vorn_function_release(manager, found_function));
  FAILS(vorn_find_function(manager, "x", &found_function), VORN_UNKNOWN_NAME, "function");
  FAILS(vorn_find_constant(manager, "f", &found), VORN_UNKNOWN_NAME, "constant");
  FAILS(vorn_declare_function(manager, "g", NULL, 0, single, &found_function),
        VORN_INVALID_ARGUMENT, "arguments");
  OK(vorn_apply(manager, f, &x, 1, &applied));
  TEXT(vorn_term_to_string(manager, applied, &text), "(f x)");
  TEXT(vorn_term_get_name(manager, applied, &text), "f");
  FAILS(vorn_apply(manager, f, NULL, 0, &found), VORN_INVALID_ARGUMENT, "takes 1 argument");
  OK(vorn_term_get_function(manager, applied, &found_function));
  CHECK(f == found_function);
  FAILS(vorn_term_get_function(manager, x, &found_function), VORN_INVALID_ARGUMENT, "function");

  vorn_term* inner;
  OK(vorn_push_names(manager));
  OK(vorn_declare_constant(manager, "inner", single, &inner));
  OK(vorn_pop_names(manager));
  FAILS(vorn_find_constant(manager, "inner", &found), VORN_UNKNOWN_NAME, "'inner'");
  TEXT(vorn_term_to_string(manager, inner, &text), "inner");
  FAILS(vorn_pop_names(manager), VORN_WRONG_STATE, "level");
}

static void test_kinds(vorn_manager* manager) {
  const char* name = NULL;
  OK(vorn_kind_get_name(manager, VORN_FP_FMA, &name));
  CHECK(name != NULL && strcmp(name, "fp.fma") == 0);
  FAILS(vorn_kind_get_name(manager, VORN_LEAF, &name), VORN_INVALID_ARGUMENT, "kind 0");
  CHECK(name == NULL);
  FAILS(vorn_kind_get_name(manager, (vorn_kind)200, &name), VORN_INVALID_ARGUMENT, "kind 200");
  vorn_kind kind = VORN_LEAF;
  OK(vorn_find_kind(manager, "=", 0, &kind));
  CHECK(kind == VORN_EQUAL);
  OK(vorn_find_kind(manager, "to_fp", 0, &kind));
  CHECK(kind == VORN_FP_FROM_BITS);
  OK(vorn_find_kind(manager, "to_fp", 1, &kind));
  CHECK(kind == VORN_FP_CAST);
  OK(vorn_find_kind(manager, "to_fp", 2, &kind));
  CHECK(kind == VORN_FP_FROM_SBV);
  FAILS(vorn_find_kind(manager, "to_fp", 3, &kind), VORN_UNKNOWN_NAME, "to_fp");
  FAILS(vorn_find_kind(manager, "fp.sum", 0, &kind), VORN_UNKNOWN_NAME, "fp.sum");
  CHECK(kind == VORN_FP_FROM_SBV);
  size_t indices = 9, least = 9, most = 9;
  OK(vorn_kind_get_counts(manager, VORN_BV_EXTRACT, &indices, &least, &most));
  CHECK(indices == 2 && least == 1 && most == 1);
  OK(vorn_kind_get_counts(manager, VORN_AND, &indices, &least, &most));
  CHECK(indices == 0 && least == 1 && most == SIZE_MAX);
}

static void test_structure(vorn_manager* manager) {
  const vorn_sort *bits, *single, *sort, *array;
  OK(vorn_get_bv_sort(manager, 16, &bits));
  OK(vorn_get_fp_sort(manager, 8, 24, &single));
  OK(vorn_get_array_sort(manager, bits, single, &array));
  vorn_term *rm, *v, *converted, *again, *argument;
  OK(vorn_make_rounding_mode(manager, VORN_RTZ, &rm));
  OK(vorn_declare_constant(manager, "v", bits, &v));
  const size_t format[] = {8, 24};
  vorn_term* arguments[] = {rm, v};
  OK(vorn_make(manager, VORN_FP_FROM_SBV, format, 2, arguments, 2, &converted));

  vorn_kind kind = VORN_LEAF;
  OK(vorn_term_get_kind(manager, converted, &kind));
  CHECK(kind == VORN_FP_FROM_SBV);
  OK(vorn_term_get_sort(manager, converted, &sort));
  CHECK(sort == single);
  size_t count = 0, indices[2] = {0, 0};
  OK(vorn_term_count_arguments(manager, converted, &count));
  CHECK(count == 2);
  OK(vorn_term_get_argument(manager, converted, 1, &argument));
  CHECK(argument == v);
  FAILS(vorn_term_get_argument(manager, converted, 2, &argument), VORN_INVALID_ARGUMENT,
        "position 2 of 2");
  OK(vorn_term_get_indices(manager, converted, indices, &count));
  CHECK(count == 2 && indices[0] == 8 && indices[1] == 24);
  OK(vorn_make(manager, kind, indices, count, arguments, 2, &again));
  CHECK(again == converted);
  char* text = NULL;
  TEXT(vorn_term_get_name(manager, converted, &text), "to_fp");
  TEXT(vorn_term_get_name(manager, rm, &text), "roundTowardZero");
  uint64_t id = 0, other = 0;
  OK(vorn_term_get_id(manager, v, &id));
  OK(vorn_term_get_id(manager, converted, &other));
  CHECK(id != other);

  bool is_literal = false;
  OK(vorn_term_is_literal(manager, rm, &is_literal));
  CHECK(is_literal);
  OK(vorn_term_is_literal(manager, v, &is_literal));
  CHECK(!is_literal);

  vorn_term *one, *all_one;
  OK(vorn_make_fp_int64(manager, single, VORN_RNE, 1, &one));
  OK(vorn_make_const_array(manager, array, one, &all_one));
  OK(vorn_term_get_kind(manager, all_one, &kind));
  CHECK(kind == VORN_CONST_ARRAY);
  FAILS(vorn_make_const_array(manager, single, one, &again), VORN_INVALID_ARGUMENT, "array sort");

  vorn_term *three[] = {v, v, v}, *sum;
  OK(vorn_make(manager, VORN_BV_ADD, NULL, 0, three, 3, &sum));
  TEXT(vorn_term_to_string(manager, sum, &text), "(bvadd v (bvadd v v))");
}

static void test_references(vorn_manager* manager) {
  const vorn_sort* bits;
  OK(vorn_get_bv_sort(manager, 24, &bits));
  vorn_term *a, *b, *sum, *same;
  OK(vorn_declare_constant(manager, "first", bits, &a));
  OK(vorn_declare_constant(manager, "second", bits, &b));
  OK(vorn_make_bv_mul(manager, a, b, &sum));
  OK(vorn_make_bv_mul(manager, a, b, &same));
  CHECK(sum == same);
  OK(vorn_term_retain(manager, sum));
  for (int i = 0; i < 2; ++i)
    OK(vorn_term_release(manager, sum));
  uint64_t before = 0, after = 0;
  OK(vorn_manager_collect(manager));
  OK(vorn_manager_count_terms(manager, &before));
  OK(vorn_term_release(manager, sum));
  FAILS(vorn_term_release(manager, sum), VORN_RELEASED_HANDLE, "released");
  FAILS(vorn_make_bv_not(manager, sum, &same), VORN_RELEASED_HANDLE, "argument 1 was released");
  OK(vorn_manager_collect(manager));
  OK(vorn_manager_count_terms(manager, &after));
  CHECK(after == before - 1);
  // Declared names hold what they stand for.
  OK(vorn_term_release(manager, a));
  OK(vorn_manager_collect(manager));
  OK(vorn_find_constant(manager, "first", &a));
  vorn_function* f;
  OK(vorn_declare_function(manager, "counted", &bits, 1, bits, &f));
  OK(vorn_function_retain(manager, f));
  OK(vorn_function_release(manager, f));
  OK(vorn_function_release(manager, f));
  FAILS(vorn_function_release(manager, f), VORN_RELEASED_HANDLE, "released");

  vorn_term_list list = {NULL, 0};
  OK(vorn_release_list(manager, &list));
  FAILS(vorn_release_list(manager, NULL), VORN_NULL_POINTER, "list");
}

static void test_shape(void) {
  vorn_manager* manager;
  STATUS(vorn_manager_create(false, &manager), VORN_OK);
  vorn_term *one, *sum;
  OK(vorn_make_bv_uint64(manager, 8, 1, &one));
  OK(vorn_make_bv_add(manager, one, one, &sum));
  char* text = NULL;
  TEXT(vorn_term_to_string(manager, sum, &text), "(bvadd #x01 #x01)");
  OK(vorn_manager_destroy(manager));
}

int main(void) {
  vorn_manager* manager;
  STATUS(vorn_manager_create(true, &manager), VORN_OK);
  CHECK(strcmp(vorn_version(), "") != 0);
  test_sorts(manager);
  test_names(manager);
  test_kinds(manager);
  test_structure(manager);
  test_references(manager);
  STATUS(vorn_manager_destroy(manager), VORN_OK);
  test_shape();
  return check_end();
}
