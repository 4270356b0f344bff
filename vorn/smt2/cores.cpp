// Unsat cores and assumptions: which formulas the engine used.
//
// An engine tells which of its assumptions it used. So with the option on, asserted formulas with
// names are assumptions of each check, before those of the check itself, and never asserted.
#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "vorn/smt2/interpreter.h"
#include "vorn/terms/printer.h"

namespace vorn::smt2 {
namespace {

constexpr std::string_view kNoRefutation = "the last answer is not unsat";

}  // namespace

/// The assertions that a core may name, in the order in which they came. The option changes only
/// while there are no assertions.
std::vector<const Interpreter::Assertion*> Interpreter::list_core_candidates() const {
  std::vector<const Assertion*> candidates;
  if (!options.produce_unsat_cores) return candidates;
  for (const Assertion& assertion : assertions.get_items()) {
    if (assertion.core_name) candidates.push_back(&assertion);
  }
  return candidates;
}

/// Asks the engine for a decision, for a command at `place`.
Answer Interpreter::check(Parser& parser, Position place, std::span<const Term* const> assumed) {
  try {
    return ask_engine(parser, place, [&] { return engine.check_sat(assumed); });
  } catch (const ScriptError&) {
    refuse_assertion(parser);
    throw;
  }
}

/// What the engine does not support it refuses when it first sees it, which is an error at the
/// place of the assertion if one of those is to blame that were not asserted with it.
void Interpreter::refuse_assertion(const Parser& parser) {
  for (const Assertion* candidate : list_core_candidates()) {
    engine.push();
    try {
      ask_engine(parser, candidate->position, [&] { engine.assert_formula(candidate->term); });
    } catch (...) {
      engine.pop();
      throw;
    }
    engine.pop();
  }
}

/// What refuted the last check, which was answered unsat. The engine may be asked other things
/// afterwards, so it is kept.
const Interpreter::Refutation& Interpreter::find_refutation(const Parser& parser,
                                                            const Token& command) {
  if (refutation) return *refutation;
  std::vector<std::size_t> failed =
      ask_engine(parser, command.position, [&] { return engine.get_unsat_assumptions(); });
  std::ranges::sort(failed);
  const std::size_t candidates = list_core_candidates().size();
  Refutation found;
  for (const std::size_t i : failed) {
    if (i < candidates) {
      found.core.push_back(i);
    } else {
      found.assumptions.push_back(i - candidates);
    }
  }
  refutation = std::move(found);
  return *refutation;
}

void Interpreter::get_unsat_assumptions(Parser& parser, const Token& command) {
  parser.close_command();
  check_flag(parser, command, ":produce-unsat-assumptions");
  require_answer(parser, command, Answer::unsat, kNoRefutation);
  std::string text = "(";
  for (const std::size_t i : find_refutation(parser, command).assumptions) {
    if (text.size() > 1) text += ' ';
    text += collapse(assumptions[i].text);
  }
  respond(text + ")");
}

void Interpreter::get_unsat_core(Parser& parser, const Token& command) {
  parser.close_command();
  check_flag(parser, command, ":produce-unsat-cores");
  if (!options.has_cores) {
    parser.fail_state(command.position,
                      "get-unsat-core: a check that leaves its clauses or a proof has no core");
  }
  require_answer(parser, command, Answer::unsat, kNoRefutation);
  find_refutation(parser, command);
  if (options.minimize_unsat_cores) minimize_core(parser, command);
  const std::vector<const Assertion*> candidates = list_core_candidates();
  std::string text = "(";
  for (const std::size_t i : refutation->core) {
    if (text.size() > 1) text += ' ';
    text += quote_symbol(std::string(*candidates[i]->core_name));
  }
  respond(text + ")");
}

/// Tries without one part after the other, while the assumptions that were used hold. Where the
/// rest is still refuted, the core is what that took of it; a part without which that is not known
/// stays.
void Interpreter::minimize_core(Parser& parser, const Token& command) {
  if (refutation->is_minimized) return;
  const std::vector<const Assertion*> candidates = list_core_candidates();
  std::vector<std::size_t> core = refutation->core;
  std::size_t tried = 0;  // parts at the front that stay
  while (tried < core.size()) {
    std::vector<std::size_t> rest = core;
    rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(tried));
    std::vector<const Term*> assumed;
    assumed.reserve(rest.size() + refutation->assumptions.size());
    for (const std::size_t i : rest)
      assumed.push_back(candidates[i]->term);
    for (const std::size_t i : refutation->assumptions)
      assumed.push_back(assumptions[i].term);
    if (check(parser, command.position, assumed) != Answer::unsat) {
      ++tried;
      continue;
    }
    std::vector<std::size_t> failed =
        ask_engine(parser, command.position, [&] { return engine.get_unsat_assumptions(); });
    std::ranges::sort(failed);
    std::erase_if(failed, [&](std::size_t i) { return i >= rest.size(); });
    tried = static_cast<std::size_t>(std::ranges::lower_bound(failed, tried) - failed.begin());
    core.clear();
    for (const std::size_t i : failed)
      core.push_back(rest[i]);
  }
  refutation->core = std::move(core);
  refutation->is_minimized = true;
}

}  // namespace vorn::smt2
