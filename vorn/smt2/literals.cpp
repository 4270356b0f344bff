#include "vorn/smt2/literals.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string>

#include "vorn/terms/bv_number.h"

namespace vorn::smt2 {
namespace {

std::size_t bv_width(const TermManager& mgr, const Term* t) {
  std::size_t width = 0;
  if (!mgr.is_bv_type(t->get_type(), &width)) {
    throw std::invalid_argument("fp: expected a bit-vector, got a term of " +
                                t->get_type()->to_string());
  }
  return width;
}

}  // namespace

IEEEFloat::format make_format(std::uint32_t eb, std::uint32_t sb) {
  if (eb < 2 || sb < 2) {
    throw std::invalid_argument(
        fmt::format("a floating-point sort with exponent width {} and significand width {}: both "
                    "must be greater than 1",
                    eb, sb));
  }
  if (std::size_t{eb} + sb > TermManager::kMaxWidth) {
    throw std::invalid_argument(
        fmt::format("a floating-point sort with exponent width {} and significand width {}: widths "
                    "go up to {} in sum",
                    eb, sb, TermManager::kMaxWidth));
  }
  return {eb, sb - 1};
}

const Term* make_bv_digits(TermManager& mgr, std::string_view digits, std::size_t bits_per_digit) {
  const QNumber value = QNumber::from_string(digits, 1 << bits_per_digit);
  return mgr.make_bv_number(value, digits.size() * bits_per_digit);
}

bool is_bv_decimal(std::string_view name) {
  return name.size() > 2 && name.starts_with("bv") &&
         name.find_first_not_of("0123456789", 2) == std::string_view::npos;
}

const Term* make_bv_decimal(TermManager& mgr, std::string_view name, std::size_t width) {
  const DataType* type = mgr.get_bv_type(width);
  const QNumber value = QNumber::from_string(name.substr(2));
  if (BVNumber::bit_length(value) > width) {
    throw std::invalid_argument(
        fmt::format("the value {} does not fit {}", name.substr(2), type->to_string()));
  }
  return mgr.make_bv_number(value, width);
}

const Term* make_float_from_bits(TermManager& mgr, IEEEFloat::format f, const Term* bits) {
  // Built first in any case: the constructor checks the width.
  const Term* result = mgr.make_fp_from_bits(f.e, f.m, bits);
  QNumber value;
  return mgr.is_number(bits, &value) ? mgr.make_fp_number(IEEEFloat::from_bits(f, value)) : result;
}

const Term* make_float_from_fields(TermManager& mgr, const Term* sign, const Term* exponent,
                                   const Term* fraction) {
  const std::size_t sign_width = bv_width(mgr, sign);
  const std::size_t e = bv_width(mgr, exponent);
  const std::size_t m = bv_width(mgr, fraction);
  if (sign_width != 1 || e < 2) {
    throw std::invalid_argument(fmt::format(
        "fp: the sign takes 1 bit and the exponent at least 2, got {} and {}", sign_width, e));
  }
  mgr.get_fp_type(e, m);  // refuses what is too wide before the bits are joined

  QNumber s, x, y;
  if (mgr.is_number(sign, &s) && mgr.is_number(exponent, &x) && mgr.is_number(fraction, &y)) {
    const QNumber bits = BVNumber::bv_concat(s, BVNumber::bv_concat(x, y, m), e + m);
    return mgr.make_fp_number(IEEEFloat::from_bits({e, m}, bits));
  }
  const Term* bits = mgr.make_bv_concat(sign, mgr.make_bv_concat(exponent, fraction));
  return mgr.make_fp_from_bits(e, m, bits);
}

const Term* make_float_from_real(TermManager& mgr, IEEEFloat::format f, const Term* rm,
                                 const QNumber& real, const QNumber& exponent) {
  using enum IEEEFloat::rounding_mode;
  const auto rounded = [&](IEEEFloat::rounding_mode mode) {
    IEEEFloat value(f, mode);
    value.self_round(real, exponent.get_numerator());
    return mgr.make_fp_number(value);
  };
  mgr.get_fp_type(f.e, f.m);
  if (!exponent.is_integer()) {
    throw std::invalid_argument("to_fp: the exponent must be an integer, got " +
                                exponent.to_string());
  }
  if (!mgr.is_fprounding_type(rm->get_type())) {
    throw std::invalid_argument("to_fp: expected a rounding mode, got a term of " +
                                rm->get_type()->to_string());
  }
  IEEEFloat::rounding_mode mode{};
  if (mgr.is_fprounding(rm->get_symbol(), &mode)) return rounded(mode);

  const Term* result = rounded(nearest_even);
  for (const IEEEFloat::rounding_mode other : {nearest_away, plus_inf, minus_inf, toward_zero}) {
    const Term* chosen = mgr.make_equal(rm, mgr.make_fprounding(other));
    result = mgr.make_term_ite(chosen, rounded(other), result);
  }
  return result;
}

}  // namespace vorn::smt2
