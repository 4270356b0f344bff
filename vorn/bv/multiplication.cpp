// Shift-and-add multiplication. Of the two operands the one with fewer bits that can be set selects
// the rows; a row that is constant 0 is skipped. A row is added at the positions that it reaches,
// its carry runs into the constant zeros above the sum so far and becomes its new top bit, so that
// zero-extended factors of k and l bits cost about k * l full adders at any width. Where that does
// not decide between the operands, the order of an earlier product does, so that products of the
// same bits, at any width, share their gates.
//
// In a square the conjunctions of bits i and j come twice, which is once at twice the weight: half
// of the adders are enough.
#include <algorithm>
#include <cassert>
#include <utility>

#include "vorn/bv/circuits.h"

namespace vorn::bv {

Bits Circuits::multiply(BitsView a, BitsView b) {
  assert(a.size() == b.size());
  const std::size_t width = a.size();
  const auto zeros_of_a = std::count(a.begin(), a.end(), kFalse);
  const auto zeros_of_b = std::count(b.begin(), b.end(), kFalse);
  const bool is_swapped = zeros_of_a == zeros_of_b ? row_orders.contains({b.front(), a.front()})
                                                   : zeros_of_a > zeros_of_b;
  if (is_swapped) std::swap(a, b);
  row_orders.emplace(a.front(), b.front());
  if (std::equal(a.begin(), a.end(), b.begin())) return square(a);
  Bits product(width, kFalse);
  for (std::size_t row = 0; row < width; ++row) {
    if (b[row] == kFalse) continue;
    Bits addend(width - row);
    for (std::size_t i = 0; i < addend.size(); ++i)
      addend[i] = graph.make_and(a[i], b[row]);
    add_at(row, addend, &product);
  }
  return product;
}

/// Row i holds bit i at twice its position and, from one above, its conjunctions with higher bits.
Bits Circuits::square(BitsView a) {
  const std::size_t width = a.size();
  Bits product(width, kFalse);
  for (std::size_t row = 0; 2 * row < width; ++row) {
    if (a[row] == kFalse) continue;
    Bits addend(width - 2 * row, kFalse);
    addend[0] = a[row];
    for (std::size_t i = 2; i < addend.size(); ++i)
      addend[i] = graph.make_and(a[row], a[row + i - 1]);
    add_at(2 * row, addend, &product);
  }
  return product;
}

/// Adds to the bits from `position` on.
void Circuits::add_at(std::size_t position, BitsView addend, Bits* sum) {
  const Bits upper = add(BitsView(*sum).subspan(position), addend, kFalse);
  std::copy(upper.begin(), upper.end(), sum->begin() + static_cast<std::ptrdiff_t>(position));
}

}  // namespace vorn::bv
