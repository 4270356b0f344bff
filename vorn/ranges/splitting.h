// Refutation by cases: where ranges as they are say nothing, their parts may.
//
// Intervals forget that two operands are made of one constant, which costs the less the smaller the
// interval is. So the range of a constant is halved, or a condition is taken to be true and then to
// be false, until each part is seen to have no model. What a product says of a factor depends on
// whether the other one is zero, so that is a case of its own.
#ifndef VORN_RANGES_SPLITTING_H
#define VORN_RANGES_SPLITTING_H

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "vorn/ranges/propagation.h"

namespace vorn::ranges {

/// A search through parts that can be interrupted and gone on with.
class Splitting {
 public:
  /// Sees what ranges do not: narrows these, on the level that they are on, and says whether there
  /// is a contradiction, or nothing where `most_effort` was not enough to tell. Adds what it took
  /// to the effort.
  using Judge = std::function<std::optional<bool>(
      Propagation& propagation, std::uint64_t most_effort, std::uint64_t* effort)>;

  /// Borrows the ranges, which are to be at the fixed point, and opens and closes levels of their
  /// own on it.
  explicit Splitting(Propagation& propagation, Judge second_opinion = nullptr)
      : ranges(propagation), judge(std::move(second_opinion)) {}
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
  /// How many parts the judge refuted.
  std::uint64_t get_convictions() const { return convicted; }

 private:
  using Slot = Propagation::Slot;

  /// A part that was taken, and the rest.
  struct Choice {
    Slot slot;
    Range rest;
    double share;  // of the whole, that the rest is
  };

  bool run(std::uint64_t effort, std::uint64_t* used);
  bool is_judged(std::uint64_t effort, std::uint64_t* used);
  std::uint64_t mark_open();
  std::optional<Slot> find_condition() const;
  std::optional<Slot> find_factor() const;
  std::optional<Slot> find_constant() const;
  void take(Slot slot, std::pair<Range, Range> parts);

  Propagation& ranges;
  Judge judge;
  std::uint64_t asked = 0;      // how often the judge was
  std::uint64_t convicted = 0;  // and with which success
  bool is_asked = true;         // in this run
  std::vector<Choice> choices;
  std::vector<bool> marks;  // of terms that are to have values which they may not get
  double done = 0;          // the share of the whole that is refuted
  double rate = 0;          // of the last run, by its effort
  double share = 1;         // that the part at hand is
  bool is_stuck = false;
};

}  // namespace vorn::ranges

#endif
