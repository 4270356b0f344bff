// Rules for bit-vectors that look further than the term manager does: sums of products are compared
// as polynomials, and divisions that differ in signs only become one.
//
// Nothing is multiplied out but to see what a comparison is: what a rule makes is the smaller term.
#include <algorithm>
#include <set>

#include "vorn/rewrite/bv_cases.h"
#include "vorn/rewrite/bv_fingerprint.h"
#include "vorn/rewrite/bv_polynomial.h"
#include "vorn/rewrite/fp_rules.h"
#include "vorn/terms/bv_number.h"

namespace vorn::rewrite {
namespace {

using T = SymbolTag;

bool is_bits(const Term* t) {
  return t->get_type()->get_kind() == DataType::Kind::bit_vector;
}

bool is_value(const TermManager& mgr, const Term* t, int value) {
  const QNumber* number = mgr.get_number(t->get_symbol());
  return number != nullptr && *number == QNumber(value);
}

bool is_zero(const TermManager& mgr, const Term* t) {
  return is_value(mgr, t, 0);
}

const Term* make_zero(TermManager& mgr, const Term* like) {
  return mgr.make_bv_number(0, width_of(like));
}

// Single bits -----------------------------------------------------------------------------------

/// A bit that is 0 is one that is not 1, and a choice between numbers that is a number is its
/// condition.
const Term* compare_flag(TermManager& mgr, const Term* t) {
  if (!is_bits(t->get_arg(0))) return nullptr;
  for (std::size_t i = 0; i < 2; ++i) {
    const Term* x = t->get_arg(i);
    const Term* number = t->get_arg(1 - i);
    if (!mgr.is_number(number, nullptr)) continue;
    if (x->get_tag() == T::ite && mgr.is_number(x->get_arg(1), nullptr) &&
        mgr.is_number(x->get_arg(2), nullptr)) {
      const Term* p = x->get_arg(0);
      const bool then = x->get_arg(1) == number;
      const bool otherwise = x->get_arg(2) == number;
      if (then == otherwise) return mgr.make_bool(then);
      return then ? p : mgr.make_not(p);
    }
    if (width_of(x) == 1 && x->get_tag() == T::bv_not) {
      return mgr.make_not(mgr.make_equal(x->get_arg(0), number));
    }
    if (width_of(x) == 1 && is_zero(mgr, number)) {
      return mgr.make_not(mgr.make_equal(x, mgr.make_bv_number(1, 1)));
    }
  }
  return nullptr;
}

/// Less than zero is what has the top bit.
const Term* compare_sign(TermManager& mgr, const Term* t) {
  const bool is_strict = t->get_tag() == T::bv_slt;
  const Term* x = t->get_arg(is_strict ? 0 : 1);
  if (!is_zero(mgr, t->get_arg(is_strict ? 1 : 0))) return nullptr;
  const std::size_t top = width_of(x) - 1;
  const Term* is_set = mgr.make_equal(mgr.make_bv_extract(top, top, x), mgr.make_bv_number(1, 1));
  return is_strict ? is_set : mgr.make_not(is_set);
}

// Sums of products ------------------------------------------------------------------------------

bool is_order(const Term* t) {
  switch (t->get_tag()) {
    case T::bv_ult:
    case T::bv_ule:
    case T::bv_slt:
    case T::bv_sle:
      return true;
    default:
      return false;
  }
}

/// What a comparison of equal terms is.
const Term* relate_equal(TermManager& mgr, const Term* t) {
  if (t->get_tag() == T::bv_comp) return mgr.make_bv_number(1, 1);
  return mgr.make_bool(t->get_tag() != T::bv_ult && t->get_tag() != T::bv_slt);
}

/// What an equality of different terms is.
const Term* relate_different(TermManager& mgr, const Term* t) {
  return t->get_tag() == T::bv_comp ? mgr.make_bv_number(0, 1) : mgr.make_false();
}

BvPolynomial subtract(TermManager& mgr, const Term* t, Products products,
                      const BvCase* in_case = nullptr) {
  BvPolynomial difference = expand(mgr, t->get_arg(0), products, in_case);
  difference.add(expand(mgr, t->get_arg(1), products, in_case), minus_one(width_of(t->get_arg(0))));
  return difference;
}

/// Equal polynomials are equal, and some that differ always do.
const Term* compare_polynomials(TermManager& mgr, const Term* t) {
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  constexpr Products kProducts = Products::multiply_out;
  if (!is_bits(a) || !(is_expanded(mgr, a, kProducts) || is_expanded(mgr, b, kProducts))) {
    return nullptr;
  }
  const BvFingerprint left = make_fingerprint(mgr, a);
  if (!may_be_decided(left, make_fingerprint(mgr, b), width_of(a))) return nullptr;
  const BvPolynomial difference = subtract(mgr, t, kProducts);
  if (difference.is_zero()) return relate_equal(mgr, t);
  return difference.is_never_zero() && !is_order(t) ? relate_different(mgr, t) : nullptr;
}

/// The conditions of choices under sums and products, as cases; none where they are too many, or
/// where nothing is computed with what is chosen.
BvCases find_cases(TermManager& mgr, const Term* equality) {
  constexpr std::size_t kMostTerms = 64;
  BvCases cases(mgr);
  std::vector<const Term*> stack(equality->get_args().begin(), equality->get_args().end());
  std::set<std::size_t> met;
  bool has_product = false;
  while (!stack.empty()) {
    const Term* t = stack.back();
    stack.pop_back();
    const bool is_choice = t->get_tag() == T::ite;
    if (!is_choice && !is_bv_arithmetic(mgr, t)) continue;
    if (!met.insert(t->get_id()).second) continue;
    if (met.size() > kMostTerms) return BvCases(mgr);
    has_product = has_product || t->get_tag() == T::bv_mul;
    if (is_choice && !cases.add_condition(t->get_arg(0))) return BvCases(mgr);
    const auto operands = t->get_args().subspan(is_choice ? 1 : 0);
    stack.insert(stack.end(), operands.begin(), operands.end());
  }
  return has_product ? cases : BvCases(mgr);
}

/// Choices between products are equal if they are in every case of their conditions.
const Term* compare_by_cases(TermManager& mgr, const Term* t) {
  if (!is_bits(t->get_arg(0))) return nullptr;
  const BvCases cases = find_cases(mgr, t);
  if (cases.is_empty()) return nullptr;
  return cases.select([&](const BvCase& in_case) {
    const bool is_equal = subtract(mgr, t, Products::multiply_out, &in_case).is_zero();
    return is_equal ? relate_equal(mgr, t) : nullptr;
  });
}

/// The sum of those summands that stand on one side: those with the sign bit of their coefficients
/// are subtracted from the other.
const Term* make_side(TermManager& mgr, const BvPolynomial& sum, bool negative) {
  const std::size_t width = sum.get_width();
  const Term* side = nullptr;
  for (const auto& [product, coefficient] : sum.get_summands()) {
    if (coefficient.test_bit(width - 1) != negative) continue;
    const QNumber factor = negative ? BVNumber::bv_neg(coefficient, width) : coefficient;
    const Term* summand = mgr.make_bv_number(factor, width);
    if (!product.empty()) {
      const Term* base = product.front();
      const std::uint64_t power = BVNumber::bit_length(factor) - 1;
      summand = power == 0 ? base : mgr.make_bv_lshl(base, mgr.make_bv_number(power, width));
    }
    side = side == nullptr ? summand : mgr.make_bv_add(side, summand);
  }
  return side == nullptr ? mgr.make_bv_number(0, width) : side;
}

/// Whether a summand, added or subtracted, is no product with a number but a power of two.
bool is_power(const BvPolynomial::Summands::value_type& summand, std::size_t width) {
  const QNumber& coefficient = summand.second;
  const bool is_negative = coefficient.test_bit(width - 1);
  const QNumber factor = is_negative ? BVNumber::bv_neg(coefficient, width) : coefficient;
  return factor == BVNumber::power_of_two(BVNumber::bit_length(factor) - 1);
}

/// Summands that both sides have cancel. Sums below those that are compared may be of use elsewhere
/// and stay in any case, so that no more additions may arise than there are at the top.
const Term* cancel_summands(TermManager& mgr, const Term* t) {
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  if (!is_bits(a)) return nullptr;
  const std::size_t sums = (is_bv_arithmetic(mgr, a) ? 1 : 0) + (is_bv_arithmetic(mgr, b) ? 1 : 0);
  if (sums == 0) return nullptr;
  const std::size_t width = width_of(a);
  const BvPolynomial left = expand(mgr, a, Products::keep);
  const BvPolynomial right = expand(mgr, b, Products::keep);
  BvPolynomial difference = left;
  difference.add(right, minus_one(width));
  const std::size_t left_over = difference.get_summands().size();
  if (left_over >= left.get_summands().size() + right.get_summands().size()) return nullptr;
  if (left_over > sums + 1) return nullptr;
  for (const auto& summand : difference.get_summands())
    if (!summand.first.empty() && !is_power(summand, width)) return nullptr;
  const Term* x = make_side(mgr, difference, false);
  const Term* y = make_side(mgr, difference, true);
  return t->get_tag() == T::bv_comp ? mgr.make_bv_comp(x, y) : mgr.make_equal(x, y);
}

// Division --------------------------------------------------------------------------------------

/// x % y < y unless y is 0, and x % y <= x.
const Term* compare_remainder(TermManager& mgr, const Term* t) {
  const bool is_strict = t->get_tag() == T::bv_ult;
  const Term* a = t->get_arg(0);
  const Term* b = t->get_arg(1);
  const Term* rest = is_strict || a->get_tag() == T::bv_urem ? a : b;
  if (rest->get_tag() != T::bv_urem) return nullptr;
  if (rest == a && !is_strict && rest->get_arg(0) == b) return mgr.make_true();
  const Term* divisor = rest->get_arg(1);
  if (divisor != (is_strict ? b : a)) return nullptr;
  const Term* by_zero = mgr.make_equal(divisor, make_zero(mgr, divisor));
  return is_strict ? mgr.make_not(by_zero) : by_zero;
}

/// x % x = 0, and x / x = 1 unless x is 0.
const Term* divide_itself(TermManager& mgr, const Term* t) {
  const Term* x = t->get_arg(0);
  if (t->get_arg(1) != x) return nullptr;
  const Term* zero = make_zero(mgr, x);
  if (t->get_tag() == T::bv_urem) return zero;
  const Term* ones = mgr.make_bv_number(BVNumber::all_ones(width_of(x)), width_of(x));
  return mgr.make_term_ite(mgr.make_equal(x, zero), ones, mgr.make_bv_number(1, width_of(x)));
}

/// A division and the operations around it in one case of a choice.
struct Divided {
  const Term* division = nullptr;  // null: there is none
  bool is_unique = true;

  void note(const Term* t) {
    is_unique = is_unique && (division == nullptr || division == t);
    division = t;
  }
};

bool is_around_division(const Term* t) {
  return t->get_tag() == T::bv_neg || t->get_tag() == T::bv_add || t->get_tag() == T::bv_sub;
}

/// Looks for quotients or remainders under no more than `depth` sums and negations.
void find_division(const BvCase& in_case, const Term* t, int depth, Divided* found) {
  t = in_case.resolve(t);
  if (t->get_tag() == T::bv_udiv || t->get_tag() == T::bv_urem) found->note(t);
  if (depth == 0 || !is_around_division(t)) return;
  for (const Term* arg : t->get_args())
    find_division(in_case, arg, depth - 1, found);
}

/// The term, which `find_division` has looked through, with another division.
const Term* replace_division(TermManager& mgr, const BvCase& in_case, const Term* t, int depth,
                             const Term* from, const Term* to) {
  t = in_case.resolve(t);
  if (t == from) return to;
  if (depth == 0 || !is_around_division(t)) return t;
  std::vector<const Term*> args;
  for (const Term* arg : t->get_args())
    args.push_back(replace_division(mgr, in_case, arg, depth - 1, from, to));
  return mgr.rebuild(t, args);
}

const Term* without_negation(const Term* t) {
  return t->get_tag() == T::bv_neg ? t->get_arg(0) : t;
}

/// Collects the conditions of a tree of choices. False where there are too many, or less than two
/// divisions in its leaves.
bool add_conditions(const Term* t, BvCases* cases) {
  constexpr std::size_t kMostTerms = 40;
  std::vector<const Term*> stack = {t};
  std::set<std::size_t> met;
  std::size_t divisions = 0;
  while (!stack.empty()) {
    const Term* top = stack.back();
    stack.pop_back();
    if (!met.insert(top->get_id()).second) continue;
    if (met.size() > kMostTerms) return false;
    const bool is_choice = top->get_tag() == T::ite;
    const bool is_division = top->get_tag() == T::bv_udiv || top->get_tag() == T::bv_urem;
    if (is_choice && !cases->add_condition(top->get_arg(0))) return false;
    if (is_division) ++divisions;
    if (!is_choice && !is_division && !is_around_division(top)) continue;
    const auto operands = top->get_args().subspan(is_choice ? 1 : 0);
    stack.insert(stack.end(), operands.begin(), operands.end());
  }
  return divisions > 1;
}

/// A choice between divisions of x or -x by y or -y is one division, of a choice between x and -x
/// by one between y and -y: signed division written out has four dividers.
const Term* merge_divisions(TermManager& mgr, const Term* t) {
  constexpr int kDepth = 2;
  if (!is_bits(t)) return nullptr;
  BvCases cases(mgr);
  if (!add_conditions(t, &cases)) return nullptr;
  const Term* first = nullptr;
  const Term* x = nullptr;
  const Term* y = nullptr;
  bool are_different = false;
  const auto is_mergeable = [&](const BvCase& in_case) -> const Term* {
    Divided divided;
    find_division(in_case, t, kDepth, &divided);
    const Term* division = divided.division;
    if (division == nullptr || !divided.is_unique) return nullptr;
    const Term* a = without_negation(in_case.resolve(division->get_arg(0)));
    const Term* b = without_negation(in_case.resolve(division->get_arg(1)));
    if (first == nullptr) {
      first = division;
      x = a;
      y = b;
    }
    are_different = are_different || division != first;
    return division->get_tag() == first->get_tag() && a == x && b == y ? t : nullptr;
  };
  const auto operand = [&](std::size_t i) {
    return cases.select([&](const BvCase& in_case) {
      Divided divided;
      find_division(in_case, t, kDepth, &divided);
      return in_case.resolve(divided.division->get_arg(i));
    });
  };
  if (cases.is_empty() || cases.select(is_mergeable) == nullptr || !are_different) return nullptr;
  const Term* args[] = {operand(0), operand(1)};
  const Term* merged = mgr.rebuild(first, args);
  return cases.select([&](const BvCase& in_case) {
    Divided divided;
    find_division(in_case, t, kDepth, &divided);
    return replace_division(mgr, in_case, t, kDepth, divided.division, merged);
  });
}

constexpr FpRule kRules[] = {
    {"bv-flag", {T::equal}, compare_flag},
    {"bv-sign", {T::bv_slt, T::bv_sle}, compare_sign},
    {"bv-polynomials",
     {T::equal, T::bv_comp, T::bv_ult, T::bv_ule, T::bv_slt, T::bv_sle},
     compare_polynomials},
    {"bv-cases", {T::equal, T::bv_comp}, compare_by_cases},
    {"bv-cancel", {T::equal, T::bv_comp}, cancel_summands},
    {"bv-remainder-bound", {T::bv_ult, T::bv_ule}, compare_remainder},
    {"bv-divide-itself", {T::bv_udiv, T::bv_urem}, divide_itself},
    {"bv-merge-divisions", {T::ite}, merge_divisions},
};

}  // namespace

std::span<const FpRule> get_bit_vector_rules() {
  return kRules;
}

}  // namespace vorn::rewrite
