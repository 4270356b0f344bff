#include "vorn/semantics/open_terms.h"

#include "vorn/terms/ieee_float.h"
#include "vorn/terms/operations.h"
#include "vorn/terms/post_order.h"

namespace vorn::semantics {
namespace {

bool is_negative(const DataType* type, const QNumber& value) {
  return IEEEFloat::from_bits(type->get_format(), value).is_sign_set();
}

}  // namespace

bool is_open(const Term* t) {
  const Operation* operation = find_operation(t->get_tag());
  return operation != nullptr && operation->is_open;
}

bool is_conversion(const Term* t) {
  return is_open(t) && t->get_type()->get_kind() == DataType::Kind::bit_vector;
}

bool is_selection(const Term* t) {
  return is_open(t) && t->get_type()->get_kind() == DataType::Kind::floating_point;
}

std::vector<const Term*> find_open_terms(std::span<const Term* const> formulas) {
  std::vector<const Term*> found = list_post_order(formulas);
  std::erase_if(found, [](const Term* t) { return !is_open(t); });
  return found;
}

QNumber get_chosen_sign(const QNumber& choice, const DataType* type, const QNumber& first) {
  return QNumber(choice.test_bit(is_negative(type, first) ? 1 : 0) ? 1 : 0);
}

QNumber make_zero_choice(const DataType* type, const QNumber& zero) {
  return QNumber(is_negative(type, zero) ? 0b11 : 0b00);
}

}  // namespace vorn::semantics
