#include "vorn/terms/bv_number.h"

#include <gmpxx.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "vorn/terms/qnumber.h"

namespace vorn::BVNumber {
namespace {

mpz_class power(std::uint64_t n) {
  return mpz_class(1) << n;
}

mpz_class reduced(const mpz_class& x, std::uint64_t width) {
  mpz_class r;
  mpz_fdiv_r(r.get_mpz_t(), x.get_mpz_t(), power(width).get_mpz_t());
  return r;
}

mpz_class signed_reading(const mpz_class& x, std::uint64_t width) {
  return x >= power(width - 1) ? mpz_class(x - power(width)) : x;
}

QNumber as_big(const mpz_class& x) {
  QNumber result(power(300), mpz_class(1));
  result = QNumber::from_mpz(x);
  return result;
}

std::uint64_t below(std::uint64_t n, gmp_randclass& random) {
  const mpz_class x = random.get_z_range(n);
  return x.get_ui();
}

const std::uint64_t kWidths[] = {1, 2, 3, 7, 31, 32, 33, 61, 62, 63, 64, 65, 127, 128, 129, 200};

std::vector<mpz_class> samples(std::uint64_t width, gmp_randclass& random) {
  const mpz_class top = power(width - 1);
  std::vector<mpz_class> values = {0,
                                   1,
                                   2,
                                   3,
                                   width - 1,
                                   width,
                                   width + 1,
                                   mpz_class(top - 1),
                                   top,
                                   mpz_class(top + 1),
                                   mpz_class(power(width) - 2),
                                   mpz_class(power(width) - 1)};
  for (int i = 0; i < 10; ++i) {
    values.push_back(random.get_z_bits(width));
    values.push_back(random.get_z_bits(below(width, random)));
  }
  for (mpz_class& value : values)
    value = reduced(value, width);
  return values;
}

// The two pinned functions ----------------------------------------------------------------------

TEST(BVNumber, PowersOfTwoAreSmallUpTo62) {
  for (std::uint64_t n = 0; n < 200; ++n) {
    QNumber x;
    pow2(n, &x);
    EXPECT_EQ(x.get_numerator(), power(n));
    EXPECT_EQ(x.get_denominator(), 1);
    EXPECT_EQ(x.is_big(), n > 62) << n;
  }
}

TEST(BVNumber, APowerUpTo61LeavesABigTargetBig) {
  for (const std::uint64_t n : {0, 3, 61}) {
    QNumber x(power(80), mpz_class(3));
    pow2(n, &x);
    EXPECT_TRUE(x.is_big());
    EXPECT_EQ(x.get_numerator(), power(n));
    EXPECT_EQ(x.get_denominator(), 1);
  }
}

TEST(BVNumber, ThePower62MakesABigTargetSmall) {
  QNumber x(power(80), mpz_class(3));
  pow2(62, &x);
  EXPECT_FALSE(x.is_big());
  EXPECT_EQ(x, QNumber(std::int64_t{1} << 62));
}

TEST(BVNumber, APowerReplacesAFraction) {
  QNumber x(mpz_class(1), mpz_class(3));
  pow2(4, &x);
  EXPECT_EQ(x, QNumber(16));
  x = QNumber(mpz_class(1), mpz_class(3));
  pow2(64, &x);
  EXPECT_EQ(x.to_string(), "18446744073709551616");
}

TEST(BVNumber, TwosComplementAddsThePowerToNegativeNumbersOnly) {
  const auto of = [](std::int64_t x, std::uint64_t width) {
    QNumber out;
    twos_complement(QNumber(x), width, &out);
    return out;
  };
  EXPECT_EQ(of(-1, 8), QNumber(255));
  EXPECT_EQ(of(-128, 8), QNumber(128));
  EXPECT_EQ(of(0, 8), QNumber(0));
  EXPECT_EQ(of(5, 8), QNumber(5));
  EXPECT_EQ(of(300, 8), QNumber(300)) << "values are not reduced";
  EXPECT_EQ(of(-300, 8), QNumber(-44)) << "values below the range stay negative";
  EXPECT_EQ(of(-1, 64).to_string(), "18446744073709551615");
}

TEST(BVNumber, TwosComplementWorksInPlaceAndOnBigNumbers) {
  QNumber x(-7);
  twos_complement(x, 4, &x);
  EXPECT_EQ(x, QNumber(9));

  QNumber big = as_big(-7);
  twos_complement(big, 4, &big);
  EXPECT_EQ(big, QNumber(9));
  EXPECT_TRUE(big.is_big());

  QNumber out;
  twos_complement(as_big(3), 4, &out);
  EXPECT_EQ(out, QNumber(3));
}

// Bit-vector arithmetic against plain integers ----------------------------------------------------

TEST(BVNumber, ModuloTakesAnyIntegerIntoTheRange) {
  gmp_randclass random(gmp_randinit_default);
  for (const std::uint64_t width : kWidths) {
    for (const mpz_class& value : samples(width + 3, random)) {
      for (const mpz_class& x : {value, mpz_class(-value)}) {
        EXPECT_EQ(modulo(QNumber::from_mpz(x), width).get_numerator(), reduced(x, width));
        EXPECT_EQ(modulo(as_big(x), width).get_numerator(), reduced(x, width));
      }
    }
  }
}

TEST(BVNumber, BitLengthCountsSignificantBits) {
  EXPECT_EQ(bit_length(QNumber()), 0U);
  EXPECT_EQ(bit_length(as_big(0)), 0U);
  for (const std::uint64_t width : kWidths) {
    EXPECT_EQ(bit_length(QNumber::from_mpz(power(width - 1))), width);
    EXPECT_EQ(bit_length(QNumber::from_mpz(mpz_class(power(width) - 1))), width);
    EXPECT_EQ(bit_length(as_big(mpz_class(power(width) - 1))), width);
  }
}

/// Checks every operation on two values given in the forms that `form` makes.
template <typename Form>
void check_operations(std::uint64_t w, const mpz_class& x, const mpz_class& y, Form form) {
  SCOPED_TRACE(std::to_string(w) + " bits, " + x.get_str() + ", " + y.get_str());
  const QNumber a = form(x);
  const QNumber b = form(y);
  const mpz_class ones = power(w) - 1;
  const mpz_class sx = signed_reading(x, w);
  const mpz_class sy = signed_reading(y, w);
  const auto expect = [w](const QNumber& result, const mpz_class& value, const char* operation) {
    EXPECT_EQ(result.get_numerator(), reduced(value, w)) << operation;
    EXPECT_EQ(result.get_denominator(), 1) << operation;
  };

  expect(bv_not(a, w), ones - x, "not");
  expect(bv_neg(a, w), -x, "neg");
  expect(bv_and(a, b), x & y, "and");
  expect(bv_or(a, b), x | y, "or");
  expect(bv_xor(a, b), x ^ y, "xor");
  expect(bv_add(a, b, w), x + y, "add");
  expect(bv_sub(a, b, w), x - y, "sub");
  expect(bv_mul(a, b, w), x * y, "mul");
  EXPECT_EQ(to_signed(a, w).get_numerator(), sx);
  EXPECT_EQ(bv_slt(a, b, w), sx < sy);

  // mpz_class divides toward zero, with the remainder's sign that of the dividend.
  expect(bv_udiv(a, b, w), y == 0 ? ones : mpz_class(x / y), "udiv");
  expect(bv_urem(a, b), y == 0 ? x : mpz_class(x % y), "urem");
  const mpz_class by_zero = sx < 0 ? mpz_class(1) : ones;
  expect(bv_sdiv(a, b, w), sy == 0 ? by_zero : mpz_class(sx / sy), "sdiv");
  expect(bv_srem(a, b, w), sy == 0 ? sx : mpz_class(sx % sy), "srem");
  mpz_class modulus = sx;
  if (sy != 0) mpz_fdiv_r(modulus.get_mpz_t(), sx.get_mpz_t(), sy.get_mpz_t());
  expect(bv_smod(a, b, w), modulus, "smod");

  const bool all_out = y >= mpz_class(w);
  const std::uint64_t n = all_out ? w : y.get_ui();
  expect(bv_shl(a, b, w), all_out ? mpz_class(0) : mpz_class(x << n), "shl");
  expect(bv_lshr(a, b, w), x >> n, "lshr");
  expect(bv_ashr(a, b, w), sx >> n, "ashr");
}

TEST(BVNumber, OperationsAreThoseOfIntegersModuloThePower) {
  gmp_randclass random(gmp_randinit_default);
  for (const std::uint64_t width : kWidths) {
    const std::vector<mpz_class> values = samples(width, random);
    for (const mpz_class& x : values) {
      for (const mpz_class& y : values) {
        check_operations(width, x, y, [](const mpz_class& z) { return QNumber::from_mpz(z); });
        if (HasFailure()) return;
      }
      check_operations(width, x, values.back(), as_big);
      check_operations(width, x, mpz_class(0), as_big);
    }
  }
}

TEST(BVNumber, OperationsAreRightOnEveryPairOfThreeBits) {
  for (int x = 0; x < 8; ++x) {
    for (int y = 0; y < 8; ++y) {
      check_operations(3, x, y, [](const mpz_class& z) { return QNumber::from_mpz(z); });
      check_operations(3, x, y, as_big);
    }
  }
}

TEST(BVNumber, ExtractionTakesTheBitsBetween) {
  gmp_randclass random(gmp_randinit_default);
  for (const std::uint64_t width : kWidths) {
    for (const mpz_class& x : samples(width, random)) {
      for (int i = 0; i < 10; ++i) {
        const std::uint64_t msb = below(width, random);
        const std::uint64_t lsb = below(msb + 1, random);
        const mpz_class expected = reduced(x >> lsb, msb - lsb + 1);
        EXPECT_EQ(bv_extract(msb, lsb, QNumber::from_mpz(x)).get_numerator(), expected)
            << x << " [" << msb << ":" << lsb << "]";
        EXPECT_EQ(bv_extract(msb, lsb, as_big(x)).get_numerator(), expected)
            << x << " [" << msb << ":" << lsb << "]";
      }
    }
  }
}

TEST(BVNumber, ConcatenationAndSignExtensionPlaceTheHighPart) {
  gmp_randclass random(gmp_randinit_default);
  for (const std::uint64_t high : {1, 5, 30, 62, 64, 70}) {
    for (const std::uint64_t low : {1, 5, 32, 61, 62, 63, 64, 65}) {
      for (const mpz_class& a : samples(high, random)) {
        const mpz_class b = random.get_z_bits(low);
        const mpz_class joined = (a << low) + b;
        EXPECT_EQ(bv_concat(QNumber::from_mpz(a), QNumber::from_mpz(b), low).get_numerator(),
                  joined);
        EXPECT_EQ(bv_concat(as_big(a), as_big(b), low).get_numerator(), joined);
        const mpz_class extended = reduced(signed_reading(a, high), high + low);
        EXPECT_EQ(bv_sign_extend(QNumber::from_mpz(a), low, high).get_numerator(), extended);
        EXPECT_EQ(bv_sign_extend(QNumber::from_mpz(a), 0, high).get_numerator(), a);
      }
    }
  }
}

TEST(BVNumber, AllOnesIsThePowerLessOne) {
  EXPECT_EQ(all_ones(0), QNumber(0));
  for (const std::uint64_t width : kWidths) {
    EXPECT_EQ(all_ones(width).get_numerator(), power(width) - 1);
  }
}

}  // namespace
}  // namespace vorn::BVNumber
