// IeeeBvEncoder: the exact encoder.
//
// It is FpBvEncoder with the stages replaced that depart from IEEE 754: rounding keeps a sticky bit
// through every shift and carries from the significand into the exponent field, an exact zero sum
// has the sign that the standard gives it, and widths are chosen so that no exponent wraps,
// whatever the format. Unpacking, the adder, the multiplier, the divider, the special cases,
// comparison and classification are those of the base. If-then-else terms are built as such, so an
// encoding is a function of its leaves, and side constraints speak of leaves only. A leaf that was
// retracted gets the same constant again when it comes back, so that what is asserted again is the
// same formula as before.
//
// The operations of the FloatingPoint theory that the base does not have are circuits of this
// encoder.
#ifndef VORN_FP_IEEE_BV_ENCODER_H
#define VORN_FP_IEEE_BV_ENCODER_H

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/utils/export.h"

namespace vorn::fp {

/// Exact by IEEE 754-2019 and the SMT-LIB FloatingPoint theory, for every format with e >= 2 and
/// m >= 1 and all five rounding modes. A rounding mode is a code of 3 bits: those of the base, and
/// 4 for roundNearestTiesToAway; a variable is constrained to these five.
class VORN_EXPORT IeeeBvEncoder : public FpBvEncoder {
 public:
  /// `src` owns the terms to read, `dst` those to build; both are borrowed and may be the same.
  /// There are no free constants unless set_free_constants asks for them.
  IeeeBvEncoder(TermManager* src, TermManager* dst);

  /// As in FpBvEncoder, which has no operation that the theory leaves open.
  const Term* get_choice(const Term* t) const override;

 protected:
  // Stages of the base that are replaced, and why -------------------------------------------------

  /// There is a fifth mode, and three of the eight codes of 3 bits stand for none.
  const Term* encode_rounding(const Term* t) override;
  /// There are constants that retractions leave.
  void append_held_terms(std::vector<const Term*>* terms) const override;
  /// What is asserted again after a retraction has to be the same formula.
  const Term* make_leaf(const Term* t, const char* prefix, std::int32_t* counter,
                        const DataType* type) override;
  /// An encoding is to be a function of its leaves, and side constraints to speak of leaves only.
  const Term* enc_make_term_ite(const Term* c, const Term* a, const Term* b) override;
  /// The base's bisection has too few bits for a wide exponent beside a short significand.
  void enc_normalization_shift_log(format fmt, const Term** exp, const Term** mant) override;
  /// There is a fifth mode.
  RoundingChoice enc_select_rounding(const Term* rm, const Term* sign, const Term* round,
                                     const Term* least, const Term* sticky) override;
  /// The base loses the bits that a subnormal result shifts out, and its exponent can wrap.
  const Term* enc_round(const Term* rm, format fmt, const Unrounded& value) override;
  /// The base orders by exponents, so that a difference may be negative, and has an adder for each
  /// of sum, difference and negation.
  Addends enc_add_unpack(format fmt, const Term* x, const Term* y) override;
  const Term* enc_add_exponent(format fmt, const Addends& in) override;
  const Term* enc_add_significands(format fmt, const Addends& in, const Term** res_sign) override;
  /// One shifter that collects the sticky bit is smaller than the base's two, and serves m = 1.
  const Term* enc_add_align(format fmt, const Term* small, const Term* dist0,
                            const Term** sticky) override;
  /// The base takes the sign of a zero sum from the mode alone, even that of -0 + -0.
  const Term* enc_add_zero_result(const Term* rm, format fmt, const Term* x, const Term* y,
                                  const Term* rounded) override;
  /// The base's two bits are too few for the exponents of normalised subnormals where m is large.
  std::size_t enc_div_extension(format fmt) const override;
  /// The base packs a subnormal without normalising it where the exponent grows.
  const Term* enc_cast_finish(const Term* rm, format from, format to,
                              const Unrounded& value) override;
  /// The base has no labels for comparisons.
  void debug_track_comparison(const Term* t) override;

 private:
  // Operations beyond the base, one for each further row of the dispatch table --------------------

  // Classes and choices (ieee/selection.cpp)
  const Term* encode_isnormal(const Term* t);
  const Term* encode_issubnormal(const Term* t);
  const Term* encode_isnegative(const Term* t);
  const Term* encode_ispositive(const Term* t);
  const Term* encode_abs(const Term* t);
  const Term* encode_to_bits(const Term* t);
  const Term* encode_min(const Term* t);
  const Term* encode_max(const Term* t);
  const Term* enc_select(const Term* t, bool larger);

  // Arithmetic (ieee/fma.cpp, ieee/sqrt.cpp, ieee/remainder.cpp)
  const Term* encode_fma(const Term* t);
  const Term* encode_sqrt(const Term* t);
  const Term* encode_rem(const Term* t);

  // Integers (ieee/integers.cpp)
  const Term* encode_round_to_integral(const Term* t);
  const Term* encode_to_sbv(const Term* t);
  const Term* encode_to_ubv(const Term* t);
  const Term* enc_to_integer(const Term* t, bool is_signed);

  /// An operand as Operand has it, taken apart.
  Operand enc_unpack(const Term* t, std::size_t i);
  /// In debug mode, tracks an operand and its parts: "<prefix>arg<number>", "<prefix>exp<number>",
  /// and so on.
  void enc_track_operand(const char* prefix, std::size_t number, const Operand& x);
  /// The format of argument i of t.
  format arg_format(const Term* t, std::size_t i) const;

  /// A finite magnitude rounded to an integer below 2^w.
  struct Integral {
    const Term* value;      // w + 1 bits
    const Term* too_large;  // 1 bit: the magnitude is 2^w or more, and `value` means nothing
  };
  Integral enc_integral(const Term* rm, format fmt, const Operand& x, std::size_t w);

  /// An exponent (signed, any width above e) and its significand (m + 1 bits), normalised unless
  /// zero.
  struct Normalised {
    const Term* exp;
    const Term* mant;
  };
  Normalised enc_normalise(format fmt, const Operand& x);

  struct Sum {
    const Term* sign;  // 1 bit
    const Term* exp;   // signed, the weight of the top bit of `mant`
    const Term* mant;  // 2m + 6 bits
  };
  /// The exact sum of the product and z, cut to a sticky bit.
  Sum enc_fma_sum(const Term* rm, format fmt, const Normalised& x, const Normalised& y,
                  const Operand& z, const Term* product_sign, const Term* product_zero);

  /// The integer square root of `radicand` (2n bits): n bits, and whether there is a remainder.
  const Term* enc_square_root(const Term* radicand, const Term** inexact);

  /// x * 2^d modulo `modulus` (m + 2 bits each), x of m + 1 bits, d unsigned, e bits; anything
  /// where d is beyond 2^e - 3, which no two exponents are apart.
  const Term* enc_scale_modulo(const Term* x, const Term* d, const Term* modulus);
  /// a modulo b, for a at least as wide as b; b's width.
  const Term* enc_reduce(const Term* a, const Term* b);

  /// A significand whose leading one is at the top, or as near to it as the exponent range allows,
  /// and the exponent field that belongs to it if its top bit is set (signed, E bits).
  struct Scaled {
    const Term* mant;
    const Term* field;
  };
  Scaled enc_scale(format fmt, const Unrounded& value);
  /// The same where the exponent is a field.
  Scaled enc_scale_field(const Term* mant, const Term* lz, const Unrounded& value);
  const Term* enc_assemble(format fmt, const Unrounded& value, const Term* overflow,
                           const Term* saturates, const Term* body);

  /// Number of leading zeros of t, in as many bits as count up to one less than the next power of
  /// two; where t is zero, any number not below its width less one.
  const Term* enc_leading_zeros(const Term* t);
  struct ZeroCount {
    const Term* all;    // 1 bit: no bit is set
    const Term* count;  // leading zeros, if any bit is set; all ones otherwise
  };
  ZeroCount enc_count_zeros(const Term* t);
  /// t shifted right by `amount` (unsigned, any width), the lowest bit standing for itself and for
  /// all that was shifted out.
  const Term* enc_shift_right_sticky(const Term* t, const Term* amount);
  /// One bit: whether any bit of t is set.
  const Term* enc_any(const Term* t);
  /// n copies of a 1-bit term.
  const Term* enc_mask(const Term* bit, std::size_t n);

  const Term* rm_away_bv;                                       // code 4
  TermMap leaves;                                               // constants of leaves and choices
  std::unordered_map<const Symbol*, const Term*> zero_choices;  // of fp.min and fp.max
};

}  // namespace vorn::fp

#endif
