// Literals of bit-vectors and floats.
//
// SMT-LIB writes a float in many ways; here they all become one term. A literal whose bits are
// known is `make_fp_number` of them, whatever the notation, and all NaNs of a format are
// `make_fp_nan`, since the theory has only one. All functions throw std::invalid_argument with a
// sentence when widths or sorts do not fit.
#ifndef VORN_SMT2_LITERALS_H
#define VORN_SMT2_LITERALS_H

#include <cstdint>
#include <string_view>

#include "vorn/terms/ieee_float.h"
#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn::smt2 {

/// The format of (_ FloatingPoint eb sb); both widths are at least 2 (SMT-LIB FloatingPoint).
IEEEFloat::format make_format(std::uint32_t eb, std::uint32_t sb);

/// #b... and #x...: `digits` of 1 or 4 bits each.
const Term* make_bv_digits(TermManager& mgr, std::string_view digits, std::size_t bits_per_digit);
/// (_ bvN width); `name` is "bvN". The value must fit the width.
const Term* make_bv_decimal(TermManager& mgr, std::string_view name, std::size_t width);
/// Whether a name is "bv" and digits.
bool is_bv_decimal(std::string_view name);

/// A bit-vector read as a float; a literal when its bits are known.
const Term* make_float_from_bits(TermManager& mgr, IEEEFloat::format f, const Term* bits);
/// (fp sign exponent fraction)
const Term* make_float_from_fields(TermManager& mgr, const Term* sign, const Term* exponent,
                                   const Term* fraction);
/// The number real * 2^exponent rounded once to the format, without building it; for a symbolic
/// rounding mode a choice between the literals of the five modes. The exponent is an integer of any
/// size.
const Term* make_float_from_real(TermManager& mgr, IEEEFloat::format f, const Term* rm,
                                 const QNumber& real, const QNumber& exponent = 0);

}  // namespace vorn::smt2

#endif
