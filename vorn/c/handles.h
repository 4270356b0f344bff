// What is behind the handles of the C interface.
//
// All records belong to a manager and know it, so that a handle tells by itself whose it is. The
// manager keeps one record for each term that is held, found by the term's identifier; it is the
// holder of these terms, of what the solvers were given, and of what declared names stand for.
#ifndef VORN_C_HANDLES_H
#define VORN_C_HANDLES_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "vorn/c/pool.h"
#include "vorn/c/solver.h"
#include "vorn/c/stop.h"
#include "vorn/c/types.h"
#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/smt2/symbol_table.h"
#include "vorn/solver/solver.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/trail.h"

struct vorn_sort {
  vorn_manager* owner = nullptr;
  const vorn::DataType* type = nullptr;
};

struct vorn_term {
  vorn_manager* owner = nullptr;
  vorn_term* next = nullptr;
  const vorn::Term* term = nullptr;
  std::uint64_t references = 0;  // 0: released

  bool is_alive() const { return references != 0; }
};

struct vorn_function {
  vorn_manager* owner = nullptr;
  vorn_function* next = nullptr;
  const vorn::Symbol* symbol = nullptr;
  const vorn::Term* application = nullptr;  // any one: by it the symbol outlives collections
  std::uint64_t references = 0;

  bool is_alive() const { return references != 0; }
};

namespace vorn::c {

/// A solver that counts the time of each check.
class TimedSolver final : public solver::Solver {
 public:
  /// Borrows all of them.
  TimedSolver(TermManager& manager, const solver::Options& chosen, Stop& end, double seconds)
      : Solver(manager, chosen), stop(end), limit(seconds) {}

  void set_time_limit(double seconds) { limit = seconds; }
  Answer check_sat(std::span<const Term* const> assumed) override;
  std::string get_reason_unknown() const override { return reason; }

 private:
  Stop& stop;
  double limit;
  std::string reason;
};

/// An assertion, and whether it is given to checks as an assumption.
struct Asserted {
  const Term* term = nullptr;
  bool is_tracked = false;
};

}  // namespace vorn::c

struct vorn_solver {
  vorn_manager* owner = nullptr;
  vorn_solver* next = nullptr;
  bool is_open = false;
  vorn::c::Stop stop;
  vorn::solver::Options options;
  double time_limit = 0;                         // seconds; 0: none
  std::unique_ptr<vorn::c::TimedSolver> engine;  // made when the options are settled
  vorn::Trail<vorn::c::Asserted> assertions;
  std::vector<const vorn::Term*> assumed;  // in the last check, tracked assertions first
  std::optional<vorn::Answer> answer;      // of the last check, as long as one may ask about it

  bool is_alive() const { return is_open; }
  vorn::c::TimedSolver& get_engine();
  /// The assertions that are tracked, or those that are not.
  std::vector<const vorn::Term*> list(bool is_tracked) const;
  /// What the last check said is of no more interest.
  void forget_answer();
};

struct vorn_encoder {
  vorn_manager* owner = nullptr;
  vorn_encoder* next = nullptr;
  vorn_manager* target = nullptr;
  std::unique_ptr<vorn::fp::FpBvEncoder> encoder;  // null: destroyed

  bool is_alive() const { return encoder != nullptr; }
};

struct vorn_manager {
  explicit vorn_manager(bool rewrite);
  vorn_manager(const vorn_manager&) = delete;
  vorn_manager& operator=(const vorn_manager&) = delete;

  /// A reference to a term or function of this manager.
  vorn_term* hold(const vorn::Term* term);
  vorn_function* hold(const vorn::Symbol* symbol, const vorn::Term* application);
  /// Gives back a reference.
  void release(vorn_term* record);
  void release(vorn_function* record);
  const vorn_sort* find_sort(const vorn::DataType* type);
  /// Drops terms where there are many, and nobody has an answer that would be lost by it.
  void tidy();
  /// Drops terms.
  void collect();

  vorn::c::Stop stop;
  vorn::TermManager terms;
  vorn::smt2::SymbolTable symbols;      // what is declared
  std::string message;                  // what was wrong with the last call
  const char* fixed_message = nullptr;  // the same where there was no memory for a message
  std::vector<vorn_solver*> solvers;    // those that are open
  std::size_t encoders = 0;             // those that read or build here
  vorn::c::Pool<vorn_solver> solver_records;
  vorn::c::Pool<vorn_encoder> encoder_records;

 private:
  static constexpr std::uint64_t kLeastGarbageLimit = 500'000;

  void append_held(std::vector<const vorn::Term*>* held) const;

  vorn::c::Pool<vorn_term> term_records;
  vorn::c::Pool<vorn_function> function_records;
  std::vector<vorn_term*> held_terms;                    // by identifier
  std::map<std::string, vorn_function*> held_functions;  // by the name of the symbol
  std::deque<vorn_sort> sort_records;
  std::vector<const vorn_sort*> sorts;  // by identifier
  std::shared_ptr<const vorn::TermManager::Holder> holder;
  std::uint64_t garbage_limit = kLeastGarbageLimit;  // terms worth looking through
};

#endif
