// Tokens with one of look-ahead, and what every reader of a script asks of them: a token of a given
// kind or an error that says what was expected. The stream also remembers which parentheses are
// open, so that the end of the text inside of a form is reported where the form begins.
#ifndef VORN_SMT2_TOKEN_STREAM_H
#define VORN_SMT2_TOKEN_STREAM_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vorn/smt2/lexer.h"
#include "vorn/utils/export.h"

namespace vorn::smt2 {

/// The tokens of one script. Everything throws ScriptError at the token that is not as expected,
/// and LimitError where the poll says that reading is to end.
class VORN_EXPORT TokenStream {
 public:
  TokenStream(std::string_view text, std::string file, Position start = {}, ReaderHooks hooks = {});

  // Tokens ------------------------------------------------------------------------------------

  /// The next token, left in place; at the end of the text only outside of all parentheses.
  const Token& peek();
  Token next();
  bool at_close() { return peek().is(Token::Kind::close); }
  bool at_end() { return peek().is(Token::Kind::end); }

  // Tokens of a kind; `what` completes "expected ..." ------------------------------------------

  Token expect(Token::Kind kind, std::string_view what);
  void expect_open(std::string_view what) { expect(Token::Kind::open, what); }
  void expect_close(std::string_view what) { expect(Token::Kind::close, what); }
  /// Any symbol but a reserved word.
  Token expect_symbol(std::string_view what);
  /// A numeral below 2^32.
  std::uint32_t expect_index();
  /// Passes over one S-expression.
  void skip_expression();

  // Places ------------------------------------------------------------------------------------

  /// The text from `first` to the token that was read last.
  std::string_view text_from(const Token& first) const;
  const std::string& get_file() const { return lexer.get_file(); }

  [[noreturn]] void fail(Position place, const std::string& message) const;
  /// Throws a StateError; `unknown` says that it is owed to the answer unknown.
  [[noreturn]] void fail_state(Position place, const std::string& message, bool unknown) const;
  [[noreturn]] void fail_expected(std::string_view what, const Token& got) const;
  [[noreturn]] void interrupt(Position place) const;
  /// A spelling that the standard does not have; `describe()` says why not.
  template <class Describe>
  void depart(Departure kind, Position place, const Describe& describe) const {
    if (owner.dialect != nullptr) owner.dialect->depart(kind, lexer.get_file(), place, describe);
  }
  const ReaderHooks& get_hooks() const { return owner; }

 private:
  ReaderHooks owner;
  Lexer lexer;
  // Read on demand only: an error behind a command must not forestall the command's result.
  std::optional<Token> ahead;
  Token last;
  std::vector<Position> open;  // parentheses that are not closed yet
};

/// Whether SMT-LIB keeps the word for itself (SMT-LIB 2.6, section 3.1).
VORN_EXPORT bool is_reserved_word(const Token& token);

}  // namespace vorn::smt2

#endif
