// Two term managers: one with the terms of the input, another with those of the bit-vector world.
// An owner that keeps its layers apart, or gives up one of them now and then, works like this.
//
// The claim is that a signed byte converts to binary32 with its sign: n < 0 exactly if float(n) <
// 0.
#include <iostream>
#include <vector>

#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/term_manager.h"

using vorn::Term;

int main() {
  // The source: exactly the terms that are asked for, nothing is simplified.
  vorn::TermManager source(false);
  const Term* n = source.make_constant(source.make_unique_symbol("n", source.get_bv_type(8)));
  const Term* converted = source.make_fp_from_sbv(8, 23, source.make_fprounding_even(), n);
  const Term* is_negative = source.make_fp_lt(converted, source.make_fp_number(0, 8, 23));

  // The target: the encoder reads the one manager and builds in the other.
  vorn::TermManager target;
  vorn::fp::IeeeBvEncoder encoder(&source, &target);
  std::vector<const Term*> formulas;
  const Term* encoding = encoder.get_bv_encoding(is_negative, &formulas);

  // The encoder knows nothing of bit-vectors: n became a fresh constant, which the owner ties to
  // its own translation of n.
  const Term* my_n = target.make_constant(target.make_unique_symbol("n", target.get_bv_type(8)));
  std::vector<const Term*> replaced;
  encoder.get_new_bv_terms(replaced);
  for (const Term* term : replaced) {
    std::cout << term->to_string() << " is " << encoder.get_cached(term)->to_string() << '\n';
    formulas.push_back(target.make_equal(encoder.get_cached(term), my_n));
  }

  // From here on there are only bits.
  const Term* sign = target.make_bv_slt(my_n, target.make_bv_number(0, 8));
  formulas.push_back(target.make_not(target.make_iff(encoding, sign)));
  vorn::solver::Solver solver(target);
  for (const Term* formula : formulas)
    solver.assert_formula(formula);
  const bool holds = solver.check_sat() == vorn::Answer::unsat;
  std::cout << (holds ? "the sign is kept for every n\n" : "the sign is lost for some n\n");
  return replaced.size() == 1 && holds ? 0 : 1;
}
