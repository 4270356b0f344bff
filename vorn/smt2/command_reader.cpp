#include "vorn/smt2/command_reader.h"

#include <sstream>
#include <string_view>

#include "vorn/smt2/lexer.h"

namespace vorn::smt2 {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kWordEnds = " \t\r\n();\"|";

bool is_in(std::string_view characters, int c) {
  return c >= 0 && characters.find(static_cast<char>(c)) != std::string_view::npos;
}

bool is_line_end(int c) {
  return c == '\n' || c == '\r';
}

}  // namespace

/// Moves one byte from the stream to the text; false at the end.
bool CommandReader::take(std::string* text) {
  const int c = in.get();
  if (c == std::istream::traits_type::eof()) return false;
  text->push_back(static_cast<char>(c));
  position.advance(text->back(), c == '\r' ? in.peek() : -1);
  return true;
}

void CommandReader::skip_blanks() {
  std::string blanks;
  while (is_in(kBlanks, in.peek()) || in.peek() == ';') {
    if (in.peek() == ';') {
      take_comment();
    } else {
      take(&blanks);
    }
    blanks.clear();
  }
}

/// Leaves the comment out of the text, but for the end of the line.
void CommandReader::take_comment() {
  std::string comment;
  while (!is_line_end(in.peek()) && take(&comment))
    comment.clear();
}

/// Takes everything up to and with the closing quote. A doubled quote in a string is two strings to
/// this reader, which does not matter here.
void CommandReader::take_quoted(std::string* text, char quote) {
  take(text);
  while (take(text) && text->back() != quote) {
  }
}

std::optional<CommandText> CommandReader::next() {
  skip_blanks();
  if (in.peek() == std::istream::traits_type::eof()) return std::nullopt;
  CommandText command{{}, position};
  std::string& text = command.text;
  std::size_t depth = 0;
  do {
    const int c = in.peek();
    if (c == ';') {
      // Comments keep their place: columns behind them must stay right.
      while (!is_line_end(in.peek()) && take(&text)) {
      }
    } else if (c == '"' || c == '|') {
      take_quoted(&text, static_cast<char>(c));
    } else if (is_in("() \t\r\n", c)) {
      take(&text);
      if (c == '(') ++depth;
      if (c == ')' && depth > 0) --depth;
    } else {
      while (!is_in(kWordEnds, in.peek()) && take(&text)) {
      }
    }
  } while (depth > 0 && in.peek() != std::istream::traits_type::eof());
  if (text == kByteOrderMark) position = command.position;
  return command;
}

std::size_t count_checks(const std::string& text, const std::string& file) {
  std::istringstream stream(text);
  CommandReader reader(stream);
  std::size_t count = 0;
  try {
    while (const auto command = reader.next()) {
      Lexer lexer(command->text, file, command->position);
      if (!lexer.next().is(Token::Kind::open)) continue;
      const Token name = lexer.next();
      if (name.is_word("exit")) break;
      if (name.is_word("check-sat") || name.is_word("check-sat-assuming")) ++count;
    }
  } catch (const ScriptError&) {
    // Whoever executes the script comes to the same place and says what is wrong.
  }
  return count;
}

}  // namespace vorn::smt2
