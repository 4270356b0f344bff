// Arithmetic of small formats in all five rounding modes at once, on machine integers.
//
// Why one rounding is enough: a number is a significand of m + 1 bits times a power of two, and
// what is rounded is the exact value as far as rounding can tell. Sums and products of a sum lie on
// a grid on which they are integers of at most 64 bits, which is asserted where the format is
// known. Products of two numbers have 2m + 2 bits. A quotient is cut at no fewer than 29 - m bits,
// with a sticky bit for the remainder; rounding looks at m + 2 bits and whether anything follows. A
// remainder is a multiple of the last place of the smaller operand and less than either, so it
// needs no rounding.
#ifndef TESTS_SWEEP_INTEGER_REFERENCE_H
#define TESTS_SWEEP_INTEGER_REFERENCE_H

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace vorn::sweep {

/// Results in the order of the modes: nearest even, toward zero, plus infinity, minus infinity,
/// nearest away.
inline constexpr std::size_t kModes = 5;
using Results = std::array<std::uint64_t, kModes>;

inline constexpr std::size_t kDown = 3;  // the mode toward minus infinity

/// A format with exponents of `e` bits and significands of m + 1, its constants, and a number of it
/// taken apart.
template <int e, int m>
struct Small {
  static constexpr int kExponentBits = e;
  static constexpr int kFractionBits = m;
  static constexpr int kWidth = 1 + e + m;
  static constexpr int kLargest = (1 << (e - 1)) - 1;  // the exponents of normal numbers
  static constexpr int kSmallest = 1 - kLargest;
  static constexpr int kUnit = kSmallest - m;  // that of the last bit of a subnormal number
  static constexpr std::uint64_t kHidden = std::uint64_t{1} << m;
  static constexpr std::uint64_t kSign = std::uint64_t{1} << (e + m);
  static constexpr std::uint64_t kInfinity = kSign - kHidden;
  static constexpr std::uint64_t kNaN = kSign | kInfinity | 1U;  // the canonical one

  explicit Small(std::uint64_t bits)
      : sign((bits & kSign) != 0),
        nan((bits & (kSign - 1)) > kInfinity),
        inf((bits & (kSign - 1)) == kInfinity),
        zero((bits & (kSign - 1)) == 0) {
    const int field = static_cast<int>((bits & (kSign - 1)) >> m);
    significand = (bits & (kHidden - 1)) | (field != 0 ? kHidden : 0U);
    exponent = (field != 0 ? field : 1) - 1 + kUnit;
  }

  /// The magnitude of a finite number as a multiple of 2^unit, for a unit no greater than kUnit.
  std::uint64_t on_grid(int unit) const {
    return significand << static_cast<unsigned>(exponent - unit);
  }

  bool sign, nan, inf, zero;
  std::uint64_t significand;
  int exponent;  // the value is significand * 2^exponent
};

inline Results all(std::uint64_t bits) {
  return {bits, bits, bits, bits, bits};
}

template <class Format>
Results signed_all(bool sign, std::uint64_t bits) {
  return all(bits | (sign ? Format::kSign : 0U));
}

/// (significand + t) * 2^exponent with significand > 0 and 0 < t < 1 if `sticky`, else t = 0.
template <class Format>
Results round(bool sign, std::uint64_t significand, int exponent, bool sticky) {
  const int top = exponent + static_cast<int>(std::bit_width(significand)) - 1;
  const std::uint64_t s = sign ? Format::kSign : 0U;
  if (top > Format::kLargest) {
    const std::uint64_t inf = s | Format::kInfinity;
    const std::uint64_t max = s | (Format::kInfinity - 1U);
    return {inf, max, sign ? max : inf, sign ? inf : max, inf};
  }
  const bool subnormal = top < Format::kSmallest;
  const int unit = (subnormal ? Format::kSmallest : top) - Format::kFractionBits;
  const int cut = unit - exponent;
  std::uint64_t kept = 0;
  bool guard = false;
  bool rest = sticky;
  if (cut <= 0) {
    kept = significand << static_cast<unsigned>(-cut);
  } else if (cut <= 64) {
    const std::uint64_t half = std::uint64_t{1} << static_cast<unsigned>(cut - 1);
    kept = significand >> static_cast<unsigned>(cut - 1) >> 1U;
    guard = (significand & half) != 0;
    rest = rest || (significand & (half - 1)) != 0;
  } else {
    rest = true;
  }
  const std::uint64_t field = subnormal ? 0U : static_cast<std::uint64_t>(top - Format::kSmallest);
  const std::uint64_t body = s + (field << Format::kFractionBits) + kept;
  const bool inexact = guard || rest;
  const auto up = [body](bool away) { return body + (away ? 1U : 0U); };
  return {up(guard && (rest || (kept & 1U) != 0)), up(false), up(inexact && !sign),
          up(inexact && sign), up(guard)};
}

/// A sum of two magnitudes with signs, multiples of 2^unit that are exact, as is their sum.
template <class Format>
Results sum(bool x_sign, std::uint64_t x, bool y_sign, std::uint64_t y, int unit) {
  if (x_sign == y_sign) {
    if (x + y == 0) return signed_all<Format>(x_sign, 0);
    return round<Format>(x_sign, x + y, unit, false);
  }
  if (x == y) {
    Results zeros = all(0);
    zeros[kDown] = Format::kSign;
    return zeros;
  }
  return x > y ? round<Format>(x_sign, x - y, unit, false)
               : round<Format>(y_sign, y - x, unit, false);
}

template <class Format>
Results add(std::uint64_t a, std::uint64_t b) {
  // A magnitude is below 2^(kLargest + 1).
  static_assert(Format::kLargest + 2 - Format::kUnit <= 64);
  const Format x(a);
  const Format y(b);
  if (x.nan || y.nan || (x.inf && y.inf && x.sign != y.sign)) return all(Format::kNaN);
  if (x.inf) return all(a);
  if (y.inf) return all(b);
  return sum<Format>(x.sign, x.on_grid(Format::kUnit), y.sign, y.on_grid(Format::kUnit),
                     Format::kUnit);
}

template <class Format>
Results sub(std::uint64_t a, std::uint64_t b) {
  return add<Format>(a, b ^ Format::kSign);
}

template <class Format>
Results mul(std::uint64_t a, std::uint64_t b) {
  static_assert(2 * Format::kFractionBits + 2 <= 64);
  const Format x(a);
  const Format y(b);
  const bool sign = x.sign != y.sign;
  if (x.nan || y.nan || (x.inf && y.zero) || (x.zero && y.inf)) return all(Format::kNaN);
  if (x.inf || y.inf) return signed_all<Format>(sign, Format::kInfinity);
  if (x.zero || y.zero) return signed_all<Format>(sign, 0);
  return round<Format>(sign, x.significand * y.significand, x.exponent + y.exponent, false);
}

template <class Format>
Results div(std::uint64_t a, std::uint64_t b) {
  constexpr unsigned kShift = 30;
  static_assert(29 - Format::kFractionBits >= Format::kFractionBits + 2);
  const Format x(a);
  const Format y(b);
  const bool sign = x.sign != y.sign;
  if (x.nan || y.nan || (x.inf && y.inf) || (x.zero && y.zero)) return all(Format::kNaN);
  if (x.inf || y.zero) return signed_all<Format>(sign, Format::kInfinity);
  if (y.inf || x.zero) return signed_all<Format>(sign, 0);
  const std::uint64_t scaled = x.significand << kShift;
  return round<Format>(sign, scaled / y.significand,
                       x.exponent - y.exponent - static_cast<int>(kShift),
                       scaled % y.significand != 0);
}

/// a * b + c, rounded once.
template <class Format>
Results fma(std::uint64_t a, std::uint64_t b, std::uint64_t c) {
  // Product and addend together are below 2^(2 kLargest + 2).
  constexpr int kGrid = 2 * Format::kUnit;
  static_assert(2 * Format::kLargest + 2 - kGrid <= 64);
  const Format x(a);
  const Format y(b);
  const Format z(c);
  const bool sign = x.sign != y.sign;
  const bool inf = x.inf || y.inf;
  if (x.nan || y.nan || z.nan || (x.inf && y.zero) || (x.zero && y.inf)) return all(Format::kNaN);
  if (inf && z.inf && sign != z.sign) return all(Format::kNaN);
  if (inf) return signed_all<Format>(sign, Format::kInfinity);
  if (z.inf) return all(c);
  const std::uint64_t product = x.on_grid(Format::kUnit) * y.on_grid(Format::kUnit);
  return sum<Format>(sign, product, z.sign, z.on_grid(kGrid), kGrid);
}

/// a - b * n for the integer n nearest to a / b, the even one of two. On the grid this is a
/// division of integers; a zero has the sign of a (IEEE 754-2019, clause 5.3.1).
template <class Format>
Results rem(std::uint64_t a, std::uint64_t b) {
  static_assert(Format::kLargest + 2 - Format::kUnit <= 64);
  const Format x(a);
  const Format y(b);
  if (x.nan || y.nan || x.inf || y.zero) return all(Format::kNaN);
  if (y.inf || x.zero) return all(a);
  const std::uint64_t dividend = x.on_grid(Format::kUnit);
  const std::uint64_t divisor = y.on_grid(Format::kUnit);
  const std::uint64_t quotient = dividend / divisor;
  const std::uint64_t below = dividend - quotient * divisor;
  if (below == 0) return signed_all<Format>(x.sign, 0);
  const std::uint64_t above = divisor - below;
  const bool up = below > above || (below == above && quotient % 2 != 0);
  return round<Format>(x.sign != up, up ? above : below, Format::kUnit, false);
}

/// A number of another format in this one.
template <class From, class To>
Results cast(std::uint64_t a) {
  const From x(a);
  if (x.nan) return all(To::kNaN);
  if (x.inf) return signed_all<To>(x.sign, To::kInfinity);
  if (x.zero) return signed_all<To>(x.sign, 0);
  return round<To>(x.sign, x.significand, x.exponent, false);
}

}  // namespace vorn::sweep

#endif
