// Sessions that come as a stream, and the commands and options that such sessions use.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>

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

TEST(Options, WhatHasNoEffectIsTakenWithoutAWord) {
  Session s;
  EXPECT_EQ(s.run("(set-option :produce-unsat-cores true)(set-option :produce-proofs true)"
                  "(set-option :incremental false)(set-option :timeout 30000)"
                  "(set-option :reproducible-resource-limit 7)(set-option :verbosity 1)"
                  "(set-option :regular-output-channel \"stdout\")"
                  "(set-option :diagnostic-output-channel \"stderr\")"),
            "");
  EXPECT_EQ(s.run("(get-option :produce-unsat-cores)(get-option :produce-proofs)"
                  "(get-option :incremental)(get-option :timeout)"
                  "(get-option :reproducible-resource-limit)"
                  "(get-option :regular-output-channel)(get-option :diagnostic-output-channel)"),
            "true\ntrue\nfalse\n30000\n7\n\"stdout\"\n\"stderr\"\n");
  EXPECT_EQ(s.run("(reset)(get-option :produce-unsat-cores)(get-option :timeout)"
                  "(get-option :incremental)"),
            "false\n0\ntrue\n");
}

TEST(Options, AnotherChannelIsUnsupported) {
  Session s;
  EXPECT_EQ(s.run("(set-option :regular-output-channel \"/tmp/answers\")"
                  "(set-option :diagnostic-output-channel \"stdout\")"
                  "(get-option :regular-output-channel)"),
            "unsupported\nunsupported\n\"stdout\"\n");
}

TEST(Options, AValueOfTheWrongKindIsAnError) {
  Session s;
  EXPECT_EQ(s.error("(set-option :produce-proofs 1)"), "1:29: expected true or false, got '1'");
  EXPECT_EQ(s.error("(set-option :timeout 1.5)"), "1:22: expected a numeral, got '1.5'");
  EXPECT_EQ(s.error("(set-option :timeout)"), "1:21: expected a numeral, got ')'");
  EXPECT_EQ(s.error("(set-option :regular-output-channel 1)"),
            "1:37: expected the name of a channel, got '1'");
  EXPECT_EQ(s.error("(set-option :incremental \"false\")"),
            "1:26: expected true or false, got '\"false\"'");
}

TEST(Options, AnotherSeedDropsTheModel) {
  Session s;
  const std::string tail = ": there is no model, the last answer is not sat";
  EXPECT_EQ(s.run("(declare-const p Bool)(check-sat)(set-option :verbosity 1)"
                  "(set-option :random-seed 0)(get-value (p))"),
            "sat\n((p false))\n");
  EXPECT_EQ(s.error("(set-option :random-seed 1)(get-value (p))"), "1:29: get-value" + tail);
  EXPECT_EQ(s.engine.seed, 1U);
  s.engine.answer = Answer::unsat;
  EXPECT_EQ(s.error("(check-sat)(set-option :random-seed 2)(get-unsat-assumptions)"),
            "1:40: get-unsat-assumptions: the last answer is not unsat");
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

TEST(StateScript, HasTheAssertionUnderWayButNoneThatWasRefused) {
  Session s;
  s.engine.raise = [] { throw std::invalid_argument("refused"); };
  talk(s, "(declare-const p Bool)(assert p)", false);
  EXPECT_EQ(s.interpreter.get_state_script(), "(declare-const p Bool)\n(check-sat)\n");
  EXPECT_EQ(talk(s, "(get-assertions)"), "()\n");
  s.engine.raise = [] { throw InternalError("broken"); };
  EXPECT_THROW(s.run("(assert p)"), InternalError);
  EXPECT_EQ(s.interpreter.get_state_script(), "(declare-const p Bool)\n(assert p)\n(check-sat)\n");
}

// Errors of the engine --------------------------------------------------------------------------

struct Question {
  const char* script;
  const char* place;  // of an error of the engine in it
};

/// The commands that ask the engine, those about a model among them.
const Question kQuestions[] = {
    {"(assert true)", "1:9"},
    {"(push)", "1:2"},
    {"(pop)", "1:2"},
    {"(check-sat)", "1:2"},
    {"(check-sat-assuming (true))", "1:2"},
    {"(get-model)", "1:2"},
    {"(get-value (p))", "1:13"},
    {"(get-assignment)", "1:2"},
    {"(reset-assertions)", "1:2"},
    {"(reset)", "1:2"},
};

/// A session on its second level, after sat.
struct Asked : Session {
  Asked() { run("(declare-const p Bool)(push)(assert (! p :named n))(check-sat)"); }
};

TEST(EngineErrors, ThatAreDefectsAreNoErrorsOfTheScript) {
  const std::function<void()> defects[] = {
      [] { throw InternalError("broken"); },
      [] { throw std::logic_error("broken"); },
      [] { throw std::out_of_range("broken"); },
      [] { throw std::domain_error("broken"); },
  };
  for (const auto& defect : defects) {
    for (const Question& question : kQuestions) {
      Asked s;
      s.engine.raise = defect;
      try {
        s.interpreter.run(question.script, "t.smt2");
        ADD_FAILURE() << question.script;
      } catch (const std::exception& error) {
        EXPECT_TRUE(is_internal(error)) << question.script;
        EXPECT_STREQ(error.what(), "broken");
      }
      Asked other;
      other.engine.raise = defect;
      std::istringstream in(question.script);
      EXPECT_THROW(other.interpreter.run_interactive(in, "in"), std::logic_error);
      EXPECT_EQ(other.out.str(), "sat\n");
    }
    Session s;
    s.engine.answer = Answer::unsat;
    s.run("(check-sat)");
    s.engine.raise = defect;
    EXPECT_THROW(s.run("(get-unsat-assumptions)"), std::logic_error);
  }
}

TEST(EngineErrors, ThatRefuseOrHaveNoRoomAreErrorsOfTheScript) {
  const std::function<void()> refusals[] = {
      [] { throw std::invalid_argument("no"); },
      [] { throw std::length_error("no"); },
      [] { throw std::runtime_error("no"); },
  };
  for (const auto& refusal : refusals) {
    for (const Question& question : kQuestions) {
      Asked s;
      s.engine.raise = refusal;
      EXPECT_EQ(s.error(question.script), std::string(question.place) + ": no");
      Asked other;
      other.engine.raise = refusal;
      EXPECT_EQ(talk(other, question.script, false),
                "(error \"in:" + std::string(question.place) + ": error: no\")\n");
    }
  }
}

TEST(EngineErrors, LackOfMemoryOrTimeIsALimit) {
  const std::function<void()> limits[] = {
      [] { throw std::bad_alloc(); },
      [] { throw Terminated(); },
  };
  for (const auto& limit : limits) {
    for (const Question& question : kQuestions) {
      Asked s;
      s.engine.raise = limit;
      EXPECT_THROW(s.run(question.script), LimitError) << question.script;
    }
  }
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
