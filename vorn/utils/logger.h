// Diagnostic output. Silent unless it was given a stream: results go elsewhere, and what a library
// says of itself must never mix with them.
#ifndef VORN_UTILS_LOGGER_H
#define VORN_UTILS_LOGGER_H

#include <ostream>
#include <string_view>

#include "vorn/utils/export.h"

namespace vorn {

/// Writes one line a message to a stream that it borrows.
class VORN_EXPORT Logger {
 public:
  Logger() = default;
  /// Borrows the stream.
  explicit Logger(std::ostream* stream) : out(stream) {}
  virtual ~Logger() = default;
  Logger(const Logger&) = delete;
  Logger& operator=(const Logger&) = delete;

  /// Writes one line.
  virtual void log(std::string_view message) {
    if (out != nullptr) *out << message << std::endl;
  }

 private:
  std::ostream* out = nullptr;  // not owned; null: say nothing
};

}  // namespace vorn

#endif
