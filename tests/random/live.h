// What of a script is in force at a check: the same question without levels.
#ifndef VORN_TESTS_RANDOM_LIVE_H
#define VORN_TESTS_RANDOM_LIVE_H

#include <string>
#include <vector>

#include "tests/random/script.h"
#include "vorn/utils/trail.h"

namespace vorn::random {

class LiveCommands {
 public:
  void execute(const Command& command);

  /// Declarations, definitions and assertions in force, the assumptions of the check as assertions
  /// behind them.
  Script at(const Command& check) const;
  std::vector<std::string> get_declared() const;
  /// What get-value can be asked for beside constants: definitions without parameters and labels.
  std::vector<std::string> get_defined() const;
  /// Reads, writes and applications in assertions, as far as they have neither variables nor
  /// labels.
  std::vector<std::string> get_accesses() const;

 private:
  Trail<Command> commands;
};

}  // namespace vorn::random

#endif
