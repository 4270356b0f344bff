// Tokens of an SMT-LIB script (SMT-LIB 2.6, section 3.1).
//
// The text is one block of memory that outlives the lexer, and tokens are views into it: nothing is
// copied until a name is declared. A word is first taken whole, up to the next blank, parenthesis
// or comment, and then classified, so that `12abc` is one wrong word and not a number and a symbol.
#ifndef VORN_SMT2_LEXER_H
#define VORN_SMT2_LEXER_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "vorn/smt2/dialect.h"
#include "vorn/smt2/error.h"
#include "vorn/utils/export.h"

namespace vorn::smt2 {

struct Token {
  enum class Kind : std::uint8_t {
    end,
    open,
    close,
    symbol,
    quoted_symbol,
    keyword,
    numeral,
    decimal,
    hexadecimal,
    binary,
    string,
  };

  Kind kind = Kind::end;
  Position position;
  std::string_view raw;   // as it stands in the text
  std::string_view text;  // without bars, quotes, `#b` and `#x`; quotes in strings stay doubled

  bool is(Kind k) const { return kind == k; }
  /// A symbol, with or without bars: |x| and x are the same one.
  bool is_symbol() const { return kind == Kind::symbol || kind == Kind::quoted_symbol; }
  /// The word itself; a quoted symbol is never a reserved word.
  bool is_word(std::string_view word) const { return kind == Kind::symbol && text == word; }
};

/// What some editors write in front of a text in UTF-8.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Splits a text into tokens. A byte-order mark at the beginning of a file, numerals with leading
/// zeros and backslashes between bars are departures from the standard.
class VORN_EXPORT Lexer {
 public:
  /// `start` is the place of the text in the file; the dialect is borrowed and may be null.
  Lexer(std::string_view source, std::string file_name, Position start = {},
        Dialect* spellings = nullptr)
      : text(source), file(std::move(file_name)), dialect(spellings), position(start) {}

  /// The next token; at the end of the text one of kind `end`, again and again.
  /// Throws ScriptError on anything that is no token.
  Token next();

  const std::string& get_file() const { return file; }

 private:
  bool at_end() const { return offset == text.size(); }
  void advance() {
    const char c = text[offset++];
    position.advance(c, at_end() ? -1 : text[offset]);
  }
  void skip_mark();
  void skip_blanks();
  Token single(Token::Kind kind);
  Token quoted_symbol();
  Token string_literal();
  Token word();
  Token finish(Token token, std::size_t begin, std::size_t fence) const;
  void check_delimiter(const Token& token);
  void check_leading_zero(const Token& token) const;
  [[noreturn]] void fail(Position place, const std::string& message) const;
  [[noreturn]] void fail_stray() const;

  std::string_view text;
  std::string file;
  Dialect* dialect;
  std::size_t offset = 0;
  Position position;
};

/// The text with every gap between tokens, comments included, as one space or none.
VORN_EXPORT std::string collapse(std::string_view text);

}  // namespace vorn::smt2

#endif
