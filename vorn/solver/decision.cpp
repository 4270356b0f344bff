// How the solver decides: a short local search, then clauses and the SAT solver, and in between,
// the longer that takes, local search again.
#include <fmt/format.h>

#include <algorithm>
#include <new>
#include <stdexcept>

#include "vorn/solver/back_end.h"
#include "vorn/solver/solver.h"
#include "vorn/theories/read_away.h"

namespace vorn::solver {
namespace {

// The short search before anything else takes no more time than circuits do to be built; one in
// vain puts off the next ones, since a session goes on as it began. The long ones take about a
// tenth of the time of the SAT solver.
constexpr std::uint64_t kShortSearch = 4'000;  // effort for each operation of the formula
constexpr unsigned kLongestWait = 64;          // checks
constexpr int kFirstConflicts = 1'000;
constexpr int kMostConflicts = 1 << 30;
constexpr std::uint64_t kEffortPerConflict = 1'000;
// Looks of the ranges at a term, each of some microseconds.
constexpr std::uint64_t kRangesPerConflict = 4;
constexpr std::uint64_t kMostRangesPerConflict = 100;  // where the end is in sight
// Operations on assignments, as many as take about the time of a conflict.
constexpr std::uint64_t kTriesPerClause = 16;
constexpr std::uint64_t kFewestTriesPerConflict = 100'000;

}  // namespace

// Decision ------------------------------------------------------------------------------------

void Solver::enter_assumptions(std::span<const Term* const> assumed) {
  leave_assumptions();
  if (assumed.empty()) return;
  assertions.push();
  in_assumptions = true;
  assumptions.reserve(assumed.size());
  for (const Term* formula : assumed) {
    assertions.add(formula);
    assumptions.emplace_back();
  }
}

Answer Solver::check_sat(std::span<const Term* const> assumed) {
  if (options.is_traced() && statistics.checks != 0) {
    throw std::invalid_argument("a formula and its proof can be written for one check only");
  }
  ++statistics.checks;
  is_deferred = false;
  bool is_translated = false;
  bool is_full = false;
  try {
    free_discarded();
    enter_assumptions(assumed);
    translate_new();
    is_translated = true;
    const Answer answer = options.is_traced() ? decide_traced() : decide();
    if (options.is_traced()) back_end->circuits->sat->close_proof();
    return answer;
  } catch (const Terminated&) {
  } catch (const std::length_error&) {
    is_full = true;  // the graph or the SAT solver has no room left
  } catch (const std::bad_alloc&) {
    is_full = true;
  } catch (const std::invalid_argument&) {
    // What is refused leaves the ranges half done, and how formulas simplify each other.
    drop_ranges();
    if (!is_translated && options.substitutes()) discard(false);
    throw;
  } catch (...) {
    discard(is_translated);
    throw;
  }
  discard(is_translated);
  if (is_full) free_discarded();
  return give_up(is_full ? "memout" : "resource limit");
}

/// What arrays and functions need is found out first, so that the traces have it from their start.
Answer Solver::decide_traced() {
  if (!back_end->theory.is_empty()) {
    const Answer answer = decide();
    if (answer == Answer::unknown) return answer;
    has_model = false;
  }
  start_traces();
  return decide();
}

/// Searches until a model holds, an answer is unsat, or the search ends without either.
Answer Solver::decide() {
  const Stopwatch watch(&statistics.search_seconds);
  const TestedTerms tested(mgr, options.termination_test);
  back_end->local_search.reset();
  stated.clear();
  // What local search finds are models by IEEE 754, and a trace has no use for them.
  may_search_locally =
      options.local_search && !options.is_traced() && options.encoder == EncoderKind::ieee;
  if (try_shortly()) return Answer::sat;
  enter_ranges();
  enter_enumeration();
  const Answer answer = decide_by_search();
  back_end->enumeration.reset();
  leave_ranges();
  return answer;
}

/// Likewise, after the short local search.
Answer Solver::decide_by_search() {
  for (;;) {
    const Answer answer = search();
    if (answer == Answer::unsat && !is_refuted &&
        back_end->first_of_infinity < back_end->conjuncts.get_size()) {
      reason_unknown = "there is no model in which uninterpreted sorts are infinite";
      return Answer::unknown;
    }
    is_unsat = answer == Answer::unsat;
    if (answer != Answer::sat || has_model) return answer;
    read_model();
    if (candidate_holds()) {
      has_model = true;
      return answer;
    }
    if (refine_results()) continue;
    const Refinement refinement = refine();
    if (refinement == Refinement::stated) continue;
    const bool holds = model_holds();
    if (separate_conversions()) continue;
    if (holds && refinement == Refinement::none) {
      has_model = true;
      return answer;
    }
    if (options.encoder != EncoderKind::base) {
      throw InternalError("internal error: the model found does not satisfy an assertion");
    }
    reason_unknown = "the model found holds for the base encoder only, not for IEEE 754";
    return Answer::unknown;
  }
}

/// Whether local search finds a model at once.
bool Solver::try_shortly() {
  if (short_search.wait > 0) {
    --short_search.wait;
    return false;
  }
  if (!has_local_search()) return false;
  if (try_assignments(kShortSearch * back_end->local_search->get_size())) {
    short_search = {};
    return true;
  }
  short_search.wait = short_search.next_wait;
  short_search.next_wait = std::min(2 * short_search.next_wait + 1, kLongestWait);
  return false;
}

/// Whether this check has a local search, which is prepared when it is first wanted.
bool Solver::has_local_search() {
  if (!may_search_locally || back_end->local_search) return may_search_locally;
  std::optional<std::vector<const Term*>> formulas = back_end->formulas.get_items();
  if (!back_end->theory.is_empty()) {
    formulas = theories::read_away(mgr, &back_end->theory, get_encoded_assertions());
  }
  if (formulas) {
    back_end->local_search =
        search::LocalSearch::prepare(mgr, *formulas, static_cast<std::uint64_t>(options.seed));
  }
  may_search_locally = back_end->local_search.has_value();
  return may_search_locally;
}

/// Whether local search finds a model, which is then the solver's.
bool Solver::try_assignments(std::uint64_t effort) {
  if (!has_local_search()) return false;
  if (!back_end->local_search->run(effort, options.termination_test)) return false;
  std::vector<std::pair<const Term*, QNumber>> values;
  const search::LocalSearch& found = *back_end->local_search;
  for (const auto slot : found.get_constants())
    values.emplace_back(found.get_term(slot), found.get_value(slot));
  read_found_model(values);
  has_model = (back_end->theory.is_empty() || interpret_model().empty()) && model_holds();
  if (has_model) ++statistics.tried_models;
  // A processor that does not round as IEEE 754 has it may take anything for a model.
  log(has_model ? "local search found a model" : "local search found what is no model");
  may_search_locally = false;
  return has_model;
}

Answer Solver::search() {
  if (try_short_refutation()) return Answer::unsat;
  if (const Answer answer = try_all_shortly(); answer != Answer::unknown) return answer;
  replace_garbage();
  write_clauses();
  bv::SatSolver& sat = *back_end->circuits->sat;
  if (const std::string rules = describe_rewriting(); !rules.empty()) log("rewriting: " + rules);
  if (back_end->top_level) {
    log(fmt::format("substitution: {} definitions, {} truth values", statistics.definitions,
                    statistics.truths));
  }
  if (back_end->relations) {
    if (const std::string kinds = back_end->relations->describe_counts(); !kinds.empty()) {
      log("relations: " + kinds);
    }
  }
  log(fmt::format("searching: {} terms, {} conjunctions, {} variables, {} clauses",
                  mgr.get_term_count(), back_end->circuits->aig.get_and_count(),
                  sat.get_variable_count(), sat.get_clause_count()));
  if (back_end->circuits->recorder != nullptr) write_cnf();
  back_end->circuits->save_memory();
  for (int conflicts = kFirstConflicts;; conflicts *= 2) {
    for (const int activation : back_end->circuits->activations) {
      if (activation != 0) sat.assume(activation);
    }
    for (const Assumption& assumption : assumptions) {
      if (assumption.literal != 0) sat.assume(assumption.literal);
    }
    const bool has_company = may_search_locally || may_refute || back_end->enumeration;
    const bool is_limited = has_company && conflicts < kMostConflicts;
    if (is_limited) sat.limit_conflicts(conflicts);
    switch (sat.solve()) {
      case bv::SatSolver::Result::sat:
        return Answer::sat;
      case bv::SatSolver::Result::unsat:
        return Answer::unsat;
      case bv::SatSolver::Result::unknown:
        break;
    }
    const TerminationTest* test = options.termination_test;
    if (!is_limited || (test != nullptr && test->terminate())) return give_up("resource limit");
    const auto share = static_cast<std::uint64_t>(conflicts);
    if (try_assignments(kEffortPerConflict * share)) return Answer::sat;
    if (try_refutation(kRangesPerConflict * share, kMostRangesPerConflict * share))
      return Answer::unsat;
    const std::uint64_t tries =
        std::max(kTriesPerClause * sat.get_clause_count(), kFewestTriesPerConflict);
    if (const Answer tried = try_all(tries * share); tried != Answer::unknown) return tried;
  }
}

Answer Solver::give_up(const char* reason) {
  statistics.interrupted = true;
  reason_unknown = reason;
  return Answer::unknown;
}

/// Leaves behind all that was written where much of it is of no use any more; what is alive is
/// written again. The next time is when as much has come on top of it, so that the work is shared
/// out evenly.
void Solver::replace_garbage() {
  std::unique_ptr<BackEnd::Circuits>& circuits = back_end->circuits;
  if (!circuits || !circuits->has_garbage) return;
  if (circuits->sat->get_clause_count() <= circuits->rebuild_limit) return;
  circuits.reset();
  write_clauses();
  circuits->rebuild_limit =
      BackEnd::Circuits::kLeastRebuildLimit + 2 * circuits->sat->get_clause_count();
}

/// Hands what is new to the SAT solver.
void Solver::write_clauses() {
  if (!back_end->circuits) {
    back_end->circuits = std::make_unique<BackEnd::Circuits>(mgr, options);
  }
  BackEnd::Circuits& circuits = *back_end->circuits;
  write_trail(back_end->conjuncts, &circuits.written);
  write_trail(back_end->lemmas, &circuits.written_lemmas);
  for (Assumption& assumption : assumptions) {
    const bv::Lit lit = circuits.blaster.blast_bool(assumption.translated);
    if (options.is_traced()) {
      circuits.cnf.assert_true(lit);
      continue;
    }
    assumption.literal = circuits.cnf.literal(lit, bv::Cnf::Polarity::positive);
  }
}

/// What of a trail is not written yet, level by level.
void Solver::write_trail(const Trail<const Term*>& conjuncts, std::size_t* written) {
  for (std::size_t level = 0; level <= conjuncts.get_level(); ++level) {
    for (; *written < conjuncts.get_size(level); ++*written)
      write_conjunct(conjuncts.get_items()[*written], level);
  }
}

void Solver::write_conjunct(const Term* conjunct, std::size_t level) {
  BackEnd::Circuits& circuits = *back_end->circuits;
  const bv::Lit lit = circuits.blaster.blast_bool(conjunct);
  if (level == 0 || options.is_traced()) {
    circuits.cnf.assert_true(lit);
    return;
  }
  if (circuits.activations.size() <= level) circuits.activations.resize(level + 1);
  int& activation = circuits.activations[level];
  if (activation == 0) activation = circuits.sat->new_variable();
  const int holds = circuits.cnf.literal(lit, bv::Cnf::Polarity::positive);
  circuits.sat->add_clause({-activation, holds});
}

}  // namespace vorn::solver
