// The constructors of Boolean and bit-vector operations and all operand checks. Operations that
// take the same kinds of operands share one function; what differs is in the table of operations.
#include <stdexcept>

#include "vorn/terms/bv_number.h"
#include "vorn/terms/operations.h"
#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

[[noreturn]] void fail(SymbolTag::tag tag, const std::string& what) {
  throw std::invalid_argument(std::string(find_operation(tag)->name) + ": " + what);
}

std::string sort_of(const Term* t) {
  return t->get_type()->to_string();
}

std::uint32_t index(std::size_t value) {
  return static_cast<std::uint32_t>(value);
}

}  // namespace

// Checks --------------------------------------------------------------------------------------

const DataType* TermManager::check_own(SymbolTag::tag tag, const Term* t) const {
  if (t == nullptr) fail(tag, "an operand is missing");
  if (t->get_symbol()->owner != this) fail(tag, "an operand belongs to another term manager");
  return t->get_type();
}

void TermManager::check_bool(SymbolTag::tag tag, const Term* t) const {
  if (check_own(tag, t) != bool_type) fail(tag, "expected a Bool, got a term of " + sort_of(t));
}

std::size_t TermManager::check_bv(SymbolTag::tag tag, const Term* t) const {
  const DataType* type = check_own(tag, t);
  if (type->get_kind() != DataType::Kind::bit_vector) {
    fail(tag, "expected a bit-vector, got a term of " + sort_of(t));
  }
  return type->get_width();
}

const DataType* TermManager::check_fp(SymbolTag::tag tag, const Term* t) const {
  const DataType* type = check_own(tag, t);
  if (type->get_kind() != DataType::Kind::floating_point) {
    fail(tag, "expected a floating-point term, got a term of " + sort_of(t));
  }
  return type;
}

void TermManager::check_rounding(SymbolTag::tag tag, const Term* t) const {
  if (check_own(tag, t) != rounding_type) {
    fail(tag, "expected a rounding mode, got a term of " + sort_of(t));
  }
}

const DataType* TermManager::check_same(SymbolTag::tag tag, const Term* a, const Term* b) const {
  const DataType* type = check_own(tag, a);
  if (check_own(tag, b) != type) {
    fail(tag, "operands of different sorts, " + sort_of(a) + " and " + sort_of(b));
  }
  return type;
}

// Booleans and generic operations -------------------------------------------------------------

const Term* TermManager::bool_binary(SymbolTag::tag tag, const Term* a, const Term* b) {
  check_bool(tag, a);
  check_bool(tag, b);
  return build(tag, bool_type, {a, b});
}

const Term* TermManager::make_not(const Term* a) {
  check_bool(SymbolTag::bool_not, a);
  return build(SymbolTag::bool_not, bool_type, {a});
}

const Term* TermManager::make_and(const Term* a, const Term* b) {
  return bool_binary(SymbolTag::bool_and, a, b);
}

const Term* TermManager::make_or(const Term* a, const Term* b) {
  return bool_binary(SymbolTag::bool_or, a, b);
}

const Term* TermManager::make_xor(const Term* a, const Term* b) {
  return bool_binary(SymbolTag::bool_xor, a, b);
}

const Term* TermManager::make_implies(const Term* a, const Term* b) {
  return bool_binary(SymbolTag::bool_implies, a, b);
}

const Term* TermManager::make_iff(const Term* a, const Term* b) {
  return bool_binary(SymbolTag::bool_iff, a, b);
}

const Term* TermManager::make_equal(const Term* a, const Term* b) {
  check_same(SymbolTag::equal, a, b);
  return build(SymbolTag::equal, bool_type, {a, b});
}

const Term* TermManager::make_term_ite(const Term* c, const Term* a, const Term* b) {
  check_bool(SymbolTag::ite, c);
  return build(SymbolTag::ite, check_same(SymbolTag::ite, a, b), {c, a, b});
}

bool TermManager::is_term_ite(const Symbol* symbol, const DataType** type) const {
  if (symbol->owner != this || symbol->tag != SymbolTag::ite) return false;
  if (type != nullptr) *type = symbol->output_type;
  return true;
}

// Bit-vectors ---------------------------------------------------------------------------------

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

const Term* TermManager::make_bv_extract(std::size_t msb, std::size_t lsb, const Term* t) {
  const std::size_t width = check_bv(SymbolTag::bv_extract, t);
  if (msb < lsb || msb >= width) {
    fail(SymbolTag::bv_extract, "bits " + std::to_string(msb) + " down to " + std::to_string(lsb) +
                                    " of a bit-vector of width " + std::to_string(width));
  }
  return build(SymbolTag::bv_extract, get_bv_type(msb - lsb + 1), {t}, {index(msb), index(lsb)});
}

const Term* TermManager::make_bv_concat(const Term* a, const Term* b) {
  const std::size_t width = check_bv(SymbolTag::bv_concat, a) + check_bv(SymbolTag::bv_concat, b);
  if (width > kMaxWidth) {
    fail(SymbolTag::bv_concat, "operands of " + sort_of(a) + " and " + sort_of(b) + " make " +
                                   std::to_string(width) + " bits; widths go up to " +
                                   std::to_string(kMaxWidth));
  }
  return build(SymbolTag::bv_concat, get_bv_type(width), {a, b});
}

const Term* TermManager::bv_extend(SymbolTag::tag tag, std::size_t n, const Term* t) {
  const std::size_t width = check_bv(tag, t);
  // n may be a difference that wrapped around: compare without adding to it.
  if (n > kMaxWidth - width) {
    fail(tag, "a bit-vector of width " + std::to_string(width) + " extended by " +
                  std::to_string(n) + " bits; widths go up to " + std::to_string(kMaxWidth));
  }
  return build(tag, get_bv_type(width + n), {t}, {index(n)});
}

const Term* TermManager::make_bv_zero_extend(std::size_t n, const Term* t) {
  return bv_extend(SymbolTag::bv_zero_extend, n, t);
}

const Term* TermManager::make_bv_sign_extend(std::size_t n, const Term* t) {
  return bv_extend(SymbolTag::bv_sign_extend, n, t);
}

const Term* TermManager::bv_unary(SymbolTag::tag tag, const Term* a) {
  check_bv(tag, a);
  return build(tag, a->get_type(), {a});
}

const Term* TermManager::make_bv_not(const Term* a) {
  return bv_unary(SymbolTag::bv_not, a);
}

const Term* TermManager::make_bv_neg(const Term* a) {
  return bv_unary(SymbolTag::bv_neg, a);
}

const Term* TermManager::bv_binary(SymbolTag::tag tag, const Term* a, const Term* b) {
  check_bv(tag, a);
  return build(tag, check_same(tag, a, b), {a, b});
}

const Term* TermManager::make_bv_and(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_and, a, b);
}

const Term* TermManager::make_bv_or(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_or, a, b);
}

const Term* TermManager::make_bv_xor(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_xor, a, b);
}

const Term* TermManager::make_bv_add(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_add, a, b);
}

const Term* TermManager::make_bv_sub(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_sub, a, b);
}

const Term* TermManager::make_bv_mul(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_mul, a, b);
}

const Term* TermManager::make_bv_udiv(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_udiv, a, b);
}

const Term* TermManager::make_bv_urem(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_urem, a, b);
}

const Term* TermManager::make_bv_sdiv(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_sdiv, a, b);
}

const Term* TermManager::make_bv_srem(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_srem, a, b);
}

const Term* TermManager::make_bv_smod(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_smod, a, b);
}

const Term* TermManager::make_bv_lshl(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_shl, a, b);
}

const Term* TermManager::make_bv_lshr(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_lshr, a, b);
}

const Term* TermManager::make_bv_ashr(const Term* a, const Term* b) {
  return bv_binary(SymbolTag::bv_ashr, a, b);
}

const Term* TermManager::make_bv_comp(const Term* a, const Term* b) {
  check_bv(SymbolTag::bv_comp, a);
  check_same(SymbolTag::bv_comp, a, b);
  return build(SymbolTag::bv_comp, get_bv_type(1), {a, b});
}

const Term* TermManager::bv_predicate(SymbolTag::tag tag, const Term* a, const Term* b) {
  check_bv(tag, a);
  check_same(tag, a, b);
  return build(tag, bool_type, {a, b});
}

const Term* TermManager::make_bv_ult(const Term* a, const Term* b) {
  return bv_predicate(SymbolTag::bv_ult, a, b);
}

const Term* TermManager::make_bv_ule(const Term* a, const Term* b) {
  return bv_predicate(SymbolTag::bv_ule, a, b);
}

const Term* TermManager::make_bv_slt(const Term* a, const Term* b) {
  return bv_predicate(SymbolTag::bv_slt, a, b);
}

const Term* TermManager::make_bv_sle(const Term* a, const Term* b) {
  return bv_predicate(SymbolTag::bv_sle, a, b);
}

}  // namespace vorn
