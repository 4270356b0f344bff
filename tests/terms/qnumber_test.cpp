#include "vorn/terms/qnumber.h"

#include <gmpxx.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numeric>
#include <ostream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vorn {
namespace {

constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();

mpq_class value_of(const QNumber& x) {
  return mpq_class(x.get_numerator(), x.get_denominator());
}

/// What is wrong with the representation of `x`; empty when all is well.
std::string broken_invariant(const QNumber& x) {
  const mpz_class n = x.get_numerator();
  const mpz_class d = x.get_denominator();
  if (d <= 0) return "the denominator is not positive";
  if (gcd(n, d) != 1) return "not in lowest terms";
  if (!x.is_big() && (!n.fits_slong_p() || !d.fits_slong_p())) return "too big for the small form";
  if (!x.is_big() && n == kMin) return "-2^63 in the small form";
  return "";
}

void expect_number(const QNumber& x, const mpq_class& value, bool big) {
  EXPECT_EQ(broken_invariant(x), "");
  EXPECT_EQ(value_of(x), value);
  EXPECT_EQ(x.is_big(), big);
}

mpz_class power(unsigned n) {
  return mpz_class(1) << n;
}

/// `x` in the big form, whatever its value.
QNumber as_big(const QNumber& x) {
  QNumber result(power(100), mpz_class(1));
  result = x;
  return result;
}

// Construction ----------------------------------------------------------------------------------

TEST(QNumber, IsTwoMachineWords) {
  EXPECT_EQ(sizeof(QNumber), 16U);
}

TEST(QNumber, IsZeroByDefault) {
  expect_number(QNumber(), 0, false);
}

TEST(QNumber, MachineIntegersAreSmallExceptTheMostNegative) {
  expect_number(QNumber(kMax), mpq_class(kMax), false);
  expect_number(QNumber(-kMax), mpq_class(-kMax), false);
  expect_number(QNumber(kMin), mpq_class(kMin), true);
}

TEST(QNumber, FractionOfSmallIntegersIsNormalised) {
  expect_number(QNumber(mpz_class(6), mpz_class(-4)), mpq_class(-3, 2), false);
  expect_number(QNumber(mpz_class(-6), mpz_class(-4)), mpq_class(3, 2), false);
  expect_number(QNumber(mpz_class(0), mpz_class(-4)), 0, false);
  expect_number(QNumber(mpz_class(7), mpz_class(-1)), -7, false);
}

TEST(QNumber, FractionWhosePartsDoNotFitAnIntIsBig) {
  expect_number(QNumber(power(40), mpz_class(1)), mpq_class(power(40)), true);
  expect_number(QNumber(mpz_class(1), power(40)), mpq_class(mpz_class(1), power(40)), true);
  expect_number(QNumber(power(31), mpz_class(1)), mpq_class(power(31)), true);
  expect_number(QNumber(mpz_class(power(31) - 1), mpz_class(1)), mpq_class(power(31) - 1), false);
  expect_number(QNumber(mpz_class(-power(31)), mpz_class(-1)), mpq_class(power(31)), false);
  expect_number(QNumber(mpz_class(1), mpz_class(-power(31))), mpq_class(-1, power(31)), false);
}

TEST(QNumber, BigFractionIsNormalisedAndStaysBig) {
  expect_number(QNumber(mpz_class(6 * power(40)), mpz_class(-4 * power(40))), mpq_class(-3, 2),
                true);
  expect_number(QNumber(mpz_class(0), power(40)), 0, true);
  expect_number(QNumber(power(40), mpz_class(-1)), mpq_class(-power(40)), true);
}

TEST(QNumber, FromMpzIsSmallWithinTheSymmetricWordRange) {
  expect_number(QNumber::from_mpz(power(40)), mpq_class(power(40)), false);
  expect_number(QNumber::from_mpz(mpz_class(power(63) - 1)), mpq_class(kMax), false);
  expect_number(QNumber::from_mpz(power(63)), mpq_class(power(63)), true);
  expect_number(QNumber::from_mpz(mpz_class(-power(63))), mpq_class(kMin), true);
  expect_number(QNumber::from_mpz(mpz_class(1 - power(63))), mpq_class(-kMax), false);
}

// Assignment ------------------------------------------------------------------------------------

TEST(QNumber, AssignmentKeepsABigTargetBig) {
  const QNumber small(5);
  const QNumber big(power(80), mpz_class(3));
  QNumber x(1);
  x = small;
  expect_number(x, 5, false);
  x = big;
  expect_number(x, mpq_class(power(80), 3), true);
  x = QNumber(power(90), mpz_class(1));
  expect_number(x, mpq_class(power(90)), true);
  x = small;
  expect_number(x, 5, true);
  x = QNumber(mpz_class(1), mpz_class(7));
  expect_number(x, mpq_class(1, 7), true);
  x = as_big(QNumber(2));
  expect_number(x, 2, true);
}

TEST(QNumber, AssignmentToItselfKeepsTheValue) {
  QNumber small(5);
  QNumber big(power(80), mpz_class(3));
  const QNumber& same_small = small;
  const QNumber& same_big = big;
  small = same_small;
  big = same_big;
  expect_number(small, 5, false);
  expect_number(big, mpq_class(power(80), 3), true);
}

TEST(QNumber, CopiesAreDeep) {
  QNumber x(power(80), mpz_class(1));
  QNumber copy(x);
  QNumber assigned;
  assigned = x;
  x += 1;
  expect_number(copy, mpq_class(power(80)), true);
  expect_number(assigned, mpq_class(power(80)), true);
  copy = x;
  x += 1;
  expect_number(copy, mpq_class(power(80) + 1), true);
}

TEST(QNumber, MovingTakesTheValue) {
  QNumber x(power(80), mpz_class(1));
  QNumber y(std::move(x));
  expect_number(y, mpq_class(power(80)), true);
  QNumber z(3);
  z = std::move(y);
  expect_number(z, mpq_class(power(80)), true);
}

// Addition and its neighbours -------------------------------------------------------------------

TEST(QNumber, PassingTheLargestWordMakesTheNumberBigForGood) {
  QNumber x(kMax);
  x += 1;
  expect_number(x, mpq_class(power(63)), true);
  x -= QNumber(1);
  expect_number(x, mpq_class(kMax), true);
}

TEST(QNumber, TheMostNegativeWordIsNeverReachedInTheSmallForm) {
  QNumber x(-kMax);
  x += -1;
  expect_number(x, mpq_class(kMin), true);
  QNumber y(-kMax);
  y -= QNumber(1);
  expect_number(y, mpq_class(kMin), true);
  QNumber z(-(std::int64_t{1} << 62));
  z *= QNumber(2);
  expect_number(z, mpq_class(kMin), true);
}

TEST(QNumber, AddingTheMostNegativeWordPromotes) {
  QNumber x(1);
  x += kMin;
  expect_number(x, mpq_class(-kMax), true);
}

TEST(QNumber, FractionsAddInLowestTerms) {
  expect_number(QNumber(mpz_class(1), mpz_class(6)) + QNumber(mpz_class(1), mpz_class(10)),
                mpq_class(4, 15), false);
  expect_number(QNumber(mpz_class(1), mpz_class(6)) - QNumber(mpz_class(1), mpz_class(6)), 0,
                false);
  expect_number(QNumber(mpz_class(1), mpz_class(2)) + QNumber(mpz_class(1), mpz_class(2)), 1,
                false);
}

TEST(QNumber, ADenominatorThatOutgrowsAWordPromotes) {
  const QNumber third = QNumber(1) / QNumber((std::int64_t{1} << 40) + 1);
  const QNumber fifth = QNumber(1) / QNumber((std::int64_t{1} << 40) - 1);
  ASSERT_FALSE(third.is_big());
  const QNumber sum = third + fifth;
  expect_number(sum, value_of(third) + value_of(fifth), true);
}

TEST(QNumber, OperatorsLeaveTheirOperandsAlone) {
  const QNumber a(power(70), mpz_class(1));
  const QNumber b(3);
  expect_number(a + 5, mpq_class(power(70) + 5), true);
  expect_number(a - b, mpq_class(power(70) - 3), true);
  expect_number(b - a, mpq_class(3 - power(70)), true);
  expect_number(a * b, mpq_class(3 * power(70)), true);
  expect_number(b / a, mpq_class(3, power(70)), true);
  expect_number(a, mpq_class(power(70)), true);
  expect_number(b, 3, false);
}

TEST(QNumber, NegationKeepsTheForm) {
  expect_number(QNumber(5).neg(), -5, false);
  expect_number(QNumber(kMax).neg(), mpq_class(-kMax), false);
  expect_number(QNumber().neg(), 0, false);
  expect_number(QNumber(mpz_class(-2), mpz_class(3)).neg(), mpq_class(2, 3), false);
  expect_number(QNumber(kMin).neg(), mpq_class(power(63)), true);
  expect_number(as_big(QNumber(5)).neg(), -5, true);
}

TEST(QNumber, NormalizeKeepsANormalNumber) {
  for (QNumber x : {QNumber(), QNumber(-3), QNumber(mpz_class(2), mpz_class(3)),
                    as_big(QNumber(mpz_class(-2), mpz_class(3))), as_big(QNumber())}) {
    const mpq_class before = value_of(x);
    const bool big = x.is_big();
    x.normalize();
    expect_number(x, before, big);
  }
}

TEST(QNumber, DivisionByZeroThrowsInEitherFormAndChangesNothing) {
  QNumber x(5);
  EXPECT_THROW(x /= QNumber(), std::domain_error);
  EXPECT_THROW(x /= as_big(QNumber()), std::domain_error);
  expect_number(x, 5, false);
}

TEST(QNumber, SmallGcdsAreRightInBothOrders) {
  // Twice, so that the second round answers from the table.
  for (int round = 0; round < 2; ++round) {
    for (std::int64_t a = 0; a < 1100; a += round == 0 ? 1 : 7) {
      for (const std::int64_t b : {1, 2, 6, 36, 511, 1000, 1023, 1024, 1025}) {
        const QNumber x(mpz_class(static_cast<long>(a)), mpz_class(static_cast<long>(b)));
        const std::int64_t g = std::gcd(a, b);
        ASSERT_EQ(x.get_numerator(), a / g) << a << "/" << b;
        ASSERT_EQ(x.get_denominator(), b / g) << a << "/" << b;
      }
    }
  }
}

// Inspection ------------------------------------------------------------------------------------

TEST(QNumber, MachineIntegersAreReadBackFromBothForms) {
  std::int64_t value = 0;
  EXPECT_TRUE(QNumber(-7).get_int64(&value));
  EXPECT_EQ(value, -7);
  EXPECT_TRUE(as_big(QNumber(kMax)).get_int64(&value));
  EXPECT_EQ(value, kMax);
  EXPECT_FALSE(QNumber(kMin).get_int64(&value));
  EXPECT_FALSE(QNumber(power(63), mpz_class(1)).get_int64(&value));
  EXPECT_FALSE(QNumber(mpz_class(1), mpz_class(2)).get_int64(&value));
  EXPECT_FALSE(QNumber(mpz_class(1), power(40)).get_int64(&value));
}

TEST(QNumber, BitsAreThoseOfTheBinaryRepresentation) {
  const QNumber x(mpz_class(power(70) + 5), mpz_class(1));
  for (const std::uint64_t i : {0, 1, 2, 3, 63, 64, 69, 70, 71, 1000}) {
    EXPECT_EQ(x.test_bit(i), i == 0 || i == 2 || i == 70) << i;
    EXPECT_EQ(QNumber(5).test_bit(i), i == 0 || i == 2) << i;
  }
}

TEST(QNumber, EqualNumbersHashAlikeInBothForms) {
  for (const std::int64_t n : {std::int64_t{0}, std::int64_t{1}, std::int64_t{-1}, kMax, -kMax}) {
    EXPECT_EQ(QNumber(n).hash(), as_big(QNumber(n)).hash()) << n;
  }
  const QNumber third(mpz_class(-1), mpz_class(3));
  EXPECT_EQ(third.hash(), as_big(third).hash());
  EXPECT_NE(QNumber(1).hash(), QNumber(-1).hash());
}

// Text ------------------------------------------------------------------------------------------

TEST(QNumber, PrintsIntegersAndFractionsInAnyBase) {
  EXPECT_EQ(QNumber().to_string(), "0");
  EXPECT_EQ(QNumber(-12).to_string(), "-12");
  EXPECT_EQ(QNumber(mpz_class(-6), mpz_class(4)).to_string(), "-3/2");
  EXPECT_EQ(QNumber(kMin).to_string(), "-9223372036854775808");
  EXPECT_EQ(QNumber(255).to_string(16), "ff");
  EXPECT_EQ(QNumber(5).to_string(2), "101");
  EXPECT_EQ(as_big(QNumber(35)).to_string(36), "z");
}

TEST(QNumber, ReadsIntegersFractionsAndDecimals) {
  const std::pair<const char*, mpq_class> cases[] = {
      {"0", 0},
      {"-12", -12},
      {"007", 7},
      {"-0", 0},
      {"3/4", mpq_class(3, 4)},
      {"-6/4", mpq_class(-3, 2)},
      {"0/5", 0},
      {"-1.25", mpq_class(-5, 4)},
      {"0.1", mpq_class(1, 10)},
      {"1.000", 1},
      {"-9223372036854775808", mpq_class(kMin)},
      {"9223372036854775808", mpq_class(power(63))},
  };
  for (const auto& [text, value] : cases) {
    const QNumber x = QNumber::from_string(text);
    EXPECT_EQ(value_of(x), value) << text;
    EXPECT_EQ(broken_invariant(x), "") << text;
  }
  EXPECT_EQ(QNumber::from_string("ff", 16), QNumber(255));
  EXPECT_EQ(QNumber::from_string("FF", 16), QNumber(255));
  EXPECT_EQ(QNumber::from_string("101/10", 2), QNumber(mpz_class(5), mpz_class(2)));
}

TEST(QNumber, TextThatIsNoNumberIsRefusedByName) {
  for (const char* text :
       {"",     "-",    "+5",    "--5",   " 5",    "5 ",   "1 2",  "x",     "12a",
        "0x1f", "/",    "1/",    "/2",    "1/0",   "1/-2", "1/+2", "1/2/3", "1.",
        ".5",   "1.-5", "1.2.3", "1.5/2", "1/2.5", "1e5",  "."}) {
    try {
      QNumber::from_string(text);
      ADD_FAILURE() << "accepted \"" << text << "\"";
    } catch (const std::invalid_argument& error) {
      EXPECT_NE(std::string(error.what()).find("\"" + std::string(text) + "\""), std::string::npos);
    }
  }
  EXPECT_THROW(QNumber::from_string("2", 2), std::invalid_argument);
  EXPECT_THROW(QNumber::from_string("1.1", 2), std::invalid_argument);
}

// Every operation against GMP's rationals -------------------------------------------------------

/// A number with the rational that it must stand for.
struct Checked {
  QNumber number;
  mpq_class value;
};

constexpr std::size_t kOperations = 16;

/// Applies operation `op` to x and y, both as numbers and as rationals, and says what is wrong.
/// The two may be the same object.
std::string step(std::size_t op, std::int64_t n, Checked& x, Checked& y) {
  const bool was_big = x.number.is_big();
  const bool other_big = y.number.is_big();
  const mpq_class operand = y.value;
  bool stays_big = was_big;
  switch (op) {
    case 0:
      x.number += y.number;
      x.value += operand;
      break;
    case 1:
      x.number -= y.number;
      x.value -= operand;
      break;
    case 2:
      x.number *= y.number;
      x.value *= operand;
      break;
    case 3:
      if (operand == 0) break;
      x.number /= y.number;
      x.value /= operand;
      break;
    case 4:
      x.number = x.number.neg();
      x.value = -x.value;
      if (x.number.is_big() != was_big) return "negation changed the form";
      break;
    case 5:
      x.number = y.number;
      x.value = operand;
      stays_big = was_big || other_big;
      break;
    case 6:
      x.number += n;
      x.value += mpq_class(n);
      break;
    case 7:
      x.number += x.number;
      x.value += mpq_class(x.value);
      break;
    case 8:
      x.number -= x.number;
      x.value = 0;
      break;
    case 9:
      x.number *= x.number;
      x.value *= mpq_class(x.value);
      break;
    case 10:
      if (x.value == 0) break;
      x.number /= x.number;
      x.value = 1;
      break;
    case 11: {
      const int base = 2 + static_cast<int>(static_cast<std::uint64_t>(n) % 35);
      const std::string text = x.number.to_string(base);
      const QNumber back = QNumber::from_string(text, base);
      if (text != x.value.get_str(base)) return "printed as " + text;
      if (!(back == x.number) || !broken_invariant(back).empty()) return "read back wrongly";
      break;
    }
    case 12: {
      const int order = cmp(x.value, operand);
      if ((x.number <=> y.number) != (order <=> 0)) return "ordered wrongly";
      if ((x.number == y.number) != (order == 0)) return "equal wrongly";
      if (order == 0 && x.number.hash() != y.number.hash()) return "equal, but hashes differ";
      break;
    }
    case 13: {
      QNumber copy(x.number);
      QNumber moved(std::move(copy));
      x.number = std::move(moved);
      break;
    }
    case 14: {
      const QNumber results[] = {x.number + y.number, x.number - y.number, x.number * y.number,
                                 x.number + n};
      const mpq_class values[] = {x.value + operand, x.value - operand, x.value * operand,
                                  x.value + mpq_class(n)};
      for (std::size_t i = 0; i < 4; ++i) {
        if (value_of(results[i]) != values[i]) return "a free operator computed a wrong value";
        if (!broken_invariant(results[i]).empty()) return broken_invariant(results[i]);
      }
      break;
    }
    case 15:
      if (x.number.sign() != sgn(x.value)) return "wrong sign";
      if (x.number.is_integer() != (x.value.get_den() == 1)) return "wrongly an integer";
      break;
    default:
      break;
  }
  if (stays_big && !x.number.is_big()) return "a big value became small";
  if (value_of(x.number) != x.value) return "wrong value " + x.number.to_string();
  return broken_invariant(x.number);
}

/// The integers around which words and half words end.
const std::array<mpz_class, 7>& centres() {
  static const std::array<mpz_class, 7> table = {0,
                                                 power(31),
                                                 mpz_class(-power(31)),
                                                 power(62),
                                                 mpz_class(-power(62)),
                                                 power(63),
                                                 mpz_class(-power(63))};
  return table;
}

/// The fraction num/den (num when den is 0), small if it fits unless `big`.
Checked operand(const mpz_class& num, const mpz_class& den, bool big) {
  Checked result;
  result.value = mpq_class(num, den == 0 ? mpz_class(1) : den);
  result.value.canonicalize();
  result.number = QNumber::from_mpz(result.value.get_num());
  result.number /= QNumber::from_mpz(result.value.get_den());
  if (big) result.number = as_big(result.number);
  return result;
}

TEST(QNumber, EveryOperationIsExactOnEveryPairOfBoundaryOperands) {
  std::vector<Checked> operands;
  for (const mpz_class& centre : centres()) {
    for (const long offset : {-1, 0, 1}) {
      const mpz_class n = centre + offset;
      for (const bool big : {false, true}) {
        operands.push_back(operand(n, 1, big));
        if (offset == 0) operands.push_back(operand(n, 3, big));
        if (n != 0) operands.push_back(operand(6, n, big));
      }
    }
  }
  for (const Checked& left : operands) {
    for (const Checked& right : operands) {
      for (std::size_t op = 0; op < kOperations; ++op) {
        Checked x = left;
        Checked y = right;
        const std::string wrong = step(op, kMax - static_cast<std::int64_t>(op), x, y);
        ASSERT_EQ(wrong, "") << "operation " << op << " on " << left.value << " ("
                             << left.number.is_big() << ") and " << right.value << " ("
                             << right.number.is_big() << ")";
        ASSERT_EQ(value_of(y.number), right.value);
      }
    }
  }
}

/// One step of a random program over a few registers.
struct Step {
  std::size_t op;
  std::size_t target;
  std::size_t source;
  std::size_t num_centre;
  std::size_t den_centre;
  std::int64_t num_offset;
  std::int64_t den_offset;
  bool big;
};

std::ostream& operator<<(std::ostream& out, const Step& s) {
  return out << "{op " << s.op << ", r" << s.target << ", r" << s.source << ", num " << s.num_centre
             << (s.num_offset < 0 ? "" : "+") << s.num_offset << ", den " << s.den_centre
             << (s.den_offset < 0 ? "" : "+") << s.den_offset << (s.big ? ", big}" : "}");
}

rc::Gen<std::int64_t> offsets() {
  return rc::gen::oneOf(rc::gen::inRange<std::int64_t>(-3, 4),
                        rc::gen::inRange<std::int64_t>(-2000, 2000),
                        rc::gen::arbitrary<std::int64_t>());
}

rc::Gen<Step> steps() {
  return rc::gen::build<Step>(
      rc::gen::set(&Step::op, rc::gen::inRange<std::size_t>(0, kOperations + 4)),
      rc::gen::set(&Step::target, rc::gen::inRange<std::size_t>(0, 3)),
      rc::gen::set(&Step::source, rc::gen::inRange<std::size_t>(0, 3)),
      rc::gen::set(&Step::num_centre, rc::gen::inRange<std::size_t>(0, centres().size())),
      rc::gen::set(&Step::den_centre, rc::gen::inRange<std::size_t>(0, centres().size())),
      rc::gen::set(&Step::num_offset, offsets()), rc::gen::set(&Step::den_offset, offsets()),
      rc::gen::set(&Step::big, rc::gen::arbitrary<bool>()));
}

TEST(QNumber, RandomProgramsComputeTheRationalsThatGmpDoes) {
  const bool holds = rc::check("random programs over three registers", [](std::uint64_t seed) {
    // The list is what shrinks; its length is chosen here, since a list of the default size
    // would be too short for values to grow.
    std::mt19937_64 random(seed);
    const auto program = *rc::gen::container<std::vector<Step>>(100 + random() % 900, steps());
    std::array<Checked, 3> registers;
    for (const Step& s : program) {
      Checked& x = registers[s.target];
      if (s.op >= kOperations || mpz_sizeinbase(x.value.get_num().get_mpz_t(), 2) > 500 ||
          mpz_sizeinbase(x.value.get_den().get_mpz_t(), 2) > 500) {
        x = Checked();
        Checked fresh = operand(centres()[s.num_centre] + mpz_class(s.num_offset),
                                centres()[s.den_centre] + mpz_class(s.den_offset), s.big);
        x.value = fresh.value;
        // Registers keep their form under assignment: start a fresh one.
        QNumber(fresh.number).swap(x.number);
      }
      const std::string wrong = step(s.op, s.num_offset, x, registers[s.source]);
      if (!wrong.empty()) RC_FAIL(wrong);
    }
  });
  ASSERT_TRUE(holds);
}

TEST(QNumber, RefusesTextWithAnythingBehindTheNumber) {
  EXPECT_THROW(QNumber::from_string(std::string_view("12\0junk", 7)), std::invalid_argument);
  EXPECT_THROW(QNumber::from_string("-.5"), std::invalid_argument);
}

}  // namespace
}  // namespace vorn
