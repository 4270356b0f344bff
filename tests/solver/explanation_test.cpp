// Explanations against folded encodings, and intermediate values against arithmetic on integers.
#include "vorn/solver/explanation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/fp/tracked_labels.h"
#include "tests/oracle/random_operands.h"
#include "tests/solver/explained_operation.h"
#include "tests/solver/explained_values.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/fp/labels.h"

namespace vorn::solver {
namespace {

/// The labels that an encoder of the test's own tracks.
fp::Labels tracked_labels(const Operation& of, Format f, Format to, Mode mode, EncoderKind kind) {
  TermManager source;
  TermManager target(false);
  std::unique_ptr<fp::FpBvEncoder> encoder;
  if (kind == EncoderKind::base) {
    encoder = std::make_unique<fp::FpBvEncoder>(&source, &target);
  } else {
    encoder = std::make_unique<fp::IeeeBvEncoder>(&source, &target);
  }
  encoder->set_debug_flag(true);
  const DataType* type = of.has_bits ? source.get_bv_type(to.e) : source.get_fp_type(f.e, f.m);
  Terms args;
  for (std::size_t i = 0; i < of.arity; ++i) {
    args.push_back(source.make_constant(source.make_unique_symbol("x", type)));
    if (!of.has_bits) continue;
    const Symbol* bits = target.make_unique_symbol("x", target.get_bv_type(to.e));
    encoder->define_encoding(args.back(), target.make_constant(bits));
  }
  Terms constraints;
  encoder->get_bv_encoding(of.build(source, source.make_fprounding(mode), args, to), &constraints);
  return fp::Tracked(target, constraints).labels;
}

struct Configuration {
  EncoderKind kind;
  Format format;
};

class ExplanationTest : public testing::TestWithParam<Configuration> {
 protected:
  static constexpr int kRounds = 40;

  std::vector<Mode> modes() const {
    std::vector<Mode> all = {Mode::nearest_even, Mode::toward_zero, Mode::plus_inf,
                             Mode::minus_inf};
    if (GetParam().kind == EncoderKind::ieee) all.push_back(Mode::nearest_away);
    return all;
  }
  static Format second(const Operation& of, Format f, unsigned choice) {
    const bool is_width = of.has_bits || std::string(of.name).starts_with("to_");
    return is_width ? Format{1 + choice % 9, 0} : other_format(f, choice);
  }
  std::vector<mpz_class> operands(const Operation& of, Format f, Format to) {
    if (of.has_bits) return {random.bits(to.e)};
    std::vector<mpz_class> x{random.float_pattern(f)};
    if (of.arity > 1) x.push_back(random.partner(f, x[0]));
    if (of.arity > 2) x.push_back(random.third(f, x[0], x[1]));
    return x;
  }

  oracle::RandomOperands random{7};
};

TEST_P(ExplanationTest, ResultsAreThoseOfFoldedEncodingsAndValuesObeyArithmetic) {
  const auto [kind, f] = GetParam();
  std::size_t compared = 0;
  for (const Operation& of : kOperations) {
    if (kind == EncoderKind::base && !of.in_base) continue;
    for (unsigned round = 0; round < kRounds; ++round) {
      const Format to = second(of, f, round);
      const std::vector<Mode> all = modes();
      const Mode mode = all[round % all.size()];
      const std::vector<mpz_class> x = operands(of, f, to);
      std::string context = of.name;
      for (const mpz_class& bits : x)
        context += " " + bits.get_str(16);
      SCOPED_TRACE(context + " mode " + std::to_string(static_cast<int>(mode)) + " to " +
                   std::to_string(to.e) + " " + std::to_string(to.m));
      Instance instance(of, f, to, mode, x, kind);
      std::optional<QNumber> folded;
      try {
        folded = instance.fold();
      } catch (const std::invalid_argument&) {
        EXPECT_THROW(instance.explain(kind), std::invalid_argument);
        continue;
      }
      const Explanation explanation = instance.explain(kind);
      EXPECT_EQ(explanation.is_open, !folded.has_value());
      if (folded) {
        EXPECT_EQ(explanation.result, *folded);
        ++compared;
      }
      if (kind == EncoderKind::ieee) {
        EXPECT_FALSE(explanation.is_excluded);
        EXPECT_FALSE(explanation.is_folded);
      }
      const Values values(explanation);
      for (const char* label :
           {"add_sub_result", "mul_result", "div_result", "cast_result", "fma_result",
            "sqrt_result", "rem_result", "integral_result", "select_result", "to_int_result"}) {
        if (values.find(label) != nullptr) {
          EXPECT_EQ(values.get(label), explanation.result.get_numerator());
        }
      }
      if (of.has_bits) continue;
      std::vector<Parts> parts;
      for (const mpz_class& bits : x)
        parts.emplace_back(f, bits);
      for (const char* prefix : {"add_", "mul_", "div_", "cast_", "fma_", "sqrt_", "rem_",
                                 "integral_", "compare_", "select_"}) {
        for (unsigned i = 0; i < x.size(); ++i)
          check_operand(values, prefix, i + 1, parts[i]);
      }
      if (!explanation.is_folded) {
        check_exact_part(of.name, values, parts, f);
        check_rounding(values, mode);
      }
    }
  }
  EXPECT_GT(compared, 300U);
}

TEST_P(ExplanationTest, LabelsAreThoseOfTheEncoderInItsOrderAndAllAreKnown) {
  const auto [kind, f] = GetParam();
  std::size_t labels = 0;
  for (const Operation& of : kOperations) {
    if (kind == EncoderKind::base && !of.in_base) continue;
    for (unsigned round = 0; round < 8; ++round) {
      const Format to = second(of, f, round);
      const Mode mode = round % 2 == 0 ? Mode::nearest_even : Mode::minus_inf;
      const std::vector<mpz_class> x = operands(of, f, to);
      SCOPED_TRACE(of.name);
      Instance instance(of, f, to, mode, x, kind);
      fp::Labels expected;
      try {
        expected = tracked_labels(of, f, to, mode, kind);
      } catch (const std::invalid_argument&) {
        continue;
      }
      fp::Labels found;
      for (const Intermediate& value : instance.explain(kind).intermediates) {
        EXPECT_NE(fp::find_label(value.label).stage, fp::Stage::other);
        found.emplace_back(value.label, value.width);
      }
      // Booleans have width 0 there.
      for (std::size_t i = 0; i < std::min(expected.size(), found.size()); ++i) {
        if (expected[i].second == 0) expected[i].second = 1;
      }
      EXPECT_EQ(found, expected);
      labels += found.size();
    }
  }
  EXPECT_GT(labels, 500U);
}

std::string name_of(const testing::TestParamInfo<Configuration>& tested) {
  const Format f = tested.param.format;
  const char* encoder = tested.param.kind == EncoderKind::base ? "base_" : "ieee_";
  return encoder + std::to_string(f.e) + "_" + std::to_string(f.m);
}

constexpr Configuration kConfigurations[] = {
    {EncoderKind::ieee, {3, 3}},   {EncoderKind::ieee, {2, 1}},  {EncoderKind::ieee, {5, 10}},
    {EncoderKind::ieee, {2, 12}},  {EncoderKind::ieee, {8, 3}},  {EncoderKind::ieee, {8, 23}},
    {EncoderKind::ieee, {11, 52}}, {EncoderKind::base, {3, 3}},  {EncoderKind::base, {5, 10}},
    {EncoderKind::base, {4, 2}},   {EncoderKind::base, {8, 23}}, {EncoderKind::base, {11, 52}}};

INSTANTIATE_TEST_SUITE_P(Formats, ExplanationTest, testing::ValuesIn(kConfigurations), name_of);

const Operation& operation(const std::string& name) {
  return *std::ranges::find_if(kOperations, [&](const Operation& o) { return name == o.name; });
}

TEST(ExplanationCase, SumsOfOppositeZeroSignAreExcludedByTheBaseEncoder) {
  Instance instance(operation("add"), {3, 3}, {}, Mode::nearest_even, {0x58, 0x18},
                    EncoderKind::base);
  const Explanation explanation = instance.explain(EncoderKind::base);
  EXPECT_EQ(explanation.result, QNumber(0));
  EXPECT_TRUE(explanation.is_excluded);
}

TEST(ExplanationCase, FormatsWithoutACircuitOfVariablesAreFolded) {
  Instance instance(operation("div"), {4, 2}, {}, Mode::nearest_even, {0x1d, 0x1e},
                    EncoderKind::base);
  const std::optional<QNumber> folded = instance.fold();
  const Explanation explanation = instance.explain(EncoderKind::base);
  EXPECT_TRUE(explanation.is_folded);
  EXPECT_FALSE(explanation.intermediates.empty());
  EXPECT_EQ(explanation.result, folded.value());
}

TEST(ExplanationCase, WhatIsOpenIsDecidedByTheModel) {
  Instance conversion(operation("to_ubv"), {3, 3}, {8, 0}, Mode::nearest_even, {0x38},
                      EncoderKind::ieee);
  const QNumber any(0xa5);
  const Explanation converted = conversion.explain(EncoderKind::ieee, &any);
  EXPECT_TRUE(converted.is_open);
  EXPECT_EQ(converted.result, any);
  for (const long zero : {0x00L, 0x40L}) {
    Instance smaller(operation("min"), {3, 3}, {}, Mode::nearest_even, {0x40, 0x00},
                     EncoderKind::ieee);
    const QNumber value(zero);
    const Explanation explanation = smaller.explain(EncoderKind::ieee, &value);
    EXPECT_TRUE(explanation.is_open);
    EXPECT_EQ(explanation.result, value);
  }
}

TEST(ExplanationCase, ASolverWithLabelsTiesThemAndAnswersTheSame) {
  for (const EncoderKind kind : {EncoderKind::ieee, EncoderKind::base}) {
    TermManager mgr;
    Options options;
    options.encoder = kind;
    options.debug_labels = true;
    Solver solver(mgr, options);
    const DataType* type = mgr.get_fp_type(3, 3);
    const Term* x = mgr.make_constant(mgr.make_unique_symbol("mul_mant", type));
    const Term* product = mgr.make_fp_mul(mgr.make_fprounding_even(), x, x);
    solver.assert_formula(mgr.make_equal(product, mgr.make_fp_number(QNumber(0x21), 3, 3)));
    const auto no_input = [](const Term*) { return false; };
    const std::vector<fp::Tie> ties = fp::find_ties(mgr, solver.encode({}).conjuncts, no_input);
    EXPECT_EQ(std::ranges::count(ties, std::string("mul_mant"), &fp::Tie::label), 1);
    EXPECT_EQ(ties.back().label, "mul_result");
    EXPECT_EQ(solver.check_sat(), Answer::sat);
    EXPECT_EQ(solver.get_value(product), mgr.make_fp_number(QNumber(0x21), 3, 3));
  }
}

TEST(ExplanationCase, RefusesWhatTheEncoderDoesNotHave) {
  Instance root(operation("sqrt"), {3, 3}, {}, Mode::nearest_even, {0x18}, EncoderKind::ieee);
  EXPECT_THROW(root.explain(EncoderKind::base), std::invalid_argument);
  Instance away(operation("add"), {3, 3}, {}, Mode::nearest_away, {0x18, 0x18}, EncoderKind::ieee);
  EXPECT_THROW(away.explain(EncoderKind::base), std::invalid_argument);
  const std::vector<QNumber> none;
  EXPECT_THROW(explain(root.mgr, root.term, none, EncoderKind::ieee), std::invalid_argument);
  const Term* free =
      root.mgr.make_constant(root.mgr.make_unique_symbol("x", root.mgr.get_bv_type(2)));
  EXPECT_THROW(read_literals(root.mgr, {&free, 1}), std::invalid_argument);
}

}  // namespace
}  // namespace vorn::solver
