// What leaves the solver: its formula as a whole, for others to decide, and the traces of a check.
#include <stdexcept>

#include "vorn/bv/dimacs.h"
#include "vorn/semantics/open_terms.h"
#include "vorn/solver/back_end.h"
#include "vorn/solver/congruences.h"
#include "vorn/solver/kept_theory.h"
#include "vorn/solver/solver.h"
#include "vorn/utils/output_file.h"

namespace vorn::solver {

/// Which statements on arrays and functions are needed is found out by a check.
void Solver::find_lemmas() {
  const Answer answer = decide();
  has_model = false;
  is_unsat = false;
  if (answer != Answer::unknown) return;
  if (back_end->first_of_infinity < back_end->conjuncts.get_size()) {
    throw std::invalid_argument(
        "what has no model in which uninterpreted sorts are infinite cannot be encoded");
  }
  const TerminationTest* test = options.termination_test;
  if (test != nullptr && test->terminate()) throw Terminated();
}

Encoding Solver::encode(std::span<const Term* const> assumed, Theories theories) {
  enter_assumptions(assumed);
  // An encoding has every circuit, and a solver that makes one is seldom asked for answers.
  if (get_back_end().abstraction) {
    options.abstraction = AbstractionKind::none;
    drop_back_end();
  }
  is_deferred = false;
  if (options.substitutes()) {
    // Who decides the formula finds values for all constants in it.
    drop_back_end();
    options.substitution = false;
  }
  translate_new();
  const TestedTerms tested(mgr, options.termination_test);
  Encoding encoding;
  if (theories == Theories::kept) {
    const Term* mode = back_end->encoder->get_cached(mgr.make_fprounding_even());
    KeptTheory theory(mgr, back_end->theory, back_end->translator, mode->get_type()->get_width());
    theory.define(&back_end->conjuncts);
    encoding.kept = theory.get_symbols();
  } else if (theories == Theories::lemmas && !back_end->theory.is_empty()) {
    find_lemmas();
  }
  encoding.assertions = assertions.get_items();
  encoding.open_terms = semantics::find_open_terms(encoding.assertions);
  // Models are checked against the assertions as given, so what they leave open has a constant even
  // where rewriting has dropped it.
  std::vector<const Term*> encoded_terms;
  for (const Term* t : encoding.open_terms)
    encoded_terms.push_back(encoded_form(t));
  for (const Term* t : encoded_terms)
    back_end->translator.translate(t, &back_end->conjuncts);
  encoding.conjuncts = back_end->conjuncts.get_items();
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
  if (const Term* encoding = get_back_end().encoder->get_cached(constant)) return encoding;
  const DataType::Kind kind = constant->get_type()->get_kind();
  const bool is_plain = kind == DataType::Kind::boolean || kind == DataType::Kind::bit_vector;
  return is_plain ? constant : nullptr;
}

/// Starts the back end of the one check: what was written so far was not traced.
void Solver::start_traces() {
  const std::vector<const Term*> open_terms = semantics::find_open_terms(get_encoded_assertions());
  for (const Term* f : state_congruences(mgr, *back_end->encoder, open_terms))
    back_end->conjuncts.add(f);
  back_end->circuits = std::make_unique<BackEnd::Circuits>(mgr, options, true);
}

void Solver::write_cnf() const {
  OutputFile file(options.cnf_file, "the clauses");
  bv::write_dimacs(file.get_stream(), *back_end->circuits->recorder);
  file.commit();
}

}  // namespace vorn::solver
