// The rules for arrays one by one: what they match, and what they have to leave alone.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/termination_test.h"

namespace vorn {
namespace {

using T = SymbolTag;

class ArrayRules : public testing::Test {
 protected:
  const Term* constant(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }
  const Term* number(int value, std::size_t width = 8) { return mgr.make_bv_number(value, width); }
  const Term* plus(const Term* t, int value) { return mgr.make_bv_add(t, number(value)); }

  /// What reading at `there` becomes of an array that was written at `here`: the array before it
  /// where the rules see that the indices differ, the value where they are one, null otherwise.
  enum class Passes { by, at, no };
  Passes read(const Term* here, const Term* there) {
    const DataType* type = mgr.get_array_type(here->get_type(), mgr.get_bv_type(8));
    const Term* before = constant("before", type);
    const Term* value = constant("value", mgr.get_bv_type(8));
    const Term* result = mgr.make_select(mgr.make_store(before, here, value), there);
    if (result == value) return Passes::at;
    return result == mgr.make_select(before, there) ? Passes::by : Passes::no;
  }

  TermManager mgr;
  const DataType* byte = mgr.get_bv_type(8);
  const DataType* memory = mgr.get_array_type(byte, byte);
  const Term* a = constant("a", memory);
  const Term* b = constant("b", memory);
  const Term* i = constant("i", byte);
  const Term* j = constant("j", byte);
  const Term* v = constant("v", byte);
  const Term* w = constant("w", byte);
};

TEST_F(ArrayRules, ReadsWhatWasWritten) {
  EXPECT_EQ(mgr.make_select(mgr.make_store(a, i, v), i), v);
  EXPECT_EQ(mgr.make_select(mgr.make_const_array(memory, v), i), v);
  const Term* unknown = mgr.make_select(mgr.make_store(a, i, v), j);
  EXPECT_EQ(unknown->get_tag(), T::array_select);
  EXPECT_EQ(unknown->get_arg(0), mgr.make_store(a, i, v));
}

TEST_F(ArrayRules, PassesByWritesThatAreElsewhereUntilOneMayNotBe) {
  const Term* once = mgr.make_store(a, i, v);
  const Term* t = mgr.make_store(mgr.make_store(once, number(3), v), number(4), w);
  EXPECT_EQ(mgr.make_select(t, number(3)), v);
  EXPECT_EQ(mgr.make_select(t, number(5)), mgr.make_select(once, number(5)));
  const Term* all = mgr.make_const_array(memory, w);
  EXPECT_EQ(mgr.make_select(mgr.make_store(all, number(3), v), number(4)), w);
}

TEST_F(ArrayRules, TellsBitVectorsApartByTheirDistance) {
  EXPECT_EQ(read(i, i), Passes::at);
  EXPECT_EQ(read(number(1), number(2)), Passes::by);
  EXPECT_EQ(read(i, plus(i, 1)), Passes::by);
  EXPECT_EQ(read(plus(i, 255), i), Passes::by);
  EXPECT_EQ(read(plus(i, 1), plus(i, 2)), Passes::by);
  EXPECT_EQ(read(plus(plus(i, 1), 2), plus(plus(i, 1), 3)), Passes::by);
  const Term* sum = mgr.make_bv_add(i, j);
  EXPECT_EQ(read(sum, plus(sum, 9)), Passes::by);
  EXPECT_EQ(read(i, j), Passes::no);
  EXPECT_EQ(read(i, plus(j, 1)), Passes::no);
  EXPECT_EQ(read(plus(plus(i, 1), 2), plus(i, 3)), Passes::no);
  EXPECT_EQ(read(i, number(1)), Passes::no);
  EXPECT_EQ(read(plus(i, 1), number(1)), Passes::no);
  EXPECT_EQ(read(i, mgr.make_bv_mul(i, number(3))), Passes::no);
}

TEST_F(ArrayRules, TellsValuesOfOtherSortsApart) {
  const Term* p = constant("p", mgr.get_bool_type());
  const Term* q = constant("q", mgr.get_bool_type());
  EXPECT_EQ(read(mgr.make_true(), mgr.make_false()), Passes::by);
  EXPECT_EQ(read(p, mgr.make_not(p)), Passes::by);
  EXPECT_EQ(read(mgr.make_not(p), p), Passes::by);
  EXPECT_EQ(read(p, q), Passes::no);
  EXPECT_EQ(read(p, mgr.make_true()), Passes::no);
  EXPECT_EQ(read(mgr.make_false(), p), Passes::no);

  const Term* mode = constant("mode", mgr.get_fprounding_type());
  EXPECT_EQ(read(mgr.make_fprounding_even(), mgr.make_fprounding_away()), Passes::by);
  EXPECT_EQ(read(mgr.make_fprounding_even(), mode), Passes::no);

  const DataType* sort = mgr.get_uninterpreted_type("S");
  EXPECT_EQ(read(mgr.make_element(sort, QNumber(0)), mgr.make_element(sort, QNumber(1))),
            Passes::by);
  EXPECT_EQ(read(mgr.make_element(sort, QNumber(0)), constant("s", sort)), Passes::no);
  EXPECT_EQ(read(constant("s", sort), constant("t", sort)), Passes::no);

  // Arrays may be equal however they were made.
  EXPECT_EQ(read(mgr.make_const_array(memory, v), mgr.make_const_array(memory, w)), Passes::no);
}

TEST_F(ArrayRules, TellsFloatsApartByValueAndNotByPattern) {
  const auto bits = [&](int pattern) { return mgr.make_fp_number(QNumber(pattern), 2, 2); };
  EXPECT_EQ(read(bits(0), bits(1)), Passes::by);
  EXPECT_EQ(read(bits(0), bits(16)), Passes::by) << "zeros of different sign";
  EXPECT_EQ(read(bits(12), bits(13)), Passes::by) << "infinity and NaN";
  EXPECT_EQ(read(bits(13), bits(14)), Passes::no) << "patterns of the one NaN";
  EXPECT_EQ(read(bits(13), mgr.make_fp_nan(2, 2)), Passes::no);
  EXPECT_EQ(read(bits(0), constant("x", mgr.get_fp_type(2, 2))), Passes::no);
}

TEST_F(ArrayRules, LeavesOutWritesThatChangeNothing) {
  EXPECT_EQ(mgr.make_store(a, i, mgr.make_select(a, i)), a);
  const Term* all = mgr.make_const_array(memory, v);
  EXPECT_EQ(mgr.make_store(all, i, v), all);
  EXPECT_EQ(mgr.make_store(all, i, w)->get_tag(), T::array_store);
  EXPECT_EQ(mgr.make_store(a, i, mgr.make_select(a, j))->get_tag(), T::array_store);
  EXPECT_EQ(mgr.make_store(a, i, mgr.make_select(b, i))->get_tag(), T::array_store);
}

TEST_F(ArrayRules, LeavesOutWritesThatAreWrittenOver) {
  EXPECT_EQ(mgr.make_store(mgr.make_store(a, i, v), i, w), mgr.make_store(a, i, w));
  EXPECT_EQ(mgr.make_store(mgr.make_store(a, i, v), i, mgr.make_select(a, i)), a);
  EXPECT_EQ(mgr.make_store(mgr.make_store(a, i, v), j, w)->get_arg(0), mgr.make_store(a, i, v));
}

TEST_F(ArrayRules, ComparesArraysByWhatTheyDifferIn) {
  EXPECT_EQ(mgr.make_equal(mgr.make_const_array(memory, v), mgr.make_const_array(memory, w)),
            mgr.make_equal(v, w));
  EXPECT_EQ(mgr.make_equal(mgr.make_store(a, i, v), mgr.make_store(a, i, w)), mgr.make_equal(v, w));
  EXPECT_EQ(mgr.make_equal(a, a), mgr.make_true());
  const std::vector<std::pair<const Term*, const Term*>> open = {
      {a, b},
      {mgr.make_store(a, i, v), mgr.make_store(b, i, v)},
      {mgr.make_store(a, i, v), mgr.make_store(a, j, v)},
      {a, mgr.make_store(a, i, v)},
      {a, mgr.make_const_array(memory, v)}};
  for (const auto& [x, y] : open)
    EXPECT_EQ(mgr.make_equal(x, y)->get_tag(), T::equal) << x->to_string();
}

TEST_F(ArrayRules, TellsElementsOfAnUninterpretedSortApart) {
  const DataType* sort = mgr.get_uninterpreted_type("S");
  const Term* first = mgr.make_element(sort, QNumber(0));
  EXPECT_EQ(mgr.make_equal(first, mgr.make_element(sort, QNumber(1))), mgr.make_false());
  EXPECT_EQ(mgr.make_equal(first, first), mgr.make_true());
  EXPECT_EQ(mgr.make_equal(first, constant("s", sort))->get_tag(), T::equal);
}

TEST_F(ArrayRules, NoneIsAppliedWithoutRewriting) {
  TermManager plain(false);
  const DataType* type = plain.get_array_type(plain.get_bool_type(), plain.get_bool_type());
  const Term* t = plain.make_true();
  const Term* all = plain.make_const_array(type, t);
  EXPECT_EQ(plain.make_select(all, t)->to_string(),
            "(select ((as const (Array Bool Bool)) true) true)");
  EXPECT_EQ(plain.make_store(all, t, t)->get_tag(), T::array_store);
  EXPECT_EQ(plain.make_equal(all, all)->get_tag(), T::equal);
}

TEST_F(ArrayRules, ChainsMayBeAsLongAsMemoryAllows) {
  constexpr int kWrites = 100'000;
  const DataType* word = mgr.get_bv_type(32);
  const DataType* words = mgr.get_array_type(word, byte);
  const Term* start = constant("start", words);
  const Term* base = constant("base", word);
  const Term* fixed = start;
  const Term* relative = start;
  for (int n = 0; n < kWrites; ++n) {
    fixed = mgr.make_store(fixed, number(n, 32), v);
    relative = mgr.make_store(relative, mgr.make_bv_add(base, number(n, 32)), v);
  }
  const Term* beyond = number(kWrites, 32);
  EXPECT_EQ(mgr.make_select(fixed, beyond), mgr.make_select(start, beyond));
  const Term* far = mgr.make_bv_add(base, beyond);
  EXPECT_EQ(mgr.make_select(relative, far), mgr.make_select(start, far));
  EXPECT_EQ(mgr.make_select(fixed, number(0, 32)), v);
  EXPECT_EQ(mgr.make_store(fixed, beyond, mgr.make_select(fixed, beyond))->get_arg(0), fixed);
  EXPECT_EQ(mgr.make_equal(fixed, relative)->get_tag(), T::equal);
  EXPECT_GT(fixed->to_string().size(), kWrites * std::string("(store )").size());
}

TEST_F(ArrayRules, ALongReadAsksWhetherToStop) {
  struct Impatient : TerminationTest {
    bool terminate() const override { return true; }
  };
  const Term* t = a;
  for (int n = 0; n < 10'000; ++n)
    t = mgr.make_store(t, mgr.make_bv_add(i, number(n % 200)), n % 2 == 0 ? v : w);
  const Term* beyond = plus(i, 250);
  const Impatient test;
  mgr.set_termination_test(&test);
  EXPECT_THROW(mgr.make_select(t, beyond), Terminated);
  mgr.set_termination_test(nullptr);
  EXPECT_EQ(mgr.make_select(t, beyond), mgr.make_select(a, beyond));
}

}  // namespace
}  // namespace vorn
