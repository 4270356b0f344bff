#include "vorn/smt2/command_reader.h"

#include <new>
#include <sstream>
#include <string_view>
#include <utility>

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

/// Takes one byte off the stream; false at the end. Where it has to be kept and cannot be, the rest
/// of the command is taken all the same: what follows it is another command, and no part of it.
bool CommandReader::take() {
  const int c = in.get();
  if (c == std::istream::traits_type::eof()) return false;
  last = static_cast<char>(c);
  position.advance(last, c == '\r' ? in.peek() : -1);
  if (!is_kept || is_lost) return true;
  try {
    text.push_back(last);
  } catch (const std::bad_alloc&) {
    is_lost = true;
  }
  return true;
}

void CommandReader::skip_blanks() {
  is_kept = false;
  while (is_in(kBlanks, in.peek()) || in.peek() == ';') {
    if (in.peek() == ';') {
      skip_comment();
    } else {
      take();
    }
  }
}

/// Takes everything up to the end of the line.
void CommandReader::skip_comment() {
  while (!is_line_end(in.peek()) && take()) {
  }
}

/// Takes everything up to and with the closing quote. A doubled quote in a string is two strings to
/// this reader, which does not matter here.
void CommandReader::take_quoted() {
  take();
  const char quote = last;
  while (take() && last != quote) {
  }
}

void CommandReader::take_command() {
  is_kept = true;
  std::size_t depth = 0;
  do {
    const int c = in.peek();
    if (c == ';') {
      // Comments keep their place: columns behind them must stay right.
      skip_comment();
    } else if (c == '"' || c == '|') {
      take_quoted();
    } else if (is_in("() \t\r\n", c)) {
      take();
      if (c == '(') ++depth;
      if (c == ')' && depth > 0) --depth;
    } else {
      while (!is_in(kWordEnds, in.peek()) && take()) {
      }
    }
  } while (depth > 0 && in.peek() != std::istream::traits_type::eof());
}

std::optional<CommandText> CommandReader::next() {
  skip_blanks();
  if (in.peek() == std::istream::traits_type::eof()) return std::nullopt;
  const Position start = position;
  text = {};
  is_lost = false;
  take_command();
  if (is_lost) {
    text = {};
    throw std::bad_alloc();
  }
  if (text == kByteOrderMark) position = start;
  return CommandText{std::move(text), start};
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
