// Unsat cores: what the engine is given, what is printed, and what the session is like afterwards.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/smt2/session.h"

namespace vorn::smt2 {
namespace {

/// A session with cores, over an engine that refutes what holds one of several sets of constants.
struct CoreSession : Session {
  explicit CoreSession(bool minimize = false) : Session(true, options(minimize)) {
    run("(declare-const a Bool)(declare-const b Bool)(declare-const c Bool)(declare-const d Bool)");
    engine.decide = [this](std::span<const Term* const> given) { return refute(given); };
  }

  static InterpreterOptions options(bool minimize) {
    InterpreterOptions chosen;
    chosen.produce_unsat_cores = true;
    chosen.minimize_unsat_cores = minimize;
    return chosen;
  }

  void add_conflict(const std::vector<std::string>& names) {
    std::set<const Term*> conflict;
    for (const std::string& name : names)
      conflict.insert(constant(name));
    conflicts.push_back(conflict);
  }

  /// The first conflict counts, and all that was given is said to be used where `is_coarse`.
  Answer refute(std::span<const Term* const> given) {
    ++checks;
    for (const std::set<const Term*>& conflict : conflicts) {
      const auto holds = [&](const Term* t) {
        return std::ranges::count(given, t) + std::ranges::count(engine.assertions, t) > 0;
      };
      if (!std::ranges::all_of(conflict, holds)) continue;
      engine.failed.clear();
      for (std::size_t i = given.size(); i-- > 0;) {
        if (is_coarse || conflict.contains(given[i])) engine.failed.push_back(i);
      }
      return Answer::unsat;
    }
    return given.size() < unknown_below ? Answer::unknown : Answer::sat;
  }

  std::vector<std::set<const Term*>> conflicts;
  bool is_coarse = false;
  std::size_t unknown_below = 0;  // answers on fewer assumptions are unknown, unless unsat
  int checks = 0;
};

TEST(UnsatCores, NameAssertionsInTheirOrder) {
  CoreSession s;
  s.add_conflict({"a", "b", "c"});
  s.run("(assert (! b :named |n b|))(assert c)(assert (! d :named nd))(assert (! a :named na))");
  EXPECT_EQ(s.run("(check-sat)(get-unsat-core)(get-unsat-core)"),
            "unsat\n(|n b| na)\n(|n b| na)\n");
  EXPECT_EQ(s.engine.assertions, std::vector<const Term*>{s.constant("c")});
  EXPECT_EQ(s.run("(get-assertions)"),
            "((! b :named |n b|)\n c\n (! d :named nd)\n (! a :named na))\n");
}

TEST(UnsatCores, TakeTheNameOfTheWholeAssertion) {
  CoreSession s;
  s.add_conflict({"a"});
  s.run("(assert (! (! a :named inner) :weight 3 :named outer :named late))");
  EXPECT_EQ(s.run("(check-sat)(get-unsat-core)"), "unsat\n(outer)\n");
  CoreSession within;
  within.add_conflict({"a"});
  within.run("(assert (let ((p a)) (! p :named within)))(assert (! b :named other))");
  EXPECT_EQ(within.run("(check-sat)(get-unsat-core)"), "unsat\n()\n");
}

TEST(UnsatCores, StandBesideAssumptions) {
  CoreSession s;
  s.add_conflict({"a", "b"});
  s.run("(assert (! d :named nd))(assert (! a :named na))");
  EXPECT_EQ(s.run("(check-sat-assuming (c b))(get-unsat-assumptions)(get-unsat-core)"
                  "(get-unsat-assumptions)"),
            "unsat\n(b)\n(na)\n(b)\n");
  EXPECT_EQ(s.run("(check-sat)(check-sat-assuming (d))"), "sat\nsat\n");
}

TEST(UnsatCores, FollowLevelsAndResets) {
  CoreSession s;
  s.add_conflict({"a", "b"});
  s.run("(assert (! a :named na))(push)(assert (! b :named nb))");
  EXPECT_EQ(s.run("(check-sat)(get-unsat-core)(pop)(check-sat)"), "unsat\n(na nb)\nsat\n");
  EXPECT_EQ(s.run("(assert (! b :named nb))(check-sat)(get-unsat-core)"), "unsat\n(na nb)\n");
  EXPECT_EQ(s.run("(reset-assertions)(check-sat)"), "sat\n");
  EXPECT_TRUE(s.engine.assumptions.empty());
}

TEST(UnsatCores, KeepWhatTheyNeedWhileTermsAreCollected) {
  Session s(true, CoreSession::options(false));
  s.run("(declare-const p Bool)(assert (! (or p (not p) p) :named n))(push)");
  std::string script = "(declare-const v (_ BitVec 32))";
  for (int i = 0; i < 300'000; ++i)
    script += "(assert (= v (_ bv" + std::to_string(i) + " 32)))";
  s.run(script + "(pop)(check-sat)");
  EXPECT_GT(s.mgr.get_collection_count(), 0U);
  ASSERT_EQ(s.engine.assumptions.size(), 1U);
  EXPECT_EQ(s.engine.assumptions[0], s.constant("n"));
}

TEST(UnsatCores, NeedTheOptionAndAnAnswer) {
  CoreSession s;
  const std::string tail = ": get-unsat-core: the last answer is not unsat";
  EXPECT_EQ(s.error("(check-sat)(get-unsat-core)"), "1:13" + tail);
  s.add_conflict({"a"});
  EXPECT_EQ(s.error("(assert (! a :named n))(check-sat)(push)(get-unsat-core)"), "1:42" + tail);
  Session off;
  off.engine.answer = Answer::unsat;
  EXPECT_EQ(off.error("(check-sat)(get-unsat-core)"),
            "1:13: get-unsat-core: the option :produce-unsat-cores is false");
  EXPECT_EQ(off.run("(set-option :produce-unsat-cores true)(get-option :produce-unsat-cores)"
                    "(get-option :minimize-unsat-cores)"),
            "true\nfalse\n");
}

TEST(UnsatCores, AreAskedForBeforeTheFirstAssertion) {
  Session s;
  EXPECT_EQ(s.error("(assert true)(set-option :produce-unsat-cores true)"),
            "1:26: :produce-unsat-cores must be set before the first assertion");
  s.run(
      "(set-option :produce-unsat-cores false)(reset-assertions)"
      "(set-option :produce-unsat-cores true)(assert true)(set-option :produce-unsat-cores true)");
}

TEST(UnsatCores, WithoutTheOptionNamesChangeNothing) {
  Session s;
  s.run("(declare-const p Bool)(assert (! p :named n))(check-sat)");
  EXPECT_EQ(s.engine.assertions.size(), 1U);
  EXPECT_TRUE(s.engine.assumptions.empty());
}

TEST(UnsatCores, NeedAnEngineThatHasThem) {
  InterpreterOptions options = CoreSession::options(false);
  options.has_cores = false;
  Session s(true, options);
  s.engine.answer = Answer::unsat;
  EXPECT_EQ(s.error("(assert (! false :named n))(check-sat)\n(get-unsat-core)"),
            "2:2: get-unsat-core: a check that leaves its clauses or a proof has no core");
  EXPECT_EQ(s.engine.assertions.size(), 1U);
}

/// An engine that does not support a formula.
struct Picky final : FakeEngine {
  using FakeEngine::FakeEngine;

  void assert_formula(const Term* f) override {
    if (f->to_string() == refused) throw std::invalid_argument("beyond this engine");
    FakeEngine::assert_formula(f);
  }
  Answer check_sat(std::span<const Term* const> given) override {
    for (const Term* f : given) {
      if (f->to_string() == refused) throw std::invalid_argument("beyond this engine");
    }
    return FakeEngine::check_sat(given);
  }
  std::string refused;
};

TEST(UnsatCores, WhatTheEngineRefusesIsAnErrorAtTheAssertion) {
  TermManager mgr;
  Picky engine(mgr);
  std::ostringstream out;
  Interpreter interpreter(mgr, engine, out, CoreSession::options(false));
  interpreter.run("(declare-const p Bool)(declare-const q Bool)(assert (! p :named n))", "t");
  engine.refused = "q";
  const auto error = [&](const std::string& text) {
    try {
      interpreter.run(text, "t");
    } catch (const ScriptError& e) {
      return std::string(e.what());
    }
    return std::string("no error");
  };
  EXPECT_EQ(error("(push)(assert true)\n(assert  (! q :named m))\n(check-sat)"),
            "t:2:10: error: beyond this engine");
  EXPECT_EQ(engine.calls, "push push pop push pop ");
  EXPECT_EQ(engine.assertions.size(), 1U);
  EXPECT_EQ(error("(pop)\n(check-sat-assuming (q))"), "t:2:2: error: beyond this engine");
}

// Minimisation ------------------------------------------------------------------------------------

TEST(MinimizedCores, HaveNoPartThatCanGo) {
  CoreSession s(true);
  s.is_coarse = true;
  s.add_conflict({"a", "c"});
  s.run(
      "(assert (! d :named nd))(assert (! c :named nc))(assert (! b :named nb))"
      "(assert (! a :named na))");
  EXPECT_EQ(s.run("(check-sat)(get-unsat-core)"), "unsat\n(nc na)\n");
  const int checks = s.checks;
  EXPECT_EQ(s.run("(get-unsat-core)(get-info :status)"), "(nc na)\n(:status unsat)\n");
  EXPECT_EQ(s.checks, checks);
}

TEST(MinimizedCores, TakeWhatTheEngineLeavesOut) {
  CoreSession s(true);
  s.add_conflict({"a", "b", "c", "d"});
  s.add_conflict({"b"});
  s.run(
      "(assert (! a :named na))(assert (! b :named nb))(assert (! c :named nc))"
      "(assert (! d :named nd))");
  EXPECT_EQ(s.run("(check-sat)(get-unsat-core)"), "unsat\n(nb)\n");
  // The check itself, without a, and without b.
  EXPECT_EQ(s.checks, 3);
}

/// Otherwise the two together would tell less than the truth.
TEST(MinimizedCores, LeaveOutAssumptionsThatWereNotUsed) {
  CoreSession s(true);
  s.add_conflict({"a", "b"});
  s.add_conflict({"b", "c"});
  s.run("(assert (! a :named na))(assert (! b :named nb))");
  EXPECT_EQ(s.run("(check-sat-assuming (c d))(get-unsat-core)(get-unsat-assumptions)"),
            "unsat\n(na nb)\n()\n");
}

TEST(MinimizedCores, KeepAssumptionsAndTellOfThemAfterwards) {
  CoreSession s(true);
  s.is_coarse = true;
  s.add_conflict({"a", "b"});
  s.run("(assert (! d :named nd))(assert (! a :named na))");
  EXPECT_EQ(s.run("(check-sat-assuming (c b))(get-unsat-core)(get-unsat-assumptions)"),
            "unsat\n(na)\n(c b)\n");
}

TEST(MinimizedCores, KeepPartsOfWhichNothingIsKnown) {
  CoreSession s(true);
  s.is_coarse = true;
  s.add_conflict({"a", "b"});
  s.unknown_below = 4;
  s.run("(assert (! a :named na))(assert (! b :named nb))(assert (! c :named nc))");
  EXPECT_EQ(s.run("(check-sat)(get-unsat-core)(get-info :status)"),
            "unsat\n(na nb)\n(:status unsat)\n");
}

TEST(MinimizedCores, MayBeEmpty) {
  CoreSession s(true);
  s.is_coarse = true;
  s.add_conflict({"a"});
  s.run("(assert a)(assert (! b :named nb))(assert (! c :named nc))");
  EXPECT_EQ(s.run("(check-sat)(get-unsat-core)"), "unsat\n()\n");
}

}  // namespace
}  // namespace vorn::smt2
