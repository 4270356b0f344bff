#ifndef TESTS_SOLVER_SOLVER_FIXTURE_H
#define TESTS_SOLVER_SOLVER_FIXTURE_H

#include <gtest/gtest.h>

#include <string>

#include "vorn/solver/solver.h"
#include "vorn/terms/term_manager.h"

namespace vorn::solver {

/// Options of a solver all of whose models come from circuits.
inline Options circuits_only() {
  Options options;
  options.local_search = false;
  return options;
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
