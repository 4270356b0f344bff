#include "vorn/solver/solver.h"

#include <fmt/format.h>

#include <cerrno>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "vorn/bv/aig.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/cnf.h"
#include "vorn/bv/dimacs.h"
#include "vorn/bv/sat_solver.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/solver/evaluator.h"
#include "vorn/solver/open_terms.h"
#include "vorn/solver/translator.h"

namespace vorn::solver {
namespace {

/// Adds the time of its life to a total, in seconds.
class Stopwatch {
 public:
  explicit Stopwatch(double* sum) : total(sum), start(std::chrono::steady_clock::now()) {}
  ~Stopwatch() {
    *total += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }
  Stopwatch(const Stopwatch&) = delete;
  Stopwatch& operator=(const Stopwatch&) = delete;

 private:
  double* total;
  std::chrono::steady_clock::time_point start;
};

/// Below this number of clauses, dropping garbage is not worth the time.
constexpr std::uint64_t kLeastRebuildLimit = 8'000;

QNumber read_bits(const bv::Cnf& cnf, std::span<const bv::Lit> bits) {
  mpz_class value;
  for (std::size_t i = 0; i < bits.size(); ++i) {
    if (cnf.value(bits[i])) mpz_setbit(value.get_mpz_t(), i);
  }
  return QNumber::from_mpz(value);
}

}  // namespace

std::unique_ptr<fp::FpBvEncoder> make_encoder(EncoderKind kind, TermManager& manager) {
  if (kind == EncoderKind::base) return std::make_unique<fp::FpBvEncoder>(&manager, &manager);
  return std::make_unique<fp::IeeeBvEncoder>(&manager, &manager);
}

/// Encodings and translations follow the levels. The circuits and the SAT solver only grow.
struct Solver::BackEnd {
  /// Everything from the graph down.
  struct Circuits {
    Circuits(TermManager& manager, const Options& options, bool traced = false)
        : blaster(manager, aig), sat(make_solver(options, traced)), cnf(aig, *sat) {
      aig.set_termination_test(options.termination_test);
      sat->set_termination_test(options.termination_test);
    }

    std::unique_ptr<bv::SatSolver> make_solver(const Options& wanted, bool traced) {
      if (!traced) return bv::make_cadical_solver(wanted.seed);
      auto solver = bv::make_cadical_solver(wanted.seed, wanted.proof_file);
      if (wanted.cnf_file.empty()) return solver;
      auto with_clauses = std::make_unique<bv::ClauseRecorder>(std::move(solver));
      recorder = with_clauses.get();
      return with_clauses;
    }

    bv::Aig aig;
    bv::BitBlaster blaster;
    const bv::ClauseRecorder* recorder = nullptr;  // the solver, where clauses are to be written
    std::unique_ptr<bv::SatSolver> sat;
    bv::Cnf cnf;
  };

  BackEnd(TermManager& manager, const Options& options)
      : encoder(make_encoder(options.encoder, manager)),
        translator(manager, *encoder),
        circuits(std::make_unique<Circuits>(manager, options)) {
    encoder->set_termination_test(options.termination_test);
  }

  std::unique_ptr<fp::FpBvEncoder> encoder;
  Translator translator;
  std::unique_ptr<Circuits> circuits;
};

Solver::Solver(TermManager& manager, const Options& chosen)
    : mgr(manager),
      options(chosen),
      back_end(std::make_unique<BackEnd>(manager, chosen)),
      levels(1),
      rebuild_limit(kLeastRebuildLimit) {}

Solver::~Solver() = default;

void Solver::log(const std::string& message) const {
  if (options.logger != nullptr) options.logger->log(message);
}

// Assertions and levels -----------------------------------------------------------------------

void Solver::assert_formula(const Term* f) {
  if (!mgr.is_bool_type(f->get_type())) {
    throw std::invalid_argument("an assertion must be a Bool, got a term of " +
                                f->get_type()->to_string());
  }
  leave_assumptions();
  levels.back().conjuncts.push_back(translate(f, levels.back()));
  levels.back().assertions.push_back(f);
}

/// The translation of `f`, which belongs to the innermost level, as do the constraints beside it.
const Term* Solver::translate(const Term* f, Level& level) {
  const Stopwatch watch(&statistics.translation_seconds);
  // If a part of f is refused, what was translated before it stays in use: so do its constraints.
  return back_end->translator.translate(f, &level.conjuncts);
}

void Solver::push() {
  leave_assumptions();
  back_end->translator.push();
  levels.emplace_back();
}

void Solver::pop() {
  leave_assumptions();
  if (levels.size() == 1) throw std::logic_error("pop without a matching push");
  back_end->translator.pop();
  if (const int activation = levels.back().activation; activation != 0) {
    back_end->circuits->sat->add_clause({-activation});
    has_garbage = true;
  }
  levels.pop_back();
}

/// The level of the last check's assumptions stays while its model may be asked for.
void Solver::leave_assumptions() {
  has_model = false;
  is_unsat = false;
  assumptions.clear();
  if (!in_assumptions) return;
  in_assumptions = false;
  has_garbage = true;
  pop();
}

void Solver::reset_assertions() {
  back_end = std::make_unique<BackEnd>(mgr, options);
  levels.assign(1, Level());
  assumptions.clear();
  in_assumptions = false;
  has_model = false;
  is_unsat = false;
  has_garbage = false;
  rebuild_limit = kLeastRebuildLimit;
}

/// Translations are full of terms that nobody asked for: they are dropped with the rest and made
/// again from the assertions.
void Solver::collect_garbage(std::span<const Term* const> kept) {
  leave_assumptions();
  std::vector<const Term*> roots(kept.begin(), kept.end());
  for (const Level& level : levels)
    roots.insert(roots.end(), level.assertions.begin(), level.assertions.end());
  back_end.reset();
  model.clear();
  open_conversions.clear();
  clashes.clear();
  mgr.collect(roots);

  back_end = std::make_unique<BackEnd>(mgr, options);
  has_garbage = false;
  rebuild_limit = kLeastRebuildLimit;
  for (Level& level : levels) {
    if (&level != &levels.front()) back_end->translator.push();
    level = {std::move(level.assertions), {}};
    for (const Term* f : level.assertions)
      level.conjuncts.push_back(translate(f, level));
  }
}

// Decision ------------------------------------------------------------------------------------

void Solver::enter_assumptions(std::span<const Term* const> assumed) {
  leave_assumptions();
  if (assumed.empty()) return;
  push();
  in_assumptions = true;
  for (const Term* formula : assumed) {
    assumptions.push_back({translate(formula, levels.back())});
    levels.back().assertions.push_back(formula);
  }
}

smt2::Answer Solver::check_sat(std::span<const Term* const> assumed) {
  if (options.is_traced() && statistics.checks != 0) {
    throw std::invalid_argument("a formula and its proof can be written for one check only");
  }
  enter_assumptions(assumed);
  ++statistics.checks;
  if (options.is_traced()) start_traces();
  try {
    return decide();
  } catch (const Terminated&) {
    return give_up("resource limit");
  } catch (const std::length_error&) {
    return give_up("memout");  // the graph or the SAT solver has no room left
  }
}

/// Searches until a model holds, an answer is unsat, or the search ends without either.
smt2::Answer Solver::decide() {
  for (;;) {
    const smt2::Answer answer = search();
    is_unsat = answer == smt2::Answer::unsat;
    if (answer != smt2::Answer::sat) return answer;
    read_model();
    const bool holds = model_holds();
    if (separate_conversions()) continue;
    if (holds) {
      has_model = true;
      return answer;
    }
    if (options.encoder != EncoderKind::base) {
      throw smt2::InternalError("internal error: the model found does not satisfy an assertion");
    }
    reason_unknown = "the model found holds for the base encoder only, not for IEEE 754";
    return smt2::Answer::unknown;
  }
}

smt2::Answer Solver::search() {
  const Stopwatch watch(&statistics.search_seconds);
  if (has_garbage && back_end->circuits->sat->get_clause_count() > rebuild_limit) {
    replace_circuits();
    write_clauses();
    rebuild_limit = kLeastRebuildLimit + 2 * back_end->circuits->sat->get_clause_count();
  }
  write_clauses();
  bv::SatSolver& sat = *back_end->circuits->sat;
  log(fmt::format("searching: {} terms, {} conjunctions, {} variables, {} clauses",
                  mgr.get_term_count(), back_end->circuits->aig.get_and_count(),
                  sat.get_variable_count(), sat.get_clause_count()));
  if (back_end->circuits->recorder != nullptr) write_cnf();
  for (const Level& level : levels) {
    if (level.activation != 0) sat.assume(level.activation);
  }
  for (const Assumption& assumption : assumptions) {
    if (assumption.literal != 0) sat.assume(assumption.literal);
  }

  switch (sat.solve()) {
    case bv::SatSolver::Result::sat:
      return smt2::Answer::sat;
    case bv::SatSolver::Result::unsat:
      return smt2::Answer::unsat;
    case bv::SatSolver::Result::unknown:
      break;
  }
  return give_up("resource limit");
}

smt2::Answer Solver::give_up(const char* reason) {
  statistics.interrupted = true;
  reason_unknown = reason;
  return smt2::Answer::unknown;
}

/// Hands what is new to the SAT solver.
void Solver::write_clauses() {
  write_level(levels.front(), true);
  for (std::size_t i = 1; i < levels.size(); ++i)
    write_level(levels[i], options.is_traced());
  BackEnd::Circuits& circuits = *back_end->circuits;
  for (Assumption& assumption : assumptions) {
    const bv::Lit lit = circuits.blaster.blast_bool(assumption.translated);
    if (options.is_traced()) {
      circuits.cnf.assert_true(lit);
      continue;
    }
    assumption.literal = circuits.cnf.literal(lit, bv::Cnf::Polarity::positive);
  }
}

void Solver::write_level(Level& level, bool permanent) {
  BackEnd::Circuits& circuits = *back_end->circuits;
  for (; level.written < level.conjuncts.size(); ++level.written) {
    const bv::Lit lit = circuits.blaster.blast_bool(level.conjuncts[level.written]);
    if (permanent) {
      circuits.cnf.assert_true(lit);
      continue;
    }
    if (level.activation == 0) level.activation = circuits.sat->new_variable();
    const int holds = circuits.cnf.literal(lit, bv::Cnf::Polarity::positive);
    circuits.sat->add_clause({-level.activation, holds});
  }
}

/// Leaves behind all that was written; what is alive is written again by the next search. When
/// that is for the sake of garbage, the next time is when as much has come on top of it, so that
/// the work is shared out evenly.
void Solver::replace_circuits(bool traced) {
  back_end->circuits = std::make_unique<BackEnd::Circuits>(mgr, options, traced);
  for (Level& level : levels) {
    level.written = 0;
    level.activation = 0;
  }
  has_garbage = false;
}

void Solver::set_seed(std::uint32_t seed) {
  const int value = static_cast<int>(seed % (1U << 30U));
  if (value == options.seed) return;
  leave_assumptions();
  options.seed = value;
  replace_circuits();
}

std::vector<std::size_t> Solver::get_unsat_assumptions() {
  if (!is_unsat) throw std::logic_error("the last answer is not unsat");
  std::vector<std::size_t> failed;
  for (std::size_t i = 0; i < assumptions.size(); ++i) {
    // As a clause, an assumption may have been used in any case.
    const int literal = assumptions[i].literal;
    if (literal == 0 || back_end->circuits->sat->failed(literal)) failed.push_back(i);
  }
  return failed;
}

// What leaves the solver ------------------------------------------------------------------------

std::vector<const Term*> Solver::get_assertions() const {
  std::vector<const Term*> all;
  for (const Level& level : levels)
    all.insert(all.end(), level.assertions.begin(), level.assertions.end());
  return all;
}

Encoding Solver::encode(std::span<const Term* const> assumed) {
  enter_assumptions(assumed);
  Encoding encoding;
  encoding.assertions = get_assertions();
  for (const Level& level : levels) {
    encoding.conjuncts.insert(encoding.conjuncts.end(), level.conjuncts.begin(),
                              level.conjuncts.end());
  }
  for (const Assumption& assumption : assumptions)
    encoding.conjuncts.push_back(assumption.translated);
  encoding.open_terms = find_open_terms(encoding.assertions);
  for (const Term* t : encoding.open_terms)
    encoding.choices.push_back(back_end->encoder->get_choice(t));
  for (const Term* f : state_congruences(mgr, *back_end->encoder, encoding.open_terms))
    encoding.conjuncts.push_back(f);
  return encoding;
}

const Term* Solver::get_encoding(const Term* constant) const {
  if (const Term* encoding = back_end->encoder->get_cached(constant)) return encoding;
  const DataType::Kind kind = constant->get_type()->get_kind();
  const bool is_plain = kind == DataType::Kind::boolean || kind == DataType::Kind::bit_vector;
  return is_plain ? constant : nullptr;
}

/// Starts the back end of the one check: what was written so far was not traced.
void Solver::start_traces() {
  const std::vector<const Term*> open_terms = find_open_terms(get_assertions());
  for (const Term* f : state_congruences(mgr, *back_end->encoder, open_terms))
    levels.back().conjuncts.push_back(f);
  replace_circuits(true);
}

void Solver::write_cnf() const {
  std::ofstream out(options.cnf_file);
  bv::write_dimacs(out, *back_end->circuits->recorder);
  out.close();
  if (!out) {
    throw std::runtime_error("cannot write the clauses to " + options.cnf_file + ": " +
                             std::generic_category().message(errno));
  }
}

// Models --------------------------------------------------------------------------------------

void Solver::read_model() {
  model.clear();
  open_conversions.clear();
  for (const bv::BitBlaster::Input& input : back_end->circuits->blaster.get_inputs()) {
    model.emplace(input.constant, read_bits(back_end->circuits->cnf, input.bits));
  }
}

QNumber Solver::value_of(const Term* constant) const {
  // A floating-point or rounding-mode constant has the value of what encodes it; what no assertion
  // mentions is zero, false, or to nearest even.
  const Term* encoding = back_end->encoder->get_cached(constant);
  const auto entry = model.find(encoding != nullptr ? encoding : constant);
  return entry == model.end() ? QNumber() : entry->second;
}

/// What the model makes of an application that the theory leaves open.
QNumber Solver::open_value(const Term* t, std::span<const QNumber> values) {
  const Term* choice = back_end->encoder->get_choice(t);
  const auto found = model.find(choice);
  const QNumber own = found == model.end() ? QNumber() : found->second;
  if (t->get_tag() == SymbolTag::fp_min || t->get_tag() == SymbolTag::fp_max) {
    const DataType* type = t->get_type();
    const bool negative_first = values[0].test_bit(type->get_e() + type->get_m());
    return QNumber(own.test_bit(negative_first ? 1 : 0) ? 1 : 0);
  }
  const OpenKey key{t->get_symbol(), {values.begin(), values.end()}};
  const OpenConversion& first = open_conversions.emplace(key, OpenConversion{t, own}).first->second;
  if (first.value != own) clashes.emplace_back(first.witness, t);
  return first.value;
}

Evaluator Solver::evaluate_model() {
  return Evaluator(
      mgr, [this](const Term* constant) { return value_of(constant); },
      [this](const Term* t, std::span<const QNumber> values) { return open_value(t, values); });
}

bool Solver::model_holds() {
  Evaluator evaluator = evaluate_model();
  bool holds = true;
  clashes.clear();
  for (const Level& level : levels) {
    for (const Term* assertion : level.assertions) {
      if (evaluator.evaluate(assertion).sign() == 0) holds = false;
    }
  }
  return holds;
}

/// States for each clash of the last model that equal arguments have equal results. The statements
/// speak of the conversions' own constants only, so they do no harm to later levels. False if there
/// is nothing to state.
bool Solver::separate_conversions() {
  BackEnd::Circuits& circuits = *back_end->circuits;
  for (const auto& [a, b] : clashes) {
    const Term* congruence = state_congruence(mgr, *back_end->encoder, a, b);
    circuits.cnf.assert_true(circuits.blaster.blast_bool(congruence));
  }
  return !clashes.empty();
}

const Term* Solver::get_value(const Term* t) {
  if (!has_model) throw std::logic_error("there is no model");
  Evaluator evaluator = evaluate_model();
  return make_literal(mgr, t->get_type(), evaluator.evaluate(t));
}

Statistics Solver::get_statistics() const {
  Statistics s = statistics;
  s.terms = mgr.get_term_count();
  s.aig_nodes = back_end->circuits->aig.get_and_count();
  s.variables = back_end->circuits->sat->get_variable_count();
  s.clauses = back_end->circuits->sat->get_clause_count();
  return s;
}

}  // namespace vorn::solver
