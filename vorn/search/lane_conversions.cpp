// Floats from and to floats of other formats, integers and patterns, in lanes. Compiled as
// lane_floats.cpp is.
#include "vorn/search/lane_floats.h"

namespace vorn::search {
namespace {

using T = SymbolTag;
using u32 = std::uint32_t;
using u64 = std::uint64_t;

template <class Out, class Function>
void fill(const LaneCall& call, Function f) {
  Out* out = lanes_out<Out>(call);
  for (std::size_t i = 0; i < kLanes; ++i)
    out[i] = static_cast<Out>(f(i));
}

/// Rounds what `f` gives, values of Wide, once: where the format is not that of the lanes, before
/// the values are brought there, which changes none of them.
template <class To, class Wide, class Function>
void fill_rounded(const LaneCall& call, Function f) {
  using B = BitsOf<To>;
  if (call.sort.is_own_format) {
    fill<B>(call, [=](std::size_t i) { return std::bit_cast<B>(static_cast<To>(f(i))); });
    return;
  }
  const SmallRounding<Wide> rounding(call.sort, call.mode);
  fill<B>(call,
          [=](std::size_t i) { return std::bit_cast<B>(static_cast<To>(rounding.round(f(i)))); });
}

// Between floats --------------------------------------------------------------------------------

template <class To, class From>
void cast(const LaneCall& call) {
  using Wide = std::conditional_t<(sizeof(To) > sizeof(From)), To, From>;
  const auto* x = lanes_in<BitsOf<From>>(call, 0);
  fill_rounded<To, Wide>(
      call, [=](std::size_t i) { return static_cast<Wide>(std::bit_cast<From>(x[i])); });
}

// Patterns --------------------------------------------------------------------------------------

/// Patterns have as many bits as the lanes of their floats, or fewer.
template <class F, class In>
void from_bits(const LaneCall& call) {
  using B = BitsOf<F>;
  const In* x = lanes_in<In>(call, 0);
  if (call.sort.is_own_format) {
    fill<B>(call, [=](std::size_t i) { return static_cast<B>(x[i]); });
    return;
  }
  const SmallFormat<F> format(call.sort.e, call.sort.m);
  fill<B>(call,
          [=](std::size_t i) { return std::bit_cast<B>(format.decode(static_cast<B>(x[i]))); });
}

/// NaN is the quiet one that processors make.
template <class F, class Out>
void to_bits(const LaneCall& call) {
  using B = BitsOf<F>;
  const B* x = lanes_in<B>(call, 0);
  const int e = call.from.e;
  const int m = call.from.m;
  const B nan = (((B{1} << e) - 1) << m) | B{1} << (m - 1);
  const bool is_own = call.from.is_own_format;
  const SmallFormat<F> format(e, m);
  if (is_own) {
    fill<Out>(call, [=](std::size_t i) {
      const F value = std::bit_cast<F>(x[i]);
      return value != value ? nan : x[i];
    });
    return;
  }
  fill<Out>(call, [=](std::size_t i) {
    const F value = std::bit_cast<F>(x[i]);
    return value != value ? nan : format.encode(value);
  });
}

// Integers --------------------------------------------------------------------------------------

template <class F, class In, bool Signed>
void from_integer(const LaneCall& call) {
  const In* x = lanes_in<In>(call, 0);
  const unsigned rest = 64U - call.from.width;
  const auto integer = [=](std::size_t i) {
    if constexpr (!Signed) return static_cast<std::int64_t>(x[i]);
    return static_cast<std::int64_t>(static_cast<u64>(x[i]) << rest) >> rest;
  };
  if (call.sort.is_own_format) {
    using B = BitsOf<F>;
    fill<B>(call, [=](std::size_t i) { return std::bit_cast<B>(static_cast<F>(integer(i))); });
    return;
  }
  fill_rounded<F, double>(call, [=](std::size_t i) { return static_cast<double>(integer(i)); });
}

/// Zero where no integer of the width is right.
template <class F, class Out, bool Signed>
void to_integer(const LaneCall& call) {
  const auto* x = lanes_in<BitsOf<F>>(call, 0);
  const int width = call.sort.width;
  const double end = power_of_two<double>(Signed ? width - 1 : width);
  const double start = Signed ? -end : 0;
  const u64 mask = ~u64{0} >> (64 - width);
  Out* out = lanes_out<Out>(call);
  for (std::size_t i = 0; i < kLanes; ++i) {
    const auto value = round_to_integer(static_cast<double>(std::bit_cast<F>(x[i])));
    const bool is_right = value >= start && value < end;
    const auto integer = static_cast<u64>(static_cast<std::int64_t>(is_right ? value : 0));
    out[i] = static_cast<Out>(integer & mask);
    call.open[i] = truth_lane(!is_right);
  }
}

// Tables ----------------------------------------------------------------------------------------

template <class F, class Bits>
LaneKernel find_of_lanes(const Term* t) {
  // As a double, an integer that is rounded once more has to be exact, and 64 bits need a sign.
  const LaneSort sort = LaneSort::of(t->get_type());
  const LaneSort from = LaneSort::of(t->get_arg(t->get_arity() - 1)->get_type());
  const bool fits = from.width <= (sort.is_own_format ? 63 : 53);
  switch (t->get_tag()) {
    case T::fp_from_bits:
      return from_bits<F, Bits>;
    case T::fp_to_bits:
      return to_bits<F, Bits>;
    case T::fp_from_sbv:
      return fits ? from_integer<F, Bits, true> : nullptr;
    case T::fp_from_ubv:
      return fits ? from_integer<F, Bits, false> : nullptr;
    case T::fp_to_sbv:
      return to_integer<F, Bits, true>;
    case T::fp_to_ubv:
      return sort.width <= 63 ? to_integer<F, Bits, false> : nullptr;
    default:
      return nullptr;
  }
}

}  // namespace

LaneKernel find_conversion_kernel(const Term* t) {
  const LaneSort sort = LaneSort::of(t->get_type());
  const LaneSort from = LaneSort::of(t->get_arg(t->get_arity() - 1)->get_type());
  const bool to_float = sort.kind == LaneSort::Kind::floats;
  const bool from_float = from.kind == LaneSort::Kind::floats;
  if (to_float && from_float) {
    if (t->get_tag() != T::fp_cast) return nullptr;
    if (sort.lane == 32) return from.lane == 32 ? cast<float, float> : cast<float, double>;
    return from.lane == 32 ? cast<double, float> : cast<double, double>;
  }
  if (to_float == from_float) return nullptr;
  const LaneSort& floats = to_float ? sort : from;
  const LaneSort& bits = to_float ? from : sort;
  if (bits.kind != LaneSort::Kind::bits) return nullptr;
  if (floats.lane == 32) {
    return bits.lane == 32 ? find_of_lanes<float, u32>(t) : find_of_lanes<float, u64>(t);
  }
  return bits.lane == 32 ? find_of_lanes<double, u32>(t) : find_of_lanes<double, u64>(t);
}

}  // namespace vorn::search
