// Faults of the theory for the command: what models break of arrays and functions is found out, and
// then forgotten. The linker sends the calls here (--wrap); the variable FAULT of the environment
// says what is forgotten: the conflicts of arrays, of which values are made all the same, or all
// statements.
#include <vector>

#include "tests/defects/wrap.h"
#include "vorn/theories/array_graph.h"
#include "vorn/theories/interpretation.h"

namespace vorn::theories {

using defects::is_wanted;

using Terms = std::vector<const Term*>;

VORN_WRAP(find_conflicts, forget_conflicts,
          "_ZN4vorn8theories10ArrayGraph14find_conflictsEPSt6vectorIPKNS_4TermESaIS5_EE", void,
          ArrayGraph* graph, Terms* lemmas);

void forget_conflicts(ArrayGraph* graph, Terms* lemmas) {
  const std::size_t before = lemmas->size();
  find_conflicts(graph, lemmas);
  if (is_wanted("forget_conflicts")) lemmas->resize(before);
}

VORN_WRAP(interpret, forget_statements,
          "_ZN4vorn8theories14Interpretation9interpretERNS_11TermManagerEPNS0_11TheoryTermsERKSt"
          "8functionIFNS_7QNumberEPKNS_4TermEEEPNS_9semantics9EvaluatorEPKNS_15TerminationTestE",
          Terms, Interpretation* self, TermManager& manager, TheoryTerms* terms,
          const Interpretation::StandInValue& stand_in_value, semantics::Evaluator* candidate,
          const TerminationTest* test);

Terms forget_statements(Interpretation* self, TermManager& manager, TheoryTerms* terms,
                        const Interpretation::StandInValue& stand_in_value,
                        semantics::Evaluator* candidate, const TerminationTest* test) {
  Terms lemmas = interpret(self, manager, terms, stand_in_value, candidate, test);
  if (is_wanted("forget_statements")) lemmas.clear();
  return lemmas;
}

}  // namespace vorn::theories
