// Calls that a fault may answer: the linker sends them there (--wrap), and the variable FAULT of
// the environment says what goes wrong.
#ifndef VORN_TESTS_DEFECTS_WRAP_H
#define VORN_TESTS_DEFECTS_WRAP_H

#include <cstdlib>
#include <string_view>

/// Declares what the linker knows as `symbol`, and what is called in its place.
#define VORN_WRAP(real, fault, symbol, result, ...)   \
  result real(__VA_ARGS__) __asm__("__real_" symbol); \
  result fault(__VA_ARGS__) __asm__("__wrap_" symbol)

namespace vorn::defects {

inline bool is_wanted(std::string_view fault) {
  static const char* const name = std::getenv("FAULT");
  return name != nullptr && name == fault;
}

}  // namespace vorn::defects

#endif
