// Clauses and variables of one operation on variables, asserted equal to a third variable, with a
// variable rounding mode: what a formula pays for it, side conditions of all operands included. One
// line for each operation and format, the two encoders side by side.
#include <fmt/format.h>

#include <cstdint>
#include <string>
#include <vector>

#include "vorn/bv/aig.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/cnf.h"
#include "vorn/bv/sat_solver.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/terms/term_manager.h"

namespace {

using vorn::Term;
using vorn::TermManager;

struct Operation {
  const char* name;
  const Term* (TermManager::*build)(const Term* rm, const Term* a, const Term* b);
};

constexpr Operation kOperations[] = {{"add", &TermManager::make_fp_add},
                                     {"sub", &TermManager::make_fp_sub},
                                     {"mul", &TermManager::make_fp_mul},
                                     {"div", &TermManager::make_fp_div}};

struct Size {
  std::uint64_t variables, clauses;
};

template <typename Encoder>
Size measure(const Operation& operation, std::size_t e, std::size_t m) {
  TermManager mgr;
  Encoder encoder(&mgr, &mgr);
  vorn::bv::Aig aig;
  vorn::bv::BitBlaster blaster(mgr, aig);
  const auto sat = vorn::bv::make_cadical_solver();
  vorn::bv::Cnf cnf(aig, *sat);
  const auto variable = [&](const vorn::DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol("v", type));
  };
  const Term* rm = variable(mgr.get_fprounding_type());
  const Term* x = variable(mgr.get_fp_type(e, m));
  const Term* y = variable(mgr.get_fp_type(e, m));
  const Term* z = variable(mgr.get_fp_type(e, m));
  std::vector<const Term*> constraints;
  const Term* equation = mgr.make_equal(z, (mgr.*operation.build)(rm, x, y));
  const Term* encoding = encoder.get_bv_encoding(equation, &constraints);
  for (const Term* constraint : constraints)
    cnf.assert_true(blaster.blast_bool(constraint));
  cnf.assert_true(blaster.blast_bool(encoding));
  return {sat->get_variable_count(), sat->get_clause_count()};
}

}  // namespace

int main() {
  constexpr std::size_t kFormats[][2] = {{3, 3}, {5, 10}, {8, 7}, {8, 23}, {11, 52}, {15, 112}};
  fmt::print("{:<10} {:>5} {:>10} {:>10} {:>10} {:>10} {:>7}\n", "format", "op", "base vars",
             "clauses", "ieee vars", "clauses", "ratio");
  for (const auto& [e, m] : kFormats) {
    for (const Operation& operation : kOperations) {
      const Size base = measure<vorn::fp::FpBvEncoder>(operation, e, m);
      const Size ieee = measure<vorn::fp::IeeeBvEncoder>(operation, e, m);
      fmt::print("{:<10} {:>5} {:>10} {:>10} {:>10} {:>10} {:>7.2f}\n",
                 fmt::format("({}, {})", e, m), operation.name, base.variables, base.clauses,
                 ieee.variables, ieee.clauses,
                 static_cast<double>(ieee.clauses) / static_cast<double>(base.clauses));
    }
  }
  return 0;
}
