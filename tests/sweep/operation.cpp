#include "tests/sweep/operation.h"

#include "tests/sweep/machine_reference.h"

namespace vorn::sweep {
namespace {

using Binary16 = Small<5, 10>;
using Bfloat16 = Small<8, 7>;
using Binary32 = Small<8, 23>;
using E4M3 = Small<4, 3>;
using E5M2 = Small<5, 2>;
using Args = std::span<const Term* const>;

template <class Format>
constexpr IEEEFloat::format kFormat = {Format::kExponentBits, Format::kFractionBits};

/// The field of an operand, counted from the last one, in an index.
template <class Format>
std::uint64_t operand(std::uint64_t index, unsigned i) {
  return index >> (i * Format::kWidth) & (2 * Format::kSign - 1);
}

/// Stores what a function of the index returns for all modes.
template <class Function>
void fill_all(std::uint64_t first, Expected& expected, Function function) {
  for (std::size_t lane = 0; lane < kLanes; ++lane) {
    const Results results = function(first + lane);
    for (std::size_t mode = 0; mode < kModes; ++mode)
      expected[mode][lane] = results[mode];
  }
}

template <class Format, Results (*reference)(std::uint64_t, std::uint64_t)>
void fill_binary(std::uint64_t first, Expected& expected) {
  fill_all(first, expected,
           [](std::uint64_t i) { return reference(operand<Format>(i, 1), operand<Format>(i, 0)); });
}

template <class Format>
void fill_fma(std::uint64_t first, Expected& expected) {
  fill_all(first, expected, [](std::uint64_t i) {
    return fma<Format>(operand<Format>(i, 2), operand<Format>(i, 1), operand<Format>(i, 0));
  });
}

template <class From, class To>
void fill_cast(std::uint64_t first, Expected& expected) {
  fill_all(first, expected, [](std::uint64_t i) { return cast<From, To>(i); });
}

using BuildRounded = const Term* (TermManager::*)(const Term*, const Term*, const Term*);

template <BuildRounded make>
const Term* build_rounded(TermManager& t, const Term* rm, Args x) {
  return (t.*make)(rm, x[0], x[1]);
}
const Term* build_rem(TermManager& t, const Term* /*rm*/, Args x) {
  return t.make_fp_rem(x[0], x[1]);
}
const Term* build_fma(TermManager& t, const Term* rm, Args x) {
  return t.make_fp_fma(rm, x[0], x[1], x[2]);
}
const Term* build_sqrt(TermManager& t, const Term* rm, Args x) {
  return t.make_fp_sqrt(rm, x[0]);
}
const Term* build_round_to_integral(TermManager& t, const Term* rm, Args x) {
  return t.make_fp_round_to_integral(rm, x[0]);
}
template <unsigned e, unsigned m>
const Term* build_cast(TermManager& t, const Term* rm, Args x) {
  return t.make_fp_cast(e, m, rm, x[0]);
}
template <unsigned width, bool is_signed>
const Term* build_integer(TermManager& t, const Term* rm, Args x) {
  return is_signed ? t.make_fp_to_sbv(width, rm, x[0]) : t.make_fp_to_ubv(width, rm, x[0]);
}

template <BuildRounded make, Results (*reference)(std::uint64_t, std::uint64_t)>
constexpr Operation binary16_row(std::string_view name) {
  return {name, kFormat<Binary16>, 2, true, build_rounded<make>, fill_binary<Binary16, reference>};
}

template <unsigned width, bool is_signed>
constexpr Operation integer_row(std::string_view name) {
  return {name,
          kFormat<Binary32>,
          1,
          true,
          build_integer<width, is_signed>,
          machine::fill_integer<width, is_signed>};
}

constexpr Operation kOperations[] = {
    binary16_row<&TermManager::make_fp_add, add<Binary16>>("binary16.add"),
    binary16_row<&TermManager::make_fp_sub, sub<Binary16>>("binary16.sub"),
    binary16_row<&TermManager::make_fp_mul, mul<Binary16>>("binary16.mul"),
    binary16_row<&TermManager::make_fp_div, div<Binary16>>("binary16.div"),
    {"binary16.rem", kFormat<Binary16>, 2, false, build_rem, fill_binary<Binary16, rem<Binary16>>},
    {"e4m3.fma", kFormat<E4M3>, 3, true, build_fma, fill_fma<E4M3>},
    {"e5m2.fma", kFormat<E5M2>, 3, true, build_fma, fill_fma<E5M2>},
    {"binary32.to_binary16", kFormat<Binary32>, 1, true, build_cast<5, 10>,
     fill_cast<Binary32, Binary16>},
    {"binary32.to_bfloat16", kFormat<Binary32>, 1, true, build_cast<8, 7>,
     fill_cast<Binary32, Bfloat16>},
    {"binary32.to_binary64", kFormat<Binary32>, 1, true, build_cast<11, 52>,
     machine::fill_binary64},
    {"binary32.rti", kFormat<Binary32>, 1, true, build_round_to_integral,
     machine::fill_round_to_integral},
    integer_row<8, true>("binary32.to_sbv8"),
    integer_row<16, true>("binary32.to_sbv16"),
    integer_row<32, true>("binary32.to_sbv32"),
    integer_row<8, false>("binary32.to_ubv8"),
    integer_row<16, false>("binary32.to_ubv16"),
    integer_row<32, false>("binary32.to_ubv32"),
    {"binary32.sqrt", kFormat<Binary32>, 1, true, build_sqrt, machine::fill_sqrt},
};

}  // namespace

std::span<const Operation> get_operations() {
  return kOperations;
}

}  // namespace vorn::sweep
