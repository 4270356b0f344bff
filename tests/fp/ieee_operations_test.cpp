// The operations that only the exact encoder has, against the oracle: every operand of the formats
// of up to six bits in every mode, boundary and random operands of larger ones. Where the theory
// leaves a result open, the circuit must give what the choice says.
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <vector>

#include "tests/fp/operation_circuit.h"
#include "tests/oracle/ieee_oracle.h"
#include "tests/oracle/random_operands.h"
#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::fp {
namespace {

using Format = IEEEFloat::format;
using oracle::Bits;
using oracle::RoundingMode;
namespace ieee = oracle::ieee;

constexpr Format kSixBits[] = {{2, 1}, {2, 2}, {3, 1}, {2, 3}, {3, 2}, {4, 1}};
constexpr IEEEFloat::rounding_mode kAnyMode = IEEEFloat::rounding_mode::nearest_even;

#ifdef __SANITIZE_ADDRESS__
constexpr int kFmaRounds = 20;  // the same code on fewer operands
#else
constexpr int kFmaRounds = 391;  // a million triples over the modes
#endif

oracle::Format plain(Format f) {
  return {static_cast<unsigned>(f.e), static_cast<unsigned>(f.m)};
}

OperationCircuit make(OperationCircuit::Build build, std::span<const Format> sorts, RoundingMode rm,
                      Format to) {
  return OperationCircuit::make<IeeeBvEncoder>(build, sorts, to,
                                               static_cast<IEEEFloat::rounding_mode>(rm));
}

/// Bits `low` to `low` + width - 1 of a case's number.
Bits field(std::uint64_t i, std::size_t low, std::size_t width) {
  return Bits(static_cast<unsigned long>((i >> low) & ((std::uint64_t{1} << width) - 1)));
}

/// The operand as formulas have it: NaN is one value.
Bits canonical(Format f, const Bits& x) {
  return ieee::is_nan(plain(f), x) ? ieee::nan(plain(f)) : x;
}

using Expected = std::function<Bits(std::uint64_t)>;

/// Compares a circuit with `expected` on all operands of `bits` bits together.
void check_all(OperationCircuit& circuit, std::size_t bits, const char* what,
               const Expected& expected) {
  const std::uint64_t count = std::uint64_t{1} << bits;
  for (std::uint64_t first = 0; first < count; first += OperationCircuit::kLanes) {
    circuit.run_from(first);
    for (std::uint64_t i = first; i < count && i < first + OperationCircuit::kLanes; ++i) {
      ASSERT_EQ(circuit.result(i - first), expected(i)) << what << " of operands " << std::hex << i;
    }
  }
}

class SixBits : public testing::TestWithParam<Format> {
 protected:
  const Format f = GetParam();
  const oracle::Format p = plain(f);
  const std::size_t w = f.width();
  const Format one[1] = {f};
  const Format two[2] = {f, f};
};

TEST_P(SixBits, RootsAndIntegralsAreCorrect) {
  for (const RoundingMode rm : oracle::kAllModes) {
    auto sqrt = make(build::sqrt, one, rm, f);
    check_all(sqrt, w, "sqrt", [&](std::uint64_t i) { return ieee::sqrt(rm, p, field(i, 0, w)); });
    auto rti = make(build::rti, one, rm, f);
    check_all(rti, w, "rti", [&](std::uint64_t i) { return ieee::rti(rm, p, field(i, 0, w)); });
  }
}

TEST_P(SixBits, RemaindersAreCorrect) {
  auto rem = make(build::rem, two, RoundingMode::rne, f);
  check_all(rem, 2 * w, "rem",
            [&](std::uint64_t i) { return ieee::rem(p, field(i, 0, w), field(i, w, w)); });
}

TEST_P(SixBits, MinimumAndMaximumAreCorrectAndChooseBetweenZerosFreely) {
  using Choose = std::optional<Bits> (*)(oracle::Format, const Bits&, const Bits&);
  const std::pair<OperationCircuit::Build, Choose> rows[] = {{build::min, ieee::min},
                                                             {build::max, ieee::max}};
  for (const auto& [builder, expected] : rows) {
    auto circuit = make(builder, two, RoundingMode::rne, f);
    check_all(circuit, 2 * w + 2, "min or max", [&, expected = expected](std::uint64_t i) {
      const Bits x = canonical(f, field(i, 0, w));
      const Bits y = canonical(f, field(i, w, w));
      if (const auto result = expected(p, x, y)) {
        // A NaN operand of this test may have any pattern, and is handed on.
        return ieee::is_nan(p, *result) ? field(i, 0, w) : *result;
      }
      const bool negative_first = ieee::is_negative(p, x);
      return Bits(field(i, 2 * w + (negative_first ? 1 : 0), 1) << (w - 1));
    });
  }
}

TEST_P(SixBits, ClassesAbsoluteValueAndBitsAreCorrect) {
  using Holds = bool (*)(oracle::Format, const Bits&);
  const std::pair<OperationCircuit::Build, Holds> rows[] = {
      {build::isnormal, ieee::is_normal},
      {build::issubnormal, ieee::is_subnormal},
      {build::isnegative, ieee::smt_is_negative},
      {build::ispositive, ieee::smt_is_positive}};
  for (const auto& [builder, expected] : rows) {
    auto circuit = make(builder, one, RoundingMode::rne, f);
    check_all(circuit, w, "class", [&, expected = expected](std::uint64_t i) {
      return Bits(expected(p, field(i, 0, w)) ? 1 : 0);
    });
  }
  auto abs = make(build::abs, one, RoundingMode::rne, f);
  auto bits = make(build::to_bits, one, RoundingMode::rne, f);
  const Bits quiet = (Bits(1) << (w - 1)) - (Bits(1) << (f.m - 1));
  check_all(abs, w, "abs", [&](std::uint64_t i) {
    const Bits x = field(i, 0, w);
    return ieee::is_nan(p, x) ? Bits(x | (Bits(1) << (w - 1))) : ieee::abs(p, x);
  });
  check_all(bits, w, "to_bits", [&](std::uint64_t i) {
    const Bits x = field(i, 0, w);
    return ieee::is_nan(p, x) ? quiet : x;
  });
}

TEST_P(SixBits, IntegersOfUpToEightBitsAreCorrectAndOpenOutOfRange) {
  using Convert = std::optional<Bits> (*)(RoundingMode, oracle::Format, unsigned, const Bits&);
  const std::pair<OperationCircuit::Build, Convert> rows[] = {{build::to_sbv, ieee::to_sbv},
                                                              {build::to_ubv, ieee::to_ubv}};
  for (unsigned width = 1; width <= 8; ++width) {
    for (const auto& [builder, expected] : rows) {
      for (const RoundingMode rm : oracle::kAllModes) {
        auto circuit = make(builder, one, rm, {width, 0});
        check_all(circuit, w + width, "to_bv", [&, expected = expected](std::uint64_t i) {
          const auto result = expected(rm, p, width, field(i, 0, w));
          return result ? *result : field(i, w, width);
        });
      }
    }
  }
}

TEST_P(SixBits, AModeThatIsAVariableRoundsAsItsValueDoes) {
  auto sqrt = OperationCircuit::make<IeeeBvEncoder>(build::sqrt, one, f, std::nullopt);
  auto rti = OperationCircuit::make<IeeeBvEncoder>(build::rti, one, f, std::nullopt);
  for (std::uint64_t first = 0; first < 5 * (std::uint64_t{1} << w);
       first += OperationCircuit::kLanes) {
    sqrt.run_from(first);
    rti.run_from(first);
    for (std::uint64_t lane = 0; lane < OperationCircuit::kLanes; ++lane) {
      const std::uint64_t i = first + lane;
      const auto rm = static_cast<RoundingMode>(i >> w);
      if ((i >> w) >= oracle::kAllModes.size()) break;
      ASSERT_EQ(sqrt.result(lane), ieee::sqrt(rm, p, field(i, 0, w))) << std::hex << i;
      ASSERT_EQ(rti.result(lane), ieee::rti(rm, p, field(i, 0, w))) << std::hex << i;
    }
  }
}

std::string format_name(const testing::TestParamInfo<Format>& info) {
  return "e" + std::to_string(info.param.e) + "m" + std::to_string(info.param.m);
}

INSTANTIATE_TEST_SUITE_P(Ieee, SixBits, testing::ValuesIn(kSixBits), format_name);

/// Formats with more exponents than are divided step by step, as those of up to six bits are.
TEST(SquaredRemainder, IsCorrectOnEveryPairOfSmallFormats) {
  for (const Format f : {Format{5, 1}, Format{6, 1}, Format{6, 2}}) {
    const std::size_t w = f.width();
    const Format two[] = {f, f};
    auto rem = make(build::rem, two, RoundingMode::rne, f);
    check_all(rem, 2 * w, "rem",
              [&](std::uint64_t i) { return ieee::rem(plain(f), field(i, 0, w), field(i, w, w)); });
  }
}

TEST(Fma, IsCorrectOnEveryTripleOfTheSmallestFormats) {
  for (const Format f : {Format{2, 1}, Format{2, 2}, Format{3, 1}}) {
    const std::size_t w = f.width();
    const Format three[] = {f, f, f};
    for (const RoundingMode rm : oracle::kAllModes) {
      auto circuit = make(build::fma, three, rm, f);
      check_all(circuit, 3 * w, "fma", [&](std::uint64_t i) {
        return ieee::fma(rm, plain(f), field(i, 0, w), field(i, w, w), field(i, 2 * w, w));
      });
    }
  }
}

// Random and boundary operands ------------------------------------------------------------------

/// Runs `rounds` times 512 cases: `fill` gives the operands of a case, `expected` the result.
void check_random(OperationCircuit& circuit, int rounds, const char* what,
                  const std::function<std::vector<Bits>()>& fill,
                  const std::function<std::optional<Bits>(const std::vector<Bits>&)>& expected) {
  std::vector<std::vector<Bits>> cases(OperationCircuit::kLanes);
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t lane = 0; lane < cases.size(); ++lane) {
      cases[lane] = fill();
      for (std::size_t k = 0; k < cases[lane].size(); ++k) {
        circuit.set_operand(k, lane, cases[lane][k]);
      }
    }
    circuit.run();
    for (std::size_t lane = 0; lane < cases.size(); ++lane) {
      const auto wanted = expected(cases[lane]);
      if (!wanted) continue;  // the theory leaves it open
      ASSERT_EQ(circuit.result(lane), *wanted)
          << what << " of " << cases[lane].front().get_str(16) << " "
          << cases[lane].back().get_str(16) << ", expected " << wanted->get_str(16);
    }
  }
}

class Random : public testing::TestWithParam<Format> {
 protected:
  const Format f = GetParam();
  const oracle::Format p = plain(f);
  const Format one[1] = {f};
  const Format two[2] = {f, f};
  const Format three[3] = {f, f, f};
  oracle::RandomOperands random{f.width() + 7};
};

TEST_P(Random, FmaIsCorrect) {
  for (const RoundingMode rm : oracle::kAllModes) {
    auto circuit = make(build::fma, three, rm, f);
    check_random(
        circuit, kFmaRounds, "fma",
        [&] {
          const Bits x = random.float_pattern(p);
          const Bits y = random.partner(p, x);
          return std::vector<Bits>{x, y, random.third(p, x, y)};
        },
        [&](const std::vector<Bits>& x) { return ieee::fma(rm, p, x[0], x[1], x[2]); });
  }
}

TEST_P(Random, SquareRootIsCorrect) {
  for (const RoundingMode rm : oracle::kAllModes) {
    auto circuit = make(build::sqrt, one, rm, f);
    check_random(
        circuit, 40, "sqrt", [&] { return std::vector<Bits>{random.float_pattern(p)}; },
        [&](const std::vector<Bits>& x) { return ieee::sqrt(rm, p, x[0]); });
  }
}

TEST_P(Random, RemainderIsCorrect) {
  auto circuit = make(build::rem, two, RoundingMode::rne, f);
  check_random(
      circuit, 100, "rem",
      [&] {
        const Bits x = random.float_pattern(p);
        return std::vector<Bits>{
            x, random.below(2) == 0 ? random.partner(p, x) : random.float_pattern(p)};
      },
      [&](const std::vector<Bits>& x) { return ieee::rem(p, x[0], x[1]); });
}

TEST_P(Random, IntegersAreCorrect) {
  for (const RoundingMode rm : oracle::kAllModes) {
    auto rti = make(build::rti, one, rm, f);
    const auto near_integer = [&] {
      const Bits x = random.near_integer(p, static_cast<unsigned>(f.m) + 2);
      return std::vector<Bits>{random.below(4) == 0 ? random.float_pattern(p) : x};
    };
    check_random(rti, 40, "rti", near_integer,
                 [&](const std::vector<Bits>& x) { return ieee::rti(rm, p, x[0]); });
    for (const unsigned width : {1U, 7U, 16U, 33U, 64U, 130U}) {
      const auto near_limit = [&] { return std::vector<Bits>{random.near_integer(p, width)}; };
      auto sbv = make(build::to_sbv, one, rm, {width, 0});
      check_random(sbv, 10, "to_sbv", near_limit,
                   [&](const std::vector<Bits>& x) { return ieee::to_sbv(rm, p, width, x[0]); });
      auto ubv = make(build::to_ubv, one, rm, {width, 0});
      check_random(ubv, 10, "to_ubv", near_limit,
                   [&](const std::vector<Bits>& x) { return ieee::to_ubv(rm, p, width, x[0]); });
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Ieee, Random,
                         testing::Values(Format{3, 3}, Format{5, 10}, Format{8, 23}, Format{11, 52},
                                         Format{2, 20}, Format{12, 2}, Format{8, 7}),
                         format_name);

}  // namespace
}  // namespace vorn::fp
