#include "vorn/reals/refuter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "vorn/ranges/float_range.h"
#include "vorn/ranges/rounding_bounds.h"

namespace vorn::reals {
namespace {

using T = SymbolTag;

constexpr std::size_t kMostRows = 256;
constexpr std::size_t kMostMonomials = 256;
// What is computed while the ranges look at one term: coefficients of polynomials, which are
// rational, and those of the simplex method.
constexpr std::uint64_t kWorkForOneLook = 4;
constexpr std::uint64_t kFastWorkForOneLook = 1'000;
constexpr std::uint64_t kWorkForOneFactor = kFastWorkForOneLook / kWorkForOneLook;

double to_double(const QNumber& x) {
  return mpq_class(x.get_numerator(), x.get_denominator()).get_d();
}

/// Of finite doubles, exactly.
QNumber from_double(double x) {
  const mpq_class value(x);
  return QNumber(value.get_num(), value.get_den());
}

bool is_comparison(const Term* t) {
  const T::tag tag = t->get_tag();
  return tag == T::fp_lt || tag == T::fp_le || tag == T::fp_equal || tag == T::equal;
}

Interval multiply(const Interval& a, const Interval& b) {
  const QNumber ends[] = {a.least * b.least, a.least * b.greatest, a.greatest * b.least,
                          a.greatest * b.greatest};
  const auto [least, greatest] = std::minmax_element(std::begin(ends), std::end(ends));
  return {*least, *greatest};
}

}  // namespace

Refuter::Refuter(ranges::Propagation& propagation, std::uint64_t most)
    : ranges(propagation), most_effort(most), forms(propagation, kWorkForOneLook * most) {}

std::uint64_t Refuter::get_effort() const {
  return 1 + looks + forms.get_work() / kWorkForOneLook + work / kFastWorkForOneLook;
}

bool Refuter::run() {
  // Of a range that is as forms have it rows would say nothing new.
  std::vector<Slot> bounded;
  for (Slot slot = 0; slot < ranges.get_size() && !is_cut_short(); ++slot) {
    if (!has_own_form(slot)) continue;
    ++looks;
    if (!ranges.is_implied(slot)) bounded.push_back(slot);
  }
  for (Slot slot = 0; slot < ranges.get_size() && !is_cut_short(); ++slot) {
    if (has_own_form(slot)) narrow(slot);
    if (is_comparison(ranges.get_term(slot))) decide(slot);
  }
  if (!is_cut_short()) looks += ranges.propagate(most_effort - get_effort());
  if (ranges.is_contradiction()) return true;
  for (Slot slot = 0; slot < ranges.get_size(); ++slot) {
    if (is_comparison(ranges.get_term(slot))) add_facts(slot);
  }
  for (const Slot slot : bounded)
    add_bounds(slot);
  return rows.size() > 1 && monomials.size() <= kMostMonomials && adds_up();
}

/// Whether the form of a term says more than that it is a number.
bool Refuter::has_own_form(Slot slot) const {
  const Form* form = forms.find(slot);
  return form != nullptr && !ranges::is_value(ranges.get_range(slot)) &&
         form->value != Polynomial::of_unknown(slot);
}

// Ranges ----------------------------------------------------------------------------------------

void Refuter::narrow(Slot slot) {
  const Form& form = *forms.find(slot);
  const Interval interval = get_interval(form.value, form.error);
  const IEEEFloat::format f = ranges.get_term(slot)->get_type()->get_format();
  IEEEFloat least(f, IEEEFloat::rounding_mode::plus_inf);
  IEEEFloat greatest(f, IEEEFloat::rounding_mode::minus_inf);
  least.self_round(interval.least);
  greatest.self_round(interval.greatest);
  ranges.narrow(slot, ranges::FloatRange::between(f, ranges::lower_rank(least),
                                                  ranges::upper_rank(greatest)));
}

/// Compares by the form of the difference.
void Refuter::decide(Slot slot) {
  const Form* a = forms.find(ranges.get_argument(slot, 0));
  const Form* b = forms.find(ranges.get_argument(slot, 1));
  if (a == nullptr || b == nullptr) return;
  Polynomial difference = a->value;
  difference.add(b->value, QNumber(-1));
  const Interval interval = get_interval(difference, a->error + b->error);
  const T::tag tag = ranges.get_term(slot)->get_tag();
  const bool is_below = interval.greatest.sign() < 0;
  const bool is_above = interval.least.sign() > 0;
  const bool is_equal = interval.least.sign() == 0 && interval.greatest.sign() == 0;
  std::optional<bool> truth;
  if (tag == T::fp_lt || tag == T::fp_le) {
    if (is_below || (is_equal && tag == T::fp_le)) truth = true;
    if (is_above || (is_equal && tag == T::fp_lt)) truth = false;
  } else {
    if (is_below || is_above) truth = false;
    // Zeros of either sign are one number and two values.
    if (is_equal && tag == T::fp_equal) truth = true;
  }
  if (truth) ranges.narrow(slot, ranges::BoolRange::of(*truth));
}

// Rows ------------------------------------------------------------------------------------------

/// What a comparison says that is decided.
void Refuter::add_facts(Slot slot) {
  const ranges::Range& truth = ranges.get_range(slot);
  const Slot a = ranges.get_argument(slot, 0);
  const Slot b = ranges.get_argument(slot, 1);
  if (forms.find(a) == nullptr || forms.find(b) == nullptr) return;
  const T::tag tag = ranges.get_term(slot)->get_tag();
  const bool is_order = tag == T::fp_lt || tag == T::fp_le;
  if (ranges::is_truth(truth, true)) {
    add_order(a, b);
    if (!is_order) add_order(b, a);
  } else if (ranges::is_truth(truth, false) && is_order) {
    add_order(b, a);
  }
}

/// `low` is not above `high`: neither are their polynomials, but for the errors.
void Refuter::add_order(Slot low, Slot high) {
  const Form& a = *forms.find(low);
  const Form& b = *forms.find(high);
  Row row = {a.value, a.error + b.error};
  row.sum.add(b.value, QNumber(-1));
  add_row(std::move(row));
}

/// What is known of a result may be more than its form says.
void Refuter::add_bounds(Slot slot) {
  const Form& form = *forms.find(slot);
  const Interval interval = forms.get_interval(slot);
  add_row({form.value, interval.greatest + form.error});
  add_row({form.value.negate(), form.error - interval.least});
}

void Refuter::add_row(Row row) {
  const QNumber constant = row.sum.get_constant();
  if (constant.sign() != 0) {
    row.sum.add(Polynomial::of_constant(constant), QNumber(-1));
    row.bound -= constant;
  }
  if (rows.size() >= kMostRows) return;
  const bool is_known = std::any_of(rows.begin(), rows.end(), [&row](const Row& other) {
    return other.sum == row.sum && other.bound <= row.bound;
  });
  if (is_known) return;
  for (const auto& [monomial, coefficient] : row.sum.get_terms())
    monomials.try_emplace(monomial, monomials.size());
  rows.push_back(std::move(row));
}

Interval Refuter::get_interval(const Monomial& monomial) {
  work += kWorkForOneFactor * monomial.size();
  Interval interval = {QNumber(1), QNumber(1)};
  for (std::size_t i = 0; i < monomial.size();) {
    const Interval factor = forms.get_interval(monomial[i]);
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

Interval Refuter::get_interval(const Polynomial& polynomial, const QNumber& error) {
  Interval sum = {error.neg(), error};
  for (const auto& [monomial, coefficient] : polynomial.get_terms()) {
    const Interval product = multiply(get_interval(monomial), {coefficient, coefficient});
    sum.least += product.least;
    sum.greatest += product.greatest;
  }
  return sum;
}

/// Whether the sum is above its bound everywhere.
bool Refuter::exceeds(const Row& row) {
  return get_interval(row.sum, QNumber()).least > row.bound;
}

/// The rows as numbers near 1, and by what each was multiplied; none where they are beyond the
/// processor's.
std::optional<LinearSystem> Refuter::make_system(std::vector<double>* row_scales) {
  LinearSystem system;
  std::vector<double> scales(monomials.size());
  system.least.resize(monomials.size());
  system.greatest.resize(monomials.size());
  for (const auto& [monomial, place] : monomials) {
    const Interval interval = get_interval(monomial);
    const double size = to_double(interval.get_magnitude());
    scales[place] = size == 0 ? 1 : std::exp2(std::ilogb(size));
    system.least[place] = to_double(interval.least) / scales[place];
    system.greatest[place] = to_double(interval.greatest) / scales[place];
  }
  for (const Row& row : rows) {
    std::vector<double> coefficients(monomials.size());
    double largest = 0;
    for (const auto& [monomial, coefficient] : row.sum.get_terms()) {
      const std::size_t place = monomials.at(monomial);
      coefficients[place] = to_double(coefficient) * scales[place];
      largest = std::max(largest, std::abs(coefficients[place]));
    }
    const double scale = largest == 0 ? 1 : std::exp2(-std::ilogb(largest));
    for (double& coefficient : coefficients)
      coefficient *= scale;
    const double bound = to_double(row.bound) * scale;
    if (!std::isfinite(largest) || !std::isfinite(scale) || !std::isfinite(bound)) return {};
    row_scales->push_back(scale);
    system.rows.push_back(std::move(coefficients));
    system.bounds.push_back(bound);
  }
  return system;
}

/// Asks for multipliers and adds up the rows by them.
bool Refuter::adds_up() {
  std::vector<double> scales;
  const std::optional<LinearSystem> system = make_system(&scales);
  if (!system || is_cut_short()) return false;
  const std::uint64_t rest = kFastWorkForOneLook * (most_effort - get_effort());
  const std::optional<std::vector<double>> multipliers = find_multipliers(*system, rest, &work);
  if (!multipliers) return false;
  Row sum;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const double multiplier = (*multipliers)[i] * scales[i];
    if (!(multiplier > 0) || !std::isfinite(multiplier)) continue;
    const QNumber factor = from_double(multiplier);
    sum.sum.add(rows[i].sum, factor);
    sum.bound += rows[i].bound * factor;
  }
  return exceeds(sum);
}

std::optional<bool> find_contradiction(ranges::Propagation& propagation, std::uint64_t most_effort,
                                       std::uint64_t* effort) {
  Refuter refuter(propagation, most_effort);
  const bool is_contradiction = refuter.run();
  *effort += refuter.get_effort();
  if (!is_contradiction && refuter.is_cut_short()) return std::nullopt;
  return is_contradiction;
}

}  // namespace vorn::reals
