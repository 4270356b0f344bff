// The values of the base encoder's circuits, folded from literals: against a concrete model of the
// circuits everywhere, and against IEEE 754 outside the departures.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/fp/folded_operation.h"
#include "tests/oracle/base_model.h"
#include "tests/oracle/departures.h"
#include "tests/oracle/ieee_oracle.h"
#include "tests/oracle/random_operands.h"

namespace vorn::fp {
namespace {

using oracle::Bits;
using oracle::Departures;
using oracle::RoundingMode;

oracle::Format plain(IEEEFloat::format f) {
  return {static_cast<unsigned>(f.e), static_cast<unsigned>(f.m)};
}

IEEEFloat::rounding_mode mode_of(RoundingMode rm) {
  return static_cast<IEEEFloat::rounding_mode>(rm);
}

struct Binary {
  const char* name;
  OperationCircuit::Build build;
  Bits (*model)(RoundingMode, oracle::Format, const Bits&, const Bits&, bool);
  Bits (*ieee)(RoundingMode, oracle::Format, const Bits&, const Bits&);
  Departures (*departures)(RoundingMode, oracle::Format, const Bits&, const Bits&);
};

constexpr Binary kBinary[] = {
    {"add", build::add, oracle::base::add, oracle::ieee::add, oracle::departures::add},
    {"sub", build::sub, oracle::base::sub, oracle::ieee::sub, oracle::departures::sub},
    {"mul", build::mul, oracle::base::mul, oracle::ieee::mul, oracle::departures::mul},
    {"div", build::div, oracle::base::div, oracle::ieee::div, oracle::departures::div}};

struct FromInteger {
  const char* name;
  OperationCircuit::Build build;
  Bits (*model)(RoundingMode, unsigned, oracle::Format, const Bits&, bool);
  Bits (*ieee)(RoundingMode, unsigned, oracle::Format, const Bits&);
  Departures (*departures)(RoundingMode, unsigned, oracle::Format, const Bits&);
};

constexpr FromInteger kFromInteger[] = {{"from_sbv", build::from_sbv, oracle::base::from_sbv,
                                         oracle::ieee::from_sbv, oracle::departures::from_sbv},
                                        {"from_ubv", build::from_ubv, oracle::base::from_ubv,
                                         oracle::ieee::from_ubv, oracle::departures::from_ubv}};

class BaseValues : public testing::Test {
 protected:
  void check(const Binary& op, RoundingMode rm, IEEEFloat::format f, const Bits& x, const Bits& y) {
    const IEEEFloat::format sorts[] = {f, f};
    const Bits operands[] = {x, y};
    const Bits folded = folder.evaluate(op.build, mode_of(rm), sorts, operands, f);
    const auto where = [&]() {
      return std::string(op.name) + " mode " + std::to_string(static_cast<int>(rm)) + " " +
             x.get_str(16) + " " + y.get_str(16);
    };
    ASSERT_EQ(folded, op.model(rm, plain(f), x, y, false)) << where();
    if (op.departures(rm, plain(f), x, y).any()) return;
    ASSERT_EQ(folded, op.ieee(rm, plain(f), x, y)) << where();
  }

  void check_cast(RoundingMode rm, IEEEFloat::format from, IEEEFloat::format to, const Bits& x) {
    const IEEEFloat::format sorts[] = {from};
    const Bits operands[] = {x};
    const Bits folded = folder.evaluate(build::cast, mode_of(rm), sorts, operands, to);
    ASSERT_EQ(folded, oracle::base::cast(rm, plain(from), plain(to), x)) << x.get_str(16);
    if (oracle::departures::cast(rm, plain(from), plain(to), x).any()) return;
    ASSERT_EQ(folded, oracle::ieee::cast(rm, plain(from), plain(to), x)) << x.get_str(16);
  }

  void check_integer(const FromInteger& op, RoundingMode rm, unsigned w, IEEEFloat::format to,
                     const Bits& v) {
    const IEEEFloat::format sorts[] = {{w, 0}};
    const Bits operands[] = {v};
    const Bits folded = folder.evaluate(op.build, mode_of(rm), sorts, operands, to);
    ASSERT_EQ(folded, op.model(rm, w, plain(to), v, false)) << op.name << " " << v.get_str(16);
    if (op.departures(rm, w, plain(to), v).any()) return;
    ASSERT_EQ(folded, op.ieee(rm, w, plain(to), v)) << op.name << " " << v.get_str(16);
  }

  Folder folder;
};

Bits pattern(unsigned value) {
  return Bits(value);
}

class SmallBaseValues : public BaseValues, public testing::WithParamInterface<IEEEFloat::format> {};

TEST_P(SmallBaseValues, ArithmeticAgreesOnEveryPairInFourModes) {
  const IEEEFloat::format f = GetParam();
  const unsigned count = 1U << f.width();
  for (const Binary& op : kBinary) {
    for (const RoundingMode rm : oracle::kBaseModes) {
      for (unsigned x = 0; x < count; ++x) {
        for (unsigned y = 0; y < count; ++y) {
          ASSERT_NO_FATAL_FAILURE(check(op, rm, f, pattern(x), pattern(y)));
        }
      }
    }
  }
}

TEST_P(SmallBaseValues, CastsAgreeOnEveryPatternInFourModes) {
  const IEEEFloat::format from = GetParam();
  for (const IEEEFloat::format to : {IEEEFloat::format{3, 3}, {3, 4}, {4, 3}, {2, 2}, {5, 10}}) {
    for (const RoundingMode rm : oracle::kBaseModes) {
      for (unsigned x = 0; x < 1U << from.width(); ++x) {
        ASSERT_NO_FATAL_FAILURE(check_cast(rm, from, to, pattern(x)));
      }
    }
  }
}

TEST_P(SmallBaseValues, IntegersOfUpToEightBitsAgreeInFourModes) {
  for (const FromInteger& op : kFromInteger) {
    for (const RoundingMode rm : oracle::kBaseModes) {
      for (unsigned w = 1; w <= 8; ++w) {
        for (unsigned v = 0; v < 1U << w; ++v) {
          ASSERT_NO_FATAL_FAILURE(check_integer(op, rm, w, GetParam(), pattern(v)));
        }
      }
    }
  }
}

std::string format_name(const testing::TestParamInfo<IEEEFloat::format>& info) {
  return "e" + std::to_string(info.param.e) + "m" + std::to_string(info.param.m);
}

INSTANTIATE_TEST_SUITE_P(Base, SmallBaseValues,
                         testing::Values(IEEEFloat::format{3, 3}, IEEEFloat::format{3, 4},
                                         IEEEFloat::format{4, 3}),
                         format_name);

class LargeBaseValues : public BaseValues, public testing::WithParamInterface<IEEEFloat::format> {};

TEST_P(LargeBaseValues, ArithmeticAgreesOnBoundaryAndRandomOperands) {
  const IEEEFloat::format f = GetParam();
  oracle::RandomOperands random(f.width());
  for (const Binary& op : kBinary) {
    for (const RoundingMode rm : oracle::kBaseModes) {
      for (int i = 0; i < 400; ++i) {
        const Bits x = random.float_pattern(plain(f));
        ASSERT_NO_FATAL_FAILURE(check(op, rm, f, x, random.partner(plain(f), x)));
      }
    }
  }
}

TEST_P(LargeBaseValues, ConversionsAgreeOnBoundaryAndRandomOperands) {
  const IEEEFloat::format f = GetParam();
  oracle::RandomOperands random(f.width() + 1);
  for (const RoundingMode rm : oracle::kBaseModes) {
    for (int i = 0; i < 200; ++i) {
      for (const IEEEFloat::format to : {IEEEFloat::format{5, 10}, {8, 23}, {11, 52}, {8, 7}}) {
        ASSERT_NO_FATAL_FAILURE(check_cast(rm, f, to, random.source(plain(f), plain(to))));
      }
      for (const FromInteger& op : kFromInteger) {
        const unsigned w = 1 + random.below(70);
        ASSERT_NO_FATAL_FAILURE(check_integer(op, rm, w, f, random.bits(w)));
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Base, LargeBaseValues,
                         testing::Values(IEEEFloat::format{5, 10}, IEEEFloat::format{8, 7},
                                         IEEEFloat::format{8, 23}, IEEEFloat::format{11, 52},
                                         IEEEFloat::format{15, 112}),
                         format_name);

}  // namespace
}  // namespace vorn::fp
