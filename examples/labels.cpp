// Follows a sum of two floats of 8 bits through the circuit of the exact encoder: in debug mode
// each named intermediate value is tied to a constant, which a model of the constraints has a value
// for. `vorn explain` shows the same of the command's scripts.
#include <iomanip>
#include <iostream>
#include <vector>

#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/fp/labels.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/float_literals.h"
#include "vorn/terms/term_manager.h"

using vorn::Term;

namespace {

/// The name of a stage and of a value in it, and the value: bits for most, and a number as well
/// where a row of the table of labels says that the bits are one.
void print(const vorn::fp::Tie& tie, const Term* value, vorn::TermManager& terms) {
  const vorn::fp::Label& label = vorn::fp::find_label(tie.label);
  std::cout << std::left << std::setw(14) << vorn::fp::get_stage_name(label.stage) << std::setw(24)
            << tie.label << value->to_string();
  vorn::QNumber number;
  if (label.reading == vorn::fp::Reading::count && terms.is_number(value, &number)) {
    std::cout << ", " << number.to_string() << " bits";
  }
  std::cout << '\n';
}

}  // namespace

int main() {
  vorn::TermManager terms;
  const vorn::DataType* tiny = terms.get_fp_type(4, 3);
  const Term* x = terms.make_constant("x", tiny);
  const Term* y = terms.make_constant("y", tiny);
  const Term* sum = terms.make_fp_add(terms.make_fprounding_even(), x, y);

  vorn::fp::IeeeBvEncoder encoder(&terms, &terms);
  encoder.set_debug_flag(true);
  std::vector<const Term*> constraints;
  const Term* encoding = encoder.get_bv_encoding(sum, &constraints);

  // The constants of x and y are inputs of the circuit, whatever they are called.
  const auto is_input = [&](const Term* t) {
    return t == encoder.get_cached(x) || t == encoder.get_cached(y);
  };
  const std::vector<vorn::fp::Tie> ties = vorn::fp::find_ties(terms, constraints, is_input);

  // The operands get their values by equations; those that the encoder makes of them are added.
  const Term* one_and_a_half = vorn::make_fp_literal(terms, tiny, 1.5);
  const Term* three_eighths = vorn::make_fp_literal(terms, tiny, "3/8");
  for (const Term* equation :
       {terms.make_equal(x, one_and_a_half), terms.make_equal(y, three_eighths)}) {
    constraints.push_back(encoder.append_bv_encoding(equation, &constraints));
  }

  vorn::solver::Solver solver(terms);
  solver.assert_formula(terms.make_and(constraints));
  if (solver.check_sat() != vorn::Answer::sat) return 1;
  for (const vorn::fp::Tie& tie : ties)
    print(tie, solver.get_value(tie.constant), terms);
  const Term* bits = solver.get_value(encoding);
  vorn::QNumber pattern;
  if (!terms.is_number(bits, &pattern)) return 1;
  std::cout << "x + y is " << bits->to_string() << ", "
            << vorn::get_double(terms.make_fp_number(pattern, 4, 3)) << '\n';
}
