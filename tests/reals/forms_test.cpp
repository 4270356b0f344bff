#include "vorn/reals/forms.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/ranges/small_formula.h"
#include "tests/reals/model_values.h"
#include "vorn/reals/refuter.h"
#include "vorn/terms/bv_number.h"
#include "vorn/terms/post_order.h"

namespace vorn::reals {
namespace {

using ranges::Propagation;
using ranges::SmallFormulas;

constexpr std::uint64_t kEnough = 1'000'000;

bool is_multiple(const QNumber& x, std::int64_t quantum) {
  const QNumber power = BVNumber::power_of_two(static_cast<std::uint64_t>(std::abs(quantum)));
  return (quantum < 0 ? x * power : x / power).is_integer();
}

/// The formulas, and bounds of all floats, without which hardly any result is finite.
std::vector<const Term*> make_bounded(SmallFormulas& small) {
  std::vector<const Term*> formulas = small.make_conjunction();
  TermManager& mgr = small.get_manager();
  std::vector<const Term*> bounds;
  for (const Term* t : list_post_order(formulas)) {
    if (t->get_type()->get_kind() != DataType::Kind::floating_point) continue;
    if (t->get_arity() != 0 || t->get_symbol()->get_literal() != nullptr) continue;
    const IEEEFloat::format f = t->get_type()->get_format();
    IEEEFloat two(f, IEEEFloat::rounding_mode::nearest_even);
    two.self_round(QNumber(2));
    const Term* bound = mgr.make_fp_number(two);
    bounds.push_back(mgr.make_fp_le(mgr.make_fp_abs(t), bound));
  }
  formulas.insert(formulas.end(), bounds.begin(), bounds.end());
  return formulas;
}

QNumber magnitude(const QNumber& x) {
  return x.sign() < 0 ? x.neg() : x;
}

/// Soundness: in every model each term is as far from its polynomial as it may be, and no row is
/// violated; so nothing that has a model is refuted.
TEST(Forms, HoldInAllModels) {
  std::size_t combined = 0;
  std::size_t exact = 0;
  std::size_t tight = 0;
  std::size_t rows = 0;
  for (std::uint64_t seed = 0; seed < 400; ++seed) {
    SmallFormulas small(seed);
    const std::vector<const Term*> formulas = make_bounded(small);
    Propagation ranges(small.get_manager());
    assert_all(formulas, &ranges);
    if (ranges.is_contradiction()) continue;
    Bounds bounds(ranges);
    const Forms forms(ranges, bounds, kEnough);
    Refuter refuter(ranges, kEnough);
    const bool is_refuted = refuter.run();
    rows += refuter.get_rows().size();
    small.visit_models(formulas, [&](semantics::Evaluator& model) {
      EXPECT_FALSE(is_refuted) << seed;
      for (Propagation::Slot slot = 0; slot < ranges.get_size(); ++slot) {
        const Form* form = forms.find(slot);
        if (form == nullptr) continue;
        const Term* t = ranges.get_term(slot);
        const QNumber value = real_of(t, model.evaluate(t));
        const QNumber error = magnitude(value - evaluate(form->value, ranges, model));
        EXPECT_LE(error, form->error) << seed << ' ' << t->to_string();
        EXPECT_TRUE(is_multiple(value, form->quantum)) << seed << ' ' << t->to_string();
        if (form->value == Polynomial::of_unknown(slot) || form->value.is_constant()) continue;
        ++combined;
        exact += form->error.sign() == 0 ? 1 : 0;
        tight += form->error.sign() != 0 && error == form->error ? 1 : 0;
      }
      for (const Row& row : refuter.get_rows())
        EXPECT_LE(evaluate(row.sum, ranges, model), row.bound) << seed;
      return !testing::Test::HasFailure();
    });
  }
  EXPECT_GT(combined, 10'000U);
  EXPECT_GT(exact, 1'000U) << "results that are values";
  EXPECT_GT(tight, 30U) << "errors that are as large as they may be";
  EXPECT_GT(rows, 500U);
  RecordProperty("forms", std::to_string(combined) + ", of which " + std::to_string(exact) +
                              " are exact and " + std::to_string(tight) + " as far off as can be");
}

}  // namespace
}  // namespace vorn::reals
