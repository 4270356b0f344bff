#include "vorn/terms/float_literals.h"

#include <bit>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "vorn/terms/float_text.h"
#include "vorn/terms/ieee_arithmetic.h"

namespace vorn {
namespace {

constexpr IEEEFloat::format kSingle = {8, 23};
constexpr IEEEFloat::format kDouble = {11, 52};
static_assert(std::numeric_limits<double>::is_iec559 && std::numeric_limits<float>::is_iec559);

IEEEFloat::format get_format(const DataType* type) {
  if (type != nullptr && type->get_kind() == DataType::Kind::floating_point) {
    return type->get_format();
  }
  throw std::invalid_argument("a floating-point literal needs a floating-point sort, got " +
                              (type == nullptr ? "none" : type->to_string()));
}

std::string format_text(IEEEFloat::format format) {
  return "(_ FloatingPoint " + std::to_string(format.e) + " " + std::to_string(format.m + 1) + ")";
}

double to_double(const IEEEFloat& value) {
  if (value.is_nan()) return std::numeric_limits<double>::quiet_NaN();
  return std::bit_cast<double>(value.get_bits().get_numerator().get_ui());
}

}  // namespace

FloatValue::FloatValue(double value)
    : number(IEEEFloat::from_bits(kDouble,
                                  QNumber::from_integer(std::bit_cast<std::uint64_t>(value)))) {}

FloatValue::FloatValue(float value)
    : number(IEEEFloat::from_bits(kSingle,
                                  QNumber::from_integer(std::bit_cast<std::uint32_t>(value)))) {}

IEEEFloat FloatValue::round(IEEEFloat::format format, IEEEFloat::rounding_mode mode) const {
  if (const auto* value = std::get_if<IEEEFloat>(&number)) return ieee_cast(format, mode, *value);
  if (const auto* text = std::get_if<std::string>(&number)) return parse_float(*text, format, mode);
  IEEEFloat result(format, mode);
  result.self_round(std::get<QNumber>(number));
  return result;
}

/// A number that lies between two floats is rounded apart by the two directed modes.
IEEEFloat FloatValue::convert(IEEEFloat::format format) const {
  IEEEFloat above = round(format, IEEEFloat::rounding_mode::plus_inf);
  const IEEEFloat below = round(format, IEEEFloat::rounding_mode::minus_inf);
  if (above.get_bits() == below.get_bits()) return above;
  throw std::invalid_argument(to_string() + " is no value of " + format_text(format) +
                              ": a rounding mode has to say which of its neighbours is meant");
}

std::string FloatValue::to_string() const {
  if (const auto* text = std::get_if<std::string>(&number)) return *text;
  if (const auto* value = std::get_if<QNumber>(&number)) return value->to_string();
  const auto& value = std::get<IEEEFloat>(number);
  const std::string decimal = decimal_text(value);
  return decimal.empty() ? hexadecimal_text(value) : decimal;
}

const Term* make_fp_literal(TermManager& manager, const DataType* type, const FloatValue& value) {
  return manager.make_fp_number(value.convert(get_format(type)));
}

const Term* make_fp_literal(TermManager& manager, const DataType* type,
                            IEEEFloat::rounding_mode mode, const FloatValue& value) {
  return manager.make_fp_number(value.round(get_format(type), mode));
}

IEEEFloat get_float(const Term* literal) {
  const DataType* type = literal->get_type();
  const QNumber* bits = literal->get_symbol()->get_literal();
  if (bits != nullptr && type->get_kind() == DataType::Kind::floating_point) {
    return IEEEFloat::from_bits(type->get_format(), *bits);
  }
  throw std::invalid_argument("expected a floating-point literal, got a term of " +
                              type->to_string());
}

double get_double(const Term* literal) {
  return to_double(FloatValue(get_float(literal)).convert(kDouble));
}

double get_double(const Term* literal, IEEEFloat::rounding_mode mode) {
  return to_double(ieee_cast(kDouble, mode, get_float(literal)));
}

}  // namespace vorn
