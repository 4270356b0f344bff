// Moves of all floats of a violated comparison at once.
//
// The comparisons of numeric code are often between sums of products. Linear ones are half spaces,
// and steps from one to the next, each about as far as the violated one needs, lead to where all of
// them meet (Motzkin and Schoenberg, "The relaxation method for linear inequalities", 1954), while
// changing one constant at a time gets stuck in the first edge between two of them. What is not
// linear is taken to be so nearby.
#include <algorithm>
#include <cmath>
#include <utility>

#include "vorn/search/local_search.h"
#include "vorn/search/real_values.h"

namespace vorn::search {
namespace {

using T = SymbolTag;

constexpr std::size_t kMostVariables = 64;
constexpr unsigned kScales = 10;

/// The value of a float, if it is a number that the processor has.
std::optional<double> get_real(const WordProgram& program, WordProgram::Slot slot) {
  const DataType* type = program.get_term(slot)->get_type();
  if (type->get_kind() != DataType::Kind::floating_point) return std::nullopt;
  if (!has_real_values(type->get_format())) return std::nullopt;
  return real_of_bits(program.get_value(slot), type->get_format());
}

void set_real(WordProgram& program, WordProgram::Slot slot, double x) {
  const DataType* type = program.get_term(slot)->get_type();
  program.set_value(slot, bits_of_real(x, type->get_format()));
}

}  // namespace

/// An atom that is in the way of a violated assertion: of several that would do, the nearest.
LocalSearch::Aim LocalSearch::find_aim(const Root& root) const {
  Aim aim = {root.slot, true};
  for (;;) {
    const T::tag tag = program.get_term(aim.atom)->get_tag();
    const bool is_connective =
        tag == T::bool_not || tag == T::bool_and || tag == T::bool_or || tag == T::bool_implies;
    if (!is_connective) return aim;
    std::optional<Aim> nearest;
    float least = 0;
    const std::span<const Slot> args = program.get_args(aim.atom);
    for (std::size_t i = 0; i < args.size(); ++i) {
      const bool is_negated = tag == T::bool_not || (tag == T::bool_implies && i == 0);
      const bool truth = aim.truth != is_negated;
      const WordProgram::Cost costs = program.get_cost(args[i]);
      const float cost = truth ? costs.of_true : costs.of_false;
      if (cost == 0 || (nearest && cost >= least)) continue;
      nearest = {args[i], truth};
      least = cost;
    }
    if (!nearest) return aim;
    aim = *nearest;
  }
}

/// What has to become 0 or less for a comparison to be as it should.
std::optional<double> LocalSearch::get_excess(const Aim& aim) const {
  const T::tag tag = program.get_term(aim.atom)->get_tag();
  if (tag != T::fp_lt && tag != T::fp_le && tag != T::fp_equal && tag != T::equal) {
    return std::nullopt;
  }
  const std::span<const Slot> args = program.get_args(aim.atom);
  const std::optional<double> a = get_real(program, args[0]);
  const std::optional<double> b = get_real(program, args[1]);
  if (!a || !b) return std::nullopt;
  return aim.truth ? *a - *b : *b - *a;
}

/// How fast the excess rises with a constant; 0 where that cannot be told.
double LocalSearch::get_slope(const Variable& v, const Aim& aim, double excess, double scale) {
  const std::optional<double> x = get_real(program, v.slot);
  if (!x) return 0;
  save(v);
  const double step = std::max(std::abs(*x), 1.0) * scale;
  set_real(program, v.slot, *x + step);
  program.run(v.cone);
  spent += v.effort;
  const std::optional<double> next = get_excess(aim);
  restore(v);
  return next ? (*next - excess) / step : 0;
}

/// A move for a violated assertion, whatever it does to others. False if there is none.
bool LocalSearch::project(const Root& root) {
  if (root.variables.size() > kMostVariables) return false;
  const Aim aim = find_aim(root);
  const std::optional<double> excess = get_excess(aim);
  if (!excess) return false;
  const double scale = std::ldexp(1.0, -1 - static_cast<int>(draw(kScales)));
  std::vector<double> slopes;
  double norm = 0;
  for (const std::uint32_t index : root.variables) {
    slopes.push_back(get_slope(variables[index], aim, *excess, scale));
    norm += slopes.back() * slopes.back();
  }
  if (norm == 0 || !std::isfinite(norm)) return false;
  // From onto the edge to its mirror image: only beyond it there is room for rounding.
  const double length = *excess / norm * (1 + static_cast<double>(draw(5)) / 4);
  for (std::size_t i = 0; i < slopes.size(); ++i) {
    if (slopes[i] == 0) continue;
    const Slot slot = variables[root.variables[i]].slot;
    set_real(program, slot, *get_real(program, slot) - length * slopes[i]);
  }
  program.run(all);
  spent += program.get_effort(all);
  return true;
}

}  // namespace vorn::search
