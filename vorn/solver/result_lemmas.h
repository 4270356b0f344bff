// What is true of an operation's result and costs little to say: beside a constant that stands for
// the result, in the place of the operation's circuit.
//
// Facts hold of all operands: classes and signs, and what follows from an operand's side of one or
// zero. Lemmas are about operands near given values, and exclude one value of the result. All are
// theorems of IEEE 754 and of SMT-LIB's bit-vectors, in comparisons, tests of classes, connectives
// and operations on bits that are linear in the width.
#ifndef VORN_SOLVER_RESULT_LEMMAS_H
#define VORN_SOLVER_RESULT_LEMMAS_H

#include <span>
#include <vector>

#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn::solver {

/// Facts about the value of `t` for any operands. None of most kinds of operations.
std::vector<const Term*> state_result_facts(TermManager& manager, const Term* t);

/// That operands near some values, as Evaluator has them, have a result in some interval, which
/// does not have `candidate`, a wrong value for `t`: with the largest neighbourhoods for which that
/// is seen. They are intervals of numbers that have their first bits in common. If there are none,
/// that operands with these values have the result `value`.
const Term* state_result_near(TermManager& manager, const Term* t,
                              std::span<const QNumber> operands, const QNumber& value,
                              const QNumber& candidate);

}  // namespace vorn::solver

#endif
