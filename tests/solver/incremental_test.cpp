// Long sessions: what leaves with a level leaves nothing that lasts.
#include <algorithm>
#include <sstream>

#include "tests/solver/solver_fixture.h"
#include "vorn/smt2/interpreter.h"

namespace vorn::solver {
namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr int kRounds = 1'000;
#else
constexpr int kRounds = 10'000;
#endif

/// What a session holds at its height.
struct Extent {
  std::uint64_t terms = 0;
  std::uint64_t nodes = 0;
  std::uint64_t clauses = 0;

  void include(const Extent& other) {
    terms = std::max(terms, other.terms);
    nodes = std::max(nodes, other.nodes);
    clauses = std::max(clauses, other.clauses);
  }
};

class Incremental : public testing::Test {
 protected:
  void run(const std::string& script) { interpreter.run(script, "t.smt2"); }
  Extent measure() const {
    const Statistics s = solver.get_statistics();
    return {mgr.get_live_count(), s.aig_nodes, s.clauses};
  }

  TermManager mgr;
  Solver solver{mgr, circuits_only()};
  std::ostringstream out;
  smt2::Interpreter interpreter{mgr, solver, out};
};

TEST_F(Incremental, TheSameLevelsAgainCostNothing) {
  run("(declare-const x Float16)(declare-const y Float16)(assert (fp.lt x y))");
  const std::string level =
      "(push)(assert (fp.eq (fp.add RNE x y) ((_ to_fp 5 11) RNE 2.5)))(check-sat)(pop)";
  run(level);
  const Extent once = measure();
  for (int i = 0; i < 200; ++i)
    run(level);
  const Extent often = measure();
  EXPECT_EQ(often.terms, once.terms);
  EXPECT_LE(often.nodes, once.nodes);
  EXPECT_LT(often.clauses, once.clauses + 1000);  // one that turns each level off
}

TEST_F(Incremental, TenThousandLevelsStayWithinBounds) {
  run("(declare-const x (_ FloatingPoint 3 4))(declare-const y (_ FloatingPoint 3 4))"
      "(assert (fp.lt x y))");
  Extent early;
  Extent late;
  for (int i = 0; i < kRounds; ++i) {
    std::ostringstream level;
    // A constant and formulas that no round before had.
    level << "(push 1)(declare-const z (_ FloatingPoint 3 4))(declare-const b (_ BitVec 32))"
          << "(assert (= ((_ extract 6 0) (bvadd b (_ bv" << i << " 32))) #b" << (i % 2)
          << "011010))"
          << "(assert (fp.eq (fp.add RNE x z) ((_ to_fp 3 4) ((_ extract 6 0) b))))"
          << "(assert (fp.leq y (fp.neg ((_ to_fp 3 4) RNE " << i % 7 << ".5))))"
          << "(check-sat)(pop 1)";
    run(level.str());
    (i < kRounds / 5 ? early : late).include(measure());
  }
  EXPECT_LT(late.terms, 800'000U);
  EXPECT_LT(late.nodes, early.nodes * 2);
  EXPECT_LT(late.clauses, early.clauses * 2);
  const std::string answers = out.str();
  EXPECT_EQ(std::count(answers.begin(), answers.end(), '\n'), kRounds);
  EXPECT_NE(answers.find("unsat"), std::string::npos);
  EXPECT_EQ(answers.find("unknown"), std::string::npos);
}

TEST_F(Incremental, ManyLevelsOpenAtOnce) {
  run("(declare-const x (_ BitVec 16))");
  for (int i = 0; i < 500; ++i)
    run("(push)(assert (distinct x (_ bv" + std::to_string(i) + " 16)))");
  run("(assert (bvult x #x01f5))(check-sat)(get-value (x))(pop 400)(assert (bvult x #x0064))"
      "(check-sat)(pop 100)(check-sat)");
  EXPECT_EQ(out.str(), "sat\n((x #x01f4))\nunsat\nsat\n");
}

}  // namespace
}  // namespace vorn::solver
