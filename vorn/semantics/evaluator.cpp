#include "vorn/semantics/evaluator.h"

#include <stdexcept>
#include <vector>

#include "vorn/terms/post_order.h"

namespace vorn::semantics {
namespace {

// One operation on wide operands can take a millisecond.
constexpr std::uint32_t kStepsBetweenTests = 1U << 6U;

bool is_true(const QNumber& value) {
  return value.sign() != 0;
}

}  // namespace

const QNumber& Evaluator::evaluate(const Term* root) {
  walk_post_order<ArgumentOrder::last_to_first>(
      root, [this](const Term* t) { return values.contains(t); },
      [this](const Term* t) { values.emplace(t, t->get_arity() == 0 ? leaf(t) : apply(t)); });
  return values.at(root);
}

QNumber Evaluator::leaf(const Term* t) {
  QNumber value;
  if (!read_literal(mgr, t, &value)) value = assignment(t);
  if (!mgr.is_fp_type(t->get_type(), nullptr, nullptr)) return value;
  return canonical_bits(t->get_type(), value);
}

QNumber Evaluator::apply(const Term* t) {
  if (++steps % kStepsBetweenTests == 0 && termtest != nullptr && termtest->terminate()) {
    throw Terminated();
  }
  std::vector<const QNumber*> args;
  for (const Term* arg : t->get_args())
    args.push_back(&values.at(arg));
  return semantics::apply(t, args, open_value, array_values);
}

bool read_literal(const TermManager& manager, const Term* t, QNumber* value) {
  IEEEFloat::rounding_mode mode{};
  if (t == manager.make_true() || t == manager.make_false()) {
    *value = QNumber(t == manager.make_true() ? 1 : 0);
  } else if (manager.is_fprounding(t->get_symbol(), &mode)) {
    *value = QNumber(static_cast<int>(mode));
  } else {
    return manager.is_number(t, value);
  }
  return true;
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
    case DataType::Kind::uninterpreted:
      return manager.make_element(type, value);
    case DataType::Kind::array:
      throw std::logic_error("the literal of an array needs the table of its value");
  }
  return manager.make_fp_number(value, type->get_e(), type->get_m());
}

const Term* make_literal(TermManager& manager, const DataType* type, const QNumber& value,
                         ArrayValues& arrays) {
  if (type->get_kind() != DataType::Kind::array) return make_literal(manager, type, value);
  const DataType* index = type->get_index();
  const DataType* element = type->get_element();
  const Term* array = manager.make_const_array(
      type, make_literal(manager, element, arrays.get_default(value), arrays));
  for (const auto& [i, v] : arrays.get_entries(value)) {
    array = manager.make_store(array, make_literal(manager, index, i, arrays),
                               make_literal(manager, element, v, arrays));
  }
  return array;
}

}  // namespace vorn::semantics
