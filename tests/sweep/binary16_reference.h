// Binary16 arithmetic in all five rounding modes at once, on machine integers.
//
// Why one rounding is enough: a binary16 number is a significand of 11 bits times a power of two no
// lower than 2^-24. Sums are integers on the grid 2^-24 below 2^41, products have 22 bits, both
// exact in 64 bits; a quotient is cut at no fewer than 19 bits with a sticky bit for the remainder,
// and rounding looks at 12 bits and whether anything follows. So the value that is rounded, once,
// is the exact one as far as rounding can tell.
#ifndef TESTS_SWEEP_BINARY16_REFERENCE_H
#define TESTS_SWEEP_BINARY16_REFERENCE_H

#include <array>
#include <bit>
#include <cstdint>

namespace vorn::sweep {

/// Results in the order of the modes: nearest even, toward zero, plus infinity, minus infinity,
/// nearest away.
using Results = std::array<std::uint16_t, 5>;

inline constexpr std::uint16_t kSign = 0x8000;
inline constexpr std::uint16_t kInfinity = 0x7c00;
inline constexpr std::uint16_t kNaN = 0xfc01;  // the canonical one
inline constexpr std::size_t kDown = 3;        // the mode toward minus infinity

struct Binary16 {
  explicit Binary16(std::uint16_t bits)
      : sign((bits & kSign) != 0),
        nan((bits & 0x7fffU) > kInfinity),
        inf((bits & 0x7fffU) == kInfinity),
        zero((bits & 0x7fffU) == 0) {
    const int field = bits >> 10U & 31U;
    significand = (bits & 0x3ffU) | (field != 0 ? 0x400U : 0U);
    exponent = (field != 0 ? field : 1) - 25;
  }

  bool sign, nan, inf, zero;
  std::uint64_t significand;
  int exponent;  // the value is significand * 2^exponent
};

inline Results all(std::uint16_t bits) {
  return {bits, bits, bits, bits, bits};
}

inline Results signed_all(bool sign, std::uint16_t bits) {
  return all(static_cast<std::uint16_t>(bits | (sign ? kSign : 0U)));
}

/// (significand + t) * 2^exponent with significand > 0 and 0 < t < 1 if `sticky`, else t = 0.
inline Results round(bool sign, std::uint64_t significand, int exponent, bool sticky) {
  constexpr int kSmallest = -14;
  constexpr int kLargest = 15;
  const int top = exponent + static_cast<int>(std::bit_width(significand)) - 1;
  const std::uint32_t s = sign ? kSign : 0U;
  if (top > kLargest) {
    const auto inf = static_cast<std::uint16_t>(s | kInfinity);
    const auto max = static_cast<std::uint16_t>(s | (kInfinity - 1U));
    return {inf, max, sign ? max : inf, sign ? inf : max, inf};
  }
  const bool subnormal = top < kSmallest;
  const int unit = (subnormal ? kSmallest : top) - 10;
  const int cut = unit - exponent;
  std::uint64_t kept = 0;
  bool guard = false;
  bool rest = sticky;
  if (cut <= 0) {
    kept = significand << static_cast<unsigned>(-cut);
  } else if (cut < 64) {
    kept = significand >> static_cast<unsigned>(cut);
    guard = (significand >> static_cast<unsigned>(cut - 1) & 1U) != 0;
    rest = rest || (significand & ((std::uint64_t{1} << static_cast<unsigned>(cut - 1)) - 1)) != 0;
  } else {
    rest = true;
  }
  const std::uint32_t field = subnormal ? 0U : static_cast<std::uint32_t>(top - kSmallest);
  const std::uint32_t body = s + (field << 10U) + static_cast<std::uint32_t>(kept);
  const bool inexact = guard || rest;
  const auto up = [body](bool away) { return static_cast<std::uint16_t>(body + (away ? 1U : 0U)); };
  return {up(guard && (rest || (kept & 1U) != 0)), up(false), up(inexact && !sign),
          up(inexact && sign), up(guard)};
}

inline Results add(std::uint16_t a, std::uint16_t b) {
  const Binary16 x(a);
  const Binary16 y(b);
  if (x.nan || y.nan || (x.inf && y.inf && x.sign != y.sign)) return all(kNaN);
  if (x.inf) return all(a);
  if (y.inf) return all(b);
  const auto on_grid = [](const Binary16& v) {
    const auto magnitude =
        static_cast<std::int64_t>(v.significand << static_cast<unsigned>(v.exponent + 24));
    return v.sign ? -magnitude : magnitude;
  };
  const std::int64_t sum = on_grid(x) + on_grid(y);
  if (sum == 0) {
    if (x.zero && y.zero && x.sign == y.sign) return all(a);
    Results zeros = all(0);
    zeros[kDown] = kSign;
    return zeros;
  }
  return round(sum < 0, static_cast<std::uint64_t>(sum < 0 ? -sum : sum), -24, false);
}

inline Results sub(std::uint16_t a, std::uint16_t b) {
  return add(a, static_cast<std::uint16_t>(b ^ kSign));
}

inline Results mul(std::uint16_t a, std::uint16_t b) {
  const Binary16 x(a);
  const Binary16 y(b);
  const bool sign = x.sign != y.sign;
  if (x.nan || y.nan || (x.inf && y.zero) || (x.zero && y.inf)) return all(kNaN);
  if (x.inf || y.inf) return signed_all(sign, kInfinity);
  if (x.zero || y.zero) return signed_all(sign, 0);
  return round(sign, x.significand * y.significand, x.exponent + y.exponent, false);
}

inline Results div(std::uint16_t a, std::uint16_t b) {
  constexpr unsigned kShift = 30;
  const Binary16 x(a);
  const Binary16 y(b);
  const bool sign = x.sign != y.sign;
  if (x.nan || y.nan || (x.inf && y.inf) || (x.zero && y.zero)) return all(kNaN);
  if (x.inf || y.zero) return signed_all(sign, kInfinity);
  if (y.inf || x.zero) return signed_all(sign, 0);
  const std::uint64_t scaled = x.significand << kShift;
  return round(sign, scaled / y.significand, x.exponent - y.exponent - static_cast<int>(kShift),
               scaled % y.significand != 0);
}

}  // namespace vorn::sweep

#endif
