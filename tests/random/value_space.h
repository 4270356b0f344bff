// The values of sorts, numbered where they are few and drawn at random where they are not.
#ifndef VORN_TESTS_RANDOM_VALUE_SPACE_H
#define VORN_TESTS_RANDOM_VALUE_SPACE_H

#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "tests/random/random.h"
#include "vorn/semantics/array_values.h"

namespace vorn::random {

class ValueSpace {
 public:
  /// Of more values than that no list is made.
  static constexpr std::uint64_t kMost = 4096;

  /// Every uninterpreted sort has as many elements; at least one.
  explicit ValueSpace(std::uint64_t element_count) : elements(element_count) {}

  /// The number of values, or kMost + 1 where there are more.
  std::uint64_t count(const DataType* type) const;
  /// That of the tuples of values of these sorts, or of the functions from them.
  std::uint64_t count_tuples(std::span<const DataType* const> types) const;
  std::uint64_t count_functions(std::span<const DataType* const> domain,
                                const DataType* result) const;

  /// All values of a sort that has few. What an array has at elements that are not among the
  /// numbered ones is plain.
  const std::vector<QNumber>& list(const DataType* type);
  /// All tuples of values of these sorts, if they are few.
  std::vector<std::vector<QNumber>> list_tuples(std::span<const DataType* const> types);
  /// Any value.
  QNumber sample(const DataType* type, Random& random);

  semantics::ArrayValues& get_arrays() { return arrays; }

 private:
  std::vector<QNumber> list_arrays(const DataType* type);

  std::uint64_t elements;
  semantics::ArrayValues arrays;
  std::map<const DataType*, std::vector<QNumber>> lists;
};

}  // namespace vorn::random

#endif
