// What kinds of lemmas are made of, and those that compare a result with its operands.
#ifndef VORN_REWRITE_RELATION_KINDS_H
#define VORN_REWRITE_RELATION_KINDS_H

#include "vorn/rewrite/fp_patterns.h"
#include "vorn/rewrite/relations.h"
#include "vorn/terms/ieee_arithmetic.h"

namespace vorn::rewrite {

/// What kinds build lemmas of.
struct Maker {
  explicit Maker(Relations& relations) : mgr(relations.get_manager()) {}

  const Term* lt(const Term* a, const Term* b) const { return mgr.make_fp_lt(a, b); }
  const Term* le(const Term* a, const Term* b) const { return mgr.make_fp_le(a, b); }
  const Term* equal(const Term* a, const Term* b) const { return mgr.make_equal(a, b); }
  const Term* both(const Term* a, const Term* b) const { return mgr.make_and(a, b); }
  const Term* either(const Term* a, const Term* b) const { return mgr.make_or(a, b); }
  const Term* implies(const Term* a, const Term* b) const { return mgr.make_implies(a, b); }
  const Term* zero_of(const Term* t) const {
    IEEEFloat zero(format_of(t), IEEEFloat::rounding_mode::nearest_even);
    zero.self_zero(false);
    return mgr.make_fp_number(zero);
  }
  const Term* one_of(const Term* t) const { return mgr.make_fp_number(make_one(format_of(t))); }

  /// The result `t` lies beside `y` only if `low` lies beside `high` likewise.
  const Term* follow(const Term* t, const Term* y, const Term* low, const Term* high) const {
    return both(implies(lt(y, t), le(low, high)), implies(lt(t, y), le(high, low)));
  }
  /// What holds where `t` is positive, and what holds where it is negative.
  const Term* by_sign(const Term* t, const Term* if_positive, const Term* if_negative) const {
    return both(implies(lt(zero_of(t), t), if_positive), implies(lt(t, zero_of(t)), if_negative));
  }

  TermManager& mgr;
};

void sum_beside_operand(Relations& relations, const Term* t);
void product_beside_operand(Relations& relations, const Term* t);
void quotient_beside_operand(Relations& relations, const Term* t);
void remainder_bounds(Relations& relations, const Term* t);
void root_beside_one(Relations& relations, const Term* t);
void exact_difference(Relations& relations, const Term* t);
void reversed_difference(Relations& relations, const Term* t);

}  // namespace vorn::rewrite

#endif
