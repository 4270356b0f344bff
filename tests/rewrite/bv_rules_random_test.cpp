// Random bit-vector terms: rewriting keeps their values, whatever rules meet in them.
#include <random>
#include <set>
#include <string>

#include "tests/rewrite/rewriting.h"
#include "vorn/rewrite/fp_rewriter.h"
#include "vorn/rewrite/fp_rules.h"

namespace vorn::rewrite {
namespace {

constexpr std::size_t kWidth = 3;

/// Sums, products, divisions and choices of three variables, and comparisons of terms that are
/// often equal.
class RandomTerms {
 public:
  RandomTerms(TermManager& manager, unsigned seed) : mgr(manager), random(seed) {
    const auto constant = [this](const char* name, const DataType* type) {
      return mgr.make_constant(mgr.make_unique_symbol(name, type));
    };
    p = constant("p", mgr.get_bool_type());
    for (const char* name : {"x", "y", "z"})
      variables.push_back(constant(name, mgr.get_bv_type(kWidth)));
  }

  const Term* predicate(int depth) {
    const Term* a = value(depth);
    const Term* b = pick(3) == 0 ? value(depth) : varied(a, depth);
    if (pick(12) == 0) a = mgr.make_bv_urem(a, b);
    switch (pick(6)) {
      case 0:
        return mgr.make_bv_ult(a, b);
      case 1:
        return mgr.make_bv_ule(a, b);
      case 2:
        return mgr.make_bv_slt(a, b);
      case 3:
        return mgr.make_bv_sle(a, b);
      case 4:
        return mgr.make_equal(mgr.make_bv_comp(a, b), mgr.make_bv_number(pick(2), 1));
      default:
        return mgr.make_equal(a, b);
    }
  }

 private:
  int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }

  const Term* number() { return mgr.make_bv_number(pick(8), kWidth); }

  const Term* condition() {
    const Term* x = variables[static_cast<std::size_t>(pick(3))];
    const Term* y = variables[static_cast<std::size_t>(pick(3))];
    const Term* sign = mgr.make_equal(mgr.make_bv_extract(2, 2, x), mgr.make_bv_number(pick(2), 1));
    switch (pick(6)) {
      case 0:
        return mgr.make_equal(x, y);
      case 1:
        return mgr.make_bv_slt(x, mgr.make_bv_number(0, kWidth));
      case 2:
        return mgr.make_and(sign, mgr.make_not(p));
      case 3:
        return mgr.make_xor(sign, p);
      case 4:
        return p;
      default:
        return sign;
    }
  }

  /// The same in other words, or nearly so.
  const Term* varied(const Term* t, int depth) {
    const Term* other = value(depth == 0 ? 0 : depth - 1);
    switch (pick(8)) {
      case 0:
        return mgr.make_bv_add(mgr.make_bv_sub(t, other), other);
      case 1:
        return mgr.make_bv_not(mgr.make_bv_sub(mgr.make_bv_neg(t), mgr.make_bv_number(1, kWidth)));
      case 2:
        return mgr.make_term_ite(condition(), t, mgr.make_bv_neg(mgr.make_bv_neg(t)));
      case 3:
        return mgr.make_bv_sub(t, mgr.make_bv_mul(other, mgr.make_bv_number(2 * pick(4), kWidth)));
      case 4:
        return mgr.make_bv_add(t, number());
      case 5: {
        const Term* wide =
            mgr.make_bv_sub(mgr.make_bv_sign_extend(2, t), mgr.make_bv_zero_extend(2, number()));
        return mgr.make_bv_extract(kWidth - 1, 0, wide);
      }
      default:
        break;
    }
    const bool is_binary = t->get_arity() == 2 && t->get_arg(0)->get_type() == t->get_type();
    if (!is_binary || pick(2) == 0) return mgr.make_bv_urem(t, other);
    const Term* args[] = {varied(t->get_arg(0), 0), t->get_arg(1)};
    return mgr.rebuild(t, args);
  }

  const Term* value(int depth) {
    if (depth == 0) return pick(5) == 0 ? number() : variables[static_cast<std::size_t>(pick(3))];
    const Term* a = value(depth - 1);
    const auto other = [&] { return pick(4) == 0 ? a : value(pick(depth)); };
    switch (pick(12)) {
      case 0:
        return mgr.make_bv_neg(a);
      case 1:
        return mgr.make_bv_not(a);
      case 2:
      case 3:
        return mgr.make_bv_add(a, other());
      case 4:
        return mgr.make_bv_sub(a, other());
      case 5:
      case 6:
        return mgr.make_bv_mul(a, other());
      case 7:
        return mgr.make_bv_lshl(a, number());
      case 8:
        return mgr.make_term_ite(condition(), a, other());
      case 9:
        return divided_by_signs(a, other());
      case 10:
        return pick(2) == 0 ? mgr.make_bv_udiv(a, other()) : mgr.make_bv_urem(a, other());
      default:
        return mgr.make_term_ite(condition(), mgr.make_bv_neg(a), a);
    }
  }

  /// A choice between divisions of operands that differ in signs.
  const Term* divided_by_signs(const Term* a, const Term* b) {
    const bool is_quotient = pick(2) == 0;
    const auto leaf = [&] {
      const Term* x = pick(2) == 0 ? a : mgr.make_bv_neg(a);
      const Term* y = pick(2) == 0 ? b : mgr.make_bv_neg(b);
      const Term* divided = is_quotient ? mgr.make_bv_udiv(x, y) : mgr.make_bv_urem(x, y);
      if (pick(3) == 0) return mgr.make_bv_add(b, mgr.make_bv_neg(divided));
      return pick(2) == 0 ? divided : mgr.make_bv_neg(divided);
    };
    const Term* last = mgr.make_term_ite(condition(), leaf(), leaf());
    return pick(2) == 0 ? last : mgr.make_term_ite(condition(), leaf(), last);
  }

  TermManager& mgr;
  std::mt19937 random;
  const Term* p;
  std::vector<const Term*> variables;
};

TEST(BvRules, KeepTheValuesOfRandomTerms) {
  std::set<std::string> met;
  int changed = 0;
  for (unsigned seed = 0; seed < 4000; ++seed) {
    TermManager mgr(seed % 4 != 0);
    FpRewriter rewriter(mgr);
    const Term* from = RandomTerms(mgr, seed).predicate(1 + static_cast<int>(seed % 4));
    const Term* to = rewriter.rewrite(from);
    EXPECT_EQ(rewriter.rewrite(to), to) << "seed " << seed;
    if (to == from) continue;
    ++changed;
    ASSERT_NO_FATAL_FAILURE(expect_equal_values(mgr, from, to, 11)) << "seed " << seed;
    for (const FpRule& rule : get_bit_vector_rules())
      if (rewriter.get_count(rule.name) != 0) met.insert(rule.name);
  }
  EXPECT_GT(changed, 1000) << "the terms should give rules something to do";
  EXPECT_EQ(met.size(), get_bit_vector_rules().size()) << "the rules should all be met";
}

}  // namespace
}  // namespace vorn::rewrite
