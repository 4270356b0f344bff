// Literals from numbers as programs have them, and back.
//
// A number either is a value of a format or lies between two of them. Without a rounding mode only
// the first will do: a program that means 0.1 in binary16 says how it is to be rounded, and one
// that counts on an exact value hears of it where it is none.
#ifndef VORN_TERMS_FLOAT_LITERALS_H
#define VORN_TERMS_FLOAT_LITERALS_H

#include <concepts>
#include <string>
#include <string_view>
#include <variant>

#include "vorn/terms/ieee_float.h"
#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn {

/// A machine integer, truth values apart.
template <class Value>
concept MachineInteger = std::integral<Value> && !std::same_as<Value, bool>;

/// A number that is to become a float, made of whatever stands for one.
class VORN_EXPORT FloatValue {
 public:
  /// A float of the machine, in the formats of IEEE 754: zeros keep their sign, infinities and NaNs
  /// are such.
  FloatValue(double value);
  FloatValue(float value);
  /// An integer or, from QNumber, a rational; zero is +0.
  template <MachineInteger Integer>
  FloatValue(Integer value) : number(QNumber::from_integer(value)) {}
  FloatValue(const QNumber& value) : number(value) {}
  /// A float of any format.
  FloatValue(const IEEEFloat& value) : number(value) {}
  /// What parse_float reads. It is read when the number is rounded, which throws where it is none.
  template <std::convertible_to<std::string_view> Text>
  FloatValue(const Text& text) : number(std::string(std::string_view(text))) {}
  // Truth values and wider floats would be narrowed without a word.
  FloatValue(bool value) = delete;
  FloatValue(long double value) = delete;

  /// The number rounded to the format, as IEEE 754-2019, clauses 4.3 and 7.4, have it; NaN is the
  /// canonical one. Throws as parse_float does.
  IEEEFloat round(IEEEFloat::format format, IEEEFloat::rounding_mode mode) const;
  /// The number itself in the format. Throws std::invalid_argument where it is none of its values,
  /// and as parse_float does.
  IEEEFloat convert(IEEEFloat::format format) const;

 private:
  std::string to_string() const;

  std::variant<IEEEFloat, QNumber, std::string> number;
};

/// The literal of a floating-point sort that is exactly `value`. Throws std::invalid_argument where
/// the sort has no such value or is none of floats, and as parse_float does.
VORN_EXPORT const Term* make_fp_literal(TermManager& manager, const DataType* type,
                                        const FloatValue& value);
/// The same for `value` rounded once. Throws std::invalid_argument where the sort is none of
/// floats, and as parse_float does.
VORN_EXPORT const Term* make_fp_literal(TermManager& manager, const DataType* type,
                                        IEEEFloat::rounding_mode mode, const FloatValue& value);

/// The float that a literal stands for, such as a value of a model. Throws std::invalid_argument
/// where the term is no literal of a floating-point sort.
VORN_EXPORT IEEEFloat get_float(const Term* literal);
/// The same as a double, which every literal of a format with e <= 11 and m <= 52 is; NaN is the
/// machine's own. Throws std::invalid_argument where no double has the value, and as get_float
/// does.
VORN_EXPORT double get_double(const Term* literal);
/// The same rounded to a double. Throws as get_float does.
VORN_EXPORT double get_double(const Term* literal, IEEEFloat::rounding_mode mode);

}  // namespace vorn

#endif
