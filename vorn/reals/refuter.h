// Refutations by forms. Where a form lies narrows the range of its term, the form of a difference
// decides a comparison, and comparisons that hold are linear inequalities in the products of
// unknowns: what they add up to can be beyond its bound. Where floats are made of integers, these
// inequalities bound products, so that more results are exact, and forms are made once more.
#ifndef VORN_REALS_REFUTER_H
#define VORN_REALS_REFUTER_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "vorn/ranges/propagation.h"
#include "vorn/reals/bounds.h"
#include "vorn/reals/forms.h"
#include "vorn/reals/multipliers.h"
#include "vorn/reals/polynomial.h"
#include "vorn/terms/ieee_float.h"

namespace vorn::reals {

/// What forms say of the formulas whose ranges these are. Products of unknowns count as unknowns.
class Refuter {
 public:
  /// Borrows the ranges, which are to be at the fixed point, and narrows them on the level that
  /// they are on. Spends about `most_effort`, in looks at a term.
  Refuter(ranges::Propagation& propagation, std::uint64_t most_effort);

  /// Whether the formulas have no model, seen by exact arithmetic.
  bool run();
  /// What that took.
  std::uint64_t get_effort() const;
  /// Whether more effort might have shown more.
  bool is_cut_short() const { return get_effort() >= most_effort; }
  const std::vector<Row>& get_rows() const { return rows; }

 private:
  using Slot = ranges::Propagation::Slot;
  using Mode = IEEEFloat::rounding_mode;

  bool narrow_by_forms();
  void add_rows();
  bool tighten();
  bool has_own_form(Slot slot) const;
  bool is_implied_by_form(Slot slot);
  bool narrow(Slot slot, const Interval& interval);
  void narrow(Slot slot);
  bool is_bits(Slot slot) const {
    return std::holds_alternative<ranges::BitRange>(ranges.get_range(slot));
  }
  void narrow_float(Slot slot, const Interval& interval, Mode low, Mode high);
  void narrow_rounded(Slot slot, const Interval& interval);
  bool is_comparable(Slot slot) const;
  void decide(Slot slot);
  void add_facts(Slot slot);
  void add_order(Slot low, Slot high, bool is_strict);
  void add_bounds(Slot slot);
  void add_row(Row row);
  bool is_worthwhile(const Row& row);
  bool exceeds(const Row& row);
  std::optional<LinearSystem> make_system(std::vector<double>* row_scales);
  bool adds_up();

  ranges::Propagation& ranges;
  std::uint64_t most_effort;
  std::uint64_t looks = 0;  // of the ranges themselves
  Bounds bounds;
  std::optional<Forms> forms;
  std::uint64_t form_work = 0;  // coefficients of forms that are replaced by others
  std::vector<Slot> bounded;    // terms whose ranges say more than those of their arguments
  std::vector<Row> rows;
  bool is_adding_integers = false;            // to the rows
  std::map<Monomial, std::size_t> monomials;  // of the rows, and their places
  std::uint64_t work = 0;                     // coefficients that were computed beyond forms
};

/// The judge of Splitting that asks a Refuter.
std::optional<bool> find_contradiction(ranges::Propagation& propagation, std::uint64_t most_effort,
                                       std::uint64_t* effort);

}  // namespace vorn::reals

#endif
