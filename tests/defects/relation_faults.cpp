// Lemmas that are no theorems, for random scripts to find.
#include "tests/defects/wrap.h"
#include "vorn/rewrite/relation_kinds.h"

namespace vorn::rewrite {

using defects::is_wanted;

VORN_WRAP(real_sum, wrong_sum, "_ZN4vorn7rewrite18sum_beside_operandERNS0_9RelationsEPKNS_4TermE",
          void, Relations& relations, const Term* t);
VORN_WRAP(real_root, wrong_root, "_ZN4vorn7rewrite15root_beside_oneERNS0_9RelationsEPKNS_4TermE",
          void, Relations& relations, const Term* t);
VORN_WRAP(real_remainder, wrong_remainder,
          "_ZN4vorn7rewrite16remainder_boundsERNS0_9RelationsEPKNS_4TermE", void,
          Relations& relations, const Term* t);

/// Adding 0 makes it greater.
void wrong_sum(Relations& relations, const Term* t) {
  if (!is_wanted("sum_not_strict")) return real_sum(relations, t);
  const Maker make(relations);
  for (const Term* operand : {t->get_arg(1), t->get_arg(2)}) {
    if (!relations.is_compared(t, operand)) continue;
    const Term* other = t->get_arg(operand == t->get_arg(1) ? 2 : 1);
    relations.state(make.implies(make.le(operand, t), make.lt(make.zero_of(t), other)));
  }
}

/// The root of 0 is above it.
void wrong_root(Relations& relations, const Term* t) {
  if (!is_wanted("root_strict")) return real_root(relations, t);
  const Maker make(relations);
  relations.state(make.implies(make.lt(t, make.one_of(t)), make.lt(t->get_arg(1), t)));
}

/// What is smaller than half of the divisor is not its own remainder.
void wrong_remainder(Relations& relations, const Term* t) {
  if (!is_wanted("remainder_short")) return real_remainder(relations, t);
  const Maker make(relations);
  TermManager& mgr = relations.get_manager();
  relations.state(make.either(mgr.make_fp_isnan(t),
                              make.lt(mgr.make_fp_abs(t), mgr.make_fp_abs(t->get_arg(0)))));
}

}  // namespace vorn::rewrite
