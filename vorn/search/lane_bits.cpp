// Truth values and bit-vectors in lanes: the integers of the processor.
#include <algorithm>
#include <limits>

#include "vorn/search/lanes.h"

namespace vorn::search {
namespace {

using T = SymbolTag;

template <class W>
const W* in(const LaneCall& call, std::size_t i) {
  return static_cast<const W*>(__builtin_assume_aligned(call.in[i], 64));
}

template <class Out, class Function>
void fill(const LaneCall& call, Function f) {
  auto* out = static_cast<Out*>(__builtin_assume_aligned(call.out, 64));
  for (std::size_t i = 0; i < kLanes; ++i)
    out[i] = static_cast<Out>(f(i));
}

template <class W>
W mask_of(unsigned width) {
  return static_cast<W>(~W{0} >> (sizeof(W) * 8 - width));
}

/// The two's-complement number of that width.
template <class W>
std::make_signed_t<W> to_signed(W x, unsigned width) {
  const unsigned rest = sizeof(W) * 8 - width;
  return static_cast<std::make_signed_t<W>>(x << rest) >> rest;
}

// Operations on one width -----------------------------------------------------------------------

/// `f` on both operands, of which the bits of the width are kept.
template <class W, class Function>
void fill_bits(const LaneCall& call, Function f) {
  const W* x = in<W>(call, 0);
  const W* y = in<W>(call, 1);
  const W mask = mask_of<W>(call.sort.width);
  fill<W>(call, [=](std::size_t i) { return f(x[i], y[i]) & mask; });
}
template <class W, class Function>
void fill_truth(const LaneCall& call, Function f) {
  const W* x = in<W>(call, 0);
  const W* y = in<W>(call, 1);
  fill<std::uint32_t>(
      call, [=](std::size_t i) { return f(x[i], y[i]) ? ~std::uint32_t{0} : std::uint32_t{0}; });
}

template <class W>
W divide(W x, W y) {
  return y == 0 ? ~W{0} : x / y;
}
template <class W>
W modulo(W x, W y) {
  return y == 0 ? x : x % y;
}

/// Signed operations by their magnitudes, as SMT-LIB defines them.
template <class W>
struct Magnitudes {
  Magnitudes(W a, W b, unsigned width)
      : x_negative(to_signed(a, width) < 0),
        y_negative(to_signed(b, width) < 0),
        x(x_negative ? (W{0} - a) & mask_of<W>(width) : a),
        y(y_negative ? (W{0} - b) & mask_of<W>(width) : b) {}
  bool x_negative;
  bool y_negative;
  W x;
  W y;
};

template <class W>
W divide_signed(W a, W b, unsigned width) {
  const Magnitudes<W> v(a, b, width);
  const W quotient = divide(v.x, v.y);
  return v.x_negative != v.y_negative ? W{0} - quotient : quotient;
}
template <class W>
W remainder_signed(W a, W b, unsigned width) {
  const Magnitudes<W> v(a, b, width);
  const W rest = modulo(v.x, v.y);
  return v.x_negative ? W{0} - rest : rest;
}
template <class W>
W modulo_signed(W a, W b, unsigned width) {
  const Magnitudes<W> v(a, b, width);
  const W rest = modulo(v.x, v.y);
  const W of_sign = v.x_negative ? W{0} - rest : rest;
  return rest == 0 || v.x_negative == v.y_negative ? of_sign : of_sign + b;
}

template <class W, SymbolTag::tag Tag>
void run_bits(const LaneCall& call) {
  const unsigned width = call.sort.width;
  fill_bits<W>(call, [width](W x, W y) -> W {
    if constexpr (Tag == T::bv_and) return x & y;
    if constexpr (Tag == T::bv_or) return x | y;
    if constexpr (Tag == T::bv_xor) return x ^ y;
    if constexpr (Tag == T::bv_add) return x + y;
    if constexpr (Tag == T::bv_sub) return x - y;
    if constexpr (Tag == T::bv_mul) return x * y;
    if constexpr (Tag == T::bv_udiv) return divide(x, y);
    if constexpr (Tag == T::bv_urem) return modulo(x, y);
    if constexpr (Tag == T::bv_sdiv) return divide_signed(x, y, width);
    if constexpr (Tag == T::bv_srem) return remainder_signed(x, y, width);
    if constexpr (Tag == T::bv_smod) return modulo_signed(x, y, width);
    const W most = static_cast<W>(std::min<W>(y, width - 1));
    if constexpr (Tag == T::bv_shl) return y < width ? x << most : 0;
    if constexpr (Tag == T::bv_lshr) return y < width ? x >> most : 0;
    if constexpr (Tag == T::bv_ashr) return static_cast<W>(to_signed(x, width) >> most);
  });
}

template <class W, SymbolTag::tag Tag>
void run_predicate(const LaneCall& call) {
  const unsigned width = call.from.width;
  fill_truth<W>(call, [width](W x, W y) {
    if constexpr (Tag == T::equal) return x == y;
    if constexpr (Tag == T::bv_ult) return x < y;
    if constexpr (Tag == T::bv_ule) return x <= y;
    if constexpr (Tag == T::bv_slt) return to_signed(x, width) < to_signed(y, width);
    if constexpr (Tag == T::bv_sle) return to_signed(x, width) <= to_signed(y, width);
  });
}

template <class W>
void complement(const LaneCall& call) {
  const W* x = in<W>(call, 0);
  const W mask = mask_of<W>(call.sort.width);
  fill<W>(call, [=](std::size_t i) { return ~x[i] & mask; });
}
template <class W>
void negate(const LaneCall& call) {
  const W* x = in<W>(call, 0);
  const W mask = mask_of<W>(call.sort.width);
  fill<W>(call, [=](std::size_t i) { return (W{0} - x[i]) & mask; });
}
template <class W>
void choose(const LaneCall& call) {
  const auto* condition = in<std::uint32_t>(call, 0);
  const W* x = in<W>(call, 1);
  const W* y = in<W>(call, 2);
  fill<W>(call, [=](std::size_t i) { return condition[i] != 0 ? x[i] : y[i]; });
}

// Widths that change ----------------------------------------------------------------------------

template <class W>
void compare_to_bit(const LaneCall& call) {
  const W* x = in<W>(call, 0);
  const W* y = in<W>(call, 1);
  fill<std::uint32_t>(call, [=](std::size_t i) { return x[i] == y[i] ? 1U : 0U; });
}
template <class Out, class In>
void extract(const LaneCall& call) {
  const In* x = in<In>(call, 0);
  const unsigned lowest = call.lowest;
  const Out mask = mask_of<Out>(call.sort.width);
  fill<Out>(call, [=](std::size_t i) { return static_cast<Out>(x[i] >> lowest) & mask; });
}
template <class Out, class In>
void extend_sign(const LaneCall& call) {
  const In* x = in<In>(call, 0);
  const unsigned width = call.from.width;
  const Out mask = mask_of<Out>(call.sort.width);
  fill<Out>(call, [=](std::size_t i) {
    return static_cast<Out>(static_cast<std::int64_t>(to_signed(x[i], width))) & mask;
  });
}
/// Where an operand has 64-bit lanes, so has the result.
template <class Out, class High, class Low>
void concatenate(const LaneCall& call) {
  const High* high = in<High>(call, 0);
  const Low* low = in<Low>(call, 1);
  const unsigned shift = call.second_width;
  fill<Out>(call, [=](std::size_t i) { return static_cast<Out>(high[i]) << shift | low[i]; });
}

// Truth values: all zeros or all ones -----------------------------------------------------------

template <SymbolTag::tag Tag>
void connect(const LaneCall& call) {
  const auto* x = in<std::uint32_t>(call, 0);
  const auto* y = in<std::uint32_t>(call, 1);
  fill<std::uint32_t>(call, [=](std::size_t i) {
    if constexpr (Tag == T::bool_and) return x[i] & y[i];
    if constexpr (Tag == T::bool_or) return x[i] | y[i];
    if constexpr (Tag == T::bool_xor) return x[i] ^ y[i];
    if constexpr (Tag == T::bool_iff) return ~(x[i] ^ y[i]);
    if constexpr (Tag == T::bool_implies) return ~x[i] | y[i];
  });
}
void negate_truth(const LaneCall& call) {
  const auto* x = in<std::uint32_t>(call, 0);
  fill<std::uint32_t>(call, [=](std::size_t i) { return ~x[i]; });
}

// Tables ----------------------------------------------------------------------------------------

template <class W>
LaneKernel find_of_width(SymbolTag::tag tag) {
  switch (tag) {
    case T::bv_not:
      return complement<W>;
    case T::bv_neg:
      return negate<W>;
    case T::bv_and:
      return run_bits<W, T::bv_and>;
    case T::bv_or:
      return run_bits<W, T::bv_or>;
    case T::bv_xor:
      return run_bits<W, T::bv_xor>;
    case T::bv_add:
      return run_bits<W, T::bv_add>;
    case T::bv_sub:
      return run_bits<W, T::bv_sub>;
    case T::bv_mul:
      return run_bits<W, T::bv_mul>;
    case T::bv_udiv:
      return run_bits<W, T::bv_udiv>;
    case T::bv_urem:
      return run_bits<W, T::bv_urem>;
    case T::bv_sdiv:
      return run_bits<W, T::bv_sdiv>;
    case T::bv_srem:
      return run_bits<W, T::bv_srem>;
    case T::bv_smod:
      return run_bits<W, T::bv_smod>;
    case T::bv_shl:
      return run_bits<W, T::bv_shl>;
    case T::bv_lshr:
      return run_bits<W, T::bv_lshr>;
    case T::bv_ashr:
      return run_bits<W, T::bv_ashr>;
    case T::bv_comp:
      return compare_to_bit<W>;
    case T::equal:
      return run_predicate<W, T::equal>;
    case T::bv_ult:
      return run_predicate<W, T::bv_ult>;
    case T::bv_ule:
      return run_predicate<W, T::bv_ule>;
    case T::bv_slt:
      return run_predicate<W, T::bv_slt>;
    case T::bv_sle:
      return run_predicate<W, T::bv_sle>;
    default:
      return nullptr;
  }
}

template <class Out, class In>
LaneKernel find_of_widths(SymbolTag::tag tag, bool low_is_wide) {
  switch (tag) {
    case T::bv_extract:
    case T::bv_zero_extend:
      return extract<Out, In>;
    case T::bv_sign_extend:
      return extend_sign<Out, In>;
    case T::bv_concat:
      return low_is_wide ? concatenate<Out, In, std::uint64_t>
                         : concatenate<Out, In, std::uint32_t>;
    default:
      return nullptr;
  }
}

LaneKernel find_connective(SymbolTag::tag tag) {
  switch (tag) {
    case T::bool_not:
      return negate_truth;
    case T::bool_and:
      return connect<T::bool_and>;
    case T::bool_or:
      return connect<T::bool_or>;
    case T::bool_xor:
      return connect<T::bool_xor>;
    case T::bool_implies:
      return connect<T::bool_implies>;
    case T::bool_iff:
    case T::equal:
      return connect<T::bool_iff>;
    default:
      return nullptr;
  }
}

}  // namespace

LaneKernel find_bit_kernel(const Term* t) {
  using u32 = std::uint32_t;
  using u64 = std::uint64_t;
  const SymbolTag::tag tag = t->get_tag();
  const LaneSort out = LaneSort::of(t->get_type());
  if (tag == T::ite) return out.lane == 32 ? choose<u32> : choose<u64>;
  const LaneSort first = LaneSort::of(t->get_arg(0)->get_type());
  const LaneSort last = LaneSort::of(t->get_arg(t->get_arity() - 1)->get_type());
  if (first.kind == LaneSort::Kind::truth) return find_connective(tag);
  if (first.kind == LaneSort::Kind::mode && tag == T::equal) return run_predicate<u32, T::equal>;
  if (first.kind != LaneSort::Kind::bits) return nullptr;
  if (LaneKernel kernel = first.lane == 32 ? find_of_width<u32>(tag) : find_of_width<u64>(tag)) {
    return kernel;
  }
  const bool low_is_wide = last.lane == 64;
  if (out.lane == 32) {
    return first.lane == 32 ? find_of_widths<u32, u32>(tag, low_is_wide)
                            : find_of_widths<u32, u64>(tag, low_is_wide);
  }
  return first.lane == 32 ? find_of_widths<u64, u32>(tag, low_is_wide)
                          : find_of_widths<u64, u64>(tag, low_is_wide);
}

}  // namespace vorn::search
