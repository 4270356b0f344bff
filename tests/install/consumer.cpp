// A program outside the tree: it sees every installed header, none of which may need another that
// is not installed, and decides something with the library that it was linked with.
#include <iostream>

#include "all_headers.h"

int main() {
  vorn::TermManager terms;
  const vorn::Term* x =
      terms.make_constant(terms.make_unique_symbol("x", terms.get_fp_type(8, 23)));
  vorn::solver::Solver solver(terms);
  solver.assert_formula(terms.make_not(terms.make_fp_equal(x, x)));
  if (solver.check_sat() != vorn::Answer::sat) return 1;
  try {
    terms.make_not(x);  // an exception has to find its way out of the library
    return 1;
  } catch (const std::invalid_argument&) {
    std::cout << VORN_VERSION << ' ' << solver.get_value(x)->to_string() << '\n';
  }
  return 0;
}
