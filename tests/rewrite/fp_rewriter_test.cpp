// Rules, one by one: each fires on terms that it is for, gives what it should, and keeps the value
// under every assignment in small formats and every mode.
#include "vorn/rewrite/fp_rewriter.h"

#include <filesystem>
#include <set>
#include <string>
#include <utility>

#include "tests/rewrite/rewriting.h"
#include "vorn/rewrite/fp_rules.h"

namespace vorn::rewrite {
namespace {

/// F is small enough for all pairs of values; G contains it, S has room for its sums, D for its
/// products, quotients and square roots.
constexpr const char* kDeclarations = R"(
(define-sort F () (_ FloatingPoint 2 3))
(define-sort G () (_ FloatingPoint 3 4))
(define-sort S () (_ FloatingPoint 2 7))
(define-sort D () (_ FloatingPoint 5 8))
(declare-const r RoundingMode)
(declare-const s RoundingMode)
(declare-const p Bool)
(declare-const x F)
(declare-const y F)
(declare-const z F)
(declare-const g G)
(declare-const v (_ BitVec 3))
(declare-const w (_ BitVec 4))
(declare-const b (_ BitVec 5))
(declare-const c (_ BitVec 3))
(declare-const d (_ BitVec 3))
(define-fun one () F ((_ to_fp 2 3) RNE 1.0))
(define-fun minus-one () F ((_ to_fp 2 3) RNE (- 1.0)))
(define-fun two () F ((_ to_fp 2 3) RNE 2.0))
(define-fun half () F ((_ to_fp 2 3) RNE 0.5))
(define-fun +0 () F (_ +zero 2 3))
(define-fun -0 () F (_ -zero 2 3))
(define-fun inf () F (_ +oo 2 3))
(define-fun -inf () F (_ -oo 2 3))
(define-fun nan () F (_ NaN 2 3))
(define-fun integer () G ((_ to_fp 3 4) r v))
(define-fun natural () G ((_ to_fp_unsigned 3 4) r v))
)";

/// A term, and one that it should become. The latter is rewritten, too, so it needs no regard for
/// the order of operands.
struct Row {
  const char* rule;
  const char* sort;
  const char* from;
  const char* to;
};

constexpr Row kRows[] = {
    {"fold", "F", "(fp.add RNE one one)", "two"},
    {"fold", "Bool", "(fp.lt one two)", "true"},
    {"fold", "(_ BitVec 4)", "((_ fp.to_sbv 4) RNE minus-one)", "#b1111"},
    {"neg-of-neg", "F", "(fp.neg (fp.neg x))", "x"},
    {"abs-of-sign", "F", "(fp.abs (fp.neg (fp.abs x)))", "(fp.abs x)"},
    {"sum-with-negation", "F", "(fp.add r x (fp.neg y))", "(fp.sub r x y)"},
    {"sum-with-negation", "F", "(fp.add r (fp.neg x) y)", "(fp.sub r y x)"},
    {"sum-with-negation", "F", "(fp.sub r x (fp.neg y))", "(fp.add r x y)"},
    {"sub-of-literal", "F", "(fp.sub r x one)", "(fp.add r minus-one x)"},
    {"sub-itself", "F", "(fp.add r (fp.neg x) x)",
     "(ite (or (fp.isNaN x) (fp.isInfinite x)) nan (ite (= r RTN) -0 +0))"},
    {"double-is-sum", "F", "(fp.mul r two x)", "(fp.add r x x)"},
    {"double-is-sum", "F", "(fp.div r x half)", "(fp.add r x x)"},
    {"mul-by-power", "F", "(fp.mul r half x)", "(fp.div r x two)"},
    {"add-zero", "F", "(fp.sub RTZ +0 x)", "(ite (fp.isZero x) +0 (fp.neg x))"},
    {"add-zero", "F", "(fp.add RNE x -0)", "x"},
    {"add-zero", "F", "(fp.add RTN +0 x)", "x"},
    {"add-zero", "F", "(fp.add RTP x +0)", "(ite (fp.isZero x) +0 x)"},
    {"add-zero", "F", "(fp.add RTN x -0)", "(ite (fp.isZero x) -0 x)"},
    {"mul-by-one", "F", "(fp.mul r x one)", "x"},
    {"mul-by-one", "F", "(fp.mul r minus-one x)", "(fp.neg x)"},
    {"div-by-one", "F", "(fp.div r x minus-one)", "(fp.neg x)"},
    {"div-by-itself", "F", "(fp.div r x x)",
     "(ite (or (fp.isNaN x) (fp.isInfinite x) (fp.isZero x)) nan one)"},
    {"fma-by-one", "F", "(fp.fma r minus-one x y)", "(fp.add r (fp.neg x) y)"},
    {"fma-with-zero", "F", "(fp.fma RNA x y -0)", "(fp.mul RNA x y)"},
    {"fma-with-zero", "F", "(fp.fma RTN x y +0)", "(fp.mul RTN x y)"},
    {"signs-cancel", "F", "(fp.div r (fp.neg x) (fp.neg y))", "(fp.div r x y)"},
    {"signs-cancel", "F", "(fp.fma RNE (fp.neg x) (fp.neg y) z)", "(fp.fma RNE x y z)"},
    {"sign-of-product", "F", "(fp.mul RTP x (fp.neg y))", "(fp.neg (fp.mul RTN x y))"},
    {"sign-of-product", "F", "(fp.div RNE (fp.neg x) y)", "(fp.neg (fp.div RNE x y))"},
    {"sign-of-integral", "F", "(fp.roundToIntegral RTN (fp.neg x))",
     "(fp.neg (fp.roundToIntegral RTP x))"},
    {"sign-of-remainder", "F", "(fp.rem (fp.neg x) (fp.abs y))", "(fp.neg (fp.rem x y))"},
    {"select-of-same", "F", "(fp.min x x)", "x"},
    {"select-of-nan", "F", "(fp.max nan x)", "x"},
    {"integral-of-integral", "F", "(fp.roundToIntegral r (fp.roundToIntegral s x))",
     "(fp.roundToIntegral s x)"},
    {"integral-of-integral", "G", "(fp.roundToIntegral s natural)", "natural"},
    {"commutes", "F", "(fp.add r y x)", "(fp.add r x y)"},
    {"commutes", "F", "(fp.fma RTP y x z)", "(fp.fma RTP x y z)"},

    {"cast-to-same", "F", "((_ to_fp 2 3) r x)", "x"},
    {"cast-of-widening", "F", "((_ to_fp 2 3) r ((_ to_fp 3 4) s x))", "x"},
    {"cast-of-widening", "(_ FloatingPoint 2 2)", "((_ to_fp 2 2) r ((_ to_fp 3 4) s x))",
     "((_ to_fp 2 2) r x)"},
    {"cast-twice", "(_ FloatingPoint 2 2)", "((_ to_fp 2 2) RTP ((_ to_fp 2 3) RTP g))",
     "((_ to_fp 2 2) RTP g)"},
    {"cast-of-sign", "F", "((_ to_fp 2 3) RTZ (fp.abs g))", "(fp.abs ((_ to_fp 2 3) RTZ g))"},
    {"cast-of-sign", "F", "((_ to_fp 2 3) RTP (fp.neg g))", "(fp.neg ((_ to_fp 2 3) RTN g))"},
    {"cast-of-sign", "G", "((_ to_fp 3 4) r (fp.neg x))", "(fp.neg ((_ to_fp 3 4) r x))"},
    {"narrow-directed", "F",
     "((_ to_fp 2 3) RTN (fp.div RTN ((_ to_fp 3 4) r x) (fp.neg ((_ to_fp 3 4) s y))))",
     "(fp.div RTN x (fp.neg y))"},
    {"narrow-directed", "F",
     "((_ to_fp 2 3) RTZ (fp.mul RTZ ((_ to_fp 3 4) r x) ((_ to_fp 3 4) RNE 1.5)))",
     "(fp.mul RTZ x ((_ to_fp 2 3) RNE 1.5))"},
    {"narrow-directed", "F", "((_ to_fp 2 3) RTP (fp.sqrt RTP ((_ to_fp 3 4) r x)))",
     "(fp.sqrt RTP x)"},
    {"narrow-sum", "F", "((_ to_fp 2 3) r (fp.sub r ((_ to_fp 2 7) r x) ((_ to_fp 2 7) s y)))",
     "(fp.sub r x y)"},
    {"narrow-product", "F", "((_ to_fp 2 3) r (fp.mul s ((_ to_fp 5 8) r x) ((_ to_fp 5 8) s y)))",
     "(fp.mul r x y)"},
    {"narrow-quotient-or-root", "F",
     "((_ to_fp 2 3) r (fp.div r ((_ to_fp 5 8) r x) ((_ to_fp 5 8) s y)))", "(fp.div r x y)"},
    {"narrow-quotient-or-root", "F", "((_ to_fp 2 3) r (fp.sqrt r ((_ to_fp 5 8) r x)))",
     "(fp.sqrt r x)"},
    {"integral-of-widening", "(_ FloatingPoint 5 8)", "(fp.roundToIntegral r ((_ to_fp 5 8) s g))",
     "((_ to_fp 5 8) s (fp.roundToIntegral r g))"},
    {"remainder-of-widenings", "G", "(fp.rem ((_ to_fp 3 4) r x) ((_ to_fp 3 4) s y))",
     "((_ to_fp 3 4) RNE (fp.rem x y))"},
    {"convert-extended", "F", "((_ to_fp 2 3) r ((_ sign_extend 2) v))", "((_ to_fp 2 3) r v)"},
    {"convert-extended", "F", "((_ to_fp 2 3) r ((_ zero_extend 2) v))",
     "((_ to_fp_unsigned 2 3) r v)"},
    {"cast-of-integer", "F", "((_ to_fp 2 3) s integer)", "((_ to_fp 2 3) s v)"},
    {"read-written-bits", "F", "((_ to_fp 2 3) (fp.to_ieee_bv x))", "x"},
    {"lift-literals", "F", "(fp.neg (ite p one two))",
     "(ite p minus-one ((_ to_fp 2 3) RNE (- 2.0)))"},
    {"lift-literals", "G", "((_ to_fp 3 4) RNE (ite p one two))",
     "(ite p ((_ to_fp 3 4) RNE 1.0) ((_ to_fp 3 4) RNE 2.0))"},

    {"compare-same", "Bool", "(fp.leq x x)", "(not (fp.isNaN x))"},
    {"compare-same", "Bool", "(fp.lt x x)", "false"},
    {"compare-opposite", "Bool", "(= x (fp.neg x))", "(fp.isNaN x)"},
    {"compare-opposite", "Bool", "(fp.eq (fp.neg x) x)", "(fp.isZero x)"},
    {"compare-with-nan", "Bool", "(fp.leq nan x)", "false"},
    {"compare-with-nan", "Bool", "(= nan x)", "(fp.isNaN x)"},
    {"compare-with-infinity", "Bool", "(fp.lt inf x)", "false"},
    {"compare-with-infinity", "Bool", "(fp.leq x inf)", "(not (fp.isNaN x))"},
    {"compare-with-infinity", "Bool", "(fp.leq x -inf)", "(= x -inf)"},
    {"compare-with-zero", "Bool", "(fp.lt x -0)", "(and (fp.isNegative x) (not (fp.isZero x)))"},
    {"compare-with-zero", "Bool", "(fp.leq +0 x)", "(or (fp.isPositive x) (fp.isZero x))"},
    {"compare-with-zero", "Bool", "(fp.eq -0 x)", "(fp.isZero x)"},
    {"eq-is-equality", "Bool", "(fp.eq x one)", "(= x one)"},
    {"compare-negations", "Bool", "(fp.lt (fp.neg x) (fp.neg y))", "(fp.lt y x)"},
    {"compare-negations", "Bool", "(fp.leq (fp.neg x) one)", "(fp.leq minus-one x)"},
    {"compare-negations", "Bool", "(= (fp.neg x) (fp.neg y))", "(= x y)"},
    {"compare-widenings", "Bool", "(fp.lt ((_ to_fp 3 4) r x) ((_ to_fp 3 4) s y))", "(fp.lt x y)"},
    {"compare-widenings", "Bool", "(= ((_ to_fp 3 4) r x) (fp.neg ((_ to_fp 3 4) s y)))",
     "(= x (fp.neg y))"},
    {"compare-widenings", "Bool", "(fp.leq ((_ to_fp 3 4) r x) ((_ to_fp 3 4) RNE 1.5))",
     "(fp.leq x ((_ to_fp 2 3) RNE 1.5))"},
    {"compare-widening-with-literal", "Bool",
     "(fp.lt ((_ to_fp 3 4) r x) ((_ to_fp 3 4) RNE 1.125))", "(fp.leq x one)"},
    {"compare-widening-with-literal", "Bool",
     "(fp.leq ((_ to_fp 3 4) RNE 1.875) ((_ to_fp 3 4) r x))", "(fp.leq two x)"},
    {"compare-widening-with-literal", "Bool", "(= ((_ to_fp 3 4) r x) ((_ to_fp 3 4) RNE 1.875))",
     "false"},
    {"compare-integers", "Bool", "(fp.lt integer ((_ to_fp 3 4) s w))",
     "(bvslt ((_ sign_extend 1) v) w)"},
    {"compare-integers", "Bool", "(= natural ((_ to_fp_unsigned 3 4) s ((_ extract 3 1) w)))",
     "(= v ((_ extract 3 1) w))"},
    {"compare-integer-with-literal", "Bool", "(fp.lt integer ((_ to_fp 3 4) RNE 1.5))",
     "(bvslt v #b010)"},
    {"compare-integer-with-literal", "Bool", "(fp.leq ((_ to_fp 3 4) RNE (- 1.5)) integer)",
     "(bvsle #b111 v)"},
    {"compare-integer-with-literal", "Bool", "(fp.eq natural ((_ to_fp 3 4) RNE 5.0))",
     "(= v #b101)"},
    {"compare-integer-with-literal", "Bool", "(= natural (_ -zero 3 4))", "false"},
    {"lift-comparison", "Bool", "(fp.lt (ite p one two) x)", "(ite p (fp.lt one x) (fp.lt two x))"},
    {"lift-comparison", "Bool", "(fp.eq (ite p one y) two)", "(ite p false (fp.eq y two))"},
    {"eq-commutes", "Bool", "(fp.eq y x)", "(fp.eq x y)"},

    {"class-of-sign", "Bool", "(fp.isNegative (fp.neg x))", "(fp.isPositive x)"},
    {"class-of-sign", "Bool", "(fp.isPositive (fp.abs x))", "(not (fp.isNaN x))"},
    {"class-of-sign", "Bool", "(fp.isSubnormal (fp.abs x))", "(fp.isSubnormal x)"},
    {"never-nan", "Bool", "(fp.isNaN (fp.neg ((_ to_fp 2 3) r integer)))", "false"},
    {"class-of-rounded", "Bool", "(fp.isNaN ((_ to_fp 2 3) r g))", "(fp.isNaN g)"},
    {"class-of-rounded", "Bool", "(fp.isNegative (fp.roundToIntegral r x))", "(fp.isNegative x)"},
    {"class-of-widening", "Bool", "(fp.isInfinite ((_ to_fp 3 4) r x))", "(fp.isInfinite x)"},
    {"class-of-widening", "Bool", "(fp.isNormal ((_ to_fp 5 8) r x))",
     "(or (fp.isNormal x) (fp.isSubnormal x))"},
    {"class-of-widening", "Bool", "(fp.isSubnormal ((_ to_fp 2 7) r x))", "(fp.isSubnormal x)"},
    {"class-of-integer", "Bool", "(fp.isNegative integer)", "(= ((_ extract 2 2) v) #b1)"},
    {"class-of-integer", "Bool", "(fp.isInfinite natural)", "false"},
    {"class-of-integer", "Bool", "(fp.isNormal natural)", "(not (= v #b000))"},
    {"class-of-bits", "Bool", "(fp.isZero ((_ to_fp 2 3) b))",
     "(and (= ((_ extract 3 2) b) #b00) (= ((_ extract 1 0) b) #b00))"},
    {"class-of-bits", "Bool", "(fp.isNegative ((_ to_fp 2 3) b))",
     "(and (= ((_ extract 4 4) b) #b1) (not (fp.isNaN ((_ to_fp 2 3) b))))"},
    {"class-of-bits", "Bool", "(fp.isPositive ((_ to_fp 2 3) b))",
     "(not (or (= ((_ extract 4 4) b) #b1) (fp.isNaN ((_ to_fp 2 3) b))))"},
    {"nan-of-operation", "Bool", "(fp.isNaN (fp.sqrt r x))", "(or (fp.isNaN x) (fp.lt x +0))"},
    {"nan-of-operation", "Bool", "(fp.isNaN (fp.rem x y))",
     "(or (or (fp.isNaN x) (fp.isNaN y)) (or (fp.isInfinite x) (fp.isZero y)))"},
    {"nan-of-operation", "Bool", "(fp.isNaN (fp.min x y))", "(and (fp.isNaN x) (fp.isNaN y))"},
    {"lift-class", "Bool", "(fp.isInfinite (ite p x one))", "(and p (fp.isInfinite x))"},

    {"bv-flag", "Bool", "(= ((_ extract 0 0) v) #b0)", "(not (= ((_ extract 0 0) v) #b1))"},
    {"bv-flag", "Bool", "(= (bvnot ((_ extract 0 0) v)) #b1)", "(not (= ((_ extract 0 0) v) #b1))"},
    {"bv-flag", "Bool", "(= #b10 (ite p #b01 #b10))", "(not p)"},
    {"bv-flag", "Bool", "(= (ite p #b01 #b10) #b11)", "false"},
    {"bv-sign", "Bool", "(bvslt v #b000)", "(= ((_ extract 2 2) v) #b1)"},
    {"bv-sign", "Bool", "(bvsle #b000 v)", "(not (= ((_ extract 2 2) v) #b1))"},
    {"bv-polynomials", "Bool", "(= (bvmul v (bvadd c d)) (bvadd (bvmul v c) (bvmul d v)))", "true"},
    {"bv-polynomials", "Bool", "(= (bvneg (bvadd c d)) (bvadd (bvnot d) (bvsub #b001 c)))", "true"},
    {"bv-polynomials", "Bool", "(= (bvshl (bvadd c d) #b001) (bvadd (bvmul #b010 c) (bvadd d d)))",
     "true"},
    {"bv-polynomials", "Bool",
     "(bvult (bvsub (bvmul c c) (bvmul d d)) (bvmul (bvadd c d) (bvsub c d)))", "false"},
    {"bv-polynomials", "Bool", "(bvsle (bvmul c (bvmul v d)) (bvmul (bvmul c d) v))", "true"},
    {"bv-polynomials", "(_ BitVec 1)", "(bvcomp (bvnot c) (bvsub #b111 c))", "#b1"},
    {"bv-polynomials", "Bool", "(= (bvadd (bvmul #b010 c) #b001) (bvmul #b100 d))", "false"},
    {"bv-polynomials", "(_ BitVec 1)", "(bvcomp (bvadd c #b001) c)", "#b0"},
    {"bv-polynomials", "Bool",
     "(= (bvmul ((_ extract 2 0) w) v) ((_ extract 2 0) (bvmul w ((_ zero_extend 1) v))))", "true"},
    {"bv-cases", "Bool",
     "(= (bvmul v (ite (= c d) c #b010)) (ite (= d c) (bvmul d v) (bvadd v v)))", "true"},
    {"bv-cases", "(_ BitVec 1)", "(bvcomp (bvmul c (ite p v d)) (ite p (bvmul v c) (bvmul d c)))",
     "#b1"},
    {"bv-cancel", "Bool", "(= (bvadd c v) (bvadd v d))", "(= c d)"},
    {"bv-cancel", "Bool", "(= (bvadd c (bvadd (bvmul c d) #b011)) (bvadd (bvmul c d) (bvadd v v)))",
     "(= (bvadd c #b011) (bvshl v #b001))"},
    {"bv-cancel", "(_ BitVec 1)", "(bvcomp (bvsub c v) (bvsub d v))", "(bvcomp c d)"},
    {"bv-remainder-bound", "Bool", "(bvult (bvurem c d) d)", "(not (= d #b000))"},
    {"bv-remainder-bound", "Bool", "(bvule d (bvurem c d))", "(= d #b000)"},
    {"bv-remainder-bound", "Bool", "(bvule (bvurem c d) c)", "true"},
    {"bv-divide-itself", "(_ BitVec 3)", "(bvurem c c)", "#b000"},
    {"bv-divide-itself", "(_ BitVec 3)", "(bvudiv c c)", "(ite (= c #b000) #b111 #b001)"},
    {"bv-merge-divisions", "(_ BitVec 3)",
     "(ite p (bvurem (bvneg c) d) (bvneg (bvurem c (bvneg d))))",
     "(let ((r (bvurem (ite p (bvneg c) c) (ite p d (bvneg d))))) (ite p r (bvneg r)))"},
    {"bv-merge-divisions", "(_ BitVec 3)", "(ite p (bvudiv c d) (bvadd v (bvudiv (bvneg c) d)))",
     "(let ((q (bvudiv (ite p c (bvneg c)) d))) (ite p q (bvadd v q)))"},
};

TEST(FpRewriter, EachRuleFiresAndKeepsAllValues) {
  TermReader reader(kDeclarations);
  TermManager& mgr = reader.get_manager();
  for (const Row& row : kRows) {
    SCOPED_TRACE(std::string(row.rule) + ": " + row.from);
    const Term* from = reader.read(row.sort, row.from);
    FpRewriter rewriter(mgr);
    const Term* to = rewriter.rewrite(from);
    EXPECT_NE(rewriter.get_count(row.rule), 0U) << rewriter.describe_counts();
    EXPECT_NE(to, from);
    EXPECT_EQ(to, rewriter.rewrite(reader.read(row.sort, row.to))) << to->to_string();
    expect_equal_values(mgr, from, to);
  }
}

/// Other divisions than of x and -x, and sums below the top, can be of use elsewhere: to choose
/// between their operands or to write them out would make circuits larger.
TEST(FpRewriter, LeavesBitVectorsThatMayBeShared) {
  TermReader reader(kDeclarations);
  const std::pair<const char*, const char*> rows[] = {
      {"(_ BitVec 3)", "(ite p (bvurem c d) (bvurem c v))"},
      {"(_ BitVec 3)", "(ite p (bvudiv c d) (bvurem (bvneg c) d))"},
      {"(_ BitVec 3)", "(ite p (bvudiv v d) (bvudiv (bvneg c) d))"},
      {"Bool", "(= (bvadd (bvadd c (bvadd d v)) (bvmul c d)) (bvadd c (bvmul c v)))"},
      {"Bool", "(= (bvmul c (bvadd d v)) (bvmul c d))"},
  };
  for (const auto& [sort, text] : rows) {
    FpRewriter rewriter(reader.get_manager());
    const Term* t = reader.read(sort, text);
    EXPECT_EQ(rewriter.rewrite(t), t) << text << ": " << rewriter.describe_counts();
  }
}

std::set<std::string> get_rule_names() {
  std::set<std::string> names;
  for (const FpRule* rule : get_fp_rules())
    names.insert(rule->name);
  return names;
}

TEST(FpRewriter, EachRuleHasARowHereAndAScriptThatProvesIt) {
  std::set<std::string> rows;
  for (const Row& row : kRows)
    rows.insert(row.rule);
  EXPECT_EQ(rows, get_rule_names());
  std::set<std::string> scripts;
  for (const auto& entry : std::filesystem::directory_iterator(VORN_REWRITE_SCRIPTS))
    scripts.insert(entry.path().stem().string());
  EXPECT_EQ(scripts, get_rule_names());
}

/// The base encoder is asked for what was asserted, and so is the exact one where that is wanted.
TEST(FpRewriter, IsAtWorkForTheExactEncoderOnly) {
  TermManager mgr;
  const Term* x = mgr.make_constant(mgr.make_unique_symbol("x", mgr.get_fp_type(3, 4)));
  const Term* difference = mgr.make_fp_sub(mgr.make_fprounding_even(), x, x);
  const auto describe = [&](const solver::Options& options) {
    solver::Solver solver(mgr, options);
    solver.assert_formula(mgr.make_fp_iszero(difference));
    EXPECT_EQ(solver.check_sat(), Answer::sat);
    return solver.describe_rewriting();
  };
  solver::Options options;
  EXPECT_NE(describe(options).find("sub-itself 1"), std::string::npos);
  options.rewrite = false;
  EXPECT_EQ(describe(options), "");
  options.rewrite = true;
  options.encoder = solver::EncoderKind::base;
  EXPECT_EQ(describe(options), "");
}

}  // namespace
}  // namespace vorn::rewrite
