// Selection, equality and order. Order is the borrow of a subtraction whose difference is never
// built: one majority a bit.
#include <cassert>

#include "vorn/bv/circuits.h"

namespace vorn::bv {

std::size_t count_significant(BitsView a) {
  std::size_t count = a.size();
  while (count > 0 && a[count - 1] == kFalse)
    --count;
  return count;
}

Bits Circuits::select(Lit c, BitsView t, BitsView e) {
  assert(t.size() == e.size());
  Bits result(t.size());
  for (std::size_t i = 0; i < t.size(); ++i)
    result[i] = graph.make_ite(c, t[i], e[i]);
  return result;
}

Lit Circuits::equal(BitsView a, BitsView b) {
  assert(a.size() == b.size());
  Bits same(a.size());
  for (std::size_t i = 0; i < a.size(); ++i)
    same[i] = graph.make_iff(a[i], b[i]);
  return graph.make_and(same);
}

Lit Circuits::borrow(BitsView a, BitsView b, Lit borrow_in) {
  assert(a.size() == b.size());
  for (std::size_t i = 0; i < a.size(); ++i)
    borrow_in = graph.make_maj(!a[i], b[i], borrow_in);
  return borrow_in;
}

Lit Circuits::signed_borrow(BitsView a, BitsView b, Lit borrow_in) {
  assert(a.size() == b.size() && !a.empty());
  const std::size_t top = a.size() - 1;
  // The top bit weighs -2^top, so the two top bits trade places.
  return graph.make_maj(!b[top], a[top], borrow(a.first(top), b.first(top), borrow_in));
}

}  // namespace vorn::bv
