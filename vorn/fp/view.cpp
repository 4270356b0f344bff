// Looking into packed values, and choosing between them.
//
// Fields and class tests are rebuilt wherever they are needed: the manager shares equal terms, so a
// repetition costs a lookup. A term-level if-then-else is replaced by a fresh constant with two
// clauses that define it, which keeps the encodings of large formulas flat.
#include "vorn/fp/fp_bv_encoder.h"

#include <iterator>

#include "vorn/terms/bv_number.h"

namespace vorn::fp {

std::size_t FpBvEncoder::width_of(const Term* t) const {
  std::size_t width = 0;
  dst_mgr->is_bv_type(t->get_symbol()->get_output_type(), &width);
  return width;
}

const Term* FpBvEncoder::bv(std::uint64_t value, std::size_t width) {
  return dst_mgr->make_bv_number(static_cast<std::int64_t>(value), width);
}

const Term* FpBvEncoder::bv_signed(const QNumber& value, std::size_t width) {
  QNumber bits;
  BVNumber::twos_complement(value, width, &bits);
  return dst_mgr->make_bv_number(bits, width);
}

const Term* FpBvEncoder::enc_get_exponent(const Term* t, format fmt, bool unbias) {
  TermManager& mgr = *dst_mgr;
  const Term* x = mgr.make_bv_extract(fmt.m + fmt.e - 1, fmt.m, t);
  if (!unbias) return x;
  const Term* zero = mgr.make_bv_number(0, fmt.e);
  const Term* bias = mgr.make_bv_number(fmt.bias(), fmt.e);
  const Term* d = mgr.make_bv_sub(x, bias);
  // Subnormals are read at the scale of the smallest normals: 1 - bias, not -bias.
  const Term* z = mgr.make_bv_comp(x, zero);
  return mgr.make_bv_add(d, mgr.make_bv_zero_extend(fmt.e - 1, z));
}

const Term* FpBvEncoder::enc_get_mantissa(const Term* t, format fmt, bool with_hidden) {
  TermManager& mgr = *dst_mgr;
  const Term* significand = mgr.make_bv_extract(fmt.m - 1, 0, t);
  if (!with_hidden) return significand;
  const Term* x = enc_get_exponent(t, fmt, false);
  const Term* zero = mgr.make_bv_number(0, fmt.e);
  const Term* ones = mgr.make_bv_not(zero);
  const Term* not_zero = mgr.make_bv_not(mgr.make_bv_comp(x, zero));
  const Term* not_ones = mgr.make_bv_not(mgr.make_bv_comp(x, ones));
  const Term* hidden = mgr.make_bv_and(not_zero, not_ones);
  return mgr.make_bv_concat(hidden, significand);
}

/// One bit each: whether the exponent field is all ones, whether the fraction is zero.
void FpBvEncoder::enc_test_fields(const Term* t, format fmt, const Term** at_max,
                                  const Term** no_fraction) {
  TermManager& mgr = *dst_mgr;
  const Term* x = enc_get_exponent(t, fmt, false);
  const Term* significand = enc_get_mantissa(t, fmt, false);
  const Term* max = mgr.make_bv_number(fmt.max_exponent(), fmt.e);
  const Term* zero = mgr.make_bv_number(0, fmt.m);
  *at_max = mgr.make_bv_comp(x, max);
  *no_fraction = mgr.make_bv_comp(significand, zero);
}

const Term* FpBvEncoder::enc_is_nan(const Term* t, format fmt) {
  const Term* at_max = nullptr;
  const Term* no_fraction = nullptr;
  enc_test_fields(t, fmt, &at_max, &no_fraction);
  return dst_mgr->make_bv_and(at_max, dst_mgr->make_bv_not(no_fraction));
}

const Term* FpBvEncoder::enc_is_inf(const Term* t, format fmt) {
  const Term* at_max = nullptr;
  const Term* no_fraction = nullptr;
  enc_test_fields(t, fmt, &at_max, &no_fraction);
  return dst_mgr->make_bv_and(at_max, no_fraction);
}

const Term* FpBvEncoder::enc_is_zero(const Term* t, format fmt) {
  const std::size_t w = fmt.e + fmt.m;
  const Term* magnitude = dst_mgr->make_bv_extract(w - 1, 0, t);
  return dst_mgr->make_bv_comp(magnitude, dst_mgr->make_bv_number(0, w));
}

void FpBvEncoder::enc_unpack_operands(const Term* t, format fmt, const char* prefix, Operand* x,
                                      Operand* y) {
  const std::size_t w = fmt.e + fmt.m;
  Operand* const operands[] = {x, y};
  x->packed = encoded_arg(t, 1);
  y->packed = encoded_arg(t, 2);
  for (Operand* o : operands)
    o->exp = enc_get_exponent(o->packed, fmt, true);
  for (Operand* o : operands)
    o->sign = dst_mgr->make_bv_extract(w, w, o->packed);
  for (Operand* o : operands)
    o->mant = enc_get_mantissa(o->packed, fmt, true);
  for (Operand* o : operands)
    o->inf = enc_is_inf(o->packed, fmt);
  for (Operand* o : operands)
    o->nan = enc_is_nan(o->packed, fmt);
  for (Operand* o : operands)
    o->zero = enc_is_zero(o->packed, fmt);

  const auto track = [&](const char* part, const Term* Operand::*member) {
    for (std::size_t i = 0; i < std::size(operands); ++i)
      debug_track_part(prefix, part, i + 1, operands[i]->*member);
  };
  track("exp", &Operand::exp);
  track("sign", &Operand::sign);
  track("mant", &Operand::mant);
  track("inf", &Operand::inf);
  track("nan", &Operand::nan);
  track("zero", &Operand::zero);
}

const Term* FpBvEncoder::enc_make_ite(const Term* c, const Term* a, const Term* b) {
  TermManager& mgr = *dst_mgr;
  if (c->get_symbol()->get_output_type() == mgr.get_bool_type()) {
    const Term* if_not = mgr.make_or(mgr.make_not(c), a);
    return mgr.make_and(if_not, mgr.make_or(c, b));
  }
  const Term* if_not = mgr.make_bv_or(mgr.make_bv_not(c), a);
  return mgr.make_bv_and(if_not, mgr.make_bv_or(c, b));
}

/// The constant that stands for `ite` in this call, if there is one yet.
const Term* FpBvEncoder::find_ite_constant(const Term* ite) const {
  const TermMap::Node* node = ite_cache.find(ite);
  return node == nullptr ? nullptr : node->value.second;
}

const Term* FpBvEncoder::make_ite_constant(const Term* ite) {
  const Term* k = make_fresh_constant("fp.i", &ite_counter, ite->get_symbol()->get_output_type());
  ite_cache.insert({ite, k});
  return k;
}

const Term* FpBvEncoder::enc_make_term_ite(const Term* c, const Term* a, const Term* b) {
  TermManager& mgr = *dst_mgr;
  const Term* t = mgr.make_term_ite(c, a, b);
  if (!mgr.is_term_ite(t->get_symbol(), nullptr)) return t;
  if (const Term* known = find_ite_constant(t)) return known;
  const Term* k = make_ite_constant(t);
  const Term* not_c = mgr.make_not(c);
  add_side_constraint(mgr.make_or(not_c, mgr.make_equal(k, a)));
  add_side_constraint(mgr.make_or(c, mgr.make_equal(k, b)));
  return k;
}

const Term* FpBvEncoder::enc_make_term_cond(const std::vector<const Term*>& conds,
                                            const std::vector<const Term*>& values) {
  TermManager& mgr = *dst_mgr;
  // ite(c[0], v[0], ite(c[1], v[1], ... v[n-1]))
  const Term* chain = values.back();
  for (std::size_t i = values.size() - 1; i-- > 0;)
    chain = mgr.make_term_ite(conds[i], values[i], chain);
  if (!mgr.is_term_ite(chain->get_symbol(), nullptr)) return chain;
  if (const Term* known = find_ite_constant(chain)) return known;
  const Term* k = make_ite_constant(chain);
  // Each clause speaks of its own condition only: callers pass conditions that exclude each other.
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Term* not_cond = mgr.make_not(conds[i]);
    add_side_constraint(mgr.make_or(not_cond, mgr.make_equal(k, values[i])));
  }
  return k;
}

}  // namespace vorn::fp
