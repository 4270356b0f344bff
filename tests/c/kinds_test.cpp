// The numbers of the C interface are those of the classes.
#include <gtest/gtest.h>

#include <set>

#include "vorn/c/vorn.h"
#include "vorn/terms/engine.h"
#include "vorn/terms/ieee_float.h"
#include "vorn/terms/operations.h"
#include "vorn/terms/term.h"

namespace vorn {
namespace {

using T = SymbolTag;

struct Pair {
  vorn_kind kind;
  T::tag tag;
};

constexpr Pair kKinds[] = {
    {VORN_TRUE, T::bool_true},
    {VORN_FALSE, T::bool_false},
    {VORN_NOT, T::bool_not},
    {VORN_AND, T::bool_and},
    {VORN_OR, T::bool_or},
    {VORN_XOR, T::bool_xor},
    {VORN_IMPLIES, T::bool_implies},
    {VORN_IFF, T::bool_iff},
    {VORN_EQUAL, T::equal},
    {VORN_ITE, T::ite},
    {VORN_BV_EXTRACT, T::bv_extract},
    {VORN_BV_CONCAT, T::bv_concat},
    {VORN_BV_ZERO_EXTEND, T::bv_zero_extend},
    {VORN_BV_SIGN_EXTEND, T::bv_sign_extend},
    {VORN_BV_NOT, T::bv_not},
    {VORN_BV_NEG, T::bv_neg},
    {VORN_BV_AND, T::bv_and},
    {VORN_BV_OR, T::bv_or},
    {VORN_BV_XOR, T::bv_xor},
    {VORN_BV_ADD, T::bv_add},
    {VORN_BV_SUB, T::bv_sub},
    {VORN_BV_MUL, T::bv_mul},
    {VORN_BV_UDIV, T::bv_udiv},
    {VORN_BV_UREM, T::bv_urem},
    {VORN_BV_SDIV, T::bv_sdiv},
    {VORN_BV_SREM, T::bv_srem},
    {VORN_BV_SMOD, T::bv_smod},
    {VORN_BV_SHL, T::bv_shl},
    {VORN_BV_LSHR, T::bv_lshr},
    {VORN_BV_ASHR, T::bv_ashr},
    {VORN_BV_COMP, T::bv_comp},
    {VORN_BV_ULT, T::bv_ult},
    {VORN_BV_ULE, T::bv_ule},
    {VORN_BV_SLT, T::bv_slt},
    {VORN_BV_SLE, T::bv_sle},
    {VORN_FP_FROM_BITS, T::fp_from_bits},
    {VORN_FP_EQUAL, T::fp_equal},
    {VORN_FP_LT, T::fp_lt},
    {VORN_FP_LE, T::fp_le},
    {VORN_FP_NEG, T::fp_neg},
    {VORN_FP_ADD, T::fp_add},
    {VORN_FP_SUB, T::fp_sub},
    {VORN_FP_MUL, T::fp_mul},
    {VORN_FP_DIV, T::fp_div},
    {VORN_FP_CAST, T::fp_cast},
    {VORN_FP_FROM_SBV, T::fp_from_sbv},
    {VORN_FP_FROM_UBV, T::fp_from_ubv},
    {VORN_FP_TO_SBV, T::fp_to_sbv},
    {VORN_FP_TO_UBV, T::fp_to_ubv},
    {VORN_FP_ISNAN, T::fp_isnan},
    {VORN_FP_ISINF, T::fp_isinf},
    {VORN_FP_ISZERO, T::fp_iszero},
    {VORN_FP_ABS, T::fp_abs},
    {VORN_FP_MIN, T::fp_min},
    {VORN_FP_MAX, T::fp_max},
    {VORN_FP_SQRT, T::fp_sqrt},
    {VORN_FP_FMA, T::fp_fma},
    {VORN_FP_REM, T::fp_rem},
    {VORN_FP_ROUND_TO_INTEGRAL, T::fp_round_to_integral},
    {VORN_FP_ISNORMAL, T::fp_isnormal},
    {VORN_FP_ISSUBNORMAL, T::fp_issubnormal},
    {VORN_FP_ISNEGATIVE, T::fp_isnegative},
    {VORN_FP_ISPOSITIVE, T::fp_ispositive},
    {VORN_FP_TO_BITS, T::fp_to_bits},
    {VORN_SELECT, T::array_select},
    {VORN_STORE, T::array_store},
    {VORN_CONST_ARRAY, T::array_const},
    {VORN_DISTINCT, T::distinct},
    {VORN_BV_REPEAT, T::bv_repeat},
    {VORN_BV_ROTATE_LEFT, T::bv_rotate_left},
    {VORN_BV_ROTATE_RIGHT, T::bv_rotate_right},
    {VORN_BV_NAND, T::bv_nand},
    {VORN_BV_NOR, T::bv_nor},
    {VORN_BV_XNOR, T::bv_xnor},
    {VORN_BV_UGT, T::bv_ugt},
    {VORN_BV_UGE, T::bv_uge},
    {VORN_BV_SGT, T::bv_sgt},
    {VORN_BV_SGE, T::bv_sge},
    {VORN_BV_NEGO, T::bv_nego},
    {VORN_BV_UADDO, T::bv_uaddo},
    {VORN_BV_SADDO, T::bv_saddo},
    {VORN_BV_USUBO, T::bv_usubo},
    {VORN_BV_SSUBO, T::bv_ssubo},
    {VORN_BV_UMULO, T::bv_umulo},
    {VORN_BV_SMULO, T::bv_smulo},
    {VORN_BV_SDIVO, T::bv_sdivo},
    {VORN_BV_REDOR, T::bv_redor},
    {VORN_BV_REDAND, T::bv_redand},
    {VORN_BV_REDXOR, T::bv_redxor},
    {VORN_BV_ITE, T::bv_ite},
    {VORN_FP_GT, T::fp_gt},
    {VORN_FP_GE, T::fp_ge},
};

TEST(CKinds, AreThoseOfTheTable) {
  std::set<T::tag> seen;
  for (const Pair& pair : kKinds) {
    EXPECT_EQ(static_cast<int>(pair.kind), static_cast<int>(pair.tag));
    EXPECT_TRUE(seen.insert(pair.tag).second);
  }
  for (const Operation& row : get_operations())
    EXPECT_TRUE(seen.contains(row.tag)) << row.name;
  EXPECT_EQ(seen.size(), get_operations().size());
  EXPECT_EQ(static_cast<int>(VORN_LEAF), static_cast<int>(T::none));
}

// What the header says of the kinds from VORN_DISTINCT on.
TEST(CKinds, ThoseDefinedByOthersComeLast) {
  for (const Operation& row : get_operations())
    EXPECT_EQ(row.derive != nullptr, row.tag >= T::distinct) << row.name;
}

TEST(CKinds, SortsAnswersAndModes) {
  using Kind = DataType::Kind;
  EXPECT_EQ(static_cast<int>(VORN_SORT_BOOL), static_cast<int>(Kind::boolean));
  EXPECT_EQ(static_cast<int>(VORN_SORT_ROUNDING_MODE), static_cast<int>(Kind::rounding_mode));
  EXPECT_EQ(static_cast<int>(VORN_SORT_BIT_VECTOR), static_cast<int>(Kind::bit_vector));
  EXPECT_EQ(static_cast<int>(VORN_SORT_FLOAT), static_cast<int>(Kind::floating_point));
  EXPECT_EQ(static_cast<int>(VORN_SORT_ARRAY), static_cast<int>(Kind::array));
  EXPECT_EQ(static_cast<int>(VORN_SORT_UNINTERPRETED), static_cast<int>(Kind::uninterpreted));
  EXPECT_EQ(static_cast<int>(VORN_SAT), static_cast<int>(Answer::sat));
  EXPECT_EQ(static_cast<int>(VORN_UNSAT), static_cast<int>(Answer::unsat));
  EXPECT_EQ(static_cast<int>(VORN_UNKNOWN), static_cast<int>(Answer::unknown));
  using Mode = IEEEFloat::rounding_mode;
  EXPECT_EQ(static_cast<int>(VORN_RNE), static_cast<int>(Mode::nearest_even));
  EXPECT_EQ(static_cast<int>(VORN_RTZ), static_cast<int>(Mode::toward_zero));
  EXPECT_EQ(static_cast<int>(VORN_RTP), static_cast<int>(Mode::plus_inf));
  EXPECT_EQ(static_cast<int>(VORN_RTN), static_cast<int>(Mode::minus_inf));
  EXPECT_EQ(static_cast<int>(VORN_RNA), static_cast<int>(Mode::nearest_away));
}

}  // namespace
}  // namespace vorn
