#include "vorn/ranges/splitting.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "vorn/terms/bv_number.h"
#include "vorn/terms/operations.h"

namespace vorn::ranges {
namespace {

using Parts = std::pair<Range, Range>;

QNumber half(const QNumber& x) {
  return BVNumber::bv_extract(BVNumber::bit_length(x), 1, x);
}

Parts split(const BoolRange&) {
  return {BoolRange::of(true), BoolRange::of(false)};
}

Parts split(const RoundingModeSet& set) {
  const RoundingModeSet first = RoundingModeSet::of(set.get_value());
  return {first, set.without(first)};
}

Parts split(const BitRange& set) {
  const std::uint64_t width = set.get_width();
  const QNumber middle = set.get_least() + half(set.get_greatest() - set.get_least());
  return {set.intersect(BitRange::between(width, set.get_least(), middle)),
          set.intersect(BitRange::between(width, middle + 1, set.get_greatest()))};
}

/// By rank, but not further than two binades from the end with the larger magnitude: it is there
/// that the interval is long.
Parts split(const FloatRange& set) {
  if (set.has(kNaN)) return {set.restrict_to(kNumbers), set.restrict_to(kNaN)};
  const QNumber& least = set.get_least();
  const QNumber& greatest = set.get_greatest();
  QNumber middle(-1);
  if (least.sign() >= 0 || greatest.sign() < 0) {
    const QNumber binades = BVNumber::power_of_two(set.get_format().m + 1);
    middle = least + half(greatest - least);
    middle = least.sign() >= 0 ? std::max(middle, greatest - binades)
                               : std::min(middle, least + binades);
  }
  return {set.at_most(middle), set.at_least(middle + 1)};
}

Parts split(std::monostate) {
  return {};
}

Parts split_range(const Range& range) {
  return std::visit([](const auto& set) { return split(set); }, range);
}

/// Of values among which 0 is.
Parts split_zero(const BitRange& set) {
  const std::uint64_t width = set.get_width();
  return {BitRange::of_value(width, QNumber()),
          set.intersect(BitRange::between(width, QNumber(1), set.get_greatest()))};
}

/// How many bits tell the values apart.
std::uint64_t count_bits(const Range& range) {
  if (const auto* bits = std::get_if<BitRange>(&range)) {
    return BVNumber::bit_length(bits->get_greatest() - bits->get_least());
  }
  if (const auto* floats = std::get_if<FloatRange>(&range)) {
    const QNumber span = floats->get_greatest() - floats->get_least();
    return (span.sign() < 0 ? 0 : BVNumber::bit_length(span)) + (floats->has(kNaN) ? 1U : 0U);
  }
  return 1;
}

bool is_bool(const Term* t) {
  return t->get_type()->get_kind() == DataType::Kind::boolean;
}

/// Whether `t` has its value from nothing else that has a range.
bool is_free(const Term* t) {
  if (t->get_arity() == 0) return true;
  const Operation* operation = find_operation(t->get_tag());
  return operation == nullptr || operation->theory == Theory::arrays;
}

}  // namespace

void Splitting::close() {
  for (; !choices.empty(); choices.pop_back())
    ranges.pop();
}

double Splitting::estimate() const {
  return rate == 0 ? std::numeric_limits<double>::infinity() : (1 - done) / rate;
}

bool Splitting::run(std::uint64_t effort) {
  std::uint64_t used = 0;
  const double before = done;
  is_asked = true;
  const bool is_refuted = run(effort, &used);
  rate = (done - before) / static_cast<double>(std::max<std::uint64_t>(used, 1));
  return is_refuted;
}

bool Splitting::run(std::uint64_t effort, std::uint64_t* used) {
  while (*used < effort && !is_stuck) {
    *used += ranges.propagate(effort - *used);
    if (ranges.is_contradiction() || (*used < effort && is_judged(effort - *used, used))) {
      if (choices.empty()) return true;
      done += share;
      share = choices.back().share;
      ranges.pop();
      ranges.narrow(choices.back().slot, choices.back().rest);
      choices.pop_back();
      continue;
    }
    if (*used >= effort) break;
    *used += mark_open();
    std::optional<Slot> slot = find_condition();
    if (const std::optional<Slot> factor = slot ? std::nullopt : find_factor()) {
      take(*factor, split_zero(std::get<BitRange>(ranges.get_range(*factor))));
      continue;
    }
    if (!slot) slot = find_constant();
    is_stuck = !slot;
    if (slot) take(*slot, split_range(ranges.get_range(*slot)));
  }
  return false;
}

/// Asks the judge as long as it is of use, and has the time.
bool Splitting::is_judged(std::uint64_t effort, std::uint64_t* used) {
  constexpr std::uint64_t kTrials = 4;
  constexpr std::uint64_t kTrialsForOneSuccess = 8;
  if (!judge || !is_asked || asked >= kTrials + kTrialsForOneSuccess * convicted) return false;
  const std::optional<bool> is_refuted = judge(ranges, effort, used);
  is_asked = is_refuted.has_value();
  asked += is_asked ? 1 : 0;
  convicted += is_refuted == true ? 1 : 0;
  return is_refuted == true;
}

void Splitting::take(Slot slot, Parts parts) {
  share /= 2;
  choices.push_back({slot, std::move(parts.second), share});
  ranges.push();
  ranges.narrow(slot, parts.first);
}

/// Marks what is to be split: what is below a term of which more is known than follows from its
/// arguments, which may not have such values yet. Returns the effort.
std::uint64_t Splitting::mark_open() {
  marks.assign(ranges.get_size(), false);
  std::uint64_t effort = 1;
  for (Slot slot = ranges.get_size(); slot-- > 0;) {
    const Term* t = ranges.get_term(slot);
    if (is_free(t)) continue;
    if (!marks[slot]) {
      ++effort;
      if (ranges.is_implied(slot)) continue;
    }
    for (std::size_t i = 0; i < t->get_arity(); ++i)
      marks[ranges.get_argument(slot, i)] = true;
  }
  return effort;
}

/// A marked truth value that is open.
std::optional<Splitting::Slot> Splitting::find_condition() const {
  for (Slot slot = ranges.get_size(); slot-- > 0;) {
    if (marks[slot] && is_bool(ranges.get_term(slot)) && !is_value(ranges.get_range(slot))) {
      return slot;
    }
  }
  return std::nullopt;
}

/// A marked factor that may be zero, and a bound of the other one where it is not: then that is no
/// more than the product, which does not wrap.
std::optional<Splitting::Slot> Splitting::find_factor() const {
  for (Slot slot = 0; slot < ranges.get_size(); ++slot) {
    if (ranges.get_term(slot)->get_tag() != SymbolTag::bv_mul) continue;
    const auto& product = std::get<BitRange>(ranges.get_range(slot));
    for (std::size_t i = 0; i < 2; ++i) {
      const Slot factor = ranges.get_argument(slot, i);
      const auto& x = std::get<BitRange>(ranges.get_range(factor));
      const auto& y = std::get<BitRange>(ranges.get_range(ranges.get_argument(slot, 1 - i)));
      if (!marks[factor] || x.is_value() || x.get_least().sign() != 0) continue;
      const QNumber most = x.get_greatest() * y.get_greatest();
      const bool is_bound = product.get_greatest() < y.get_greatest();
      if (is_bound && most < BVNumber::power_of_two(product.get_width())) return factor;
    }
  }
  return std::nullopt;
}

/// The marked constant with the most values.
std::optional<Splitting::Slot> Splitting::find_constant() const {
  std::optional<Slot> widest;
  std::uint64_t most = 0;
  for (Slot slot = 0; slot < ranges.get_size(); ++slot) {
    if (!marks[slot] || !is_free(ranges.get_term(slot))) continue;
    const Range& range = ranges.get_range(slot);
    if (range.index() == 0 || is_value(range)) continue;
    const std::uint64_t bits = count_bits(range);
    if (bits <= most) continue;
    most = bits;
    widest = slot;
  }
  return widest;
}

}  // namespace vorn::ranges
