#include "vorn/fp/labels.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vorn::fp {
namespace {

TEST(Labels, RowsStandForOperandsOfEveryOperation) {
  const Label& row = find_label("sqrt_mant1");
  EXPECT_EQ(row.stage, Stage::unpack);
  EXPECT_EQ(row.reading, Reading::significand);
  EXPECT_EQ(get_exponent_label("sqrt_mant1", row), "sqrt_exp1");
  EXPECT_EQ(get_exponent_label("compare_mant2", find_label("compare_mant2")), "compare_exp2");
  const Label& normalised = find_label("div_mant2_norm");
  EXPECT_EQ(get_exponent_label("div_mant2_norm", normalised), "div_exp2_norm");
  EXPECT_EQ(get_exponent_label("mul_mant", find_label("mul_mant")), "mul_exp");
}

TEST(Labels, UnknownNamesHaveNoStage) {
  for (const char* name : {"", "x", "mul", "mul_mant0", "mul_mant12", "_", "add_exp"})
    EXPECT_EQ(find_label(name).stage, Stage::other) << name;
}

TEST(Labels, EveryStageAndReadingHasAName) {
  EXPECT_EQ(get_stage_name(Stage::unpack), "unpack");
  EXPECT_EQ(get_stage_name(Stage::normalise_operands), "normalise operands");
  EXPECT_EQ(get_stage_name(Stage::special), "special cases");
  EXPECT_EQ(get_stage_name(Stage::pack), "pack");
  EXPECT_EQ(get_stage_name(Stage::other), "other");
  EXPECT_EQ(get_reading_name(Reading::bits), "bits");
  EXPECT_EQ(get_reading_name(Reading::exponent_field), "exponent field");
  EXPECT_EQ(get_reading_name(Reading::target), "result");
}

/// Ties come out of constraints whatever the manager makes of them.
TEST(Ties, AreFoundInSimplifiedConstraints) {
  TermManager mgr;
  const auto constant = [&](const char* name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  };
  const DataType* bits = mgr.get_bv_type(4);
  const Term* p = constant("p", mgr.get_bool_type());
  const Term* x = constant("mul_exp1", bits);  // an input that is called like a label
  const Term* flag1 = constant("denorm_shift_denormal", mgr.get_bool_type());
  const Term* flag2 = constant("denorm_shift_denormal", mgr.get_bool_type());
  const Term* flag3 = constant("denorm_shift_denormal", mgr.get_bool_type());
  const Term* value = constant("mul_exp", bits);
  const std::vector<const Term*> constraints = {
      mgr.make_iff(mgr.make_true(), flag1),
      mgr.make_or(p, mgr.make_equal(x, mgr.make_bv_number(3, 4))),
      mgr.make_iff(mgr.make_not(p), flag2),
      mgr.make_iff(mgr.make_false(), flag3),
      mgr.make_equal(x, mgr.make_bv_number(5, 4)),
      mgr.make_equal(x, value),
  };
  const std::vector<Tie> ties =
      find_ties(mgr, constraints, [&](const Term* t) { return t == x || t == p; });
  ASSERT_EQ(ties.size(), 4U);
  const Term* const values[] = {mgr.make_true(), mgr.make_not(p), mgr.make_false(), x};
  for (std::size_t i = 0; i < ties.size(); ++i)
    EXPECT_EQ(ties[i].value, values[i]) << i;
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(ties[i].label, "denorm_shift_denormal");
    EXPECT_EQ(ties[i].occurrence, i + 1);
  }
  EXPECT_EQ(ties[3].constant, value);
}

}  // namespace
}  // namespace vorn::fp
