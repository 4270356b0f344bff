#include "vorn/semantics/application.h"

#include <stdexcept>
#include <vector>

#include "vorn/terms/bv_number.h"
#include "vorn/terms/folding.h"
#include "vorn/terms/ieee_arithmetic.h"
#include "vorn/terms/operations.h"

namespace vorn::semantics {
namespace {

using T = SymbolTag;

QNumber truth(bool holds) {
  return QNumber(holds ? 1 : 0);
}

bool is_true(const QNumber& value) {
  return value.sign() != 0;
}

/// One application with the values of its arguments.
class Application {
 public:
  Application(const Term* term, std::span<const QNumber* const> arguments, const OpenValue& choices,
              ArrayValues* table)
      : t(term), args(arguments), open_value(choices), arrays(table) {}

  QNumber get_value() const;

 private:
  QNumber get_fp_value() const;
  const QNumber& arg(std::size_t i) const { return *args[i]; }
  bool holds(std::size_t i) const { return is_true(arg(i)); }
  IEEEFloat float_arg(std::size_t i) const {
    return IEEEFloat::from_bits(t->get_arg(i)->get_type()->get_format(), arg(i));
  }
  IEEEFloat::rounding_mode get_mode() const;
  QNumber choose() const;
  QNumber to_integer(bool is_signed) const;
  QNumber select() const;

  const Term* t;
  std::span<const QNumber* const> args;
  const OpenValue& open_value;
  ArrayValues* arrays;
};

QNumber Application::get_value() const {
  const SymbolTag::tag tag = t->get_tag();
  if (t->get_symbol()->is_function()) {
    const bool is_float = t->get_type()->get_kind() == DataType::Kind::floating_point;
    return is_float ? canonical_bits(t->get_type(), choose()) : choose();
  }
  if (find_operation(tag)->theory == Theory::bit_vectors) {
    const std::size_t last = t->get_arity() - 1;
    return fold_bv_operation(tag, t->get_symbol()->get_indices(),
                             {arg(0), t->get_arg(0)->get_type()->get_width()},
                             {arg(last), t->get_arg(last)->get_type()->get_width()});
  }
  switch (tag) {
    case T::bool_not:
      return truth(!holds(0));
    case T::bool_and:
      return truth(holds(0) && holds(1));
    case T::bool_or:
      return truth(holds(0) || holds(1));
    case T::bool_implies:
      return truth(!holds(0) || holds(1));
    case T::bool_xor:
      return truth(arg(0) != arg(1));
    case T::bool_iff:
    case T::equal:
      return truth(arg(0) == arg(1));
    case T::ite:
      return holds(0) ? arg(1) : arg(2);
    case T::array_select:
      return arrays->select(arg(0), arg(1));
    case T::array_store:
      return arrays->store(arg(0), arg(1), arg(2));
    case T::array_const:
      return arrays->make_constant(t->get_type(), arg(0));
    default:
      return get_fp_value();
  }
}

IEEEFloat::rounding_mode Application::get_mode() const {
  std::int64_t code = 0;
  arg(0).get_int64(&code);
  return static_cast<IEEEFloat::rounding_mode>(code);
}

/// What the theory leaves open of `t`.
QNumber Application::choose() const {
  if (!open_value) {
    return t->get_type()->has_bits() ? QNumber() : arrays->make_plain(t->get_type());
  }
  std::vector<QNumber> operands;
  for (const QNumber* value : args)
    operands.push_back(*value);
  return open_value(t, operands);
}

QNumber Application::to_integer(bool is_signed) const {
  const std::size_t width = t->get_type()->get_width();
  // None is negative, since the static analyser misreads the destructor of an optional number.
  QNumber value = ieee_to_integer(get_mode(), float_arg(1), width, is_signed).value_or(QNumber(-1));
  return value.sign() < 0 ? choose() : value;
}

QNumber Application::select() const {
  const IEEEFloat x = float_arg(0);
  const IEEEFloat y = float_arg(1);
  const bool open = x.is_zero() && y.is_zero() && x.is_sign_set() != y.is_sign_set();
  const bool negative_zero = open && is_true(choose());
  return (t->get_tag() == T::fp_min ? ieee_min : ieee_max)(x, y, negative_zero).get_bits();
}

QNumber Application::get_fp_value() const {
  switch (t->get_tag()) {
    case T::fp_from_bits:
      return canonical_bits(t->get_type(), arg(0));
    case T::fp_equal:
      return truth(is_eq(ieee_compare(float_arg(0), float_arg(1))));
    case T::fp_lt:
      return truth(is_lt(ieee_compare(float_arg(0), float_arg(1))));
    case T::fp_le:
      return truth(is_lteq(ieee_compare(float_arg(0), float_arg(1))));
    case T::fp_isnan:
      return truth(float_arg(0).is_nan());
    case T::fp_isinf:
      return truth(float_arg(0).is_inf());
    case T::fp_iszero:
      return truth(float_arg(0).is_zero());
    case T::fp_neg:
      return ieee_neg(float_arg(0)).get_bits();
    case T::fp_add:
      return ieee_add(get_mode(), float_arg(1), float_arg(2)).get_bits();
    case T::fp_sub:
      return ieee_sub(get_mode(), float_arg(1), float_arg(2)).get_bits();
    case T::fp_mul:
      return ieee_mul(get_mode(), float_arg(1), float_arg(2)).get_bits();
    case T::fp_div:
      return ieee_div(get_mode(), float_arg(1), float_arg(2)).get_bits();
    case T::fp_cast:
      return ieee_cast(t->get_type()->get_format(), get_mode(), float_arg(1)).get_bits();
    case T::fp_from_sbv: {
      const std::size_t width = t->get_arg(1)->get_type()->get_width();
      return ieee_from_integer(t->get_type()->get_format(), get_mode(),
                               BVNumber::to_signed(arg(1), width))
          .get_bits();
    }
    case T::fp_from_ubv:
      return ieee_from_integer(t->get_type()->get_format(), get_mode(), arg(1)).get_bits();
    case T::fp_to_sbv:
      return to_integer(true);
    case T::fp_to_ubv:
      return to_integer(false);
    case T::fp_to_bits: {
      const IEEEFloat x = float_arg(0);
      return x.is_nan() ? IEEEFloat::quiet_nan_bits(x.get_format()) : x.get_bits();
    }
    case T::fp_abs:
      return ieee_abs(float_arg(0)).get_bits();
    case T::fp_min:
    case T::fp_max:
      return select();
    case T::fp_sqrt:
      return ieee_sqrt(get_mode(), float_arg(1)).get_bits();
    case T::fp_fma:
      return ieee_fma(get_mode(), float_arg(1), float_arg(2), float_arg(3)).get_bits();
    case T::fp_rem:
      return ieee_rem(float_arg(0), float_arg(1)).get_bits();
    case T::fp_round_to_integral:
      return ieee_round_to_integral(get_mode(), float_arg(1)).get_bits();
    case T::fp_isnormal:
      return truth(float_arg(0).is_normal());
    case T::fp_issubnormal:
      return truth(float_arg(0).is_subnormal());
    case T::fp_isnegative:
      return truth(!float_arg(0).is_nan() && float_arg(0).is_sign_set());
    case T::fp_ispositive:
      return truth(!float_arg(0).is_nan() && !float_arg(0).is_sign_set());
    default:
      throw std::logic_error("a term has no value in a model: " + t->to_string());
  }
}

}  // namespace

QNumber canonical_bits(const DataType* type, const QNumber& bits) {
  const IEEEFloat value = IEEEFloat::from_bits(type->get_format(), bits);
  return value.is_nan() ? IEEEFloat::make_nan(type->get_format()).get_bits() : bits;
}

QNumber apply(const Term* t, std::span<const QNumber* const> args, const OpenValue& choices,
              ArrayValues* arrays) {
  return Application(t, args, choices, arrays).get_value();
}

}  // namespace vorn::semantics
