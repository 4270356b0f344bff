// Sums grow with both operands: the least finite sum is that of the least operands. Infinite
// operands are apart, since the sum of two may be NaN.
#include "vorn/ranges/float_transfer.h"
#include "vorn/ranges/rounding_bounds.h"
#include "vorn/terms/ieee_arithmetic.h"

namespace vorn::ranges {
namespace {

/// The classes of the sums in which an operand is infinite or NaN.
FloatClassSet find_special_sums(const FloatRange& x, const FloatRange& y) {
  FloatClassSet classes = (x.get_classes() | y.get_classes()) & kNaN;
  for (const bool negative : {false, true}) {
    const FloatClassSet same = infinity_of(negative);
    const FloatClassSet opposite = infinity_of(!negative);
    if (x.has(same) && y.has(opposite)) classes |= kNaN;
    const FloatClassSet others = kNumbers & ~opposite;
    if ((x.has(same) && y.has(others)) || (x.has(others) && y.has(same))) classes |= same;
  }
  return classes;
}

/// Which zeros are no sum of two finite numbers. Zero is the sum of opposite numbers only, as -0 in
/// rounding down and else as +0, and that of zeros of one sign (clause 6.3).
FloatClassSet find_impossible_zeros(RoundingModeSet modes, const FloatRange& x,
                                    const FloatRange& y) {
  if (x.merge_zeros().intersect(y.negate().merge_zeros()).is_empty()) return kZeros;
  const auto both = x.get_classes() & y.get_classes();
  const RoundingModeSet down = RoundingModeSet::of(Mode::minus_inf);
  FloatClassSet impossible = 0;
  if (!modes.contains(Mode::minus_inf)) impossible |= zero_of(true) & ~both;
  if (modes.is_within(down)) impossible |= zero_of(false) & ~both;
  return impossible;
}

FloatRange add_finite(RoundingModeSet modes, const FloatRange& x, const FloatRange& y) {
  const IEEEFloat::format fmt = x.get_format();
  const auto sum_of = [&](const QNumber& a, const QNumber& b) {
    return [fmt, first = float_of_rank(fmt, a), second = float_of_rank(fmt, b)](Mode mode) {
      return ieee_add(mode, first, second);
    };
  };
  const QNumber least = find_least(modes, sum_of(x.get_least(), y.get_least()));
  const QNumber greatest = find_greatest(modes, sum_of(x.get_greatest(), y.get_greatest()));
  return FloatRange::between(fmt, least, greatest)
      .restrict_to(kAllClasses & ~find_impossible_zeros(modes, x, y));
}

/// The classes of an addend, infinities and NaN, that are seen to give some value of `result`
/// beside `y`; with kFinite if every finite addend does.
FloatClassSet find_kept_addends(const FloatRange& result, const FloatRange& y) {
  const bool nan = result.has(kNaN);
  if (nan && y.has(kNaN)) return kAllClasses;
  FloatClassSet kept = nan ? kNaN : 0;
  for (const bool negative : {false, true}) {
    const FloatClassSet same = infinity_of(negative);
    const FloatClassSet opposite = infinity_of(!negative);
    if (result.has(same) && y.has(kNumbers & ~opposite)) kept |= same;
    if (nan && y.has(opposite)) kept |= same;
    if (result.has(same) && y.has(same)) kept |= kFinite;
  }
  return kept;
}

/// The finite values of x that lie between `least` - y and `greatest` - y, floats of these ranks,
/// for a finite y.
FloatRange narrow_finite(const QNumber& least, const QNumber& greatest, const FloatRange& x,
                         const FloatRange& y) {
  const IEEEFloat::format fmt = x.get_format();
  const FloatRange other = y.restrict_to(kFinite);
  if (other.is_empty()) return FloatRange::nothing(fmt);
  // A float that is no less than an exact value is no less than that value rounded up.
  const IEEEFloat from =
      ieee_sub(Mode::plus_inf, float_of_rank(fmt, least), float_of_rank(fmt, other.get_greatest()));
  const IEEEFloat to = ieee_sub(Mode::minus_inf, float_of_rank(fmt, greatest),
                                float_of_rank(fmt, other.get_least()));
  return x.restrict_to(kFinite).at_least(lower_rank(from)).at_most(upper_rank(to));
}

FloatRange narrow_addend(RoundingModeSet modes, const FloatRange& result, const FloatRange& x,
                         const FloatRange& y) {
  const FloatClassSet classes = find_kept_addends(result, y);
  FloatRange kept = x.restrict_to(classes);
  if ((classes & kFinite) != 0 || !result.has(kNumbers)) return kept;
  const IEEEFloat::format fmt = x.get_format();
  const QNumber least = find_exact_least(fmt, modes, result.get_least());
  const QNumber greatest = find_exact_greatest(fmt, modes, result.get_greatest());
  return kept.hull(narrow_finite(least, greatest, x, y));
}

/// The finite numbers of one sign, or none of them: ranks of the least and the greatest magnitude.
struct Magnitudes {
  Magnitudes(const FloatRange& x, bool negative)
      : part((negative ? x.negate() : x).restrict_to(kFinite & kPositive)) {}

  bool is_empty() const { return part.is_empty(); }
  IEEEFloat get_least(bool negative) const { return make(part.get_least(), negative); }
  IEEEFloat get_greatest(bool negative) const { return make(part.get_greatest(), negative); }

 private:
  IEEEFloat make(const QNumber& magnitude, bool negative) const {
    return float_of_rank(part.get_format(), negative ? negate_rank(magnitude) : magnitude);
  }

  FloatRange part;
};

/// The results of finite factors of these signs and finite addends.
FloatRange fma_finite(RoundingModeSet modes, const Magnitudes& x, bool x_negative,
                      const Magnitudes& y, bool y_negative, const FloatRange& z) {
  const IEEEFloat::format fmt = z.get_format();
  const IEEEFloat small_x = x.get_least(x_negative);
  const IEEEFloat small_y = y.get_least(y_negative);
  const IEEEFloat large_x = x.get_greatest(x_negative);
  const IEEEFloat large_y = y.get_greatest(y_negative);
  const bool negative = x_negative != y_negative;
  const IEEEFloat least_z = float_of_rank(fmt, z.get_least());
  const IEEEFloat greatest_z = float_of_rank(fmt, z.get_greatest());
  const QNumber least = find_least(modes, [&](Mode mode) {
    return negative ? ieee_fma(mode, large_x, large_y, least_z)
                    : ieee_fma(mode, small_x, small_y, least_z);
  });
  const QNumber greatest = find_greatest(modes, [&](Mode mode) {
    return negative ? ieee_fma(mode, small_x, small_y, greatest_z)
                    : ieee_fma(mode, large_x, large_y, greatest_z);
  });
  return FloatRange::between(fmt, least, greatest);
}

/// The classes of the infinite products of factors of these signs, and NaN if it is one.
FloatClassSet find_special_products(const FloatRange& x, bool x_negative, const FloatRange& y,
                                    bool y_negative) {
  const auto factors = [](const FloatRange& range, bool negative, FloatClassSet classes) {
    return range.has(classes & (negative ? kNegative : kPositive));
  };
  const bool infinite_x = factors(x, x_negative, kInfinities);
  const bool infinite_y = factors(y, y_negative, kInfinities);
  constexpr FloatClassSet kNotZero = kNonzero | kInfinities;
  FloatClassSet classes = 0;
  if ((infinite_x && factors(y, y_negative, kNotZero)) ||
      (infinite_y && factors(x, x_negative, kNotZero))) {
    classes |= infinity_of(x_negative != y_negative);
  }
  if ((infinite_x && factors(y, y_negative, kZeros)) ||
      (infinite_y && factors(x, x_negative, kZeros))) {
    classes |= kNaN;
  }
  return classes;
}

}  // namespace

FloatRange add(RoundingModeSet modes, const FloatRange& x, const FloatRange& y) {
  FloatRange special = FloatRange::of_classes(x.get_format(), find_special_sums(x, y));
  const FloatRange finite_x = x.restrict_to(kFinite);
  const FloatRange finite_y = y.restrict_to(kFinite);
  if (finite_x.is_empty() || finite_y.is_empty()) return special;
  return special.hull(add_finite(modes, finite_x, finite_y));
}

void narrow_add(RoundingModeSet modes, const FloatRange& result, FloatRange* x, FloatRange* y) {
  *x = narrow_addend(modes, result, *x, *y);
  if (!x->is_empty()) *y = narrow_addend(modes, result, *y, *x);
}

FloatRange fma(RoundingModeSet modes, const FloatRange& x, const FloatRange& y,
               const FloatRange& z) {
  const IEEEFloat::format fmt = x.get_format();
  FloatRange result = FloatRange::of_classes(fmt, (x.get_classes() | y.get_classes()) & kNaN);
  const FloatRange finite_z = z.restrict_to(kFinite);
  for (const bool x_negative : {false, true}) {
    for (const bool y_negative : {false, true}) {
      const FloatRange special =
          FloatRange::of_classes(fmt, find_special_products(x, x_negative, y, y_negative));
      if (!special.is_empty()) {
        result = result.hull(FloatRange::of_classes(fmt, find_special_sums(special, z)));
      }
      const Magnitudes first(x, x_negative);
      const Magnitudes second(y, y_negative);
      if (first.is_empty() || second.is_empty()) continue;
      const FloatRange product = FloatRange::of_classes(fmt, zero_of(x_negative != y_negative));
      result = result.hull(FloatRange::of_classes(fmt, find_special_sums(product, z)));
      if (finite_z.is_empty()) continue;
      result = result.hull(fma_finite(modes, first, x_negative, second, y_negative, finite_z));
    }
  }
  return result;
}

void narrow_fma(RoundingModeSet modes, const FloatRange& result, FloatRange* x, FloatRange* y,
                FloatRange* z) {
  if (result.has(kNaN)) return;
  // An infinite operand makes the result infinite.
  for (FloatRange* operand : {x, y, z})
    *operand = operand->restrict_to(result.has(kInfinities) ? kNumbers : kFinite);
  // What follows is about finite operands.
  const bool is_finite = x->is_within(kFinite) && y->is_within(kFinite) && z->is_within(kFinite);
  if (!is_finite || x->is_empty() || y->is_empty() || z->is_empty()) return;
  const IEEEFloat::format fmt = x->get_format();
  const QNumber least = find_exact_least(fmt, modes, result.get_least());
  const QNumber greatest = find_exact_greatest(fmt, modes, result.get_greatest());
  // Between its products rounded down and up lies the exact one.
  const FloatRange product = mul(RoundingModeSet::of(Mode::plus_inf, Mode::minus_inf), *x, *y);
  if (!product.has(kInfinities)) *z = narrow_finite(least, greatest, *z, product);
  if (z->is_empty()) return;
  const IEEEFloat from =
      ieee_sub(Mode::minus_inf, float_of_rank(fmt, least), float_of_rank(fmt, z->get_greatest()));
  const IEEEFloat to =
      ieee_sub(Mode::plus_inf, float_of_rank(fmt, greatest), float_of_rank(fmt, z->get_least()));
  // An exact product between floats is rounded down to a float between them.
  narrow_mul(RoundingModeSet::of(Mode::minus_inf),
             FloatRange::between(fmt, lower_rank(from), upper_rank(to)), x, y);
}

}  // namespace vorn::ranges
