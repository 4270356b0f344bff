#include "tools/limits.h"

#include <csignal>

#include "tools/memory.h"
#include "vorn/utils/output_file.h"

namespace vorn::tools {
namespace {

/// Beyond, a limit is none: it would not fit into the clock.
constexpr double kLongestLimit = 1e9;

/// What the signal handler and a running check tell each other.
volatile std::sig_atomic_t check_is_running = 0;
volatile std::sig_atomic_t interrupted = 0;

extern "C" void handle_interrupt(int signal) {
  if (check_is_running != 0 && interrupted == 0) {
    interrupted = 1;
    return;
  }
  remove_unfinished_files();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

/// A check, until it has an answer or throws.
class Running {
 public:
  explicit Running(Limits& counter) : limits(counter) {
    interrupted = 0;
    check_is_running = 1;
  }
  ~Running() {
    check_is_running = 0;
    interrupted = 0;
    limits.end_check();
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

 private:
  Limits& limits;
};

}  // namespace

void install_interrupt_handler() {
  std::signal(SIGINT, handle_interrupt);
}

Limits::Limits(std::optional<double> seconds) {
  if (!seconds || *seconds > kLongestLimit) return;
  limit = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(*seconds));
}

bool Limits::terminate() const {
  if (interrupted != 0) {
    end = End::interrupt;
  } else if (is_memory_short()) {
    end = End::memory;
  } else if (limit && Clock::now() >= deadline) {
    end = End::time;
  } else {
    return false;
  }
  return true;
}

void Limits::start_script() {
  used = {};
  in_first_check = true;
  if (limit) deadline = Clock::now() + *limit;
}

void Limits::start_command() {
  if (limit && !in_first_check) deadline = Clock::now() + *limit - used;
}

void Limits::end_check() {
  used = {};
  in_first_check = false;
}

void LimitedSolver::assert_formula(const Term* f) {
  const Limits::Work work(limits);
  Solver::assert_formula(f);
}

Answer LimitedSolver::check_sat(std::span<const Term* const> assumed) {
  const Running running(limits);
  const Answer answer = Solver::check_sat(assumed);
  if (answer == Answer::unknown && limits.get_end() == Limits::End::memory) free_discarded();
  return answer;
}

std::string LimitedSolver::get_reason_unknown() const {
  std::string reason = Solver::get_reason_unknown();
  if (reason != "resource limit") return reason;
  switch (limits.get_end()) {
    case Limits::End::interrupt:
      return "interrupted";
    case Limits::End::memory:
      return "memout";
    case Limits::End::time:
      break;
  }
  return "timeout";
}

}  // namespace vorn::tools
