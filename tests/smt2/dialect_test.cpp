// Spellings that the standard does not have and scripts do, and spellings that look odd and are of
// the standard.
#include "vorn/smt2/dialect.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/smt2/session.h"

namespace vorn::smt2 {
namespace {

struct Spelling {
  const char* script;
  const char* complaint;  // about the first departure, as "LINE:COLUMN: MESSAGE"
  const char* same;       // the script that has the same assertions
};

#define FLOAT "(declare-const x Float32)(assert (fp.eq x ((_ to_fp 8 24) "

constexpr const char* kNumbers = "numbers are put together by - of one argument and / of two only";

const std::vector<Spelling>& spellings() {
  static const std::string mark = "\xEF\xBB\xBF(assert false)";
  static const std::string number = std::string("1:64: ") + kNumbers;
  static const std::vector<Spelling> table = {
      {mark.c_str(), "1:1: the script begins with a byte-order mark", "(assert false)"},
      {"(declare-const |a\\b| Bool)(assert |a\\b|)", "1:18: a quoted symbol cannot contain '\\'",
       "(declare-const |a/b| Bool)(assert |a/b|)"},
      {"(declare-const b (_ BitVec 08))(assert (= b b b))",
       "1:28: the number 08 begins with a needless zero",
       "(declare-const b (_ BitVec 8))(assert (= b b b))"},
      {FLOAT "RNE 00.5)))", "1:63: the number 00.5 begins with a needless zero",
       FLOAT "RNE 0.5)))"},
      {"(declare-const b (_ BitVec 8))(assert (= b (_ bv007 8)))",
       "1:47: the number in bv007 begins with a needless zero",
       "(declare-const b (_ BitVec 8))(assert (= b (_ bv7 8)))"},
      {FLOAT "RNE -1.5)))", "1:63: '-1.5' is a symbol; a negative number is written (- 1.5)",
       FLOAT "RNE (- 1.5))))"},
      {FLOAT "RNE -3)))", "1:63: '-3' is a symbol; a negative number is written (- 3)",
       FLOAT "RNE (- 3))))"},
      {"(declare-const p (Bool))(assert p)", "1:19: the sort Bool stands without parentheses",
       "(declare-const p Bool)(assert p)"},
      {"(declare-fun r () (RoundingMode))(assert (= r RNE))",
       "1:20: the sort RoundingMode stands without parentheses",
       "(declare-fun r () RoundingMode)(assert (= r RNE))"},
      {"(define-sort F () (Float64))(declare-const x (F))(assert (fp.isNaN x))",
       "1:20: the sort Float64 stands without parentheses",
       "(declare-const x Float64)(assert (fp.isNaN x))"},
      {"(declare-const p Bool)(assert (xor p))", "1:32: xor takes at least 2 arguments, got 1",
       "(declare-const p Bool)(assert p)"},
      {"(declare-const p Bool)(assert (and p))", "1:32: and takes at least 2 arguments, got 1",
       "(declare-const p Bool)(assert p)"},
      {"(declare-const p Bool)(assert (or p))", "1:32: or takes at least 2 arguments, got 1",
       "(declare-const p Bool)(assert p)"},
      {"(declare-const b (_ BitVec 8))(assert (= b (bvadd b)))",
       "1:45: bvadd takes at least 2 arguments, got 1",
       "(declare-const b (_ BitVec 8))(assert (= b b))"},
      {"(declare-const p Bool)(assert (distinct p))",
       "1:32: distinct takes at least 2 arguments, got 1", "(declare-const p Bool)(assert true)"},
      {FLOAT "RNE (* 2.0 0.75))))", number.c_str(), FLOAT "RNE 1.5)))"},
      {FLOAT "RNE (+ 1 2))))", number.c_str(), FLOAT "RNE 3)))"},
      {FLOAT "RNE (- 3 1 1))))", number.c_str(), FLOAT "RNE 1)))"},
      {FLOAT "RNE (/ 12 2 3))))", number.c_str(), FLOAT "RNE 2)))"},
      {FLOAT "RTZ 0.5 3)))", "1:47: to_fp takes 1 or 2 arguments, got 3", FLOAT "RTZ 4)))"},
      {FLOAT "RTZ 0.5 (- 3))))", "1:47: to_fp takes 1 or 2 arguments, got 3",
       FLOAT "RTZ 0.0625)))"},
      {FLOAT "RTZ 0.1 1000000000000)))", "1:47: to_fp takes 1 or 2 arguments, got 3",
       "(declare-const x Float32)(assert (fp.eq x (fp #b0 #xfe #b11111111111111111111111)))"},
      {"(push)(assert true)", "1:2: push takes a number of levels", "(push 1)(assert true)"},
      {"(push 1)(pop)(assert true)", "1:10: pop takes a number of levels",
       "(push 1)(pop 1)(assert true)"},
  };
  return table;
}

#undef FLOAT

/// The assertions of a script, and what was said of it.
struct Reading {
  explicit Reading(const std::string& script, bool strict = false) {
    InterpreterOptions options;
    options.strict = strict;
    options.warn = [this](const std::string& warning) { warnings.push_back(warning); };
    Session s(true, options);
    error = s.error(script);
    for (const Term* t : s.engine.assertions)
      assertions.push_back(t->to_string());
  }

  std::string error;
  std::vector<std::string> assertions;
  std::vector<std::string> warnings;
};

TEST(Dialect, SpellingsOutsideOfTheStandardAreUnderstood) {
  for (const Spelling& s : spellings()) {
    const Reading odd(s.script);
    EXPECT_EQ(odd.error, "no error") << s.script;
    EXPECT_EQ(odd.assertions, Reading(s.same).assertions) << s.script;
  }
}

TEST(Dialect, AWarningSaysWhatIsWrongWithThem) {
  for (const Spelling& s : spellings()) {
    const std::string complaint = s.complaint;
    const std::size_t message = complaint.find(' ');
    const Reading odd(s.script);
    ASSERT_FALSE(odd.warnings.empty()) << s.script;
    EXPECT_EQ(odd.warnings.front(), "t.smt2:" + complaint.substr(0, message) +
                                        " warning:" + complaint.substr(message) +
                                        "; further ones of this kind are not shown");
    EXPECT_EQ(Reading(s.same).warnings, std::vector<std::string>{}) << s.same;
  }
}

TEST(Dialect, AStrictReaderRefusesThem) {
  for (const Spelling& s : spellings()) {
    const Reading odd(s.script, true);
    EXPECT_EQ(odd.error, s.complaint) << s.script;
    EXPECT_EQ(odd.warnings, std::vector<std::string>{}) << s.script;
    EXPECT_EQ(Reading(s.same, true).error, "no error") << s.same;
  }
}

TEST(Dialect, AWarningComesOncePerKindAndFile) {
  std::vector<std::string> warnings;
  Dialect dialect(false, [&](const std::string& warning) { warnings.push_back(warning); });
  const auto depart = [&](Departure kind, const std::string& file, Position place) {
    dialect.depart(kind, file, place, [] { return "odd"; });
  };
  depart(Departure::backslash, "a", {1, 1});
  depart(Departure::backslash, "a", {2, 1});
  depart(Departure::one_argument, "a", {3, 1});
  depart(Departure::backslash, "b", {4, 1});
  depart(Departure::backslash, "a", {5, 1});
  const std::string tail = " warning: odd; further ones of this kind are not shown";
  EXPECT_EQ(warnings,
            (std::vector<std::string>{"a:1:1:" + tail, "a:3:1:" + tail, "b:4:1:" + tail}));
}

TEST(Dialect, ADeclaredNameComesBeforeANumber) {
  EXPECT_EQ(Reading("(declare-const -1 Bool)(assert -1)").assertions,
            std::vector<std::string>{"-1"});
  EXPECT_EQ(Reading("(declare-const p Bool)(assert (let ((-1 p)) -1))", true).error, "no error");
  EXPECT_EQ(Reading("(declare-const x Float32)(assert (= x ((_ to_fp 8 24) RNE |-1|)))").error,
            "1:59: unknown symbol '-1'");
  for (const std::string word : {"-", "--1", "-1.", "-.5", "-1.5.2", "-x", "-1e5"}) {
    EXPECT_NE(Reading("(assert (= RNE ((_ to_fp 8 24) RNE " + word + ")))").error, "no error");
  }
}

TEST(Dialect, WhatLooksOddAndIsOfTheStandardNeedsNoWarning) {
  for (const std::string script :
       {"(set-info :source |anything (\" ; at all\nbetween \xC3\xA4 and \xE4 bars|)(assert true)",
        "(set-info :status unsat)(set-info :license \"a \"\"b\"\"\")(assert true)",
        "(declare-fun a!1 () Bool)(declare-fun |b@2.c| () Bool)(assert (and a!1 |b@2.c|))",
        "(declare-fun x () Float64)(assert (fp.isNaN x))(check-sat )",
        "(declare-const a (_ BitVec 8))(assert (= a #xaB (_ bv5 8) #b00000000))",
        "(assert (fp.isZero (_ +zero 8 24)))(assert (fp.isNaN (fp #b0 #b11 #b1)))",
        "(declare-const b (_ BitVec 8))(assert (fp.isZero ((_ to_fp_unsigned 8 24) "
        "roundNearestTiesToEven b)))",
        "(assert (fp.isZero ((_ to_fp 8 24) RNE 0.0))) ; 0.5 \r(assert (fp.isZero ((_ to_fp 8 24) "
        "RNE (- (/ 1 3)))))",
        "(set-logic QF_FP)\r\n(declare-fun x () Float32) ; \xE9\r\n(assert (fp.isNaN x))\r\n",
        "(set-logic QF_BVFP)\r(assert true)\r; the end", "(declare-sort U 0)(assert true)",
        "(declare-sort S 1)(declare-fun f ((S Bool) (Array Bool Bool)) (S Bool))"
        "(declare-const k (S Bool))(assert (= (as k (S Bool)) (f k ((as const (Array Bool Bool)) "
        "true))))",
        "(set-option :produce-unsat-cores true)(declare-const a (Array Bool Bool))"
        "(assert (select (store a true false) false))",
        "(set-logic QF_FPBV)(assert true)", "(set-logic QF_ABVFPLRA)(assert true)"}) {
    const Reading strict(script, true);
    EXPECT_EQ(strict.error, "no error") << script;
    EXPECT_FALSE(strict.assertions.empty()) << script;
    EXPECT_EQ(Reading(script).warnings, std::vector<std::string>{}) << script;
  }
}

TEST(Dialect, NamesWithBackslashesComeBackAsTheyAre) {
  Session s;
  EXPECT_EQ(s.run("(declare-const |a\\b| Bool)(declare-const |a/b| (_ BitVec 4))"
                  "(define-fun f ((|c\\d| Bool)) Bool (not |c\\d|))(assert (f |a\\b|))(check-sat)"
                  "(get-model)(get-value (|a\\b|))"),
            "sat\n(\n  (define-fun |a\\b| () Bool false)\n  (define-fun a/b () (_ BitVec 4) #x0)\n"
            ")\n((|a\\b| false))\n");
  // What others are to read has none.
  EXPECT_EQ(s.interpreter.get_state_script().find('\\'), std::string::npos);
}

TEST(Dialect, SessionsTakeAByteOrderMarkToo) {
  InterpreterOptions options;
  std::string warnings;
  options.warn = [&](const std::string& warning) { warnings += warning; };
  Session s(true, options);
  std::istringstream in("\xEF\xBB\xBF(check-sat)(assert x)");
  EXPECT_FALSE(s.interpreter.run_interactive(in, "i"));
  EXPECT_EQ(s.out.str(), "sat\n(error \"i:1:20: error: unknown symbol 'x'\")\n");
  EXPECT_EQ(warnings,
            "i:1:1: warning: the script begins with a byte-order mark; further ones of this kind "
            "are not shown");
}

}  // namespace
}  // namespace vorn::smt2
