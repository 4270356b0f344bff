// A SAT solver as one finds them elsewhere: DIMACS on standard input, the answer in the format of
// the competitions on standard output, 10 or 20 as exit status. It stands in for such a solver
// where none is installed, so that the way out and back is always tested.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "vorn/bv/sat_solver.h"

int main() {
  using vorn::bv::SatSolver;
  const std::unique_ptr<SatSolver> solver = vorn::bv::make_cadical_solver();
  std::string word;
  for (std::string line; std::cin.peek() == 'c' && std::getline(std::cin, line);) {
  }
  int variables = 0;
  std::size_t clauses = 0;
  if (!(std::cin >> word >> word >> variables >> clauses) || word != "cnf") {
    std::cerr << "no DIMACS\n";
    return 1;
  }
  for (int i = 0; i < variables; ++i)
    solver->new_variable();
  std::vector<int> clause;
  for (int literal = 0; std::cin >> literal;) {
    if (literal != 0) {
      clause.push_back(literal);
      continue;
    }
    solver->add_clause(clause);
    clause.clear();
  }
  if (!clause.empty() || solver->get_clause_count() != clauses) {
    std::cerr << "the number of clauses is wrong\n";
    return 1;
  }
  if (solver->solve() == SatSolver::Result::unsat) {
    std::cout << "s UNSATISFIABLE\n";
    return 20;
  }
  std::cout << "s SATISFIABLE\n";
  for (int variable = 1; variable <= variables; ++variable)
    std::cout << "v " << (solver->value(variable) ? variable : -variable) << '\n';
  std::cout << "v 0\n";
  return 10;
}
