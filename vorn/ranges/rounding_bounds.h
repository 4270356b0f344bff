// How rounding and order go together: rounding in one mode keeps the order of exact values, so that
// results lie between those of the ends, and exact values between neighbours of the ends of
// results.
#ifndef VORN_RANGES_ROUNDING_BOUNDS_H
#define VORN_RANGES_ROUNDING_BOUNDS_H

#include "vorn/ranges/finite_sets.h"
#include "vorn/ranges/float_range.h"
#include "vorn/terms/ieee_float.h"
#include "vorn/terms/qnumber.h"

namespace vorn::ranges {

using Mode = IEEEFloat::rounding_mode;

/// The rank of the least float that `round` gives in one of the modes, of which there is one. It
/// rounds one exact value, so that no mode gives less than rounding down.
template <class Round>
QNumber find_least(RoundingModeSet modes, const Round& round) {
  if (modes.contains(Mode::minus_inf)) return rank_of(round(Mode::minus_inf));
  QNumber least = rank_of(round(modes.get_value()));
  for (const Mode mode : kRoundingModes) {
    if (!modes.contains(mode) || mode == modes.get_value()) continue;
    const QNumber rank = rank_of(round(mode));
    if (rank < least) least = rank;
  }
  return least;
}

/// The same of the greatest.
template <class Round>
QNumber find_greatest(RoundingModeSet modes, const Round& round) {
  if (modes.contains(Mode::plus_inf)) return rank_of(round(Mode::plus_inf));
  QNumber greatest = rank_of(round(modes.get_value()));
  for (const Mode mode : kRoundingModes) {
    if (!modes.contains(mode) || mode == modes.get_value()) continue;
    const QNumber rank = rank_of(round(mode));
    if (greatest < rank) greatest = rank;
  }
  return greatest;
}

/// The modes in which negations of exact values round to negations of what they round to in these.
RoundingModeSet mirror(RoundingModeSet modes);

/// The rank of a float that no exact value lies below that rounds to `rank` or above in one of the
/// modes.
QNumber find_exact_least(IEEEFloat::format fmt, RoundingModeSet modes, const QNumber& rank);
/// The rank of a float that no exact value lies above that rounds to `rank` or below in one of the
/// modes.
QNumber find_exact_greatest(IEEEFloat::format fmt, RoundingModeSet modes, const QNumber& rank);

/// The rank of -0 for zeros, else the rank of `x`: what is no less than x as a number has no less a
/// rank. And the rank of +0, for what is no greater.
QNumber lower_rank(const IEEEFloat& x);
QNumber upper_rank(const IEEEFloat& x);

}  // namespace vorn::ranges

#endif
