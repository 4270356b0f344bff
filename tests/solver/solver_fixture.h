#ifndef TESTS_SOLVER_SOLVER_FIXTURE_H
#define TESTS_SOLVER_SOLVER_FIXTURE_H

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <string>

#include "vorn/solver/solver.h"
#include "vorn/terms/term_manager.h"

namespace vorn::solver {

/// Options of a solver all of whose models come from circuits.
inline Options circuits_only() {
  Options options;
  options.local_search = false;
  options.enumeration = false;
  return options;
}

/// The head of the clauses that a check has left in a file says how many there are, more than
/// `least`.
inline void expect_clauses_of(const Solver& solver, const std::string& file, std::uint64_t least) {
  std::ifstream in(file);
  std::string word;
  std::uint64_t variables = 0;
  std::uint64_t clauses = 0;
  in >> word >> word >> variables >> clauses;
  EXPECT_EQ(variables, solver.get_statistics().variables);
  EXPECT_EQ(clauses, solver.get_statistics().clauses);
  EXPECT_GT(clauses, least);
}

class SolverTest : public testing::Test {
 protected:
  const Term* variable(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }
  const Term* fp(int bits, std::size_t e, std::size_t m) {
    return mgr.make_fp_number(QNumber(bits), e, m);
  }

  TermManager mgr;
  Solver solver{mgr, circuits_only()};
};

}  // namespace vorn::solver

#endif
