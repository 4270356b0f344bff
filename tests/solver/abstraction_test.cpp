// Operations whose circuits are put off: what is stated in their place, and when circuits come.
#include "vorn/solver/abstraction.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/solver/solver_fixture.h"
#include "vorn/semantics/application.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/solver/result_lemmas.h"

namespace vorn::solver {
namespace {

using T = SymbolTag;

Options refined(AbstractionKind kind = AbstractionKind::all) {
  Options options = circuits_only();
  options.ranges = false;
  options.relations = false;
  options.abstraction = kind;
  return options;
}

// Statements ------------------------------------------------------------------------------------

/// An operation on floats or bit-vectors so small that every operand can be tried.
class ResultLemmas : public testing::TestWithParam<SymbolTag::tag> {
 protected:
  static constexpr std::size_t kE = 2;
  static constexpr std::size_t kM = 1;
  static constexpr std::size_t kWidth = 4;

  ResultLemmas() {
    const bool is_rounded = GetParam() == T::fp_mul || GetParam() == T::fp_div ||
                            GetParam() == T::fp_sqrt || GetParam() == T::fp_fma;
    const bool is_float = is_rounded || GetParam() == T::fp_rem;
    type = is_float ? mgr.get_fp_type(kE, kM) : mgr.get_bv_type(kWidth);
    count = 1U << (is_float ? 1 + kE + kM : kWidth);
    const std::size_t arity = GetParam() == T::fp_sqrt ? 1 : GetParam() == T::fp_fma ? 3 : 2;
    std::vector<const Term*> args;
    if (is_rounded) args.push_back(constant("r", mgr.get_fprounding_type()));
    for (std::size_t i = 0; i < arity; ++i)
      args.push_back(constant("x", type));
    t = mgr.make(GetParam(), std::span<const std::size_t>(), args);
  }

  const Term* constant(const char* name, const DataType* sort) {
    return mgr.make_constant(mgr.make_unique_symbol(name, sort));
  }
  /// Moves on to the next values of the operands; false behind the last.
  bool advance() {
    for (std::size_t i = 0; i < values.size(); ++i) {
      const bool is_mode = mgr.is_fprounding_type(t->get_arg(i)->get_type());
      if (++values[i] < (is_mode ? 5U : count)) return true;
      values[i] = 0;
    }
    return false;
  }
  /// The operands, as an Evaluator has them.
  std::vector<QNumber> read_operands() {
    semantics::Evaluator evaluator(mgr, [&](const Term* c) { return value_of(c); });
    std::vector<QNumber> operands;
    for (const Term* arg : t->get_args())
      operands.push_back(evaluator.evaluate(arg));
    return operands;
  }
  QNumber value_of(const Term* c) const {
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (t->get_arg(i) == c) return QNumber(values[i]);
    }
    return {};
  }
  bool holds(const Term* formula) {
    semantics::Evaluator evaluator(mgr, [&](const Term* c) { return value_of(c); });
    return evaluator.evaluate(formula).sign() != 0;
  }
  QNumber result() {
    semantics::Evaluator evaluator(mgr, [&](const Term* c) { return value_of(c); });
    return evaluator.evaluate(t);
  }

  TermManager mgr{false};
  const DataType* type = nullptr;
  unsigned count = 0;  // patterns of an operand
  const Term* t = nullptr;
  std::vector<unsigned> values = std::vector<unsigned>(4);
};

TEST_P(ResultLemmas, FactsHoldOfAllOperands) {
  values.resize(t->get_arity());
  const std::vector<const Term*> facts = state_result_facts(mgr, t);
  ASSERT_FALSE(facts.empty());
  do {
    for (std::size_t i = 0; i < facts.size(); ++i)
      ASSERT_TRUE(holds(facts[i])) << "fact " << i << " of " << testing::PrintToString(values);
  } while (advance());
}

TEST_P(ResultLemmas, LemmasExcludeACandidateAndNoResult) {
  values.resize(t->get_arity());
  std::vector<const Term*> lemmas;
  unsigned step = 0;
  do {
    if (++step % 7 != 1) continue;
    const std::vector<QNumber> operands = read_operands();
    const QNumber value = result();
    const QNumber candidate = semantics::Evaluator(mgr, [&](const Term*) {
                                return QNumber(step * 5 % count);
                              }).evaluate(constant("c", type));
    if (candidate == value) continue;
    lemmas.push_back(state_result_near(mgr, t, operands, value, candidate));
    semantics::Evaluator broken(mgr, [&](const Term* c) { return value_of(c); });
    broken.assume(t, candidate);
    EXPECT_EQ(broken.evaluate(lemmas.back()), QNumber()) << testing::PrintToString(values);
  } while (advance() && lemmas.size() < 12);
  ASSERT_GT(lemmas.size(), 3U);
  values.assign(t->get_arity(), 0);
  do {
    for (const Term* lemma : lemmas)
      ASSERT_TRUE(holds(lemma)) << testing::PrintToString(values);
  } while (advance());
}

INSTANTIATE_TEST_SUITE_P(Operations, ResultLemmas,
                         testing::Values(T::fp_mul, T::fp_div, T::fp_sqrt, T::fp_fma, T::fp_rem,
                                         T::bv_mul, T::bv_udiv, T::bv_urem));

// Refinement ------------------------------------------------------------------------------------

class Refinement : public SolverTest {
 protected:
  const Term* mul(const Term* a, const Term* b) {
    return mgr.make_fp_mul(mgr.make_fprounding_even(), a, b);
  }
  const Term* number(int value) {
    IEEEFloat rounded({4, 6}, IEEEFloat::rounding_mode::nearest_even);
    rounded.self_round(QNumber(value));
    return mgr.make_fp_number(rounded);
  }
  const Term* differ(const Term* a, const Term* b) { return mgr.make_not(mgr.make_equal(a, b)); }
  Statistics stats() const { return lazy.get_statistics(); }

  Solver lazy{mgr, refined()};
  const Term* x = variable("x", mgr.get_fp_type(4, 6));
  const Term* y = variable("y", mgr.get_fp_type(4, 6));
  const Term* i = variable("i", mgr.get_bv_type(16));
  const Term* j = variable("j", mgr.get_bv_type(16));
};

TEST_F(Refinement, FactsRefuteWithoutACircuit) {
  Options options = refined();
  options.rewrite = false;  // which knows classes of results too
  Solver plain(mgr, options);
  plain.assert_formula(mgr.make_fp_isnormal(x));
  plain.assert_formula(mgr.make_fp_isnan(mul(x, y)));
  plain.assert_formula(mgr.make_not(mgr.make_fp_isnan(y)));
  EXPECT_EQ(plain.check_sat(), Answer::unsat);
  EXPECT_EQ(plain.get_statistics().abstracted, 1U);
  EXPECT_EQ(plain.get_statistics().circuits, 0U);
}

TEST_F(Refinement, AModelOfTheConstantsNeedsNoCircuit) {
  lazy.assert_formula(mgr.make_fp_isnegative(mul(x, y)));
  EXPECT_EQ(lazy.check_sat(), Answer::sat);
  EXPECT_EQ(stats().circuits, 0U);
  EXPECT_EQ(lazy.get_value(mgr.make_fp_isnegative(mul(x, y))), mgr.make_true());
}

TEST_F(Refinement, ResultsAreExcludedUntilTheyAreRight) {
  lazy.assert_formula(mgr.make_equal(mul(x, y), number(35)));
  lazy.assert_formula(mgr.make_fp_lt(number(1), x));
  lazy.assert_formula(mgr.make_fp_lt(x, y));
  ASSERT_EQ(lazy.check_sat(), Answer::sat);
  EXPECT_EQ(lazy.get_value(mul(x, y)), number(35));
  lazy.assert_formula(mgr.make_fp_lt(mul(x, x), mgr.make_fp_neg(number(1))));
  EXPECT_EQ(lazy.check_sat(), Answer::unsat);
}

TEST_F(Refinement, CircuitsRefuteWhatFactsLeave) {
  lazy.assert_formula(mgr.make_equal(mgr.make_bv_mul(i, j), mgr.make_bv_number(3, 16)));
  lazy.assert_formula(mgr.make_equal(mgr.make_bv_mul(i, i), mgr.make_bv_number(3, 16)));
  EXPECT_EQ(lazy.check_sat(), Answer::unsat);
  EXPECT_GT(stats().refinements, 0U);
  EXPECT_GT(stats().circuits, 0U);
}

TEST_F(Refinement, OfBitVectorsOnlyWhereItIsAskedFor) {
  for (const AbstractionKind kind : {AbstractionKind::none, AbstractionKind::floats}) {
    Solver eager(mgr, refined(kind));
    eager.assert_formula(mgr.make_equal(mgr.make_bv_mul(i, j), i));
    eager.assert_formula(mgr.make_equal(mul(x, y), x));
    EXPECT_EQ(eager.check_sat(), Answer::sat);
    EXPECT_EQ(eager.get_statistics().abstracted, kind == AbstractionKind::none ? 0U : 1U);
  }
}

TEST_F(Refinement, NotWithTheBaseEncoder) {
  Options options = refined();
  options.encoder = EncoderKind::base;
  Solver base(mgr, options);
  base.assert_formula(mgr.make_fp_lt(mul(x, y), x));
  base.check_sat();
  EXPECT_EQ(base.get_statistics().abstracted, 0U);
}

TEST_F(Refinement, LevelsTakeWhatTheyHaveLearnt) {
  const Term* odd = mgr.make_equal(mgr.make_bv_mul(i, i), mgr.make_bv_number(3, 16));
  for (int round = 0; round < 3; ++round) {
    lazy.push();
    lazy.assert_formula(odd);
    EXPECT_EQ(lazy.check_sat(), Answer::unsat);
    lazy.pop();
    lazy.push();
    lazy.assert_formula(mgr.make_equal(mgr.make_bv_mul(i, i), mgr.make_bv_number(9, 16)));
    EXPECT_EQ(lazy.check_sat(), Answer::sat);
    EXPECT_EQ(lazy.get_value(mgr.make_bv_mul(i, i)), mgr.make_bv_number(9, 16));
    lazy.pop();
  }
  lazy.assert_formula(odd);
  lazy.push();
  EXPECT_EQ(lazy.check_sat(), Answer::unsat);
  lazy.pop();
  EXPECT_EQ(lazy.check_sat(), Answer::unsat);
}

TEST_F(Refinement, BlamesTheAssumptionsThatItTakes) {
  const Term* product = mul(x, y);
  const std::vector<const Term*> assumed = {variable("p", mgr.get_bool_type()),
                                            mgr.make_equal(product, number(35)),
                                            mgr.make_equal(x, number(5)), differ(y, number(7))};
  ASSERT_EQ(lazy.check_sat(assumed), Answer::unsat);
  EXPECT_EQ(lazy.get_unsat_assumptions(), (std::vector<std::size_t>{1, 2, 3}));
  const std::vector<const Term*> three(assumed.begin(), assumed.begin() + 3);
  ASSERT_EQ(lazy.check_sat(three), Answer::sat);
  EXPECT_EQ(lazy.get_value(y), number(7));
}

TEST_F(Refinement, AnEncodingHasEveryCircuit) {
  lazy.assert_formula(mgr.make_equal(mgr.make_bv_mul(i, i), mgr.make_bv_number(3, 16)));
  const Encoding encoding = lazy.encode({});
  Solver plain(mgr, refined(AbstractionKind::none));
  for (const Term* f : encoding.conjuncts)
    plain.assert_formula(f);
  EXPECT_EQ(plain.check_sat(), Answer::unsat);
  EXPECT_EQ(lazy.check_sat(), Answer::unsat);
}

TEST_F(Refinement, CollectedTermsComeBack) {
  const Term* product = mul(x, y);
  const Term* wanted = mgr.make_and(mgr.make_equal(product, number(35)), mgr.make_fp_lt(x, y));
  lazy.assert_formula(wanted);
  ASSERT_EQ(lazy.check_sat(), Answer::sat);
  const std::vector<const Term*> kept = {x, y, wanted};
  lazy.collect_garbage(kept);
  ASSERT_EQ(lazy.check_sat(), Answer::sat);
  lazy.reset_assertions();
  EXPECT_EQ(lazy.check_sat(), Answer::sat);
}

/// Ends work after a number of questions, once.
class Countdown : public TerminationTest {
 public:
  explicit Countdown(int questions) : left(questions) {}
  bool terminate() const override { return left-- == 0; }
  bool is_over() const { return left < 0; }

 private:
  mutable int left;
};

TEST_F(Refinement, GoesOnAfterItWasEnded) {
  const Term* formula =
      mgr.make_and(mgr.make_equal(mgr.make_bv_mul(i, j), mgr.make_bv_number(3, 16)),
                   mgr.make_equal(mgr.make_bv_mul(i, i), mgr.make_bv_number(3, 16)));
  int ended = 0;
  for (int questions = 0;; questions += 1 + questions / 4) {
    const Countdown countdown(questions);
    Options options = refined();
    options.termination_test = &countdown;
    Solver limited(mgr, options);
    limited.assert_formula(formula);
    const Answer first = limited.check_sat();
    if (first == Answer::unknown) ++ended;
    EXPECT_EQ(first == Answer::unknown ? limited.check_sat() : first, Answer::unsat) << questions;
    if (!countdown.is_over()) break;
  }
  EXPECT_GT(ended, 3);
}

}  // namespace
}  // namespace vorn::solver
