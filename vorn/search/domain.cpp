#include "vorn/search/domain.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <type_traits>

#include "vorn/search/word_program.h"

namespace vorn::search {
namespace {

using ranges::BitRange;
using ranges::FloatClass;
using ranges::FloatRange;

constexpr std::uint64_t kMostValues = std::uint64_t{1} << 62U;
constexpr std::uint64_t kLargestTable = 1U << 17U;

/// The last bits of `number` at the places of the bits of `mask`.
std::uint64_t deal_out(std::uint64_t number, std::uint64_t mask) {
  std::uint64_t word = 0;
  for (; mask != 0; mask &= mask - 1) {
    if ((number & 1U) != 0) word |= mask & (~mask + 1);
    number >>= 1U;
  }
  return word;
}

/// The pattern of the float with that rank, on lanes of its width.
template <class W>
W pattern_of(W rank) {
  const auto is_negative = static_cast<W>(static_cast<std::make_signed_t<W>>(rank) >>
                                          (std::numeric_limits<W>::digits - 1));
  return rank ^ (is_negative >> 1U);
}

}  // namespace

std::optional<Domain> Domain::make(const DataType* type, const ranges::Range* range) {
  Domain domain;
  domain.sort = LaneSort::of(type);
  domain.is_float = type->get_kind() == DataType::Kind::floating_point;
  if (!domain.add_segments(type, range == nullptr ? ranges::make_everything(type) : *range)) {
    return std::nullopt;
  }
  for (const Segment& segment : domain.segments) {
    domain.count += segment.count;
    if (domain.count > kMostValues) return std::nullopt;
  }
  if (domain.has_nan) ++domain.count;
  const bool is_plain = domain.sort.is_own_format || (!domain.is_float && domain.scattered == 0);
  if (is_plain || domain.count > kLargestTable) return domain;
  std::vector<std::uint64_t> lanes(domain.count);
  if (domain.sort.lane == 64) {
    domain.fill(0, lanes.size(), lanes.data());
  } else {
    std::vector<std::uint32_t> halves(domain.count);
    domain.fill(0, halves.size(), halves.data());
    std::copy(halves.begin(), halves.end(), lanes.begin());
  }
  domain.table = std::move(lanes);
  return domain;
}

bool Domain::add_segments(const DataType* type, const ranges::Range& range) {
  if (const auto* floats = std::get_if<FloatRange>(&range)) return add_floats(*floats);
  if (const auto* bits = std::get_if<BitRange>(&range)) return add_bits(*bits);
  const std::uint64_t values = type->get_kind() == DataType::Kind::boolean ? 2 : 5;
  for (std::uint64_t value = 0; value < values; ++value) {
    if (ranges::contains(range, to_number(value))) add(to_number(value), to_number(value));
  }
  return true;
}

/// Values from one to another; false where there are too many.
bool Domain::add(const QNumber& least, const QNumber& greatest) {
  if (least > greatest) return true;
  Segment segment;
  std::int64_t length = 0;
  if (!least.get_int64(&segment.least) || !(greatest - least).get_int64(&length)) return false;
  segment.count = static_cast<std::uint64_t>(length) + 1;
  segments.push_back(segment);
  return segment.count <= kMostValues;
}

/// By the interval or by the bits that are open, whichever are fewer.
bool Domain::add_bits(const BitRange& range) {
  if (range.is_empty()) return true;
  const std::uint64_t set = to_word(range.get_ones());
  const std::uint64_t open = to_word(range.get_possible()) & ~set;
  const int open_bits = std::popcount(open);
  const QNumber by_bits = open_bits < 62 ? to_number(std::uint64_t{1} << open_bits) : QNumber();
  if (open_bits >= 62 || range.get_greatest() - range.get_least() < by_bits) {
    return add(range.get_least(), range.get_greatest());
  }
  scattered = open;
  ones = set;
  return add(QNumber(), by_bits - 1);
}

/// An interval of each class, those that meet as one.
bool Domain::add_floats(const FloatRange& range) {
  has_nan = range.has(ranges::kNaN);
  for (unsigned i = 0; i < static_cast<unsigned>(FloatClass::nan); ++i) {
    const FloatRange part = range.restrict_to(ranges::class_set(static_cast<FloatClass>(i)));
    if (part.is_empty()) continue;
    if (!add(part.get_least(), part.get_greatest())) return false;
    if (segments.size() < 2) continue;
    Segment& before = segments[segments.size() - 2];
    const Segment& last = segments.back();
    if (before.least + static_cast<std::int64_t>(before.count) != last.least) continue;
    before.count += last.count;
    segments.pop_back();
  }
  return true;
}

/// A value in the form of Evaluator.
std::uint64_t Domain::find_word(std::int64_t place) const {
  const auto number = static_cast<std::uint64_t>(place);
  if (scattered != 0) return deal_out(number, scattered) | ones;
  if (!is_float || place >= 0) return number;
  return ~number | std::uint64_t{1} << (sort.width - 1U);
}

template <class W>
void Domain::fill_segment(std::int64_t place, std::size_t length, W* lanes) const {
  const auto start = static_cast<W>(place);
  if (sort.is_own_format) {
    for (std::size_t i = 0; i < length; ++i)
      lanes[i] = pattern_of<W>(start + static_cast<W>(i));
  } else if (sort.kind == LaneSort::Kind::bits && !is_float && scattered == 0) {
    for (std::size_t i = 0; i < length; ++i)
      lanes[i] = start + static_cast<W>(i);
  } else {
    for (std::size_t i = 0; i < length; ++i) {
      const std::uint64_t word = find_word(place + static_cast<std::int64_t>(i));
      lanes[i] = static_cast<W>(sort.to_lane(word));
    }
  }
}

template <class W>
void Domain::fill(std::uint64_t first, std::size_t length, W* lanes) const {
  if (!table.empty()) {
    for (std::size_t i = 0; i < length; ++i)
      lanes[i] = static_cast<W>(table[first + i]);
    return;
  }
  std::size_t done = 0;
  for (const Segment& segment : segments) {
    if (first >= segment.count) {
      first -= segment.count;
      continue;
    }
    const auto part =
        static_cast<std::size_t>(std::min<std::uint64_t>(length - done, segment.count - first));
    fill_segment(segment.least + static_cast<std::int64_t>(first), part, lanes + done);
    done += part;
    first = 0;
    if (done == length) return;
  }
  if (done == length) return;
  const std::uint64_t nan = (std::uint64_t{1} << sort.m) * ((std::uint64_t{1} << sort.e) - 1) + 1;
  lanes[done] = static_cast<W>(sort.to_lane(nan | std::uint64_t{1} << (sort.width - 1U)));
}

template void Domain::fill(std::uint64_t, std::size_t, std::uint32_t*) const;
template void Domain::fill(std::uint64_t, std::size_t, std::uint64_t*) const;

}  // namespace vorn::search
