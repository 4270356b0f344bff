// Arrays, declared functions and values of both, as scripts have them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/smt2/session.h"

namespace vorn::smt2 {
namespace {

// Terms -------------------------------------------------------------------------------------------

TEST(Arrays, AreReadAndWritten) {
  Session s(false);
  s.run(
      "(declare-const a (Array (_ BitVec 4) Bool))(declare-const i (_ BitVec 4))"
      "(assert (select (store a i true) #x3))"
      "(assert (distinct a ((as const (Array (_ BitVec 4) Bool)) false)))"
      "(assert (= a (ite true a (store a #x0 false))))");
  const std::vector<std::string> wanted{
      "(select (store a i true) #x3)",
      "(not (= a ((as const (Array (_ BitVec 4) Bool)) false)))",
      "(= a (ite true a (store a #x0 false)))",
  };
  for (std::size_t i = 0; i < wanted.size(); ++i)
    EXPECT_EQ(s.engine.assertions[i]->to_string(), wanted[i]);
}

TEST(Arrays, ArePassedToDefinitionsAndBound) {
  Session s(false);
  s.run(
      "(define-sort Mem () (Array (_ BitVec 2) Float16))"
      "(define-fun swap ((m Mem) (i (_ BitVec 2)) (j (_ BitVec 2))) Mem"
      "  (let ((x (select m i)) (y (select m j))) (store (store m i y) j x)))"
      "(define-fun zeros () Mem ((as const Mem) (_ +zero 5 11)))"
      "(declare-const a Mem)(assert (= (swap zeros #b00 #b01) (swap a #b10 #b11)))");
  EXPECT_EQ(s.engine.assertions[0]->to_string(),
            "(let ((.s1 ((as const (Array (_ BitVec 2) (_ FloatingPoint 5 11))) (_ +zero 5 11)))) "
            "(= (store (store .s1 #b00 (select .s1 #b01)) #b01 (select .s1 #b00)) "
            "(store (store a #b10 (select a #b11)) #b11 (select a #b10))))");
}

TEST(Arrays, OfAConstantMayHoldArrays) {
  Session s(false);
  s.run(
      "(declare-const b (Array Bool Bool))"
      "(assert (select (select ((as const (Array Float16 (Array Bool Bool))) b) (_ NaN 5 11)) "
      "true))");
  EXPECT_EQ(s.engine.assertions[0]->to_string(),
            "(select (select ((as const (Array (_ FloatingPoint 5 11) (Array Bool Bool))) b) "
            "(_ NaN 5 11)) true)");
}

TEST(Annotations, OfSortsLeaveSymbolsAsTheyAre) {
  Session s(false);
  s.run(
      "(declare-sort S 0)(declare-const k S)(declare-const |a b| Float16)"
      "(define-fun d () Bool (fp.isNaN |a b|))"
      "(assert (= (as k S) k))(assert (fp.isNaN (as |a b| Float16)))"
      "(assert (and (as d Bool) (as true Bool)))"
      "(assert (let ((p d)) (= (as RNE RoundingMode) (as RNE RoundingMode))))");
  EXPECT_EQ(s.engine.assertions[0], s.mgr.make_equal(s.constant("k"), s.constant("k")));
  EXPECT_EQ(s.engine.assertions[1], s.constant("d"));
  EXPECT_EQ(s.engine.assertions[2], s.mgr.make_and(s.constant("d"), s.mgr.make_true()));
}

// Functions ---------------------------------------------------------------------------------------

TEST(Functions, AreDeclaredAndApplied) {
  Session s(false);
  s.run(
      "(declare-sort S 0)(declare-fun f (S (Array S Bool)) S)(declare-fun p (S) Bool)"
      "(declare-const k S)(declare-const a (Array S Bool))"
      "(assert (p (f (f k a) (store a k true))))"
      "(define-fun twice ((x S)) S (f (f x a) a))(assert (p (twice k)))");
  EXPECT_EQ(s.engine.assertions[0]->to_string(), "(p (f (f k a) (store a k true)))");
  EXPECT_EQ(s.engine.assertions[1]->to_string(), "(p (f (f k a) a))");
}

TEST(Functions, TakeNamesAsConstantsDo) {
  Session s(false);
  s.run(
      "(push)(declare-fun f (Bool) Bool)(pop)(declare-fun f (Float16) Bool)"
      "(declare-fun |a\\b| (Bool) Bool)(declare-fun const (Bool) Bool)(declare-const x Float16)"
      "(assert (|a\\b| (const (f x))))");
  EXPECT_EQ(s.engine.assertions[0]->to_string(), "(a/b (const (f!1 x)))");
  EXPECT_EQ(s.error("(declare-fun f () Bool)"), "1:14: 'f' is already declared");
}

TEST(Functions, HaveABoundOfArguments) {
  Session s;
  EXPECT_EQ(s.error("(declare-fun f (" + repeated("Bool ", 10'001) + ") Bool)"),
            "1:14: a function of 10001 arguments; they go up to 10000");
  s.run("(declare-fun f (" + repeated("Bool ", 10'000) + ") Bool)(assert (f " +
        repeated("true ", 10'000) + "))");
  EXPECT_EQ(s.engine.assertions[0]->get_arity(), 10'000U);
}

TEST(Functions, AreKeptWhileTermsAreCollected) {
  Session s;
  s.run("(declare-sort S 0)(declare-fun f (S S) Bool)(push)(declare-fun g (S) S)");
  const Symbol* f = s.constant("f")->get_symbol();
  std::vector<const Term*> kept;
  s.interpreter.get_symbols().append_terms(&kept);
  s.engine.collect_garbage(kept);
  EXPECT_EQ(f->get_name(), "f");
  s.run("(pop)(declare-const k S)(assert (f k k))");
  EXPECT_EQ(s.engine.assertions[0]->get_symbol(), f);
  EXPECT_EQ(s.engine.assertions[0]->to_string(), "(f k k)");
}

// Logics ------------------------------------------------------------------------------------------

TEST(Logics, OfArraysAndFunctionsAreAccepted) {
  for (const char* name : {"QF_ABVFP", "QF_AUFBVFP", "QF_UFBVFP", "QF_UFFP", "QF_AFP", "QF_ABV",
                           "QF_UFBV", "QF_AUFBV", "QF_AX", "QF_UF", "QF_FPBV", "QF_FPABV", "ALL"}) {
    Session s;
    EXPECT_EQ(s.run("(set-logic " + std::string(name) + ")(check-sat)"), "sat\n") << name;
  }
}

/// As floats are under QF_BV: what a script says it will use binds nobody.
TEST(Logics, RefuseNothing) {
  Session s;
  s.run("(set-logic QF_BV)(declare-const a (Array Bool Float16))(declare-fun f (Bool) Bool)");
}

// Models ------------------------------------------------------------------------------------------

TEST(Models, HaveArraysElementsAndFunctionsInTheOrderOfDeclarations) {
  Session s;
  s.run(
      "(declare-sort S 0)(declare-const k S)(declare-fun f (S Float16) Bool)"
      "(declare-const a (Array (_ BitVec 4) Float16))(declare-fun |g h| (Bool) S)"
      "(declare-sort T 2)(check-sat)");
  TermManager& mgr = s.mgr;
  const DataType* sort = s.constant("k")->get_type();
  const DataType* array = s.constant("a")->get_type();
  const Term* one = mgr.make_fp_number(QNumber(0x3c00), 5, 10);
  const Term* zero = mgr.make_fp_number(QNumber(0), 5, 10);
  s.engine.values[s.constant("a")] =
      mgr.make_store(mgr.make_const_array(array, zero), mgr.make_bv_number(3, 4), one);
  const Term* first = mgr.make_element(sort, QNumber(0));
  const Term* second = mgr.make_element(sort, QNumber(1));
  s.engine.values[s.constant("k")] = second;
  s.engine.functions[s.constant("f")->get_symbol()] = {
      {{{first, one}, mgr.make_true()}, {{second, zero}, mgr.make_false()}}, mgr.make_true()};
  s.engine.functions[s.constant("g h")->get_symbol()] = {{{{mgr.make_true()}, second}}, first};
  const std::string f = "(_ FloatingPoint 5 11)";
  EXPECT_EQ(s.run("(get-model)"),
            "(\n"
            "  (define-fun k () S (as @S!1 S))\n"
            "  (define-fun f ((x!0 S) (x!1 " +
                f +
                ")) Bool "
                "(ite (and (= x!0 (as @S!0 S)) (= x!1 (fp #b0 #b01111 #b0000000000))) true "
                "(ite (and (= x!0 (as @S!1 S)) (= x!1 (_ +zero 5 11))) false true)))\n"
                "  (define-fun a () (Array (_ BitVec 4) " +
                f +
                ") "
                "(store ((as const (Array (_ BitVec 4) " +
                f +
                ")) (_ +zero 5 11)) #x3 "
                "(fp #b0 #b01111 #b0000000000)))\n"
                "  (define-fun |g h| ((x!0 Bool)) S (ite (= x!0 true) (as @S!1 S) (as @S!0 S)))\n"
                ")\n");
  EXPECT_EQ(s.run("(get-value (k (select a #x3) a))").substr(0, 21), "((k (as @S!1 S))\n ((s");
}

TEST(Models, OfFunctionsHaveParametersOfNoOtherName) {
  Session s;
  EXPECT_EQ(
      s.run("(declare-const x!0 Bool)(define-fun x!1 () Bool x!0)(define-fun xx!1 () Bool x!0)"
            "(declare-fun f (Bool Bool) Bool)(check-sat)(get-model)"),
      "sat\n(\n  (define-fun x!0 () Bool false)\n"
      "  (define-fun f ((xx!0 Bool) (xxx!1 Bool)) Bool false)\n)\n");
}

/// What is printed can be read, however many entries a function has.
TEST(Models, OfFunctionsWithManyEntriesAreRead) {
  Session s;
  s.run("(declare-fun f ((_ BitVec 32)) (_ BitVec 32))(check-sat)");
  FunctionValue value{{}, s.mgr.make_bv_number(0, 32)};
  constexpr int kEntries = 20000;
  for (int i = 0; i < kEntries; ++i) {
    const Term* number = s.mgr.make_bv_number(i, 32);
    value.entries.push_back({{number}, number});
  }
  s.engine.functions[s.constant("f")->get_symbol()] = value;
  std::string model = s.run("(get-model)");
  model = model.substr(2, model.size() - 4);
  Session reader(false);
  reader.run(model + "(assert (= (f #x00000001) #x00000001))");
  std::size_t depth = 0;
  const Term* t = reader.engine.assertions[0]->get_arg(0);
  for (; t->get_tag() == SymbolTag::ite; t = t->get_arg(2))
    ++depth;
  EXPECT_EQ(depth, std::size_t{kEntries});
}

// Long sessions -----------------------------------------------------------------------------------

TEST(Sessions, OfArraysSortsAndFunctionsStayBounded) {
  Session s;
  const std::string round =
      "(push)(declare-sort S 1)(declare-sort T 0)(define-sort Mem (X) (Array T X))"
      "(declare-const a (Mem (S T)))(declare-const i T)(declare-fun f (T (Mem (S T))) Bool)"
      "(assert (f i (store a i (select a i))))(pop)";
  std::uint64_t live = 0;
  std::uint64_t count = 0;
  std::uint32_t sorts = 0;
  for (int i = 0; i < 10'000; ++i) {
    s.run(round);
    if (i % 100 != 99) continue;
    std::vector<const Term*> kept;
    s.interpreter.get_symbols().append_terms(&kept);
    EXPECT_TRUE(kept.empty());
    s.engine.collect_garbage(kept);
    // A sort that was not there has the next number.
    const std::uint32_t made = s.mgr.get_bv_type(1000 + static_cast<std::size_t>(i))->get_id();
    if (i == 99) {
      live = s.mgr.get_live_count();
      count = s.mgr.get_term_count();
      sorts = made;
    }
    EXPECT_EQ(s.mgr.get_live_count(), live);
    EXPECT_EQ(s.mgr.get_term_count(), count);
    EXPECT_EQ(made, sorts++);
  }
  EXPECT_TRUE(s.interpreter.get_symbols().is_empty());
}

TEST(Sessions, AreReportedWithTheirSortsAndFunctions) {
  Session s;
  s.run(
      "(declare-sort S 0)(define-sort D () S)(declare-sort |p q| 2)(declare-fun f (S D) Bool)"
      "(declare-const a (Array S (|p q| S Bool)))(declare-const k S)(assert (f k k))");
  const std::string script = s.interpreter.get_state_script();
  EXPECT_EQ(script,
            "(declare-sort S 0)\n(declare-sort |p q| 2)\n(declare-fun f (S S) Bool)\n"
            "(declare-const a (Array S (|p q| S Bool)))\n(declare-const k S)\n"
            "(assert (f k k))\n(check-sat)\n");
  Session other;
  EXPECT_EQ(other.run(script), "sat\n");
}

}  // namespace
}  // namespace vorn::smt2
