#include "vorn/search/kernel_check.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "vorn/search/native_float.h"
#include "vorn/semantics/application.h"

namespace vorn::search {
namespace {

using Mode = IEEEFloat::rounding_mode;

constexpr std::size_t kTuples = 64;

struct alignas(64) Lanes {
  std::array<std::uint64_t, kLanes> words{};

  void set(const LaneSort& sort, std::size_t i, std::uint64_t lane) {
    if (sort.lane == 64) {
      words[i] = lane;
    } else {
      auto* halves = reinterpret_cast<std::uint32_t*>(words.data());
      halves[i] = static_cast<std::uint32_t>(lane);
    }
  }
  std::uint64_t get(const LaneSort& sort, std::size_t i) const {
    if (sort.lane == 64) return words[i];
    return reinterpret_cast<const std::uint32_t*>(words.data())[i];
  }
};

struct Expected {
  std::uint64_t word = 0;
  bool is_open = false;
};

/// One kernel, and the operands that it is tried on.
class Trial {
 public:
  Trial(const LaneStep& tried, std::size_t count, std::uint64_t seed)
      : step(tried), call(tried.call), tuples(count) {
    std::mt19937_64 random(seed);
    const std::size_t first = step.has_mode ? 1 : 0;
    for (std::size_t i = first; i < step.args.size(); ++i)
      sorts.push_back(LaneSort::of(step.term->get_arg(i)->get_type()));
    operands.resize(sorts.size());
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      std::uint64_t near = 0;
      for (std::size_t i = 0; i < sorts.size(); ++i) {
        const bool is_new = lane < tuples;
        near = is_new ? draw_operand(sorts[i], near, random) : words[i][lane % tuples];
        words[i][lane] = near;
        operands[i].set(sorts[i], lane, sorts[i].to_lane(near));
      }
    }
  }

  bool run(Mode mode, std::string* difference) {
    for (std::size_t i = 0; i < sorts.size(); ++i)
      call.in[i] = operands[i].words.data();
    call.out = out.words.data();
    auto* open_lanes = reinterpret_cast<std::uint32_t*>(open.words.data());
    call.open = step.is_open ? open_lanes : nullptr;
    call.mode = mode;
    if (!set_rounding(mode)) return false;
    step.kernel(call);
    reset_rounding();
    std::vector<Expected> expected;
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      if (lane < tuples) expected.push_back(expect(mode, lane));
      const Expected& wanted = expected[lane % tuples];
      const std::uint64_t word = call.sort.to_word(out.get(call.sort, lane));
      const bool is_open = step.is_open && open_lanes[lane] != 0;
      if (is_open == wanted.is_open && (is_open || word == wanted.word)) continue;
      if (difference != nullptr) *difference = describe(mode, lane, word, wanted.word);
      return false;
    }
    return true;
  }

 private:
  Expected expect(Mode mode, std::size_t lane) const {
    std::vector<QNumber> numbers;
    if (step.has_mode) numbers.emplace_back(static_cast<int>(mode));
    for (std::size_t i = 0; i < sorts.size(); ++i)
      numbers.push_back(to_number(words[i][lane]));
    std::vector<const QNumber*> pointers;
    pointers.reserve(numbers.size());
    for (const QNumber& number : numbers)
      pointers.push_back(&number);
    Expected expected;
    const QNumber value =
        semantics::apply(step.term, pointers, [&](const Term*, std::span<const QNumber>) {
          expected.is_open = true;
          return QNumber();
        });
    expected.word = to_word(value);
    return expected;
  }

  std::string describe(Mode mode, std::size_t lane, std::uint64_t word,
                       std::uint64_t wanted) const {
    std::string text =
        fmt::format("operation {} in mode {}, lane {}, of", static_cast<int>(step.term->get_tag()),
                    static_cast<int>(mode), lane);
    for (std::size_t i = 0; i < sorts.size(); ++i)
      text += fmt::format(" {:#x}", words[i][lane]);
    return text + fmt::format(" is {:#x} and should be {:#x}", word, wanted);
  }

  const LaneStep& step;
  LaneCall call;
  std::size_t tuples;
  std::vector<LaneSort> sorts;
  std::vector<Lanes> operands;
  std::array<std::array<std::uint64_t, kLanes>, 3> words{};
  Lanes out;
  Lanes open;
};

std::uint64_t draw_float(const LaneSort& sort, std::uint64_t near, std::mt19937_64& random) {
  const std::uint64_t fraction = (std::uint64_t{1} << sort.m) - 1;
  const std::uint64_t exponent = ((std::uint64_t{1} << sort.e) - 1) << sort.m;
  const std::uint64_t sign = std::uint64_t{1} << (sort.e + sort.m);
  const std::uint64_t one = exponent >> 1U & exponent;
  const std::uint64_t bits = random() & (sign | exponent | fraction);
  switch (random() % 10) {
    case 0: {
      const std::array<std::uint64_t, 10> special = {0,        1,           fraction, fraction + 1,
                                                     one,      one + 1,     one - 1,  exponent - 1,
                                                     exponent, exponent | 1};
      return special[random() % special.size()] | (bits & sign);
    }
    case 1:
      return bits & ~exponent;
    case 2:  // the same magnitude or the next
      return ((near ^ (bits & sign)) + random() % 3) & (sign | exponent | fraction);
    case 3:  // the same binade
      return (bits & ~exponent) | (near & exponent);
    case 4:  // about the last place of the other
      return ((bits & ~exponent) | ((near + ((random() % 4) << sort.m)) & exponent)) ^ fraction;
    case 5:  // a short fraction, as ties have
      return bits & ~(fraction >> random() % (sort.m + 1U));
    case 6:
    case 7: {  // around 1, and integers
      const std::uint64_t shift = (random() % (sort.m + 4U)) << sort.m;
      return (bits & ~exponent) | ((one + shift) & exponent);
    }
    default:
      return bits;
  }
}

}  // namespace

std::uint64_t draw_operand(const LaneSort& sort, std::uint64_t near, std::mt19937_64& random) {
  if (sort.kind == LaneSort::Kind::truth) return random() % 2;
  if (sort.kind == LaneSort::Kind::mode) return random() % 5;
  if (sort.kind == LaneSort::Kind::floats) {
    return sort.to_word(sort.to_lane(draw_float(sort, near, random)));
  }
  const std::uint64_t mask = ~std::uint64_t{0} >> (64U - sort.width);
  const std::uint64_t power = std::uint64_t{1} << random() % sort.width;
  switch (random() % 4) {
    case 0:
      return (power + random() % 3 - 1) & mask;
    case 1:
      return (near + random() % 3 - 1) & mask;
    case 2:
      return random() % 70 & mask;
    default:
      return random() & mask;
  }
}

bool is_exact(const LaneStep& step, std::size_t tuples, std::uint64_t seed,
              std::string* difference) {
  if (step.kernel == nullptr) return true;
  Trial trial(step, tuples, seed);
  if (!trial.run(Mode::nearest_even, difference)) return false;
  if (!step.has_mode) return true;
  return trial.run(Mode::toward_zero, difference) && trial.run(Mode::plus_inf, difference) &&
         trial.run(Mode::minus_inf, difference);
}

bool is_exact(const BlockProgram& program) {
  using Key = std::vector<std::uint32_t>;
  static std::mutex mutex;
  static std::map<Key, bool> known;
  if (!keeps_subnormals()) return false;
  const std::lock_guard lock(mutex);
  for (const LaneStep& step : program.get_steps()) {
    if (step.kernel == nullptr) continue;
    Key key = {step.term->get_tag()};
    for (const std::uint32_t index : step.term->get_symbol()->get_indices())
      key.push_back(index);
    const auto add = [&key](const DataType* type) {
      const LaneSort sort = LaneSort::of(type);
      key.insert(key.end(), {static_cast<std::uint32_t>(sort.kind), sort.lane, sort.width, sort.e});
    };
    add(step.term->get_type());
    for (const Term* arg : step.term->get_args())
      add(arg->get_type());
    const auto found = known.find(key);
    const bool is_right = found != known.end() ? found->second : is_exact(step, kTuples, 1);
    known.emplace(key, is_right);
    if (!is_right) return false;
  }
  return true;
}

}  // namespace vorn::search
