// Operands of bit-vector operations, by their results. What has an inverse is narrowed by the range
// of the inverse: sums, complements, exclusive ors, products that do not wrap, and operations that
// only move bits.
#include "vorn/ranges/bit_operations.h"
#include "vorn/ranges/bit_transfer.h"
#include "vorn/terms/bv_number.h"

namespace vorn::ranges {
namespace {

namespace N = BVNumber;
using T = SymbolTag;

/// The values of x that are at msb to lsb as `part` is.
BitRange insert(const BitRange& x, std::uint64_t msb, std::uint64_t lsb, const BitRange& part) {
  const std::uint64_t width = x.get_width();
  const QNumber outside = N::all_ones(width) - N::all_ones(msb + 1) + N::all_ones(lsb);
  const QNumber ones = N::bv_concat(part.get_ones(), QNumber(0), lsb);
  const QNumber possible = N::bv_concat(part.get_possible(), QNumber(0), lsb);
  BitRange result = x.intersect(BitRange::of_bits(width, ones, N::bv_or(outside, possible)));
  // The top bits bound the whole.
  if (msb + 1 != width) return result;
  return result.intersect(
      BitRange::between(width, N::bv_concat(part.get_least(), QNumber(0), lsb),
                        N::bv_concat(part.get_greatest(), N::all_ones(lsb), lsb)));
}

/// The values of x that both `result` and y allow in x & y.
BitRange narrow_conjunct(const BitRange& result, const BitRange& x, const BitRange& y) {
  const std::uint64_t width = x.get_width();
  // Where y is 1, a bit of x is that of the result.
  const QNumber cleared = N::bv_and(y.get_ones(), N::bv_not(result.get_possible(), width));
  return x.intersect(BitRange::of_bits(width, result.get_ones(), N::bv_not(cleared, width)))
      .intersect(BitRange::between(width, result.get_least(), N::all_ones(width)));
}

BitRange narrow_disjunct(const BitRange& result, const BitRange& x, const BitRange& y) {
  const std::uint64_t width = x.get_width();
  // Where y is 0, a bit of x is that of the result.
  const QNumber set = N::bv_and(result.get_ones(), N::bv_not(y.get_possible(), width));
  return x.intersect(BitRange::of_bits(width, set, result.get_possible()))
      .intersect(BitRange::between(width, QNumber(0), result.get_greatest()));
}

/// The values of x that extended by zeros are in `result`.
BitRange narrow_extension(const BitRange& result, const BitRange& x) {
  const std::uint64_t width = x.get_width();
  const BitRange values =
      result.intersect(BitRange::between(result.get_width(), QNumber(0), N::all_ones(width)));
  if (values.is_empty()) return BitRange::nothing(width);
  return x.intersect(bv_extract(width - 1, 0, values));
}

/// The values of x that extended by their signs are in `result`.
BitRange narrow_sign_extension(const BitRange& result, const BitRange& x) {
  const std::uint64_t width = x.get_width();
  const QNumber half = N::power_of_two(width - 1);
  const BitRange values =
      result.intersect(BitRange::between_signed(result.get_width(), half.neg(), half - QNumber(1)));
  BitRange kept = BitRange::nothing(width);
  for (const bool negative : {false, true}) {
    const BitRange part = values.with_sign(negative);
    if (!part.is_empty()) kept = kept.hull(x.intersect(bv_extract(width - 1, 0, part)));
  }
  return kept;
}

/// The values of x that shifted by one distance are in `result`.
BitRange narrow_shift(SymbolTag::tag tag, const BitRange& result, const BitRange& x,
                      const BitRange& distance) {
  const std::uint64_t width = x.get_width();
  std::int64_t n = 0;
  if (!distance.is_value() || !distance.get_least().get_int64(&n)) return x;
  const auto count = static_cast<std::uint64_t>(n);
  if (count >= width) return x;
  if (tag == T::bv_shl) {
    return insert(x, width - 1 - count, 0, bv_extract(width - 1, count, result));
  }
  return insert(x, width - 1, count, bv_extract(width - 1 - count, 0, result));
}

/// The values of x whose sums with those of y are in `result`. Where no sum wraps the differences
/// that are no values are left out, which modulo the width would be large ones.
BitRange narrow_summand(const BitRange& result, const BitRange& x, const BitRange& y) {
  const std::uint64_t width = x.get_width();
  BitRange kept = x.intersect(bv_sub(result, y));
  if (x.get_greatest() + y.get_greatest() > N::all_ones(width)) return kept;
  return kept.intersect(BitRange::between(width, result.get_least() - y.get_greatest(),
                                          result.get_greatest() - y.get_least()));
}

/// The values of x whose products with those of y are in `result`, where no product wraps.
BitRange narrow_factor(const BitRange& result, const BitRange& x, const BitRange& y) {
  const std::uint64_t width = x.get_width();
  const QNumber& most = y.get_greatest();
  if (most.sign() == 0 || x.get_greatest() * most > N::all_ones(width)) return x;
  const QNumber least = N::bv_udiv(result.get_least() + most - QNumber(1), most, 2 * width);
  const QNumber greatest = y.get_least().sign() == 0
                               ? x.get_greatest()
                               : N::bv_udiv(result.get_greatest(), y.get_least(), width);
  return x.intersect(BitRange::between(width, least, greatest));
}

/// Values with x < y, or x <= y.
void order(bool strict, bool is_signed, BitRange* x, BitRange* y) {
  const std::uint64_t width = x->get_width();
  const int step = strict ? 1 : 0;
  if (is_signed) {
    // Up to its own ends: an interval from the least number of all would wrap.
    const BitRange below = BitRange::between_signed(width, x->get_signed_least(),
                                                    y->get_signed_greatest() - QNumber(step));
    const BitRange above =
        BitRange::between_signed(width, x->get_signed_least() + step, y->get_signed_greatest());
    *x = x->intersect(below);
    *y = y->intersect(above);
    return;
  }
  const BitRange below = BitRange::between(width, QNumber(0), y->get_greatest() - QNumber(step));
  const BitRange above = BitRange::between(width, x->get_least() + step, N::all_ones(width));
  *x = x->intersect(below);
  *y = y->intersect(above);
}

void narrow_comparison(SymbolTag::tag tag, BoolRange truth, BitRange* x, BitRange* y) {
  if (!truth.is_value()) return;
  const bool strict = tag == T::bv_ult || tag == T::bv_slt;
  const bool is_signed = tag == T::bv_slt || tag == T::bv_sle;
  if (truth.get_value()) {
    order(strict, is_signed, x, y);
  } else {
    order(!strict, is_signed, y, x);
  }
}

void narrow_equality(bool truth, BitRange* x, BitRange* y) {
  if (truth) {
    *x = x->intersect(*y);
    *y = *x;
    return;
  }
  const BitRange first = y->is_value() ? x->without_end(y->get_least()) : *x;
  if (x->is_value()) *y = y->without_end(x->get_least());
  *x = first;
}

}  // namespace

void narrow_bits(const Term* t, const Range& result, BitRange* x, BitRange* y) {
  const SymbolTag::tag tag = t->get_tag();
  const Symbol::Indices& indices = t->get_symbol()->get_indices();
  if (const auto* truth = std::get_if<BoolRange>(&result)) {
    narrow_comparison(tag, *truth, x, y);
    return;
  }
  const auto& bits = std::get<BitRange>(result);
  const std::uint64_t width = x->get_width();
  switch (tag) {
    case T::bv_comp:
      if (bits.is_value()) narrow_equality(bits.get_least().sign() != 0, x, y);
      return;
    case T::bv_extract:
      *x = insert(*x, indices[0], indices[1], bits);
      return;
    case T::bv_concat:
      *x = x->intersect(bv_extract(bits.get_width() - 1, y->get_width(), bits));
      *y = y->intersect(bv_extract(y->get_width() - 1, 0, bits));
      return;
    case T::bv_zero_extend:
      *x = narrow_extension(bits, *x);
      return;
    case T::bv_sign_extend:
      *x = narrow_sign_extension(bits, *x);
      return;
    case T::bv_not:
      *x = x->intersect(bv_not(bits));
      return;
    case T::bv_neg:
      *x = x->intersect(bv_sub(BitRange::of_value(width, QNumber(0)), bits));
      return;
    case T::bv_add:
      *x = narrow_summand(bits, *x, *y);
      if (!x->is_empty()) *y = narrow_summand(bits, *y, *x);
      return;
    case T::bv_sub:
      *x = x->intersect(bv_add(bits, *y));
      if (!x->is_empty()) *y = y->intersect(bv_sub(*x, bits));
      return;
    case T::bv_mul:
      *x = narrow_factor(bits, *x, *y);
      if (!x->is_empty()) *y = narrow_factor(bits, *y, *x);
      return;
    case T::bv_xor:
      *x = x->intersect(bv_xor(bits, *y));
      if (!x->is_empty()) *y = y->intersect(bv_xor(bits, *x));
      return;
    case T::bv_shl:
    case T::bv_lshr:
    case T::bv_ashr:
      *x = narrow_shift(tag, bits, *x, *y);
      return;
    case T::bv_and:
      *x = narrow_conjunct(bits, *x, *y);
      *y = narrow_conjunct(bits, *y, *x);
      return;
    case T::bv_or:
      *x = narrow_disjunct(bits, *x, *y);
      *y = narrow_disjunct(bits, *y, *x);
      return;
    default:
      return;
  }
}

}  // namespace vorn::ranges
