// Constructors of Booleans and bit-vectors by name, and literals of bit-vectors.
#include <stdexcept>
#include <string>

#include "vorn/terms/bv_number.h"
#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

using T = SymbolTag;

}  // namespace

// Literals ------------------------------------------------------------------------------------

const Term* TermManager::make_bv_number(const QNumber& value, std::size_t width) {
  if (!value.is_integer()) {
    throw std::invalid_argument(value.to_string() + " is no bit-vector: it is not an integer");
  }
  const DataType* type = get_bv_type(width);
  return intern_number(BVNumber::modulo(value, width), type);
}

const Term* TermManager::make_bv_number(int value, std::size_t width) {
  if ((value != 0 && value != 1) || width == 0 || width >= kCommonWidths) {
    return make_bv_number(QNumber(value), width);
  }
  const Term*& common = common_numbers[static_cast<std::size_t>(value)][width];
  if (common == nullptr) common = make_bv_number(QNumber(value), width);
  return common;
}

// Names of kinds ------------------------------------------------------------------------------

const Term* TermManager::make_not(const Term* a) {
  return apply(T::bool_not, {a});
}

const Term* TermManager::make_and(const Term* a, const Term* b) {
  return apply(T::bool_and, {a, b});
}

const Term* TermManager::make_or(const Term* a, const Term* b) {
  return apply(T::bool_or, {a, b});
}

const Term* TermManager::make_and(std::span<const Term* const> args) {
  return args.empty() ? true_term : make(T::bool_and, {}, args);
}

const Term* TermManager::make_or(std::span<const Term* const> args) {
  return args.empty() ? false_term : make(T::bool_or, {}, args);
}

const Term* TermManager::make_xor(const Term* a, const Term* b) {
  return apply(T::bool_xor, {a, b});
}

const Term* TermManager::make_implies(const Term* a, const Term* b) {
  return apply(T::bool_implies, {a, b});
}

const Term* TermManager::make_iff(const Term* a, const Term* b) {
  return apply(T::bool_iff, {a, b});
}

const Term* TermManager::make_equal(const Term* a, const Term* b) {
  return apply(T::equal, {a, b});
}

const Term* TermManager::make_term_ite(const Term* c, const Term* a, const Term* b) {
  return apply(T::ite, {c, a, b});
}

bool TermManager::is_term_ite(const Symbol* symbol, const DataType** type) const {
  if (symbol->owner != this || symbol->tag != T::ite) return false;
  if (type != nullptr) *type = symbol->output_type;
  return true;
}

const Term* TermManager::make_bv_extract(std::size_t msb, std::size_t lsb, const Term* t) {
  return apply(T::bv_extract, {msb, lsb}, {t});
}

const Term* TermManager::make_bv_concat(const Term* a, const Term* b) {
  return apply(T::bv_concat, {a, b});
}

const Term* TermManager::make_bv_zero_extend(std::size_t n, const Term* t) {
  return apply(T::bv_zero_extend, {n}, {t});
}

const Term* TermManager::make_bv_sign_extend(std::size_t n, const Term* t) {
  return apply(T::bv_sign_extend, {n}, {t});
}

const Term* TermManager::make_bv_not(const Term* a) {
  return apply(T::bv_not, {a});
}

const Term* TermManager::make_bv_neg(const Term* a) {
  return apply(T::bv_neg, {a});
}

const Term* TermManager::make_bv_and(const Term* a, const Term* b) {
  return apply(T::bv_and, {a, b});
}

const Term* TermManager::make_bv_or(const Term* a, const Term* b) {
  return apply(T::bv_or, {a, b});
}

const Term* TermManager::make_bv_xor(const Term* a, const Term* b) {
  return apply(T::bv_xor, {a, b});
}

const Term* TermManager::make_bv_add(const Term* a, const Term* b) {
  return apply(T::bv_add, {a, b});
}

const Term* TermManager::make_bv_sub(const Term* a, const Term* b) {
  return apply(T::bv_sub, {a, b});
}

const Term* TermManager::make_bv_mul(const Term* a, const Term* b) {
  return apply(T::bv_mul, {a, b});
}

const Term* TermManager::make_bv_udiv(const Term* a, const Term* b) {
  return apply(T::bv_udiv, {a, b});
}

const Term* TermManager::make_bv_urem(const Term* a, const Term* b) {
  return apply(T::bv_urem, {a, b});
}

const Term* TermManager::make_bv_sdiv(const Term* a, const Term* b) {
  return apply(T::bv_sdiv, {a, b});
}

const Term* TermManager::make_bv_srem(const Term* a, const Term* b) {
  return apply(T::bv_srem, {a, b});
}

const Term* TermManager::make_bv_smod(const Term* a, const Term* b) {
  return apply(T::bv_smod, {a, b});
}

const Term* TermManager::make_bv_lshl(const Term* a, const Term* b) {
  return apply(T::bv_shl, {a, b});
}

const Term* TermManager::make_bv_lshr(const Term* a, const Term* b) {
  return apply(T::bv_lshr, {a, b});
}

const Term* TermManager::make_bv_ashr(const Term* a, const Term* b) {
  return apply(T::bv_ashr, {a, b});
}

const Term* TermManager::make_bv_comp(const Term* a, const Term* b) {
  return apply(T::bv_comp, {a, b});
}

const Term* TermManager::make_bv_ult(const Term* a, const Term* b) {
  return apply(T::bv_ult, {a, b});
}

const Term* TermManager::make_bv_ule(const Term* a, const Term* b) {
  return apply(T::bv_ule, {a, b});
}

const Term* TermManager::make_bv_slt(const Term* a, const Term* b) {
  return apply(T::bv_slt, {a, b});
}

const Term* TermManager::make_bv_sle(const Term* a, const Term* b) {
  return apply(T::bv_sle, {a, b});
}

}  // namespace vorn
