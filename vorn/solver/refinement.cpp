// Refinement of what stands for operations whose circuits were put off (abstraction.h).
#include "vorn/semantics/application.h"
#include "vorn/semantics/open_terms.h"
#include "vorn/solver/back_end.h"
#include "vorn/solver/result_lemmas.h"
#include "vorn/solver/solver.h"
#include "vorn/theories/interpretation.h"

namespace vorn::solver {

/// States what costs little to say of the results of operations that were put off.
void Solver::state_facts() {
  BackEnd& end = *back_end;
  if (!end.abstraction) return;
  const std::vector<const Term*>& terms = end.abstraction->get_terms();
  for (; end.abstracted < terms.size(); ++end.abstracted) {
    ++statistics.abstracted;
    for (const Term* fact : state_result_facts(mgr, terms[end.abstracted]))
      end.lemmas.add(end.translator.translate(fact, &end.conjuncts));
  }
}

/// Whether the candidate's values of the constants make a model, whatever it has for results.
bool Solver::candidate_holds() {
  const bool has_circuits = !back_end->abstraction || back_end->abstraction->is_complete();
  if (has_circuits) return false;
  const bool is_interpreted = back_end->theory.is_empty() || interpret_model().empty();
  const bool holds = is_interpreted && model_holds() && clashes.empty();
  if (holds) return true;
  open_conversions.clear();
  interpretation->clear();
  clashes.clear();
  return false;
}

/// Finds the operations put off whose results in the candidate are not those of the operands'
/// values in it.
std::vector<Solver::WrongResult> Solver::find_wrong_results() {
  BackEnd& end = *back_end;
  // A conversion has its own choice here, as it has in the circuits.
  semantics::Evaluator candidate(
      mgr, [this](const Term* constant) { return bits_of(constant); },
      [this](const Term* t, std::span<const QNumber> values) {
        const auto found = model.find(back_end->encoder->get_choice(t));
        QNumber own = found == model.end() ? QNumber() : found->second;
        if (!semantics::is_selection(t)) return own;
        return semantics::get_chosen_sign(own, t->get_type(), values[0]);
      });
  candidate.set_termination_test(options.termination_test);
  for (const Term* t : end.theory.get_terms()) {
    if (theories::has_stand_in(t)) candidate.assume(t, bits_of(end.theory.get_stand_in(t)));
  }
  std::vector<WrongResult> wrong;
  for (const Term* t : end.abstraction->get_terms()) {
    if (end.abstraction->has_circuit(t)) continue;
    const Term* stand_in = end.abstraction->get_stand_in(t);
    // What no clause mentions has the right value.
    if (!model.contains(model_key(stand_in))) continue;
    std::vector<QNumber> operands;
    std::vector<const QNumber*> arguments;
    arguments.reserve(t->get_args().size());
    for (const Term* arg : t->get_args())
      operands.push_back(candidate.evaluate(arg));
    for (const QNumber& operand : operands)
      arguments.push_back(&operand);
    const QNumber value = semantics::apply(t, arguments, {});
    const QNumber found = bits_of(stand_in);
    candidate.assume(t, found);
    if (found != value) wrong.push_back({t, std::move(operands), value, found});
  }
  return wrong;
}

/// Excludes what the candidate has for the results of operations that were put off, where that is
/// wrong. False if it is nowhere.
bool Solver::refine_results() {
  BackEnd& end = *back_end;
  if (!end.abstraction || end.abstraction->is_complete()) return false;
  const std::vector<WrongResult> all = find_wrong_results();
  for (const WrongResult& wrong : all) {
    ++statistics.refinements;
    const Term* t = wrong.term;
    if (end.abstraction->take_lemma(t)) {
      const Term* lemma = state_result_near(mgr, t, wrong.operands, wrong.value, wrong.candidate);
      end.conjuncts.add(end.translator.translate(lemma, &end.conjuncts));
    } else {
      end.conjuncts.add(end.translator.translate_result(t, &end.conjuncts));
      end.abstraction->add_circuit(t);
      ++statistics.circuits;
    }
  }
  return !all.empty();
}

}  // namespace vorn::solver
