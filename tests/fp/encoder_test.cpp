// The encoder object: what it starts with, what it is told, and which method encodes which kind.
#include <memory>
#include <stdexcept>
#include <utility>

#include "tests/fp/encoder_fixture.h"

namespace vorn::fp {
namespace {

class EncoderObjectTest : public EncoderTest {};
INSTANTIATE_TEST_SUITE_P(, EncoderObjectTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(EncoderObjectTest, KnowsTheFourRoundingModesFromTheStart) {
  EXPECT_EQ(encoder.get_cached(src.make_fprounding_even()), bv(0, 2));
  EXPECT_EQ(encoder.get_cached(src.make_fprounding_zero()), bv(1, 2));
  EXPECT_EQ(encoder.get_cached(src.make_fprounding_plus_inf()), bv(2, 2));
  EXPECT_EQ(encoder.get_cached(src.make_fprounding_minus_inf()), bv(3, 2));
}

TEST_P(EncoderObjectTest, KnowsNothingElseFromTheStart) {
  EXPECT_EQ(encoder.get_cached(src.make_fprounding_away()), nullptr);
  EXPECT_EQ(encoder.get_cached(rounding_variable("r")), nullptr);
  EXPECT_EQ(encoder.get_cached(number(0, {8, 23})), nullptr);
  EXPECT_EQ(encoder.get_cached(variable("x", {8, 23})), nullptr);
  EXPECT_EQ(encoder.get_cached(src.make_true()), nullptr);
}

TEST_P(EncoderObjectTest, MakesNoSymbolBeforeItIsAsked) {
  EXPECT_EQ(name_of(bits(".fp.f1", 1)), ".fp.f1");
  EXPECT_EQ(name_of(bits(".fp.r1", 1)), ".fp.r1");
  EXPECT_EQ(name_of(bits(".fp.i1", 1)), ".fp.i1");
}

class CountingLogger : public Logger {
 public:
  explicit CountingLogger(int* deletions) : deleted(deletions) {}
  ~CountingLogger() override { ++*deleted; }

 private:
  int* deleted;
};

TEST_P(EncoderObjectTest, NeverDeletesALoggerHandedIn) {
  int deleted = 0;
  auto early = std::make_unique<CountingLogger>(&deleted);
  auto late = std::make_unique<CountingLogger>(&deleted);
  auto own = std::make_unique<OpenEncoder>(&src, &dst);
  own->set_logger(early.get());
  own->set_logger(late.get());
  own->set_logger(nullptr);
  own->set_logger(late.get());
  own.reset();
  EXPECT_EQ(deleted, 0);
  early.reset();
  late.reset();
  EXPECT_EQ(deleted, 2);
}

TEST_P(EncoderObjectTest, KeepsATerminationTestThatItNeverPolls) {
  class NeverAsked : public TerminationTest {
   public:
    bool terminate() const override {
      ADD_FAILURE() << "an encoding runs to its end";
      return true;
    }
  };
  const NeverAsked test;
  EXPECT_EQ(encoder.get_termination_test(), nullptr);
  encoder.set_termination_test(&test);
  EXPECT_EQ(encoder.get_termination_test(), &test);
  const Term* x = variable("x", {3, 4});
  EXPECT_NE(encode(src.make_fp_lt(x, src.make_fp_neg(x))), nullptr);
}

// Debug tracking ----------------------------------------------------------------------------------

TEST_P(EncoderObjectTest, TracksNothingUnlessAsked) {
  const Term* v = bits("v", 5);
  EXPECT_TRUE(constraints_of([&] { encoder.debug_track_term(v, "label"); }).empty());
  encoder.set_debug_flag(true);
  EXPECT_EQ(constraints_of([&] { encoder.debug_track_term(v, "label"); }).size(), 1U);
  encoder.set_debug_flag(false);
  EXPECT_TRUE(constraints_of([&] { encoder.debug_track_term(v, "label"); }).empty());
}

TEST_P(EncoderObjectTest, TracksABitVectorByAnEquality) {
  encoder.set_debug_flag(true);
  const Term* v = bits("v", 5);
  const Terms out = constraints_of([&] { encoder.debug_track_term(v, "label"); });
  ASSERT_EQ(out.size(), 1U);
  const Term* shown = out[0]->get_arg(1);
  EXPECT_EQ(name_of(shown), "label");
  EXPECT_EQ(out[0], dst.make_equal(v, shown));
}

TEST_P(EncoderObjectTest, TracksABooleanByAnEquivalence) {
  encoder.set_debug_flag(true);
  const Term* b = flag("b");
  const Terms out = constraints_of([&] { encoder.debug_track_term(b, "label"); });
  ASSERT_EQ(out.size(), 1U);
  const Term* shown = out[0]->get_arg(1);
  EXPECT_EQ(name_of(shown), "label");
  EXPECT_EQ(out[0], dst.make_iff(b, shown));
}

TEST_P(EncoderObjectTest, TracksEachMentionUnderANameOfItsOwn) {
  encoder.set_debug_flag(true);
  const Term* v = bits("v", 5);
  const Terms out = constraints_of([&] {
    encoder.debug_track_term(v, "label");
    encoder.debug_track_term(v, "label");
  });
  ASSERT_EQ(out.size(), 2U);
  EXPECT_EQ(out[0]->get_arg(0), v);
  EXPECT_EQ(out[1]->get_arg(0), v);
  EXPECT_NE(out[0]->get_arg(1), out[1]->get_arg(1));
}

TEST_P(EncoderObjectTest, SkipsAMissingTermAndKeepsTheOtherConstraints) {
  encoder.set_debug_flag(true);
  const Term* v = bits("v", 5);
  const Terms out = constraints_of([&] {
    encoder.debug_track_term(v, "before");
    encoder.debug_track_term(nullptr, "missing");
    encoder.debug_track_term(v, "after");
  });
  ASSERT_EQ(out.size(), 2U);
  EXPECT_EQ(name_of(out[0]->get_arg(1)), "before");
  EXPECT_EQ(name_of(out[1]->get_arg(1)), "after");
}

// Dispatch ----------------------------------------------------------------------------------------

class DispatchTest : public EncoderTest {
 protected:
  const Term* x = variable("x", {8, 23});
  const Term* y = number(0, {8, 23});
  const Term* rm = src.make_fprounding_even();
};
INSTANTIATE_TEST_SUITE_P(, DispatchTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(DispatchTest, EncodesEachKindByTheMethodOfItsRow) {
  using Open = OpenEncoder;
  const Term* v = bv_variable("v", 16);
  const std::pair<const Term*, const Term* (FpBvEncoder::*)(const Term*)> rows[] = {
      {src.make_equal(x, y), &Open::encode_equality},
      {src.make_fp_equal(x, y), &Open::encode_fp_equal},
      {src.make_fp_lt(x, y), &Open::encode_lt},
      {src.make_fp_le(x, y), &Open::encode_le},
      {src.make_fp_neg(x), &Open::encode_neg},
      {src.make_fp_add(rm, x, y), &Open::encode_add},
      {src.make_fp_sub(rm, x, y), &Open::encode_sub},
      {src.make_fp_mul(rm, x, y), &Open::encode_mul},
      {src.make_fp_div(rm, x, y), &Open::encode_div},
      {src.make_fp_cast(5, 10, rm, x), &Open::encode_cast},
      {src.make_fp_from_sbv(8, 23, rm, v), &Open::encode_from_sbv},
      {src.make_fp_from_ubv(8, 23, rm, v), &Open::encode_from_ubv},
      {src.make_fp_isnan(x), &Open::encode_isnan},
      {src.make_fp_isinf(x), &Open::encode_isinf},
      {src.make_fp_iszero(x), &Open::encode_iszero},
  };
  for (const auto& [t, method] : rows) {
    EXPECT_TRUE(encoder.supports(t->get_tag()));
    const Term* encoding = encode(t);
    // Terms are shared, so the method gives the very same one when it is called again.
    EXPECT_EQ((encoder.*method)(t), encoding) << t->to_string();
  }
}

/// Sets rows of its own. Its answers are virtual.
class ExtendedEncoder : public FpBvEncoder {
 public:
  ExtendedEncoder(TermManager* src, TermManager* dst) : FpBvEncoder(src, dst) {
    set_method(SymbolTag::fp_isinf, static_cast<EncodeMethod>(&ExtendedEncoder::answer));
    set_method(SymbolTag::fp_isnegative, static_cast<EncodeMethod>(&ExtendedEncoder::answer));
  }

 protected:
  virtual const Term* answer(const Term* t) { return encoded_arg(t, 0); }
};

class AnsweringEncoder : public ExtendedEncoder {
 public:
  AnsweringEncoder(TermManager* src, TermManager* dst) : ExtendedEncoder(src, dst), target(*dst) {}

 protected:
  const Term* answer(const Term* /*t*/) override { return target.make_true(); }

 private:
  TermManager& target;
};

TEST_P(DispatchTest, EncodesByARowThatADerivedEncoderSets) {
  ExtendedEncoder extended(&src, &dst);
  EXPECT_EQ(extended.get_bv_encoding(src.make_fp_isinf(y), &side), bv(0, 32));
  EXPECT_FALSE(encoder.supports(SymbolTag::fp_isnegative));
  EXPECT_TRUE(extended.supports(SymbolTag::fp_isnegative));
  EXPECT_EQ(extended.get_bv_encoding(src.make_fp_isnegative(y), &side), bv(0, 32));
}

TEST_P(DispatchTest, HonoursAVirtualMethodInARow) {
  AnsweringEncoder answering(&src, &dst);
  EXPECT_EQ(answering.get_bv_encoding(src.make_fp_isinf(y), &side), dst.make_true());
}

TEST_P(DispatchTest, EncodesTheIntegersOfConversionsAsBitVectorLeaves) {
  const Term* v = bv_variable("v", 16);
  const Term* w = bv_variable("w", 16);
  encode(src.make_fp_from_sbv(8, 23, rm, v));
  encode(src.make_fp_from_ubv(8, 23, rm, w));
  Terms waiting;
  EXPECT_TRUE(encoder.get_new_bv_terms(waiting));
  EXPECT_EQ(waiting, (Terms{v, w}));
}

TEST_P(DispatchTest, TriesTheLeavesInTheOrderOfTheirSorts) {
  EXPECT_EQ(name_of(encode(rounding_variable("r"))), ".fp.r1");
  EXPECT_EQ(name_of(encode(bv_variable("v", 4))), ".fp.bv1");
  EXPECT_EQ(name_of(encode(src.make_bv_number(3, 4))), ".fp.bv2");
  EXPECT_EQ(encode(y), bv(0, 32));
  EXPECT_EQ(name_of(encode(x)), ".fp.f3");
}

TEST_P(DispatchTest, RefusesTheModeThatHasNoCode) {
  EXPECT_THROW(encode(src.make_fprounding_away()), std::invalid_argument);
}

TEST_P(DispatchTest, EncodesAKindWithoutARowAsALeafAfterItsArguments) {
  const Term* v = bv_variable("v", 4);
  EXPECT_EQ(name_of(encode(src.make_bv_not(v))), ".fp.bv2");
  EXPECT_EQ(name_of(encoder.get_cached(v)), ".fp.bv1");
  // A Boolean is no leaf of the encoder, which finds no format for it.
  const Term* atom = src.make_fp_isnan(x);
  EXPECT_THROW(encode(src.make_not(atom)), std::invalid_argument);
  EXPECT_NE(encoder.get_cached(atom), nullptr);
}

}  // namespace
}  // namespace vorn::fp
