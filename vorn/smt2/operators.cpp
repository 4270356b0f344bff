#include "vorn/smt2/operators.h"

#include <fmt/format.h>

#include <array>
#include <stdexcept>
#include <unordered_map>

#include "vorn/smt2/literals.h"
#include "vorn/terms/bv_number.h"

namespace vorn::smt2 {
namespace {

// Builders of the rows that are one constructor of the term manager -----------------------------

template <auto Make>
Value constant(const Call& c) {
  return Value::of((c.mgr.*Make)());
}

template <auto Make>
Value unary(const Call& c) {
  return Value::of((c.mgr.*Make)(c.term(0)));
}

template <auto Make>
Value binary(const Call& c) {
  return Value::of((c.mgr.*Make)(c.term(0), c.term(1)));
}

template <auto Make>
Value ternary(const Call& c) {
  return Value::of((c.mgr.*Make)(c.term(0), c.term(1), c.term(2)));
}

template <auto Make>
Value indexed_unary(const Call& c) {
  return Value::of((c.mgr.*Make)(c.indices[0], c.term(0)));
}

template <auto Make>
Value indexed_binary(const Call& c) {
  return Value::of((c.mgr.*Make)(c.indices[0], c.term(0), c.term(1)));
}

Value fma(const Call& c) {
  return Value::of(c.mgr.make_fp_fma(c.term(0), c.term(1), c.term(2), c.term(3)));
}

// Derived operations ----------------------------------------------------------------------------

std::string sort_of(const Value& value) {
  return value.term->get_type()->to_string();
}

/// Whatever is built from other operations checks its operands first: the complaint names what the
/// user wrote, and the operands in their order.
void check_same(const Call& c) {
  if (c.term(0)->get_type() == c.term(1)->get_type()) return;
  throw std::invalid_argument(fmt::format("{}: operands of different sorts, {} and {}", c.name,
                                          sort_of(c.args[0]), sort_of(c.args[1])));
}

std::size_t width_of(const Call& c) {
  std::size_t width = 0;
  if (!c.mgr.is_bv_type(c.term(0)->get_type(), &width)) {
    throw std::invalid_argument(
        fmt::format("{}: expected a bit-vector, got a term of {}", c.name, sort_of(c.args[0])));
  }
  return width;
}

/// a > b as b < a.
template <auto Make>
Value swapped_bits(const Call& c) {
  width_of(c);
  check_same(c);
  return Value::of((c.mgr.*Make)(c.term(1), c.term(0)));
}

template <auto Make>
Value swapped_floats(const Call& c) {
  if (!c.mgr.is_fp_type(c.term(0)->get_type(), nullptr, nullptr)) {
    throw std::invalid_argument(fmt::format("{}: expected a floating-point term, got a term of {}",
                                            c.name, sort_of(c.args[0])));
  }
  check_same(c);
  return Value::of((c.mgr.*Make)(c.term(1), c.term(0)));
}

template <auto Make>
Value negated_bits(const Call& c) {
  width_of(c);
  check_same(c);
  return Value::of(c.mgr.make_bv_not((c.mgr.*Make)(c.term(0), c.term(1))));
}

Value different(const Call& c) {
  check_same(c);
  return Value::of(c.mgr.make_not(c.mgr.make_equal(c.term(0), c.term(1))));
}

Value extract(const Call& c) {
  return Value::of(c.mgr.make_bv_extract(c.indices[0], c.indices[1], c.term(0)));
}

std::size_t common_width(const Call& c) {
  const std::size_t width = width_of(c);
  check_same(c);
  return width;
}

/// Doubles the term along the bits of the count, so that few and small terms are built.
Value repeat(const Call& c) {
  const std::size_t width = width_of(c);
  std::uint32_t count = c.indices[0];
  if (count == 0) throw std::invalid_argument("repeat: the count must be at least 1, got 0");
  if (count > TermManager::kMaxWidth / width) {
    throw std::invalid_argument(
        fmt::format("repeat: {} times a bit-vector of width {}; widths go up to {}", count, width,
                    TermManager::kMaxWidth));
  }
  const Term* power = c.term(0);
  const Term* result = nullptr;
  for (; count != 0; count /= 2) {
    if (count % 2 != 0) result = result == nullptr ? power : c.mgr.make_bv_concat(power, result);
    if (count > 1) power = c.mgr.make_bv_concat(power, power);
  }
  return Value::of(result);
}

const Term* rotate(const Call& c, std::size_t width, std::size_t left) {
  if (left == 0) return c.term(0);
  const Term* high = c.mgr.make_bv_extract(width - 1 - left, 0, c.term(0));
  return c.mgr.make_bv_concat(high, c.mgr.make_bv_extract(width - 1, width - left, c.term(0)));
}

Value rotate_left(const Call& c) {
  const std::size_t width = width_of(c);
  return Value::of(rotate(c, width, c.indices[0] % width));
}

Value rotate_right(const Call& c) {
  const std::size_t width = width_of(c);
  return Value::of(rotate(c, width, (width - c.indices[0] % width) % width));
}

// Overflow: whether the exact result, which fits twice the width, is no number of the width.

template <auto Make>
Value unsigned_overflow(const Call& c) {
  const std::size_t w = common_width(c);
  const Term* a = c.mgr.make_bv_zero_extend(w, c.term(0));
  const Term* exact = (c.mgr.*Make)(a, c.mgr.make_bv_zero_extend(w, c.term(1)));
  const Term* high = c.mgr.make_bv_extract(2 * w - 1, w, exact);
  return Value::of(c.mgr.make_not(c.mgr.make_equal(high, c.mgr.make_bv_number(0, w))));
}

template <auto Make>
Value signed_overflow(const Call& c) {
  const std::size_t w = common_width(c);
  const Term* a = c.mgr.make_bv_sign_extend(w, c.term(0));
  const Term* exact = (c.mgr.*Make)(a, c.mgr.make_bv_sign_extend(w, c.term(1)));
  const Term* fitting = c.mgr.make_bv_sign_extend(w, c.mgr.make_bv_extract(w - 1, 0, exact));
  return Value::of(c.mgr.make_not(c.mgr.make_equal(exact, fitting)));
}

Value subtraction_borrows(const Call& c) {
  common_width(c);
  return Value::of(c.mgr.make_bv_ult(c.term(0), c.term(1)));
}

const Term* is_least(const Call& c, std::size_t w) {
  const Term* least = c.mgr.make_bv_number(BVNumber::power_of_two(w - 1), w);
  return c.mgr.make_equal(c.term(0), least);
}

Value negation_overflows(const Call& c) {
  return Value::of(is_least(c, width_of(c)));
}

Value division_overflows(const Call& c) {
  const std::size_t w = common_width(c);
  const Term* by_minus_one =
      c.mgr.make_equal(c.term(1), c.mgr.make_bv_not(c.mgr.make_bv_number(0, w)));
  return Value::of(c.mgr.make_and(is_least(c, w), by_minus_one));
}

// Rounding modes and floats ---------------------------------------------------------------------

template <IEEEFloat::rounding_mode Mode>
Value rounding(const Call& c) {
  return Value::of(c.mgr.make_fprounding(Mode));
}

IEEEFloat::format format_of(const Call& c) {
  return make_format(c.indices[0], c.indices[1]);
}

Value nan(const Call& c) {
  const IEEEFloat::format f = format_of(c);
  return Value::of(c.mgr.make_fp_nan(f.e, f.m));
}

template <bool Negative>
Value infinity(const Call& c) {
  IEEEFloat value(format_of(c), IEEEFloat::rounding_mode::nearest_even);
  c.mgr.get_fp_type(value.get_format().e, value.get_format().m);
  value.self_inf(Negative);
  return Value::of(make_float(c.mgr, value));
}

template <bool Negative>
Value zero(const Call& c) {
  IEEEFloat value(format_of(c), IEEEFloat::rounding_mode::nearest_even);
  c.mgr.get_fp_type(value.get_format().e, value.get_format().m);
  value.self_zero(Negative);
  return Value::of(make_float(c.mgr, value));
}

Value from_fields(const Call& c) {
  return Value::of(make_float_from_fields(c.mgr, c.term(0), c.term(1), c.term(2)));
}

/// to_fp from bits; or, with a rounding mode, from a real number, a float or a signed integer.
Value to_fp(const Call& c) {
  const IEEEFloat::format f = format_of(c);
  if (c.args.size() == 1) {
    if (c.args[0].real) {
      throw std::invalid_argument("to_fp of a number takes a rounding mode before it");
    }
    if (c.mgr.is_fp_type(c.term(0)->get_type(), nullptr, nullptr)) {
      throw std::invalid_argument("to_fp of a float takes a rounding mode before it");
    }
    return Value::of(make_float_from_bits(c.mgr, f, c.term(0)));
  }
  if (c.args[0].real) {
    throw std::invalid_argument("to_fp: expected a rounding mode, got a number");
  }
  if (c.args[1].real) {
    return Value::of(make_float_from_real(c.mgr, f, c.term(0), *c.args[1].real));
  }
  if (c.mgr.is_fp_type(c.term(1)->get_type(), nullptr, nullptr)) {
    return Value::of(c.mgr.make_fp_cast(f.e, f.m, c.term(0), c.term(1)));
  }
  if (c.mgr.is_fprounding_type(c.term(0)->get_type()) &&
      !c.mgr.is_bv_type(c.term(1)->get_type(), nullptr)) {
    throw std::invalid_argument(fmt::format(
        "to_fp: expected a float, a bit-vector or a number, got a term of {}", sort_of(c.args[1])));
  }
  return Value::of(c.mgr.make_fp_from_sbv(f.e, f.m, c.term(0), c.term(1)));
}

Value to_fp_unsigned(const Call& c) {
  const IEEEFloat::format f = format_of(c);
  return Value::of(c.mgr.make_fp_from_ubv(f.e, f.m, c.term(0), c.term(1)));
}

// Real numbers ----------------------------------------------------------------------------------

const QNumber& real_operand(std::string_view name, const Value& value) {
  if (!value.real) {
    throw std::invalid_argument(fmt::format("{}: expected a number, got a term of {}", name,
                                            value.term->get_type()->to_string()));
  }
  return *value.real;
}

Value real_minus(const Call& c) {
  return Value::of(real_operand("-", c.args[0]).neg());
}

Value real_divide(const Call& c) {
  const QNumber& divisor = real_operand("/", c.args[1]);
  if (divisor.sign() == 0) throw std::invalid_argument("/: division by zero");
  return Value::of(real_operand("/", c.args[0]) / divisor);
}

// The table -------------------------------------------------------------------------------------

using T = TermManager;
using enum Arity;
using Mode = IEEEFloat::rounding_mode;
constexpr std::uint32_t kMany = Operator::kMany;

constexpr Operator kOperators[] = {
    // Core
    {"true", constant<&T::make_true>},
    {"false", constant<&T::make_false>},
    {"not", unary<&T::make_not>, 1, 1},
    {"and", binary<&T::make_and>, 1, kMany, 0, left},
    {"or", binary<&T::make_or>, 1, kMany, 0, left},
    {"xor", binary<&T::make_xor>, 2, kMany, 0, left},
    {"=>", binary<&T::make_implies>, 2, kMany, 0, right},
    {"=", binary<&T::make_equal>, 2, kMany, 0, chainable},
    {"distinct", different, 2, kMany, 0, pairwise},
    {"ite", ternary<&T::make_term_ite>, 3, 3},

    // FixedSizeBitVectors and QF_BV
    {"concat", binary<&T::make_bv_concat>, 2, kMany, 0, left},
    {"extract", extract, 1, 1, 2},
    {"zero_extend", indexed_unary<&T::make_bv_zero_extend>, 1, 1, 1},
    {"sign_extend", indexed_unary<&T::make_bv_sign_extend>, 1, 1, 1},
    {"repeat", repeat, 1, 1, 1},
    {"rotate_left", rotate_left, 1, 1, 1},
    {"rotate_right", rotate_right, 1, 1, 1},
    {"bvnot", unary<&T::make_bv_not>, 1, 1},
    {"bvneg", unary<&T::make_bv_neg>, 1, 1},
    {"bvand", binary<&T::make_bv_and>, 2, kMany, 0, left},
    {"bvor", binary<&T::make_bv_or>, 2, kMany, 0, left},
    {"bvxor", binary<&T::make_bv_xor>, 2, kMany, 0, left},
    {"bvnand", negated_bits<&T::make_bv_and>, 2, 2},
    {"bvnor", negated_bits<&T::make_bv_or>, 2, 2},
    {"bvxnor", negated_bits<&T::make_bv_xor>, 2, kMany, 0, left},
    {"bvadd", binary<&T::make_bv_add>, 2, kMany, 0, left},
    {"bvsub", binary<&T::make_bv_sub>, 2, 2},
    {"bvmul", binary<&T::make_bv_mul>, 2, kMany, 0, left},
    {"bvudiv", binary<&T::make_bv_udiv>, 2, 2},
    {"bvurem", binary<&T::make_bv_urem>, 2, 2},
    {"bvsdiv", binary<&T::make_bv_sdiv>, 2, 2},
    {"bvsrem", binary<&T::make_bv_srem>, 2, 2},
    {"bvsmod", binary<&T::make_bv_smod>, 2, 2},
    {"bvshl", binary<&T::make_bv_lshl>, 2, 2},
    {"bvlshr", binary<&T::make_bv_lshr>, 2, 2},
    {"bvashr", binary<&T::make_bv_ashr>, 2, 2},
    {"bvcomp", binary<&T::make_bv_comp>, 2, 2},
    {"bvult", binary<&T::make_bv_ult>, 2, 2},
    {"bvule", binary<&T::make_bv_ule>, 2, 2},
    {"bvugt", swapped_bits<&T::make_bv_ult>, 2, 2},
    {"bvuge", swapped_bits<&T::make_bv_ule>, 2, 2},
    {"bvslt", binary<&T::make_bv_slt>, 2, 2},
    {"bvsle", binary<&T::make_bv_sle>, 2, 2},
    {"bvsgt", swapped_bits<&T::make_bv_slt>, 2, 2},
    {"bvsge", swapped_bits<&T::make_bv_sle>, 2, 2},
    {"bvnego", negation_overflows, 1, 1},
    {"bvuaddo", unsigned_overflow<&T::make_bv_add>, 2, 2},
    {"bvsaddo", signed_overflow<&T::make_bv_add>, 2, 2},
    {"bvusubo", subtraction_borrows, 2, 2},
    {"bvssubo", signed_overflow<&T::make_bv_sub>, 2, 2},
    {"bvumulo", unsigned_overflow<&T::make_bv_mul>, 2, 2},
    {"bvsmulo", signed_overflow<&T::make_bv_mul>, 2, 2},
    {"bvsdivo", division_overflows, 2, 2},

    // FloatingPoint: rounding modes
    {"RNE", rounding<Mode::nearest_even>},
    {"RNA", rounding<Mode::nearest_away>},
    {"RTP", rounding<Mode::plus_inf>},
    {"RTN", rounding<Mode::minus_inf>},
    {"RTZ", rounding<Mode::toward_zero>},
    {"roundNearestTiesToEven", rounding<Mode::nearest_even>},
    {"roundNearestTiesToAway", rounding<Mode::nearest_away>},
    {"roundTowardPositive", rounding<Mode::plus_inf>},
    {"roundTowardNegative", rounding<Mode::minus_inf>},
    {"roundTowardZero", rounding<Mode::toward_zero>},

    // FloatingPoint: literals and conversions
    {"fp", from_fields, 3, 3},
    {"NaN", nan, 0, 0, 2},
    {"+oo", infinity<false>, 0, 0, 2},
    {"-oo", infinity<true>, 0, 0, 2},
    {"+zero", zero<false>, 0, 0, 2},
    {"-zero", zero<true>, 0, 0, 2},
    {"to_fp", to_fp, 1, 2, 2, fixed, true},
    {"to_fp_unsigned", to_fp_unsigned, 2, 2, 2},
    {"-", real_minus, 1, 1, 0, fixed, true},
    {"/", real_divide, 2, 2, 0, fixed, true},

    // FloatingPoint: tests, comparisons and arithmetic
    {"fp.isNaN", unary<&T::make_fp_isnan>, 1, 1},
    {"fp.isInfinite", unary<&T::make_fp_isinf>, 1, 1},
    {"fp.isZero", unary<&T::make_fp_iszero>, 1, 1},
    {"fp.isNormal", unary<&T::make_fp_isnormal>, 1, 1},
    {"fp.isSubnormal", unary<&T::make_fp_issubnormal>, 1, 1},
    {"fp.isNegative", unary<&T::make_fp_isnegative>, 1, 1},
    {"fp.isPositive", unary<&T::make_fp_ispositive>, 1, 1},
    {"fp.eq", binary<&T::make_fp_equal>, 2, kMany, 0, chainable},
    {"fp.lt", binary<&T::make_fp_lt>, 2, kMany, 0, chainable},
    {"fp.leq", binary<&T::make_fp_le>, 2, kMany, 0, chainable},
    {"fp.gt", swapped_floats<&T::make_fp_lt>, 2, kMany, 0, chainable},
    {"fp.geq", swapped_floats<&T::make_fp_le>, 2, kMany, 0, chainable},
    {"fp.neg", unary<&T::make_fp_neg>, 1, 1},
    {"fp.add", ternary<&T::make_fp_add>, 3, 3},
    {"fp.sub", ternary<&T::make_fp_sub>, 3, 3},
    {"fp.mul", ternary<&T::make_fp_mul>, 3, 3},
    {"fp.div", ternary<&T::make_fp_div>, 3, 3},
    {"fp.fma", fma, 4, 4},
    {"fp.sqrt", binary<&T::make_fp_sqrt>, 2, 2},
    {"fp.rem", binary<&T::make_fp_rem>, 2, 2},
    {"fp.roundToIntegral", binary<&T::make_fp_round_to_integral>, 2, 2},
    {"fp.abs", unary<&T::make_fp_abs>, 1, 1},
    {"fp.min", binary<&T::make_fp_min>, 2, 2},
    {"fp.max", binary<&T::make_fp_max>, 2, 2},
    {"fp.to_ubv", indexed_binary<&T::make_fp_to_ubv>, 2, 2, 1},
    {"fp.to_sbv", indexed_binary<&T::make_fp_to_sbv>, 2, 2, 1},
    {"fp.to_ieee_bv", unary<&T::make_fp_to_bits>, 1, 1},

    // Known, and refused by name
    {"fp.to_real"},
    {"select"},
    {"store"},
    {"+"},
    {"*"},
    {"<"},
    {"<="},
    {">"},
    {">="},
    {"div"},
    {"mod"},
    {"abs"},
    {"to_real"},
    {"to_int"},
    {"is_int"},
    {"bv2nat"},
    {"int2bv"},
    {"ubv_to_int"},
    {"sbv_to_int"},
    {"int_to_bv"},
};

using OperatorIndex = std::unordered_map<std::string_view, const Operator*>;

OperatorIndex index_by_name() {
  OperatorIndex index;
  for (const Operator& op : kOperators)
    index.emplace(op.name, &op);
  return index;
}

// Application -----------------------------------------------------------------------------------

Value build_pair(const Operator& op, const Call& call, const Value& a, const Value& b) {
  const std::array<Value, 2> pair = {a, b};
  return op.build({call.mgr, call.indices, pair, op.name});
}

/// The conjunction of the operation over neighbours.
Value chain(const Operator& op, const Call& call) {
  Value result = build_pair(op, call, call.args[0], call.args[1]);
  for (std::size_t i = 2; i < call.args.size(); ++i) {
    const Value link = build_pair(op, call, call.args[i - 1], call.args[i]);
    result = Value::of(call.mgr.make_and(result.term, link.term));
  }
  return result;
}

/// The conjunction of the operation over all pairs.
Value all_pairs(const Operator& op, const Call& call) {
  Value result = Value::of(call.mgr.make_true());
  for (std::size_t i = 0; i < call.args.size(); ++i) {
    for (std::size_t j = i + 1; j < call.args.size(); ++j) {
      const Value pair = build_pair(op, call, call.args[i], call.args[j]);
      const bool first = i == 0 && j == 1;
      result = first ? pair : Value::of(call.mgr.make_and(result.term, pair.term));
    }
  }
  return result;
}

Value extend(const Operator& op, const Call& call) {
  const std::size_t count = call.args.size();
  switch (op.arity) {
    case fixed:
      return op.build({call.mgr, call.indices, call.args, op.name});
    case left: {
      // Only conjunction and disjunction take a single argument, and (and a a) is a.
      Value result = build_pair(op, call, call.args[0], call.args[count > 1 ? 1 : 0]);
      for (std::size_t i = 2; i < count; ++i)
        result = build_pair(op, call, result, call.args[i]);
      return result;
    }
    case right: {
      Value result = call.args[count - 1];
      for (std::size_t i = count - 1; i-- > 0;)
        result = build_pair(op, call, call.args[i], result);
      return result;
    }
    case chainable:
      return chain(op, call);
    case pairwise:
      return all_pairs(op, call);
  }
  return {};
}

}  // namespace

const Operator* find_operator(std::string_view name) {
  static const OperatorIndex index = index_by_name();
  const auto found = index.find(name);
  return found == index.end() ? nullptr : found->second;
}

void check_count(std::string_view name, Noun noun, std::size_t count, std::size_t min,
                 std::size_t max) {
  if (count >= min && count <= max) return;
  std::string wanted = std::to_string(min);
  if (max == 0) {
    wanted = "no";
  } else if (max == Operator::kMany) {
    wanted = fmt::format("at least {}", min);
  } else if (min != max) {
    wanted = fmt::format("{} {} {}", min, max == min + 1 ? "or" : "to", max);
  }
  const bool single = min == 1 && (max == 1 || max == Operator::kMany);
  throw std::invalid_argument(
      fmt::format("{} takes {} {}, got {}", name, wanted, single ? noun.one : noun.many, count));
}

Value apply_operator(const Operator& op, const Call& call) {
  check_count(op.name, {"index", "indices"}, call.indices.size(), op.indices, op.indices);
  check_count(op.name, {"argument", "arguments"}, call.args.size(), op.min_args, op.max_args);
  for (const Value& arg : call.args) {
    if (!arg.real || op.takes_reals) continue;
    throw std::invalid_argument(
        fmt::format("{}: a number is no operand here; to_fp makes it a float, (_ bvN width) writes "
                    "a bit-vector",
                    op.name));
  }
  return extend(op, call);
}

}  // namespace vorn::smt2
