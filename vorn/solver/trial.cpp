// Trying all assignments where there are few: at once where that is short, else beside the SAT
// search.
#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "vorn/solver/back_end.h"
#include "vorn/solver/solver.h"
#include "vorn/theories/read_away.h"

namespace vorn::solver {
namespace {

// Operations on assignments: some milliseconds, less than the circuits of most formulas take, and
// an hour, which no SAT search should have to wait for.
constexpr std::uint64_t kShortTrial = 10'000'000;
constexpr std::uint64_t kLongestTrial = std::uint64_t{1} << 43U;
// For all assumptions together, of which one after the other is left out.
constexpr std::uint64_t kMostBlameEffort = 50'000'000;
constexpr std::uint64_t kSample = 32;  // the part of its time that a look at the rate may take
constexpr std::uint64_t kLooks = 20;   // of ranges at each term

}  // namespace

/// The assertions as the encoder has them, if they are on bits or can be brought there.
std::optional<std::vector<const Term*>> Solver::find_formulas_of_bits() {
  std::vector<const Term*> formulas = get_encoded_assertions();
  if (back_end->theory.is_empty()) return formulas;
  return theories::read_away(mgr, &back_end->theory, formulas);
}

/// To be called when the ranges, if there are any, are those of the assertions.
void Solver::enter_enumeration() {
  is_enumerated = false;
  back_end->enumeration.reset();
  // As with ranges, it is the values of IEEE 754 that are tried, and a trace is of clauses.
  const bool is_exact = options.encoder == EncoderKind::ieee;
  if (!options.enumeration || options.is_traced() || !is_exact) return;
  const ranges::Propagation* known = may_refute ? &*back_end->ranges : nullptr;
  if (known != nullptr && known->is_contradiction()) return;
  const auto formulas = find_formulas_of_bits();
  if (!formulas) return;
  back_end->enumeration =
      search::Enumeration::prepare(mgr, *formulas, known, kLongestTrial, options.threads);
}

/// What the assignments say, unknown if nothing yet. The effort is what the last run of the SAT
/// solver would have sufficed for, about half of what all have taken: what would take longer than
/// twice that waits, but for a small part that shows how long it takes.
Answer Solver::try_all(std::uint64_t effort) {
  using Outcome = search::Enumeration::Outcome;
  if (!back_end->enumeration) return Answer::unknown;
  search::Enumeration& enumeration = *back_end->enumeration;
  const std::uint64_t before = enumeration.get_tried();
  Outcome outcome = Outcome::open;
  {
    const Stopwatch watch(&statistics.assignment_seconds);
    effort *= options.threads;
    const bool is_due = enumeration.estimate() <= 4 * static_cast<double>(effort);
    outcome = enumeration.run(is_due ? 4 * effort : effort / kSample, options.termination_test);
  }
  statistics.assignments += enumeration.get_tried() - before;
  log(fmt::format("tried {} of {} assignments, {:.1f} free bits", enumeration.get_tried(),
                  enumeration.get_count(),
                  std::log2(std::max(1.0, static_cast<double>(enumeration.get_count())))));
  switch (outcome) {
    case Outcome::open:
      return Answer::unknown;
    case Outcome::refuted:
      is_refuted = is_enumerated = true;
      ++statistics.enumerations;
      log("no assignment is a model");
      return Answer::unsat;
    case Outcome::found:
      read_found_model(enumeration.get_assignment());
      has_model = (back_end->theory.is_empty() || interpret_model().empty()) && model_holds();
      if (has_model) ++statistics.enumerations;
      log(has_model ? "an assignment is a model" : "an assignment may be a model and may not");
      break;
    case Outcome::unfit:
      log("the processor does not compute as IEEE 754 has it");
      break;
  }
  back_end->enumeration.reset();
  return has_model ? Answer::sat : Answer::unknown;
}

/// The same where it takes less time than circuits do.
Answer Solver::try_all_shortly() {
  if (!back_end->enumeration || back_end->enumeration->get_tried() != 0) return Answer::unknown;
  if (back_end->enumeration->estimate() > static_cast<double>(kShortTrial)) return Answer::unknown;
  return try_all(kShortTrial);
}

/// Whether trying refutes the assertions without the assumptions that are left out, for that
/// effort.
bool Solver::is_enumerated_without(const std::vector<bool>& left_out, std::uint64_t effort) const {
  const std::vector<const Term*>& all = assertions.get_items();
  const std::size_t first_assumed = all.size() - assumptions.size();
  std::vector<const Term*> kept;
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (i < first_assumed || !left_out[i - first_assumed]) kept.push_back(encoded_form(all[i]));
  }
  ranges::Propagation propagation(mgr);
  if (options.ranges) {
    for (const Term* formula : kept)
      propagation.add(formula);
    propagation.propagate(kLooks * propagation.get_size());
    if (propagation.is_contradiction()) return true;
  }
  auto enumeration = search::Enumeration::prepare(
      mgr, kept, options.ranges ? &propagation : nullptr, effort, options.threads);
  return enumeration && enumeration->run(effort, nullptr) == search::Enumeration::Outcome::refuted;
}

/// Assumptions under which no assignment is a model; none that can be seen in a short time to be
/// needless.
std::vector<std::size_t> Solver::get_enumerated_assumptions() const {
  std::vector<std::size_t> failed;
  std::vector<bool> left_out(assumptions.size());
  const bool is_short = back_end->theory.is_empty();
  const std::uint64_t effort = kMostBlameEffort / std::max<std::size_t>(assumptions.size(), 1);
  for (std::size_t i = 0; i < assumptions.size(); ++i) {
    left_out[i] = is_short;
    if (is_short && is_enumerated_without(left_out, effort)) continue;
    left_out[i] = false;
    failed.push_back(i);
  }
  return failed;
}

}  // namespace vorn::solver
