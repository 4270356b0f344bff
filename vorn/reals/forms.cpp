#include "vorn/reals/forms.h"

#include <algorithm>
#include <utility>

#include "vorn/ranges/finite_sets.h"
#include "vorn/ranges/float_range.h"
#include "vorn/terms/bv_number.h"

namespace vorn::reals {
namespace {

using T = SymbolTag;
using ranges::BitRange;
using ranges::FloatRange;
using ranges::RoundingModeSet;
using Mode = IEEEFloat::rounding_mode;

QNumber magnitude_of(const QNumber& x) {
  return x.sign() < 0 ? x.neg() : x;
}

/// The exponent of a unit in the last place of a number with this rank or its negation.
std::int64_t quantum_of_rank(IEEEFloat::format f, const QNumber& rank) {
  const QNumber pattern = rank.sign() < 0 ? ranges::negate_rank(rank) : rank;
  const auto all = static_cast<std::uint64_t>(f.e + f.m);
  std::int64_t field = 0;
  BVNumber::bv_extract(all, f.m, pattern).get_int64(&field);
  std::int64_t bias = 0;
  f.bias().get_int64(&bias);
  return std::max<std::int64_t>(field, 1) - bias - static_cast<std::int64_t>(f.m);
}

/// The unit of the number with the largest magnitude in the set, and that of the smallest.
std::int64_t largest_quantum(const FloatRange& x) {
  return std::max(quantum_of_rank(x.get_format(), x.get_least()),
                  quantum_of_rank(x.get_format(), x.get_greatest()));
}

std::int64_t smallest_quantum(const FloatRange& x) {
  const bool has_both_signs = x.get_least().sign() < 0 && x.get_greatest().sign() >= 0;
  if (has_both_signs) return quantum_of_rank(x.get_format(), QNumber());
  return std::min(quantum_of_rank(x.get_format(), x.get_least()),
                  quantum_of_rank(x.get_format(), x.get_greatest()));
}

/// The exponent of the largest power of two that divides the one value of the set. Every power
/// divides zero, of which 1 is as good as any.
std::int64_t quantum_of_value(const FloatRange& x, const QNumber& value) {
  if (value.sign() == 0) return 0;
  const std::int64_t unit = smallest_quantum(x);
  const mpz_class count = (value / power_of_two(unit)).get_numerator();
  return unit + static_cast<std::int64_t>(mpz_scan1(count.get_mpz_t(), 0));
}

/// Whether the largest finite number, or its negation, is in the set.
bool has_largest(const FloatRange& x) {
  const QNumber largest = ranges::infinity_rank(x.get_format()) - QNumber(1);
  return x.get_greatest() == largest || x.get_least() == ranges::negate_rank(largest);
}

const FloatRange* find_finite(const ranges::Range& range) {
  const auto* x = std::get_if<FloatRange>(&range);
  return x != nullptr && !x->is_empty() && x->is_within(ranges::kFinite) ? x : nullptr;
}

std::optional<Form> negate(const std::optional<Form>& x) {
  if (!x) return x;
  return Form{x->value.negate(), x->error, x->quantum};
}

std::optional<Form> add(std::optional<Form> x, const std::optional<Form>& y) {
  if (!x || !y) return std::nullopt;
  x->value.add(y->value, QNumber(1));
  x->error += y->error;
  x->quantum = std::min(x->quantum, y->quantum);
  return x;
}

}  // namespace

Forms::Forms(const ranges::Propagation& propagation, Bounds& intervals, std::uint64_t most_work)
    : ranges(propagation), bounds(intervals), residues(propagation, intervals) {
  forms.reserve(ranges.get_size());
  for (Slot slot = 0; slot < ranges.get_size() && get_work() < most_work; ++slot) {
    forms.push_back(find_form(slot));
    work += 1 + (forms.back() ? forms.back()->value.get_terms().size() : 0);
  }
}

const Form* Forms::find(Slot slot) const {
  return slot < forms.size() && forms[slot] ? &*forms[slot] : nullptr;
}

Form Forms::make_unknown(Slot slot) const {
  const auto& x = std::get<FloatRange>(ranges.get_range(slot));
  return {Polynomial::of_unknown(slot), QNumber(), smallest_quantum(x)};
}

std::optional<Form> Forms::find_form(Slot slot) {
  if (std::holds_alternative<BitRange>(ranges.get_range(slot))) return find_integer(slot);
  const FloatRange* x = find_finite(ranges.get_range(slot));
  if (x == nullptr) {
    note_large(slot);
    return std::nullopt;
  }
  if (x->is_value()) {
    const QNumber value = interval_of(ranges, slot).least;
    return Form{Polynomial::of_constant(value), QNumber(), quantum_of_value(*x, value)};
  }
  std::optional<Form> form = combine(slot);
  return form ? form : make_unknown(slot);
}

/// The lowest bits that are known to be 0 say what the value is a multiple of.
std::optional<Form> Forms::find_integer(Slot slot) {
  const auto& bits = std::get<BitRange>(ranges.get_range(slot));
  if (!residues.has_any() || !residues.is_wanted(slot) || bits.is_empty()) return std::nullopt;
  std::int64_t quantum = 0;
  const auto width = static_cast<std::int64_t>(bits.get_width());
  while (quantum < width && !bits.get_possible().test_bit(static_cast<std::uint64_t>(quantum)))
    ++quantum;
  Polynomial value = residues.find_value(slot);
  return Form{std::move(value), QNumber(), quantum};
}

/// Where integers are bounded as sums and products, so may be what is computed of them.
void Forms::note_large(Slot slot) {
  if (!has_integers() || !std::holds_alternative<FloatRange>(ranges.get_range(slot))) return;
  const std::optional<Form> form = compute(slot);
  if (!form || form->value.get_terms().size() > Polynomial::kMostTerms) return;
  large_results.push_back({slot, bounds.get_interval(form->value, form->error)});
}

/// The form of a term by those of its arguments.
std::optional<Form> Forms::combine(Slot slot) {
  const Term* t = ranges.get_term(slot);
  switch (t->get_tag()) {
    case T::fp_neg:
      return negate(forms[argument(slot, 0)]);
    case T::fp_abs:
      return take_absolute(argument(slot, 0));
    case T::ite:
      return choose(argument(slot, 0), argument(slot, 1), argument(slot, 2));
    case T::fp_round_to_integral: {
      std::optional<Form> form = forms[argument(slot, 1)];
      if (form) round_to_integer(slot, &*form);
      return form;
    }
    default:
      break;
  }
  std::optional<Form> form = compute(slot);
  if (!form || form->value.get_terms().size() > Polynomial::kMostTerms) return std::nullopt;
  return round(slot, &*form) ? form : std::nullopt;
}

/// The exact result of an operation that rounds it.
std::optional<Form> Forms::compute(Slot slot) {
  switch (ranges.get_term(slot)->get_tag()) {
    case T::fp_add:
      return add(forms[argument(slot, 1)], forms[argument(slot, 2)]);
    case T::fp_sub:
      return add(forms[argument(slot, 1)], negate(forms[argument(slot, 2)]));
    case T::fp_mul:
      return multiply(argument(slot, 1), argument(slot, 2));
    case T::fp_div:
      return divide(argument(slot, 1), argument(slot, 2));
    case T::fp_fma:
      return add(multiply(argument(slot, 1), argument(slot, 2)), forms[argument(slot, 3)]);
    case T::fp_cast:
      return forms[argument(slot, 1)];
    case T::fp_from_sbv:
    case T::fp_from_ubv:
      return convert_integer(slot, argument(slot, 1));
    default:
      return std::nullopt;
  }
}

/// (p + d)(q + e) differs from p q by d y + e x - d e, of values x and y.
std::optional<Form> Forms::multiply(Slot a, Slot b) {
  if (!forms[a] || !forms[b]) return std::nullopt;
  const Form& x = *forms[a];
  const Form& y = *forms[b];
  work += x.value.get_terms().size() * y.value.get_terms().size();
  std::optional<Polynomial> product = Polynomial::multiply(x.value, y.value);
  if (!product) return std::nullopt;
  QNumber error = x.error * y.error;
  if (y.error.sign() != 0) error += interval_of(ranges, a).get_magnitude() * y.error;
  if (x.error.sign() != 0) error += interval_of(ranges, b).get_magnitude() * x.error;
  return Form{std::move(*product), std::move(error), x.quantum + y.quantum};
}

/// Only by constants.
std::optional<Form> Forms::divide(Slot a, Slot b) const {
  const bool fits = forms[a] && forms[b] && forms[b]->value.is_constant() &&
                    forms[b]->error.sign() == 0 && forms[b]->value.get_constant().sign() != 0;
  if (!fits) return std::nullopt;
  const QNumber factor = QNumber(1) / forms[b]->value.get_constant();
  Form form = {Polynomial(), forms[a]->error * magnitude_of(factor), 0};
  form.value.add(forms[a]->value, factor);
  // Of what is no multiple of a power of two: one that every result is a multiple of.
  const std::int64_t least =
      quantum_of_rank(ranges.get_term(a)->get_type()->get_format(), QNumber());
  form.quantum = least - 1;
  return form;
}

/// Bits count as an unsigned number, which of numbers without a sign bit is the signed one too.
std::optional<Form> Forms::convert_integer(Slot slot, Slot bits) const {
  const auto& range = std::get<BitRange>(ranges.get_range(bits));
  if (range.is_empty()) return std::nullopt;
  const bool is_signed = ranges.get_term(slot)->get_tag() == T::fp_from_sbv;
  if (is_signed && range.get_possible().test_bit(range.get_width() - 1)) return std::nullopt;
  return forms[bits];
}

std::optional<Form> Forms::take_absolute(Slot a) const {
  if (!forms[a]) return std::nullopt;
  const Interval interval = interval_of(ranges, a);
  if (interval.least.sign() >= 0) return forms[a];
  if (interval.greatest.sign() > 0) return std::nullopt;
  return negate(forms[a]);
}

/// Of two values that are the same number, as a zero of either sign is. That is what adding a zero
/// is rewritten to.
std::optional<Form> Forms::choose(Slot condition, Slot a, Slot b) const {
  const ranges::Range& truth = ranges.get_range(condition);
  if (ranges::is_truth(truth, true)) return forms[a];
  if (ranges::is_truth(truth, false)) return forms[b];
  if (!forms[a] || !forms[b]) return std::nullopt;
  const bool is_zero = ranges.get_term(condition)->get_tag() == T::fp_iszero &&
                       argument(condition, 0) == b && forms[a]->value == Polynomial() &&
                       forms[a]->error.sign() == 0;
  return is_zero ? forms[b] : std::nullopt;
}

bool Forms::is_nearest(Slot slot) const {
  const auto& modes = std::get<RoundingModeSet>(ranges.get_range(argument(slot, 0)));
  return modes.is_within(RoundingModeSet::of(Mode::nearest_even, Mode::nearest_away));
}

/// The exponent of a unit in the last place of the largest value next to a form without unknowns,
/// what is left where others cancel.
std::int64_t Forms::find_unit(IEEEFloat::format f, const Form& form) {
  IEEEFloat largest(f, Mode::plus_inf);
  largest.self_round(magnitude_of(form.value.get_constant()) + form.error);
  return quantum_of_rank(f,
                         std::min(ranges::rank_of(largest), ranges::infinity_rank(f) - QNumber(1)));
}

/// Whether the exact result is a value: a multiple of a quantum, and no more than what the
/// significand counts of these. A rounded result tells only where it is less: what is more may be
/// rounded to that.
bool Forms::is_exact(Slot slot, const Form& form) const {
  const IEEEFloat::format f = std::get<FloatRange>(ranges.get_range(slot)).get_format();
  if (form.quantum < quantum_of_rank(f, QNumber())) return false;
  const QNumber most = power_of_two(form.quantum + static_cast<std::int64_t>(f.m) + 1);
  if (interval_of(ranges, slot).get_magnitude() < most) return true;
  return has_integers() && bounds.get_interval(form.value, form.error).get_magnitude() <= most;
}

/// What rounding adds. False where it may be anything: directed modes round what is far beyond the
/// largest number to that.
bool Forms::round(Slot slot, Form* form) const {
  const auto& x = std::get<FloatRange>(ranges.get_range(slot));
  if (!is_nearest(slot) && has_largest(x)) return false;
  if (is_exact(slot, *form)) return true;
  const IEEEFloat::format f = x.get_format();
  std::int64_t unit = largest_quantum(x);
  if (form->value.is_constant()) unit = std::min(unit, find_unit(f, *form));
  form->error += power_of_two(unit - (is_nearest(slot) ? 1 : 0));
  form->quantum = smallest_quantum(x);
  return true;
}

void Forms::round_to_integer(Slot slot, Form* form) const {
  if (form->quantum >= 0) return;
  form->error += power_of_two(is_nearest(slot) ? -1 : 0);
  form->quantum = 0;
}

}  // namespace vorn::reals
