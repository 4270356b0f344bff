// Shift-and-add multiplication. Of the two operands the one with fewer bits that can be set selects
// the rows; a row that is constant 0 is skipped. A row is added at the positions that it reaches,
// its carry runs into the constant zeros above the sum so far and becomes its new top bit, so that
// zero-extended factors of k and l bits cost about k * l full adders at any width.
#include <algorithm>
#include <cassert>
#include <utility>

#include "vorn/bv/circuits.h"

namespace vorn::bv {

Bits Circuits::multiply(BitsView a, BitsView b) {
  assert(a.size() == b.size());
  const std::size_t width = a.size();
  if (std::count(a.begin(), a.end(), kFalse) > std::count(b.begin(), b.end(), kFalse)) {
    std::swap(a, b);
  }
  Bits product(width, kFalse);
  for (std::size_t row = 0; row < width; ++row) {
    if (b[row] == kFalse) continue;
    Bits addend(width - row);
    for (std::size_t i = 0; i < addend.size(); ++i)
      addend[i] = graph.make_and(a[i], b[row]);
    const Bits sum = add(BitsView(product).subspan(row), addend, kFalse);
    std::copy(sum.begin(), sum.end(), product.begin() + static_cast<std::ptrdiff_t>(row));
  }
  return product;
}

}  // namespace vorn::bv
