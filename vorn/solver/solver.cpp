#include "vorn/solver/solver.h"

#include <algorithm>
#include <limits>
#include <new>
#include <optional>
#include <stdexcept>

#include "vorn/fp/ieee_bv_encoder.h"
#include "vorn/solver/back_end.h"
#include "vorn/theories/interpretation.h"

namespace vorn::solver {

std::unique_ptr<fp::FpBvEncoder> make_encoder(EncoderKind kind, TermManager& manager) {
  if (kind == EncoderKind::base) return std::make_unique<fp::FpBvEncoder>(&manager, &manager);
  return std::make_unique<fp::IeeeBvEncoder>(&manager, &manager);
}

Solver::Solver(TermManager& manager, const Options& chosen)
    : mgr(manager), options(chosen), interpretation(std::make_unique<theories::Interpretation>()) {}

Solver::~Solver() = default;

void Solver::log(const std::string& message) const {
  if (options.logger != nullptr) options.logger->log(message);
}

Solver::BackEnd& Solver::get_back_end() const {
  if (!back_end) back_end = std::make_unique<BackEnd>(mgr, options);
  return *back_end;
}

void Solver::drop_back_end() {
  statistics = get_statistics();
  back_end.reset();
}

/// Puts away what was left half done: the circuits, or the translation too. To take it down takes
/// time that a check has not got when its time is up.
void Solver::discard(bool keep_translation) {
  statistics = get_statistics();
  if (!keep_translation || !back_end->translator.is_whole()) {
    discarded = std::move(back_end);
  } else {
    back_end->local_search.reset();
    back_end->enumeration.reset();
    drop_ranges();
    back_end->discarded = std::move(back_end->circuits);
  }
}

void Solver::free_discarded() {
  discarded.reset();
  if (back_end) back_end->discarded.reset();
}

// Assertions and levels -----------------------------------------------------------------------

void Solver::assert_formula(const Term* f) {
  if (!mgr.is_bool_type(f->get_type())) {
    throw std::invalid_argument("an assertion must be a Bool, got a term of " +
                                f->get_type()->to_string());
  }
  leave_assumptions();
  assertions.add(f);
  if (is_deferred || options.substitutes()) return;
  try {
    translate_new();
  } catch (const Terminated&) {
    is_deferred = true;
  } catch (const std::bad_alloc&) {
    is_deferred = true;
  } catch (const std::invalid_argument&) {
    assertions.retract(assertions.get_size() - 1, [](const Term*) {});
    back_end->simplified = assertions.get_size();
    back_end->formulas.retract(assertions.get_size(), [](const Term*) {});
    throw;
  } catch (...) {
    // Who knows where it came from in the midst of an encoding.
    assertions.retract(assertions.get_size() - 1, [](const Term*) {});
    drop_back_end();
    throw;
  }
  if (is_deferred) drop_back_end();
}

/// Translates the assertions, level by level, that are not translated yet.
void Solver::translate_new() {
  const Stopwatch watch(&statistics.translation_seconds);
  const TestedTerms tested(mgr, options.termination_test);
  BackEnd& end = get_back_end();
  for (;;) {
    const std::size_t level = end.conjuncts.get_level();
    simplify_level(level);
    for (; end.translated < end.formulas.get_size(); ++end.translated)
      translate_formula(end.translated);
    if (level == assertions.get_level()) return;
    if (end.top_level) end.top_level->push();
    end.formulas.push();
    end.translator.push();
    end.conjuncts.push();
    end.lemmas.push();
    if (end.relations) end.relations->push();
  }
}

/// Makes formulas of the assertions of a level, the innermost that is translated.
void Solver::simplify_level(std::size_t level) {
  BackEnd& end = *back_end;
  const std::size_t size = assertions.get_size(level);
  if (end.simplified == size) return;
  const auto group = std::span(assertions.get_items()).first(size).subspan(end.simplified);
  if (!end.top_level) {
    for (const Term* f : group)
      end.formulas.add(f);
  } else if (in_assumptions && level == assertions.get_level()) {
    for (const Term* f : group)
      end.formulas.add(end.top_level->simplify_assumption(f));
  } else {
    const std::uint64_t definitions = end.top_level->get_definition_count();
    const std::uint64_t truths = end.top_level->get_truth_count();
    for (const Term* f : end.top_level->simplify(group))
      end.formulas.add(f);
    statistics.definitions += end.top_level->get_definition_count() - definitions;
    statistics.truths += end.top_level->get_truth_count() - truths;
  }
  end.simplified = size;
}

/// A formula becomes a conjunct of its level, an assumption remains to be assumed.
void Solver::translate_formula(std::size_t index) {
  BackEnd& end = *back_end;
  const Term* f = end.formulas.get_items()[index];
  if (end.rewriter) f = end.rewriter->rewrite(f);
  // If a part of f is refused, what was translated before it stays in use: so do its constraints.
  const Term* translated = end.translator.translate(f, &end.conjuncts);
  const std::size_t first_assumed = end.formulas.get_size() - assumptions.size();
  const bool is_assumed = in_assumptions && end.formulas.get_level() == assertions.get_level();
  if (is_assumed) {
    assumptions[index - first_assumed].translated = translated;
  } else {
    end.conjuncts.add(translated);
  }
  state_facts();
  state_relations();
}

/// States what theorems say of terms that are new; the comparisons which these bring are new, too.
void Solver::state_relations() {
  BackEnd& end = *back_end;
  if (!end.relations) return;
  const Trail<const Term*>& encoded = end.translator.get_encoded();
  while (end.related < encoded.get_size()) {
    for (; end.related < encoded.get_size(); ++end.related) {
      const Term* t = encoded.get_items()[end.related];
      if (end.encoder->get_cached(t) != nullptr) end.relations->add(t);
    }
    for (const Term* lemma : end.relations->take_lemmas()) {
      if (end.rewriter) lemma = end.rewriter->rewrite(lemma);
      end.lemmas.add(end.translator.translate(lemma, &end.conjuncts));
    }
  }
}

/// What stands for `t`, a part of an assertion, where the encoder sees it.
const Term* Solver::encoded_form(const Term* t) const {
  const BackEnd& end = get_back_end();
  const Term* rewritten = end.rewriter ? end.rewriter->find(t) : nullptr;
  return rewritten == nullptr ? t : rewritten;
}

std::vector<const Term*> Solver::get_encoded_assertions() const {
  std::vector<const Term*> all = get_back_end().formulas.get_items();
  for (const Term*& f : all)
    f = encoded_form(f);
  return all;
}

std::string Solver::describe_rewriting() const {
  return back_end && back_end->rewriter ? back_end->rewriter->describe_counts() : "";
}

void Solver::push() {
  leave_assumptions();
  assertions.push();
}

void Solver::pop() {
  leave_assumptions();
  if (assertions.get_level() == 0) throw std::logic_error("pop without a matching push");
  pop_level();
}

void Solver::pop_level() {
  const std::size_t level = assertions.get_level();
  assertions.pop();
  if (!back_end || back_end->conjuncts.get_level() < level) return;
  try {
    if (back_end->top_level) back_end->top_level->pop();
    back_end->formulas.pop();
    back_end->simplified = std::min(back_end->simplified, assertions.get_size());
    if (back_end->ranges && back_end->ranges->get_level() >= level) back_end->ranges->pop();
    back_end->ranged = std::min(back_end->ranged, back_end->formulas.get_size());
    back_end->translator.pop();
    back_end->conjuncts.pop();
    back_end->lemmas.pop();
    if (back_end->relations) back_end->relations->pop();
    const std::size_t encoded = back_end->translator.get_encoded().get_size();
    back_end->related = std::min(back_end->related, encoded);
    if (back_end->abstraction) {
      back_end->abstracted =
          std::min(back_end->abstracted, back_end->abstraction->get_terms().size());
    }
    if (back_end->conjuncts.get_size() <= back_end->first_of_infinity) {
      back_end->first_of_infinity = std::numeric_limits<std::size_t>::max();
    }
    back_end->translated = std::min(back_end->translated, back_end->formulas.get_size());
    if (!back_end->circuits) return;
    BackEnd::Circuits& circuits = *back_end->circuits;
    circuits.written = std::min(circuits.written, back_end->conjuncts.get_size());
    circuits.written_lemmas = std::min(circuits.written_lemmas, back_end->lemmas.get_size());
    if (level >= circuits.activations.size()) return;
    const int activation = circuits.activations.back();
    circuits.activations.pop_back();
    if (activation == 0) return;
    circuits.has_garbage = true;
    circuits.sat->add_clause({-activation});
  } catch (const std::bad_alloc&) {
    drop_back_end();
  }
}

/// The level of the last check's assumptions stays while its model may be asked for.
void Solver::leave_assumptions() {
  has_model = false;
  is_unsat = false;
  assumptions.clear();
  if (!in_assumptions) return;
  in_assumptions = false;
  if (back_end && back_end->circuits) back_end->circuits->has_garbage = true;
  pop_level();
}

void Solver::reset_assertions() {
  drop_back_end();
  assertions.clear();
  assumptions.clear();
  in_assumptions = false;
  has_model = false;
  is_unsat = false;
  is_deferred = false;
}

void Solver::collect_garbage(std::span<const Term* const> kept) {
  leave_assumptions();
  std::vector<const Term*> roots(kept.begin(), kept.end());
  const std::vector<const Term*>& given = assertions.get_items();
  roots.insert(roots.end(), given.begin(), given.end());
  forget_terms();
  mgr.collect(roots);
}

/// Translations are full of terms that nobody asked for: they are dropped with the rest and made
/// again from the assertions.
void Solver::forget_terms() {
  leave_assumptions();
  drop_back_end();
  model.clear();
  open_conversions.clear();
  interpretation->clear();
  stated.clear();
  clashes.clear();
}

void Solver::set_seed(std::uint32_t seed) {
  const int value = static_cast<int>(seed % (1U << 30U));
  if (value == options.seed) return;
  leave_assumptions();
  options.seed = value;
  if (back_end) back_end->circuits.reset();
}

std::vector<std::size_t> Solver::get_unsat_assumptions() {
  if (!is_unsat) throw std::logic_error("the last answer is not unsat");
  if (is_enumerated) return get_enumerated_assumptions();
  if (is_refuted) return get_refuted_assumptions();
  std::vector<std::size_t> failed;
  for (std::size_t i = 0; i < assumptions.size(); ++i) {
    // As a clause, an assumption may have been used in any case.
    const int literal = assumptions[i].literal;
    if (literal == 0 || back_end->circuits->sat->failed(literal)) failed.push_back(i);
  }
  return failed;
}

Statistics Solver::get_statistics() const {
  Statistics s = statistics;
  s.terms = mgr.get_term_count();
  if (!back_end || !back_end->circuits) return s;
  s.aig_nodes = back_end->circuits->aig.get_and_count();
  s.variables = back_end->circuits->sat->get_variable_count();
  s.clauses = back_end->circuits->sat->get_clause_count();
  return s;
}

}  // namespace vorn::solver
