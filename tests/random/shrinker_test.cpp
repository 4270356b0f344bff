// The shrinker on faults that are made up, so that the smallest script is known.
#include "tests/random/shrinker.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/random/generator.h"
#include "tests/random/literals.h"
#include "tests/random/live.h"

namespace vorn::random {
namespace {

bool contains(const Script& script, const std::string& operation) {
  for (const Command& command : script) {
    if (command.kind != Command::Kind::assertion) continue;
    for (const Expression* e : nodes_of(command.terms[0])) {
      if (e->head == operation && !e->args.empty()) return true;
    }
  }
  return false;
}

/// Fails where an assertion with the operation is in force at a check.
Fails occurs_at_check(const std::string& operation) {
  return [operation](const Script& script) {
    LiveCommands live;
    for (const Command& command : script) {
      if (command.is_check() && contains(live.at(make_check()), operation)) return true;
      live.execute(command);
    }
    return false;
  };
}

std::size_t count(const Script& script, Command::Kind kind) {
  return static_cast<std::size_t>(std::count_if(
      script.begin(), script.end(), [kind](const Command& c) { return c.kind == kind; }));
}

/// The scripts of the first seeds that fail.
std::vector<Script> failing_scripts(const Fails& fails) {
  std::vector<Script> scripts;
  for (std::uint64_t seed = 0; scripts.size() < 12 && seed < 5000; ++seed) {
    Script script = generate(seed);
    if (fails(script)) scripts.push_back(std::move(script));
  }
  return scripts;
}

TEST(Shrinker, LeavesOneAssertionAndOneCheckOfAFaultyOperation) {
  for (const char* operation : {"fp.isNaN", "fp.add", "bvmul", "bvult", "xor"}) {
    const Fails fails = occurs_at_check(operation);
    const std::vector<Script> scripts = failing_scripts(fails);
    ASSERT_EQ(scripts.size(), 12U) << operation;
    for (const Script& script : scripts) {
      const Script small = shrink(script, fails);
      const std::string text = to_string(small);
      EXPECT_TRUE(is_well_formed(small)) << text;
      EXPECT_TRUE(fails(small)) << text;
      EXPECT_EQ(small.size(), 2U) << text << "from\n" << to_string(script);
      EXPECT_EQ(count(small, Command::Kind::assertion), 1U) << text;
      EXPECT_EQ(count(small, Command::Kind::check), 1U) << text;
    }
  }
}

TEST(Shrinker, MakesTheArgumentsConstants) {
  const Fails fails = occurs_at_check("fp.isNaN");
  for (const Script& script : failing_scripts(fails)) {
    const Script small = shrink(script, fails);
    ASSERT_FALSE(small.empty());
    const Expression& formula = small[0].terms.at(0);
    EXPECT_EQ(formula.head, "fp.isNaN");
    ASSERT_EQ(formula.args.size(), 1U);
    const std::vector<Expression> plain = plain_literals(formula.args[0].sort);
    EXPECT_NE(std::find(plain.begin(), plain.end(), formula.args[0]), plain.end())
        << to_string(small);
  }
}

TEST(Shrinker, KeepsLevelsThatTheFaultNeeds) {
  // Fails where something was asserted on a level that is closed before a check.
  const Fails fails = [](const Script& script) {
    bool asserted = false;
    bool popped = false;
    std::size_t open = 0;
    for (const Command& command : script) {
      if (command.is_check() && popped) return true;
      if (command.kind == Command::Kind::push) open += command.levels;
      if (command.kind == Command::Kind::reset_assertions) open = 0;
      if (command.kind == Command::Kind::assertion && open > 0) asserted = true;
      if (command.kind == Command::Kind::pop) {
        open -= command.levels;
        popped = popped || asserted;
      }
    }
    return false;
  };
  const std::vector<Script> scripts = failing_scripts(fails);
  ASSERT_EQ(scripts.size(), 12U);
  for (const Script& script : scripts) {
    EXPECT_EQ(to_string(shrink(script, fails)), "(push 1)\n(assert true)\n(pop 1)\n(check-sat)\n");
  }
}

}  // namespace
}  // namespace vorn::random
