// Refutation by cases: what it adds to propagation, and that it refutes nothing that has a model.
#include "vorn/ranges/splitting.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/ranges/small_formula.h"

namespace vorn::ranges {
namespace {

using T = SymbolTag;

constexpr std::uint64_t kEnough = 50'000;

class SplittingTest : public testing::Test {
 protected:
  const Term* constant(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }
  const Term* number(double value) {
    IEEEFloat rounded({8, 23}, IEEEFloat::rounding_mode::nearest_even);
    rounded.self_round(QNumber(static_cast<int>(value * 64)) / QNumber(64));
    return mgr.make_fp_number(rounded);
  }
  void assert_within(const Term* t, double least, double greatest) {
    ranges.add(mgr.make_fp_le(number(least), t));
    ranges.add(mgr.make_fp_le(t, number(greatest)));
  }
  /// x * x - x * x * x, at most 4 / 27 from 0 to 1.
  const Term* make_polynomial() {
    const Term* square = mgr.make_fp_mul(even, x, x);
    return mgr.make_fp_sub(even, square, mgr.make_fp_mul(even, square, x));
  }
  std::vector<Range> get_ranges() const {
    std::vector<Range> all;
    for (Propagation::Slot slot = 0; slot < ranges.get_size(); ++slot)
      all.push_back(ranges.get_range(slot));
    return all;
  }

  TermManager mgr{false};
  const Term* x = constant("x", mgr.get_fp_type(8, 23));
  const Term* p = constant("p", mgr.get_bool_type());
  const Term* even = mgr.make_fprounding_even();
  Propagation ranges{mgr};
};

TEST_F(SplittingTest, RefutesWhatPropagationAloneDoesNot) {
  assert_within(x, 0, 1);
  ranges.add(mgr.make_fp_lt(number(0.25), make_polynomial()));
  ranges.propagate(kEnough);
  ASSERT_FALSE(ranges.is_contradiction());
  Splitting splitting(ranges);
  EXPECT_TRUE(splitting.run(kEnough));
  EXPECT_FALSE(splitting.is_over());
  EXPECT_TRUE(ranges.is_contradiction());
  EXPECT_EQ(ranges.get_level(), 0U);
}

TEST_F(SplittingTest, TakesConditionsToBeTrueAndFalse) {
  const Term* choice = mgr.make(T::ite, {p, number(1), number(2)});
  const Term* opposite = mgr.make(T::ite, {p, number(2), number(1)});
  ranges.add(mgr.make_not(mgr.make_fp_equal(mgr.make_fp_add(even, choice, opposite), number(3))));
  ranges.propagate(kEnough);
  ASSERT_FALSE(ranges.is_contradiction());
  Splitting splitting(ranges);
  EXPECT_TRUE(splitting.run(kEnough));
}

/// A factor is large only where the other one is zero: three parts, which the judge knows.
TEST_F(SplittingTest, TakesFactorsToBeZeroAndOther) {
  const Term* a = constant("a", mgr.get_bv_type(64));
  const Term* b = constant("b", mgr.get_bv_type(64));
  for (const Term* factor : {a, b})
    ranges.add(mgr.make_bv_ule(factor, mgr.make_bv_number(1'000'000, 64)));
  ranges.add(mgr.make_bv_ule(mgr.make(T::bv_mul, {a, b}), mgr.make_bv_number(100, 64)));
  ranges.propagate(kEnough);
  const Splitting::Judge judge = [a, b](Propagation& part, std::uint64_t, std::uint64_t* effort) {
    ++*effort;
    const auto& u = std::get<BitRange>(*part.find_range(a));
    const auto& v = std::get<BitRange>(*part.find_range(b));
    const bool is_small = u.get_greatest() <= QNumber(100) && v.get_greatest() <= QNumber(100);
    return std::optional<bool>(is_small || u.is_value() || v.is_value());
  };
  Splitting splitting(ranges, judge);
  EXPECT_TRUE(splitting.run(kEnough));
  EXPECT_EQ(splitting.get_convictions(), 3U);
}

/// Where the product may wrap it bounds none.
TEST_F(SplittingTest, DoesNotBoundFactorsOfProductsThatWrap) {
  const Term* a = constant("a", mgr.get_bv_type(8));
  const Term* b = constant("b", mgr.get_bv_type(8));
  ranges.add(mgr.make_bv_ule(mgr.make(T::bv_mul, {a, b}), mgr.make_bv_number(10, 8)));
  ranges.add(mgr.make_bv_ule(mgr.make_bv_number(1, 8), b));
  ranges.propagate(kEnough);
  EXPECT_EQ(*ranges.find_range(a), Range(BitRange::everything(8)));
}

TEST_F(SplittingTest, SeesWhereNothingIsLeftToSplit) {
  assert_within(x, 0, 1);
  ranges.add(mgr.make_fp_lt(number(0.125), make_polynomial()));
  ranges.propagate(kEnough);
  Splitting splitting(ranges);
  EXPECT_FALSE(splitting.run(kEnough));
  EXPECT_TRUE(splitting.is_over());
  EXPECT_FALSE(splitting.run(kEnough)) << "it stays so";
  splitting.close();
  EXPECT_EQ(ranges.get_level(), 0U);
  EXPECT_FALSE(ranges.is_contradiction());
}

TEST_F(SplittingTest, GoesOnWithLittleEffortAtATime) {
  assert_within(x, 0, 1);
  ranges.add(mgr.make_fp_lt(number(0.25), make_polynomial()));
  ranges.propagate(kEnough);
  Splitting splitting(ranges);
  std::size_t runs = 0;
  while (!splitting.run(1) && runs < kEnough)
    ++runs;
  EXPECT_TRUE(ranges.is_contradiction());
  EXPECT_GT(runs, 20U);
}

TEST_F(SplittingTest, LeavesRangesAsTheyWereIfItIsClosed) {
  assert_within(x, 0, 1);
  ranges.add(mgr.make_fp_lt(number(0.125), make_polynomial()));
  ranges.push();
  ranges.add(mgr.make(T::bool_or, {p, mgr.make_fp_iszero(x)}));
  ranges.propagate(kEnough);
  const std::vector<Range> before = get_ranges();
  Splitting splitting(ranges);
  // Stopped in its first case, before anything is refuted.
  EXPECT_FALSE(splitting.run(2));
  EXPECT_GT(ranges.get_level(), 1U);
  EXPECT_NE(get_ranges(), before);
  splitting.close();
  EXPECT_EQ(ranges.get_level(), 1U);
  EXPECT_EQ(get_ranges(), before);
  ranges.pop();
  EXPECT_EQ(ranges.find_range(p), nullptr);
}

TEST_F(SplittingTest, ARefutationIsOfTheLevelThatItWasFoundOn) {
  assert_within(x, 0, 1);
  ranges.propagate(kEnough);
  ranges.push();
  ranges.add(mgr.make_fp_lt(number(0.25), make_polynomial()));
  ranges.propagate(kEnough);
  {
    Splitting splitting(ranges);
    EXPECT_TRUE(splitting.run(kEnough));
    splitting.close();
  }
  EXPECT_TRUE(ranges.is_contradiction());
  EXPECT_EQ(ranges.get_level(), 1U);
  ranges.pop();
  EXPECT_FALSE(ranges.is_contradiction());
  ranges.add(mgr.make_fp_lt(number(0.125), make_polynomial()));
  ranges.propagate(kEnough);
  Splitting splitting(ranges);
  EXPECT_FALSE(splitting.run(kEnough));
}

/// Soundness: what has a model is not refuted, whatever the effort, and ranges that splitting has
/// left behind still hold the values of all models.
TEST(SplittingProperty, RefutesNothingThatHasAModel) {
  std::size_t satisfiable = 0;
  std::size_t by_cases = 0;
  std::size_t unsatisfiable = 0;
  for (std::uint64_t seed = 0; seed < 300; ++seed) {
    SmallFormulas small(seed);
    const std::vector<const Term*> formulas = small.make_conjunction();
    Propagation ranges(small.get_manager());
    assert_all(formulas, &ranges);
    const bool is_refuted_at_once = ranges.is_contradiction();
    Splitting splitting(ranges);
    bool is_refuted = false;
    const std::uint64_t effort = seed % 2 == 0 ? kEnough : 1 + seed % 37;
    for (std::uint64_t spent = 0; spent < kEnough && !is_refuted; spent += effort)
      is_refuted = splitting.run(effort);
    splitting.close();
    bool has_model = false;
    small.visit_models(formulas, [&](semantics::Evaluator& model) {
      has_model = true;
      EXPECT_FALSE(is_refuted) << seed;
      for (Propagation::Slot slot = 0; slot < ranges.get_size(); ++slot) {
        const Term* t = ranges.get_term(slot);
        EXPECT_TRUE(contains(ranges.get_range(slot), model.evaluate(t))) << seed;
      }
      return !testing::Test::HasFailure();
    });
    satisfiable += has_model ? 1 : 0;
    unsatisfiable += has_model ? 0 : 1;
    by_cases += is_refuted && !is_refuted_at_once ? 1 : 0;
  }
  EXPECT_GT(satisfiable, 100U);
  EXPECT_GT(unsatisfiable, 60U);
  EXPECT_GT(by_cases, 20U);
  RecordProperty("by_cases", std::to_string(by_cases) + " of " + std::to_string(unsatisfiable));
}

}  // namespace
}  // namespace vorn::ranges
