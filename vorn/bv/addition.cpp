// Ripple-carry addition: in clauses, the shortest adder there is, and the one along whose carries
// the solver propagates best. The carry out of the top bit is not built.
#include <cassert>

#include "vorn/bv/circuits.h"

namespace vorn::bv {

Bits Circuits::add(BitsView a, BitsView b, Lit carry) {
  assert(a.size() == b.size());
  Bits sum(a.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    sum[i] = graph.make_xor3(a[i], b[i], carry);
    if (i + 1 < a.size()) carry = graph.make_maj(a[i], b[i], carry);
  }
  return sum;
}

Bits Circuits::subtract(BitsView a, BitsView b) {
  Bits inverted(b.begin(), b.end());
  for (Lit& bit : inverted)
    bit = !bit;
  return add(a, inverted, kTrue);
}

Bits Circuits::negate_if(Lit c, BitsView a) {
  Bits result(a.size());
  Lit below = kFalse;  // whether a bit below is set; negation flips the bits above the lowest one
  for (std::size_t i = 0; i < a.size(); ++i) {
    result[i] = graph.make_xor(a[i], graph.make_and(c, below));
    if (i + 1 < a.size()) below = graph.make_or(below, a[i]);
  }
  return result;
}

}  // namespace vorn::bv
