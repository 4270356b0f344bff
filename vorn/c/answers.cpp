// What is asked of the last check: values, refutations, reasons, and numbers.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "vorn/c/guard.h"
#include "vorn/c/handles.h"
#include "vorn/c/solver.h"

using namespace vorn::c;
using vorn::Answer;
using vorn::Term;
using vorn::solver::Statistics;

namespace {

void require(const vorn_solver& solver, Answer wanted) {
  if (solver.answer == wanted) return;
  static constexpr std::array kNames = {"sat", "unsat", "unknown"};
  const std::string last = solver.answer ? std::string("the last answer is ") +
                                               kNames.at(static_cast<std::size_t>(*solver.answer))
                                         : "there is no answer to ask about";
  throw Failure(VORN_WRONG_STATE, "allowed after " +
                                      std::string(kNames.at(static_cast<std::size_t>(wanted))) +
                                      " only: " + last);
}

/// The tracked assertions in the refutation, or the assumptions.
std::vector<const Term*> list_refuted(vorn_solver& solver, bool is_tracked) {
  require(solver, Answer::unsat);
  const std::size_t tracked = solver.list(true).size();
  std::vector<const Term*> refuted;
  for (const std::size_t position : solver.get_engine().get_unsat_assumptions()) {
    if ((position < tracked) == is_tracked) refuted.push_back(solver.assumed[position]);
  }
  return refuted;
}

/// Statistics are counts, or seconds.
struct Row {
  const char* name;
  std::uint64_t Statistics::*count = nullptr;
  double Statistics::*seconds = nullptr;
};

constexpr std::array kStatistics = {
    Row{"checks", &Statistics::checks},
    Row{"terms", &Statistics::terms},
    Row{"aig-nodes", &Statistics::aig_nodes},
    Row{"variables", &Statistics::variables},
    Row{"clauses", &Statistics::clauses},
    Row{"translation-seconds", nullptr, &Statistics::translation_seconds},
    Row{"search-seconds", nullptr, &Statistics::search_seconds},
    Row{"tried-models", &Statistics::tried_models},
    Row{"refutations", &Statistics::refutations},
    Row{"lemmas", &Statistics::lemmas},
};

}  // namespace

vorn_status vorn_solver_get_value(vorn_solver* solver, vorn_term* term, vorn_term** result) {
  return produce(solver, __func__, result, [&] {
    require(*solver, Answer::sat);
    const Term* asked = get(*solver->owner, term, "the term");
    return solver->owner->hold(solver->get_engine().get_value(asked));
  });
}

vorn_status vorn_solver_get_function(vorn_solver* solver, vorn_function* function,
                                     vorn_term_list* points, vorn_term** otherwise) {
  if (otherwise != nullptr) *otherwise = nullptr;
  return list(solver, __func__, points, [&](vorn_term_list* filled) {
    check_pointer(otherwise, "the place for the value elsewhere");
    require(*solver, Answer::sat);
    vorn_manager& manager = *solver->owner;
    const vorn::Symbol* symbol = get(manager, function, "the function");
    const vorn::FunctionValue value = solver->get_engine().get_function(symbol);
    std::vector<const Term*> terms;
    for (const vorn::FunctionValue::Entry& entry : value.entries) {
      terms.insert(terms.end(), entry.arguments.begin(), entry.arguments.end());
      terms.push_back(entry.value);
    }
    fill_list(manager, terms, filled);
    try {
      *otherwise = manager.hold(value.otherwise);
    } catch (...) {
      empty_list(manager, filled);
      throw;
    }
  });
}

vorn_status vorn_solver_get_unsat_assumptions(vorn_solver* solver, vorn_term_list* result) {
  return list(solver, __func__, result, [&](vorn_term_list* filled) {
    fill_list(*solver->owner, list_refuted(*solver, false), filled);
  });
}

vorn_status vorn_solver_get_unsat_core(vorn_solver* solver, vorn_term_list* result) {
  return list(solver, __func__, result, [&](vorn_term_list* filled) {
    fill_list(*solver->owner, list_refuted(*solver, true), filled);
  });
}

vorn_status vorn_solver_get_reason_unknown(vorn_solver* solver, char** result) {
  return produce(solver, __func__, result, [&] {
    require(*solver, Answer::unknown);
    return copy_text(solver->get_engine().get_reason_unknown());
  });
}

vorn_status vorn_solver_get_statistic(vorn_solver* solver, const char* name, double* result) {
  return answer(solver, __func__, result, [&] {
    const std::string_view wanted = get_text(name, "the name");
    for (const Row& row : kStatistics) {
      if (wanted != row.name) continue;
      const Statistics numbers = solver->engine ? solver->engine->get_statistics() : Statistics();
      return row.count != nullptr ? static_cast<double>(numbers.*row.count) : numbers.*row.seconds;
    }
    throw Failure(VORN_UNKNOWN_NAME, "there is no statistic '" + std::string(wanted) + "'");
  });
}

vorn_status vorn_solver_get_statistic_name(vorn_solver* solver, size_t position,
                                           const char** result) {
  return produce(solver, __func__, result, [&] {
    if (position < kStatistics.size()) return kStatistics.at(position).name;
    throw Failure(VORN_UNKNOWN_NAME, "no statistic at position " + std::to_string(position));
  });
}
