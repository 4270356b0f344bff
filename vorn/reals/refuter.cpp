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
// Times that forms are made anew.
constexpr int kMostRounds = 5;
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

bool is_bit_order(T::tag tag) {
  return tag == T::bv_ult || tag == T::bv_ule || tag == T::bv_slt || tag == T::bv_sle;
}

bool is_strict_order(T::tag tag) {
  return tag == T::fp_lt || tag == T::bv_ult || tag == T::bv_slt;
}

bool is_order(T::tag tag) {
  return tag == T::fp_lt || tag == T::fp_le || is_bit_order(tag);
}

bool is_comparison(const Term* t) {
  const T::tag tag = t->get_tag();
  return is_order(tag) || tag == T::fp_equal || tag == T::equal;
}

}  // namespace

Refuter::Refuter(ranges::Propagation& propagation, std::uint64_t most)
    : ranges(propagation), most_effort(most), bounds(propagation) {}

std::uint64_t Refuter::get_effort() const {
  const std::uint64_t coefficients = form_work + (forms ? forms->get_work() : 0);
  return 1 + looks + coefficients / kWorkForOneLook +
         (work + kWorkForOneFactor * bounds.get_work()) / kFastWorkForOneLook;
}

bool Refuter::run() {
  for (int round = 0;; ++round) {
    if (forms) form_work += forms->get_work();
    forms.reset();
    const std::uint64_t rest = most_effort - std::min(most_effort, get_effort());
    forms.emplace(ranges, bounds, kWorkForOneLook * rest);
    if (narrow_by_forms()) return true;
    add_rows();
    // Which conversions and results are exact depends on ranges.
    if (!forms->has_integers() || round == kMostRounds || is_cut_short() || !tighten()) break;
    if (ranges.is_contradiction() || bounds.is_contradiction()) return true;
  }
  return rows.size() > 1 && monomials.size() <= kMostMonomials && adds_up();
}

/// Whether that refutes the formulas.
bool Refuter::narrow_by_forms() {
  // Of a range that is as forms have it rows would say nothing new.
  bounded.clear();
  for (Slot slot = 0; slot < ranges.get_size() && !is_cut_short(); ++slot) {
    if (!has_own_form(slot)) continue;
    ++looks;
    if (is_bits(slot) ? !is_implied_by_form(slot) : !ranges.is_implied(slot))
      bounded.push_back(slot);
  }
  for (Slot slot = 0; slot < ranges.get_size() && !is_cut_short(); ++slot) {
    if (has_own_form(slot)) narrow(slot);
    if (is_comparison(ranges.get_term(slot))) decide(slot);
  }
  for (const ExactResult& result : forms->get_large_results())
    narrow_rounded(result.slot, result.interval);
  if (!is_cut_short()) looks += ranges.propagate(most_effort - get_effort());
  return ranges.is_contradiction();
}

/// Of floats first, which rows of bit-vectors must not displace.
void Refuter::add_rows() {
  rows.clear();
  monomials.clear();
  for (const bool of_bits : {false, true}) {
    is_adding_integers = of_bits;
    for (Slot slot = 0; slot < ranges.get_size(); ++slot) {
      if (!is_comparison(ranges.get_term(slot))) continue;
      if (is_bits(ranges.get_argument(slot, 0)) == of_bits) add_facts(slot);
    }
    for (const Slot slot : bounded) {
      if (is_bits(slot) == of_bits) add_bounds(slot);
    }
  }
}

/// Follows rows to where products lie and ranges of unknowns with them. Whether forms made anew may
/// say more.
bool Refuter::tighten() {
  bounds.refresh();
  bool is_smaller = bounds.tighten(rows);
  for (const auto& [monomial, interval] : bounds.get_intervals()) {
    if (monomial.size() == 1) is_smaller |= narrow(monomial.front(), interval);
  }
  if (!is_cut_short()) looks += ranges.propagate(most_effort - get_effort());
  return is_smaller;
}

/// Whether the form of a term says more than that it is a number.
bool Refuter::has_own_form(Slot slot) const {
  const Form* form = forms->find(slot);
  return form != nullptr && !ranges::is_value(ranges.get_range(slot)) &&
         form->value != Polynomial::of_unknown(slot);
}

/// Whether the range of an integer is not smaller than what its polynomial says.
bool Refuter::is_implied_by_form(Slot slot) {
  const Interval interval = bounds.get_interval(forms->find(slot)->value, QNumber());
  const Interval range = interval_of(ranges, slot);
  return range.least <= interval.least && interval.greatest <= range.greatest;
}

// Ranges ----------------------------------------------------------------------------------------

/// To an interval that the value is in. Whether the range gets smaller.
bool Refuter::narrow(Slot slot, const Interval& interval) {
  const ranges::Range before = ranges.get_range(slot);
  if (const auto* bits = std::get_if<ranges::BitRange>(&before)) {
    ranges.narrow(slot, ranges::BitRange::between(bits->get_width(), ceiling(interval.least),
                                                  floor(interval.greatest)));
    return ranges.get_range(slot) != before;
  }
  narrow_float(slot, interval, Mode::plus_inf, Mode::minus_inf);
  return ranges.get_range(slot) != before;
}

/// To the floats between the ends of an interval, each rounded in a mode of its own.
void Refuter::narrow_float(Slot slot, const Interval& interval, Mode low, Mode high) {
  const IEEEFloat::format f = ranges.get_term(slot)->get_type()->get_format();
  IEEEFloat least(f, low);
  IEEEFloat greatest(f, high);
  least.self_round(interval.least);
  greatest.self_round(interval.greatest);
  ranges.narrow(slot, ranges::FloatRange::between(f, ranges::lower_rank(least),
                                                  ranges::upper_rank(greatest)));
}

void Refuter::narrow(Slot slot) {
  const Form& form = *forms->find(slot);
  narrow(slot, bounds.get_interval(form.value, form.error));
}

/// Whether the order of the forms of both operands is that of the operation. Forms are of numbers
/// without a sign, and signed ones are the same where no sign bit can be set.
bool Refuter::is_comparable(Slot slot) const {
  const T::tag tag = ranges.get_term(slot)->get_tag();
  for (std::size_t i = 0; i < 2; ++i) {
    const Slot operand = ranges.get_argument(slot, i);
    if (forms->find(operand) == nullptr) return false;
    if (tag != T::bv_slt && tag != T::bv_sle) continue;
    const auto& bits = std::get<ranges::BitRange>(ranges.get_range(operand));
    if (bits.get_possible().test_bit(bits.get_width() - 1)) return false;
  }
  return true;
}

/// To what numbers of the interval are rounded to, in any mode. Operations on finite operands give
/// numbers, if only infinite ones.
void Refuter::narrow_rounded(Slot slot, const Interval& interval) {
  narrow_float(slot, interval, Mode::minus_inf, Mode::plus_inf);
}

/// Compares by the form of the difference.
void Refuter::decide(Slot slot) {
  if (!is_comparable(slot)) return;
  const Form& a = *forms->find(ranges.get_argument(slot, 0));
  const Form& b = *forms->find(ranges.get_argument(slot, 1));
  Polynomial difference = a.value;
  difference.add(b.value, QNumber(-1));
  const Interval interval = bounds.get_interval(difference, a.error + b.error);
  const T::tag tag = ranges.get_term(slot)->get_tag();
  const bool is_strict = is_strict_order(tag);
  std::optional<bool> truth;
  if (is_order(tag)) {
    if (is_strict ? interval.greatest.sign() < 0 : interval.greatest.sign() <= 0) truth = true;
    if (is_strict ? interval.least.sign() >= 0 : interval.least.sign() > 0) truth = false;
  } else {
    const bool is_equal = interval.least.sign() == 0 && interval.greatest.sign() == 0;
    if (interval.greatest.sign() < 0 || interval.least.sign() > 0) truth = false;
    // Zeros of either sign are one number and two values.
    const bool is_value = is_bits(ranges.get_argument(slot, 0)) || tag == T::fp_equal;
    if (is_equal && is_value) truth = true;
  }
  if (truth) ranges.narrow(slot, ranges::BoolRange::of(*truth));
}

// Rows ------------------------------------------------------------------------------------------

/// What a comparison says that is decided.
void Refuter::add_facts(Slot slot) {
  if (!is_comparable(slot)) return;
  const ranges::Range& truth = ranges.get_range(slot);
  const Slot a = ranges.get_argument(slot, 0);
  const Slot b = ranges.get_argument(slot, 1);
  const T::tag tag = ranges.get_term(slot)->get_tag();
  const bool is_strict = is_strict_order(tag);
  if (ranges::is_truth(truth, true)) {
    add_order(a, b, is_strict);
    if (!is_order(tag)) add_order(b, a, false);
  } else if (ranges::is_truth(truth, false) && is_order(tag)) {
    add_order(b, a, !is_strict);
  }
}

/// `low` is not above `high`, or below it: neither are their polynomials, but for the errors. Of
/// integers the one that is below is so by 1, and they have no errors.
void Refuter::add_order(Slot low, Slot high, bool is_strict) {
  const Form& a = *forms->find(low);
  const Form& b = *forms->find(high);
  Row row = {a.value, a.error + b.error};
  if (is_strict && is_bits(low)) row.bound -= QNumber(1);
  row.sum.add(b.value, QNumber(-1));
  add_row(std::move(row));
}

/// What is known of a result may be more than its form says.
void Refuter::add_bounds(Slot slot) {
  const Form& form = *forms->find(slot);
  const Interval interval = interval_of(ranges, slot);
  add_row({form.value, interval.greatest + form.error});
  add_row({form.value.negate(), form.error - interval.least});
}

void Refuter::add_row(Row row) {
  const QNumber constant = row.sum.get_constant();
  if (constant.sign() != 0) {
    row.sum.add(Polynomial::of_constant(constant), QNumber(-1));
    row.bound -= constant;
  }
  if (rows.size() >= kMostRows || (is_adding_integers && !is_worthwhile(row))) return;
  const bool is_known = std::any_of(rows.begin(), rows.end(), [&row](const Row& other) {
    return other.sum == row.sum && other.bound <= row.bound;
  });
  if (is_known) return;
  for (const auto& [monomial, coefficient] : row.sum.get_terms())
    monomials.try_emplace(monomial, monomials.size());
  rows.push_back(std::move(row));
}

/// Whether a row of integers says more than where its one product is known to lie, and leaves room.
bool Refuter::is_worthwhile(const Row& row) {
  const std::size_t count = row.sum.get_terms().size();
  if (count + monomials.size() > kMostMonomials) return false;
  return count > 1 || bounds.get_interval(row.sum, QNumber()).greatest > row.bound;
}

/// Whether the sum is above its bound everywhere.
bool Refuter::exceeds(const Row& row) {
  return bounds.get_interval(row.sum, QNumber()).least > row.bound;
}

/// The rows as numbers near 1, and by what each was multiplied; none where they are beyond the
/// processor's.
std::optional<LinearSystem> Refuter::make_system(std::vector<double>* row_scales) {
  LinearSystem system;
  std::vector<double> scales(monomials.size());
  system.least.resize(monomials.size());
  system.greatest.resize(monomials.size());
  for (const auto& [monomial, place] : monomials) {
    const Interval interval = bounds.get_interval(monomial);
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
