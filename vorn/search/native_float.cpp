// Compiled with -frounding-math, since the operations must stay where the rounding mode is set.
#include "vorn/search/native_float.h"

#include <bit>
#include <cfenv>
#include <cfloat>
#include <cmath>
#include <limits>
#include <type_traits>

#include "vorn/terms/ieee_float.h"

namespace vorn::search {
namespace {

using T = SymbolTag;

// Elsewhere results would be rounded twice.
constexpr bool kHasNativeFloats = FLT_EVAL_METHOD == 0 && std::numeric_limits<float>::is_iec559 &&
                                  std::numeric_limits<double>::is_iec559;

template <class F>
using Bits = std::conditional_t<sizeof(F) == 4, std::uint32_t, std::uint64_t>;

template <class F>
F from_bits(std::uint64_t bits) {
  return std::bit_cast<F>(static_cast<Bits<F>>(bits));
}

/// The canonical NaN has all bits set but those of the fraction, of which the last one is.
template <class F>
std::uint64_t to_bits(F value) {
  constexpr int kFraction = std::numeric_limits<F>::digits - 1;
  if (std::isnan(value)) return Bits<F>(~Bits<F>{0} << kFraction) | Bits<F>{1};
  return std::bit_cast<Bits<F>>(value);
}

template <class F>
std::optional<std::uint64_t> apply_rounded(SymbolTag::tag tag,
                                           std::span<const std::uint64_t> values) {
  if (!set_rounding(static_cast<IEEEFloat::rounding_mode>(values[0]))) return std::nullopt;
  const F x = from_bits<F>(values[1]);
  const F y = values.size() > 2 ? from_bits<F>(values[2]) : F{0};
  switch (tag) {
    case T::fp_add:
      return to_bits<F>(x + y);
    case T::fp_sub:
      return to_bits<F>(x - y);
    case T::fp_mul:
      return to_bits<F>(x * y);
    case T::fp_div:
      return to_bits<F>(x / y);
    case T::fp_sqrt:
      return to_bits<F>(std::sqrt(x));
    case T::fp_fma:
      return to_bits<F>(std::fma(x, y, from_bits<F>(values[3])));
    case T::fp_round_to_integral:
      return to_bits<F>(std::nearbyint(x));
    default:
      return std::nullopt;
  }
}

template <class F>
std::optional<std::uint64_t> apply_exact(SymbolTag::tag tag,
                                         std::span<const std::uint64_t> values) {
  const F x = from_bits<F>(values[0]);
  const F y = values.size() > 1 ? from_bits<F>(values[1]) : F{0};
  switch (tag) {
    case T::fp_equal:
      return x == y;
    case T::fp_lt:
      return x < y;
    case T::fp_le:
      return x <= y;
    case T::fp_neg:
      return to_bits<F>(-x);
    case T::fp_abs:
      return to_bits<F>(std::fabs(x));
    case T::fp_isnan:
      return std::isnan(x);
    case T::fp_isinf:
      return std::isinf(x);
    case T::fp_iszero:
      return x == F{0};
    case T::fp_isnormal:
      return std::isnormal(x);
    case T::fp_issubnormal:
      return std::fpclassify(x) == FP_SUBNORMAL;
    case T::fp_isnegative:
      return !std::isnan(x) && std::signbit(x);
    case T::fp_ispositive:
      return !std::isnan(x) && !std::signbit(x);
    default:
      return std::nullopt;
  }
}

template <class F>
std::optional<std::uint64_t> apply_in(SymbolTag::tag tag, std::span<const std::uint64_t> values) {
  switch (tag) {
    case T::fp_add:
    case T::fp_sub:
    case T::fp_mul:
    case T::fp_div:
    case T::fp_sqrt:
    case T::fp_fma:
    case T::fp_round_to_integral:
      return apply_rounded<F>(tag, values);
    default:
      return apply_exact<F>(tag, values);
  }
}

}  // namespace

std::uint8_t find_native_format(const DataType* type) {
  if (!kHasNativeFloats || type->get_kind() != DataType::Kind::floating_point) return 0;
  const IEEEFloat::format f = type->get_format();
  if (f == IEEEFloat::format{8, 23}) return 32;
  if (f == IEEEFloat::format{11, 52}) return 64;
  return 0;
}

std::optional<std::uint64_t> apply_native(SymbolTag::tag tag, std::uint8_t format,
                                          std::span<const std::uint64_t> values) {
  return format == 32 ? apply_in<float>(tag, values) : apply_in<double>(tag, values);
}

std::optional<std::uint64_t> convert_native(std::uint8_t from, std::uint8_t to, std::uint64_t mode,
                                            std::uint64_t bits) {
  if (!set_rounding(static_cast<IEEEFloat::rounding_mode>(mode))) return std::nullopt;
  if (from == to) return bits;
  if (to == 64) return to_bits<double>(from_bits<float>(bits));
  return to_bits<float>(static_cast<float>(from_bits<double>(bits)));
}

bool set_rounding(IEEEFloat::rounding_mode wanted) {
  int mode = FE_TONEAREST;
  switch (wanted) {
    case IEEEFloat::rounding_mode::nearest_even:
      break;
    case IEEEFloat::rounding_mode::toward_zero:
      mode = FE_TOWARDZERO;
      break;
    case IEEEFloat::rounding_mode::plus_inf:
      mode = FE_UPWARD;
      break;
    case IEEEFloat::rounding_mode::minus_inf:
      mode = FE_DOWNWARD;
      break;
    case IEEEFloat::rounding_mode::nearest_away:
      return false;
  }
  return std::fegetround() == mode || std::fesetround(mode) == 0;
}

bool keeps_subnormals() {
  const volatile double least_normal = std::numeric_limits<double>::min();
  const volatile double least = std::numeric_limits<double>::denorm_min();
  const volatile double half = least_normal / 2;
  return std::bit_cast<std::uint64_t>(double{half}) != 0 && least + least > least;
}

void reset_rounding() {
  std::fesetround(FE_TONEAREST);
}

}  // namespace vorn::search
