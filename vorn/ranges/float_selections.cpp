// Operations whose result is an operand, up to its sign: nothing is rounded, and ranges are moved
// as they are. Maxima are minima of negations.
#include "vorn/ranges/float_transfer.h"

namespace vorn::ranges {
namespace {

/// The numbers up to the greatest number of the other range, if it has any.
FloatRange cap(const FloatRange& x, const FloatRange& y) {
  return y.has(kNumbers) ? x.restrict_to(kNumbers).at_most(y.get_greatest())
                         : FloatRange::nothing(x.get_format());
}

/// The values of x that a minimum in `result` leaves possible beside y.
FloatRange narrow_minimum(const FloatRange& result, const FloatRange& x, const FloatRange& y) {
  if (!result.has(kNumbers)) return x.restrict_to(kNaN);
  // NaN gives way to a number of y, and no number is below the minimum. Zeros count as one, since
  // either may stand for both.
  const FloatRange wanted = result.merge_zeros();
  const FloatRange chosen = y.merge_zeros().intersect(wanted);
  const bool nan = chosen.has(kNumbers) || (result.has(kNaN) && y.has(kNaN));
  const FloatRange numbers = x.restrict_to(kNumbers).at_least(wanted.get_least());
  const FloatRange rest = x.restrict_to(nan ? kNaN : 0);
  // Where y is none of the results, x is the minimum.
  return rest.hull(chosen.has(kNumbers) ? numbers : numbers.intersect(wanted));
}

}  // namespace

FloatRange abs(const FloatRange& x) {
  return x.restrict_to(kPositive | kNaN).hull(x.restrict_to(kNegative).negate());
}

void narrow_abs(const FloatRange& result, FloatRange* x) {
  const FloatRange positive = result.restrict_to(kPositive | kNaN);
  *x = x->restrict_to(kPositive | kNaN)
           .intersect(positive)
           .hull(x->restrict_to(kNegative).intersect(positive.negate()));
}

FloatRange min(const FloatRange& x, const FloatRange& y) {
  FloatRange result = cap(x, y).hull(cap(y, x));
  for (const bool negative : {false, true}) {
    const bool is_open = x.has(zero_of(negative)) && y.has(zero_of(!negative));
    if (is_open) result = result.extend_by(kZeros);
  }
  if (x.has(kNaN)) result = result.hull(y);
  if (y.has(kNaN)) result = result.hull(x.restrict_to(kNumbers));
  return result;
}

void narrow_min(const FloatRange& result, FloatRange* x, FloatRange* y) {
  *x = narrow_minimum(result, *x, *y);
  *y = narrow_minimum(result, *y, *x);
}

FloatRange max(const FloatRange& x, const FloatRange& y) {
  return min(x.negate(), y.negate()).negate();
}

void narrow_max(const FloatRange& result, FloatRange* x, FloatRange* y) {
  *x = x->negate();
  *y = y->negate();
  narrow_min(result.negate(), x, y);
  *x = x->negate();
  *y = y->negate();
}

}  // namespace vorn::ranges
