// Results are computed by MPFR with m + 1 bits of precision in its full exponent range, then
// brought into the format's range and subnormalised, each step told of the rounding error so far,
// so that they are rounded once in effect (the MPFR manual, "Exception Related Functions").
#include "tests/oracle/mpfr_oracle.h"

#include <mpfr.h>

#include <algorithm>
#include <utility>

namespace vorn::oracle::by_mpfr {
namespace {

/// An owned MPFR number. `ternary` is the sign of its rounding error.
class Float {
 public:
  explicit Float(long precision) { mpfr_init2(x, precision); }
  Float(const Float&) = delete;
  Float& operator=(const Float&) = delete;
  ~Float() { mpfr_clear(x); }

  mpfr_t x;
  int ternary = 0;
};

/// Confines MPFR to an exponent range while it lives.
class ExponentRange {
 public:
  ExponentRange(mpfr_exp_t lowest, mpfr_exp_t highest)
      : emin(mpfr_get_emin()), emax(mpfr_get_emax()) {
    mpfr_set_emin(lowest);
    mpfr_set_emax(highest);
  }
  ExponentRange(const ExponentRange&) = delete;
  ExponentRange& operator=(const ExponentRange&) = delete;
  ~ExponentRange() {
    mpfr_set_emin(emin);
    mpfr_set_emax(emax);
  }

 private:
  mpfr_exp_t emin;
  mpfr_exp_t emax;
};

mpz_class power(unsigned n) {
  return mpz_class{1} << n;
}

struct Fields {
  bool negative;
  mpz_class exponent;
  mpz_class fraction;
};

Fields fields(Format f, const Bits& x) {
  const mpz_class magnitude = x % power(f.e + f.m);
  return {x >= power(f.e + f.m), magnitude / power(f.m), magnitude % power(f.m)};
}

Bits pattern(Format f, bool negative, const mpz_class& exponent, const mpz_class& fraction) {
  return (negative ? power(f.e + f.m) : mpz_class{0}) + exponent * power(f.m) + fraction;
}

/// Significand, hidden bit included, and the power of two that scales it.
std::pair<mpz_class, long> scaled(Format f, const Fields& v) {
  const bool subnormal = v.exponent == 0;
  const mpz_class significand = subnormal ? v.fraction : mpz_class(v.fraction + power(f.m));
  const long exponent = subnormal ? 1 : v.exponent.get_si();
  return {significand, exponent - f.bias() - long{f.m}};
}

/// Sets `out`, of at least m + 1 bits of precision, to a pattern's value.
void load(Format f, const Bits& x, Float& out) {
  const Fields v = fields(f, x);
  const int sign = v.negative ? -1 : 1;
  if (v.exponent == power(f.e) - 1) {
    if (v.fraction != 0) {
      mpfr_set_nan(out.x);
    } else {
      mpfr_set_inf(out.x, sign);
    }
    return;
  }
  const auto [significand, exponent] = scaled(f, v);
  mpfr_set_z_2exp(out.x, significand.get_mpz_t(), exponent, MPFR_RNDN);
  mpfr_setsign(out.x, out.x, v.negative ? 1 : 0, MPFR_RNDN);
}

/// The pattern of a number that the format holds.
Bits store(Format f, const Float& v) {
  const bool negative = mpfr_signbit(v.x) != 0;
  if (mpfr_nan_p(v.x)) return pattern(f, true, power(f.e) - 1, 1);
  if (mpfr_inf_p(v.x)) return pattern(f, negative, power(f.e) - 1, 0);
  if (mpfr_zero_p(v.x)) return pattern(f, negative, 0, 0);
  // MPFR's significands lie in [1/2, 1).
  const long exponent = std::max(static_cast<long>(mpfr_get_exp(v.x)) - 1, f.min_exponent());
  mpz_class significand;
  const mpfr_exp_t scale = mpfr_get_z_2exp(significand.get_mpz_t(), v.x);
  significand = abs(significand);
  const long shift = static_cast<long>(scale) - (exponent - long{f.m});
  if (shift >= 0) {
    significand <<= static_cast<unsigned long>(shift);
  } else {
    significand >>= static_cast<unsigned long>(-shift);
  }
  // A normal significand's hidden bit adds the one that the biased exponent lacks here.
  return pattern(f, negative, exponent + f.bias() - 1, significand);
}

mpfr_rnd_t direction(RoundingMode rm) {
  switch (rm) {
    case RoundingMode::rtz:
      return MPFR_RNDZ;
    case RoundingMode::rtp:
      return MPFR_RNDU;
    case RoundingMode::rtn:
      return MPFR_RNDD;
    default:
      return MPFR_RNDN;
  }
}

/// Rounds what `compute(out, direction)` yields; it returns MPFR's ternary value.
template <class Compute>
Bits rounded(RoundingMode rm, Format f, Compute compute) {
  const mpfr_rnd_t rnd = direction(rm);
  Float out(long{f.m} + 1);
  out.ternary = compute(out, rnd);
  const ExponentRange range(f.min_exponent() - long{f.m} + 1, f.max_exponent() + 1);
  out.ternary = mpfr_check_range(out.x, out.ternary, rnd);
  mpfr_subnormalize(out.x, out.ternary, rnd);
  return store(f, out);
}

/// The rational value of a finite magnitude; that of infinity is where its binade would begin,
/// the upper neighbour that rounding to nearest gives the largest finite number.
mpq_class magnitude_value(Format f, const Bits& magnitude) {
  const auto [significand, exponent] = scaled(f, fields(f, magnitude));
  mpq_class result(significand);
  if (exponent >= 0) {
    result <<= static_cast<unsigned long>(exponent);
  } else {
    result >>= static_cast<unsigned long>(-exponent);
  }
  return result;
}

/// roundTiesToAway from the result toward zero; `reaches(q)` says whether the magnitude of the
/// exact result is at least q.
template <class Reaches>
Bits ties_to_away(Format f, const Bits& toward_zero, Reaches reaches) {
  const Bits sign = toward_zero / power(f.e + f.m) * power(f.e + f.m);
  const Bits below = toward_zero - sign;
  const Bits above = below + 1;
  const mpq_class middle = (magnitude_value(f, below) + magnitude_value(f, above)) / 2;
  return sign + (reaches(middle) ? above : below);
}
Bits ties_to_away(Format f, const Bits& toward_zero, const mpq_class& exact) {
  return ties_to_away(f, toward_zero,
                      [&](const mpq_class& middle) { return abs(exact) >= middle; });
}

bool is_finite(Format f, const Bits& x) {
  return fields(f, x).exponent != power(f.e) - 1;
}

mpq_class signed_value(Format f, const Bits& x) {
  const Fields v = fields(f, x);
  const mpq_class magnitude = magnitude_value(f, pattern(f, false, v.exponent, v.fraction));
  return v.negative ? mpq_class(-magnitude) : magnitude;
}

/// `compute(out, a, b, direction)` is MPFR's operation, `exact(a, b)` the same on rationals.
template <class Compute, class ExactResult>
Bits binary(RoundingMode rm, Format f, const Bits& x, const Bits& y, Compute compute,
            ExactResult exact) {
  const auto by_mode = [&](RoundingMode mode) {
    Float a(long{f.m} + 1);
    Float b(long{f.m} + 1);
    load(f, x, a);
    load(f, y, b);
    return rounded(mode, f,
                   [&](Float& out, mpfr_rnd_t rnd) { return compute(out.x, a.x, b.x, rnd); });
  };
  if (rm != RoundingMode::rna) return by_mode(rm);
  Bits toward_zero = by_mode(RoundingMode::rtz);
  if (!is_finite(f, toward_zero) || !is_finite(f, x) || !is_finite(f, y)) return toward_zero;
  return ties_to_away(f, toward_zero, exact(signed_value(f, x), signed_value(f, y)));
}

Bits from_integer(RoundingMode rm, Format f, const mpz_class& v) {
  const auto by_mode = [&](RoundingMode mode) {
    return rounded(
        mode, f, [&](Float& out, mpfr_rnd_t rnd) { return mpfr_set_z(out.x, v.get_mpz_t(), rnd); });
  };
  if (rm != RoundingMode::rna) return by_mode(rm);
  return ties_to_away(f, by_mode(RoundingMode::rtz), mpq_class(v));
}

/// mpfr_rint has no direction for ties away, which are mpfr_round's. The operand's precision holds
/// the result, as it rounds off a fraction to m bits at most or to the power of two above.
int round_to_integer(RoundingMode rm, mpfr_t out, const mpfr_t a) {
  return rm == RoundingMode::rna ? mpfr_round(out, a) : mpfr_rint(out, a, direction(rm));
}

/// The nearest integer if it lies in [lowest, highest], in two's complement of w bits.
std::optional<Bits> to_integer(RoundingMode rm, Format f, unsigned w, const Bits& x,
                               const mpz_class& lowest, const mpz_class& highest) {
  Float a(long{f.m} + 1);
  load(f, x, a);
  if (mpfr_number_p(a.x) == 0) return std::nullopt;
  round_to_integer(rm, a.x, a.x);
  if (mpfr_cmp_z(a.x, lowest.get_mpz_t()) < 0) return std::nullopt;
  if (mpfr_cmp_z(a.x, highest.get_mpz_t()) > 0) return std::nullopt;
  mpz_class v;
  mpfr_get_z(v.get_mpz_t(), a.x, MPFR_RNDN);
  return v < 0 ? Bits(v + power(w)) : v;
}

/// `select` is mpfr_min or mpfr_max, which give zeros of opposite signs an order.
template <class Select>
std::optional<Bits> choose(Format f, const Bits& x, const Bits& y, Select select) {
  Float a(long{f.m} + 1);
  Float b(long{f.m} + 1);
  load(f, x, a);
  load(f, y, b);
  const bool zeros = mpfr_zero_p(a.x) && mpfr_zero_p(b.x);
  if (zeros && mpfr_signbit(a.x) != mpfr_signbit(b.x)) return std::nullopt;
  select(a.x, a.x, b.x, MPFR_RNDN);
  return store(f, a);
}

/// Whether a predicate on MPFR numbers, whose exponents exceed the standard's by one, holds of a
/// pattern's value.
template <class Test>
bool test(Format f, const Bits& x, Test holds) {
  Float a(long{f.m} + 1);
  load(f, x, a);
  return holds(a.x);
}

template <class Compare>
bool compare(Format f, const Bits& x, const Bits& y, Compare compare_floats) {
  Float a(long{f.m} + 1);
  Float b(long{f.m} + 1);
  load(f, x, a);
  load(f, y, b);
  return compare_floats(a.x, b.x) != 0;
}

}  // namespace

Bits add(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  return binary(rm, f, x, y, mpfr_add,
                [](const mpq_class& a, const mpq_class& b) { return mpq_class(a + b); });
}

Bits sub(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  return binary(rm, f, x, y, mpfr_sub,
                [](const mpq_class& a, const mpq_class& b) { return mpq_class(a - b); });
}

Bits mul(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  return binary(rm, f, x, y, mpfr_mul,
                [](const mpq_class& a, const mpq_class& b) { return mpq_class(a * b); });
}

Bits div(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  return binary(rm, f, x, y, mpfr_div,
                [](const mpq_class& a, const mpq_class& b) { return mpq_class(a / b); });
}

Bits cast(RoundingMode rm, Format from, Format to, const Bits& x) {
  const auto by_mode = [&](RoundingMode mode) {
    Float a(long{from.m} + 1);
    load(from, x, a);
    return rounded(mode, to, [&](Float& out, mpfr_rnd_t rnd) { return mpfr_set(out.x, a.x, rnd); });
  };
  if (rm != RoundingMode::rna) return by_mode(rm);
  Bits toward_zero = by_mode(RoundingMode::rtz);
  if (!is_finite(from, x)) return toward_zero;
  return ties_to_away(to, toward_zero, signed_value(from, x));
}

Bits from_sbv(RoundingMode rm, unsigned w, Format f, const Bits& v) {
  return from_integer(rm, f, v >= power(w - 1) ? mpz_class(v - power(w)) : v);
}

Bits from_ubv(RoundingMode rm, unsigned /*w*/, Format f, const Bits& v) {
  return from_integer(rm, f, v);
}

Bits sqrt(RoundingMode rm, Format f, const Bits& x) {
  const auto by_mode = [&](RoundingMode mode) {
    Float a(long{f.m} + 1);
    load(f, x, a);
    return rounded(mode, f, [&](Float& out, mpfr_rnd_t rnd) { return mpfr_sqrt(out.x, a.x, rnd); });
  };
  if (rm != RoundingMode::rna) return by_mode(rm);
  Bits toward_zero = by_mode(RoundingMode::rtz);
  if (!is_finite(f, toward_zero)) return toward_zero;
  const mpq_class radicand = signed_value(f, x);
  return ties_to_away(f, toward_zero,
                      [&](const mpq_class& middle) { return radicand >= middle * middle; });
}

Bits fma(RoundingMode rm, Format f, const Bits& x, const Bits& y, const Bits& z) {
  const auto by_mode = [&](RoundingMode mode) {
    Float a(long{f.m} + 1);
    Float b(long{f.m} + 1);
    Float c(long{f.m} + 1);
    load(f, x, a);
    load(f, y, b);
    load(f, z, c);
    return rounded(mode, f,
                   [&](Float& out, mpfr_rnd_t rnd) { return mpfr_fma(out.x, a.x, b.x, c.x, rnd); });
  };
  if (rm != RoundingMode::rna) return by_mode(rm);
  Bits toward_zero = by_mode(RoundingMode::rtz);
  // A finite result has finite operands.
  if (!is_finite(f, toward_zero)) return toward_zero;
  const mpq_class exact = signed_value(f, x) * signed_value(f, y) + signed_value(f, z);
  return ties_to_away(f, toward_zero, exact);
}

Bits rem(Format f, const Bits& x, const Bits& y) {
  Float a(long{f.m} + 1);
  Float b(long{f.m} + 1);
  load(f, x, a);
  load(f, y, b);
  return rounded(RoundingMode::rne, f,
                 [&](Float& out, mpfr_rnd_t rnd) { return mpfr_remainder(out.x, a.x, b.x, rnd); });
}

Bits rti(RoundingMode rm, Format f, const Bits& x) {
  Float a(long{f.m} + 1);
  load(f, x, a);
  return rounded(rm, f, [&](Float& out, mpfr_rnd_t) { return round_to_integer(rm, out.x, a.x); });
}

std::optional<Bits> to_sbv(RoundingMode rm, Format f, unsigned w, const Bits& x) {
  return to_integer(rm, f, w, x, -power(w - 1), power(w - 1) - 1);
}

std::optional<Bits> to_ubv(RoundingMode rm, Format f, unsigned w, const Bits& x) {
  return to_integer(rm, f, w, x, 0, power(w) - 1);
}

std::optional<Bits> min(Format f, const Bits& x, const Bits& y) {
  return choose(f, x, y, mpfr_min);
}

std::optional<Bits> max(Format f, const Bits& x, const Bits& y) {
  return choose(f, x, y, mpfr_max);
}

Bits abs(Format f, const Bits& x) {
  Float a(long{f.m} + 1);
  load(f, x, a);
  mpfr_abs(a.x, a.x, MPFR_RNDN);
  return store(f, a);
}

bool is_normal(Format f, const Bits& x) {
  return test(f, x, [f](const mpfr_t v) {
    return mpfr_regular_p(v) && mpfr_get_exp(v) > f.min_exponent();
  });
}

bool is_subnormal(Format f, const Bits& x) {
  return test(f, x, [f](const mpfr_t v) {
    return mpfr_regular_p(v) && mpfr_get_exp(v) <= f.min_exponent();
  });
}

bool smt_is_negative(Format f, const Bits& x) {
  return test(f, x, [](const mpfr_t v) { return !mpfr_nan_p(v) && mpfr_signbit(v); });
}

bool smt_is_positive(Format f, const Bits& x) {
  return test(f, x, [](const mpfr_t v) { return !mpfr_nan_p(v) && !mpfr_signbit(v); });
}

Bits neg(Format f, const Bits& x) {
  Float a(long{f.m} + 1);
  load(f, x, a);
  mpfr_neg(a.x, a.x, MPFR_RNDN);
  return store(f, a);
}

bool eq(Format f, const Bits& x, const Bits& y) {
  return compare(f, x, y, mpfr_equal_p);
}

bool lt(Format f, const Bits& x, const Bits& y) {
  return compare(f, x, y, mpfr_less_p);
}

bool le(Format f, const Bits& x, const Bits& y) {
  return compare(f, x, y, mpfr_lessequal_p);
}

}  // namespace vorn::oracle::by_mpfr
