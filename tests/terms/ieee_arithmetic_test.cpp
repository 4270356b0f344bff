#include "vorn/terms/ieee_arithmetic.h"

#include <gmpxx.h>
#include <gtest/gtest.h>

#include <bit>
#include <cfenv>
#include <cmath>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include "vorn/terms/qnumber.h"

namespace vorn {
namespace {

using Mode = IEEEFloat::rounding_mode;
using Format = IEEEFloat::format;

constexpr Mode kModes[] = {Mode::nearest_even, Mode::toward_zero, Mode::plus_inf, Mode::minus_inf,
                           Mode::nearest_away};

enum class Operation { add, sub, mul, div };
constexpr Operation kOperations[] = {Operation::add, Operation::sub, Operation::mul,
                                     Operation::div};

IEEEFloat apply(Operation op, Mode mode, const IEEEFloat& a, const IEEEFloat& b) {
  switch (op) {
    case Operation::add:
      return ieee_add(mode, a, b);
    case Operation::sub:
      return ieee_sub(mode, a, b);
    case Operation::mul:
      return ieee_mul(mode, a, b);
    case Operation::div:
      break;
  }
  return ieee_div(mode, a, b);
}

// Against rationals -------------------------------------------------------------------------------

/// A float in the terms of the standard's text.
struct Operand {
  IEEEFloat number;
  bool nan, inf, negative;
  mpq_class value;  // of a finite one
};

std::vector<Operand> all_operands(Format f) {
  std::vector<Operand> result;
  for (std::int64_t bits = 0; bits < std::int64_t{1} << f.width(); ++bits) {
    const IEEEFloat x = IEEEFloat::from_bits(f, QNumber(bits));
    Operand operand{x, x.is_nan(), x.is_inf(), x.is_sign_set(), 0};
    if (!operand.nan && !operand.inf) {
      const QNumber value = x.get_value();
      operand.value = mpq_class(value.get_numerator(), value.get_denominator());
    }
    result.push_back(operand);
  }
  return result;
}

/// The result that IEEE 754-2019 asks for: clauses 6.1 to 6.3 for the special cases, the rounded
/// rational otherwise.
class Reference {
 public:
  explicit Reference(Format f) : fmt(f) {}

  QNumber result(Operation op, Mode mode, const Operand& a, Operand b) const {
    if (a.nan || b.nan) return nan();
    if (op == Operation::sub) {
      b.negative = !b.negative;
      b.value = -b.value;
      op = Operation::add;
    }
    if (op == Operation::add) return sum(mode, a, b);
    const bool negative = a.negative != b.negative;
    const bool a_zero = !a.inf && a.value == 0;
    const bool b_zero = !b.inf && b.value == 0;
    if (op == Operation::mul) {
      if ((a.inf && b_zero) || (a_zero && b.inf)) return nan();
      if (a.inf || b.inf) return inf(negative);
      return finite(mode, a.value * b.value, negative);
    }
    if ((a.inf && b.inf) || (a_zero && b_zero)) return nan();
    if (a.inf || b_zero) return inf(negative);
    if (b.inf) return finite(mode, 0, negative);
    return finite(mode, a.value / b.value, negative);
  }

 private:
  QNumber sum(Mode mode, const Operand& a, const Operand& b) const {
    if (a.inf && b.inf && a.negative != b.negative) return nan();
    if (a.inf) return inf(a.negative);
    if (b.inf) return inf(b.negative);
    const bool both = a.negative && b.negative;
    const bool either = a.negative || b.negative;
    return finite(mode, a.value + b.value, mode == Mode::minus_inf ? either : both);
  }

  /// `negative` is the sign of a zero.
  QNumber finite(Mode mode, const mpq_class& value, bool negative) const {
    IEEEFloat result(fmt, mode);
    if (value == 0) {
      result.self_zero(negative);
    } else {
      result.self_round(QNumber::from_mpz(value.get_num()) / QNumber::from_mpz(value.get_den()));
    }
    return result.get_bits();
  }

  QNumber nan() const { return IEEEFloat::make_nan(fmt).get_bits(); }
  QNumber inf(bool negative) const { return IEEEFloat::make_inf(fmt, negative).get_bits(); }

  Format fmt;
};

void check_pairs(Format f, std::size_t stride) {
  const std::vector<Operand> operands = all_operands(f);
  const Reference reference(f);
  std::size_t turn = 0;
  for (const Operand& a : operands) {
    for (const Operand& b : operands) {
      if (turn++ % stride != 0) continue;
      for (const Operation op : kOperations) {
        for (const Mode mode : kModes) {
          const IEEEFloat actual = apply(op, mode, a.number, b.number);
          ASSERT_EQ(actual.get_bits(), reference.result(op, mode, a, b))
              << "operation " << static_cast<int>(op) << ", mode " << static_cast<int>(mode)
              << " on " << a.number.get_bits().to_string(2) << " and "
              << b.number.get_bits().to_string(2);
          ASSERT_EQ(actual.get_format(), f);
        }
      }
    }
  }
}

TEST(IeeeArithmetic, EveryPairOfASmallFormatIsCorrectInEveryMode) {
  check_pairs({3, 3}, 1);
}

// The exponents differ by more than the significands are wide, so that sums are cut short.
TEST(IeeeArithmetic, OperandsFarApartAreCorrectInEveryMode) {
  check_pairs({5, 1}, 3);
  check_pairs({6, 2}, 67);
}

TEST(IeeeArithmetic, TheSmallestFormatsAreCorrect) {
  check_pairs({2, 1}, 1);
  check_pairs({2, 4}, 5);
}

TEST(IeeeArithmetic, ComparisonIsNumericWithEqualZerosAndUnorderedNans) {
  const std::vector<Operand> operands = all_operands({3, 3});
  const auto extended = [](const Operand& x) {
    return x.inf ? mpq_class(x.negative ? -1000000 : 1000000) : x.value;
  };
  for (const Operand& a : operands) {
    for (const Operand& b : operands) {
      const std::partial_ordering order = ieee_compare(a.number, b.number);
      if (a.nan || b.nan) {
        ASSERT_EQ(order, std::partial_ordering::unordered);
      } else {
        ASSERT_EQ(order, cmp(extended(a), extended(b)) <=> 0);
      }
    }
  }
}

TEST(IeeeArithmetic, NegationFlipsTheSignOfAllButNan) {
  for (const Operand& a : all_operands({3, 3})) {
    const IEEEFloat negated = ieee_neg(a.number);
    if (a.nan) {
      EXPECT_EQ(negated.get_bits(), QNumber(0b1111001));
    } else {
      EXPECT_EQ(negated.get_bits(), a.number.get_bits() + (a.negative ? -64 : 64));
    }
  }
}

TEST(IeeeArithmetic, CastsRoundTheValueAndKeepTheSignOfZeroAndInfinity) {
  const Format from = {3, 3};
  for (const Format to : {Format{2, 1}, Format{2, 5}, Format{3, 3}, Format{4, 2}, Format{5, 10}}) {
    for (const Operand& a : all_operands(from)) {
      for (const Mode mode : kModes) {
        const IEEEFloat actual = ieee_cast(to, mode, a.number);
        IEEEFloat expected(to, mode);
        if (a.nan) {
          expected.self_nan();
        } else if (a.inf) {
          expected.self_inf(a.negative);
        } else if (a.value == 0) {
          expected.self_zero(a.negative);
        } else {
          expected.self_round(a.number.get_value());
        }
        ASSERT_EQ(actual.get_bits(), expected.get_bits());
        ASSERT_EQ(actual.get_format(), to);
      }
    }
  }
}

TEST(IeeeArithmetic, IntegersRoundAsRationals) {
  for (const Mode mode : kModes) {
    for (int n = -300; n <= 300; ++n) {
      IEEEFloat expected({4, 3}, mode);
      expected.self_round(QNumber(n));
      EXPECT_EQ(ieee_from_integer({4, 3}, mode, QNumber(n)).get_bits(), expected.get_bits());
    }
    EXPECT_EQ(ieee_from_integer({4, 3}, mode, QNumber(0)).get_bits(), QNumber(0));
  }
}

TEST(IeeeArithmetic, WideExponentsCostNoMoreThanNarrowOnes) {
  const Format f = {60, 5};
  IEEEFloat largest(f, Mode::toward_zero);
  largest.self_round(false, 1, mpz_class(1) << 62, true);
  const IEEEFloat smallest = IEEEFloat::from_bits(f, QNumber(1));
  const IEEEFloat one = ieee_from_integer(f, Mode::nearest_even, QNumber(1));
  EXPECT_EQ(ieee_add(Mode::nearest_even, largest, smallest).get_bits(), largest.get_bits());
  EXPECT_TRUE(ieee_add(Mode::plus_inf, largest, smallest).is_inf());
  EXPECT_EQ(ieee_sub(Mode::toward_zero, one, smallest).get_bits(), one.get_bits() - 1);
  EXPECT_EQ(ieee_sub(Mode::nearest_even, one, smallest).get_bits(), one.get_bits());
  EXPECT_TRUE(ieee_mul(Mode::nearest_even, smallest, smallest).is_zero());
  EXPECT_TRUE(ieee_div(Mode::nearest_even, largest, smallest).is_inf());
  EXPECT_EQ(ieee_div(Mode::nearest_even, largest, largest).get_bits(), one.get_bits());
}

// Against the machine -----------------------------------------------------------------------------

/// Sets the machine's rounding mode while it lives.
class MachineMode {
 public:
  explicit MachineMode(Mode mode) : saved(std::fegetround()) {
    constexpr int modes[] = {FE_TONEAREST, FE_TOWARDZERO, FE_UPWARD, FE_DOWNWARD};
    std::fesetround(modes[static_cast<std::size_t>(mode)]);
  }
  ~MachineMode() { std::fesetround(saved); }
  MachineMode(const MachineMode&) = delete;
  MachineMode& operator=(const MachineMode&) = delete;

 private:
  int saved;
};

constexpr Mode kMachineModes[] = {Mode::nearest_even, Mode::toward_zero, Mode::plus_inf,
                                  Mode::minus_inf};

/// Computed where the compiler can neither fold nor move it.
template <typename Real>
[[gnu::noinline]] Real machine(Operation op, Mode mode, Real x, Real y) {
  const MachineMode guard(mode);
  const volatile Real a = x;
  const volatile Real b = y;
  volatile Real result = 0;
  switch (op) {
    case Operation::add:
      result = a + b;
      break;
    case Operation::sub:
      result = a - b;
      break;
    case Operation::mul:
      result = a * b;
      break;
    case Operation::div:
      result = a / b;
      break;
  }
  return result;
}

template <typename To, typename From>
[[gnu::noinline]] To machine_conversion(Mode mode, From x) {
  const MachineMode guard(mode);
  const volatile From a = x;
  const volatile To result = static_cast<To>(a);
  return result;
}

/// What joins a machine type to its format.
template <typename Real, typename Bits>
struct Machine {
  static IEEEFloat lift(Real x) {
    if (std::isnan(x)) return IEEEFloat::make_nan(fmt());
    return IEEEFloat::from_bits(fmt(), QNumber::from_mpz(mpz_class(std::bit_cast<Bits>(x))));
  }
  static Format fmt() { return sizeof(Real) == 4 ? Format{8, 23} : Format{11, 52}; }

  /// Any pattern; or one whose exponent is close to the middle; or one with few significant bits.
  static Real random_value(std::mt19937_64& random) {
    const auto m = static_cast<Bits>(fmt().m);
    const auto e = static_cast<Bits>(fmt().e);
    auto bits = static_cast<Bits>(random());
    switch (random() % 4) {
      case 0:
        break;
      case 1:
        bits = (bits >> (m + 1) << (m + 1)) | static_cast<Bits>(random() & 7);
        break;
      default: {
        const Bits one = ((Bits{1} << (e - 1)) - 1) << m;
        bits &= ~(((Bits{1} << e) - 1) << m);
        bits |= one + (static_cast<Bits>(random() % 60) << m);
        break;
      }
    }
    return std::bit_cast<Real>(bits);
  }

  static void check_arithmetic(std::uint64_t seed) {
    std::mt19937_64 random(seed);
    for (int i = 0; i < 8000; ++i) {
      const Real a = random_value(random);
      // Often a neighbour, for cancellation and quotients close to 1.
      const Real b = random() % 4 == 0
                         ? std::bit_cast<Real>(static_cast<Bits>(
                               std::bit_cast<Bits>(a) + static_cast<Bits>(random() % 5) - 2))
                         : random_value(random);
      for (const Operation op : kOperations) {
        for (const Mode mode : kMachineModes) {
          ASSERT_EQ(apply(op, mode, lift(a), lift(b)).get_bits(),
                    lift(machine(op, mode, a, b)).get_bits())
              << "operation " << static_cast<int>(op) << ", mode " << static_cast<int>(mode)
              << " on " << std::hexfloat << a << " and " << b;
        }
      }
      ASSERT_EQ(ieee_compare(lift(a), lift(b)), a <=> b);
    }
  }
};

using Single = Machine<float, std::uint32_t>;
using Double = Machine<double, std::uint64_t>;

TEST(IeeeArithmetic, SinglePrecisionAgreesWithTheMachine) {
  Single::check_arithmetic(1);
}

TEST(IeeeArithmetic, DoublePrecisionAgreesWithTheMachine) {
  Double::check_arithmetic(2);
}

TEST(IeeeArithmetic, ConversionsAgreeWithTheMachine) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 8000; ++i) {
    const float f = Single::random_value(random);
    const double d = i % 2 == 0 ? Double::random_value(random)
                                : static_cast<double>(f) * (1 + std::ldexp(1.0, -25));
    const auto n = static_cast<std::int64_t>(random()) >> (random() % 64);
    for (const Mode mode : kMachineModes) {
      ASSERT_EQ(ieee_cast({11, 52}, mode, Single::lift(f)).get_bits(),
                Double::lift(machine_conversion<double>(mode, f)).get_bits());
      ASSERT_EQ(ieee_cast({8, 23}, mode, Double::lift(d)).get_bits(),
                Single::lift(machine_conversion<float>(mode, d)).get_bits());
      ASSERT_EQ(ieee_from_integer({8, 23}, mode, QNumber(n)).get_bits(),
                Single::lift(machine_conversion<float>(mode, n)).get_bits());
      ASSERT_EQ(ieee_from_integer({11, 52}, mode, QNumber(n)).get_bits(),
                Double::lift(machine_conversion<double>(mode, n)).get_bits());
    }
  }
}

}  // namespace
}  // namespace vorn
