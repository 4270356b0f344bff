#include "vorn/search/word_program.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "vorn/search/native_float.h"
#include "vorn/semantics/application.h"
#include "vorn/semantics/evaluator.h"

namespace vorn::search {
namespace {

using T = SymbolTag;

constexpr std::size_t kWordBits = 64;
constexpr float kNeverTrue = 1e6F;  // of a literal; more than any sum of distances in a formula
constexpr float kNotANumber = 64;   // as far as any two numbers are apart
constexpr float kElsewhere = 8;     // where no distance is measured
constexpr std::uint64_t kExactEffort = 50;

bool is_float(const DataType* type) {
  return type->get_kind() == DataType::Kind::floating_point;
}

/// The pattern of the positive infinity.
std::uint64_t infinity_of(IEEEFloat::format f) {
  return ((std::uint64_t{1} << f.e) - 1) << f.m;
}

/// Whether a pattern of a float sort is a NaN.
bool is_nan(std::uint64_t bits, const DataType* type) {
  const IEEEFloat::format f = type->get_format();
  const std::uint64_t magnitude = bits & ((std::uint64_t{1} << (f.e + f.m)) - 1);
  return magnitude > infinity_of(f);
}

/// At least 1, the cost of the next value.
float measure(std::uint64_t distance) {
  return std::log2(static_cast<float>(distance) + 2);
}

std::uint64_t find_distance(std::int64_t a, std::int64_t b) {
  const auto x = static_cast<std::uint64_t>(a);
  const auto y = static_cast<std::uint64_t>(b);
  return a < b ? y - x : x - y;
}

/// The value of a function is chosen, not computed; arrays and what is read of them are neither.
bool fits_a_word(const Term* t) {
  const DataType* type = t->get_type();
  return type->has_bits() && type->get_value_width() <= kWordBits &&
         !t->get_symbol()->is_function();
}

}  // namespace

QNumber to_number(std::uint64_t word) {
  mpz_class value;
  mpz_import(value.get_mpz_t(), 1, 1, sizeof(word), 0, 0, &word);
  return QNumber::from_mpz(value);
}

std::uint64_t to_word(const QNumber& number) {
  std::int64_t small = 0;
  if (number.get_int64(&small)) return static_cast<std::uint64_t>(small);
  std::uint64_t word = 0;
  mpz_export(&word, nullptr, 1, sizeof(word), 0, 0, number.get_numerator().get_mpz_t());
  return word;
}

std::int64_t order_of(std::uint64_t bits, std::size_t width) {
  const std::uint64_t sign = std::uint64_t{1} << (width - 1);
  const auto magnitude = static_cast<std::int64_t>(bits & (sign - 1));
  return (bits & sign) != 0 ? -magnitude : magnitude;
}

std::uint64_t bits_of_order(std::int64_t order, std::size_t width) {
  if (order >= 0) return static_cast<std::uint64_t>(order);
  return static_cast<std::uint64_t>(-order) | std::uint64_t{1} << (width - 1);
}

// Construction --------------------------------------------------------------------------------

/// Programs in static single assignment, as many front ends write them, are full of equations that
/// a search could keep only by changing both sides at once. That fp.eq takes NaN out and the zeros
/// together is no matter here: the equation itself is still a formula.
WordProgram::Definitions WordProgram::find_definitions(const TermManager& manager,
                                                       std::span<const Term* const> formulas,
                                                       const Test& defines) {
  Definitions definitions;
  QNumber ignored;
  const auto is_constant = [&](const Term* t) {
    return t->get_arity() == 0 && !semantics::read_literal(manager, t, &ignored);
  };
  for (const Term* f : formulas) {
    SymbolTag::tag tag = f->get_tag();
    // What a rewriting manager makes of the equality of Booleans.
    if (tag == T::bool_not && f->get_arg(0)->get_tag() == T::bool_xor) {
      f = f->get_arg(0);
      tag = T::bool_iff;
    }
    if (tag != T::equal && tag != T::bool_iff && tag != T::fp_equal) continue;
    if (defines && !defines(f)) continue;
    for (const std::size_t side : {0U, 1U}) {
      const Term* constant = f->get_arg(side);
      if (!is_constant(constant)) continue;
      if (definitions.emplace(constant, f->get_arg(1 - side)).second) break;
    }
  }
  return definitions;
}

std::optional<WordProgram> WordProgram::compile(const TermManager& manager,
                                                std::span<const Term* const> formulas,
                                                std::size_t limit, const Test& defines) {
  WordProgram program;
  Definitions definitions = find_definitions(manager, formulas, defines);
  std::unordered_map<const Term*, Slot> slots;
  std::unordered_set<const Term*> entered;  // defined constants
  std::vector<const Term*> stack(formulas.rbegin(), formulas.rend());
  std::vector<Slot> args;
  std::vector<const Term*> needed;
  while (!stack.empty()) {
    const Term* t = stack.back();
    if (slots.contains(t)) {
      stack.pop_back();
      continue;
    }
    needed.assign(t->get_args().begin(), t->get_args().end());
    const auto definition = definitions.find(t);
    if (definition != definitions.end()) {
      needed = {definition->second};
      // A constant that comes up again before it is computed depends on itself.
      if (!entered.insert(t).second && !slots.contains(definition->second)) needed.clear();
    }
    args.clear();
    const std::size_t depth = stack.size();
    for (const Term* arg : needed) {
      const auto found = slots.find(arg);
      if (found == slots.end()) {
        stack.push_back(arg);
      } else {
        args.push_back(found->second);
      }
    }
    if (stack.size() > depth) continue;
    stack.pop_back();
    if (!fits_a_word(t) || slots.size() == limit) return std::nullopt;
    slots.emplace(t, program.add(manager, t, args));
  }
  for (const Term* f : formulas)
    program.roots.push_back(slots.at(f));
  return program;
}

WordProgram::Slot WordProgram::add(const TermManager& manager, const Term* t,
                                   std::span<const Slot> arguments) {
  const auto slot = static_cast<Slot>(nodes.size());
  Node node{t, static_cast<std::uint32_t>(args.size()), static_cast<std::uint8_t>(arguments.size()),
            0, manager.is_bool_type(t->get_type())};
  args.insert(args.end(), arguments.begin(), arguments.end());
  if (!arguments.empty()) {
    const DataType* type = nodes[arguments.back()].term->get_type();
    node.native = find_native_format(type);
  }
  floats = floats || is_float(t->get_type());
  nodes.push_back(node);
  values.push_back(0);
  costs.emplace_back();
  if (!arguments.empty()) {
    if (t->get_arity() == 0) defined.push_back(slot);
    return slot;
  }

  QNumber number;
  const bool is_literal = semantics::read_literal(manager, t, &number);
  set_value(slot, is_literal ? to_word(number) : 0);
  if (!is_literal) {
    constants.push_back(slot);
  } else if (node.is_boolean) {
    costs[slot] = values[slot] != 0 ? Cost{0, kNeverTrue} : Cost{kNeverTrue, 0};
  } else if (!manager.is_fprounding_type(t->get_type())) {
    literals.push_back(slot);
  }
  return slot;
}

std::span<const WordProgram::Slot> WordProgram::get_args(Slot slot) const {
  return std::span(args).subspan(nodes[slot].first_arg, nodes[slot].arity);
}

void WordProgram::set_value(Slot slot, std::uint64_t value) {
  const DataType* type = nodes[slot].term->get_type();
  if (is_float(type) && is_nan(value, type))
    value = to_word(semantics::canonical_bits(type, to_number(value)));
  values[slot] = value;
  if (nodes[slot].is_boolean) costs[slot] = value != 0 ? Cost{0, 1} : Cost{1, 0};
}

// Evaluation ----------------------------------------------------------------------------------

void WordProgram::run(std::span<const Slot> slots) {
  for (const Slot slot : slots)
    compute(slot);
  reset_rounding();
}

void WordProgram::compute(Slot slot) {
  const Node& node = nodes[slot];
  std::optional<std::uint64_t> value;
  switch (node.term->get_tag()) {
    case T::none:  // a constant with a definition
      value = arg(node, 0);
      break;
    case T::bool_not:
      value = arg(node, 0) ^ 1U;
      break;
    case T::bool_and:
      value = arg(node, 0) & arg(node, 1);
      break;
    case T::bool_or:
      value = arg(node, 0) | arg(node, 1);
      break;
    case T::ite:
      value = arg(node, 0) != 0 ? arg(node, 1) : arg(node, 2);
      break;
    case T::equal:
      value = arg(node, 0) == arg(node, 1);
      break;
    default:
      if (node.native != 0) value = compute_natively(node);
  }
  values[slot] = value ? *value : compute_exactly(node);
  if (node.is_boolean) costs[slot] = find_cost(node, values[slot] != 0);
}

std::optional<std::uint64_t> WordProgram::compute_natively(const Node& node) const {
  if (node.term->get_tag() == T::fp_cast) {
    const std::uint8_t to = find_native_format(node.term->get_type());
    if (to == 0) return std::nullopt;
    return convert_native(node.native, to, arg(node, 0), arg(node, 1));
  }
  std::array<std::uint64_t, 4> words{};
  for (std::size_t i = 0; i < node.arity; ++i)
    words[i] = arg(node, i);
  return apply_native(node.term->get_tag(), node.native, {words.data(), node.arity});
}

std::uint64_t WordProgram::get_effort(std::span<const Slot> slots) const {
  std::uint64_t sum = 0;
  for (const Slot slot : slots)
    sum += nodes[slot].native != 0 || nodes[slot].is_boolean ? 1 : kExactEffort;
  return sum;
}

QNumber WordProgram::get_number(Slot slot) const {
  return to_number(values[slot]);
}

std::uint64_t WordProgram::compute_exactly(const Node& node) const {
  std::array<QNumber, 4> numbers;
  std::array<const QNumber*, 4> pointers{};
  for (std::size_t i = 0; i < node.arity; ++i) {
    numbers[i] = to_number(arg(node, i));
    pointers[i] = &numbers[i];
  }
  return to_word(semantics::apply(node.term, {pointers.data(), node.arity}, {}));
}

// Costs ---------------------------------------------------------------------------------------

WordProgram::Cost WordProgram::find_cost(const Node& node, bool holds) const {
  const Cost a = arg_cost(node, 0);
  const Cost b = node.arity > 1 ? arg_cost(node, 1) : Cost{};
  const Cost equal{std::min(a.of_true + b.of_true, a.of_false + b.of_false),
                   std::min(a.of_true + b.of_false, a.of_false + b.of_true)};
  switch (node.term->get_tag()) {
    case T::none:
      return a;
    case T::bool_not:
      return {a.of_false, a.of_true};
    case T::bool_and:
      return {a.of_true + b.of_true, std::min(a.of_false, b.of_false)};
    case T::bool_or:
      return {std::min(a.of_true, b.of_true), a.of_false + b.of_false};
    case T::bool_implies:
      return {std::min(a.of_false, b.of_true), a.of_true + b.of_false};
    case T::bool_xor:
      return {equal.of_false, equal.of_true};
    case T::bool_iff:
      return equal;
    case T::ite: {
      const Cost c = arg_cost(node, 2);
      return {std::min(a.of_true + b.of_true, a.of_false + c.of_true),
              std::min(a.of_true + b.of_false, a.of_false + c.of_false)};
    }
    case T::equal:
      if (nodes[args[node.first_arg]].is_boolean) return equal;
      break;
    default:
      break;
  }
  const float distance = measure_atom(node);
  return holds ? Cost{0, distance} : Cost{distance, 0};
}

/// How far the arguments of a predicate are from giving it its other value.
float WordProgram::measure_atom(const Node& node) const {
  const std::uint64_t x = arg(node, 0);
  const DataType* type = node.term->get_arg(0)->get_type();
  const std::size_t width = type->get_value_width();
  if (!is_float(type)) {
    if (node.arity != 2) return kElsewhere;
    const std::uint64_t y = arg(node, 1);
    if (node.term->get_tag() == T::equal) return 1 + static_cast<float>(std::popcount(x ^ y));
    return measure(x < y ? y - x : x - y);
  }
  const std::int64_t order = order_of(x, width);
  if (node.arity == 2) {
    const std::uint64_t y = arg(node, 1);
    if (is_nan(x, type) || is_nan(y, type)) return kNotANumber;
    return measure(find_distance(order, order_of(y, width)));
  }
  const auto infinity = static_cast<std::int64_t>(infinity_of(type->get_format()));
  switch (node.term->get_tag()) {
    case T::fp_iszero:
    case T::fp_isnegative:
    case T::fp_ispositive:
      return measure(find_distance(order, 0));
    case T::fp_isinf:
      return measure(find_distance(std::abs(order), infinity));
    default:
      return kElsewhere;
  }
}

}  // namespace vorn::search
