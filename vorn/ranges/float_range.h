// What is known of the value of a floating-point term: its classes and an interval.
//
// The values of a format other than NaN are in one order, -oo < ... < -0 < +0 < ... < +oo, and are
// numbered in it: the rank of a float with a clear sign is its pattern, that of its negation
// -1 - pattern. Ends of intervals are ranks, so that neighbours are one apart, comparisons are
// those of integers, and the ends of formats with up to 64 bits are machine words.
#ifndef VORN_RANGES_FLOAT_RANGE_H
#define VORN_RANGES_FLOAT_RANGE_H

#include <cstdint>
#include <string>

#include "vorn/terms/ieee_float.h"
#include "vorn/terms/qnumber.h"

namespace vorn::ranges {

/// The classes of IEEE 754-2019, clause 5.7.2, in the order of their values; there is one NaN.
enum class FloatClass : std::uint8_t {
  negative_infinity,
  negative_normal,
  negative_subnormal,
  negative_zero,
  positive_zero,
  positive_subnormal,
  positive_normal,
  positive_infinity,
  nan,
};

/// Classes, a bit for each.
using FloatClassSet = std::uint32_t;

/// The set of the classes that are named.
template <class... Classes>
constexpr FloatClassSet class_set(Classes... classes) {
  return ((1U << static_cast<unsigned>(classes)) | ... | 0U);
}

inline constexpr FloatClassSet kAllClasses = 0x1ff;
inline constexpr FloatClassSet kNaN = class_set(FloatClass::nan);
inline constexpr FloatClassSet kNumbers = kAllClasses & ~kNaN;
inline constexpr FloatClassSet kNegative =
    class_set(FloatClass::negative_infinity, FloatClass::negative_normal,
              FloatClass::negative_subnormal, FloatClass::negative_zero);
inline constexpr FloatClassSet kPositive = kNumbers & ~kNegative;
inline constexpr FloatClassSet kZeros =
    class_set(FloatClass::negative_zero, FloatClass::positive_zero);
inline constexpr FloatClassSet kSubnormals =
    class_set(FloatClass::negative_subnormal, FloatClass::positive_subnormal);
inline constexpr FloatClassSet kNormals =
    class_set(FloatClass::negative_normal, FloatClass::positive_normal);
inline constexpr FloatClassSet kInfinities =
    class_set(FloatClass::negative_infinity, FloatClass::positive_infinity);
inline constexpr FloatClassSet kNonzero = kSubnormals | kNormals;
inline constexpr FloatClassSet kFinite = kZeros | kNonzero;

/// The rank of a float that is not NaN; 0 is +0, and -1 is -0.
QNumber rank_of(const IEEEFloat& x);
/// The float of that rank, from that of -oo to that of +oo.
IEEEFloat float_of_rank(IEEEFloat::format fmt, const QNumber& rank);
/// The rank of the negation.
QNumber negate_rank(const QNumber& rank);
/// The rank of +oo.
QNumber infinity_rank(IEEEFloat::format fmt);
/// The classes of +0 and -0, of infinities, by the sign.
FloatClassSet zero_of(bool negative);
FloatClassSet infinity_of(bool negative);

/// A set of values of one format: those of some classes that lie in an interval, and NaN if its
/// class is among them.
///
/// Classes and interval say the same of each other: a class is in the set only if the interval has
/// a value of it, both ends are of classes in the set, and without numbers the interval is [1, 0].
/// So equal sets that can be written this way are equal objects, and both ends are values of the
/// set.
class FloatRange {
 public:
  // Construction ------------------------------------------------------------------------------

  static FloatRange everything(IEEEFloat::format f) { return of_classes(f, kAllClasses); }
  static FloatRange nothing(IEEEFloat::format f) { return of_classes(f, 0); }
  /// The value alone; any pattern of NaN is NaN.
  static FloatRange of_value(const IEEEFloat& x);
  static FloatRange of_classes(IEEEFloat::format f, FloatClassSet classes);
  /// The values with ranks from `least` to `greatest`, which may lie beyond those of infinities;
  /// none if `least` is above.
  static FloatRange between(IEEEFloat::format f, const QNumber& least, const QNumber& greatest);

  // Inspection --------------------------------------------------------------------------------

  IEEEFloat::format get_format() const { return fmt; }
  FloatClassSet get_classes() const { return classes; }
  /// Whether a value of one of these classes is in the set, and whether no other value is.
  bool has(FloatClassSet some) const { return (classes & some) != 0; }
  bool is_within(FloatClassSet all) const { return (classes & ~all) == 0; }
  bool is_empty() const { return classes == 0; }
  /// Whether there is exactly one value.
  bool is_value() const;
  /// That value, or the least of the numbers.
  IEEEFloat get_value() const;
  /// Ranks of the least and the greatest number.
  const QNumber& get_least() const { return least; }
  const QNumber& get_greatest() const { return greatest; }
  bool contains(const IEEEFloat& x) const;
  bool operator==(const FloatRange&) const = default;
  /// Classes and ends, for messages.
  std::string to_string() const;

  // Sets --------------------------------------------------------------------------------------

  /// The values of both.
  FloatRange intersect(const FloatRange& other) const;
  /// The least set of this kind with the values of both.
  FloatRange hull(const FloatRange& other) const;
  /// The values of these classes, and the least set with these classes besides.
  FloatRange restrict_to(FloatClassSet some) const;
  FloatRange extend_by(FloatClassSet some) const;
  /// The numbers from that rank or up to it, and NaN if it is there.
  FloatRange at_least(const QNumber& rank) const;
  FloatRange at_most(const QNumber& rank) const;
  /// The values without `x`, where it is an end or alone in its class.
  FloatRange exclude(const IEEEFloat& x) const;
  /// The negations.
  FloatRange negate() const;
  /// With both zeros if there is one.
  FloatRange merge_zeros() const { return has(kZeros) ? extend_by(kZeros) : *this; }

 private:
  FloatRange(IEEEFloat::format f, FloatClassSet some, QNumber first, QNumber last);
  void normalise();

  IEEEFloat::format fmt;
  FloatClassSet classes;
  QNumber least;
  QNumber greatest;
};

}  // namespace vorn::ranges

#endif
