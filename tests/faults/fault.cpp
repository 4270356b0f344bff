#include "tests/faults/fault.h"

#include <gmp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <new>

extern "C" {
// The linker's names, of its option --wrap.
void* __real_malloc(std::size_t size);  // NOLINT(bugprone-reserved-identifier)
void* __wrap_malloc(std::size_t size);  // NOLINT(bugprone-reserved-identifier)
}

namespace vorn::faults {
namespace {

/// Of the rest of a session, which takes a fraction of a second; some of it under a sanitizer.
constexpr unsigned kMostSeconds = 120;

constinit Fault memory_fault;

void* allocate(std::size_t size) {
  void* block = memory_fault.strikes() ? nullptr : __real_malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void* reallocate(void* block, std::size_t /*old_size*/, std::size_t new_size) {
  void* moved = memory_fault.strikes() ? nullptr : std::realloc(block, new_size);
  if (moved == nullptr) throw std::bad_alloc();
  return moved;
}

void release(void* block, std::size_t /*size*/) {
  std::free(block);
}

}  // namespace

void Fault::start(const Choice& places) {
  *this = Fault();
  choice = places;
  next = places.first;
  is_counting = true;
}

bool Fault::strikes() {
  if (!is_counting) return false;
  if (struck != 0) return is_on;
  if (++count != next || count > choice.last) return false;
  const Pause pause(*this);
  const pid_t child = fork();
  if (child < 0) {
    std::perror("fork");
    std::abort();
  }
  if (child == 0) {
    struck = count;
    is_on = choice.is_lasting;
    alarm(kMostSeconds);
    return true;
  }
  wait_for(child);
  next += choice.every;
  return false;
}

void Fault::wait_for(int child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
  }
  ++tried;
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return;
  ++bad;
  if (WIFSIGNALED(status)) {
    std::fprintf(stderr, "place %llu: ended by signal %d\n", static_cast<unsigned long long>(count),
                 WTERMSIG(status));
  }
}

Fault& get_memory_fault() {
  return memory_fault;
}

void guard_numbers() {
  mp_set_memory_functions(allocate, reallocate, release);
}

}  // namespace vorn::faults

void* __wrap_malloc(std::size_t size) {  // NOLINT(bugprone-reserved-identifier)
  return vorn::faults::memory_fault.strikes() ? nullptr : __real_malloc(size);
}

// The other forms of new and delete come down to these; to the sanitizers each is one of their own,
// so what is released here has to be allocated here.

void* operator new(std::size_t size) {
  return vorn::faults::allocate(size);
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  try {
    return vorn::faults::allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
  std::free(block);
}
