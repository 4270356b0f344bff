// Refutation by ranges and by adding up: before there are circuits, and now and then beside the SAT
// search.
#include <algorithm>

#include "vorn/reals/refuter.h"
#include "vorn/solver/back_end.h"
#include "vorn/solver/solver.h"

namespace vorn::solver {
namespace {

// Propagation to the fixed point: most terms are looked at a few times.
constexpr std::uint64_t kLooks = 20;
// Looks before there are circuits, some milliseconds. On small formulas the search is over sooner.
constexpr std::uint64_t kShortRefutation = 2'000;

ranges::Splitting::Judge judge_of(const Options& options) {
  return options.reals ? ranges::Splitting::Judge(reals::find_contradiction) : nullptr;
}

}  // namespace

/// Brings the ranges to the assertions of the current check, assumptions among them.
void Solver::enter_ranges() {
  is_refuted = is_enumerated = false;
  // The circuits of the base encoder depart from the values of IEEE 754, and a trace is of clauses.
  may_refute = options.ranges && !options.is_traced() && options.encoder == EncoderKind::ieee;
  if (!may_refute) return;
  BackEnd& end = *back_end;
  if (!end.ranges) {
    end.ranges.emplace(mgr, options.termination_test);
    end.ranged = 0;
  }
  for (;;) {
    const std::size_t level = end.ranges->get_level();
    for (; end.ranged < end.formulas.get_size(level); ++end.ranged)
      end.ranges->add(encoded_form(end.formulas.get_items()[end.ranged]));
    end.ranges->propagate(kLooks * end.ranges->get_size());
    if (level == assertions.get_level()) break;
    end.ranges->push();
  }
  end.splitting.emplace(*end.ranges, judge_of(options));
}

/// Ends the cases, with the levels that they are on.
void Solver::leave_ranges() {
  may_refute = false;
  if (!back_end->splitting) return;
  statistics.convictions += back_end->splitting->get_convictions();
  back_end->splitting->close();
  back_end->splitting.reset();
}

/// Puts away what may have been left in the midst of something.
void Solver::drop_ranges() {
  may_refute = false;
  if (!back_end) return;
  back_end->splitting.reset();
  back_end->ranges.reset();
}

/// Whether the assertions are seen to have no model. Where cases seem to come to an end, up to
/// `most` is spent.
bool Solver::try_refutation(std::uint64_t effort, std::uint64_t most) {
  if (!may_refute) return false;
  ranges::Splitting& splitting = *back_end->splitting;
  // The first parts to go are the easy ones, so that each run is judged by itself.
  const std::uint64_t run = effort / 2;
  bool found = splitting.run(run) || splitting.run(run);
  for (std::uint64_t rest = most - effort; !found && rest > run; rest -= run) {
    if (splitting.estimate() > static_cast<double>(rest)) break;
    found = splitting.run(run);
  }
  if (found) {
    is_refuted = true;
    ++statistics.refutations;
    log("ranges refute the assertions");
    return true;
  }
  may_refute = !splitting.is_over();
  return false;
}

/// A look at what ranges refute for less than the circuits cost.
bool Solver::try_short_refutation() {
  if (!may_refute) return false;
  const std::uint64_t effort = std::min(kShortRefutation, back_end->ranges->get_bit_count());
  return try_refutation(effort, 2 * effort);
}

/// Whether ranges refute the assertions without the assumptions that are left out, cases with that
/// effort.
bool Solver::is_refuted_without(const std::vector<bool>& left_out, std::uint64_t effort) {
  const std::vector<const Term*> all = get_encoded_assertions();
  const std::size_t first_assumed = all.size() - assumptions.size();
  ranges::Propagation propagation(mgr);
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (i >= first_assumed && left_out[i - first_assumed]) continue;
    propagation.add(all[i]);
  }
  propagation.propagate(kLooks * propagation.get_size());
  return ranges::Splitting(propagation, judge_of(options)).run(effort);
}

/// Assumptions that ranges refute, none of which they can do without; all where that would take
/// long.
std::vector<std::size_t> Solver::get_refuted_assumptions() {
  constexpr std::size_t kMostWork = 100'000;  // terms to be looked at
  std::vector<std::size_t> failed;
  std::vector<bool> left_out(assumptions.size());
  const ranges::Propagation& ranges = *back_end->ranges;
  const bool is_short = ranges.get_size() * assumptions.size() <= kMostWork;
  const std::uint64_t effort = std::min<std::uint64_t>(
      kMostWork / std::max<std::size_t>(assumptions.size(), 1), 2 * ranges.get_bit_count());
  for (std::size_t i = 0; i < assumptions.size(); ++i) {
    left_out[i] = is_short;
    if (is_short && is_refuted_without(left_out, effort)) continue;
    left_out[i] = false;
    failed.push_back(i);
  }
  return failed;
}

}  // namespace vorn::solver
