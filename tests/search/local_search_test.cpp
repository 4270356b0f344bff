#include "vorn/search/local_search.h"

#include <gtest/gtest.h>

#include <bit>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "vorn/search/word_program.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/solver/solver.h"

namespace vorn::search {
namespace {

struct Format {
  std::size_t e, m;
};

class LocalSearchTest : public testing::Test {
 protected:
  const Term* variable(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }
  const Term* fp(double value, std::size_t e = 11, std::size_t m = 52) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    mpz_class number;
    mpz_import(number.get_mpz_t(), 1, 1, sizeof(bits), 0, 0, &bits);
    const Term* wide = mgr.make_fp_number(QNumber::from_mpz(number), 11, 52);
    return mgr.make_fp_cast(e, m, rne, wide);
  }
  static bool satisfies(const TermManager& manager, const LocalSearch& search,
                        const std::vector<const Term*>& formulas) {
    std::map<const Term*, QNumber> values;
    for (const auto slot : search.get_constants())
      values[search.get_term(slot)] = search.get_value(slot);
    semantics::Evaluator evaluator(manager, [&](const Term* c) { return values.at(c); });
    for (const Term* f : formulas) {
      if (evaluator.evaluate(f).sign() == 0) return false;
    }
    return true;
  }

  TermManager mgr;
  const Term* rne = mgr.make_fprounding(IEEEFloat::rounding_mode::nearest_even);
};

// The program -----------------------------------------------------------------------------------

/// Operands where rounding, overflow and underflow happen.
std::uint64_t draw_bits(std::mt19937_64& random, Format f) {
  const std::uint64_t mask = ~std::uint64_t{0} >> (64 - (1 + f.e + f.m));
  const std::uint64_t bits = random() & mask;
  const std::uint64_t max_exponent = ((std::uint64_t{1} << f.e) - 1) << f.m;
  switch (random() % 8) {
    case 0:
      return bits | max_exponent;
    case 1:
      return bits & ~max_exponent;
    case 2:
      return bits & (mask ^ (mask >> 1U)) ? max_exponent : std::uint64_t{0};
    case 3:
      return (bits & ~max_exponent) | (max_exponent / 2 & max_exponent);
    case 4:
      return random() % 4 + (random() % 2 << (f.e + f.m));
    default:
      return bits;
  }
}

class Operations : public LocalSearchTest, public testing::WithParamInterface<Format> {
 protected:
  /// Every operation on x, y, z and the rounding mode of the format, and conversions of them.
  std::vector<const Term*> make_operations(Format f) {
    const DataType* type = mgr.get_fp_type(f.e, f.m);
    const Term* x = variable("x", type);
    const Term* y = variable("y", type);
    const Term* z = variable("z", type);
    const Term* rm = variable("rm", mgr.get_fprounding_type());
    const Term* bits = variable("bits", mgr.get_bv_type(1 + f.e + f.m));
    return {mgr.make_fp_add(rm, x, y),
            mgr.make_fp_sub(rm, x, y),
            mgr.make_fp_mul(rm, x, y),
            mgr.make_fp_div(rm, x, y),
            mgr.make_fp_fma(rm, x, y, z),
            mgr.make_fp_sqrt(rm, x),
            mgr.make_fp_rem(x, y),
            mgr.make_fp_round_to_integral(rm, x),
            mgr.make_fp_min(x, y),
            mgr.make_fp_max(x, y),
            mgr.make_fp_neg(x),
            mgr.make_fp_abs(x),
            mgr.make_fp_lt(x, y),
            mgr.make_fp_le(x, y),
            mgr.make_fp_equal(x, y),
            mgr.make_equal(x, y),
            mgr.make_fp_isnan(x),
            mgr.make_fp_isinf(x),
            mgr.make_fp_iszero(x),
            mgr.make_fp_isnormal(x),
            mgr.make_fp_issubnormal(x),
            mgr.make_fp_isnegative(x),
            mgr.make_fp_ispositive(x),
            mgr.make_fp_cast(8, 23, rm, x),
            mgr.make_fp_cast(11, 52, rm, x),
            mgr.make_fp_cast(5, 10, rm, x),
            mgr.make_fp_from_bits(f.e, f.m, bits),
            mgr.make_fp_to_sbv(16, rm, x),
            mgr.make_fp_to_ubv(16, rm, x),
            mgr.make_fp_from_sbv(f.e, f.m, rm, bits),
            mgr.make_fp_from_ubv(f.e, f.m, rm, bits),
            mgr.make_term_ite(mgr.make_fp_lt(x, y), x, z),
            mgr.make_bv_add(bits, bits)};
  }
};

TEST_P(Operations, HaveTheValuesOfExactArithmetic) {
  const std::vector<const Term*> operations = make_operations(GetParam());
  // A program takes formulas: that each value is itself.
  std::vector<const Term*> formulas;
  for (const Term* t : operations) {
    const Term* copy = variable("c" + std::to_string(formulas.size()), t->get_type());
    formulas.push_back(mgr.make_equal(t, copy));
  }
  auto program = WordProgram::compile(mgr, formulas, 1000);
  ASSERT_TRUE(program);
  std::vector<WordProgram::Slot> all;
  std::map<const Term*, WordProgram::Slot> slots;
  for (WordProgram::Slot slot = 0; slot < program->get_size(); ++slot) {
    slots[program->get_term(slot)] = slot;
    if (!program->get_args(slot).empty()) all.push_back(slot);
  }
  std::mt19937_64 random(7);
  for (int round = 0; round < 3000; ++round) {
    for (const auto slot : program->get_constants()) {
      const DataType* type = program->get_term(slot)->get_type();
      const bool is_mode = type->get_kind() == DataType::Kind::rounding_mode;
      const std::uint64_t value = is_mode ? random() % 5 : draw_bits(random, GetParam());
      const std::size_t width = type->get_value_width();
      program->set_value(slot, value & (~std::uint64_t{0} >> (64 - width)));
    }
    program->run(all);
    semantics::Evaluator evaluator(mgr,
                                   [&](const Term* c) { return program->get_number(slots.at(c)); });
    for (const Term* t : operations) {
      ASSERT_EQ(program->get_number(slots.at(t)), evaluator.evaluate(t)) << t->to_string();
    }
  }
}

TEST_P(Operations, CostNothingExactlyWhereTheyHold) {
  std::vector<const Term*> atoms;
  for (const Term* t : make_operations(GetParam())) {
    if (mgr.is_bool_type(t->get_type())) atoms.push_back(t);
  }
  std::vector<const Term*> formulas = atoms;
  for (std::size_t i = 0; i + 2 < atoms.size(); ++i) {
    formulas.push_back(mgr.make_or(atoms[i], mgr.make_and(atoms[i + 1], atoms[i + 2])));
    formulas.push_back(mgr.make_not(mgr.make_xor(atoms[i], atoms[i + 1])));
    formulas.push_back(mgr.make_implies(atoms[i], atoms[i + 1]));
    formulas.push_back(mgr.make_term_ite(atoms[i], atoms[i + 1], atoms[i + 2]));
  }
  auto program = WordProgram::compile(mgr, formulas, 1000);
  ASSERT_TRUE(program);
  std::vector<WordProgram::Slot> all;
  for (WordProgram::Slot slot = 0; slot < program->get_size(); ++slot) {
    if (!program->get_args(slot).empty()) all.push_back(slot);
  }
  std::mt19937_64 random(8);
  for (int round = 0; round < 500; ++round) {
    for (const auto slot : program->get_constants())
      program->set_value(slot, draw_bits(random, GetParam()));
    program->run(all);
    for (const auto root : program->get_roots()) {
      const bool holds = program->get_value(root) != 0;
      const WordProgram::Cost cost = program->get_cost(root);
      ASSERT_EQ(holds, cost.of_true == 0) << program->get_term(root)->to_string();
      ASSERT_EQ(!holds, cost.of_false == 0) << program->get_term(root)->to_string();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, Operations,
                         testing::Values(Format{8, 23}, Format{11, 52}, Format{5, 10}, Format{3, 2},
                                         Format{11, 40}),
                         [](const auto& instance) {
                           return "e" + std::to_string(instance.param.e) + "m" +
                                  std::to_string(instance.param.m);
                         });

TEST(Order, GoesThroughTheZerosAndBack) {
  EXPECT_EQ(order_of(0, 32), 0);
  EXPECT_EQ(order_of(0x80000000U, 32), 0);
  EXPECT_EQ(order_of(0x80000001U, 32), -1);
  EXPECT_EQ(bits_of_order(-1, 32), 0x80000001U);
  EXPECT_EQ(bits_of_order(5, 64), 5U);
  EXPECT_EQ(order_of(bits_of_order(-77, 64), 64), -77);
}

TEST_F(LocalSearchTest, ComputesWhatAnEquationDefines) {
  const DataType* type = mgr.get_fp_type(8, 23);
  const Term* x = variable("x", type);
  const Term* y = variable("y", type);
  const Term* z = variable("z", type);
  const Term* p = variable("p", mgr.get_bool_type());
  const std::vector<const Term*> formulas = {mgr.make_equal(z, mgr.make_fp_mul(rne, y, y)),
                                             mgr.make_fp_equal(mgr.make_fp_neg(x), y),
                                             mgr.make_equal(p, mgr.make_fp_lt(z, y))};
  const auto program = WordProgram::compile(mgr, formulas, 100);
  ASSERT_TRUE(program);
  ASSERT_EQ(program->get_constants().size(), 1U);
  EXPECT_EQ(program->get_term(program->get_constants()[0]), x);
  EXPECT_EQ(program->get_defined().size(), 3U);
}

TEST_F(LocalSearchTest, LeavesEquationsInACircleAsTheyAre) {
  const DataType* type = mgr.get_fp_type(8, 23);
  const Term* x = variable("x", type);
  const Term* y = variable("y", type);
  const std::vector<const Term*> formulas = {
      mgr.make_equal(x, mgr.make_fp_mul(rne, y, fp(3, 8, 23))),
      mgr.make_equal(y, mgr.make_fp_add(rne, x, fp(-4, 8, 23))), mgr.make_equal(x, x),
      mgr.make_equal(y, mgr.make_fp_neg(mgr.make_fp_neg(y)))};
  const auto program = WordProgram::compile(mgr, formulas, 100);
  ASSERT_TRUE(program);
  EXPECT_EQ(program->get_constants().size(), 1U);
  auto search = LocalSearch::prepare(mgr, formulas, 1);
  ASSERT_TRUE(search && search->run(1'000'000, nullptr));
  EXPECT_TRUE(satisfies(mgr, *search, formulas));
}

TEST_F(LocalSearchTest, FollowsAProgramInSingleAssignments) {
  std::vector<const Term*> formulas;
  const Term* x = variable("x0", mgr.get_fp_type(8, 23));
  for (int i = 1; i < 30; ++i) {
    const Term* next = variable("x" + std::to_string(i), mgr.get_fp_type(8, 23));
    const Term* scaled = mgr.make_fp_mul(rne, x, fp(0.75, 8, 23));
    formulas.push_back(mgr.make_equal(next, mgr.make_fp_add(rne, scaled, fp(1, 8, 23))));
    x = next;
  }
  formulas.push_back(mgr.make_fp_lt(fp(5, 8, 23), x));
  auto search = LocalSearch::prepare(mgr, formulas, 1);
  ASSERT_TRUE(search && search->run(1'000'000, nullptr));
  EXPECT_TRUE(satisfies(mgr, *search, formulas));
}

// The search ------------------------------------------------------------------------------------

TEST_F(LocalSearchTest, FindsARootOfAPolynomial) {
  const Term* x = variable("x", mgr.get_fp_type(11, 52));
  const Term* square = mgr.make_fp_mul(rne, x, x);
  const Term* value = mgr.make_fp_sub(rne, square, fp(2));
  const std::vector<const Term*> formulas = {mgr.make_fp_lt(mgr.make_fp_abs(value), fp(1e-12)),
                                             mgr.make_fp_lt(x, fp(0))};
  auto search = LocalSearch::prepare(mgr, formulas, 1);
  ASSERT_TRUE(search);
  ASSERT_TRUE(search->run(1'000'000, nullptr));
  EXPECT_TRUE(satisfies(mgr, *search, formulas));
}

TEST_F(LocalSearchTest, FindsAPointOfAPolytope) {
  std::vector<const Term*> points;
  for (int i = 0; i < 4; ++i)
    points.push_back(variable("p" + std::to_string(i), mgr.get_fp_type(8, 23)));
  std::vector<const Term*> formulas;
  for (std::size_t i = 0; i < 4; ++i) {
    const Term* sum = mgr.make_fp_add(rne, points[i], points[(i + 1) % 4]);
    const auto shift = static_cast<double>(i);
    formulas.push_back(mgr.make_fp_le(fp(0.75 + shift, 8, 23), sum));
    formulas.push_back(mgr.make_fp_le(sum, fp(3.0 + shift, 8, 23)));
  }
  auto search = LocalSearch::prepare(mgr, formulas, 1);
  ASSERT_TRUE(search);
  ASSERT_TRUE(search->run(3'000'000, nullptr));
  EXPECT_TRUE(satisfies(mgr, *search, formulas));
}

/// Bodies with little room in many dimensions: random half spaces around a random point.
class Polytopes : public LocalSearchTest, public testing::WithParamInterface<Format> {};

INSTANTIATE_TEST_SUITE_P(Formats, Polytopes,
                         testing::Values(Format{8, 23}, Format{11, 52}, Format{11, 40}),
                         [](const auto& instance) {
                           return "e" + std::to_string(instance.param.e) + "m" +
                                  std::to_string(instance.param.m);
                         });

TEST_P(Polytopes, AreFoundByMovesOfAllConstants) {
  const Format f = GetParam();
  std::mt19937_64 random(f.m);
  const auto draw = [&random] { return static_cast<double>(random() % 2001) / 1000 - 1; };
  constexpr std::size_t kDimensions = 8;
  std::vector<const Term*> point;
  std::vector<double> middle;
  std::vector<const Term*> formulas;
  for (std::size_t i = 0; i < kDimensions; ++i) {
    point.push_back(variable("p" + std::to_string(i), mgr.get_fp_type(f.e, f.m)));
    middle.push_back(draw());
    formulas.push_back(mgr.make_fp_le(fp(-1, f.e, f.m), point.back()));
    formulas.push_back(mgr.make_fp_le(point.back(), fp(1, f.e, f.m)));
  }
  for (int row = 0; row < 24; ++row) {
    const Term* sum = fp(0, f.e, f.m);
    double value = 0.1;
    for (std::size_t i = 0; i < kDimensions; ++i) {
      const double factor = draw();
      value += factor * middle[i];
      sum = mgr.make_fp_add(rne, sum, mgr.make_fp_mul(rne, fp(factor, f.e, f.m), point[i]));
    }
    const Term* bound = fp(value, f.e, f.m);
    const Term* half_space = mgr.make_fp_le(sum, bound);
    formulas.push_back(row % 2 == 0 ? half_space : mgr.make_not(mgr.make_fp_lt(bound, sum)));
  }
  auto search = LocalSearch::prepare(mgr, formulas, 1);
  ASSERT_TRUE(search);
  ASSERT_TRUE(search->run(20'000'000, nullptr));
  EXPECT_TRUE(satisfies(mgr, *search, formulas));
}

TEST_F(LocalSearchTest, GoesTheSameWayWithTheSameSeed) {
  const Term* x = variable("x", mgr.get_fp_type(8, 23));
  const Term* y = variable("y", mgr.get_fp_type(8, 23));
  const std::vector<const Term*> formulas = {
      mgr.make_fp_lt(mgr.make_fp_mul(rne, x, y), fp(-3, 8, 23)),
      mgr.make_fp_lt(fp(7, 8, 23), mgr.make_fp_add(rne, x, y))};
  std::vector<QNumber> found;
  for (int i = 0; i < 2; ++i) {
    auto search = LocalSearch::prepare(mgr, formulas, 5);
    ASSERT_TRUE(search && search->run(1'000'000, nullptr));
    for (const auto slot : search->get_constants())
      found.push_back(search->get_value(slot));
  }
  ASSERT_EQ(found.size(), 4U);
  EXPECT_EQ(found[0], found[2]);
  EXPECT_EQ(found[1], found[3]);
}

TEST_F(LocalSearchTest, GivesUpWhereThereIsNoModel) {
  const Term* x = variable("x", mgr.get_fp_type(5, 10));
  auto search = LocalSearch::prepare(mgr, std::vector{mgr.make_fp_lt(x, x)}, 1);
  // The manager may know that it is false, and then there is no constant to change.
  EXPECT_FALSE(search && search->run(20'000, nullptr));
  const Term* y = variable("y", mgr.get_fp_type(5, 10));
  search = LocalSearch::prepare(mgr, std::vector{mgr.make_fp_lt(x, y), mgr.make_fp_lt(y, x)}, 1);
  ASSERT_TRUE(search);
  EXPECT_FALSE(search->run(20'000, nullptr));
}

TEST_F(LocalSearchTest, IsNotForWideTermsNorForBitVectorsAlone) {
  const Term* wide = variable("q", mgr.get_fp_type(15, 112));
  EXPECT_FALSE(LocalSearch::prepare(mgr, std::vector{mgr.make_fp_isnan(wide)}, 1));
  const Term* bits = variable("b", mgr.get_bv_type(8));
  EXPECT_FALSE(
      LocalSearch::prepare(mgr, std::vector{mgr.make_equal(bits, mgr.make_bv_number(1, 8))}, 1));
}

TEST_F(LocalSearchTest, IsNotForArraysFunctionsAndUninterpretedSorts) {
  const DataType* type = mgr.get_fp_type(5, 10);
  const DataType* people = mgr.get_uninterpreted_type("People");
  const DataType* memory = mgr.get_array_type(mgr.get_bv_type(8), type);
  const Term* x = variable("x", type);
  const Term* a = variable("a", memory);
  const Term* i = variable("i", mgr.get_bv_type(8));
  const Term* p = variable("p", people);
  const auto apply = [&](std::size_t arity) {
    const std::vector<const DataType*> domain(arity, type);
    const std::vector<const Term*> args(arity, x);
    return mgr.make_application(mgr.make_unique_symbol("f", domain, type), args);
  };
  const Term* wanted = mgr.make_fp_lt(x, fp(1, 5, 10));
  const std::vector<const Term*> declined = {mgr.make_fp_lt(mgr.make_select(a, i), x),
                                             mgr.make_equal(a, mgr.make_store(a, i, x)),
                                             mgr.make_equal(mgr.make_const_array(memory, x), a),
                                             mgr.make_equal(p, variable("q", people)),
                                             mgr.make_fp_lt(apply(1), x),
                                             mgr.make_fp_lt(apply(9), x),
                                             mgr.make_equal(variable("y", type), apply(2))};
  ASSERT_TRUE(LocalSearch::prepare(mgr, std::vector{wanted}, 1));
  for (const Term* f : declined)
    EXPECT_FALSE(LocalSearch::prepare(mgr, std::vector{wanted, f}, 1)) << f->to_string();
}

class Stop : public TerminationTest {
 public:
  bool terminate() const override { return true; }
};

TEST_F(LocalSearchTest, EndsWhenItIsTold) {
  const Term* x = variable("x", mgr.get_fp_type(8, 23));
  auto search = LocalSearch::prepare(mgr, std::vector{mgr.make_fp_isnan(x)}, 1);
  ASSERT_TRUE(search);
  const Stop stop;
  EXPECT_FALSE(search->run(1'000'000, &stop));
}

// The solver ------------------------------------------------------------------------------------

TEST_F(LocalSearchTest, SparesTheSolverTheCircuits) {
  const Term* x = variable("x", mgr.get_fp_type(8, 23));
  const Term* equation = mgr.make_fp_equal(mgr.make_fp_mul(rne, x, x), fp(16, 8, 23));
  solver::Solver solver(mgr);
  solver.assert_formula(equation);
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_statistics().tried_models, 1U);
  EXPECT_EQ(solver.get_statistics().clauses, 0U);
  EXPECT_EQ(solver.get_value(equation), mgr.make_true());

  solver::Options options;
  options.local_search = false;
  solver::Solver plain(mgr, options);
  plain.assert_formula(equation);
  ASSERT_EQ(plain.check_sat(), Answer::sat);
  EXPECT_EQ(plain.get_statistics().tried_models, 0U);
  EXPECT_GT(plain.get_statistics().clauses, 0U);
}

TEST_F(LocalSearchTest, SeesLevelsAndAssumptions) {
  const Term* x = variable("x", mgr.get_fp_type(8, 23));
  solver::Solver solver(mgr);
  solver.assert_formula(mgr.make_fp_lt(fp(1, 8, 23), x));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  solver.push();
  solver.assert_formula(mgr.make_fp_lt(x, fp(0, 8, 23)));
  EXPECT_EQ(solver.check_sat(), Answer::unsat);
  solver.pop();
  const Term* assumed = mgr.make_fp_lt(fp(5, 8, 23), x);
  for (int i = 0; i < 5; ++i) {
    ASSERT_EQ(solver.check_sat(std::vector{assumed}), Answer::sat);
    EXPECT_EQ(solver.get_value(assumed), mgr.make_true());
  }
}

TEST_F(LocalSearchTest, LeavesTheBaseEncoderToItsCircuits) {
  const Term* x = variable("x", mgr.get_fp_type(8, 23));
  solver::Options options;
  options.encoder = solver::EncoderKind::base;
  solver::Solver solver(mgr, options);
  solver.assert_formula(mgr.make_fp_lt(x, fp(1, 8, 23)));
  ASSERT_EQ(solver.check_sat(), Answer::sat);
  EXPECT_EQ(solver.get_statistics().tried_models, 0U);
}

}  // namespace
}  // namespace vorn::search
