// Definitions and truth values among assertions, level by level.
#include "vorn/rewrite/top_level.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/rewrite/rewriting.h"

namespace vorn::rewrite {
namespace {

class TopLevelTest : public testing::Test {
 protected:
  const Term* constant(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }
  const Term* bits(int value) { return mgr.make_bv_number(value, 4); }
  const Term* plus_one(const Term* t) { return mgr.make_bv_add(t, bits(1)); }
  const Term* less(const Term* a, const Term* b) { return mgr.make_bv_ult(a, b); }
  std::vector<const Term*> simplify(const std::vector<const Term*>& assertions) {
    return top.simplify(assertions);
  }
  /// The term in place of a constant; null where it has no definition.
  const Term* value_of(const Term* constant) const {
    for (const Definition& definition : top.get_definitions()) {
      if (definition.constant == constant) return definition.value;
    }
    return nullptr;
  }

  using Terms = std::vector<const Term*>;

  TermManager mgr;
  TopLevel top{mgr};
  const Term* x = constant("x", mgr.get_bv_type(4));
  const Term* y = constant("y", mgr.get_bv_type(4));
  const Term* z = constant("z", mgr.get_bv_type(4));
  const Term* p = constant("p", mgr.get_bool_type());
  const Term* q = constant("q", mgr.get_bool_type());
  const Term* r = constant("r", mgr.get_bool_type());
};

TEST_F(TopLevelTest, TakesConjunctionsApart) {
  const Term* a = less(x, y);
  const Term* b = less(y, z);
  const Term* c = less(z, bits(7));
  const Term* neither = mgr.make_not(mgr.make_or(mgr.make_not(b), mgr.make_not(c)));
  EXPECT_TRUE(std::ranges::is_permutation(simplify({mgr.make_and(a, neither), a}), Terms{a, b, c}));
}

TEST_F(TopLevelTest, KnowsWhatIsAsserted) {
  const Term* a = less(x, y);
  const Term* b = less(y, z);
  EXPECT_EQ(simplify({mgr.make_or(mgr.make_not(a), b), a}), (Terms{b, a}));
  EXPECT_EQ(top.get_truth_count(), 1U);
}

TEST_F(TopLevelTest, StatesWhatContradicts) {
  const Term* a = less(x, y);
  const Terms stated = simplify({a, mgr.make_not(a)});
  EXPECT_EQ(stated.back(), mgr.make_false());
  EXPECT_EQ(simplify({p, mgr.make_not(p)}), Terms{mgr.make_false()});
}

TEST_F(TopLevelTest, DefinesConstantsOfAllSorts) {
  const Term* f = constant("f", mgr.get_fp_type(3, 4));
  const Term* g = constant("g", mgr.get_fp_type(3, 4));
  const Term* mode = constant("m", mgr.get_fprounding_type());
  const Term* sum = mgr.make_fp_add(mgr.make_fprounding_zero(), g, g);
  const Term* one = mgr.make_fp_number(QNumber(0b00110000), 3, 4);
  const Terms stated =
      simplify({mgr.make_equal(x, plus_one(y)), mgr.make_equal(mode, mgr.make_fprounding_zero()),
                mgr.make_equal(f, mgr.make_fp_add(mode, g, g)), mgr.make_fp_equal(one, g),
                mgr.make_equal(p, less(x, y)), mgr.make_xor(q, r)});
  EXPECT_TRUE(stated.empty());
  EXPECT_EQ(value_of(x), plus_one(y));
  EXPECT_EQ(value_of(mode), mgr.make_fprounding_zero());
  EXPECT_EQ(value_of(g), one);
  EXPECT_EQ(value_of(f), mgr.make_fp_add(mgr.make_fprounding_zero(), one, one));
  EXPECT_NE(value_of(f), sum);
  EXPECT_EQ(value_of(p), less(plus_one(y), y));
  EXPECT_EQ(value_of(r), mgr.make_not(q));
  EXPECT_EQ(top.get_definition_count(), 6U);
}

/// Two zeros are equal numbers, and NaN equals nothing: no value follows.
TEST_F(TopLevelTest, DefinesNothingByNumbersThatAreNotUnique) {
  const Term* f = constant("f", mgr.get_fp_type(3, 4));
  const Terms open = {mgr.make_fp_equal(f, mgr.make_fp_number(QNumber(0), 3, 4)),
                      mgr.make_fp_equal(mgr.make_fp_nan(3, 4), f),
                      mgr.make_fp_equal(f, constant("g", mgr.get_fp_type(3, 4)))};
  EXPECT_EQ(simplify(open), open);
}

TEST_F(TopLevelTest, PrefersLiteralsAndOlderConstants) {
  EXPECT_EQ(simplify({mgr.make_equal(x, plus_one(y)), mgr.make_equal(x, bits(3)),
                      mgr.make_equal(z, y), less(z, bits(9))}),
            (Terms{mgr.make_equal(bits(3), plus_one(y)), less(y, bits(9))}));
  EXPECT_EQ(value_of(x), bits(3));
  EXPECT_EQ(value_of(z), y);
}

TEST_F(TopLevelTest, LeavesWhatOccursInItsOwnValue) {
  const Terms own = {mgr.make_equal(x, mgr.make_bv_mul(x, y)), mgr.make_xor(p, mgr.make_or(p, q))};
  EXPECT_EQ(simplify(own), own);
  EXPECT_TRUE(top.get_definitions().empty());
}

/// One of the equations is left of a cycle, and says that a value is its own successor's successor.
TEST_F(TopLevelTest, LeavesOneOfACycle) {
  const auto next = [this](const Term* t) { return mgr.make_bv_mul(t, mgr.make_bv_add(t, t)); };
  const Terms stated = simplify(
      {mgr.make_equal(x, next(y)), mgr.make_equal(y, next(z)), mgr.make_equal(z, next(x))});
  ASSERT_EQ(stated.size(), 1U);
  EXPECT_EQ(top.get_definitions().size(), 2U);
  EXPECT_EQ(find_constants(mgr, stated[0]).size(), 1U);
}

/// The way back may lead through a term that was entered before any of the constants.
TEST_F(TopLevelTest, LeavesOneOfCyclesThatShareATerm) {
  const Term* shared = mgr.make_bv_mul(mgr.make_bv_add(x, y), z);
  const auto apart = [&](int value) { return mgr.make_bv_xor(shared, bits(value)); };
  const Terms equations = {mgr.make_equal(x, apart(1)), mgr.make_equal(y, apart(2)),
                           mgr.make_equal(z, apart(3))};
  const Terms stated = simplify(equations);
  EXPECT_EQ(stated.size() + top.get_definitions().size(), 3U);
  for (const Definition& definition : top.get_definitions()) {
    for (const Term* t : find_constants(mgr, definition.value))
      EXPECT_EQ(value_of(t), nullptr);
  }
}

TEST_F(TopLevelTest, GoesOnWithWhatFollows) {
  const Term* a = less(x, bits(3));
  // p gives y = 5, that a, and a q.
  const Terms stated =
      simplify({mgr.make_or(mgr.make_not(a), q), mgr.make_term_ite(p, a, r),
                mgr.make_or(mgr.make_not(p), mgr.make_equal(y, bits(5))), p, less(x, y)});
  EXPECT_EQ(stated, (Terms{a, less(x, bits(5))}));
  EXPECT_EQ(value_of(q), mgr.make_true());
  EXPECT_EQ(value_of(y), bits(5));
}

TEST_F(TopLevelTest, ForgetsPoppedLevels) {
  const Term* claim = mgr.make_or(less(x, y), q);
  top.push();
  simplify({mgr.make_equal(x, bits(2)), q});
  EXPECT_EQ(value_of(x), bits(2));
  EXPECT_TRUE(simplify({claim}).empty());
  top.pop();
  EXPECT_TRUE(top.get_definitions().empty());
  EXPECT_EQ(simplify({claim}), Terms{claim});
}

/// Of a constant that was stated before the value is stated, too.
TEST_F(TopLevelTest, StatesValuesOfWhatWasStated) {
  const Term* before = less(x, y);
  EXPECT_EQ(simplify({before}), Terms{before});
  top.push();
  const Term* value = mgr.make_equal(y, bits(2));
  EXPECT_EQ(simplify({value, less(y, z)}), (Terms{value, less(bits(2), z)}));
  EXPECT_TRUE(top.get_definitions().empty());
  const Term* sum = mgr.make_equal(x, plus_one(z));
  EXPECT_EQ(simplify({sum}), Terms{sum});
  EXPECT_EQ(simplify({mgr.make_equal(y, bits(3))}), Terms{mgr.make_false()});
  top.pop();
  EXPECT_EQ(simplify({mgr.make_equal(y, bits(3))}), Terms{mgr.make_equal(y, bits(3))});
}

/// A definition is kept from what it is made of being defined later, on any level.
TEST_F(TopLevelTest, KeepsConstantsOfDefinitions) {
  EXPECT_TRUE(simplify({mgr.make_equal(x, plus_one(y))}).empty());
  top.push();
  const Term* back = mgr.make_equal(y, plus_one(x));
  EXPECT_EQ(simplify({back}), Terms{mgr.make_equal(y, plus_one(plus_one(y)))});
}

TEST_F(TopLevelTest, LearnsNothingFromAssumptions) {
  simplify({mgr.make_equal(x, bits(4)), less(y, z)});
  top.push();
  EXPECT_EQ(top.simplify_assumption(less(x, bits(4))), mgr.make_false());
  EXPECT_EQ(top.simplify_assumption(p), p);
  EXPECT_EQ(top.simplify_assumption(mgr.make_or(mgr.make_not(p), mgr.make_not(less(y, z)))),
            mgr.make_not(p));
}

TEST_F(TopLevelTest, FollowsLongChainsInEitherOrder) {
  constexpr int kLength = 100'000;
  Terms chain;
  std::vector<const Term*> constants{x};
  for (int i = 1; i <= kLength; ++i) {
    constants.push_back(constant("c", mgr.get_bv_type(4)));
    chain.push_back(mgr.make_equal(constants[i], mgr.make_bv_mul(constants[i - 1], y)));
  }
  top.push();
  EXPECT_TRUE(simplify(chain).empty());
  EXPECT_EQ(top.get_definitions().size(), static_cast<std::size_t>(kLength));
  const Term* end = value_of(constants.back());
  top.pop();
  std::ranges::reverse(chain);
  EXPECT_TRUE(simplify(chain).empty());
  EXPECT_EQ(value_of(constants.back()), end);
}

/// A ring of as many: one equation is left.
TEST_F(TopLevelTest, FollowsLongCycles) {
  constexpr int kLength = 100'000;
  Terms ring;
  std::vector<const Term*> constants;
  for (int i = 0; i < kLength; ++i)
    constants.push_back(constant("c", mgr.get_bv_type(4)));
  for (int i = 0; i < kLength; ++i)
    ring.push_back(mgr.make_equal(constants[i], mgr.make_bv_mul(constants[(i + 1) % kLength], y)));
  EXPECT_EQ(simplify(ring).size(), 1U);
  EXPECT_EQ(top.get_definitions().size(), static_cast<std::size_t>(kLength - 1));
}

/// Each value has all constants in it, which would be walked again for each of them.
TEST_F(TopLevelTest, GivesUpOnManyCycles) {
  constexpr int kCount = 3'000;
  const Term* sum = y;
  std::vector<const Term*> constants;
  for (int i = 0; i < kCount; ++i) {
    constants.push_back(constant("c", mgr.get_bv_type(4)));
    sum = mgr.make_bv_mul(sum, constants.back());
  }
  Terms equations;
  for (int i = 0; i < kCount; ++i)
    equations.push_back(mgr.make_equal(constants[i], mgr.make_bv_mul(sum, bits(3))));
  const Terms stated = simplify(equations);
  EXPECT_EQ(stated.size() + top.get_definitions().size(), equations.size());
}

TEST_F(TopLevelTest, EndsWhenItIsTold) {
  class Always : public TerminationTest {
   public:
    bool terminate() const override { return true; }
  };
  const Always always;
  TopLevel ended(mgr, &always);
  Terms chain;
  for (int i = 0; i < 10'000; ++i)
    chain.push_back(less(constant("c", mgr.get_bv_type(4)), x));
  EXPECT_THROW(ended.simplify(chain), Terminated);
}

}  // namespace
}  // namespace vorn::rewrite
