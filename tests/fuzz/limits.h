// What keeps the work of one input small, and what a target says when it found something.
//
// Inputs of a few bytes can ask for circuits of gigabytes, which is no defect and tells nothing.
// The targets that build circuits refuse them; the reader, which builds none, gets everything.
#ifndef TESTS_FUZZ_LIMITS_H
#define TESTS_FUZZ_LIMITS_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <span>
#include <stdexcept>
#include <string>

#include "vorn/terms/post_order.h"
#include "vorn/terms/term.h"
#include "vorn/utils/termination_test.h"

namespace vorn::fuzz {

/// Beyond this size inputs find nothing that smaller ones would not.
inline constexpr std::size_t kMaxSize = 4096;

/// Ends the process in the way that a fuzzer takes for a finding.
[[noreturn]] inline void report(const std::string& what) {
  std::cerr << "FINDING: " << what << std::endl;
  std::abort();
}

/// Says stop from the n-th question on: what a search does is then the same on every machine.
class QuestionLimit final : public TerminationTest {
 public:
  explicit QuestionLimit(std::uint64_t questions) : left(questions) {}
  bool terminate() const override {
    if (left > 0) --left;
    return left == 0;
  }

 private:
  mutable std::uint64_t left;
};

/// Refuses terms that would make large circuits, one formula after the other.
class SizeLimit {
 public:
  /// Throws std::invalid_argument where a term below `roots` is wide, or they are too many.
  void admit(std::span<const Term* const> roots) {
    for (const Term* t : list_post_order(roots)) {
      const DataType* type = t->get_type();
      const std::size_t width = type->has_bits() ? type->get_value_width() : 1;
      const bool is_float = type->get_kind() == DataType::Kind::floating_point;
      if (width > kMaxWidth || (is_float && type->get_format().e > kMaxExponentBits)) {
        throw std::invalid_argument("a term is too wide for this program");
      }
      cost += width;
    }
    if (cost > kMaxCost) throw std::invalid_argument("the formulas are too large");
  }

 private:
  static constexpr std::size_t kMaxWidth = 40;
  static constexpr std::uint64_t kMaxExponentBits = 8;
  static constexpr std::size_t kMaxCost = 4000;  // bits of all terms

  std::size_t cost = 0;
};

}  // namespace vorn::fuzz

#endif
