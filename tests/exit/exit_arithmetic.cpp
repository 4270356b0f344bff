// Arithmetic where a program or a thread ends: in an exit handler, in the destructor of a static
// object, in that of a thread-local one. Each of them outlives what a thread keeps for itself, and
// a failure there can be told by the exit status only.
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "vorn/terms/bv_number.h"
#include "vorn/terms/qnumber.h"

namespace {

using vorn::QNumber;

/// Sums and differences of large fractions go through every scratch integer.
void compute(const char* where) {
  const QNumber large = vorn::BVNumber::power_of_two(200);
  const QNumber third = QNumber(1) / (large + 1);
  const QNumber sum = large + third + third - QNumber(2) / (large + 1);
  if (sum == large && sum.is_integer() && third + 1 - third == QNumber(1)) return;
  std::fprintf(stderr, "wrong arithmetic in %s\n", where);
  std::_Exit(1);
}

/// Computes when it is destroyed.
struct AtEnd {
  const char* where;
  ~AtEnd() { compute(where); }
};

const AtEnd early{"a static object that is older than any number"};

void run_thread() {
  static thread_local const AtEnd at_end{"a thread-local object"};
  compute(at_end.where);
}

}  // namespace

int main() {
  std::atexit([] { compute("an exit handler that is older than any number"); });
  compute("main");
  static const AtEnd late{"a static object that is younger than a number"};
  std::atexit([] { compute("an exit handler"); });
  static thread_local const AtEnd of_main{"a thread-local object of the main thread"};
  for (int i = 0; i < 4; ++i)
    std::thread(run_thread).join();
  compute(late.where);
  compute(of_main.where);
  return 0;
}
