// Leaves: rounding modes, variables and literals.
//
// A rounding mode is a code. With 2 bits each of the four codes is a mode, so a variable needs no
// constraint; an encoder that asks for more bits adds one. A floating-point variable is free but
// for its NaNs: they are reduced to one pattern, so that equality of values is equality of bits.
#include <stdexcept>

#include "vorn/fp/fp_bv_encoder.h"

namespace vorn::fp {

const Term* FpBvEncoder::make_fresh_constant(const char* prefix, std::int32_t* counter,
                                             const DataType* type) {
  name_buf.str("");
  name_buf << '.' << prefix << (*counter)++;
  return dst_mgr->make_constant(dst_mgr->make_unique_symbol(name_buf.str(), type));
}

const Term* FpBvEncoder::make_leaf(const Term* /*t*/, const char* prefix, std::int32_t* counter,
                                   const DataType* type) {
  return make_fresh_constant(prefix, counter, type);
}

const Term* FpBvEncoder::encode_rounding(const Term* t) {
  const Symbol* s = t->get_symbol();
  if (src_mgr->is_fprounding_even(s)) return rm_even_bv;
  if (src_mgr->is_fprounding_zero(s)) return rm_zero_bv;
  if (src_mgr->is_fprounding_plus_inf(s)) return rm_plus_inf_bv;
  if (src_mgr->is_fprounding_minus_inf(s)) return rm_minus_inf_bv;
  if (src_mgr->is_fprounding_away(s)) {
    // A constant would stand for any of the four modes, and never for this one.
    throw std::invalid_argument("roundNearestTiesToAway is not supported by the base encoder");
  }
  return make_leaf(t, "fp.r", &rounding_counter, rm_even_bv->get_type());
}

const Term* FpBvEncoder::encode_constant(const Term* t) {
  format fmt{};
  src_mgr->is_fp_type(t->get_symbol()->get_output_type(), &fmt.e, &fmt.m);
  const Term* k = make_leaf(t, "fp.f", &const_counter, dst_mgr->get_bv_type(fmt.width()));
  constrain_nan(k, fmt);
  return k;
}

/// Asks that k, if it is a NaN, be the canonical one.
void FpBvEncoder::constrain_nan(const Term* k, format fmt) {
  const std::size_t width = width_of(k);
  const Term* is_nan = enc_is_nan(k, fmt);
  const Term* no_nan = dst_mgr->make_equal(is_nan, dst_mgr->make_bv_number(0, 1));
  const Term* pattern = dst_mgr->make_bv_number(IEEEFloat::make_nan(fmt).get_bits(), width);
  const Term* canonical = dst_mgr->make_equal(k, pattern);
  add_side_constraint(dst_mgr->make_or(no_nan, canonical));
}

const Term* FpBvEncoder::encode_bv_constant(const Term* t) {
  std::size_t width = 0;
  src_mgr->is_bv_type(t->get_symbol()->get_output_type(), &width);
  const Term* k = make_fresh_constant("fp.bv", &const_counter, dst_mgr->get_bv_type(width));
  new_bv_terms.push_back(t);
  return k;
}

const Term* FpBvEncoder::encode_number(const Term* t) {
  const Symbol* s = t->get_symbol();
  QNumber bits;
  if (const QNumber* value = src_mgr->get_number(s)) bits = *value;
  format fmt{};
  src_mgr->is_fp_type(s->get_output_type(), &fmt.e, &fmt.m);
  return dst_mgr->make_bv_number(bits, fmt.e + fmt.m + 1);
}

}  // namespace vorn::fp
