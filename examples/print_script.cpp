// Encodes one operation and prints it as a script of QF_BV, for any solver that reads SMT-LIB: that
// x + y and y + x differ somewhere over binary16, which they do not.
#include <iostream>
#include <vector>

#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/terms/script_printer.h"
#include "vorn/terms/term_manager.h"

using vorn::Term;

int main() {
  vorn::TermManager terms;
  vorn::fp::IeeeBvEncoder encoder(&terms, &terms);

  const vorn::DataType* binary16 = terms.get_fp_type(5, 10);
  const Term* x = terms.make_constant(terms.make_unique_symbol("x", binary16));
  const Term* y = terms.make_constant(terms.make_unique_symbol("y", binary16));
  const Term* rne = terms.make_fprounding_even();
  const Term* sums_equal =
      terms.make_equal(terms.make_fp_add(rne, x, y), terms.make_fp_add(rne, y, x));

  // The constraints say which patterns of bits are floats: all but the surplus NaNs.
  std::vector<const Term*> script;
  const Term* encoding = encoder.get_bv_encoding(sums_equal, &script);
  script.push_back(terms.make_not(encoding));

  std::cout << "(set-logic QF_BV)\n";
  vorn::ScriptPrinter(script).print(std::cout);
  std::cout << "(check-sat)\n";
}
