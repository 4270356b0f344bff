#include "vorn/bv/dimacs.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>

namespace vorn::bv {
namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Takes the first word off `text`; empty at its end.
std::string_view take_word(std::string_view* text) {
  *text = trim(*text);
  const std::string_view word = text->substr(0, text->find_first_of(kBlanks));
  text->remove_prefix(word.size());
  return word;
}

SatSolver::Result read_result(std::string_view text, std::uint32_t line) {
  if (text == "SATISFIABLE") return SatSolver::Result::sat;
  if (text == "UNSATISFIABLE") return SatSolver::Result::unsat;
  if (text == "UNKNOWN") return SatSolver::Result::unknown;
  throw DimacsError(line, "expected SATISFIABLE, UNSATISFIABLE or UNKNOWN after 's', got '" +
                              std::string(text) + "'");
}

int read_literal(std::string_view word, std::uint32_t line, std::uint64_t variable_count) {
  int literal = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), literal);
  if (error != std::errc() || end != word.data() + word.size() ||
      literal == std::numeric_limits<int>::min()) {
    throw DimacsError(line, "'" + std::string(word) + "' is no literal");
  }
  if (static_cast<std::uint64_t>(std::abs(literal)) > variable_count) {
    throw DimacsError(line, "literal " + std::string(word) + " is of none of the " +
                                std::to_string(variable_count) + " variables of the formula");
  }
  return literal;
}

}  // namespace

// Recording -----------------------------------------------------------------------------------

SatSolver& ClauseRecorder::get_solver() const {
  if (solver == nullptr) throw std::logic_error("a recorder of clauses decides nothing");
  return *solver;
}

int ClauseRecorder::new_variable() {
  if (variable_count == std::numeric_limits<int>::max()) {
    throw std::length_error("DIMACS: too many variables");
  }
  if (solver != nullptr) solver->new_variable();
  return ++variable_count;
}

void ClauseRecorder::add_clause(std::span<const int> literals) {
  for (const int literal : literals) {
    if (literal == 0 || literal > variable_count || literal < -variable_count) {
      throw std::invalid_argument("DIMACS: " + std::to_string(literal) +
                                  " is no literal of the variables made so far");
    }
  }
  if (solver != nullptr) solver->add_clause(literals);
  clauses.insert(clauses.end(), literals.begin(), literals.end());
  clauses.push_back(0);
  ++clause_count;
}

void ClauseRecorder::assume(int literal) {
  get_solver().assume(literal);
}

SatSolver::Result ClauseRecorder::solve() {
  return get_solver().solve();
}

void ClauseRecorder::limit_conflicts(int count) {
  get_solver().limit_conflicts(count);
}

void ClauseRecorder::close_proof() {
  if (solver != nullptr) solver->close_proof();
}

bool ClauseRecorder::value(int literal) const {
  return get_solver().value(literal);
}

bool ClauseRecorder::failed(int literal) const {
  return get_solver().failed(literal);
}

void ClauseRecorder::set_termination_test(const TerminationTest* test) {
  if (solver != nullptr) solver->set_termination_test(test);
}

void write_dimacs(std::ostream& out, const ClauseRecorder& recorder,
                  std::span<const std::string> comments) {
  for (const std::string& comment : comments)
    out << "c " << comment << '\n';
  out << "p cnf " << recorder.get_variable_count() << ' ' << recorder.get_clause_count() << '\n';
  // Streams take most of the time of writing where they are asked for each number.
  constexpr std::size_t kLongest = 12;
  std::array<char, 1U << 16U> buffer;
  char* const full = buffer.data() + buffer.size() - kLongest;
  char* end = buffer.data();
  for (const int literal : recorder.get_clauses()) {
    end = std::to_chars(end, end + kLongest, literal).ptr;
    *end++ = literal == 0 ? '\n' : ' ';
    if (end < full) continue;
    out.write(buffer.data(), end - buffer.data());
    end = buffer.data();
  }
  out.write(buffer.data(), end - buffer.data());
}

// Answers -------------------------------------------------------------------------------------

bool Solution::value(int literal) const {
  const auto variable = static_cast<std::size_t>(std::abs(literal));
  const bool holds = variable < values.size() && values[variable] > 0;
  return holds == (literal > 0);
}

Solution read_solution(std::istream& in, std::uint64_t variable_count) {
  Solution solution;
  solution.values.resize(variable_count + 1);
  bool answered = false;
  bool complete = false;
  std::uint32_t line = 0;
  std::uint32_t answer_line = 0;
  for (std::string text; std::getline(in, text);) {
    ++line;
    std::string_view rest = text;
    const std::string_view kind = take_word(&rest);
    if (kind.empty() || kind == "c") continue;
    if (kind == "s") {
      if (answered) throw DimacsError(line, "a second answer");
      solution.result = read_result(trim(rest), line);
      answered = true;
      answer_line = line;
    } else if (kind == "v") {
      for (std::string_view word = take_word(&rest); !word.empty(); word = take_word(&rest)) {
        if (complete) throw DimacsError(line, "a literal after the 0 that ends the model");
        const int literal = read_literal(word, line, variable_count);
        if (literal == 0) {
          complete = true;
          continue;
        }
        signed char& value = solution.values[static_cast<std::size_t>(std::abs(literal))];
        const signed char sign = literal > 0 ? 1 : -1;
        if (value == -sign) {
          throw DimacsError(line, "the model has both " + std::to_string(literal) + " and " +
                                      std::to_string(-literal));
        }
        value = sign;
      }
    } else {
      throw DimacsError(line, "expected a line that begins with 'c', 's' or 'v'");
    }
  }
  if (!answered) throw DimacsError(line + 1, "there is no answer, a line that begins with 's'");
  if (solution.result == SatSolver::Result::sat && !complete) {
    throw DimacsError(answer_line, "the model is not ended by 0");
  }
  return solution;
}

}  // namespace vorn::bv
