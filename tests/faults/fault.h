// A fault that strikes once: the place where a program fails, chosen by number.
//
// Whatever can fail asks the fault each time. At chosen numbers the process forks: in the child
// this place fails, by itself or with all that come until the child says that it is enough; the
// parent waits for what the child makes of it, and goes on as if nothing had been. One run of the
// parent so tries any number of places, each child has only the rest of the run before it, and a
// crash or a hang ends a child alone.
#ifndef VORN_TESTS_FAULTS_FAULT_H
#define VORN_TESTS_FAULTS_FAULT_H

#include <cstdint>
#include <string>

namespace vorn::faults {

/// Which places fail, by their numbers from 1 on.
struct Choice {
  std::uint64_t first = 1;
  std::uint64_t last = ~std::uint64_t{0};
  std::uint64_t every = 1;
  bool is_lasting = false;  // places fail from the one that was chosen to the end of the fault
};

/// The places of one kind. Asks nobody and allocates nothing, so that an allocation can be one.
class Fault {
 public:
  /// Counts from here on, and forks where it was told to.
  void start(const Choice& places);
  /// Counts no more.
  void stop() { is_counting = false; }

  /// One place: whether it has to fail, in a process of its own.
  bool strikes();
  /// Ends a fault that lasts.
  void end() { is_on = false; }
  /// Whether this process is one of those.
  bool has_struck() const { return struck != 0; }
  /// The place that failed.
  std::uint64_t get_place() const { return struck; }

  /// How many places there were, how many of them failed, and how many children did not end well.
  std::uint64_t get_count() const { return count; }
  std::uint64_t get_tried() const { return tried; }
  std::uint64_t get_bad() const { return bad; }

  /// What is done meanwhile is the test's own and is not counted.
  class Pause {
   public:
    explicit Pause(Fault& paused) : fault(paused), before(paused.is_counting) {
      fault.is_counting = false;
    }
    ~Pause() { fault.is_counting = before; }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

   private:
    Fault& fault;
    const bool before;
  };

 private:
  void wait_for(int child);

  Choice choice;
  bool is_counting = false;
  bool is_on = false;  // in a child, while the fault lasts
  std::uint64_t count = 0;
  std::uint64_t next = 0;
  std::uint64_t tried = 0;
  std::uint64_t bad = 0;
  std::uint64_t struck = 0;  // 0: none so far
};

/// Allocations: operator new, those of GMP, and malloc of what is linked statically. Until started
/// it lets all of them pass.
Fault& get_memory_fault();

/// Has GMP allocate through the fault. To be called before its first number is made.
void guard_numbers();

}  // namespace vorn::faults

#endif
