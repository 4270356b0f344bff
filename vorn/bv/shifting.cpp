// Barrel shifters: bit s of the distance moves everything by 2^s. The bits below ceil(log2 W) reach
// every distance less than W, and some beyond, which shift out what is left; any set bit above
// shifts out everything. The short moves come first, so that an operand with constant low or high
// bits keeps most of them constant for as long as possible.
#include <algorithm>
#include <bit>
#include <cassert>

#include "vorn/bv/circuits.h"

namespace vorn::bv {

Bits Circuits::shift_right(BitsView a, BitsView b, Lit fill) {
  assert(a.size() == b.size() && !a.empty());
  const std::size_t width = a.size();
  const auto stages = static_cast<std::size_t>(std::bit_width(width - 1));
  Bits result(a.begin(), a.end());
  for (std::size_t s = 0; s < stages; ++s) {
    const std::size_t distance = std::size_t{1} << s;
    for (std::size_t i = 0; i < width; ++i) {
      const Lit moved = i + distance < width ? result[i + distance] : fill;
      result[i] = graph.make_ite(b[s], moved, result[i]);
    }
  }
  const Lit all_out = graph.make_or(b.subspan(stages));
  for (Lit& bit : result)
    bit = graph.make_ite(all_out, fill, bit);
  return result;
}

Bits Circuits::shift_left(BitsView a, BitsView b) {
  Bits mirrored(a.rbegin(), a.rend());
  mirrored = shift_right(mirrored, b, kFalse);
  std::reverse(mirrored.begin(), mirrored.end());
  return mirrored;
}

}  // namespace vorn::bv
