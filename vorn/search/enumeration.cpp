#include "vorn/search/enumeration.h"

#include <algorithm>
#include <limits>
#include <thread>

#include "vorn/search/kernel_check.h"
#include "vorn/search/native_float.h"

namespace vorn::search {
namespace {

constexpr std::size_t kMostTerms = 20'000;
constexpr std::uint64_t kBlocksBetweenTests = 32;
constexpr std::uint64_t kNotUniform = std::numeric_limits<std::uint64_t>::max();

std::vector<const Term*> list_conjuncts(std::span<const Term* const> formulas) {
  std::vector<const Term*> conjuncts;
  std::vector<const Term*> stack(formulas.rbegin(), formulas.rend());
  while (!stack.empty() && conjuncts.size() <= kMostTerms) {
    const Term* f = stack.back();
    stack.pop_back();
    if (f->get_tag() == SymbolTag::bool_and) {
      stack.push_back(f->get_arg(1));
      stack.push_back(f->get_arg(0));
    } else {
      conjuncts.push_back(f);
    }
  }
  return conjuncts;
}

/// Whether the sides of an equation have the same bits wherever it holds. Those of fp.eq may be
/// different zeros, unless one side is never a zero.
bool says_same_bits(const Term* equation, const ranges::Propagation* known) {
  if (equation->get_tag() != SymbolTag::fp_equal) return true;
  if (known == nullptr) return false;
  return std::ranges::any_of(equation->get_args(), [&](const Term* side) {
    const ranges::Range* range = known->find_range(side);
    const auto* floats = range == nullptr ? nullptr : std::get_if<ranges::FloatRange>(range);
    return floats != nullptr && !floats->has(ranges::kZeros);
  });
}

}  // namespace

// Preparation ---------------------------------------------------------------------------------

std::optional<Enumeration> Enumeration::prepare(const TermManager& manager,
                                                std::span<const Term* const> formulas,
                                                const ranges::Propagation* known,
                                                std::uint64_t most_effort, unsigned threads) {
  const std::vector<const Term*> conjuncts = list_conjuncts(formulas);
  if (conjuncts.size() > kMostTerms) return std::nullopt;
  auto program = WordProgram::compile(
      manager, conjuncts, kMostTerms,
      [known](const Term* equation) { return says_same_bits(equation, known); });
  if (!program) return std::nullopt;
  Enumeration enumeration(std::move(*program));
  if (!enumeration.add_digits(known) || !enumeration.order_digits()) return std::nullopt;
  enumeration.workers.emplace_back(enumeration.formulas);
  if (enumeration.estimate() > static_cast<double>(most_effort)) return std::nullopt;
  for (unsigned i = 1; i < threads; ++i)
    enumeration.workers.emplace_back(enumeration.formulas);
  for (Worker& worker : enumeration.workers)
    worker.values.assign(enumeration.digits.size(), kNotUniform);
  return enumeration;
}

bool Enumeration::add_digits(const ranges::Propagation* known) {
  const auto constants = formulas.get_constants();
  for (std::size_t i = 0; i < constants.size(); ++i) {
    const Term* constant = formulas.get_term(constants[i]);
    const ranges::Range* range = known == nullptr ? nullptr : known->find_range(constant);
    auto domain = Domain::make(constant->get_type(), range);
    if (!domain) return false;
    digits.push_back({constants[i], i, std::move(*domain)});
  }
  return true;
}

/// The constant with the most values changes fastest, so that what depends on others only is
/// computed seldom; rounding modes change last, since a block of one mode is computed at once.
/// False where the assignments are too many to be counted.
bool Enumeration::order_digits() {
  const auto is_mode = [](const Digit& digit) {
    return digit.domain.get_sort().kind == LaneSort::Kind::mode;
  };
  std::stable_sort(digits.begin(), digits.end(), [&](const Digit& a, const Digit& b) {
    if (is_mode(a) != is_mode(b)) return is_mode(b);
    return a.domain.get_count() > b.domain.get_count();
  });
  for (Digit& digit : digits) {
    digit.stride = count;
    const std::uint64_t values = digit.domain.get_count();
    if (values != 0 && count > std::numeric_limits<std::uint64_t>::max() / 2 / values) return false;
    count *= values;
  }
  return true;
}

// Search --------------------------------------------------------------------------------------

Enumeration::Outcome Enumeration::run(std::uint64_t effort, const TerminationTest* test) {
  if (!is_checked && !is_exact(workers.front().program)) return Outcome::unfit;
  is_checked = true;
  const auto left = static_cast<double>(count - tried);
  const double share = std::min(1.0, static_cast<double>(effort) / std::max(estimate(), 1.0));
  const auto slice = static_cast<std::uint64_t>(std::max(share * left, 1.0));
  const std::uint64_t end = share < 1 ? std::min(count, tried + slice) : count;
  const std::uint64_t lanes = workers.size() * kLanes;
  const std::uint64_t part = (end - tried + lanes - 1) / lanes * kLanes;
  std::uint64_t first = tried;
  for (Worker& worker : workers) {
    worker.first = first;
    worker.end = first = std::min(end, first + part);
  }
  std::atomic<bool> stop = false;
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 1; i < workers.size(); ++i)
      threads.emplace_back([this, i, &stop] { work_apart(workers[i], &stop); });
    work(workers[0], test, &stop);
  }
  for (const Worker& worker : workers) {
    if (worker.failure) std::rethrow_exception(worker.failure);
  }
  for (std::size_t i = 0; i < workers.size(); ++i) {
    if (!workers[i].found) continue;
    finder = i;
    return Outcome::found;
  }
  if (stop) return keeps_subnormals() ? Outcome::open : Outcome::unfit;
  for (const Worker& worker : workers)
    tried += worker.tried;
  return tried == count ? Outcome::refuted : Outcome::open;
}

/// The same in a thread of its own, which no exception may leave.
void Enumeration::work_apart(Worker& worker, std::atomic<bool>* stop) const {
  try {
    work(worker, nullptr, stop);
  } catch (...) {
    worker.failure = std::current_exception();
    *stop = true;
  }
}

/// Tries the assignments of a worker, in blocks.
void Enumeration::work(Worker& worker, const TerminationTest* test, std::atomic<bool>* stop) const {
  worker.tried = 0;
  worker.found.reset();
  if (worker.first < worker.end && !keeps_subnormals()) *stop = true;
  std::uint64_t blocks = 0;
  for (std::uint64_t first = worker.first; first < worker.end; first += kLanes) {
    if (blocks++ % kBlocksBetweenTests == 0 && test != nullptr && test->terminate()) *stop = true;
    if (stop->load(std::memory_order_relaxed)) return;
    const auto length =
        static_cast<std::size_t>(std::min<std::uint64_t>(kLanes, worker.end - first));
    fill(worker, first);
    if (const auto lane = worker.program.run(length)) {
      worker.found = first + *lane;
      worker.lane = *lane;
      return;
    }
    worker.tried += length;
  }
}

void Enumeration::fill(Worker& worker, std::uint64_t first) const {
  for (std::size_t i = 0; i < digits.size(); ++i) {
    if (digits[i].domain.get_sort().lane == 32) {
      fill_digit<std::uint32_t>(worker, i, first);
    } else {
      fill_digit<std::uint64_t>(worker, i, first);
    }
  }
}

/// The values of a constant under kLanes assignments; beyond the last one they begin again.
template <class W>
void Enumeration::fill_digit(Worker& worker, std::size_t index, std::uint64_t first) const {
  const Digit& digit = digits[index];
  const std::uint64_t values = digit.domain.get_count();
  std::uint64_t value = first / digit.stride % values;
  std::uint64_t rest = digit.stride - first % digit.stride;  // assignments with that value
  const bool is_uniform = values == 1 || rest >= kLanes;
  if (is_uniform && worker.values[index] == value) return;
  worker.values[index] = is_uniform ? value : kNotUniform;
  worker.program.mark_changed(digit.constant);
  W* lanes = worker.program.get_lanes<W>(digit.slot);
  std::size_t done = 0;
  while (done < kLanes) {
    const std::size_t space = kLanes - done;
    std::size_t length = 0;
    if (digit.stride == 1) {
      length = static_cast<std::size_t>(std::min<std::uint64_t>(space, values - value));
      digit.domain.fill(value, length, lanes + done);
      value = (value + length) % values;
    } else {
      length = static_cast<std::size_t>(std::min<std::uint64_t>(space, rest));
      digit.domain.fill(value, 1, lanes + done);
      std::fill_n(lanes + done, length, lanes[done]);
      value = (value + 1) % values;
      rest = digit.stride;
    }
    done += length;
  }
}

// Results -------------------------------------------------------------------------------------

std::uint64_t Enumeration::get_effort() const {
  std::uint64_t sum = 0;
  for (const Worker& worker : workers)
    sum += worker.program.get_effort();
  return sum;
}

double Enumeration::estimate() const {
  const auto left = static_cast<double>(count - tried);
  if (tried == 0) {
    const BlockProgram& program = workers.front().program;
    const double blocks = left / static_cast<double>(kLanes) + 1;
    return blocks * static_cast<double>(program.get_block_effort()) +
           left * static_cast<double>(program.get_lane_effort());
  }
  return left / static_cast<double>(tried) * static_cast<double>(get_effort());
}

std::vector<std::pair<const Term*, QNumber>> Enumeration::get_assignment() const {
  std::vector<std::pair<const Term*, QNumber>> values;
  const Worker& worker = workers[finder];
  const auto add = [&](Slot slot) {
    values.emplace_back(formulas.get_term(slot),
                        to_number(worker.program.get_word(slot, worker.lane)));
  };
  for (const Slot slot : formulas.get_constants())
    add(slot);
  for (const Slot slot : formulas.get_defined())
    add(slot);
  return values;
}

}  // namespace vorn::search
