#include "vorn/terms/printer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

/// Terms print as they were built.
class Printing : public testing::Test {
 protected:
  const Term* constant(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }

  TermManager mgr{false};
  const Term* p = constant("p", mgr.get_bool_type());
  const Term* x = constant("x", mgr.get_bv_type(8));
  const Term* y = constant("y", mgr.get_bv_type(8));
  const Term* f = constant("f", mgr.get_fp_type(8, 23));
};

TEST_F(Printing, SortsAreSmtLibSorts) {
  EXPECT_EQ(mgr.get_bool_type()->to_string(), "Bool");
  EXPECT_EQ(mgr.get_fprounding_type()->to_string(), "RoundingMode");
  EXPECT_EQ(mgr.get_bv_type(32)->to_string(), "(_ BitVec 32)");
  EXPECT_EQ(mgr.get_fp_type(8, 23)->to_string(), "(_ FloatingPoint 8 24)");
}

TEST_F(Printing, SimpleSymbolsNeedNoQuotes) {
  for (const char* name : {"x", "X1", ".fp.f1", "a!1", "~!@$%^&*_-+=<>.?/", "_x", "letx"}) {
    EXPECT_EQ(quote_symbol(name), name);
  }
}

TEST_F(Printing, OtherSymbolsAreQuoted) {
  for (const char* name :
       {"",        "1x",          "a b",     "a(b",    "a;b",       "a\"b",  "a:b",
        "#x",      "a'b",         "a,b",     "a{b",    "h\xc3\xa9", "let",   "par",
        "_",       "!",           "as",      "exists", "forall",    "match", "BINARY",
        "DECIMAL", "HEXADECIMAL", "NUMERAL", "STRING"}) {
    EXPECT_EQ(quote_symbol(name), "|" + std::string(name) + "|");
  }
}

TEST_F(Printing, ConstantsPrintAsTheirQuotedNames) {
  EXPECT_EQ(x->to_string(), "x");
  EXPECT_EQ(constant("a b", mgr.get_bool_type())->to_string(), "|a b|");
  EXPECT_EQ(constant("x", mgr.get_bool_type())->to_string(), "x!1");
}

TEST_F(Printing, BooleansAndRoundingModesPrintAsTheirConstants) {
  EXPECT_EQ(mgr.make_true()->to_string(), "true");
  EXPECT_EQ(mgr.make_false()->to_string(), "false");
  EXPECT_EQ(mgr.make_fprounding_even()->to_string(), "roundNearestTiesToEven");
  EXPECT_EQ(mgr.make_fprounding_zero()->to_string(), "roundTowardZero");
  EXPECT_EQ(mgr.make_fprounding_plus_inf()->to_string(), "roundTowardPositive");
  EXPECT_EQ(mgr.make_fprounding_minus_inf()->to_string(), "roundTowardNegative");
  EXPECT_EQ(mgr.make_fprounding_away()->to_string(), "roundNearestTiesToAway");
}

TEST_F(Printing, BitVectorLiteralsAreHexadecimalWhereTheWidthAllows) {
  EXPECT_EQ(mgr.make_bv_number(0, 1)->to_string(), "#b0");
  EXPECT_EQ(mgr.make_bv_number(5, 5)->to_string(), "#b00101");
  EXPECT_EQ(mgr.make_bv_number(0, 8)->to_string(), "#x00");
  EXPECT_EQ(mgr.make_bv_number(0xab, 8)->to_string(), "#xab");
  EXPECT_EQ(mgr.make_bv_number(-1, 72)->to_string(), "#x" + std::string(18, 'f'));
  EXPECT_EQ(mgr.make_bv_number(1, 65)->to_string(), "#b" + std::string(64, '0') + "1");
}

TEST_F(Printing, FloatLiteralsShowTheirFields) {
  EXPECT_EQ(mgr.make_fp_number(QNumber(0xBF800001), 8, 23)->to_string(),
            "(fp #b1 #b01111111 #b00000000000000000000001)");
  EXPECT_EQ(mgr.make_fp_number(QNumber(1), 3, 4)->to_string(), "(fp #b0 #b000 #b0001)");
}

TEST_F(Printing, SpecialFloatsHaveTheirNames) {
  const std::pair<int, const char*> cases[] = {
      {0b00000000, "(_ +zero 3 5)"}, {0b10000000, "(_ -zero 3 5)"}, {0b01110000, "(_ +oo 3 5)"},
      {0b11110000, "(_ -oo 3 5)"},   {0b01110001, "(_ NaN 3 5)"},   {0b11111000, "(_ NaN 3 5)"},
  };
  for (const auto& [bits, text] : cases) {
    EXPECT_EQ(mgr.make_fp_number(QNumber(bits), 3, 4)->to_string(), text);
    EXPECT_EQ(literal_text(QNumber(bits), mgr.get_fp_type(3, 4)), text);
  }
  EXPECT_EQ(mgr.make_fp_nan(8, 23)->to_string(), "(_ NaN 8 24)");
}

TEST_F(Printing, OperationsPrintInSmtLibSyntax) {
  EXPECT_EQ(mgr.make_not(p)->to_string(), "(not p)");
  EXPECT_EQ(mgr.make_implies(p, mgr.make_true())->to_string(), "(=> p true)");
  EXPECT_EQ(mgr.make_iff(p, mgr.make_false())->to_string(), "(= p false)");
  EXPECT_EQ(mgr.make_equal(y, x)->to_string(), "(= y x)");
  EXPECT_EQ(mgr.make_term_ite(p, x, y)->to_string(), "(ite p x y)");
  EXPECT_EQ(mgr.make_bv_add(x, mgr.make_bv_number(1, 8))->to_string(), "(bvadd x #x01)");
  EXPECT_EQ(mgr.make_bv_lshl(x, y)->to_string(), "(bvshl x y)");
  EXPECT_EQ(mgr.make_bv_sle(x, y)->to_string(), "(bvsle x y)");
  EXPECT_EQ(mgr.make_fp_lt(f, f)->to_string(), "(fp.lt f f)");
  EXPECT_EQ(mgr.make_fp_isinf(f)->to_string(), "(fp.isInfinite f)");
  EXPECT_EQ(mgr.make_fp_div(mgr.make_fprounding_zero(), f, f)->to_string(),
            "(fp.div roundTowardZero f f)");
}

TEST_F(Printing, IndexedOperatorsShowTheirIndices) {
  const Term* rm = mgr.make_fprounding_zero();
  EXPECT_EQ(mgr.make_bv_extract(6, 2, x)->to_string(), "((_ extract 6 2) x)");
  EXPECT_EQ(mgr.make_bv_zero_extend(3, x)->to_string(), "((_ zero_extend 3) x)");
  EXPECT_EQ(mgr.make_bv_sign_extend(0, x)->to_string(), "((_ sign_extend 0) x)");
  EXPECT_EQ(mgr.make_fp_cast(5, 10, rm, f)->to_string(), "((_ to_fp 5 11) roundTowardZero f)");
  EXPECT_EQ(mgr.make_fp_from_sbv(5, 10, rm, x)->to_string(), "((_ to_fp 5 11) roundTowardZero x)");
  EXPECT_EQ(mgr.make_fp_from_ubv(5, 10, rm, x)->to_string(),
            "((_ to_fp_unsigned 5 11) roundTowardZero x)");
  EXPECT_EQ(mgr.make_fp_from_bits(3, 4, x)->to_string(), "((_ to_fp 3 5) x)");
}

TEST_F(Printing, SharedSubtermsAreBoundOnce) {
  const Term* sum = mgr.make_bv_add(x, y);
  EXPECT_EQ(mgr.make_bv_mul(sum, sum)->to_string(), "(let ((.s1 (bvadd x y))) (bvmul .s1 .s1))");
  const Term* product = mgr.make_bv_mul(sum, sum);
  EXPECT_EQ(mgr.make_bv_sub(product, mgr.make_bv_not(product))->to_string(),
            "(let ((.s1 (bvadd x y))) (let ((.s2 (bvmul .s1 .s1))) (bvsub .s2 (bvnot .s2))))");
}

TEST_F(Printing, SharedLeavesAreNotBound) {
  EXPECT_EQ(mgr.make_bv_add(x, x)->to_string(), "(bvadd x x)");
  const Term* one = mgr.make_bv_number(1, 8);
  EXPECT_EQ(mgr.make_bv_add(one, one)->to_string(), "(bvadd #x01 #x01)");
}

TEST_F(Printing, AGraphPrintsInLinearLength) {
  const Term* t = x;
  for (int i = 0; i < 200; ++i)
    t = mgr.make_bv_add(t, t);
  EXPECT_LT(t->to_string().size(), 200U * 60U);
}

TEST_F(Printing, DeepTermsNeedNoNativeStack) {
  constexpr std::size_t kDepth = 200000;
  const Term* t = p;
  for (std::size_t i = 0; i < kDepth; ++i)
    t = mgr.make_not(t);
  const std::string text = t->to_string();
  EXPECT_EQ(text.size(), kDepth * 6 + 1);
  EXPECT_EQ(text.substr(0, 10), "(not (not ");
  EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(text, ')')), kDepth);
}

TEST_F(Printing, DeepSharingNeedsNoNativeStack) {
  constexpr std::size_t kDepth = 200000;
  const Term* t = x;
  for (std::size_t i = 0; i < kDepth; ++i)
    t = mgr.make_bv_add(t, t);
  const std::string text = t->to_string();
  EXPECT_EQ(std::ranges::count(text, '('), std::ranges::count(text, ')'));
  EXPECT_TRUE(text.starts_with("(let ((.s1 (bvadd x x))) (let ((.s2 (bvadd .s1 .s1))) "));
}

TEST(Printer, TheEmptyNameIsQuoted) {
  TermManager mgr;
  const Term* x = mgr.make_constant(mgr.make_unique_symbol("", mgr.get_bool_type()));
  EXPECT_EQ(x->to_string(), "||");
}

TEST(Printer, LetBindsNoNameThatAConstantHas) {
  TermManager mgr(false);
  const Term* x = mgr.make_constant(mgr.make_unique_symbol(".s1", mgr.get_bv_type(4)));
  const Term* shared = mgr.make_bv_not(x);
  EXPECT_EQ(mgr.make_bv_add(mgr.make_bv_add(shared, x), shared)->to_string(),
            "(let ((.s2 (bvnot .s1))) (bvadd (bvadd .s2 .s1) .s2))");
}

TEST(Printer, CommandNamesAreQuoted) {
  EXPECT_EQ(quote_symbol("assert"), "|assert|");
}

}  // namespace
}  // namespace vorn
