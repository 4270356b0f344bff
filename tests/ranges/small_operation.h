// One operation on sorts of few values: every combination of its arguments and what comes of it.
//
// The values are those of semantics::apply, what the theory leaves open with every choice. Checks
// of ranges go through all combinations in them.
#ifndef VORN_TESTS_RANGES_SMALL_OPERATION_H
#define VORN_TESTS_RANGES_SMALL_OPERATION_H

#include <cstdint>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "vorn/ranges/range.h"
#include "vorn/terms/operations.h"
#include "vorn/terms/term_manager.h"

namespace vorn::ranges {

using Forward = std::function<Range(const Term*, std::span<const Range>)>;
using Backward = std::function<void(const Term*, const Range&, std::span<Range>)>;

/// All values of a sort, NaN once.
std::vector<QNumber> list_values(const DataType* type);

/// A random set of values that is not empty: everything, one value, or any set that there is.
Range make_random_range(const DataType* type, std::mt19937_64& engine);

class SmallOperation {
 public:
  /// Computes the results of all arguments. `indices` are those of TermManager::make.
  SmallOperation(TermManager& manager, SymbolTag::tag tag, const std::vector<std::size_t>& indices,
                 const std::vector<const DataType*>& sorts);

  const Term* get_term() const { return term; }
  /// The operation and the sorts of its arguments.
  std::string get_name() const;
  std::size_t count_combinations() const { return results.size(); }
  std::vector<Range> make_random_ranges(std::mt19937_64& engine) const;
  /// A random set of results, often one of few values.
  Range make_random_result(std::mt19937_64& engine) const;

  /// The arguments of a combination, each alone in its range, and the least set with all results.
  std::vector<Range> get_arguments(std::size_t combination) const;
  Range get_results(std::size_t combination) const;
  /// The least set with all results of arguments in these ranges.
  Range find_results(const std::vector<Range>& ranges) const;
  /// The least sets with all arguments in these ranges that give some value of `result`.
  std::vector<Range> find_arguments(const std::vector<Range>& ranges, const Range& result) const;

  /// What is wrong where `forward` leaves out a result; empty if nothing is.
  std::string check_forward(const std::vector<Range>& ranges, const Forward& forward) const;
  /// What is wrong where `backward` leaves out arguments, or adds some; empty if nothing is.
  std::string check_backward(const std::vector<Range>& ranges, const Range& result,
                             const Backward& backward) const;

 private:
  /// Calls `visit` with the numbers of the arguments, and with the results, of each combination.
  template <class Visit>
  void visit(const std::vector<Range>& ranges, const Visit& visit) const;
  std::vector<std::uint32_t> compute(std::size_t combination) const;
  std::vector<std::size_t> split(std::size_t combination) const;

  TermManager& mgr;
  const Term* term = nullptr;
  std::vector<std::vector<QNumber>> domains;  // the values of each argument
  std::vector<std::vector<std::uint32_t>>
      results;  // of each combination, the first argument fastest
};

/// The operations of one theory on small sorts, floats in the format (e, m) and, where there are
/// two formats, in that one and in others near it; none with more than `most` combinations.
std::vector<SmallOperation> make_small_operations(TermManager& manager, Theory theory,
                                                  std::size_t e, std::size_t m, std::size_t most);

/// The set without one of its ends, or nothing if there is no other number in it.
std::optional<Range> drop_end(const Range& range, bool greatest);

}  // namespace vorn::ranges

#endif
