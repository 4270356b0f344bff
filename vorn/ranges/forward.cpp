#include <algorithm>

#include "vorn/ranges/bit_transfer.h"
#include "vorn/ranges/float_transfer.h"
#include "vorn/ranges/predicates.h"
#include "vorn/ranges/transfer.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/operations.h"

namespace vorn::ranges {
namespace {

using T = SymbolTag;
using Arguments = std::span<const Range>;

const BoolRange& truth_at(Arguments arguments, std::size_t i) {
  return std::get<BoolRange>(arguments[i]);
}
const FloatRange& float_at(Arguments arguments, std::size_t i) {
  return std::get<FloatRange>(arguments[i]);
}
const BitRange& bits_at(Arguments arguments, std::size_t i) {
  return std::get<BitRange>(arguments[i]);
}
/// The modes of an operation that is rounded: they come first.
RoundingModeSet modes_of(Arguments arguments) {
  return std::get<RoundingModeSet>(arguments[0]);
}

BoolRange apply_connective(SymbolTag::tag tag, BoolRange x, BoolRange y) {
  BoolRange result = BoolRange::nothing();
  for (const bool a : {false, true}) {
    for (const bool b : {false, true}) {
      if (x.contains(a) && y.contains(b)) result = result.include(connect(tag, a, b));
    }
  }
  return result;
}

BoolRange are_equal(const Range& x, const Range& y) {
  BoolRange result = BoolRange::nothing();
  const bool is_known = x.index() != 0;
  if (!is_known || !is_empty(intersect(x, y))) result = result.include(true);
  const bool is_same = is_value(x) && is_value(y) && x == y;
  return is_same ? result : result.include(false);
}

Range choose(Arguments arguments) {
  const BoolRange& condition = truth_at(arguments, 0);
  if (!condition.contains(false)) return arguments[1];
  return condition.contains(true) ? hull(arguments[1], arguments[2]) : arguments[2];
}

Range apply_conversion(const Term* t, Arguments arguments) {
  switch (t->get_tag()) {
    case T::fp_from_bits:
      return from_bits(t->get_type()->get_format(), bits_at(arguments, 0));
    case T::fp_to_bits:
      return to_bits(float_at(arguments, 0));
    case T::fp_cast:
      return cast(t->get_type()->get_format(), modes_of(arguments), float_at(arguments, 1));
    case T::fp_from_sbv:
    case T::fp_from_ubv:
      return from_integer(t->get_type()->get_format(), modes_of(arguments), bits_at(arguments, 1),
                          t->get_tag() == T::fp_from_sbv);
    case T::fp_to_sbv:
    case T::fp_to_ubv:
      return to_integer(t->get_type()->get_width(), modes_of(arguments), float_at(arguments, 1),
                        t->get_tag() == T::fp_to_sbv);
    default:
      return make_everything(t->get_type());
  }
}

Range apply_float(const Term* t, Arguments arguments) {
  const SymbolTag::tag tag = t->get_tag();
  switch (tag) {
    case T::fp_equal:
      return equal_numbers(float_at(arguments, 0), float_at(arguments, 1));
    case T::fp_lt:
      return less(float_at(arguments, 0), float_at(arguments, 1));
    case T::fp_le:
      return less_equal(float_at(arguments, 0), float_at(arguments, 1));
    case T::fp_isnan:
    case T::fp_isinf:
    case T::fp_iszero:
    case T::fp_isnormal:
    case T::fp_issubnormal:
    case T::fp_isnegative:
    case T::fp_ispositive:
      return is_of(classes_of(tag), float_at(arguments, 0));
    case T::fp_neg:
      return float_at(arguments, 0).negate();
    case T::fp_abs:
      return abs(float_at(arguments, 0));
    case T::fp_min:
      return min(float_at(arguments, 0), float_at(arguments, 1));
    case T::fp_max:
      return max(float_at(arguments, 0), float_at(arguments, 1));
    case T::fp_rem:
      return rem(float_at(arguments, 0), float_at(arguments, 1));
    case T::fp_add:
      return add(modes_of(arguments), float_at(arguments, 1), float_at(arguments, 2));
    case T::fp_sub:
      return add(modes_of(arguments), float_at(arguments, 1), float_at(arguments, 2).negate());
    case T::fp_mul:
      return mul(modes_of(arguments), float_at(arguments, 1), float_at(arguments, 2));
    case T::fp_div:
      return div(modes_of(arguments), float_at(arguments, 1), float_at(arguments, 2));
    case T::fp_fma:
      return fma(modes_of(arguments), float_at(arguments, 1), float_at(arguments, 2),
                 float_at(arguments, 3));
    case T::fp_sqrt:
      return sqrt(modes_of(arguments), float_at(arguments, 1));
    case T::fp_round_to_integral:
      return round_to_integral(modes_of(arguments), float_at(arguments, 1));
    default:
      return apply_conversion(t, arguments);
  }
}

Range apply_core(const Term* t, Arguments arguments) {
  switch (t->get_tag()) {
    case T::bool_not:
      return apply_connective(T::bool_xor, truth_at(arguments, 0), BoolRange::of(true));
    case T::bool_and:
    case T::bool_or:
    case T::bool_xor:
    case T::bool_implies:
    case T::bool_iff:
      return apply_connective(t->get_tag(), truth_at(arguments, 0), truth_at(arguments, 1));
    case T::equal:
      return are_equal(arguments[0], arguments[1]);
    case T::ite:
      return choose(arguments);
    default:
      return make_everything(t->get_type());
  }
}

}  // namespace

Range forward(const TermManager& manager, const Term* t, Arguments arguments) {
  if (t->get_arity() == 0) {
    QNumber value;
    return semantics::read_literal(manager, t, &value) ? make_value(t->get_type(), value)
                                                       : make_everything(t->get_type());
  }
  if (std::any_of(arguments.begin(), arguments.end(), is_empty)) {
    return make_nothing(t->get_type());
  }
  const Operation* operation = find_operation(t->get_tag());
  if (operation == nullptr) return make_everything(t->get_type());
  switch (operation->theory) {
    case Theory::core:
      return apply_core(t, arguments);
    case Theory::bit_vectors:
      return apply_bits(t, bits_at(arguments, 0), bits_at(arguments, t->get_arity() - 1));
    case Theory::floating_point:
      return apply_float(t, arguments);
    case Theory::arrays:
      break;
  }
  return make_everything(t->get_type());
}

}  // namespace vorn::ranges
