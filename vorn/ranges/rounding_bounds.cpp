#include "vorn/ranges/rounding_bounds.h"

namespace vorn::ranges {

RoundingModeSet mirror(RoundingModeSet modes) {
  RoundingModeSet result = modes.without(RoundingModeSet::of(Mode::plus_inf, Mode::minus_inf));
  if (modes.contains(Mode::plus_inf)) result = result.include(Mode::minus_inf);
  if (modes.contains(Mode::minus_inf)) result = result.include(Mode::plus_inf);
  return result;
}

QNumber find_exact_least(IEEEFloat::format fmt, RoundingModeSet modes, const QNumber& rank) {
  // What is rounded down is no less than its result.
  const bool rounds_down =
      rank.sign() < 0 ? modes.is_within(RoundingModeSet::of(Mode::minus_inf))
                      : modes.is_within(RoundingModeSet::of(Mode::minus_inf, Mode::toward_zero));
  // Else it is above the next float below, since every mode keeps that as it is.
  return rounds_down || rank == negate_rank(infinity_rank(fmt)) ? rank : rank - 1;
}

QNumber find_exact_greatest(IEEEFloat::format fmt, RoundingModeSet modes, const QNumber& rank) {
  return negate_rank(find_exact_least(fmt, mirror(modes), negate_rank(rank)));
}

QNumber lower_rank(const IEEEFloat& x) {
  return x.is_zero() ? QNumber(-1) : rank_of(x);
}

QNumber upper_rank(const IEEEFloat& x) {
  return x.is_zero() ? QNumber(0) : rank_of(x);
}

}  // namespace vorn::ranges
