#include "vorn/search/block_program.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "vorn/search/native_float.h"
#include "vorn/semantics/application.h"
#include "vorn/semantics/open_terms.h"

namespace vorn::search {
namespace {

using T = SymbolTag;

constexpr std::size_t kAlignment = 64;
// An exact operation takes about a microsecond, one of the processor on a lane a third of a
// nanosecond or more.
constexpr std::uint64_t kExactEffort = 2'000;
constexpr std::uint64_t kSlowEffort = 20;  // what the processor computes lane by lane

/// The last bit is for all constants from the 64th on.
std::uint64_t bit_of(std::size_t constant) {
  return std::uint64_t{1} << std::min<std::size_t>(constant, 63);
}

bool is_mode(const Term* t) {
  return t->get_type()->get_kind() == DataType::Kind::rounding_mode;
}

/// Calls of the mathematical library and conversions of integers are no vectors.
bool is_slow(SymbolTag::tag tag) {
  return tag == T::fp_rem || tag == T::fp_fma || tag == T::fp_to_sbv || tag == T::fp_to_ubv ||
         tag == T::bv_udiv || tag == T::bv_urem || tag == T::bv_sdiv || tag == T::bv_srem ||
         tag == T::bv_smod;
}

/// Of a block, by the processor.
std::uint64_t native_effort_of(const LaneStep& step) {
  return (is_slow(step.term->get_tag()) ? kSlowEffort : 1) * kLanes;
}

/// Of a lane, by exact arithmetic: one of the five modes that it may have is none of the
/// processor's.
std::uint64_t exact_effort_of(const LaneStep& step) {
  if (step.kernel == nullptr) return kExactEffort;
  return step.has_mode && !step.literal_mode ? kExactEffort / 5 : 0;
}

}  // namespace

// Construction --------------------------------------------------------------------------------

void BlockProgram::Free::operator()(std::byte* p) const {
  ::operator delete (p, std::align_val_t{kAlignment});
}

std::size_t BlockProgram::reserve(std::size_t lane_bits) {
  const std::size_t place = used;
  used += kLanes * lane_bits / 8;
  return place;
}

BlockProgram::BlockProgram(const WordProgram& formulas)
    : needs(formulas.get_size(), 0), opened(formulas.get_size()) {
  const auto constants = formulas.get_constants();
  for (std::size_t i = 0; i < constants.size(); ++i)
    needs[constants[i]] = bit_of(i);
  std::vector<Slot> leaves;
  for (Slot slot = 0; slot < formulas.get_size(); ++slot) {
    sorts.push_back(LaneSort::of(formulas.get_term(slot)->get_type()));
    const auto args = formulas.get_args(slot);
    const bool is_defined = !args.empty() && formulas.get_term(slot)->get_arity() == 0;
    places.push_back(is_defined ? places[args[0]] : reserve(sorts[slot].lane));
    if (is_defined) {
      needs[slot] = needs[args[0]];
      opened[slot] = opened[args[0]];
    } else if (args.empty()) {
      leaves.push_back(slot);
    } else {
      add_step(formulas, slot);
    }
  }
  alive = reserve(32);
  for (const Slot root : formulas.get_roots())
    add_root(root);
  std::stable_sort(roots.begin(), roots.end(),
                   [](const Root& a, const Root& b) { return a.after < b.after; });
  memory.reset(static_cast<std::byte*>(::operator new (used, std::align_val_t{kAlignment})));
  std::memset(memory.get(), 0, used);
  for (const Slot slot : leaves)
    fill(slot, sorts[slot].to_lane(formulas.get_value(slot)));
}

void BlockProgram::add_step(const WordProgram& formulas, Slot slot) {
  LaneStep step;
  step.term = formulas.get_term(slot);
  step.slot = slot;
  step.args.assign(formulas.get_args(slot).begin(), formulas.get_args(slot).end());
  const SymbolTag::tag tag = step.term->get_tag();
  step.kernel = find_kernel(step.term);
  step.has_mode = is_mode(step.term->get_arg(0)) && tag != T::equal;
  const Slot first = step.args[0];
  if (step.has_mode && formulas.is_literal(first)) {
    step.literal_mode = static_cast<Mode>(formulas.get_value(first));
  }
  step.is_open = semantics::is_open(step.term);
  if (step.is_open) {
    step.open = reserve(32);
    opened[slot].push_back(step.open);
  }
  for (const Slot arg : step.args) {
    needs[slot] |= needs[arg];
    opened[slot].insert(opened[slot].end(), opened[arg].begin(), opened[arg].end());
  }
  std::sort(opened[slot].begin(), opened[slot].end());
  opened[slot].erase(std::unique(opened[slot].begin(), opened[slot].end()), opened[slot].end());
  if (step.literal_mode == Mode::nearest_away) step.kernel = nullptr;
  // What is computed in some lanes only is of no use for the next block.
  if (step.kernel == nullptr) needs[slot] = ~std::uint64_t{0};
  step.needs = needs[slot];
  step.call.sort = sorts[slot];
  step.call.from = sorts[step.args[step.has_mode ? 1 : 0]];
  step.call.second_width = sorts[step.args.back()].width;
  if (tag == T::bv_extract) {
    step.call.lowest = static_cast<std::uint8_t>(step.term->get_symbol()->get_indices()[1]);
  }
  steps.push_back(std::move(step));
}

void BlockProgram::add_root(Slot slot) {
  const auto last =
      std::find_if(steps.rbegin(), steps.rend(), [&](const LaneStep& s) { return s.slot <= slot; });
  roots.push_back({slot, static_cast<std::size_t>(steps.rend() - last), opened[slot]});
}

void BlockProgram::fill(Slot slot, std::uint64_t lane) {
  for (std::size_t i = 0; i < kLanes; ++i)
    set_lane(slot, i, lane);
}

std::uint64_t BlockProgram::get_lane(Slot slot, std::size_t lane) const {
  const void* lanes = at(places[slot]);
  return sorts[slot].lane == 32 ? static_cast<const std::uint32_t*>(lanes)[lane]
                                : static_cast<const std::uint64_t*>(lanes)[lane];
}

void BlockProgram::set_lane(Slot slot, std::size_t lane, std::uint64_t value) {
  void* lanes = at(places[slot]);
  if (sorts[slot].lane == 32) {
    static_cast<std::uint32_t*>(lanes)[lane] = static_cast<std::uint32_t>(value);
  } else {
    static_cast<std::uint64_t*>(lanes)[lane] = value;
  }
}

std::uint64_t BlockProgram::get_word(Slot slot, std::size_t lane) const {
  return sorts[slot].to_word(get_lane(slot, lane));
}

std::uint64_t BlockProgram::get_block_effort() const {
  std::uint64_t sum = kLanes;
  for (const LaneStep& step : steps)
    sum += step.kernel == nullptr ? 0 : native_effort_of(step);
  return sum;
}

std::uint64_t BlockProgram::get_lane_effort() const {
  std::uint64_t sum = 0;
  for (const LaneStep& step : steps)
    sum += exact_effort_of(step);
  return sum;
}

// Running -------------------------------------------------------------------------------------

void BlockProgram::mark_changed(std::size_t constant) {
  changed |= bit_of(constant);
}

std::optional<std::size_t> BlockProgram::run(std::size_t count) {
  // What was computed of a part of a block is no block.
  if (lane_count < kLanes) changed = std::numeric_limits<std::uint64_t>::max();
  lane_count = count;
  for (LaneStep& step : steps)
    step.is_due = step.is_due || (step.needs & changed) != 0;
  changed = 0;
  auto* lanes = static_cast<std::uint32_t*>(at(alive));
  for (std::size_t i = 0; i < kLanes; ++i)
    lanes[i] = i < count ? ~std::uint32_t{0} : 0;
  effort += kLanes;
  std::size_t done = 0;
  bool is_alive = count != 0;
  for (const Root& root : roots) {
    for (; is_alive && done < root.after; ++done) {
      if (steps[done].is_due) compute(steps[done]);
    }
    is_alive = is_alive && narrow(root);
  }
  reset_rounding();
  if (!is_alive) return std::nullopt;
  return static_cast<std::size_t>(
      std::find_if(lanes, lanes + kLanes, [](auto l) { return l != 0; }) - lanes);
}

/// Takes the lanes away in which the formula is false; whether some are left.
bool BlockProgram::narrow(const Root& root) {
  auto* lanes = static_cast<std::uint32_t*>(at(alive));
  const auto* truth = static_cast<const std::uint32_t*>(at(places[root.slot]));
  std::uint32_t any = 0;
  if (root.open.empty()) {
    for (std::size_t i = 0; i < kLanes; ++i) {
      lanes[i] &= truth[i];
      any |= lanes[i];
    }
    return any != 0;
  }
  for (std::size_t i = 0; i < kLanes; ++i) {
    std::uint32_t open = 0;
    for (const std::size_t place : root.open)
      open |= static_cast<const std::uint32_t*>(at(place))[i];
    lanes[i] &= truth[i] | open;
    any |= lanes[i];
  }
  return any != 0;
}

void BlockProgram::compute(LaneStep& step) {
  step.is_due = false;
  if (step.kernel == nullptr) {
    return compute_exactly(step, static_cast<const std::uint32_t*>(at(alive)));
  }
  if (step.has_mode && !step.literal_mode) {
    compute_in_modes(step);
  } else {
    compute_natively(step, step.literal_mode.value_or(Mode::nearest_even));
  }
}

void BlockProgram::compute_natively(LaneStep& step, Mode mode) {
  const bool is_rounded = step.has_mode || step.term->get_tag() == T::fp_rem;
  if (is_rounded && !set_rounding(mode)) return compute_exactly(step, nullptr);
  effort += native_effort_of(step);
  LaneCall& call = step.call;
  call.mode = mode;
  call.out = at(places[step.slot]);
  const std::size_t first = step.has_mode ? 1 : 0;
  for (std::size_t i = first; i < step.args.size(); ++i)
    call.in[i - first] = at(places[step.args[i]]);
  call.open = step.is_open ? static_cast<std::uint32_t*>(at(step.open)) : nullptr;
  step.kernel(call);
}

/// Once for each mode that some lane has.
void BlockProgram::compute_in_modes(LaneStep& step) {
  const auto* modes = static_cast<const std::uint32_t*>(at(places[step.args[0]]));
  std::uint32_t present = 0;
  for (std::size_t i = 0; i < kLanes; ++i)
    present |= 1U << modes[i];
  if ((present & (present - 1U)) == 0) {
    return compute_natively(step, static_cast<Mode>(modes[0]));
  }
  std::vector<std::uint64_t> results(kLanes);
  std::vector<std::uint32_t> open(kLanes, 0);
  auto* open_lanes = static_cast<std::uint32_t*>(at(step.open));
  for (std::uint32_t mode = 0; present >> mode != 0; ++mode) {
    if ((present >> mode & 1U) == 0) continue;
    compute_natively(step, static_cast<Mode>(mode));
    for (std::size_t i = 0; i < kLanes; ++i) {
      if (modes[i] != mode) continue;
      results[i] = get_lane(step.slot, i);
      if (step.is_open) open[i] = open_lanes[i];
    }
  }
  for (std::size_t i = 0; i < kLanes; ++i) {
    set_lane(step.slot, i, results[i]);
    if (step.is_open) open_lanes[i] = open[i];
  }
}

/// In the lanes that are wanted, null for all of the run.
void BlockProgram::compute_exactly(LaneStep& step, const std::uint32_t* wanted) {
  std::vector<QNumber> numbers(step.args.size());
  std::vector<const QNumber*> pointers;
  pointers.reserve(numbers.size());
  for (const QNumber& number : numbers)
    pointers.push_back(&number);
  std::uint32_t open = 0;
  const semantics::OpenValue note_open = [&](const Term*, std::span<const QNumber>) {
    open = ~std::uint32_t{0};
    return QNumber();
  };
  for (std::size_t lane = 0; lane < lane_count; ++lane) {
    if (wanted != nullptr && wanted[lane] == 0) continue;
    for (std::size_t i = 0; i < numbers.size(); ++i)
      numbers[i] = to_number(get_word(step.args[i], lane));
    open = 0;
    effort += kExactEffort;
    const std::uint64_t word = to_word(semantics::apply(step.term, pointers, note_open));
    set_lane(step.slot, lane, step.call.sort.to_lane(word));
    if (step.is_open) static_cast<std::uint32_t*>(at(step.open))[lane] = open;
  }
}

}  // namespace vorn::search
