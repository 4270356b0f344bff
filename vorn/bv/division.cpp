// Restoring division, and the signed operations on top of it.
//
// The remainder so far takes in one bit of the dividend, from the top; where it is not less than
// the divisor, the divisor is subtracted and the quotient bit is 1. A divisor of k significant bits
// leaves remainders of k bits, and a remainder can never have more bits than it had before, so rows
// are only as wide as either allows.
//
// By zero every subtraction succeeds and changes nothing: the quotient is all ones, and the
// remainder takes in the dividend. That it was cut to k bits is the one thing to mend.
#include <algorithm>
#include <cassert>

#include "vorn/bv/circuits.h"

namespace vorn::bv {

const Circuits::Division& Circuits::divide(BitsView a, BitsView b) {
  assert(a.size() == b.size());
  std::pair<Bits, Bits> operands(Bits(a.begin(), a.end()), Bits(b.begin(), b.end()));
  const auto found = divisions.find(operands);
  if (found != divisions.end()) return found->second;
  return divisions.emplace(std::move(operands), make_division(a, b)).first->second;
}

Circuits::Division Circuits::make_division(BitsView a, BitsView b) {
  const std::size_t width = a.size();
  const BitsView divisor = b.first(count_significant(b));
  Division result;
  result.quotient.resize(width);
  Bits& remainder = result.remainder;
  for (std::size_t i = width; i-- > 0;) {
    remainder.insert(remainder.begin(), a[i]);
    remainder.resize(count_significant(remainder));
    result.quotient[i] = restore(divisor, &remainder);
  }
  const Lit by_zero = !graph.make_or(divisor);
  remainder.resize(width, kFalse);
  for (std::size_t i = divisor.size(); i < width; ++i) {
    remainder[i] = graph.make_and(by_zero, a[i]);
  }
  return result;
}

/// One row: subtracts the divisor from the remainder if that leaves it non-negative, which is the
/// quotient bit returned, and cuts the remainder to the divisor's width.
Lit Circuits::restore(BitsView divisor, Bits* remainder) {
  const std::size_t kept = std::min(remainder->size(), divisor.size());
  const std::size_t width = std::max(remainder->size(), divisor.size());
  Bits difference(kept);
  Lit borrowed = kFalse;
  for (std::size_t i = 0; i < width; ++i) {
    const Lit r = i < remainder->size() ? (*remainder)[i] : kFalse;
    const Lit d = i < divisor.size() ? divisor[i] : kFalse;
    if (i < kept) difference[i] = graph.make_xor3(r, d, borrowed);
    borrowed = graph.make_maj(!r, d, borrowed);
  }
  remainder->resize(kept);
  *remainder = select(!borrowed, difference, *remainder);
  return !borrowed;
}

// Signed operations ---------------------------------------------------------------------------

const Circuits::Division& Circuits::divide_magnitudes(BitsView a, BitsView b) {
  return divide(negate_if(a.back(), a), negate_if(b.back(), b));
}

Bits Circuits::signed_quotient(BitsView a, BitsView b) {
  return negate_if(graph.make_xor(a.back(), b.back()), divide_magnitudes(a, b).quotient);
}

Bits Circuits::signed_remainder(BitsView a, BitsView b) {
  return negate_if(a.back(), divide_magnitudes(a, b).remainder);
}

Bits Circuits::signed_modulus(BitsView a, BitsView b) {
  // A remainder that is not zero and has the wrong sign is one b away.
  const Bits remainder = signed_remainder(a, b);
  const Lit signs_differ = graph.make_xor(a.back(), b.back());
  const Lit correct = graph.make_and(signs_differ, graph.make_or(remainder));
  Bits correction(b.size());
  for (std::size_t i = 0; i < b.size(); ++i)
    correction[i] = graph.make_and(correct, b[i]);
  return add(remainder, correction, kFalse);
}

}  // namespace vorn::bv
