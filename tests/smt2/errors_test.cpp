// What becomes of errors, by the way in which a script is run, and of answers that a script did not
// expect.
#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "tests/smt2/session.h"

namespace vorn::smt2 {
namespace {

/// A session with a place for warnings.
struct Warned {
  Warned() : engine(mgr), interpreter(mgr, engine, out, options()) {}

  InterpreterOptions options() {
    InterpreterOptions chosen;
    chosen.diagnostics = &warnings;
    return chosen;
  }
  /// What a script prints that is run as the command does it.
  std::string run(const std::string& text, bool clean) {
    out.str("");
    warnings.str("");
    EXPECT_EQ(interpreter.run_script(text, "t"), clean) << text;
    return out.str();
  }

  TermManager mgr;
  FakeEngine engine;
  std::ostringstream out;
  std::ostringstream warnings;
  Interpreter interpreter;
};

std::string error(const std::string& text) {
  return "(error \"t:" + text + "\")\n";
}

TEST(StateErrors, EndTheirCommandOnly) {
  const std::string no_model = ": there is no model, the last answer is not sat";
  const std::string kScripts[][2] = {
      {"(pop)", error("1:2: error: pop 1: the number of open levels is 0")},
      {"(get-model)", error("1:2: error: get-model" + no_model)},
      {"(get-value (true))", error("1:2: error: get-value" + no_model)},
      {"(get-assignment)", error("1:2: error: get-assignment" + no_model)},
      {"(get-unsat-assumptions)",
       error("1:2: error: get-unsat-assumptions: the last answer is not unsat")},
      {"(get-info :reason-unknown)",
       error("1:11: error: :reason-unknown: the last answer was not unknown")},
      {"(set-option :produce-models false)(get-model)",
       error("1:36: error: get-model: the option :produce-models is false")},
      {"(set-logic QF_FP)(set-logic QF_FP)",
       error("1:19: error: set-logic: the logic is already set")},
      {"(declare-const p Bool)(set-option :global-declarations true)",
       error("1:35: error: :global-declarations must be set before the first declaration")},
  };
  for (const auto& [script, answer] : kScripts) {
    Warned s;
    EXPECT_EQ(s.run(script + "(check-sat)", false), answer + "sat\n");
    EXPECT_EQ(s.run("(check-sat)", true), "sat\n");
    Session thrown;
    EXPECT_THROW(thrown.run(script), StateError) << script;
  }
}

TEST(StateErrors, LeaveNoNames) {
  Warned s;
  EXPECT_EQ(
      s.run("(get-value ((! true :named a)))(assert (! false :named a))(get-assertions)", false),
      error("1:2: error: get-value: there is no model, the last answer is not sat") +
          "((! false :named a))\n");
}

TEST(StateErrors, ThatAreOwedToUnknownDoNotCount) {
  Warned s;
  s.engine.answer = Answer::unknown;
  s.run("(check-sat)(get-model)(get-value (true))(get-assignment)(get-unsat-assumptions)", true);
  EXPECT_EQ(s.run("(check-sat)(get-model)(pop)", false),
            "unknown\n" +
                error("1:13: error: get-model: there is no model, the last answer is not sat") +
                error("1:24: error: pop 1: the number of open levels is 0"));
  s.run("(check-sat)(set-option :produce-models false)(get-model)", false);
  std::istringstream in("(check-sat)(get-assignment)");
  EXPECT_TRUE(s.interpreter.run_interactive(in, "in"));
}

TEST(ScriptErrors, EndAScript) {
  for (const std::string wrong :
       {"(assert x)", "(assert #b1)", "(assert (true)", "(declare-datatype S)", "(push 4000000000)",
        "(get-info status)", ")", "(frob)"}) {
    Warned s;
    const std::string printed = s.run("(check-sat)\n" + wrong + "\n(check-sat)", false);
    EXPECT_TRUE(printed.starts_with("sat\n(error \"t:2:")) << printed;
    EXPECT_EQ(printed.find("sat", 4), std::string::npos) << wrong;
  }
  Warned s;
  EXPECT_EQ(s.run("", false), error("1:1: error: the script has no commands"));
}

TEST(ScriptErrors, AreAnnounced) {
  Warned s;
  EXPECT_EQ(s.run("(get-info :error-behavior)", true), "(:error-behavior continued-execution)\n");
  s.out.str("");
  s.interpreter.run("(get-info :error-behavior)", "t");
  EXPECT_EQ(s.out.str(), "(:error-behavior immediate-exit)\n");
}

TEST(EngineErrors, OfWritingAreNoneOfTheScript) {
  Warned s;
  s.engine.raise = [] {
    throw std::system_error(std::make_error_code(std::errc::no_space_on_device), "cannot write");
  };
  EXPECT_THROW(s.interpreter.run_script("(check-sat)", "t"), std::system_error);
  std::istringstream in("(check-sat)");
  EXPECT_THROW(s.interpreter.run_interactive(in, "in"), std::system_error);
  EXPECT_EQ(s.out.str(), "");
}

// The status that a script states -----------------------------------------------------------------

TEST(Status, ThatIsContradictedIsAWarning) {
  Warned s;
  EXPECT_EQ(s.run("(set-info :status unsat)\n (check-sat)(check-sat)", false), "sat\nsat\n");
  EXPECT_EQ(s.warnings.str(), "t:2:3: warning: the script says unsat, the answer is sat\n");
  s.engine.answer = Answer::unsat;
  EXPECT_EQ(s.run("(set-info :status sat)(check-sat-assuming (true))(check-sat)", false),
            "unsat\nunsat\n");
  EXPECT_EQ(s.warnings.str(), "t:1:24: warning: the script says sat, the answer is unsat\n");
  Session silent;
  silent.engine.answer = Answer::unsat;
  EXPECT_FALSE(silent.interpreter.run_script("(set-info :status sat)(check-sat)", "t"));
}

TEST(Status, MayBeUnknownOnEitherSide) {
  Warned s;
  s.run("(set-info :status unknown)(check-sat)(set-info :status sat)(check-sat)", true);
  s.engine.answer = Answer::unknown;
  s.run("(set-info :status sat)(check-sat)(set-info :status unsat)(check-sat)", true);
  s.engine.answer = Answer::unsat;
  s.run("(check-sat)(set-info :status unsat)(check-sat)(set-info :status odd)(check-sat)", true);
  s.run("(set-info :status sat)(reset)(check-sat)", true);
  EXPECT_EQ(s.warnings.str(), "");
}

TEST(Status, IsTheLastAnswerOrWhatIsStated) {
  Warned s;
  EXPECT_EQ(s.run("(get-info :status)(set-info :status sat)(get-info :status)(check-sat)"
                  "(get-info :status)(set-info :status unknown)(get-info :status)"
                  "(assert true)(get-info :status)(check-sat)(push)(get-info :status)",
                  true),
            "(:status unknown)\n(:status sat)\nsat\n(:status sat)\n(:status sat)\n"
            "(:status unknown)\nsat\n(:status unknown)\n");
  s.engine.answer = Answer::unsat;
  EXPECT_EQ(s.run("(check-sat)(get-info :status)", true), "unsat\n(:status unsat)\n");
}

}  // namespace
}  // namespace vorn::smt2
