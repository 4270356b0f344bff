// The solver: assertions, levels and checks. What is asked of an answer is in answers.cpp.
#include "vorn/c/solver.h"

#include <algorithm>
#include <memory>
#include <stdexcept>

#include "vorn/c/guard.h"
#include "vorn/c/handles.h"
#include "vorn/c/options.h"

using namespace vorn::c;
using vorn::Answer;
using vorn::Term;

namespace vorn::c {

Answer TimedSolver::check_sat(std::span<const Term* const> assumed) {
  /// The time of the check, which ends with it whatever it throws.
  class Clock {
   public:
    Clock(Stop& counted, double seconds) : stop(counted) { stop.start(seconds); }
    ~Clock() { stop.end(); }
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;

   private:
    Stop& stop;
  };
  const Clock clock(stop, limit);
  const Answer found = Solver::check_sat(assumed);
  reason = Solver::get_reason_unknown();
  if (reason == "resource limit") reason = stop.is_requested() ? "interrupted" : "timeout";
  return found;
}

}  // namespace vorn::c

TimedSolver& vorn_solver::get_engine() {
  if (!engine) {
    options.termination_test = &stop;
    engine = std::make_unique<TimedSolver>(owner->terms, options, stop, time_limit);
  }
  return *engine;
}

std::vector<const Term*> vorn_solver::list(bool is_tracked) const {
  std::vector<const Term*> found;
  for (const Asserted& asserted : assertions.get_items()) {
    if (asserted.is_tracked == is_tracked) found.push_back(asserted.term);
  }
  return found;
}

void vorn_solver::forget_answer() {
  answer.reset();
  assumed.clear();
}

namespace {

const Term* get_formula(const vorn_manager& manager, const vorn_term* record) {
  const Term* formula = get(manager, record, "the formula");
  if (manager.terms.is_bool_type(formula->get_type())) return formula;
  throw std::invalid_argument("expected a formula of Bool, got a term of " +
                              formula->get_type()->to_string());
}

void check_answer_room(vorn_solver& solver) {
  solver.forget_answer();
  solver.owner->tidy();
}

void assert_formula(vorn_solver& solver, const vorn_term* record, bool is_tracked) {
  const Term* formula = get_formula(*solver.owner, record);
  check_answer_room(solver);
  solver.assertions.make_room();
  if (is_tracked) {
    solver.get_engine();  // options are settled in either case
  } else {
    solver.get_engine().assert_formula(formula);
  }
  solver.assertions.add({formula, is_tracked});
}

/// The tracked assertions, and behind them the assumptions of the check.
std::vector<const Term*> list_assumed(const vorn_solver& solver, vorn_term* const* assumptions,
                                      std::size_t count) {
  if (count != 0) check_pointer(assumptions, "the list of assumptions");
  std::vector<const Term*> assumed = solver.list(true);
  for (std::size_t i = 0; i < count; ++i)
    assumed.push_back(get_formula(*solver.owner, assumptions[i]));
  return assumed;
}

}  // namespace

vorn_status vorn_solver_create(vorn_manager* manager, vorn_solver** result) {
  return produce(manager, __func__, result, [&] {
    vorn_solver* solver = manager->solver_records.take();
    solver->owner = manager;
    try {
      manager->solvers.push_back(solver);
    } catch (...) {
      manager->solver_records.give_back(solver);
      throw;
    }
    solver->is_open = true;
    return solver;
  });
}

vorn_status vorn_solver_destroy(vorn_solver* solver) {
  return enter(solver, __func__, [&] {
    vorn_manager* manager = solver->owner;
    solver->engine.reset();
    solver->assertions.clear();
    solver->forget_answer();
    solver->options = {};
    solver->time_limit = 0;
    solver->stop.clear();
    solver->is_open = false;
    std::erase(manager->solvers, solver);
    manager->solver_records.give_back(solver);
  });
}

vorn_status vorn_solver_set_option(vorn_solver* solver, const char* name, const char* value) {
  return enter(solver, __func__, [&] {
    set_option(*solver, get_text(name, "the name"), get_text(value, "the value"));
  });
}

vorn_status vorn_solver_get_option(vorn_solver* solver, const char* name, char** result) {
  return produce(solver, __func__, result,
                 [&] { return copy_text(get_option(*solver, get_text(name, "the name"))); });
}

// Assertions and levels -----------------------------------------------------------------------

vorn_status vorn_solver_assert(vorn_solver* solver, vorn_term* formula) {
  return enter(solver, __func__, [&] { assert_formula(*solver, formula, false); });
}

vorn_status vorn_solver_assert_tracked(vorn_solver* solver, vorn_term* formula) {
  return enter(solver, __func__, [&] { assert_formula(*solver, formula, true); });
}

vorn_status vorn_solver_push(vorn_solver* solver) {
  return enter(solver, __func__, [&] {
    check_answer_room(*solver);
    solver->assertions.push();
    try {
      solver->get_engine().push();
    } catch (...) {
      solver->assertions.pop();
      throw;
    }
  });
}

vorn_status vorn_solver_pop(vorn_solver* solver) {
  return enter(solver, __func__, [&] {
    if (solver->assertions.get_level() == 0) throw Failure(VORN_WRONG_STATE, "no level is open");
    solver->forget_answer();
    solver->get_engine().pop();
    solver->assertions.pop();
    solver->owner->tidy();
  });
}

vorn_status vorn_solver_reset(vorn_solver* solver) {
  return enter(solver, __func__, [&] {
    solver->forget_answer();
    if (solver->engine) solver->engine->reset_assertions();
    solver->assertions.clear();
    solver->owner->tidy();
  });
}

vorn_status vorn_solver_get_assertions(vorn_solver* solver, vorn_term_list* result) {
  return list(solver, __func__, result, [&](vorn_term_list* filled) {
    std::vector<const Term*> terms;
    for (const Asserted& asserted : solver->assertions.get_items())
      terms.push_back(asserted.term);
    fill_list(*solver->owner, terms, filled);
  });
}

// Checks --------------------------------------------------------------------------------------

vorn_status vorn_solver_check(vorn_solver* solver, vorn_term* const* assumptions, size_t count,
                              vorn_answer* result) {
  return answer(solver, __func__, result, [&] {
    std::vector<const Term*> assumed = list_assumed(*solver, assumptions, count);
    check_answer_room(*solver);
    const Answer found = solver->get_engine().check_sat(assumed);
    if (found == Answer::unknown && solver->get_engine().get_reason_unknown() == "interrupted") {
      solver->stop.clear();
    }
    solver->assumed = std::move(assumed);
    solver->answer = found;
    return static_cast<vorn_answer>(found);
  });
}

vorn_status vorn_solver_interrupt(vorn_solver* solver) {
  if (solver == nullptr) return VORN_NULL_POINTER;
  if (!solver->is_open) return VORN_RELEASED_HANDLE;
  solver->stop.request();
  return VORN_OK;
}

vorn_status vorn_solver_clear_interrupt(vorn_solver* solver) {
  return enter(solver, __func__, [&] { solver->stop.clear(); });
}
