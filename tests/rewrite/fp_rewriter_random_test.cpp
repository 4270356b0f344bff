// Random terms: rewriting keeps their values, whatever rules meet in them.
#include <random>
#include <set>

#include "tests/rewrite/rewriting.h"
#include "vorn/rewrite/fp_rewriter.h"
#include "vorn/rewrite/fp_rules.h"

namespace vorn::rewrite {
namespace {

constexpr IEEEFloat::format kSmall = {2, 2};
constexpr IEEEFloat::format kMiddle = {3, 3};
constexpr IEEEFloat::format kWide = {6, 9};

/// Terms in which operands, literals and casts come so often that rules apply to most of them.
class RandomTerms {
 public:
  RandomTerms(TermManager& manager, unsigned seed) : mgr(manager), random(seed) {
    const auto constant = [this](const char* name, const DataType* type) {
      return mgr.make_constant(mgr.make_unique_symbol(name, type));
    };
    rm = constant("r", mgr.get_fprounding_type());
    p = constant("p", mgr.get_bool_type());
    b = constant("b", mgr.get_bv_type(3));
    x = constant("x", mgr.get_fp_type(kSmall.e, kSmall.m));
    y = constant("y", mgr.get_fp_type(kSmall.e, kSmall.m));
  }

  const Term* predicate(int depth) {
    const IEEEFloat::format f = pick(3) == 0 ? kWide : pick(2) == 0 ? kMiddle : kSmall;
    const Term* a = value(f, depth);
    switch (pick(12)) {
      case 0:
        return mgr.make_fp_isnan(a);
      case 1:
        return mgr.make_fp_isinf(a);
      case 2:
        return mgr.make_fp_iszero(a);
      case 3:
        return mgr.make_fp_isnormal(a);
      case 4:
        return mgr.make_fp_issubnormal(a);
      case 5:
        return mgr.make_fp_isnegative(a);
      case 6:
        return mgr.make_fp_ispositive(a);
      case 7:
        return mgr.make_fp_lt(a, value(f, depth));
      case 8:
        return mgr.make_fp_le(a, value(f, depth));
      case 9:
        return mgr.make_fp_equal(a, value(f, depth));
      case 10:
        return mgr.make_equal(mgr.make_fp_to_sbv(4, mode(), a), mgr.make_bv_number(pick(16), 4));
      default:
        return mgr.make_equal(a, value(f, depth));
    }
  }

 private:
  int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }

  const Term* mode() {
    const int choice = pick(7);
    return choice < 5 ? mgr.make_fprounding(static_cast<IEEEFloat::rounding_mode>(choice)) : rm;
  }

  const Term* literal(IEEEFloat::format f) {
    IEEEFloat number(f, IEEEFloat::rounding_mode::nearest_even);
    switch (pick(6)) {
      case 0:
        number.self_zero(pick(2) == 0);
        break;
      case 1:
        number.self_inf(pick(2) == 0);
        break;
      case 2:
        number.self_nan();
        break;
      default:
        number.self_round(QNumber(pick(9) - 4) / QNumber(2));
        break;
    }
    return mgr.make_fp_number(number);
  }

  const Term* leaf(IEEEFloat::format f) {
    if (pick(3) == 0) return literal(f);
    if (pick(5) == 0) {
      return pick(2) == 0 ? mgr.make_fp_from_sbv(f.e, f.m, mode(), b)
                          : mgr.make_fp_from_ubv(f.e, f.m, mode(), b);
    }
    const Term* variable = pick(2) == 0 ? x : y;
    return f == kSmall ? variable : mgr.make_fp_cast(f.e, f.m, mode(), variable);
  }

  const Term* value(IEEEFloat::format f, int depth) {
    if (depth == 0) return leaf(f);
    const Term* a = value(f, depth - 1);
    const auto other = [&] { return pick(4) == 0 ? a : value(f, pick(depth)); };
    switch (pick(16)) {
      case 0:
      case 1:
        return mgr.make_fp_neg(a);
      case 2:
        return mgr.make_fp_abs(a);
      case 3:
        return mgr.make_fp_add(mode(), a, other());
      case 4:
        return mgr.make_fp_sub(mode(), a, other());
      case 5:
        return mgr.make_fp_mul(mode(), a, other());
      case 6:
        return mgr.make_fp_div(mode(), a, other());
      case 7:
        return mgr.make_fp_fma(mode(), a, other(), other());
      case 8:
        return mgr.make_fp_sqrt(mode(), a);
      case 9:
        return mgr.make_fp_rem(a, other());
      case 10:
        return mgr.make_fp_round_to_integral(mode(), a);
      case 11:
        return pick(2) == 0 ? mgr.make_fp_min(a, other()) : mgr.make_fp_max(a, other());
      case 12:
        return mgr.make_term_ite(p, a, other());
      case 13:
        return mgr.make_fp_from_bits(f.e, f.m, mgr.make_fp_to_bits(a));
      default:
        break;
    }
    const IEEEFloat::format from = f == kSmall ? kWide : kSmall;
    return mgr.make_fp_cast(f.e, f.m, mode(), value(from, depth - 1));
  }

  TermManager& mgr;
  std::mt19937 random;
  const Term* rm;
  const Term* p;
  const Term* b;
  const Term* x;
  const Term* y;
};

TEST(FpRewriter, KeepsTheValuesOfRandomTerms) {
  std::set<std::string> met;
  int changed = 0;
  for (unsigned seed = 0; seed < 1500; ++seed) {
    TermManager mgr(seed % 2 == 0);
    FpRewriter rewriter(mgr);
    const Term* from = RandomTerms(mgr, seed).predicate(1 + static_cast<int>(seed % 4));
    const Term* to = rewriter.rewrite(from);
    EXPECT_EQ(rewriter.rewrite(to), to) << "seed " << seed;
    if (to == from) continue;
    ++changed;
    // A prime, so that every constant takes all its values.
    ASSERT_NO_FATAL_FAILURE(expect_equal_values(mgr, from, to, 211)) << "seed " << seed;
    for (const FpRule* rule : get_fp_rules())
      if (rewriter.get_count(rule->name) != 0) met.insert(rule->name);
  }
  EXPECT_GT(changed, 1000) << "the terms should give rules something to do";
  EXPECT_GT(met.size(), 45U) << "the rules should all be met";
}

/// Rules that make two roundings one, on every pair of values of a format with subnormal numbers,
/// in the narrowest formats that the rules take.
TEST(FpRewriter, NarrowsOperationsOnEveryPairOfValues) {
  struct Operation {
    IEEEFloat::format wide;
    const Term* (TermManager::*make)(const Term*, const Term*, const Term*);
  };
  const Operation operations[] = {{{3, 8}, &TermManager::make_fp_add},
                                  {{5, 7}, &TermManager::make_fp_mul},
                                  {{5, 8}, &TermManager::make_fp_div}};
  for (const Operation& operation : operations) {
    const IEEEFloat::format wide = operation.wide;
    TermManager mgr;
    const auto constant = [&mgr](const char* name, const DataType* type) {
      return mgr.make_constant(mgr.make_unique_symbol(name, type));
    };
    const Term* rm = constant("r", mgr.get_fprounding_type());
    const DataType* type = mgr.get_fp_type(kMiddle.e, kMiddle.m);
    const auto operand = [&](const char* name) {
      return mgr.make_fp_cast(wide.e, wide.m, rm, constant(name, type));
    };
    const Term* sum = (mgr.*operation.make)(rm, operand("x"), operand("y"));
    const Term* from = mgr.make_fp_cast(kMiddle.e, kMiddle.m, rm, sum);
    const Term* to = FpRewriter(mgr).rewrite(from);
    EXPECT_EQ(to->get_tag(), sum->get_tag());
    EXPECT_EQ(to->get_type(), type);
    expect_equal_values(mgr, from, to);
  }
}

TEST(FpRewriter, DeepTermsDoNotExhaustTheNativeStack) {
  TermManager mgr;
  const Term* x = mgr.make_constant(mgr.make_unique_symbol("x", mgr.get_fp_type(8, 23)));
  const Term* t = x;
  for (int i = 0; i < 200'000; ++i)
    t = mgr.make_fp_neg(t);
  EXPECT_EQ(FpRewriter(mgr).rewrite(t), x);
  for (int i = 0; i < 200'000; ++i)
    t = mgr.make_fp_sub(mgr.make_fprounding_even(), t, x);
  const Term* sum = FpRewriter(mgr).rewrite(t);
  EXPECT_EQ(sum->get_tag(), SymbolTag::fp_sub);
}

}  // namespace
}  // namespace vorn::rewrite
