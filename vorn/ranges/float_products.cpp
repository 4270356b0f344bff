// Magnitudes of products grow with both magnitudes, those of quotients with the dividend's and
// against the divisor's, and signs multiply. So operands are cut into parts of one sign that are
// zero, finite or infinite; a table says what comes of two parts, and two finite parts are bounded
// by the results of their ends.
#include <array>

#include "vorn/ranges/float_transfer.h"
#include "vorn/ranges/rounding_bounds.h"
#include "vorn/terms/ieee_arithmetic.h"

namespace vorn::ranges {
namespace {

/// What a part of an operand is, and what comes of two parts: finite operands have a result that is
/// rounded.
enum Kind : std::uint8_t { zero, finite, infinite, invalid };

constexpr std::array kSigns = {false, true};
constexpr std::array kParts = {zero, finite, infinite};

/// The classes of a part, of which the sign is that of `negative`.
FloatClassSet classes_of(Kind kind, bool negative) {
  const FloatClassSet sign = negative ? kNegative : kPositive;
  switch (kind) {
    case zero:
      return kZeros & sign;
    case finite:
      return kNonzero & sign;
    case infinite:
      return kInfinities & sign;
    case invalid:
      break;
  }
  return kNaN;
}

using Outcomes = std::array<std::array<Kind, 3>, 3>;
using Operation = IEEEFloat (*)(Mode, const IEEEFloat&, const IEEEFloat&);

constexpr Outcomes kProducts = {
    {{zero, zero, invalid}, {zero, finite, infinite}, {invalid, infinite, infinite}}};
constexpr Outcomes kQuotients = {
    {{invalid, zero, zero}, {infinite, finite, zero}, {infinite, infinite, invalid}}};

/// Magnitudes between two ranks.
struct Magnitudes {
  QNumber least;
  QNumber greatest;
};

/// The magnitudes of the finite numbers of a range that have one sign and are not zero; the range
/// has some.
Magnitudes find_magnitudes(const FloatRange& x, bool negative) {
  const FloatRange part = x.restrict_to(classes_of(finite, negative));
  if (!negative) return {part.get_least(), part.get_greatest()};
  return {negate_rank(part.get_greatest()), negate_rank(part.get_least())};
}

/// The results of operands of these signs, of which `first` and `last` are those with the least
/// result in magnitude and those with the greatest.
FloatRange round_between(Operation operation, RoundingModeSet modes, IEEEFloat::format fmt,
                         bool x_negative, bool y_negative, const Magnitudes& x,
                         const Magnitudes& y) {
  const auto round = [&](const QNumber& a, const QNumber& b) {
    return [operation, first = float_of_rank(fmt, x_negative ? negate_rank(a) : a),
            second = float_of_rank(fmt, y_negative ? negate_rank(b) : b)](Mode mode) {
      return operation(mode, first, second);
    };
  };
  const auto small = round(x.least, y.least);
  const auto large = round(x.greatest, y.greatest);
  const bool negative = x_negative != y_negative;
  return FloatRange::between(fmt, find_least(modes, negative ? large : small),
                             find_greatest(modes, negative ? small : large));
}

/// The results of `operation`. The magnitude of a result grows with that of y, or against it.
FloatRange apply(Operation operation, const Outcomes& outcomes, bool grows_with_y,
                 RoundingModeSet modes, const FloatRange& x, const FloatRange& y) {
  const IEEEFloat::format fmt = x.get_format();
  FloatClassSet classes = (x.get_classes() | y.get_classes()) & kNaN;
  FloatRange rounded = FloatRange::nothing(fmt);
  for (const bool x_negative : kSigns) {
    for (const bool y_negative : kSigns) {
      for (const Kind first : kParts) {
        if (!x.has(classes_of(first, x_negative))) continue;
        for (const Kind second : kParts) {
          if (!y.has(classes_of(second, y_negative))) continue;
          const Kind outcome = outcomes[first][second];
          if (outcome != finite) {
            classes |= classes_of(outcome, x_negative != y_negative);
            continue;
          }
          Magnitudes other = find_magnitudes(y, y_negative);
          if (!grows_with_y) other.least.swap(other.greatest);
          rounded = rounded.hull(round_between(operation, modes, fmt, x_negative, y_negative,
                                               find_magnitudes(x, x_negative), other));
        }
      }
    }
  }
  return rounded.hull(FloatRange::of_classes(fmt, classes));
}

/// The magnitudes of an operand, floats of one format, by those of the exact result and of the
/// other operand: rounded up to the least, and down to the greatest.
using Inverse = Magnitudes (*)(IEEEFloat::format fmt, const Magnitudes& result,
                               const Magnitudes& other);

QNumber rank_of_result(Operation operation, Mode mode, IEEEFloat::format fmt, const QNumber& a,
                       const QNumber& b) {
  return rank_of(operation(mode, float_of_rank(fmt, a), float_of_rank(fmt, b)));
}

/// x where x * y = r: r / y.
Magnitudes find_factor(IEEEFloat::format fmt, const Magnitudes& r, const Magnitudes& y) {
  return {rank_of_result(ieee_div, Mode::plus_inf, fmt, r.least, y.greatest),
          rank_of_result(ieee_div, Mode::minus_inf, fmt, r.greatest, y.least)};
}

/// x where x / y = r: r * y.
Magnitudes find_dividend(IEEEFloat::format fmt, const Magnitudes& r, const Magnitudes& y) {
  return {rank_of_result(ieee_mul, Mode::plus_inf, fmt, r.least, y.least),
          rank_of_result(ieee_mul, Mode::minus_inf, fmt, r.greatest, y.greatest)};
}

/// y where x / y = r: x / r.
Magnitudes find_divisor(IEEEFloat::format fmt, const Magnitudes& r, const Magnitudes& x) {
  return {rank_of_result(ieee_div, Mode::plus_inf, fmt, x.least, r.greatest),
          rank_of_result(ieee_div, Mode::minus_inf, fmt, x.greatest, r.least)};
}

/// The finite values of x, of one sign and not zero, that give a result of the sign `negative` with
/// finite values of y of one sign.
FloatRange narrow_finite(Inverse inverse, RoundingModeSet modes, const FloatRange& result,
                         bool negative, const FloatRange& x, bool x_negative, const FloatRange& y,
                         bool y_negative) {
  const IEEEFloat::format fmt = x.get_format();
  const FloatRange positive = (negative ? result.negate() : result).restrict_to(kPositive);
  if (positive.is_empty()) return FloatRange::nothing(fmt);
  const RoundingModeSet towards = negative ? mirror(modes) : modes;
  const QNumber least = find_exact_least(fmt, towards, positive.get_least());
  const Magnitudes exact = {least.sign() < 0 ? QNumber(0) : least,
                            find_exact_greatest(fmt, towards, positive.get_greatest())};
  const Magnitudes bounds = inverse(fmt, exact, find_magnitudes(y, y_negative));
  const FloatRange part = x.restrict_to(classes_of(finite, x_negative));
  if (!x_negative) return part.at_least(bounds.least).at_most(bounds.greatest);
  return part.at_least(negate_rank(bounds.greatest)).at_most(negate_rank(bounds.least));
}

/// The values of an operand that give a value of `result` with some value of the other. `outcomes`
/// is asked for the operand first.
FloatRange narrow(Inverse inverse, const Outcomes& outcomes, RoundingModeSet modes,
                  const FloatRange& result, const FloatRange& x, const FloatRange& y) {
  const IEEEFloat::format fmt = x.get_format();
  if (result.has(kNaN) && y.has(kNaN)) return x;
  FloatClassSet kept = result.get_classes() & kNaN;
  FloatRange rounded = FloatRange::nothing(fmt);
  for (const bool x_negative : kSigns) {
    for (const Kind first : kParts) {
      const FloatClassSet part = classes_of(first, x_negative);
      if (!x.has(part)) continue;
      for (const bool y_negative : kSigns) {
        for (const Kind second : kParts) {
          if ((kept & part) != 0 || !y.has(classes_of(second, y_negative))) continue;
          const Kind outcome = outcomes[first][second];
          const bool negative = x_negative != y_negative;
          if (outcome == finite) {
            rounded = rounded.hull(
                narrow_finite(inverse, modes, result, negative, x, x_negative, y, y_negative));
          } else if (result.has(classes_of(outcome, negative))) {
            kept |= part;
          }
        }
      }
    }
  }
  return rounded.hull(x.restrict_to(kept));
}

constexpr Outcomes transpose(const Outcomes& outcomes) {
  Outcomes result = {};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j)
      result[i][j] = outcomes[j][i];
  }
  return result;
}

/// The greatest magnitude of the finite numbers of a range, which has some, and the least.
QNumber greatest_magnitude(const FloatRange& x) {
  const QNumber below = negate_rank(x.get_least());
  return below < x.get_greatest() ? x.get_greatest() : below;
}

QNumber least_magnitude(const FloatRange& x) {
  if (x.has(kNegative) && x.has(kPositive)) return QNumber(0);
  return x.has(kNegative) ? negate_rank(x.get_greatest()) : x.get_least();
}

}  // namespace

FloatRange mul(RoundingModeSet modes, const FloatRange& x, const FloatRange& y) {
  return apply(ieee_mul, kProducts, true, modes, x, y);
}

void narrow_mul(RoundingModeSet modes, const FloatRange& result, FloatRange* x, FloatRange* y) {
  *x = narrow(find_factor, kProducts, modes, result, *x, *y);
  *y = narrow(find_factor, kProducts, modes, result, *y, *x);
}

FloatRange div(RoundingModeSet modes, const FloatRange& x, const FloatRange& y) {
  return apply(ieee_div, kQuotients, false, modes, x, y);
}

void narrow_div(RoundingModeSet modes, const FloatRange& result, FloatRange* x, FloatRange* y) {
  static constexpr Outcomes kByDivisor = transpose(kQuotients);
  *x = narrow(find_dividend, kQuotients, modes, result, *x, *y);
  *y = narrow(find_divisor, kByDivisor, modes, result, *y, *x);
}

FloatRange rem(const FloatRange& x, const FloatRange& y) {
  const IEEEFloat::format fmt = x.get_format();
  if (x.is_value() && y.is_value()) {
    return FloatRange::of_value(ieee_rem(x.get_value(), y.get_value()));
  }
  const bool nan = x.has(kNaN | kInfinities) || y.has(kNaN | kZeros);
  FloatRange result = FloatRange::of_classes(fmt, nan ? kNaN : 0);
  const FloatRange dividend = x.restrict_to(kFinite);
  const FloatRange divisor = y.restrict_to(kNonzero);
  if (dividend.is_empty()) return result;
  if (y.has(kInfinities)) result = result.hull(dividend);
  if (divisor.is_empty()) return result;

  IEEEFloat two(fmt, Mode::nearest_even);
  two.self_round(QNumber(2));
  const QNumber most = greatest_magnitude(dividend);
  // Up to half the divisor the dividend itself is what is left: of the integers 0 and 1 that are
  // equally near in the middle, 0 is even.
  const QNumber twice = rank_of(ieee_mul(Mode::plus_inf, float_of_rank(fmt, most), two));
  if (twice <= least_magnitude(divisor)) return result.hull(dividend);
  const IEEEFloat half =
      ieee_div(Mode::minus_inf, float_of_rank(fmt, greatest_magnitude(divisor)), two);
  const QNumber bound = rank_of(half) < most ? rank_of(half) : most;
  // A zero has the sign of the dividend.
  FloatClassSet zeros = 0;
  for (const bool negative : kSigns)
    zeros |= dividend.has(negative ? kNegative : kPositive) ? zero_of(negative) : 0U;
  return result.hull(
      FloatRange::between(fmt, negate_rank(bound), bound).restrict_to(kNonzero | zeros));
}

void narrow_rem(const FloatRange& result, FloatRange* x, FloatRange* y) {
  if (result.has(kNaN)) return;
  *x = x->restrict_to(kFinite);
  *y = y->restrict_to(kNonzero | kInfinities);
  // The remainder of zero is that zero.
  *x = x->restrict_to(kNonzero | (result.get_classes() & kZeros));
}

}  // namespace vorn::ranges
