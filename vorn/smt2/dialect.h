// How strictly the language is taken.
//
// Scripts in the wild have spellings that the standard does not allow and whose meaning is plain
// all the same. The reader takes them. It tells its owner of each kind once a file, or refuses them
// where the owner wants nothing but the standard.
#ifndef VORN_SMT2_DIALECT_H
#define VORN_SMT2_DIALECT_H

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "vorn/smt2/error.h"
#include "vorn/utils/export.h"
#include "vorn/utils/termination_poll.h"

namespace vorn::smt2 {

/// Spellings beyond the standard; section numbers are those of SMT-LIB 2.6.
enum class Departure : std::uint8_t {
  byte_order_mark,      // in front of the first line
  leading_zero,         // 007 and 00.5 (3.1)
  backslash,            // |a\b| (3.1)
  signed_number,        // -1.5, which is a symbol (3.1)
  sort_in_parentheses,  // (Bool) (3.5)
  one_argument,         // (xor p) (3.7.1, "associative" functions)
  number_arithmetic,  // (+ 1 2): the theory of floats has literals of Real and no functions on them
  scaled_number,      // ((_ to_fp eb sb) rm 0.5 3), which is 0.5 * 2^3
  level_count,        // (push) without a numeral (3.9.1)
};

/// What its owner makes of departures from the standard.
class VORN_EXPORT Dialect {
 public:
  /// Gets "FILE:LINE:COLUMN: warning: MESSAGE".
  using Sink = std::function<void(const std::string&)>;

  /// Without a sink departures that are accepted are accepted without a word.
  explicit Dialect(bool strict = false, Sink warning_sink = {})
      : is_strict(strict), sink(std::move(warning_sink)) {}

  /// A spelling at a place of a file; `describe()` says what is wrong with it. Throws ScriptError
  /// with that if the dialect is strict; otherwise the first one of a kind and file is a warning.
  template <class Describe>
  void depart(Departure kind, const std::string& file, Position place, const Describe& describe) {
    if (is_strict) throw ScriptError(file, place, describe());
    if (sink && is_first(kind, file)) warn(file, place, describe());
  }

 private:
  bool is_first(Departure kind, const std::string& file);
  void warn(const std::string& file, Position place, const std::string& message) const;

  bool is_strict;
  Sink sink;
  std::map<std::string, std::uint32_t> seen;  // for each file a bit for each kind
};

/// What the owner of a reader lends it. Without a dialect all departures are accepted; without a
/// poll reading goes on to the end.
struct ReaderHooks {
  Dialect* dialect = nullptr;
  TerminationPoll* poll = nullptr;
};

}  // namespace vorn::smt2

#endif
