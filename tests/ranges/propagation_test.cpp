// Ranges of the terms of asserted formulas: where they come to rest, and levels.
#include "vorn/ranges/propagation.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/ranges/small_formula.h"

namespace vorn::ranges {
namespace {

using T = SymbolTag;

constexpr std::uint64_t kEnough = 1'000'000;

/// Patterns of the format (3, 2): a quarter more is one more.
constexpr int kHalf = 8;
constexpr int kOne = 12;
constexpr int kTwo = 16;
constexpr int kThree = 18;
constexpr int kFour = 20;

class PropagationTest : public testing::Test {
 protected:
  const Term* constant(const std::string& name, const DataType* sort) {
    return mgr.make_constant(mgr.make_unique_symbol(name, sort));
  }
  const Term* number(int bits) { return mgr.make_fp_number(QNumber(bits), 3, 2); }
  const Term* at_least(const Term* t, int bits) { return mgr.make_fp_le(number(bits), t); }
  const Term* at_most(const Term* t, int bits) { return mgr.make_fp_le(t, number(bits)); }
  const Term* make_not(const Term* f) { return mgr.make(T::bool_not, {f}); }
  const Term* within(const Term* t, int least, int greatest) {
    return mgr.make(T::bool_and, {at_least(t, least), at_most(t, greatest)});
  }

  static FloatRange between(int least, int greatest) {
    return FloatRange::between({3, 2}, QNumber(least), QNumber(greatest));
  }
  Range range_of(const Term* t) { return *ranges.find_range(t); }
  void expect_range(const Term* t, const Range& expected) {
    EXPECT_EQ(range_of(t), expected) << t->to_string() << ' ' << to_string(range_of(t));
  }
  std::vector<Range> get_ranges() const {
    std::vector<Range> all;
    for (Propagation::Slot slot = 0; slot < ranges.get_size(); ++slot)
      all.push_back(ranges.get_range(slot));
    return all;
  }

  TermManager mgr{false};
  const DataType* type = mgr.get_fp_type(3, 2);
  const Term* x = constant("x", type);
  const Term* y = constant("y", type);
  const Term* p = constant("p", mgr.get_bool_type());
  const Term* b = constant("b", mgr.get_bv_type(4));
  const Term* even = mgr.make_fprounding_even();
  const Term* up = mgr.make_fprounding(IEEEFloat::rounding_mode::plus_inf);
  const Term* down = mgr.make_fprounding(IEEEFloat::rounding_mode::minus_inf);
  Propagation ranges{mgr};
};

// Fixed points ----------------------------------------------------------------------------------

TEST_F(PropagationTest, ComparisonsBoundBothOperands) {
  ranges.add(at_least(x, kOne));
  ranges.add(mgr.make_fp_lt(x, y));
  ranges.add(at_most(y, kTwo));
  ranges.propagate(kEnough);
  expect_range(x, between(kOne, kTwo - 1));
  expect_range(y, between(kOne + 1, kTwo));
}

TEST_F(PropagationTest, SumsAndProductsGoBothWays) {
  const Term* sum = mgr.make_fp_add(down, x, y);
  const Term* product = mgr.make_fp_mul(up, x, y);
  ranges.add(within(x, kOne, kFour));
  ranges.add(within(y, kTwo, kFour));
  ranges.add(at_most(product, kFour));
  ranges.propagate(kEnough);
  expect_range(x, between(kOne, kTwo));
  expect_range(y, between(kTwo, kFour));
  expect_range(product, between(kTwo, kFour));
  // Now y is at least 5 - 2, so x is at most 4 / 3, which is below 1.5, and so on.
  ranges.add(at_least(sum, kFour + 1));
  ranges.propagate(kEnough);
  expect_range(x, between(kOne, kOne));
  expect_range(y, between(kFour, kFour));
  expect_range(sum, between(kFour + 1, kFour + 1));
}

TEST_F(PropagationTest, ConversionsGoBothWays) {
  const Term* integer = mgr.make(T::fp_from_ubv, {3, 2}, {even, b});
  ranges.add(mgr.make(T::equal, {integer, x}));
  ranges.add(mgr.make(T::bv_ule, {b, mgr.make_bv_number(3, 4)}));
  ranges.add(at_least(x, kTwo));
  ranges.propagate(kEnough);
  expect_range(x, between(kTwo, kThree));
  expect_range(b, BitRange::between(4, QNumber(2), QNumber(3)));
  const Term* back = mgr.make(T::fp_to_ubv, {4}, {even, x});
  ranges.add(mgr.make(T::equal, {back, mgr.make_bv_number(2, 4)}));
  ranges.add(make_not(mgr.make(T::equal, {b, mgr.make_bv_number(3, 4)})));
  ranges.propagate(kEnough);
  expect_range(x, between(kTwo, kTwo));
}

TEST_F(PropagationTest, ChoicesFollowTheirConditions) {
  const Term* choice = mgr.make(T::ite, {p, x, y});
  ranges.add(within(x, kOne, kTwo));
  ranges.add(within(y, kThree, kFour));
  ranges.add(mgr.make_fp_lt(choice, number(kThree)));
  ranges.propagate(kEnough);
  expect_range(p, BoolRange::of(true));
  expect_range(choice, between(kOne, kTwo));
}

TEST_F(PropagationTest, ConnectivesAreFollowedDownwards) {
  const Term* q = constant("q", mgr.get_bool_type());
  const Term* is_nan = mgr.make_fp_isnan(x);
  ranges.add(mgr.make(T::bool_or, {p, is_nan}));
  ranges.add(mgr.make(T::bool_xor, {p, q}));
  ranges.add(mgr.make(T::bool_implies, {make_not(is_nan), q}));
  ranges.add(at_least(x, kOne));
  ranges.propagate(kEnough);
  EXPECT_TRUE(ranges.is_contradiction());
}

TEST_F(PropagationTest, DoesNotKnowThatArgumentsAreTheSame) {
  // Intervals forget it, but the difference of a value and itself is known.
  const Term* difference = mgr.make_fp_sub(even, x, x);
  ranges.add(within(x, kOne, kTwo));
  ranges.add(make_not(mgr.make_fp_iszero(difference)));
  ranges.propagate(kEnough);
  EXPECT_FALSE(ranges.is_contradiction());
  EXPECT_TRUE(contains(range_of(difference), QNumber(kOne)));
  ranges.add(mgr.make(T::equal, {x, number(kOne)}));
  ranges.propagate(kEnough);
  EXPECT_TRUE(ranges.is_contradiction());
}

TEST_F(PropagationTest, EndsWhereEndsMoveInSmallSteps) {
  // x < y < x, where each step is the next of 2^63 floats.
  const DataType* large = mgr.get_fp_type(11, 52);
  const Term* u = constant("u", large);
  const Term* v = constant("v", large);
  ranges.add(mgr.make_fp_lt(u, v));
  ranges.add(mgr.make_fp_lt(v, u));
  EXPECT_LT(ranges.propagate(kEnough), 2'000U);
  EXPECT_FALSE(ranges.is_contradiction());
  EXPECT_FALSE(is_empty(range_of(u)));
}

/// Soundness: no term loses a value that it has in a model.
TEST(PropagationProperty, RangesHoldAllValuesOfModels) {
  std::size_t satisfiable = 0;
  std::size_t refuted = 0;
  std::size_t narrowed = 0;
  for (std::uint64_t seed = 0; seed < 300; ++seed) {
    SmallFormulas small(seed);
    const std::vector<const Term*> formulas = small.make_conjunction();
    Propagation ranges(small.get_manager());
    assert_all(formulas, &ranges);
    bool has_model = false;
    small.visit_models(formulas, [&](semantics::Evaluator& model) {
      has_model = true;
      EXPECT_FALSE(ranges.is_contradiction()) << seed;
      for (Propagation::Slot slot = 0; slot < ranges.get_size(); ++slot) {
        const Term* t = ranges.get_term(slot);
        EXPECT_TRUE(contains(ranges.get_range(slot), model.evaluate(t)))
            << seed << ' ' << t->to_string() << " in " << to_string(ranges.get_range(slot));
      }
      return !testing::Test::HasFailure();
    });
    satisfiable += has_model ? 1 : 0;
    refuted += ranges.is_contradiction() ? 1 : 0;
    for (Propagation::Slot slot = 0; has_model && slot < ranges.get_size(); ++slot)
      narrowed += ranges.get_term(slot)->get_arity() == 0 || ranges.is_implied(slot) ? 0 : 1;
  }
  EXPECT_GT(satisfiable, 100U);
  EXPECT_GT(refuted, 30U);
  EXPECT_GT(narrowed, 300U);
  RecordProperty("formulas", std::to_string(satisfiable) + " satisfiable, " +
                                 std::to_string(refuted) + " refuted");
}

// Effort and levels -----------------------------------------------------------------------------

TEST_F(PropagationTest, GoesOnWhereItsEffortRanOut) {
  Propagation steps(mgr);
  const Term* formulas[] = {at_least(x, kOne), at_most(y, kTwo),
                            mgr.make_fp_lt(x, mgr.make_fp_mul(even, y, x)),
                            mgr.make_fp_lt(mgr.make_fp_add(even, y, y), number(kFour))};
  for (const Term* f : formulas) {
    ranges.add(f);
    steps.add(f);
  }
  const std::uint64_t effort = ranges.propagate(kEnough);
  std::uint64_t spent = 0;
  while (const std::uint64_t step = steps.propagate(1)) {
    EXPECT_EQ(step, 1U);
    spent += step;
  }
  EXPECT_GT(effort, 10U);
  EXPECT_EQ(spent, effort);
  for (Propagation::Slot slot = 0; slot < ranges.get_size(); ++slot)
    EXPECT_EQ(ranges.get_range(slot), steps.get_range(slot));
}

TEST_F(PropagationTest, LevelsLeaveNothingBehind) {
  ranges.add(within(x, kOne, kFour));
  ranges.add(mgr.make_fp_le(y, x));
  ranges.propagate(kEnough);
  const std::vector<Range> before = get_ranges();
  const Term* product = mgr.make_fp_mul(up, x, number(kTwo));
  for (const bool is_finished : {true, false}) {
    ranges.push();
    ranges.add(mgr.make_fp_lt(product, mgr.make_fp_add(even, y, product)));
    ranges.push();
    ranges.add(mgr.make_fp_lt(product, number(kFour)));
    ranges.propagate(is_finished ? kEnough : 3);
    if (is_finished) expect_range(x, between(kOne, kTwo - 1));
    EXPECT_EQ(ranges.get_level(), 2U);
    ranges.pop();
    EXPECT_NE(ranges.find_range(product), nullptr);
    EXPECT_GT(ranges.get_size(), before.size());
    ranges.pop();
    EXPECT_EQ(ranges.find_range(product), nullptr);
    EXPECT_EQ(get_ranges(), before);
    EXPECT_EQ(ranges.propagate(kEnough), 0U);
  }
  // What was popped can come again, and terms that stayed are known to it.
  ranges.add(mgr.make_fp_lt(product, number(kFour)));
  ranges.propagate(kEnough);
  expect_range(x, between(kOne, kTwo - 1));
}

TEST_F(PropagationTest, AContradictionIsOfItsLevel) {
  ranges.add(at_least(x, kTwo));
  ranges.propagate(kEnough);
  ranges.push();
  ranges.add(at_least(y, kOne));
  ranges.push();
  ranges.add(mgr.make_fp_lt(x, number(kOne)));
  ranges.propagate(kEnough);
  EXPECT_TRUE(ranges.is_contradiction());
  ranges.push();
  ranges.add(at_most(y, kHalf));
  EXPECT_EQ(ranges.propagate(kEnough), 0U) << "there is nothing left to be found out";
  ranges.pop();
  EXPECT_TRUE(ranges.is_contradiction());
  ranges.pop();
  EXPECT_FALSE(ranges.is_contradiction());
  ranges.add(at_least(y, kOne));
  ranges.add(at_most(y, kHalf));
  ranges.propagate(kEnough);
  EXPECT_TRUE(ranges.is_contradiction());
  ranges.pop();
  EXPECT_FALSE(ranges.is_contradiction());
  expect_range(x, between(kTwo, 28));
  EXPECT_EQ(ranges.find_range(y), nullptr);
}

class Switch : public TerminationTest {
 public:
  bool terminate() const override { return is_on; }
  bool is_on = false;
};

TEST_F(PropagationTest, CanBePoppedAfterATerminationTest) {
  const auto make_sum = [&](int length) {
    const Term* sum = x;
    for (int i = 0; i < length; ++i)
      sum = mgr.make_fp_add(even, sum, i % 2 == 0 ? y : x);
    return mgr.make_fp_lt(sum, y);
  };
  Switch test;
  Propagation interrupted(mgr, &test);
  interrupted.add(within(x, kOne, kTwo));
  interrupted.propagate(kEnough);
  const auto size = interrupted.get_size();
  test.is_on = true;
  interrupted.push();
  EXPECT_THROW(interrupted.add(make_sum(5'000)), Terminated);
  interrupted.pop();
  EXPECT_EQ(interrupted.get_size(), size);
  // The same in the midst of propagation, and where nothing is popped.
  for (const bool is_popped : {true, false}) {
    Propagation other(mgr, &test);
    test.is_on = false;
    other.push();
    other.add(make_sum(5'000));
    test.is_on = true;
    EXPECT_THROW(other.propagate(kEnough), Terminated);
    if (!is_popped) continue;
    other.pop();
    EXPECT_EQ(other.get_size(), 0U);
  }
}

}  // namespace
}  // namespace vorn::ranges
