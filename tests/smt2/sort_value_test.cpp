// Definitions of sorts, put together from others and from parameters.
#include "vorn/smt2/sort_value.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/smt2/session.h"

namespace vorn::smt2 {
namespace {

class SortValueTest : public testing::Test {
 protected:
  SortValue apply(const SortDefinition& definition, const std::vector<SortValue>& args) {
    return apply_sort(mgr, definition, args);
  }

  TermManager mgr;
  const DataType* boolean = mgr.get_bool_type();
  const DataType* byte = mgr.get_bv_type(8);
  SortDefinition array{2, {}, SortStep::array()};
};

TEST_F(SortValueTest, ABodyWithoutParametersIsTheSort) {
  EXPECT_EQ(apply({0, {byte}}, {}).type, byte);
  EXPECT_EQ(apply({1, {byte}}, {{boolean}}).type, byte);
}

TEST_F(SortValueTest, ConstructorsTakeSorts) {
  EXPECT_EQ(apply(array, {{byte}, {boolean}}).type, mgr.get_array_type(byte, boolean));
  const SortDefinition pair{2, {}, SortStep::declared("Pair", 2)};
  EXPECT_EQ(apply(pair, {{byte}, {boolean}}).type,
            mgr.get_uninterpreted_type("Pair", std::vector{byte, boolean}));
  EXPECT_TRUE(pair.is_declared());
  EXPECT_FALSE(array.is_declared());
}

TEST_F(SortValueTest, WhatHasParametersIsMadeOnceTheyAreKnown) {
  const SortValue open = apply(array, {SortValue::parameter(1), {byte}});
  EXPECT_EQ(open.type, nullptr);
  const SortDefinition definition{2, open};
  EXPECT_EQ(apply(definition, {{byte}, {boolean}}).type, mgr.get_array_type(boolean, byte));
  // A parameter of the definition around it in the place of the first.
  const SortDefinition outer{1, apply(definition, {{byte}, SortValue::parameter(0)})};
  EXPECT_EQ(apply(outer, {{byte}}).type, mgr.get_array_type(byte, byte));
}

TEST_F(SortValueTest, SortsAndStepsHaveABound) {
  SortValue sort{boolean};
  SortValue open = SortValue::parameter(0);
  for (int i = 0; i < 8; ++i) {
    sort = apply(array, {sort, sort});
    open = apply(array, {open, open});
  }
  EXPECT_EQ(open.steps.size(), 511U);
  EXPECT_EQ(apply({1, open}, {{boolean}}).type, sort.type);
  EXPECT_THROW(apply(array, {sort, sort}), std::invalid_argument);
  EXPECT_THROW(apply(array, {open, open}), std::invalid_argument);
  EXPECT_THROW(apply({1, open}, {sort}), std::invalid_argument);
}

// As scripts write them ---------------------------------------------------------------------------

TEST(SortScripts, ArraysNestAndTakeAnySorts) {
  Session s;
  s.run(
      "(define-sort Mem (X) (Array (_ BitVec 32) X))(declare-sort S 0)(declare-sort Pair 2)"
      "(declare-const a (Mem Float16))(declare-const b (Mem (Mem S)))"
      "(declare-const c (Array (Array Bool Bool) RoundingMode))"
      "(define-sort Table (X Y) (Array (Pair X (Mem Y)) (Pair Y X)))"
      "(declare-const d (Table S (Mem Bool)))");
  const auto type = [&](const char* name) { return s.constant(name)->get_type()->to_string(); };
  EXPECT_EQ(type("a"), "(Array (_ BitVec 32) (_ FloatingPoint 5 11))");
  EXPECT_EQ(type("b"), "(Array (_ BitVec 32) (Array (_ BitVec 32) S))");
  EXPECT_EQ(type("c"), "(Array (Array Bool Bool) RoundingMode)");
  EXPECT_EQ(type("d"),
            "(Array (Pair S (Array (_ BitVec 32) (Array (_ BitVec 32) Bool))) "
            "(Pair (Array (_ BitVec 32) Bool) S))");
}

TEST(SortScripts, ParametersHideSorts) {
  Session s;
  s.run(
      "(declare-sort S 0)(define-sort T (S) (Array S Bool))(declare-const a (T Float16))"
      "(define-sort U (Array) Array)(declare-const b (U S))");
  EXPECT_EQ(s.constant("a")->get_type()->to_string(), "(Array (_ FloatingPoint 5 11) Bool)");
  EXPECT_EQ(s.constant("b")->get_type()->to_string(), "S");
}

TEST(SortScripts, DeclaredSortsEndWithTheirLevel) {
  Session s;
  s.run("(push)(declare-sort S 0)(declare-const a (Array S S))");
  const DataType* first = s.constant("a")->get_type();
  EXPECT_EQ(s.error("(pop)(declare-const b S)"), "1:23: unknown sort 'S'");
  s.run("(declare-sort S 0)(declare-const a (Array S S))");
  EXPECT_EQ(s.constant("a")->get_type(), first);
  EXPECT_EQ(s.error("(reset)(declare-sort S 1)(declare-const a S)"), "1:43: S takes 1 sort, got 0");
}

TEST(SortScripts, GlobalSortsOutliveLevels) {
  Session s;
  s.run(
      "(set-option :global-declarations true)(push)(declare-sort S 1)(pop)"
      "(declare-const a (S Bool))");
  EXPECT_EQ(s.constant("a")->get_type()->to_string(), "(S Bool)");
}

TEST(SortScripts, DeepSortsAreRefusedWithoutRecursion) {
  Session s;
  constexpr std::size_t kDepth = 100000;
  EXPECT_EQ(
      s.error("(declare-const a " + repeated("(Array Bool ", kDepth) + "Bool" +
              repeated(")", kDepth) + ")"),
      "1:" + std::to_string(19 + 12 * (kDepth - 500)) + ": a sort that names more than 1000 sorts");
  EXPECT_EQ(
      s.error("(define-sort A (X) " + repeated("(Array Bool ", kDepth) + "X" +
              repeated(")", kDepth) + ")"),
      "1:" + std::to_string(21 + 12 * (kDepth - 500)) + ": a sort that names more than 1000 sorts");
  s.run("(define-sort D (X) " + repeated("(Array Bool ", 400) + "X" + repeated(")", 400) +
        ")(declare-const d (D Bool))");
  EXPECT_EQ(s.error("(declare-const e (D (D Bool)))"),
            "1:19: a sort that names more than 1000 sorts");
}

}  // namespace
}  // namespace vorn::smt2
