// Sessions that come as a stream, and the commands and options that such sessions use.
#include <gtest/gtest.h>

#include "tests/smt2/session.h"

namespace vorn::smt2 {
namespace {

/// What an interactive session prints.
std::string talk(Session& s, const std::string& text, bool clean = true) {
  s.out.str("");
  std::istringstream in(text);
  EXPECT_EQ(s.interpreter.run_interactive(in, "in"), clean);
  return s.out.str();
}

TEST(Interactive, AnErrorEndsItsCommandOnly) {
  Session s;
  EXPECT_EQ(talk(s,
                 "(declare-const p Bool)\n(assert (and p q))\n(assert p) foo\n(check-sat)\n"
                 "(get-info :error-behavior)",
                 false),
            "(error \"in:2:16: error: unknown symbol 'q'\")\n"
            "(error \"in:3:12: error: expected '(' to open a command, got 'foo'\")\n"
            "sat\n(:error-behavior continued-execution)\n");
  EXPECT_EQ(s.engine.assertions.size(), 1U);
}

TEST(Interactive, ACommandThatFailsLeavesNoNames) {
  Session s;
  EXPECT_EQ(talk(s, "(assert (and (! true :named a) q))(assert (! false :named a))(get-assertions)",
                 false),
            "(error \"in:1:32: error: unknown symbol 'q'\")\n((! false :named a))\n");
}

TEST(Interactive, QuotesAreDoubledInErrors) {
  Session s;
  EXPECT_EQ(talk(s, "(assert \"x\")", false),
            "(error \"in:1:9: error: string literals are not supported\")\n");
  EXPECT_EQ(talk(s, "(set-info \"x\")", false),
            "(error \"in:1:11: error: expected a keyword, got '\"\"x\"\"'\")\n");
}

TEST(Interactive, ExitEndsTheSession) {
  Session s;
  EXPECT_EQ(talk(s, "(exit)(check-sat)"), "");
  EXPECT_EQ(talk(s, ""), "");
}

TEST(Interactive, WhatIsNeverClosedIsAnError) {
  Session s;
  EXPECT_EQ(talk(s, "(check-sat)\n (assert (not", false),
            "sat\n(error \"in:2:10: error: this '(' is never closed\")\n");
}

TEST(Interactive, LevelsOutliveErrors) {
  Session s;
  talk(s, "(push 2)(declare-const p Bool)(pop 5)(assert p)(pop 1)(assert p)", false);
  EXPECT_EQ(s.engine.calls, "push push pop ");
  EXPECT_EQ(talk(s, "(get-info :assertion-stack-levels)"), "(:assertion-stack-levels 1)\n");
}

// Commands --------------------------------------------------------------------------------------

TEST(Assignment, ListsTheValuesOfNamedFormulas) {
  Session s;
  s.run(
      "(declare-const p Bool)(declare-const x Float32)"
      "(assert (! (not (! p :named |a b|)) :named top))"
      "(assert (fp.eq (! x :named value) x))");
  const Term* top = s.engine.assertions.front();
  s.engine.values[top] = s.mgr.make_true();
  EXPECT_EQ(s.run("(check-sat)(get-assignment)"), "sat\n((|a b| false) (top true))\n");
}

TEST(Assignment, FollowsLevels) {
  Session s;
  s.run("(declare-const p Bool)(push)(assert (! p :named inner))(pop)(check-sat)");
  EXPECT_EQ(s.run("(get-assignment)"), "()\n");
}

TEST(Assignment, NeedsItsOptionAndAModel) {
  Session s;
  EXPECT_EQ(s.error("(get-assignment)"),
            "1:2: get-assignment: there is no model, the last answer is not sat");
  EXPECT_EQ(s.error("(set-option :produce-assignments false)(check-sat)(get-assignment)"),
            "1:52: get-assignment: the option :produce-assignments is false");
}

TEST(UnsatAssumptions, ArePrintedAsTheUserWroteThem) {
  Session s;
  s.engine.answer = Answer::unsat;
  s.engine.failed = {1, 2};
  EXPECT_EQ(s.run("(declare-const p Bool)(check-sat-assuming (p (not  p) |p|))"
                  "(get-unsat-assumptions)"),
            "unsat\n((not p) |p|)\n");
}

TEST(UnsatAssumptions, NeedUnsat) {
  Session s;
  EXPECT_EQ(s.error("(check-sat-assuming (true))(get-unsat-assumptions)"),
            "1:29: get-unsat-assumptions: the last answer is not unsat");
}

TEST(Options, NumbersAreKeptAndTheSeedReachesTheEngine) {
  Session s;
  EXPECT_EQ(s.run("(set-option :random-seed 7)(get-option :random-seed)"
                  "(set-option :verbosity 2)(get-option :verbosity)"),
            "7\n2\n");
  EXPECT_EQ(s.engine.seed, 7U);
  EXPECT_EQ(s.run("(get-option :regular-output-channel)(get-option :diagnostic-output-channel)"),
            "\"stdout\"\n\"stderr\"\n");
  EXPECT_EQ(s.error("(set-option :random-seed true)"), "1:26: expected a numeral, got 'true'");
}

TEST(Options, GlobalDeclarationsOutliveLevels) {
  Session s;
  s.run(
      "(set-option :global-declarations true)(push)(declare-const p Bool)"
      "(define-fun f () Bool p)(define-sort S () Bool)(pop)(assert f)(declare-const q S)"
      "(reset-assertions)(assert (and p q))");
  EXPECT_EQ(s.engine.assertions.size(), 1U);
  EXPECT_EQ(s.error("(declare-const p Bool)"), "1:16: 'p' is already declared");
  s.run("(reset)(declare-const p Bool)(push)(declare-const r Bool)(pop)");
  EXPECT_EQ(s.error("(assert r)"), "1:9: unknown symbol 'r'");
}

TEST(Options, GlobalDeclarationsComeBeforeDeclarations) {
  Session s;
  EXPECT_EQ(s.error("(declare-const p Bool)(set-option :global-declarations true)"),
            "1:35: :global-declarations must be set before the first declaration");
}

TEST(Logic, IsOneOfTheStandardsAndSetOnce) {
  for (const std::string logic : {"QF_FP", "QF_BVFP", "QF_BV", "ALL", "QF_ABVFPLRA", "UFNIRA"}) {
    Session s;
    EXPECT_EQ(s.run("(set-logic " + logic + ")"), "") << logic;
    EXPECT_EQ(s.error("(set-logic QF_FP)"), "1:2: set-logic: the logic is already set");
    EXPECT_EQ(s.run("(reset)(set-logic QF_FP)"), "");
  }
  Session s;
  EXPECT_EQ(s.error("(set-logic QF_FPP)"), "1:12: unknown logic 'QF_FPP'");
  EXPECT_EQ(s.error("(set-logic QF_)"), "1:12: unknown logic 'QF_'");
}

TEST(StateScript, DeclaresAssertsAndChecks) {
  Session s;
  s.run(
      "(declare-const x Float32)(push)(declare-const |a b| Bool)(assert (or |a b| (fp.isNaN x)))"
      "(check-sat-assuming ((not |a b|)))");
  const std::string script = s.interpreter.get_state_script();
  Session other;
  EXPECT_EQ(other.run(script), "sat\n");
  EXPECT_EQ(other.engine.assertions.size(), 2U);
}

TEST(InternalErrors, AreNoErrorsOfTheScript) {
  struct Broken : FakeEngine {
    using FakeEngine::FakeEngine;
    Answer check_sat(std::span<const Term* const> /*assumed*/) override {
      throw InternalError("broken");
    }
  };
  TermManager mgr;
  Broken engine(mgr);
  std::ostringstream out;
  Interpreter interpreter(mgr, engine, out);
  EXPECT_THROW(interpreter.run("(check-sat)", "t.smt2"), InternalError);
  std::istringstream in("(check-sat)");
  EXPECT_THROW(interpreter.run_interactive(in, "in"), InternalError);
}

TEST(Garbage, IsDroppedWhenLevelsAre) {
  Session s;
  s.run("(declare-const x (_ BitVec 32))(assert (bvult x #x00000005))");
  for (int i = 0; i < 400; ++i) {
    std::string script = "(push)(declare-const y (_ BitVec 32))(assert (= x y";
    for (int k = 0; k < 1000; ++k)
      script += " (bvadd y (_ bv" + std::to_string(i * 1000 + k) + " 32))";
    s.run(script + "))(check-sat)(pop)");
  }
  // A million terms were made in all.
  EXPECT_LT(s.mgr.get_term_count(), 600'000U);
  EXPECT_EQ(s.run("(get-assertions)(get-info :assertion-stack-levels)"),
            "((bvult x #x00000005))\n(:assertion-stack-levels 0)\n");
}

}  // namespace
}  // namespace vorn::smt2
