#include "vorn/semantics/evaluator.h"

#include <stdexcept>
#include <vector>

#include "tests/solver/solver_fixture.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/terms/operations.h"

namespace vorn::semantics {
namespace {

class EvaluatorTest : public solver::SolverTest {
 protected:
  QNumber value(const Term* t) {
    Evaluator evaluator(mgr, [](const Term*) { return QNumber(0); });
    return evaluator.evaluate(t);
  }
};

TEST_F(EvaluatorTest, EveryNaNIsTheOneNaN) {
  const Term* quiet = mgr.make_fp_number(QNumber(0x7fc00000), 8, 23);
  EXPECT_EQ(value(mgr.make_equal(quiet, mgr.make_fp_nan(8, 23))), QNumber(1));
  EXPECT_EQ(value(quiet), QNumber(0xff800001L));
}

TEST_F(EvaluatorTest, EqualityOfTermsTellsTheZerosApartAndEqualityOfNumbersDoesNot) {
  const Term* negative = mgr.make_fp_neg(fp(0, 3, 3));
  EXPECT_EQ(value(mgr.make_equal(negative, fp(0, 3, 3))), QNumber(0));
  EXPECT_EQ(value(mgr.make_fp_equal(negative, fp(0, 3, 3))), QNumber(1));
}

TEST_F(EvaluatorTest, RoundsByTheModeOfTheOperation) {
  const Term* one = fp(0x3f800000, 8, 23);
  const Term* tiny = fp(1, 8, 23);
  const auto sum = [&](const Term* rm) { return value(mgr.make_fp_add(rm, one, tiny)); };
  EXPECT_EQ(sum(mgr.make_fprounding_even()), QNumber(0x3f800000));
  EXPECT_EQ(sum(mgr.make_fprounding_plus_inf()), QNumber(0x3f800001));
}

TEST_F(EvaluatorTest, ReadsIntegersAsSignedOrUnsigned) {
  const Term* ones = mgr.make_bv_number(255, 8);
  const Term* rm = mgr.make_fprounding_zero();
  EXPECT_EQ(value(mgr.make_fp_from_sbv(8, 23, rm, ones)), QNumber(0xbf800000L));
  EXPECT_EQ(value(mgr.make_fp_from_ubv(8, 23, rm, ones)), QNumber(0x437f0000));
}

TEST_F(EvaluatorTest, DeepTermsDoNotExhaustTheNativeStack) {
  const Term* t = variable("x", mgr.get_fp_type(8, 23));
  for (int i = 0; i < 200'000; ++i)
    t = mgr.make_fp_neg(t);
  EXPECT_EQ(value(t), QNumber(0));
}

TEST_F(EvaluatorTest, LiteralsAreMadeForEverySort) {
  EXPECT_EQ(make_literal(mgr, mgr.get_bool_type(), QNumber(1)), mgr.make_true());
  EXPECT_EQ(make_literal(mgr, mgr.get_fprounding_type(), QNumber(4)), mgr.make_fprounding_away());
  EXPECT_EQ(make_literal(mgr, mgr.get_bv_type(4), QNumber(9)), mgr.make_bv_number(9, 4));
  EXPECT_EQ(make_literal(mgr, mgr.get_fp_type(3, 3), QNumber(9)), fp(9, 3, 3));
}

/// An operand of the sort that a letter of a signature stands for, in the formats (3, 4) and (5,
/// 6).
const Term* operand(TermManager& mgr, char letter) {
  switch (letter) {
    case 'R':
      return mgr.make_fprounding_even();
    case 'F':
      return mgr.make_fp_number(QNumber(0x31), 3, 4);
    case 'G':
      return mgr.make_fp_number(QNumber(0x1e1), 5, 6);
    default:
      return mgr.make_bv_number(QNumber(0x31), 8);
  }
}

TEST(Application, HasAValueForEveryOperationOnFloatsAndTheExactEncoderACircuit) {
  TermManager mgr;
  const fp::IeeeBvEncoder encoder(&mgr, &mgr);
  Evaluator evaluator(mgr, [](const Term*) { return QNumber(); });
  for (const Operation& op : get_operations()) {
    if (op.theory != Theory::floating_point || op.derive != nullptr) continue;
    std::vector<const Term*> args;
    for (const char letter : op.signature.get_letters())
      args.push_back(operand(mgr, letter));
    std::vector<std::size_t> indices(op.get_index_count(), 8);
    if (op.indexing == Indexing::format) indices = {3, 4};
    const Term* t = mgr.make(op.tag, indices, args);
    EXPECT_NO_THROW(evaluator.evaluate(t)) << op.name;
    EXPECT_EQ(encoder.supports(op.tag), op.is_explained) << op.name;
  }
}

}  // namespace
}  // namespace vorn::semantics
