#include "vorn/smt2/token_stream.h"

#include <fmt/format.h>

#include <charconv>
#include <utility>

#include "vorn/terms/simple_symbol.h"

namespace vorn::smt2 {

bool is_reserved_word(const Token& token) {
  return token.is(Token::Kind::symbol) && vorn::is_reserved_word(token.text);
}

TokenStream::TokenStream(std::string_view text, std::string file, Position start, ReaderHooks hooks)
    : owner(hooks), lexer(text, std::move(file), start, hooks.dialect) {}

void TokenStream::fail(Position place, const std::string& message) const {
  throw ScriptError(lexer.get_file(), place, message);
}

void TokenStream::fail_state(Position place, const std::string& message, bool unknown) const {
  throw StateError(lexer.get_file(), place, message, unknown);
}

void TokenStream::fail_expected(std::string_view what, const Token& got) const {
  const std::string found =
      got.is(Token::Kind::end) ? "the end of the text" : fmt::format("'{}'", got.raw);
  fail(got.position, fmt::format("expected {}, got {}", what, found));
}

void TokenStream::interrupt(Position place) const {
  throw LimitError(lexer.get_file(), place, "the limit of time or memory was reached");
}

const Token& TokenStream::peek() {
  if (!ahead) ahead = lexer.next();
  if (ahead->is(Token::Kind::end) && !open.empty()) {
    fail(open.back(), "this '(' is never closed");
  }
  return *ahead;
}

Token TokenStream::next() {
  last = peek();
  ahead.reset();
  if (owner.poll != nullptr && owner.poll->is_over()) interrupt(last.position);
  if (last.is(Token::Kind::open)) {
    open.push_back(last.position);
  } else if (last.is(Token::Kind::close)) {
    if (open.empty()) fail(last.position, "this ')' closes nothing");
    open.pop_back();
  }
  return last;
}

Token TokenStream::expect(Token::Kind kind, std::string_view what) {
  const Token token = next();
  if (!token.is(kind)) fail_expected(what, token);
  return token;
}

Token TokenStream::expect_symbol(std::string_view what) {
  const Token token = next();
  if (!token.is_symbol()) fail_expected(what, token);
  if (is_reserved_word(token)) {
    fail(token.position, fmt::format("expected {}, but '{}' is a reserved word", what, token.text));
  }
  return token;
}

std::uint32_t TokenStream::expect_index() {
  const Token token = expect(Token::Kind::numeral, "a numeral");
  std::uint32_t value = 0;
  const char* end = token.text.data() + token.text.size();
  if (std::from_chars(token.text.data(), end, value).ec != std::errc{}) {
    fail(token.position, fmt::format("the numeral {} is too large here", token.text));
  }
  return value;
}

void TokenStream::skip_expression() {
  std::size_t depth = 0;
  do {
    const Token token = next();
    if (token.is(Token::Kind::open)) {
      ++depth;
    } else if (token.is(Token::Kind::close)) {
      if (depth == 0) fail_expected("an expression", token);
      --depth;
    } else if (token.is(Token::Kind::end)) {
      fail_expected("an expression", token);
    }
  } while (depth != 0);
}

std::string_view TokenStream::text_from(const Token& first) const {
  const char* end = last.raw.data() + last.raw.size();
  return {first.raw.data(), static_cast<std::size_t>(end - first.raw.data())};
}

}  // namespace vorn::smt2
