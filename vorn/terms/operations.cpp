#include "vorn/terms/operations.h"

#include <array>
#include <cstddef>

namespace vorn {
namespace {

using enum NameIndices;
using T = SymbolTag;

constexpr Operation kOperations[] = {
    {T::bool_true, "true"},
    {T::bool_false, "false"},
    {T::bool_not, "not"},
    {T::bool_and, "and", none, 0, true},
    {T::bool_or, "or", none, 0, true},
    {T::bool_xor, "xor", none, 0, true},
    {T::bool_implies, "=>"},
    {T::bool_iff, "=", none, 0, true},
    {T::equal, "=", none, 0, true},
    {T::ite, "ite"},

    {T::bv_extract, "extract", pair, 2},
    {T::bv_concat, "concat"},
    {T::bv_zero_extend, "zero_extend", first, 1},
    {T::bv_sign_extend, "sign_extend", first, 1},
    {T::bv_not, "bvnot"},
    {T::bv_neg, "bvneg"},
    {T::bv_and, "bvand", none, 0, true},
    {T::bv_or, "bvor", none, 0, true},
    {T::bv_xor, "bvxor", none, 0, true},
    {T::bv_add, "bvadd", none, 0, true},
    {T::bv_sub, "bvsub"},
    {T::bv_mul, "bvmul", none, 0, true},
    {T::bv_udiv, "bvudiv"},
    {T::bv_urem, "bvurem"},
    {T::bv_sdiv, "bvsdiv"},
    {T::bv_srem, "bvsrem"},
    {T::bv_smod, "bvsmod"},
    {T::bv_shl, "bvshl"},
    {T::bv_lshr, "bvlshr"},
    {T::bv_ashr, "bvashr"},
    {T::bv_comp, "bvcomp", none, 0, true},
    {T::bv_ult, "bvult"},
    {T::bv_ule, "bvule"},
    {T::bv_slt, "bvslt"},
    {T::bv_sle, "bvsle"},

    {T::fp_from_bits, "to_fp", format, 2},
    {T::fp_equal, "fp.eq", none, 2},
    {T::fp_lt, "fp.lt", none, 2},
    {T::fp_le, "fp.leq", none, 2},
    {T::fp_neg, "fp.neg", none, 2},
    {T::fp_add, "fp.add", none, 2},
    {T::fp_sub, "fp.sub", none, 2},
    {T::fp_mul, "fp.mul", none, 2},
    {T::fp_div, "fp.div", none, 2},
    {T::fp_cast, "to_fp", format, 4},
    {T::fp_from_sbv, "to_fp", format, 3},
    {T::fp_from_ubv, "to_fp_unsigned", format, 3},
    {T::fp_isnan, "fp.isNaN", none, 2},
    {T::fp_isinf, "fp.isInfinite", none, 2},
    {T::fp_iszero, "fp.isZero", none, 2},
    {T::fp_to_sbv, "fp.to_sbv", first, 3},
    {T::fp_to_ubv, "fp.to_ubv", first, 3},
    {T::fp_abs, "fp.abs", none, 2},
    {T::fp_min, "fp.min", none, 2},
    {T::fp_max, "fp.max", none, 2},
    {T::fp_sqrt, "fp.sqrt", none, 2},
    {T::fp_fma, "fp.fma", none, 2},
    {T::fp_rem, "fp.rem", none, 2},
    {T::fp_round_to_integral, "fp.roundToIntegral", none, 2},
    {T::fp_isnormal, "fp.isNormal", none, 2},
    {T::fp_issubnormal, "fp.isSubnormal", none, 2},
    {T::fp_isnegative, "fp.isNegative", none, 2},
    {T::fp_ispositive, "fp.isPositive", none, 2},
    {T::fp_to_bits, "fp.to_ieee_bv", none, 2},
};

constexpr std::size_t kTagLimit = 70;

constexpr auto index_by_tag() {
  std::array<const Operation*, kTagLimit> index = {};
  for (const Operation& row : kOperations)
    index[row.tag] = &row;
  return index;
}

constexpr auto kByTag = index_by_tag();

}  // namespace

const Operation* find_operation(SymbolTag::tag tag) {
  return tag < kTagLimit ? kByTag[tag] : nullptr;
}

}  // namespace vorn
