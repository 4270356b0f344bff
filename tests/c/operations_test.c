// The operations by name: each is what vorn_make makes of its kind, on the arguments in their
// order.
#include "tests/c/check.h"

typedef vorn_status unary(vorn_manager*, vorn_term*, vorn_term**);
typedef vorn_status binary(vorn_manager*, vorn_term*, vorn_term*, vorn_term**);
typedef vorn_status ternary(vorn_manager*, vorn_term*, vorn_term*, vorn_term*, vorn_term**);

// Constants of each sort that operations take.
typedef struct operands {
  vorn_term *p, *q, *v, *w, *x, *y, *z, *rm, *array;
} operands;

static operands declare(vorn_manager* manager) {
  const vorn_sort *boolean, *bits, *single, *mode, *array;
  OK(vorn_get_bool_sort(manager, &boolean));
  OK(vorn_get_bv_sort(manager, 32, &bits));
  OK(vorn_get_fp_sort(manager, 8, 24, &single));
  OK(vorn_get_rounding_mode_sort(manager, &mode));
  OK(vorn_get_array_sort(manager, bits, single, &array));
  operands all;
  OK(vorn_declare_constant(manager, "p", boolean, &all.p));
  OK(vorn_declare_constant(manager, "q", boolean, &all.q));
  OK(vorn_declare_constant(manager, "v", bits, &all.v));
  OK(vorn_declare_constant(manager, "w", bits, &all.w));
  OK(vorn_declare_constant(manager, "x", single, &all.x));
  OK(vorn_declare_constant(manager, "y", single, &all.y));
  OK(vorn_declare_constant(manager, "z", single, &all.z));
  OK(vorn_declare_constant(manager, "rm", mode, &all.rm));
  OK(vorn_declare_constant(manager, "array", array, &all.array));
  return all;
}

// Without rewriting the term has the shape that was asked for, derived kinds aside.
static void check_made(vorn_manager* manager, vorn_term* made, vorn_kind kind,
                       const size_t* indices, size_t index_count, vorn_term** arguments,
                       size_t count) {
  vorn_term* wanted;
  OK(vorn_make(manager, kind, indices, index_count, arguments, count, &wanted));
  CHECK(made == wanted);
  if (kind >= VORN_DISTINCT) return;
  vorn_kind got = VORN_LEAF;
  OK(vorn_term_get_kind(manager, made, &got));
  CHECK(got == kind);
  size_t got_indices[2], got_count = 9;
  OK(vorn_term_get_indices(manager, made, got_indices, &got_count));
  CHECK(got_count == index_count);
  for (size_t i = 0; i < index_count; ++i)
    CHECK(got_indices[i] == indices[i]);
  for (size_t i = 0; i < count; ++i) {
    vorn_term* argument;
    OK(vorn_term_get_argument(manager, made, i, &argument));
    CHECK(argument == arguments[i]);
  }
}

static void test_unary(vorn_manager* manager, const operands* of) {
  static const struct {
    unary* make;
    vorn_kind kind;
  } rows[] = {
      {vorn_make_not, VORN_NOT},
      {vorn_make_bv_not, VORN_BV_NOT},
      {vorn_make_bv_neg, VORN_BV_NEG},
      {vorn_make_fp_neg, VORN_FP_NEG},
      {vorn_make_fp_abs, VORN_FP_ABS},
      {vorn_make_fp_isnan, VORN_FP_ISNAN},
      {vorn_make_fp_isinf, VORN_FP_ISINF},
      {vorn_make_fp_iszero, VORN_FP_ISZERO},
      {vorn_make_fp_isnormal, VORN_FP_ISNORMAL},
      {vorn_make_fp_issubnormal, VORN_FP_ISSUBNORMAL},
      {vorn_make_fp_isnegative, VORN_FP_ISNEGATIVE},
      {vorn_make_fp_ispositive, VORN_FP_ISPOSITIVE},
      {vorn_make_fp_to_bits, VORN_FP_TO_BITS},
  };
  for (size_t i = 0; i < sizeof rows / sizeof *rows; ++i) {
    vorn_term* made;
    const char* name = NULL;
    OK(vorn_kind_get_name(manager, rows[i].kind, &name));
    const bool is_fp = strncmp(name, "fp.", 3) == 0;
    vorn_term* operand = is_fp ? of->x : name[0] == 'b' ? of->v : of->p;
    OK(rows[i].make(manager, operand, &made));
    check_made(manager, made, rows[i].kind, NULL, 0, &operand, 1);
  }
}

static void test_connectives(vorn_manager* manager, const operands* of) {
  static const struct {
    binary* make;
    vorn_kind kind;
  } rows[] = {
      {vorn_make_and, VORN_AND},
      {vorn_make_or, VORN_OR},
      {vorn_make_xor, VORN_XOR},
      {vorn_make_implies, VORN_IMPLIES},
  };
  for (size_t i = 0; i < sizeof rows / sizeof *rows; ++i) {
    vorn_term* made;
    vorn_term* arguments[] = {of->p, of->q};
    OK(rows[i].make(manager, of->p, of->q, &made));
    check_made(manager, made, rows[i].kind, NULL, 0, arguments, 2);
  }
}

static void test_bit_vectors(vorn_manager* manager, const operands* of) {
  static const struct {
    binary* make;
    vorn_kind kind;
  } rows[] = {
      {vorn_make_bv_concat, VORN_BV_CONCAT}, {vorn_make_bv_and, VORN_BV_AND},
      {vorn_make_bv_or, VORN_BV_OR},         {vorn_make_bv_xor, VORN_BV_XOR},
      {vorn_make_bv_add, VORN_BV_ADD},       {vorn_make_bv_sub, VORN_BV_SUB},
      {vorn_make_bv_mul, VORN_BV_MUL},       {vorn_make_bv_udiv, VORN_BV_UDIV},
      {vorn_make_bv_urem, VORN_BV_UREM},     {vorn_make_bv_sdiv, VORN_BV_SDIV},
      {vorn_make_bv_srem, VORN_BV_SREM},     {vorn_make_bv_smod, VORN_BV_SMOD},
      {vorn_make_bv_shl, VORN_BV_SHL},       {vorn_make_bv_lshr, VORN_BV_LSHR},
      {vorn_make_bv_ashr, VORN_BV_ASHR},     {vorn_make_bv_ult, VORN_BV_ULT},
      {vorn_make_bv_ule, VORN_BV_ULE},       {vorn_make_bv_ugt, VORN_BV_UGT},
      {vorn_make_bv_uge, VORN_BV_UGE},       {vorn_make_bv_slt, VORN_BV_SLT},
      {vorn_make_bv_sle, VORN_BV_SLE},       {vorn_make_bv_sgt, VORN_BV_SGT},
      {vorn_make_bv_sge, VORN_BV_SGE},
  };
  for (size_t i = 0; i < sizeof rows / sizeof *rows; ++i) {
    vorn_term* made;
    vorn_term* arguments[] = {of->v, of->w};
    OK(rows[i].make(manager, of->v, of->w, &made));
    check_made(manager, made, rows[i].kind, NULL, 0, arguments, 2);
  }
}

static void test_floats(vorn_manager* manager, const operands* of) {
  static const struct {
    binary* make;
    vorn_kind kind;
  } rows[] = {
      {vorn_make_fp_rem, VORN_FP_REM}, {vorn_make_fp_min, VORN_FP_MIN},
      {vorn_make_fp_max, VORN_FP_MAX}, {vorn_make_fp_equal, VORN_FP_EQUAL},
      {vorn_make_fp_lt, VORN_FP_LT},   {vorn_make_fp_le, VORN_FP_LE},
      {vorn_make_fp_gt, VORN_FP_GT},   {vorn_make_fp_ge, VORN_FP_GE},
      {vorn_make_equal, VORN_EQUAL},   {vorn_make_distinct, VORN_DISTINCT},
  };
  for (size_t i = 0; i < sizeof rows / sizeof *rows; ++i) {
    vorn_term* made;
    vorn_term* arguments[] = {of->x, of->y};
    OK(rows[i].make(manager, of->x, of->y, &made));
    check_made(manager, made, rows[i].kind, NULL, 0, arguments, 2);
  }
}

static void test_rounded(vorn_manager* manager, const operands* of) {
  static const struct {
    ternary* make;
    vorn_kind kind;
  } rows[] = {
      {vorn_make_fp_add, VORN_FP_ADD},
      {vorn_make_fp_sub, VORN_FP_SUB},
      {vorn_make_fp_mul, VORN_FP_MUL},
      {vorn_make_fp_div, VORN_FP_DIV},
  };
  for (size_t i = 0; i < sizeof rows / sizeof *rows; ++i) {
    vorn_term* made;
    vorn_term* arguments[] = {of->rm, of->x, of->y};
    OK(rows[i].make(manager, of->rm, of->x, of->y, &made));
    check_made(manager, made, rows[i].kind, NULL, 0, arguments, 3);
  }
}

static void test_others(vorn_manager* manager, const operands* of) {
  vorn_term *made, *rounded[] = {of->rm, of->x, of->y, of->z}, *integer[] = {of->rm, of->v};
  OK(vorn_make_fp_sqrt(manager, of->rm, of->x, &made));
  check_made(manager, made, VORN_FP_SQRT, NULL, 0, rounded, 2);
  OK(vorn_make_fp_round_to_integral(manager, of->rm, of->x, &made));
  check_made(manager, made, VORN_FP_ROUND_TO_INTEGRAL, NULL, 0, rounded, 2);
  OK(vorn_make_fp_fma(manager, of->rm, of->x, of->y, of->z, &made));
  check_made(manager, made, VORN_FP_FMA, NULL, 0, rounded, 4);

  const size_t format[] = {5, 11}, same[] = {8, 24}, part[] = {9, 3}, width[] = {7};
  OK(vorn_make_fp_cast(manager, 5, 11, of->rm, of->x, &made));
  check_made(manager, made, VORN_FP_CAST, format, 2, rounded, 2);
  OK(vorn_make_fp_from_sbv(manager, 5, 11, of->rm, of->v, &made));
  check_made(manager, made, VORN_FP_FROM_SBV, format, 2, integer, 2);
  OK(vorn_make_fp_from_ubv(manager, 5, 11, of->rm, of->v, &made));
  check_made(manager, made, VORN_FP_FROM_UBV, format, 2, integer, 2);
  OK(vorn_make_fp_to_sbv(manager, 7, of->rm, of->x, &made));
  check_made(manager, made, VORN_FP_TO_SBV, width, 1, rounded, 2);
  OK(vorn_make_fp_to_ubv(manager, 7, of->rm, of->x, &made));
  check_made(manager, made, VORN_FP_TO_UBV, width, 1, rounded, 2);
  vorn_term* bits = of->v;
  OK(vorn_make_fp_from_bits(manager, 8, 24, bits, &made));
  check_made(manager, made, VORN_FP_FROM_BITS, same, 2, &bits, 1);
  OK(vorn_make_bv_extract(manager, 9, 3, bits, &made));
  check_made(manager, made, VORN_BV_EXTRACT, part, 2, &bits, 1);
  OK(vorn_make_bv_zero_extend(manager, 7, bits, &made));
  check_made(manager, made, VORN_BV_ZERO_EXTEND, width, 1, &bits, 1);
  OK(vorn_make_bv_sign_extend(manager, 7, bits, &made));
  check_made(manager, made, VORN_BV_SIGN_EXTEND, width, 1, &bits, 1);

  vorn_term *choice[] = {of->p, of->x, of->y}, *access[] = {of->array, of->v, of->x};
  OK(vorn_make_ite(manager, of->p, of->x, of->y, &made));
  check_made(manager, made, VORN_ITE, NULL, 0, choice, 3);
  OK(vorn_make_select(manager, of->array, of->v, &made));
  check_made(manager, made, VORN_SELECT, NULL, 0, access, 2);
  OK(vorn_make_store(manager, of->array, of->v, of->x, &made));
  check_made(manager, made, VORN_STORE, NULL, 0, access, 3);
}

static void test_errors(vorn_manager* manager, const operands* of) {
  vorn_term* made;
  FAILS(vorn_make_fp_add(manager, of->x, of->x, of->y, &made), VORN_INVALID_ARGUMENT,
        "vorn_make_fp_add: fp.add: expected a rounding mode, got a term of (_ FloatingPoint 8 24)");
  CHECK(made == NULL);
  FAILS(vorn_make_bv_add(manager, of->v, of->x, &made), VORN_INVALID_ARGUMENT, "bvadd");
  FAILS(vorn_make_bv_extract(manager, 32, 0, of->v, &made), VORN_INVALID_ARGUMENT,
        "bits 32 down to 0 of a bit-vector of width 32");
  FAILS(vorn_make_bv_zero_extend(manager, SIZE_MAX, of->v, &made), VORN_INVALID_ARGUMENT,
        "widths go up to 1048576");
  FAILS(vorn_make_fp_cast(manager, 5, 0, of->rm, of->x, &made), VORN_INVALID_ARGUMENT,
        "significand of 0 bits");
  FAILS(vorn_make_fp_cast(manager, SIZE_MAX, SIZE_MAX, of->rm, of->x, &made), VORN_INVALID_ARGUMENT,
        "exponent width");
  FAILS(vorn_make_fp_from_bits(manager, 8, 25, of->v, &made), VORN_INVALID_ARGUMENT,
        "width 32 is no (_ FloatingPoint 8 25)");
  FAILS(vorn_make_select(manager, of->array, of->x, &made), VORN_INVALID_ARGUMENT,
        "the index must be of (_ BitVec 32)");
  FAILS(vorn_make(manager, VORN_FP_ADD, NULL, 0, NULL, 0, &made), VORN_INVALID_ARGUMENT,
        "fp.add takes 3 arguments, got 0");
  FAILS(vorn_make(manager, VORN_FP_ADD, NULL, 0, NULL, 3, &made), VORN_NULL_POINTER, "list");
  FAILS(vorn_make(manager, (vorn_kind)99999, NULL, 0, NULL, 0, &made), VORN_INVALID_ARGUMENT,
        "99999");
}

int main(void) {
  vorn_manager* manager;
  STATUS(vorn_manager_create(false, &manager), VORN_OK);
  const operands all = declare(manager);
  test_unary(manager, &all);
  test_connectives(manager, &all);
  test_bit_vectors(manager, &all);
  test_floats(manager, &all);
  test_rounded(manager, &all);
  test_others(manager, &all);
  test_errors(manager, &all);
  STATUS(vorn_manager_destroy(manager), VORN_OK);
  return check_end();
}
