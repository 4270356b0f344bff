#include "vorn/search/local_search.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

namespace vorn::search {
namespace {

constexpr std::size_t kMostTerms = 50'000;
constexpr std::size_t kMostConeSlots = 4'000'000;  // of all constants together
constexpr int kProposals = 12;
constexpr std::uint64_t kModes = 5;
constexpr int kMovesBeforeRestart = 4'000;
constexpr int kProjections = 300;
constexpr std::uint64_t kEffortBetweenTests = 100'000;
constexpr std::uint64_t kMovesForOneWorse = 50;

}  // namespace

// Preparation ---------------------------------------------------------------------------------

std::optional<LocalSearch> LocalSearch::prepare(const TermManager& manager,
                                                std::span<const Term* const> assertions,
                                                std::uint64_t seed) {
  std::vector<const Term*> conjuncts;
  std::vector<const Term*> stack(assertions.rbegin(), assertions.rend());
  while (!stack.empty()) {
    const Term* f = stack.back();
    stack.pop_back();
    if (f->get_tag() == SymbolTag::bool_and && conjuncts.size() < kMostTerms) {
      stack.push_back(f->get_arg(1));
      stack.push_back(f->get_arg(0));
    } else {
      conjuncts.push_back(f);
    }
  }
  auto program = WordProgram::compile(manager, conjuncts, kMostTerms);
  if (!program || program->get_constants().empty() || !program->has_floats()) return std::nullopt;
  LocalSearch search(std::move(*program), seed);
  if (!search.find_cones()) return std::nullopt;
  return search;
}

LocalSearch::LocalSearch(WordProgram compiled, std::uint64_t seed)
    : program(std::move(compiled)), random(seed) {
  for (const Slot slot : program.get_roots())
    roots.push_back({slot, 1, {}});
  for (Slot slot = 0; slot < program.get_size(); ++slot) {
    if (!program.get_args(slot).empty()) all.push_back(slot);
  }
  for (const Slot slot : program.get_constants()) {
    const DataType* type = program.get_term(slot)->get_type();
    Variable v{slot, type->get_value_width(), 0, {}, {}, {}};
    v.is_mode = type->get_kind() == DataType::Kind::rounding_mode;
    if (type->get_kind() == DataType::Kind::floating_point) v.fraction_width = type->get_m();
    for (const Slot literal : program.get_literals()) {
      if (program.get_term(literal)->get_type() == type) {
        v.pool.push_back(program.get_value(literal));
      }
    }
    variables.push_back(std::move(v));
  }
}

/// False where there is too much to remember.
bool LocalSearch::find_cones() {
  std::vector<std::vector<Slot>> users(program.get_size());
  for (const Slot slot : all) {
    for (const Slot arg : program.get_args(slot))
      users[arg].push_back(slot);
  }
  std::vector<std::vector<std::uint32_t>> roots_at(program.get_size());
  for (std::uint32_t r = 0; r < roots.size(); ++r)
    roots_at[roots[r].slot].push_back(r);
  std::size_t total = 0;
  std::vector<std::uint32_t> reached(program.get_size(), 0);
  for (std::uint32_t i = 0; i < variables.size(); ++i) {
    Variable& v = variables[i];
    const std::uint32_t mark = i + 1;
    reached[v.slot] = mark;
    std::vector<Slot> stack = {v.slot};
    while (!stack.empty()) {
      const Slot slot = stack.back();
      stack.pop_back();
      for (const std::uint32_t r : roots_at[slot]) {
        v.roots.push_back(r);
        roots[r].variables.push_back(i);
      }
      for (const Slot user : users[slot]) {
        if (reached[user] == mark) continue;
        reached[user] = mark;
        v.cone.push_back(user);
        stack.push_back(user);
      }
      total += users[slot].size();
    }
    if (total > kMostConeSlots) return false;
    std::sort(v.cone.begin(), v.cone.end());
    v.effort = 1 + program.get_effort(v.cone);
  }
  return true;
}

std::vector<WordProgram::Slot> LocalSearch::get_constants() const {
  std::vector<Slot> slots(program.get_constants().begin(), program.get_constants().end());
  slots.insert(slots.end(), program.get_defined().begin(), program.get_defined().end());
  return slots;
}

// Search --------------------------------------------------------------------------------------

bool LocalSearch::run(std::uint64_t effort, const TerminationTest* test) {
  const std::uint64_t end = spent + effort;
  for (unsigned start = 0; spent < end; ++start) {
    // Both ways to move begin at zero, and a short search has time for both.
    const bool is_projecting = start % 2 == 1;
    restart(start < 2);
    const int moves = is_projecting ? kProjections : kMovesBeforeRestart;
    const std::uint64_t rest = end - spent;
    switch (descend(is_projecting, moves, start == 0 ? rest / 2 : rest, test)) {
      case Descent::holds:
        return true;
      case Descent::is_over:
        return false;
      case Descent::stuck:
        break;
    }
  }
  return false;
}

/// From where the constants are.
LocalSearch::Descent LocalSearch::descend(bool is_projecting, int moves, std::uint64_t effort,
                                          const TerminationTest* test) {
  const std::uint64_t end = spent + effort;
  std::uint64_t next_test = spent;
  for (int move = 0; move < moves && spent < end; ++move) {
    if (test != nullptr && spent >= next_test) {
      if (test->terminate()) return Descent::is_over;
      next_test = spent + kEffortBetweenTests;
    }
    const Root* violated = pick_violated();
    spent += roots.size();
    if (violated == nullptr) return Descent::holds;
    if (violated->variables.empty()) return Descent::is_over;  // it has no constant and is false
    if (is_projecting && project(*violated)) continue;
    improve(variables[violated->variables[draw(violated->variables.size())]]);
  }
  return Descent::stuck;
}

/// At zero, or anywhere.
void LocalSearch::restart(bool at_zero) {
  for (const Variable& v : variables)
    program.set_value(v.slot, at_zero ? 0 : pick_random(v));
  program.run(all);
  spent += program.get_effort(all);
  for (Root& root : roots)
    root.weight = 1;
}

/// Any assertion that does not hold; null when all do.
const LocalSearch::Root* LocalSearch::pick_violated() {
  const Root* picked = nullptr;
  std::uint64_t count = 0;
  for (const Root& root : roots) {
    if (program.get_value(root.slot) == 0 && draw(++count) == 0) picked = &root;
  }
  return picked;
}

/// Gives `v` the best value that is proposed, if it is an improvement, and now and then if not.
void LocalSearch::improve(const Variable& v) {
  save(v);
  const double before = get_cost(v);
  double best_cost = std::numeric_limits<double>::infinity();
  std::uint64_t best = 0;
  std::int64_t best_step = 0;
  for (int i = 0; i < kProposals; ++i) {
    std::int64_t step = 0;
    const std::uint64_t value = propose(v, &step);
    if (value == saved.front().value) continue;
    const double cost = try_value(v, value);
    if (cost >= best_cost) continue;
    best_cost = cost;
    best = value;
    best_step = step;
  }
  if (best_cost < before) {
    try_value(v, best);
    if (best_step != 0) go_on(v, best_step, best_cost);
    return;
  }
  for (const std::uint32_t root : v.roots) {
    if (program.get_cost(roots[root].slot).of_true > 0) roots[root].weight += 1;
  }
  const bool accepted = best_cost == before ? draw(2) == 0 : draw(kMovesForOneWorse) == 0;
  if (accepted && best_cost < std::numeric_limits<double>::infinity()) {
    try_value(v, best);
  } else {
    restore(v);
  }
}

/// Takes ever longer steps in one direction while they help.
void LocalSearch::go_on(const Variable& v, std::int64_t step, double cost) {
  for (;;) {
    save(v);
    if (std::abs(step) < std::numeric_limits<std::int64_t>::max() / 2) step *= 2;
    const double next = try_value(v, add(v, saved.front().value, step));
    if (next >= cost) break;
    cost = next;
  }
  restore(v);
}

/// The weighted costs of what depends on `v`.
double LocalSearch::get_cost(const Variable& v) const {
  double sum = 0;
  for (const std::uint32_t root : v.roots)
    sum += roots[root].weight * program.get_cost(roots[root].slot).of_true;
  return sum;
}

double LocalSearch::try_value(const Variable& v, std::uint64_t value) {
  program.set_value(v.slot, value);
  program.run(v.cone);
  spent += v.effort;
  return get_cost(v);
}

void LocalSearch::save(const Variable& v) {
  saved.clear();
  saved.push_back({program.get_value(v.slot), program.get_cost(v.slot)});
  for (const Slot slot : v.cone)
    saved.push_back({program.get_value(slot), program.get_cost(slot)});
}

void LocalSearch::restore(const Variable& v) {
  program.restore(v.slot, saved.front().value, saved.front().cost);
  for (std::size_t i = 0; i < v.cone.size(); ++i)
    program.restore(v.cone[i], saved[i + 1].value, saved[i + 1].cost);
}

// Values --------------------------------------------------------------------------------------

/// A value to try; `step` is what it adds in the order of values, if that is what it does.
std::uint64_t LocalSearch::propose(const Variable& v, std::int64_t* step) {
  const std::uint64_t value = saved.front().value;
  const std::uint64_t kind = draw(8);
  if (v.is_mode) return draw(kModes);
  if (v.width == 1) return value ^ 1U;
  if (kind < 5) {
    *step = static_cast<std::int64_t>(std::uint64_t{1} << draw(v.width - 1));
    if (draw(2) == 0) *step = -*step;
    return add(v, value, *step);
  }
  if (kind == 5) return value ^ std::uint64_t{1} << (draw(4) == 0 ? v.width - 1 : draw(v.width));
  return pick_random(v);
}

/// A literal of the formula or a value next to one, any bits, or, of floats, one of those that
/// programs are full of: magnitudes around 1.
std::uint64_t LocalSearch::pick_random(const Variable& v) {
  const std::uint64_t mask = ~std::uint64_t{0} >> (64 - v.width);
  const std::uint64_t kind = draw(4);
  if (v.is_mode) return draw(kModes);
  if (kind == 0 && !v.pool.empty()) {
    const std::uint64_t literal = v.pool[draw(v.pool.size())];
    return add(v, literal, static_cast<std::int64_t>(draw(3)) - 1);
  }
  const std::uint64_t bits = random() & mask;
  if (v.fraction_width == 0) return kind == 1 ? bits : bits >> draw(v.width);
  if (kind == 1) return bits;
  const std::uint64_t exponents = v.width - 1 - v.fraction_width;
  const std::uint64_t bias = (std::uint64_t{1} << (exponents - 1)) - 1;
  const std::uint64_t range = std::min<std::uint64_t>(bias, 16);
  const std::uint64_t exponent = bias - range + draw(2 * range + 1);
  const std::uint64_t sign_and_fraction =
      bits & ~(((std::uint64_t{1} << exponents) - 1) << v.fraction_width);
  return sign_and_fraction | exponent << v.fraction_width;
}

/// The value `step` further in the order of values, which for floats ends at the NaNs.
std::uint64_t LocalSearch::add(const Variable& v, std::uint64_t value, std::int64_t step) const {
  const std::uint64_t mask = ~std::uint64_t{0} >> (64 - v.width);
  if (v.fraction_width == 0) return (value + static_cast<std::uint64_t>(step)) & mask;
  const std::int64_t order = order_of(value, v.width);
  const auto last = static_cast<std::int64_t>(mask >> 1U);
  if (step > 0 && order > last - step) return bits_of_order(last, v.width);
  if (step < 0 && order < -last - step) return bits_of_order(-last, v.width);
  return bits_of_order(order + step, v.width);
}

}  // namespace vorn::search
