// A termination test for work of many small steps: it is asked once in some thousands of them.
#ifndef VORN_UTILS_TERMINATION_POLL_H
#define VORN_UTILS_TERMINATION_POLL_H

#include <cstdint>

#include "vorn/utils/termination_test.h"

namespace vorn {

/// Counts steps and asks a test now and then.
class TerminationPoll {
 public:
  /// A step costs about a microsecond, a test that looks at a clock less than a tenth of that: a
  /// few milliseconds go by before work ends, and the test is not felt.
  static constexpr std::uint32_t kInterval = 4096;

  /// The test is borrowed; null: the work goes on to its end.
  explicit TerminationPoll(const TerminationTest* asked = nullptr) : test(asked) {}

  /// Counts one step. True when the work should end.
  bool is_over() { return ++steps % kInterval == 0 && test != nullptr && test->terminate(); }

 private:
  const TerminationTest* test;
  std::uint32_t steps = 0;
};

}  // namespace vorn

#endif
