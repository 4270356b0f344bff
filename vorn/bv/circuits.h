// Circuits of the bit-vector operations.
//
// A bit-vector is its literals, least significant first. Circuits are written for symbolic bits;
// bits that are constant fold on the way, since the graph simplifies each node, and where folding
// node by node would not see that bits stay constant, the circuits keep track of how many there
// are: factors, dividends and divisors are often zero-extended or shifted. The signed and the
// partial operations follow the SMT-LIB theory FixedSizeBitVectors.
#ifndef VORN_BV_CIRCUITS_H
#define VORN_BV_CIRCUITS_H

#include <cstddef>
#include <map>
#include <set>
#include <span>
#include <utility>
#include <vector>

#include "vorn/bv/aig.h"
#include "vorn/utils/export.h"

namespace vorn::bv {

using Bits = std::vector<Lit>;
using BitsView = std::span<const Lit>;

/// Number of bits up to the topmost one that is not the constant 0.
VORN_EXPORT std::size_t count_significant(BitsView a);

/// Builds circuits in one graph. Operands of one operation have one width W unless stated, and so
/// does the result.
class VORN_EXPORT Circuits {
 public:
  struct Division {
    Bits quotient, remainder;
  };

  explicit Circuits(Aig& aig) : graph(aig) {}

  Aig& get_graph() { return graph; }

  // Selection and comparison ------------------------------------------------------------------

  /// t where c holds, e elsewhere.
  Bits select(Lit c, BitsView t, BitsView e);
  Lit equal(BitsView a, BitsView b);
  /// Unsigned a < b.
  Lit less(BitsView a, BitsView b) { return borrow(a, b, kFalse); }
  /// The borrow that leaves a - b - borrow_in, which is a < b or, with a borrow, a <= b.
  Lit borrow(BitsView a, BitsView b, Lit borrow_in);
  /// The same for two's complement.
  Lit signed_borrow(BitsView a, BitsView b, Lit borrow_in);

  // Addition ----------------------------------------------------------------------------------

  /// a + b + carry.
  Bits add(BitsView a, BitsView b, Lit carry);
  Bits subtract(BitsView a, BitsView b);
  /// -a where c holds, a elsewhere.
  Bits negate_if(Lit c, BitsView a);

  // Multiplication and division ---------------------------------------------------------------

  /// The product modulo 2^W.
  Bits multiply(BitsView a, BitsView b);
  /// Unsigned quotient (all ones by zero) and remainder (a by zero): one circuit for both, made
  /// once for each pair of operands. The reference stays valid.
  const Division& divide(BitsView a, BitsView b);
  /// Quotient rounded toward zero, remainder with the sign of a, modulus with the sign of b.
  Bits signed_quotient(BitsView a, BitsView b);
  Bits signed_remainder(BitsView a, BitsView b);
  Bits signed_modulus(BitsView a, BitsView b);

  // Shifts by b positions ---------------------------------------------------------------------

  Bits shift_left(BitsView a, BitsView b);
  /// Vacated bits, all of them if b is W or more, become `fill`.
  Bits shift_right(BitsView a, BitsView b, Lit fill);

 private:
  Bits square(BitsView a);
  void add_at(std::size_t position, BitsView addend, Bits* sum);
  Division make_division(BitsView a, BitsView b);
  Lit restore(BitsView divisor, Bits* remainder);
  const Division& divide_magnitudes(BitsView a, BitsView b);

  Aig& graph;
  std::map<std::pair<Bits, Bits>, Division> divisions;
  /// The lowest bits of operands multiplied so far: the first one's were added, by the second
  /// one's.
  std::set<std::pair<Lit, Lit>> row_orders;
};

}  // namespace vorn::bv

#endif
