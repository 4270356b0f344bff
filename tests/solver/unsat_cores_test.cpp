// Unsat cores of the solver, each decided once more: what a core names is refuted without the rest,
// and of one that was minimised no part can go.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
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

/// "(n3 n7)"
std::vector<std::size_t> read_numbers(const std::string& text) {
  std::vector<std::size_t> numbers;
  std::istringstream in(text.substr(1, text.size() - 2));
  for (std::string name; in >> name;)
    numbers.push_back(std::stoul(name.substr(1)));
  return numbers;
}

std::vector<std::size_t> count_to(std::size_t size) {
  std::vector<std::size_t> numbers(size);
  std::iota(numbers.begin(), numbers.end(), 0);
  return numbers;
}

struct Problem {
  std::vector<std::string> plain;    // asserted without a name
  std::vector<std::string> named;    // n0, n1, ...
  std::vector<std::string> assumed;  // a0, a1, ...

  /// The check of the plain formulas and some of the others.
  std::string decide(std::span<const std::size_t> core,
                     std::span<const std::size_t> assumptions) const {
    std::string text = kDeclarations;
    for (const std::string& f : plain)
      text += "(assert " + f + ")\n";
    for (const std::size_t i : core)
      text += "(assert " + named[i] + ")\n";
    for (const std::size_t i : assumptions)
      text += "(assert " + assumed[i] + ")\n";
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
    std::string names;
    for (std::size_t i = 0; i < assumed.size(); ++i) {
      names += " a" + std::to_string(i);
      text += "(define-fun a" + std::to_string(i) + " () Bool " + assumed[i] + ")\n";
    }
    return text + "(check-sat-assuming (" + names + "))\n";
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
    const std::vector<std::size_t> all = count_to(problem.named.size());
    const std::string answer = run(head);
    ASSERT_EQ(answer, problem.decide(all, count_to(problem.assumed.size()))) << head;
    if (answer != "unsat\n") continue;
    ++refuted;
    // Asked twice, with the assumptions in between; levels can be closed and opened afterwards.
    const std::string printed =
        run(head + "(get-unsat-core)(get-unsat-assumptions)(get-unsat-core)(pop)(push)\n");
    std::istringstream lines(printed.substr(answer.size()));
    std::string core_line;
    std::string assumption_line;
    std::string again;
    ASSERT_TRUE(std::getline(lines, core_line) && std::getline(lines, assumption_line) &&
                std::getline(lines, again));
    EXPECT_EQ(core_line, again);
    const std::vector<std::size_t> core = read_numbers(core_line);
    const std::vector<std::size_t> assumptions = read_numbers(assumption_line);
    EXPECT_TRUE(std::ranges::is_sorted(core)) << printed;
    left_out += all.size() - core.size();
    EXPECT_EQ(problem.decide(core, assumptions), "unsat\n") << head << printed;
    for (std::size_t i = 0; is_minimized && i < core.size(); ++i) {
      std::vector<std::size_t> rest = core;
      rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(i));
      EXPECT_EQ(problem.decide(rest, assumptions), "sat\n") << head << printed;
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
            "unsat\n(d)\n((fp.isNaN x))\nunsat\n(a d)\n()\n");
}

/// Without the option assumptions are told as ever, with it the same ones.
TEST(UnsatCoreSessions, TellTheSameAssumptions) {
  for (const char* option : {"false", "true"}) {
    EXPECT_EQ(run(std::string(kDeclarations) + "(set-option :produce-unsat-cores " + option +
                  ")(assert (! (fp.lt x y) :named a))"
                  "(check-sat-assuming (p (fp.lt y x)))(get-unsat-assumptions)"),
              "unsat\n((fp.lt y x))\n")
        << option;
  }
}

}  // namespace
}  // namespace vorn::solver
