#include "vorn/reals/bounds.h"

#include <algorithm>
#include <utility>

namespace vorn::reals {
namespace {

/// The terms but for a constant, as a multiple of a sum whose first coefficient is 1.
QNumber take_factor(std::map<Monomial, QNumber>* terms) {
  terms->erase(Monomial());
  QNumber factor = terms->begin()->second;
  for (auto& [monomial, coefficient] : *terms)
    coefficient /= factor;
  return factor;
}

}  // namespace

// What is known ---------------------------------------------------------------------------------

Interval Bounds::find_interval(const Monomial& monomial) {
  work += monomial.size();
  Interval interval = {QNumber(1), QNumber(1)};
  for (std::size_t i = 0; i < monomial.size();) {
    const Interval factor = interval_of(ranges, monomial[i]);
    std::size_t power = 0;
    Interval product = {QNumber(1), QNumber(1)};
    for (; i < monomial.size() && (power == 0 || monomial[i] == monomial[i - 1]); ++i, ++power)
      product = multiply(product, factor);
    // Even powers are not negative.
    if (power % 2 == 0 && product.least.sign() < 0) product.least = QNumber();
    interval = multiply(interval, product);
  }
  return interval;
}

const Interval& Bounds::get_interval(const Monomial& monomial) {
  ++work;
  const auto [place, is_new] = intervals.try_emplace(monomial);
  if (is_new) place->second = find_interval(monomial);
  return place->second;
}

Interval Bounds::get_interval(const Polynomial& polynomial, const QNumber& error) {
  Interval sum;
  for (const auto& [monomial, coefficient] : polynomial.get_terms())
    sum = add(sum, multiply(get_interval(monomial), {coefficient, coefficient}));
  if (!sums.empty() && polynomial.get_terms().size() > 1) {
    std::map<Monomial, QNumber> terms = polynomial.get_terms();
    const QNumber factor = take_factor(&terms);
    const auto found = sums.find(terms);
    if (found != sums.end()) {
      Ends ends = found->second;
      if (factor.sign() < 0) std::swap(ends.least, ends.greatest);
      const QNumber constant = polynomial.get_constant();
      if (ends.least) sum.least = std::max(sum.least, *ends.least * factor + constant);
      if (ends.greatest) sum.greatest = std::min(sum.greatest, *ends.greatest * factor + constant);
    }
  }
  return {sum.least - error, sum.greatest + error};
}

bool Bounds::is_contradiction() const {
  return std::any_of(intervals.begin(), intervals.end(),
                     [](const auto& entry) { return entry.second.least > entry.second.greatest; });
}

void Bounds::refresh() {
  for (auto& [monomial, interval] : intervals)
    interval = interval.intersect(find_interval(monomial));
}

// Rows ------------------------------------------------------------------------------------------

bool Bounds::tighten(const std::vector<Row>& rows) {
  constexpr int kRounds = 3;
  bool is_smaller = false;
  for (const Row& row : rows)
    is_smaller |= bound_sum(row);
  bool is_changed = true;
  for (int round = 0; round < kRounds && is_changed; ++round) {
    is_changed = false;
    for (const Row& row : rows)
      is_changed |= bound_terms(row);
    is_smaller |= is_changed;
  }
  return is_smaller;
}

/// Notes the bound for the sum and its multiples.
bool Bounds::bound_sum(const Row& row) {
  if (row.sum.get_terms().size() < 2) return false;
  std::map<Monomial, QNumber> terms = row.sum.get_terms();
  const QNumber factor = take_factor(&terms);
  Ends& ends = sums[std::move(terms)];
  const QNumber end = row.bound / factor;
  const bool is_upper = factor.sign() > 0;
  std::optional<QNumber>& known = is_upper ? ends.greatest : ends.least;
  if (known && (is_upper ? *known <= end : *known >= end)) return false;
  known = end;
  return true;
}

/// Each term is at most what the bound leaves where the others are as small as they can be.
bool Bounds::bound_terms(const Row& row) {
  QNumber least;
  for (const auto& [monomial, coefficient] : row.sum.get_terms())
    least += multiply(get_interval(monomial), {coefficient, coefficient}).least;
  bool is_changed = false;
  for (const auto& [monomial, coefficient] : row.sum.get_terms()) {
    const Interval old = get_interval(monomial);
    const QNumber own = multiply(old, {coefficient, coefficient}).least;
    const QNumber end = (row.bound - least + own) / coefficient;
    is_changed |= narrow(
        monomial, coefficient.sign() > 0 ? Interval{old.least, end} : Interval{end, old.greatest});
  }
  return is_changed;
}

/// Whether only integers are values of the product.
bool Bounds::is_integer(const Monomial& monomial) const {
  return std::all_of(monomial.begin(), monomial.end(), [this](std::uint32_t unknown) {
    return std::holds_alternative<ranges::BitRange>(ranges.get_range(unknown));
  });
}

bool Bounds::narrow(const Monomial& monomial, const Interval& bounds) {
  Interval& interval = intervals.at(monomial);
  Interval smaller = interval.intersect(bounds);
  if (smaller == interval) return false;
  if (is_integer(monomial)) smaller = {ceiling(smaller.least), floor(smaller.greatest)};
  interval = std::move(smaller);
  return true;
}

}  // namespace vorn::reals
