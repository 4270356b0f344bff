// The source of chance. Only the raw output of the generator is used, because the distributions of
// the standard library may differ from one implementation to the next, and a seed has to mean the
// same script everywhere.
#ifndef VORN_TESTS_RANDOM_RANDOM_H
#define VORN_TESTS_RANDOM_RANDOM_H

#include <cstddef>
#include <cstdint>
#include <random>

namespace vorn::random {

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine(seed) {}

  /// Below n, which must not be 0; the bias of the remainder is of no account here.
  std::size_t below(std::size_t n) { return engine() % n; }
  bool percent(std::size_t p) { return below(100) < p; }
  template <class Container>
  const auto& pick(const Container& from) {
    return from[below(from.size())];
  }

 private:
  std::mt19937_64 engine;
};

}  // namespace vorn::random

#endif
