// Classes that the base encoder does not test for, and operations that hand on an operand: absolute
// value, minimum, maximum, and the bits as they are.
//
// Bit patterns are ordered as in comparisons. What fp.min and fp.max give for zeros of opposite
// sign the theory leaves open, but it is a function: there are two ways in which the operands can
// stand, and one constant of two bits for each operation and format says what each of them gives.
#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::fp {

const Term* IeeeBvEncoder::encode_isnormal(const Term* t) {
  TermManager& mgr = *dst_mgr;
  const format fmt = arg_format(t, 0);
  const Term* field = enc_get_exponent(encoded_arg(t, 0), fmt, false);
  const Term* max = mgr.make_bv_number(fmt.max_exponent(), fmt.e);
  const Term* at_min = mgr.make_equal(field, bv(0, fmt.e));
  return mgr.make_not(mgr.make_or(at_min, mgr.make_equal(field, max)));
}

const Term* IeeeBvEncoder::encode_issubnormal(const Term* t) {
  TermManager& mgr = *dst_mgr;
  const format fmt = arg_format(t, 0);
  const Term* x = encoded_arg(t, 0);
  const Term* at_min = mgr.make_equal(enc_get_exponent(x, fmt, false), bv(0, fmt.e));
  const Term* no_fraction = mgr.make_equal(enc_get_mantissa(x, fmt, false), bv(0, fmt.m));
  return mgr.make_and(at_min, mgr.make_not(no_fraction));
}

const Term* IeeeBvEncoder::encode_isnegative(const Term* t) {
  const Operand x = enc_unpack(t, 0);
  const Term* negative = dst_mgr->make_bv_and(x.sign, dst_mgr->make_bv_not(x.nan));
  return dst_mgr->make_equal(negative, bv(1, 1));
}

const Term* IeeeBvEncoder::encode_ispositive(const Term* t) {
  const Operand x = enc_unpack(t, 0);
  return dst_mgr->make_equal(dst_mgr->make_bv_or(x.sign, x.nan), bv(0, 1));
}

/// A NaN has sign 1 and keeps it.
const Term* IeeeBvEncoder::encode_abs(const Term* t) {
  const format fmt = arg_format(t, 0);
  const Term* x = encoded_arg(t, 0);
  const Term* rest = dst_mgr->make_bv_extract(fmt.e + fmt.m - 1, 0, x);
  return dst_mgr->make_bv_concat(enc_is_nan(x, fmt), rest);
}

/// A NaN gives the quiet one that processors make by default: positive, fraction 10...0.
const Term* IeeeBvEncoder::encode_to_bits(const Term* t) {
  const format fmt = arg_format(t, 0);
  const Term* x = encoded_arg(t, 0);
  const Term* nan = dst_mgr->make_equal(enc_is_nan(x, fmt), bv(1, 1));
  const Term* pattern = dst_mgr->make_bv_number(IEEEFloat::quiet_nan_bits(fmt), fmt.width());
  return enc_make_term_ite(nan, pattern, x);
}

const Term* IeeeBvEncoder::encode_min(const Term* t) {
  return enc_select(t, false);
}

const Term* IeeeBvEncoder::encode_max(const Term* t) {
  return enc_select(t, true);
}

const Term* IeeeBvEncoder::enc_select(const Term* t, bool larger) {
  TermManager& mgr = *dst_mgr;
  const Operand x = enc_unpack(t, 0);
  const Operand y = enc_unpack(t, 1);
  enc_track_operand("select_", 1, x);
  enc_track_operand("select_", 2, y);
  const Term*& choice = zero_choices[t->get_symbol()];
  if (choice == nullptr) {
    choice = make_fresh_constant("fp.u", &spare_counter, mgr.get_bv_type(2));
  }

  const Term* same_sign = mgr.make_bv_comp(x.sign, y.sign);
  const Term* ult = mgr.make_bv_ult(x.packed, y.packed);
  // Of two negative numbers the one of larger magnitude is the smaller.
  const Term* x_negative = mgr.make_equal(x.sign, bv(1, 1));
  const Term* by_magnitude = mgr.make_xor(ult, x_negative);
  const Term* below =
      mgr.make_term_ite(mgr.make_equal(same_sign, bv(1, 1)), by_magnitude, x_negative);
  const Term* ordered = larger ? mgr.make_not(below) : below;

  const Term* zeros = mgr.make_bv_and(mgr.make_bv_and(x.zero, y.zero), mgr.make_bv_not(same_sign));
  const Term* if_negative = mgr.make_bv_extract(1, 1, choice);
  const Term* if_positive = mgr.make_bv_extract(0, 0, choice);
  const Term* chosen_sign = enc_make_ite(x.sign, if_negative, if_positive);
  const Term* x_chosen = mgr.make_equal(chosen_sign, x.sign);
  const Term* of_numbers = mgr.make_term_ite(mgr.make_equal(zeros, bv(1, 1)), x_chosen, ordered);

  const Term* x_number = mgr.make_equal(x.nan, bv(0, 1));
  const Term* y_nan = mgr.make_equal(y.nan, bv(1, 1));
  const Term* take_x = mgr.make_or(y_nan, mgr.make_and(x_number, of_numbers));
  const Term* result = enc_make_term_ite(take_x, x.packed, y.packed);
  debug_track_term(below, "select_below");
  debug_track_term(zeros, "select_zeros");
  debug_track_term(choice, "select_choice");
  debug_track_term(take_x, "select_take_first");
  debug_track_term(result, "select_result");
  return result;
}

}  // namespace vorn::fp
