// An owner that follows a search tree: it explores the paths of a small program over binary32,
//
//     if (x < 1) y = x + 1; else y = x / 2;
//     if (y < 0) y = -y;
//     if (y > x) ... else ...
//
// and says which of them some x can take. A branch encodes its condition when the search enters it
// and retracts it when the search leaves, so the encoder never holds more than one path.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "vorn/bv/aig.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/cnf.h"
#include "vorn/bv/sat_solver.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/terms/term_manager.h"

using vorn::Term;

namespace {

class Explorer {
 public:
  /// Explores both directions of `conditions[depth]` and everything below them.
  void explore(std::size_t depth, const Term* y, const std::string& path) {
    if (depth == 3) {
      std::cout << path << '\n';
      ++feasible;
      return;
    }
    enter(condition(depth, y), true, depth, y, path);
    enter(condition(depth, y), false, depth, y, path);
  }

  const Term* get_x() const { return x; }
  int get_feasible() const { return feasible; }

 private:
  const Term* condition(std::size_t depth, const Term* y) {
    if (depth == 0) return terms.make_fp_lt(x, number(1));
    if (depth == 1) return terms.make_fp_lt(y, number(0));
    return terms.make_fp_lt(x, y);
  }

  /// The value of y below a branch.
  const Term* step(std::size_t depth, bool taken, const Term* y) {
    const Term* rne = terms.make_fprounding_even();
    if (depth == 0)
      return taken ? terms.make_fp_add(rne, x, number(1)) : terms.make_fp_div(rne, x, number(2));
    return depth == 1 && taken ? terms.make_fp_neg(y) : y;
  }

  void enter(const Term* atom, bool taken, std::size_t depth, const Term* y,
             const std::string& path) {
    static const char* const kNames[] = {"x < 1", "y < 0", "y > x"};
    const std::size_t mark = assumptions.size();

    // Down: the encoding and what defines its constants hold on this path only.
    std::vector<const Term*> constraints;
    const Term* encoding = encoder.get_bv_encoding(atom, &constraints);
    constraints.push_back(taken ? encoding : terms.make_not(encoding));
    for (const Term* constraint : constraints) {
      assumptions.push_back(
          cnf.literal(blaster.blast_bool(constraint), vorn::bv::Cnf::Polarity::positive));
    }

    for (const int literal : assumptions)
      solver->assume(literal);
    if (solver->solve() == vorn::bv::SatSolver::Result::sat) {
      explore(depth + 1, step(depth, taken, y),
              path + (depth == 0 ? "" : ", ") + (taken ? "" : "not ") + kNames[depth]);
    }

    // Up: back to and including this atom; what was encoded above it stays.
    encoder.retract_upto(atom);
    assumptions.resize(mark);
  }

  const Term* number(int value) {
    vorn::IEEEFloat rounded({8, 23}, vorn::IEEEFloat::rounding_mode::nearest_even);
    rounded.self_round(value);
    return terms.make_fp_number(rounded);
  }

  vorn::TermManager terms;
  vorn::fp::IeeeBvEncoder encoder{&terms, &terms};
  vorn::bv::Aig graph;
  vorn::bv::BitBlaster blaster{terms, graph};
  std::unique_ptr<vorn::bv::SatSolver> solver = vorn::bv::make_cadical_solver();
  vorn::bv::Cnf cnf{graph, *solver};
  const Term* x = terms.make_constant(terms.make_unique_symbol("x", terms.get_fp_type(8, 23)));
  std::vector<int> assumptions;  // what holds on the path down to here
  int feasible = 0;
};

}  // namespace

int main() {
  Explorer explorer;
  explorer.explore(0, explorer.get_x(), "");
  std::cout << explorer.get_feasible() << " of 8 paths can be taken\n";
}
