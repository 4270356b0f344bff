#include "vorn/ranges/predicates.h"

namespace vorn::ranges {

using T = SymbolTag;

FloatClassSet classes_of(SymbolTag::tag tag) {
  switch (tag) {
    case T::fp_isnan:
      return kNaN;
    case T::fp_isinf:
      return kInfinities;
    case T::fp_iszero:
      return kZeros;
    case T::fp_isnormal:
      return kNormals;
    case T::fp_issubnormal:
      return kSubnormals;
    case T::fp_isnegative:
      return kNegative;
    case T::fp_ispositive:
      return kPositive;
    default:
      return 0;
  }
}

bool connect(SymbolTag::tag tag, bool a, bool b) {
  switch (tag) {
    case T::bool_and:
      return a && b;
    case T::bool_or:
      return a || b;
    case T::bool_xor:
      return a != b;
    case T::bool_implies:
      return !a || b;
    default:
      return a == b;
  }
}

}  // namespace vorn::ranges
