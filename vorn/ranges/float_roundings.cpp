// Operations on one operand that grow with it: a result lies between those of the ends. Zeros and
// infinities stay as they are, and so do signs.
#include "vorn/ranges/float_transfer.h"
#include "vorn/ranges/rounding_bounds.h"
#include "vorn/terms/ieee_arithmetic.h"

namespace vorn::ranges {
namespace {

/// The results of x, of which zeros, infinities and NaN are their own.
template <class Round>
FloatRange apply(IEEEFloat::format to, RoundingModeSet modes, const FloatRange& x,
                 const Round& round) {
  FloatRange result = FloatRange::of_classes(to, x.get_classes() & (kZeros | kInfinities | kNaN));
  for (const FloatClassSet sign : {kNegative, kPositive}) {
    const FloatRange part = x.restrict_to(kNonzero & sign);
    if (part.is_empty()) continue;
    const IEEEFloat least = float_of_rank(x.get_format(), part.get_least());
    const IEEEFloat greatest = float_of_rank(x.get_format(), part.get_greatest());
    result = result.hull(FloatRange::between(
        to, find_least(modes, [&](Mode mode) { return round(mode, least); }),
        find_greatest(modes, [&](Mode mode) { return round(mode, greatest); })));
  }
  return result;
}

/// The numbers of x with the signs that `result` has, if NaN comes of NaN only.
FloatRange keep_signs(const FloatRange& result, const FloatRange& x) {
  FloatClassSet classes = result.get_classes() & kNaN;
  if (result.has(kPositive)) classes |= kPositive;
  if (result.has(kNegative)) classes |= kNegative;
  return x.restrict_to(classes);
}

}  // namespace

FloatRange sqrt(RoundingModeSet modes, const FloatRange& x) {
  const IEEEFloat::format fmt = x.get_format();
  constexpr FloatClassSet kInvalid = (kNegative & ~kZeros) | kNaN;
  const FloatRange roots = apply(fmt, modes, x.restrict_to(kPositive), ieee_sqrt);
  const FloatClassSet special =
      (x.get_classes() & kNegative & kZeros) | (x.has(kInvalid) ? kNaN : 0U);
  return roots.hull(FloatRange::of_classes(fmt, special));
}

void narrow_sqrt(RoundingModeSet modes, const FloatRange& result, FloatRange* x) {
  const IEEEFloat::format fmt = x->get_format();
  constexpr FloatClassSet kInvalid = (kNegative & ~kZeros) | kNaN;
  const FloatClassSet special = (result.get_classes() & kNegative & kZeros) |
                                (result.get_classes() & kInfinities & kPositive) |
                                (result.has(kNaN) ? kInvalid : 0U);
  const FloatRange kept = x->restrict_to(special);
  const FloatRange roots = result.restrict_to(kPositive);
  const FloatRange squares = x->restrict_to(kPositive & kFinite);
  if (roots.is_empty() || squares.is_empty()) {
    *x = kept;
    return;
  }
  const QNumber least = find_exact_least(fmt, modes, roots.get_least());
  const IEEEFloat from = float_of_rank(fmt, least.sign() < 0 ? QNumber(0) : least);
  const IEEEFloat to = float_of_rank(fmt, find_exact_greatest(fmt, modes, roots.get_greatest()));
  *x = kept.hull(squares.at_least(rank_of(ieee_mul(Mode::plus_inf, from, from)))
                     .at_most(rank_of(ieee_mul(Mode::minus_inf, to, to))));
}

FloatRange round_to_integral(RoundingModeSet modes, const FloatRange& x) {
  // No subnormal number is an integer.
  return apply(x.get_format(), modes, x, ieee_round_to_integral)
      .restrict_to(kAllClasses & ~kSubnormals);
}

void narrow_round_to_integral(RoundingModeSet modes, const FloatRange& result, FloatRange* x) {
  *x = keep_signs(result, *x);
  if (!result.has(kNumbers)) return;
  const IEEEFloat::format fmt = x->get_format();
  // The integer is less than one away, or half of one. Where the format ends below it, the greatest
  // float lies between operand and integer.
  const bool nearest = modes.is_within(RoundingModeSet::of(Mode::nearest_even, Mode::nearest_away));
  IEEEFloat distance(fmt, Mode::nearest_even);
  distance.self_round(nearest ? QNumber(mpz_class(1), mpz_class(2)) : QNumber(1));
  const FloatRange finite = FloatRange::of_classes(fmt, kFinite);
  const bool overflows_up = result.get_least() > finite.get_greatest();
  const bool overflows_down = result.get_greatest() < finite.get_least();
  const QNumber least = overflows_up ? finite.get_greatest() : result.get_least();
  const QNumber greatest = overflows_down ? finite.get_least() : result.get_greatest();
  const IEEEFloat from = ieee_sub(Mode::plus_inf, float_of_rank(fmt, least), distance);
  const IEEEFloat to = ieee_add(Mode::minus_inf, float_of_rank(fmt, greatest), distance);
  *x = x->at_least(lower_rank(from)).at_most(upper_rank(to));
}

FloatRange cast(IEEEFloat::format to, RoundingModeSet modes, const FloatRange& x) {
  return apply(to, modes, x,
               [&](Mode mode, const IEEEFloat& value) { return ieee_cast(to, mode, value); });
}

void narrow_cast(RoundingModeSet modes, const FloatRange& result, FloatRange* x) {
  *x = keep_signs(result, *x);
  if (!result.has(kNumbers)) return;
  const IEEEFloat::format from = x->get_format();
  const IEEEFloat::format to = result.get_format();
  const IEEEFloat least = float_of_rank(to, find_exact_least(to, modes, result.get_least()));
  const IEEEFloat greatest =
      float_of_rank(to, find_exact_greatest(to, modes, result.get_greatest()));
  *x = x->at_least(lower_rank(ieee_cast(from, Mode::plus_inf, least)))
           .at_most(upper_rank(ieee_cast(from, Mode::minus_inf, greatest)));
}

}  // namespace vorn::ranges
