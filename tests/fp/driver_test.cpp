// The walk over a term, the trail, and the bit-vector terms that are handed out.
#include <cstddef>
#include <stdexcept>

#include "tests/fp/encoder_fixture.h"

namespace vorn::fp {
namespace {

// The table of encodings, which is private: an explicit instantiation may name it.
template <auto member>
struct CacheAccess {
  friend const TermMap& cache_of(const FpBvEncoder& encoder) { return encoder.*member; }
};
template struct CacheAccess<&FpBvEncoder::cache>;
const TermMap& cache_of(const FpBvEncoder& encoder);

class DriverTest : public EncoderTest {
 protected:
  std::size_t buckets() const { return cache_of(encoder).bucket_count(); }
  bool is_cached(const Term* t) const { return encoder.get_cached(t) != nullptr; }

  const Term* x = variable("x", {8, 23});
  const Term* y = variable("y", {8, 23});
};
INSTANTIATE_TEST_SUITE_P(, DriverTest, one_and_two_managers(), ::testing::PrintToStringParamName());

// Encoding ----------------------------------------------------------------------------------------

TEST_P(DriverTest, ReturnsWhatItCaches) {
  const Term* t = src.make_fp_lt(x, y);
  const Term* encoding = encode(t);
  EXPECT_NE(encoding, nullptr);
  EXPECT_EQ(encoder.get_cached(t), encoding);
  EXPECT_TRUE(is_cached(x));
  EXPECT_TRUE(is_cached(y));
}

TEST_P(DriverTest, EncodesTheLastArgumentFirst) {
  encode(src.make_fp_lt(x, y));
  EXPECT_EQ(name_of(encoder.get_cached(y)), ".fp.f1");
  EXPECT_EQ(name_of(encoder.get_cached(x)), ".fp.f2");
}

TEST_P(DriverTest, AppendsConstraintsToThoseOfOtherCalls) {
  const Term* test = src.make_fp_isnan(x);
  const Term* less = src.make_fp_lt(x, y);
  Terms all;
  const Term* encoding = encoder.append_bv_encoding(test, &all);
  EXPECT_EQ(encoder.get_cached(test), encoding);
  const Terms of_test = all;
  EXPECT_EQ(of_test.size(), 1U);
  encoder.append_bv_encoding(less, &all);
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0], of_test[0]);
  encoder.append_bv_encoding(less, &all);
  EXPECT_EQ(all.size(), 2U);

  // What is appended is what the other way to call would have put there.
  encoder.retract_upto(test);
  encoder.append_bv_encoding(test, &all);
  EXPECT_EQ(all.size(), 3U);
  encoder.retract_upto(test);
  encode(test);
  EXPECT_EQ(side.size(), 1U);
  encode(less);
  EXPECT_EQ(side.size(), 1U);
}

TEST_P(DriverTest, AppendsNothingWhereTheEncodingFails) {
  Terms all = {bv(1, 1)};
  EXPECT_THROW(encoder.append_bv_encoding(nullptr, &all), std::invalid_argument);
  EXPECT_EQ(all, Terms{bv(1, 1)});
}

TEST_P(DriverTest, EncodesARepeatedArgumentOnce) {
  encode(src.make_fp_equal(x, x));
  EXPECT_EQ(side.size(), 1U);
  encode(y);
  EXPECT_EQ(name_of(encoder.get_cached(y)), ".fp.f2");
}

TEST_P(DriverTest, EncodesASharedSubtermOnceInACall) {
  const Term* n = src.make_fp_neg(x);
  encode(src.make_fp_lt(n, src.make_fp_neg(n)));
  EXPECT_EQ(side.size(), 1U);
}

TEST_P(DriverTest, RemembersEncodingsFromCallToCall) {
  const Term* kx = encode(x);
  EXPECT_EQ(side.size(), 1U);
  encode(src.make_fp_isinf(x));
  EXPECT_TRUE(side.empty());
  EXPECT_EQ(encoder.get_cached(x), kx);
}

TEST_P(DriverTest, AnswersACachedTermWithNothingNew) {
  const Term* t = src.make_fp_lt(x, y);
  const Term* before = encode(t);
  const std::uint64_t terms = dst.get_term_count();
  EXPECT_EQ(encode(t), before);
  EXPECT_TRUE(side.empty());
  EXPECT_EQ(dst.get_term_count(), terms);
}

TEST_P(DriverTest, ReplacesWhatTheOutputVectorHeld) {
  side = {x, y, x};
  encode(x);
  EXPECT_EQ(side.size(), 1U);
  const Terms of_x = side;
  encode(y);
  EXPECT_EQ(side.size(), 1U);
  EXPECT_NE(side, of_x);
  encode(y);
  EXPECT_TRUE(side.empty());
}

TEST_P(DriverTest, AnswersARoundingModeWithoutAFreshSymbol) {
  EXPECT_EQ(encode(src.make_fprounding_zero()), bv(1, 2));
  EXPECT_TRUE(side.empty());
  EXPECT_EQ(name_of(encode(rounding_variable("r"))), ".fp.r1");
}

TEST_P(DriverTest, NeverVisitsTheArgumentsOfAnIfThenElse) {
  const Term* b = bool_variable("b");
  const Term* t = src.make_term_ite(b, x, y);
  const Term* k = encode(t);
  EXPECT_EQ(name_of(k), ".fp.f1");
  EXPECT_EQ(width_of(k), 32U);
  EXPECT_EQ(side.size(), 1U);
  EXPECT_FALSE(is_cached(b));
  EXPECT_FALSE(is_cached(x));
  EXPECT_FALSE(is_cached(y));
}

TEST_P(DriverTest, EncodesAnIfThenElseOfEachSortAsALeafOfThatSort) {
  const Term* b = bool_variable("b");
  const Term* rm = src.make_term_ite(b, src.make_fprounding_even(), rounding_variable("r"));
  EXPECT_EQ(name_of(encode(rm)), ".fp.r1");
  const Term* v = src.make_term_ite(b, bv_variable("v", 7), src.make_bv_number(0, 7));
  EXPECT_EQ(name_of(encode(v)), ".fp.bv1");
  EXPECT_EQ(width_of(encode(v)), 7U);
}

TEST_P(DriverTest, NeverVisitsBitsThatAreReadAsAFloat) {
  const Term* v = bv_variable("v", 32);
  const Term* t = src.make_fp_from_bits(8, 23, v);
  EXPECT_EQ(name_of(encode(t)), ".fp.f1");
  EXPECT_FALSE(is_cached(v));
  Terms waiting;
  EXPECT_FALSE(encoder.get_new_bv_terms(waiting));
}

TEST_P(DriverTest, EncodesABitVectorOperationAsALeafAfterItsOperands) {
  const Term* v = bv_variable("v", 8);
  const Term* t = src.make_bv_add(v, src.make_bv_number(1, 8));
  EXPECT_EQ(name_of(encode(t)), ".fp.bv3");
  EXPECT_TRUE(is_cached(v));
}

// A lookup that inserts what it does not find tests the load, and a table of 31 buckets grows when
// more than 21 of its entries are there.

TEST_P(DriverTest, LooksItsResultUpInAWayThatGrowsTheTable) {
  std::size_t entries = 4;  // the rounding modes
  for (; entries < 21; ++entries)
    encode(variable("v", {8, 23}));
  EXPECT_EQ(buckets(), 31U);
  encode(variable("v", {8, 23}));
  EXPECT_EQ(buckets(), 73U);
}

TEST_P(DriverTest, GrowsTheTableForATermThatIsCached) {
  const Term* t = src.make_fp_neg(x);
  encode(t);
  for (int entries = 6; entries < 20; ++entries)
    encode(variable("v", {8, 23}));
  // The equality of x and its negation makes the twenty-first entry.
  encode(src.make_equal(x, t));
  EXPECT_EQ(buckets(), 31U);
  encoder.define_encoding(y, bits("k", 32));
  EXPECT_EQ(buckets(), 31U);
  encode(t);
  EXPECT_EQ(buckets(), 73U);
}

TEST_P(DriverTest, LooksTheOperandsOfAnEqualityUpInTheSameWay) {
  const Term* t = src.make_equal(x, y);
  encode(x);
  encode(y);
  for (int entries = 6; entries < 21; ++entries)
    encode(variable("v", {8, 23}));
  encoder.define_encoding(variable("v", {8, 23}), bits("k", 32));
  EXPECT_EQ(buckets(), 31U);
  encoder.encode_equality(t);
  EXPECT_EQ(buckets(), 73U);
}

TEST_P(DriverTest, EncodesDeepTermsWithoutNativeRecursion) {
  constexpr int kDepth = 100000;
  const Term* t = x;
  for (int i = 0; i < kDepth; ++i)
    t = src.make_fp_neg(t);
  EXPECT_EQ(width_of(encode(t)), 32U);
  EXPECT_EQ(side.size(), 1U);
  encoder.retract_upto(t);
  EXPECT_FALSE(is_cached(x));
}

// The trail ---------------------------------------------------------------------------------------

TEST_P(DriverTest, RetractsExactlyWhatACallMade) {
  encode(x);
  const Term* t = src.make_fp_lt(x, src.make_fp_neg(y));
  encode(t);
  encoder.retract_upto(t);
  EXPECT_FALSE(is_cached(t));
  EXPECT_FALSE(is_cached(y));
  EXPECT_FALSE(is_cached(t->get_arg(1)));
  EXPECT_TRUE(is_cached(x));
}

TEST_P(DriverTest, TrailsTheRootFirstAndThenItsSubtermsInPostOrder) {
  const Term* n = src.make_fp_neg(y);
  const Term* t = src.make_fp_lt(x, n);
  encode(t);
  // The trail reads t, y, n, x.
  encoder.retract_upto(n);
  EXPECT_FALSE(is_cached(x));
  EXPECT_FALSE(is_cached(n));
  EXPECT_TRUE(is_cached(y));
  EXPECT_TRUE(is_cached(t));
  encoder.retract_upto(y);
  EXPECT_FALSE(is_cached(y));
  EXPECT_TRUE(is_cached(t));
}

TEST_P(DriverTest, TrailsARepeatedArgumentOnceAndItsParentNotAgain) {
  const Term* t = src.make_fp_equal(x, x);
  encode(y);
  encode(t);
  // The trail reads y, t, x.
  encoder.retract_upto(x);
  EXPECT_FALSE(is_cached(x));
  EXPECT_TRUE(is_cached(t));
  encoder.retract_upto(t);
  EXPECT_FALSE(is_cached(t));
  EXPECT_TRUE(is_cached(y));
}

TEST_P(DriverTest, TrailsACachedRootOnceMore) {
  encode(x);
  encode(y);
  encode(x);
  // The trail reads x, y, x.
  encoder.retract_upto(x);
  EXPECT_FALSE(is_cached(x));
  EXPECT_TRUE(is_cached(y));
  encoder.retract_upto(x);
  EXPECT_FALSE(is_cached(y));
}

TEST_P(DriverTest, RetractsARootThatAnEarlierCallHadEncoded) {
  const Term* t = src.make_fp_isnan(x);
  encode(t);
  encode(t);
  encoder.retract_upto(t);
  EXPECT_FALSE(is_cached(t));
  EXPECT_TRUE(is_cached(x));
}

TEST_P(DriverTest, RetractsEverythingForATermItNeverSaw) {
  encode(x);
  encode(src.make_fp_isnan(y));
  encoder.retract_upto(variable("z", {8, 23}));
  EXPECT_FALSE(is_cached(x));
  EXPECT_FALSE(is_cached(y));
  EXPECT_EQ(encoder.get_cached(src.make_fprounding_even()), bv(0, 2));
  EXPECT_EQ(encoder.get_cached(src.make_fprounding_minus_inf()), bv(3, 2));
}

TEST_P(DriverTest, ForgetsARoundingModeOnlyWhereItWasARoot) {
  const Term* zero = src.make_fprounding_zero();
  const Term* even = src.make_fprounding_even();
  encode(zero);
  encode(src.make_equal(even, rounding_variable("r")));
  encoder.retract_upto(zero);
  EXPECT_FALSE(is_cached(zero));
  EXPECT_TRUE(is_cached(even));
  EXPECT_EQ(encode(zero), bv(1, 2));
  EXPECT_TRUE(side.empty());
}

TEST_P(DriverTest, GivesNewNamesAfterARetraction) {
  encode(x);
  const Terms before = side;
  encoder.retract_upto(x);
  EXPECT_EQ(name_of(encode(x)), ".fp.f2");
  EXPECT_EQ(side.size(), 1U);
  EXPECT_NE(side, before);
}

TEST_P(DriverTest, RetractsNothingFromAnEmptyTrail) {
  encoder.retract_upto(x);
  EXPECT_EQ(name_of(encode(x)), ".fp.f1");
}

// Encodings given by the owner --------------------------------------------------------------------

TEST_P(DriverTest, UsesTheOwnersEncodingOfATerm) {
  const Term* t = src.make_term_ite(bool_variable("b"), x, y);
  const Term* k = bits("k", 32);
  encoder.define_encoding(t, k);
  EXPECT_EQ(encode(t), k);
  EXPECT_EQ(encode(src.make_fp_iszero(t)),
            dst.make_equal(encoder.enc_is_zero(k, {8, 23}), bv(1, 1)));
  EXPECT_TRUE(side.empty());
}

TEST_P(DriverTest, RetractsTheOwnersEncodingInItsTurn) {
  const Term* v = bv_variable("v", 8);
  encode(x);
  encoder.define_encoding(v, bits("k", 8));
  encode(y);
  Terms waiting;
  EXPECT_FALSE(encoder.get_new_bv_terms(waiting));
  encoder.retract_upto(v);
  EXPECT_FALSE(is_cached(y));
  EXPECT_FALSE(is_cached(v));
  EXPECT_TRUE(is_cached(x));
  EXPECT_EQ(name_of(encode(v)), ".fp.bv3");
}

// Bit-vector terms of the input -------------------------------------------------------------------

TEST_P(DriverTest, HandsOutBitVectorTermsOnce) {
  const Term* v = bv_variable("v", 8);
  const Term* w = bv_variable("w", 8);
  encode(v);
  encode(w);
  Terms waiting = {x};
  EXPECT_TRUE(encoder.get_new_bv_terms(waiting));
  EXPECT_EQ(waiting, (Terms{v, w}));
  EXPECT_FALSE(encoder.get_new_bv_terms(waiting));
  EXPECT_EQ(waiting, (Terms{v, w}));
}

TEST_P(DriverTest, HandsOutABitVectorTermAgainWhenItIsEncodedAgain) {
  const Term* v = bv_variable("v", 8);
  encode(v);
  encoder.retract_upto(v);
  encode(v);
  Terms waiting;
  EXPECT_TRUE(encoder.get_new_bv_terms(waiting));
  EXPECT_EQ(waiting, (Terms{v, v}));
  EXPECT_EQ(name_of(encoder.get_cached(v)), ".fp.bv2");
}

// Failures ----------------------------------------------------------------------------------------

TEST_P(DriverTest, PassesOnWhatTheManagerThrowsAndStaysUsable) {
  const Term* b = bool_variable("b");
  side = {x};
  EXPECT_THROW(encode(src.make_not(b)), std::invalid_argument);
  EXPECT_EQ(side, Terms{x});
  EXPECT_FALSE(is_cached(b));
  EXPECT_EQ(name_of(encode(y)), ".fp.f1");
  EXPECT_EQ(side.size(), 1U);
}

TEST_P(DriverTest, KeepsTheEncodingsThatWereCompleteBeforeAFailure) {
  const Term* t = src.make_fp_isnan(x);
  encoder.on_isnan = [](const Term*) -> const Term* { throw std::runtime_error("no circuit"); };
  EXPECT_THROW(encode(t), std::runtime_error);
  EXPECT_TRUE(is_cached(x));
  EXPECT_FALSE(is_cached(t));
  // The constraints of the failed call are lost; an owner who retracts it gets them anew.
  encoder.retract_upto(t);
  EXPECT_FALSE(is_cached(x));
  encoder.on_isnan = nullptr;
  encode(t);
  EXPECT_EQ(side.size(), 1U);
  EXPECT_EQ(name_of(encoder.get_cached(x)), ".fp.f2");
}

}  // namespace
}  // namespace vorn::fp
