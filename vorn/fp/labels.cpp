#include "vorn/fp/labels.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace vorn::fp {
namespace {

using enum Stage;
using R = Reading;

constexpr std::string_view kStageNames[] = {
    "unpack", "compare",   "select",      "normalise operands",
    "align",  "add",       "multiply",    "divide",
    "root",   "reduce",    "integer",     "special cases",
    "scale",  "normalise", "denormalise", "round",
    "pack",   "result",    "other"};

constexpr std::string_view kReadingNames[] = {"bits",      "flag",        "sign",
                                              "mode",      "exponent",    "exponent field",
                                              "count",     "significand", "signed significand",
                                              "magnitude", "float",       "result"};

constexpr Label kUnknown = {"", other, R::bits};

// Where the point of a significand stands follows from the circuits. A sum has its two operands
// below two further bits, a product of significands two bits before its point; all others have one.
constexpr Label kLabels[] = {
    // Operands
    {"add_sub_arg0", result, R::mode},
    {"add_sub_arg#", result, R::source},
    {"mul_arg0", result, R::mode},
    {"mul_arg#", result, R::source},
    {"div_arg0", result, R::mode},
    {"div_arg#", result, R::source},
    {"cast_arg0", result, R::mode},
    {"cast_arg#", result, R::source},
    {"*_arg0", unpack, R::mode},
    {"*_arg#", unpack, R::source},
    {"*_exp#", unpack, R::exponent},
    {"*_sign#", unpack, R::sign},
    {"*_mant#", unpack, R::significand, "*_exp#"},
    {"*_inf#", unpack, R::flag},
    {"*_nan#", unpack, R::flag},
    {"*_zero#", unpack, R::flag},
    {"*_result", result, R::target},
    {"add_exp_bigger", unpack, R::exponent},
    {"add_exp#_biased", unpack, R::exponent_field},
    {"cast_field", pack, R::bits},
    {"cast_fraction", pack, R::bits},

    // Addition
    {"add_distance", align, R::count},
    {"add_aligned", align, R::significand, "add_exp_bigger"},
    {"add_addres", add, R::signed_significand, "add_exp_bigger", 3},
    {"add_mant#_ext", add, R::significand, "add_exp_bigger", 3},
    {"add_sticky_bit", add, R::flag},
    {"add_samesign", add, R::flag},
    {"add_mant_res_sign", add, R::flag},
    {"add_mant_res", add, R::significand, "add_exp_bigger", 3},
    {"add_res_exp", add, R::exponent},
    {"add_inf", special, R::flag},
    {"add_nan", special, R::flag},
    {"add_add_sub_sign", special, R::sign},
    {"add_absres", result, R::magnitude},
    {"add_cancelled", result, R::flag},
    {"add_sign", result, R::sign},
    {"add_sub_result", result, R::target},

    // Multiplication, division
    {"mul_mant", multiply, R::significand, "mul_exp", 2, Scale::exponent, -1},
    {"mul_exp", multiply, R::exponent},
    {"div_exp#_norm", normalise_operands, R::exponent},
    {"div_mant#_norm", normalise_operands, R::significand, "div_exp#_norm"},
    {"div_mant#_pad", divide, R::count},
    {"div_div", divide, R::count},
    {"div_rem", divide, R::count},
    {"div_mant", divide, R::significand, "div_exp"},
    {"div_exp#_ext", divide, R::exponent},
    {"div_exp", divide, R::exponent},
    {"div_sign", result, R::sign},
    {"div_inf", result, R::flag},
    {"div_nan", result, R::flag},
    {"div_zero_cond", result, R::flag},

    // Fused multiplication and addition
    {"fma_exp#_norm", normalise_operands, R::exponent},
    {"fma_mant#_norm", normalise_operands, R::significand, "fma_exp#_norm"},
    {"fma_product_sign", unpack, R::sign},
    {"fma_product_zero", unpack, R::flag},
    {"fma_product", multiply, R::significand, "fma_product_exp", 2},
    {"fma_product_exp", multiply, R::exponent},
    {"fma_exp", align, R::exponent},
    {"fma_big", align, R::significand, "fma_exp", 2},
    {"fma_small", align, R::bits},
    {"fma_distance", align, R::count},
    {"fma_aligned", align, R::significand, "fma_exp", 2},
    {"fma_sum", add, R::significand, "fma_exp", 3},
    {"fma_nan", special, R::flag},
    {"fma_inf", special, R::flag},
    {"fma_sign", special, R::sign},

    // Square root, remainder
    {"sqrt_exp#_norm", normalise_operands, R::exponent},
    {"sqrt_mant#_norm", normalise_operands, R::significand, "sqrt_exp#_norm"},
    {"sqrt_odd", root, R::flag},
    {"sqrt_radicand", root, R::count},
    {"sqrt_exp", root, R::exponent},
    {"sqrt_root", root, R::significand, "sqrt_exp"},
    {"sqrt_sticky_bit", root, R::flag},
    {"sqrt_nan", special, R::flag},
    {"rem_distance", align, R::exponent},
    {"rem_power_rest", reduce, R::count},
    {"rem_dividend", reduce, R::count},
    {"rem_divisor", reduce, R::count},
    {"rem_odd", reduce, R::flag},
    {"rem_rest", reduce, R::count},
    {"rem_up", reduce, R::flag},
    {"rem_mant", reduce, R::significand, "rem_exp"},
    {"rem_exp", reduce, R::exponent},
    {"rem_sign", special, R::sign},
    {"rem_nan", special, R::flag},
    {"rem_unreached", result, R::flag},

    // Rounding to integers
    {"integral_places", integer, R::exponent},
    {"integral_tiny", integer, R::flag},
    {"integral_amount", integer, R::count},
    {"integral_integer", integer, R::count},
    {"integral_rounding_bit", integer, R::flag},
    {"integral_sticky_bit", integer, R::flag},
    {"integral_increment", integer, R::flag},
    {"integral_value", integer, R::count},
    {"integral_too_large", integer, R::flag},
    {"to_int_bits", result, R::target},
    {"to_int_outside", result, R::flag},
    {"to_int_result", result, R::target},

    // Comparison and selection
    {"compare_ult", compare, R::flag},
    {"select_below", select, R::flag},
    {"select_zeros", select, R::flag},
    {"select_choice", select, R::bits},
    {"select_take_first", select, R::flag},

    // Rounding in the base encoder
    {"norm_shift_exp", normalise, R::exponent},
    {"norm_shift_mant", normalise, R::significand, "norm_shift_exp"},
    {"enc_norm_log_shift", normalise, R::count},
    {"enc_norm_log_mant", normalise, R::significand, "norm_shift_exp"},
    {"denorm_shift_exp", denormalise, R::exponent},
    {"denorm_shift_mant", denormalise, R::significand, "denorm_shift_exp"},
    {"denorm_shift_smallexp", denormalise, R::exponent},
    {"denorm_shift_denormal", denormalise, R::flag},
    {"denorm_shift_rshift", denormalise, R::count},
    {"denorm_shift_out_mant", denormalise, R::significand, "denorm_shift_out_exp", 1,
     Scale::subnormal},
    {"denorm_shift_out_exp", denormalise, R::exponent},
    {"round_mant_before", round, R::significand, "denorm_shift_out_exp", 1, Scale::subnormal},
    {"round_mant_lastbits", round, R::bits},
    {"round_mant_after_chop", round, R::significand, "denorm_shift_out_exp", 1, Scale::subnormal},
    {"out_correction_bit", round, R::flag},
    {"round_overflow", round, R::flag},
    {"mant_round_mant", round, R::significand, "exp_round_mant", 1, Scale::subnormal},
    {"exp_round_mant", round, R::exponent},
    {"exp_out_correction_bit", round, R::flag},
    {"exp_round_exp", round, R::exponent},
    {"biased_exp", pack, R::exponent_field},
    {"pack_denormal", pack, R::flag},
    {"pack_res_exp", pack, R::exponent_field},
    {"pack_res_mant", pack, R::bits},

    // Rounding in the exact encoder, and in both
    {"scale_exp_before", scale, R::exponent},
    {"scale_mant_before", scale, R::significand, "scale_exp_before"},
    {"scale_leading_zeros", scale, R::count},
    {"scale_distance", scale, R::exponent},
    {"scale_below", scale, R::flag},
    {"scale_left", normalise, R::count},
    {"scale_right", denormalise, R::count},
    {"scale_mant", denormalise, R::significand, "scale_field", 1, Scale::biased},
    {"scale_field", denormalise, R::exponent_field},
    {"round_kept", round, R::magnitude},
    {"round_body", round, R::magnitude},
    {"round_rounding", round, R::mode},
    {"round_sticky_bit", round, R::flag},
    {"round_rounding_bit", round, R::flag},
    {"round_rounding_least", round, R::flag},
    {"round_increment", round, R::flag},
    {"round_correction_bit", round, R::flag},
    {"exp_exponent_too_large", round, R::flag},
    {"pack_nan", pack, R::flag},
    {"pack_inf", pack, R::flag},
    {"pack_finite_max", pack, R::flag},
    {"pack_res_sign", pack, R::sign},
    {"pack_magnitude", pack, R::magnitude},
    {"round_ret", pack, R::target},
};

/// Whether `name` is an instance of `pattern`, in which `*` stands for the letters up to the first
/// underscore and `#` for a digit from 1 on.
bool matches(std::string_view pattern, std::string_view name) {
  if (pattern.starts_with('*')) {
    const std::size_t end = name.find('_');
    if (end == std::string_view::npos) return false;
    pattern.remove_prefix(1);
    name.remove_prefix(end);
  }
  return std::ranges::equal(
      pattern, name, [](char p, char c) { return p == '#' ? c >= '1' && c <= '9' : p == c; });
}

/// What a Boolean formula says of two terms: that they are the same, or not.
struct Sides {
  const Term* first;
  const Term* second;
  bool differ;
};

/// Reads an equality as a manager may have simplified it. Null terms where `formula` is none.
Sides read_equality(TermManager& manager, const Term* formula) {
  bool negated = false;
  for (; formula->get_tag() == SymbolTag::bool_not; formula = formula->get_arg(0))
    negated = !negated;
  switch (formula->get_tag()) {
    case SymbolTag::equal:
    case SymbolTag::bool_iff:
      return {formula->get_arg(0), formula->get_arg(1), negated};
    case SymbolTag::bool_xor:
      return {formula->get_arg(0), formula->get_arg(1), !negated};
    case SymbolTag::none:
      // What is the same as a truth value is left alone.
      return {manager.make_bool(!negated), formula, false};
    default:
      return {nullptr, nullptr, false};
  }
}

/// The name without the suffix that made it unique.
std::string_view strip_suffix(std::string_view name) {
  return name.substr(0, name.find('!'));
}

}  // namespace

std::string_view get_stage_name(Stage stage) {
  return kStageNames[static_cast<std::size_t>(stage)];
}

std::string_view get_reading_name(Reading reading) {
  return kReadingNames[static_cast<std::size_t>(reading)];
}

const Label& find_label(std::string_view name) {
  for (const Label& row : kLabels) {
    if (matches(row.name, name)) return row;
  }
  return kUnknown;
}

std::string get_exponent_label(std::string_view name, const Label& row) {
  std::string label(row.exponent);
  if (label.starts_with('*')) label.replace(0, 1, name.substr(0, name.find('_')));
  if (const std::size_t digit = row.name.find('#'); digit != std::string::npos) {
    // A star is replaced by more letters, which move what stands behind it.
    const std::size_t moved = row.name.starts_with('*') ? name.find('_') - 1 : 0;
    std::ranges::replace(label, '#', name[digit + moved]);
  }
  return label;
}

std::vector<Tie> find_ties(TermManager& manager, std::span<const Term* const> constraints,
                           const std::function<bool(const Term*)>& is_input) {
  const auto is_label = [&](const Term* t) {
    if (t->get_arity() != 0 || is_input(t)) return false;
    return find_label(strip_suffix(t->get_symbol()->get_name())).stage != other;
  };
  std::vector<Tie> ties;
  std::unordered_map<std::string, std::size_t> count;
  for (const Term* constraint : constraints) {
    auto [value, constant, differ] = read_equality(manager, constraint);
    if (value == nullptr) continue;
    if (!is_label(constant)) std::swap(value, constant);
    if (!is_label(constant)) continue;
    std::string label(strip_suffix(constant->get_symbol()->get_name()));
    const std::size_t occurrence = ++count[label];
    ties.push_back(
        {std::move(label), occurrence, constant, differ ? manager.make_not(value) : value});
  }
  return ties;
}

}  // namespace vorn::fp
