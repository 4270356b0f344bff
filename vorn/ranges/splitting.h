// Refutation by cases: where ranges as they are say nothing, their parts may.
//
// Intervals forget that two operands are made of one constant, which costs the less the smaller the
// interval is. So the range of a constant is halved, or a condition is taken to be true and then to
// be false, until each part is seen to have no model.
#ifndef VORN_RANGES_SPLITTING_H
#define VORN_RANGES_SPLITTING_H

#include <cstdint>
#include <optional>
#include <vector>

#include "vorn/ranges/propagation.h"

namespace vorn::ranges {

/// A search through parts that can be interrupted and gone on with.
class Splitting {
 public:
  /// Borrows the ranges, which are to be at the fixed point, and opens and closes levels of their
  /// own on it.
  explicit Splitting(Propagation& propagation) : ranges(propagation) {}
  Splitting(const Splitting&) = delete;
  Splitting& operator=(const Splitting&) = delete;

  /// Closes what levels are open: to be called before the ranges are used otherwise.
  void close();

  /// Goes on for that effort, in the unit of Propagation. True if the formulas have no model; the
  /// ranges are a contradiction on the level they were on then. Throws as they do.
  bool run(std::uint64_t effort);
  /// The effort that is still to be spent, if what is left goes as the last run went. A part counts
  /// by the number of times that the whole was halved to get it (Knuth, "Estimating the efficiency
  /// of backtrack programs", 1975). Infinite where that run has refuted nothing.
  double estimate() const;
  /// Whether there is nothing left to be split.
  bool is_over() const { return is_stuck; }

 private:
  using Slot = Propagation::Slot;

  /// A part that was taken, and the rest.
  struct Choice {
    Slot slot;
    Range rest;
    double share;  // of the whole, that the rest is
  };

  bool run(std::uint64_t effort, std::uint64_t* used);
  std::uint64_t mark_open();
  std::optional<Slot> find_condition() const;
  std::optional<Slot> find_constant() const;
  void take(Slot slot);

  Propagation& ranges;
  std::vector<Choice> choices;
  std::vector<bool> marks;  // of terms that are to have values which they may not get
  double done = 0;          // the share of the whole that is refuted
  double rate = 0;          // of the last run, by its effort
  double share = 1;         // that the part at hand is
  bool is_stuck = false;
};

}  // namespace vorn::ranges

#endif
