// Clauses for a SAT solver that is none of the library's: a function takes them.
//
// Cnf writes into a SatSolver, of which it uses three functions. Who only wants the clauses need
// not derive from that: a sink stands in its place, numbers the variables, and hands each clause
// on. Deciding is the owner's.
#ifndef VORN_BV_CLAUSE_SINK_H
#define VORN_BV_CLAUSE_SINK_H

#include <cstdint>
#include <functional>
#include <span>

#include "vorn/bv/sat_solver.h"
#include "vorn/utils/export.h"

namespace vorn::bv {

/// Hands clauses to a function as they are written.
class VORN_EXPORT ClauseSink final : public SatSolver {
 public:
  /// Takes a clause: literals of variables from 1 on, negative where negated. The span is valid
  /// during the call. What it throws passes through whatever writes the clause.
  using Write = std::function<void(std::span<const int> literals)>;
  /// Whether a literal holds in the owner's model.
  using Read = std::function<bool(int literal)>;

  /// Without `read` there are no values: `value` and Cnf::value throw std::logic_error.
  explicit ClauseSink(Write write, Read read = {});

  /// Throws std::length_error beyond the largest int.
  int new_variable() override;
  void add_clause(std::span<const int> literals) override;
  using SatSolver::add_clause;
  bool value(int literal) const override;
  /// Variables numbered, and clauses handed on.
  std::uint64_t get_variable_count() const override {
    return static_cast<std::uint64_t>(variable_count);
  }
  std::uint64_t get_clause_count() const override { return clause_count; }

  /// Throw std::logic_error: the owner of the clauses decides them.
  void assume(int literal) override;
  Result solve() override;
  bool failed(int literal) const override;
  /// Nothing, since nothing is searched here.
  void limit_conflicts(int /*count*/) override {}
  void set_termination_test(const TerminationTest* /*test*/) override {}

 private:
  Write write_clause;
  Read read_literal;
  int variable_count = 0;
  std::uint64_t clause_count = 0;
};

}  // namespace vorn::bv

#endif
