// Where products of unknowns lie, and sums of these.
//
// The ranges of the factors bound a product. A linear inequality bounds each of its products by
// where the others lie, and its sum as a whole: of x z + y z <= c neither factor need be small, but
// without signs each product is at most c.
#ifndef VORN_REALS_BOUNDS_H
#define VORN_REALS_BOUNDS_H

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "vorn/ranges/propagation.h"
#include "vorn/reals/interval.h"
#include "vorn/reals/polynomial.h"
#include "vorn/terms/qnumber.h"

namespace vorn::reals {

/// The sum of the terms, without a constant, is at most the bound.
struct Row {
  Polynomial sum;
  QNumber bound;
};

/// Intervals that hold what products of unknowns are in every model, each worked out once.
class Bounds {
 public:
  /// Borrows the ranges. Unknowns are slots.
  explicit Bounds(const ranges::Propagation& propagation) : ranges(propagation) {}

  const Interval& get_interval(const Monomial& monomial);
  /// Where the polynomial and what is off it by at most `error` lie.
  Interval get_interval(const Polynomial& polynomial, const QNumber& error);
  const std::map<Monomial, Interval>& get_intervals() const { return intervals; }

  /// Whether nothing is left for some product.
  bool is_contradiction() const;

  /// Takes over what the ranges have lost since the intervals were worked out.
  void refresh();
  /// Bounds sums and products by rows that hold, and products again by what that gave, a few times.
  /// Whether anything has become smaller.
  bool tighten(const std::vector<Row>& rows);

  /// Factors of products that were looked at.
  std::uint64_t get_work() const { return work; }

 private:
  Interval find_interval(const Monomial& monomial);
  bool is_integer(const Monomial& monomial) const;
  bool bound_sum(const Row& row);
  bool bound_terms(const Row& row);
  bool narrow(const Monomial& monomial, const Interval& bounds);

  /// Ends that rows give; none where they give none.
  struct Ends {
    std::optional<QNumber> least;
    std::optional<QNumber> greatest;
  };

  const ranges::Propagation& ranges;
  std::map<Monomial, Interval> intervals;
  std::map<std::map<Monomial, QNumber>, Ends> sums;  // of several terms, the first of which is 1
  std::uint64_t work = 0;
};

}  // namespace vorn::reals

#endif
