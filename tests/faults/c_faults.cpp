// The C interface where allocations fail: a conversation, held again with each of its allocations
// failing in a process of its own.
//   c_faults EVERY [--lasting]    one allocation in EVERY, or from it on all
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "tests/faults/c_conversation.h"
#include "tests/faults/fault.h"
#include "vorn/c/vorn.h"

namespace {

int run(std::uint64_t every, bool is_lasting) {
  vorn::faults::Fault& fault = vorn::faults::get_memory_fault();
  fault.start({.every = every, .is_lasting = is_lasting});
  const int failed = hold_c_conversation(is_lasting ? 1 : 0);
  fault.end();
  const bool is_child = fault.has_struck();
  if (is_child && failed != 0) {
    std::fprintf(stderr, "place %llu\n", static_cast<unsigned long long>(fault.get_place()));
  }
  fault.stop();
  if (is_child) return failed;
  std::printf("%llu allocations, %llu tried, %llu bad\n",
              static_cast<unsigned long long>(fault.get_count()),
              static_cast<unsigned long long>(fault.get_tried()),
              static_cast<unsigned long long>(fault.get_bad()));
  return failed == 0 && fault.get_tried() > 0 && fault.get_bad() == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    vorn_catch_gmp_memory();
    return run(argc > 1 ? std::stoull(argv[1]) : 1,
               argc > 2 && std::string(argv[2]) == "--lasting");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
  }
}
