// Encoders and collections of terms: what an encoder keeps stays, whatever the owner's roots are.
#include <memory>

#include "tests/fp/encoder_fixture.h"
#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::fp {
namespace {

class EncoderCollectionTest : public EncoderTest {
 protected:
  void collect(const Terms& roots) {
    for (TermManager* mgr : {&first, &second}) {
      Terms own;
      for (const Term* t : roots) {
        if (mgr->owns(t)) own.push_back(t);
      }
      mgr->collect(own);
    }
    // Identifiers and memory that are free have new tenants.
    for (int i = 0; i < 1000; ++i) {
      dst.make_bv_not(bits("tenant", 2));
      src.make_fp_neg(variable("tenant", {3, 4}));
    }
  }

  /// The shape of a sum in each mode, with every number that is in it.
  std::string text_of_sums(FpBvEncoder& by) {
    std::string text;
    const Term* x = number(5, {3, 4});
    const Term* y = number(77, {3, 4});
    for (const Term* mode : {src.make_fprounding_even(), src.make_fprounding_zero(),
                             src.make_fprounding_plus_inf(), src.make_fprounding_minus_inf()}) {
      const Term* sum = src.make_fp_add(mode, x, y);
      text += by.get_bv_encoding(sum, &side)->to_string() + '\n';
      by.retract_upto(sum);
    }
    return text;
  }

  template <class Encoder>
  void expect_modes_to_stay() {
    Encoder fresh(&src, &dst);
    const std::string expected = text_of_sums(fresh);
    Encoder old(&src, &dst);
    collect({});
    for (const Term* mode : {src.make_fprounding_even(), src.make_fprounding_zero(),
                             src.make_fprounding_plus_inf(), src.make_fprounding_minus_inf()}) {
      const Term* code = old.get_cached(mode);
      ASSERT_NE(code, nullptr);
      EXPECT_EQ(code, fresh.get_cached(mode));
      QNumber value;
      EXPECT_TRUE(dst.is_number(code, &value)) << code->to_string();
    }
    EXPECT_EQ(text_of_sums(old), expected);
  }
};
INSTANTIATE_TEST_SUITE_P(, EncoderCollectionTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(EncoderCollectionTest, TheCodesOfModesStay) {
  expect_modes_to_stay<IeeeBvEncoder>();
}

TEST_P(EncoderCollectionTest, TheCodesOfModesOfTheBaseStay) {
  const Term* mode = src.make_fprounding_plus_inf();
  const Term* code = encoder.get_cached(mode);
  encoder.get_bv_encoding(mode, &side);
  encoder.retract_upto(mode);
  collect({});
  EXPECT_EQ(encode(mode), code);
  EXPECT_EQ(code, bv(2, 2));
  EXPECT_EQ(encode(src.make_fprounding_minus_inf()), bv(3, 2));
}

TEST_P(EncoderCollectionTest, EncodingsStayUntilTheyAreRetracted) {
  const Term* x = variable("x", {3, 4});
  const Term* t = src.make_fp_isnan(x);
  const Term* encoding = encode(t);
  const Terms constraints = side;
  const std::string text = encoding->to_string();
  collect(constraints);
  EXPECT_EQ(encoder.get_cached(t), encoding);
  EXPECT_EQ(encoding->to_string(), text);
  EXPECT_EQ(t->to_string(), "(fp.isNaN x)");
  encoder.retract_upto(t);
  const std::uint64_t before = src.get_live_count();
  collect({});
  collect({});
  EXPECT_LT(src.get_live_count(), before + 2000);
  const Term* fresh = variable("x", {3, 4});
  EXPECT_EQ(name_of(fresh), "x") << "the old one is gone, and its name is free";
  EXPECT_EQ(name_of(encode(fresh)), ".fp.f2");
}

TEST_P(EncoderCollectionTest, WhatTheTrailMentionsStays) {
  const Term* x = variable("x", {3, 4});
  const Term* y = variable("y", {3, 4});
  encode(x);
  encode(y);
  encode(x);
  encoder.retract_upto(x);  // the second mention
  collect({});
  EXPECT_EQ(name_of(x), "x") << "the first mention is still there";
  encoder.retract_upto(x);
  EXPECT_EQ(encoder.get_cached(y), nullptr);
}

TEST_P(EncoderCollectionTest, BitVectorsThatWaitForTheOwnerStay) {
  const Term* v = bv_variable("v", 8);
  encode(v);
  encoder.retract_upto(v);
  collect({});
  Terms waiting;
  ASSERT_TRUE(encoder.get_new_bv_terms(waiting));
  EXPECT_EQ(waiting, Terms{v});
  EXPECT_EQ(name_of(v), "v");
}

TEST_P(EncoderCollectionTest, TheExactEncoderKeepsItsConstantsBeyondARetraction) {
  IeeeBvEncoder exact(&src, &dst);
  const Term* x = variable("x", {3, 4});
  const Term* y = variable("y", {3, 4});
  const Term* minimum = src.make_fp_min(x, y);
  const Term* integer = src.make_fp_to_sbv(8, rounding_variable("r"), x);
  exact.get_bv_encoding(minimum, &side);
  exact.get_bv_encoding(integer, &side);
  const Term* kx = exact.get_cached(x);
  const Term* sign = exact.get_choice(minimum);
  const Term* open = exact.get_choice(integer);
  exact.retract_upto(minimum);
  collect({minimum});
  EXPECT_EQ(exact.get_bv_encoding(x, &side), kx);
  EXPECT_EQ(width_of(kx), 8U);
  exact.get_bv_encoding(minimum, &side);
  EXPECT_EQ(exact.get_choice(minimum), sign);
  EXPECT_EQ(width_of(sign), 2U);
  EXPECT_EQ(exact.get_choice(integer), open);
  EXPECT_EQ(integer->get_arg(1), x);
}

TEST_P(EncoderCollectionTest, AnEncoderThatIsGoneKeepsNothing) {
  const std::uint64_t before = dst.get_live_count();
  auto other = std::make_unique<IeeeBvEncoder>(&src, &dst);
  other->get_bv_encoding(src.make_fp_neg(variable("x", {3, 4})), &side);
  EXPECT_GT(dst.get_live_count(), before);
  other.reset();
  dst.collect({});
  EXPECT_LE(dst.get_live_count(), before);
}

}  // namespace
}  // namespace vorn::fp
