// Software floats: formats, bit patterns and exact rounding.
//
// What literals, models and tests need of floating point without any circuit: the pattern of a
// special value, the rational that a pattern stands for, and the correctly rounded pattern of a
// rational, all in exact integer arithmetic.
#ifndef VORN_TERMS_IEEE_FLOAT_H
#define VORN_TERMS_IEEE_FLOAT_H

#include <cstdint>

#include "vorn/terms/qnumber.h"
#include "vorn/utils/export.h"

namespace vorn {

/// One value of a binary floating-point format (IEEE 754-2019, clause 3.3) with the rounding mode
/// in which it takes on rationals. Patterns are in the interchange layout: sign, biased exponent,
/// trailing significand.
class VORN_EXPORT IEEEFloat {
 public:
  /// Widths in bits; `m` does not count the hidden bit. SMT-LIB's (_ FloatingPoint eb sb) is
  /// e = eb, m = sb - 1.
  struct VORN_EXPORT format {
    std::uint64_t e;  // width of the exponent
    std::uint64_t m;  // width of the significand without the hidden bit

    /// 2^(e-1) - 1
    QNumber bias() const;
    /// 2^e - 1: the biased exponent of infinities and NaNs.
    QNumber max_exponent() const;
    /// 1 + e + m
    std::uint64_t width() const { return 1 + e + m; }
    bool operator==(const format&) const = default;
  };

  /// IEEE 754-2019, clause 4.3; the first four values are the encoders' rounding-mode codes.
  enum class rounding_mode : std::uint8_t {
    nearest_even = 0,
    toward_zero = 1,
    plus_inf = 2,
    minus_inf = 3,
    nearest_away = 4,
  };

  /// +0 of the format.
  IEEEFloat(format f, rounding_mode mode) : fmt(f), rm(mode) {}
  /// The value of a bit pattern in [0, 2^(1+e+m)).
  static IEEEFloat from_bits(format f, const QNumber& bits);

  // Special values ----------------------------------------------------------------------------

  /// The canonical NaN: sign 1, exponent all ones, fraction 0...01. It is the pattern that the
  /// encoders' packing and negation produce, so that equality of NaNs is equality of bits.
  static IEEEFloat make_nan(format f);
  static IEEEFloat make_inf(format f, bool negative);
  static IEEEFloat make_zero(format f, bool negative);
  /// The finite value of largest magnitude: (2 - 2^-m) * 2^bias, or its negation.
  static IEEEFloat make_largest(format f, bool negative);
  /// The NaN that processors make by default: positive and quiet, fraction 10...0.
  static QNumber quiet_nan_bits(format f);

  // Assignment --------------------------------------------------------------------------------

  /// The special values, as above.
  void self_nan();
  void self_inf(bool negative);
  void self_zero(bool negative);
  void self_largest(bool negative);
  /// The rational `value` rounded in this float's mode, overflow and underflow as IEEE 754-2019,
  /// clauses 4.3 and 7.4, have them. Zero becomes +0.
  void self_round(const QNumber& value) { self_round(value, 0); }
  /// The same for `value` * 2^`exponent`, rounded once; no number of that size is built.
  void self_round(const QNumber& value, const mpz_class& exponent);
  /// The same for (-1)^negative * (significand + t) * 2^exponent with significand > 0 and, if
  /// `sticky`, some 0 < t < 1, else t = 0. With `sticky` the significand must have at least m + 3
  /// bits.
  void self_round(bool negative, const mpz_class& significand, const mpz_class& exponent,
                  bool sticky);

  // Inspection --------------------------------------------------------------------------------

  /// The pattern as a non-negative integer.
  const QNumber& get_bits() const { return bits; }
  format get_format() const { return fmt; }
  bool is_nan() const;
  bool is_inf() const;
  bool is_zero() const;
  bool is_normal() const;
  bool is_subnormal() const;
  /// Whether the sign bit is set, NaNs included.
  bool is_sign_set() const;
  /// A finite float is (-1)^sign * significand * 2^exponent with integers in these ranges:
  /// significand in [0, 2^(m+1)), exponent in [1 - bias - m, bias - m].
  mpz_class get_significand() const;
  mpz_class get_exponent() const;
  /// The exact value of a finite float, which may take 2^(e-1) bits. Throws std::length_error
  /// beyond a gigabit.
  QNumber get_value() const;
  /// The magnitude of a finite float rounded to an integer in `mode`, which sees the float's sign.
  /// Throws std::length_error beyond a gigabit.
  mpz_class get_rounded_magnitude(rounding_mode mode) const;

 private:
  QNumber biased_exponent() const;
  QNumber fraction() const;
  void set(bool negative, const QNumber& exponent_field, const QNumber& fraction_field);

  format fmt;
  rounding_mode rm;
  QNumber bits;
};

}  // namespace vorn

#endif
