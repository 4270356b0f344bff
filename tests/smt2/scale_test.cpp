// Scripts that are deep or wide: reading keeps its own stacks, and its time is linear.
#include <gtest/gtest.h>

#include "tests/smt2/session.h"

namespace vorn::smt2 {
namespace {

constexpr std::size_t kDepth = 100000;

/// A session with a few constants that builds terms as they are written.
struct DeepSession : Session {
  DeepSession() : Session(false) {
    run("(declare-const p Bool)(declare-const q Bool)(declare-const x (_ BitVec 8))"
        "(define-fun f ((a Bool)) Bool (xor a q))(define-sort Id (X) X)");
  }

  /// The length of the path from the asserted term down the argument at `index`.
  std::size_t depth(std::size_t index) const {
    std::size_t result = 0;
    const Term* t = engine.assertions.back();
    for (; t->get_arity() > index; t = t->get_arg(index))
      ++result;
    return result;
  }

  void assert_nested(const std::string& open, const std::string& core, const std::string& close) {
    run("(assert " + repeated(open, kDepth) + core + repeated(close, kDepth) + ")");
  }
};

TEST(Scale, DeepNegation) {
  DeepSession s;
  s.assert_nested("(not ", "p", ")");
  EXPECT_EQ(s.depth(0), kDepth);
}

TEST(Scale, DeepConjunction) {
  DeepSession s;
  s.assert_nested("(and q ", "p", ")");
  EXPECT_EQ(s.depth(1), kDepth);
}

TEST(Scale, DeepIte) {
  DeepSession s;
  s.assert_nested("(ite q p ", "p", ")");
  EXPECT_EQ(s.depth(2), kDepth);
  s.assert_nested("(ite ", "p", " q p)");
  EXPECT_EQ(s.depth(0), kDepth);
}

TEST(Scale, DeepLetInBodies) {
  DeepSession s;
  s.assert_nested("(let ((p (not p))) ", "p", ")");
  EXPECT_EQ(s.depth(0), kDepth);
}

TEST(Scale, DeepLetInBindings) {
  DeepSession s;
  s.assert_nested("(let ((p ", "p", ")) (not p))");
  EXPECT_EQ(s.depth(0), kDepth);
}

TEST(Scale, DeepAnnotations) {
  DeepSession s;
  s.assert_nested("(! ", "p", " :weight (1))");
  EXPECT_EQ(s.engine.assertions.back(), s.constant("p"));
}

TEST(Scale, DeepMacroApplications) {
  DeepSession s;
  s.assert_nested("(f ", "p", ")");
  EXPECT_EQ(s.depth(0), kDepth);
}

TEST(Scale, MacrosWithDeepBodies) {
  DeepSession s;
  s.run("(define-fun deep ((a Bool)) Bool " + repeated("(not ", kDepth) + "a" +
        repeated(")", kDepth) + ")(assert (deep q))");
  EXPECT_EQ(s.depth(0), kDepth);
}

TEST(Scale, MacrosShareWhatTheirBodiesShare) {
  // A thousand steps, each of which uses the one before twice: a tree of 2^1000 leaves.
  DeepSession s;
  s.run(
      "(define-fun step ((a Bool)) Bool (xor a a))"
      "(define-fun steps ((a Bool)) Bool " +
      repeated("(step ", 1000) + "a" + repeated(")", 1000) + ")(assert (steps q))");
  EXPECT_EQ(s.depth(0), 1000U);
}

TEST(Scale, LetsThatDoubleAreShared) {
  DeepSession s;
  std::string script = "(assert ";
  for (int i = 0; i < 5000; ++i)
    script += "(let ((p (xor p p))) ";
  s.run(script + "p" + repeated(")", 5001));
  EXPECT_EQ(s.depth(0), 5000U);
}

TEST(Scale, NumbersThatDoubleAreRefused) {
  DeepSession s;
  std::string script = "(assert (fp.isZero (let ((n 3.5)) ";
  for (int i = 0; i < 100; ++i)
    script += "(let ((n (* n n))) ";
  EXPECT_NE(
      s.error(script + "((_ to_fp 8 24) RNE n)" + repeated(")", 103)).find("results go up to"),
      std::string::npos);
}

TEST(Scale, MacrosDoNotWalkWhatIsClosed) {
  // Each application of f would pass over the body's hundred thousand negations of q.
  DeepSession s;
  s.run("(define-fun f2 ((a Bool)) Bool (xor a " + repeated("(not ", kDepth) + "q" +
        repeated(")", kDepth) + "))");
  s.assert_nested("(f2 ", "p", ")");
  EXPECT_EQ(s.depth(0), kDepth);
}

TEST(Scale, WideOperations) {
  DeepSession s;
  for (const std::string name : {"and", "or", "xor", "=>", "="}) {
    s.run("(assert (" + name + repeated(" p q", kDepth / 2) + "))");
  }
  s.run("(assert (= x (bvadd" + repeated(" x", kDepth) + ")))");
  EXPECT_EQ(s.engine.assertions.size(), 6U);
}

TEST(Scale, WideLet) {
  DeepSession s;
  std::string script = "(assert (let (";
  for (std::size_t i = 0; i < kDepth; ++i)
    script += "(v" + std::to_string(i) + " (not p))";
  s.run(script + ") v99999))");
  EXPECT_EQ(s.engine.assertions.back(), s.mgr.make_not(s.constant("p")));
}

TEST(Scale, DeepSortsAndSkippedText) {
  DeepSession s;
  s.run("(declare-const d " + repeated("(Id ", kDepth) + "Bool" + repeated(")", kDepth) + ")");
  EXPECT_EQ(s.constant("d")->get_type(), s.mgr.get_bool_type());
  s.run("(set-info :x " + repeated("(", kDepth) + repeated(")", kDepth) + ")");
  EXPECT_EQ(s.error(repeated("(set-info :x (", 1) + repeated("(", kDepth)),
            "1:" + std::to_string(14 + kDepth) + ": this '(' is never closed");
}

TEST(Scale, ManyLevelsAndDeclarations) {
  DeepSession s;
  std::string script;
  for (int i = 0; i < 20000; ++i) {
    const std::string name = "d" + std::to_string(i);
    script.append("(push 1)(declare-const ").append(name).append(" Bool)");
    script.append("(assert ").append(name).append(")");
  }
  s.run(script + "(pop 20000)");
  EXPECT_EQ(s.interpreter.get_symbols().get_declarations().size(), 3U);
}

}  // namespace
}  // namespace vorn::smt2
