// Decides a formula with a SAT solver that is none of the library's, here one of a few lines: the
// clauses come by a function, and values are read back by another.
#include <cstdlib>
#include <iostream>
#include <span>
#include <vector>

#include "vorn/bv/aig.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/clause_sink.h"
#include "vorn/bv/cnf.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/terms/float_literals.h"
#include "vorn/terms/term_manager.h"

using vorn::Term;

namespace {

/// Tries values, and takes back what made a clause false (Davis, Logemann and Loveland, "A Machine
/// Program for Theorem-Proving", 1962). Enough for floats of 8 bits.
class SmallSolver {
 public:
  void add_clause(std::span<const int> literals) {
    clauses.emplace_back(literals.begin(), literals.end());
  }
  std::size_t count_clauses() const { return clauses.size(); }

  /// Whether there is a model of clauses over that many variables.
  bool solve(std::size_t variable_count) {
    values.assign(variable_count + 1, 0);
    std::vector<std::size_t> decisions;  // where in the trail each begins
    for (;;) {
      if (propagate()) {
        const int variable = find_free();
        if (variable == 0) return true;
        decisions.push_back(trail.size());
        set(-variable);
        continue;
      }
      // The last decision was wrong, so its opposite follows from those before it.
      if (decisions.empty()) return false;
      const int decision = trail[decisions.back()];
      while (trail.size() > decisions.back()) {
        values[static_cast<std::size_t>(std::abs(trail.back()))] = 0;
        trail.pop_back();
      }
      decisions.pop_back();
      set(-decision);
    }
  }

  bool value(int literal) const { return get(literal) > 0; }

 private:
  int get(int literal) const {
    const int value = values[static_cast<std::size_t>(std::abs(literal))];
    return literal > 0 ? value : -value;
  }
  void set(int literal) {
    values[static_cast<std::size_t>(std::abs(literal))] = literal > 0 ? 1 : -1;
    trail.push_back(literal);
  }
  int find_free() const {
    for (std::size_t v = 1; v < values.size(); ++v) {
      if (values[v] == 0) return static_cast<int>(v);
    }
    return 0;
  }

  /// Sets what clauses leave no choice about; false where one is false.
  bool propagate() {
    for (bool changed = true; changed;) {
      changed = false;
      for (const std::vector<int>& clause : clauses) {
        int last = 0;
        int count = 0;
        bool holds = false;
        for (const int literal : clause) {
          holds = holds || get(literal) > 0;
          if (get(literal) == 0) {
            last = literal;
            ++count;
          }
        }
        if (holds || count > 1) continue;
        if (count == 0) return false;
        set(last);
        changed = true;
      }
    }
    return true;
  }

  std::vector<std::vector<int>> clauses;
  std::vector<int> values;  // by variable: 1, -1 or, unknown, 0
  std::vector<int> trail;   // literals in the order in which they were set
};

/// The bits that an input of the circuit has in the model.
vorn::QNumber read_bits(const vorn::bv::BitBlaster::Input& input, const vorn::bv::Cnf& cnf) {
  std::int64_t bits = 0;
  for (std::size_t i = 0; i < input.bits.size(); ++i)
    bits |= std::int64_t{cnf.value(input.bits[i])} << i;
  return bits;
}

}  // namespace

int main() {
  // Which float of 8 bits above 1, squared, is 2.25?
  vorn::TermManager terms;
  const vorn::DataType* tiny = terms.get_fp_type(4, 3);
  const Term* x = terms.make_constant("x", tiny);
  const Term* square = terms.make_fp_mul(terms.make_fprounding_even(), x, x);
  vorn::fp::IeeeBvEncoder encoder(&terms, &terms);
  std::vector<const Term*> formulas;
  for (const Term* atom : {terms.make_fp_gt(x, vorn::make_fp_literal(terms, tiny, 1)),
                           terms.make_fp_equal(square, vorn::make_fp_literal(terms, tiny, 2.25))}) {
    formulas.push_back(encoder.append_bv_encoding(atom, &formulas));
  }

  SmallSolver solver;
  vorn::bv::ClauseSink sink([&](std::span<const int> literals) { solver.add_clause(literals); },
                            [&](int literal) { return solver.value(literal); });
  vorn::bv::Aig graph;
  vorn::bv::BitBlaster blaster(terms, graph);
  vorn::bv::Cnf cnf(graph, sink);
  cnf.assert_true(blaster.blast_bool(terms.make_and(formulas)));
  std::cerr << sink.get_variable_count() << " variables, " << solver.count_clauses()
            << " clauses\n";
  if (!solver.solve(sink.get_variable_count())) return 1;

  for (const vorn::bv::BitBlaster::Input& input : blaster.get_inputs()) {
    if (input.constant != encoder.get_cached(x)) continue;
    const Term* value = terms.make_fp_number(read_bits(input, cnf), 4, 3);
    std::cout << "x is " << vorn::get_double(value) << '\n';
  }
}
