#include "vorn/solver/solver.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/semantics/open_terms.h"
#include "vorn/solver/back_end.h"
#include "vorn/solver/congruences.h"
#include "vorn/utils/output_file.h"

namespace vorn::solver {

std::unique_ptr<fp::FpBvEncoder> make_encoder(EncoderKind kind, TermManager& manager) {
  if (kind == EncoderKind::base) return std::make_unique<fp::FpBvEncoder>(&manager, &manager);
  return std::make_unique<fp::IeeeBvEncoder>(&manager, &manager);
}

Solver::Solver(TermManager& manager, const Options& chosen)
    : mgr(manager),
      options(chosen),
      back_end(std::make_unique<BackEnd>(manager, chosen)),
      activations(1) {}

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
  conjuncts.add(translate(f));
  assertions.add(f);
}

/// The translation of `f`, which belongs to the innermost level, as do the constraints beside it.
const Term* Solver::translate(const Term* f) {
  const Stopwatch watch(&statistics.translation_seconds);
  if (back_end->rewriter) f = back_end->rewriter->rewrite(f);
  // If a part of f is refused, what was translated before it stays in use: so do its constraints.
  return back_end->translator.translate(f, &conjuncts);
}

/// What stands for `t`, a part of an assertion, where the encoder sees it.
const Term* Solver::encoded_form(const Term* t) const {
  const Term* rewritten = back_end->rewriter ? back_end->rewriter->find(t) : nullptr;
  return rewritten == nullptr ? t : rewritten;
}

std::vector<const Term*> Solver::get_encoded_assertions() const {
  std::vector<const Term*> all = assertions.get_items();
  for (const Term*& f : all)
    f = encoded_form(f);
  return all;
}

std::string Solver::describe_rewriting() const {
  return back_end->rewriter ? back_end->rewriter->describe_counts() : "";
}

void Solver::push() {
  leave_assumptions();
  back_end->translator.push();
  assertions.push();
  conjuncts.push();
  activations.push_back(0);
}

void Solver::pop() {
  leave_assumptions();
  if (assertions.get_level() == 0) throw std::logic_error("pop without a matching push");
  back_end->translator.pop();
  if (const int activation = activations.back(); activation != 0) {
    back_end->circuits->sat->add_clause({-activation});
    has_garbage = true;
  }
  assertions.pop();
  conjuncts.pop();
  written = std::min(written, conjuncts.get_size());
  activations.pop_back();
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
  assertions.clear();
  conjuncts.clear();
  written = 0;
  activations.assign(1, 0);
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
  const std::vector<const Term*>& given = assertions.get_items();
  roots.insert(roots.end(), given.begin(), given.end());
  back_end.reset();
  model.clear();
  open_conversions.clear();
  clashes.clear();
  mgr.collect(roots);

  back_end = std::make_unique<BackEnd>(mgr, options);
  has_garbage = false;
  rebuild_limit = kLeastRebuildLimit;
  conjuncts.clear();
  written = 0;
  activations.assign(activations.size(), 0);
  std::size_t next = 0;
  for (std::size_t level = 0; level <= assertions.get_level(); ++level) {
    if (level != 0) {
      back_end->translator.push();
      conjuncts.push();
    }
    for (; next < assertions.get_size(level); ++next)
      conjuncts.add(translate(given[next]));
  }
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

Encoding Solver::encode(std::span<const Term* const> assumed) {
  enter_assumptions(assumed);
  Encoding encoding;
  encoding.assertions = assertions.get_items();
  encoding.open_terms = semantics::find_open_terms(encoding.assertions);
  // Models are checked against the assertions as given, so what they leave open has a constant even
  // where rewriting has dropped it.
  std::vector<const Term*> encoded_terms;
  for (const Term* t : encoding.open_terms)
    encoded_terms.push_back(encoded_form(t));
  for (const Term* t : encoded_terms)
    back_end->translator.translate(t, &conjuncts);
  encoding.conjuncts = conjuncts.get_items();
  for (const Assumption& assumption : assumptions)
    encoding.conjuncts.push_back(assumption.translated);
  for (std::size_t i = 0; i < encoded_terms.size(); ++i) {
    const bool is_same = encoded_terms[i]->get_symbol() == encoding.open_terms[i]->get_symbol();
    const Term* t = is_same ? encoded_terms[i] : encoding.open_terms[i];
    encoding.choices.push_back(back_end->encoder->get_choice(t));
  }
  for (const Term* f : state_congruences(mgr, *back_end->encoder, encoded_terms))
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
  const std::vector<const Term*> open_terms = semantics::find_open_terms(get_encoded_assertions());
  for (const Term* f : state_congruences(mgr, *back_end->encoder, open_terms))
    conjuncts.add(f);
  replace_circuits(true);
}

void Solver::write_cnf() const {
  OutputFile file(options.cnf_file, "the clauses");
  bv::write_dimacs(file.get_stream(), *back_end->circuits->recorder);
  file.commit();
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
