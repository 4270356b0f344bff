#include "vorn/reals/polynomial.h"

#include <gtest/gtest.h>

namespace vorn::reals {
namespace {

const Polynomial kX = Polynomial::of_unknown(1);
const Polynomial kY = Polynomial::of_unknown(2);

Polynomial sum(const Polynomial& a, const Polynomial& b, int factor = 1) {
  Polynomial result = a;
  result.add(b, QNumber(factor));
  return result;
}

Polynomial product(const Polynomial& a, const Polynomial& b) {
  const auto result = Polynomial::multiply(a, b);
  EXPECT_TRUE(result);
  return result.value_or(Polynomial());
}

TEST(Polynomial, OfConstantsAndUnknowns) {
  EXPECT_EQ(Polynomial::of_constant(QNumber()), Polynomial());
  EXPECT_TRUE(Polynomial().is_constant());
  EXPECT_TRUE(Polynomial::of_constant(QNumber(3)).is_constant());
  EXPECT_EQ(Polynomial::of_constant(QNumber(3)).get_constant(), QNumber(3));
  EXPECT_FALSE(kX.is_constant());
  EXPECT_EQ(kX.get_constant(), QNumber());
}

TEST(Polynomial, TermsThatCancelAreGone) {
  EXPECT_EQ(sum(kX, kX, -1), Polynomial());
  const Polynomial left = product(sum(kX, kY), sum(kX, kY, -1));
  const Polynomial right = sum(product(kX, kX), product(kY, kY), -1);
  EXPECT_EQ(left, right);
  EXPECT_EQ(left.get_terms().size(), 2U);
}

TEST(Polynomial, ProductsCommuteAndDistribute) {
  const Polynomial z = Polynomial::of_unknown(0);
  EXPECT_EQ(product(product(kX, kY), z), product(z, product(kY, kX)));
  EXPECT_EQ(product(z, sum(kX, kY)), sum(product(z, kX), product(kY, z)));
  EXPECT_EQ(product(kX, Polynomial()), Polynomial());
}

TEST(Polynomial, LargeProductsAreNone) {
  Polynomial power = kX;
  for (std::size_t degree = 2; degree <= Polynomial::kHighestDegree; ++degree)
    power = product(power, kX);
  EXPECT_FALSE(Polynomial::multiply(power, kX));
  Polynomial many;
  for (std::uint32_t i = 0; i < 12; ++i)
    many.add(Polynomial::of_unknown(i), QNumber(1));
  EXPECT_TRUE(Polynomial::multiply(many, many)) << "78 terms";
  many.add(Polynomial::of_unknown(12), QNumber(1));
  many.add(Polynomial::of_unknown(13), QNumber(1));
  many.add(Polynomial::of_unknown(14), QNumber(1));
  many.add(Polynomial::of_unknown(15), QNumber(1));
  EXPECT_FALSE(Polynomial::multiply(many, many)) << "136 terms";
}

}  // namespace
}  // namespace vorn::reals
