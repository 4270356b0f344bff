// Rules that gather negations and order operands, so that operations are shared which differ by
// these alone. Negations move outward, to where they meet another, a comparison or a sum.
#include "vorn/rewrite/fp_patterns.h"
#include "vorn/rewrite/fp_rules.h"
#include "vorn/terms/ieee_arithmetic.h"

namespace vorn::rewrite {
namespace {

using T = SymbolTag;

const Term* with_args(TermManager& mgr, const Term* t, std::initializer_list<const Term*> args) {
  return mgr.rebuild(t, std::span(args.begin(), args.size()));
}

/// -(-x) = x, for NaN has no sign.
const Term* neg_of_neg(TermManager&, const Term* t) {
  const Term* x = t->get_arg(0);
  return has_tag(x, T::fp_neg) ? x->get_arg(0) : nullptr;
}

/// |-x| = ||x|| = |x|.
const Term* abs_of_sign(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(0);
  if (has_tag(x, T::fp_abs)) return x;
  return has_tag(x, T::fp_neg) ? mgr.make_fp_abs(x->get_arg(0)) : nullptr;
}

/// x + -y = x - y, which IEEE 754 defines so, and x - -y = x + y. An adder that subtracts costs
/// nothing, while a negation tests for NaN.
const Term* sum_with_negation(TermManager& mgr, const Term* t) {
  const Term* rm = t->get_arg(0);
  const Term* x = t->get_arg(1);
  const Term* y = t->get_arg(2);
  if (has_tag(y, T::fp_neg)) {
    y = y->get_arg(0);
    return has_tag(t, T::fp_add) ? mgr.make_fp_sub(rm, x, y) : mgr.make_fp_add(rm, x, y);
  }
  const bool negated_first = has_tag(t, T::fp_add) && has_tag(x, T::fp_neg);
  return negated_first ? mgr.make_fp_sub(rm, y, x->get_arg(0)) : nullptr;
}

/// x - c = x + -c: the negation of a literal is a literal.
const Term* sub_of_literal(TermManager& mgr, const Term* t) {
  const auto c = float_literal(t->get_arg(2));
  if (!c) return nullptr;
  return mgr.make_fp_add(t->get_arg(0), t->get_arg(1), mgr.make_fp_number(ieee_neg(*c)));
}

/// Two negations leave the sign of the product and its magnitude alone.
const Term* signs_cancel(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(1);
  const Term* y = t->get_arg(2);
  if (!has_tag(x, T::fp_neg) || !has_tag(y, T::fp_neg)) return nullptr;
  x = x->get_arg(0);
  y = y->get_arg(0);
  if (!has_tag(t, T::fp_fma)) return with_args(mgr, t, {t->get_arg(0), x, y});
  return with_args(mgr, t, {t->get_arg(0), x, y, t->get_arg(3)});
}

/// -x * y = -(x * y), and likewise for quotients, where the rounding mode is mirrored: rounding up
/// what is negated is rounding down what is not.
const Term* sign_of_product(TermManager& mgr, const Term* t) {
  const auto mode = mode_literal(mgr, t->get_arg(0));
  if (!mode) return nullptr;
  const Term* x = t->get_arg(1);
  const Term* y = t->get_arg(2);
  if (has_tag(x, T::fp_neg)) {
    x = x->get_arg(0);
  } else if (has_tag(y, T::fp_neg)) {
    y = y->get_arg(0);
  } else {
    return nullptr;
  }
  return mgr.make_fp_neg(with_args(mgr, t, {mgr.make_fprounding(mirrored(*mode)), x, y}));
}

/// The integer nearest to -x is the negation of the one nearest to x, in the mirrored mode; a zero
/// has the sign of the operand.
const Term* sign_of_integral(TermManager& mgr, const Term* t) {
  const auto mode = mode_literal(mgr, t->get_arg(0));
  const Term* x = t->get_arg(1);
  if (!mode || !has_tag(x, T::fp_neg)) return nullptr;
  return mgr.make_fp_neg(
      mgr.make_fp_round_to_integral(mgr.make_fprounding(mirrored(*mode)), x->get_arg(0)));
}

/// rem(x, y) = x - y * n with n the integer nearest to x / y, the even one of two, and a zero has
/// the sign of x: negating y negates n, and negating x negates n and the result.
const Term* sign_of_remainder(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(0);
  const Term* y = t->get_arg(1);
  if (has_tag(y, T::fp_neg) || has_tag(y, T::fp_abs)) return mgr.make_fp_rem(x, y->get_arg(0));
  return has_tag(x, T::fp_neg) ? mgr.make_fp_neg(mgr.make_fp_rem(x->get_arg(0), y)) : nullptr;
}

// Order of operands -----------------------------------------------------------------------------

/// x + y = y + x, x * y = y * x, and the factors of a fused operation.
const Term* commutes(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(1);
  const Term* y = t->get_arg(2);
  if (x->get_id() <= y->get_id()) return nullptr;
  if (!has_tag(t, T::fp_fma)) return with_args(mgr, t, {t->get_arg(0), y, x});
  return with_args(mgr, t, {t->get_arg(0), y, x, t->get_arg(3)});
}

constexpr FpRule kRules[] = {
    {"neg-of-neg", {T::fp_neg}, neg_of_neg},
    {"abs-of-sign", {T::fp_abs}, abs_of_sign},
    {"sub-of-literal", {T::fp_sub}, sub_of_literal},
    {"sum-with-negation", {T::fp_add, T::fp_sub}, sum_with_negation},
    {"signs-cancel", {T::fp_mul, T::fp_div, T::fp_fma}, signs_cancel},
    {"sign-of-product", {T::fp_mul, T::fp_div}, sign_of_product},
    {"sign-of-integral", {T::fp_round_to_integral}, sign_of_integral},
    {"sign-of-remainder", {T::fp_rem}, sign_of_remainder},
    {"commutes", {T::fp_add, T::fp_mul, T::fp_fma}, commutes},
};

}  // namespace

std::span<const FpRule> get_sign_rules() {
  return kRules;
}

}  // namespace vorn::rewrite
