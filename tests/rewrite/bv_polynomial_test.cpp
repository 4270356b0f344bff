// Polynomials of bit-vector terms, and the bounds within which they are made.
#include "vorn/rewrite/bv_polynomial.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "vorn/rewrite/bv_cases.h"
#include "vorn/rewrite/bv_fingerprint.h"
#include "vorn/terms/bv_number.h"

namespace vorn::rewrite {
namespace {

class BvPolynomials : public testing::TestWithParam<std::size_t> {
 protected:
  const Term* make(const std::string& name) {
    return mgr.make_constant(mgr.make_unique_symbol(name, mgr.get_bv_type(width)));
  }
  const Term* number(int value) { return mgr.make_bv_number(value, width); }
  bool are_equal(const Term* a, const Term* b) {
    BvPolynomial difference = expand(mgr, a, Products::multiply_out);
    difference.add(expand(mgr, b, Products::multiply_out), minus_one(width));
    if (difference.is_zero()) {
      EXPECT_TRUE(may_be_decided(make_fingerprint(mgr, a), make_fingerprint(mgr, b), width));
    }
    return difference.is_zero();
  }

  const std::size_t width = GetParam();
  TermManager mgr{false};
  const Term* x = make("x");
  const Term* y = make("y");
  const Term* z = make("z");
};

TEST_P(BvPolynomials, OfTermsThatDifferInFormAreTheSame) {
  const Term* sum = mgr.make_bv_add(x, y);
  const Term* squares = mgr.make_bv_sub(mgr.make_bv_mul(x, x), mgr.make_bv_mul(y, y));
  EXPECT_TRUE(are_equal(mgr.make_bv_mul(sum, mgr.make_bv_sub(x, y)), squares));
  EXPECT_EQ(are_equal(mgr.make_bv_mul(sum, sum), squares), width == 1);
  EXPECT_TRUE(are_equal(mgr.make_bv_not(x), mgr.make_bv_sub(mgr.make_bv_neg(x), number(1))));
  EXPECT_TRUE(are_equal(mgr.make_bv_lshl(sum, number(1)), mgr.make_bv_add(sum, sum)));
  EXPECT_TRUE(are_equal(mgr.make_bv_sub(mgr.make_bv_add(x, y), y), x));
  const Term* all_out = mgr.make_bv_lshl(x, mgr.make_bv_number(BVNumber::all_ones(width), width));
  EXPECT_TRUE(are_equal(all_out, number(0)));
}

TEST_P(BvPolynomials, OfLowBitsAreThoseOfTheOperationsOnThem) {
  if (width < 2) return;
  const std::size_t n = width - 1;
  const auto low = [&](const Term* t) { return mgr.make_bv_extract(n - 1, 0, t); };
  const Term* product = mgr.make_bv_mul(x, mgr.make_bv_sub(y, x));
  BvPolynomial difference = expand(mgr, low(product), Products::multiply_out);
  const Term* same = mgr.make_bv_mul(mgr.make_bv_sub(low(y), low(x)), low(x));
  difference.add(expand(mgr, same, Products::multiply_out), minus_one(n));
  EXPECT_TRUE(difference.is_zero());
  EXPECT_TRUE(may_be_decided(make_fingerprint(mgr, low(product)), make_fingerprint(mgr, same), n));
  EXPECT_EQ(expand(mgr, low(product), Products::keep).count_factors(), 1U);
}

TEST_P(BvPolynomials, TellWhatIsNeverZero) {
  if (width < 3) return;
  const auto never = [this](const Term* t) {
    return expand(mgr, t, Products::multiply_out).is_never_zero();
  };
  const Term* multiple = mgr.make_bv_mul(number(4), mgr.make_bv_mul(x, y));
  EXPECT_TRUE(never(mgr.make_bv_add(multiple, number(2))));
  EXPECT_TRUE(never(mgr.make_bv_add(multiple, number(1))));
  EXPECT_TRUE(never(number(4)));
  EXPECT_FALSE(never(mgr.make_bv_add(multiple, number(4))));
  EXPECT_FALSE(never(mgr.make_bv_add(mgr.make_bv_add(multiple, z), number(2))));
  EXPECT_FALSE(never(multiple));
  EXPECT_FALSE(never(number(0)));
}

/// What has too many summands, factors or operations is a factor itself, so the work is bounded.
TEST_P(BvPolynomials, StayWithinBounds) {
  const Term* sum = x;
  const Term* power = x;
  for (int i = 0; i < 40; ++i) {
    sum = mgr.make_bv_mul(mgr.make_bv_add(sum, make("v" + std::to_string(i))), sum);
    power = mgr.make_bv_mul(power, power);
    EXPECT_LE(expand(mgr, sum, Products::multiply_out).get_summands().size(), 64U);
    EXPECT_LE(expand(mgr, power, Products::multiply_out).count_factors(), 12U);
  }
  for (int i = 0; i < 200'000; ++i)
    sum = mgr.make_bv_add(sum, i % 2 == 0 ? x : y);
  EXPECT_LE(expand(mgr, sum, Products::multiply_out).get_summands().size(), 64U);
  EXPECT_EQ(make_fingerprint(mgr, sum), make_fingerprint(mgr, sum));
}

TEST_P(BvPolynomials, FollowTheCase) {
  const Term* p = mgr.make_constant(mgr.make_unique_symbol("p", mgr.get_bool_type()));
  const Term* are_same = mgr.make_equal(x, y);
  BvCases cases(mgr);
  ASSERT_TRUE(cases.add_condition(mgr.make_and(p, mgr.make_not(are_same))));
  const Term* choice = mgr.make_term_ite(p, x, mgr.make_bv_mul(y, z));
  std::vector<std::size_t> factors;
  const Term* chosen = cases.select([&](const BvCase& in_case) {
    const Term* t = mgr.make_bv_mul(choice, y);
    factors.push_back(expand(mgr, t, Products::multiply_out, &in_case).count_factors());
    return in_case.resolve(choice);
  });
  EXPECT_EQ(factors, (std::vector<std::size_t>{3, 2, 3, 2}));
  // Where x and y are the same, one stands for both.
  EXPECT_EQ(chosen, choice);
  EXPECT_EQ(cases.select([](const BvCase&) { return nullptr; }), nullptr);
}

TEST_P(BvPolynomials, CasesAreFew) {
  BvCases cases(mgr);
  const auto condition = [this](int i) {
    const std::string name = "p" + std::to_string(i);
    return mgr.make_constant(mgr.make_unique_symbol(name, mgr.get_bool_type()));
  };
  for (std::size_t i = 0; i < BvCases::kMostAtoms; ++i)
    EXPECT_TRUE(cases.add_condition(condition(static_cast<int>(i))));
  EXPECT_FALSE(cases.add_condition(condition(9)));
  const Term* p = condition(10);
  const Term* deep = p;
  for (int i = 0; i < 200'000; ++i)
    deep = mgr.make_xor(deep, p);
  EXPECT_FALSE(BvCases(mgr).add_condition(deep));
}

INSTANTIATE_TEST_SUITE_P(Widths, BvPolynomials, testing::Values(1, 3, 32, 64, 65, 128));

}  // namespace
}  // namespace vorn::rewrite
