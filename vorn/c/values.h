// Literals and their values, in C. What a model gives is a literal too, so these functions read
// models as well.
#ifndef VORN_C_VALUES_H
#define VORN_C_VALUES_H

#include "vorn/c/sorts.h"
#include "vorn/c/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Rounding modes of IEEE 754.
typedef enum vorn_rounding_mode VORN_INT {
  VORN_RNE = 0,  // to nearest, ties to even
  VORN_RTZ = 1,  // toward zero
  VORN_RTP = 2,  // toward positive
  VORN_RTN = 3,  // toward negative
  VORN_RNA = 4,  // to nearest, ties away from zero
} vorn_rounding_mode;

/// Stores the literal of a truth value.
VORN_EXPORT vorn_status vorn_make_bool(vorn_manager* manager, bool value, vorn_term** result);
/// Stores the literal of a rounding mode.
VORN_EXPORT vorn_status vorn_make_rounding_mode(vorn_manager* manager, vorn_rounding_mode mode,
                                                vorn_term** result);
/// Stores the element of an uninterpreted sort that has this number.
VORN_EXPORT vorn_status vorn_make_element(vorn_manager* manager, const vorn_sort* sort,
                                          uint64_t number, vorn_term** result);

// Bit-vectors. A number that does not fit the width, as an unsigned number or in two's complement,
// is VORN_INVALID_ARGUMENT.

/// Store the literal of `width` bits that an integer has; `decimal` may have a sign and any length.
VORN_EXPORT vorn_status vorn_make_bv_uint64(vorn_manager* manager, size_t width, uint64_t value,
                                            vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_int64(vorn_manager* manager, size_t width, int64_t value,
                                           vorn_term** result);
VORN_EXPORT vorn_status vorn_make_bv_decimal(vorn_manager* manager, size_t width,
                                             const char* decimal, vorn_term** result);
/// Stores the literal of the bits that a text of `0` and `1` spells, the top bit first.
VORN_EXPORT vorn_status vorn_make_bv_binary(vorn_manager* manager, const char* bits,
                                            vorn_term** result);

// Floats of a sort. Numbers are rounded once, in the mode; zero keeps its sign where it has one.

/// Stores the literal of a number in a text: a decimal ("-1.25", "6.02e23"), a hexadecimal as C has
/// it ("0x1.8p-3"), a fraction ("1/3"), "NaN", or "+oo", "-oo", "inf", "-inf". Exponents of ten go
/// to 100,000 either way, those of two are not bounded.
VORN_EXPORT vorn_status vorn_make_fp_string(vorn_manager* manager, const vorn_sort* sort,
                                            vorn_rounding_mode mode, const char* text,
                                            vorn_term** result);
/// Store the literal of a number of the machine's, infinities and NaN included.
VORN_EXPORT vorn_status vorn_make_fp_double(vorn_manager* manager, const vorn_sort* sort,
                                            vorn_rounding_mode mode, double value,
                                            vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_float(vorn_manager* manager, const vorn_sort* sort,
                                           vorn_rounding_mode mode, float value,
                                           vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_int64(vorn_manager* manager, const vorn_sort* sort,
                                           vorn_rounding_mode mode, int64_t value,
                                           vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_uint64(vorn_manager* manager, const vorn_sort* sort,
                                            vorn_rounding_mode mode, uint64_t value,
                                            vorn_term** result);
/// Store the literal with these eb + sb bits: sign, biased exponent, trailing significand; a text
/// of `0` and `1` with the sign first, or a number below 2^(eb + sb). A NaN of any pattern is the
/// one NaN of its sort.
VORN_EXPORT vorn_status vorn_make_fp_binary(vorn_manager* manager, const vorn_sort* sort,
                                            const char* bits, vorn_term** result);
VORN_EXPORT vorn_status vorn_make_fp_bits(vorn_manager* manager, const vorn_sort* sort,
                                          uint64_t bits, vorn_term** result);

// Values of literals. A term that is no literal, or of another sort, is VORN_INVALID_ARGUMENT.

/// Stores a truth value.
VORN_EXPORT vorn_status vorn_value_get_bool(vorn_manager* manager, vorn_term* term, bool* result);
/// Stores a rounding mode.
VORN_EXPORT vorn_status vorn_value_get_rounding_mode(vorn_manager* manager, vorn_term* term,
                                                     vorn_rounding_mode* result);
/// Stores the bits of a literal of any sort but the uninterpreted ones as a text of `0` and `1` of
/// the caller's: as many as the sort has, 1 of a truth value, 3 of a rounding mode.
VORN_EXPORT vorn_status vorn_value_get_binary(vorn_manager* manager, vorn_term* term,
                                              char** result);
/// Stores the same as a number, or the number of an element. VORN_LIMIT_REACHED where it takes more
/// than 64 bits.
VORN_EXPORT vorn_status vorn_value_get_uint64(vorn_manager* manager, vorn_term* term,
                                              uint64_t* result);
/// Stores the number of a bit-vector, read as unsigned or in two's complement, in decimal: a text
/// of the caller's.
VORN_EXPORT vorn_status vorn_value_get_integer(vorn_manager* manager, vorn_term* term,
                                               bool is_signed, char** result);
/// Store a float as a text of the caller's: the shortest decimal that is read back as this float
/// ("NaN", "+oo", "-oo"; VORN_LIMIT_REACHED where the exact value takes more than 2^16 bits), and
/// its exact value in hexadecimal ("nan", "inf", "-inf").
VORN_EXPORT vorn_status vorn_value_get_decimal(vorn_manager* manager, vorn_term* term,
                                               char** result);
VORN_EXPORT vorn_status vorn_value_get_hexadecimal(vorn_manager* manager, vorn_term* term,
                                                   char** result);
/// Stores a float as the double nearest to it, ties to even: exact for formats that are not wider.
VORN_EXPORT vorn_status vorn_value_get_double(vorn_manager* manager, vorn_term* term,
                                              double* result);

#ifdef __cplusplus
}
#endif

#endif
