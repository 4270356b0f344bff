#include <algorithm>

#include "vorn/ranges/bit_transfer.h"
#include "vorn/ranges/float_transfer.h"
#include "vorn/ranges/predicates.h"
#include "vorn/ranges/transfer.h"
#include "vorn/terms/operations.h"

namespace vorn::ranges {
namespace {

using T = SymbolTag;
using Arguments = std::span<Range>;

BoolRange* truth_at(Arguments arguments, std::size_t i) {
  return &std::get<BoolRange>(arguments[i]);
}
FloatRange* float_at(Arguments arguments, std::size_t i) {
  return &std::get<FloatRange>(arguments[i]);
}
BitRange* bits_at(Arguments arguments, std::size_t i) {
  return &std::get<BitRange>(arguments[i]);
}
RoundingModeSet modes_of(Arguments arguments) {
  return std::get<RoundingModeSet>(arguments[0]);
}

void narrow_connective(SymbolTag::tag tag, BoolRange result, BoolRange* x, BoolRange* y) {
  BoolRange first = BoolRange::nothing();
  BoolRange second = BoolRange::nothing();
  for (const bool a : {false, true}) {
    for (const bool b : {false, true}) {
      if (!x->contains(a) || !y->contains(b) || !result.contains(connect(tag, a, b))) continue;
      first = first.include(a);
      second = second.include(b);
    }
  }
  *x = first;
  *y = second;
}

void narrow_equality(BoolRange result, Range* x, Range* y) {
  if (!result.is_value() || x->index() == 0) return;
  if (result.get_value()) {
    *x = intersect(*x, *y);
    *y = *x;
    return;
  }
  const Range first = is_value(*y) ? exclude(*x, get_value(*y)) : *x;
  if (is_value(*x)) *y = exclude(*y, get_value(*x));
  *x = first;
}

void narrow_choice(const Range& result, Arguments arguments) {
  BoolRange* condition = truth_at(arguments, 0);
  if (result.index() != 0) {
    for (const bool holds : {false, true}) {
      const Range& branch = arguments[holds ? 1 : 2];
      if (is_empty(intersect(result, branch))) {
        *condition = condition->without(BoolRange::of(holds));
      }
    }
  }
  if (!condition->is_value()) return;
  Range& chosen = arguments[condition->get_value() ? 1 : 2];
  chosen = intersect(chosen, result);
}

void narrow_core(const Term* t, const Range& result, Arguments arguments) {
  switch (t->get_tag()) {
    case T::bool_not: {
      BoolRange one = BoolRange::of(true);
      narrow_connective(T::bool_xor, std::get<BoolRange>(result), truth_at(arguments, 0), &one);
      return;
    }
    case T::bool_and:
    case T::bool_or:
    case T::bool_xor:
    case T::bool_implies:
    case T::bool_iff:
      narrow_connective(t->get_tag(), std::get<BoolRange>(result), truth_at(arguments, 0),
                        truth_at(arguments, 1));
      return;
    case T::equal:
      narrow_equality(std::get<BoolRange>(result), arguments.data(), arguments.data() + 1);
      return;
    case T::ite:
      narrow_choice(result, arguments);
      return;
    default:
      return;
  }
}

void narrow_predicate(SymbolTag::tag tag, BoolRange result, Arguments arguments) {
  if (!result.is_value()) return;
  const bool truth = result.get_value();
  FloatRange* x = float_at(arguments, 0);
  switch (tag) {
    case T::fp_equal:
      return narrow_equal_numbers(truth, x, float_at(arguments, 1));
    case T::fp_lt:
      return narrow_less(truth, x, float_at(arguments, 1));
    case T::fp_le:
      return narrow_less_equal(truth, x, float_at(arguments, 1));
    default: {
      const FloatClassSet classes = classes_of(tag);
      if (classes == 0) return;
      *x = x->restrict_to(truth ? classes : kAllClasses & ~classes);
    }
  }
}

void narrow_subtraction(RoundingModeSet modes, const FloatRange& result, FloatRange* x,
                        FloatRange* y) {
  *y = y->negate();
  narrow_add(modes, result, x, y);
  *y = y->negate();
}

void narrow_to_float(SymbolTag::tag tag, const FloatRange& result, Arguments arguments) {
  switch (tag) {
    case T::fp_neg:
      *float_at(arguments, 0) = float_at(arguments, 0)->intersect(result.negate());
      return;
    case T::fp_abs:
      return narrow_abs(result, float_at(arguments, 0));
    case T::fp_min:
      return narrow_min(result, float_at(arguments, 0), float_at(arguments, 1));
    case T::fp_max:
      return narrow_max(result, float_at(arguments, 0), float_at(arguments, 1));
    case T::fp_rem:
      return narrow_rem(result, float_at(arguments, 0), float_at(arguments, 1));
    case T::fp_add:
      return narrow_add(modes_of(arguments), result, float_at(arguments, 1),
                        float_at(arguments, 2));
    case T::fp_sub:
      return narrow_subtraction(modes_of(arguments), result, float_at(arguments, 1),
                                float_at(arguments, 2));
    case T::fp_mul:
      return narrow_mul(modes_of(arguments), result, float_at(arguments, 1),
                        float_at(arguments, 2));
    case T::fp_div:
      return narrow_div(modes_of(arguments), result, float_at(arguments, 1),
                        float_at(arguments, 2));
    case T::fp_fma:
      return narrow_fma(modes_of(arguments), result, float_at(arguments, 1), float_at(arguments, 2),
                        float_at(arguments, 3));
    case T::fp_sqrt:
      return narrow_sqrt(modes_of(arguments), result, float_at(arguments, 1));
    case T::fp_round_to_integral:
      return narrow_round_to_integral(modes_of(arguments), result, float_at(arguments, 1));
    case T::fp_from_bits:
      return narrow_from_bits(result, bits_at(arguments, 0));
    case T::fp_cast:
      return narrow_cast(modes_of(arguments), result, float_at(arguments, 1));
    case T::fp_from_sbv:
    case T::fp_from_ubv:
      return narrow_from_integer(modes_of(arguments), result, bits_at(arguments, 1),
                                 tag == T::fp_from_sbv);
    default:
      return;
  }
}

void narrow_to_bit_vector(SymbolTag::tag tag, const BitRange& result, Arguments arguments) {
  switch (tag) {
    case T::fp_to_bits:
      return narrow_to_bits(result, float_at(arguments, 0));
    case T::fp_to_sbv:
    case T::fp_to_ubv:
      return narrow_to_integer(modes_of(arguments), result, float_at(arguments, 1),
                               tag == T::fp_to_sbv);
    default:
      return;
  }
}

void narrow_float(const Term* t, const Range& result, Arguments arguments) {
  const SymbolTag::tag tag = t->get_tag();
  if (const auto* truth = std::get_if<BoolRange>(&result)) {
    narrow_predicate(tag, *truth, arguments);
  } else if (const auto* bits = std::get_if<BitRange>(&result)) {
    narrow_to_bit_vector(tag, *bits, arguments);
  } else if (const auto* floats = std::get_if<FloatRange>(&result)) {
    narrow_to_float(tag, *floats, arguments);
  }
}

void narrow(const Term* t, const Range& result, Arguments arguments) {
  const Operation* operation = find_operation(t->get_tag());
  if (operation == nullptr || arguments.empty()) return;
  switch (operation->theory) {
    case Theory::core:
      return narrow_core(t, result, arguments);
    case Theory::bit_vectors: {
      // A unary operation has no second operand to narrow.
      BitRange other = *bits_at(arguments, 0);
      return narrow_bits(t, result, bits_at(arguments, 0),
                         t->get_arity() == 1 ? &other : bits_at(arguments, 1));
    }
    case Theory::floating_point:
      return narrow_float(t, result, arguments);
    case Theory::arrays:
      return;
  }
}

}  // namespace

void backward(const Term* t, const Range& result, Arguments arguments) {
  const auto has_empty = [&] {
    return std::any_of(arguments.begin(), arguments.end(),
                       [](const Range& range) { return is_empty(range); });
  };
  if (!is_empty(result) && !has_empty()) narrow(t, result, arguments);
  if (!is_empty(result) && !has_empty()) return;
  for (std::size_t i = 0; i < arguments.size(); ++i)
    arguments[i] = make_nothing(t->get_arg(i)->get_type());
}

}  // namespace vorn::ranges
