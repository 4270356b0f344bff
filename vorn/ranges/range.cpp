#include "vorn/ranges/range.h"

#include <type_traits>

namespace vorn::ranges {
namespace {

template <class R>
constexpr bool kIsFinite = std::is_same_v<R, BoolRange> || std::is_same_v<R, RoundingModeSet>;

std::int64_t to_word(const QNumber& value) {
  std::int64_t word = 0;
  value.get_int64(&word);
  return word;
}

BoolRange make_truth(const QNumber& value) {
  return BoolRange::of(value.sign() != 0);
}

RoundingModeSet make_mode(const QNumber& value) {
  return RoundingModeSet::of(static_cast<IEEEFloat::rounding_mode>(to_word(value)));
}

/// Applies `f` to both alternatives, which are the same.
template <class F>
Range combine(const Range& a, const Range& b, const F& f) {
  return std::visit(
      [&](const auto& x) -> Range {
        using R = std::decay_t<decltype(x)>;
        if constexpr (std::is_same_v<R, std::monostate>) {
          return x;
        } else {
          return f(x, std::get<R>(b));
        }
      },
      a);
}

}  // namespace

Range make_everything(const DataType* type) {
  switch (type->get_kind()) {
    case DataType::Kind::boolean:
      return BoolRange::everything();
    case DataType::Kind::rounding_mode:
      return RoundingModeSet::everything();
    case DataType::Kind::bit_vector:
      return BitRange::everything(type->get_width());
    case DataType::Kind::floating_point:
      return FloatRange::everything(type->get_format());
    default:
      return {};
  }
}

Range make_nothing(const DataType* type) {
  switch (type->get_kind()) {
    case DataType::Kind::boolean:
      return BoolRange::nothing();
    case DataType::Kind::rounding_mode:
      return RoundingModeSet::nothing();
    case DataType::Kind::bit_vector:
      return BitRange::nothing(type->get_width());
    case DataType::Kind::floating_point:
      return FloatRange::nothing(type->get_format());
    default:
      return {};
  }
}

Range make_value(const DataType* type, const QNumber& value) {
  switch (type->get_kind()) {
    case DataType::Kind::boolean:
      return make_truth(value);
    case DataType::Kind::rounding_mode:
      return make_mode(value);
    case DataType::Kind::bit_vector:
      return BitRange::of_value(type->get_width(), value);
    case DataType::Kind::floating_point:
      return FloatRange::of_value(IEEEFloat::from_bits(type->get_format(), value));
    default:
      return {};
  }
}

bool is_empty(const Range& range) {
  return std::visit(
      [](const auto& r) {
        if constexpr (std::is_same_v<std::decay_t<decltype(r)>, std::monostate>) {
          return false;
        } else {
          return r.is_empty();
        }
      },
      range);
}

bool is_truth(const Range& range, bool value) {
  return range == Range(BoolRange::of(value));
}

bool is_value(const Range& range) {
  return std::visit(
      [](const auto& r) {
        if constexpr (std::is_same_v<std::decay_t<decltype(r)>, std::monostate>) {
          return false;
        } else {
          return r.is_value();
        }
      },
      range);
}

QNumber get_value(const Range& range) {
  return std::visit(
      [](const auto& r) {
        using R = std::decay_t<decltype(r)>;
        if constexpr (kIsFinite<R>) {
          return QNumber(static_cast<int>(r.get_value()));
        } else if constexpr (std::is_same_v<R, BitRange>) {
          return r.get_least();
        } else if constexpr (std::is_same_v<R, FloatRange>) {
          return r.get_value().get_bits();
        } else {
          return QNumber();
        }
      },
      range);
}

bool contains(const Range& range, const QNumber& value) {
  if (const auto* truth = std::get_if<BoolRange>(&range)) {
    return truth->contains(value.sign() != 0);
  }
  if (const auto* modes = std::get_if<RoundingModeSet>(&range)) {
    return !make_mode(value).intersect(*modes).is_empty();
  }
  if (const auto* bits = std::get_if<BitRange>(&range)) return bits->contains(value);
  if (const auto* floats = std::get_if<FloatRange>(&range)) {
    return floats->contains(IEEEFloat::from_bits(floats->get_format(), value));
  }
  return true;
}

Range intersect(const Range& a, const Range& b) {
  return combine(a, b, [](const auto& x, const auto& y) -> Range { return x.intersect(y); });
}

Range hull(const Range& a, const Range& b) {
  return combine(a, b, [](const auto& x, const auto& y) -> Range { return x.hull(y); });
}

Range exclude(const Range& range, const QNumber& value) {
  if (const auto* truth = std::get_if<BoolRange>(&range)) return truth->without(make_truth(value));
  if (const auto* modes = std::get_if<RoundingModeSet>(&range)) {
    return modes->without(make_mode(value));
  }
  if (const auto* bits = std::get_if<BitRange>(&range)) return bits->without_end(value);
  if (const auto* floats = std::get_if<FloatRange>(&range)) {
    return floats->exclude(IEEEFloat::from_bits(floats->get_format(), value));
  }
  return range;
}

std::string to_string(const Range& range) {
  if (const auto* bits = std::get_if<BitRange>(&range)) return bits->to_string();
  if (const auto* floats = std::get_if<FloatRange>(&range)) return floats->to_string();
  std::string text = "{";
  for (unsigned i = 0; i < kRoundingModes.size(); ++i) {
    const auto* truth = std::get_if<BoolRange>(&range);
    const auto* modes = std::get_if<RoundingModeSet>(&range);
    const bool is_in = (truth != nullptr && i < 2 && truth->contains(i != 0)) ||
                       (modes != nullptr && modes->contains(kRoundingModes[i]));
    if (is_in) text += ' ' + std::to_string(i);
  }
  return text + " }";
}

}  // namespace vorn::ranges
