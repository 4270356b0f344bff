#include "vorn/reals/interval.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "vorn/ranges/float_range.h"
#include "vorn/terms/bv_number.h"

namespace vorn::reals {

QNumber Interval::get_magnitude() const {
  return std::max(least.sign() < 0 ? least.neg() : least,
                  greatest.sign() < 0 ? greatest.neg() : greatest);
}

Interval Interval::intersect(const Interval& other) const {
  return {std::max(least, other.least), std::min(greatest, other.greatest)};
}

Interval multiply(const Interval& a, const Interval& b) {
  const QNumber ends[] = {a.least * b.least, a.least * b.greatest, a.greatest * b.least,
                          a.greatest * b.greatest};
  const auto [least, greatest] = std::minmax_element(std::begin(ends), std::end(ends));
  return {*least, *greatest};
}

Interval add(const Interval& a, const Interval& b) {
  return {a.least + b.least, a.greatest + b.greatest};
}

QNumber floor(const QNumber& x) {
  if (x.is_integer()) return x;
  mpz_class quotient;
  mpz_fdiv_q(quotient.get_mpz_t(), x.get_numerator().get_mpz_t(), x.get_denominator().get_mpz_t());
  return QNumber::from_mpz(quotient);
}

QNumber ceiling(const QNumber& x) {
  return floor(x.neg()).neg();
}

QNumber power_of_two(std::int64_t exponent) {
  const QNumber power = BVNumber::power_of_two(static_cast<std::uint64_t>(std::abs(exponent)));
  return exponent < 0 ? QNumber(1) / power : power;
}

Interval interval_of(const ranges::Propagation& propagation, ranges::Propagation::Slot slot) {
  const ranges::Range& range = propagation.get_range(slot);
  if (const auto* bits = std::get_if<ranges::BitRange>(&range)) {
    return {bits->get_least(), bits->get_greatest()};
  }
  const auto& x = std::get<ranges::FloatRange>(range);
  const auto value = [&x](const QNumber& rank) {
    return ranges::float_of_rank(x.get_format(), rank).get_value();
  };
  return {value(x.get_least()), value(x.get_greatest())};
}

std::optional<QNumber> find_period(const Interval& interval, std::uint64_t width) {
  const QNumber whole = BVNumber::power_of_two(width);
  QNumber period = floor(interval.least / whole) * whole;
  if (interval.greatest >= period + whole) return std::nullopt;
  return period;
}

}  // namespace vorn::reals
