// One session of the library, configured in one of the ways that must not change an answer.
#ifndef VORN_TESTS_RANDOM_SESSION_H
#define VORN_TESTS_RANDOM_SESSION_H

#include <cstdint>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "vorn/smt2/interpreter.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/engine.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/termination_test.h"

namespace vorn::random {

/// Gives up after a number of questions, which the SAT solver asks about as often as it meets
/// conflicts: a script is decided, or not, in the same way on every machine.
class Budget : public TerminationTest {
 public:
  static constexpr std::uint64_t kQuestions = 1500;

  bool terminate() const override { return ++asked > kQuestions; }
  void renew() { asked = 0; }

 private:
  mutable std::uint64_t asked = 0;
};

struct Configuration {
  bool rewrite = true;  // in constructors and before encoding
  /// Whether one solver serves the whole script; else each check has a solver of its own.
  bool incremental = true;
  int seed = 0;
  /// Whether terms that are no longer needed are dropped before each check, which the library does
  /// by itself only where there are very many.
  bool collecting = false;
  /// Whether models are looked for by trying assignments too; without it, all come from circuits.
  bool local_search = false;
  /// Whether unsat is to be answered with the assertions that it took, and with as few as can be.
  bool cores = false;
  bool minimal_cores = false;
  /// Whether refutations are looked for by ranges too; without them, all come from circuits.
  bool ranges = false;
  /// Whether ranges are helped by adding up comparisons.
  bool reals = false;
  /// Whether theorems are stated beside assertions.
  bool relations = false;
  /// Whether all assignments are tried too, where they are few.
  bool enumeration = false;
  /// Whether definitions and truth values take the place of what they stand for.
  bool substitution = false;
  /// Which circuits are put off until models depend on them.
  solver::AbstractionKind abstraction = solver::AbstractionKind::none;
};

/// Makes the engine of a session; tests put faulty ones there.
using EngineFactory = std::function<std::unique_ptr<Engine>(TermManager&, const solver::Options&)>;

std::unique_ptr<Engine> make_solver(TermManager& manager, const solver::Options& options);

class Session {
 public:
  Session(const Configuration& configuration, const EngineFactory& make_engine)
      : mgr(configuration.rewrite),
        engine(make_engine(mgr, options_of(configuration))),
        interpreter(mgr, *engine, stream, session_options_of(configuration)) {}

  /// Runs commands and returns what they printed.
  std::string run(const std::string& commands) {
    budget.renew();
    stream.str("");
    interpreter.run(commands, "script");
    return stream.str();
  }

  void collect_garbage() {
    std::vector<const Term*> kept;
    interpreter.get_symbols().append_terms(&kept);
    engine->collect_garbage(kept);
  }

  TermManager& get_manager() { return mgr; }

  /// How many checks were refuted by ranges, by an engine that counts them.
  std::uint64_t count_refutations() const { return get_statistics().refutations; }
  /// What an engine that counts has done so far.
  solver::Statistics get_statistics() const {
    const auto* solver = dynamic_cast<const solver::Solver*>(engine.get());
    return solver == nullptr ? solver::Statistics() : solver->get_statistics();
  }
  /// How many were decided by trying all assignments.
  std::uint64_t count_enumerations() const {
    const auto* solver = dynamic_cast<const solver::Solver*>(engine.get());
    return solver == nullptr ? 0 : solver->get_statistics().enumerations;
  }

 private:
  solver::Options options_of(const Configuration& configuration) const {
    solver::Options options;
    options.rewrite = configuration.rewrite;
    options.seed = configuration.seed;
    options.local_search = configuration.local_search;
    options.ranges = configuration.ranges;
    options.reals = configuration.reals;
    options.relations = configuration.relations;
    options.enumeration = configuration.enumeration;
    options.substitution = configuration.substitution;
    options.abstraction = configuration.abstraction;
    options.termination_test = &budget;
    return options;
  }
  static smt2::InterpreterOptions session_options_of(const Configuration& configuration) {
    smt2::InterpreterOptions options;
    options.produce_unsat_cores = configuration.cores;
    options.minimize_unsat_cores = configuration.minimal_cores;
    return options;
  }

  TermManager mgr;
  Budget budget;
  std::ostringstream stream;
  std::unique_ptr<Engine> engine;
  smt2::Interpreter interpreter;
};

}  // namespace vorn::random

#endif
