// What the back end asks of a SAT solver: clauses, assumptions, an answer, a model or a core.
//
// Literals are those of DIMACS: variable v as v, its negation as -v. The interface is small so
// that a solver can be replaced, or a recorder of clauses put in its place.
#ifndef VORN_BV_SAT_SOLVER_H
#define VORN_BV_SAT_SOLVER_H

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>

#include "vorn/utils/export.h"
#include "vorn/utils/termination_test.h"

namespace vorn::bv {

/// An incremental SAT solver. Where memory ends, its functions throw std::bad_alloc, and from then
/// on it can only be destroyed.
class VORN_EXPORT SatSolver {
 public:
  /// An answer; unknown where the search was told to stop.
  enum class Result : std::uint8_t { sat, unsat, unknown };

  SatSolver() = default;
  virtual ~SatSolver() = default;
  SatSolver(const SatSolver&) = delete;
  SatSolver& operator=(const SatSolver&) = delete;

  /// A variable that no clause mentions yet: 1, 2, 3, ...
  virtual int new_variable() = 0;
  /// Adds a clause for good; the empty clause makes every later answer unsat.
  /// Throws std::invalid_argument for a literal of no variable.
  virtual void add_clause(std::span<const int> literals) = 0;
  void add_clause(std::initializer_list<int> literals) {
    add_clause(std::span<const int>(literals.begin(), literals.size()));
  }
  /// Assumes a literal for the next call of solve only.
  /// Throws std::invalid_argument for a literal of no variable.
  virtual void assume(int literal) = 0;
  /// Decides the clauses under what is assumed.
  virtual Result solve() = 0;
  /// Makes the next call of solve give up with unknown after this number of conflicts.
  virtual void limit_conflicts(int count) = 0;

  /// Ends the proof, if one is written: its file is complete then, and later steps are none of it.
  /// Throws std::system_error where it could not be written.
  virtual void close_proof() {}

  /// Whether the literal holds in the model. Throws std::logic_error unless the last thing that
  /// happened to the solver was a solve that answered sat.
  virtual bool value(int literal) const = 0;
  /// Whether the assumption was used to derive unsat. Throws std::logic_error unless the last thing
  /// that happened to the solver was a solve that answered unsat.
  virtual bool failed(int literal) const = 0;

  /// The test that solve asks now and then whether to give up with unknown; it must outlive its
  /// use here. Null for none.
  virtual void set_termination_test(const TerminationTest* test) = 0;

  /// Number of variables made.
  virtual std::uint64_t get_variable_count() const = 0;
  /// Number of clauses added.
  virtual std::uint64_t get_clause_count() const = 0;
};

/// CaDiCaL behind the interface. The seed, from 0 on, leads its search, never its answers.
/// With a file for it, a proof in DRAT is written there as text: after unsat without assumptions it
/// refutes the clauses. The file has its name from close_proof on. Where it cannot be written,
/// std::system_error is thrown, and solve gives up with unknown once writing has failed.
VORN_EXPORT std::unique_ptr<SatSolver> make_cadical_solver(int seed = 0,
                                                           const std::string& proof_file = {});

}  // namespace vorn::bv

#endif
