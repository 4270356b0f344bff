// A portfolio of two SAT solvers: one CNF goes to CaDiCaL in a thread and to another solver in a
// process, and the first answer counts. Finds x, y, z of binary16 with (x + y) + z != x + (y + z).
//
//     portfolio [SOLVER]     a program that reads DIMACS and prints "s ..." and "v ...": picosat
//
// Exit status 77 where the solver is not installed.
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include "vorn/bv/aig.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/cnf.h"
#include "vorn/bv/dimacs.h"
#include "vorn/bv/sat_solver.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/term_manager.h"

using vorn::Term;
using Result = vorn::bv::SatSolver::Result;

namespace {

/// Ends a search once another has answered.
class Stop : public vorn::TerminationTest {
 public:
  bool terminate() const override { return requested; }
  std::atomic<bool> requested = false;
};

/// A SAT solver that runs as a process of its own.
class Process {
 public:
  Process(const std::string& solver, const std::string& cnf, const std::string& answer) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, answer.c_str(), O_WRONLY | O_CREAT, 0600);
    std::string program = solver;
    std::string input = cnf;
    char* const arguments[] = {program.data(), input.data(), nullptr};
    started = posix_spawnp(&pid, solver.c_str(), &actions, nullptr, arguments, environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
  }
  ~Process() {
    if (started) waitpid(pid, nullptr, 0);
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  bool is_started() const { return started; }
  void stop() const { kill(pid, SIGKILL); }
  /// Waits for its end; whether it has an answer, by the exit statuses of the SAT competitions. The
  /// process can still be told to stop.
  bool wait() const {
    siginfo_t end = {};
    waitid(P_PID, static_cast<id_t>(pid), &end, WEXITED | WNOWAIT);
    return end.si_code == CLD_EXITED && (end.si_status == 10 || end.si_status == 20);
  }

 private:
  pid_t pid = 0;
  bool started = false;
};

const Term* difference(vorn::TermManager& terms, const std::vector<const Term*>& v) {
  const Term* rne = terms.make_fprounding_even();
  const Term* left = terms.make_fp_add(rne, terms.make_fp_add(rne, v[0], v[1]), v[2]);
  const Term* right = terms.make_fp_add(rne, v[0], terms.make_fp_add(rne, v[1], v[2]));
  return terms.make_or(terms.make_fp_lt(left, right), terms.make_fp_lt(right, left));
}

}  // namespace

int main(int argc, char** argv) {
  const std::string other = argc > 1 ? argv[1] : "picosat";

  // The formula, down to clauses. The recorder keeps what it passes on to CaDiCaL.
  vorn::TermManager terms;
  std::vector<const Term*> constants;
  for (const char* name : {"x", "y", "z"}) {
    constants.push_back(
        terms.make_constant(terms.make_unique_symbol(name, terms.get_fp_type(5, 10))));
  }
  const Term* formula = difference(terms, constants);
  vorn::solver::Solver owner(terms);
  owner.assert_formula(formula);
  vorn::bv::Aig graph;
  vorn::bv::BitBlaster blaster(terms, graph);
  vorn::bv::ClauseRecorder clauses(vorn::bv::make_cadical_solver());
  vorn::bv::Cnf cnf(graph, clauses);
  for (const Term* conjunct : owner.encode({}).conjuncts)
    cnf.assert_true(blaster.blast_bool(conjunct));
  // Where each bit is found in an answer, the least significant bit first.
  std::vector<std::vector<int>> bits(constants.size());
  for (const auto& input : blaster.get_inputs()) {
    for (std::size_t i = 0; i < constants.size(); ++i) {
      if (input.constant != owner.get_encoding(constants[i])) continue;
      for (const vorn::bv::Lit bit : input.bits)
        bits[i].push_back(cnf.literal(bit));
    }
  }

  // The race.
  char folder[] = "/tmp/portfolio.XXXXXX";
  if (mkdtemp(folder) == nullptr) return 1;
  const std::string cnf_file = std::string(folder) + "/formula.cnf";
  const std::string answer_file = std::string(folder) + "/answer";
  std::ofstream file(cnf_file);
  vorn::bv::write_dimacs(file, clauses);
  file.close();
  Stop stop;
  clauses.set_termination_test(&stop);
  const Process process(other, cnf_file, answer_file);
  Result own = Result::unknown;
  vorn::bv::Solution answer;
  if (process.is_started()) {
    std::thread search([&] {
      own = clauses.solve();
      if (own != Result::unknown) process.stop();
    });
    if (process.wait()) {
      std::ifstream in(answer_file);
      answer = vorn::bv::read_solution(in, clauses.get_variable_count());
      if (answer.result != Result::unknown) stop.requested = true;
    }
    search.join();
  }
  std::remove(cnf_file.c_str());
  std::remove(answer_file.c_str());
  rmdir(folder);
  if (!process.is_started()) {
    std::cout << other << " is not installed\n";
    return 77;
  }
  const bool own_first = answer.result == Result::unknown;
  std::cerr << (own_first ? "CaDiCaL" : other) << " was first\n";
  if ((own_first ? own : answer.result) != Result::sat) return 1;

  // The way back, and a check that trusts neither solver.
  vorn::semantics::Evaluator model(terms, [&](const Term* constant) {
    vorn::QNumber value = 0;
    for (std::size_t i = 0; i < constants.size(); ++i) {
      if (constants[i] != constant) continue;
      for (std::size_t bit = bits[i].size(); bit-- > 0;) {
        const bool set = own_first ? clauses.value(bits[i][bit]) : answer.value(bits[i][bit]);
        value = value * 2 + (set ? 1 : 0);
      }
    }
    return value;
  });
  const bool holds = model.evaluate(formula) == 1;
  for (const Term* constant : constants) {
    const Term* value =
        vorn::semantics::make_literal(terms, constant->get_type(), model.evaluate(constant));
    std::cerr << constant->to_string() << " = " << value->to_string() << '\n';
  }
  std::cout << (holds ? "addition is not associative\n" : "the model is wrong\n");
  return holds ? 0 : 1;
}
