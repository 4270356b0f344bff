#include "vorn/reals/residues.h"

#include <utility>

#include "vorn/terms/bv_number.h"

namespace vorn::reals {
namespace {

using T = SymbolTag;
using ranges::BitRange;

bool is_conversion(const Term* t) {
  return t->get_tag() == T::fp_from_sbv || t->get_tag() == T::fp_from_ubv;
}

Polynomial scale(const Polynomial& p, const QNumber& factor) {
  Polynomial result;
  result.add(p, factor);
  return result;
}

/// The same number but for multiples of 2^width, with coefficients of at most half of that:
/// products of unknowns are integers.
Polynomial reduce(const Polynomial& p, std::uint64_t width) {
  const QNumber whole = BVNumber::power_of_two(width);
  Polynomial result;
  for (const auto& [monomial, coefficient] : p.get_terms()) {
    const QNumber multiple = floor(coefficient / whole + QNumber(1) / QNumber(2)) * whole;
    result.add_term(monomial, coefficient - multiple);
  }
  return result;
}

}  // namespace

Residues::Residues(const ranges::Propagation& propagation, Bounds& intervals)
    : ranges(propagation), bounds(intervals) {
  for (Slot slot = 0; slot < ranges.get_size() && !is_used; ++slot)
    is_used = is_conversion(ranges.get_term(slot));
  if (!is_used) return;
  mark();
  residues.resize(ranges.get_size());
  values.resize(ranges.get_size());
}

/// What is below a conversion is wanted, and what is made of that.
void Residues::mark() {
  wanted.assign(ranges.get_size(), false);
  const auto has_bits = [this](Slot slot) {
    return std::holds_alternative<BitRange>(ranges.get_range(slot));
  };
  const auto visit_bits = [&](Slot slot, const auto& visit) {
    for (std::size_t i = 0; i < ranges.get_term(slot)->get_arity(); ++i) {
      if (has_bits(argument(slot, i))) visit(argument(slot, i));
    }
  };
  for (Slot slot = ranges.get_size(); slot-- > 0;) {
    const bool is_source = is_conversion(ranges.get_term(slot)) || (wanted[slot] && has_bits(slot));
    if (is_source) visit_bits(slot, [this](Slot operand) { wanted[operand] = true; });
  }
  for (Slot slot = 0; slot < ranges.get_size(); ++slot) {
    if (!has_bits(slot)) continue;
    visit_bits(slot, [&](Slot operand) { wanted[slot] = wanted[slot] || wanted[operand]; });
  }
}

const BitRange& Residues::get_bits(Slot slot) const {
  return std::get<BitRange>(ranges.get_range(slot));
}

Polynomial Residues::get_residue(Slot slot) const {
  return residues[slot] ? *residues[slot] : get_value(slot);
}

Polynomial Residues::get_value(Slot slot) const {
  if (values[slot]) return *values[slot];
  const BitRange& bits = get_bits(slot);
  return bits.is_value() ? Polynomial::of_constant(bits.get_least()) : Polynomial::of_unknown(slot);
}

Polynomial Residues::find_value(Slot slot) {
  const BitRange& bits = get_bits(slot);
  Polynomial value = get_value(slot);
  const bool is_open = !bits.is_value();
  const bool is_whole = is_open && is_number(slot);
  const std::optional<Polynomial> p = is_open ? combine(slot, is_whole) : std::nullopt;
  if (p && p->get_terms().size() <= Polynomial::kMostTerms) {
    const std::uint64_t width = bits.get_width();
    residues[slot] = reduce(*p, width);
    std::optional<Polynomial> integer = is_whole ? p : take_period(*p, width);
    if (!integer) integer = take_period(*residues[slot], width);
    if (integer) residues[slot] = value = std::move(*integer);
  }
  work += 1 + value.get_terms().size();
  values[slot] = value;
  return value;
}

/// The remainder of `p` modulo 2^width, where that is a polynomial.
std::optional<Polynomial> Residues::take_period(Polynomial p, std::uint64_t width) {
  const std::optional<QNumber> period = find_period(bounds.get_interval(p, QNumber()), width);
  if (!period) return std::nullopt;
  p.add(Polynomial::of_constant(*period), QNumber(-1));
  return p;
}

/// Whether the ranges of the operands show that the result does not wrap.
bool Residues::is_number(Slot slot) const {
  const SymbolTag::tag tag = ranges.get_term(slot)->get_tag();
  if (tag != T::bv_add && tag != T::bv_sub && tag != T::bv_mul) return false;
  const BitRange& x = get_bits(argument(slot, 0));
  const BitRange& y = get_bits(argument(slot, 1));
  if (tag == T::bv_sub) return y.get_greatest() <= x.get_least();
  const QNumber greatest =
      tag == T::bv_add ? x.get_greatest() + y.get_greatest() : x.get_greatest() * y.get_greatest();
  return greatest < BVNumber::power_of_two(x.get_width());
}

/// A number that differs from the value of a term by a multiple of two to the power of its width;
/// the operation on the numbers that the operands are, if it is to be that.
std::optional<Polynomial> Residues::combine(Slot slot, bool is_whole) {
  const Term* t = ranges.get_term(slot);
  const Symbol::Indices& indices = t->get_symbol()->get_indices();
  const auto residue = [this, slot, is_whole](std::size_t i) {
    return is_whole ? get_value(argument(slot, i)) : get_residue(argument(slot, i));
  };
  switch (t->get_tag()) {
    case T::bv_not: {
      // The value and its complement add up to all ones, which is -1.
      Polynomial p = Polynomial::of_constant(QNumber(-1));
      p.add(residue(0), QNumber(-1));
      return p;
    }
    case T::bv_neg:
      return residue(0).negate();
    case T::bv_add:
    case T::bv_sub: {
      Polynomial p = residue(0);
      p.add(residue(1), QNumber(t->get_tag() == T::bv_add ? 1 : -1));
      return p;
    }
    case T::bv_mul:
      return multiply(residue(0), residue(1));
    case T::bv_shl:
      return shift_left(argument(slot, 0), argument(slot, 1));
    case T::bv_lshr: {
      const BitRange& distance = get_bits(argument(slot, 1));
      std::int64_t count = 0;
      const bool is_known = distance.is_value() && distance.get_least().get_int64(&count);
      if (!is_known) return std::nullopt;
      return divide(argument(slot, 0), static_cast<std::uint64_t>(count));
    }
    case T::bv_extract:
      // The bits from the lowest on are what is left modulo a smaller power.
      if (indices[1] == 0) return residue(0);
      return divide(argument(slot, 0), indices[1]);
    case T::bv_zero_extend:
      return get_value(argument(slot, 0));
    case T::bv_sign_extend: {
      const BitRange& bits = get_bits(argument(slot, 0));
      if (bits.get_possible().test_bit(bits.get_width() - 1)) return std::nullopt;
      return get_value(argument(slot, 0));
    }
    case T::bv_concat: {
      Polynomial p = get_value(argument(slot, 1));
      p.add(residue(0), BVNumber::power_of_two(get_bits(argument(slot, 1)).get_width()));
      return p;
    }
    case T::ite: {
      const ranges::Range& truth = ranges.get_range(argument(slot, 0));
      if (!ranges::is_value(truth)) return std::nullopt;
      return residue(ranges::is_truth(truth, true) ? 1 : 2);
    }
    default:
      return std::nullopt;
  }
}

std::optional<Polynomial> Residues::multiply(const Polynomial& x, const Polynomial& y) {
  work += x.get_terms().size() * y.get_terms().size();
  return Polynomial::multiply(x, y);
}

std::optional<Polynomial> Residues::shift_left(Slot a, Slot distance) const {
  const BitRange& bits = get_bits(distance);
  std::int64_t count = 0;
  const bool is_short = bits.is_value() && bits.get_least().get_int64(&count) &&
                        static_cast<std::uint64_t>(count) < bits.get_width();
  if (!is_short) return std::nullopt;
  return scale(get_residue(a), power_of_two(count));
}

/// What is left of `a` without `count` bits at its end, which are known to be 0.
std::optional<Polynomial> Residues::divide(Slot a, std::uint64_t count) const {
  const BitRange& bits = get_bits(a);
  if (count >= bits.get_width()) return std::nullopt;
  if (BVNumber::modulo(bits.get_possible(), count).sign() != 0) return std::nullopt;
  return scale(get_value(a), power_of_two(-static_cast<std::int64_t>(count)));
}

}  // namespace vorn::reals
