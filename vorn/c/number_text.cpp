// A number is an exact fraction times a power of two, and rounded once. Powers of ten are built, so
// their exponents are bounded; those of two are not.
#include "vorn/c/number_text.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>

namespace vorn::c {
namespace {

constexpr long kMostTens = 100'000;

[[noreturn]] void fail(std::string_view text, std::string_view wanted) {
  throw std::invalid_argument("\"" + std::string(text) + "\" is no " + std::string(wanted));
}

bool is_made_of(std::string_view text, std::string_view letters) {
  return !text.empty() && text.find_first_not_of(letters) == std::string_view::npos;
}

constexpr std::string_view kDecimal = "0123456789";
constexpr std::string_view kHexadecimal = "0123456789abcdefABCDEF";

/// Digits with or without a point among them, and how many stand behind it.
struct Digits {
  mpz_class value;
  std::size_t fraction = 0;
};

std::optional<Digits> read_digits(std::string_view text, std::string_view letters, int base) {
  const std::size_t point = text.find('.');
  std::string digits(text.substr(0, point));
  Digits result;
  if (point != std::string_view::npos) {
    digits += text.substr(point + 1);
    result.fraction = text.size() - point - 1;
  }
  if (!is_made_of(digits, letters) || result.value.set_str(digits, base) != 0) return std::nullopt;
  return result;
}

/// The integer behind the letter of an exponent.
std::optional<mpz_class> read_exponent(std::string_view text) {
  const bool is_negative = text.starts_with('-');
  if (is_negative || text.starts_with('+')) text.remove_prefix(1);
  if (!is_made_of(text, kDecimal)) return std::nullopt;
  const mpz_class value{std::string(text)};
  return is_negative ? mpz_class(-value) : value;
}

/// A magnitude, 2^twos times a fraction.
struct Magnitude {
  QNumber fraction;
  mpz_class twos = 0;
};

std::optional<Magnitude> read_hexadecimal(std::string_view text) {
  const std::size_t letter = text.find_first_of("pP");
  const auto digits = read_digits(text.substr(0, letter), kHexadecimal, 16);
  std::optional<mpz_class> exponent = mpz_class(0);
  if (letter != std::string_view::npos) exponent = read_exponent(text.substr(letter + 1));
  if (!digits || !exponent) return std::nullopt;
  const mpz_class behind(static_cast<unsigned long>(4 * digits->fraction));
  return Magnitude{QNumber::from_mpz(digits->value), *exponent - behind};
}

std::optional<Magnitude> read_decimal(std::string_view text) {
  const std::size_t letter = text.find_first_of("eE");
  const auto digits = read_digits(text.substr(0, letter), kDecimal, 10);
  std::optional<mpz_class> exponent = mpz_class(0);
  if (letter != std::string_view::npos) exponent = read_exponent(text.substr(letter + 1));
  if (!digits || !exponent) return std::nullopt;
  if (abs(*exponent) > kMostTens) {
    throw std::length_error("the exponent of \"" + std::string(text) + "\" is beyond " +
                            std::to_string(kMostTens));
  }
  const mpz_class tens = *exponent - mpz_class(static_cast<unsigned long>(digits->fraction));
  mpz_class power;
  mpz_ui_pow_ui(power.get_mpz_t(), 10, mpz_class(abs(tens)).get_ui());
  if (tens < 0) return Magnitude{QNumber(digits->value, power)};
  return Magnitude{QNumber::from_mpz(digits->value * power)};
}

std::optional<Magnitude> read_fraction(std::string_view text, std::size_t slash) {
  const std::string_view above = text.substr(0, slash);
  const std::string_view below = text.substr(slash + 1);
  if (!is_made_of(above, kDecimal) || !is_made_of(below, kDecimal)) return std::nullopt;
  const mpz_class denominator{std::string(below)};
  if (denominator == 0) return std::nullopt;
  return Magnitude{QNumber(mpz_class{std::string(above)}, denominator)};
}

std::optional<Magnitude> read_magnitude(std::string_view text) {
  if (text.starts_with("0x") || text.starts_with("0X")) return read_hexadecimal(text.substr(2));
  if (const std::size_t slash = text.find('/'); slash != std::string_view::npos) {
    return read_fraction(text, slash);
  }
  return read_decimal(text);
}

}  // namespace

IEEEFloat read_float(std::string_view text, IEEEFloat::format format,
                     IEEEFloat::rounding_mode mode) {
  if (text == "NaN" || text == "nan") return IEEEFloat::make_nan(format);
  const bool is_negative = text.starts_with('-');
  const std::string_view body = text.substr(is_negative || text.starts_with('+') ? 1 : 0);
  if (body == "oo" || body == "inf") return IEEEFloat::make_inf(format, is_negative);
  const std::optional<Magnitude> number = read_magnitude(body);
  if (!number) fail(text, "number");
  if (number->fraction.sign() == 0) return IEEEFloat::make_zero(format, is_negative);
  IEEEFloat result(format, mode);
  result.self_round(is_negative ? number->fraction.neg() : number->fraction, number->twos);
  return result;
}

QNumber read_integer(std::string_view text) {
  const bool is_negative = text.starts_with('-');
  const std::string_view digits = text.substr(is_negative || text.starts_with('+') ? 1 : 0);
  if (!is_made_of(digits, kDecimal)) fail(text, "integer");
  const QNumber value = QNumber::from_string(digits);
  return is_negative ? value.neg() : value;
}

QNumber read_binary(std::string_view text) {
  if (!is_made_of(text, "01")) fail(text, "text of 0 and 1");
  return QNumber::from_string(text, 2);
}

}  // namespace vorn::c
