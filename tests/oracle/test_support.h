// What the tests of the oracles share: formats, ways to write patterns down, and the sets of
// operands that an exhaustive test runs over.
#ifndef VORN_TESTS_ORACLE_TEST_SUPPORT_H
#define VORN_TESTS_ORACLE_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <cfenv>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "tests/oracle/format.h"

namespace vorn::oracle {

inline constexpr Format kHalf{5, 10};
inline constexpr Format kBfloat{8, 7};
inline constexpr Format kSingle{8, 23};
inline constexpr Format kDouble{11, 52};
inline constexpr Format kQuad{15, 112};

inline Bits hex(const char* digits) {
  return Bits(digits, 16);
}
inline Bits power(unsigned n) {
  return Bits{1} << n;
}

/// An evaluation as a reader would write it, for failure messages.
inline std::string line(const char* name, RoundingMode rm, std::initializer_list<Format> formats,
                        std::initializer_list<Bits> patterns) {
  static constexpr const char* kModeNames[] = {"rne", "rtz", "rtp", "rtn", "rna"};
  std::ostringstream out;
  out << name << ' ' << kModeNames[static_cast<unsigned>(rm)];
  for (const Format f : formats)
    out << ' ' << f.e << ' ' << f.m;
  for (const Bits& x : patterns)
    out << ' ' << x.get_str(16);
  return out.str();
}

inline std::string line(const char* name, RoundingMode rm, unsigned w, Format f, const Bits& v) {
  return std::string(name) + " w=" + std::to_string(w) + line("", rm, {f}, {v});
}

inline std::string format_name(const testing::TestParamInfo<Format>& info) {
  return "e" + std::to_string(info.param.e) + "m" + std::to_string(info.param.m);
}

// Unoptimised and sanitized builds are some twenty times slower and run a share of the cases only.
// The share is odd, so that every value of a pattern's low bits is met.
#if defined(__OPTIMIZE__) && !defined(__SANITIZE_ADDRESS__)
inline constexpr unsigned kShare = 1;
#else
inline constexpr unsigned kShare = 17;
#endif

/// Every pattern of a width.
inline std::vector<Bits> all_patterns(unsigned width) {
  std::vector<Bits> result;
  for (unsigned long v = 0; v < 1UL << width; ++v)
    result.emplace_back(v);
  return result;
}

/// The first operands for tests of every pair.
inline std::vector<Bits> first_operands(unsigned width) {
  std::vector<Bits> result;
  for (unsigned long v = 0; v < 1UL << width; v += kShare)
    result.emplace_back(v);
  return result;
}

/// Restores the machine's rounding direction.
class HardwareRounding {
 public:
  explicit HardwareRounding(RoundingMode rm) : saved(std::fegetround()) {
    static constexpr int kDirections[] = {FE_TONEAREST, FE_TOWARDZERO, FE_UPWARD, FE_DOWNWARD};
    std::fesetround(kDirections[static_cast<unsigned>(rm)]);
  }
  HardwareRounding(const HardwareRounding&) = delete;
  HardwareRounding& operator=(const HardwareRounding&) = delete;
  ~HardwareRounding() { std::fesetround(saved); }

 private:
  int saved;
};

}  // namespace vorn::oracle

#endif
