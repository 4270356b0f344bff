// Compiled with -frounding-math, since the operations must stay where the rounding mode is set.
//
// IEEE 754-2019 asks of square roots, of rounding to integers and of conversions between formats
// that they are rounded correctly in four of the modes, and processors do that. The fifth, to
// nearest with ties away, follows without a rounding error. A square root is no tie: half a unit
// beyond the significand of 24 bits makes a number of 25 bits whose last is one, and its square has
// 49 or 50 bits, more than any radicand. To an integer, a number is rounded off first; what that
// drops is exact in binary64, as is the integer beside it.
#include "tests/sweep/machine_reference.h"

#include <bit>
#include <cfenv>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <limits>

namespace vorn::sweep::machine {
namespace {

// Elsewhere results would be rounded twice.
static_assert(FLT_EVAL_METHOD == 0);
static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);

constexpr int kDirections[] = {FE_TONEAREST, FE_TOWARDZERO, FE_UPWARD, FE_DOWNWARD};
constexpr std::size_t kNearestEven = 0;
constexpr std::size_t kNearestAway = 4;

float number(std::uint64_t pattern) {
  return std::bit_cast<float>(static_cast<std::uint32_t>(pattern));
}

/// The canonical NaN has all bits set but those of the fraction, of which the last one is.
std::uint64_t bits(float value) {
  return std::isnan(value) ? 0xff800001U : std::bit_cast<std::uint32_t>(value);
}
std::uint64_t bits(double value) {
  return std::isnan(value) ? 0xfff0000000000001U : std::bit_cast<std::uint64_t>(value);
}

/// The results of `compute`, a function of patterns, in the rounding mode of the processor.
template <class Compute>
void fill_lanes(std::uint64_t first, std::array<std::uint64_t, kLanes>& results, Compute compute) {
  for (std::size_t lane = 0; lane < kLanes; ++lane)
    results[lane] = compute(first + lane);
}

/// The results of `compute` in the four modes that processors have.
template <class Compute>
void fill_directions(std::uint64_t first, Expected& expected, Compute compute) {
  for (std::size_t mode = 0; mode < std::size(kDirections); ++mode) {
    std::fesetround(kDirections[mode]);
    fill_lanes(first, expected[mode], compute);
  }
  std::fesetround(FE_TONEAREST);
}

double round_ties_away(double value) {
  const double below = std::trunc(value);
  return std::fabs(value - below) >= 0.5 ? below + std::copysign(1.0, value) : below;
}

/// The pattern of the integer `value` if it is one of that width.
template <unsigned width, bool is_signed>
std::uint64_t integer_bits(double value, std::uint64_t pattern) {
  constexpr double kBeyond = static_cast<double>(std::uint64_t{1} << (width - (is_signed ? 1 : 0)));
  constexpr double kLowest = is_signed ? -kBeyond : 0.0;
  constexpr std::uint64_t kMask = (std::uint64_t{1} << width) - 1;
  if (!(value >= kLowest && value < kBeyond)) return get_open_value(pattern, width);
  return static_cast<std::uint64_t>(static_cast<std::int64_t>(value)) & kMask;
}

}  // namespace

void fill_sqrt(std::uint64_t first, Expected& expected) {
  fill_directions(first, expected, [](std::uint64_t x) { return bits(std::sqrt(number(x))); });
  expected[kNearestAway] = expected[kNearestEven];
}

void fill_round_to_integral(std::uint64_t first, Expected& expected) {
  fill_directions(first, expected, [](std::uint64_t x) { return bits(std::rint(number(x))); });
  // An integer next to a number with a fraction has no more than 24 bits.
  fill_lanes(first, expected[kNearestAway], [](std::uint64_t x) {
    return bits(static_cast<float>(round_ties_away(double{number(x)})));
  });
}

void fill_binary64(std::uint64_t first, Expected& expected) {
  fill_lanes(first, expected[kNearestEven],
             [](std::uint64_t x) { return bits(double{number(x)}); });
  expected.fill(expected[kNearestEven]);
}

template <unsigned width, bool is_signed>
void fill_integer(std::uint64_t first, Expected& expected) {
  const auto convert = [](double integer, std::uint64_t x) {
    return integer_bits<width, is_signed>(integer, x);
  };
  fill_directions(first, expected,
                  [convert](std::uint64_t x) { return convert(std::rint(double{number(x)}), x); });
  fill_lanes(first, expected[kNearestAway],
             [convert](std::uint64_t x) { return convert(round_ties_away(double{number(x)}), x); });
}

template void fill_integer<8, true>(std::uint64_t, Expected&);
template void fill_integer<16, true>(std::uint64_t, Expected&);
template void fill_integer<32, true>(std::uint64_t, Expected&);
template void fill_integer<8, false>(std::uint64_t, Expected&);
template void fill_integer<16, false>(std::uint64_t, Expected&);
template void fill_integer<32, false>(std::uint64_t, Expected&);

}  // namespace vorn::sweep::machine
