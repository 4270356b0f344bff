// What operations say of ranges, on all values of small sorts: no result and no argument that is
// possible is left out, and results of rounded operations have no looser ends than they must.
#include "vorn/ranges/transfer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <utility>

#include "tests/ranges/small_operation.h"
#include "vorn/semantics/open_terms.h"

namespace vorn::ranges {
namespace {

using T = SymbolTag;

constexpr std::size_t kMostCombinations = 120'000;

struct Small {
  Theory theory;
  std::size_t e;
  std::size_t m;
};

/// Terms on some sorts with all their results, computed once.
struct Table {
  explicit Table(const Small& sorts)
      : operations(make_small_operations(mgr, sorts.theory, sorts.e, sorts.m, kMostCombinations)) {}

  TermManager mgr{false};
  std::vector<SmallOperation> operations;
};

const Table& get_table(const Small& sorts) {
  static std::map<std::tuple<Theory, std::size_t, std::size_t>, Table> tables;
  return tables.try_emplace({sorts.theory, sorts.e, sorts.m}, sorts).first->second;
}

class SmallSorts : public testing::TestWithParam<Small> {
 protected:
  SmallSorts() : table(get_table(GetParam())), operations(table.operations) {}

  Range forward(const Term* t, std::span<const Range> arguments) {
    return ranges::forward(table.mgr, t, arguments);
  }
  Forward get_forward() {
    return
        [this](const Term* t, std::span<const Range> arguments) { return forward(t, arguments); };
  }
  /// How many sets to try: as many as take about a second for all operations.
  static std::size_t count_trials(const SmallOperation& operation) {
    return std::clamp<std::size_t>(6'000'000 / operation.count_combinations(), 200, 2000);
  }

  const Table& table;
  const std::vector<SmallOperation>& operations;
  std::mt19937_64 engine{7};
};

std::string name_of(const testing::TestParamInfo<Small>& info) {
  const std::string prefix = info.param.theory == Theory::core          ? "Core"
                             : info.param.theory == Theory::bit_vectors ? "Bits"
                                                                        : "Floats";
  return prefix + std::to_string(info.param.e) + std::to_string(info.param.m);
}

class SmallFloats : public SmallSorts {};

const auto kSmallFloats =
    testing::Values(Small{Theory::floating_point, 2, 1}, Small{Theory::floating_point, 2, 2},
                    Small{Theory::floating_point, 2, 3}, Small{Theory::floating_point, 3, 3});

INSTANTIATE_TEST_SUITE_P(Floats, SmallSorts, kSmallFloats, name_of);
INSTANTIATE_TEST_SUITE_P(Floats, SmallFloats, kSmallFloats, name_of);
INSTANTIATE_TEST_SUITE_P(Discrete, SmallSorts,
                         testing::Values(Small{Theory::core, 2, 2},
                                         Small{Theory::bit_vectors, 2, 2}),
                         name_of);

TEST_P(SmallSorts, ForwardLeavesOutNoResult) {
  ASSERT_FALSE(operations.empty());
  for (const SmallOperation& operation : operations) {
    for (std::size_t i = count_trials(operation); i > 0; --i) {
      const std::vector<Range> ranges = operation.make_random_ranges(engine);
      ASSERT_EQ(operation.check_forward(ranges, get_forward()), "");
    }
  }
}

TEST_P(SmallSorts, BackwardLeavesOutNoArgument) {
  for (const SmallOperation& operation : operations) {
    for (std::size_t i = count_trials(operation); i > 0; --i) {
      const std::vector<Range> ranges = operation.make_random_ranges(engine);
      const Range result = operation.make_random_result(engine);
      ASSERT_EQ(operation.check_backward(ranges, result, backward), "");
      // What the result can be is how a pass calls it.
      const Range possible = intersect(result, forward(operation.get_term(), ranges));
      ASSERT_EQ(operation.check_backward(ranges, possible, backward), "");
    }
  }
}

TEST_P(SmallSorts, SingleValuesHaveTheirResults) {
  for (const SmallOperation& operation : operations) {
    for (std::size_t i = 0; i < operation.count_combinations(); ++i) {
      const std::vector<Range> arguments = operation.get_arguments(i);
      const Range result = operation.get_results(i);
      ASSERT_EQ(forward(operation.get_term(), arguments), result) << operation.get_name();
      std::vector<Range> narrowed = arguments;
      backward(operation.get_term(), result, narrowed);
      ASSERT_EQ(narrowed, arguments) << operation.get_name();
    }
  }
}

/// Whether ends and NaN are those of the least set.
bool has_same_ends(const Range& range, const Range& least) {
  if (const auto* floats = std::get_if<FloatRange>(&range)) {
    const auto& other = std::get<FloatRange>(least);
    return floats->get_least() == other.get_least() &&
           floats->get_greatest() == other.get_greatest() && floats->has(kNaN) == other.has(kNaN);
  }
  if (const auto* bits = std::get_if<BitRange>(&range)) {
    const auto& other = std::get<BitRange>(least);
    return bits->get_least() == other.get_least() && bits->get_greatest() == other.get_greatest();
  }
  return range == least;
}

TEST_P(SmallFloats, EndsOfResultsAreResults) {
  for (const SmallOperation& operation : operations) {
    std::size_t same_ends = 0;
    std::size_t same = 0;
    const std::size_t trials = count_trials(operation);
    for (std::size_t i = 0; i < trials; ++i) {
      const std::vector<Range> ranges = operation.make_random_ranges(engine);
      const Range range = forward(operation.get_term(), ranges);
      const Range least = operation.find_results(ranges);
      same_ends += has_same_ends(range, least) ? 1 : 0;
      same += range == least ? 1 : 0;
      // A remainder is only bounded.
      if (operation.get_term()->get_tag() != T::fp_rem) {
        ASSERT_TRUE(has_same_ends(range, least))
            << operation.get_name() << " gives " << to_string(range) << ", not " << to_string(least)
            << " of " << to_string(ranges[0]) << ' ' << to_string(ranges.back());
      }
    }
    RecordProperty(operation.get_name(), std::to_string(same_ends) + " ends, " +
                                             std::to_string(same) + " sets of " +
                                             std::to_string(trials));
  }
}

/// How many of the trials notice a function that takes one end from what it gives.
TEST_P(SmallSorts, AResultWithoutOneEndIsNoticed) {
  std::map<SymbolTag::tag, std::size_t> noticed;
  for (const SmallOperation& operation : operations) {
    for (const bool greatest : {false, true}) {
      const Forward faulty = [&](const Term* t, std::span<const Range> arguments) {
        const Range range = forward(t, arguments);
        return drop_end(range, greatest).value_or(range);
      };
      for (std::size_t i = 200; i > 0; --i) {
        const bool is_wrong =
            !operation.check_forward(operation.make_random_ranges(engine), faulty).empty();
        noticed[operation.get_term()->get_tag()] += is_wrong ? 1 : 0;
      }
    }
  }
  for (const auto& [tag, count] : noticed)
    EXPECT_GT(count, 20U) << find_operation(tag)->name;
}

TEST_P(SmallSorts, AnArgumentWithoutOneEndIsNoticed) {
  std::map<std::pair<SymbolTag::tag, std::size_t>, std::size_t> noticed;
  for (const SmallOperation& operation : operations) {
    const Term* t = operation.get_term();
    for (std::size_t arg = 0; arg < t->get_arity(); ++arg) {
      if (t->get_arg(arg)->get_type()->get_kind() == DataType::Kind::rounding_mode) continue;
      for (std::size_t i = 400; i > 0; --i) {
        const Backward faulty = [&](const Term* term, const Range& result,
                                    std::span<Range> arguments) {
          backward(term, result, arguments);
          arguments[arg] = drop_end(arguments[arg], i % 2 == 0).value_or(arguments[arg]);
        };
        const std::vector<Range> ranges = operation.make_random_ranges(engine);
        const Range result = operation.make_random_result(engine);
        const bool is_wrong = !operation.check_backward(ranges, result, faulty).empty();
        noticed[{t->get_tag(), arg}] += is_wrong ? 1 : 0;
      }
    }
  }
  for (const auto& [key, count] : noticed)
    EXPECT_GT(count, 10U) << find_operation(key.first)->name << " argument " << key.second;
}

/// How much of what there is to know backward functions find out.
TEST_P(SmallSorts, BackwardFindsOutMoreThanNothing) {
  for (const SmallOperation& operation : operations) {
    std::size_t exact = 0;
    std::size_t narrowable = 0;
    std::size_t narrowed = 0;
    for (std::size_t i = 300; i > 0; --i) {
      const std::vector<Range> ranges = operation.make_random_ranges(engine);
      const Range result =
          intersect(operation.make_random_result(engine), forward(operation.get_term(), ranges));
      std::vector<Range> found = ranges;
      backward(operation.get_term(), result, found);
      const std::vector<Range> least = operation.find_arguments(ranges, result);
      if (least == ranges) continue;
      ++narrowable;
      exact += found == least ? 1 : 0;
      narrowed += found != ranges ? 1 : 0;
    }
    RecordProperty(operation.get_name(), std::to_string(exact) + " exact, " +
                                             std::to_string(narrowed) + " narrowed of " +
                                             std::to_string(narrowable));
    // Of a conversion that is open for some operands, little is known of any.
    const bool is_open = semantics::is_conversion(operation.get_term());
    if (!is_open && GetParam().theory == Theory::floating_point && narrowable > 20) {
      EXPECT_GT(narrowed * 2, narrowable) << operation.get_name();
    }
  }
}

}  // namespace
}  // namespace vorn::ranges
