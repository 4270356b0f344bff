// Commands out of a stream, one at a time, as soon as each is complete.
//
// A session on a terminal or a pipe must answer a command before the next one is there. So the text
// is cut where the parentheses close, by counting them outside of strings, quoted symbols and
// comments; what stands between is read as in any script. It also confines an error to its command.
#ifndef VORN_SMT2_COMMAND_READER_H
#define VORN_SMT2_COMMAND_READER_H

#include <cstddef>
#include <istream>
#include <optional>
#include <string>

#include "vorn/smt2/error.h"

namespace vorn::smt2 {

/// The text of one command and where it begins.
struct CommandText {
  std::string text;
  Position position;
};

class CommandReader {
 public:
  explicit CommandReader(std::istream& stream) : in(stream) {}

  /// The next command, or what stands in its place: a word, a stray parenthesis, or the rest of the
  /// stream where a parenthesis, string or quoted symbol is never closed. Nothing at the end. A
  /// byte-order mark comes by itself and takes no column.
  /// Reads no further than the command. Throws std::bad_alloc where memory ends, and has read to
  /// the end of the command then too.
  std::optional<CommandText> next();
  /// Where the reader is.
  Position get_position() const { return position; }

 private:
  bool take();
  void skip_blanks();
  void skip_comment();
  void take_quoted();
  void take_command();

  std::istream& in;
  Position position;
  char last = '\0';      // the byte that was taken last
  std::string text;      // of the command, as far as it was taken
  bool is_kept = false;  // bytes that are taken go there
  bool is_lost = false;  // one of them found no memory
};

/// How many checks a script asks for, with and without assumptions, as far as it can be read.
std::size_t count_checks(const std::string& text, const std::string& file);

}  // namespace vorn::smt2

#endif
