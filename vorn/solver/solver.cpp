#include "vorn/solver/solver.h"

#include <fmt/format.h>

#include <chrono>
#include <stdexcept>

#include "vorn/bv/aig.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/cnf.h"
#include "vorn/bv/sat_solver.h"
#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/solver/evaluator.h"
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

struct Solver::BackEnd {
  BackEnd(TermManager& manager, const Options& options)
      : encoder(make_encoder(options.encoder, manager)),
        translator(manager, *encoder),
        blaster(manager, aig),
        sat(bv::make_cadical_solver()),
        cnf(aig, *sat) {
    encoder->set_termination_test(options.termination_test);
    sat->set_termination_test(options.termination_test);
  }

  std::unique_ptr<fp::FpBvEncoder> encoder;
  Translator translator;
  bv::Aig aig;
  bv::BitBlaster blaster;
  std::unique_ptr<bv::SatSolver> sat;
  bv::Cnf cnf;
};

Solver::Solver(TermManager& manager, const Options& chosen)
    : mgr(manager),
      options(chosen),
      back_end(std::make_unique<BackEnd>(manager, chosen)),
      levels(1) {}

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
  add(f);
}

void Solver::add(const Term* f) {
  const Stopwatch watch(&statistics.translation_seconds);
  Level& level = levels.back();
  std::vector<const Term*> constraints;
  const Term* translated = back_end->translator.translate(f, &constraints);
  level.assertions.push_back(f);
  level.conjuncts.insert(level.conjuncts.end(), constraints.begin(), constraints.end());
  level.conjuncts.push_back(translated);
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
  levels.pop_back();
}

/// The level of the last check's assumptions stays while its model may be asked for.
void Solver::leave_assumptions() {
  has_model = false;
  if (!in_assumptions) return;
  in_assumptions = false;
  pop();
}

void Solver::reset_assertions() {
  back_end = std::make_unique<BackEnd>(mgr, options);
  levels.assign(1, Level());
  in_assumptions = false;
  has_model = false;
}

// Decision ------------------------------------------------------------------------------------

smt2::Answer Solver::check_sat(std::span<const Term* const> assumptions) {
  leave_assumptions();
  if (!assumptions.empty()) {
    push();
    in_assumptions = true;
    for (const Term* assumption : assumptions)
      add(assumption);
  }
  ++statistics.checks;
  const smt2::Answer answer = search();
  if (answer != smt2::Answer::sat) return answer;
  read_model();
  if (model_holds()) {
    has_model = true;
    return answer;
  }
  if (options.encoder != EncoderKind::base) {
    throw std::logic_error("internal error: the model found does not satisfy an assertion");
  }
  reason_unknown = "the model found holds for the base encoder only, not for IEEE 754";
  return smt2::Answer::unknown;
}

smt2::Answer Solver::search() {
  const Stopwatch watch(&statistics.search_seconds);
  bv::Cnf& cnf = back_end->cnf;
  // What the first level says holds for good; the levels above hold as long as they are assumed.
  Level& base = levels.front();
  for (; base.permanent < base.conjuncts.size(); ++base.permanent) {
    cnf.assert_true(back_end->blaster.blast_bool(base.conjuncts[base.permanent]));
  }
  std::vector<int> assumed;
  for (std::size_t i = 1; i < levels.size(); ++i) {
    for (const Term* conjunct : levels[i].conjuncts) {
      const bv::Lit lit = back_end->blaster.blast_bool(conjunct);
      assumed.push_back(cnf.literal(lit, bv::Cnf::Polarity::positive));
    }
  }
  for (const int literal : assumed)
    back_end->sat->assume(literal);
  log(fmt::format("searching: {} terms, {} conjunctions, {} variables, {} clauses",
                  mgr.get_term_count(), back_end->aig.get_and_count(),
                  back_end->sat->get_variable_count(), back_end->sat->get_clause_count()));

  switch (back_end->sat->solve()) {
    case bv::SatSolver::Result::sat:
      return smt2::Answer::sat;
    case bv::SatSolver::Result::unsat:
      return smt2::Answer::unsat;
    case bv::SatSolver::Result::unknown:
      break;
  }
  statistics.interrupted = true;
  reason_unknown = "resource limit";
  return smt2::Answer::unknown;
}

// Models --------------------------------------------------------------------------------------

void Solver::read_model() {
  model.clear();
  for (const bv::BitBlaster::Input& input : back_end->blaster.get_inputs()) {
    model.emplace(input.constant, read_bits(back_end->cnf, input.bits));
  }
}

QNumber Solver::value_of(const Term* constant) const {
  // A floating-point or rounding-mode constant has the value of what encodes it; what no assertion
  // mentions is zero, false, or to nearest even.
  const Term* encoding = back_end->encoder->get_cached(constant);
  const auto entry = model.find(encoding != nullptr ? encoding : constant);
  return entry == model.end() ? QNumber() : entry->second;
}

bool Solver::model_holds() const {
  Evaluator evaluator(mgr, [this](const Term* constant) { return value_of(constant); });
  for (const Level& level : levels) {
    for (const Term* assertion : level.assertions) {
      if (evaluator.evaluate(assertion).sign() == 0) return false;
    }
  }
  return true;
}

const Term* Solver::get_value(const Term* t) {
  if (!has_model) throw std::logic_error("there is no model");
  Evaluator evaluator(mgr, [this](const Term* constant) { return value_of(constant); });
  return make_literal(mgr, t->get_type(), evaluator.evaluate(t));
}

Statistics Solver::get_statistics() const {
  Statistics s = statistics;
  s.terms = mgr.get_term_count();
  s.aig_nodes = back_end->aig.get_and_count();
  s.variables = back_end->sat->get_variable_count();
  s.clauses = back_end->sat->get_clause_count();
  return s;
}

}  // namespace vorn::solver
