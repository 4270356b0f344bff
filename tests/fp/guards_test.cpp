// What an owner hands over that the encoders have no meaning for: each is told so, and goes on.
#include <stdexcept>
#include <string>

#include "tests/fp/encoder_fixture.h"
#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::fp {
namespace {

class GuardTest : public EncoderTest {
 protected:
  template <class Call>
  static std::string error_of(const Call& call) {
    try {
      call();
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
    return "no error";
  }
  std::string error_of_encoding(FpBvEncoder& by, const Term* t) {
    return error_of([&] { by.get_bv_encoding(t, &side); });
  }
  std::string error_of_definition(const Term* t, const Term* encoding) {
    return error_of([&] { encoder.define_encoding(t, encoding); });
  }

  IeeeBvEncoder exact{&src, &dst};
  TermManager stranger;
  const Term* foreign =
      stranger.make_constant(stranger.make_unique_symbol("foreign", stranger.get_fp_type(3, 4)));
  const Term* b = bool_variable("b");
  const Term* x = variable("x", {3, 4});
  const Term* y = variable("y", {3, 4});
  const Term* v = bv_variable("v", 8);
  const Term* ite = src.make_term_ite(b, x, y);
};
INSTANTIATE_TEST_SUITE_P(, GuardTest, one_and_two_managers(), ::testing::PrintToStringParamName());

// Free constants ----------------------------------------------------------------------------------

TEST_P(GuardTest, TheExactEncoderRefusesWhatNobodyDefined) {
  EXPECT_EQ(error_of_encoding(exact, src.make_fp_isnan(ite)),
            "ite of (_ FloatingPoint 3 5) has no encoding: define_encoding has to give it one "
            "first");
  exact.retract_upto(src.make_fp_isnan(ite));
  EXPECT_EQ(error_of_encoding(exact, src.make_fp_from_bits(3, 4, v)),
            "to_fp of (_ FloatingPoint 3 5) has no encoding: define_encoding has to give it one "
            "first");
  const Term* mode = src.make_term_ite(b, src.make_fprounding_even(), rounding_variable("r"));
  EXPECT_EQ(error_of_encoding(exact, mode),
            "ite of RoundingMode has no encoding: define_encoding has to give it one first");
}

TEST_P(GuardTest, TheExactEncoderTakesWhatIsDefined) {
  exact.define_encoding(ite, bits("k", 8));
  EXPECT_NE(exact.get_bv_encoding(src.make_fp_isnan(ite), &side), nullptr);
  EXPECT_TRUE(side.empty());
}

TEST_P(GuardTest, TheExactEncoderMakesFreeConstantsWhereItIsAskedTo) {
  exact.set_free_constants(true);
  EXPECT_EQ(name_of(exact.get_bv_encoding(ite, &side)), ".fp.f1");
  exact.set_free_constants(false);
  EXPECT_NE(error_of_encoding(exact, src.make_term_ite(b, y, x)), "no error");
}

TEST_P(GuardTest, TheBaseMakesFreeConstantsUnlessToldNotTo) {
  const Term* minimum = src.make_fp_min(x, y);
  const Term* integer = src.make_fp_to_sbv(8, src.make_fprounding_zero(), x);
  EXPECT_EQ(width_of(encode(minimum)), 8U);
  EXPECT_EQ(width_of(encode(integer)), 8U);
  EXPECT_EQ(width_of(encode(ite)), 8U);
  encoder.retract_upto(minimum);
  encoder.set_free_constants(false);
  EXPECT_EQ(error_of_encoding(encoder, minimum), "fp.min is not supported by this encoder");
  EXPECT_EQ(error_of_encoding(encoder, integer), "fp.to_sbv is not supported by this encoder");
  EXPECT_NE(error_of_encoding(encoder, ite), "no error");
}

TEST_P(GuardTest, NamesAnOperationBelowTheTermThatIsAskedFor) {
  encoder.set_free_constants(false);
  const Term* t = src.make_fp_lt(x, src.make_fp_sqrt(src.make_fprounding_even(), y));
  EXPECT_EQ(error_of_encoding(encoder, t), "fp.sqrt is not supported by this encoder");
  encoder.retract_upto(t);
  EXPECT_EQ(encoder.get_cached(y), nullptr);
}

TEST_P(GuardTest, BitVectorsAreListedForTheOwnerInEitherCase) {
  const Term* operation = src.make_bv_add(v, src.make_bv_number(1, 8));
  const Term* choice = src.make_term_ite(b, v, operation);
  const Term* rm = src.make_fprounding_even();
  for (const bool on : {false, true}) {
    exact.set_free_constants(on);
    const Term* t = src.make_fp_add(rm, src.make_fp_from_sbv(3, 4, rm, operation),
                                    src.make_fp_from_ubv(3, 4, rm, choice));
    ASSERT_NE(exact.get_bv_encoding(t, &side), nullptr);
    Terms waiting;
    EXPECT_TRUE(exact.get_new_bv_terms(waiting));
    EXPECT_EQ(waiting.size(), 4U) << "the choice, the sum and its operands";
    exact.retract_upto(t);
  }
}

// Boolean structure -------------------------------------------------------------------------------

TEST_P(GuardTest, BooleanStructureIsNamedAsSuch) {
  const std::string told =
      " is no floating-point atom: the Boolean structure above atoms is for the encoder's owner to "
      "build on their encodings";
  const Term* atom = src.make_fp_isnan(x);
  for (FpBvEncoder* by : {static_cast<FpBvEncoder*>(&encoder), static_cast<FpBvEncoder*>(&exact)}) {
    for (const bool on : {false, true}) {
      by->set_free_constants(on);
      EXPECT_EQ(error_of_encoding(*by, src.make_not(atom)), "not" + told);
      EXPECT_EQ(error_of_encoding(*by, src.make_and(atom, src.make_fp_isinf(x))), "and" + told);
      EXPECT_EQ(error_of_encoding(*by, src.make_or(atom, src.make_fp_isinf(x))), "or" + told);
      EXPECT_EQ(error_of_encoding(*by, src.make_term_ite(b, atom, b)), "ite" + told);
      EXPECT_EQ(error_of_encoding(*by, src.make_bv_ult(v, v)), "bvult" + told);
      EXPECT_EQ(error_of_encoding(*by, src.make_equal(b, atom)), "b" + told);
      EXPECT_EQ(error_of_encoding(*by, src.make_true()), "true" + told);
    }
  }
  encoder.set_free_constants(true);
  EXPECT_EQ(error_of_encoding(encoder, src.make_fp_isnormal(x)),
            "fp.isNormal is not supported by this encoder");
}

// Terms of nobody, and of another manager ---------------------------------------------------------

TEST_P(GuardTest, ATermThatIsMissingOrForeignChangesNothing) {
  const Term* kx = encode(x);
  side = {x};
  EXPECT_EQ(error_of_encoding(encoder, nullptr),
            "get_bv_encoding: a term is missing, expected one that the encoder reads");
  EXPECT_EQ(error_of_encoding(encoder, foreign),
            "get_bv_encoding: a term belongs to another term manager than the one that the encoder "
            "reads");
  EXPECT_NE(error_of_encoding(encoder, stranger.make_fp_neg(foreign)), "no error");
  EXPECT_EQ(side, Terms{x});
  EXPECT_EQ(encoder.get_cached(nullptr), nullptr);
  EXPECT_EQ(encoder.get_cached(foreign), nullptr);
  EXPECT_EQ(encoder.get_cached(x), kx);
  encoder.retract_upto(x);
  EXPECT_EQ(encoder.get_cached(x), nullptr) << "x was the latest on the trail";
}

TEST_P(GuardTest, AnEncodingHasTheSortThatItsTermCallsFor) {
  const std::string start = "define_encoding: a term of ";
  EXPECT_EQ(error_of_definition(ite, bits("k", 7)),
            start +
                "(_ FloatingPoint 3 5) is encoded by one of (_ BitVec 8), got one of (_ BitVec "
                "7)");
  EXPECT_EQ(error_of_definition(v, flag("f")),
            start + "(_ BitVec 8) is encoded by one of (_ BitVec 8), got one of Bool");
  EXPECT_EQ(error_of_definition(src.make_fp_isnan(ite), bits("k", 1)),
            start + "Bool is encoded by one of Bool, got one of (_ BitVec 1)");
  const Term* r = rounding_variable("r");
  EXPECT_EQ(error_of_definition(r, bits("k", 3)),
            start + "RoundingMode is encoded by one of (_ BitVec 2), got one of (_ BitVec 3)");
  EXPECT_NO_THROW(exact.define_encoding(r, bits("k", 3)));
  EXPECT_EQ(encoder.get_cached(ite), nullptr);
  EXPECT_NO_THROW(encoder.define_encoding(ite, bits("k", 8)));
}

TEST_P(GuardTest, ADefinitionIsOfTheManagersOfTheEncoder) {
  EXPECT_EQ(error_of_definition(foreign, bits("k", 8)),
            "define_encoding: a term belongs to another term manager than the one that the encoder "
            "reads");
  const Term* strange = stranger.make_bv_number(0, 8);
  EXPECT_EQ(error_of_definition(ite, strange),
            "define_encoding: a term belongs to another term manager than the one that the encoder "
            "builds in");
  EXPECT_EQ(error_of_definition(nullptr, bits("k", 8)),
            "define_encoding: a term is missing, expected one that the encoder reads");
  EXPECT_EQ(error_of_definition(ite, nullptr),
            "define_encoding: a term is missing, expected one that the encoder builds in");
  EXPECT_EQ(encoder.get_cached(ite), nullptr);
}

TEST_P(GuardTest, ATermHasOneEncoding) {
  const Term* k = bits("k", 8);
  encoder.define_encoding(ite, k);
  EXPECT_EQ(error_of_definition(ite, bits("l", 8)), "define_encoding: ite has an encoding");
  EXPECT_EQ(encoder.get_cached(ite), k);
  encode(x);
  EXPECT_EQ(error_of_definition(x, k), "define_encoding: x has an encoding");
}

// Interruptions -----------------------------------------------------------------------------------

/// Stops at the given question by an exception.
class Thrower : public TerminationTest {
 public:
  explicit Thrower(int questions) : left(questions) {}
  bool terminate() const override {
    if (left-- == 0) throw std::runtime_error("stop");
    return false;
  }

 private:
  mutable int left;
};

/// The exact encoder with class tests that ask before they are built, as its circuits never do.
class AskingEncoder : public IeeeBvEncoder {
 public:
  AskingEncoder(TermManager* src, TermManager* dst) : IeeeBvEncoder(src, dst) {
    for (const auto kind : {SymbolTag::fp_neg, SymbolTag::fp_lt})
      set_method(kind, static_cast<EncodeMethod>(&AskingEncoder::ask));
  }

 private:
  const Term* ask(const Term* t) {
    if (get_termination_test()->terminate()) throw Terminated();
    return t->get_tag() == SymbolTag::fp_neg ? encode_neg(t) : encode_lt(t);
  }
};

TEST_P(GuardTest, ATerminationTestThatThrowsLeavesAnEncoderThatGoesOn) {
  const Term* rm = rounding_variable("r");
  const Term* t = src.make_fp_lt(src.make_fp_neg(src.make_fp_add(rm, x, src.make_fp_neg(y))),
                                 src.make_fp_neg(src.make_fp_neg(x)));
  const Thrower never(-1);
  AskingEncoder asking(&src, &dst);
  asking.set_termination_test(&never);
  const Term* expected = asking.get_bv_encoding(t, &side);
  const Terms constraints = side;
  const Term* before = src.make_fp_isnan(variable("z", {3, 4}));
  asking.retract_upto(t);
  const Term* kept = asking.get_bv_encoding(before, &side);

  constexpr int kQuestions = 5;
  for (int i = 0; i < kQuestions; ++i) {
    const Thrower thrower(i);
    asking.set_termination_test(&thrower);
    EXPECT_THROW(asking.get_bv_encoding(t, &side), std::runtime_error) << i;
    asking.retract_upto(t);
    EXPECT_EQ(asking.get_cached(x), nullptr);
    EXPECT_EQ(asking.get_cached(before), kept);
    asking.set_termination_test(&never);
    EXPECT_EQ(asking.get_bv_encoding(t, &side), expected);
    EXPECT_EQ(side, constraints);
    asking.retract_upto(t);
  }
}

}  // namespace
}  // namespace vorn::fp
