// The shortest decimal is found by trying: n digits are enough if the number that they make is
// rounded back to the float, and 1 + ceil((m + 1) log10(2)) digits always are (Matula 1968).
// Everything is done in exact integers.
#include "vorn/terms/float_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "vorn/terms/bv_number.h"

namespace vorn {
namespace {

/// Larger exponents are left to hexadecimals.
constexpr long kMaxExponent = 1 << 16;
constexpr std::size_t kMostDigitsToTry = 100;
/// Decimal exponents that are written with zeros.
constexpr long kLeastPlain = -5;
constexpr long kMostPlain = 17;

mpz_class power_of_ten(unsigned long n) {
  mpz_class power;
  mpz_ui_pow_ui(power.get_mpz_t(), 10, n);
  return power;
}

/// A positive number, digits * 10^exponent.
struct Decimal {
  mpz_class digits;
  long exponent;
};

/// value * 10^-exponent rounded to an integer, ties away from zero.
mpz_class scaled(const mpq_class& value, long exponent) {
  mpz_class numerator = value.get_num();
  mpz_class denominator = value.get_den();
  (exponent < 0 ? numerator : denominator) *=
      power_of_ten(static_cast<unsigned long>(std::labs(exponent)));
  mpz_class quotient;
  mpz_fdiv_q(quotient.get_mpz_t(), mpz_class(2 * numerator + denominator).get_mpz_t(),
             mpz_class(2 * denominator).get_mpz_t());
  return quotient;
}

bool stands_for(const Decimal& decimal, const IEEEFloat& magnitude) {
  const mpz_class power = power_of_ten(static_cast<unsigned long>(std::labs(decimal.exponent)));
  IEEEFloat rounded(magnitude.get_format(), IEEEFloat::rounding_mode::nearest_even);
  rounded.self_round(decimal.exponent < 0
                         ? QNumber(decimal.digits, power)
                         : QNumber(mpz_class(decimal.digits * power), mpz_class(1)));
  return rounded.get_bits() == magnitude.get_bits();
}

/// The exponent of the leading digit.
long leading_exponent(const mpq_class& value) {
  const auto digits = [](const mpz_class& n) {
    return static_cast<long>(mpz_sizeinbase(n.get_mpz_t(), 10));
  };
  // At most two too large.
  long exponent = digits(value.get_num()) - digits(value.get_den()) + 1;
  const auto reaches = [&](long n) {
    const mpz_class power = power_of_ten(static_cast<unsigned long>(std::labs(n)));
    return n < 0 ? value.get_num() * power >= value.get_den()
                 : value.get_num() >= value.get_den() * power;
  };
  while (!reaches(exponent))
    --exponent;
  return exponent;
}

std::string text(const Decimal& decimal) {
  std::string digits = decimal.digits.get_str();
  const long lead = decimal.exponent + static_cast<long>(digits.size()) - 1;
  digits.erase(digits.find_last_not_of('0') + 1);
  const auto count = static_cast<long>(digits.size());
  if (lead < kLeastPlain || lead >= kMostPlain) {
    const std::string tail = count > 1 ? "." + digits.substr(1) : "";
    return digits.substr(0, 1) + tail + "e" + (lead < 0 ? "-" : "+") +
           std::to_string(std::labs(lead));
  }
  if (lead < 0) return "0." + std::string(static_cast<std::size_t>(-lead - 1), '0') + digits;
  if (count <= lead + 1) {
    return digits + std::string(static_cast<std::size_t>(lead + 1 - count), '0') + ".0";
  }
  return digits.insert(static_cast<std::size_t>(lead + 1), ".");
}

}  // namespace

std::string decimal_text(const IEEEFloat& value) {
  const std::string sign = value.is_sign_set() ? "-" : "";
  if (value.is_nan()) return "NaN";
  if (value.is_inf()) return value.is_sign_set() ? "-oo" : "+oo";
  if (value.is_zero()) return sign + "0.0";
  const mpz_class exponent = value.get_exponent();
  const IEEEFloat::format fmt = value.get_format();
  if (abs(exponent) > kMaxExponent || fmt.m > static_cast<std::uint64_t>(kMaxExponent)) return "";

  mpq_class magnitude = value.get_significand();
  const unsigned long distance = mpz_class(abs(exponent)).get_ui();
  if (exponent < 0) {
    mpq_div_2exp(magnitude.get_mpq_t(), magnitude.get_mpq_t(), distance);
  } else {
    mpq_mul_2exp(magnitude.get_mpq_t(), magnitude.get_mpq_t(), distance);
  }
  const IEEEFloat positive =
      IEEEFloat::from_bits(fmt, BVNumber::modulo(value.get_bits(), fmt.width() - 1));
  // 30103 / 100000 is above the logarithm.
  const std::size_t enough = 2 + static_cast<std::size_t>((fmt.m + 1) * 30103 / 100000);
  const long lead = leading_exponent(magnitude);
  for (std::size_t n = enough > kMostDigitsToTry ? enough : 1;; ++n) {
    const long last = lead - static_cast<long>(n) + 1;
    const Decimal decimal{scaled(magnitude, last), last};
    if (n >= enough || stands_for(decimal, positive)) return sign + text(decimal);
  }
}

std::string hexadecimal_text(const IEEEFloat& value) {
  const std::string sign = value.is_sign_set() ? "-" : "";
  if (value.is_nan()) return "nan";
  if (value.is_inf()) return sign + "inf";
  if (value.is_zero()) return sign + "0x0p+0";
  const IEEEFloat::format fmt = value.get_format();
  const mpz_class exponent = value.get_exponent() + mpz_class(static_cast<unsigned long>(fmt.m));
  const std::uint64_t nibbles = (fmt.m + 3) / 4;
  mpz_class fraction = value.get_significand();
  if (value.is_normal()) mpz_clrbit(fraction.get_mpz_t(), fmt.m);
  fraction <<= 4 * nibbles - fmt.m;
  std::string digits = fraction.get_str(16);
  digits.insert(0, nibbles - std::min<std::size_t>(nibbles, digits.size()), '0');
  digits.erase(digits.find_last_not_of('0') + 1);
  return sign + (value.is_normal() ? "0x1" : "0x0") + (digits.empty() ? "" : "." + digits) + "p" +
         (exponent < 0 ? "" : "+") + exponent.get_str();
}

}  // namespace vorn
