// Cooperative termination: long-running work asks now and then whether it should stop.
#ifndef VORN_UTILS_TERMINATION_TEST_H
#define VORN_UTILS_TERMINATION_TEST_H

#include <exception>

#include "vorn/utils/export.h"

namespace vorn {

/// Asked by the bit-blaster and the SAT search between steps; must be cheap.
class VORN_EXPORT TerminationTest {
 public:
  virtual ~TerminationTest() = default;
  /// True when the work should stop and answer "unknown".
  virtual bool terminate() const = 0;
};

/// Thrown by work that was asked to stop and has no answer of its own for that.
class VORN_EXPORT Terminated : public std::exception {
 public:
  /// "terminated"
  const char* what() const noexcept override { return "terminated"; }
};

}  // namespace vorn

#endif
