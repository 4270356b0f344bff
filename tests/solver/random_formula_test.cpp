// Random formulas over floats of few bits: the solver's answer against trying out every assignment
// with the evaluator, which knows no circuits.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "tests/solver/solver_fixture.h"
#include "vorn/semantics/evaluator.h"

namespace vorn::solver {
namespace {

constexpr std::size_t kE = 2;
constexpr std::size_t kM = 2;
constexpr int kPatterns = 1 << (1 + kE + kM);

class RandomFormula {
 public:
  RandomFormula(TermManager& manager, unsigned seed) : mgr(manager), random(seed) {
    const DataType* type = mgr.get_fp_type(kE, kM);
    for (const char* name : {"x", "y"}) {
      floats.push_back(mgr.make_constant(mgr.make_unique_symbol(name, type)));
    }
    p = mgr.make_constant(mgr.make_unique_symbol("p", mgr.get_bool_type()));
    b = mgr.make_constant(mgr.make_unique_symbol("b", mgr.get_bv_type(1 + kE + kM)));
  }

  const Term* formula(int depth) {
    if (depth == 0) return pick(5) == 0 ? p : atom();
    switch (pick(6)) {
      case 0:
        return mgr.make_not(formula(depth - 1));
      case 1:
        return mgr.make_and(formula(depth - 1), formula(depth - 1));
      case 2:
        return mgr.make_or(formula(depth - 1), formula(depth - 1));
      case 3:
        return mgr.make_xor(formula(depth - 1), formula(depth - 1));
      case 4:
        return mgr.make_term_ite(formula(depth - 1), formula(depth - 1), formula(depth - 1));
      default:
        return atom();
    }
  }

  const Term* p;
  const Term* b;
  std::vector<const Term*> floats;

 private:
  int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random); }

  const Term* value(int depth) {
    switch (depth == 0 ? pick(3) : pick(6)) {
      case 0:
        return mgr.make_fp_from_bits(kE, kM, b);
      case 1:
        return canonical(pick(kPatterns));
      case 3:
        return mgr.make_fp_neg(value(depth - 1));
      case 4:
        return mgr.make_term_ite(pick(2) == 0 ? p : atom(depth - 1), value(depth - 1),
                                 value(depth - 1));
      default:
        return floats[static_cast<std::size_t>(pick(2))];
    }
  }

  const Term* canonical(int bits) {
    return mgr.make_fp_number(IEEEFloat::from_bits({kE, kM}, QNumber(bits)));
  }

  const Term* atom(int depth = 2) {
    const Term* a = value(depth);
    switch (pick(7)) {
      case 0:
        return mgr.make_fp_isnan(a);
      case 1:
        return mgr.make_fp_isinf(a);
      case 2:
        return mgr.make_fp_iszero(a);
      case 3:
        return mgr.make_fp_lt(a, value(depth));
      case 4:
        return mgr.make_fp_le(a, value(depth));
      case 5:
        return mgr.make_fp_equal(a, value(depth));
      default:
        return mgr.make_equal(a, value(depth));
    }
  }

  TermManager& mgr;
  std::mt19937 random;
};

bool brute_force(TermManager& mgr, const RandomFormula& names, const Term* formula) {
  for (int assignment = 0; assignment < kPatterns * kPatterns * kPatterns * 2; ++assignment) {
    const int x = assignment % kPatterns;
    const int y = assignment / kPatterns % kPatterns;
    const int bits = assignment / kPatterns / kPatterns % kPatterns;
    semantics::Evaluator evaluator(mgr, [&](const Term* t) {
      if (t == names.p) return QNumber(assignment / kPatterns / kPatterns / kPatterns);
      if (t == names.b) return QNumber(bits);
      return QNumber(t == names.floats[0] ? x : y);
    });
    if (evaluator.evaluate(formula).sign() != 0) return true;
  }
  return false;
}

TEST(RandomFormula, IsAnsweredAsTryingAllAssignmentsSays) {
  int unsat = 0;
  for (unsigned seed = 0; seed < 60; ++seed) {
    TermManager mgr;
    RandomFormula random(mgr, seed);
    const Term* formula = random.formula(2);
    for (int i = 0; i < 3; ++i)
      formula = mgr.make_and(formula, random.formula(1));
    Options options;
    options.local_search = seed % 2 == 0;
    Solver solver(mgr, options);
    solver.assert_formula(formula);
    const bool satisfiable = brute_force(mgr, random, formula);
    EXPECT_EQ(solver.check_sat(), satisfiable ? Answer::sat : Answer::unsat)
        << "seed " << seed << ": " << formula->to_string();
    unsat += satisfiable ? 0 : 1;
  }
  EXPECT_GT(unsat, 3) << "the formulas should not all be satisfiable";
}

TEST(RandomFormula, IsAnsweredAlikeWithAssertionsOnLevels) {
  for (unsigned seed = 1000; seed < 1080; ++seed) {
    TermManager mgr;
    RandomFormula random(mgr, seed);
    Options options;
    options.local_search = seed % 2 == 0;
    Solver solver(mgr, options);
    const Term* first = random.formula(1);
    solver.assert_formula(first);
    for (int round = 0; round < 3; ++round) {
      const Term* second = random.formula(2);
      const Term* third = random.formula(1);
      solver.push();
      solver.assert_formula(second);
      solver.push();
      solver.assert_formula(third);
      const Answer stacked = solver.check_sat();
      Solver flat(mgr);
      flat.assert_formula(mgr.make_and(first, mgr.make_and(second, third)));
      EXPECT_EQ(stacked, flat.check_sat()) << "seed " << seed;
      solver.pop();
      solver.pop();
    }
  }
}

}  // namespace
}  // namespace vorn::solver
