// Intervals of real numbers, and where the values of terms lie.
#ifndef VORN_REALS_INTERVAL_H
#define VORN_REALS_INTERVAL_H

#include <cstdint>
#include <optional>

#include "vorn/ranges/propagation.h"
#include "vorn/terms/qnumber.h"

namespace vorn::reals {

/// The reals from `least` to `greatest`; none where `least` is above.
struct Interval {
  QNumber least;
  QNumber greatest;

  /// The largest magnitude.
  QNumber get_magnitude() const;
  /// The reals in both.
  Interval intersect(const Interval& other) const;
  bool operator==(const Interval&) const = default;
};

/// All products and all sums of numbers of the two.
Interval multiply(const Interval& a, const Interval& b);
Interval add(const Interval& a, const Interval& b);

/// The largest integer that is not above `x`, and the least that is not below.
QNumber floor(const QNumber& x);
QNumber ceiling(const QNumber& x);

/// 2^exponent.
QNumber power_of_two(std::int64_t exponent);

/// Where the numbers lie that a term has as values: a bit-vector counts without a sign, a float
/// must be finite.
Interval interval_of(const ranges::Propagation& propagation, ranges::Propagation::Slot slot);

/// The multiple of 2^width that is to be taken from each integer of the interval to get its
/// remainder; none where that is not the same for all.
std::optional<QNumber> find_period(const Interval& interval, std::uint64_t width);

}  // namespace vorn::reals

#endif
