// Terms and sorts, read through a parser alone: the symbol table is filled by hand.
#include "vorn/smt2/parser.h"

#include <gtest/gtest.h>

#include <string>

#include "vorn/smt2/error.h"
#include "vorn/terms/term_manager.h"

namespace vorn::smt2 {
namespace {

/// A manager that builds terms as asked for, and constants of every sort.
class ParserTest : public testing::Test {
 protected:
  ParserTest() {
    for (const char* name : {"p", "q", "r"})
      declare(name, mgr.get_bool_type());
    for (const char* name : {"a", "b", "c"})
      declare(name, mgr.get_bv_type(8));
    for (const char* name : {"x", "y", "z"})
      declare(name, mgr.get_fp_type(3, 4));
    declare("one", mgr.get_bv_type(1));
    declare("wide", mgr.get_fp_type(8, 23));
    declare("m", mgr.get_fprounding_type());
  }

  void declare(const std::string& name, const DataType* type) {
    symbols.declare(name, mgr.make_constant(mgr.make_unique_symbol(name, type)));
  }

  const Term* get(const std::string& name) const { return symbols.find(name)->body; }

  const Term* term(const std::string& text) {
    Parser parser(mgr, symbols, text, "t");
    return parser.read_term().term;
  }

  const DataType* sort(const std::string& text) {
    Parser parser(mgr, symbols, text, "t");
    return parser.read_sort();
  }

  std::string error(const std::string& text) {
    try {
      term(text);
    } catch (const ScriptError& e) {
      return std::to_string(e.get_line()) + ":" + std::to_string(e.get_column()) + ": " +
             e.get_message();
    }
    return "no error";
  }

  std::string sort_error(const std::string& text) {
    try {
      sort(text);
    } catch (const ScriptError& e) {
      return std::to_string(e.get_line()) + ":" + std::to_string(e.get_column()) + ": " +
             e.get_message();
    }
    return "no error";
  }

  /// Expects the term to print as it is written.
  void expect_same(const std::string& text) { EXPECT_EQ(term(text)->to_string(), text); }
  void expect_reads(const std::string& text, const std::string& as) {
    EXPECT_EQ(term(text)->to_string(), as) << text;
  }

  TermManager mgr{false};
  SymbolTable symbols;
};

TEST_F(ParserTest, ReadsSorts) {
  EXPECT_EQ(sort("Bool"), mgr.get_bool_type());
  EXPECT_EQ(sort("RoundingMode"), mgr.get_fprounding_type());
  EXPECT_EQ(sort("(_ BitVec 12)"), mgr.get_bv_type(12));
  EXPECT_EQ(sort("(_ FloatingPoint 2 2)"), mgr.get_fp_type(2, 1));
  EXPECT_EQ(sort("(_ FloatingPoint 8 24)"), sort("Float32"));
  EXPECT_EQ(sort("(_ FloatingPoint 5 11)"), sort("Float16"));
  EXPECT_EQ(sort("(_ FloatingPoint 11 53)"), sort("Float64"));
  EXPECT_EQ(sort("(_ FloatingPoint 15 113)"), sort("Float128"));
}

TEST_F(ParserTest, RefusesWrongSorts) {
  EXPECT_EQ(sort_error("Foo"), "1:1: unknown sort 'Foo'");
  EXPECT_EQ(sort_error("(_ Foo 1)"), "1:4: unknown sort 'Foo'");
  EXPECT_EQ(sort_error("(Foo Bool)"), "1:2: unknown sort 'Foo'");
  EXPECT_EQ(sort_error("Int"), "1:1: Int is not supported");
  EXPECT_EQ(sort_error(" Real"), "1:2: Real is not supported");
  EXPECT_EQ(sort_error("(Array Int Int)"), "1:8: Int is not supported");
  EXPECT_EQ(sort_error("(Bool Bool)"), "1:2: the sort Bool takes no sorts as arguments");
  EXPECT_EQ(sort_error("((Bool))"), "1:2: expected the name of a sort, got '('");
  EXPECT_EQ(sort_error("(BitVec)"), "1:2: the sort BitVec takes no sorts as arguments");
  EXPECT_EQ(sort_error("(Int)"), "1:2: Int is not supported");
  EXPECT_EQ(sort_error("BitVec"), "1:1: BitVec takes 1 index, got 0");
  EXPECT_EQ(sort_error("(_ BitVec 1 2)"), "1:4: BitVec takes 1 index, got 2");
  EXPECT_EQ(sort_error("(_ FloatingPoint 8)"), "1:4: FloatingPoint takes 2 indices, got 1");
  EXPECT_EQ(sort_error("(_ BitVec 0)"),
            "1:4: a bit-vector sort of width 0: widths go from 1 to 1048576");
  EXPECT_EQ(sort_error("(_ FloatingPoint 1 24)"),
            "1:4: a floating-point sort with exponent width 1 and significand width 24: both must "
            "be greater than 1");
  EXPECT_EQ(sort_error("(_ FloatingPoint 8 1)"),
            "1:4: a floating-point sort with exponent width 8 and significand width 1: both must "
            "be greater than 1");
  EXPECT_EQ(sort_error("(_ BitVec 99999999999)"),
            "1:11: the numeral 99999999999 is too large here");
  EXPECT_EQ(sort_error("(_ BitVec x)"), "1:11: expected a numeral, got 'x'");
  EXPECT_EQ(sort_error(")"), "1:1: this ')' closes nothing");
  EXPECT_EQ(sort_error("12"), "1:1: expected a sort, got '12'");
  EXPECT_EQ(sort_error(""), "1:1: expected a sort, got the end of the text");
  EXPECT_EQ(sort_error("(_ BitVec 8"), "1:1: this '(' is never closed");
}

TEST_F(ParserTest, ReadsBooleanStructure) {
  expect_same("true");
  expect_same("(not p)");
  expect_same("(ite p q r)");
  expect_reads("(and p q r)", "(and (and p q) r)");
  expect_reads("(or p q r)", "(or (or p q) r)");
  expect_reads("(xor p q r)", "(xor (xor p q) r)");
  expect_reads("(=> p q r)", "(=> p (=> q r))");
  expect_reads("(= p q r)", "(and (= p q) (= q r))");
  expect_reads("(= x y)", "(= x y)");
  expect_reads("(distinct a b)", "(not (= a b))");
  expect_reads("(distinct a b c)", "(and (and (not (= a b)) (not (= a c))) (not (= b c)))");
  TermManager rewriting;
  SymbolTable names;
  names.declare(
      "p", rewriting.make_constant(rewriting.make_unique_symbol("p", rewriting.get_bool_type())));
  Parser parser(rewriting, names, "(and p) (or p)", "t");
  EXPECT_EQ(parser.read_term().term, names.find("p")->body);
  EXPECT_EQ(parser.read_term().term, names.find("p")->body);
}

TEST_F(ParserTest, ReadsIteAtEverySort) {
  expect_same("(ite p a b)");
  expect_same("(ite p x y)");
  expect_reads("(ite p m RTZ)", "(ite p m roundTowardZero)");
}

TEST_F(ParserTest, ReadsFloatingPointOperations) {
  for (const char* name : {"fp.eq", "fp.lt", "fp.leq"}) {
    expect_same("(" + std::string(name) + " x y)");
  }
  expect_reads("(fp.gt x y)", "(fp.lt y x)");
  expect_reads("(fp.geq x y)", "(fp.leq y x)");
  expect_reads("(fp.lt x y z)", "(and (fp.lt x y) (fp.lt y z))");
  expect_reads("(fp.geq x y z)", "(and (fp.leq y x) (fp.leq z y))");
  for (const char* name : {"fp.isNaN", "fp.isInfinite", "fp.isZero", "fp.neg"}) {
    expect_same("(" + std::string(name) + " x)");
  }
  for (const char* name : {"fp.add", "fp.sub", "fp.mul", "fp.div"}) {
    expect_same("(" + std::string(name) + " m x y)");
  }
  expect_same("((_ to_fp 5 11) m x)");
  expect_same("((_ to_fp 5 11) m a)");
  expect_same("((_ to_fp_unsigned 5 11) m a)");
  expect_same("((_ to_fp 3 5) a)");
  expect_reads("(fp one ((_ extract 2 0) a) ((_ extract 3 0) b))",
               "((_ to_fp 3 5) (concat one (concat ((_ extract 2 0) a) ((_ extract 3 0) b))))");
}

TEST_F(ParserTest, ReadsRoundingModes) {
  const std::pair<const char*, const char*> kNames[] = {{"RNE", "roundNearestTiesToEven"},
                                                        {"RNA", "roundNearestTiesToAway"},
                                                        {"RTP", "roundTowardPositive"},
                                                        {"RTN", "roundTowardNegative"},
                                                        {"RTZ", "roundTowardZero"}};
  for (const auto& [brief, full] : kNames) {
    EXPECT_EQ(term(brief), term(full));
    EXPECT_EQ(term(brief)->to_string(), full);
  }
}

TEST_F(ParserTest, ReadsFloatLiteralsInEveryNotation) {
  const Term* pattern = mgr.make_fp_number(QNumber(0x5A), 3, 4);
  EXPECT_EQ(term("(fp #b0 #b101 #xa)"), pattern);
  EXPECT_EQ(term("((_ to_fp 3 5) #x5a)"), pattern);
  EXPECT_EQ(term("((_ to_fp 3 5) (_ bv90 8))"), pattern);
  EXPECT_EQ(term("(_ +oo 3 5)"), term("((_ to_fp 3 5) #x70)"));
  EXPECT_EQ(term("(_ -oo 3 5)"), term("((_ to_fp 3 5) #xf0)"));
  EXPECT_EQ(term("(_ +zero 3 5)"), term("((_ to_fp 3 5) #x00)"));
  EXPECT_EQ(term("(_ -zero 3 5)"), term("((_ to_fp 3 5) #x80)"));
}

TEST_F(ParserTest, AllNansAreOneTerm) {
  const Term* nan = mgr.make_fp_nan(3, 4);
  for (const char* text :
       {"(_ NaN 3 5)", "(fp #b0 #b111 #x1)", "(fp #b1 #b111 #xf)", "((_ to_fp 3 5) #x7f)",
        "((_ to_fp 3 5) #xf8)", "((_ to_fp 3 5) (_ bv121 8))"}) {
    EXPECT_EQ(term(text), nan) << text;
  }
  EXPECT_NE(term("(_ NaN 3 6)"), nan);
}

TEST_F(ParserTest, RoundsRealLiteralsExactly) {
  // Of (3, 4): 1.03125 lies halfway between 1 (0x30) and 1.0625 (0x31).
  const std::pair<const char*, int> kHalfway[] = {
      {"RNE", 0x30}, {"RNA", 0x31}, {"RTP", 0x31}, {"RTN", 0x30}, {"RTZ", 0x30}};
  for (const auto& [mode, bits] : kHalfway) {
    const std::string rm = mode;
    const Term* literal = mgr.make_fp_number(QNumber(bits), 3, 4);
    EXPECT_EQ(term("((_ to_fp 3 5) " + rm + " 1.03125)"), literal) << rm;
    EXPECT_EQ(term("((_ to_fp 3 5) " + rm + " (/ 33 32))"), literal) << rm;
    EXPECT_EQ(term("((_ to_fp 3 5) " + rm + " (/ (- 33.0) (- 32)))"), literal) << rm;
  }
  const std::pair<const char*, int> kNegative[] = {
      {"RNE", 0xB0}, {"RNA", 0xB1}, {"RTP", 0xB0}, {"RTN", 0xB1}, {"RTZ", 0xB0}};
  for (const auto& [mode, bits] : kNegative) {
    EXPECT_EQ(term("((_ to_fp 3 5) " + std::string(mode) + " (- 1.03125))"),
              mgr.make_fp_number(QNumber(bits), 3, 4))
        << mode;
  }
  // One digit above the tie is enough to round up.
  EXPECT_EQ(term("((_ to_fp 3 5) RNE 1.031250000000000000000000000001)"),
            mgr.make_fp_number(QNumber(0x31), 3, 4));
  EXPECT_EQ(term("((_ to_fp 8 24) RNE 0.1)"), mgr.make_fp_number(QNumber(0x3DCCCCCD), 8, 23));
  EXPECT_EQ(term("((_ to_fp 8 24) RTZ 0.1)"), mgr.make_fp_number(QNumber(0x3DCCCCCC), 8, 23));
  EXPECT_EQ(term("((_ to_fp 8 24) RNE 3)"), mgr.make_fp_number(QNumber(0x40400000), 8, 23));
  EXPECT_EQ(term("((_ to_fp 8 24) RNE (- 0.0))"), mgr.make_fp_number(QNumber(0), 8, 23));
  EXPECT_EQ(term("((_ to_fp 3 5) RNE 1000)"), term("(_ +oo 3 5)"));
  EXPECT_EQ(term("(let ((h (/ 1 2))) ((_ to_fp 8 24) RNE h))"),
            mgr.make_fp_number(QNumber(0x3F000000), 8, 23));
}

TEST_F(ParserTest, RoundsRealLiteralsInEveryModeOfAVariable) {
  expect_reads("((_ to_fp 3 5) m 1.03125)",
               "(ite (= m roundTowardZero) (fp #b0 #b011 #b0000) "
               "(ite (= m roundTowardNegative) (fp #b0 #b011 #b0000) "
               "(ite (= m roundTowardPositive) (fp #b0 #b011 #b0001) "
               "(ite (= m roundNearestTiesToAway) (fp #b0 #b011 #b0001) "
               "(fp #b0 #b011 #b0000)))))");
}

TEST_F(ParserTest, ReadsBitVectorLiterals) {
  EXPECT_EQ(term("#b00001010"), mgr.make_bv_number(10, 8));
  EXPECT_EQ(term("#x0a"), mgr.make_bv_number(10, 8));
  EXPECT_EQ(term("#x0A"), mgr.make_bv_number(10, 8));
  EXPECT_EQ(term("(_ bv10 8)"), mgr.make_bv_number(10, 8));
  EXPECT_EQ(term("(_ bv255 8)"), mgr.make_bv_number(255, 8));
  EXPECT_EQ(error("(_ bv256 8)"), "1:4: the value 256 does not fit (_ BitVec 8)");
  EXPECT_EQ(error("(_ bv1 0)"), "1:4: a bit-vector sort of width 0: widths go from 1 to 1048576");
  EXPECT_EQ(error("(_ bv1)"), "1:7: expected a numeral, got ')'");
}

TEST_F(ParserTest, ReadsBitVectorOperations) {
  for (const char* name :
       {"bvnot", "bvneg", "(_ extract 5 2)", "(_ zero_extend 3)", "(_ sign_extend 3)"}) {
    expect_same("(" + std::string(name) + " a)");
  }
  for (const char* name : {"bvand",  "bvor",   "bvxor",  "bvadd",  "bvsub", "bvmul",  "bvudiv",
                           "bvurem", "bvsdiv", "bvsrem", "bvsmod", "bvshl", "bvlshr", "bvashr",
                           "bvcomp", "bvult",  "bvule",  "bvslt",  "bvsle", "concat"}) {
    expect_same("(" + std::string(name) + " a b)");
  }
  expect_reads("(bvand a b c)", "(bvand (bvand a b) c)");
  expect_reads("(bvor a b c)", "(bvor (bvor a b) c)");
  expect_reads("(bvxor a b c)", "(bvxor (bvxor a b) c)");
  expect_reads("(bvadd a b c)", "(bvadd (bvadd a b) c)");
  expect_reads("(bvmul a b c)", "(bvmul (bvmul a b) c)");
  expect_reads("(bvugt a b)", "(bvult b a)");
  expect_reads("(bvuge a b)", "(bvule b a)");
  expect_reads("(bvsgt a b)", "(bvslt b a)");
  expect_reads("(bvsge a b)", "(bvsle b a)");
  expect_reads("(bvnand a b)", "(bvnot (bvand a b))");
  expect_reads("(bvnor a b)", "(bvnot (bvor a b))");
  expect_reads("(bvxnor a b)", "(bvnot (bvxor a b))");
}

TEST_F(ParserTest, ReadsRepetitionsAndRotations) {
  expect_reads("((_ repeat 1) a)", "a");
  expect_reads("((_ repeat 3) one)", "(concat (concat one one) one)");
  expect_reads("((_ rotate_left 3) a)", "(concat ((_ extract 4 0) a) ((_ extract 7 5) a))");
  expect_reads("((_ rotate_left 11) a)", "(concat ((_ extract 4 0) a) ((_ extract 7 5) a))");
  expect_reads("((_ rotate_right 3) a)", "(concat ((_ extract 2 0) a) ((_ extract 7 3) a))");
  expect_reads("((_ rotate_left 8) a)", "a");
  expect_reads("((_ rotate_right 0) a)", "a");
  EXPECT_EQ(term("((_ repeat 100000) one)")->get_type(), mgr.get_bv_type(100000));
  EXPECT_EQ(error("((_ repeat 0) a)"), "1:5: repeat: the count must be at least 1, got 0");
  EXPECT_EQ(error("((_ repeat 4000000000) a)"),
            "1:5: repeat: 4000000000 times a bit-vector of width 8; widths go up to 1048576");
  EXPECT_EQ(error("((_ rotate_left 1) x)"),
            "1:5: rotate_left: expected a bit-vector, got a term of (_ FloatingPoint 3 5)");
}

TEST_F(ParserTest, LetBindsInParallel) {
  expect_reads("(let ((a b) (b a)) (bvsub a b))", "(bvsub b a)");
  expect_reads("(let ((a b)) (let ((b a) (c a)) (concat a (concat b c))))",
               "(concat b (concat b b))");
  expect_reads("(bvsub (let ((a b)) a) a)", "(bvsub b a)");
  expect_reads("(let ((true p)) true)", "p");
  expect_reads("(let ((|let| p)) |let|)", "p");
  expect_reads("(let ((k #b1) (m RNE)) (= m m))",
               "(= roundNearestTiesToEven roundNearestTiesToEven)");
}

TEST_F(ParserTest, RefusesWrongLets) {
  EXPECT_EQ(error("(let ((k p)\n (k q)) k)"), "2:3: 'k' is bound twice");
  EXPECT_EQ(error("(let () p)"), "1:7: expected '(' to open a binding, got ')'");
  EXPECT_EQ(error("(let p q)"), "1:6: expected '(' to open the bindings, got 'p'");
  EXPECT_EQ(error("(let (p q) r)"), "1:7: expected '(' to open a binding, got 'p'");
  EXPECT_EQ(error("(let ((k)) k)"), "1:9: expected a term, got ')'");
  EXPECT_EQ(error("(let ((k p q)) k)"), "1:12: expected ')' to close the binding, got 'q'");
  EXPECT_EQ(error("(let ((k p)))"), "1:13: expected a term, got ')'");
  EXPECT_EQ(error("(let ((k p)) k k)"), "1:16: expected ')' to close the let, got 'k'");
  EXPECT_EQ(error("(let ((let p)) q)"),
            "1:8: expected the name of a binding, but 'let' is a reserved word");
  EXPECT_EQ(error("(and (let ((k p)) k) k)"), "1:22: unknown symbol 'k'");
}

TEST_F(ParserTest, NamesTerms) {
  expect_reads("(and (! (or p q) :named n) n)", "(let ((.s1 (or p q))) (and .s1 .s1))");
  EXPECT_EQ(term("n"), term("(or p q)"));
  expect_reads("(! p :pattern (p (q)) :weight 12 :flag :named k :other \"s\")", "p");
  EXPECT_EQ(term("k"), get("p"));
  EXPECT_EQ(error("(! p)"), "1:5: expected an attribute, got ')'");
  EXPECT_EQ(error("(! p :named)"), "1:12: expected a symbol, got ')'");
  EXPECT_EQ(error("(! p :named x)"), "1:13: 'x' is already declared");
  EXPECT_EQ(error("(! p :named fp.lt)"),
            "1:13: 'fp.lt' is a symbol of the theory and cannot be declared");
  EXPECT_EQ(error("((_ to_fp 3 5) RNE (! 1.5 :named k1))"), "1:34: a number cannot be named");
}

TEST_F(ParserTest, QuotedAndPlainSymbolsAreTheSame) {
  EXPECT_EQ(term("|p|"), get("p"));
  expect_reads("(|and| p |q|)", "(and p q)");
}

TEST_F(ParserTest, RefusesUnknownAndUnsupportedNames) {
  EXPECT_EQ(error("(and p\n  foo)"), "2:3: unknown symbol 'foo'");
  EXPECT_EQ(error("(foo p)"), "1:2: unknown symbol 'foo'");
  EXPECT_EQ(error("((_ foo 1) p)"), "1:5: unknown symbol 'foo'");
  EXPECT_EQ(error("(_ foo 1)"), "1:4: unknown symbol 'foo'");
  for (const std::string name : {"fp.to_real", "forall", "exists", "match"}) {
    EXPECT_EQ(error("(not (" + name + " x))"), "1:7: " + name + " is not supported");
  }
  EXPECT_EQ(
      error("((as x Bool))"),
      "1:3: as is supported of symbols without arguments and in ((as const sort) value) only");
  EXPECT_EQ(error("\"s\""), "1:1: string literals are not supported");
}

TEST_F(ParserTest, RefusesWrongNumbersOfArguments) {
  EXPECT_EQ(error("(fp.lt x)"), "1:2: fp.lt takes at least 2 arguments, got 1");
  EXPECT_EQ(error("(not p q)"), "1:2: not takes 1 argument, got 2");
  EXPECT_EQ(error("(not)"), "1:2: not takes 1 argument, got 0");
  EXPECT_EQ(error("(and)"), "1:2: and takes at least 1 argument, got 0");
  EXPECT_EQ(error("(fp.add x y)"), "1:2: fp.add takes 3 arguments, got 2");
  EXPECT_EQ(error("(bvsub a b c)"), "1:2: bvsub takes 2 arguments, got 3");
  EXPECT_EQ(error("((_ to_fp 3 5) m x y)"),
            "1:5: to_fp: expected a number, got a term of (_ FloatingPoint 3 5)");
  EXPECT_EQ(error("((_ to_fp 3) m x)"), "1:5: to_fp takes 2 indices, got 1");
  EXPECT_EQ(error("(to_fp m x)"), "1:2: to_fp takes 2 indices, got 0");
  EXPECT_EQ(error("((_ extract 1) a)"), "1:5: extract takes 2 indices, got 1");
  EXPECT_EQ(error("((_ zero_extend) a)"), "1:5: zero_extend takes 1 index, got 0");
  EXPECT_EQ(error("((_ bvnot 1) a)"), "1:5: bvnot takes no indices, got 1");
  EXPECT_EQ(error("(and p or)"), "1:8: or takes at least 1 argument, got 0");
  EXPECT_EQ(error("(p)"), "1:2: 'p' is no function: it stands without parentheses");
  EXPECT_EQ(error("(true p)"), "1:2: 'true' is no function: it stands without parentheses");
  EXPECT_EQ(error("(let ((k p)) (k q))"),
            "1:15: 'k' is no function: it stands without parentheses");
  EXPECT_EQ(error("((_ +oo 3 5) x)"), "1:5: '+oo' is no function and takes no arguments");
  EXPECT_EQ(error("NaN"), "1:1: NaN takes 2 indices, got 0");
}

TEST_F(ParserTest, RefusesWrongSortsOfOperands) {
  EXPECT_EQ(error("(and p\n (bvand a one))"),
            "2:3: bvand: operands of different sorts, (_ BitVec 8) and (_ BitVec 1)");
  EXPECT_EQ(error("(= x wide)"),
            "1:2: =: operands of different sorts, (_ FloatingPoint 3 5) and "
            "(_ FloatingPoint 8 24)");
  EXPECT_EQ(error("(not a)"), "1:2: not: expected a Bool, got a term of (_ BitVec 8)");
  EXPECT_EQ(error("(fp.add x y z)"),
            "1:2: fp.add: expected a rounding mode, got a term of (_ FloatingPoint 3 5)");
  EXPECT_EQ(error("((_ extract 8 0) a)"),
            "1:5: extract: bits 8 down to 0 of a bit-vector of width 8");
  EXPECT_EQ(error("((_ to_fp 3 6) a)"),
            "1:5: to_fp: a bit-vector of width 8 is no (_ FloatingPoint 3 6)");
  EXPECT_EQ(error("((_ to_fp 1 8) a)"),
            "1:5: a floating-point sort with exponent width 1 and significand width 8: both must "
            "be greater than 1");
  EXPECT_EQ(error("(fp a #b101 #xa)"),
            "1:2: fp: the sign takes 1 bit and the exponent at least 2, got 8 and 3");
  EXPECT_EQ(error("(fp #b1 x #xa)"),
            "1:2: fp: expected a bit-vector, got a term of (_ FloatingPoint 3 5)");
  EXPECT_EQ(error("((_ to_fp 3 5) a 1.5)"),
            "1:5: to_fp: expected a rounding mode, got a term of (_ BitVec 8)");
}

TEST_F(ParserTest, RefusesRealNumbersOutsideOfConversions) {
  EXPECT_EQ(
      error("1.5"),
      "1:1: a number is no term here; to_fp makes it a float, (_ bvN width) writes a bit-vector");
  EXPECT_EQ(error("(fp.add m x 1.5)"),
            "1:2: fp.add: a number is no operand here; to_fp makes it a float, (_ bvN width) "
            "writes a bit-vector");
  EXPECT_EQ(error("((_ to_fp 3 5) 1.5)"), "1:5: to_fp of a number takes a rounding mode before it");
  EXPECT_EQ(error("((_ to_fp 3 5) 1.5 2.5)"), "1:5: to_fp: expected a rounding mode, got a number");
  EXPECT_EQ(error("((_ to_fp 3 5) m (/ 1 0.0))"), "1:19: /: division by zero");
  EXPECT_EQ(error("((_ to_fp 3 5) m (- a))"),
            "1:19: -: expected a number, got a term of (_ BitVec 8)");
  EXPECT_EQ(error("((_ to_fp 3 5) m (+ 1 a))"),
            "1:19: +: expected a number, got a term of (_ BitVec 8)");
  EXPECT_EQ(error("((_ to_fp 3 5) m (< 1 1))"), "1:19: < is not supported");
}

TEST_F(ParserTest, RefusesWrongParentheses) {
  EXPECT_EQ(error("(and p\n  (or q r)"), "1:1: this '(' is never closed");
  EXPECT_EQ(error("(and p\n  (or q r"), "2:3: this '(' is never closed");
  EXPECT_EQ(error("(let ((k p)"), "1:6: this '(' is never closed");
  EXPECT_EQ(error("(! p :named"), "1:1: this '(' is never closed");
  EXPECT_EQ(error("((_ to_fp 3"), "1:2: this '(' is never closed");
  EXPECT_EQ(error(")"), "1:1: this ')' closes nothing");
  EXPECT_EQ(error(""), "1:1: expected a term, got the end of the text");
  EXPECT_EQ(error("()"), "1:2: expected the name of a function, got ')'");
  EXPECT_EQ(error("(12 p)"), "1:2: expected the name of a function, got '12'");
  EXPECT_EQ(error("((p) q)"), "1:3: expected '_' and an indexed function, got 'p'");
  EXPECT_EQ(error(":key"), "1:1: expected a term, got ':key'");
  EXPECT_EQ(error("let"), "1:1: expected a term, got 'let'");
}

TEST_F(ParserTest, TextAndPlaceOfATermAreKept) {
  const std::string text = " (and p ; c\n q) r";
  Parser parser(mgr, symbols, text, "t");
  const ParsedTerm first = parser.read_term();
  EXPECT_EQ(first.position, (Position{1, 2}));
  EXPECT_EQ(first.text, "(and p ; c\n q)");
  const ParsedTerm second = parser.read_term();
  EXPECT_EQ(second.position, (Position{2, 5}));
  EXPECT_EQ(second.text, "r");
}

}  // namespace
}  // namespace vorn::smt2
