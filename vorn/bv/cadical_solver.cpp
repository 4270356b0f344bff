// CaDiCaL behind the SatSolver interface. CaDiCaL aborts the process when it is used against its
// contract, so the contract is checked here first.
//
// It does not expect that memory ends: what its functions leave behind then, its destructor trips
// over. Such an instance is left alone for the rest of the process, with all its memory, in a list
// where those who look for leaks find it.
#include <algorithm>
#include <atomic>
#include <cadical.hpp>
#include <cstdlib>
#include <deque>
#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "vorn/bv/sat_solver.h"
#include "vorn/utils/output_file.h"

namespace vorn::bv {
namespace {

/// Passes CaDiCaL's question on to a termination test. A proof that cannot be written, of which
/// CaDiCaL takes no notice, ends the search too. So does an exception of the test: CaDiCaL, which
/// could not be used any more had it gone through it, is left as by any other end.
class TestTerminator final : public CaDiCaL::Terminator {
 public:
  bool terminate() override {
    try {
      return (test != nullptr && test->terminate()) || (proof && proof->has_failed());
    } catch (...) {
      failure = std::current_exception();
      return true;
    }
  }
  /// Throws what the test threw, if it did.
  void rethrow() {
    if (failure != nullptr) std::rethrow_exception(std::exchange(failure, nullptr));
  }

  const TerminationTest* test = nullptr;  // not owned
  std::optional<OutputFile> proof;        // while it is written

 private:
  std::exception_ptr failure;
};

/// An instance, with the link that it needs once it is abandoned: there is no memory for one then.
struct Instance {
  CaDiCaL::Solver solver;
  Instance* next = nullptr;
};

std::atomic<Instance*> abandoned = nullptr;

void abandon(Instance* instance) {
  instance->next = abandoned.load();
  while (!abandoned.compare_exchange_weak(instance->next, instance)) {
  }
}

class CadicalSolver final : public SatSolver {
 public:
  CadicalSolver(int seed, const std::string& proof_file) : instance(std::make_unique<Instance>()) {
    CaDiCaL::Solver& solver = instance->solver;
    solver.set("quiet", 1);  // standard output belongs to the caller
    if (!solver.set("seed", seed)) {
      throw std::invalid_argument("SAT solver: " + std::to_string(seed) + " is no seed");
    }
    if (!proof_file.empty()) trace_proof(proof_file);
    solver.connect_terminator(&terminator);
  }
  ~CadicalSolver() override {
    if (instance) instance->solver.disconnect_terminator();
  }
  CadicalSolver(const CadicalSolver&) = delete;
  CadicalSolver& operator=(const CadicalSolver&) = delete;

  int new_variable() override {
    if (variable_count == std::numeric_limits<int>::max()) {
      throw std::length_error("SAT solver: too many variables");
    }
    return ++variable_count;
  }

  void add_clause(std::span<const int> literals) override {
    for (const int literal : literals)
      check_literal(literal);
    last_result = Result::unknown;
    if (pending.empty() || pending.back().capacity() - pending.back().size() <= literals.size()) {
      const std::size_t chunk = kFirstChunk << std::min(pending.size(), kDoublings);
      pending.emplace_back().reserve(std::max(chunk, literals.size() + 1));
    }
    pending.back().insert(pending.back().end(), literals.begin(), literals.end());
    pending.back().push_back(0);
    ++clause_count;
  }

  void assume(int literal) override {
    check_literal(literal);
    last_result = Result::unknown;
    ask([&](CaDiCaL::Solver& s) { s.assume(literal); });
  }

  Result solve() override {
    last_result = Result::unknown;
    ask([&](CaDiCaL::Solver& s) {
      if (terminator.terminate() || !pass_clauses(s)) {
        s.reset_assumptions();
        s.limit("conflicts", -1);
        return;
      }
      const int status = s.solve();
      if (status == kSatisfiable) last_result = Result::sat;
      if (status == kUnsatisfiable) last_result = Result::unsat;
    });
    terminator.rethrow();
    return last_result;
  }

  void limit_conflicts(int count) override {
    ask([&](CaDiCaL::Solver& s) { s.limit("conflicts", count); });
  }

  void close_proof() override {
    if (!terminator.proof) return;
    ask([](CaDiCaL::Solver& s) { s.close_proof_trace(); });
    terminator.proof->commit();
    terminator.proof.reset();
  }

  bool value(int literal) const override {
    check_literal(literal);
    if (last_result != Result::sat) {
      throw std::logic_error("SAT solver: a value was asked for where there is no model");
    }
    return (instance->solver.val(std::abs(literal)) > 0) == (literal > 0);
  }

  bool failed(int literal) const override {
    check_literal(literal);
    if (last_result != Result::unsat) {
      throw std::logic_error("SAT solver: a failed assumption was asked for without unsat");
    }
    return instance->solver.failed(literal);
  }

  void set_termination_test(const TerminationTest* test) override { terminator.test = test; }

  std::uint64_t get_variable_count() const override {
    return static_cast<std::uint64_t>(variable_count);
  }
  std::uint64_t get_clause_count() const override { return clause_count; }

 private:
  // Answers of CaDiCaL, those of the SAT competition.
  static constexpr int kSatisfiable = 10;
  static constexpr int kUnsatisfiable = 20;

  // Literals in chunks of clauses: few where there is little to write, then so many that a chunk
  // goes back to the system.
  static constexpr std::size_t kFirstChunk = std::size_t{1} << 12;
  static constexpr std::size_t kDoublings = 6;

  /// Has the instance do something. Throws std::bad_alloc, from then on always, when memory ends.
  template <class Step>
  void ask(const Step& step) {
    if (!instance) throw std::bad_alloc();
    try {
      step(instance->solver);
    } catch (const std::bad_alloc&) {
      last_result = Result::unknown;
      abandon(instance.release());
      throw;
    }
  }

  /// Hands over the clauses that CaDiCaL has not got yet. False where it was told to stop.
  ///
  /// Its tables are as long as the number of variables when it first hears of one, and are doubled
  /// when there are more. So it hears of all variables before the first clause.
  bool pass_clauses(CaDiCaL::Solver& s) {
    s.reserve(variable_count);
    while (!pending.empty()) {
      for (const int literal : pending.front())
        s.add(literal);
      pending.pop_front();
      if (terminator.terminate()) return false;
    }
    return true;
  }

  void trace_proof(const std::string& file) {
    terminator.proof.emplace(file, "the proof");
    instance->solver.set("binary", 0);
    if (!instance->solver.trace_proof(terminator.proof->get_file(), file.c_str())) {
      throw std::runtime_error("cannot write the proof to " + file);
    }
  }

  void check_literal(int literal) const {
    if (literal == 0 || literal > variable_count || literal < -variable_count) {
      throw std::invalid_argument("SAT solver: " + std::to_string(literal) +
                                  " is no literal of the variables made so far");
    }
  }

  TestTerminator terminator;
  std::unique_ptr<Instance> instance;    // null once memory has ended
  std::deque<std::vector<int>> pending;  // clauses, each ended by 0, for the next call of solve
  int variable_count = 0;
  std::uint64_t clause_count = 0;
  Result last_result = Result::unknown;
};

}  // namespace

std::unique_ptr<SatSolver> make_cadical_solver(int seed, const std::string& proof_file) {
  return std::make_unique<CadicalSolver>(seed, proof_file);
}

}  // namespace vorn::bv
