// Bit-vectors as integers: forms of them in all models of random formulas over a few words, and
// what wrapping and signs forbid.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/ranges/small_formula.h"
#include "tests/reals/model_values.h"
#include "vorn/reals/forms.h"
#include "vorn/reals/refuter.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/semantics/open_terms.h"
#include "vorn/terms/term_manager.h"

namespace vorn::reals {
namespace {

using ranges::Propagation;
using T = SymbolTag;

constexpr std::uint64_t kEnough = 1'000'000;
constexpr std::uint64_t kWidth = 4;

/// Random formulas over three words, and floats that are made of them.
class SmallIntegers {
 public:
  explicit SmallIntegers(std::uint64_t seed) : random(seed) {
    for (const char* name : {"x", "y", "z"})
      words.push_back(mgr.make_constant(mgr.make_unique_symbol(name, mgr.get_bv_type(kWidth))));
  }

  TermManager& get_manager() { return mgr; }

  /// Bounds of words, comparisons of what is made of them, and one of floats.
  std::vector<const Term*> make_conjunction() {
    std::vector<const Term*> formulas;
    for (const Term* word : words) {
      if (below(4) != 0) formulas.push_back(mgr.make(T::bv_ule, {word, make_literal()}));
    }
    for (std::size_t count = below(3); count > 0; --count)
      formulas.push_back(make_truth(make_order()));
    if (below(2) == 0) {
      formulas.push_back(make_difference());
      return formulas;
    }
    const T::tag orders[] = {T::fp_lt, T::fp_le, T::fp_equal, T::equal};
    formulas.push_back(
        make_truth(mgr.make(orders[below(std::size(orders))], {make_float(2), make_float(2)})));
    return formulas;
  }

  template <class Visit>
  void visit_models(const std::vector<const Term*>& formulas, const Visit& visit) {
    constexpr std::uint64_t kValues = std::uint64_t{1} << kWidth;
    for (std::uint64_t i = 0; i < kValues * kValues * kValues; ++i) {
      std::map<const Term*, QNumber> model = {
          {words[0], QNumber::from_integer(i % kValues)},
          {words[1], QNumber::from_integer(i / kValues % kValues)},
          {words[2], QNumber::from_integer(i / kValues / kValues)}};
      semantics::Evaluator evaluator(mgr, [&](const Term* t) { return model.at(t); });
      const bool is_model = std::all_of(formulas.begin(), formulas.end(), [&](const Term* f) {
        return evaluator.evaluate(f).sign() != 0;
      });
      if (is_model) visit(evaluator);
    }
  }

 private:
  std::size_t below(std::size_t n) { return random() % n; }
  const Term* make_literal() {
    return mgr.make_bv_number(QNumber::from_integer(below(1U << kWidth)), kWidth);
  }
  const Term* make_truth(const Term* formula) {
    return below(4) == 0 ? mgr.make(T::bool_not, {formula}) : formula;
  }
  const Term* make_order() {
    const T::tag orders[] = {T::bv_ult, T::bv_ule, T::bv_slt, T::bv_sle, T::equal};
    return mgr.make(orders[below(std::size(orders))], {make_bits(2), make_bits(1)});
  }

  const Term* make_bits(unsigned depth) {
    if (depth == 0) return below(5) == 0 ? make_literal() : words[below(words.size())];
    const Term* a = make_bits(depth - 1);
    switch (below(14)) {
      case 0:
        return mgr.make(T::bv_neg, {a});
      case 1:
        return mgr.make(T::bv_not, {a});
      case 2:
        return mgr.make(T::bv_shl, {a, mgr.make_bv_number(QNumber(1), kWidth)});
      case 3:
        return mgr.make(T::bv_lshr, {a, mgr.make_bv_number(QNumber(1), kWidth)});
      case 4:
        return mgr.make(T::bv_zero_extend, {2}, {mgr.make(T::bv_extract, {2, 1}, {a})});
      case 5:
        return mgr.make(T::bv_sign_extend, {1}, {mgr.make(T::bv_extract, {2, 0}, {a})});
      case 6:
        return mgr.make(T::bv_concat, {mgr.make(T::bv_extract, {1, 0}, {a}),
                                       mgr.make(T::bv_extract, {2, 1}, {make_bits(depth - 1)})});
      case 7:
        return mgr.make(T::ite, {make_order_of(a), a, make_bits(depth - 1)});
      case 8:
      case 9:
        return mgr.make(T::bv_sub, {a, make_bits(depth - 1)});
      case 10:
      case 11:
        return mgr.make(T::bv_mul, {a, make_bits(depth - 1)});
      default:
        return mgr.make(T::bv_add, {a, make_bits(depth - 1)});
    }
  }
  const Term* make_order_of(const Term* a) { return mgr.make(T::bv_ult, {a, make_bits(0)}); }

  /// That an operation on words is not the same one on floats.
  const Term* make_difference() {
    constexpr T::tag kOperations[][2] = {
        {T::bv_add, T::fp_add}, {T::bv_sub, T::fp_sub}, {T::bv_mul, T::fp_mul}};
    const auto& [on_bits, on_floats] = kOperations[below(3)];
    const Term* mode = mgr.make_fprounding(ranges::kRoundingModes[below(5)]);
    const auto convert = [&](const Term* t) { return mgr.make(T::fp_from_ubv, {5, 3}, {mode, t}); };
    const Term* a = make_bits(static_cast<unsigned>(below(2)));
    const Term* b = make_bits(static_cast<unsigned>(below(2)));
    const Term* whole = convert(mgr.make(on_bits, {a, b}));
    const Term* parts = mgr.make(on_floats, {mode, convert(a), convert(b)});
    return mgr.make(T::bool_not, {mgr.make(T::fp_equal, {whole, parts})});
  }

  /// Floats of four bits of precision, which count up to 16.
  const Term* make_float(unsigned depth) {
    const Term* mode = mgr.make_fprounding(ranges::kRoundingModes[below(5)]);
    if (depth == 0) {
      const T::tag conversion = below(2) == 0 ? T::fp_from_sbv : T::fp_from_ubv;
      return mgr.make(conversion, {5, 3}, {mode, make_bits(static_cast<unsigned>(below(3)))});
    }
    const T::tag operations[] = {T::fp_add, T::fp_sub, T::fp_mul};
    return mgr.make(operations[below(3)], {mode, make_float(depth - 1), make_float(depth - 1)});
  }

  TermManager mgr{false};
  std::mt19937_64 random;
  std::vector<const Term*> words;
};

/// Soundness: in every model a bit-vector is what its form says, and a float as near to it, rows
/// hold, and ranges that forms narrow keep what they must.
TEST(Integers, HoldInAllModels) {
  std::size_t combined = 0;
  std::size_t rows = 0;
  std::size_t refuted = 0;
  for (std::uint64_t seed = 0; seed < 400 && !HasFailure(); ++seed) {
    SmallIntegers small(seed);
    const std::vector<const Term*> formulas = small.make_conjunction();
    Propagation ranges(small.get_manager());
    ranges::assert_all(formulas, &ranges);
    if (ranges.is_contradiction()) continue;
    Refuter refuter(ranges, kEnough);
    const bool is_refuted = refuter.run();
    refuted += is_refuted ? 1 : 0;
    rows += refuter.get_rows().size();
    Bounds bounds(ranges);
    bounds.tighten(refuter.get_rows());
    const Forms forms(ranges, bounds, kEnough);
    small.visit_models(formulas, [&](semantics::Evaluator& model) {
      EXPECT_FALSE(is_refuted) << seed;
      for (Propagation::Slot slot = 0; slot < ranges.get_size(); ++slot) {
        const Term* t = ranges.get_term(slot);
        const QNumber pattern = model.evaluate(t);
        EXPECT_TRUE(contains(ranges.get_range(slot), pattern)) << seed << ' ' << t->to_string();
        const Form* form = forms.find(slot);
        if (form == nullptr) continue;
        const QNumber value = real_of(t, pattern);
        const QNumber error = value - evaluate(form->value, ranges, model);
        EXPECT_LE((Interval{error, error}.get_magnitude()), form->error)
            << seed << ' ' << t->to_string();
        EXPECT_TRUE((value / power_of_two(form->quantum)).is_integer())
            << seed << ' ' << t->to_string();
        combined += form->value == Polynomial::of_unknown(slot) ? 0 : 1;
      }
      for (const Row& row : refuter.get_rows())
        EXPECT_LE(evaluate(row.sum, ranges, model), row.bound) << seed;
    });
  }
  EXPECT_GT(combined, 10'000U);
  EXPECT_GT(rows, 500U);
  EXPECT_GT(refuted, 20U) << "formulas that ranges do not refute";
  RecordProperty("forms", std::to_string(combined) + ", " + std::to_string(rows) + " rows, " +
                              std::to_string(refuted) + " refutations");
}

}  // namespace
}  // namespace vorn::reals
