#include "vorn/smt2/lexer.h"

#include <fmt/format.h>

#include <array>

#include "vorn/terms/simple_symbol.h"

namespace vorn::smt2 {
namespace {

enum class CharClass : std::uint8_t {
  stray,      // nowhere outside of strings, quoted symbols and comments
  blank,      // separates
  bracket,    // separates, and is a token or begins a comment
  symbol,     // of simple symbols
  digit,      // of simple symbols too, but not in front
  word_only,  // begins a token of its own; inside a word it makes the word wrong
};

constexpr auto classify_characters() {
  std::array<CharClass, 256> table = {};
  const auto set = [&](std::string_view characters, CharClass c) {
    for (const char character : characters)
      table[static_cast<unsigned char>(character)] = c;
  };
  set(" \t\r\n", CharClass::blank);
  set("();", CharClass::bracket);
  set(kSymbolLetters, CharClass::symbol);
  set("0123456789", CharClass::digit);
  set("#:\"|", CharClass::word_only);
  return table;
}

constexpr auto kClasses = classify_characters();

CharClass class_of(char c) {
  return kClasses[static_cast<unsigned char>(c)];
}

bool is_symbol_char(char c) {
  return class_of(c) == CharClass::symbol || class_of(c) == CharClass::digit;
}

bool is_separator(char c) {
  return class_of(c) == CharClass::blank || class_of(c) == CharClass::bracket;
}

bool is_line_end(char c) {
  return c == '\n' || c == '\r';
}

template <class Predicate>
bool all_of(std::string_view text, Predicate holds) {
  for (const char c : text) {
    if (!holds(c)) return false;
  }
  return !text.empty();
}

bool is_digit(char c) {
  return class_of(c) == CharClass::digit;
}
bool is_binary_digit(char c) {
  return c == '0' || c == '1';
}
bool is_hex_digit(char c) {
  return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// The kind of a whole word; `end` when it is none.
Token::Kind classify(std::string_view word) {
  using enum Token::Kind;
  const std::string_view rest = word.substr(1);
  if (word[0] == ':') return all_of(rest, is_symbol_char) ? keyword : end;
  if (word[0] == '#') {
    if (rest.starts_with('b')) return all_of(rest.substr(1), is_binary_digit) ? binary : end;
    if (rest.starts_with('x')) return all_of(rest.substr(1), is_hex_digit) ? hexadecimal : end;
    return end;
  }
  if (!is_digit(word[0])) return all_of(word, is_symbol_char) ? symbol : end;
  const auto point = word.find('.');
  if (point == std::string_view::npos) return all_of(word, is_digit) ? numeral : end;
  const bool whole = all_of(word.substr(0, point), is_digit);
  return whole && all_of(word.substr(point + 1), is_digit) ? decimal : end;
}

}  // namespace

void Lexer::fail(Position place, const std::string& message) const {
  throw ScriptError(file, place, message);
}

void Lexer::fail_stray() const {
  const auto byte = static_cast<unsigned char>(text[offset]);
  // Bars hold whatever is printable, bytes beyond ASCII included, but no control characters.
  if (byte < 0x20 || byte == 0x7F) fail(position, fmt::format("stray byte 0x{:02X}", byte));
  const std::string what = byte < 0x7F ? fmt::format("stray character '{}'", text[offset])
                                       : fmt::format("stray byte 0x{:02X}", byte);
  fail(position, what + "; a symbol with such characters is written between bars: |...|");
}

/// Passes over a byte-order mark, which takes no column.
void Lexer::skip_mark() {
  if (position != Position{} || !text.starts_with(kByteOrderMark)) return;
  if (dialect != nullptr) {
    dialect->depart(Departure::byte_order_mark, file, position,
                    [] { return "the script begins with a byte-order mark"; });
  }
  offset = kByteOrderMark.size();
}

void Lexer::skip_blanks() {
  if (offset == 0) skip_mark();
  while (!at_end()) {
    if (text[offset] == ';') {
      while (!at_end() && !is_line_end(text[offset]))
        advance();
    } else if (class_of(text[offset]) == CharClass::blank) {
      advance();
    } else {
      return;
    }
  }
}

/// Completes a token that began at `begin`; its text leaves out `fence` bytes on either side.
Token Lexer::finish(Token token, std::size_t begin, std::size_t fence) const {
  token.raw = text.substr(begin, offset - begin);
  token.text = token.raw.substr(fence, token.raw.size() - 2 * fence);
  return token;
}

void Lexer::check_delimiter(const Token& token) {
  if (at_end() || is_separator(text[offset])) return;
  if (class_of(text[offset]) == CharClass::stray) fail_stray();
  fail(token.position,
       fmt::format("{} is followed by '{}' without a blank between", token.raw, text[offset]));
}

Token Lexer::single(Token::Kind kind) {
  const Token token{kind, position, {}, {}};
  const std::size_t begin = offset;
  advance();
  return finish(token, begin, 0);
}

Token Lexer::quoted_symbol() {
  Token token{Token::Kind::quoted_symbol, position, {}, {}};
  const std::size_t begin = offset;
  advance();
  while (!at_end() && text[offset] != '|') {
    if (text[offset] == '\\' && dialect != nullptr) {
      dialect->depart(Departure::backslash, file, position,
                      [] { return "a quoted symbol cannot contain '\\'"; });
    }
    advance();
  }
  if (at_end()) fail(token.position, "this quoted symbol has no closing '|'");
  advance();
  token = finish(token, begin, 1);
  check_delimiter(token);
  return token;
}

Token Lexer::string_literal() {
  Token token{Token::Kind::string, position, {}, {}};
  const std::size_t begin = offset;
  do {  // once for each part between doubled quotes
    advance();
    while (!at_end() && text[offset] != '"')
      advance();
    if (at_end()) fail(token.position, "this string has no closing '\"'");
    advance();
  } while (!at_end() && text[offset] == '"');
  token = finish(token, begin, 1);
  check_delimiter(token);
  return token;
}

/// SMT-LIB 2.6, section 3.1: a numeral is 0 or begins with another digit, a decimal begins with a
/// numeral.
void Lexer::check_leading_zero(const Token& token) const {
  if (dialect == nullptr || token.text.size() < 2) return;
  if (token.text[0] != '0' || token.text[1] == '.') return;
  dialect->depart(Departure::leading_zero, file, token.position, [&] {
    return fmt::format("the number {} begins with a needless zero", token.text);
  });
}

Token Lexer::word() {
  Token token{Token::Kind::end, position, {}, {}};
  const std::size_t begin = offset;
  while (!at_end() && !is_separator(text[offset])) {
    if (class_of(text[offset]) == CharClass::stray) fail_stray();
    advance();
  }
  token = finish(token, begin, 0);
  token.kind = classify(token.raw);
  if (token.is(Token::Kind::end)) {
    fail(token.position, fmt::format("'{}' is neither a literal nor a symbol", token.raw));
  }
  if (token.is(Token::Kind::binary) || token.is(Token::Kind::hexadecimal)) {
    token.text.remove_prefix(2);
  } else if (token.is(Token::Kind::numeral) || token.is(Token::Kind::decimal)) {
    check_leading_zero(token);
  }
  return token;
}

Token Lexer::next() {
  skip_blanks();
  if (at_end()) return Token{Token::Kind::end, position, {}, {}};
  switch (text[offset]) {
    case '(':
      return single(Token::Kind::open);
    case ')':
      return single(Token::Kind::close);
    case '|':
      return quoted_symbol();
    case '"':
      return string_literal();
    default:
      return word();
  }
}

std::string collapse(std::string_view text) {
  Lexer lexer(text, "");
  std::string result;
  bool glued = true;  // no space before the next token
  for (Token token = lexer.next(); !token.is(Token::Kind::end); token = lexer.next()) {
    if (!glued && !token.is(Token::Kind::close)) result += ' ';
    result += token.raw;
    glued = token.is(Token::Kind::open);
  }
  return result;
}

}  // namespace vorn::smt2
