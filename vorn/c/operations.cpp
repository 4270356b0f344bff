// The operations by name: one row each, by how many arguments they have.
#include "vorn/c/operations.h"

#include <array>

#include "vorn/c/handles.h"
#include "vorn/c/operation.h"

using vorn::c::make;

namespace {

vorn_status apply(vorn_manager* manager, const char* function, vorn_kind kind,
                  std::initializer_list<std::size_t> indices,
                  std::initializer_list<vorn_term*> arguments, vorn_term** result) {
  return make(manager, function, kind, {indices.begin(), indices.size()},
              {arguments.begin(), arguments.size()}, result);
}

}  // namespace

// A row defines the function of the interface that makes operations of a kind.
#define VORN_ROW_1(name, kind)                                                \
  vorn_status name(vorn_manager* manager, vorn_term* a, vorn_term** result) { \
    return apply(manager, __func__, kind, {}, {a}, result);                   \
  }
#define VORN_ROW_2(name, kind)                                                              \
  vorn_status name(vorn_manager* manager, vorn_term* a, vorn_term* b, vorn_term** result) { \
    return apply(manager, __func__, kind, {}, {a, b}, result);                              \
  }
#define VORN_ROW_3(name, kind)                                                      \
  vorn_status name(vorn_manager* manager, vorn_term* a, vorn_term* b, vorn_term* c, \
                   vorn_term** result) {                                            \
    return apply(manager, __func__, kind, {}, {a, b, c}, result);                   \
  }

VORN_ROW_1(vorn_make_not, VORN_NOT)
VORN_ROW_1(vorn_make_bv_not, VORN_BV_NOT)
VORN_ROW_1(vorn_make_bv_neg, VORN_BV_NEG)
VORN_ROW_1(vorn_make_fp_neg, VORN_FP_NEG)
VORN_ROW_1(vorn_make_fp_abs, VORN_FP_ABS)
VORN_ROW_1(vorn_make_fp_isnan, VORN_FP_ISNAN)
VORN_ROW_1(vorn_make_fp_isinf, VORN_FP_ISINF)
VORN_ROW_1(vorn_make_fp_iszero, VORN_FP_ISZERO)
VORN_ROW_1(vorn_make_fp_isnormal, VORN_FP_ISNORMAL)
VORN_ROW_1(vorn_make_fp_issubnormal, VORN_FP_ISSUBNORMAL)
VORN_ROW_1(vorn_make_fp_isnegative, VORN_FP_ISNEGATIVE)
VORN_ROW_1(vorn_make_fp_ispositive, VORN_FP_ISPOSITIVE)
VORN_ROW_1(vorn_make_fp_to_bits, VORN_FP_TO_BITS)

VORN_ROW_2(vorn_make_and, VORN_AND)
VORN_ROW_2(vorn_make_or, VORN_OR)
VORN_ROW_2(vorn_make_xor, VORN_XOR)
VORN_ROW_2(vorn_make_implies, VORN_IMPLIES)
VORN_ROW_2(vorn_make_equal, VORN_EQUAL)
VORN_ROW_2(vorn_make_distinct, VORN_DISTINCT)
VORN_ROW_2(vorn_make_bv_concat, VORN_BV_CONCAT)
VORN_ROW_2(vorn_make_bv_and, VORN_BV_AND)
VORN_ROW_2(vorn_make_bv_or, VORN_BV_OR)
VORN_ROW_2(vorn_make_bv_xor, VORN_BV_XOR)
VORN_ROW_2(vorn_make_bv_add, VORN_BV_ADD)
VORN_ROW_2(vorn_make_bv_sub, VORN_BV_SUB)
VORN_ROW_2(vorn_make_bv_mul, VORN_BV_MUL)
VORN_ROW_2(vorn_make_bv_udiv, VORN_BV_UDIV)
VORN_ROW_2(vorn_make_bv_urem, VORN_BV_UREM)
VORN_ROW_2(vorn_make_bv_sdiv, VORN_BV_SDIV)
VORN_ROW_2(vorn_make_bv_srem, VORN_BV_SREM)
VORN_ROW_2(vorn_make_bv_smod, VORN_BV_SMOD)
VORN_ROW_2(vorn_make_bv_shl, VORN_BV_SHL)
VORN_ROW_2(vorn_make_bv_lshr, VORN_BV_LSHR)
VORN_ROW_2(vorn_make_bv_ashr, VORN_BV_ASHR)
VORN_ROW_2(vorn_make_bv_ult, VORN_BV_ULT)
VORN_ROW_2(vorn_make_bv_ule, VORN_BV_ULE)
VORN_ROW_2(vorn_make_bv_ugt, VORN_BV_UGT)
VORN_ROW_2(vorn_make_bv_uge, VORN_BV_UGE)
VORN_ROW_2(vorn_make_bv_slt, VORN_BV_SLT)
VORN_ROW_2(vorn_make_bv_sle, VORN_BV_SLE)
VORN_ROW_2(vorn_make_bv_sgt, VORN_BV_SGT)
VORN_ROW_2(vorn_make_bv_sge, VORN_BV_SGE)
VORN_ROW_2(vorn_make_fp_sqrt, VORN_FP_SQRT)
VORN_ROW_2(vorn_make_fp_round_to_integral, VORN_FP_ROUND_TO_INTEGRAL)
VORN_ROW_2(vorn_make_fp_rem, VORN_FP_REM)
VORN_ROW_2(vorn_make_fp_min, VORN_FP_MIN)
VORN_ROW_2(vorn_make_fp_max, VORN_FP_MAX)
VORN_ROW_2(vorn_make_fp_equal, VORN_FP_EQUAL)
VORN_ROW_2(vorn_make_fp_lt, VORN_FP_LT)
VORN_ROW_2(vorn_make_fp_le, VORN_FP_LE)
VORN_ROW_2(vorn_make_fp_gt, VORN_FP_GT)
VORN_ROW_2(vorn_make_fp_ge, VORN_FP_GE)
VORN_ROW_2(vorn_make_select, VORN_SELECT)

VORN_ROW_3(vorn_make_ite, VORN_ITE)
VORN_ROW_3(vorn_make_fp_add, VORN_FP_ADD)
VORN_ROW_3(vorn_make_fp_sub, VORN_FP_SUB)
VORN_ROW_3(vorn_make_fp_mul, VORN_FP_MUL)
VORN_ROW_3(vorn_make_fp_div, VORN_FP_DIV)
VORN_ROW_3(vorn_make_store, VORN_STORE)

#undef VORN_ROW_1
#undef VORN_ROW_2
#undef VORN_ROW_3

vorn_status vorn_make_bv_extract(vorn_manager* manager, size_t msb, size_t lsb, vorn_term* a,
                                 vorn_term** result) {
  return apply(manager, __func__, VORN_BV_EXTRACT, {msb, lsb}, {a}, result);
}

vorn_status vorn_make_bv_zero_extend(vorn_manager* manager, size_t n, vorn_term* a,
                                     vorn_term** result) {
  return apply(manager, __func__, VORN_BV_ZERO_EXTEND, {n}, {a}, result);
}

vorn_status vorn_make_bv_sign_extend(vorn_manager* manager, size_t n, vorn_term* a,
                                     vorn_term** result) {
  return apply(manager, __func__, VORN_BV_SIGN_EXTEND, {n}, {a}, result);
}

vorn_status vorn_make_fp_fma(vorn_manager* manager, vorn_term* rm, vorn_term* a, vorn_term* b,
                             vorn_term* c, vorn_term** result) {
  return apply(manager, __func__, VORN_FP_FMA, {}, {rm, a, b, c}, result);
}

vorn_status vorn_make_fp_cast(vorn_manager* manager, size_t eb, size_t sb, vorn_term* rm,
                              vorn_term* a, vorn_term** result) {
  return apply(manager, __func__, VORN_FP_CAST, {eb, sb}, {rm, a}, result);
}

vorn_status vorn_make_fp_from_sbv(vorn_manager* manager, size_t eb, size_t sb, vorn_term* rm,
                                  vorn_term* a, vorn_term** result) {
  return apply(manager, __func__, VORN_FP_FROM_SBV, {eb, sb}, {rm, a}, result);
}

vorn_status vorn_make_fp_from_ubv(vorn_manager* manager, size_t eb, size_t sb, vorn_term* rm,
                                  vorn_term* a, vorn_term** result) {
  return apply(manager, __func__, VORN_FP_FROM_UBV, {eb, sb}, {rm, a}, result);
}

vorn_status vorn_make_fp_to_sbv(vorn_manager* manager, size_t width, vorn_term* rm, vorn_term* a,
                                vorn_term** result) {
  return apply(manager, __func__, VORN_FP_TO_SBV, {width}, {rm, a}, result);
}

vorn_status vorn_make_fp_to_ubv(vorn_manager* manager, size_t width, vorn_term* rm, vorn_term* a,
                                vorn_term** result) {
  return apply(manager, __func__, VORN_FP_TO_UBV, {width}, {rm, a}, result);
}

vorn_status vorn_make_fp_from_bits(vorn_manager* manager, size_t eb, size_t sb, vorn_term* a,
                                   vorn_term** result) {
  return apply(manager, __func__, VORN_FP_FROM_BITS, {eb, sb}, {a}, result);
}
