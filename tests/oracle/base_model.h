// A concrete model of the base encoder's circuits.
//
// Each function computes, on plain integers of strict widths, the pattern that the circuit of an
// operation yields for given operands, its departures from IEEE 754 included. It is written from
// the circuits' definition, one step a line and independent of the encoder's code, so that the two
// check each other. Modes are the four that the circuits know; roundTiesToAway is refused.
//
// `symbolic` says how the circuit came to its value: false where the operands are numerals and the
// encoding folds, so that every significand is a constant and is normalised by the constant
// strategy; true where the operands are variables that a solver has given values, so that
// normalisation takes the linear strategy (rounding a quotient) or the logarithmic one (all else).
#ifndef VORN_TESTS_ORACLE_BASE_MODEL_H
#define VORN_TESTS_ORACLE_BASE_MODEL_H

#include "tests/oracle/format.h"

namespace vorn::oracle::base {

// Rounded operations ----------------------------------------------------------------------------
// Operations on a format that is not supported throw WidthError (tests/oracle/strict_bits.h).

Bits add(RoundingMode rm, Format f, const Bits& x, const Bits& y, bool symbolic = false);
Bits sub(RoundingMode rm, Format f, const Bits& x, const Bits& y, bool symbolic = false);
Bits mul(RoundingMode rm, Format f, const Bits& x, const Bits& y, bool symbolic = false);
Bits div(RoundingMode rm, Format f, const Bits& x, const Bits& y, bool symbolic = false);
Bits cast(RoundingMode rm, Format from, Format to, const Bits& x, bool symbolic = false);
/// `v` is a pattern of `w` bits.
Bits from_sbv(RoundingMode rm, unsigned w, Format f, const Bits& v, bool symbolic = false);
Bits from_ubv(RoundingMode rm, unsigned w, Format f, const Bits& v, bool symbolic = false);

/// Whether a symbolic sum (difference) of these operands has no model: its two side constraints
/// bind it to the rounded value and, the magnitude being zero, to the zero chosen by the rounding
/// mode, and here the two have different signs. Folded operands take the chosen zero.
bool add_zero_conflict(RoundingMode rm, Format f, const Bits& x, const Bits& y);
bool sub_zero_conflict(RoundingMode rm, Format f, const Bits& x, const Bits& y);

// Unrounded operations --------------------------------------------------------------------------

Bits neg(Format f, const Bits& x);
bool is_nan(Format f, const Bits& x);
bool is_inf(Format f, const Bits& x);
bool is_zero(Format f, const Bits& x);
bool eq(Format f, const Bits& x, const Bits& y);
bool lt(Format f, const Bits& x, const Bits& y);
bool le(Format f, const Bits& x, const Bits& y);
/// The equality of terms: of bit patterns.
bool same(Format f, const Bits& x, const Bits& y);

// Well-formed widths ----------------------------------------------------------------------------

/// Negation, classification and comparison: every format with e >= 2 and m >= 1.
bool supports_unrounded(Format f);
/// Addition, subtraction and multiplication.
bool supports_arithmetic(Format f);
bool supports_division(Format f, bool symbolic);
bool supports_cast(Format from, Format to);
bool supports_integer(unsigned w, Format f);

}  // namespace vorn::oracle::base

#endif
