// The values that a constant can have, numbered, for going through all of them.
#ifndef VORN_SEARCH_DOMAIN_H
#define VORN_SEARCH_DOMAIN_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "vorn/ranges/range.h"
#include "vorn/search/lanes.h"
#include "vorn/terms/term.h"

namespace vorn::search {

/// A set of values of one sort of at most 64 bits, in an order of its own. Of floats NaN is one.
class Domain {
 public:
  /// All values of the sort that are in the range, and perhaps others; null for every value of the
  /// sort. None where there are more than 2^62.
  static std::optional<Domain> make(const DataType* type, const ranges::Range* range);

  /// The number of values.
  std::uint64_t get_count() const { return count; }
  const LaneSort& get_sort() const { return sort; }
  /// Stores `length` values from number `first` on, as lanes of W, which are those of the sort.
  template <class W>
  void fill(std::uint64_t first, std::size_t length, W* lanes) const;

 private:
  /// Values that follow each other: of floats those with these ranks, else these numbers.
  struct Segment {
    std::int64_t least = 0;
    std::uint64_t count = 0;
  };

  bool add_segments(const DataType* type, const ranges::Range& range);
  bool add(const QNumber& least, const QNumber& greatest);
  bool add_bits(const ranges::BitRange& range);
  bool add_floats(const ranges::FloatRange& range);
  std::uint64_t find_word(std::int64_t place) const;
  template <class W>
  void fill_segment(std::int64_t place, std::size_t length, W* lanes) const;

  LaneSort sort;
  bool is_float = false;
  std::vector<Segment> segments;
  bool has_nan = false;         // as the last value
  std::uint64_t scattered = 0;  // bits among which the bits of a number are dealt out
  std::uint64_t ones = 0;       // those that are set besides
  std::uint64_t count = 0;
  std::vector<std::uint64_t> table;  // of lanes, where they are costly and few
};

}  // namespace vorn::search

#endif
