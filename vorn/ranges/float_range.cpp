#include "vorn/ranges/float_range.h"

#include <bit>
#include <utility>

#include "vorn/terms/bv_number.h"

namespace vorn::ranges {
namespace {

constexpr unsigned kNumberClasses = 8;

constexpr unsigned index_of(FloatClass c) {
  return static_cast<unsigned>(c);
}

/// The smallest rank of a class without a sign.
QNumber first_rank(IEEEFloat::format fmt, unsigned positive_class) {
  switch (static_cast<FloatClass>(positive_class)) {
    case FloatClass::positive_zero:
      return QNumber(0);
    case FloatClass::positive_subnormal:
      return QNumber(1);
    case FloatClass::positive_normal:
      return BVNumber::power_of_two(fmt.m);
    default:
      return infinity_rank(fmt);
  }
}

/// The greatest rank of a class without a sign.
QNumber last_rank(IEEEFloat::format fmt, unsigned positive_class) {
  if (positive_class == index_of(FloatClass::positive_infinity)) return infinity_rank(fmt);
  return first_rank(fmt, positive_class + 1) - 1;
}

QNumber least_of(IEEEFloat::format fmt, unsigned c) {
  if (c >= index_of(FloatClass::positive_zero)) return first_rank(fmt, c);
  return negate_rank(last_rank(fmt, kNumberClasses - 1 - c));
}

QNumber greatest_of(IEEEFloat::format fmt, unsigned c) {
  if (c >= index_of(FloatClass::positive_zero)) return last_rank(fmt, c);
  return negate_rank(first_rank(fmt, kNumberClasses - 1 - c));
}

/// The class of a rank; ranks beyond the infinities are read as theirs.
unsigned class_of(IEEEFloat::format fmt, const QNumber& rank) {
  if (rank.sign() < 0) return kNumberClasses - 1 - class_of(fmt, negate_rank(rank));
  if (rank.sign() == 0) return index_of(FloatClass::positive_zero);
  if (rank < BVNumber::power_of_two(fmt.m)) return index_of(FloatClass::positive_subnormal);
  return index_of(rank < infinity_rank(fmt) ? FloatClass::positive_normal
                                            : FloatClass::positive_infinity);
}

}  // namespace

QNumber rank_of(const IEEEFloat& x) {
  if (!x.is_sign_set()) return x.get_bits();
  const IEEEFloat::format fmt = x.get_format();
  return negate_rank(BVNumber::bv_extract(fmt.e + fmt.m - 1, 0, x.get_bits()));
}

IEEEFloat float_of_rank(IEEEFloat::format fmt, const QNumber& rank) {
  if (rank.sign() >= 0) return IEEEFloat::from_bits(fmt, rank);
  return IEEEFloat::from_bits(fmt,
                              BVNumber::bv_concat(QNumber(1), negate_rank(rank), fmt.e + fmt.m));
}

QNumber negate_rank(const QNumber& rank) {
  return QNumber(-1) - rank;
}

QNumber infinity_rank(IEEEFloat::format fmt) {
  // Asked for by whatever makes a range, so the formats in use take the short way.
  if (fmt.width() <= 64) return QNumber(((std::int64_t{1} << fmt.e) - 1) << fmt.m);
  return BVNumber::bv_concat(fmt.max_exponent(), QNumber(0), fmt.m);
}

FloatClassSet zero_of(bool negative) {
  return negative ? class_set(FloatClass::negative_zero) : class_set(FloatClass::positive_zero);
}

FloatClassSet infinity_of(bool negative) {
  return negative ? class_set(FloatClass::negative_infinity)
                  : class_set(FloatClass::positive_infinity);
}

FloatRange::FloatRange(IEEEFloat::format f, FloatClassSet some, QNumber first, QNumber last)
    : fmt(f), classes(some), least(std::move(first)), greatest(std::move(last)) {
  normalise();
}

FloatRange FloatRange::of_value(const IEEEFloat& x) {
  if (x.is_nan()) return of_classes(x.get_format(), kNaN);
  const QNumber rank = rank_of(x);
  return {x.get_format(), kNumbers, rank, rank};
}

FloatRange FloatRange::of_classes(IEEEFloat::format f, FloatClassSet classes) {
  const QNumber infinity = infinity_rank(f);
  return {f, classes, negate_rank(infinity), infinity};
}

FloatRange FloatRange::between(IEEEFloat::format f, const QNumber& least, const QNumber& greatest) {
  return of_classes(f, kNumbers).at_least(least).at_most(greatest);
}

void FloatRange::normalise() {
  if ((classes & kNumbers) != 0 && least <= greatest) {
    const unsigned first = class_of(fmt, least);
    const unsigned last = class_of(fmt, greatest);
    classes &= kNaN | ((2U << last) - (1U << first));
    if ((classes & kNumbers) != 0) {
      // An end whose class is not in the set moves to the next value that is.
      const FloatClassSet numbers = classes & kNumbers;
      const auto lowest = static_cast<unsigned>(std::countr_zero(numbers));
      const auto highest = static_cast<unsigned>(std::bit_width(numbers)) - 1;
      if (lowest != first) least = least_of(fmt, lowest);
      if (highest != last) greatest = greatest_of(fmt, highest);
      return;
    }
  }
  classes &= kNaN;
  least = QNumber(1);
  greatest = QNumber(0);
}

bool FloatRange::is_value() const {
  return classes == kNaN || (classes != 0 && !has(kNaN) && least == greatest);
}

IEEEFloat FloatRange::get_value() const {
  return classes == kNaN ? IEEEFloat::make_nan(fmt) : float_of_rank(fmt, least);
}

bool FloatRange::contains(const IEEEFloat& x) const {
  if (x.is_nan()) return has(kNaN);
  const QNumber rank = rank_of(x);
  return has(1U << class_of(fmt, rank)) && least <= rank && rank <= greatest;
}

std::string FloatRange::to_string() const {
  return "classes " + std::to_string(classes) + " ranks [" + least.to_string() + ", " +
         greatest.to_string() + "]";
}

FloatRange FloatRange::intersect(const FloatRange& other) const {
  return {fmt, classes & other.classes, least < other.least ? other.least : least,
          greatest < other.greatest ? greatest : other.greatest};
}

FloatRange FloatRange::hull(const FloatRange& other) const {
  const auto both = classes | other.classes;
  if (!has(kNumbers)) return {fmt, both, other.least, other.greatest};
  if (!other.has(kNumbers)) return {fmt, both, least, greatest};
  return {fmt, both, least < other.least ? least : other.least,
          greatest < other.greatest ? other.greatest : greatest};
}

FloatRange FloatRange::restrict_to(FloatClassSet some) const {
  return {fmt, classes & some, least, greatest};
}

FloatRange FloatRange::extend_by(FloatClassSet some) const {
  return hull(of_classes(fmt, some));
}

FloatRange FloatRange::at_least(const QNumber& rank) const {
  if (rank <= least || !has(kNumbers)) return *this;
  return {fmt, classes, rank, greatest};
}

FloatRange FloatRange::at_most(const QNumber& rank) const {
  if (rank >= greatest || !has(kNumbers)) return *this;
  return {fmt, classes, least, rank};
}

FloatRange FloatRange::exclude(const IEEEFloat& x) const {
  if (x.is_nan()) return restrict_to(kNumbers);
  const QNumber rank = rank_of(x);
  if (x.is_zero()) return restrict_to(kAllClasses & ~zero_of(x.is_sign_set()));
  if (rank == least) return at_least(rank + 1);
  return rank == greatest ? at_most(rank - 1) : *this;
}

FloatRange FloatRange::negate() const {
  FloatClassSet mirrored = classes & kNaN;
  for (unsigned c = 0; c < kNumberClasses; ++c)
    mirrored |= (classes >> c & 1U) << (kNumberClasses - 1 - c);
  return {fmt, mirrored, negate_rank(greatest), negate_rank(least)};
}

}  // namespace vorn::ranges
