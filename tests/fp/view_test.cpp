// Fields and classes of packed values, and the three ways to choose between terms.
#include "tests/fp/encoder_fixture.h"
#include "tests/fp/evaluation.h"

namespace vorn::fp {
namespace {

constexpr IEEEFloat::format kSingle{8, 23};

class ViewTest : public EncoderTest {
 protected:
  const Term* x = bits("x", 32);
};
INSTANTIATE_TEST_SUITE_P(, ViewTest, one_and_two_managers(), ::testing::PrintToStringParamName());

// Fields: shapes ----------------------------------------------------------------------------------

TEST_P(ViewTest, TakesTheFieldsFromTheInterchangeLayout) {
  EXPECT_EQ(encoder.enc_get_exponent(x, kSingle, false), dst.make_bv_extract(30, 23, x));
  EXPECT_EQ(encoder.enc_get_mantissa(x, kSingle, false), dst.make_bv_extract(22, 0, x));
}

TEST_P(ViewTest, UnbiasesInTheWidthOfTheField) {
  const Term* field = dst.make_bv_extract(30, 23, x);
  const Term* below = dst.make_bv_sub(field, bv(127, 8));
  const Term* is_zero = dst.make_bv_comp(field, bv(0, 8));
  const Term* expected = dst.make_bv_add(below, dst.make_bv_zero_extend(7, is_zero));
  EXPECT_EQ(encoder.enc_get_exponent(x, kSingle, true), expected);
}

TEST_P(ViewTest, PutsTheHiddenBitOnTopOfTheSignificand) {
  const Term* field = dst.make_bv_extract(30, 23, x);
  const Term* zeros = bv(0, 8);
  const Term* hidden =
      dst.make_bv_and(dst.make_bv_not(dst.make_bv_comp(field, zeros)),
                      dst.make_bv_not(dst.make_bv_comp(field, dst.make_bv_not(zeros))));
  EXPECT_EQ(encoder.enc_get_mantissa(x, kSingle, true),
            dst.make_bv_concat(hidden, dst.make_bv_extract(22, 0, x)));
}

TEST_P(ViewTest, TestsClassesInOneBit) {
  const Term* at_max = dst.make_bv_comp(dst.make_bv_extract(30, 23, x), bv(255, 8));
  const Term* whole = dst.make_bv_comp(dst.make_bv_extract(22, 0, x), bv(0, 23));
  EXPECT_EQ(encoder.enc_is_nan(x, kSingle), dst.make_bv_and(at_max, dst.make_bv_not(whole)));
  EXPECT_EQ(encoder.enc_is_inf(x, kSingle), dst.make_bv_and(at_max, whole));
  EXPECT_EQ(encoder.enc_is_zero(x, kSingle),
            dst.make_bv_comp(dst.make_bv_extract(30, 0, x), bv(0, 31)));
}

// Connectives -------------------------------------------------------------------------------------

TEST_P(ViewTest, ChoosesBetweenBooleansByConnectives) {
  const Term* c = flag("c");
  const Term* a = flag("a");
  const Term* b = flag("b");
  EXPECT_EQ(encoder.enc_make_ite(c, a, b),
            dst.make_and(dst.make_or(dst.make_not(c), a), dst.make_or(c, b)));
}

TEST_P(ViewTest, ChoosesBetweenFlagsBitwise) {
  const Term* c = bits("c", 1);
  const Term* a = bits("a", 1);
  const Term* b = bits("b", 1);
  EXPECT_EQ(encoder.enc_make_ite(c, a, b),
            dst.make_bv_and(dst.make_bv_or(dst.make_bv_not(c), a), dst.make_bv_or(c, b)));
}

// If-then-else with fresh constants ---------------------------------------------------------------

class TermIteTest : public EncoderTest {
 protected:
  const Term* implies(const Term* condition, const Term* k, const Term* value) {
    return dst.make_or(dst.make_not(condition), dst.make_equal(k, value));
  }

  const Term* c = flag("c");
  const Term* d = flag("d");
  const Term* a = bits("a", 9);
  const Term* b = bits("b", 9);
};
INSTANTIATE_TEST_SUITE_P(, TermIteTest, one_and_two_managers(),
                         ::testing::PrintToStringParamName());

TEST_P(TermIteTest, IsAFreshConstantWithTwoClauses) {
  const Term* k = nullptr;
  const Terms out = constraints_of([&] { k = encoder.enc_make_term_ite(c, a, b); });
  EXPECT_EQ(name_of(k), ".fp.i1");
  EXPECT_EQ(k->get_type(), dst.get_bv_type(9));
  EXPECT_EQ(out, (Terms{implies(c, k, a), dst.make_or(c, dst.make_equal(k, b))}));
}

TEST_P(TermIteTest, IsOneConstantHoweverOftenItIsBuiltInACall) {
  const Term* k = nullptr;
  const Terms out = constraints_of([&] {
    k = encoder.enc_make_term_ite(c, a, b);
    EXPECT_EQ(encoder.enc_make_term_ite(c, a, b), k);
  });
  EXPECT_EQ(out.size(), 2U);
}

TEST_P(TermIteTest, IsAnotherConstantInAnotherCall) {
  const Term* k = nullptr;
  constraints_of([&] { k = encoder.enc_make_term_ite(c, a, b); });
  const Terms out = constraints_of([&] { EXPECT_NE(encoder.enc_make_term_ite(c, a, b), k); });
  ASSERT_EQ(out.size(), 2U);
  EXPECT_EQ(name_of(out[0]->get_arg(1)->get_arg(0)), ".fp.i2");
}

TEST_P(TermIteTest, SharesTheConstantOfAnEqualChain) {
  const Term* k = nullptr;
  const Terms out = constraints_of([&] {
    k = encoder.enc_make_term_ite(c, a, b);
    EXPECT_EQ(encoder.enc_make_term_cond({c, d}, {a, b}), k);
  });
  EXPECT_EQ(out.size(), 2U);
}

TEST_P(TermIteTest, MakesOneClauseForEachConditionOfAChain) {
  const Term* e = flag("e");
  const Term* last = bits("last", 9);
  const Term* k = nullptr;
  const Terms out = constraints_of([&] {
    k = encoder.enc_make_term_cond({c, d, e}, {a, b, last});
  });
  EXPECT_EQ(name_of(k), ".fp.i1");
  EXPECT_EQ(out, (Terms{implies(c, k, a), implies(d, k, b), implies(e, k, last)}));
}

TEST_P(TermIteTest, NestsAChainFromItsLastValue) {
  const Term* e = flag("e");
  const Term* last = bits("last", 9);
  constraints_of([&] { encoder.enc_make_term_cond({c, d, e}, {a, b, last}); });
  const std::uint64_t terms = dst.get_term_count();
  dst.make_term_ite(c, a, dst.make_term_ite(d, b, last));
  EXPECT_EQ(dst.get_term_count(), terms);
}

TEST_P(TermIteTest, IsTheValueItselfInAChainOfOne) {
  const Terms out = constraints_of([&] { EXPECT_EQ(encoder.enc_make_term_cond({c}, {a}), a); });
  EXPECT_TRUE(out.empty());
}

TEST(SimplifiedTermIteTest, MakesNoConstant) {
  TermManager mgr;
  OpenEncoder encoder(&mgr, &mgr);
  const auto fresh = [&](const char* name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  };
  const Term* c = fresh("c", mgr.get_bool_type());
  const Term* a = fresh("a", mgr.get_bv_type(4));
  const Term* b = fresh("b", mgr.get_bv_type(4));
  Terms out;
  encoder.on_isnan = [&](const Term*) {
    EXPECT_EQ(encoder.enc_make_term_ite(c, a, a), a);
    EXPECT_EQ(encoder.enc_make_term_ite(mgr.make_true(), a, b), a);
    EXPECT_EQ(encoder.enc_make_term_ite(mgr.make_false(), a, b), b);
    EXPECT_EQ(encoder.enc_make_term_cond({mgr.make_false(), c}, {a, b}), b);
    EXPECT_EQ(encoder.enc_make_term_ite(c, a, b)->get_symbol()->get_name(), ".fp.i1");
    return mgr.make_true();
  };
  encoder.get_bv_encoding(mgr.make_fp_isnan(mgr.make_fp_number(0, 2, 2)), &out);
  EXPECT_EQ(out.size(), 2U);
}

// Fields: values ----------------------------------------------------------------------------------

class FieldValuesTest : public ::testing::Test {
 protected:
  const Term* bv(std::int64_t value, std::size_t width) {
    return mgr.make_bv_number(QNumber(value), width);
  }
  /// The unbiased exponent and the hidden bit of a pattern of single precision.
  void expect_fields(std::int64_t pattern, std::int64_t exponent, int hidden) {
    const Term* x = bv(pattern, 32);
    EXPECT_EQ(encoder.enc_get_exponent(x, kSingle, true), bv(exponent, 8)) << pattern;
    const Term* significand = encoder.enc_get_mantissa(x, kSingle, true);
    EXPECT_EQ(significand, bv((std::int64_t{hidden} << 23) | (pattern & 0x7FFFFF), 24)) << pattern;
  }

  TermManager mgr;
  OpenEncoder encoder{&mgr, &mgr};
};

TEST_F(FieldValuesTest, ReadsSubnormalsAtTheScaleOfTheSmallestNormals) {
  expect_fields(0x00000000, -126, 0);
  expect_fields(0x80000000, -126, 0);
  expect_fields(0x007FFFFF, -126, 0);
  expect_fields(0x00800000, -126, 1);
  expect_fields(0x00FFFFFF, -126, 1);
}

TEST_F(FieldValuesTest, ReadsNormalsWithTheirHiddenBit) {
  expect_fields(0x3F800000, 0, 1);
  expect_fields(0xC0490FDB, 1, 1);
  expect_fields(0x7F7FFFFF, 127, 1);
}

TEST_F(FieldValuesTest, ReadsInfinitiesAndNaNsWithoutAHiddenBit) {
  expect_fields(0x7F800000, 0x80, 0);
  expect_fields(0xFF800000, 0x80, 0);
  expect_fields(0x7FC00000, 0x80, 0);
}

TEST_F(FieldValuesTest, ClassesExcludeEachOtherOnEveryPattern) {
  constexpr IEEEFloat::format kTiny{3, 3};
  for (std::uint64_t pattern = 0; pattern < 128; ++pattern) {
    const Term* x = bv(static_cast<std::int64_t>(pattern), 7);
    const Term* inf = encoder.enc_is_inf(x, kTiny);
    const Term* nan = encoder.enc_is_nan(x, kTiny);
    const SmallFloat value(pattern, kTiny);
    EXPECT_EQ(inf, bv(value.is_inf() ? 1 : 0, 1)) << pattern;
    EXPECT_EQ(nan, bv(value.is_nan() ? 1 : 0, 1)) << pattern;
  }
}

}  // namespace
}  // namespace vorn::fp
