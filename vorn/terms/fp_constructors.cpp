// The constructors and recognisers of rounding modes and floating-point operations. A symbol's
// indices carry what the recognisers report: the formats and widths of its operands and result.
#include <stdexcept>
#include <string>

#include "vorn/terms/bv_number.h"
#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

using T = SymbolTag;

}  // namespace

// Rounding modes ------------------------------------------------------------------------------

const Term* TermManager::make_fprounding(IEEEFloat::rounding_mode mode) const {
  return rounding_terms[static_cast<std::size_t>(mode)];
}

bool TermManager::is_fprounding(const Symbol* symbol, IEEEFloat::rounding_mode* mode) const {
  for (std::size_t i = 0; i < rounding_terms.size(); ++i) {
    if (rounding_terms[i]->get_symbol() != symbol) continue;
    if (mode != nullptr) *mode = static_cast<IEEEFloat::rounding_mode>(i);
    return true;
  }
  return false;
}

const Term* TermManager::make_fprounding_even() const {
  return make_fprounding(IEEEFloat::rounding_mode::nearest_even);
}

const Term* TermManager::make_fprounding_zero() const {
  return make_fprounding(IEEEFloat::rounding_mode::toward_zero);
}

const Term* TermManager::make_fprounding_plus_inf() const {
  return make_fprounding(IEEEFloat::rounding_mode::plus_inf);
}

const Term* TermManager::make_fprounding_minus_inf() const {
  return make_fprounding(IEEEFloat::rounding_mode::minus_inf);
}

const Term* TermManager::make_fprounding_away() const {
  return make_fprounding(IEEEFloat::rounding_mode::nearest_away);
}

bool TermManager::is_fprounding_even(const Symbol* symbol) const {
  return make_fprounding_even()->get_symbol() == symbol;
}

bool TermManager::is_fprounding_zero(const Symbol* symbol) const {
  return make_fprounding_zero()->get_symbol() == symbol;
}

bool TermManager::is_fprounding_plus_inf(const Symbol* symbol) const {
  return make_fprounding_plus_inf()->get_symbol() == symbol;
}

bool TermManager::is_fprounding_minus_inf(const Symbol* symbol) const {
  return make_fprounding_minus_inf()->get_symbol() == symbol;
}

bool TermManager::is_fprounding_away(const Symbol* symbol) const {
  return make_fprounding_away()->get_symbol() == symbol;
}

// Floating point ------------------------------------------------------------------------------

const Term* TermManager::make_fp_number(const QNumber& bits, std::size_t e, std::size_t m) {
  if (!bits.is_integer()) {
    throw std::invalid_argument(bits.to_string() + " is no bit pattern: it is not an integer");
  }
  const DataType* type = get_fp_type(e, m);
  return intern_number(BVNumber::modulo(bits, 1 + e + m), type);
}

const Term* TermManager::make_fp_number(const IEEEFloat& value) {
  const auto [e, m] = value.get_format();
  return value.is_nan() ? make_fp_nan(e, m) : make_fp_number(value.get_bits(), e, m);
}

const Term* TermManager::make_fp_nan(std::size_t e, std::size_t m) {
  const DataType* type = get_fp_type(e, m);
  return intern_number(IEEEFloat::make_nan({e, m}).get_bits(), type);
}

const Term* TermManager::make_fp_from_bits(std::size_t e, std::size_t m, const Term* bits) {
  return apply(T::fp_from_bits, {e, m}, {bits});
}

const Term* TermManager::make_fp_equal(const Term* a, const Term* b) {
  return apply(T::fp_equal, {a, b});
}

const Term* TermManager::make_fp_lt(const Term* a, const Term* b) {
  return apply(T::fp_lt, {a, b});
}

const Term* TermManager::make_fp_le(const Term* a, const Term* b) {
  return apply(T::fp_le, {a, b});
}

const Term* TermManager::make_fp_gt(const Term* a, const Term* b) {
  return apply(T::fp_gt, {a, b});
}

const Term* TermManager::make_fp_ge(const Term* a, const Term* b) {
  return apply(T::fp_ge, {a, b});
}

const Term* TermManager::make_fp_neg(const Term* a) {
  return apply(T::fp_neg, {a});
}

const Term* TermManager::make_fp_add(const Term* rm, const Term* a, const Term* b) {
  return apply(T::fp_add, {rm, a, b});
}

const Term* TermManager::make_fp_sub(const Term* rm, const Term* a, const Term* b) {
  return apply(T::fp_sub, {rm, a, b});
}

const Term* TermManager::make_fp_mul(const Term* rm, const Term* a, const Term* b) {
  return apply(T::fp_mul, {rm, a, b});
}

const Term* TermManager::make_fp_div(const Term* rm, const Term* a, const Term* b) {
  return apply(T::fp_div, {rm, a, b});
}

const Term* TermManager::make_fp_cast(std::size_t e, std::size_t m, const Term* rm, const Term* a) {
  return apply(T::fp_cast, {e, m}, {rm, a});
}

const Term* TermManager::make_fp_from_sbv(std::size_t e, std::size_t m, const Term* rm,
                                          const Term* v) {
  return apply(T::fp_from_sbv, {e, m}, {rm, v});
}

const Term* TermManager::make_fp_from_ubv(std::size_t e, std::size_t m, const Term* rm,
                                          const Term* v) {
  return apply(T::fp_from_ubv, {e, m}, {rm, v});
}

const Term* TermManager::make_fp_to_sbv(std::size_t width, const Term* rm, const Term* a) {
  return apply(T::fp_to_sbv, {width}, {rm, a});
}

const Term* TermManager::make_fp_to_ubv(std::size_t width, const Term* rm, const Term* a) {
  return apply(T::fp_to_ubv, {width}, {rm, a});
}

const Term* TermManager::make_fp_to_bits(const Term* a) {
  return apply(T::fp_to_bits, {a});
}

const Term* TermManager::make_fp_abs(const Term* a) {
  return apply(T::fp_abs, {a});
}

const Term* TermManager::make_fp_min(const Term* a, const Term* b) {
  return apply(T::fp_min, {a, b});
}

const Term* TermManager::make_fp_max(const Term* a, const Term* b) {
  return apply(T::fp_max, {a, b});
}

const Term* TermManager::make_fp_rem(const Term* a, const Term* b) {
  return apply(T::fp_rem, {a, b});
}

const Term* TermManager::make_fp_sqrt(const Term* rm, const Term* a) {
  return apply(T::fp_sqrt, {rm, a});
}

const Term* TermManager::make_fp_round_to_integral(const Term* rm, const Term* a) {
  return apply(T::fp_round_to_integral, {rm, a});
}

const Term* TermManager::make_fp_fma(const Term* rm, const Term* a, const Term* b, const Term* c) {
  return apply(T::fp_fma, {rm, a, b, c});
}

const Term* TermManager::make_fp_isnan(const Term* a) {
  return apply(T::fp_isnan, {a});
}

const Term* TermManager::make_fp_isinf(const Term* a) {
  return apply(T::fp_isinf, {a});
}

const Term* TermManager::make_fp_iszero(const Term* a) {
  return apply(T::fp_iszero, {a});
}

const Term* TermManager::make_fp_isnormal(const Term* a) {
  return apply(T::fp_isnormal, {a});
}

const Term* TermManager::make_fp_issubnormal(const Term* a) {
  return apply(T::fp_issubnormal, {a});
}

const Term* TermManager::make_fp_isnegative(const Term* a) {
  return apply(T::fp_isnegative, {a});
}

const Term* TermManager::make_fp_ispositive(const Term* a) {
  return apply(T::fp_ispositive, {a});
}

// Recognisers ---------------------------------------------------------------------------------

bool TermManager::recognise(SymbolTag::tag tag, const Symbol* s,
                            std::initializer_list<std::size_t*> widths) const {
  if (s->owner != this || s->tag != tag) return false;
  std::size_t i = 0;
  for (std::size_t* width : widths)
    *width = s->indices[i++];
  return true;
}

bool TermManager::is_fp_equal(const Symbol* s, std::size_t* e, std::size_t* m) const {
  return recognise(SymbolTag::fp_equal, s, {e, m});
}

bool TermManager::is_fp_lt(const Symbol* s, std::size_t* e, std::size_t* m) const {
  return recognise(SymbolTag::fp_lt, s, {e, m});
}

bool TermManager::is_fp_le(const Symbol* s, std::size_t* e, std::size_t* m) const {
  return recognise(SymbolTag::fp_le, s, {e, m});
}

bool TermManager::is_fp_neg(const Symbol* s, std::size_t* e, std::size_t* m) const {
  return recognise(SymbolTag::fp_neg, s, {e, m});
}

bool TermManager::is_fp_add(const Symbol* s, std::size_t* e, std::size_t* m) const {
  return recognise(SymbolTag::fp_add, s, {e, m});
}

bool TermManager::is_fp_sub(const Symbol* s, std::size_t* e, std::size_t* m) const {
  return recognise(SymbolTag::fp_sub, s, {e, m});
}

bool TermManager::is_fp_mul(const Symbol* s, std::size_t* e, std::size_t* m) const {
  return recognise(SymbolTag::fp_mul, s, {e, m});
}

bool TermManager::is_fp_div(const Symbol* s, std::size_t* e, std::size_t* m) const {
  return recognise(SymbolTag::fp_div, s, {e, m});
}

bool TermManager::is_fp_cast(const Symbol* s, std::size_t* e1, std::size_t* m1, std::size_t* e2,
                             std::size_t* m2) const {
  return recognise(SymbolTag::fp_cast, s, {e1, m1, e2, m2});
}

bool TermManager::is_fp_from_sbv(const Symbol* s, std::size_t* w, std::size_t* e,
                                 std::size_t* m) const {
  return recognise(SymbolTag::fp_from_sbv, s, {w, e, m});
}

bool TermManager::is_fp_from_ubv(const Symbol* s, std::size_t* w, std::size_t* e,
                                 std::size_t* m) const {
  return recognise(SymbolTag::fp_from_ubv, s, {w, e, m});
}

bool TermManager::is_fp_isnan(const Symbol* s, std::size_t* e, std::size_t* m) const {
  return recognise(SymbolTag::fp_isnan, s, {e, m});
}

bool TermManager::is_fp_isinf(const Symbol* s, std::size_t* e, std::size_t* m) const {
  return recognise(SymbolTag::fp_isinf, s, {e, m});
}

bool TermManager::is_fp_iszero(const Symbol* s, std::size_t* e, std::size_t* m) const {
  return recognise(SymbolTag::fp_iszero, s, {e, m});
}

}  // namespace vorn
