#include "vorn/ranges/bit_range.h"

#include <utility>

#include "vorn/terms/bv_number.h"

namespace vorn::ranges {
namespace {

namespace N = BVNumber;

QNumber without(const QNumber& a, const QNumber& b) {
  return N::bv_xor(a, N::bv_and(a, b));
}

bool has_bits(const QNumber& x, const QNumber& ones, const QNumber& possible) {
  return N::bv_and(x, ones) == ones && N::bv_and(x, possible) == x;
}

/// Stores the least value from `from` up that has the bits of `ones` and none but those of
/// `possible`. False if there is none.
bool find_next(std::uint64_t width, const QNumber& ones, const QNumber& possible, QNumber* from) {
  if (has_bits(*from, ones, possible)) return true;
  const QNumber missing = without(ones, *from);
  const QNumber excess = without(*from, possible);
  // Above its topmost wrong bit `from` is right. A missing bit there is set; in place of one too
  // many the next bit above that may be set is, as in a carry. What is below is as small as it may.
  std::uint64_t bit = N::bit_length(missing);
  if (missing < excess) {
    const std::uint64_t above = N::bit_length(excess);
    const QNumber free = without(possible, *from);
    if (above >= width) return false;
    const QNumber candidates = N::bv_extract(width - 1, above, free);
    if (candidates.sign() == 0) return false;
    const QNumber lowest = N::bv_and(candidates, N::bv_neg(candidates, width));
    bit = above + N::bit_length(lowest);
  }
  QNumber upper = N::power_of_two(bit - 1);
  if (bit < width) {
    upper += N::bv_concat(N::bv_extract(width - 1, bit, *from), QNumber(0), bit);
  }
  *from = bit == 1 ? upper : N::bv_or(upper, N::bv_extract(bit - 2, 0, ones));
  return true;
}

/// Stores the greatest such value up to `from`.
bool find_previous(std::uint64_t width, const QNumber& ones, const QNumber& possible,
                   QNumber* from) {
  if (has_bits(*from, ones, possible)) return true;
  QNumber mirrored = N::bv_not(*from, width);
  if (!find_next(width, N::bv_not(possible, width), N::bv_not(ones, width), &mirrored)) {
    return false;
  }
  *from = N::bv_not(mirrored, width);
  return true;
}

}  // namespace

BitRange::BitRange(std::uint64_t w, QNumber first, QNumber last, QNumber set, QNumber settable)
    : width(w),
      least(std::move(first)),
      greatest(std::move(last)),
      ones(std::move(set)),
      possible(std::move(settable)) {
  normalise();
}

void BitRange::normalise() {
  const bool fits = least <= greatest && N::bv_and(ones, possible) == ones &&
                    find_next(width, ones, possible, &least) &&
                    find_previous(width, ones, possible, &greatest) && least <= greatest;
  if (!fits) {
    least = QNumber(1);
    greatest = QNumber(0);
    ones = QNumber(0);
    possible = QNumber(0);
    return;
  }
  const std::uint64_t open = N::bit_length(N::bv_xor(least, greatest));
  const QNumber low = N::all_ones(open);
  ones = N::bv_or(ones, without(least, low));
  possible = N::bv_and(possible, N::bv_or(least, low));
}

BitRange BitRange::everything(std::uint64_t width) {
  return {width, QNumber(0), N::all_ones(width), QNumber(0), N::all_ones(width)};
}

BitRange BitRange::nothing(std::uint64_t width) {
  return {width, QNumber(1), QNumber(0), QNumber(0), QNumber(0)};
}

BitRange BitRange::of_value(std::uint64_t width, const QNumber& value) {
  return {width, value, value, value, value};
}

BitRange BitRange::between(std::uint64_t width, const QNumber& least, const QNumber& greatest) {
  const QNumber last = N::all_ones(width);
  return {width, least.sign() < 0 ? QNumber(0) : least, last < greatest ? last : greatest,
          QNumber(0), last};
}

BitRange BitRange::of_bits(std::uint64_t width, const QNumber& ones, const QNumber& possible) {
  return {width, QNumber(0), N::all_ones(width), ones, possible};
}

BitRange BitRange::between_signed(std::uint64_t width, const QNumber& least,
                                  const QNumber& greatest) {
  const QNumber half = N::power_of_two(width - 1);
  const QNumber whole = N::power_of_two(width);
  const BitRange upper = everything(width).with_sign(true);
  const BitRange lower = everything(width).with_sign(false);
  if (least > greatest || least >= half || greatest < half.neg()) return nothing(width);
  return upper.intersect(between(width, least + whole, greatest + whole))
      .hull(lower.intersect(between(width, least, greatest)));
}

std::uint64_t BitRange::count_low_known() const {
  const QNumber unknown = N::bv_xor(ones, possible);
  if (unknown.sign() == 0) return width;
  return N::bit_length(N::bv_and(unknown, N::bv_neg(unknown, width))) - 1;
}

BitRange BitRange::with_sign(bool negative) const {
  const QNumber half = N::power_of_two(width - 1);
  return intersect(negative ? between(width, half, greatest) : between(width, least, half - 1));
}

QNumber BitRange::get_signed_least() const {
  const BitRange negative = with_sign(true);
  return negative.is_empty() ? least : N::to_signed(negative.least, width);
}

QNumber BitRange::get_signed_greatest() const {
  const BitRange positive = with_sign(false);
  return positive.is_empty() ? N::to_signed(greatest, width) : positive.greatest;
}

bool BitRange::contains(const QNumber& value) const {
  return least <= value && value <= greatest && has_bits(value, ones, possible);
}

std::string BitRange::to_string() const {
  return "[" + least.to_string() + ", " + greatest.to_string() + "] with " + ones.to_string(2) +
         " within " + possible.to_string(2);
}

BitRange BitRange::intersect(const BitRange& other) const {
  return {width, least < other.least ? other.least : least,
          greatest < other.greatest ? greatest : other.greatest, N::bv_or(ones, other.ones),
          N::bv_and(possible, other.possible)};
}

BitRange BitRange::hull(const BitRange& other) const {
  if (is_empty()) return other;
  if (other.is_empty()) return *this;
  return {width, least < other.least ? least : other.least,
          greatest < other.greatest ? other.greatest : greatest, N::bv_and(ones, other.ones),
          N::bv_or(possible, other.possible)};
}

BitRange BitRange::without_end(const QNumber& value) const {
  BitRange result = *this;
  if (is_empty()) return result;
  if (value == least) return {width, least + 1, greatest, ones, possible};
  if (value == greatest) return {width, least, greatest - 1, ones, possible};
  return result;
}

}  // namespace vorn::ranges
