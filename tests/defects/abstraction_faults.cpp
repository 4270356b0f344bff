// Faults of what is stated in the place of circuits, for random scripts to find. The linker sends
// the calls here (--wrap); the variable FAULT of the environment says what goes wrong.
#include "tests/defects/wrap.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/solver/result_lemmas.h"
#include "vorn/solver/solver.h"

namespace vorn::solver {

using defects::is_wanted;

namespace {

using Facts = std::vector<const Term*>;
using Values = std::span<const QNumber>;

}  // namespace

VORN_WRAP(real_facts, wrong_facts,
          "_ZN4vorn6solver18state_result_factsERNS_11TermManagerEPKNS_4TermE", Facts,
          TermManager& manager, const Term* t);
VORN_WRAP(real_near, wrong_near,
          "_ZN4vorn6solver17state_result_nearERNS_11TermManagerEPKNS_4TermESt4spanIKNS_7QNumberE"
          "Lm18446744073709551615EERS8_SA_",
          const Term*, TermManager& manager, const Term* t, Values operands, const QNumber& value,
          const QNumber& candidate);
VORN_WRAP(real_refine, wrong_refine, "_ZN4vorn6solver6Solver14refine_resultsEv", bool,
          Solver* self);

/// That no result is zero.
Facts wrong_facts(TermManager& manager, const Term* t) {
  Facts facts = real_facts(manager, t);
  if (is_wanted("fact_not_zero")) {
    const Term* zero = semantics::make_literal(manager, t->get_type(), QNumber());
    facts.push_back(manager.make_not(manager.make_equal(t, zero)));
  }
  return facts;
}

/// That the result is the value, whatever the operands are.
const Term* wrong_near(TermManager& manager, const Term* t, Values operands, const QNumber& value,
                       const QNumber& candidate) {
  if (!is_wanted("lemma_everywhere")) return real_near(manager, t, operands, value, candidate);
  return manager.make_equal(t, semantics::make_literal(manager, t->get_type(), value));
}

bool wrong_refine(Solver* self) {
  return !is_wanted("no_refinement") && real_refine(self);
}

}  // namespace vorn::solver
