// IeeeBvEncoder: the exact encoder.
//
// It is FpBvEncoder with the stages replaced that depart from IEEE 754: rounding keeps a sticky bit
// through every shift and carries from the significand into the exponent field, an exact zero sum
// has the sign that the standard gives it, and widths are chosen so that no exponent wraps,
// whatever the format. Unpacking, the adder, the multiplier, the divider, the special cases,
// comparison and classification are those of the base. If-then-else terms are built as such, so an
// encoding is a function of its leaves, and side constraints speak of leaves only.
#ifndef VORN_FP_IEEE_BV_ENCODER_H
#define VORN_FP_IEEE_BV_ENCODER_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/utils/export.h"

namespace vorn::fp {

/// Exact by IEEE 754-2019 and the SMT-LIB FloatingPoint theory, for every format with e >= 2 and
/// m >= 1 and all five rounding modes. A rounding mode is a code of 3 bits: those of the base, and
/// 4 for roundNearestTiesToAway; a variable is constrained to these five.
class VORN_EXPORT IeeeBvEncoder : public FpBvEncoder {
 public:
  IeeeBvEncoder(TermManager* src, TermManager* dst);

 protected:
  const Term* encode_rounding(const Term* t) override;
  const Term* enc_make_term_ite(const Term* c, const Term* a, const Term* b) override;
  const Term* enc_make_term_cond(const std::vector<const Term*>& conds,
                                 const std::vector<const Term*>& values) override;

  const Term* enc_do_rounding(const Term* rm, format fmt, const Term* is_nan, const Term* is_inf,
                              const Term* sign, const Term* exp, const Term* mant,
                              std::uint64_t max_shift) override;
  const Term* enc_round_sum(const Term* rm, format fmt, const Term* nan, const Term* inf,
                            const Term* sign, const Term* exp, const Term* mant) override;
  void enc_normalization_shift_log(format fmt, const Term** exp, const Term** mant) override;
  void enc_select_rounding(const Term* rm, const Term* sign, const Term* round, const Term* least,
                           const Term* sticky, const Term** increment,
                           const Term** correction) override;
  const Term* enc_add_align(format fmt, const Term* small, const Term* dist0,
                            const Term** sticky) override;
  const Term* enc_add_zero_result(const Term* rm, format fmt, const Term* x, const Term* y,
                                  const Term* rounded) override;
  std::size_t enc_div_extension(format fmt) const override;
  const Term* enc_cast_finish(const Term* rm, format from, format to, const Term* nan,
                              const Term* inf, const Term* sign, const Term* exp,
                              const Term* mant) override;

 private:
  /// A value on its way through rounding.
  struct Unrounded {
    const Term* nan;  // flags and sign of 1 bit
    const Term* inf;
    const Term* sign;
    const Term* exp;         // signed, any width
    const Term* mant;        // any width, its top bit of weight 2^exp
    bool may_underflow;      // whether exp may lie below that of the smallest normal number
    std::size_t lead_limit;  // bound on the leading zeros of mant; 0: none
  };
  /// A significand whose leading one is at the top, or as near to it as the exponent range allows,
  /// and the exponent field that belongs to it if its top bit is set (signed, E bits).
  struct Scaled {
    const Term* mant;
    const Term* field;
  };
  const Term* enc_round_exact(const Term* rm, format fmt, const Unrounded& value);
  Scaled enc_scale(format fmt, const Unrounded& value);
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

  const Term* rm_away_bv;
};

}  // namespace vorn::fp

#endif
