// Which names SMT-LIB takes as symbols without bars (SMT-LIB 2.6, section 3.1).
#ifndef VORN_TERMS_SIMPLE_SYMBOL_H
#define VORN_TERMS_SIMPLE_SYMBOL_H

#include <string_view>

namespace vorn {

/// What simple symbols are made of, but for the digits, which cannot come first.
inline constexpr std::string_view kSymbolLetters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz~!@$%^&*_-+=<>.?/";

/// Whether the language of terms keeps the word for itself: `let`, `_`, `par` and others.
bool is_reserved_word(std::string_view word);
/// Whether `name` stands for itself without bars. Besides reserved words the names of commands do
/// not, nor do the truth values, which are functions of the theory.
bool is_simple_symbol(std::string_view name);

}  // namespace vorn

#endif
