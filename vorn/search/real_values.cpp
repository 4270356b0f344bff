#include "vorn/search/real_values.h"

#include <algorithm>
#include <cmath>

namespace vorn::search {
namespace {

constexpr std::size_t kMostExponentBits = 11;
constexpr std::size_t kMostFractionBits = 52;

int bias_of(IEEEFloat::format f) {
  return (1 << (f.e - 1)) - 1;
}

/// The greatest pattern of a finite number.
std::uint64_t largest_of(IEEEFloat::format f) {
  return (((std::uint64_t{1} << f.e) - 1) << f.m) - 1;
}

}  // namespace

bool has_real_values(IEEEFloat::format f) {
  return f.e <= kMostExponentBits && f.m <= kMostFractionBits;
}

std::optional<double> real_of_bits(std::uint64_t bits, IEEEFloat::format f) {
  const std::uint64_t sign = std::uint64_t{1} << (f.e + f.m);
  const std::uint64_t magnitude = bits & (sign - 1);
  if (magnitude > largest_of(f)) return std::nullopt;
  const std::uint64_t hidden = std::uint64_t{1} << f.m;
  const auto field = static_cast<int>(magnitude >> f.m);
  const std::uint64_t significand = (magnitude & (hidden - 1)) | (field == 0 ? 0 : hidden);
  const int quantum = std::max(field, 1) - bias_of(f) - static_cast<int>(f.m);
  const double x = std::ldexp(static_cast<double>(significand), quantum);
  return (bits & sign) != 0 ? -x : x;
}

std::uint64_t bits_of_real(double x, IEEEFloat::format f) {
  const std::uint64_t sign = std::signbit(x) ? std::uint64_t{1} << (f.e + f.m) : 0;
  const double size = std::abs(x);
  if (size == 0) return sign;
  if (std::isinf(x)) return sign | largest_of(f);
  const int bias = bias_of(f);
  const int exponent = std::max(std::ilogb(size), 1 - bias);
  if (exponent > bias) return sign | largest_of(f);
  const double significand = std::round(std::ldexp(size, static_cast<int>(f.m) - exponent));
  // The hidden bit of a normal number, and a carry out of it, count up the field.
  const std::uint64_t magnitude = static_cast<std::uint64_t>(significand) +
                                  (static_cast<std::uint64_t>(exponent + bias - 1) << f.m);
  return sign | std::min(magnitude, largest_of(f));
}

}  // namespace vorn::search
