#include "vorn/terms/folding.h"

#include <cstdint>
#include <stdexcept>
#include <string>

#include "vorn/terms/bv_number.h"

namespace vorn {

QNumber fold_bv_operation(SymbolTag::tag tag, const Symbol::Indices& indices, BvOperand x,
                          BvOperand y) {
  using T = SymbolTag;
  namespace N = BVNumber;
  const QNumber& a = x.value;
  const QNumber& b = y.value;
  const std::size_t w = x.width;
  switch (tag) {
    case T::bv_extract:
      return N::bv_extract(indices[0], indices[1], a);
    case T::bv_concat:
      return N::bv_concat(a, b, y.width);
    case T::bv_zero_extend:
      return a;
    case T::bv_sign_extend:
      return N::bv_sign_extend(a, indices[0], w);
    case T::bv_not:
      return N::bv_not(a, w);
    case T::bv_neg:
      return N::bv_neg(a, w);
    case T::bv_and:
      return N::bv_and(a, b);
    case T::bv_or:
      return N::bv_or(a, b);
    case T::bv_xor:
      return N::bv_xor(a, b);
    case T::bv_add:
      return N::bv_add(a, b, w);
    case T::bv_sub:
      return N::bv_sub(a, b, w);
    case T::bv_mul:
      return N::bv_mul(a, b, w);
    case T::bv_udiv:
      return N::bv_udiv(a, b, w);
    case T::bv_urem:
      return N::bv_urem(a, b);
    case T::bv_sdiv:
      return N::bv_sdiv(a, b, w);
    case T::bv_srem:
      return N::bv_srem(a, b, w);
    case T::bv_smod:
      return N::bv_smod(a, b, w);
    case T::bv_shl:
      return N::bv_shl(a, b, w);
    case T::bv_lshr:
      return N::bv_lshr(a, b, w);
    case T::bv_ashr:
      return N::bv_ashr(a, b, w);
    case T::bv_comp:
      return QNumber(a == b ? 1 : 0);
    case T::bv_ult:
      return QNumber(a < b ? 1 : 0);
    case T::bv_ule:
      return QNumber(a <= b ? 1 : 0);
    case T::bv_slt:
      return QNumber(N::bv_slt(a, b, w) ? 1 : 0);
    case T::bv_sle:
      return QNumber(N::bv_slt(b, a, w) ? 0 : 1);
    default:
      // A made-up value would make wrong answers of whatever folds.
      throw std::logic_error("a bit-vector operation has no value: kind " +
                             std::to_string(static_cast<std::uint32_t>(tag)));
  }
}

}  // namespace vorn
