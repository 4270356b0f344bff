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
