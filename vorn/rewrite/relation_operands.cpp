// Lemmas on a result and its operands.
#include <utility>

#include "vorn/rewrite/fp_patterns.h"
#include "vorn/rewrite/relation_kinds.h"
#include "vorn/rewrite/relations.h"

namespace vorn::rewrite {

using T = SymbolTag;

/// x + y is above x only where y is above 0; likewise x - y.
void sum_beside_operand(Relations& relations, const Term* t) {
  const Maker make(relations);
  const Term* zero = make.zero_of(t);
  const Term* x = t->get_arg(1);
  const Term* y = t->get_arg(2);
  if (has_tag(t, T::fp_sub)) {
    if (relations.is_compared(t, x)) {
      relations.state(make.both(make.implies(make.lt(x, t), make.lt(y, zero)),
                                make.implies(make.lt(t, x), make.lt(zero, y))));
    }
    return;
  }
  for (const auto& [operand, other] : {std::pair(x, y), std::pair(y, x)}) {
    if (!relations.is_compared(t, operand)) continue;
    relations.state(make.both(make.implies(make.lt(operand, t), make.lt(zero, other)),
                              make.implies(make.lt(t, operand), make.lt(other, zero))));
  }
}

/// x * y is above x > 0 only where y is above 1, and above x < 0 only where y is below.
void product_beside_operand(Relations& relations, const Term* t) {
  const Maker make(relations);
  const Term* one = make.one_of(t);
  const Term* x = t->get_arg(1);
  const Term* y = t->get_arg(2);
  for (const auto& [operand, other] : {std::pair(x, y), std::pair(y, x)}) {
    if (!relations.is_compared(t, operand)) continue;
    const Term* rises = make.lt(operand, t);
    const Term* falls = make.lt(t, operand);
    const Term* is_more = make.lt(one, other);
    const Term* is_less = make.lt(other, one);
    relations.state(
        make.by_sign(operand, make.both(make.implies(rises, is_more), make.implies(falls, is_less)),
                     make.both(make.implies(rises, is_less), make.implies(falls, is_more))));
  }
}

/// x / y is farther from 0 than x, on the same side, only where y is below 1, and falls towards 0
/// or beyond only where y is above 1, or not above 0.
void quotient_beside_operand(Relations& relations, const Term* t) {
  const Maker make(relations);
  const Term* x = t->get_arg(1);
  const Term* y = t->get_arg(2);
  if (!relations.is_compared(t, x)) return;
  const Term* one = make.one_of(t);
  const Term* rises = make.lt(x, t);
  const Term* falls = make.lt(t, x);
  const Term* is_less = make.lt(y, one);
  const Term* is_other = make.either(make.lt(one, y), make.le(y, make.zero_of(y)));
  relations.state(
      make.by_sign(x, make.both(make.implies(rises, is_less), make.implies(falls, is_other)),
                   make.both(make.implies(rises, is_other), make.implies(falls, is_less))));
}

/// A remainder is x itself, or at most half as large as y, which is at most twice as large as x
/// then.
void remainder_bounds(Relations& relations, const Term* t) {
  const Maker make(relations);
  const Term* size = make.mgr.make_fp_abs(t);
  const Term* in_bounds = make.both(make.le(size, make.mgr.make_fp_abs(t->get_arg(0))),
                                    make.le(size, make.mgr.make_fp_abs(t->get_arg(1))));
  relations.state(make.either(make.mgr.make_fp_isnan(t), in_bounds));
}

/// A root lies between its operand and 1.
void root_beside_one(Relations& relations, const Term* t) {
  if (!relations.is_compared(t)) return;
  const Maker make(relations);
  const Term* one = make.one_of(t);
  const Term* x = t->get_arg(1);
  relations.state(
      make.both(make.implies(make.lt(one, t), make.both(make.lt(one, x), make.le(t, x))),
                make.implies(make.lt(t, one), make.both(make.lt(x, one), make.le(x, t)))));
}

/// A difference x - y that is smaller than both is exact (Sterbenz, "Floating-Point Computation",
/// 1974, theorem 4.3.1: where y / 2 <= x <= 2y), also if it is the rounded one that is smaller, for
/// operands are values. So adding y gives x, and taking it from x gives y.
void exact_difference(Relations& relations, const Term* t) {
  const Maker make(relations);
  const auto state = [&](const Term* difference, const Term* back) {
    const Term* size = make.mgr.make_fp_abs(difference);
    const Term* x = difference->get_arg(1);
    const Term* y = difference->get_arg(2);
    const Term* is_exact =
        make.both(make.lt(size, make.mgr.make_fp_abs(x)), make.lt(size, make.mgr.make_fp_abs(y)));
    relations.state(make.implies(is_exact, make.mgr.make_fp_equal(t, back)));
  };
  const Term* a = t->get_arg(1);
  const Term* b = t->get_arg(2);
  if (has_tag(t, T::fp_sub)) {
    if (has_tag(b, T::fp_sub) && b->get_arg(1) == a) state(b, b->get_arg(2));
    return;
  }
  if (has_tag(a, T::fp_sub) && a->get_arg(2) == b) state(a, a->get_arg(1));
  if (has_tag(b, T::fp_sub) && b->get_arg(2) == a) state(b, b->get_arg(1));
}

/// y - x is -(x - y) where rounding is the same for both signs.
void reversed_difference(Relations& relations, const Term* t) {
  const Maker make(relations);
  const auto mode = mode_literal(make.mgr, t->get_arg(0));
  if (!mode || *mode == Mode::plus_inf || *mode == Mode::minus_inf) return;
  for (const Term* other : relations.get_uses(t->get_arg(1))) {
    const bool is_reversed = has_tag(other, T::fp_sub) && other->get_arg(0) == t->get_arg(0) &&
                             other->get_arg(1) == t->get_arg(2) &&
                             other->get_arg(2) == t->get_arg(1);
    if (!is_reversed) continue;
    const bool is_later = other->get_id() < t->get_id();  // each pair is met from both sides
    const Term* first = is_later ? other : t;
    const Term* second = is_later ? t : other;
    relations.state(make.either(make.mgr.make_fp_isnan(first),
                                make.mgr.make_fp_equal(first, make.mgr.make_fp_neg(second))));
  }
}

}  // namespace vorn::rewrite
