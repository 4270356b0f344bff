// Names that scripts may not declare.
#include "vorn/terms/theory_symbol.h"

#include <gtest/gtest.h>

namespace vorn {
namespace {

TEST(TheorySymbol, KnowsOperationsAndForms) {
  for (const char* name : {"and", "true", "=", "ite", "bvadd", "bvnego", "fp.add", "fp.gt", "RNE",
                           "roundTowardZero", "NaN", "-oo", "to_fp", "fp", "select", "-"})
    EXPECT_TRUE(is_theory_symbol(name)) << name;
  for (const char* name : {"", "x", "And", "bvadd!1", "const", "assert", "let", ".fp.f1", "div"})
    EXPECT_FALSE(is_theory_symbol(name)) << name;
}

TEST(TheorySymbol, KnowsSorts) {
  for (const char* name : {"Bool", "BitVec", "Float64", "Array", "RoundingMode"})
    EXPECT_TRUE(is_theory_sort(name)) << name;
  for (const char* name : {"", "Object", "bool", "and"})
    EXPECT_FALSE(is_theory_sort(name)) << name;
}

}  // namespace
}  // namespace vorn
