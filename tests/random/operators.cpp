#include "tests/random/operators.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "tests/random/letters.h"

namespace vorn::random {
namespace {

using enum Growth;

/// How often an operation comes and what it costs; others come and cost as Operator has it.
struct Tuning {
  SymbolTag::tag tag;
  unsigned weight;
  Growth growth = linear;
  unsigned factor = 1;
};

using T = SymbolTag;

constexpr Tuning kTunings[] = {
    {T::bool_not, 6},
    {T::bool_and, 8},
    {T::bool_or, 6},
    {T::bool_xor, 3},
    {T::bool_implies, 3},
    {T::equal, 14},
    {T::distinct, 4},
    {T::ite, 5},
    {T::bv_concat, 4},
    {T::bv_extract, 4, linear, 0},
    {T::bv_zero_extend, 2, linear, 0},
    {T::bv_sign_extend, 3, linear, 0},
    {T::bv_repeat, 1, linear, 0},
    {T::bv_rotate_left, 1, linear, 0},
    {T::bv_rotate_right, 1, linear, 0},
    {T::bv_not, 4},
    {T::bv_neg, 4, linear, 5},
    {T::bv_and, 4},
    {T::bv_or, 4},
    {T::bv_xor, 4, linear, 3},
    {T::bv_nand, 1},
    {T::bv_nor, 1},
    {T::bv_xnor, 2, linear, 3},
    {T::bv_add, 5, linear, 10},
    {T::bv_sub, 4, linear, 10},
    {T::bv_mul, 4, quadratic, 12},
    {T::bv_udiv, 2, quadratic, 20},
    {T::bv_urem, 2, quadratic, 20},
    {T::bv_sdiv, 2, quadratic, 25},
    {T::bv_srem, 2, quadratic, 25},
    {T::bv_smod, 2, quadratic, 30},
    {T::bv_shl, 3, linear, 20},
    {T::bv_lshr, 3, linear, 20},
    {T::bv_ashr, 3, linear, 20},
    {T::bv_comp, 3, linear, 3},
    {T::bv_ult, 3, linear, 5},
    {T::bv_ule, 3, linear, 5},
    {T::bv_ugt, 2, linear, 5},
    {T::bv_uge, 2, linear, 5},
    {T::bv_slt, 3, linear, 5},
    {T::bv_sle, 3, linear, 5},
    {T::bv_sgt, 2, linear, 5},
    {T::bv_sge, 2, linear, 5},
    {T::fp_from_bits, 4},
    {T::fp_cast, 5, linear, 40},
    {T::fp_from_sbv, 3, linear, 50},
    {T::fp_from_ubv, 3, linear, 50},
    {T::fp_to_ubv, 4, linear, 60},
    {T::fp_to_sbv, 4, linear, 60},
    {T::fp_to_bits, 4},
    {T::fp_isnan, 3},
    {T::fp_isinf, 3},
    {T::fp_iszero, 3},
    {T::fp_isnormal, 3},
    {T::fp_issubnormal, 3},
    {T::fp_isnegative, 3},
    {T::fp_ispositive, 3},
    {T::fp_equal, 4, linear, 8},
    {T::fp_lt, 4, linear, 10},
    {T::fp_le, 4, linear, 10},
    {T::fp_gt, 3, linear, 10},
    {T::fp_ge, 3, linear, 10},
    {T::fp_neg, 4},
    {T::fp_abs, 4},
    {T::fp_min, 3, linear, 10},
    {T::fp_max, 3, linear, 10},
    {T::fp_add, 6, linear, 90},
    {T::fp_sub, 4, linear, 90},
    {T::fp_mul, 5, quadratic, 18},
    {T::fp_div, 4, quadratic, 30},
    {T::fp_fma, 4, quadratic, 40},
    {T::fp_sqrt, 4, quadratic, 25},
    {T::fp_rem, 3, exponential, 60},
    {T::fp_round_to_integral, 4, linear, 60},
    {T::array_select, 9, linear, 20},
    {T::array_store, 12, linear, 20},
    {T::array_const, 3, linear, 5},
};

/// What only the reader has.
constexpr Operator kForms[] = {
    {"fp", "F:1PM", 4},
    {"to_fp", "F:RQ", 2, linear, 5, Indexing::format},
};

const Tuning* find_tuning(SymbolTag::tag tag) {
  const auto* found = std::ranges::find(kTunings, tag, &Tuning::tag);
  return found == std::end(kTunings) ? nullptr : found;
}

std::vector<Operator> list_operators() {
  std::vector<Operator> all(std::begin(kForms), std::end(kForms));
  for (const Operation& op : vorn::get_operations()) {
    const std::string_view letters = op.signature.get_letters();
    if (op.is_printed_only || letters.empty()) continue;
    Operator row{op.name, op.signature.get_text()};
    row.index = op.indexing;
    row.takes_more = op.arity != Arity::fixed && letters.size() == 2 && letters[0] == letters[1];
    if (const Tuning* tuning = find_tuning(op.tag)) {
      row.weight = tuning->weight;
      row.growth = tuning->growth;
      row.factor = tuning->factor;
    }
    all.push_back(row);
  }
  return all;
}

std::string head_of(const Operator& op, const Sort& result, const Sort& arg, Random& random) {
  switch (op.index) {
    case Indexing::none:
      return std::string(op.name);
    case Indexing::format:
      return fmt::format("(_ {} {} {})", op.name, result.w0, result.w1);
    case Indexing::width:
      return fmt::format("(_ {} {})", op.name, result.w0);
    case Indexing::extraction: {
      const std::size_t low = random.below(arg.w0 - result.w0 + 1);
      return fmt::format("(_ {} {} {})", op.name, low + result.w0 - 1, low);
    }
    case Indexing::extension:
      return fmt::format("(_ {} {})", op.name, result.w0 - arg.w0);
    case Indexing::repetition:
      return fmt::format("(_ {} {})", op.name, result.w0 / arg.w0);
    case Indexing::sort:
      return fmt::format("(as {} {})", op.name, to_string(result));
    case Indexing::rotation:
      break;
  }
  return fmt::format("(_ {} {})", op.name, random.below(2 * result.w0 + 1));
}

std::uint64_t cost_of(const Operator& op, const Sort& result, const std::vector<Sort>& args) {
  std::uint64_t width = result.width();
  std::uint64_t exponent = result.w0;
  for (const Sort& arg : args) {
    width = std::max<std::uint64_t>(width, arg.width());
    if (arg.kind == Sort::Kind::floating) exponent = std::max<std::uint64_t>(exponent, arg.w0);
  }
  std::uint64_t cost = 1 + op.factor * width * args.size();
  if (op.growth != linear)
    cost = op.factor * width * width * std::max<std::uint64_t>(1, args.size() / 2);
  if (op.growth == exponential) cost <<= std::min<std::uint64_t>(exponent, 20);
  return cost;
}

}  // namespace

std::span<const Operator> get_operators() {
  static const std::vector<Operator> kOperators = list_operators();
  return kOperators;
}

Sort Palette::random_sort(Random& random) const {
  if (!arrays.empty() && random.percent(25)) return random.pick(arrays);
  if (has_people && random.percent(12)) return kPeople;
  const std::size_t choice = random.below(10);
  if (choice == 0) return kBool;
  if (choice == 1 && !floats.empty()) return kMode;
  if (widths.empty() && floats.empty()) return kBool;
  const bool bits = floats.empty() || (!widths.empty() && choice < 5);
  return bits ? bits_sort(random.pick(widths)) : random.pick(floats);
}

bool can_make(const Operator& op, const Sort& result, const Palette& palette) {
  // Over an uninterpreted index an array of one element says how many elements there are.
  const bool is_constant = op.index == Indexing::sort && result.kind == Sort::Kind::array;
  if (is_constant && names_people(index_of(result))) return false;
  Random unused(0);
  return Letters(palette, unused).bind(op.result(), result);
}

std::optional<Application> apply(const Operator& op, const Sort& result, const Palette& palette,
                                 Random& random) {
  std::string letters(op.signature.substr(2));
  while (op.takes_more && random.percent(15))
    letters.push_back(letters.back());
  Letters sorts(palette, random);
  if (!sorts.bind(op.result(), result) || !sorts.choose(letters, op.result())) {
    return std::nullopt;
  }
  Application application;
  for (const char letter : letters)
    application.args.push_back(sorts.get(letter));
  application.head = head_of(op, result, application.args[0], random);
  application.cost = cost_of(op, result, application.args);
  return application;
}

}  // namespace vorn::random
