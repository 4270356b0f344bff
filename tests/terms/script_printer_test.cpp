// Formulas printed as scripts, read back and compared.
#include "vorn/terms/script_printer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

class ScriptPrinterTest : public testing::Test {
 protected:
  const Term* variable(const std::string& name, std::size_t width) {
    return mgr.make_constant(mgr.make_unique_symbol(name, mgr.get_bv_type(width)));
  }
  static std::string print(const std::vector<const Term*>& formulas) {
    std::ostringstream out;
    ScriptPrinter(formulas).print(out);
    return out.str();
  }

  TermManager mgr{false};
};

TEST_F(ScriptPrinterTest, DefinesWhatOccursMoreThanOnce) {
  const Term* x = variable("x", 8);
  const Term* y = variable("y y", 8);
  const Term* sum = mgr.make_bv_add(x, y);
  const Term* small = mgr.make_bv_ult(sum, mgr.make_bv_mul(sum, x));
  EXPECT_EQ(print({small, mgr.make_not(mgr.make_equal(y, mgr.make_bv_number(3, 8))), small}),
            "(declare-const x (_ BitVec 8))\n"
            "(declare-const |y y| (_ BitVec 8))\n"
            "(define-fun s1 () (_ BitVec 8) (bvadd x |y y|))\n"
            "(define-fun s2 () Bool (bvult s1 (bvmul s1 x)))\n"
            "(assert s2)\n"
            "(assert (not (= |y y| #x03)))\n"
            "(assert s2)\n");
}

TEST_F(ScriptPrinterTest, PrintsFormulasThatAreLeaves) {
  const Term* p = mgr.make_constant(mgr.make_unique_symbol("p", mgr.get_bool_type()));
  EXPECT_EQ(print({p, mgr.make_true(), p}),
            "(declare-const p Bool)\n(assert p)\n(assert true)\n(assert p)\n");
  EXPECT_EQ(print({}), "");
}

TEST_F(ScriptPrinterTest, DeclaresNoRoundingModeOfTheTheory) {
  const Term* rm = mgr.make_constant(mgr.make_unique_symbol("rm", mgr.get_fprounding_type()));
  EXPECT_EQ(print({mgr.make_equal(rm, mgr.make_fprounding_zero())}),
            "(declare-const rm RoundingMode)\n(assert (= rm roundTowardZero))\n");
}

TEST_F(ScriptPrinterTest, GivesNamesThatBelongToSolversToNoConstant) {
  const Term* plain = variable("vorn.x", 1);
  const Term* dotted = variable(".x", 1);
  const Term* at = variable("@y", 1);
  const Term* taken = variable("s1", 1);
  const Term* both = mgr.make_bv_and(at, taken);
  const Term* formula = mgr.make_equal(mgr.make_bv_xor(dotted, plain), mgr.make_bv_or(both, both));
  const std::vector<const Term*> formulas = {formula};
  const ScriptPrinter printer(formulas);
  EXPECT_EQ(printer.get_name(plain), "vorn.x");
  EXPECT_EQ(printer.get_name(at), "vorn@y");
  EXPECT_EQ(printer.get_name(taken), "s1");
  EXPECT_EQ(printer.get_name(variable("absent", 1)), "");
  const std::string other = printer.get_name(dotted);
  EXPECT_FALSE(other.empty());
  for (const Term* constant : {plain, at, taken})
    EXPECT_NE(other, printer.get_name(constant));
  EXPECT_NE(print(formulas).find("(define-fun s2 () (_ BitVec 1) (bvand vorn@y s1))"),
            std::string::npos)
      << print(formulas);
}

TEST_F(ScriptPrinterTest, KeepsTheNamesThatUsersGave) {
  const Term* first = variable("x", 1);
  const Term* second = variable("x", 1);
  const Term* third = variable("x!1", 1);
  const Term* blank = variable("a b", 1);
  const Term* word = variable("let", 1);
  const Term* digit = variable("1", 1);
  const Term* lines = variable("two\nlines", 1);
  std::vector<const Term*> formulas;
  for (const Term* t : {first, second, third, blank, word, digit, lines})
    formulas.push_back(mgr.make_equal(t, mgr.make_bv_number(0, 1)));
  EXPECT_EQ(print(formulas),
            "(declare-const x (_ BitVec 1))\n"
            "(declare-const x!1 (_ BitVec 1))\n"
            "(declare-const x!1!1 (_ BitVec 1))\n"
            "(declare-const |a b| (_ BitVec 1))\n"
            "(declare-const |let| (_ BitVec 1))\n"
            "(declare-const |1| (_ BitVec 1))\n"
            "(declare-const |two\nlines| (_ BitVec 1))\n"
            "(assert (= x #b0))\n"
            "(assert (= x!1 #b0))\n"
            "(assert (= x!1!1 #b0))\n"
            "(assert (= |a b| #b0))\n"
            "(assert (= |let| #b0))\n"
            "(assert (= |1| #b0))\n"
            "(assert (= |two\nlines| #b0))\n");
}

TEST_F(ScriptPrinterTest, GivesNamesOfTheoriesToNoConstant) {
  const Term* conjunction = variable("and", 1);
  const Term* taken = variable("vorn.and", 1);
  const Term* truth = mgr.make_constant("true", mgr.get_bool_type());
  const Term* mode = mgr.make_constant("RNE", mgr.get_fprounding_type());
  const Term* control = variable("x\x01", 1);
  const DataType* sort = mgr.get_uninterpreted_type("Bool");
  const Term* element = mgr.make_constant("b", sort);
  const std::vector<const Term*> formulas = {
      mgr.make_equal(conjunction, taken), truth, mgr.make_equal(mode, mgr.make_fprounding_even()),
      mgr.make_equal(control, taken), mgr.make_equal(element, element)};
  const ScriptPrinter printer(formulas);
  EXPECT_EQ(printer.get_name(taken), "vorn.and");
  EXPECT_EQ(printer.get_name(conjunction), "c1");
  EXPECT_EQ(printer.get_name(truth), "vorn.true");
  EXPECT_EQ(printer.get_name(mode), "vorn.RNE");
  EXPECT_EQ(printer.get_name(control), "c2");
  const std::string text = print(formulas);
  EXPECT_NE(text.find("(declare-sort vorn.Bool 0)\n"), std::string::npos) << text;
  EXPECT_NE(text.find("(declare-const b vorn.Bool)\n"), std::string::npos) << text;
  EXPECT_NE(text.find("(= vorn.RNE roundNearestTiesToEven)"), std::string::npos) << text;
}

TEST_F(ScriptPrinterTest, GrowsWithTheGraphAndNotWithTheTree) {
  const Term* t = variable("x", 8);
  for (int i = 0; i < 1'000; ++i)
    t = mgr.make_bv_add(t, t);
  EXPECT_LT(print({mgr.make_equal(t, variable("y", 8))}).size(), 100'000U);
}

TEST_F(ScriptPrinterTest, NestsNoDeeperThanReadersThatRecurseCanFollow) {
  const Term* t = variable("x", 8);
  for (int i = 0; i < 100'000; ++i)
    t = mgr.make_bv_not(t);
  const std::string text = print({mgr.make_equal(t, variable("y", 8))});
  std::size_t depth = 0;
  std::size_t deepest = 0;
  for (const char c : text) {
    if (c == '(') deepest = std::max(deepest, ++depth);
    if (c == ')') --depth;
  }
  EXPECT_EQ(depth, 0U);
  EXPECT_LT(deepest, 80U);
  EXPECT_EQ(std::count(text.begin(), text.end(), 'b'), 100'000) << "a bvnot each";
}

}  // namespace
}  // namespace vorn
