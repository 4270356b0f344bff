#include "tools/reading.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "vorn/terms/bv_number.h"
#include "vorn/terms/float_text.h"
#include "vorn/terms/ieee_float.h"

namespace vorn::tools {
namespace {

using fp::Reading;

constexpr const char* kModes[] = {"RNE, to nearest even", "RTZ, toward zero", "RTP, toward +oo",
                                  "RTN, toward -oo", "RNA, to nearest away from zero"};

bool is_float(const DataType* type) {
  return type->get_kind() == DataType::Kind::floating_point;
}

std::string yes_or_no(const QNumber& value) {
  return value.sign() == 0 ? "no" : "yes";
}

std::string float_text(IEEEFloat::format fmt, const QNumber& bits) {
  const IEEEFloat value = IEEEFloat::from_bits(fmt, bits);
  if (value.is_nan()) return "NaN";
  if (value.is_inf()) return value.is_sign_set() ? "-oo" : "+oo";
  const std::string decimal = decimal_text(value);
  const std::string exact = hexadecimal_text(value);
  return decimal.empty() ? exact : fmt::format("{} = {}", decimal, exact);
}

std::string mode_text(const QNumber& value) {
  std::int64_t code = 0;
  value.get_int64(&code);
  return kModes[code];
}

/// Sign, exponent and fraction.
std::string float_bits(IEEEFloat::format fmt, const std::string& digits) {
  return fmt::format("{} {} {}", digits.substr(0, 1), digits.substr(1, fmt.e),
                     digits.substr(1 + fmt.e));
}

std::string power_text(const QNumber& exponent) {
  return fmt::format("2^{}", exponent.to_string());
}

}  // namespace

std::string digits_text(const QNumber& value, std::size_t width, int base) {
  const std::size_t length = base == 2 ? width : (width + 3) / 4;
  const std::string digits = value.to_string(base);
  return std::string(length - std::min(length, digits.size()), '0') + digits;
}

std::string bits_text(const DataType* type, const QNumber& value, std::size_t width) {
  std::string digits = digits_text(value, width, 2);
  return is_float(type) ? float_bits(type->get_format(), digits) : digits;
}

std::string value_text(const DataType* type, const QNumber& value, bool is_signed) {
  switch (type->get_kind()) {
    case DataType::Kind::boolean:
      return yes_or_no(value);
    case DataType::Kind::rounding_mode:
      return mode_text(value);
    case DataType::Kind::floating_point:
      return float_text(type->get_format(), value);
    default:
      break;
  }
  return (is_signed ? BVNumber::to_signed(value, type->get_width()) : value).to_string();
}

const solver::Intermediate* IntermediateReader::find(const std::string& label,
                                                     std::size_t occurrence) const {
  // A stage that is run through again has its own exponent; one that is not has the only one.
  const solver::Intermediate* found = nullptr;
  for (const solver::Intermediate& value : explanation.intermediates) {
    if (value.label != label) continue;
    if (value.occurrence == occurrence) return &value;
    if (found == nullptr) found = &value;
  }
  return found;
}

/// The sort of the operands that are no rounding mode.
const DataType* IntermediateReader::source() const {
  return explanation.operation->get_arg(explanation.operation->get_arity() - 1)->get_type();
}

/// The format that is rounded to: the operands' where the result is none.
IEEEFloat::format IntermediateReader::target_format() const {
  const DataType* type = explanation.operation->get_type();
  return (is_float(type) ? type : source())->get_format();
}

/// The sort of a packed float; null where the value is none.
const DataType* IntermediateReader::float_type(Reading reading, std::size_t width) const {
  const DataType* type = nullptr;
  if (reading == Reading::source) type = source();
  if (reading == Reading::target) type = explanation.operation->get_type();
  return type != nullptr && is_float(type) && type->get_format().width() == width ? type : nullptr;
}

std::string IntermediateReader::bits(std::size_t i) const {
  const solver::Intermediate& value = explanation.intermediates[i];
  const fp::Label& label = fp::find_label(value.label);
  std::string digits = digits_text(value.value, value.width, 2);
  const IEEEFloat::format target = target_format();
  if (const DataType* type = float_type(label.reading, value.width)) {
    return float_bits(type->get_format(), digits);
  }
  switch (label.reading) {
    case Reading::magnitude:
      return fmt::format("{} {}", digits.substr(0, target.e), digits.substr(target.e));
    case Reading::significand:
    case Reading::signed_significand:
      if (value.width <= label.integer_bits) return digits;
      return fmt::format("{} {}", digits.substr(0, label.integer_bits),
                         digits.substr(label.integer_bits));
    default:
      return digits;
  }
}

std::string IntermediateReader::significand(const solver::Intermediate& value,
                                            const fp::Label& label) const {
  const solver::Intermediate* scale =
      find(fp::get_exponent_label(value.label, label), value.occurrence);
  const bool is_signed = label.reading == Reading::signed_significand;
  const QNumber number = is_signed ? BVNumber::to_signed(value.value, value.width) : value.value;
  if (number.sign() == 0) return "0";
  const bool negative = number.sign() < 0;
  const std::string digits = digits_text(negative ? number.neg() : number, value.width, 2);

  const std::size_t point = std::min(label.integer_bits, digits.size());
  std::string whole = digits.substr(0, point);
  whole.erase(0, std::min(whole.find('1'), point - 1));
  std::string fraction = digits.substr(point);
  fraction.erase(fraction.find_last_not_of('0') + 1);
  std::string text = (negative ? "-" : "") + whole + (fraction.empty() ? "" : "." + fraction);
  if (scale == nullptr) return text;

  const QNumber bias = target_format().bias();
  QNumber exponent = BVNumber::to_signed(scale->value, scale->width);
  // A field below 1 belongs to a subnormal number, which has the exponent of the field 1.
  if (label.scale == fp::Scale::biased) exponent = std::max(exponent, QNumber(1)) - bias;
  if (label.scale == fp::Scale::subnormal && exponent == bias.neg()) exponent += 1;
  exponent += label.offset;
  return fmt::format("{} * {}", text, power_text(exponent));
}

/// A field with room for numbers out of the range is signed.
std::string IntermediateReader::exponent_field(const solver::Intermediate& value) const {
  const IEEEFloat::format fmt = target_format();
  if (value.width > fmt.e) {
    const QNumber field = BVNumber::to_signed(value.value, value.width);
    if (field.sign() <= 0) return field.to_string() + ", zero or subnormal";
    return fmt::format("{}, {}", field.to_string(), power_text(field - fmt.bias()));
  }
  const std::string number = value.value.to_string();
  if (value.value.sign() == 0) return number + ", zero or subnormal";
  if (value.value == fmt.max_exponent()) return number + ", infinity or NaN";
  return fmt::format("{}, {}", number, power_text(value.value - fmt.bias()));
}

/// Before packing a magnitude may have lost the top of a field that is too large for the format.
std::string IntermediateReader::magnitude(const solver::Intermediate& value,
                                          const fp::Label& label) const {
  if (label.stage == fp::Stage::round) {
    const solver::Intermediate* too_large = find("exp_exponent_too_large", value.occurrence);
    if (too_large != nullptr && too_large->value.sign() != 0) return "too large";
  }
  return float_text(target_format(), value.value);
}

/// A packed result, or that of a conversion to an integer.
std::string IntermediateReader::result(const solver::Intermediate& value) const {
  const DataType* type = explanation.operation->get_type();
  const bool is_signed = explanation.operation->get_tag() == SymbolTag::fp_to_sbv;
  return value_text(type, value.value, is_signed);
}

std::string IntermediateReader::reading(std::size_t i) const {
  const solver::Intermediate& value = explanation.intermediates[i];
  const fp::Label& label = fp::find_label(value.label);
  switch (label.reading) {
    case Reading::bits:
      return "";
    case Reading::flag:
      return yes_or_no(value.value);
    case Reading::sign:
      return value.value.sign() == 0 ? "+" : "-";
    case Reading::mode:
      return mode_text(value.value);
    case Reading::exponent:
      return BVNumber::to_signed(value.value, value.width).to_string();
    case Reading::exponent_field:
      return exponent_field(value);
    case Reading::count:
      return value.value.to_string();
    case Reading::significand:
    case Reading::signed_significand:
      return significand(value, label);
    case Reading::magnitude:
      return magnitude(value, label);
    case Reading::source:
      return value_text(source(), value.value, false);
    case Reading::target:
      return result(value);
  }
  return "";
}

}  // namespace vorn::tools
