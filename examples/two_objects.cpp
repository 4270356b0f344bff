// Arrays, functions, an uninterpreted sort and a core: a byte is written where one object is, and
// read where another one is. Is it what was written?
#include <iostream>
#include <vector>

#include "vorn/solver/solver.h"

int main() {
  using Terms = std::vector<const vorn::Term*>;
  vorn::TermManager terms;
  vorn::solver::Solver solver(terms);
  const vorn::DataType* byte = terms.get_bv_type(8);
  const vorn::DataType* memory = terms.get_array_type(byte, byte);
  const vorn::DataType* object = terms.get_uninterpreted_type("Object");
  const std::vector<const vorn::DataType*> domain{object};
  const vorn::Symbol* address = terms.make_unique_symbol("address", domain, byte);
  const auto constant = [&](const char* name, const vorn::DataType* type) {
    return terms.make_constant(terms.make_unique_symbol(name, type));
  };
  const vorn::Term* p = constant("p", object);
  const vorn::Term* q = constant("q", object);
  const vorn::Term* before = constant("before", memory);
  const vorn::Term* at_p = terms.make_application(address, Terms{p});
  const vorn::Term* at_q = terms.make_application(address, Terms{q});
  const vorn::Term* after = terms.make_store(before, at_p, terms.make_bv_number(7, 8));
  const vorn::Term* read = terms.make_select(after, at_q);

  solver.assert_formula(terms.make_not(terms.make_equal(read, terms.make_bv_number(7, 8))));
  if (solver.check_sat() == vorn::Answer::sat) {
    std::cout << solver.get_value(after)->to_string() << '\n';
    const vorn::FunctionValue addresses = solver.get_function(address);
    for (const auto& [arguments, value] : addresses.entries)
      std::cout << arguments[0]->to_string() << " is at " << value->to_string() << '\n';
    std::cout << "all others are at " << addresses.otherwise->to_string() << '\n';
  }
  const vorn::Term* is_zero = terms.make_equal(at_p, terms.make_bv_number(0, 8));
  if (solver.check_sat(Terms{is_zero, terms.make_equal(p, q)}) == vorn::Answer::unsat) {
    for (const std::size_t i : solver.get_unsat_assumptions())
      std::cout << "assumption " << i << " cannot hold\n";
  }
}
