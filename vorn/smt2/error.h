// What a script did wrong and where: the position is all that a user has to find the cause, so
// everything that reads a script carries positions along.
#ifndef VORN_SMT2_ERROR_H
#define VORN_SMT2_ERROR_H

#include <cstdint>
#include <stdexcept>
#include <string>

#include "vorn/utils/export.h"

namespace vorn::smt2 {

/// A place in a text.
struct Position {
  std::uint32_t line = 1;    // from 1 on
  std::uint32_t column = 1;  // of characters, a tab being one, from 1 on

  bool operator==(const Position&) const = default;

  /// Moves past one byte; `next` is the one behind it, or negative. A line ends with a line feed, a
  /// carriage return, or both. Continuation bytes of UTF-8 belong to the character before.
  void advance(char c, int next = -1) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte == '\n' || (byte == '\r' && next != '\n')) {
      ++line;
      column = 1;
    } else if ((byte & 0xC0U) != 0x80U) {
      ++column;
    }
  }
};

/// An error in a script; `what()` is "FILE:LINE:COLUMN: error: MESSAGE".
class VORN_EXPORT ScriptError : public std::runtime_error {
 public:
  /// An error at a place of a file.
  ScriptError(const std::string& file_name, Position place, const std::string& text)
      : std::runtime_error(file_name + ":" + std::to_string(place.line) + ":" +
                           std::to_string(place.column) + ": error: " + text),
        file(file_name),
        position(place),
        message(text) {}

  /// Where it is and what it says, one by one.
  const std::string& get_file() const { return file; }
  Position get_position() const { return position; }
  std::uint32_t get_line() const { return position.line; }
  std::uint32_t get_column() const { return position.column; }
  const std::string& get_message() const { return message; }

 private:
  std::string file;
  Position position;
  std::string message;
};

/// A command that is well-formed but not allowed in the state that the session is in: what asks for
/// a model where there is none, or closes more levels than are open. The command has been read to
/// its end and has had no effect.
class VORN_EXPORT StateError : public ScriptError {
 public:
  /// An error at a place of a file. `unknown` says that it is owed to the answer unknown.
  StateError(const std::string& file_name, Position place, const std::string& text, bool unknown)
      : ScriptError(file_name, place, text), owed_to_unknown(unknown) {}

  /// Whether the command would have been allowed, had the last answer not been unknown.
  bool is_owed_to_unknown() const { return owed_to_unknown; }

 private:
  bool owed_to_unknown;
};

/// Time or memory that ended before a command had been read and executed, which then has had no
/// effect. The script need not be wrong.
class VORN_EXPORT LimitError : public ScriptError {
 public:
  using ScriptError::ScriptError;
};

}  // namespace vorn::smt2

#endif
