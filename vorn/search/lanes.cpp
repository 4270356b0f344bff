#include "vorn/search/lanes.h"

#include <bit>
#include <cfloat>

#include "vorn/search/lane_floats.h"

namespace vorn::search {
namespace {

// Elsewhere results would be rounded twice.
constexpr bool kHasNativeFloats = FLT_EVAL_METHOD == 0 && std::numeric_limits<float>::is_iec559 &&
                                  std::numeric_limits<double>::is_iec559;

/// A processor's format with 2p + 2 bits of precision, in which products of two numbers and
/// quotients are far from overflow and underflow unless they are so in the format.
std::uint8_t find_carrier(const LaneSort& sort) {
  if (!kHasNativeFloats) return 0;
  if (sort.is_own_format) return sort.width;
  if (sort.e <= 7 && sort.m <= 10) return 32;
  if (sort.e <= 10 && sort.m <= 23) return 64;
  return 0;
}

template <class F>
std::uint64_t to_lane_of(const LaneSort& sort, std::uint64_t word) {
  const SmallFormat<F> format(sort.e, sort.m);
  return std::bit_cast<BitsOf<F>>(format.decode(static_cast<BitsOf<F>>(word)));
}

template <class F>
std::uint64_t to_word_of(const LaneSort& sort, std::uint64_t lane) {
  const F value = std::bit_cast<F>(static_cast<BitsOf<F>>(lane));
  if (value == value && sort.is_own_format) return lane;
  return SmallFormat<F>(sort.e, sort.m).encode(value);
}

}  // namespace

LaneSort LaneSort::of(const DataType* type) {
  LaneSort sort;
  sort.width = static_cast<std::uint8_t>(type->get_value_width());
  sort.lane = sort.width <= 32 ? 32 : 64;
  switch (type->get_kind()) {
    case DataType::Kind::boolean:
      sort.kind = Kind::truth;
      break;
    case DataType::Kind::rounding_mode:
      sort.kind = Kind::mode;
      break;
    case DataType::Kind::floating_point: {
      sort.e = static_cast<std::uint8_t>(type->get_e());
      sort.m = static_cast<std::uint8_t>(type->get_m());
      sort.is_own_format = (sort.e == 8 && sort.m == 23) || (sort.e == 11 && sort.m == 52);
      const std::uint8_t carrier = find_carrier(sort);
      if (carrier != 0) sort.lane = carrier;
      if (carrier != 0) sort.kind = Kind::floats;
      break;
    }
    default:
      break;
  }
  return sort;
}

std::uint64_t LaneSort::to_lane(std::uint64_t word) const {
  if (kind == Kind::truth) return word != 0 ? ~std::uint32_t{0} : 0;
  if (kind != Kind::floats || is_own_format) return word;
  return lane == 32 ? to_lane_of<float>(*this, word) : to_lane_of<double>(*this, word);
}

std::uint64_t LaneSort::to_word(std::uint64_t lane_bits) const {
  if (kind == Kind::truth) return lane_bits & 1U;
  if (kind != Kind::floats) return lane_bits;
  return lane == 32 ? to_word_of<float>(*this, lane_bits) : to_word_of<double>(*this, lane_bits);
}

LaneKernel find_kernel(const Term* t) {
  if (LaneKernel kernel = find_bit_kernel(t)) return kernel;
  if (LaneKernel kernel = find_float_kernel(t)) return kernel;
  return find_conversion_kernel(t);
}

}  // namespace vorn::search
