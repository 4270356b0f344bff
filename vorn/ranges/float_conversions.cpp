// Conversions between floats, integers and bits. Those that round grow with their operand; patterns
// of one sign are ordered as floats are, or against them, and those above an infinity are NaN.
#include <array>
#include <optional>

#include "vorn/ranges/float_transfer.h"
#include "vorn/ranges/rounding_bounds.h"
#include "vorn/terms/bv_number.h"
#include "vorn/terms/ieee_arithmetic.h"

namespace vorn::ranges {
namespace {

QNumber least_integer(const BitRange& x, bool is_signed) {
  return is_signed ? x.get_signed_least() : x.get_least();
}

QNumber greatest_integer(const BitRange& x, bool is_signed) {
  return is_signed ? x.get_signed_greatest() : x.get_greatest();
}

BitRange make_integers(std::uint64_t width, const QNumber& least, const QNumber& greatest,
                       bool is_signed) {
  return is_signed ? BitRange::between_signed(width, least, greatest)
                   : BitRange::between(width, least, greatest);
}

/// The integer of a pattern.
QNumber read_integer(const QNumber& bits, std::uint64_t width, bool is_signed) {
  return is_signed ? BVNumber::to_signed(bits, width) : bits;
}

/// The float x rounded to an integer of that width. False if there is none.
bool round_to_integer(Mode mode, const IEEEFloat& x, std::uint64_t width, bool is_signed,
                      QNumber* integer) {
  // None is negative, since the static analyser misreads the destructor of an optional number.
  const QNumber bits = ieee_to_integer(mode, x, width, is_signed).value_or(QNumber(-1));
  if (bits.sign() < 0) return false;
  *integer = read_integer(bits, width, is_signed);
  return true;
}

/// The float x rounded to an integer; one beyond the integers of that width if it is beyond them.
QNumber bound_integer(Mode mode, const IEEEFloat& x, std::uint64_t width, bool is_signed) {
  QNumber integer = BVNumber::power_of_two(width);
  if (x.is_sign_set()) integer = integer.neg();
  round_to_integer(mode, x, width, is_signed, &integer);
  return integer;
}

/// What the integers of x are, in any of the modes; none if some have no bits. Since rounding keeps
/// the order, those of the ends tell.
std::optional<BitRange> convert(std::uint64_t width, RoundingModeSet modes, const FloatRange& x,
                                bool is_signed) {
  if (!x.is_within(kFinite)) return std::nullopt;
  const IEEEFloat first = float_of_rank(x.get_format(), x.get_least());
  const IEEEFloat last = float_of_rank(x.get_format(), x.get_greatest());
  BitRange result = BitRange::nothing(width);
  for (const Mode mode : kRoundingModes) {
    if (!modes.contains(mode)) continue;
    QNumber least;
    QNumber greatest;
    if (!round_to_integer(mode, first, width, is_signed, &least) ||
        !round_to_integer(mode, last, width, is_signed, &greatest)) {
      return std::nullopt;
    }
    result = result.hull(make_integers(width, least, greatest, is_signed));
  }
  return result;
}

/// The patterns of the numbers of x that have one sign.
BitRange numbers_to_bits(const FloatRange& x, bool negative) {
  const std::uint64_t width = x.get_format().width();
  const FloatRange part = (negative ? x.negate() : x).restrict_to(kPositive);
  const QNumber sign = negative ? BVNumber::power_of_two(width - 1) : QNumber(0);
  if (part.is_empty()) return BitRange::nothing(width);
  return BitRange::between(width, sign + part.get_least(), sign + part.get_greatest());
}

}  // namespace

FloatRange from_integer(IEEEFloat::format to, RoundingModeSet modes, const BitRange& x,
                        bool is_signed) {
  FloatRange result = FloatRange::nothing(to);
  for (const bool negative : {false, true}) {
    // Natural numbers need not be cut, but may.
    const BitRange part = x.with_sign(negative);
    if (part.is_empty()) continue;
    const QNumber least = least_integer(part, is_signed);
    const QNumber greatest = greatest_integer(part, is_signed);
    result = result.hull(FloatRange::between(
        to, find_least(modes, [&](Mode mode) { return ieee_from_integer(to, mode, least); }),
        find_greatest(modes, [&](Mode mode) { return ieee_from_integer(to, mode, greatest); })));
  }
  // Zero is +0, and no integer is subnormal.
  return result.restrict_to(kAllClasses & ~kSubnormals & ~zero_of(true));
}

void narrow_from_integer(RoundingModeSet modes, const FloatRange& result, BitRange* x,
                         bool is_signed) {
  const IEEEFloat::format fmt = result.get_format();
  const std::uint64_t width = x->get_width();
  if (!result.has(kNumbers)) {
    *x = BitRange::nothing(width);
    return;
  }
  const QNumber least = find_exact_least(fmt, modes, result.get_least());
  const QNumber greatest = find_exact_greatest(fmt, modes, result.get_greatest());
  *x = x->intersect(make_integers(
      width, bound_integer(Mode::plus_inf, float_of_rank(fmt, least), width, is_signed),
      bound_integer(Mode::minus_inf, float_of_rank(fmt, greatest), width, is_signed), is_signed));
}

BitRange to_integer(std::uint64_t width, RoundingModeSet modes, const FloatRange& x,
                    bool is_signed) {
  // Negative integers have the greater patterns.
  BitRange result = BitRange::nothing(width);
  for (const FloatClassSet sign : {kNegative | kNaN, kPositive}) {
    const FloatRange part = x.restrict_to(sign);
    if (part.is_empty()) continue;
    const std::optional<BitRange> range = convert(width, modes, part, is_signed);
    if (!range) return BitRange::everything(width);
    result = result.hull(*range);
  }
  return result;
}

void narrow_to_integer(RoundingModeSet modes, const BitRange& result, FloatRange* x,
                       bool is_signed) {
  // Any value may come of what has no integer.
  if (!convert(result.get_width(), modes, *x, is_signed)) return;
  const IEEEFloat::format fmt = x->get_format();
  const QNumber least = least_integer(result, is_signed) - QNumber(1);
  const QNumber greatest = greatest_integer(result, is_signed) + 1;
  *x = x->at_least(lower_rank(ieee_from_integer(fmt, Mode::plus_inf, least)))
           .at_most(upper_rank(ieee_from_integer(fmt, Mode::minus_inf, greatest)));
}

FloatRange from_bits(IEEEFloat::format to, const BitRange& x) {
  const QNumber infinity = infinity_rank(to);
  FloatRange result = FloatRange::nothing(to);
  for (const bool negative : {false, true}) {
    const BitRange part = x.with_sign(negative);
    if (part.is_empty()) continue;
    const QNumber sign = negative ? BVNumber::power_of_two(to.width() - 1) : QNumber(0);
    const BitRange numbers = part.intersect(BitRange::between(to.width(), sign, sign + infinity));
    if (part.get_greatest() > sign + infinity) {
      result = result.hull(FloatRange::of_classes(to, kNaN));
    }
    if (numbers.is_empty()) continue;
    const FloatRange positive =
        FloatRange::between(to, numbers.get_least() - sign, numbers.get_greatest() - sign);
    result = result.hull(negative ? positive.negate() : positive);
  }
  return result;
}

void narrow_from_bits(const FloatRange& result, BitRange* x) {
  const IEEEFloat::format fmt = result.get_format();
  const std::uint64_t width = fmt.width();
  BitRange kept = BitRange::nothing(width);
  for (const bool negative : {false, true}) {
    const BitRange part = x->with_sign(negative);
    if (part.is_empty()) continue;
    kept = kept.hull(part.intersect(numbers_to_bits(result, negative)));
    if (!result.has(kNaN)) continue;
    const QNumber sign = negative ? BVNumber::power_of_two(width - 1) : QNumber(0);
    const QNumber first = sign + infinity_rank(fmt) + 1;
    kept = kept.hull(part.intersect(BitRange::between(width, first, part.get_greatest())));
  }
  *x = kept;
}

BitRange to_bits(const FloatRange& x) {
  const IEEEFloat::format fmt = x.get_format();
  BitRange numbers = numbers_to_bits(x, false).hull(numbers_to_bits(x, true));
  if (!x.has(kNaN)) return numbers;
  return numbers.hull(BitRange::of_value(fmt.width(), IEEEFloat::quiet_nan_bits(fmt)));
}

void narrow_to_bits(const BitRange& result, FloatRange* x) {
  const IEEEFloat::format fmt = x->get_format();
  const FloatRange numbers = from_bits(fmt, result).restrict_to(kNumbers);
  const bool nan = result.contains(IEEEFloat::quiet_nan_bits(fmt));
  *x = x->intersect(numbers.hull(FloatRange::of_classes(fmt, nan ? kNaN : 0)));
}

}  // namespace vorn::ranges
