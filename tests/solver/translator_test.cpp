// Formulas on their way to bit-vector formulas: their structure, their constraints, their levels.
#include "vorn/solver/translator.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <unordered_set>
#include <vector>

#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/term_manager.h"

namespace vorn::solver {
namespace {

using Terms = std::vector<const Term*>;

class TranslatorTest : public testing::Test {
 protected:
  const Term* variable(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }
  const Term* translate(const Term* formula) { return translate_with(translator, formula); }
  const Term* translate_with(Translator& other, const Term* formula) {
    Trail<const Term*> added;
    const Term* translation = other.translate(formula, &added);
    constraints = added.get_items();
    return translation;
  }
  /// Whether the encoder has made a constant for a bit-vector, which the owner had to tie.
  bool has_untied_bits() {
    Terms terms;
    return encoder.get_new_bv_terms(terms);
  }
  /// Whether no float and no rounding mode is left in a term.
  bool is_free_of_floats(const Term* root) {
    Terms stack{root};
    std::unordered_set<const Term*> seen;
    while (!stack.empty()) {
      const Term* t = stack.back();
      stack.pop_back();
      if (!seen.insert(t).second) continue;
      if (mgr.is_fp_type(t->get_type(), nullptr, nullptr)) return false;
      if (mgr.is_fprounding_type(t->get_type())) return false;
      stack.insert(stack.end(), t->get_args().begin(), t->get_args().end());
    }
    return true;
  }

  TermManager mgr;
  fp::IeeeBvEncoder encoder{&mgr, &mgr};
  theories::TheoryTerms theory{mgr};
  Translator translator{mgr, encoder, theory};
  Terms constraints;  // of the latest translation
  const Term* p = variable("p", mgr.get_bool_type());
  const Term* x = variable("x", mgr.get_fp_type(3, 3));
  const Term* y = variable("y", mgr.get_fp_type(3, 3));
  const Term* rm = variable("rm", mgr.get_fprounding_type());
};

TEST_F(TranslatorTest, LeavesFormulasWithoutFloatsAsTheyAre) {
  const Term* v = variable("v", mgr.get_bv_type(8));
  const Term* w = variable("w", mgr.get_bv_type(8));
  const Term* formula =
      mgr.make_or(p, mgr.make_not(mgr.make_bv_ult(mgr.make_term_ite(p, v, w), w)));
  EXPECT_EQ(translate(formula), formula);
  EXPECT_TRUE(constraints.empty());
}

TEST_F(TranslatorTest, GivesAnAtomTheEncodingOfTheEncoder) {
  const Term* atom = mgr.make_fp_lt(x, mgr.make_fp_add(rm, x, y));
  const Term* translation = translate(atom);
  EXPECT_EQ(translation, encoder.get_cached(atom));
  EXPECT_TRUE(is_free_of_floats(translation));
  EXPECT_FALSE(constraints.empty());
  for (const Term* constraint : constraints)
    EXPECT_TRUE(is_free_of_floats(constraint));
}

TEST_F(TranslatorTest, BuildsTheStructureAroundAtomsAgain) {
  const Term* a = mgr.make_fp_isnan(x);
  const Term* b = mgr.make_fp_lt(x, y);
  const Term* translation = translate(mgr.make_xor(mgr.make_and(p, a), mgr.make_not(b)));
  EXPECT_EQ(translation, mgr.make_xor(mgr.make_and(p, translate(a)), mgr.make_not(translate(b))));
}

TEST_F(TranslatorTest, HasTheValueOfTheFormulaOnEveryPairOfValuesInEveryMode) {
  constexpr std::size_t kE = 2;
  constexpr std::size_t kM = 1;
  using enum IEEEFloat::rounding_mode;
  for (const auto mode : {nearest_even, toward_zero, plus_inf, minus_inf, nearest_away}) {
    for (int i = 0; i < 16 * 16; ++i) {
      const Term* a = mgr.make_fp_number(QNumber(i / 16), kE, kM);
      const Term* b = mgr.make_fp_number(QNumber(i % 16), kE, kM);
      const Term* sum = mgr.make_fp_add(mgr.make_fprounding(mode), a, b);
      const Term* smaller = mgr.make_term_ite(mgr.make_fp_lt(a, b), a, b);
      const Term* formula = mgr.make_iff(
          mgr.make_fp_le(sum, smaller),
          mgr.make_equal(mgr.make_fp_to_ubv(4, mgr.make_fprounding(mode), mgr.make_fp_abs(sum)),
                         mgr.make_bv_number(2, 4)));
      // Of NaNs and infinities the theory leaves open what integer they are.
      semantics::Evaluator evaluator(mgr, {});
      if (evaluator.evaluate(mgr.make_fp_isnan(sum)) == QNumber(1)) continue;
      if (evaluator.evaluate(mgr.make_fp_isinf(sum)) == QNumber(1)) continue;
      ASSERT_EQ(translate(formula), mgr.make_bool(evaluator.evaluate(formula) == QNumber(1)))
          << formula->to_string();
    }
  }
}

// Terms that the encoder would replace by constants ----------------------------------------------

TEST_F(TranslatorTest, EncodesAnIfThenElseOfFloatsAsThatOfTheirBits) {
  const Term* ite = mgr.make_term_ite(p, x, y);
  translate(mgr.make_fp_isnan(ite));
  EXPECT_EQ(encoder.get_cached(ite),
            mgr.make_term_ite(p, encoder.get_cached(x), encoder.get_cached(y)));
}

TEST_F(TranslatorTest, EncodesAnIfThenElseOfRoundingModesAsThatOfTheirCodes) {
  const Term* nearest = mgr.make_fprounding_even();
  const Term* ite = mgr.make_term_ite(mgr.make_fp_isnan(x), rm, nearest);
  translate(mgr.make_fp_isnan(mgr.make_fp_add(ite, x, y)));
  EXPECT_EQ(encoder.get_cached(ite),
            mgr.make_term_ite(translate(mgr.make_fp_isnan(x)), encoder.get_cached(rm),
                              encoder.get_cached(nearest)));
}

TEST_F(TranslatorTest, ReadsBitsAsFloatsWithOneNaN) {
  constexpr std::size_t kE = 2;
  constexpr std::size_t kM = 2;
  const Term* v = variable("v", mgr.get_bv_type(1 + kE + kM));
  const Term* read = mgr.make_fp_from_bits(kE, kM, v);
  translate(mgr.make_fp_isnan(read));
  EXPECT_TRUE(constraints.empty());
  for (int bits = 0; bits < 1 << (1 + kE + kM); ++bits) {
    IEEEFloat value = IEEEFloat::from_bits({kE, kM}, QNumber(bits));
    if (value.is_nan()) value.self_nan();
    semantics::Evaluator evaluator(mgr, [&](const Term* t) { return QNumber(t == v ? bits : 0); });
    EXPECT_EQ(evaluator.evaluate(encoder.get_cached(read)), value.get_bits()) << bits;
  }
}

TEST_F(TranslatorTest, HandsOnTheBitsThatConversionsTake) {
  const Term* v = variable("v", mgr.get_bv_type(4));
  const Term* bits = mgr.make_bv_add(v, mgr.make_fp_to_sbv(4, rm, x));
  const Term* formula = mgr.make_fp_lt(y, mgr.make_fp_from_sbv(3, 3, rm, bits));
  EXPECT_TRUE(is_free_of_floats(translate(formula)));
  EXPECT_FALSE(has_untied_bits());
  EXPECT_EQ(encoder.get_cached(bits),
            mgr.make_bv_add(v, encoder.get_cached(mgr.make_fp_to_sbv(4, rm, x))));
}

// Constraints and levels -------------------------------------------------------------------------

TEST_F(TranslatorTest, StatesAConstraintOnceWhileItIsInForce) {
  const Term* formula = mgr.make_fp_lt(x, y);
  const Term* translation = translate(formula);
  EXPECT_EQ(constraints.size(), 2U);  // neither variable has a NaN but the one
  EXPECT_EQ(translate(formula), translation);
  EXPECT_TRUE(constraints.empty());
  translate(mgr.make_fp_isnan(mgr.make_fp_neg(x)));
  EXPECT_TRUE(constraints.empty());
}

TEST_F(TranslatorTest, AppendsConstraintsToWhatIsThere) {
  Trail<const Term*> all;
  all.add(p);
  translator.translate(mgr.make_fp_isnan(x), &all);
  ASSERT_EQ(all.get_size(), 2U);
  EXPECT_EQ(all.get_items()[0], p);
}

TEST_F(TranslatorTest, StatesTheConstraintsOfAPoppedLevelAgain) {
  const Term* formula = mgr.make_fp_lt(x, y);
  translator.push();
  const Term* translation = translate(formula);
  const Terms first = constraints;
  EXPECT_FALSE(first.empty());
  translator.pop();
  EXPECT_EQ(encoder.get_cached(x), nullptr);
  EXPECT_EQ(translate(formula), translation);
  EXPECT_EQ(constraints, first);
}

TEST_F(TranslatorTest, KeepsWhatWasTranslatedBeforeAPush) {
  translate(mgr.make_fp_isnan(x));
  translator.push();
  translate(mgr.make_fp_lt(x, y));
  EXPECT_EQ(constraints.size(), 1U);  // of y
  translator.pop();
  EXPECT_NE(encoder.get_cached(x), nullptr);
  EXPECT_EQ(encoder.get_cached(y), nullptr);
  translate(mgr.make_fp_isinf(x));
  EXPECT_TRUE(constraints.empty());
}

TEST_F(TranslatorTest, PopsOneLevelAtATime) {
  const Term* z = variable("z", mgr.get_fp_type(3, 3));
  const std::vector<const Term*> variables{x, y, z};
  for (const Term* v : variables) {
    translator.push();
    translate(mgr.make_and(p, mgr.make_fp_isnan(v)));
  }
  for (std::size_t left = variables.size(); left > 0; --left) {
    EXPECT_NE(encoder.get_cached(variables[left - 1]), nullptr);
    translator.pop();
    for (std::size_t i = 0; i < variables.size(); ++i)
      EXPECT_EQ(encoder.get_cached(variables[i]) != nullptr, i < left - 1) << left << ' ' << i;
  }
}

TEST_F(TranslatorTest, ForgetsDefinedEncodingsWithTheirLevel) {
  const Term* v = variable("v", mgr.get_bv_type(7));
  const Term* read = mgr.make_fp_from_bits(3, 3, v);
  const Term* ite = mgr.make_term_ite(p, x, read);
  const Term* formula = mgr.make_fp_isnan(ite);
  translator.push();
  const Term* translation = translate(formula);
  translator.pop();
  for (const Term* t : {read, ite})
    EXPECT_EQ(encoder.get_cached(t), nullptr);
  EXPECT_EQ(translate(formula), translation);
}

TEST_F(TranslatorTest, WalksDeepFormulasWithoutTheNativeStack) {
  constexpr int kDepth = 200'000;
  const Term* formula = mgr.make_fp_isnan(x);
  for (int i = 0; i < kDepth; ++i) {
    const Term* q = variable("q", mgr.get_bool_type());
    formula = i % 2 == 0 ? mgr.make_and(q, formula) : mgr.make_or(q, formula);
  }
  EXPECT_TRUE(is_free_of_floats(translate(formula)));
}

// What an encoder does not have ------------------------------------------------------------------

class BaseTranslatorTest : public TranslatorTest {
 protected:
  std::string refusal_of(const Term* formula) {
    Trail<const Term*> unused;
    try {
      base_translator.translate(formula, &unused);
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
    return "none";
  }

  fp::FpBvEncoder base{&mgr, &mgr};
  Translator base_translator{mgr, base, theory};
};

TEST_F(BaseTranslatorTest, NamesTheOperationThatIsNotThere) {
  EXPECT_EQ(refusal_of(mgr.make_fp_isnan(mgr.make_fp_sqrt(rm, x))),
            "fp.sqrt is not supported by this encoder");
  EXPECT_EQ(refusal_of(mgr.make_fp_isnormal(x)), "fp.isNormal is not supported by this encoder");
}

TEST_F(TranslatorTest, IsNotWholeOnceTheTermsWereEnded) {
  class Stop : public TerminationTest {
   public:
    bool terminate() const override { return true; }
  };
  const Term* wide = variable("wide", mgr.get_fp_type(11, 52));
  const Term* product = wide;
  for (int i = 0; i < 20; ++i)
    product = mgr.make_fp_fma(rm, product, wide, product);
  const Term* formula = mgr.make_fp_isnan(product);
  translate(mgr.make_fp_isnan(x));
  EXPECT_TRUE(translator.is_whole());
  const Stop stop;
  mgr.set_termination_test(&stop);
  EXPECT_THROW(translate(formula), Terminated);
  mgr.set_termination_test(nullptr);
  EXPECT_FALSE(translator.is_whole());
}

TEST_F(BaseTranslatorTest, IsWholeAfterWhatWasRefused) {
  const Term* a = variable("a", mgr.get_fp_type(8, 1));
  EXPECT_NE(refusal_of(mgr.make_fp_isnan(mgr.make_fp_mul(rm, a, a))), "none");
  EXPECT_TRUE(base_translator.is_whole());
}

TEST_F(BaseTranslatorTest, NamesTheFormatThatHasNoCircuit) {
  const Term* a = variable("a", mgr.get_fp_type(8, 1));
  const std::string message = refusal_of(mgr.make_fp_isnan(mgr.make_fp_mul(rm, a, a)));
  EXPECT_EQ(message.find("fp.mul on (_ FloatingPoint 8 2) is not supported by this encoder ("), 0U)
      << message;
}

TEST_F(BaseTranslatorTest, HandsOnWhatTheEncoderSaysOfALeaf) {
  const Term* sum = mgr.make_fp_add(mgr.make_fprounding_away(), x, y);
  const std::string message = refusal_of(mgr.make_fp_isnan(sum));
  EXPECT_NE(message.find("roundNearestTiesToAway"), std::string::npos) << message;
  EXPECT_EQ(message.find("fp.add"), std::string::npos) << message;
}

TEST_F(BaseTranslatorTest, ForgetsARefusedFormulaWithItsLevel) {
  const Term* a = variable("a", mgr.get_fp_type(8, 1));
  base_translator.push();
  EXPECT_NE(
      refusal_of(mgr.make_and(mgr.make_fp_isnan(x), mgr.make_fp_isnan(mgr.make_fp_mul(rm, a, a)))),
      "none");
  base_translator.pop();
  for (const Term* t : {x, a, rm})
    EXPECT_EQ(base.get_cached(t), nullptr);
  // The constraints of what was encoded on the way were lost, so they must come again.
  translate_with(base_translator, mgr.make_fp_isnan(x));
  EXPECT_FALSE(constraints.empty());
}

}  // namespace
}  // namespace vorn::solver
