#include "vorn/solver/result_lemmas.h"

#include <algorithm>
#include <utility>

#include "vorn/ranges/transfer.h"
#include "vorn/semantics/evaluator.h"

namespace vorn::solver {
namespace {

using ranges::BitRange;
using ranges::FloatRange;
using ranges::Range;

/// The least and the greatest number that agree with `bits` in all but the lowest `free` bits.
std::pair<QNumber, QNumber> widen(const QNumber& bits, std::size_t free) {
  const mpz_class rest = (mpz_class(1) << free) - 1;
  const mpz_class value = bits.get_numerator();
  const mpz_class least = value - (value & rest);
  return {QNumber::from_mpz(least), QNumber::from_mpz(least + rest)};
}

/// Values of an operand near `value`, of a literal that alone. Of floats that are numbers, the
/// greatest is no more than an infinity, and zeros come together, since comparisons do not tell
/// them apart.
Range make_neighbourhood(const Term* operand, const QNumber& value, std::size_t free) {
  const DataType* type = operand->get_type();
  Range point = ranges::make_value(type, value);
  if (operand->get_symbol()->get_literal() != nullptr) return point;
  if (type->get_kind() == DataType::Kind::bit_vector) {
    const std::size_t width = type->get_width();
    const auto [least, greatest] = widen(value, std::min(free, width));
    return BitRange::between(width, least, greatest);
  }
  const auto* number = std::get_if<FloatRange>(&point);
  if (number == nullptr || number->has(ranges::kNaN)) return point;
  const bool is_negative = number->is_within(ranges::kNegative);
  const QNumber& rank = number->get_least();
  const auto [least, greatest] = widen(is_negative ? ranges::negate_rank(rank) : rank, free);
  const FloatRange near = FloatRange::between(type->get_format(), least, greatest);
  return (is_negative ? near.negate() : near).merge_zeros();
}

/// That `t` is a value of the set, or one of some larger set. A neighbourhood is that set itself.
const Term* state_membership(TermManager& mgr, const Term* t, const Range& range) {
  if (const auto* modes = std::get_if<ranges::RoundingModeSet>(&range)) {
    return modes->is_value() ? mgr.make_equal(t, mgr.make_fprounding(modes->get_value()))
                             : mgr.make_true();
  }
  if (const auto* bits = std::get_if<BitRange>(&range)) {
    const std::size_t width = bits->get_width();
    const Term* least = mgr.make_bv_number(bits->get_least(), width);
    const Term* greatest = mgr.make_bv_number(bits->get_greatest(), width);
    return mgr.make_and(mgr.make_bv_ule(least, t), mgr.make_bv_ule(t, greatest));
  }
  const auto& floats = std::get<FloatRange>(range);
  const Term* nan = mgr.make_fp_isnan(t);
  if (!floats.has(ranges::kNumbers)) return nan;
  const IEEEFloat::format format = floats.get_format();
  const auto end = [&](const QNumber& rank) {
    return mgr.make_fp_number(ranges::float_of_rank(format, rank));
  };
  const Term* within = mgr.make_and(mgr.make_fp_le(end(floats.get_least()), t),
                                    mgr.make_fp_le(t, end(floats.get_greatest())));
  return floats.has(ranges::kNaN) ? mgr.make_or(nan, within) : within;
}

/// Whether what state_membership says is false of `value`.
bool is_excluded(const Range& range, const QNumber& value) {
  const auto* floats = std::get_if<FloatRange>(&range);
  if (floats == nullptr) return !ranges::contains(range, value);
  if (!floats->has(ranges::kNumbers)) return !ranges::contains(range, value);
  const FloatRange numbers =
      FloatRange::between(floats->get_format(), floats->get_least(), floats->get_greatest());
  const FloatRange all = numbers.extend_by(floats->get_classes() & ranges::kNaN).merge_zeros();
  return !ranges::contains(all, value);
}

/// How many bits of operands are left free, from the largest neighbourhoods to the values alone.
std::vector<std::size_t> list_radii(const DataType* type) {
  const bool is_float = type->get_kind() == DataType::Kind::floating_point;
  const std::size_t fraction = is_float ? type->get_m() : type->get_width();
  std::vector<std::size_t> radii;
  // Numbers of one sign, then some of their first exponent bits in common.
  for (std::size_t exponent = is_float ? type->get_e() : 0; exponent > 0; --exponent)
    radii.push_back(fraction + exponent);
  for (std::size_t free = fraction; free > 3; free = free * 3 / 4)
    radii.push_back(free);
  radii.push_back(0);
  return radii;
}

/// That `t` has the value.
const Term* state_value(TermManager& mgr, const Term* t, const QNumber& value) {
  return mgr.make_equal(t, semantics::make_literal(mgr, t->get_type(), value));
}

}  // namespace

const Term* state_result_near(TermManager& manager, const Term* t,
                              std::span<const QNumber> operands, const QNumber& value,
                              const QNumber& candidate) {
  const Term* differs = manager.make_false();  // whether an operand lies elsewhere
  const Term* conclusion = state_value(manager, t, value);
  std::vector<Range> near(operands.size());
  std::size_t radius = 0;
  for (const std::size_t free : list_radii(t->get_type())) {
    radius = free;
    if (free == 0) break;
    for (std::size_t i = 0; i < operands.size(); ++i)
      near[i] = make_neighbourhood(t->get_arg(i), operands[i], free);
    const Range result = ranges::forward(manager, t, near);
    if (!is_excluded(result, candidate)) continue;
    conclusion = state_membership(manager, t, result);
    break;
  }
  for (std::size_t i = 0; i < operands.size(); ++i) {
    const Term* operand = t->get_arg(i);
    const Term* is_near = radius == 0 ? state_value(manager, operand, operands[i])
                                      : state_membership(manager, operand, near[i]);
    differs = manager.make_or(differs, manager.make_not(is_near));
  }
  return manager.make_or(differs, conclusion);
}

}  // namespace vorn::solver
