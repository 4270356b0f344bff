// What ends work: a request of another thread, and the time of a check.
#ifndef VORN_C_STOP_H
#define VORN_C_STOP_H

#include <atomic>
#include <chrono>
#include <optional>

#include "vorn/utils/termination_test.h"

namespace vorn::c {

/// A request lasts until it is taken back, so that none is lost that comes before the work.
class Stop final : public TerminationTest {
 public:
  bool terminate() const override {
    return is_requested() || (deadline && Clock::now() >= *deadline);
  }

  /// From any thread and from signal handlers.
  void request() { requested.store(true); }
  void clear() { requested.store(false); }
  bool is_requested() const { return requested.load(); }

  /// Work ends when that many seconds are over, or never.
  void start(double seconds) {
    // A clock has no more.
    constexpr double kLongest = 1e9;
    deadline.reset();
    if (seconds <= 0 || seconds > kLongest) return;
    deadline = Clock::now() +
               std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
  }
  void end() { deadline.reset(); }

 private:
  using Clock = std::chrono::steady_clock;

  std::atomic<bool> requested = false;
  std::optional<Clock::time_point> deadline;
};

static_assert(std::atomic<bool>::is_always_lock_free, "signal handlers may ask");

}  // namespace vorn::c

#endif
