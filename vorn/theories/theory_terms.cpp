#include "vorn/theories/theory_terms.h"

#include <stdexcept>
#include <string>

namespace vorn::theories {

bool is_array(const Term* t) {
  return t->get_type()->get_kind() == DataType::Kind::array;
}

bool has_stand_in(const Term* t) {
  if (is_array(t)) return false;
  switch (t->get_tag()) {
    case SymbolTag::array_select:
      return true;
    case SymbolTag::equal:
      return is_array(t->get_arg(0));
    case SymbolTag::none:
      return t->get_arity() != 0 || (t->get_type()->get_kind() == DataType::Kind::uninterpreted &&
                                     t->get_symbol()->get_literal() == nullptr);
    default:
      return false;
  }
}

const Term* TheoryTerms::get_stand_in(const Term* t) {
  const Term*& stand_in = stand_ins[t];
  if (stand_in != nullptr) return stand_in;
  const DataType* type = t->get_type();
  if (type->get_kind() == DataType::Kind::uninterpreted) {
    if (++elements > std::size_t{1} << kElementWidth) {
      throw std::length_error("too many terms of uninterpreted sorts");
    }
    type = mgr.get_bv_type(kElementWidth);
  }
  const char* name = ".apply";
  if (t->get_tag() == SymbolTag::array_select) name = ".select";
  if (t->get_tag() == SymbolTag::equal) name = ".equal";
  const bool is_constant = t->get_arity() == 0;
  stand_in = mgr.make_constant(
      mgr.make_unique_symbol(is_constant ? t->get_symbol()->get_name() : name, type));
  return stand_in;
}

const Term* TheoryTerms::get_element(const Term* t) {
  const QNumber& number = *t->get_symbol()->get_literal();
  if (number >= QNumber(std::int64_t{1} << kElementWidth)) {
    throw std::length_error("an element of an uninterpreted sort with too large a number");
  }
  return mgr.make_bv_number(number, kElementWidth);
}

const Term* TheoryTerms::get_witness(const Term* equality) {
  const Term*& witness = witnesses[equality];
  if (witness == nullptr) {
    const DataType* index = equality->get_arg(0)->get_type()->get_index();
    witness = mgr.make_constant(mgr.make_unique_symbol(".difference", index));
  }
  return witness;
}

const Term* TheoryTerms::state_difference(const Term* equality) {
  const Term* witness = get_witness(equality);
  const Term* a = mgr.make_select(equality->get_arg(0), witness);
  const Term* b = mgr.make_select(equality->get_arg(1), witness);
  return mgr.make_or(equality, mgr.make_not(mgr.make_equal(a, b)));
}

}  // namespace vorn::theories
