// Exact encoder: the object, its leaves and if-then-else, and the stages of single operations that
// it replaces.
#include <algorithm>
#include <bit>
#include <utility>

#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::fp {
namespace {

constexpr std::size_t kModeWidth = 3;
constexpr int kAway = static_cast<int>(IEEEFloat::rounding_mode::nearest_away);

}  // namespace

IeeeBvEncoder::IeeeBvEncoder(TermManager* src, TermManager* dst)
    : FpBvEncoder(src, dst, kModeWidth),
      rm_away_bv(seed_rounding_mode(kAway, kModeWidth, src->make_fprounding_away())) {
  using Encoder = IeeeBvEncoder;
  const std::pair<SymbolTag::tag, const Term* (Encoder::*)(const Term*)> rows[] = {
      {SymbolTag::fp_to_sbv, &Encoder::encode_to_sbv},
      {SymbolTag::fp_to_ubv, &Encoder::encode_to_ubv},
      {SymbolTag::fp_to_bits, &Encoder::encode_to_bits},
      {SymbolTag::fp_abs, &Encoder::encode_abs},
      {SymbolTag::fp_min, &Encoder::encode_min},
      {SymbolTag::fp_max, &Encoder::encode_max},
      {SymbolTag::fp_sqrt, &Encoder::encode_sqrt},
      {SymbolTag::fp_fma, &Encoder::encode_fma},
      {SymbolTag::fp_rem, &Encoder::encode_rem},
      {SymbolTag::fp_round_to_integral, &Encoder::encode_round_to_integral},
      {SymbolTag::fp_isnormal, &Encoder::encode_isnormal},
      {SymbolTag::fp_issubnormal, &Encoder::encode_issubnormal},
      {SymbolTag::fp_isnegative, &Encoder::encode_isnegative},
      {SymbolTag::fp_ispositive, &Encoder::encode_ispositive},
  };
  for (const auto& [kind, method] : rows)
    set_method(kind, static_cast<EncodeMethod>(method));
  set_free_constants(false);
}

void IeeeBvEncoder::append_held_terms(std::vector<const Term*>* terms) const {
  FpBvEncoder::append_held_terms(terms);
  terms->push_back(rm_away_bv);
  leaves.for_each([&](const auto& entry) {
    terms->insert(terms->end(), {entry.first, entry.second});
  });
  for (const auto& [operation, choice] : zero_choices)
    terms->push_back(choice);
}

FpBvEncoder::format IeeeBvEncoder::arg_format(const Term* t, std::size_t i) const {
  format fmt{};
  src_mgr->is_fp_type(t->get_arg(i)->get_type(), &fmt.e, &fmt.m);
  return fmt;
}

FpBvEncoder::Operand IeeeBvEncoder::enc_unpack(const Term* t, std::size_t i) {
  const format fmt = arg_format(t, i);
  const std::size_t w = fmt.e + fmt.m;
  const Term* x = encoded_arg(t, i);
  const Term* exp = enc_get_exponent(x, fmt, true);
  const Term* sign = dst_mgr->make_bv_extract(w, w, x);
  const Term* mant = enc_get_mantissa(x, fmt, true);
  const Term* inf = enc_is_inf(x, fmt);
  const Term* nan = enc_is_nan(x, fmt);
  return {x, exp, sign, mant, inf, nan, enc_is_zero(x, fmt)};
}

void IeeeBvEncoder::enc_track_operand(const char* prefix, std::size_t number, const Operand& x) {
  const std::pair<const char*, const Term*> parts[] = {
      {"arg", x.packed}, {"exp", x.exp}, {"sign", x.sign}, {"mant", x.mant},
      {"inf", x.inf},    {"nan", x.nan}, {"zero", x.zero}};
  for (const auto& [part, value] : parts)
    debug_track_part(prefix, part, number, value);
}

void IeeeBvEncoder::debug_track_comparison(const Term* t) {
  enc_track_operand("compare_", 1, enc_unpack(t, 0));
  enc_track_operand("compare_", 2, enc_unpack(t, 1));
  debug_track_term(dst_mgr->make_bv_ult(encoded_arg(t, 0), encoded_arg(t, 1)), "compare_ult");
}

const Term* IeeeBvEncoder::make_leaf(const Term* t, const char* prefix, std::int32_t* counter,
                                     const DataType* type) {
  if (const TermMap::Node* known = leaves.find(t)) return known->value.second;
  const Term* k = make_fresh_constant(prefix, counter, type);
  leaves.insert({t, k});
  return k;
}

const Term* IeeeBvEncoder::get_choice(const Term* t) const {
  switch (t->get_tag()) {
    case SymbolTag::fp_min:
    case SymbolTag::fp_max: {
      const auto known = zero_choices.find(t->get_symbol());
      return known == zero_choices.end() ? nullptr : known->second;
    }
    case SymbolTag::fp_to_sbv:
    case SymbolTag::fp_to_ubv: {
      const TermMap::Node* known = leaves.find(t);
      return known == nullptr ? nullptr : known->value.second;
    }
    default:
      return nullptr;
  }
}

const Term* IeeeBvEncoder::encode_rounding(const Term* t) {
  if (src_mgr->is_fprounding_away(t->get_symbol())) return rm_away_bv;
  const Term* code = FpBvEncoder::encode_rounding(t);
  if (dst_mgr->get_number(code->get_symbol()) == nullptr) {
    add_side_constraint(dst_mgr->make_bv_ule(code, rm_away_bv));
  }
  return code;
}

const Term* IeeeBvEncoder::enc_make_term_ite(const Term* c, const Term* a, const Term* b) {
  return dst_mgr->make_term_ite(c, a, b);
}

void IeeeBvEncoder::enc_normalization_shift_log(format /*fmt*/, const Term** exp,
                                                const Term** mant) {
  TermManager& mgr = *dst_mgr;
  debug_track_term(*exp, "norm_shift_exp");
  debug_track_term(*mant, "norm_shift_mant");
  const Term* lz = enc_leading_zeros(*mant);
  debug_track_term(lz, "enc_norm_log_shift");
  const std::size_t S = width_of(lz);
  *mant = mgr.make_bv_lshl(*mant, mgr.make_bv_zero_extend(width_of(*mant) - S, lz));
  *exp = mgr.make_bv_sub(*exp, mgr.make_bv_zero_extend(width_of(*exp) - S, lz));
}

/// Exponents of normalised operands go down to 1 - bias - m, and differences are twice as far from
/// zero.
std::size_t IeeeBvEncoder::enc_div_extension(format fmt) const {
  const std::size_t needed =
      std::max<std::size_t>(fmt.e, static_cast<std::size_t>(std::bit_width(fmt.m + 1))) + 3;
  return needed - fmt.e;
}

const Term* IeeeBvEncoder::enc_cast_finish(const Term* rm, format from, format to,
                                           const Unrounded& value) {
  TermManager& mgr = *dst_mgr;
  if (to.e != from.e || to.m < from.m) return enc_round(rm, to, value);
  // One exponent range: every value keeps its field, and its fraction gets zeros below.
  const Term* biased = mgr.make_bv_add(value.exp, mgr.make_bv_number(to.bias(), to.e));
  const Term* hidden = mgr.make_bv_extract(from.m, from.m, value.mant);
  const Term* field = mgr.make_bv_and(enc_mask(hidden, to.e), biased);
  const Term* fraction = mgr.make_bv_extract(from.m - 1, 0, value.mant);
  if (to.m > from.m) fraction = mgr.make_bv_concat(fraction, bv(0, to.m - from.m));
  debug_track_term(field, "cast_field");
  debug_track_term(fraction, "cast_fraction");
  const Term* never = bv(0, 1);
  return enc_assemble(to, value, never, never, mgr.make_bv_concat(field, fraction));
}

}  // namespace vorn::fp
