#include "vorn/ranges/bit_operations.h"

#include <algorithm>

#include "vorn/terms/bv_number.h"

namespace vorn::ranges {
namespace {

namespace N = BVNumber;
using T = SymbolTag;

/// The values whose low bits are those of `value`, as many as are known of both operands.
BitRange with_low_bits(const BitRange& x, const BitRange& y, const QNumber& value) {
  const std::uint64_t width = x.get_width();
  const std::uint64_t known = std::min(x.count_low_known(), y.count_low_known());
  const QNumber low = N::modulo(value, known);
  return BitRange::of_bits(width, low, N::all_ones(width) - N::all_ones(known) + low);
}

/// The integers from `least` to `greatest` modulo 2^width; everything where they wrap around at
/// different times.
BitRange wrap(std::uint64_t width, const QNumber& least, const QNumber& greatest) {
  const QNumber whole = N::power_of_two(width);
  if (least.sign() >= 0 && greatest < whole) return BitRange::between(width, least, greatest);
  if (least >= whole && greatest < whole + whole) {
    return BitRange::between(width, least - whole, greatest - whole);
  }
  if (greatest.sign() < 0 && least >= whole.neg()) {
    return BitRange::between(width, least + whole, greatest + whole);
  }
  return BitRange::everything(width);
}

}  // namespace

BitRange bv_add(const BitRange& x, const BitRange& y) {
  return wrap(x.get_width(), x.get_least() + y.get_least(), x.get_greatest() + y.get_greatest())
      .intersect(with_low_bits(x, y, x.get_ones() + y.get_ones()));
}

BitRange bv_sub(const BitRange& x, const BitRange& y) {
  const std::uint64_t width = x.get_width();
  return wrap(width, x.get_least() - y.get_greatest(), x.get_greatest() - y.get_least())
      .intersect(with_low_bits(x, y, N::bv_sub(x.get_ones(), y.get_ones(), width)));
}

BitRange bv_mul(const BitRange& x, const BitRange& y) {
  return wrap(x.get_width(), x.get_least() * y.get_least(), x.get_greatest() * y.get_greatest())
      .intersect(with_low_bits(x, y, x.get_ones() * y.get_ones()));
}

BitRange bv_udiv(const BitRange& x, const BitRange& y) {
  const std::uint64_t width = x.get_width();
  BitRange result = BitRange::nothing(width);
  // A quotient by zero is all ones.
  if (y.get_least().sign() == 0) result = BitRange::of_value(width, N::all_ones(width));
  if (y.get_greatest().sign() == 0) return result;
  const QNumber divisor = y.get_least().sign() == 0 ? QNumber(1) : y.get_least();
  return result.hull(BitRange::between(width, N::bv_udiv(x.get_least(), y.get_greatest(), width),
                                       N::bv_udiv(x.get_greatest(), divisor, width)));
}

BitRange bv_urem(const BitRange& x, const BitRange& y) {
  // A dividend below the divisor stays, and so does one over zero.
  if (x.get_greatest() < y.get_least() || y.get_greatest().sign() == 0) return x;
  const QNumber bound = y.get_greatest() - 1;
  const bool is_bounded = y.get_least().sign() != 0 && bound < x.get_greatest();
  return BitRange::between(x.get_width(), QNumber(0), is_bounded ? bound : x.get_greatest());
}

BitRange bv_and(const BitRange& x, const BitRange& y) {
  const std::uint64_t width = x.get_width();
  const QNumber& least = std::min(x.get_greatest(), y.get_greatest());
  return BitRange::of_bits(width, N::bv_and(x.get_ones(), y.get_ones()),
                           N::bv_and(x.get_possible(), y.get_possible()))
      .intersect(BitRange::between(width, QNumber(0), least));
}

BitRange bv_not(const BitRange& x) {
  const std::uint64_t width = x.get_width();
  return BitRange::of_bits(width, N::bv_not(x.get_possible(), width),
                           N::bv_not(x.get_ones(), width))
      .intersect(BitRange::between(width, N::bv_not(x.get_greatest(), width),
                                   N::bv_not(x.get_least(), width)));
}

BitRange bv_or(const BitRange& x, const BitRange& y) {
  return bv_not(bv_and(bv_not(x), bv_not(y)));
}

BitRange bv_xor(const BitRange& x, const BitRange& y) {
  const std::uint64_t width = x.get_width();
  const QNumber open = N::bv_or(N::bv_xor(x.get_ones(), x.get_possible()),
                                N::bv_xor(y.get_ones(), y.get_possible()));
  const QNumber known = N::bv_and(N::bv_xor(x.get_ones(), y.get_ones()), N::bv_not(open, width));
  return BitRange::of_bits(width, known, N::bv_or(known, open));
}

BitRange bv_concat(const BitRange& high, const BitRange& low) {
  const std::uint64_t k = low.get_width();
  const std::uint64_t width = high.get_width() + k;
  return BitRange::of_bits(width, N::bv_concat(high.get_ones(), low.get_ones(), k),
                           N::bv_concat(high.get_possible(), low.get_possible(), k))
      .intersect(BitRange::between(width, N::bv_concat(high.get_least(), low.get_least(), k),
                                   N::bv_concat(high.get_greatest(), low.get_greatest(), k)));
}

BitRange bv_extract(std::uint64_t msb, std::uint64_t lsb, const BitRange& x) {
  const auto cut = [msb, lsb](const QNumber& bits) { return N::bv_extract(msb, lsb, bits); };
  const std::uint64_t width = msb - lsb + 1;
  BitRange bits = BitRange::of_bits(width, cut(x.get_ones()), cut(x.get_possible()));
  // The order stays where what is cut off above is the same.
  const bool is_ordered = N::bit_length(N::bv_xor(x.get_least(), x.get_greatest())) <= msb + 1;
  if (!is_ordered) return bits;
  return bits.intersect(BitRange::between(width, cut(x.get_least()), cut(x.get_greatest())));
}

BitRange bv_sign_extend(std::uint64_t count, const BitRange& x) {
  BitRange result = BitRange::nothing(x.get_width() + count);
  for (const bool negative : {false, true}) {
    const BitRange part = x.with_sign(negative);
    if (part.is_empty()) continue;
    const QNumber high = negative ? N::all_ones(count) : QNumber(0);
    result = result.hull(bv_concat(BitRange::of_value(count, high), part));
  }
  return result;
}

/// Shifts by one distance, the same for every bit.
BitRange bv_shift(SymbolTag::tag tag, const BitRange& x, const BitRange& distance) {
  const std::uint64_t width = x.get_width();
  std::int64_t n = 0;
  const bool is_short = distance.is_value() && distance.get_least().get_int64(&n) &&
                        static_cast<std::uint64_t>(n) < width;
  if (!distance.is_value() || (!is_short && tag == T::bv_ashr)) {
    if (tag != T::bv_lshr) return BitRange::everything(width);
    return BitRange::between(width, QNumber(0),
                             N::bv_lshr(x.get_greatest(), distance.get_least(), width));
  }
  if (!is_short) return BitRange::of_value(width, QNumber(0));
  const auto count = static_cast<std::uint64_t>(n);
  if (count == 0) return x;
  if (tag == T::bv_shl) {
    return bv_concat(bv_extract(width - 1 - count, 0, x), BitRange::of_value(count, QNumber(0)));
  }
  const BitRange high = bv_extract(width - 1, count, x);
  return tag == T::bv_ashr ? bv_sign_extend(count, high)
                           : bv_concat(BitRange::of_value(count, QNumber(0)), high);
}

}  // namespace vorn::ranges
