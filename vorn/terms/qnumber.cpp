#include "vorn/terms/qnumber.h"

#include <atomic>
#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

namespace vorn {
namespace {

constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::uint64_t kGcdCacheSize = 1024;

static_assert(sizeof(long) == sizeof(std::int64_t), "the GMP fast paths pass machine words");
static_assert(sizeof(QNumber) == 16);

/// gcds of operands below 1024, by both operands; 0: not yet known. The page is touched lazily by
/// the system, so that programs with few distinct denominators pay for few of its 8 MiB. Threads
/// share it: whoever writes an entry writes the same number, and nothing else hangs on its order.
std::atomic<std::uint64_t> gcd_cache[kGcdCacheSize][kGcdCacheSize];

constexpr auto kRelaxed = std::memory_order_relaxed;

std::uint64_t plain_gcd(std::uint64_t a, std::uint64_t b) {
  while (b != 0) {
    const std::uint64_t r = a % b;
    a = b;
    b = r;
  }
  return a;
}

/// Euclid's algorithm, which ends where the cache knows the answer. A pair that it does not know is
/// entered and the walk goes on, so that the pairs on the way down are entered as well.
std::uint64_t cached_gcd(std::uint64_t a, std::uint64_t b) {
  while (b != 0) {
    if (a < kGcdCacheSize && b < kGcdCacheSize) {
      const std::uint64_t known = gcd_cache[a][b].load(kRelaxed);
      if (known != 0) return known;
      const std::uint64_t found = plain_gcd(a, b);
      gcd_cache[a][b].store(found, kRelaxed);
      gcd_cache[b][a].store(found, kRelaxed);
    }
    const std::uint64_t r = a % b;
    a = b;
    b = r;
  }
  return a;
}

std::uint64_t magnitude(std::int64_t x) {
  return x < 0 ? ~static_cast<std::uint64_t>(x) + 1 : static_cast<std::uint64_t>(x);
}

std::int64_t gcd(std::int64_t a, std::int64_t b) {
  return static_cast<std::int64_t>(cached_gcd(magnitude(a), magnitude(b)));
}

/// Whether a * b leaves +-(2^63 - 1); the operands are never -2^63.
bool mul_overflows(std::int64_t a, std::int64_t b) {
  return a != 0 && magnitude(b) > static_cast<std::uint64_t>(kMax) / magnitude(a);
}

/// Whether a + b leaves +-(2^63 - 1); the operands are never -2^63.
bool add_overflows(std::int64_t a, std::int64_t b) {
  return (a > 0 && b > 0 && a > kMax - b) || (a < 0 && b < 0 && a < -kMax - b);
}

}  // namespace

QNumber::QNumber(std::int64_t value) : num(value), den(1) {
  if (value == kMin) {
    big = new Big{mpz_class(value), mpz_class(1)};
    den = 0;
  }
}

/// Of a whole number from the first: what is made on the way is released should it throw.
QNumber::QNumber(const mpz_class& numerator, const mpz_class& denominator) : QNumber() {
  if (numerator.fits_sint_p() && denominator.fits_sint_p()) {
    num = numerator.get_si();
    den = denominator.get_si();
  } else {
    big = new Big{numerator, denominator};
    den = 0;
  }
  normalize();
}

QNumber::QNumber(const QNumber& other) : num(other.num), den(other.den) {
  if (other.is_big()) big = new Big(*other.big);
}

QNumber& QNumber::operator=(const QNumber& other) {
  if (this == &other) return *this;
  if (other.is_big()) {
    if (is_big()) {
      *big = *other.big;
    } else {
      big = new Big(*other.big);
      den = 0;
    }
  } else if (is_big()) {
    big->num = other.num;
    big->den = other.den;
  } else {
    num = other.num;
    den = other.den;
  }
  return *this;
}

QNumber QNumber::from_mpz(const mpz_class& value) {
  if (value.fits_slong_p()) return QNumber(static_cast<std::int64_t>(value.get_si()));
  return QNumber(value, mpz_class(1));
}

QNumber QNumber::from_string(std::string_view text, int base) {
  const auto fail = [&]() {
    return std::invalid_argument("\"" + std::string(text) + "\" is not a number");
  };
  const auto read = [&](std::string_view digits, bool may_be_signed) {
    const bool minus = may_be_signed && digits.starts_with('-');
    const std::string body(digits.substr(minus ? 1 : 0));
    mpz_class value;
    // GMP would accept a sign, blanks and base prefixes of its own.
    const bool plain = body.find_first_of("+- \t\n\r\v\f") == std::string::npos &&
                       body.find('\0') == std::string::npos;
    if (body.empty() || !plain || value.set_str(body, base) != 0) throw fail();
    return minus ? mpz_class(-value) : value;
  };

  if (const auto slash = text.find('/'); slash != std::string_view::npos) {
    const mpz_class d = read(text.substr(slash + 1), false);
    if (d == 0) throw fail();
    return QNumber(read(text.substr(0, slash), true), d);
  }
  const auto point = base == 10 ? text.find('.') : std::string_view::npos;
  if (point == std::string_view::npos) return from_mpz(read(text, true));

  const std::string_view fraction = text.substr(point + 1);
  if (fraction.empty() || point == 0 || text.substr(0, point) == "-") throw fail();
  const std::string digits = std::string(text.substr(0, point)) + std::string(fraction);
  mpz_class scale;
  mpz_ui_pow_ui(scale.get_mpz_t(), 10, fraction.size());
  return QNumber(read(digits, true), scale);
}

bool QNumber::is_integer() const {
  return is_big() ? big->den == 1 : den == 1;
}

int QNumber::sign() const {
  if (is_big()) return sgn(big->num);
  return num > 0 ? 1 : num < 0 ? -1 : 0;
}

bool QNumber::get_int64(std::int64_t* value) const {
  if (!is_integer()) return false;
  if (!is_big()) {
    *value = num;
    return true;
  }
  if (!big->num.fits_slong_p() || big->num == kMin) return false;
  *value = big->num.get_si();
  return true;
}

bool QNumber::test_bit(std::uint64_t i) const {
  if (is_big()) return mpz_tstbit(big->num.get_mpz_t(), i) != 0;
  return i < 64 && ((static_cast<std::uint64_t>(num) >> i) & 1) != 0;
}

mpz_class QNumber::get_numerator() const {
  return is_big() ? big->num : mpz_class(num);
}

mpz_class QNumber::get_denominator() const {
  return is_big() ? big->den : mpz_class(den);
}

std::string QNumber::to_string(int base) const {
  std::string text = get_numerator().get_str(base);
  if (!is_integer()) text += "/" + get_denominator().get_str(base);
  return text;
}

std::size_t QNumber::hash() const {
  const auto mix = [](std::size_t h, std::uint64_t word) {
    return (h ^ static_cast<std::size_t>(word)) * 0x9E3779B97F4A7C15U;
  };
  const auto mix_integer = [&](std::size_t h, const mpz_class& z) {
    h = mix(h, static_cast<std::uint64_t>(sgn(z)));
    for (std::size_t i = 0; i < mpz_size(z.get_mpz_t()); ++i) {
      h = mix(h, mpz_getlimbn(z.get_mpz_t(), static_cast<mp_size_t>(i)));
    }
    return h;
  };
  // Small values are hashed limb by limb as well, so that both forms of one value agree.
  const auto mix_word = [&](std::size_t h, std::int64_t w) {
    h = mix(h, static_cast<std::uint64_t>(w > 0 ? 1 : w < 0 ? -1 : 0));
    return w == 0 ? h : mix(h, magnitude(w));
  };
  const std::size_t h =
      is_big() ? mix_integer(mix_integer(0, big->num), big->den) : mix_word(mix_word(0, num), den);
  return h ^ (h >> 29);
}

void QNumber::promote() {
  big = new Big{mpz_class(num), mpz_class(den)};
  den = 0;
}

void QNumber::set_small(std::int64_t numerator, std::int64_t denominator) {
  num = numerator;
  den = denominator;
}

void QNumber::normalize() {
  if (!is_big()) {
    if (num == 0) {
      den = 1;
      return;
    }
    const std::int64_t g = gcd(num, den);
    num /= g;
    den /= g;
    if (den < 0) {
      num = -num;
      den = -den;
    }
    return;
  }
  if (big->num == 0) {
    big->den = 1;
    return;
  }
  if (mpz_cmpabs_ui(big->den.get_mpz_t(), 1) != 0) {
    mpz_ptr g = gmp_tmp[0].get_mpz_t();
    mpz_gcd(g, big->num.get_mpz_t(), big->den.get_mpz_t());
    mpz_divexact(big->num.get_mpz_t(), big->num.get_mpz_t(), g);
    mpz_divexact(big->den.get_mpz_t(), big->den.get_mpz_t(), g);
  }
  if (sgn(big->den) < 0) {
    mpz_neg(big->num.get_mpz_t(), big->num.get_mpz_t());
    mpz_neg(big->den.get_mpz_t(), big->den.get_mpz_t());
  }
}

QNumber& QNumber::operator+=(const QNumber& other) {
  add_signed(other, 1);
  return *this;
}

QNumber& QNumber::operator-=(const QNumber& other) {
  add_signed(other, -1);
  return *this;
}

/// this += sign * other. The scheme for fractions is Knuth's (The Art of Computer Programming,
/// volume 2, 4.5.1): two gcds of small operands instead of one of large ones.
void QNumber::add_signed(const QNumber& other, int sign) {
  if (!is_big() && !other.is_big()) {
    const std::int64_t p = num;
    const std::int64_t q = den;
    const std::int64_t r = sign * other.num;
    const std::int64_t s = other.den;
    if (q == 1 && s == 1) {
      if (!add_overflows(p, r)) {
        num = p + r;
        return;
      }
    } else {
      const std::int64_t g = gcd(q, s);
      const std::int64_t a = q / g;
      const std::int64_t b = s / g;
      if (!mul_overflows(a, r) && !mul_overflows(p, b) && !add_overflows(r * a, b * p)) {
        const std::int64_t t = r * a + b * p;
        const std::int64_t h = gcd(t, g);
        const std::int64_t c = s / h;
        if (!mul_overflows(c, a)) {
          set_small(t / h, a * c);
          return;
        }
      }
    }
  }
  if (!is_big()) promote();
  // Promotion may have turned the other operand big too: it may be this very number.
  if (other.is_big()) {
    add_big(other, sign);
  } else {
    add_small_to_big(sign * other.num, other.den);
  }
}

void QNumber::add_big(const QNumber& other, int sign) {
  mpz_ptr p = big->num.get_mpz_t();
  mpz_ptr q = big->den.get_mpz_t();
  mpz_ptr r = gmp_tmp[0].get_mpz_t();
  mpz_set(r, other.big->num.get_mpz_t());
  if (sign < 0) mpz_neg(r, r);
  if (big->den == 1 && other.big->den == 1) {
    mpz_add(p, p, r);
    return;
  }
  mpz_ptr s = gmp_tmp[1].get_mpz_t();
  mpz_ptr g = gmp_tmp[2].get_mpz_t();
  mpz_ptr b = gmp_tmp[3].get_mpz_t();
  mpz_set(s, other.big->den.get_mpz_t());
  mpz_gcd(g, q, s);
  mpz_divexact(q, q, g);
  mpz_divexact(b, s, g);
  mpz_mul(p, p, b);
  mpz_mul(b, r, q);
  mpz_add(p, p, b);
  mpz_gcd(g, p, g);
  mpz_divexact(p, p, g);
  mpz_divexact(s, s, g);
  mpz_mul(q, q, s);
}

void QNumber::add_small_to_big(std::int64_t r, std::int64_t s) {
  mpz_ptr p = big->num.get_mpz_t();
  mpz_ptr q = big->den.get_mpz_t();
  if (s == 1 && big->den == 1) {
    if (r >= 0) {
      mpz_add_ui(p, p, magnitude(r));
    } else {
      mpz_sub_ui(p, p, magnitude(r));
    }
    return;
  }
  mpz_ptr t = gmp_tmp[0].get_mpz_t();
  const std::uint64_t g = mpz_gcd_ui(nullptr, q, static_cast<std::uint64_t>(s));
  mpz_divexact_ui(q, q, g);
  mpz_mul_si(p, p, s / static_cast<std::int64_t>(g));
  mpz_mul_si(t, q, r);
  mpz_add(p, p, t);
  const std::uint64_t h = mpz_gcd_ui(nullptr, p, g);
  mpz_divexact_ui(p, p, h);
  mpz_mul_si(q, q, s / static_cast<std::int64_t>(h));
}

QNumber& QNumber::operator*=(const QNumber& other) {
  if (!is_big() && !other.is_big()) {
    // Cancelling crosswise first keeps the products small and in lowest terms.
    const std::int64_t g = gcd(num, other.den);
    const std::int64_t h = gcd(other.num, den);
    const std::int64_t p = num / g;
    const std::int64_t q = den / h;
    const std::int64_t r = other.num / h;
    const std::int64_t s = other.den / g;
    if (p == 0 || r == 0) {
      set_small(0, 1);
      return *this;
    }
    if (!mul_overflows(p, r) && !mul_overflows(q, s)) {
      set_small(p * r, q * s);
      return *this;
    }
  }
  if (!is_big()) promote();
  if (other.is_big()) {
    big->num *= other.big->num;
    big->den *= other.big->den;
  } else {
    mpz_mul_si(big->num.get_mpz_t(), big->num.get_mpz_t(), other.num);
    mpz_mul_si(big->den.get_mpz_t(), big->den.get_mpz_t(), other.den);
  }
  normalize();
  return *this;
}

QNumber& QNumber::operator/=(const QNumber& other) {
  if (other.sign() == 0) throw std::domain_error("division of a rational number by zero");
  QNumber reciprocal(other);
  if (reciprocal.is_big()) {
    std::swap(reciprocal.big->num, reciprocal.big->den);
    if (sgn(reciprocal.big->den) < 0) {
      reciprocal.big->num = -reciprocal.big->num;
      reciprocal.big->den = -reciprocal.big->den;
    }
  } else {
    const int s = other.sign();
    reciprocal.set_small(s * other.den, s * other.num);
  }
  return *this *= reciprocal;
}

QNumber QNumber::neg() const {
  QNumber result(*this);
  if (is_big()) {
    mpz_neg(result.big->num.get_mpz_t(), result.big->num.get_mpz_t());
  } else {
    result.num = -result.num;
  }
  return result;
}

bool operator==(const QNumber& a, const QNumber& b) {
  // In lowest terms equal numbers have equal parts.
  if (!a.is_big() && !b.is_big()) return a.num == b.num && a.den == b.den;
  if (a.is_big() && b.is_big()) return a.big->num == b.big->num && a.big->den == b.big->den;
  const QNumber& small = a.is_big() ? b : a;
  const QNumber& large = a.is_big() ? a : b;
  return large.big->num == small.num && large.big->den == small.den;
}

std::strong_ordering operator<=>(const QNumber& a, const QNumber& b) {
  if (!a.is_big() && !b.is_big()) {
    if (a.den == b.den) return a.num <=> b.num;
    if (!mul_overflows(a.num, b.den) && !mul_overflows(b.num, a.den)) {
      return a.num * b.den <=> b.num * a.den;
    }
  }
  const mpz_class left = a.get_numerator() * b.get_denominator();
  const mpz_class right = b.get_numerator() * a.get_denominator();
  return cmp(left, right) <=> 0;
}

}  // namespace vorn
