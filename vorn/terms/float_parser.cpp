// Reading floats. A number is an exact fraction times a power of two, and rounded once. Powers of
// ten are built, so their exponents are bounded; those of two are not.
#include <stdexcept>

#include "vorn/terms/float_text.h"

namespace vorn {
namespace {

constexpr long kMostTens = 100'000;
constexpr std::string_view kDecimal = "0123456789";
constexpr std::string_view kHexadecimal = "0123456789abcdefABCDEF";

/// A magnitude: 2^twos times a fraction.
struct Magnitude {
  QNumber fraction;
  mpz_class twos = 0;
};

/// Reads one number without its sign.
class NumberReader {
 public:
  explicit NumberReader(std::string_view whole) : text(whole) {}

  Magnitude read(std::string_view body) const {
    if (body.starts_with("0x") || body.starts_with("0X")) return read_hexadecimal(body.substr(2));
    const std::size_t slash = body.find('/');
    if (slash == std::string_view::npos) return read_decimal(body);
    const mpz_class denominator = read_digits(body.substr(slash + 1), kDecimal, 10);
    if (denominator == 0) fail();
    return {QNumber(read_digits(body.substr(0, slash), kDecimal, 10), denominator)};
  }

 private:
  [[noreturn]] void fail() const {
    throw std::invalid_argument("\"" + std::string(text) + "\" is no number");
  }

  mpz_class read_digits(std::string_view digits, std::string_view letters, int base) const {
    if (digits.empty() || digits.find_first_not_of(letters) != std::string_view::npos) fail();
    return mpz_class(std::string(digits), base);
  }

  /// Digits with or without a point; stores how many stand behind it.
  mpz_class read_pointed(std::string_view digits, std::string_view letters, int base,
                         unsigned long* behind) const {
    const std::size_t point = digits.find('.');
    if (point == std::string_view::npos) return read_digits(digits, letters, base);
    const std::string_view fraction = digits.substr(point + 1);
    *behind = fraction.size();
    return read_digits(std::string(digits.substr(0, point)).append(fraction), letters, base);
  }

  /// The integer behind the letter of an exponent, 0 where there is none.
  mpz_class read_exponent(std::string_view body, std::size_t letter) const {
    if (letter == std::string_view::npos) return 0;
    std::string_view digits = body.substr(letter + 1);
    const bool is_negative = digits.starts_with('-');
    if (is_negative || digits.starts_with('+')) digits.remove_prefix(1);
    const mpz_class magnitude = read_digits(digits, kDecimal, 10);
    return is_negative ? mpz_class(-magnitude) : magnitude;
  }

  Magnitude read_hexadecimal(std::string_view body) const {
    const std::size_t letter = body.find_first_of("pP");
    unsigned long behind = 0;
    const mpz_class digits = read_pointed(body.substr(0, letter), kHexadecimal, 16, &behind);
    return {QNumber::from_mpz(digits), read_exponent(body, letter) - mpz_class(4 * behind)};
  }

  Magnitude read_decimal(std::string_view body) const {
    const std::size_t letter = body.find_first_of("eE");
    unsigned long behind = 0;
    const mpz_class digits = read_pointed(body.substr(0, letter), kDecimal, 10, &behind);
    const mpz_class exponent = read_exponent(body, letter);
    if (abs(exponent) > kMostTens) {
      throw std::length_error("the exponent of \"" + std::string(text) + "\" is beyond " +
                              std::to_string(kMostTens));
    }
    const mpz_class tens = exponent - mpz_class(behind);
    mpz_class power;
    mpz_ui_pow_ui(power.get_mpz_t(), 10, mpz_class(abs(tens)).get_ui());
    if (tens < 0) return {QNumber(digits, power)};
    return {QNumber::from_mpz(digits * power)};
  }

  std::string_view text;  // for messages
};

}  // namespace

IEEEFloat parse_float(std::string_view text, IEEEFloat::format format,
                      IEEEFloat::rounding_mode mode) {
  if (text == "NaN" || text == "nan") return IEEEFloat::make_nan(format);
  const bool is_negative = text.starts_with('-');
  const std::string_view body = text.substr(is_negative || text.starts_with('+') ? 1 : 0);
  if (body == "oo" || body == "inf") return IEEEFloat::make_inf(format, is_negative);
  const Magnitude number = NumberReader(text).read(body);
  if (number.fraction.sign() == 0) return IEEEFloat::make_zero(format, is_negative);
  IEEEFloat result(format, mode);
  result.self_round(is_negative ? number.fraction.neg() : number.fraction, number.twos);
  return result;
}

}  // namespace vorn
