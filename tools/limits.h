// What bounds a session of the command: time, memory, and the user's interrupt.
#ifndef TOOLS_LIMITS_H
#define TOOLS_LIMITS_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "vorn/solver/solver.h"
#include "vorn/terms/engine.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/termination_test.h"

namespace vorn::tools {

/// An interrupt (control-C) ends the check that is running, or the command if none is or if it is
/// the second.
void install_interrupt_handler();

/// Ends work when its time or memory is over, or the user interrupts it.
///
/// Time is that of one check: of its command, and of what the engine did since the check before. A
/// script's first check has all that was done since the script was opened in it, reading included.
class Limits final : public TerminationTest {
 public:
  /// Seconds, more than 0. More than some years are no limit.
  explicit Limits(std::optional<double> seconds);

  /// What ended the work that was last told to stop.
  enum class End : std::uint8_t { time, memory, interrupt };

  bool terminate() const override;
  End get_end() const { return end; }

  /// From here on everything counts for the first check.
  void start_script();
  /// A command that is no part of that has what is left for its check.
  void start_command();
  void end_check();

  /// Counts the time of its life for the check.
  class Work {
   public:
    explicit Work(Limits& counter) : limits(counter), start(Clock::now()) {}
    ~Work() { limits.used += Clock::now() - start; }
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

   private:
    Limits& limits;
    std::chrono::steady_clock::time_point start;
  };

 private:
  using Clock = std::chrono::steady_clock;

  std::optional<Clock::duration> limit;
  Clock::duration used{};
  Clock::time_point deadline;
  bool in_first_check = false;
  mutable End end = End::time;
};

/// The solver with limits on each check.
class LimitedSolver final : public solver::Solver {
 public:
  /// Borrows all of them. The limits are the options' termination test.
  LimitedSolver(TermManager& manager, const solver::Options& chosen, Limits& check_limits)
      : Solver(manager, chosen), limits(check_limits) {}

  void assert_formula(const Term* f) override;
  Answer check_sat(std::span<const Term* const> assumed) override;
  std::string get_reason_unknown() const override;

 private:
  Limits& limits;
};

}  // namespace vorn::tools

#endif
