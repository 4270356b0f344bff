// What literals say, in the forms that C has.
#include "vorn/c/values.h"

#include <bit>
#include <stdexcept>
#include <string>

#include "vorn/c/guard.h"
#include "vorn/c/handles.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/bv_number.h"
#include "vorn/terms/float_text.h"
#include "vorn/terms/ieee_arithmetic.h"

using namespace vorn::c;
using vorn::DataType;
using vorn::IEEEFloat;
using vorn::QNumber;
using vorn::Term;

namespace {

[[noreturn]] void fail(const Term* term, const char* wanted) {
  throw std::invalid_argument(std::string("expected ") + wanted + ", got a term of " +
                              term->get_type()->to_string() + ": " + term->to_string());
}

/// The value of any literal, as an evaluator has it.
QNumber get_value(const vorn_manager& manager, const Term* term) {
  QNumber value;
  if (!vorn::semantics::read_literal(manager.terms, term, &value)) fail(term, "a literal");
  return value;
}

/// The same of a literal of a kind of sort.
QNumber get_value(const vorn_manager& manager, const vorn_term* record, DataType::Kind kind,
                  const char* wanted) {
  const Term* term = get(manager, record, "the term");
  if (term->get_type()->get_kind() != kind) fail(term, wanted);
  return get_value(manager, term);
}

IEEEFloat get_float(const vorn_manager& manager, const vorn_term* record) {
  const QNumber bits = get_value(manager, record, DataType::Kind::floating_point, "a float");
  return IEEEFloat::from_bits(record->term->get_type()->get_format(), bits);
}

std::uint64_t to_uint64(const QNumber& value) {
  if (vorn::BVNumber::bit_length(value) <= 64) return value.get_numerator().get_ui();
  throw std::length_error("a value of more than 64 bits");
}

}  // namespace

vorn_status vorn_value_get_bool(vorn_manager* manager, vorn_term* term, bool* result) {
  return answer(manager, __func__, result, [&] {
    return get_value(*manager, term, DataType::Kind::boolean, "a truth value").sign() != 0;
  });
}

vorn_status vorn_value_get_rounding_mode(vorn_manager* manager, vorn_term* term,
                                         vorn_rounding_mode* result) {
  return answer(manager, __func__, result, [&] {
    return static_cast<vorn_rounding_mode>(
        to_uint64(get_value(*manager, term, DataType::Kind::rounding_mode, "a rounding mode")));
  });
}

vorn_status vorn_value_get_binary(vorn_manager* manager, vorn_term* term, char** result) {
  return produce(manager, __func__, result, [&] {
    const Term* t = get(*manager, term, "the term");
    if (!t->get_type()->has_bits()) fail(t, "a literal of bits");
    const std::string digits = get_value(*manager, t).to_string(2);
    return copy_text(std::string(t->get_type()->get_value_width() - digits.size(), '0') + digits);
  });
}

vorn_status vorn_value_get_uint64(vorn_manager* manager, vorn_term* term, uint64_t* result) {
  return answer(manager, __func__, result,
                [&] { return to_uint64(get_value(*manager, get(*manager, term, "the term"))); });
}

vorn_status vorn_value_get_integer(vorn_manager* manager, vorn_term* term, bool is_signed,
                                   char** result) {
  return produce(manager, __func__, result, [&] {
    const QNumber value = get_value(*manager, term, DataType::Kind::bit_vector, "a bit-vector");
    const std::size_t width = term->term->get_type()->get_width();
    return copy_text((is_signed ? vorn::BVNumber::to_signed(value, width) : value).to_string());
  });
}

vorn_status vorn_value_get_decimal(vorn_manager* manager, vorn_term* term, char** result) {
  return produce(manager, __func__, result, [&] {
    const std::string text = vorn::decimal_text(get_float(*manager, term));
    if (text.empty()) throw std::length_error("a float whose exact value takes over 2^16 bits");
    return copy_text(text);
  });
}

vorn_status vorn_value_get_hexadecimal(vorn_manager* manager, vorn_term* term, char** result) {
  return produce(manager, __func__, result,
                 [&] { return copy_text(vorn::hexadecimal_text(get_float(*manager, term))); });
}

vorn_status vorn_value_get_double(vorn_manager* manager, vorn_term* term, double* result) {
  return answer(manager, __func__, result, [&] {
    const IEEEFloat value = vorn::ieee_cast({11, 52}, IEEEFloat::rounding_mode::nearest_even,
                                            get_float(*manager, term));
    return std::bit_cast<double>(to_uint64(value.get_bits()));
  });
}
