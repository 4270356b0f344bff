#include "vorn/rewrite/fp_patterns.h"

#include <vector>

#include "vorn/terms/ieee_arithmetic.h"

namespace vorn::rewrite {
namespace {

using T = SymbolTag;

/// The value in the format, if it is one of its values.
OptionalFloat represent(const IEEEFloat& value, Format f) {
  const IEEEFloat below = ieee_cast(f, Mode::minus_inf, value);
  const IEEEFloat above = ieee_cast(f, Mode::plus_inf, value);
  return below.get_bits() == above.get_bits() ? OptionalFloat(below) : OptionalFloat();
}

}  // namespace

// Formats ---------------------------------------------------------------------------------------

Format format_of(const Term* t) {
  return t->get_type()->get_format();
}

std::uint64_t bias_of(Format f) {
  constexpr std::uint64_t kLargest = 60;
  return (std::uint64_t{1} << (f.e <= kLargest ? f.e - 1 : kLargest)) - 1;
}

bool contains(Format wide, Format narrow) {
  return wide.e >= narrow.e && wide.m >= narrow.m;
}

bool has_integers(Format f) {
  return bias_of(f) >= f.m;
}

// Literals --------------------------------------------------------------------------------------

bool is_float(const Term* t) {
  return t->get_type()->get_kind() == DataType::Kind::floating_point;
}

OptionalFloat float_literal(const Term* t) {
  const QNumber* bits = t->get_symbol()->get_literal();
  if (bits == nullptr || !is_float(t)) return {};
  return OptionalFloat(IEEEFloat::from_bits(format_of(t), *bits));
}

std::optional<Mode> mode_literal(const TermManager& mgr, const Term* t) {
  Mode mode{};
  if (!mgr.is_fprounding(t->get_symbol(), &mode)) return std::nullopt;
  return mode;
}

IEEEFloat make_one(Format f) {
  IEEEFloat one(f, Mode::nearest_even);
  one.self_round(QNumber(1));
  return one;
}

bool is_one(const IEEEFloat& value) {
  return value.get_bits() == make_one(value.get_format()).get_bits();
}

Mode mirrored(Mode mode) {
  if (mode == Mode::plus_inf) return Mode::minus_inf;
  return mode == Mode::minus_inf ? Mode::plus_inf : mode;
}

bool is_symmetric(Mode mode) {
  return mirrored(mode) == mode;
}

bool is_directed(Mode mode) {
  return mode != Mode::nearest_even && mode != Mode::nearest_away;
}

// Terms -----------------------------------------------------------------------------------------

bool is_widening(const Term* t) {
  return has_tag(t, T::fp_cast) && contains(format_of(t), format_of(t->get_arg(1)));
}

const Term* narrowed(TermManager& mgr, const Term* t, Format f) {
  std::vector<T::tag> signs;  // of the outermost operation first
  while (has_tag(t, T::fp_neg) || has_tag(t, T::fp_abs)) {
    signs.push_back(t->get_tag());
    t = t->get_arg(0);
  }
  const Term* result = nullptr;
  if (const auto value = float_literal(t)) {
    const auto same = represent(*value, f);
    if (!same) return nullptr;
    result = mgr.make_fp_number(*same);
  } else if (const auto integer = converted_integer(t)) {
    if (!is_exact(*integer, f) || !is_exact(*integer, format_of(t))) return nullptr;
    result = integer->is_signed ? mgr.make_fp_from_sbv(f.e, f.m, t->get_arg(0), integer->bits)
                                : mgr.make_fp_from_ubv(f.e, f.m, t->get_arg(0), integer->bits);
  } else {
    if (!is_widening(t) || !contains(f, format_of(t->get_arg(1)))) return nullptr;
    const Term* source = t->get_arg(1);
    // An exact cast needs no mode, but it has one.
    result = format_of(source) == f ? source : mgr.make_fp_cast(f.e, f.m, t->get_arg(0), source);
  }
  for (std::size_t i = signs.size(); i-- > 0;)
    result = signs[i] == T::fp_neg ? mgr.make_fp_neg(result) : mgr.make_fp_abs(result);
  return result;
}

bool is_never_nan(const Term* t) {
  for (;;) {
    switch (t->get_tag()) {
      case T::fp_neg:
      case T::fp_abs:
        t = t->get_arg(0);
        break;
      case T::fp_cast:
      case T::fp_round_to_integral:
        t = t->get_arg(1);
        break;
      case T::fp_from_sbv:
      case T::fp_from_ubv:
        return true;
      default:
        const auto value = float_literal(t);
        return value && !value->is_nan();
    }
  }
}

std::optional<Integer> converted_integer(const Term* t) {
  const bool is_signed = has_tag(t, T::fp_from_sbv);
  if (!is_signed && !has_tag(t, T::fp_from_ubv)) return std::nullopt;
  return Integer{t->get_arg(1), is_signed};
}

/// The largest magnitude is a power of two if signed, and has all its bits set if not.
bool is_exact(const Integer& integer, Format f) {
  const std::size_t magnitude_bits = integer.width() - (integer.is_signed ? 1 : 0);
  return magnitude_bits <= f.m + 1 && integer.width() - 1 <= bias_of(f);
}

}  // namespace vorn::rewrite
