// Exact integer arithmetic behind the IEEE 754 reference. Everything is a template over the word
// that it computes with: formats of few bits stay in 128-bit words, others take GMP.
#include "tests/oracle/ieee_oracle.h"

#include <algorithm>
#include <cstdlib>

#include "tests/oracle/word.h"

namespace vorn::oracle::ieee {
namespace {

enum class Class { nan, inf, zero, finite };

/// A pattern taken apart; `real` holds the value of a finite non-zero one.
template <class Word>
struct Datum {
  Class kind;
  Real<Word> real;
};

Bits exponent_field(Format f, const Bits& x) {
  return low_bits(shift_right(x, f.m), f.e);
}
Bits all_ones(std::size_t n) {
  return shift_left(Bits{1}, n) - 1;
}
Bits signed_pattern(Format f, bool negative, const Bits& magnitude) {
  return negative ? Bits(magnitude + shift_left(Bits{1}, f.e + f.m)) : magnitude;
}
Bits zero(Format f, bool negative) {
  return signed_pattern(f, negative, 0);
}
Bits infinity(Format f, bool negative) {
  return signed_pattern(f, negative, shift_left(all_ones(f.e), f.m));
}

template <class Word>
Datum<Word> unpack(Format f, const Bits& x) {
  const auto biased = static_cast<long>(to_size(exponent_field(f, x)));
  const Word fraction = to_word<Word>(low_bits(x, f.m));
  const bool negative = is_negative(f, x);
  if (biased == (1L << f.e) - 1) {
    return {fraction == 0 ? Class::inf : Class::nan, {negative, 0U, 0, false}};
  }
  if (biased == 0) {
    return {fraction == 0 ? Class::zero : Class::finite,
            {negative, fraction, f.min_exponent() - long{f.m}, false}};
  }
  const Word significand = fraction | shift_left(Word{1U}, f.m);
  return {Class::finite, {negative, significand, biased - f.bias() - long{f.m}, false}};
}

/// Whether rounding moves a magnitude away from zero, given the last kept bit, the bit after it
/// (half a unit) and whether anything non-zero follows.
bool rounds_away(RoundingMode rm, bool negative, bool odd, bool half, bool rest) {
  switch (rm) {
    case RoundingMode::rne:
      return half && (rest || odd);
    case RoundingMode::rna:
      return half;
    case RoundingMode::rtp:
      return !negative && (half || rest);
    case RoundingMode::rtn:
      return negative && (half || rest);
    case RoundingMode::rtz:
      break;
  }
  return false;
}

/// IEEE 754-2019, clause 7.4.
Bits overflow(RoundingMode rm, Format f, bool negative) {
  const bool to_nearest = rm == RoundingMode::rne || rm == RoundingMode::rna;
  const bool outward = rm == (negative ? RoundingMode::rtn : RoundingMode::rtp);
  const Bits inf = infinity(f, negative);
  return to_nearest || outward ? inf : Bits(inf - 1);
}

/// The significand without its last n > 0 bits, rounded.
template <class Word>
Word round_off(RoundingMode rm, const Real<Word>& v, std::size_t n) {
  Word kept = shift_right(v.significand, n);
  const bool half = test_bit(v.significand, n - 1);
  const bool rest = v.sticky || low_bits(v.significand, n - 1) != 0;
  if (rounds_away(rm, v.negative, test_bit(kept, 0), half, rest)) kept += 1U;
  return kept;
}

template <class Word>
long leading(const Real<Word>& v) {
  return v.exponent + static_cast<long>(bit_length(v.significand)) - 1;
}

template <class Word>
Bits round_real(RoundingMode rm, Format f, const Real<Word>& v) {
  // The unit in the last place of the binade, which the subnormals share with the lowest one.
  long unit = std::max(leading(v), f.min_exponent()) - long{f.m};
  const long drop = unit - v.exponent;
  Word kept{};
  if (drop <= 0) {
    kept = shift_left(v.significand, static_cast<std::size_t>(-drop));
  } else {
    kept = round_off(rm, v, static_cast<std::size_t>(drop));
  }
  if (bit_length(kept) > f.m + 1) {
    kept = shift_right(kept, 1);
    ++unit;
  }
  const bool normal = bit_length(kept) == f.m + 1;
  const long exponent = unit + long{f.m};
  if (exponent > f.max_exponent()) return overflow(rm, f, v.negative);
  const long biased = normal ? exponent + f.bias() : 0;
  const Bits magnitude = shift_left(Bits{biased}, f.m) + low_bits(to_mpz(kept), f.m);
  return signed_pattern(f, v.negative, magnitude);
}

template <class Word>
Bits round_datum(RoundingMode rm, Format f, const Datum<Word>& a) {
  switch (a.kind) {
    case Class::nan:
      return nan(f);
    case Class::inf:
      return infinity(f, a.real.negative);
    case Class::zero:
      return zero(f, a.real.negative);
    case Class::finite:
      break;
  }
  return round_real(rm, f, a.real);
}

/// Both operands on the grid of the smaller exponent; none if they cancel.
template <class Word>
std::optional<Real<Word>> exact_sum(const Real<Word>& a, const Real<Word>& b) {
  const long exponent = std::min(a.exponent, b.exponent);
  const Word x = shift_left(a.significand, static_cast<std::size_t>(a.exponent - exponent));
  const Word y = shift_left(b.significand, static_cast<std::size_t>(b.exponent - exponent));
  if (a.negative == b.negative) return Real<Word>{a.negative, Word(x + y), exponent, false};
  if (x == y) return std::nullopt;
  return x > y ? Real<Word>{a.negative, Word(x - y), exponent, false}
               : Real<Word>{b.negative, Word(y - x), exponent, false};
}

template <class Word>
Real<Word> product(const Real<Word>& a, const Real<Word>& b) {
  return {a.negative != b.negative, Word(a.significand * b.significand), a.exponent + b.exponent,
          false};
}

/// The dividend is padded by 2m + 8 bits, so that even a subnormal one over the longest divisor
/// leaves m + 8 bits of quotient.
template <class Word>
Real<Word> quotient(Format f, const Real<Word>& a, const Real<Word>& b) {
  const std::size_t padding = 2 * std::size_t{f.m} + 8;
  const Word dividend = shift_left(a.significand, padding);
  const Word q = dividend / b.significand;
  return {a.negative != b.negative, q, a.exponent - b.exponent - static_cast<long>(padding),
          Word(q * b.significand) != dividend};
}

/// The largest integer whose square is no more than v, found bit by bit.
template <class Word>
Word integer_root(const Word& v) {
  Word root{};
  for (std::size_t i = (bit_length(v) + 1) / 2; i-- > 0;) {
    const Word larger = root + shift_left(Word{1U}, i);
    if (larger * larger <= v) root = larger;
  }
  return root;
}
mpz_class integer_root(const mpz_class& v) {
  mpz_class root;
  mpz_sqrt(root.get_mpz_t(), v.get_mpz_t());
  return root;
}

/// The radicand is padded to 2m + 6 bits, one more where that makes its exponent even, so that the
/// root has m + 3 of them or more.
template <class Word>
Real<Word> square_root(Format f, const Real<Word>& v) {
  long padding = 2 * long{f.m} + 6 - static_cast<long>(bit_length(v.significand));
  if ((v.exponent - padding) % 2 != 0) ++padding;
  const Word radicand = shift_left(v.significand, static_cast<std::size_t>(padding));
  const Word root = integer_root(radicand);
  return {false, root, (v.exponent - padding) / 2, Word(root * root) != radicand};
}

/// 2^n modulo a number, above one, whose square fits the word.
template <class Word>
Word power_of_two_modulo(std::size_t n, const Word& modulus) {
  Word result{1U};
  for (std::size_t i = bit_length(Word64{n}); i-- > 0;) {
    result = result * result % modulus;
    if (test_bit(Word64{n}, i)) result = result * 2U % modulus;
  }
  return result;
}

/// The remainder, zero included, on the grid of the smaller exponent. Reducing the dividend by
/// twice the divisor keeps the parity of the quotient; its power of two, which may have millions of
/// bits, is reduced before it is multiplied.
template <class Word>
Real<Word> remainder(const Real<Word>& a, const Real<Word>& b) {
  // Below half the divisor nothing is taken off; else the grid is at most two bits below b's.
  if (leading(a) < leading(b) - 1) return a;
  const long exponent = std::min(a.exponent, b.exponent);
  const Word divisor = shift_left(b.significand, static_cast<std::size_t>(b.exponent - exponent));
  const Word period = divisor * 2U;
  const auto scale = static_cast<std::size_t>(a.exponent - exponent);
  const Word r = a.significand % period * power_of_two_modulo(scale, period) % period;
  // The multiple of the divisor nearest to r in [0, period]: ties go to 0 and to the period.
  Word multiple = divisor;
  if (r * 2U <= divisor) {
    multiple = 0U;
  } else if (r * 2U >= divisor * 3U) {
    multiple = period;
  }
  if (r < multiple) return {!a.negative, Word(multiple - r), exponent, false};
  return {a.negative, Word(r - multiple), exponent, false};
}

/// The widest values are the bound of the grid of a sum, the product, the padded dividend, the
/// padded radicand with a bit to spare, the product of two residues, and the bound of the grid of a
/// product and an addend.
std::size_t sum_bits(Format f) {
  return (std::size_t{1} << f.e) + f.m + 2;
}
std::size_t product_bits(Format f) {
  return 2 * std::size_t{f.m} + 2;
}
std::size_t quotient_bits(Format f) {
  return 3 * std::size_t{f.m} + 10;
}
std::size_t root_bits(Format f) {
  return 2 * std::size_t{f.m} + 8;
}
std::size_t remainder_bits(Format f) {
  return 2 * std::size_t{f.m} + 8;
}
std::size_t fma_bits(Format f) {
  return (std::size_t{2} << f.e) + 2 * std::size_t{f.m} + 2;
}

/// a + b rounded once. Clause 6.3 gives the signs of zero sums.
template <class Word>
Bits sum(RoundingMode rm, Format f, const Datum<Word>& a, const Datum<Word>& b) {
  const bool same_sign = a.real.negative == b.real.negative;
  if (a.kind == Class::nan || b.kind == Class::nan) return nan(f);
  if (a.kind == Class::inf && b.kind == Class::inf && !same_sign) return nan(f);
  if (a.kind == Class::inf) return infinity(f, a.real.negative);
  if (b.kind == Class::inf) return infinity(f, b.real.negative);
  if (a.kind == Class::zero && b.kind == Class::zero && same_sign) {
    return zero(f, a.real.negative);
  }
  std::optional<Real<Word>> exact;
  if (a.kind == Class::zero) {
    exact = b.real;
  } else if (b.kind == Class::zero) {
    exact = a.real;
  } else {
    exact = exact_sum(a.real, b.real);
  }
  if (!exact || exact->significand == 0) return zero(f, rm == RoundingMode::rtn);
  return round_real(rm, f, *exact);
}

/// x + y, with the sign of y flipped for a difference.
Bits sum(RoundingMode rm, Format f, const Bits& x, const Bits& y, bool is_sub) {
  return with_word(sum_bits(f), [&]<class Word>(const Word&) {
    const Datum<Word> a = unpack<Word>(f, x);
    Datum<Word> b = unpack<Word>(f, y);
    b.real.negative = b.real.negative != is_sub;
    return sum(rm, f, a, b);
  });
}

/// The exact product, specials included.
template <class Word>
Datum<Word> product(const Datum<Word>& a, const Datum<Word>& b) {
  const bool any_zero = a.kind == Class::zero || b.kind == Class::zero;
  const bool any_inf = a.kind == Class::inf || b.kind == Class::inf;
  Class kind = Class::finite;
  if (a.kind == Class::nan || b.kind == Class::nan || (any_zero && any_inf)) {
    kind = Class::nan;
  } else if (any_inf) {
    kind = Class::inf;
  } else if (any_zero) {
    kind = Class::zero;
  }
  return {kind, product(a.real, b.real)};
}

Bits from_integer(RoundingMode rm, Format f, const std::optional<Exact>& v) {
  return v ? round_real(rm, f, *v) : zero(f, false);
}

/// The integer nearest to x in the mode, as a pattern of w bits, if they hold it.
std::optional<Bits> to_integer(RoundingMode rm, Format f, bool is_signed, unsigned w,
                               const Bits& x) {
  const Datum<mpz_class> a = unpack<mpz_class>(f, x);
  if (a.kind == Class::nan || a.kind == Class::inf) return std::nullopt;
  if (a.kind == Class::zero) return Bits{0};
  const Exact& v = a.real;
  if (leading(v) >= long{w}) return std::nullopt;
  const auto distance = static_cast<std::size_t>(std::abs(v.exponent));
  const Bits magnitude =
      v.exponent < 0 ? round_off(rm, v, distance) : shift_left(v.significand, distance);
  Bits limit = all_ones(is_signed ? w - 1 : w);
  if (v.negative) limit = is_signed ? Bits(limit + 1) : Bits{0};
  if (magnitude > limit) return std::nullopt;
  return v.negative ? low_bits(Bits(-magnitude), w) : magnitude;
}

/// The order of the extended reals on patterns that are no NaNs: both zeros map to 0.
Bits order_key(Format f, const Bits& x) {
  const Bits magnitude = low_bits(x, f.e + f.m);
  return is_negative(f, x) ? Bits(-magnitude) : magnitude;
}

/// The operand that `first_wins(x, y)` chooses of two numbers.
template <class FirstWins>
std::optional<Bits> choose(Format f, const Bits& x, const Bits& y, FirstWins first_wins) {
  if (is_nan(f, x)) return is_nan(f, y) ? nan(f) : y;
  if (is_nan(f, y)) return x;
  if (is_zero(f, x) && is_zero(f, y) && x != y) return std::nullopt;
  return first_wins(x, y) ? x : y;
}

}  // namespace

Bits nan(Format f) {
  return infinity(f, true) + 1;
}

bool is_negative(Format f, const Bits& x) {
  return test_bit(x, f.e + f.m);
}

bool is_nan(Format f, const Bits& x) {
  return exponent_field(f, x) == all_ones(f.e) && low_bits(x, f.m) != 0;
}

bool is_inf(Format f, const Bits& x) {
  return exponent_field(f, x) == all_ones(f.e) && low_bits(x, f.m) == 0;
}

bool is_zero(Format f, const Bits& x) {
  return low_bits(x, f.e + f.m) == 0;
}

bool is_subnormal(Format f, const Bits& x) {
  return exponent_field(f, x) == 0 && low_bits(x, f.m) != 0;
}

bool is_normal(Format f, const Bits& x) {
  return exponent_field(f, x) != 0 && exponent_field(f, x) != all_ones(f.e);
}

bool smt_is_negative(Format f, const Bits& x) {
  return !is_nan(f, x) && is_negative(f, x);
}

bool smt_is_positive(Format f, const Bits& x) {
  return !is_nan(f, x) && !is_negative(f, x);
}

Bits add(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  return sum(rm, f, x, y, false);
}

Bits sub(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  return sum(rm, f, x, y, true);
}

Bits mul(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  return with_word(product_bits(f), [&]<class Word>(const Word&) {
    return round_datum(rm, f, product(unpack<Word>(f, x), unpack<Word>(f, y)));
  });
}

Bits div(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  return with_word(quotient_bits(f), [&]<class Word>(const Word&) {
    const Datum<Word> a = unpack<Word>(f, x);
    const Datum<Word> b = unpack<Word>(f, y);
    const bool negative = a.real.negative != b.real.negative;
    if (a.kind == Class::nan || b.kind == Class::nan) return nan(f);
    if (a.kind == b.kind && a.kind != Class::finite) return nan(f);
    if (a.kind == Class::inf || b.kind == Class::zero) return infinity(f, negative);
    if (a.kind == Class::zero || b.kind == Class::inf) return zero(f, negative);
    return round_real(rm, f, quotient(f, a.real, b.real));
  });
}

Bits cast(RoundingMode rm, Format from, Format to, const Bits& x) {
  const std::size_t bits = std::max(from.m, to.m) + 2;
  return with_word(
      bits, [&]<class Word>(const Word&) { return round_datum(rm, to, unpack<Word>(from, x)); });
}

Bits from_sbv(RoundingMode rm, unsigned w, Format f, const Bits& v) {
  return from_integer(rm, f, integer_value(true, w, v));
}

Bits from_ubv(RoundingMode rm, unsigned w, Format f, const Bits& v) {
  return from_integer(rm, f, integer_value(false, w, v));
}

Bits sqrt(RoundingMode rm, Format f, const Bits& x) {
  return with_word(root_bits(f), [&]<class Word>(const Word&) {
    const Datum<Word> a = unpack<Word>(f, x);
    if (a.kind == Class::nan) return nan(f);
    if (a.kind == Class::zero) return x;
    if (a.real.negative) return nan(f);
    if (a.kind == Class::inf) return x;
    return round_real(rm, f, square_root(f, a.real));
  });
}

Bits fma(RoundingMode rm, Format f, const Bits& x, const Bits& y, const Bits& z) {
  return with_word(fma_bits(f), [&]<class Word>(const Word&) {
    return sum(rm, f, product(unpack<Word>(f, x), unpack<Word>(f, y)), unpack<Word>(f, z));
  });
}

Bits rem(Format f, const Bits& x, const Bits& y) {
  return with_word(remainder_bits(f), [&]<class Word>(const Word&) {
    const Datum<Word> a = unpack<Word>(f, x);
    const Datum<Word> b = unpack<Word>(f, y);
    if (a.kind == Class::nan || b.kind == Class::nan) return nan(f);
    if (a.kind == Class::inf || b.kind == Class::zero) return nan(f);
    if (a.kind == Class::zero || b.kind == Class::inf) return x;
    const Real<Word> r = remainder(a.real, b.real);
    // No mode is given as none matters: the format holds every remainder.
    return r.significand == 0 ? zero(f, a.real.negative) : round_real(RoundingMode::rtz, f, r);
  });
}

Bits rti(RoundingMode rm, Format f, const Bits& x) {
  return with_word(std::size_t{f.m} + 2, [&]<class Word>(const Word&) {
    const Datum<Word> a = unpack<Word>(f, x);
    if (a.kind == Class::nan) return nan(f);
    if (a.kind != Class::finite || a.real.exponent >= 0) return x;
    const Word kept = round_off(rm, a.real, static_cast<std::size_t>(-a.real.exponent));
    if (kept == 0) return zero(f, a.real.negative);
    return round_real(rm, f, Real<Word>{a.real.negative, kept, 0, false});
  });
}

std::optional<Bits> to_sbv(RoundingMode rm, Format f, unsigned w, const Bits& x) {
  return to_integer(rm, f, true, w, x);
}

std::optional<Bits> to_ubv(RoundingMode rm, Format f, unsigned w, const Bits& x) {
  return to_integer(rm, f, false, w, x);
}

Bits abs(Format f, const Bits& x) {
  return is_nan(f, x) ? nan(f) : low_bits(x, f.e + f.m);
}

std::optional<Bits> min(Format f, const Bits& x, const Bits& y) {
  return choose(f, x, y, [f](const Bits& a, const Bits& b) { return lt(f, a, b); });
}

std::optional<Bits> max(Format f, const Bits& x, const Bits& y) {
  return choose(f, x, y, [f](const Bits& a, const Bits& b) { return lt(f, b, a); });
}

Bits neg(Format f, const Bits& x) {
  if (is_nan(f, x)) return nan(f);
  return signed_pattern(f, !is_negative(f, x), low_bits(x, f.e + f.m));
}

bool eq(Format f, const Bits& x, const Bits& y) {
  return !is_nan(f, x) && !is_nan(f, y) && order_key(f, x) == order_key(f, y);
}

bool lt(Format f, const Bits& x, const Bits& y) {
  return !is_nan(f, x) && !is_nan(f, y) && order_key(f, x) < order_key(f, y);
}

bool le(Format f, const Bits& x, const Bits& y) {
  return !is_nan(f, x) && !is_nan(f, y) && order_key(f, x) <= order_key(f, y);
}

bool same(Format f, const Bits& x, const Bits& y) {
  return x == y || (is_nan(f, x) && is_nan(f, y));
}

std::optional<Exact> value(Format f, const Bits& x) {
  const Datum<mpz_class> a = unpack<mpz_class>(f, x);
  if (a.kind != Class::finite) return std::nullopt;
  return a.real;
}

std::optional<Exact> exact_product(Format f, const Bits& x, const Bits& y) {
  const auto a = value(f, x);
  const auto b = value(f, y);
  if (!a || !b) return std::nullopt;
  return product(*a, *b);
}

std::optional<Exact> exact_quotient(Format f, const Bits& x, const Bits& y) {
  const auto a = value(f, x);
  const auto b = value(f, y);
  if (!a || !b) return std::nullopt;
  return quotient(f, *a, *b);
}

std::optional<Exact> integer_value(bool is_signed, unsigned w, const Bits& v) {
  if (v == 0) return std::nullopt;
  const bool negative = is_signed && test_bit(v, w - 1);
  return Exact{negative, negative ? Bits(shift_left(Bits{1}, w) - v) : v, 0, false};
}

long leading_exponent(const Exact& v) {
  return leading(v);
}

Bits round(RoundingMode rm, Format f, const Exact& v) {
  return round_real(rm, f, v);
}

}  // namespace vorn::oracle::ieee
