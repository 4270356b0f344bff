#include "vorn/smt2/interpreter.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/smt2/session.h"
#include "vorn/terms/simple_symbol.h"

namespace vorn::smt2 {
namespace {

// Answers ---------------------------------------------------------------------------------------

TEST(Interpreter, PassesAssertionsAndPrintsTheAnswer) {
  Session s;
  EXPECT_EQ(s.run("(set-logic QF_FP)(declare-fun p () Bool)(declare-const q Bool)\n"
                  "(assert p)(assert (or p q))(check-sat)"),
            "sat\n");
  ASSERT_EQ(s.engine.assertions.size(), 2U);
  EXPECT_EQ(s.engine.assertions[0], s.constant("p"));
  EXPECT_EQ(s.engine.assertions[1], s.mgr.make_or(s.constant("p"), s.constant("q")));
  s.engine.answer = Answer::unsat;
  EXPECT_EQ(s.run("(check-sat)"), "unsat\n");
  s.engine.answer = Answer::unknown;
  EXPECT_EQ(s.run("(check-sat)(get-info :reason-unknown)"),
            "unknown\n(:reason-unknown \"a \"\"stub\"\"\")\n");
}

TEST(Interpreter, PassesAssumptions) {
  Session s;
  EXPECT_EQ(s.run("(declare-const p Bool)(declare-const q Bool)"
                  "(check-sat-assuming (p (not q)))"),
            "sat\n");
  ASSERT_EQ(s.engine.assumptions.size(), 2U);
  EXPECT_EQ(s.engine.assumptions[1], s.mgr.make_not(s.constant("q")));
  EXPECT_EQ(s.run("(check-sat-assuming ())"), "sat\n");
  EXPECT_EQ(s.error("(declare-const b (_ BitVec 2))\n(check-sat-assuming (b))"),
            "2:22: an assumption must be a Bool, got a term of (_ BitVec 2)");
}

TEST(Interpreter, PrintsModelsInTheOrderOfDeclarations) {
  Session s;
  s.run(
      "(declare-const z Bool)(declare-const |a b| (_ BitVec 4))"
      "(declare-const m RoundingMode)(declare-const x Float16)(declare-const n Float16)"
      "(define-fun d () Bool z)(assert (! z :named e))(check-sat)");
  s.engine.values[s.constant("z")] = s.mgr.make_true();
  s.engine.values[s.constant("n")] = s.mgr.make_fp_nan(5, 10);
  EXPECT_EQ(s.run("(get-model)"),
            "(\n"
            "  (define-fun z () Bool true)\n"
            "  (define-fun |a b| () (_ BitVec 4) #x0)\n"
            "  (define-fun m () RoundingMode roundNearestTiesToEven)\n"
            "  (define-fun x () (_ FloatingPoint 5 11) (_ +zero 5 11))\n"
            "  (define-fun n () (_ FloatingPoint 5 11) (_ NaN 5 11))\n"
            ")\n");
}

TEST(Interpreter, PrintsValuesOfTermsAsWritten) {
  Session s;
  EXPECT_EQ(s.run("(declare-const p Bool)(declare-const b (_ BitVec 8))(check-sat)\n"
                  "(get-value ((and  p ; comment\n  p ) |b| #xff))"),
            "sat\n(((and p p) false)\n (|b| #x00)\n (#xff #xff))\n");
}

TEST(Interpreter, NamesThatTheManagerChangedPrintAsWritten) {
  Session s;
  EXPECT_EQ(s.run("(push 1)(declare-const x Bool)(pop 1)(declare-const x (_ BitVec 4))"
                  "(declare-const true! Bool)(check-sat)(get-model)(get-value (x))"),
            "sat\n(\n  (define-fun x () (_ BitVec 4) #x0)\n"
            "  (define-fun true! () Bool false)\n)\n((x #x0))\n");
}

TEST(Interpreter, PrintsAssertionsAsWritten) {
  Session s;
  EXPECT_EQ(s.run("(get-assertions)(declare-const p Bool)(assert (not  p))(push)"
                  "(assert (! p :named n))(get-assertions)(pop)(get-assertions)"),
            "()\n((not p)\n (! p :named n))\n((not p))\n");
}

TEST(Interpreter, ModelsNeedASatAnswer) {
  Session s;
  const std::string tail = ": there is no model, the last answer is not sat";
  EXPECT_EQ(s.error("(declare-const p Bool)\n (get-model)"), "2:3: get-model" + tail);
  EXPECT_EQ(s.error("(get-value (p))"), "1:2: get-value" + tail);
  EXPECT_EQ(s.error("(check-sat)(assert p)(get-model)"), "1:23: get-model" + tail);
  EXPECT_EQ(s.error("(check-sat)(push)(get-model)"), "1:19: get-model" + tail);
  EXPECT_EQ(s.error("(check-sat)(pop)(get-model)"), "1:18: get-model" + tail);
  s.engine.answer = Answer::unsat;
  EXPECT_EQ(s.error("(check-sat)(get-model)"), "1:13: get-model" + tail);
  EXPECT_EQ(s.out.str(), "unsat\n");
  EXPECT_EQ(s.error("(get-info :reason-unknown)"),
            "1:11: :reason-unknown: the last answer was not unknown");
  EXPECT_EQ(s.error("(set-option :produce-models false)(get-model)"),
            "1:36: get-model: the option :produce-models is false");
}

TEST(Interpreter, WhatTheEngineRefusesIsAnErrorInTheScript) {
  Session s;
  s.engine.raise = [] { throw std::invalid_argument("fp.mul is beyond this engine"); };
  EXPECT_EQ(s.error("(declare-const p Bool)\n(assert  (not p))"),
            "2:10: fp.mul is beyond this engine");
  s.engine.raise = [] { throw std::runtime_error("out of luck"); };
  EXPECT_EQ(s.error("(check-sat)"), "1:2: out of luck");
}

// Names -----------------------------------------------------------------------------------------

TEST(Interpreter, DefinitionsAreMacros) {
  Session s;
  s.run(
      "(declare-const x Float16)(declare-const y Float16)(declare-const m RoundingMode)"
      "(define-fun twice ((x Float16)) Float16 (fp.add m x x))"
      "(define-fun less ((a Float16) (b Float16)) Bool (fp.lt (twice a) b))"
      "(define-const four Float16 (twice (twice x)))"
      "(define-fun here () Bool (less y x))"
      "(assert here)(assert (less x y))(assert (fp.isZero four))");
  TermManager& mgr = s.mgr;
  const Term* x = s.constant("x");
  const Term* y = s.constant("y");
  const auto twice = [&](const Term* t) { return mgr.make_fp_add(s.constant("m"), t, t); };
  ASSERT_EQ(s.engine.assertions.size(), 3U);
  EXPECT_EQ(s.engine.assertions[0], mgr.make_fp_lt(twice(y), x));
  EXPECT_EQ(s.engine.assertions[1], mgr.make_fp_lt(twice(x), y));
  EXPECT_EQ(s.engine.assertions[2], mgr.make_fp_iszero(twice(twice(x))));
}

TEST(Interpreter, BitsThatAMacroMakesConstantAreALiteral) {
  Session s(false);
  s.run(
      "(define-fun read ((b (_ BitVec 16))) Float16 ((_ to_fp 5 11) b))"
      "(assert (= (read #x7fff) (_ NaN 5 11)))");
  const Term* nan = s.mgr.make_fp_nan(5, 10);
  EXPECT_EQ(s.engine.assertions[0], s.mgr.make_equal(nan, nan));
}

TEST(Interpreter, ParametersDoNotTakeNames) {
  Session s;
  s.run("(define-fun f ((x Bool)) Bool (not x))(declare-const x Bool)");
  EXPECT_EQ(s.constant("x")->get_symbol()->get_name(), "x");
}

TEST(Interpreter, RefusesWrongDefinitionsAndApplications) {
  Session s;
  s.run("(define-fun f ((p Bool) (b (_ BitVec 2))) Bool p)");
  EXPECT_EQ(s.error("(assert\n (f true))"), "2:3: f takes 2 arguments, got 1");
  EXPECT_EQ(s.error("(assert f)"), "1:9: f takes 2 arguments, got 0");
  EXPECT_EQ(s.error("(assert (f true false))"),
            "1:10: f: argument 2 must be of (_ BitVec 2), got a term of Bool");
  EXPECT_EQ(s.error("(assert (f 1.5 #b00))"), "1:10: f: argument 1 must be of Bool, got a number");
  EXPECT_EQ(s.error("(define-fun g () Bool #b1)"),
            "1:23: the definition of 'g' must be of Bool, got a term of (_ BitVec 1)");
  EXPECT_EQ(s.error("(define-fun g ((a Bool) (a Bool)) Bool a)"), "1:26: 'a' is bound twice");
  EXPECT_EQ(s.error("(define-fun g ((a Bool)) Bool (! a :named n))"),
            "1:43: a term inside of a definition with parameters cannot be named");
  EXPECT_EQ(s.error("(define-fun g ((a Bool)) Bool (g a))"), "1:32: unknown symbol 'g'");
}

TEST(Interpreter, SortDefinitionsTakeParameters) {
  Session s;
  s.run(
      "(define-sort F () (_ FloatingPoint 3 5))(define-sort Id (X) X)"
      "(define-sort Second (X Y) (Id Y))(define-sort G (X) F)"
      "(declare-const a F)(declare-const b (Second Bool (Id (_ BitVec 3))))"
      "(declare-const c (G Bool))");
  EXPECT_EQ(s.constant("a")->get_type(), s.mgr.get_fp_type(3, 4));
  EXPECT_EQ(s.constant("b")->get_type(), s.mgr.get_bv_type(3));
  EXPECT_EQ(s.constant("c")->get_type(), s.mgr.get_fp_type(3, 4));
  EXPECT_EQ(s.error("(declare-const d (Id Bool Bool))"), "1:19: Id takes 1 sort, got 2");
  EXPECT_EQ(s.error("(declare-const d Second)"), "1:18: Second takes 2 sorts, got 0");
  EXPECT_EQ(s.error("(define-sort F () Bool)"), "1:14: the sort 'F' is already defined");
  EXPECT_EQ(s.error("(define-sort Bool () Bool)"), "1:14: the sort 'Bool' is already defined");
  EXPECT_EQ(s.error("(define-sort H (X X) Bool)"), "1:19: 'X' is bound twice");
  EXPECT_EQ(s.error("(define-sort H () (H))"), "1:20: unknown sort 'H'");
}

TEST(Interpreter, SortsAreDeclaredOnce) {
  Session s;
  EXPECT_EQ(s.run("(declare-sort U 0)(declare-sort |a list| 1)(push 1)(declare-sort V 2)(pop 1)"
                  "(declare-sort V 0)(declare-const U Bool)(assert U)(check-sat)"),
            "sat\n");
  EXPECT_EQ(s.error("(declare-sort U 0)"), "1:15: the sort 'U' is already defined");
  EXPECT_EQ(s.error("(define-sort U () Bool)"), "1:14: the sort 'U' is already defined");
  EXPECT_EQ(s.error("(declare-sort Bool 0)"), "1:15: the sort 'Bool' is already defined");
  EXPECT_EQ(s.error("(declare-sort W -1)"), "1:17: expected a numeral, got '-1'");
  EXPECT_EQ(s.run("(reset)(define-sort U () Bool)(declare-const u U)"), "");
}

/// The commands of SMT-LIB 2.6, section 3.9, and define-const, which came later.
TEST(Interpreter, NamesOfCommandsPrintBetweenBars) {
  for (const std::string name : {"assert",
                                 "check-sat",
                                 "check-sat-assuming",
                                 "declare-const",
                                 "declare-datatype",
                                 "declare-datatypes",
                                 "declare-fun",
                                 "declare-sort",
                                 "define-const",
                                 "define-fun",
                                 "define-fun-rec",
                                 "define-funs-rec",
                                 "define-sort",
                                 "echo",
                                 "exit",
                                 "get-assertions",
                                 "get-assignment",
                                 "get-info",
                                 "get-model",
                                 "get-option",
                                 "get-proof",
                                 "get-unsat-core",
                                 "get-value",
                                 "get-unsat-assumptions",
                                 "pop",
                                 "push",
                                 "reset",
                                 "reset-assertions",
                                 "set-info",
                                 "set-logic",
                                 "set-option"}) {
    EXPECT_FALSE(is_simple_symbol(name)) << name;
    Session s;
    EXPECT_EQ(s.error("(" + name + " 0 0 0 0 0)").find("unknown command"), std::string::npos)
        << name;
  }
}

TEST(Interpreter, NamesAreDeclaredOnce) {
  Session s;
  EXPECT_EQ(s.error("(declare-const x Bool)\n(declare-fun x () Bool)"),
            "2:14: 'x' is already declared");
  EXPECT_EQ(s.error("(push 1)(define-fun |x| () Bool true)"), "1:21: 'x' is already declared");
  EXPECT_EQ(s.error("(declare-const fp.add Bool)"),
            "1:16: 'fp.add' is a symbol of the theory and cannot be declared");
  EXPECT_EQ(s.error("(declare-const let Bool)"),
            "1:16: expected a symbol, but 'let' is a reserved word");
  EXPECT_EQ(s.error("(declare-const select Bool)"),
            "1:16: 'select' is a symbol of the theory and cannot be declared");
  EXPECT_EQ(s.run("(declare-const const Bool)(assert const)(assert (as const Bool))"), "");
}

TEST(Interpreter, LevelsScopeNamesAndAssertions) {
  Session s;
  EXPECT_EQ(s.run("(push 2)(declare-const x Bool)(define-sort S () Bool)"
                  "(define-fun f () S x)(assert x)(get-info :assertion-stack-levels)"
                  "(pop 1)(pop)(push 0)(get-info :assertion-stack-levels)"),
            "(:assertion-stack-levels 2)\n(:assertion-stack-levels 0)\n");
  EXPECT_EQ(s.engine.calls, "push push pop pop ");
  EXPECT_TRUE(s.engine.assertions.empty());
  EXPECT_EQ(s.error("(assert x)"), "1:9: unknown symbol 'x'");
  EXPECT_EQ(s.error("(assert f)"), "1:9: unknown symbol 'f'");
  EXPECT_EQ(s.error("(declare-const y S)"), "1:18: unknown sort 'S'");
  EXPECT_EQ(s.error("(push 1)\n(pop 2)"), "2:2: pop 2: the number of open levels is 1");
  EXPECT_EQ(s.error("(push 4000000000)"),
            "1:2: push 4000000000: no more than 1048576 levels can be open");
}

TEST(Interpreter, ResetsForgetNames) {
  Session s;
  EXPECT_EQ(s.run("(declare-const x Bool)(push)(assert x)(reset-assertions)(get-assertions)"
                  "(declare-const x Bool)"),
            "()\n");
  EXPECT_EQ(s.engine.calls, "push reset ");
  EXPECT_EQ(s.run("(set-option :print-success true)(reset)(declare-const x Bool)"), "success\n");
}

// Session ---------------------------------------------------------------------------------------

TEST(Interpreter, AnswersOptionsAndInformation) {
  Session s;
  EXPECT_EQ(s.run("(set-info :status sat)(set-info :source |a\nb|)(set-info :x (1 (2 \"3\")))"
                  "(set-info :flag)(get-info :name)(get-info :version)(get-info :authors)"
                  "(get-info :error-behavior)(get-info :all-statistics)(get-info :nothing)"),
            "(:name \"vorn\")\n(:version \"0.1.0\")\n(:authors \"the Vorn developers\")\n"
            "(:error-behavior immediate-exit)\n(:assertions 0 :check-sat 0 :terms 7)\n"
            "unsupported\n");
  EXPECT_EQ(s.run("(get-option :print-success)(get-option :produce-models)(get-option :foo)"
                  "(set-option :foo (bar))(set-option :f)"
                  "(set-option :produce-models false)(get-option :produce-models)"),
            "false\ntrue\nunsupported\nunsupported\nunsupported\nfalse\n");
  EXPECT_EQ(s.error("(set-option :print-success 1)"), "1:28: expected true or false, got '1'");
}

TEST(Interpreter, PrintsSuccessWhenAsked) {
  Session s;
  EXPECT_EQ(s.run("(set-option :print-success true)(declare-const p Bool)(assert p)(check-sat)"
                  "(set-option :foo 1)(exit)"),
            "success\nsuccess\nsuccess\nsat\nunsupported\nsuccess\n");
}

TEST(Interpreter, EchoesTheLiteral) {
  Session s;
  EXPECT_EQ(s.run("(echo \"a \"\"b\"\"\nc\")"), "\"a \"\"b\"\"\nc\"\n");
  EXPECT_EQ(s.error("(echo a)"), "1:7: expected a string, got 'a'");
}

TEST(Interpreter, ExitEndsTheScript) {
  Session s;
  EXPECT_EQ(s.run("(check-sat)(exit) ) \x01 nonsense"), "sat\n");
  EXPECT_EQ(s.run("(check-sat)"), "sat\n");
}

TEST(Interpreter, AnErrorKeepsWhatWasPrinted) {
  Session s;
  EXPECT_EQ(s.error("(check-sat)[").substr(0, 5), "1:12:");
  EXPECT_EQ(s.out.str(), "sat\n");
  EXPECT_EQ(s.error("(check-sat)(check-sat)\n(assert"), "2:1: this '(' is never closed");
  EXPECT_EQ(s.out.str(), "sat\nsat\n");
}

TEST(Interpreter, SaysWhatIsUnsupported) {
  Session s;
  EXPECT_EQ(s.run("(set-option :print-success true)(get-proof)(check-sat)"),
            "success\nunsupported\nsat\n");
  EXPECT_EQ(s.error("(get-proof 1)"), "1:12: expected ')' to close the command, got '1'");
}

TEST(Interpreter, RefusesWrongCommands) {
  Session s;
  EXPECT_EQ(s.error("\n (foo 1)"), "2:3: unknown command 'foo'");
  for (const std::string name :
       {"declare-datatype", "declare-datatypes", "define-fun-rec", "define-funs-rec"}) {
    EXPECT_EQ(s.error("(" + name + " x)"), "1:2: " + name + " is not supported");
  }
  EXPECT_EQ(s.error("(declare-const x Real)"), "1:18: Real is not supported");
  EXPECT_EQ(s.error("(assert #b1)"),
            "1:9: an assertion must be a Bool, got a term of (_ BitVec 1)");
  EXPECT_EQ(s.error("(assert)"), "1:8: expected a term, got ')'");
  EXPECT_EQ(s.error("(assert true true)"), "1:14: expected ')' to close the command, got 'true'");
  EXPECT_EQ(s.error("(check-sat 1)"), "1:12: expected ')' to close the command, got '1'");
  EXPECT_EQ(s.error("(get-value ())"), "1:13: expected a term, got ')'");
  EXPECT_EQ(s.error("check-sat"), "1:1: expected '(' to open a command, got 'check-sat'");
  EXPECT_EQ(s.error("()"), "1:2: expected the name of a command, got ')'");
  EXPECT_EQ(s.error("(\"a\")"), "1:2: expected the name of a command, got '\"a\"'");
  EXPECT_EQ(s.error("(check-sat))"), "1:12: this ')' closes nothing");
  EXPECT_EQ(s.error("(set-logic 12)"), "1:12: expected the name of a logic, got '12'");
}

TEST(Interpreter, RefusesEmptyScripts) {
  Session s;
  EXPECT_EQ(s.error(""), "1:1: the script has no commands");
  EXPECT_EQ(s.error(" ; nothing here\n"), "1:1: the script has no commands");
}

TEST(Interpreter, ErrorsSayWhereInWhichFile) {
  Session s;
  try {
    s.interpreter.run("(assert\n  x)", "dir/a.smt2");
    FAIL() << "an error was expected";
  } catch (const ScriptError& error) {
    EXPECT_STREQ(error.what(), "dir/a.smt2:2:3: error: unknown symbol 'x'");
    EXPECT_EQ(error.get_file(), "dir/a.smt2");
    EXPECT_EQ(error.get_position(), (Position{2, 3}));
  }
}

}  // namespace
}  // namespace vorn::smt2
