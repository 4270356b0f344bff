// Evaluation of arrays, functions and uninterpreted sorts, and the literals of their values.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/semantics/array_sorts.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/term_manager.h"

namespace vorn::semantics {
namespace {

using Sorts = std::vector<const DataType*>;

class ArrayEvaluation : public testing::Test {
 protected:
  const Term* constant(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }
  Evaluator::Assignment assigned() {
    return [this](const Term* t) { return assignment.at(t); };
  }

  TermManager mgr{false};
  ArrayValues arrays;
  std::map<const Term*, QNumber> assignment;
  const DataType* byte = mgr.get_bv_type(8);
  const DataType* memory = mgr.get_array_type(byte, byte);
  const DataType* people = mgr.get_uninterpreted_type("People");
};

TEST_F(ArrayEvaluation, ReadsWhatWasWrittenLast) {
  const Term* a = constant("a", memory);
  const Term* i = constant("i", byte);
  const Term* j = constant("j", byte);
  const auto number = [&](int value) { return mgr.make_bv_number(value, 8); };
  const Term* t = mgr.make_store(mgr.make_store(a, i, number(1)), j, number(2));
  assignment = {{a, arrays.make_constant(memory, QNumber(9))}, {i, QNumber(3)}, {j, QNumber(3)}};
  {
    Evaluator same(mgr, assigned(), {}, &arrays);
    EXPECT_EQ(same.evaluate(mgr.make_select(t, i)), QNumber(2));
    EXPECT_EQ(same.evaluate(mgr.make_select(t, number(4))), QNumber(9));
    EXPECT_EQ(same.evaluate(mgr.make_equal(t, mgr.make_store(a, j, number(2)))), QNumber(1));
  }
  assignment[j] = QNumber(4);
  Evaluator other(mgr, assigned(), {}, &arrays);
  EXPECT_EQ(other.evaluate(mgr.make_select(t, i)), QNumber(1));
  EXPECT_EQ(other.evaluate(mgr.make_equal(t, mgr.make_store(a, j, number(2)))), QNumber(0));
  const Term* chosen = mgr.make_term_ite(mgr.make_equal(i, j), a, t);
  EXPECT_EQ(other.evaluate(mgr.make_equal(chosen, t)), QNumber(1));
  EXPECT_EQ(other.evaluate(mgr.make_select(mgr.make_const_array(memory, i), j)), QNumber(3));
}

TEST_F(ArrayEvaluation, WithoutATableOfOthersItHasItsOwn) {
  const Term* x = mgr.make_bv_number(7, 8);
  const Term* all = mgr.make_const_array(memory, x);
  Evaluator evaluator(mgr, [](const Term*) { return QNumber(); });
  EXPECT_EQ(evaluator.evaluate(mgr.make_equal(all, mgr.make_store(all, x, x))), QNumber(1));
  EXPECT_EQ(evaluator.evaluate(mgr.make_select(all, x)), QNumber(7));
}

TEST_F(ArrayEvaluation, FunctionsHaveTheValuesThatTheyAreGiven) {
  const Symbol* f = mgr.make_unique_symbol("f", Sorts{byte, people}, byte);
  const Term* x = constant("x", byte);
  const Term* p = constant("p", people);
  const Term* once = mgr.make_application(f, std::vector{x, p});
  const Term* twice = mgr.make_application(f, std::vector{once, p});
  assignment = {{x, QNumber(5)}, {p, QNumber(2)}};
  Evaluator evaluator(mgr, assigned(), [&](const Term* t, std::span<const QNumber> values) {
    EXPECT_EQ(t->get_symbol(), f);
    return values[0] + values[1];
  });
  EXPECT_EQ(evaluator.evaluate(once), QNumber(7));
  EXPECT_EQ(evaluator.evaluate(twice), QNumber(9));
}

TEST_F(ArrayEvaluation, WhatIsLeftOpenIsPlain) {
  const Term* x = mgr.make_bv_number(7, 8);
  const auto apply = [&](const DataType* result) {
    return mgr.make_application(mgr.make_unique_symbol("f", Sorts{byte}, result), {&x, 1});
  };
  Evaluator evaluator(
      mgr, [](const Term*) { return QNumber(); }, {}, &arrays);
  EXPECT_EQ(evaluator.evaluate(apply(byte)), QNumber(0));
  EXPECT_EQ(evaluator.evaluate(apply(people)), QNumber(0));
  EXPECT_EQ(evaluator.evaluate(apply(memory)), arrays.make_plain(memory));
}

TEST_F(ArrayEvaluation, FunctionsGiveTheOneNaN) {
  const DataType* small = mgr.get_fp_type(2, 2);
  const Symbol* f = mgr.make_unique_symbol("f", Sorts{byte}, small);
  const Term* x = mgr.make_bv_number(7, 8);
  const Term* t = mgr.make_application(f, {&x, 1});
  Evaluator evaluator(
      mgr, [](const Term*) { return QNumber(); },
      [](const Term*, std::span<const QNumber>) { return QNumber(0b0'11'10); });
  EXPECT_EQ(evaluator.evaluate(mgr.make_equal(t, mgr.make_fp_nan(2, 2))), QNumber(1));
}

TEST_F(ArrayEvaluation, ElementsOfUninterpretedSortsAreTheirNumbers) {
  const Term* p = constant("p", people);
  assignment = {{p, QNumber(4)}};
  Evaluator evaluator(mgr, assigned());
  EXPECT_EQ(evaluator.evaluate(mgr.make_element(people, QNumber(4))), QNumber(4));
  EXPECT_EQ(evaluator.evaluate(mgr.make_equal(p, mgr.make_element(people, QNumber(4)))),
            QNumber(1));
  EXPECT_EQ(evaluator.evaluate(mgr.make_equal(p, mgr.make_element(people, QNumber(3)))),
            QNumber(0));
}

TEST_F(ArrayEvaluation, WhatIsAssumedStandsAboveArguments) {
  const Term* a = constant("a", memory);
  const Term* x = mgr.make_bv_number(7, 8);
  const Term* read = mgr.make_select(a, x);
  const Term* write = mgr.make_store(a, x, x);
  Evaluator evaluator(
      mgr, [&](const Term*) { return arrays.make_plain(memory); }, {}, &arrays);
  evaluator.assume(read, QNumber(33));
  evaluator.assume(write, arrays.make_constant(memory, QNumber(1)));
  EXPECT_EQ(evaluator.evaluate(read), QNumber(33));
  EXPECT_EQ(evaluator.evaluate(mgr.make_select(write, x)), QNumber(1));
}

TEST_F(ArrayEvaluation, LiteralsHaveTheValuesThatTheyWereMadeOf) {
  std::mt19937_64 random(1);
  for (const bool rewrite : {true, false}) {
    TermManager manager(rewrite);
    ArrayValues table;
    Evaluator evaluator(
        manager, [](const Term* t) -> QNumber { throw std::logic_error(t->to_string()); }, {},
        &table);
    for (const DataType* type : make_test_sorts(manager)) {
      for (int n = 0; n < 50; ++n) {
        const QNumber value = random_value(table, type, random);
        const Term* literal = make_literal(manager, type, value, table);
        ASSERT_EQ(evaluator.evaluate(literal), value) << literal->to_string();
        ASSERT_EQ(make_literal(manager, type, value, table), literal);
      }
    }
  }
}

TEST_F(ArrayEvaluation, LiteralsOfArraysNeedATable) {
  EXPECT_THROW(make_literal(mgr, memory, QNumber(0)), std::logic_error);
}

TEST_F(ArrayEvaluation, LiteralsOfArraysWriteByIndex) {
  QNumber array = arrays.make_constant(memory, QNumber(1));
  for (const int n : {200, 3, 77})
    array = arrays.store(array, QNumber(n), QNumber(n + 1));
  EXPECT_EQ(make_literal(mgr, memory, array, arrays)->to_string(),
            "(store (store (store ((as const (Array (_ BitVec 8) (_ BitVec 8))) #x01) "
            "#x03 #x04) #x4d #x4e) #xc8 #xc9)");
  const DataType* named = mgr.get_array_type(people, people);
  const QNumber pairs = arrays.store(arrays.make_plain(named), QNumber(1), QNumber(2));
  EXPECT_EQ(make_literal(mgr, named, pairs, arrays)->to_string(),
            "(store ((as const (Array People People)) (as @People!0 People)) "
            "(as @People!1 People) (as @People!2 People))");
}

TEST_F(ArrayEvaluation, LongChainsTakeAPathEach) {
  const DataType* word = mgr.get_bv_type(32);
  const DataType* words = mgr.get_array_type(word, word);
  const Term* first = mgr.make_const_array(words, mgr.make_bv_number(0, 32));
  const Term* up = first;
  const Term* down = first;
  constexpr int kWrites = 100'000;
  for (int n = 0; n < kWrites; ++n) {
    const Term* low = mgr.make_bv_number(n, 32);
    const Term* high = mgr.make_bv_number(kWrites - 1 - n, 32);
    up = mgr.make_store(up, low, low);
    down = mgr.make_store(down, high, high);
  }
  Evaluator evaluator(mgr, assigned());
  EXPECT_EQ(evaluator.evaluate(mgr.make_equal(up, down)), QNumber(1));
  EXPECT_EQ(evaluator.evaluate(mgr.make_equal(
                up, mgr.make_store(down, mgr.make_bv_number(7, 32), mgr.make_bv_number(8, 32)))),
            QNumber(0));
}

}  // namespace
}  // namespace vorn::semantics
