#include "vorn/solver/evaluator.h"

#include <stdexcept>
#include <vector>

#include "vorn/terms/bv_number.h"
#include "vorn/terms/folding.h"
#include "vorn/terms/ieee_arithmetic.h"

namespace vorn::solver {
namespace {

using T = SymbolTag;

QNumber truth(bool holds) {
  return QNumber(holds ? 1 : 0);
}

bool is_true(const QNumber& value) {
  return value.sign() != 0;
}

IEEEFloat::format format_of(const DataType* type) {
  return {type->get_e(), type->get_m()};
}

/// Bits of a float as a value: NaNs have one pattern.
QNumber canonical(IEEEFloat value) {
  if (value.is_nan()) value.self_nan();
  return value.get_bits();
}

}  // namespace

const QNumber& Evaluator::evaluate(const Term* root) {
  std::vector<const Term*> stack{root};
  while (!stack.empty()) {
    const Term* t = stack.back();
    if (values.contains(t)) {
      stack.pop_back();
      continue;
    }
    bool ready = true;
    for (const Term* a : t->get_args()) {
      if (values.contains(a)) continue;
      stack.push_back(a);
      ready = false;
    }
    if (!ready) continue;
    stack.pop_back();
    values.emplace(t, t->get_arity() == 0 ? leaf(t) : apply(t));
  }
  return values.at(root);
}

QNumber Evaluator::leaf(const Term* t) {
  if (t == mgr.make_true()) return truth(true);
  if (t == mgr.make_false()) return truth(false);
  QNumber value;
  IEEEFloat::rounding_mode mode{};
  if (mgr.is_fprounding(t->get_symbol(), &mode)) return QNumber(static_cast<int>(mode));
  if (!mgr.is_number(t, &value)) value = assignment(t);
  if (!mgr.is_fp_type(t->get_type(), nullptr, nullptr)) return value;
  return canonical(IEEEFloat::from_bits(format_of(t->get_type()), value));
}

QNumber Evaluator::apply(const Term* t) {
  const SymbolTag::tag tag = t->get_tag();
  if (is_bv_operation(tag)) {
    const std::size_t last = t->get_arity() - 1;
    return fold_bv_operation(tag, t->get_symbol()->get_indices(),
                             {arg(t, 0), t->get_arg(0)->get_type()->get_width()},
                             {arg(t, last), t->get_arg(last)->get_type()->get_width()});
  }
  switch (tag) {
    case T::bool_not:
      return truth(!is_true(arg(t, 0)));
    case T::bool_and:
      return truth(is_true(arg(t, 0)) && is_true(arg(t, 1)));
    case T::bool_or:
      return truth(is_true(arg(t, 0)) || is_true(arg(t, 1)));
    case T::bool_implies:
      return truth(!is_true(arg(t, 0)) || is_true(arg(t, 1)));
    case T::bool_xor:
      return truth(arg(t, 0) != arg(t, 1));
    case T::bool_iff:
    case T::equal:
      return truth(arg(t, 0) == arg(t, 1));
    case T::ite:
      return is_true(arg(t, 0)) ? arg(t, 1) : arg(t, 2);
    default:
      return apply_fp(t);
  }
}

IEEEFloat Evaluator::float_arg(const Term* t, std::size_t i) {
  return IEEEFloat::from_bits(format_of(t->get_arg(i)->get_type()), arg(t, i));
}

IEEEFloat::rounding_mode Evaluator::mode_arg(const Term* t) {
  std::int64_t code = 0;
  arg(t, 0).get_int64(&code);
  return static_cast<IEEEFloat::rounding_mode>(code);
}

/// What the theory leaves open of `t`.
QNumber Evaluator::choose(const Term* t) {
  if (!open_value) return QNumber();
  const QNumber operands[] = {arg(t, 0), arg(t, 1)};
  return open_value(t, operands);
}

QNumber Evaluator::to_integer(const Term* t, bool is_signed) {
  const std::size_t width = t->get_type()->get_width();
  const auto bits = ieee_to_integer(mode_arg(t), float_arg(t, 1), width, is_signed);
  return bits ? *bits : choose(t);
}

QNumber Evaluator::select(const Term* t) {
  const IEEEFloat x = float_arg(t, 0);
  const IEEEFloat y = float_arg(t, 1);
  const bool open = x.is_zero() && y.is_zero() && x.is_sign_set() != y.is_sign_set();
  const bool negative_zero = open && is_true(choose(t));
  return (t->get_tag() == T::fp_min ? ieee_min : ieee_max)(x, y, negative_zero).get_bits();
}

QNumber Evaluator::apply_fp(const Term* t) {
  switch (t->get_tag()) {
    case T::fp_from_bits:
      return canonical(IEEEFloat::from_bits(format_of(t->get_type()), arg(t, 0)));
    case T::fp_equal:
      return truth(is_eq(ieee_compare(float_arg(t, 0), float_arg(t, 1))));
    case T::fp_lt:
      return truth(is_lt(ieee_compare(float_arg(t, 0), float_arg(t, 1))));
    case T::fp_le:
      return truth(is_lteq(ieee_compare(float_arg(t, 0), float_arg(t, 1))));
    case T::fp_isnan:
      return truth(float_arg(t, 0).is_nan());
    case T::fp_isinf:
      return truth(float_arg(t, 0).is_inf());
    case T::fp_iszero:
      return truth(float_arg(t, 0).is_zero());
    case T::fp_neg:
      return ieee_neg(float_arg(t, 0)).get_bits();
    case T::fp_add:
      return ieee_add(mode_arg(t), float_arg(t, 1), float_arg(t, 2)).get_bits();
    case T::fp_sub:
      return ieee_sub(mode_arg(t), float_arg(t, 1), float_arg(t, 2)).get_bits();
    case T::fp_mul:
      return ieee_mul(mode_arg(t), float_arg(t, 1), float_arg(t, 2)).get_bits();
    case T::fp_div:
      return ieee_div(mode_arg(t), float_arg(t, 1), float_arg(t, 2)).get_bits();
    case T::fp_cast:
      return ieee_cast(format_of(t->get_type()), mode_arg(t), float_arg(t, 1)).get_bits();
    case T::fp_from_sbv: {
      const std::size_t width = t->get_arg(1)->get_type()->get_width();
      return ieee_from_integer(format_of(t->get_type()), mode_arg(t),
                               BVNumber::to_signed(arg(t, 1), width))
          .get_bits();
    }
    case T::fp_from_ubv:
      return ieee_from_integer(format_of(t->get_type()), mode_arg(t), arg(t, 1)).get_bits();
    case T::fp_to_sbv:
      return to_integer(t, true);
    case T::fp_to_ubv:
      return to_integer(t, false);
    case T::fp_to_bits: {
      const IEEEFloat x = float_arg(t, 0);
      return x.is_nan() ? IEEEFloat::quiet_nan_bits(x.get_format()) : x.get_bits();
    }
    case T::fp_abs:
      return ieee_abs(float_arg(t, 0)).get_bits();
    case T::fp_min:
    case T::fp_max:
      return select(t);
    case T::fp_sqrt:
      return ieee_sqrt(mode_arg(t), float_arg(t, 1)).get_bits();
    case T::fp_fma:
      return ieee_fma(mode_arg(t), float_arg(t, 1), float_arg(t, 2), float_arg(t, 3)).get_bits();
    case T::fp_rem:
      return ieee_rem(float_arg(t, 0), float_arg(t, 1)).get_bits();
    case T::fp_round_to_integral:
      return ieee_round_to_integral(mode_arg(t), float_arg(t, 1)).get_bits();
    case T::fp_isnormal:
      return truth(float_arg(t, 0).is_normal());
    case T::fp_issubnormal:
      return truth(float_arg(t, 0).is_subnormal());
    case T::fp_isnegative:
      return truth(!float_arg(t, 0).is_nan() && float_arg(t, 0).is_sign_set());
    case T::fp_ispositive:
      return truth(!float_arg(t, 0).is_nan() && !float_arg(t, 0).is_sign_set());
    default:
      throw std::logic_error("a term has no value in a model: " + t->to_string());
  }
}

const Term* make_literal(TermManager& manager, const DataType* type, const QNumber& value) {
  std::int64_t word = 0;
  switch (type->get_kind()) {
    case DataType::Kind::boolean:
      return manager.make_bool(is_true(value));
    case DataType::Kind::rounding_mode:
      value.get_int64(&word);
      return manager.make_fprounding(static_cast<IEEEFloat::rounding_mode>(word));
    case DataType::Kind::bit_vector:
      return manager.make_bv_number(value, type->get_width());
    case DataType::Kind::floating_point:
      break;
  }
  return manager.make_fp_number(value, type->get_e(), type->get_m());
}

}  // namespace vorn::solver
