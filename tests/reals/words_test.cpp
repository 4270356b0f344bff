// Bit-vectors as integers: what wrapping and signs forbid, and what bounds of sums say of products.
#include <gtest/gtest.h>

#include "vorn/reals/forms.h"
#include "vorn/reals/refuter.h"
#include "vorn/terms/term_manager.h"

namespace vorn::reals {
namespace {

using ranges::Propagation;
using T = SymbolTag;

constexpr std::uint64_t kEnough = 1'000'000;

/// Words of sixteen bits with bounds, converted to Float16, which counts up to 2048.
class Words : public testing::Test {
 protected:
  const Term* declare(const char* name) {
    return mgr.make_constant(mgr.make_unique_symbol(name, mgr.get_bv_type(kBits)));
  }
  const Term* literal(int value) { return mgr.make_bv_number(QNumber(value), kBits); }
  void bound(const Term* t, int least, int greatest) {
    ranges.add(mgr.make_bv_ule(literal(least), t));
    ranges.add(mgr.make_bv_ule(t, literal(greatest)));
  }
  const Term* convert(const Term* t) {
    return mgr.make(T::fp_from_ubv, {5, 10}, {mgr.make_fprounding(kMode), t});
  }
  const Term* make(T::tag tag, const Term* a, const Term* b) {
    const Term* mode = mgr.make_fprounding(kMode);
    const bool is_float = a->get_type()->get_kind() == DataType::Kind::floating_point;
    return is_float ? mgr.make(tag, {mode, a, b}) : mgr.make(tag, {a, b});
  }
  /// What the form of the word is, once it is converted.
  Polynomial find_value(const Term* t) {
    ranges.add(mgr.make(T::fp_le, {convert(t), convert(t)}));
    ranges.propagate(kEnough);
    Bounds bounds(ranges);
    const Forms forms(ranges, bounds, kEnough);
    return forms.find(slot_of(t))->value;
  }
  Propagation::Slot slot_of(const Term* t) {
    for (Propagation::Slot slot = 0; slot < ranges.get_size(); ++slot) {
      if (ranges.get_term(slot) == t) return slot;
    }
    ADD_FAILURE() << t->to_string();
    return 0;
  }
  Polynomial unknown(const Term* t) { return Polynomial::of_unknown(slot_of(t)); }
  void expect_unknown(const Term* t) {
    const Polynomial value = find_value(t);
    EXPECT_EQ(value, unknown(t));
  }
  bool is_refuted() {
    ranges.propagate(kEnough);
    Refuter refuter(ranges, kEnough);
    return ranges.is_contradiction() || refuter.run();
  }

  static constexpr std::uint64_t kBits = 16;
  static constexpr auto kMode = IEEEFloat::rounding_mode::nearest_even;
  TermManager mgr{false};
  Propagation ranges{mgr};
  const Term* x = declare("x");
  const Term* y = declare("y");
  const Term* z = declare("z");
};

TEST_F(Words, SumsThatDoNotWrapAreSums) {
  bound(x, 0, 0x8000);
  bound(y, 0, 0x7fff);
  Polynomial sum = find_value(make(T::bv_add, x, y));
  Polynomial expected = unknown(x);
  expected.add(unknown(y), QNumber(1));
  EXPECT_EQ(sum, expected);
}

TEST_F(Words, SumsThatMayWrapAreUnknowns) {
  bound(x, 0, 0x8000);
  bound(y, 0, 0x8000);
  const Term* sum = make(T::bv_add, x, y);
  expect_unknown(sum);
}

TEST_F(Words, ProductsThatMayWrapAreUnknowns) {
  bound(x, 0, 256);
  bound(y, 0, 256);
  const Term* product = make(T::bv_mul, x, y);
  expect_unknown(product);
}

TEST_F(Words, DifferencesThatMayBeNegativeAreUnknowns) {
  bound(x, 50, 100);
  bound(y, 0, 51);
  const Term* difference = make(T::bv_sub, x, y);
  expect_unknown(difference);
}

TEST_F(Words, NegationsThatWrapAreTakenBack) {
  bound(x, 50, 100);
  bound(y, 0, 50);
  Polynomial expected = find_value(make(T::bv_add, x, mgr.make(T::bv_neg, {y})));
  expected.add(unknown(x), QNumber(-1));
  expected.add(unknown(y), QNumber(1));
  EXPECT_EQ(expected, Polynomial());
}

TEST_F(Words, SumsThatAlwaysWrapLoseOnePeriod) {
  bound(x, 0x9000, 0xa000);
  bound(y, 0x9000, 0xa000);
  Polynomial sum = find_value(make(T::bv_add, x, y));
  EXPECT_EQ(sum.get_constant(), QNumber(-0x10000));
}

/// A row is made of a signed comparison only where neither operand can have a sign bit.
TEST_F(Words, SignedOrdersAreNoOrdersOfNumbers) {
  const auto count_rows = [this] {
    ranges.propagate(kEnough);
    Refuter refuter(ranges, kEnough);
    refuter.run();
    return refuter.get_rows().size();
  };
  bound(x, 0, 0xf000);
  bound(y, 0, 0xf000);
  ranges.add(mgr.make(T::fp_le, {convert(x), convert(y)}));
  const std::size_t before = count_rows();
  ranges.push();
  ranges.add(mgr.make(T::bv_sle, {x, y}));
  EXPECT_EQ(count_rows(), before);
  ranges.pop();
  ranges.push();
  ranges.add(mgr.make(T::bv_ule, {x, y}));
  EXPECT_EQ(count_rows(), before + 1);
  ranges.pop();
  bound(x, 0, 0x7fff);
  bound(y, 0, 0x7fff);
  ranges.add(mgr.make(T::bv_sle, {x, y}));
  EXPECT_EQ(count_rows(), before + 1);
}

/// A product of a sum is the sum of the products where all of them are counted exactly: up to 2048,
/// and no further.
TEST_F(Words, ProductsAreBoundedBySums) {
  bound(x, 1, 400);
  bound(y, 0, 400);
  bound(z, 1, 80);
  const Term* whole = make(T::bv_mul, make(T::bv_add, x, y), z);
  const Term* left = make(T::fp_mul, make(T::fp_add, convert(x), convert(y)), convert(z));
  const Term* right = make(T::fp_add, make(T::fp_mul, convert(x), convert(z)),
                           make(T::fp_mul, convert(y), convert(z)));
  ranges.add(mgr.make(T::bool_not, {mgr.make(T::fp_equal, {left, right})}));
  ranges.push();
  ranges.add(mgr.make_bv_ule(whole, literal(2048)));
  EXPECT_TRUE(is_refuted());
  ranges.pop();
  ranges.add(mgr.make_bv_ule(whole, literal(2100)));
  EXPECT_FALSE(is_refuted());
}

TEST_F(Words, RowsBoundTheirTermsAndTheirSums) {
  bound(x, 0, 100);
  bound(y, 0, 100);
  ranges.propagate(kEnough);
  Bounds bounds(ranges);
  Row row = {unknown(x), QNumber(41) / QNumber(2)};
  row.sum.add(unknown(y), QNumber(2));
  EXPECT_TRUE(bounds.tighten({row}));
  EXPECT_EQ(bounds.get_interval(unknown(x), QNumber()).greatest, QNumber(20)) << "an integer";
  EXPECT_EQ(bounds.get_interval(unknown(y), QNumber()).greatest, QNumber(10));
  Polynomial multiple = Polynomial::of_constant(QNumber(1));
  multiple.add(row.sum, QNumber(-2));
  const Interval interval = bounds.get_interval(multiple, QNumber());
  EXPECT_EQ(interval.least, QNumber(-40));
  EXPECT_EQ(interval.greatest, QNumber(1));
  EXPECT_FALSE(bounds.tighten({row})) << "once more";
}

TEST(Interval, RemaindersAreThoseOfOnePeriod) {
  const auto find = [](int least, int greatest) {
    return find_period({QNumber(least), QNumber(greatest)}, 4);
  };
  EXPECT_EQ(find(0, 15), QNumber(0));
  EXPECT_EQ(find(16, 31), QNumber(16));
  EXPECT_EQ(find(-16, -1), QNumber(-16));
  EXPECT_FALSE(find(0, 16));
  EXPECT_FALSE(find(-1, 3));
}

}  // namespace
}  // namespace vorn::reals
