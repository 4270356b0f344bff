#include "tests/random/generator.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/random/operators.h"
#include "vorn/smt2/operators.h"

namespace vorn::random {
namespace {

constexpr std::uint64_t kSeeds = 600;

/// The name in "name", "(_ name 1 2)" or "(as name S)".
std::string operator_of(const std::string& head) {
  if (head.starts_with("(as ")) return head.substr(4, head.find(' ', 4) - 4);
  if (!head.starts_with("(_ ")) return head;
  return head.substr(3, head.find(' ', 3) - 3);
}

class Scripts : public testing::TestWithParam<bool> {};

TEST_P(Scripts, AreWellFormed) {
  for (std::uint64_t seed = 0; seed < kSeeds; ++seed) {
    const Script script = generate(seed, GetParam());
    EXPECT_TRUE(is_well_formed(script)) << "seed " << seed << '\n' << to_string(script);
    EXPECT_TRUE(script.back().is_check()) << "seed " << seed;
  }
}

TEST_P(Scripts, AreTheSameOfASeed) {
  std::set<std::string> texts;
  for (std::uint64_t seed = 0; seed < 50; ++seed) {
    const std::string text = to_string(generate(seed, GetParam()));
    EXPECT_EQ(text, to_string(generate(seed, GetParam())));
    EXPECT_TRUE(texts.insert(text).second) << "seed " << seed << " repeats another script";
  }
}

INSTANTIATE_TEST_SUITE_P(Generator, Scripts, testing::Bool());

TEST(Generator, UsesEveryOperatorAndCommand) {
  std::set<std::string> operators;
  std::set<std::string> keywords;
  std::set<Expression::Kind> kinds;
  std::size_t calls = 0;
  for (std::uint64_t seed = 0; seed < kSeeds; ++seed) {
    Script script = generate(seed, seed % 2 == 1);
    for (const Command& command : script)
      keywords.insert(command.keyword);
    for (const Expression* e : nodes_of(script)) {
      kinds.insert(e->kind);
      if (e->args.empty()) continue;
      operators.insert(operator_of(e->head));
      calls += e->kind == Expression::Kind::name ? 1 : 0;
    }
  }
  for (const Operator& op : get_operators()) {
    EXPECT_TRUE(operators.contains(std::string(op.name))) << op.name;
  }
  for (const char* keyword :
       {"declare-const", "declare-fun", "define-const", "define-fun", "assert", "push", "pop",
        "check-sat", "check-sat-assuming", "reset-assertions", "declare-sort"}) {
    EXPECT_TRUE(keywords.contains(keyword)) << keyword;
  }
  EXPECT_EQ(kinds.size(), 4U);
  EXPECT_GT(calls, 50U);
}

TEST(Generator, KnowsNoOperatorThatTheReaderDoesNot) {
  for (const Operator& op : get_operators()) {
    const smt2::Operator* known = smt2::find_operator(op.name);
    ASSERT_NE(known, nullptr) << op.name;
    EXPECT_TRUE(known->is_supported()) << op.name;
  }
}

TEST(WellFormed, RefusesNamesOutOfScopeAndPopsWithoutPush) {
  const Expression p = {Expression::Kind::name, "p", kBool, {}, {}};
  Command declaration;
  declaration.kind = Command::Kind::declare;
  declaration.name = "p";
  Command push;
  push.kind = Command::Kind::push;
  push.levels = 1;
  Command pop = push;
  pop.kind = Command::Kind::pop;

  EXPECT_TRUE(is_well_formed({declaration, make_assertion(p)}));
  EXPECT_FALSE(is_well_formed({make_assertion(p), declaration}));
  EXPECT_FALSE(is_well_formed({declaration, declaration}));
  EXPECT_TRUE(is_well_formed({push, declaration, pop, declaration}));
  EXPECT_FALSE(is_well_formed({push, declaration, pop, make_assertion(p)}));
  EXPECT_FALSE(is_well_formed({push, pop, pop}));
  declaration.sort = bits_sort(1);
  EXPECT_FALSE(is_well_formed({declaration, make_assertion(p)}));
}

}  // namespace
}  // namespace vorn::random
