// Rounding works on integers: the significand is cut at the last bit that the format keeps, what is
// cut off decides the direction, and a carry out of the significand simply runs into the exponent
// field above it. Exponents are integers of any size, so that formats with wide exponents cost no
// more than others.
#include "vorn/terms/ieee_float.h"

#include <stdexcept>
#include <string>

#include "vorn/terms/bv_number.h"

namespace vorn {
namespace {

constexpr unsigned long kMaxValueBits = 1UL << 30U;

std::size_t bit_count(const mpz_class& x) {
  return mpz_sizeinbase(x.get_mpz_t(), 2);
}

/// What is left of an integer without its `n` lowest bits, and what they say about rounding.
struct Cut {
  mpz_class kept;
  int half;      // the bits against half a unit of `kept`: -1 below, 0 equal, 1 above
  bool inexact;  // they are not all zero
};

/// With `sticky` there is something more below the lowest bit.
Cut cut_bits(const mpz_class& x, const mpz_class& n, bool sticky) {
  Cut cut{0, -1, true};
  if (n > static_cast<unsigned long>(mpz_sizeinbase(x.get_mpz_t(), 2))) return cut;
  const unsigned long bits = n.get_ui();
  mpz_fdiv_q_2exp(cut.kept.get_mpz_t(), x.get_mpz_t(), bits);
  const bool rest = sticky || mpz_scan1(x.get_mpz_t(), 0) < bits - 1;
  const bool guard = mpz_tstbit(x.get_mpz_t(), bits - 1) != 0;
  cut.half = !guard ? -1 : rest ? 1 : 0;
  cut.inexact = guard || rest;
  return cut;
}

bool rounds_away(IEEEFloat::rounding_mode rm, bool negative, bool odd, int half, bool inexact) {
  switch (rm) {
    case IEEEFloat::rounding_mode::nearest_even:
      return half > 0 || (half == 0 && odd);
    case IEEEFloat::rounding_mode::nearest_away:
      return half >= 0;
    case IEEEFloat::rounding_mode::plus_inf:
      return inexact && !negative;
    case IEEEFloat::rounding_mode::minus_inf:
      return inexact && negative;
    case IEEEFloat::rounding_mode::toward_zero:
      break;
  }
  return false;
}

}  // namespace

QNumber IEEEFloat::format::bias() const {
  return BVNumber::power_of_two(e - 1) - 1;
}

QNumber IEEEFloat::format::max_exponent() const {
  return BVNumber::all_ones(e);
}

IEEEFloat IEEEFloat::from_bits(format f, const QNumber& bits) {
  IEEEFloat result(f, rounding_mode::nearest_even);
  result.bits = bits;
  return result;
}

IEEEFloat IEEEFloat::make_nan(format f) {
  IEEEFloat result(f, rounding_mode::nearest_even);
  result.self_nan();
  return result;
}

IEEEFloat IEEEFloat::make_inf(format f, bool negative) {
  IEEEFloat result(f, rounding_mode::nearest_even);
  result.self_inf(negative);
  return result;
}

IEEEFloat IEEEFloat::make_zero(format f, bool negative) {
  IEEEFloat result(f, rounding_mode::nearest_even);
  result.self_zero(negative);
  return result;
}

IEEEFloat IEEEFloat::make_largest(format f, bool negative) {
  IEEEFloat result(f, rounding_mode::nearest_even);
  result.self_largest(negative);
  return result;
}

QNumber IEEEFloat::quiet_nan_bits(format f) {
  return BVNumber::bv_concat(f.max_exponent(), BVNumber::power_of_two(f.m - 1), f.m);
}

void IEEEFloat::set(bool negative, const QNumber& exponent_field, const QNumber& fraction_field) {
  const QNumber body = BVNumber::bv_concat(exponent_field, fraction_field, fmt.m);
  bits = BVNumber::bv_concat(QNumber(negative ? 1 : 0), body, fmt.e + fmt.m);
}

void IEEEFloat::self_nan() {
  set(true, fmt.max_exponent(), QNumber(1));
}

void IEEEFloat::self_inf(bool negative) {
  set(negative, fmt.max_exponent(), QNumber(0));
}

void IEEEFloat::self_zero(bool negative) {
  set(negative, QNumber(0), QNumber(0));
}

void IEEEFloat::self_largest(bool negative) {
  set(negative, fmt.max_exponent() - 1, BVNumber::all_ones(fmt.m));
}

void IEEEFloat::self_round(const QNumber& value, const mpz_class& exponent) {
  const mpz_class n = abs(value.get_numerator());
  const mpz_class d = value.get_denominator();
  if (n == 0) {
    self_zero(false);
    return;
  }
  // Scaled so that the integer quotient has at least m + 3 bits; the remainder is below them.
  const std::size_t wanted = fmt.m + 3 + bit_count(d);
  const std::size_t scale = wanted > bit_count(n) ? wanted - bit_count(n) : 0;
  mpz_class scaled;
  mpz_mul_2exp(scaled.get_mpz_t(), n.get_mpz_t(), scale);
  mpz_class q;
  mpz_class r;
  mpz_fdiv_qr(q.get_mpz_t(), r.get_mpz_t(), scaled.get_mpz_t(), d.get_mpz_t());
  self_round(value.sign() < 0, q, exponent - static_cast<unsigned long>(scale), r != 0);
}

void IEEEFloat::self_round(bool negative, const mpz_class& significand, const mpz_class& exponent,
                           bool sticky) {
  const mpz_class bias = fmt.bias().get_numerator();
  const mpz_class smallest = 1 - bias;
  const std::size_t length = bit_count(significand);
  const mpz_class log = exponent + static_cast<unsigned long>(length) - 1;
  if (log > bias) {
    // Infinity, or the largest finite magnitude where the mode points toward zero.
    if (rounds_away(rm, negative, true, 1, true)) {
      self_inf(negative);
    } else {
      self_largest(negative);
    }
    return;
  }

  // q counts units of the last place, 2^(top - m); subnormals share the unit of the smallest
  // normal numbers.
  const mpz_class top = log < smallest ? smallest : log;
  const mpz_class cut = top - static_cast<unsigned long>(fmt.m) - exponent;
  mpz_class q;
  if (cut <= 0) {
    mpz_mul_2exp(q.get_mpz_t(), significand.get_mpz_t(), mpz_class(-cut).get_ui());
  } else {
    const Cut low = cut_bits(significand, cut, sticky);
    const bool odd = mpz_odd_p(low.kept.get_mpz_t()) != 0;
    q = low.kept + (rounds_away(rm, negative, odd, low.half, low.inexact) ? 1 : 0);
  }

  // q is a fraction below a zero exponent field, or 2^m plus a fraction: adding it to the field of
  // the exponent before carries as IEEE patterns are ordered, up to infinity.
  const mpz_class field = log < smallest ? mpz_class(0) : mpz_class(top + bias - 1);
  mpz_class body;
  mpz_mul_2exp(body.get_mpz_t(), field.get_mpz_t(), fmt.m);
  body += q;
  bits = BVNumber::bv_concat(QNumber(negative ? 1 : 0), QNumber::from_mpz(body), fmt.e + fmt.m);
}

QNumber IEEEFloat::biased_exponent() const {
  return BVNumber::bv_extract(fmt.e + fmt.m - 1, fmt.m, bits);
}

QNumber IEEEFloat::fraction() const {
  return BVNumber::bv_extract(fmt.m - 1, 0, bits);
}

bool IEEEFloat::is_nan() const {
  return biased_exponent() == fmt.max_exponent() && fraction().sign() != 0;
}

bool IEEEFloat::is_inf() const {
  return biased_exponent() == fmt.max_exponent() && fraction().sign() == 0;
}

bool IEEEFloat::is_zero() const {
  return biased_exponent().sign() == 0 && fraction().sign() == 0;
}

bool IEEEFloat::is_normal() const {
  const QNumber field = biased_exponent();
  return field.sign() != 0 && field != fmt.max_exponent();
}

bool IEEEFloat::is_subnormal() const {
  return biased_exponent().sign() == 0 && fraction().sign() != 0;
}

bool IEEEFloat::is_sign_set() const {
  return bits.test_bit(fmt.e + fmt.m);
}

mpz_class IEEEFloat::get_significand() const {
  mpz_class significand = fraction().get_numerator();
  if (biased_exponent().sign() != 0) mpz_setbit(significand.get_mpz_t(), fmt.m);
  return significand;
}

mpz_class IEEEFloat::get_exponent() const {
  const QNumber field = biased_exponent();
  const QNumber exponent = (field.sign() == 0 ? QNumber(1) : field) - fmt.bias();
  return exponent.get_numerator() - static_cast<unsigned long>(fmt.m);
}

mpz_class IEEEFloat::get_rounded_magnitude(rounding_mode mode) const {
  const mpz_class exponent = get_exponent();
  const mpz_class significand = get_significand();
  if (significand == 0) return 0;
  if (exponent >= 0) return abs(get_value().get_numerator());
  const Cut low = cut_bits(significand, -exponent, false);
  const bool odd = mpz_odd_p(low.kept.get_mpz_t()) != 0;
  return low.kept + (rounds_away(mode, is_sign_set(), odd, low.half, low.inexact) ? 1 : 0);
}

QNumber IEEEFloat::get_value() const {
  const mpz_class exponent = get_exponent();
  const mpz_class magnitude_bits = abs(exponent);
  if (magnitude_bits > kMaxValueBits) {
    throw std::length_error("the value of a float of exponent width " + std::to_string(fmt.e) +
                            " is too large to be written out");
  }
  const QNumber power = BVNumber::power_of_two(magnitude_bits.get_ui());
  const QNumber significand = QNumber::from_mpz(get_significand());
  const QNumber magnitude = exponent < 0 ? significand / power : significand * power;
  return is_sign_set() ? magnitude.neg() : magnitude;
}

}  // namespace vorn
