// IEEE 754-2019 arithmetic on bit patterns, the reference for every encoder.
//
// An operation is computed exactly on integers, as significand times a power of two, and rounded
// once. No step is shared with a circuit: sums are taken on a common grid without guard bits, and
// tininess, overflow and signs follow the standard's clauses (4.3, 6.3, 7.4). SMT-LIB's theory is
// the same with one NaN, so every NaN result is the pattern sign 1, exponent all ones,
// fraction 0...01. Formats have 2 <= e <= 24 and m >= 1; patterns must fit their widths.
#ifndef VORN_TESTS_ORACLE_IEEE_ORACLE_H
#define VORN_TESTS_ORACLE_IEEE_ORACLE_H

#include <optional>

#include "tests/oracle/format.h"

namespace vorn::oracle::ieee {

/// The canonical NaN.
Bits nan(Format f);

Bits add(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Bits sub(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Bits mul(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Bits div(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Bits cast(RoundingMode rm, Format from, Format to, const Bits& x);
/// `v` is a pattern of `w` bits.
Bits from_sbv(RoundingMode rm, unsigned w, Format f, const Bits& v);
Bits from_ubv(RoundingMode rm, unsigned w, Format f, const Bits& v);
/// A negative non-zero operand gives NaN, -0 itself.
Bits sqrt(RoundingMode rm, Format f, const Bits& x);
/// x * y + z, rounded once.
Bits fma(RoundingMode rm, Format f, const Bits& x, const Bits& y, const Bits& z);
/// x - y * n for the integer n nearest to x / y, the even one of two; always exact. A zero has the
/// sign of x.
Bits rem(Format f, const Bits& x, const Bits& y);
/// Rounds to an integer, and that to the format: where the significand is long for its exponents,
/// the integer above the largest finite number overflows. A zero keeps the sign of x.
Bits rti(RoundingMode rm, Format f, const Bits& x);
/// The pattern of `w` >= 1 bits of x rounded to an integer; none for NaN, infinities and integers
/// out of range.
std::optional<Bits> to_sbv(RoundingMode rm, Format f, unsigned w, const Bits& x);
std::optional<Bits> to_ubv(RoundingMode rm, Format f, unsigned w, const Bits& x);
Bits neg(Format f, const Bits& x);
Bits abs(Format f, const Bits& x);
/// A number is preferred to NaN. None for zeros of opposite signs, of which either is allowed.
std::optional<Bits> min(Format f, const Bits& x, const Bits& y);
std::optional<Bits> max(Format f, const Bits& x, const Bits& y);

bool is_nan(Format f, const Bits& x);
bool is_inf(Format f, const Bits& x);
bool is_zero(Format f, const Bits& x);
bool is_subnormal(Format f, const Bits& x);
bool is_normal(Format f, const Bits& x);
/// The sign bit, NaNs included.
bool is_negative(Format f, const Bits& x);
/// SMT-LIB's fp.isNegative and fp.isPositive: zeros have signs, NaN has none.
bool smt_is_negative(Format f, const Bits& x);
bool smt_is_positive(Format f, const Bits& x);
bool eq(Format f, const Bits& x, const Bits& y);
bool lt(Format f, const Bits& x, const Bits& y);
bool le(Format f, const Bits& x, const Bits& y);
/// Equality of values as SMT-LIB terms: +0 and -0 differ, all NaNs are one.
bool same(Format f, const Bits& x, const Bits& y);

// Exact values ----------------------------------------------------------------------------------

/// A non-zero real of magnitude significand * 2^exponent or, if `sticky`, above that by less than
/// one unit of the significand.
template <class Word>
struct Real {
  bool negative;
  Word significand;
  long exponent;
  bool sticky;
};
using Exact = Real<mpz_class>;

/// The exact result of an operation; none where it is zero or where an operand, or the divisor's
/// being zero, makes it no real. A quotient has at least m + 8 significant bits.
std::optional<Exact> value(Format f, const Bits& x);
std::optional<Exact> exact_product(Format f, const Bits& x, const Bits& y);
std::optional<Exact> exact_quotient(Format f, const Bits& x, const Bits& y);
std::optional<Exact> integer_value(bool is_signed, unsigned w, const Bits& v);

/// The exponent e with 2^e <= |v| < 2^(e+1).
long leading_exponent(const Exact& v);

/// The correctly rounded pattern.
Bits round(RoundingMode rm, Format f, const Exact& v);

}  // namespace vorn::oracle::ieee

#endif
