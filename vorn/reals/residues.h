// Bit-vector terms as integers: polynomials modulo two to the power of their width.
//
// Sums and products of bit-vectors are those of integers but for a multiple of that power. Where
// the polynomial is seen to lie between two neighbouring multiples it is the value but for the
// lower one. So what wraps in between is known too: x + ~y + 1 is x - y where y is at most x.
#ifndef VORN_REALS_RESIDUES_H
#define VORN_REALS_RESIDUES_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "vorn/ranges/propagation.h"
#include "vorn/reals/bounds.h"
#include "vorn/reals/polynomial.h"

namespace vorn::reals {

/// The bit-vector terms of some formulas, in all their models, as far as conversions to floats are
/// made of them or of their operands.
class Residues {
 public:
  using Slot = ranges::Propagation::Slot;

  /// Borrows both.
  Residues(const ranges::Propagation& propagation, Bounds& intervals);

  /// Whether any bit-vector is converted.
  bool has_any() const { return is_used; }
  /// Whether the term is one of these.
  bool is_wanted(Slot slot) const { return wanted[slot]; }
  /// The value of a wanted term, counted without a sign, as a polynomial in slots; the slot itself
  /// where no other is known. Slots have to come in order, none of them with an empty range.
  Polynomial find_value(Slot slot);
  /// Coefficients that were computed.
  std::uint64_t get_work() const { return work; }

 private:
  void mark();
  const ranges::BitRange& get_bits(Slot slot) const;
  Slot argument(Slot slot, std::size_t i) const { return ranges.get_argument(slot, i); }
  Polynomial get_residue(Slot slot) const;
  Polynomial get_value(Slot slot) const;
  bool is_number(Slot slot) const;
  std::optional<Polynomial> combine(Slot slot, bool is_whole);
  std::optional<Polynomial> multiply(const Polynomial& x, const Polynomial& y);
  std::optional<Polynomial> shift_left(Slot a, Slot distance) const;
  std::optional<Polynomial> divide(Slot a, std::uint64_t count) const;
  std::optional<Polynomial> take_period(Polynomial p, std::uint64_t width);

  const ranges::Propagation& ranges;
  Bounds& bounds;
  bool is_used = false;
  std::vector<bool> wanted;                         // by slot
  std::vector<std::optional<Polynomial>> residues;  // by slot: equal to the value but for wrapping
  std::vector<std::optional<Polynomial>> values;    // by slot
  std::uint64_t work = 0;
};

}  // namespace vorn::reals

#endif
