// What a script did wrong and where, and where reading it was ended. One error ends a script: its
// position is all that a user has to find the cause, so everything that reads a script carries
// positions along.
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

/// Reading was ended because a termination test asked for it. The script is not wrong, but from
/// this place on it has not been read. Names are as they were before the command.
class VORN_EXPORT ReadingInterrupted : public std::runtime_error {
 public:
  /// An end of reading at a place of a file.
  ReadingInterrupted(const std::string& file_name, Position place)
      : std::runtime_error(file_name + ":" + std::to_string(place.line) + ":" +
                           std::to_string(place.column) + ": reading was interrupted"),
        file(file_name),
        position(place) {}

  /// Where it is.
  const std::string& get_file() const { return file; }
  Position get_position() const { return position; }

 private:
  std::string file;
  Position position;
};

}  // namespace vorn::smt2

#endif
