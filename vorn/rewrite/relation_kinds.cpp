// Kinds of lemmas: what holds of each, and why.
//
// Most of them say one thing: rounding is monotone and leaves values of the format alone, so where
// a rounded result lies on one side of a value, the exact result lies on the same side of it or is
// equal. Infinities are results of exact operations or of rounding like others, and what would be
// NaN is on no side of anything.
#include <utility>

#include "vorn/rewrite/fp_patterns.h"
#include "vorn/rewrite/relation_kinds.h"
#include "vorn/rewrite/relations.h"

namespace vorn::rewrite {
namespace {

using T = SymbolTag;

// Rounding to integers --------------------------------------------------------------------------

/// What roundings of one operand to integers there are, and its distances from its neighbours.
struct Integrals {
  const Term* floor = nullptr;
  const Term* ceiling = nullptr;
  const Term* to_zero = nullptr;
  const Term* to_even = nullptr;
  const Term* to_away = nullptr;
  const Term* down = nullptr;  // x - floor(x), rounded in some mode
  const Term* up = nullptr;    // ceiling(x) - x
};

bool is_integral(const TermManager& mgr, const Term* t, Mode mode, const Term* x) {
  return has_tag(t, T::fp_round_to_integral) && t->get_arg(1) == x &&
         mode_literal(mgr, t->get_arg(0)) == mode;
}

void add_integral(const TermManager& mgr, const Term* t, const Term* x, Integrals* found) {
  if (has_tag(t, T::fp_sub)) {
    const Term* from = t->get_arg(1);
    const Term* taken = t->get_arg(2);
    if (from == x && is_integral(mgr, taken, Mode::minus_inf, x)) found->down = t;
    if (taken == x && is_integral(mgr, from, Mode::plus_inf, x)) found->up = t;
  }
  if (is_integral(mgr, t, Mode::minus_inf, x)) found->floor = t;
  if (is_integral(mgr, t, Mode::plus_inf, x)) found->ceiling = t;
  if (is_integral(mgr, t, Mode::toward_zero, x)) found->to_zero = t;
  if (is_integral(mgr, t, Mode::nearest_even, x)) found->to_even = t;
  if (is_integral(mgr, t, Mode::nearest_away, x)) found->to_away = t;
}

Integrals find_integrals(Relations& relations, const Term* t, const Term* x) {
  Integrals found;
  for (const Term* use : relations.get_uses(x))
    add_integral(relations.get_manager(), use, x, &found);
  add_integral(relations.get_manager(), t, x, &found);
  return found;
}

/// floor(x) <= x <= ceiling(x), and every rounding to an integer is one of them: toward zero the
/// one that the sign says.
void integral_order(Relations& relations, const Term* t) {
  const Maker make(relations);
  const Term* x = t->get_arg(1);
  if (!has_integers(format_of(x))) return;
  const Integrals of = find_integrals(relations, t, x);
  if (of.floor == nullptr || of.ceiling == nullptr) return;
  const Term* between = make.both(make.le(of.floor, x), make.le(x, of.ceiling));
  relations.state(make.either(make.mgr.make_fp_isnan(x), between));
  if (of.to_zero != nullptr) {
    const Term* by_sign =
        make.mgr.make_term_ite(make.mgr.make_fp_isnegative(x), of.ceiling, of.floor);
    relations.state(make.equal(of.to_zero, by_sign));
  }
  for (const Term* nearest : {of.to_even, of.to_away}) {
    if (nearest == nullptr) continue;
    relations.state(make.either(make.equal(nearest, of.floor), make.equal(nearest, of.ceiling)));
  }
}

/// The nearest integer is the one whose distance is the shorter one, also after rounding, in
/// whatever modes. For the shorter one, if it is less than 1/2, is a value: it is |x| itself, or
/// has no more bits than x and no lower ones. The other one is rounded to no less than 1/2. So
/// rounded distances are equal only where x is an integer or halfway between two.
void integral_nearest(Relations& relations, const Term* t) {
  const Maker make(relations);
  const Term* x = t->get_arg(1);
  if (has_tag(t, T::fp_sub) && has_tag(x, T::fp_round_to_integral)) x = t->get_arg(2);
  if (!has_integers(format_of(x))) return;
  const Integrals of = find_integrals(relations, t, x);
  if (of.down == nullptr || of.up == nullptr) return;
  const Term* floor = of.down->get_arg(2);
  const Term* ceiling = of.up->get_arg(1);
  for (const Term* nearest : {of.to_even, of.to_away}) {
    if (nearest == nullptr) continue;
    relations.state(make.both(make.implies(make.lt(of.down, of.up), make.equal(nearest, floor)),
                              make.implies(make.lt(of.up, of.down), make.equal(nearest, ceiling))));
  }
  if (of.to_away == nullptr) return;
  const Term* away = make.mgr.make_term_ite(make.mgr.make_fp_isnegative(x), floor, ceiling);
  relations.state(
      make.implies(make.mgr.make_fp_equal(of.down, of.up), make.equal(of.to_away, away)));
}

// Minimum and maximum ---------------------------------------------------------------------------

const Term* find_selection(const Relations& relations, T::tag tag, const Term* a, const Term* b) {
  for (const Term* use : relations.get_uses(a)) {
    if (has_tag(use, tag) && use->get_arg(0) == a && use->get_arg(1) == b) return use;
  }
  return nullptr;
}

/// min(min(x, y), z) = min(x, min(y, z)). Of zeros with different signs either may be taken, by the
/// order of the operands alone: always the first or the second, the positive or the negative one,
/// and each of these choices is associative.
void selection_associates(Relations& relations, const Term* t) {
  const Maker make(relations);
  const T::tag tag = t->get_tag();
  const Term* first = t->get_arg(0);
  const Term* second = t->get_arg(1);
  if (has_tag(first, tag)) {
    const Term* inner = find_selection(relations, tag, first->get_arg(1), second);
    const Term* outer =
        inner == nullptr ? nullptr : find_selection(relations, tag, first->get_arg(0), inner);
    if (outer != nullptr) relations.state(make.equal(t, outer));
  }
  if (has_tag(second, tag)) {
    const Term* inner = find_selection(relations, tag, first, second->get_arg(0));
    const Term* outer =
        inner == nullptr ? nullptr : find_selection(relations, tag, inner, second->get_arg(1));
    if (outer != nullptr) relations.state(make.equal(t, outer));
  }
}

// Sums ------------------------------------------------------------------------------------------

/// A sum u + v, beside y - u: v follows.
void state_sum(Relations& relations, const Term* sum, const Term* v, const Term* difference) {
  const Term* y = difference->get_arg(1);
  if (!relations.is_compared(sum, y) && !relations.is_compared(v, difference)) return;
  relations.state(Maker(relations).follow(sum, y, difference, v));
}

/// A difference u - v, beside u - y, whose subtrahend may be a literal that is added: v falls.
void state_difference(Relations& relations, const Term* t, const Term* y, const Term* other) {
  const Term* v = t->get_arg(2);
  if (!relations.is_compared(t, y) && !relations.is_compared(v, other)) return;
  relations.state(Maker(relations).follow(t, y, v, other));
}

void relate_sums(Relations& relations, const Term* a, const Term* b, const Term* u) {
  if (has_tag(a, T::fp_add)) {
    const Term* v = a->get_arg(1) == u ? a->get_arg(2) : a->get_arg(1);
    if (has_tag(b, T::fp_sub) && b->get_arg(2) == u) state_sum(relations, a, v, b);
    return;
  }
  if (a->get_arg(1) != u) return;
  if (has_tag(b, T::fp_sub) && b->get_arg(1) == u) {
    state_difference(relations, a, b->get_arg(2), b);
  } else if (has_tag(b, T::fp_add)) {
    const auto c = float_literal(b->get_arg(1) == u ? b->get_arg(2) : b->get_arg(1));
    TermManager& mgr = relations.get_manager();
    if (c) state_difference(relations, a, mgr.make_fp_number(ieee_neg(*c)), b);
  }
}

/// Where u + v, rounded, is above y, v is above y - u, and so it is no less than that, rounded.
void sum_and_difference(Relations& relations, const Term* t) {
  for (const Term* u : {t->get_arg(1), t->get_arg(2)}) {
    for (const Term* other : relations.get_uses(u)) {
      if (other == t || !(has_tag(other, T::fp_add) || has_tag(other, T::fp_sub))) continue;
      relate_sums(relations, t, other, u);
      relate_sums(relations, other, t, u);
    }
  }
}

// Quotients -------------------------------------------------------------------------------------

/// x / y is above 1 where x is above y > 0.
void quotient_beside_one(Relations& relations, const Term* t) {
  const Maker make(relations);
  const Term* x = t->get_arg(1);
  const Term* y = t->get_arg(2);
  const Term* one = make.one_of(t);
  if (!relations.is_compared(t, one)) return;
  const auto follow = [&](const Term* low, const Term* high) {
    return make.both(make.implies(make.lt(one, t), make.lt(low, high)),
                     make.implies(make.lt(t, one), make.lt(high, low)));
  };
  relations.state(make.by_sign(y, follow(y, x), follow(x, y)));
}

/// Where x / y, rounded, is above z, and y > 0, x is above y * z, and so no less than that,
/// rounded.
void quotient_and_product(Relations& relations, const Term* t) {
  const Maker make(relations);
  const bool is_quotient = has_tag(t, T::fp_div);
  const auto relate = [&](const Term* quotient, const Term* product) {
    const Term* x = quotient->get_arg(1);
    const Term* y = quotient->get_arg(2);
    const Term* z = product->get_arg(1) == y ? product->get_arg(2) : product->get_arg(1);
    if (!relations.is_compared(quotient, z) && !relations.is_compared(x, product)) return;
    relations.state(make.by_sign(y, make.follow(quotient, z, product, x),
                                 make.follow(quotient, z, x, product)));
  };
  if (is_quotient) {
    for (const Term* other : relations.get_uses(t->get_arg(2)))
      if (has_tag(other, T::fp_mul)) relate(t, other);
    return;
  }
  for (const Term* y : {t->get_arg(1), t->get_arg(2)}) {
    for (const Term* other : relations.get_uses(y))
      if (has_tag(other, T::fp_div) && other->get_arg(2) == y) relate(other, t);
  }
}

// Monotone functions ----------------------------------------------------------------------------

enum class Direction : std::uint8_t { none, rising, falling };

/// How a function of one argument runs. Constants are finite, and factors not zero, so that the
/// result is NaN only where the argument is; a root rises where it is a number.
Direction direction_of(const Term* t, const Term* operand) {
  if (t->get_arity() < 3) return Direction::rising;
  const bool is_first = t->get_arg(1) == operand;
  const auto c = float_literal(t->get_arg(is_first ? 2 : 1));
  if (!c || c->is_nan() || c->is_inf()) return Direction::none;
  if (has_tag(t, T::fp_add)) return Direction::rising;
  if (has_tag(t, T::fp_sub)) return is_first ? Direction::rising : Direction::falling;
  if (c->is_zero() || (has_tag(t, T::fp_div) && !is_first)) return Direction::none;
  return c->is_sign_set() ? Direction::falling : Direction::rising;
}

const Term* compare_operands(const Maker& make, const Term* t, const Term* a, const Term* b) {
  if (has_tag(t, T::fp_from_sbv)) return make.mgr.make_bv_sle(a, b);
  if (has_tag(t, T::fp_from_ubv)) return make.mgr.make_bv_ule(a, b);
  const Term* order = make.le(a, b);
  return has_tag(t, T::fp_sqrt) ? make.both(make.le(make.zero_of(a), a), order) : order;
}

/// Multiples of two operands are worth relating where each is compared with something: circuits of
/// products hide most. Of sums, in which one operand often takes many steps, that costs more than
/// it spares, so these and the rest have to be compared with each other, or their operands.
bool is_asked(const Relations& relations, const Term* t, const Term* other) {
  if (has_tag(t, T::fp_mul) || has_tag(t, T::fp_div)) {
    return relations.is_compared(t) && relations.is_compared(other);
  }
  return relations.is_compared(t, other) ||
         relations.is_compared(find_only_operand(t), find_only_operand(other));
}

/// Exact results rise with the operand, and so do rounded ones.
void monotone(Relations& relations, const Term* t) {
  const Term* x = find_only_operand(t);
  if (x == nullptr) return;
  const Direction direction = direction_of(t, x);
  if (direction == Direction::none) return;
  const Maker make(relations);
  for (const Term* other : relations.get_alike(t, x)) {
    const Term* y = find_only_operand(other);
    if (other == t || !is_asked(relations, t, other)) continue;
    const bool rises = direction == Direction::rising;
    const Term* low = rises ? t : other;
    const Term* high = rises ? other : t;
    relations.state(make.both(make.implies(compare_operands(make, t, x, y), make.le(low, high)),
                              make.implies(compare_operands(make, t, y, x), make.le(high, low))));
  }
}

/// The operands of `t` and `other` beside `u`, which both have at the same place; sums and products
/// have none. Null where they do not.
std::pair<const Term*, const Term*> find_others(const Term* t, const Term* other, const Term* u) {
  const auto beside = [u](const Term* s) { return s->get_arg(s->get_arg(1) == u ? 2 : 1); };
  const bool commutes = has_tag(t, T::fp_add) || has_tag(t, T::fp_mul);
  const bool is_second = has_tag(t, T::fp_div) || t->get_arg(1) != u;
  if (!commutes && other->get_arg(is_second ? 2 : 1) != u) return {};
  return {beside(t), beside(other)};
}

/// Of u + v and u + w, rounded alike, the first is below the second only if v is below w; likewise
/// differences, and products and quotients as the sign of u has it. Stated of results that are
/// compared with each other: of all pairs it slows down sums and products of three operands in
/// different orders, where v and w hardly matter.
void shared_operand(Relations& relations, const Term* t) {
  const Maker make(relations);
  for (const Term* u : {t->get_arg(1), t->get_arg(2)}) {
    if (has_tag(t, T::fp_div) && u != t->get_arg(2)) continue;
    for (const Term* other : relations.get_uses(u)) {
      const bool is_alike = other != t && has_tag(other, t->get_tag()) &&
                            other->get_arg(0) == t->get_arg(0) && relations.is_compared(t, other);
      if (!is_alike) continue;
      const auto [v, w] = find_others(t, other, u);
      if (v == nullptr) continue;
      const auto order = [&make, t, other](const Term* low, const Term* high) {
        return make.both(make.implies(make.lt(t, other), make.lt(low, high)),
                         make.implies(make.lt(other, t), make.lt(high, low)));
      };
      if (has_tag(t, T::fp_add)) {
        relations.state(order(v, w));
      } else if (has_tag(t, T::fp_sub)) {
        relations.state(t->get_arg(1) == u ? order(w, v) : order(v, w));
      } else {
        relations.state(make.by_sign(u, order(v, w), order(w, v)));
      }
    }
  }
}

constexpr RelationKind kKinds[] = {
    {"integral-order", {T::fp_round_to_integral}, integral_order},
    {"integral-nearest", {T::fp_round_to_integral, T::fp_sub}, integral_nearest},
    {"selection-associates", {T::fp_min, T::fp_max}, selection_associates},
    {"sum-and-difference", {T::fp_add, T::fp_sub}, sum_and_difference},
    {"quotient-beside-one", {T::fp_div}, quotient_beside_one},
    {"quotient-and-product", {T::fp_div, T::fp_mul}, quotient_and_product},
    {"monotone",
     {T::fp_add, T::fp_sub, T::fp_mul, T::fp_div, T::fp_sqrt, T::fp_round_to_integral, T::fp_cast,
      T::fp_from_sbv, T::fp_from_ubv},
     monotone},
    {"shared-operand", {T::fp_add, T::fp_sub, T::fp_mul, T::fp_div}, shared_operand},
    {"sum-beside-operand", {T::fp_add, T::fp_sub}, sum_beside_operand},
    {"product-beside-operand", {T::fp_mul}, product_beside_operand},
    {"quotient-beside-operand", {T::fp_div}, quotient_beside_operand},
    {"remainder-bounds", {T::fp_rem}, remainder_bounds},
    {"root-beside-one", {T::fp_sqrt}, root_beside_one},
    {"exact-difference", {T::fp_add, T::fp_sub}, exact_difference},
    {"reversed-difference", {T::fp_sub}, reversed_difference},
};

}  // namespace

std::span<const RelationKind> get_relation_kinds() {
  return kKinds;
}

}  // namespace vorn::rewrite
