// Encodes x < y over binary32 variables and prints the result with its side constraints. This is
// all that an SMT solver with a bit-vector engine of its own needs from the library.
#include <iostream>
#include <vector>

#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/terms/term_manager.h"

int main() {
  vorn::TermManager terms;
  vorn::fp::FpBvEncoder encoder(&terms, &terms);

  const vorn::DataType* binary32 = terms.get_fp_type(8, 23);
  const vorn::Term* x = terms.make_constant(terms.make_unique_symbol("x", binary32));
  const vorn::Term* y = terms.make_constant(terms.make_unique_symbol("y", binary32));

  std::vector<const vorn::Term*> constraints;
  const vorn::Term* less = encoder.get_bv_encoding(terms.make_fp_lt(x, y), &constraints);
  std::cout << "x is " << encoder.get_cached(x)->to_string() << ", y is "
            << encoder.get_cached(y)->to_string() << "\nx < y is\n"
            << less->to_string() << "\nwhere\n";
  for (const vorn::Term* constraint : constraints)
    std::cout << constraint->to_string() << '\n';
  return constraints.size() == 2 ? 0 : 1;
}
