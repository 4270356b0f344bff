// Finite operands are an integer significand times a power of two. Sums and products of such are
// exact; a quotient or a root is cut beyond the bits that rounding looks at, and so is a sum whose
// operands lie so far apart that the smaller only shows in the direction of rounding.
#include "vorn/terms/ieee_arithmetic.h"

#include "vorn/terms/bv_number.h"

namespace vorn {
namespace {

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

/// A non-zero number (-1)^negative * significand * 2^exponent.
struct Finite {
  bool negative;
  mpz_class significand;
  mpz_class exponent;

  mpz_class get_signed() const { return negative ? mpz_class(-significand) : significand; }
  /// The least power of two above the magnitude.
  mpz_class get_top() const {
    return exponent + static_cast<unsigned long>(mpz_sizeinbase(significand.get_mpz_t(), 2));
  }
};

Finite finite(const IEEEFloat& a) {
  return {a.is_sign_set(), a.get_significand(), a.get_exponent()};
}

IEEEFloat rounded(IEEEFloat::format fmt, IEEEFloat::rounding_mode rm, const Finite& value) {
  return rounded(fmt, rm, value.negative, value.significand, value.exponent, false);
}

/// The sum of a and b, which does not reach above a.
IEEEFloat add_below(IEEEFloat::format fmt, IEEEFloat::rounding_mode rm, const Finite& a,
                    const Finite& b) {
  const mpz_class gap = a.exponent - b.get_top();
  const mpz_class limit(static_cast<unsigned long>(fmt.m + 8));
  mpz_class sum;
  mpz_class exponent;
  bool sticky = false;
  if (gap <= limit) {
    exponent = a.exponent < b.exponent ? a.exponent : b.exponent;
    sum = shifted(a.get_signed(), a.exponent - exponent) +
          shifted(b.get_signed(), b.exponent - exponent);
  } else {
    // |b| is below one unit of the scaled significand of a, which has far more bits than rounding
    // looks at: only its direction shows. The sticky bit stands for it, one unit down where it
    // points toward zero.
    sum = shifted(a.get_signed(), limit);
    exponent = a.exponent - limit;
    sticky = true;
    if (a.negative != b.negative) sum -= sgn(sum);
  }
  if (sum == 0) return IEEEFloat::make_zero(fmt, rm == IEEEFloat::rounding_mode::minus_inf);
  return rounded(fmt, rm, sum < 0, abs(sum), exponent, sticky);
}

IEEEFloat add_finite(IEEEFloat::format fmt, IEEEFloat::rounding_mode rm, const Finite& a,
                     const Finite& b) {
  return a.get_top() >= b.get_top() ? add_below(fmt, rm, a, b) : add_below(fmt, rm, b, a);
}

/// The sum of two zeros (IEEE 754-2019, clause 6.3).
IEEEFloat add_zeros(IEEEFloat::format fmt, IEEEFloat::rounding_mode rm, bool a, bool b) {
  return IEEEFloat::make_zero(fmt, a == b ? a : rm == IEEEFloat::rounding_mode::minus_inf);
}

}  // namespace

IEEEFloat ieee_add(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b) {
  const IEEEFloat::format fmt = a.get_format();
  if (a.is_nan() || b.is_nan()) return IEEEFloat::make_nan(fmt);
  const bool same_sign = a.is_sign_set() == b.is_sign_set();
  if (a.is_inf() && b.is_inf() && !same_sign) return IEEEFloat::make_nan(fmt);
  if (a.is_inf()) return a;
  if (b.is_inf()) return b;
  if (a.is_zero() && b.is_zero()) return add_zeros(fmt, rm, a.is_sign_set(), b.is_sign_set());
  if (a.is_zero()) return b;
  if (b.is_zero()) return a;
  return add_finite(fmt, rm, finite(a), finite(b));
}

IEEEFloat ieee_sub(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b) {
  return ieee_add(rm, a, ieee_neg(b));
}

IEEEFloat ieee_mul(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b) {
  const IEEEFloat::format fmt = a.get_format();
  const bool negative = a.is_sign_set() != b.is_sign_set();
  if (a.is_nan() || b.is_nan()) return IEEEFloat::make_nan(fmt);
  if ((a.is_inf() && b.is_zero()) || (a.is_zero() && b.is_inf())) return IEEEFloat::make_nan(fmt);
  if (a.is_inf() || b.is_inf()) return IEEEFloat::make_inf(fmt, negative);
  if (a.is_zero() || b.is_zero()) return IEEEFloat::make_zero(fmt, negative);
  return rounded(fmt, rm, negative, a.get_significand() * b.get_significand(),
                 a.get_exponent() + b.get_exponent(), false);
}

IEEEFloat ieee_div(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b) {
  const IEEEFloat::format fmt = a.get_format();
  const bool negative = a.is_sign_set() != b.is_sign_set();
  if (a.is_nan() || b.is_nan()) return IEEEFloat::make_nan(fmt);
  if ((a.is_inf() && b.is_inf()) || (a.is_zero() && b.is_zero())) return IEEEFloat::make_nan(fmt);
  if (a.is_inf() || b.is_zero()) return IEEEFloat::make_inf(fmt, negative);
  if (b.is_inf() || a.is_zero()) return IEEEFloat::make_zero(fmt, negative);
  const mpz_class scale(static_cast<unsigned long>(2 * fmt.m + 4));
  mpz_class q;
  mpz_class r;
  mpz_fdiv_qr(q.get_mpz_t(), r.get_mpz_t(), shifted(a.get_significand(), scale).get_mpz_t(),
              b.get_significand().get_mpz_t());
  return rounded(fmt, rm, negative, q, a.get_exponent() - b.get_exponent() - scale, r != 0);
}

IEEEFloat ieee_fma(IEEEFloat::rounding_mode rm, const IEEEFloat& a, const IEEEFloat& b,
                   const IEEEFloat& c) {
  const IEEEFloat::format fmt = a.get_format();
  const bool negative = a.is_sign_set() != b.is_sign_set();
  if (a.is_nan() || b.is_nan() || c.is_nan()) return IEEEFloat::make_nan(fmt);
  if ((a.is_inf() && b.is_zero()) || (a.is_zero() && b.is_inf())) return IEEEFloat::make_nan(fmt);
  if (a.is_inf() || b.is_inf()) {
    if (c.is_inf() && c.is_sign_set() != negative) return IEEEFloat::make_nan(fmt);
    return IEEEFloat::make_inf(fmt, negative);
  }
  if (c.is_inf()) return c;
  if (a.is_zero() || b.is_zero()) {
    return c.is_zero() ? add_zeros(fmt, rm, negative, c.is_sign_set()) : c;
  }
  const Finite product{negative, a.get_significand() * b.get_significand(),
                       a.get_exponent() + b.get_exponent()};
  return c.is_zero() ? rounded(fmt, rm, product) : add_finite(fmt, rm, product, finite(c));
}

IEEEFloat ieee_sqrt(IEEEFloat::rounding_mode rm, const IEEEFloat& a) {
  const IEEEFloat::format fmt = a.get_format();
  if (a.is_nan() || a.is_zero()) return a.is_nan() ? IEEEFloat::make_nan(fmt) : a;
  if (a.is_sign_set()) return IEEEFloat::make_nan(fmt);
  if (a.is_inf()) return a;
  // An even exponent, and twice the bits that rounding looks at.
  const mpz_class exponent = a.get_exponent();
  const bool odd = mpz_odd_p(exponent.get_mpz_t()) != 0;
  const mpz_class scale(static_cast<unsigned long>(2 * fmt.m + 8 + (odd ? 1 : 0)));
  mpz_class root;
  mpz_class rest;
  mpz_sqrtrem(root.get_mpz_t(), rest.get_mpz_t(), shifted(a.get_significand(), scale).get_mpz_t());
  return rounded(fmt, rm, false, root, (exponent - scale) / 2, rest != 0);
}

IEEEFloat ieee_rem(const IEEEFloat& a, const IEEEFloat& b) {
  const IEEEFloat::format fmt = a.get_format();
  if (a.is_nan() || b.is_nan() || a.is_inf() || b.is_zero()) return IEEEFloat::make_nan(fmt);
  if (a.is_zero() || b.is_inf()) return a;
  // With divisor and dividend on one scale, the dividend modulo twice the divisor tells whether the
  // integer quotient is odd.
  const mpz_class distance = a.get_exponent() - b.get_exponent();
  mpz_class divisor = b.get_significand();
  mpz_class rest = a.get_significand();
  mpz_class exponent = b.get_exponent();
  if (distance < 0) {
    if (-distance > static_cast<unsigned long>(fmt.m + 2)) return a;
    divisor = shifted(divisor, -distance);
    exponent = a.get_exponent();
  }
  const mpz_class modulus = 2 * divisor;
  if (distance > 0) {
    mpz_class power;
    mpz_powm(power.get_mpz_t(), mpz_class(2).get_mpz_t(), distance.get_mpz_t(),
             modulus.get_mpz_t());
    rest *= power;
  }
  rest %= modulus;
  const bool odd = rest >= divisor;
  if (odd) rest -= divisor;
  const int half = cmp(2 * rest, divisor);
  if (half > 0 || (half == 0 && odd)) rest -= divisor;
  if (rest == 0) return IEEEFloat::make_zero(fmt, a.is_sign_set());
  const bool negative = a.is_sign_set() != (rest < 0);
  return rounded(fmt, IEEEFloat::rounding_mode::nearest_even, {negative, abs(rest), exponent});
}

IEEEFloat ieee_round_to_integral(IEEEFloat::rounding_mode rm, const IEEEFloat& a) {
  const IEEEFloat::format fmt = a.get_format();
  if (a.is_nan()) return IEEEFloat::make_nan(fmt);
  if (a.is_inf() || a.is_zero() || a.get_exponent() >= 0) return a;
  const mpz_class magnitude = a.get_rounded_magnitude(rm);
  if (magnitude == 0) return IEEEFloat::make_zero(fmt, a.is_sign_set());
  return rounded(fmt, rm, {a.is_sign_set(), magnitude, 0});
}

std::optional<QNumber> ieee_to_integer(IEEEFloat::rounding_mode rm, const IEEEFloat& a,
                                       std::size_t width, bool is_signed) {
  if (a.is_nan() || a.is_inf()) return std::nullopt;
  const bool negative = a.is_sign_set();
  if (a.get_exponent() > static_cast<unsigned long>(width) && !a.is_zero()) return std::nullopt;
  const mpz_class magnitude = a.get_rounded_magnitude(rm);
  if (magnitude == 0) return QNumber(0);
  if (negative && !is_signed) return std::nullopt;
  mpz_class limit = shifted(1, static_cast<unsigned long>(is_signed ? width - 1 : width));
  if (negative) ++limit;
  if (magnitude >= limit) return std::nullopt;
  const mpz_class value = negative ? mpz_class(-magnitude) : magnitude;
  QNumber bits;
  BVNumber::twos_complement(QNumber::from_mpz(value), width, &bits);
  return bits;
}

IEEEFloat ieee_min(const IEEEFloat& a, const IEEEFloat& b, bool negative_zero) {
  if (a.is_nan() && b.is_nan()) return IEEEFloat::make_nan(a.get_format());
  if (a.is_nan()) return b;
  if (b.is_nan()) return a;
  if (a.is_zero() && b.is_zero()) {
    return a.is_sign_set() == b.is_sign_set() ? a
                                              : IEEEFloat::make_zero(a.get_format(), negative_zero);
  }
  return is_lt(ieee_compare(a, b)) ? a : b;
}

IEEEFloat ieee_max(const IEEEFloat& a, const IEEEFloat& b, bool negative_zero) {
  return ieee_neg(ieee_min(ieee_neg(a), ieee_neg(b), !negative_zero));
}

IEEEFloat ieee_abs(const IEEEFloat& a) {
  return a.is_sign_set() ? ieee_neg(a) : a;
}

IEEEFloat ieee_neg(const IEEEFloat& a) {
  const IEEEFloat::format fmt = a.get_format();
  if (a.is_nan()) return IEEEFloat::make_nan(fmt);
  const QNumber sign = BVNumber::power_of_two(fmt.e + fmt.m);
  return IEEEFloat::from_bits(fmt, BVNumber::bv_xor(a.get_bits(), sign));
}

IEEEFloat ieee_cast(IEEEFloat::format to, IEEEFloat::rounding_mode rm, const IEEEFloat& a) {
  if (a.is_nan()) return IEEEFloat::make_nan(to);
  if (a.is_inf()) return IEEEFloat::make_inf(to, a.is_sign_set());
  if (a.is_zero()) return IEEEFloat::make_zero(to, a.is_sign_set());
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
