// The exact encoder against the oracle: every operand of small formats in every mode, boundary and
// random operands of the large ones.
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "tests/fp/operation_circuit.h"
#include "tests/oracle/ieee_oracle.h"
#include "tests/oracle/random_operands.h"
#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::fp {
namespace {

using oracle::Bits;
using oracle::RoundingMode;
namespace ieee = oracle::ieee;

constexpr IEEEFloat::format kSmall[] = {{2, 1}, {2, 2}, {3, 2}, {2, 3}, {3, 3}, {5, 2}, {4, 3}};
constexpr IEEEFloat::format kLarge[] = {{8, 23}, {11, 52}, {15, 112}, {8, 7}};

oracle::Format plain(IEEEFloat::format f) {
  return {static_cast<unsigned>(f.e), static_cast<unsigned>(f.m)};
}

IEEEFloat::rounding_mode mode_of(RoundingMode rm) {
  return static_cast<IEEEFloat::rounding_mode>(rm);
}

Bits low(std::uint64_t value, std::size_t width) {
  return Bits(static_cast<unsigned long>(value & ((std::uint64_t{1} << width) - 1)));
}

struct Binary {
  const char* name;
  OperationCircuit::Build build;
  Bits (*expected)(RoundingMode, oracle::Format, const Bits&, const Bits&);
};

constexpr Binary kArithmetic[] = {{"add", build::add, ieee::add},
                                  {"sub", build::sub, ieee::sub},
                                  {"mul", build::mul, ieee::mul},
                                  {"div", build::div, ieee::div}};

class SmallFormat : public testing::TestWithParam<IEEEFloat::format> {
 protected:
  /// Compares a circuit with `expected` on all operands of `bits` bits together.
  void check_all(OperationCircuit& circuit, std::size_t bits, const std::string& what,
                 const std::function<Bits(std::uint64_t)>& expected) {
    const std::uint64_t count = std::uint64_t{1} << bits;
    for (std::uint64_t first = 0; first < count; first += OperationCircuit::kLanes) {
      circuit.run_from(first);
      for (std::uint64_t i = first; i < count && i < first + OperationCircuit::kLanes; ++i) {
        const Bits wanted = expected(i);
        ASSERT_EQ(circuit.result(i - first), wanted)
            << what << " of operands " << std::hex << i << ", expected " << wanted.get_str(16);
      }
    }
  }
};

TEST_P(SmallFormat, ArithmeticIsCorrectOnEveryPairInEveryMode) {
  const IEEEFloat::format f = GetParam();
  const std::size_t w = f.width();
  const IEEEFloat::format sorts[] = {f, f};
  for (const Binary& op : kArithmetic) {
    for (const RoundingMode rm : oracle::kAllModes) {
      auto circuit = OperationCircuit::make<IeeeBvEncoder>(op.build, sorts, f, mode_of(rm));
      EXPECT_TRUE(circuit.get_constraints().empty());
      check_all(circuit, 2 * w, op.name, [&](std::uint64_t i) {
        return op.expected(rm, plain(f), low(i, w), low(i >> w, w));
      });
    }
  }
}

TEST_P(SmallFormat, ComparisonsAreCorrectOnEveryPair) {
  const IEEEFloat::format f = GetParam();
  const std::size_t w = f.width();
  const IEEEFloat::format sorts[] = {f, f};
  const std::pair<OperationCircuit::Build, bool (*)(oracle::Format, const Bits&, const Bits&)>
      rows[] = {{build::eq, ieee::eq}, {build::lt, ieee::lt}, {build::le, ieee::le}};
  for (const auto& [builder, expected] : rows) {
    auto circuit = OperationCircuit::make<IeeeBvEncoder>(builder, sorts, f,
                                                         IEEEFloat::rounding_mode::nearest_even);
    check_all(circuit, 2 * w, "comparison", [&, expected = expected](std::uint64_t i) {
      return Bits(expected(plain(f), low(i, w), low(i >> w, w)) ? 1 : 0);
    });
  }
}

TEST_P(SmallFormat, ClassesAndNegationAreCorrectOnEveryPattern) {
  const IEEEFloat::format f = GetParam();
  const std::size_t w = f.width();
  const IEEEFloat::format sorts[] = {f};
  const std::pair<OperationCircuit::Build, bool (*)(oracle::Format, const Bits&)> rows[] = {
      {build::isnan, ieee::is_nan}, {build::isinf, ieee::is_inf}, {build::iszero, ieee::is_zero}};
  for (const auto& [builder, expected] : rows) {
    auto circuit = OperationCircuit::make<IeeeBvEncoder>(builder, sorts, f,
                                                         IEEEFloat::rounding_mode::nearest_even);
    check_all(circuit, w, "class", [&, expected = expected](std::uint64_t i) {
      return Bits(expected(plain(f), low(i, w)) ? 1 : 0);
    });
  }
  auto negation = OperationCircuit::make<IeeeBvEncoder>(build::neg, sorts, f,
                                                        IEEEFloat::rounding_mode::nearest_even);
  check_all(negation, w, "neg", [&](std::uint64_t i) {
    // A NaN operand of a formula is the canonical one; others keep their payload.
    const Bits x = low(i, w);
    return ieee::is_nan(plain(f), x) ? Bits(x | (Bits(1) << (w - 1))) : ieee::neg(plain(f), x);
  });
}

TEST_P(SmallFormat, CastsAreCorrectOnEveryPatternInEveryMode) {
  const IEEEFloat::format from = GetParam();
  const IEEEFloat::format sorts[] = {from};
  for (const IEEEFloat::format to : kSmall) {
    for (const RoundingMode rm : oracle::kAllModes) {
      auto circuit = OperationCircuit::make<IeeeBvEncoder>(build::cast, sorts, to, mode_of(rm));
      const std::string what = "cast to " + std::to_string(to.e) + "," + std::to_string(to.m);
      check_all(circuit, from.width(), what, [&](std::uint64_t i) {
        return ieee::cast(rm, plain(from), plain(to), low(i, from.width()));
      });
    }
  }
}

TEST_P(SmallFormat, IntegersOfUpToEightBitsAreConvertedCorrectlyInEveryMode) {
  const IEEEFloat::format to = GetParam();
  for (unsigned w = 1; w <= 8; ++w) {
    const IEEEFloat::format sorts[] = {{w, 0}};
    for (const RoundingMode rm : oracle::kAllModes) {
      auto sbv = OperationCircuit::make<IeeeBvEncoder>(build::from_sbv, sorts, to, mode_of(rm));
      check_all(sbv, w, "from_sbv",
                [&](std::uint64_t i) { return ieee::from_sbv(rm, w, plain(to), low(i, w)); });
      auto ubv = OperationCircuit::make<IeeeBvEncoder>(build::from_ubv, sorts, to, mode_of(rm));
      check_all(ubv, w, "from_ubv",
                [&](std::uint64_t i) { return ieee::from_ubv(rm, w, plain(to), low(i, w)); });
    }
  }
}

/// Small enough for five modes more in one run.
class TinyFormat : public testing::TestWithParam<IEEEFloat::format> {};

TEST_P(TinyFormat, AModeThatIsAVariableRoundsAsItsValueDoes) {
  const IEEEFloat::format f = GetParam();
  const std::size_t w = f.width();
  const IEEEFloat::format sorts[] = {f, f};
  for (const Binary& op : kArithmetic) {
    auto circuit = OperationCircuit::make<IeeeBvEncoder>(op.build, sorts, f, std::nullopt);
    const std::uint64_t pairs = std::uint64_t{1} << (2 * w);
    for (std::uint64_t first = 0; first < 5 * pairs; first += OperationCircuit::kLanes) {
      circuit.run_from(first);
      for (std::uint64_t i = first; i < 5 * pairs && i < first + OperationCircuit::kLanes; ++i) {
        const auto rm = static_cast<RoundingMode>(i / pairs);
        ASSERT_EQ(circuit.result(i - first), op.expected(rm, plain(f), low(i, w), low(i >> w, w)))
            << op.name << " of operands " << std::hex << i;
      }
    }
  }
}

std::string format_name(const testing::TestParamInfo<IEEEFloat::format>& info) {
  return "e" + std::to_string(info.param.e) + "m" + std::to_string(info.param.m);
}

INSTANTIATE_TEST_SUITE_P(Ieee, SmallFormat, testing::ValuesIn(kSmall), format_name);
INSTANTIATE_TEST_SUITE_P(Ieee, TinyFormat, testing::ValuesIn(kSmall, kSmall + 5), format_name);

/// Compares add, sub, mul and div in every mode on `rounds` times 512 operand pairs each.
void check_random_arithmetic(IEEEFloat::format f, int rounds) {
  const IEEEFloat::format sorts[] = {f, f};
  oracle::RandomOperands random(f.width());
  std::vector<Bits> x(OperationCircuit::kLanes);
  std::vector<Bits> y(OperationCircuit::kLanes);
  for (const Binary& op : kArithmetic) {
    for (const RoundingMode rm : oracle::kAllModes) {
      auto circuit = OperationCircuit::make<IeeeBvEncoder>(op.build, sorts, f, mode_of(rm));
      for (int round = 0; round < rounds; ++round) {
        for (std::size_t lane = 0; lane < x.size(); ++lane) {
          x[lane] = random.float_pattern(plain(f));
          y[lane] = random.partner(plain(f), x[lane]);
          circuit.set_operand(0, lane, x[lane]);
          circuit.set_operand(1, lane, y[lane]);
        }
        circuit.run();
        for (std::size_t lane = 0; lane < x.size(); ++lane) {
          ASSERT_EQ(circuit.result(lane), op.expected(rm, plain(f), x[lane], y[lane]))
              << op.name << " " << static_cast<int>(rm) << " " << x[lane].get_str(16) << " "
              << y[lane].get_str(16);
        }
      }
    }
  }
}

class LargeFormat : public testing::TestWithParam<IEEEFloat::format> {};

TEST_P(LargeFormat, ArithmeticIsCorrectOnBoundaryAndRandomOperands) {
  check_random_arithmetic(GetParam(), 26);  // a million cases over the four formats
}

TEST_P(LargeFormat, CastsAreCorrectOnBoundaryAndRandomOperands) {
  const IEEEFloat::format from = GetParam();
  const IEEEFloat::format sorts[] = {from};
  oracle::RandomOperands random(from.width() + 1);
  std::vector<Bits> x(OperationCircuit::kLanes);
  for (const IEEEFloat::format to :
       {IEEEFloat::format{8, 23}, {11, 52}, {15, 112}, {8, 7}, {5, 10}, {3, 40}, {12, 2}, {2, 1}}) {
    for (const RoundingMode rm : oracle::kAllModes) {
      auto circuit = OperationCircuit::make<IeeeBvEncoder>(build::cast, sorts, to, mode_of(rm));
      for (int round = 0; round < 4; ++round) {
        for (std::size_t lane = 0; lane < x.size(); ++lane) {
          x[lane] = random.source(plain(from), plain(to));
          circuit.set_operand(0, lane, x[lane]);
        }
        circuit.run();
        for (std::size_t lane = 0; lane < x.size(); ++lane) {
          ASSERT_EQ(circuit.result(lane), ieee::cast(rm, plain(from), plain(to), x[lane]))
              << static_cast<int>(rm) << " " << x[lane].get_str(16) << " to " << to.e << ","
              << to.m;
        }
      }
    }
  }
}

TEST_P(LargeFormat, IntegersAreConvertedCorrectlyOnBoundaryAndRandomOperands) {
  const IEEEFloat::format to = GetParam();
  oracle::RandomOperands random(to.width() + 2);
  std::vector<Bits> v(OperationCircuit::kLanes);
  for (const unsigned w : {16U, 32U, 33U, 64U, 128U, 200U}) {
    const IEEEFloat::format sorts[] = {{w, 0}};
    for (const RoundingMode rm : oracle::kAllModes) {
      auto sbv = OperationCircuit::make<IeeeBvEncoder>(build::from_sbv, sorts, to, mode_of(rm));
      auto ubv = OperationCircuit::make<IeeeBvEncoder>(build::from_ubv, sorts, to, mode_of(rm));
      for (std::size_t lane = 0; lane < v.size(); ++lane) {
        v[lane] = random.bits(w);
        sbv.set_operand(0, lane, v[lane]);
        ubv.set_operand(0, lane, v[lane]);
      }
      sbv.run();
      ubv.run();
      for (std::size_t lane = 0; lane < v.size(); ++lane) {
        ASSERT_EQ(sbv.result(lane), ieee::from_sbv(rm, w, plain(to), v[lane])) << v[lane];
        ASSERT_EQ(ubv.result(lane), ieee::from_ubv(rm, w, plain(to), v[lane])) << v[lane];
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Ieee, LargeFormat, testing::ValuesIn(kLarge), format_name);

class OddFormat : public testing::TestWithParam<IEEEFloat::format> {};

TEST_P(OddFormat, ArithmeticIsCorrectOnBoundaryAndRandomOperands) {
  check_random_arithmetic(GetParam(), 1);
}

// Exponents wider than significands, significands much wider than exponents, one fraction bit.
INSTANTIATE_TEST_SUITE_P(Ieee, OddFormat,
                         testing::Values(IEEEFloat::format{12, 2}, IEEEFloat::format{10, 1},
                                         IEEEFloat::format{2, 60}, IEEEFloat::format{3, 100},
                                         IEEEFloat::format{16, 7}),
                         format_name);

}  // namespace
}  // namespace vorn::fp
