// Compiled with -frounding-math and -ffp-contract=off: operations stay what and where they are.
// Without -ftrapping-math and -fmath-errno, since nobody asks for flags, loops become vectors.
#include "vorn/search/lane_floats.h"

#include <algorithm>

namespace vorn::search {
namespace {

using T = SymbolTag;

// Arithmetic ----------------------------------------------------------------------------------

/// The results of `f` on the operands, rounded to the format of the result.
template <class F, class Function>
void fill_rounded(const LaneCall& call, Function f) {
  using B = BitsOf<F>;
  B* out = lanes_out<B>(call);
  if (call.sort.is_own_format) {
    for (std::size_t i = 0; i < kLanes; ++i)
      out[i] = std::bit_cast<B>(f(i));
    return;
  }
  const SmallRounding<F> rounding(call.sort, call.mode);
  for (std::size_t i = 0; i < kLanes; ++i)
    out[i] = std::bit_cast<B>(rounding.round(f(i)));
}

/// The results of `f`, which are values of the format.
template <class F, class Function>
void fill_exact(const LaneCall& call, Function f) {
  using B = BitsOf<F>;
  B* out = lanes_out<B>(call);
  for (std::size_t i = 0; i < kLanes; ++i)
    out[i] = std::bit_cast<B>(f(i));
}

template <class F>
class Operands {
 public:
  explicit Operands(const LaneCall& call) {
    for (std::size_t i = 0; i < lanes.size(); ++i)
      lanes[i] = lanes_in<BitsOf<F>>(call, i);
  }
  F x(std::size_t i) const { return std::bit_cast<F>(lanes[0][i]); }
  F y(std::size_t i) const { return std::bit_cast<F>(lanes[1][i]); }
  F z(std::size_t i) const { return std::bit_cast<F>(lanes[2][i]); }

 private:
  std::array<const BitsOf<F>*, 3> lanes{};
};

template <class F>
void add(const LaneCall& call) {
  const Operands<F> in(call);
  fill_rounded<F>(call, [&](std::size_t i) { return in.x(i) + in.y(i); });
}
template <class F>
void sub(const LaneCall& call) {
  const Operands<F> in(call);
  fill_rounded<F>(call, [&](std::size_t i) { return in.x(i) - in.y(i); });
}
template <class F>
void mul(const LaneCall& call) {
  const Operands<F> in(call);
  fill_rounded<F>(call, [&](std::size_t i) { return in.x(i) * in.y(i); });
}
template <class F>
void div(const LaneCall& call) {
  const Operands<F> in(call);
  fill_rounded<F>(call, [&](std::size_t i) { return in.x(i) / in.y(i); });
}
template <class F>
void square_root(const LaneCall& call) {
  const Operands<F> in(call);
  fill_rounded<F>(call, [&](std::size_t i) { return std::sqrt(in.x(i)); });
}
template <class F>
void fma(const LaneCall& call) {
  const Operands<F> in(call);
  fill_exact<F>(call, [&](std::size_t i) { return std::fma(in.x(i), in.y(i), in.z(i)); });
}
template <class F>
void to_integral(const LaneCall& call) {
  const Operands<F> in(call);
  fill_exact<F>(call, [&](std::size_t i) { return round_to_integer(in.x(i)); });
}
template <class F>
void remainder(const LaneCall& call) {
  const Operands<F> in(call);
  fill_exact<F>(call, [&](std::size_t i) { return std::remainder(in.x(i), in.y(i)); });
}

// Signs and selections --------------------------------------------------------------------------

template <class F>
void negate(const LaneCall& call) {
  const Operands<F> in(call);
  fill_exact<F>(call, [&](std::size_t i) {
    return std::bit_cast<F>(std::bit_cast<BitsOf<F>>(in.x(i)) ^ kSignBit<F>);
  });
}
template <class F>
void absolute(const LaneCall& call) {
  const Operands<F> in(call);
  fill_exact<F>(call, [&](std::size_t i) { return magnitude_of(in.x(i)); });
}

/// The less of both, or the greater, and +0 where the theory leaves open which zero it is.
template <class F, bool Greater>
void select(const LaneCall& call) {
  const Operands<F> in(call);
  fill_exact<F>(call, [&](std::size_t i) {
    const F x = in.x(i);
    const F y = in.y(i);
    const bool is_first = Greater ? x > y : x < y;
    const F number = is_first || y != y ? x : y;
    return x == F{0} && y == F{0} && std::signbit(x) != std::signbit(y) ? F{0} : number;
  });
  for (std::size_t i = 0; i < kLanes; ++i) {
    const F x = in.x(i);
    const F y = in.y(i);
    call.open[i] = truth_lane(x == F{0} && y == F{0} && std::signbit(x) != std::signbit(y));
  }
}

// Predicates ------------------------------------------------------------------------------------

template <class Function>
void fill_truth(const LaneCall& call, Function f) {
  auto* out = lanes_out<std::uint32_t>(call);
  for (std::size_t i = 0; i < kLanes; ++i)
    out[i] = truth_lane(f(i));
}

template <class F>
void equal_numbers(const LaneCall& call) {
  const Operands<F> in(call);
  fill_truth(call, [&](std::size_t i) { return in.x(i) == in.y(i); });
}
template <class F>
void less(const LaneCall& call) {
  const Operands<F> in(call);
  fill_truth(call, [&](std::size_t i) { return in.x(i) < in.y(i); });
}
template <class F>
void less_or_equal(const LaneCall& call) {
  const Operands<F> in(call);
  fill_truth(call, [&](std::size_t i) { return in.x(i) <= in.y(i); });
}
/// There is one NaN, and there are two zeros.
template <class F>
void same(const LaneCall& call) {
  const Operands<F> in(call);
  fill_truth(call, [&](std::size_t i) {
    const F x = in.x(i);
    const F y = in.y(i);
    const bool are_nan = (x != x) & (y != y);
    return are_nan | (std::bit_cast<BitsOf<F>>(x) == std::bit_cast<BitsOf<F>>(y));
  });
}

template <class F>
F least_normal(const LaneCall& call) {
  return power_of_two<F>(2 - (1 << (call.from.e - 1)));
}

template <class F>
void is_nan(const LaneCall& call) {
  const Operands<F> in(call);
  fill_truth(call, [&](std::size_t i) { return in.x(i) != in.x(i); });
}
template <class F>
void is_infinite(const LaneCall& call) {
  const Operands<F> in(call);
  fill_truth(call, [&](std::size_t i) {
    return magnitude_of(in.x(i)) == std::numeric_limits<F>::infinity();
  });
}
template <class F>
void is_zero(const LaneCall& call) {
  const Operands<F> in(call);
  fill_truth(call, [&](std::size_t i) { return in.x(i) == F{0}; });
}
template <class F>
void is_normal(const LaneCall& call) {
  const Operands<F> in(call);
  const F least = least_normal<F>(call);
  fill_truth(call, [&](std::size_t i) {
    const F x = magnitude_of(in.x(i));
    return (x >= least) & (x < std::numeric_limits<F>::infinity());
  });
}
template <class F>
void is_subnormal(const LaneCall& call) {
  const Operands<F> in(call);
  const F least = least_normal<F>(call);
  fill_truth(call, [&](std::size_t i) {
    const F x = magnitude_of(in.x(i));
    return (x < least) & (x > F{0});
  });
}
template <class F>
void is_negative(const LaneCall& call) {
  const Operands<F> in(call);
  fill_truth(call, [&](std::size_t i) {
    const F x = in.x(i);
    return (x == x) & ((std::bit_cast<BitsOf<F>>(x) & kSignBit<F>) != 0);
  });
}
template <class F>
void is_positive(const LaneCall& call) {
  const Operands<F> in(call);
  fill_truth(call, [&](std::size_t i) {
    const F x = in.x(i);
    return (x == x) & ((std::bit_cast<BitsOf<F>>(x) & kSignBit<F>) == 0);
  });
}

// Table -----------------------------------------------------------------------------------------

template <class F>
LaneKernel find_in_format(SymbolTag::tag tag, const LaneSort& sort) {
  switch (tag) {
    case T::fp_add:
      return add<F>;
    case T::fp_sub:
      return sub<F>;
    case T::fp_mul:
      return mul<F>;
    case T::fp_div:
      return div<F>;
    case T::fp_sqrt:
      return square_root<F>;
    case T::fp_fma:
      // Its exact results have too many bits to be rounded twice.
      return sort.is_own_format ? fma<F> : nullptr;
    case T::fp_round_to_integral:
      // The integer next to the largest number may be beyond it where that is small.
      return (1 << (sort.e - 1)) - 1 >= sort.m ? to_integral<F> : nullptr;
    case T::fp_rem:
      return remainder<F>;
    case T::fp_neg:
      return negate<F>;
    case T::fp_abs:
      return absolute<F>;
    case T::fp_min:
      return select<F, false>;
    case T::fp_max:
      return select<F, true>;
    case T::equal:
      return same<F>;
    case T::fp_equal:
      return equal_numbers<F>;
    case T::fp_lt:
      return less<F>;
    case T::fp_le:
      return less_or_equal<F>;
    case T::fp_isnan:
      return is_nan<F>;
    case T::fp_isinf:
      return is_infinite<F>;
    case T::fp_iszero:
      return is_zero<F>;
    case T::fp_isnormal:
      return is_normal<F>;
    case T::fp_issubnormal:
      return is_subnormal<F>;
    case T::fp_isnegative:
      return is_negative<F>;
    case T::fp_ispositive:
      return is_positive<F>;
    default:
      return nullptr;
  }
}

}  // namespace

LaneKernel find_float_kernel(const Term* t) {
  const LaneSort sort = LaneSort::of(t->get_arg(t->get_arity() - 1)->get_type());
  if (sort.kind != LaneSort::Kind::floats) return nullptr;
  return sort.lane == 32 ? find_in_format<float>(t->get_tag(), sort)
                         : find_in_format<double>(t->get_tag(), sort);
}

}  // namespace vorn::search
