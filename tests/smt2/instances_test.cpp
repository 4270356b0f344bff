// Applications of functions: what is remembered of them, and how reading ends before its time.
#include "vorn/smt2/instances.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/smt2/session.h"
#include "vorn/smt2/substitution.h"

namespace vorn::smt2 {
namespace {

/// Says stop from the given question on.
class Countdown : public TerminationTest {
 public:
  bool terminate() const override { return ++asked >= last; }

  std::uint64_t last = ~std::uint64_t{0};
  mutable std::uint64_t asked = 0;
};

class InstancesTest : public testing::Test {
 protected:
  const Term* constant(const std::string& name) {
    return mgr.make_constant(mgr.make_unique_symbol(name, mgr.get_bool_type()));
  }

  TermManager mgr{false};
  InstanceCache cache;
  const Term* p = constant("p");
  const Term* q = constant("q");
  const Term* r = constant("r");
};

TEST_F(InstancesTest, AnApplicationIsItsFunctionAndItsArguments) {
  cache.renew(mgr);
  cache.add({p, q, r}, mgr.make_and(q, r));
  EXPECT_EQ(cache.find({p, q, r}), mgr.make_and(q, r));
  EXPECT_EQ(cache.find({p, r, q}), nullptr);
  EXPECT_EQ(cache.find({q, q, r}), nullptr);
  EXPECT_EQ(cache.find({p, q}), nullptr);
}

TEST_F(InstancesTest, NothingIsRememberedOfTermsThatMayBeGone) {
  cache.add({p, q}, r);
  cache.add_dependents(p, {q});
  cache.renew(mgr);
  EXPECT_EQ(cache.find({p, q}), r);
  const Term* kept[] = {p, q, r};
  mgr.collect(kept);
  cache.renew(mgr);
  EXPECT_EQ(cache.find({p, q}), nullptr);
  EXPECT_EQ(cache.find_dependents(p), nullptr);
}

TEST_F(InstancesTest, MemoryIsBounded) {
  cache.add({p, q}, r);
  cache.add_dependents(p, std::vector<const Term*>(std::size_t{1} << 21, q));
  EXPECT_EQ(cache.find({p, q}), nullptr);
  EXPECT_NE(cache.find_dependents(p), nullptr);
  cache.add({p, r}, q);
  EXPECT_EQ(cache.find_dependents(p), nullptr);
  EXPECT_EQ(cache.find({p, r}), q);
}

TEST_F(InstancesTest, AnApplicationThatComesAgainCostsNoSteps) {
  const Term* closed = mgr.make_or(q, r);
  const Function function{{p}, mgr.make_and(closed, mgr.make_not(p))};
  const Countdown never;
  TerminationPoll poll(&never);
  const Term* arg[] = {q};
  const Term* first = instantiate(mgr, function, arg, cache, &poll);
  EXPECT_EQ(first, mgr.make_and(closed, mgr.make_not(q)));
  for (std::uint32_t i = 0; i < 2 * TerminationPoll::kInterval; ++i)
    EXPECT_EQ(instantiate(mgr, function, arg, cache, &poll), first);
  EXPECT_EQ(never.asked, 0U);
}

TEST_F(InstancesTest, ABodyMayBeItsParameterOrHaveNone) {
  const Term* arg[] = {q};
  EXPECT_EQ(instantiate(mgr, {{p}, p}, arg, cache, nullptr), q);
  const Term* fresh = constant("fresh");
  EXPECT_EQ(instantiate(mgr, {{fresh}, mgr.make_not(r)}, arg, cache, nullptr), mgr.make_not(r));
}

TEST_F(InstancesTest, ArgumentsAreNotSubstitutedInto) {
  const Term* swapped[] = {q, p};
  const Function function{{p, q}, mgr.make_and(p, mgr.make_not(q))};
  EXPECT_EQ(instantiate(mgr, function, swapped, cache, nullptr), mgr.make_and(q, mgr.make_not(p)));
}

TEST_F(InstancesTest, APollEndsASubstitution) {
  const Term* body = p;
  for (std::uint32_t i = 0; i < 2 * TerminationPoll::kInterval; ++i)
    body = mgr.make_not(body);
  Countdown countdown;
  countdown.last = 3;
  TerminationPoll poll(&countdown);
  const Term* arg[] = {q};
  EXPECT_THROW(instantiate(mgr, {{p}, body}, arg, cache, &poll), Terminated);
  // Nothing half done is left.
  const Term* t = instantiate(mgr, {{p}, body}, arg, cache, nullptr);
  while (t->get_arity() != 0)
    t = t->get_arg(0);
  EXPECT_EQ(t, q);
}

TEST(Instances, FunctionsOfPoppedLevelsAreNotMistakenForLaterOnes) {
  Session s(false);
  s.run(
      "(declare-const p Bool)(push 1)(define-fun f ((a Bool)) Bool (not a))(assert (f p))(pop 1)"
      "(define-fun f ((a Bool)) Bool (and a a))(assert (f p))");
  const Term* p = s.constant("p");
  EXPECT_EQ(s.engine.assertions.back(), s.mgr.make_and(p, p));
  s.engine.collect_garbage(std::vector<const Term*>{s.constant("p"), s.constant("f")});
  s.run("(reset)(declare-const p Bool)(define-fun f ((a Bool)) Bool (or a a))(assert (f p))");
  p = s.constant("p");
  EXPECT_EQ(s.engine.assertions.back(), s.mgr.make_or(p, p));
}

// Interruption ----------------------------------------------------------------------------------

/// Functions each of which applies the one before to itself: f31 is 2^31 different terms.
std::string doubling_functions() {
  std::string script =
      "(declare-const x Float32)(define-fun f0 ((a Float32)) Float32 (fp.neg a))\n";
  for (int i = 1; i <= 31; ++i) {
    const std::string before = "f" + std::to_string(i - 1);
    script += "(define-fun f" + std::to_string(i) + " ((a Float32)) Float32 (" + before + " (" +
              before + " a)))\n";
  }
  return script;
}

struct InterruptedSession {
  InterruptedSession() { options.termination_test = &countdown; }

  Countdown countdown;
  InterpreterOptions options;
};

TEST(Interruption, EndsDefinitionsThatDouble) {
  InterruptedSession i;
  i.countdown.last = 50;
  Session s(false, i.options);
  try {
    s.interpreter.run(doubling_functions(), "t.smt2");
    FAIL() << "no interruption";
  } catch (const LimitError& e) {
    EXPECT_EQ(e.get_file(), "t.smt2");
    EXPECT_GT(e.get_position().line, 10U);
    EXPECT_LT(e.get_position().line, 25U);
    EXPECT_EQ(std::string(e.what()), "t.smt2:" + std::to_string(e.get_position().line) + ":" +
                                         std::to_string(e.get_position().column) +
                                         ": error: the limit of time or memory was reached");
    // The definitions before are there, the one under way is not.
    const std::string before = "f" + std::to_string(e.get_position().line - 2);
    const std::string under_way = "f" + std::to_string(e.get_position().line - 1);
    EXPECT_NE(s.interpreter.get_symbols().find(before), nullptr);
    EXPECT_EQ(s.interpreter.get_symbols().find(under_way), nullptr);
  }
}

TEST(Interruption, EndsLongTermsSortsAndWhatIsSkipped) {
  const std::string open = repeated("(not ", 20000);
  for (const std::string& script :
       {"(assert " + open + "true" + repeated(")", 20000) + ")",
        "(set-info :x (" + repeated("1 ", 20000) + "))",
        "(define-sort Id (X) X)(declare-const x " + repeated("(Id ", 20000) + "Bool" +
            repeated(")", 20000) + ")",
        repeated("(push 1)(pop 1)", 20000)}) {
    InterruptedSession i;
    i.countdown.last = 2;
    Session s(false, i.options);
    EXPECT_THROW(s.run(script), LimitError) << script.substr(0, 40);
    EXPECT_EQ(i.countdown.asked, 2U);
  }
}

TEST(Interruption, TakesBackTheNamesOfItsCommand) {
  InterruptedSession i;
  i.countdown.last = 1;
  Session s(false, i.options);
  EXPECT_THROW(s.run("(declare-const p Bool)(assert (and (! p :named n) " +
                     repeated("(not ", 5000) + "p" + repeated(")", 5000) + "))"),
               LimitError);
  EXPECT_NE(s.interpreter.get_symbols().find("p"), nullptr);
  EXPECT_EQ(s.interpreter.get_symbols().find("n"), nullptr);
  EXPECT_TRUE(s.interpreter.get_symbols().get_labels().empty());
  EXPECT_TRUE(s.engine.assertions.empty());
  // The session goes on.
  i.countdown.last = ~std::uint64_t{0};
  s.run("(assert (! p :named n))");
  EXPECT_EQ(s.engine.assertions.size(), 1U);
}

TEST(Interruption, IsAskedForInSessionsOfShortCommandsToo) {
  InterruptedSession i;
  i.countdown.last = 2;
  Session s(false, i.options);
  std::istringstream in(repeated("(echo \"x\")", 5000));
  EXPECT_TRUE(s.interpreter.run_interactive(in, "i"));
  EXPECT_TRUE(s.interpreter.was_limited());
  EXPECT_NE(s.out.str().find("(error \"i:"), std::string::npos);
}

TEST(Interruption, DoesNotHappenWithoutATest) {
  Session s(false);
  s.run("(assert " + repeated("(not ", 20000) + "true" + repeated(")", 20000) + ")");
  EXPECT_EQ(s.engine.assertions.size(), 1U);
}

}  // namespace
}  // namespace vorn::smt2
