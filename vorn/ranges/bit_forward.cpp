// Results of bit-vector operations, by kind.
#include "vorn/ranges/bit_operations.h"
#include "vorn/ranges/bit_transfer.h"
#include "vorn/terms/folding.h"

namespace vorn::ranges {
namespace {

using T = SymbolTag;

BoolRange make_truth(bool may_hold, bool may_fail) {
  BoolRange result = BoolRange::nothing();
  if (may_hold) result = result.include(true);
  return may_fail ? result.include(false) : result;
}

BoolRange compare(SymbolTag::tag tag, const BitRange& x, const BitRange& y) {
  const bool is_signed = tag == T::bv_slt || tag == T::bv_sle;
  const QNumber x_least = is_signed ? x.get_signed_least() : x.get_least();
  const QNumber x_greatest = is_signed ? x.get_signed_greatest() : x.get_greatest();
  const QNumber y_least = is_signed ? y.get_signed_least() : y.get_least();
  const QNumber y_greatest = is_signed ? y.get_signed_greatest() : y.get_greatest();
  const bool strict = tag == T::bv_ult || tag == T::bv_slt;
  return strict ? make_truth(x_least < y_greatest, y_least <= x_greatest)
                : make_truth(x_least <= y_greatest, y_least < x_greatest);
}

BitRange compare_bits(const BitRange& x, const BitRange& y) {
  BitRange result = BitRange::nothing(1);
  if (!x.is_value() || x != y) result = BitRange::of_value(1, QNumber(0));
  return x.intersect(y).is_empty() ? result : result.hull(BitRange::of_value(1, QNumber(1)));
}

}  // namespace

Range apply_bits(const Term* t, const BitRange& x, const BitRange& y) {
  const Symbol::Indices& indices = t->get_symbol()->get_indices();
  const SymbolTag::tag tag = t->get_tag();
  if (x.is_value() && y.is_value()) {
    return make_value(t->get_type(), fold_bv_operation(tag, indices, {x.get_least(), x.get_width()},
                                                       {y.get_least(), y.get_width()}));
  }
  switch (tag) {
    case T::bv_extract:
      return bv_extract(indices[0], indices[1], x);
    case T::bv_concat:
      return bv_concat(x, y);
    case T::bv_zero_extend:
      return indices[0] == 0 ? x : bv_concat(BitRange::of_value(indices[0], QNumber(0)), x);
    case T::bv_sign_extend:
      return indices[0] == 0 ? x : bv_sign_extend(indices[0], x);
    case T::bv_not:
      return bv_not(x);
    case T::bv_neg:
      return bv_sub(BitRange::of_value(x.get_width(), QNumber(0)), x);
    case T::bv_and:
      return bv_and(x, y);
    case T::bv_or:
      return bv_or(x, y);
    case T::bv_xor:
      return bv_xor(x, y);
    case T::bv_add:
      return bv_add(x, y);
    case T::bv_sub:
      return bv_sub(x, y);
    case T::bv_mul:
      return bv_mul(x, y);
    case T::bv_udiv:
      return bv_udiv(x, y);
    case T::bv_urem:
      return bv_urem(x, y);
    case T::bv_shl:
    case T::bv_lshr:
    case T::bv_ashr:
      return bv_shift(tag, x, y);
    case T::bv_comp:
      return compare_bits(x, y);
    case T::bv_ult:
    case T::bv_ule:
    case T::bv_slt:
    case T::bv_sle:
      return compare(tag, x, y);
    default:
      return make_everything(t->get_type());
  }
}

}  // namespace vorn::ranges
