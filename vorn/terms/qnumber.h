// Exact rational numbers in two machine words.
//
// Almost every number that the encoder computes is a small integer: a width, a bias, a bit pattern
// of a narrow format. So a number is a numerator and a denominator in 64 bits each, and moves to a
// pair of GMP integers only when a result does not fit. Every bound is tested by division before
// the operation, never by looking at a wrapped result, and the numerator -2^63 is kept out of the
// small form, so that negation cannot overflow.
#ifndef VORN_TERMS_QNUMBER_H
#define VORN_TERMS_QNUMBER_H

#include <gmpxx.h>

#include <array>
#include <compare>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "vorn/utils/export.h"

namespace vorn {

/// A rational number in lowest terms with a positive denominator.
///
/// A number in the big form stays there through later arithmetic; only construction and assignment
/// into a small target make a small number. A number belongs to one thread at a time; different
/// numbers may be used by different threads.
class VORN_EXPORT QNumber {
 public:
  // Construction ------------------------------------------------------------------------------

  QNumber() noexcept : num(0), den(1) {}
  /// The integer `value`; -2^63 takes the big form.
  QNumber(std::int64_t value);
  QNumber(int value) : num(value), den(1) {}
  QNumber(unsigned value) : num(value), den(1) {}
  // Other arithmetic types would be narrowed without a word.
  QNumber(double value) = delete;
  QNumber(std::uint64_t value) = delete;
  /// The fraction `numerator / denominator`, normalised. Small when both fit an `int`, big
  /// otherwise. The denominator must not be zero.
  QNumber(const mpz_class& numerator, const mpz_class& denominator);
  QNumber(const QNumber& other);
  QNumber(QNumber&& other) noexcept : num(0), den(1) { swap(other); }
  ~QNumber() { release(); }

  /// Copies the value. The target's form wins: a big target stays big.
  QNumber& operator=(const QNumber& other);
  QNumber& operator=(QNumber&& other) noexcept {
    if (is_big() && !other.is_big()) return *this = static_cast<const QNumber&>(other);
    swap(other);
    return *this;
  }
  void swap(QNumber& other) noexcept {
    std::swap(num, other.num);
    std::swap(den, other.den);
  }

  /// The integer `value` in the small form if it lies within +-(2^63 - 1), else in the big form.
  static QNumber from_mpz(const mpz_class& value);
  /// The same of a machine integer of at most 64 bits, signed or not.
  template <std::integral Integer>
  static QNumber from_integer(Integer value) {
    static_assert(sizeof(Integer) <= sizeof(std::int64_t));
    // Promotion makes numbers of characters and truth values.
    if (std::in_range<std::int64_t>(+value)) return QNumber(static_cast<std::int64_t>(value));
    return from_mpz(mpz_class(static_cast<unsigned long>(value)));
  }
  /// Reads an integer ("-12") or fraction ("3/4") in a base from 2 to 36, or a decimal ("-1.25",
  /// no exponent) in base 10.
  /// Throws std::invalid_argument naming the text when it is no number or a denominator is zero.
  static QNumber from_string(std::string_view text, int base = 10);

  // Inspection --------------------------------------------------------------------------------

  /// Whether the number has the big form, and whether it is an integer.
  bool is_big() const noexcept { return den == 0; }
  bool is_integer() const;
  /// -1, 0 or 1.
  int sign() const;
  /// The value as a machine integer, if it is an integer within +-(2^63 - 1).
  bool get_int64(std::int64_t* value) const;
  /// Bit `i` of a non-negative integer's binary representation.
  bool test_bit(std::uint64_t i) const;
  /// The numerator of the big form without a copy; null for the small form.
  const mpz_class* get_big_numerator() const { return is_big() ? &big->num : nullptr; }
  mpz_class get_numerator() const;
  mpz_class get_denominator() const;
  /// "n" for an integer, "n/d" otherwise; base 2 to 36.
  std::string to_string(int base = 10) const;
  /// Equal numbers hash alike, whichever form they have.
  std::size_t hash() const;

  // Arithmetic --------------------------------------------------------------------------------

  /// Exact arithmetic.
  QNumber& operator+=(const QNumber& other);
  QNumber& operator+=(std::int64_t other) { return *this += QNumber(other); }
  QNumber& operator-=(const QNumber& other);
  QNumber& operator*=(const QNumber& other);
  /// Throws std::domain_error when `other` is zero.
  QNumber& operator/=(const QNumber& other);
  /// The negation; small stays small, big stays big.
  QNumber neg() const;
  /// Brings the number to lowest terms with a positive denominator.
  void normalize();

  /// Comparison by value, whichever forms the numbers have.
  friend VORN_EXPORT std::strong_ordering operator<=>(const QNumber& a, const QNumber& b);
  friend VORN_EXPORT bool operator==(const QNumber& a, const QNumber& b);

  /// Scratch integers, made when the first is asked for. Destroying this object destroys nothing,
  /// so that it serves the destructors of whatever outlives it.
  class VORN_EXPORT Scratch {
   public:
    /// Integer i, below 4; its value is what its last user left.
    mpz_class& operator[](std::size_t i) {
      if (integers == nullptr) make();
      return (*integers)[i];
    }

   private:
    using Integers = std::array<mpz_class, 4>;
    struct Release;
    void make();

    Integers* integers = nullptr;
  };
  /// Scratch integers of the GMP paths, one set for each thread and to its very end: handlers that
  /// run at exit may compute.
  static constinit thread_local Scratch gmp_tmp;

 private:
  struct Big {
    mpz_class num, den;
  };

  void release() noexcept {
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): sees unions in std::optional end twice
    if (is_big()) delete big;
  }
  void promote();
  void add_signed(const QNumber& other, int sign);
  void add_big(const QNumber& other, int sign);
  void add_small_to_big(std::int64_t r, std::int64_t s);
  void set_small(std::int64_t numerator, std::int64_t denominator);

  union {
    std::int64_t num;  // small form: numerator
    Big* big;          // big form: owned pair
  };
  std::int64_t den;  // small form: denominator, positive; 0 marks the big form
};

/// a + b, exactly.
inline QNumber operator+(const QNumber& a, std::int64_t b) {
  QNumber result(a);
  result += b;
  return result;
}
/// a + b, exactly.
inline QNumber operator+(const QNumber& a, const QNumber& b) {
  QNumber result(a);
  result += b;
  return result;
}
/// a - b, exactly.
inline QNumber operator-(const QNumber& a, const QNumber& b) {
  QNumber result(a);
  result -= b;
  return result;
}
/// a * b, exactly.
inline QNumber operator*(const QNumber& a, const QNumber& b) {
  QNumber result(a);
  result *= b;
  return result;
}
/// a / b, exactly. Throws std::domain_error when b is zero.
inline QNumber operator/(const QNumber& a, const QNumber& b) {
  QNumber result(a);
  result /= b;
  return result;
}

}  // namespace vorn

#endif
