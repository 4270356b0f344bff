// Arbitrary bytes as a session with the solver behind it, in three configurations: as the command
// has it, by circuits alone, and with the base encoder. Every one has to survive. Each sat of the
// exact encoder is checked once more, by the values of the assertions, and the first two must not
// contradict each other.
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "tests/fuzz/limits.h"
#include "vorn/smt2/interpreter.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/engine.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/trail.h"

namespace vorn::fuzz {
namespace {

/// Of all searches of one session.
constexpr std::uint64_t kQuestions = 3000;

/// A solver that is asked for the value of all that it should have made
/// true.
class CheckedSolver final : public solver::Solver {
 public:
  CheckedSolver(TermManager& manager, const solver::Options& chosen)
      : Solver(manager, chosen), mgr(manager), exact(chosen.encoder == solver::EncoderKind::ieee) {}

  void assert_formula(const Term* f) override {
    size.admit(std::span(&f, 1));
    Solver::assert_formula(f);
    asserted.add(f);
  }
  void push() override {
    Solver::push();
    asserted.push();
  }
  void pop() override {
    Solver::pop();
    asserted.pop();
  }
  void reset_assertions() override {
    Solver::reset_assertions();
    asserted.clear();
  }
  Answer check_sat(std::span<const Term* const> assumed) override {
    size.admit(assumed);
    const Answer answer = Solver::check_sat(assumed);
    if (answer == Answer::sat && exact) {
      require(asserted.get_items());
      require(assumed);
    }
    return answer;
  }
  const Term* get_value(const Term* t) override {
    size.admit(std::span(&t, 1));
    return Solver::get_value(t);
  }

 private:
  void require(std::span<const Term* const> formulas) {
    for (const Term* f : formulas) {
      if (Solver::get_value(f) != mgr.make_true()) report("the model has " + f->to_string());
    }
  }

  TermManager& mgr;
  const bool exact;
  SizeLimit size;
  Trail<const Term*> asserted;
};

/// What the checks of a session say, as it is printed: the solver is asked more than that where a
/// core is made small, and one configuration begins with another core than the other.
std::vector<std::string> run(const std::string& text, solver::Options options) {
  const QuestionLimit limit(kQuestions);
  options.termination_test = &limit;
  TermManager mgr;
  CheckedSolver solver(mgr, options);
  std::stringstream out;
  std::istringstream in(text);
  smt2::Interpreter interpreter(mgr, solver, out);
  interpreter.run_interactive(in, "fuzz.smt2");
  std::vector<std::string> answers;
  for (std::string line; std::getline(out, line);) {
    if (line == "sat" || line == "unsat" || line == "unknown") answers.push_back(line);
  }
  return answers;
}

void compare(std::span<const std::string> some, std::span<const std::string> others) {
  if (some.size() != others.size()) report("a check was made in one configuration only");
  for (std::size_t i = 0; i < some.size(); ++i) {
    const bool known = some[i] != "unknown" && others[i] != "unknown";
    if (known && some[i] != others[i]) report("two answers to check " + std::to_string(i + 1));
  }
}

}  // namespace
}  // namespace vorn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vorn;
  if (size > fuzz::kMaxSize) return 0;
  const std::string text(data, data + size);
  solver::Options circuits;
  circuits.rewrite = false;
  circuits.local_search = false;
  circuits.ranges = false;
  circuits.reals = false;
  circuits.enumeration = false;
  circuits.relations = false;
  fuzz::compare(fuzz::run(text, {}), fuzz::run(text, circuits));
  solver::Options base;
  base.encoder = solver::EncoderKind::base;
  fuzz::run(text, base);
  return 0;
}
