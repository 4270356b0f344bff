// Clauses as text, for SAT solvers that run elsewhere.
//
// A recorder stands in the place of a SAT solver and keeps the clauses that it is given, so that
// whatever writes clauses writes DIMACS too. With a solver behind it, it decides as that one does:
// the text is then the very formula that was decided, which is what a proof refutes.
//
// Answers come back in the format of the SAT competitions: a line "s ...", and after "s
// SATISFIABLE" lines "v ..." with the literals of a model, ended by 0.
#ifndef VORN_BV_DIMACS_H
#define VORN_BV_DIMACS_H

#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "vorn/bv/sat_solver.h"
#include "vorn/utils/export.h"

namespace vorn::bv {

/// Keeps every clause.
class VORN_EXPORT ClauseRecorder final : public SatSolver {
 public:
  /// With a solver behind it, it hands everything on to that. Without one it cannot solve: solve,
  /// value and failed throw std::logic_error.
  explicit ClauseRecorder(std::unique_ptr<SatSolver> behind = nullptr)
      : solver(std::move(behind)) {}

  int new_variable() override;
  void add_clause(std::span<const int> literals) override;
  using SatSolver::add_clause;
  void assume(int literal) override;
  Result solve() override;
  void limit_conflicts(int count) override;
  void close_proof() override;
  bool value(int literal) const override;
  bool failed(int literal) const override;
  void set_termination_test(const TerminationTest* test) override;
  /// Number of variables made, and of clauses added.
  std::uint64_t get_variable_count() const override {
    return static_cast<std::uint64_t>(variable_count);
  }
  std::uint64_t get_clause_count() const override { return clause_count; }

  /// The clauses as one sequence of literals, each clause ended by 0.
  std::span<const int> get_clauses() const { return clauses; }

 private:
  SatSolver& get_solver() const;

  std::unique_ptr<SatSolver> solver;
  std::vector<int> clauses;
  int variable_count = 0;
  std::uint64_t clause_count = 0;
};

/// Writes the recorded clauses in DIMACS, below the comments, which are lines without their "c ".
VORN_EXPORT void write_dimacs(std::ostream& out, const ClauseRecorder& recorder,
                              std::span<const std::string> comments = {});

/// Text that is not in the format; `line` counts from 1.
class VORN_EXPORT DimacsError : public std::runtime_error {
 public:
  /// An error in that line.
  DimacsError(std::uint32_t where, const std::string& message)
      : std::runtime_error(message), line(where) {}
  /// The line of the error, from 1 on.
  std::uint32_t get_line() const { return line; }

 private:
  std::uint32_t line;
};

/// What a SAT solver answered.
struct VORN_EXPORT Solution {
  /// What it said.
  SatSolver::Result result = SatSolver::Result::unknown;
  /// By variable, from 1 on: 1 or -1, and 0 where the model leaves the variable out.
  std::vector<signed char> values;

  /// Whether the literal holds; variables that the model leaves out are false.
  bool value(int literal) const;
};

/// Reads an answer for a formula of that many variables. Throws DimacsError.
VORN_EXPORT Solution read_solution(std::istream& in, std::uint64_t variable_count);

}  // namespace vorn::bv

#endif
