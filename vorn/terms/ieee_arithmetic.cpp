// Finite operands are an integer significand times a power of two. Sums and products of such are
// exact; a quotient is cut beyond the bits that rounding looks at, and so is a sum whose operands
// lie so far apart that the smaller only shows in the direction of rounding.
#include "vorn/terms/ieee_arithmetic.h"

#include "vorn/terms/bv_number.h"

namespace vorn {
namespace {

IEEEFloat canonical_nan(IEEEFloat::format fmt) {
  IEEEFloat result(fmt, IEEEFloat::rounding_mode::nearest_even);
  result.self_nan();
  return result;
}

IEEEFloat infinity(IEEEFloat::format fmt, bool negative) {
  IEEEFloat result(fmt, IEEEFloat::rounding_mode::nearest_even);
  result.self_inf(negative);
  return result;
}

IEEEFloat zero(IEEEFloat::format fmt, bool negative) {
  IEEEFloat result(fmt, IEEEFloat::rounding_mode::nearest_even);
  result.self_zero(negative);
  return result;
}

IEEEFloat rounded(IEEEFloat::format fmt, IEEEFloat::rounding_mode rm, bool negative,
                  const mpz_class& significand, const mpz_class& exponent, bool sticky) {
  IEEEFloat result(fmt, rm);
  result.self_round(negative, significand, exponent, sticky);
  return result;
}

mpz_class shifted(const mpz_class& x, const mpz_class& n) {
  mpz_class result;
  mpz_mul_2exp(result.get_mpz_t(), x.get_mpz_t(), n.get_ui());
  return result;
}

mpz_class signed_significand(const IEEEFloat& a) {
  mpz_class s = a.get_significand();
  return a.is_sign_set() ? mpz_class(-s) : s;
}

/// The sum of two finite non-zero floats, `a` with the larger exponent.
IEEEFloat add_finite(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b) {
  const IEEEFloat::format fmt = a.get_format();
  const mpz_class distance = a.get_exponent() - b.get_exponent();
  const mpz_class limit(static_cast<unsigned long>(2 * fmt.m + 8));
  mpz_class sum;
  mpz_class exponent;
  bool sticky = false;
  if (distance <= limit) {
    sum = shifted(signed_significand(a), distance) + signed_significand(b);
    exponent = b.get_exponent();
  } else {
    // |b| is below 2^m units of the scaled significand of a, far less than the 2^(2m+6) of half a
    // unit in the last place: only its direction shows. The sticky bit stands for it, one unit
    // down where it points toward zero.
    sum = shifted(signed_significand(a), limit);
    exponent = a.get_exponent() - limit;
    sticky = true;
    if (a.is_sign_set() != b.is_sign_set()) sum -= sgn(sum);
  }
  if (sum == 0) return zero(fmt, rm == IEEEFloat::rounding_mode::minus_inf);
  return rounded(fmt, rm, sum < 0, abs(sum), exponent, sticky);
}

}  // namespace

IEEEFloat ieee_add(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b) {
  const IEEEFloat::format fmt = a.get_format();
  if (a.is_nan() || b.is_nan()) return canonical_nan(fmt);
  const bool same_sign = a.is_sign_set() == b.is_sign_set();
  if (a.is_inf() && b.is_inf() && !same_sign) return canonical_nan(fmt);
  if (a.is_inf()) return a;
  if (b.is_inf()) return b;
  if (a.is_zero() && b.is_zero()) {
    const bool negative = same_sign ? a.is_sign_set() : rm == IEEEFloat::rounding_mode::minus_inf;
    return zero(fmt, negative);
  }
  if (a.is_zero()) return b;
  if (b.is_zero()) return a;
  return a.get_exponent() >= b.get_exponent() ? add_finite(rm, a, b) : add_finite(rm, b, a);
}

IEEEFloat ieee_sub(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b) {
  return ieee_add(rm, a, ieee_neg(b));
}

IEEEFloat ieee_mul(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b) {
  const IEEEFloat::format fmt = a.get_format();
  const bool negative = a.is_sign_set() != b.is_sign_set();
  if (a.is_nan() || b.is_nan()) return canonical_nan(fmt);
  if ((a.is_inf() && b.is_zero()) || (a.is_zero() && b.is_inf())) return canonical_nan(fmt);
  if (a.is_inf() || b.is_inf()) return infinity(fmt, negative);
  if (a.is_zero() || b.is_zero()) return zero(fmt, negative);
  return rounded(fmt, rm, negative, a.get_significand() * b.get_significand(),
                 a.get_exponent() + b.get_exponent(), false);
}

IEEEFloat ieee_div(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b) {
  const IEEEFloat::format fmt = a.get_format();
  const bool negative = a.is_sign_set() != b.is_sign_set();
  if (a.is_nan() || b.is_nan()) return canonical_nan(fmt);
  if ((a.is_inf() && b.is_inf()) || (a.is_zero() && b.is_zero())) return canonical_nan(fmt);
  if (a.is_inf() || b.is_zero()) return infinity(fmt, negative);
  if (b.is_inf() || a.is_zero()) return zero(fmt, negative);
  const mpz_class scale(static_cast<unsigned long>(2 * fmt.m + 4));
  mpz_class q;
  mpz_class r;
  mpz_fdiv_qr(q.get_mpz_t(), r.get_mpz_t(), shifted(a.get_significand(), scale).get_mpz_t(),
              b.get_significand().get_mpz_t());
  return rounded(fmt, rm, negative, q, a.get_exponent() - b.get_exponent() - scale, r != 0);
}

IEEEFloat ieee_neg(const IEEEFloat& a) {
  const IEEEFloat::format fmt = a.get_format();
  if (a.is_nan()) return canonical_nan(fmt);
  const QNumber sign = BVNumber::power_of_two(fmt.e + fmt.m);
  return IEEEFloat::from_bits(fmt, BVNumber::bv_xor(a.get_bits(), sign));
}

IEEEFloat ieee_cast(IEEEFloat::format to, IEEEFloat::rounding_mode rm, const IEEEFloat& a) {
  if (a.is_nan()) return canonical_nan(to);
  if (a.is_inf()) return infinity(to, a.is_sign_set());
  if (a.is_zero()) return zero(to, a.is_sign_set());
  return rounded(to, rm, a.is_sign_set(), a.get_significand(), a.get_exponent(), false);
}

IEEEFloat ieee_from_integer(IEEEFloat::format to, IEEEFloat::rounding_mode rm,
                            const QNumber& value) {
  IEEEFloat result(to, rm);
  result.self_round(value);
  return result;
}

std::partial_ordering ieee_compare(const IEEEFloat& a, const IEEEFloat& b) {
  if (a.is_nan() || b.is_nan()) return std::partial_ordering::unordered;
  if (a.is_zero() && b.is_zero()) return std::partial_ordering::equivalent;
  if (a.is_sign_set() != b.is_sign_set()) {
    return a.is_sign_set() ? std::partial_ordering::less : std::partial_ordering::greater;
  }
  // Of one sign, patterns are ordered as magnitudes are.
  const std::strong_ordering by_magnitude = a.get_bits() <=> b.get_bits();
  return a.is_sign_set() ? 0 <=> by_magnitude : by_magnitude;
}

}  // namespace vorn
