// A checker of DRAT proofs that shares nothing with the library: it reads clauses and a proof and
// accepts the proof if every step follows and the empty clause is reached.
//   drat_check CNF PROOF      exit status 0: the proof refutes the clauses; 1: it does not
//
// A clause follows if asserting its negation fails by unit propagation (RUP), or if that holds for
// its resolvents on the first literal (RAT). As is the custom, units are never deleted. Made to be
// plain, for proofs of some ten thousand steps.
#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using Clause = std::vector<int>;

class Checker {
 public:
  bool is_refuted() const { return refuted; }

  void add(Clause clause) {
    std::sort(clause.begin(), clause.end());
    clause.erase(std::unique(clause.begin(), clause.end()), clause.end());
    const std::size_t index = clauses.size();
    by_literals[clause].push_back(index);
    // Literals that are not false come first, to be watched.
    const auto open = std::partition(clause.begin(), clause.end(),
                                     [this](int literal) { return get(literal) >= 0; });
    const auto count = open - clause.begin();
    clauses.push_back(clause);
    alive.push_back(true);
    for (std::size_t i = 0; i < std::min<std::size_t>(2, clause.size()); ++i)
      watches[clause[i]].push_back(index);
    if (count == 0) refuted = true;
    if (count == 1 && get(clause[0]) == 0) {
      assign(clause[0]);
      if (!propagate()) refuted = true;
    }
  }

  void remove(Clause clause) {
    std::sort(clause.begin(), clause.end());
    clause.erase(std::unique(clause.begin(), clause.end()), clause.end());
    const auto found = by_literals.find(clause);
    if (found == by_literals.end() || found->second.empty()) return;
    std::size_t open = 0;
    for (const int literal : clause)
      open += get(literal) >= 0 ? 1 : 0;
    if (open < 2) return;
    alive[found->second.back()] = false;
    found->second.pop_back();
  }

  bool follows(const Clause& clause) {
    if (refuted) return true;
    const std::size_t start = trail.size();
    bool holds = !deny(clause, 0);
    if (!holds && !clause.empty()) holds = resolvents_follow(clause.front());
    retract(start);
    return holds;
  }

 private:
  /// 1: true, -1: false, 0: open.
  int get(int literal) const {
    const auto found = values.find(literal);
    return found == values.end() ? 0 : found->second;
  }

  void assign(int literal) {
    values[literal] = 1;
    values[-literal] = -1;
    trail.push_back(literal);
  }

  void retract(std::size_t size) {
    for (; trail.size() > size; trail.pop_back()) {
      values.erase(trail.back());
      values.erase(-trail.back());
    }
    done = size;
  }

  /// Makes all literals but one false; false if that fails.
  bool deny(const Clause& clause, int except) {
    for (const int literal : clause) {
      if (literal == except) continue;
      if (get(literal) > 0) return false;
      if (get(literal) == 0) assign(-literal);
    }
    return propagate();
  }

  bool resolvents_follow(int pivot) {
    if (get(pivot) > 0) return true;
    const std::size_t start = trail.size();
    for (std::size_t i = 0; i < clauses.size(); ++i) {
      if (!alive[i] || std::find(clauses[i].begin(), clauses[i].end(), -pivot) == clauses[i].end())
        continue;
      const bool possible = deny(Clause(clauses[i]), -pivot);
      retract(start);
      if (possible) return false;
    }
    return true;
  }

  bool propagate() {
    while (done < trail.size()) {
      const int falsified = -trail[done++];
      std::vector<std::size_t> watchers = std::exchange(watches[falsified], {});
      for (std::size_t i = 0; i < watchers.size(); ++i) {
        if (visit(watchers[i], falsified)) continue;
        std::vector<std::size_t>& kept = watches[falsified];
        kept.insert(kept.end(), watchers.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                    watchers.end());
        return false;
      }
    }
    return true;
  }

  /// Finds another literal to watch, or a unit; false where all literals are false.
  bool visit(std::size_t index, int falsified) {
    if (!alive[index]) return true;
    Clause& clause = clauses[index];
    if (clause.size() > 1 && clause[0] == falsified) std::swap(clause[0], clause[1]);
    const bool satisfied = clause.size() > 1 && get(clause[0]) > 0;
    for (std::size_t k = 2; !satisfied && k < clause.size(); ++k) {
      if (get(clause[k]) < 0) continue;
      std::swap(clause[1], clause[k]);
      watches[clause[1]].push_back(index);
      return true;
    }
    watches[falsified].push_back(index);
    if (satisfied) return true;
    if (clause.size() == 1 || get(clause[0]) < 0) return false;
    assign(clause[0]);
    return true;
  }

  std::vector<Clause> clauses;
  std::vector<bool> alive;
  std::map<Clause, std::vector<std::size_t>> by_literals;
  std::map<int, std::vector<std::size_t>> watches;
  std::map<int, int> values;
  std::vector<int> trail;
  std::size_t done = 0;  // literals of the trail whose watchers have been visited
  bool refuted = false;
};

Clause read_clause(std::istream& in) {
  Clause clause;
  for (int literal = 0; in >> literal && literal != 0;)
    clause.push_back(literal);
  return clause;
}

bool read_formula(const std::string& file, Checker& checker) {
  std::ifstream in(file);
  std::string line;
  while (in.peek() == 'c' && std::getline(in, line)) {
  }
  if (!std::getline(in, line) || !line.starts_with("p cnf ")) return false;
  while (std::getline(in, line)) {
    if (line.empty()) continue;  // not to be taken for the empty clause
    std::istringstream text(line);
    checker.add(read_clause(text));
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  Checker checker;
  if (!read_formula(argv[1], checker)) {
    std::cout << "no DIMACS\n";
    return 2;
  }
  std::ifstream proof(argv[2]);
  std::size_t steps = 0;
  for (std::string line; !checker.is_refuted() && std::getline(proof, line);) {
    if (line.empty()) continue;
    std::istringstream text(line);
    if (line.starts_with("d ")) {
      text.ignore(2);
      checker.remove(read_clause(text));
      continue;
    }
    ++steps;
    const Clause clause = read_clause(text);
    if (!checker.follows(clause)) {
      std::cout << "step " << steps << " does not follow: " << line << '\n';
      return 1;
    }
    checker.add(clause);
  }
  std::cout << (checker.is_refuted() ? "verified" : "the proof does not end in a contradiction")
            << " after " << steps << " steps\n";
  return checker.is_refuted() ? 0 : 1;
}
