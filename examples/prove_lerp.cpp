// Decides a property of a small numeric function for every input. Linear interpolation comes in two
// forms; of which is it true that t = 1 gives b, whatever finite binary32 numbers a and b are?
#include <iostream>

#include "vorn/solver/solver.h"
#include "vorn/terms/term_manager.h"

using vorn::Term;

namespace {

/// Arithmetic on binary32 terms, rounded to nearest.
class Floats {
 public:
  explicit Floats(vorn::TermManager& manager) : terms(manager) {}

  const Term* variable(const char* name) {
    return terms.make_constant(terms.make_unique_symbol(name, terms.get_fp_type(8, 23)));
  }
  const Term* number(int value) {
    vorn::IEEEFloat rounded({8, 23}, vorn::IEEEFloat::rounding_mode::nearest_even);
    rounded.self_round(value);
    return terms.make_fp_number(rounded);
  }
  const Term* add(const Term* a, const Term* b) { return terms.make_fp_add(rne, a, b); }
  const Term* sub(const Term* a, const Term* b) { return terms.make_fp_sub(rne, a, b); }
  const Term* mul(const Term* a, const Term* b) { return terms.make_fp_mul(rne, a, b); }
  const Term* is_finite(const Term* a) {
    return terms.make_not(terms.make_or(terms.make_fp_isinf(a), terms.make_fp_isnan(a)));
  }

 private:
  vorn::TermManager& terms;
  const Term* rne = terms.make_fprounding_even();
};

/// Says whether `result` is b for all finite a and b, and if not, for which it is another number.
/// Returns whether it is.
bool check(const char* name, vorn::TermManager& terms, const Term* a, const Term* b,
           const Term* result) {
  Floats floats(terms);
  vorn::solver::Solver solver(terms);
  solver.assert_formula(floats.is_finite(a));
  solver.assert_formula(floats.is_finite(b));
  solver.assert_formula(terms.make_not(terms.make_fp_equal(result, b)));
  const bool holds = solver.check_sat() == vorn::Answer::unsat;
  std::cout << name << (holds ? " is always b\n" : " is not always b\n");
  if (!holds) {
    std::cerr << "  a = " << solver.get_value(a)->to_string()
              << "\n  b = " << solver.get_value(b)->to_string()
              << "\n  result = " << solver.get_value(result)->to_string() << '\n';
  }
  return holds;
}

}  // namespace

int main() {
  vorn::TermManager terms;
  Floats floats(terms);
  const Term* a = floats.variable("a");
  const Term* b = floats.variable("b");
  const Term* t = floats.number(1);

  const Term* fast = floats.add(a, floats.mul(t, floats.sub(b, a)));
  const Term* precise =
      floats.add(floats.mul(floats.sub(floats.number(1), t), a), floats.mul(t, b));
  const bool fast_holds = check("a + t * (b - a)", terms, a, b, fast);
  const bool precise_holds = check("(1 - t) * a + t * b", terms, a, b, precise);
  return !fast_holds && precise_holds ? 0 : 1;
}
