// The encoder object: what it starts with, what it is told, and which method encodes which kind.
#include <memory>
#include <string>

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

/// Notes which methods are called, in order, and builds nothing.
class RecordingEncoder : public FpBvEncoder {
 public:
  RecordingEncoder(TermManager* src, TermManager* dst) : FpBvEncoder(src, dst), target(*dst) {}

  std::string calls;

 protected:
  const Term* encode_rounding(const Term*) override { return note("rounding"); }
  const Term* encode_constant(const Term*) override { return note("constant"); }
  const Term* encode_bv_constant(const Term*) override { return note("bv_constant"); }
  const Term* encode_number(const Term*) override { return note("number"); }
  const Term* encode_equality(const Term*) override { return note("equality"); }
  const Term* encode_fp_equal(const Term*) override { return note("fp_equal"); }
  const Term* encode_lt(const Term*) override { return note("lt"); }
  const Term* encode_le(const Term*) override { return note("le"); }
  const Term* encode_neg(const Term*) override { return note("neg"); }
  const Term* encode_add(const Term*) override { return note("add"); }
  const Term* encode_sub(const Term*) override { return note("sub"); }
  const Term* encode_mul(const Term*) override { return note("mul"); }
  const Term* encode_div(const Term*) override { return note("div"); }
  const Term* encode_cast(const Term*) override { return note("cast"); }
  const Term* encode_from_sbv(const Term*) override { return note("from_sbv"); }
  const Term* encode_from_ubv(const Term*) override { return note("from_ubv"); }
  const Term* encode_isnan(const Term*) override { return note("isnan"); }
  const Term* encode_isinf(const Term*) override { return note("isinf"); }
  const Term* encode_iszero(const Term*) override { return note("iszero"); }

 private:
  const Term* note(const std::string& method) {
    calls += (calls.empty() ? "" : " ") + method;
    return target.make_true();
  }

  TermManager& target;
};

class DispatchTest : public EncoderTest {
 protected:
  /// The methods called for `t` by an encoder that has seen nothing yet, in order.
  std::string calls_for(const Term* t) {
    RecordingEncoder recorder(&src, &dst);
    recorder.get_bv_encoding(t, &side);
    return recorder.calls;
  }

  const Term* x = variable("x", {8, 23});
  const Term* y = number(0, {8, 23});
  const Term* rm = src.make_fprounding_even();
};
INSTANTIATE_TEST_SUITE_P(, DispatchTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(DispatchTest, HonoursVirtualMethodsInEveryRow) {
  EXPECT_EQ(calls_for(src.make_equal(x, y)), "number constant equality");
  EXPECT_EQ(calls_for(src.make_fp_equal(x, y)), "number constant fp_equal");
  EXPECT_EQ(calls_for(src.make_fp_lt(x, y)), "number constant lt");
  EXPECT_EQ(calls_for(src.make_fp_le(x, y)), "number constant le");
  EXPECT_EQ(calls_for(src.make_fp_neg(x)), "constant neg");
  EXPECT_EQ(calls_for(src.make_fp_add(rm, x, y)), "number constant add");
  EXPECT_EQ(calls_for(src.make_fp_sub(rm, x, y)), "number constant sub");
  EXPECT_EQ(calls_for(src.make_fp_mul(rm, x, y)), "number constant mul");
  EXPECT_EQ(calls_for(src.make_fp_div(rm, x, y)), "number constant div");
  EXPECT_EQ(calls_for(src.make_fp_cast(5, 10, rm, x)), "constant cast");
  EXPECT_EQ(calls_for(src.make_fp_isnan(x)), "constant isnan");
  EXPECT_EQ(calls_for(src.make_fp_isinf(x)), "constant isinf");
  EXPECT_EQ(calls_for(src.make_fp_iszero(x)), "constant iszero");
}

TEST_P(DispatchTest, EncodesTheIntegersOfConversionsAsBitVectorLeaves) {
  const Term* v = bv_variable("v", 16);
  EXPECT_EQ(calls_for(src.make_fp_from_sbv(8, 23, rm, v)), "bv_constant from_sbv");
  EXPECT_EQ(calls_for(src.make_fp_from_ubv(8, 23, rm, v)), "bv_constant from_ubv");
}

TEST_P(DispatchTest, TriesTheLeavesInTheOrderOfTheirSorts) {
  EXPECT_EQ(calls_for(rounding_variable("r")), "rounding");
  EXPECT_EQ(calls_for(src.make_fprounding_away()), "rounding");
  EXPECT_EQ(calls_for(bv_variable("v", 4)), "bv_constant");
  EXPECT_EQ(calls_for(src.make_bv_number(3, 4)), "bv_constant");
  EXPECT_EQ(calls_for(y), "number");
  EXPECT_EQ(calls_for(x), "constant");
  EXPECT_EQ(calls_for(bool_variable("b")), "constant");
}

TEST_P(DispatchTest, EncodesAKindWithoutARowAsALeafAfterItsArguments) {
  const Term* v = bv_variable("v", 4);
  EXPECT_EQ(calls_for(src.make_bv_not(v)), "bv_constant bv_constant");
  const Term* atom = src.make_fp_isnan(x);
  EXPECT_EQ(calls_for(src.make_not(atom)), "constant isnan constant");
}

}  // namespace
}  // namespace vorn::fp
