// Comparisons and classes. Where a comparison is false, an operand may be NaN, and of the other
// nothing is known then.
#include "vorn/ranges/float_transfer.h"

namespace vorn::ranges {
namespace {

// Ranks where both zeros are one number, whose ranks are -1 and 0.

/// The rank of the least float that is the same number, and that of the greatest.
QNumber first_of(const QNumber& rank) {
  return rank.sign() == 0 ? QNumber(-1) : rank;
}
QNumber last_of(const QNumber& rank) {
  return rank == QNumber(-1) ? QNumber(0) : rank;
}

bool may_be_less(const FloatRange& x, const FloatRange& y) {
  return x.has(kNumbers) && y.has(kNumbers) && last_of(x.get_least()) < first_of(y.get_greatest());
}

bool may_be_less_equal(const FloatRange& x, const FloatRange& y) {
  return x.has(kNumbers) && y.has(kNumbers) && first_of(x.get_least()) <= last_of(y.get_greatest());
}

BoolRange make_truth(bool may_hold, bool may_fail) {
  BoolRange result = BoolRange::nothing();
  if (may_hold) result = result.include(true);
  return may_fail ? result.include(false) : result;
}

/// Numbers x and y with x < y leave their ranges unless there is such a pair; `strict` is false for
/// x <= y. NaN stays.
void order(bool strict, FloatRange* x, FloatRange* y) {
  const FloatRange smaller = *x;
  if (y->has(kNumbers)) {
    const QNumber& most = y->get_greatest();
    *x = x->at_most(strict ? first_of(most) - QNumber(1) : last_of(most));
  }
  if (smaller.has(kNumbers)) {
    const QNumber& least = smaller.get_least();
    *y = y->at_least(strict ? last_of(least) + 1 : first_of(least));
  }
}

/// What a comparison says of its operands that is true if x < y, or x <= y, as numbers.
void narrow_order(bool truth, bool strict, FloatRange* x, FloatRange* y) {
  if (truth) {
    *x = x->restrict_to(kNumbers);
    *y = y->restrict_to(kNumbers);
    order(strict, x, y);
    return;
  }
  FloatRange first = *x;
  FloatRange second = *y;
  order(!strict, &second, &first);
  // Beside NaN every value is possible.
  const bool is_ordered = !x->has(kNaN);
  if (!y->has(kNaN)) *x = first;
  if (is_ordered) *y = second;
}

/// Whether all values are one number.
bool is_number(const FloatRange& x) {
  return !x.is_empty() && !x.has(kNaN) && first_of(x.get_least()) == first_of(x.get_greatest());
}

/// The values of x that are not the one number of y.
FloatRange differ(const FloatRange& x, const FloatRange& y) {
  if (!is_number(y)) return x;
  if (y.is_within(kZeros)) return x.restrict_to(kAllClasses & ~kZeros);
  return x.exclude(y.get_value());
}

}  // namespace

BoolRange less(const FloatRange& x, const FloatRange& y) {
  return make_truth(may_be_less(x, y), x.has(kNaN) || y.has(kNaN) || may_be_less_equal(y, x));
}

void narrow_less(bool truth, FloatRange* x, FloatRange* y) {
  narrow_order(truth, true, x, y);
}

BoolRange less_equal(const FloatRange& x, const FloatRange& y) {
  return make_truth(may_be_less_equal(x, y), x.has(kNaN) || y.has(kNaN) || may_be_less(y, x));
}

void narrow_less_equal(bool truth, FloatRange* x, FloatRange* y) {
  narrow_order(truth, false, x, y);
}

BoolRange equal_numbers(const FloatRange& x, const FloatRange& y) {
  const bool may_hold = x.merge_zeros().intersect(y.merge_zeros()).has(kNumbers);
  const bool holds = is_number(x) && is_number(y) && may_hold;
  return make_truth(may_hold, !holds);
}

void narrow_equal_numbers(bool truth, FloatRange* x, FloatRange* y) {
  if (truth) {
    const FloatRange both = x->merge_zeros().intersect(y->merge_zeros()).restrict_to(kNumbers);
    *x = x->intersect(both);
    *y = y->intersect(both);
    return;
  }
  const FloatRange first = differ(*x, *y);
  *y = differ(*y, *x);
  *x = first;
}

BoolRange is_of(FloatClassSet classes, const FloatRange& x) {
  return make_truth(x.has(classes), !x.is_within(classes));
}

}  // namespace vorn::ranges
