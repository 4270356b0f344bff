// Cooperative termination: long-running work asks now and then whether it should stop.
#ifndef VORN_UTILS_TERMINATION_TEST_H
#define VORN_UTILS_TERMINATION_TEST_H

#include "vorn/utils/export.h"

namespace vorn {

/// Asked by the SAT search between steps; must be cheap.
class VORN_EXPORT TerminationTest {
 public:
  virtual ~TerminationTest() = default;
  /// True when the work should stop and answer "unknown".
  virtual bool terminate() const = 0;
};

}  // namespace vorn

#endif
