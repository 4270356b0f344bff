// The checker on engines that lie: each kind of wrong answer must be found, and the real engine
// must pass.
#include "tests/random/checker.h"

#include <gtest/gtest.h>

#include "tests/random/congruence.h"
#include "tests/random/generator.h"
#include "tests/random/literals.h"
#include "tests/random/live.h"
#include "tests/random/model_space.h"
#include "tests/random/model_text.h"
#include "tests/random/shrinker.h"

namespace vorn::random {
namespace {

/// Passes everything on to a solver.
class Honest : public Engine {
 public:
  Honest(TermManager& manager, const solver::Options& options)
      : mgr(manager), engine(manager, options) {}

  void assert_formula(const Term* f) override { engine.assert_formula(f); }
  void push() override { engine.push(); }
  void pop() override { engine.pop(); }
  Answer check_sat(std::span<const Term* const> assumptions) override {
    return engine.check_sat(assumptions);
  }
  std::vector<std::size_t> get_unsat_assumptions() override {
    return engine.get_unsat_assumptions();
  }
  const Term* get_value(const Term* t) override { return engine.get_value(t); }
  FunctionValue get_function(const Symbol* /*function*/) override { return {}; }
  std::string get_reason_unknown() const override { return engine.get_reason_unknown(); }
  void reset_assertions() override { engine.reset_assertions(); }
  void collect_garbage(std::span<const Term* const> kept) override { engine.collect_garbage(kept); }
  void set_seed(std::uint32_t seed) override { engine.set_seed(seed); }

 protected:
  TermManager& mgr;
  solver::Solver engine;
};

/// Says unsat where the answer is sat.
class DeniesModels : public Honest {
 public:
  using Honest::Honest;
  Answer check_sat(std::span<const Term* const> assumptions) override {
    const Answer answer = engine.check_sat(assumptions);
    return answer == Answer::sat ? Answer::unsat : answer;
  }
  std::vector<std::size_t> get_unsat_assumptions() override { return {}; }
};

/// Says sat where the answer is unsat, and makes up a model.
class InventsModels : public Honest {
 public:
  using Honest::Honest;
  Answer check_sat(std::span<const Term* const> assumptions) override {
    const Answer answer = engine.check_sat(assumptions);
    invented = answer == Answer::unsat;
    return invented ? Answer::sat : answer;
  }
  const Term* get_value(const Term* t) override {
    return invented ? mgr.make_false() : engine.get_value(t);
  }

 private:
  bool invented = false;
};

/// Has the values of Boolean constants the wrong way round.
class FlipsValues : public Honest {
 public:
  using Honest::Honest;
  const Term* get_value(const Term* t) override {
    const Term* value = engine.get_value(t);
    if (value == mgr.make_true()) return mgr.make_false();
    return value == mgr.make_false() ? mgr.make_true() : value;
  }
};

/// Blames none of the assumptions.
class BlamesNothing : public Honest {
 public:
  using Honest::Honest;
  std::vector<std::size_t> get_unsat_assumptions() override { return {}; }
};

/// Answers wrongly without rewriting, which is the second run of seed 0 only.
class LiesInOneConfiguration : public Honest {
 public:
  LiesInOneConfiguration(TermManager& manager, const solver::Options& options)
      : Honest(manager, options) {
    const Term* t = manager.make_not(manager.make_true());
    lying = t != manager.make_false();
  }
  Answer check_sat(std::span<const Term* const> assumptions) override {
    return lying ? Answer::unsat : engine.check_sat(assumptions);
  }
  std::vector<std::size_t> get_unsat_assumptions() override { return {}; }

 private:
  bool lying = false;
};

/// Loses the assertions when terms are dropped, which is what the second run of seed 4 does.
class DropsTooMuch : public Honest {
 public:
  using Honest::Honest;
  void collect_garbage(std::span<const Term* const> /*kept*/) override {
    engine.reset_assertions();
  }
};

/// Forgets to close levels.
class NeverPops : public Honest {
 public:
  using Honest::Honest;
  void pop() override {}
};

template <class Engine>
EngineFactory factory() {
  return [](TermManager& manager, const solver::Options& options) {
    return std::make_unique<Engine>(manager, options);
  };
}

Expression name(const std::string& text, const Sort& sort) {
  return {Expression::Kind::name, text, sort, {}, {}};
}

Command declaration(const std::string& text, const Sort& sort) {
  Command command;
  command.kind = Command::Kind::declare;
  command.keyword = "declare-const";
  command.name = text;
  command.sort = sort;
  return command;
}

Command level(Command::Kind kind, const std::string& keyword) {
  Command command;
  command.kind = kind;
  command.keyword = keyword;
  command.levels = 1;
  return command;
}

Expression negation(const Expression& e) {
  return {Expression::Kind::theory, "not", kBool, {e}, {}};
}

const Script kSatisfiable = {declaration("p", kBool), make_assertion(name("p", kBool)),
                             make_check()};
const Script kUnsatisfiable = {declaration("p", kBool), make_assertion(name("p", kBool)),
                               make_assertion(negation(name("p", kBool))), make_check()};
const Script kLevels = {declaration("p", kBool),
                        level(Command::Kind::push, "push"),
                        make_assertion(name("p", kBool)),
                        level(Command::Kind::pop, "pop"),
                        make_assertion(negation(name("p", kBool))),
                        make_check()};

/// Two assumptions, of which the second is impossible.
Script assuming() {
  Command check;
  check.kind = Command::Kind::check_assuming;
  check.keyword = "check-sat-assuming";
  check.terms = {name("p", kBool), plain_literals(kBool)[1]};
  return {declaration("p", kBool), check};
}

template <class Engine>
std::optional<Failure::Kind> failure_of(const Script& script, std::uint64_t seed = 0) {
  const Report report = Checker(factory<Engine>()).check(script, seed);
  if (!report.failure) return std::nullopt;
  return report.failure->kind;
}

TEST(Checker, CountsAnswers) {
  const Report sat = Checker().check(kSatisfiable, 0);
  EXPECT_FALSE(sat.failure);
  EXPECT_EQ(sat.checks, 1U);
  EXPECT_EQ(sat.sat, 1U);
  const Report unsat = Checker().check(kUnsatisfiable, 0);
  EXPECT_FALSE(unsat.failure);
  EXPECT_EQ(unsat.unsat, 1U);
  EXPECT_EQ(unsat.enumerated, 1U);
}

TEST(Checker, FindsWrongAnswers) {
  EXPECT_EQ(failure_of<Honest>(kSatisfiable), std::nullopt);
  EXPECT_EQ(failure_of<Honest>(kUnsatisfiable), std::nullopt);
  EXPECT_EQ(failure_of<DeniesModels>(kSatisfiable), Failure::Kind::bad_unsat);
  EXPECT_EQ(failure_of<FlipsValues>(kSatisfiable), Failure::Kind::bad_model);
  EXPECT_EQ(failure_of<LiesInOneConfiguration>(kSatisfiable), Failure::Kind::disagreement);
  EXPECT_EQ(failure_of<DropsTooMuch>(kUnsatisfiable, 4), Failure::Kind::disagreement);
  EXPECT_EQ(failure_of<InventsModels>(kUnsatisfiable), Failure::Kind::bad_model);
}

TEST(Checker, FindsWrongUnsatAssumptions) {
  EXPECT_EQ(failure_of<Honest>(assuming()), std::nullopt);
  EXPECT_EQ(failure_of<BlamesNothing>(assuming()), Failure::Kind::bad_core);
}

// The second run of seed 10 asks for cores, that of seed 30 for minimal ones.
TEST(Checker, FindsWrongCoresOfAssertions) {
  for (const std::uint64_t seed : {10, 30}) {
    EXPECT_EQ(failure_of<BlamesNothing>(kUnsatisfiable, seed), Failure::Kind::bad_core) << seed;
    const Report honest = Checker().check(kUnsatisfiable, seed);
    EXPECT_FALSE(honest.failure);
    EXPECT_EQ(honest.cores, 1U);
  }
  EXPECT_EQ(failure_of<BlamesNothing>(kUnsatisfiable, 0), std::nullopt);
}

TEST(Checker, ComparesSatWithAllAssignments) {
  const Report wrong = Checker(factory<InventsModels>()).check(kUnsatisfiable, 0);
  ASSERT_TRUE(wrong.failure);
  EXPECT_EQ(wrong.failure->detail, "sat, but no assignment is a model");
  EXPECT_EQ(Checker().check(kSatisfiable, 0).found, 1U);
}

TEST(Checker, FindsWhatOnlyAnIncrementalSolverGetsWrong) {
  for (std::uint64_t seed = 0; seed < 5; ++seed) {
    EXPECT_EQ(failure_of<Honest>(kLevels, seed), std::nullopt);
    EXPECT_EQ(failure_of<NeverPops>(kLevels, seed), Failure::Kind::bad_unsat) << seed;
  }
}

TEST(Checker, ReportsWhatIsRefused) {
  const Expression unknown = {Expression::Kind::theory, "no.such.operator", kBool, {}, {}};
  const Report report = Checker().check({make_assertion(unknown), make_check()}, 0);
  ASSERT_TRUE(report.failure);
  EXPECT_EQ(report.failure->kind, Failure::Kind::exception);
}

TEST(Checker, AgreesWithItselfOnRandomScripts) {
  std::size_t sat = 0;
  std::size_t unsat = 0;
  for (std::uint64_t seed = 0; seed < 20; ++seed) {
    const Report report = Checker().check(generate(seed), seed);
    EXPECT_FALSE(report.failure) << report.failure->detail << '\n' << to_string(generate(seed));
    sat += report.sat;
    unsat += report.unsat;
  }
  EXPECT_GT(sat, 5U);
  EXPECT_GT(unsat, 5U);
}

TEST(Checker, AndShrinkerReduceAnEngineThatForgetsToPop) {
  const Checker checker(factory<NeverPops>());
  std::size_t found = 0;
  for (std::uint64_t seed = 0; found < 3 && seed < 300; ++seed) {
    const Script script = generate(seed);
    const Report report = checker.check(script, seed);
    // A wrong core takes a formula whose model is hard to find, which no shrinker can leave out.
    if (!report.failure || report.failure->kind != Failure::Kind::bad_unsat) continue;
    ++found;
    const Script small = shrink(script, [&](const Script& candidate) {
      const Report again = checker.check(candidate, seed);
      return again.failure && again.failure->kind == report.failure->kind;
    });
    EXPECT_EQ(to_string(small), "(push 1)\n(assert false)\n(pop 1)\n(check-sat)\n");
  }
  EXPECT_EQ(found, 3U);
}

TEST(Congruence, IsStatedOfOpenApplicationsWithoutVariables) {
  const auto conversion = [](const std::string& operand) {
    const std::vector<Expression> args = {plain_literals(kMode)[0],
                                          name(operand, float_sort(3, 3))};
    return Expression{Expression::Kind::theory, "(_ fp.to_ubv 4)", bits_sort(4), args, {}};
  };
  const Expression differ = {
      Expression::Kind::theory, "distinct", kBool, {conversion("x"), conversion("y")}, {}};
  EXPECT_EQ(to_string(make_congruences({make_assertion(differ)})),
            "(assert (=> (and (= RNE RNE) (= y x)) "
            "(= ((_ fp.to_ubv 4) RNE y) ((_ fp.to_ubv 4) RNE x))))\n");
  const Expression bound = {
      Expression::Kind::let, "let", kBool, {name("z", float_sort(3, 3)), differ}, {"x"}};
  EXPECT_TRUE(make_congruences({make_assertion(bound)}).empty());
}

TEST(ModelText, ReadsListsWithQuotedSymbols) {
  EXPECT_EQ(split_list("(a (b c)\n|d )| #b1)\n"),
            (std::vector<std::string>{"a", "(b c)", "|d )|", "#b1"}));
  EXPECT_EQ(read_model("(\n  (define-fun |x 6| () Bool true)\n)\n", {"|x 6|"}),
            std::vector<std::string>{"(= |x 6| true)"});
  EXPECT_EQ(read_values("((x #b1)\n (y (_ NaN 3 3)))\n"),
            (std::vector<std::string>{"(= x #b1)", "(= y (_ NaN 3 3))"}));
  EXPECT_THROW(read_model("()", {"x"}), std::runtime_error);
  EXPECT_THROW(split_list("(a"), std::runtime_error);
}

TEST(NamedAssertions, AreThoseThatHadNoName) {
  Script script = kUnsatisfiable;
  script[1].terms[0] = {Expression::Kind::named, "n", kBool, {name("p", kBool)}, {}};
  EXPECT_EQ(to_string(name_assertions(script)),
            "(declare-const p Bool)\n(assert (! p :named n))\n"
            "(assert (! (not p) :named part1))\n(check-sat)\n");
}

TEST(LiveCommands, HaveAccessesWithoutVariablesAndLabels) {
  const Sort flags = array_sort(kBool, kBool);
  const auto read = [&](Expression index) {
    return Expression{
        Expression::Kind::theory, "select", kBool, {name("a", flags), std::move(index)}, {}};
  };
  const Expression call = {Expression::Kind::name, "f", kBool, {read(name("p", kBool))}, {}};
  const Expression label = {Expression::Kind::named, "n", kBool, {name("p", kBool)}, {}};
  const Expression let = {
      Expression::Kind::let, "let", kBool, {call, read(name("v", kBool))}, {"v"}};
  LiveCommands live;
  live.execute(make_assertion(let));
  live.execute(make_assertion(read(label)));
  live.execute(make_assertion(negation(call)));
  EXPECT_EQ(live.get_accesses(), (std::vector<std::string>{"(f (select a p))", "(select a p)"}));
}

TEST(ModelSpace, IsNotExhaustiveWhereTheTheoryLeavesAValueOpen) {
  const Sort sort = float_sort(2, 2);
  const Expression least = {
      Expression::Kind::theory, "fp.min", sort, {name("x", sort), name("y", sort)}, {}};
  const Expression differ = {Expression::Kind::theory, "distinct", kBool, {least, least}, {}};
  const Search open =
      search_models({declaration("x", sort), declaration("y", sort), make_assertion(differ)}, 1);
  EXPECT_TRUE(open.complete);
  EXPECT_FALSE(open.exhaustive);
}

TEST(ModelSpace, LeavesLargeSpacesAloneWithoutSampling) {
  const Sort sort = float_sort(5, 11);
  const Expression order = {
      Expression::Kind::theory, "fp.lt", kBool, {name("x", sort), name("y", sort)}, {}};
  const Script script = {declaration("x", sort), declaration("y", sort), make_assertion(order)};
  EXPECT_TRUE(search_models(script, 1).model);
  EXPECT_FALSE(search_models(script, 1, Sampling::no).model);
}

TEST(ModelSpace, FindsTheOnlyModelOfASmallSpace) {
  const Sort sort = bits_sort(8);
  const Expression literal = {Expression::Kind::theory, "#x9d", sort, {}, {}};
  const Expression equation = {
      Expression::Kind::theory, "=", kBool, {name("b", sort), literal}, {}};
  const Search found = search_models({declaration("b", sort), make_assertion(equation)}, 1);
  EXPECT_TRUE(found.complete);
  EXPECT_EQ(found.model.value_or("none"), "b = #x9d");
  const Search none = search_models(
      {declaration("b", sort), make_assertion(equation), make_assertion(negation(equation))}, 1);
  EXPECT_TRUE(none.complete);
  EXPECT_TRUE(none.exhaustive);
  EXPECT_FALSE(none.model);
}

}  // namespace
}  // namespace vorn::random
