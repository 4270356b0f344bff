// Literals of everything that numbers, bits and texts are.
#include <bit>
#include <stdexcept>
#include <string>

#include "vorn/c/guard.h"
#include "vorn/c/handles.h"
#include "vorn/c/number_text.h"
#include "vorn/c/values.h"
#include "vorn/terms/bv_number.h"
#include "vorn/terms/float_text.h"
#include "vorn/terms/ieee_arithmetic.h"

using namespace vorn::c;
using vorn::IEEEFloat;
using vorn::QNumber;
using vorn::Term;

namespace {

constexpr IEEEFloat::format kSingle = {8, 23};
constexpr IEEEFloat::format kDouble = {11, 52};

/// Stores the term that `build` gives.
template <class Build>
vorn_status make_literal(vorn_manager* manager, const char* function, vorn_term** result,
                         const Build& build) {
  return produce(manager, function, result, [&] {
    manager->tidy();
    return manager->hold(build());
  });
}

IEEEFloat::rounding_mode read_mode(vorn_rounding_mode mode) {
  const auto number = static_cast<unsigned>(mode);
  if (number > VORN_RNA) {
    throw std::invalid_argument("there is no rounding mode " + std::to_string(number));
  }
  return static_cast<IEEEFloat::rounding_mode>(number);
}

IEEEFloat::format get_format(const vorn_manager& manager, const vorn_sort* sort) {
  const vorn::DataType* type = get(manager, sort, "the sort");
  if (type->get_kind() == vorn::DataType::Kind::floating_point) return type->get_format();
  throw std::invalid_argument("expected a floating-point sort, got " + type->to_string());
}

const Term* make_bits(vorn_manager& manager, std::size_t width, const QNumber& value) {
  const vorn::DataType* type = manager.terms.get_bv_type(width);
  const QNumber above = vorn::BVNumber::power_of_two(width);
  const QNumber least = vorn::BVNumber::power_of_two(width - 1).neg();
  if (value < above && value >= least) return manager.terms.make_bv_number(value, width);
  throw std::invalid_argument(value.to_string() + " does not fit " + type->to_string());
}

const Term* make_packed(vorn_manager& manager, const vorn_sort* sort, const QNumber& bits) {
  const IEEEFloat::format format = get_format(manager, sort);
  if (bits < vorn::BVNumber::power_of_two(format.width())) {
    return manager.terms.make_fp_number(IEEEFloat::from_bits(format, bits));
  }
  throw std::invalid_argument("the bits " + bits.to_string(2) + " do not fit " +
                              sort->type->to_string());
}

/// A float of another format in that of the sort.
const Term* make_float(vorn_manager& manager, const vorn_sort* sort, vorn_rounding_mode mode,
                       const IEEEFloat& value) {
  const IEEEFloat::format format = get_format(manager, sort);
  return manager.terms.make_fp_number(vorn::ieee_cast(format, read_mode(mode), value));
}

const Term* make_integer(vorn_manager& manager, const vorn_sort* sort, vorn_rounding_mode mode,
                         const QNumber& value) {
  const IEEEFloat::format format = get_format(manager, sort);
  return manager.terms.make_fp_number(vorn::ieee_from_integer(format, read_mode(mode), value));
}

}  // namespace

vorn_status vorn_make_bool(vorn_manager* manager, bool value, vorn_term** result) {
  return make_literal(manager, __func__, result, [&] { return manager->terms.make_bool(value); });
}

vorn_status vorn_make_rounding_mode(vorn_manager* manager, vorn_rounding_mode mode,
                                    vorn_term** result) {
  return make_literal(manager, __func__, result,
                      [&] { return manager->terms.make_fprounding(read_mode(mode)); });
}

vorn_status vorn_make_element(vorn_manager* manager, const vorn_sort* sort, uint64_t number,
                              vorn_term** result) {
  return make_literal(manager, __func__, result, [&] {
    const vorn::DataType* type = get(*manager, sort, "the sort");
    return manager->terms.make_element(type, QNumber::from_integer(number));
  });
}

// Bit-vectors ---------------------------------------------------------------------------------

vorn_status vorn_make_bv_uint64(vorn_manager* manager, size_t width, uint64_t value,
                                vorn_term** result) {
  return make_literal(manager, __func__, result,
                      [&] { return make_bits(*manager, width, QNumber::from_integer(value)); });
}

vorn_status vorn_make_bv_int64(vorn_manager* manager, size_t width, int64_t value,
                               vorn_term** result) {
  return make_literal(manager, __func__, result,
                      [&] { return make_bits(*manager, width, QNumber::from_integer(value)); });
}

vorn_status vorn_make_bv_decimal(vorn_manager* manager, size_t width, const char* decimal,
                                 vorn_term** result) {
  return make_literal(manager, __func__, result, [&] {
    return make_bits(*manager, width, read_integer(get_text(decimal, "the number")));
  });
}

vorn_status vorn_make_bv_binary(vorn_manager* manager, const char* bits, vorn_term** result) {
  return make_literal(manager, __func__, result, [&] {
    const std::string_view text = get_text(bits, "the text of bits");
    const QNumber value = read_binary(text);
    return make_bits(*manager, text.size(), value);
  });
}

// Floats --------------------------------------------------------------------------------------

vorn_status vorn_make_fp_string(vorn_manager* manager, const vorn_sort* sort,
                                vorn_rounding_mode mode, const char* text, vorn_term** result) {
  return make_literal(manager, __func__, result, [&] {
    const IEEEFloat::format format = get_format(*manager, sort);
    const std::string_view number = get_text(text, "the number");
    return manager->terms.make_fp_number(vorn::parse_float(number, format, read_mode(mode)));
  });
}

vorn_status vorn_make_fp_double(vorn_manager* manager, const vorn_sort* sort,
                                vorn_rounding_mode mode, double value, vorn_term** result) {
  return make_literal(manager, __func__, result, [&] {
    const QNumber bits = QNumber::from_integer(std::bit_cast<std::uint64_t>(value));
    return make_float(*manager, sort, mode, IEEEFloat::from_bits(kDouble, bits));
  });
}

vorn_status vorn_make_fp_float(vorn_manager* manager, const vorn_sort* sort,
                               vorn_rounding_mode mode, float value, vorn_term** result) {
  return make_literal(manager, __func__, result, [&] {
    const QNumber bits = QNumber::from_integer(std::bit_cast<std::uint32_t>(value));
    return make_float(*manager, sort, mode, IEEEFloat::from_bits(kSingle, bits));
  });
}

vorn_status vorn_make_fp_int64(vorn_manager* manager, const vorn_sort* sort,
                               vorn_rounding_mode mode, int64_t value, vorn_term** result) {
  return make_literal(manager, __func__, result, [&] {
    return make_integer(*manager, sort, mode, QNumber::from_integer(value));
  });
}

vorn_status vorn_make_fp_uint64(vorn_manager* manager, const vorn_sort* sort,
                                vorn_rounding_mode mode, uint64_t value, vorn_term** result) {
  return make_literal(manager, __func__, result, [&] {
    return make_integer(*manager, sort, mode, QNumber::from_integer(value));
  });
}

vorn_status vorn_make_fp_binary(vorn_manager* manager, const vorn_sort* sort, const char* bits,
                                vorn_term** result) {
  return make_literal(manager, __func__, result, [&] {
    const std::string_view text = get_text(bits, "the text of bits");
    const std::size_t width = get_format(*manager, sort).width();
    if (text.size() != width) {
      throw std::invalid_argument(std::to_string(text.size()) + " bits are no " +
                                  sort->type->to_string() + ", which has " + std::to_string(width));
    }
    return make_packed(*manager, sort, read_binary(text));
  });
}

vorn_status vorn_make_fp_bits(vorn_manager* manager, const vorn_sort* sort, uint64_t bits,
                              vorn_term** result) {
  return make_literal(manager, __func__, result,
                      [&] { return make_packed(*manager, sort, QNumber::from_integer(bits)); });
}
