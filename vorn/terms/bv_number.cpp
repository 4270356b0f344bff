#include "vorn/terms/bv_number.h"

#include <bit>
#include <utility>

namespace vorn::BVNumber {
namespace {

// Up to this width a value, and the sum of two, fit a machine word with its sign.
constexpr std::uint64_t kWordWidth = 62;

/// Whether both values are in the small form, and so below 2^63.
bool words(const QNumber& a, const QNumber& b, std::uint64_t* x, std::uint64_t* y) {
  std::int64_t p = 0;
  std::int64_t q = 0;
  if (a.is_big() || b.is_big() || !a.get_int64(&p) || !b.get_int64(&q)) return false;
  *x = static_cast<std::uint64_t>(p);
  *y = static_cast<std::uint64_t>(q);
  return true;
}

QNumber from_word(std::uint64_t x) {
  return QNumber(static_cast<std::int64_t>(x));
}

std::uint64_t word_mask(std::uint64_t width) {
  return (std::uint64_t{1} << width) - 1;
}

/// A shift count, if it is below `limit`.
bool shift_count(const QNumber& b, std::uint64_t limit, std::uint64_t* n) {
  std::int64_t value = 0;
  if (!b.get_int64(&value) || static_cast<std::uint64_t>(value) >= limit) return false;
  *n = static_cast<std::uint64_t>(value);
  return true;
}

mpz_class shifted_left(const mpz_class& a, std::uint64_t n) {
  mpz_class r;
  mpz_mul_2exp(r.get_mpz_t(), a.get_mpz_t(), n);
  return r;
}

mpz_class low_bits(const mpz_class& a, std::uint64_t n) {
  mpz_class r;
  mpz_fdiv_r_2exp(r.get_mpz_t(), a.get_mpz_t(), n);
  return r;
}

QNumber magnitude_of(const QNumber& signed_value) {
  return signed_value.sign() < 0 ? signed_value.neg() : signed_value;
}

}  // namespace

void pow2(std::uint64_t n, QNumber* out) {
  if (n < kWordWidth) {
    *out = from_word(std::uint64_t{1} << n);
    return;
  }
  mpz_class& power = QNumber::gmp_tmp[0];
  power = 0;
  mpz_setbit(power.get_mpz_t(), n);
  if (power.fits_slong_p()) {
    QNumber(static_cast<std::int64_t>(power.get_si())).swap(*out);
  } else {
    *out = QNumber(power, mpz_class(1));
  }
}

void twos_complement(const QNumber& x, std::uint64_t width, QNumber* out) {
  *out = x;
  if (out->sign() >= 0) return;
  *out += power_of_two(width);
}

QNumber power_of_two(std::uint64_t n) {
  QNumber result;
  pow2(n, &result);
  return result;
}

QNumber modulo(const QNumber& x, std::uint64_t width) {
  std::int64_t word = 0;
  if (!x.is_big() && x.get_int64(&word) && word >= 0 &&
      (width > kWordWidth || static_cast<std::uint64_t>(word) <= word_mask(width))) {
    return x;
  }
  return QNumber::from_mpz(low_bits(x.get_numerator(), width));
}

QNumber all_ones(std::uint64_t width) {
  return power_of_two(width) - 1;
}

QNumber to_signed(const QNumber& x, std::uint64_t width) {
  if (!x.test_bit(width - 1)) return x;
  return x - power_of_two(width);
}

std::uint64_t bit_length(const QNumber& x) {
  std::int64_t word = 0;
  if (!x.is_big() && x.get_int64(&word)) {
    return static_cast<std::uint64_t>(std::bit_width(static_cast<std::uint64_t>(word)));
  }
  return x.sign() == 0 ? 0 : mpz_sizeinbase(x.get_numerator().get_mpz_t(), 2);
}

QNumber bv_not(const QNumber& a, std::uint64_t width) {
  return all_ones(width) - a;
}

QNumber bv_neg(const QNumber& a, std::uint64_t width) {
  return a.sign() == 0 ? a : power_of_two(width) - a;
}

QNumber bv_and(const QNumber& a, const QNumber& b) {
  std::uint64_t x = 0;
  std::uint64_t y = 0;
  if (words(a, b, &x, &y)) return from_word(x & y);
  return QNumber::from_mpz(a.get_numerator() & b.get_numerator());
}

QNumber bv_or(const QNumber& a, const QNumber& b) {
  std::uint64_t x = 0;
  std::uint64_t y = 0;
  if (words(a, b, &x, &y)) return from_word(x | y);
  return QNumber::from_mpz(a.get_numerator() | b.get_numerator());
}

QNumber bv_xor(const QNumber& a, const QNumber& b) {
  std::uint64_t x = 0;
  std::uint64_t y = 0;
  if (words(a, b, &x, &y)) return from_word(x ^ y);
  return QNumber::from_mpz(a.get_numerator() ^ b.get_numerator());
}

QNumber bv_add(const QNumber& a, const QNumber& b, std::uint64_t width) {
  return modulo(a + b, width);
}

QNumber bv_sub(const QNumber& a, const QNumber& b, std::uint64_t width) {
  return modulo(a - b, width);
}

QNumber bv_mul(const QNumber& a, const QNumber& b, std::uint64_t width) {
  return modulo(a * b, width);
}

QNumber bv_udiv(const QNumber& a, const QNumber& b, std::uint64_t width) {
  if (b.sign() == 0) return all_ones(width);
  std::uint64_t x = 0;
  std::uint64_t y = 0;
  if (words(a, b, &x, &y)) return from_word(x / y);
  return QNumber::from_mpz(a.get_numerator() / b.get_numerator());
}

QNumber bv_urem(const QNumber& a, const QNumber& b) {
  if (b.sign() == 0) return a;
  std::uint64_t x = 0;
  std::uint64_t y = 0;
  if (words(a, b, &x, &y)) return from_word(x % y);
  return QNumber::from_mpz(a.get_numerator() % b.get_numerator());
}

QNumber bv_sdiv(const QNumber& a, const QNumber& b, std::uint64_t width) {
  const QNumber x = to_signed(a, width);
  const QNumber y = to_signed(b, width);
  const QNumber q = bv_udiv(magnitude_of(x), magnitude_of(y), width);
  return modulo(x.sign() * y.sign() < 0 || (y.sign() == 0 && x.sign() < 0) ? q.neg() : q, width);
}

QNumber bv_srem(const QNumber& a, const QNumber& b, std::uint64_t width) {
  const QNumber x = to_signed(a, width);
  const QNumber r = bv_urem(magnitude_of(x), magnitude_of(to_signed(b, width)));
  return modulo(x.sign() < 0 ? r.neg() : r, width);
}

QNumber bv_smod(const QNumber& a, const QNumber& b, std::uint64_t width) {
  const QNumber r = to_signed(bv_srem(a, b, width), width);
  const QNumber y = to_signed(b, width);
  return modulo(r.sign() * y.sign() < 0 ? r + y : r, width);
}

QNumber bv_shl(const QNumber& a, const QNumber& b, std::uint64_t width) {
  std::uint64_t n = 0;
  if (!shift_count(b, width, &n)) return QNumber();
  std::uint64_t x = 0;
  std::uint64_t unused = 0;
  if (width <= kWordWidth && words(a, b, &x, &unused)) {
    return from_word((x << n) & word_mask(width));
  }
  return QNumber::from_mpz(low_bits(shifted_left(a.get_numerator(), n), width));
}

QNumber bv_lshr(const QNumber& a, const QNumber& b, std::uint64_t width) {
  std::uint64_t n = 0;
  if (!shift_count(b, width, &n)) return QNumber();
  return bv_extract(width - 1, n, a);
}

QNumber bv_ashr(const QNumber& a, const QNumber& b, std::uint64_t width) {
  std::uint64_t n = 0;
  if (!shift_count(b, width, &n)) n = width - 1;
  return bv_sign_extend(bv_extract(width - 1, n, a), n, width - n);
}

QNumber bv_extract(std::uint64_t msb, std::uint64_t lsb, const QNumber& a) {
  const std::uint64_t width = msb - lsb + 1;
  std::int64_t word = 0;
  if (!a.is_big() && a.get_int64(&word)) {
    if (lsb > kWordWidth) return QNumber();
    const std::uint64_t x = static_cast<std::uint64_t>(word) >> lsb;
    return from_word(width > kWordWidth ? x : x & word_mask(width));
  }
  mpz_class r;
  mpz_fdiv_q_2exp(r.get_mpz_t(), a.get_numerator().get_mpz_t(), lsb);
  return QNumber::from_mpz(low_bits(r, width));
}

QNumber bv_concat(const QNumber& a, const QNumber& b, std::uint64_t low_width) {
  if (a.sign() == 0) return b;
  std::uint64_t x = 0;
  std::uint64_t y = 0;
  if (words(a, b, &x, &y) && low_width + bit_length(a) <= kWordWidth) {
    return from_word((x << low_width) | y);
  }
  return QNumber::from_mpz(shifted_left(a.get_numerator(), low_width) + b.get_numerator());
}

QNumber bv_sign_extend(const QNumber& a, std::uint64_t n, std::uint64_t width) {
  if (!a.test_bit(width - 1)) return a;
  return bv_concat(all_ones(n), a, width);
}

bool bv_slt(const QNumber& a, const QNumber& b, std::uint64_t width) {
  return to_signed(a, width) < to_signed(b, width);
}

}  // namespace vorn::BVNumber
