// Pieces of SMT-LIB text that are not terms; terms and sorts print themselves.
#ifndef VORN_TERMS_PRINTER_H
#define VORN_TERMS_PRINTER_H

#include <string>
#include <string_view>

#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"

namespace vorn {

/// A string literal: the text between quotes, those within doubled.
std::string quoted_string(std::string_view text);
/// The symbol, between bars where SMT-LIB asks for them.
std::string quote_symbol(const std::string& name);

/// The symbol, without bars, of an element of an uninterpreted sort.
std::string element_name(const QNumber& number, const DataType* type);
/// The literal of a bit-vector or floating-point sort with these bits.
std::string literal_text(const QNumber& value, const DataType* type);
/// What a term with this head begins with: an operation's name with its indices, or all of a term
/// without arguments.
std::string head_text(const Symbol* symbol);

}  // namespace vorn

#endif
