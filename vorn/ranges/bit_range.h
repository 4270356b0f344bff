// What is known of the value of a bit-vector term: an interval of unsigned numbers, and bits.
#ifndef VORN_RANGES_BIT_RANGE_H
#define VORN_RANGES_BIT_RANGE_H

#include <cstdint>
#include <string>

#include "vorn/terms/qnumber.h"

namespace vorn::ranges {

/// A set of values of one width: those of an interval all of whose known bits are as they are
/// known.
///
/// Interval and bits say the same of each other: both ends have the known bits, and the bits that
/// both ends share from the top are known. Without values the interval is [1, 0] and every bit is
/// known as 0. So equal sets that can be written this way are equal objects.
class BitRange {
 public:
  // Construction ------------------------------------------------------------------------------

  static BitRange everything(std::uint64_t width);
  static BitRange nothing(std::uint64_t width);
  static BitRange of_value(std::uint64_t width, const QNumber& value);
  /// The values from `least` to `greatest`, which may lie outside [0, 2^width).
  static BitRange between(std::uint64_t width, const QNumber& least, const QNumber& greatest);
  /// The values that have all the bits of `ones`, and none but those of `possible`.
  static BitRange of_bits(std::uint64_t width, const QNumber& ones, const QNumber& possible);
  /// The two's-complement numbers from `least` to `greatest`, which may lie outside the width.
  static BitRange between_signed(std::uint64_t width, const QNumber& least,
                                 const QNumber& greatest);

  // Inspection --------------------------------------------------------------------------------

  /// In bits.
  std::uint64_t get_width() const { return width; }
  bool is_empty() const { return least > greatest; }
  /// Whether there is exactly one value; it is the least then.
  bool is_value() const { return least == greatest; }
  /// The ends, values of the set.
  const QNumber& get_least() const { return least; }
  const QNumber& get_greatest() const { return greatest; }
  /// The bits that are 1 in every value, and those that are 1 in some as far as it is known.
  const QNumber& get_ones() const { return ones; }
  const QNumber& get_possible() const { return possible; }
  /// The number of the lowest bits all of which are known.
  std::uint64_t count_low_known() const;
  /// The values with that sign bit, and the ends as two's-complement numbers. Not of no values.
  BitRange with_sign(bool negative) const;
  QNumber get_signed_least() const;
  QNumber get_signed_greatest() const;
  bool contains(const QNumber& value) const;
  bool operator==(const BitRange&) const = default;
  /// Ends and bits, for messages.
  std::string to_string() const;

  // Sets --------------------------------------------------------------------------------------

  /// The values of both, and the least set of this kind with the values of both.
  BitRange intersect(const BitRange& other) const;
  BitRange hull(const BitRange& other) const;
  /// The values without `value`, where that is an end.
  BitRange without_end(const QNumber& value) const;

 private:
  BitRange(std::uint64_t w, QNumber first, QNumber last, QNumber set, QNumber settable);
  void normalise();

  std::uint64_t width;
  QNumber least;
  QNumber greatest;
  QNumber ones;
  QNumber possible;
};

}  // namespace vorn::ranges

#endif
