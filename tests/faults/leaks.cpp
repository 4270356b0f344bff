// What the sanitizers are told of leaks where allocations fail.
#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>

#include "vorn/utils/export.h"

extern "C" {
// Names of the sanitizers, which look for them among what the program shows.
VORN_EXPORT const char* __lsan_default_suppressions();  // NOLINT(bugprone-reserved-identifier)
VORN_EXPORT const char* __asan_default_options();       // NOLINT(bugprone-reserved-identifier)

/// What constructors of others have made when they throw: CaDiCaL's, and those that gmpxx makes
/// numbers of expressions with. And a clause for which CaDiCaL's list has no room.
const char* __lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return "leak:CaDiCaL::Solver::Solver\nleak:CaDiCaL::Internal::new_clause\n"
         "leak:__gmpz_realloc\n";
}

/// Libraries without frame pointers are between an allocation and those constructors.
const char* __asan_default_options() {  // NOLINT(bugprone-reserved-identifier)
  return "fast_unwind_on_malloc=0:print_suppressions=0";
}
}
#endif
