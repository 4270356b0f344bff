#include "vorn/bv/clause_sink.h"

#include <limits>
#include <stdexcept>
#include <string>
#include <utility>

namespace vorn::bv {
namespace {

[[noreturn]] void refuse() {
  throw std::logic_error("a sink of clauses decides nothing: its owner does");
}

}  // namespace

ClauseSink::ClauseSink(Write write, Read read)
    : write_clause(std::move(write)), read_literal(std::move(read)) {
  if (write_clause == nullptr) throw std::invalid_argument("a sink of clauses needs a function");
}

int ClauseSink::new_variable() {
  if (variable_count == std::numeric_limits<int>::max()) {
    throw std::length_error("a sink of clauses: too many variables");
  }
  return ++variable_count;
}

void ClauseSink::add_clause(std::span<const int> literals) {
  for (const int literal : literals) {
    if (literal == 0 || literal > variable_count || literal < -variable_count) {
      throw std::invalid_argument("a sink of clauses: " + std::to_string(literal) +
                                  " is no literal of the variables made so far");
    }
  }
  write_clause(literals);
  ++clause_count;
}

bool ClauseSink::value(int literal) const {
  if (read_literal == nullptr) {
    throw std::logic_error("a sink of clauses without a function that reads literals has no model");
  }
  return read_literal(literal);
}

void ClauseSink::assume(int /*literal*/) {
  refuse();
}

SatSolver::Result ClauseSink::solve() {
  refuse();
}

bool ClauseSink::failed(int /*literal*/) const {
  refuse();
}

}  // namespace vorn::bv
