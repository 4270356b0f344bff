// Runs a script in two configurations and judges the answers.
//
// No answer is taken on trust. Two configurations have to agree. A sat comes with a model whose
// text is read back: together with the assertions it must be satisfiable. Where all assignments can
// be tried, one of them has to be a model, too. An unsat is refuted by any assignment under which
// the evaluator finds everything true, and the assertions and assumptions that it is blamed on must
// be unsat without the others. What the solver gives up on, after a number of steps that is the
// same everywhere, counts as undecided.
#ifndef VORN_TESTS_RANDOM_CHECKER_H
#define VORN_TESTS_RANDOM_CHECKER_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/random/live.h"
#include "tests/random/script.h"
#include "tests/random/session.h"

namespace vorn::random {

struct Failure {
  enum class Kind : std::uint8_t {
    exception,     // the generator asks for nothing that is not supported
    disagreement,  // of two configurations
    bad_model,
    bad_unsat,
    bad_core
  };

  Kind kind;
  std::string detail;
};

struct Report {
  std::size_t checks = 0;
  std::size_t sat = 0;
  std::size_t unsat = 0;
  std::size_t undecided = 0;
  std::size_t enumerated = 0;  // unsat, and all assignments were tried
  std::size_t found = 0;       // sat, and a model is among all assignments
  std::size_t cores = 0;       // of assertions, that were judged
  std::size_t ranged = 0;      // unsat in a run that looks for refutations by ranges
  std::size_t refuted = 0;     // of these, by ranges
  std::size_t split = 0;       // of these, not without cases
  std::size_t tried = 0;       // decided by the solver's own trying of all assignments
  std::size_t refined = 0;     // checks in which results of operations put off were excluded
  std::optional<Failure> failure;
};

class Checker {
 public:
  /// The engine is what is under test; models are judged by a solver of their own.
  explicit Checker(EngineFactory engine = make_solver) : make_engine(std::move(engine)) {}

  /// `seed` chooses the second configuration and the assignments tried.
  Report check(const Script& script, std::uint64_t seed) const;

 private:
  struct Result {
    Answer answer = Answer::unknown;
    Script live;                                   // the question
    std::vector<std::string> equations;            // the model, after sat
    std::map<std::string, std::string> functions;  // their definitions in it
    std::optional<Script> core;                    // what is said to be unsat already
    bool has_assertions = false;                   // whether the core leaves assertions out
    bool is_refuted = false;                       // by ranges
    bool is_tried = false;                         // by trying all assignments
    bool is_refined = false;                       // of operations put off, results were excluded
  };

  std::vector<Result> run(const Script& script, const Configuration& configuration) const;
  static void ask_model(Session& session, const LiveCommands& live, Result* result);
  static void ask_core(Session& session, const LiveCommands& live, const Command& check,
                       bool of_assertions, Result* result);
  static void judge(const Result& result, std::uint64_t seed, Report* report);
  static void judge_sat(const Result& result, std::uint64_t seed, Report* report);
  static void judge_model(const Result& result, Report* report);
  static void count_refutation(const Result& result, const Configuration& configuration,
                               Report* report);
  static void judge_core(const Result& result, Report* report);

  EngineFactory make_engine;
};

}  // namespace vorn::random

#endif
