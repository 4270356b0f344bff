// The operations by name, in C. Each stores one operation on its arguments; vorn_make takes those
// that are missing here, and more than two arguments where there may be more. The name behind
// vorn_make_ is that of the kind.
//
// Operands have to be of the sorts that SMT-LIB asks for; others are VORN_INVALID_ARGUMENT, with a
// message that names the operation and the sorts. A rounding mode `rm` comes first. Formats are eb
// and sb, the hidden bit counted in sb.
#ifndef VORN_C_OPERATIONS_H
#define VORN_C_OPERATIONS_H

#include "vorn/c/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Connectives of truth values.
VORN_EXPORT vorn_status vorn_make_not(vorn_manager* manager, vorn_term* a, vorn_term** result);
VORN_EXPORT vorn_status vorn_make_and(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                      vorn_term** result);
VORN_EXPORT vorn_status vorn_make_or(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                     vorn_term** result);
VORN_EXPORT vorn_status vorn_make_xor(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                      vorn_term** result);
VORN_EXPORT vorn_status vorn_make_implies(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                          vorn_term** result);

/// Equality and its opposite, of two terms of any one sort: NaN equals NaN, and zeros of different
/// sign do not.
VORN_EXPORT vorn_status vorn_make_equal(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                        vorn_term** result);
VORN_EXPORT vorn_status vorn_make_distinct(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                           vorn_term** result);

/// If-then-else: `c` is a truth value, `a` and `b` are of one sort.
VORN_EXPORT vorn_status vorn_make_ite(vorn_manager* manager, vorn_term* c, vorn_term* a,
                                      vorn_term* b, vorn_term** result);

/// Bits `msb` down to `lsb`.
VORN_EXPORT vorn_status vorn_make_bv_extract(vorn_manager* manager, size_t msb, size_t lsb,
                                             vorn_term* a, vorn_term** result);

/// `a` above `b`.
VORN_EXPORT vorn_status vorn_make_bv_concat(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                            vorn_term** result);

/// `n` more bits on top: zeros, or copies of the top bit.
VORN_EXPORT vorn_status vorn_make_bv_zero_extend(vorn_manager* manager, size_t n, vorn_term* a,
                                                 vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_sign_extend(vorn_manager* manager, size_t n, vorn_term* a,
                                                 vorn_term** result);

/// Bitwise operations, the latter on operands of one width.
VORN_EXPORT vorn_status vorn_make_bv_not(vorn_manager* manager, vorn_term* a, vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_and(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_or(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                        vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_xor(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);

/// Arithmetic modulo 2^width.
VORN_EXPORT vorn_status vorn_make_bv_neg(vorn_manager* manager, vorn_term* a, vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_add(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_sub(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_mul(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);

/// Unsigned quotient, all ones by zero, and remainder, `a` by zero.
VORN_EXPORT vorn_status vorn_make_bv_udiv(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                          vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_urem(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                          vorn_term** result);

/// Signed quotient toward zero, remainder with the sign of `a`, modulus with the sign of `b`.
VORN_EXPORT vorn_status vorn_make_bv_sdiv(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                          vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_srem(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                          vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_smod(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                          vorn_term** result);

/// `a` shifted by `b` positions: left, right with zeros, right with copies of the top bit.
VORN_EXPORT vorn_status vorn_make_bv_shl(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_lshr(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                          vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_ashr(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                          vorn_term** result);

/// Comparisons, unsigned and signed: truth values.
VORN_EXPORT vorn_status vorn_make_bv_ult(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_ule(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_ugt(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_uge(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_slt(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_sle(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_sgt(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_sge(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);

/// Sum, difference, product and quotient, rounded.
VORN_EXPORT vorn_status vorn_make_fp_add(vorn_manager* manager, vorn_term* rm, vorn_term* a,
                                         vorn_term* b, vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_sub(vorn_manager* manager, vorn_term* rm, vorn_term* a,
                                         vorn_term* b, vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_mul(vorn_manager* manager, vorn_term* rm, vorn_term* a,
                                         vorn_term* b, vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_div(vorn_manager* manager, vorn_term* rm, vorn_term* a,
                                         vorn_term* b, vorn_term** result);

/// `a` * `b` + `c`, rounded once.
VORN_EXPORT vorn_status vorn_make_fp_fma(vorn_manager* manager, vorn_term* rm, vorn_term* a,
                                         vorn_term* b, vorn_term* c, vorn_term** result);

/// Square root, and the integer next in the rounding mode.
VORN_EXPORT vorn_status vorn_make_fp_sqrt(vorn_manager* manager, vorn_term* rm, vorn_term* a,
                                          vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_round_to_integral(vorn_manager* manager, vorn_term* rm,
                                                       vorn_term* a, vorn_term** result);

/// `a` - `b` * n for the integer n nearest to `a` / `b`; exact.
VORN_EXPORT vorn_status vorn_make_fp_rem(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);

/// The sign flipped, and cleared.
VORN_EXPORT vorn_status vorn_make_fp_neg(vorn_manager* manager, vorn_term* a, vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_abs(vorn_manager* manager, vorn_term* a, vorn_term** result);

/// Of zeros of opposite sign either is the result.
VORN_EXPORT vorn_status vorn_make_fp_min(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_max(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                         vorn_term** result);

/// Comparisons of IEEE 754: zeros are equal, NaN is unordered.
VORN_EXPORT vorn_status vorn_make_fp_equal(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                           vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_lt(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                        vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_le(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                        vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_gt(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                        vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_ge(vorn_manager* manager, vorn_term* a, vorn_term* b,
                                        vorn_term** result);

/// Classes and signs.
VORN_EXPORT vorn_status vorn_make_fp_isnan(vorn_manager* manager, vorn_term* a, vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_isinf(vorn_manager* manager, vorn_term* a, vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_iszero(vorn_manager* manager, vorn_term* a,
                                            vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_isnormal(vorn_manager* manager, vorn_term* a,
                                              vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_issubnormal(vorn_manager* manager, vorn_term* a,
                                                 vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_isnegative(vorn_manager* manager, vorn_term* a,
                                                vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_ispositive(vorn_manager* manager, vorn_term* a,
                                                vorn_term** result);

/// A float in another format; a signed integer, and an unsigned one, as a float.
VORN_EXPORT vorn_status vorn_make_fp_cast(vorn_manager* manager, size_t eb, size_t sb,
                                          vorn_term* rm, vorn_term* a, vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_from_sbv(vorn_manager* manager, size_t eb, size_t sb,
                                              vorn_term* rm, vorn_term* a, vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_from_ubv(vorn_manager* manager, size_t eb, size_t sb,
                                              vorn_term* rm, vorn_term* a, vorn_term** result);

/// A float as an integer of `width` bits, signed or not. What one without an integer of that width
/// gives is left open.
VORN_EXPORT vorn_status vorn_make_fp_to_sbv(vorn_manager* manager, size_t width, vorn_term* rm,
                                            vorn_term* a, vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_to_ubv(vorn_manager* manager, size_t width, vorn_term* rm,
                                            vorn_term* a, vorn_term** result);

/// eb + sb bits read as a float.
VORN_EXPORT vorn_status vorn_make_fp_from_bits(vorn_manager* manager, size_t eb, size_t sb,
                                               vorn_term* a, vorn_term** result);

/// The eb + sb bits of a float, of which NaN has one choice.
VORN_EXPORT vorn_status vorn_make_fp_to_bits(vorn_manager* manager, vorn_term* a,
                                             vorn_term** result);

/// The element of the array `a` at the index `i`.
VORN_EXPORT vorn_status vorn_make_select(vorn_manager* manager, vorn_term* a, vorn_term* i,
                                         vorn_term** result);

/// The array `a` with the element `v` at the index `i`.
VORN_EXPORT vorn_status vorn_make_store(vorn_manager* manager, vorn_term* a, vorn_term* i,
                                        vorn_term* v, vorn_term** result);

#ifdef __cplusplus
}
#endif

#endif
