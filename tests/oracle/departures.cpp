// The departures, stated on exact results. Those of rounding follow from two widths: E of the
// exponent and W of the significand that the rounding driver works on. A result of exponent k is
// handled as k in E bits and its distance 1 - bias - k from the smallest normal exponent in E bits;
// a result below the smallest normal keeps its bits of weight 2^(1 - bias - (W - 1)) and above.
#include "tests/oracle/departures.h"

#include <algorithm>
#include <optional>

#include "tests/oracle/ieee_oracle.h"
#include "tests/oracle/word.h"

namespace vorn::oracle::departures {
namespace {

using ieee::Exact;

long digits(unsigned n) {
  return static_cast<long>(bit_length(Word64{n}));
}

struct Widths {
  long exponent;
  long significand;
};

/// The driver widens the exponent to hold e and m, then pads the significand to that width.
Widths widths(Format f, long exponent, long significand) {
  const long e = std::max({exponent, digits(f.m) + 1, long{f.e} + 1});
  return {e, std::max(significand, e)};
}

/// v modulo 2^width, read as two's complement.
long as_signed(long v, long width) {
  const long bound = 1L << (width - 1);
  return ((v + bound) & (2 * bound - 1)) - bound;
}

bool fits_signed(long v, long width) {
  return as_signed(v, width) == v;
}

Bits magnitude(Format f, const Bits& x) {
  return low_bits(x, f.e + f.m);
}

/// |v| without its bits of weight below 2^unit, but never less than that weight: denormalisation
/// shifts by no more than leaves the leading one in the last place.
Exact cut(const Exact& v, long unit) {
  const long drop = std::max(0L, unit - v.exponent);
  const auto n = static_cast<std::size_t>(drop);
  const Bits kept = shift_right(v.significand, n);
  return {v.negative, kept == 0 ? Bits{1} : kept, v.exponent + drop, false};
}

Departures of_rounding(RoundingMode rm, Format f, const Exact& v, Widths w) {
  Departures result;
  const long leading = ieee::leading_exponent(v);
  const bool tiny = leading < f.min_exponent();
  // A distance that fits is right modulo 2^E even if the exponent has wrapped, and the exponent of
  // a tiny result is not read again.
  if (!fits_signed(f.min_exponent() - leading, w.exponent) ||
      (!tiny && !fits_signed(leading, w.exponent))) {
    result.wrapped_exponent = true;
    return result;
  }
  const Bits rounded = ieee::round(rm, f, v);
  const Bits smallest_normal = shift_left(Bits{1}, f.m);
  const bool rounds = w.significand > long{f.m} + 1;
  if (tiny) {
    const Exact kept = cut(v, f.min_exponent() - (w.significand - 1));
    result.rounds_up_to_normal = magnitude(f, rounded) == smallest_normal;
    if (rounds) {
      result.lost_sticky = ieee::round(rm, f, kept) != rounded;
    } else {
      result.narrow_significand = ieee::round(RoundingMode::rtz, f, kept) != rounded;
    }
  } else if (!rounds) {
    result.narrow_significand = leading > f.max_exponent() && !ieee::is_inf(f, rounded);
  } else {
    // Rounding may carry into the next binade, which the exponent must hold as well.
    const Format wide{static_cast<unsigned>(w.exponent) + 1, f.m};
    const auto carried = ieee::value(wide, ieee::round(rm, wide, v));
    result.wrapped_exponent = !fits_signed(ieee::leading_exponent(*carried), w.exponent);
  }
  return result;
}

Departures of_zero_sum(RoundingMode rm, Format f, const Bits& x, bool y_negative, const Bits& y) {
  Departures result;
  const bool negative = ieee::is_negative(f, x);
  result.zero_sum = ieee::is_zero(f, x) && ieee::is_zero(f, y) && negative == y_negative &&
                    negative != (rm == RoundingMode::rtn);
  return result;
}

Departures from_integer(RoundingMode rm, unsigned w, Format f, const std::optional<Exact>& v) {
  if (!v) return {};
  const long exponent_width = std::max(2L, 1 + digits(w - 1));
  return of_rounding(rm, f, *v, widths(f, exponent_width, w));
}

}  // namespace

// Exact sums lie on the grid of the smallest subnormal, so none is rounded where it is subnormal,
// and the alignment's sticky bit is right elsewhere.
Departures add(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  return of_zero_sum(rm, f, x, ieee::is_negative(f, y), y);
}

Departures sub(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  return of_zero_sum(rm, f, x, !ieee::is_negative(f, y), y);
}

Departures mul(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  const auto v = ieee::exact_product(f, x, y);
  if (!v) return {};
  return of_rounding(rm, f, *v, widths(f, long{f.e} + 2, 2 * (long{f.m} + 1)));
}

// A quotient reaches rounding as its bits down to 2^-(m + 4) of the ratio of the leading powers,
// followed by one sticky bit for the rest.
Departures div(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  const auto a = ieee::value(f, x);
  const auto b = ieee::value(f, y);
  if (!a || !b) return {};
  const Widths w = widths(f, long{f.e} + 2, long{f.m} + 6);
  const long ratio = ieee::leading_exponent(*a) - ieee::leading_exponent(*b);
  Exact q = *ieee::exact_quotient(f, x, y);
  const long unit = ratio - (long{f.m} + 4);
  const auto drop = static_cast<std::size_t>(unit - q.exponent);
  const bool rest = q.sticky || low_bits(q.significand, drop) != 0;
  const Bits kept = shift_right(q.significand, drop) * 2 + (rest ? 1 : 0);
  q = {q.negative, kept, unit - 1, false};
  if (w.exponent > long{f.e} + 2) {
    // The difference of the exponents wraps in e + 2 bits before rounding widens it.
    Exact read = q;
    read.exponent += as_signed(ratio, long{f.e} + 2) - ratio;
    Departures result;
    result.wrapped_exponent = ieee::round(rm, f, read) != ieee::round(rm, f, q);
    if (result.any()) return result;
    q = read;
  }
  return of_rounding(rm, f, q, w);
}

Departures cast(RoundingMode rm, Format from, Format to, const Bits& x) {
  const auto v = ieee::value(from, x);
  if (!v) return {};
  if (to.e < from.e || to.m < from.m) {
    return of_rounding(rm, to, *v, widths(to, from.e, long{from.m} + 1));
  }
  Departures result;
  result.widened_subnormal = ieee::is_subnormal(from, x) && to.e > from.e;
  return result;
}

Departures from_sbv(RoundingMode rm, unsigned w, Format f, const Bits& v) {
  return from_integer(rm, w, f, ieee::integer_value(true, w, v));
}

Departures from_ubv(RoundingMode rm, unsigned w, Format f, const Bits& v) {
  return from_integer(rm, w, f, ieee::integer_value(false, w, v));
}

Departures neg(Format f, const Bits& x) {
  Departures result;
  result.nan_payload = ieee::is_nan(f, x) && magnitude(f, x) != magnitude(f, ieee::nan(f));
  return result;
}

Departures same(Format f, const Bits& x, const Bits& y) {
  Departures result;
  result.nan_payload = ieee::is_nan(f, x) && ieee::is_nan(f, y) && x != y;
  return result;
}

}  // namespace vorn::oracle::departures
