// Models: what the SAT solver or the local search found, its check, and the values that it gives.
#include <algorithm>
#include <stdexcept>

#include "vorn/semantics/open_terms.h"
#include "vorn/solver/back_end.h"
#include "vorn/solver/congruences.h"
#include "vorn/solver/solver.h"
#include "vorn/theories/interpretation.h"

namespace vorn::solver {
namespace {

QNumber read_bits(const bv::Cnf& cnf, std::span<const bv::Lit> bits) {
  mpz_class value;
  for (std::size_t i = 0; i < bits.size(); ++i) {
    if (cnf.value(bits[i])) mpz_setbit(value.get_mpz_t(), i);
  }
  return QNumber::from_mpz(value);
}

}  // namespace

void Solver::read_model() {
  model.clear();
  open_conversions.clear();
  interpretation->clear();
  for (const bv::BitBlaster::Input& input : back_end->circuits->blaster.get_inputs()) {
    model.emplace(input.constant, read_bits(back_end->circuits->cnf, input.bits));
  }
}

/// Takes the model that a search by values found.
void Solver::read_found_model(std::span<const std::pair<const Term*, QNumber>> values) {
  model.clear();
  open_conversions.clear();
  interpretation->clear();
  for (const auto& [constant, value] : values)
    model.emplace(model_key(constant), value);
}

/// What has a constant's value in the model: of a float or rounding mode, what encodes it.
const Term* Solver::model_key(const Term* constant) const {
  const Term* encoding = get_back_end().encoder->get_cached(constant);
  return encoding != nullptr ? encoding : constant;
}

QNumber Solver::value_of(const Term* constant) {
  return constant->get_type()->has_bits() ? bits_of(constant) : interpretation->get_value(constant);
}

/// What no assertion mentions is zero, false, or to nearest even.
QNumber Solver::bits_of(const Term* constant) const {
  const auto entry = model.find(model_key(constant));
  return entry == model.end() ? QNumber() : entry->second;
}

/// What the model makes of an application that the theory leaves open. A conversion that is not
/// encoded, be it that rewriting dropped it, has the value of one that is, if the arguments agree.
QNumber Solver::open_value(const Term* t, std::span<const QNumber> values) {
  if (t->get_symbol()->is_function()) return interpretation->apply(t->get_symbol(), values);
  const bool selects = semantics::is_selection(t);
  const Term* witness = selects ? t : encoded_form(t);
  const Term* choice = back_end->encoder->get_choice(witness);
  const auto found = model.find(choice);
  const QNumber own = found == model.end() ? QNumber() : found->second;
  if (selects) return semantics::get_chosen_sign(own, t->get_type(), values[0]);
  const OpenKey key{t->get_symbol(), {values.begin(), values.end()}};
  if (back_end->encoder->get_cached(witness) == nullptr) {
    const auto known = open_conversions.find(key);
    return known == open_conversions.end() ? QNumber() : known->second.value;
  }
  const OpenConversion& first =
      open_conversions.emplace(key, OpenConversion{witness, own}).first->second;
  if (first.value != own) clashes.emplace_back(first.witness, witness);
  return first.value;
}

semantics::Evaluator Solver::evaluate_model() {
  return semantics::Evaluator(
      mgr, [this](const Term* constant) { return value_of(constant); },
      [this](const Term* t, std::span<const QNumber> values) { return open_value(t, values); },
      &interpretation->get_arrays());
}

/// Makes arrays and functions of the model's values of reads and applications. Returns what the
/// model breaks; then there are none.
std::vector<const Term*> Solver::interpret_model() {
  semantics::Evaluator evaluator = evaluate_model();
  evaluator.set_termination_test(options.termination_test);
  return interpretation->interpret(
      mgr, &back_end->theory, [this](const Term* stand_in) { return bits_of(stand_in); },
      &evaluator, options.termination_test);
}

/// States what the model breaks of arrays and functions. A statement that comes again is broken by
/// exact evaluation only, and not by the circuits that it was made of.
Solver::Refinement Solver::refine() {
  if (back_end->theory.is_empty()) return Refinement::none;
  clashes.clear();
  const std::vector<const Term*> lemmas = interpret_model();
  if (separate_conversions()) return Refinement::stated;
  if (lemmas.empty()) return Refinement::none;
  bool is_new = false;
  if (interpretation->assumes_infinity()) {
    std::size_t& first = back_end->first_of_infinity;
    first = std::min(first, back_end->conjuncts.get_size());
  }
  for (const Term* lemma : lemmas) {
    if (!stated.insert(lemma).second) continue;
    is_new = true;
    ++statistics.lemmas;
    back_end->conjuncts.add(back_end->translator.translate(lemma, &back_end->conjuncts));
  }
  if (!is_new) return Refinement::repeated;
  if (back_end->circuits->is_traced) start_traces();
  return Refinement::stated;
}

bool Solver::model_holds() {
  semantics::Evaluator evaluator = evaluate_model();
  evaluator.set_termination_test(options.termination_test);
  bool holds = true;
  clashes.clear();
  // What was encoded comes first: its conversions decide for those that rewriting dropped.
  for (const Term* assertion : get_encoded_assertions())
    evaluator.evaluate(assertion);
  if (back_end->top_level) {
    for (const rewrite::Definition& definition : back_end->top_level->get_definitions())
      model.insert_or_assign(definition.constant, evaluator.evaluate(definition.value));
  }
  for (const Term* assertion : assertions.get_items()) {
    if (evaluator.evaluate(assertion).sign() == 0) holds = false;
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
  semantics::Evaluator evaluator = evaluate_model();
  return semantics::make_literal(mgr, t->get_type(), evaluator.evaluate(t),
                                 interpretation->get_arrays());
}

FunctionValue Solver::get_function(const Symbol* function) {
  if (!has_model) throw std::logic_error("there is no model");
  semantics::ArrayValues& arrays = interpretation->get_arrays();
  const DataType* type = function->get_output_type();
  FunctionValue value;
  const theories::FunctionTable* table = interpretation->find_function(function);
  if (table == nullptr) {
    value.otherwise = semantics::make_literal(mgr, type, arrays.make_plain(type), arrays);
    return value;
  }
  for (const auto& [arguments, result] : table->entries) {
    FunctionValue::Entry& entry = value.entries.emplace_back();
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      entry.arguments.push_back(
          semantics::make_literal(mgr, function->get_domain()[i], arguments[i], arrays));
    }
    entry.value = semantics::make_literal(mgr, type, result, arrays);
  }
  value.otherwise = semantics::make_literal(mgr, type, table->otherwise, arrays);
  return value;
}

}  // namespace vorn::solver
