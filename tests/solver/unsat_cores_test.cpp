// Unsat cores of the solver, each decided once more: what a core names is refuted without the rest,
// and of one that was minimised no part can go.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "vorn/smt2/interpreter.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/term_manager.h"

namespace vorn::solver {
namespace {

constexpr const char* kDeclarations =
    "(declare-const x (_ FloatingPoint 3 4))(declare-const y (_ FloatingPoint 3 4))"
    "(declare-const r RoundingMode)(declare-const b (_ BitVec 4))(declare-const c (_ BitVec 4))"
    "(declare-const p Bool)\n";

/// Any two of them may contradict each other, some only three or four together.
constexpr const char* kFormulas[] = {
    "(fp.lt x y)",
    "(fp.lt y x)",
    "(fp.eq x y)",
    "(fp.isNaN x)",
    "(fp.isZero y)",
    "(fp.isNegative (fp.add r x y))",
    "(fp.gt (fp.mul RNE x x) y)",
    "(fp.leq y (fp.abs x))",
    "(= (bvadd b c) #x5)",
    "(bvult b c)",
    "(bvugt b #xa)",
    "(= ((_ extract 0 0) b) ((_ extract 0 0) c))",
    "(= x ((_ to_fp 3 4) r b))",
    "(= c ((_ fp.to_ubv 4) RTZ y))",
    "(=> p (fp.isPositive x))",
    "(xor p (fp.isPositive x))",
    "(or p (bvult c #x3))",
    "(not p)",
};

/// A session of its own for each text.
std::string run(const std::string& text) {
  TermManager mgr;
  Solver solver(mgr);
  std::ostringstream out;
  smt2::Interpreter interpreter(mgr, solver, out);
  EXPECT_TRUE(interpreter.run_script(text, "t")) << text << out.str();
  return out.str();
}

/// "(n3 n7)\n"
std::vector<std::size_t> read_core(const std::string& text) {
  std::vector<std::size_t> core;
  std::istringstream in(text.substr(1, text.find(')') - 1));
  for (std::string name; in >> name;)
    core.push_back(std::stoul(name.substr(1)));
  return core;
}

struct Problem {
  std::vector<std::string> plain;    // asserted without a name
  std::vector<std::string> named;    // n0, n1, ...
  std::vector<std::string> assumed;  // of the check

  /// The check of the plain formulas and some of the others.
  std::string decide(std::span<const std::size_t> chosen) const {
    std::string text = kDeclarations;
    for (const std::string& f : plain)
      text += "(assert " + f + ")\n";
    for (const std::size_t i : chosen)
      text += "(assert " + named[i] + ")\n";
    for (const std::string& f : assumed)
      text += "(assert " + f + ")\n";
    return run(text + "(check-sat)\n");
  }

  /// What follows the declarations; the plain formulas are on a level of their own.
  std::string write() const {
    std::string text;
    for (std::size_t i = 0; i < named.size(); ++i) {
      if (i == named.size() / 2) text += "(push)";
      text += "(assert (! " + named[i] + " :named n" + std::to_string(i) + "))\n";
    }
    for (const std::string& f : plain)
      text += "(assert " + f + ")\n";
    text += "(check-sat-assuming (";
    for (const std::string& f : assumed)
      text += f + " ";
    return text + "))\n";
  }
};

/// Formulas are drawn with repetitions: equal ones have several names.
Problem make_problem(std::mt19937& random) {
  const auto draw = [&](std::size_t least, std::size_t most) {
    std::vector<std::string> formulas;
    for (std::size_t n = least + random() % (most - least + 1); n > 0; --n)
      formulas.emplace_back(kFormulas[random() % std::size(kFormulas)]);
    return formulas;
  };
  return {draw(0, 2), draw(2, 9), draw(0, 2)};
}

class UnsatCores : public testing::TestWithParam<bool> {};

TEST_P(UnsatCores, AreDecidedOnceMore) {
  const bool is_minimized = GetParam();
  const std::string options = std::string("(set-option :produce-unsat-cores true)") +
                              (is_minimized ? "(set-option :minimize-unsat-cores true)" : "");
  std::mt19937 random(7);
  int refuted = 0;
  std::size_t left_out = 0;
  for (int round = 0; round < 150; ++round) {
    const Problem problem = make_problem(random);
    const std::string head = options + kDeclarations + problem.write();
    std::vector<std::size_t> all;
    for (std::size_t i = 0; i < problem.named.size(); ++i)
      all.push_back(i);
    const std::string answer = run(head);
    ASSERT_EQ(answer, problem.decide(all)) << head;
    if (answer != "unsat\n") continue;
    ++refuted;
    // Asked twice, with the assumptions in between, and again with all that is there on a level.
    const std::string printed =
        run(head + "(get-unsat-core)(get-unsat-assumptions)(get-unsat-core)(pop)(push)\n");
    const std::vector<std::size_t> core = read_core(printed.substr(6));
    EXPECT_TRUE(std::ranges::is_sorted(core)) << printed;
    left_out += all.size() - core.size();
    EXPECT_EQ(problem.decide(core), "unsat\n") << head << printed;
    for (std::size_t i = 0; is_minimized && i < core.size(); ++i) {
      std::vector<std::size_t> rest = core;
      rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(i));
      EXPECT_EQ(problem.decide(rest), "sat\n") << head << printed;
    }
  }
  EXPECT_GT(refuted, 40);
  EXPECT_GT(left_out, 80U);
}

INSTANTIATE_TEST_SUITE_P(Both, UnsatCores, testing::Bool());

TEST(UnsatCoreSessions, GoOnAfterwards) {
  const std::string head = std::string(kDeclarations) +
                           "(set-option :produce-unsat-cores true)"
                           "(set-option :minimize-unsat-cores true)"
                           "(assert (! (fp.lt x y) :named a))(assert (! (bvult b c) :named i))"
                           "(push)(assert (! (fp.lt y x) :named d))";
  EXPECT_EQ(run(head + "(check-sat)(get-unsat-core)(pop)(check-sat)(get-value ((fp.lt x y) i))"
                       "(get-assignment)(assert (! (fp.isNaN y) :named e))(check-sat)"
                       "(get-unsat-core)(reset-assertions)(check-sat)"),
            "unsat\n(a d)\nsat\n(((fp.lt x y) true)\n (i true))\n((a true) (i true))\n"
            "unsat\n(a e)\nsat\n");
  EXPECT_EQ(run(head + "(check-sat-assuming (p (fp.isNaN x)))(get-unsat-core)"
                       "(get-unsat-assumptions)(check-sat-assuming (p))(get-unsat-core)"
                       "(get-unsat-assumptions)"),
            "unsat\n(a)\n((fp.isNaN x))\nunsat\n(a d)\n()\n");
}

/// Without the option assumptions are told as ever, with it the same ones.
TEST(UnsatCoreSessions, TellTheSameAssumptions) {
  for (const char* option : {"false", "true"}) {
    EXPECT_EQ(run(std::string(kDeclarations) + "(set-option :produce-unsat-cores " + option +
                  ")(assert (! (fp.lt x y) :named a))"
                  "(check-sat-assuming (p (fp.lt y x) (fp.isZero y)))(get-unsat-assumptions)"),
              "unsat\n((fp.lt y x))\n")
        << option;
  }
}

}  // namespace
}  // namespace vorn::solver
