// The references of the sweeps against MPFR, which has nothing in common with them.
#include <gtest/gtest.h>

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "tests/oracle/format.h"
#include "tests/oracle/mpfr_oracle.h"
#include "tests/oracle/random_operands.h"
#include "tests/sweep/operation.h"

namespace vorn::sweep {
namespace {

using oracle::Bits;
using oracle::Format;
using oracle::RandomOperands;
using oracle::RoundingMode;
namespace by_mpfr = oracle::by_mpfr;

constexpr int kCases = 10'000;  // of each operation
constexpr Format kHalf = {5, 10};
constexpr Format kBfloat = {8, 7};
constexpr Format kSingle = {8, 23};
constexpr Format kDouble = {11, 52};

using Args = std::span<const Bits>;
/// None where the theory leaves the result open.
using Result = std::optional<Bits>;

std::vector<Bits> draw_two(RandomOperands& random, Format f) {
  const Bits x = random.float_pattern(f);
  return {x, random.below(2) == 0 ? random.partner(f, x) : random.float_pattern(f)};
}
std::vector<Bits> draw_three(RandomOperands& random, Format f) {
  const Bits x = random.float_pattern(f);
  const Bits y = random.partner(f, x);
  return {x, y, random.third(f, x, y)};
}
std::vector<Bits> draw_one(RandomOperands& random, Format f) {
  return {random.float_pattern(f)};
}
template <unsigned e, unsigned m>
std::vector<Bits> draw_source(RandomOperands& random, Format f) {
  return {random.source(f, {e, m})};
}
template <unsigned width>
std::vector<Bits> draw_near_integer(RandomOperands& random, Format f) {
  return {random.near_integer(f, width)};
}

template <unsigned e, unsigned m>
Result cast(RoundingMode rm, Args x) {
  return by_mpfr::cast(rm, kSingle, {e, m}, x[0]);
}
template <unsigned width>
Result to_sbv(RoundingMode rm, Args x) {
  return by_mpfr::to_sbv(rm, kSingle, width, x[0]);
}
template <unsigned width>
Result to_ubv(RoundingMode rm, Args x) {
  return by_mpfr::to_ubv(rm, kSingle, width, x[0]);
}
template <unsigned e, unsigned m>
Result fma(RoundingMode rm, Args x) {
  return by_mpfr::fma(rm, {e, m}, x[0], x[1], x[2]);
}

struct Row {
  std::string_view name;
  std::vector<Bits> (*draw)(RandomOperands& random, Format f);
  Result (*expected)(RoundingMode rm, Args x);
};

const Row kRows[] = {
    {"binary16.add", draw_two,
     [](RoundingMode rm, Args x) { return Result(by_mpfr::add(rm, kHalf, x[0], x[1])); }},
    {"binary16.sub", draw_two,
     [](RoundingMode rm, Args x) { return Result(by_mpfr::sub(rm, kHalf, x[0], x[1])); }},
    {"binary16.mul", draw_two,
     [](RoundingMode rm, Args x) { return Result(by_mpfr::mul(rm, kHalf, x[0], x[1])); }},
    {"binary16.div", draw_two,
     [](RoundingMode rm, Args x) { return Result(by_mpfr::div(rm, kHalf, x[0], x[1])); }},
    {"binary16.rem", draw_two,
     [](RoundingMode, Args x) { return Result(by_mpfr::rem(kHalf, x[0], x[1])); }},
    {"e4m3.fma", draw_three, fma<4, 3>},
    {"e5m2.fma", draw_three, fma<5, 2>},
    {"binary32.to_binary16", draw_source<kHalf.e, kHalf.m>, cast<kHalf.e, kHalf.m>},
    {"binary32.to_bfloat16", draw_source<kBfloat.e, kBfloat.m>, cast<kBfloat.e, kBfloat.m>},
    {"binary32.to_binary64", draw_one, cast<kDouble.e, kDouble.m>},
    {"binary32.rti", draw_near_integer<25>,
     [](RoundingMode rm, Args x) { return Result(by_mpfr::rti(rm, kSingle, x[0])); }},
    {"binary32.to_sbv8", draw_near_integer<8>, to_sbv<8>},
    {"binary32.to_sbv16", draw_near_integer<16>, to_sbv<16>},
    {"binary32.to_sbv32", draw_near_integer<32>, to_sbv<32>},
    {"binary32.to_ubv8", draw_near_integer<8>, to_ubv<8>},
    {"binary32.to_ubv16", draw_near_integer<16>, to_ubv<16>},
    {"binary32.to_ubv32", draw_near_integer<32>, to_ubv<32>},
    {"binary32.sqrt", draw_one,
     [](RoundingMode rm, Args x) { return Result(by_mpfr::sqrt(rm, kSingle, x[0])); }},
};

const Row& find_row(std::string_view name) {
  for (const Row& row : kRows) {
    if (row.name == name) return row;
  }
  throw std::out_of_range("no row for " + std::string(name));
}

/// The width of an open result is at the end of the name.
std::uint64_t open_value(std::string_view name, std::uint64_t index) {
  const auto digits = name.find_last_not_of("0123456789") + 1;
  return get_open_value(index, static_cast<unsigned>(std::stoul(std::string(name.substr(digits)))));
}

class References : public testing::TestWithParam<Operation> {};

TEST_P(References, AgreeWithMpfrOnBoundaryAndRandomOperands) {
  const Operation& operation = GetParam();
  const Row& row = find_row(operation.name);
  const Format f = {static_cast<unsigned>(operation.format.e),
                    static_cast<unsigned>(operation.format.m)};
  RandomOperands random(f.width() + operation.name.size());
  Expected expected = {};
  for (int i = 0; i < kCases; ++i) {
    const std::vector<Bits> operands = row.draw(random, f);
    Bits index = 0;
    for (const Bits& x : operands)
      index = (index << f.width()) + x;
    const std::uint64_t lane = index.get_ui() % kLanes;
    operation.fill(index.get_ui() - lane, expected);
    for (const RoundingMode rm : oracle::kAllModes) {
      const Result wanted = row.expected(rm, operands);
      const auto mode = static_cast<std::size_t>(rm);
      ASSERT_EQ(Bits(expected[mode][lane]),
                wanted ? *wanted : Bits(open_value(operation.name, index.get_ui())))
          << operation.name << ' ' << kModeNames[mode] << ' ' << index.get_str(16);
    }
  }
}

std::string test_name(const testing::TestParamInfo<Operation>& info) {
  std::string name(info.param.name);
  name[name.find('.')] = '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(All, References,
                         testing::ValuesIn(get_operations().begin(), get_operations().end()),
                         test_name);

}  // namespace
}  // namespace vorn::sweep
