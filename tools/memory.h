// What the command allocates: counted, and bounded where the user wants that.
//
// Memory that ends must end a check and not the command. So everything here that runs short throws
// std::bad_alloc: operator new, which it does anyway, and the allocations of GMP, which would
// abort. Under a limit both count what they hand out, and hand out nothing beyond it.
#ifndef TOOLS_MEMORY_H
#define TOOLS_MEMORY_H

namespace vorn::tools {

/// Has GMP throw std::bad_alloc where memory ends. To be called before its first number is made.
void guard_number_memory();

/// Bounds what is allocated from now on, in megabytes of 10^6 bytes, more than 0. What no machine
/// has is no bound.
void limit_memory(double megabytes);

/// Whether so little is left below the limit that long work should stop by itself. A SAT search
/// that stops so can be taken down and its memory used again; one that an allocation fails cannot.
bool is_memory_short();

}  // namespace vorn::tools

#endif
