#include "vorn/smt2/operators.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <unordered_map>
#include <vector>

#include "vorn/smt2/literals.h"

namespace vorn::smt2 {
namespace {

std::string sort_of(const Value& value) {
  return value.term->get_type()->to_string();
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
  return Value::of(c.mgr.make_fp_number(IEEEFloat::make_nan(format_of(c))));
}

template <bool Negative>
Value infinity(const Call& c) {
  return Value::of(c.mgr.make_fp_number(IEEEFloat::make_inf(format_of(c), Negative)));
}

template <bool Negative>
Value zero(const Call& c) {
  return Value::of(c.mgr.make_fp_number(IEEEFloat::make_zero(format_of(c), Negative)));
}

Value from_fields(const Call& c) {
  return Value::of(make_float_from_fields(c.mgr, c.term(0), c.term(1), c.term(2)));
}

const QNumber& real_operand(std::string_view name, const Value& value) {
  if (!value.real) {
    throw std::invalid_argument(
        fmt::format("{}: expected a number, got a term of {}", name, sort_of(value)));
  }
  return *value.real;
}

/// to_fp from bits; or, with a rounding mode, from a real number, a float or a signed integer; or
/// from a significand and an exponent of 2, both numbers.
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
  if (c.args.size() == 3) {
    const QNumber& significand = real_operand("to_fp", c.args[1]);
    return Value::of(
        make_float_from_real(c.mgr, f, c.term(0), significand, real_operand("to_fp", c.args[2])));
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

/// Nobody writes numbers of that size, but a product of products would have it soon.
constexpr std::size_t kMaxNumberBits = std::size_t{1} << 20;

void check_size(std::string_view name, const QNumber& number) {
  if (const mpz_class* numerator = number.get_big_numerator()) {
    const std::size_t bits = mpz_sizeinbase(numerator->get_mpz_t(), 2) +
                             mpz_sizeinbase(number.get_denominator().get_mpz_t(), 2);
    if (bits > kMaxNumberBits) {
      throw std::invalid_argument(
          fmt::format("{}: a number of {} bits; results go up to {}", name, bits, kMaxNumberBits));
    }
  }
}

/// From left to right.
template <class Combine>
Value fold_reals(std::string_view name, const Call& c, const Combine& combine) {
  QNumber result = real_operand(name, c.args[0]);
  for (const Value& arg : c.args.subspan(1)) {
    combine(&result, real_operand(name, arg));
    check_size(name, result);
  }
  return Value::of(result);
}

Value real_plus(const Call& c) {
  return fold_reals("+", c, [](QNumber* sum, const QNumber& x) { *sum += x; });
}

Value real_minus(const Call& c) {
  if (c.args.size() == 1) return Value::of(real_operand("-", c.args[0]).neg());
  return fold_reals("-", c, [](QNumber* difference, const QNumber& x) { *difference -= x; });
}

Value real_times(const Call& c) {
  return fold_reals("*", c, [](QNumber* product, const QNumber& x) { *product *= x; });
}

Value real_divide(const Call& c) {
  return fold_reals("/", c, [](QNumber* quotient, const QNumber& x) {
    if (x.sign() == 0) throw std::invalid_argument("/: division by zero");
    *quotient /= x;
  });
}

// The table -------------------------------------------------------------------------------------

using Mode = IEEEFloat::rounding_mode;

constexpr bool kTakesReals = true;
constexpr Departure kArithmetic = Departure::number_arithmetic;

/// What is no operation of the table: literals, to_fp, which stands for several, and numbers.
constexpr Operator kForms[] = {
    {"RNE", nullptr, rounding<Mode::nearest_even>},
    {"RNA", nullptr, rounding<Mode::nearest_away>},
    {"RTP", nullptr, rounding<Mode::plus_inf>},
    {"RTN", nullptr, rounding<Mode::minus_inf>},
    {"RTZ", nullptr, rounding<Mode::toward_zero>},
    {"roundNearestTiesToEven", nullptr, rounding<Mode::nearest_even>},
    {"roundNearestTiesToAway", nullptr, rounding<Mode::nearest_away>},
    {"roundTowardPositive", nullptr, rounding<Mode::plus_inf>},
    {"roundTowardNegative", nullptr, rounding<Mode::minus_inf>},
    {"roundTowardZero", nullptr, rounding<Mode::toward_zero>},

    {"fp", nullptr, from_fields, 3, 3},
    {"NaN", nullptr, nan, 0, 0, 2},
    {"+oo", nullptr, infinity<false>, 0, 0, 2},
    {"-oo", nullptr, infinity<true>, 0, 0, 2},
    {"+zero", nullptr, zero<false>, 0, 0, 2},
    {"-zero", nullptr, zero<true>, 0, 0, 2},
    {"to_fp", nullptr, to_fp, 1, 3, 2, kTakesReals, 1, 2, Departure::scaled_number},
    {"to_fp_unsigned", nullptr, to_fp_unsigned, 2, 2, 2},
    // The theory of floats has no functions on numbers; a negation and a quotient are how the
    // standard writes numbers that are not positive decimals, so these are taken for literals.
    {"-", nullptr, real_minus, 1, kAnyNumber, 0, kTakesReals, 1, 1, kArithmetic},
    {"/", nullptr, real_divide, 2, kAnyNumber, 0, kTakesReals, 2, 2, kArithmetic},
    {"+", nullptr, real_plus, 1, kAnyNumber, 0, kTakesReals, 1, 0, kArithmetic},
    {"*", nullptr, real_times, 1, kAnyNumber, 0, kTakesReals, 1, 0, kArithmetic},
};

/// Known, and refused by name.
constexpr std::string_view kRefused[] = {
    "fp.to_real", "<",      "<=",     ">",      ">=",     "div",        "mod",        "abs",
    "to_real",    "to_int", "is_int", "bv2nat", "int2bv", "ubv_to_int", "sbv_to_int", "int_to_bv",
};

using OperatorIndex = std::unordered_map<std::string_view, Operator>;

bool is_grouped_left(const Operation& op) {
  return op.arity == Arity::left || op.arity == Arity::left_from_one;
}

/// Whether an application to one argument has a plain meaning: what a function that groups to the
/// left makes of one argument is that argument, and one value is equal to all and distinct from all
/// others. Derived operations are left out: (bvxnor a) might be meant as a negation.
bool takes_one(const Operation& op) {
  return (is_grouped_left(op) && op.derive == nullptr) || op.tag == SymbolTag::equal ||
         op.tag == SymbolTag::distinct;
}

Operator operator_of(const Operation& op) {
  Operator row{op.name,
               &op,
               nullptr,
               op.get_least_arguments(),
               op.get_most_arguments(),
               op.get_index_count()};
  if (takes_one(op)) row.min_args = 1;
  row.standard_min_args = op.signature.get_arguments().size();
  return row;
}

/// The first of a name counts.
OperatorIndex index_by_name() {
  OperatorIndex index;
  for (const Operator& form : kForms)
    index.emplace(form.name, form);
  for (const Operation& op : get_operations()) {
    if (op.is_printed_only) continue;
    index.emplace(op.name, operator_of(op));
  }
  for (const std::string_view name : kRefused)
    index.emplace(name, Operator{name});
  return index;
}

// Application -----------------------------------------------------------------------------------

const Term* apply_operation(const Operation& op, const Call& call) {
  if (op.indexing == Indexing::sort) return call.mgr.make_const_array(call.sort, call.term(0));
  std::array<std::size_t, 2> indices{};
  std::ranges::copy(call.indices, indices.begin());
  // Long applications are rare, and others need no memory of their own.
  std::array<const Term*, 8> few{};
  std::vector<const Term*> many;
  std::span<const Term*> args = std::span(few).first(std::min(call.args.size(), few.size()));
  if (call.args.size() > few.size()) {
    many.resize(call.args.size());
    args = many;
  }
  std::ranges::transform(call.args, args.begin(), &Value::term);
  return call.mgr.make(op.tag, std::span(indices).first(call.indices.size()), args);
}

/// An operation on one argument less than its signature has; see takes_one.
const Term* apply_to_one(const Operation& op, const Call& call) {
  const Term* only = call.term(0);
  const bool fits = op.signature.get_arguments()[0].fits(only->get_type()->get_kind());
  if (!fits) {
    // Fails, and says why.
    const std::array<Value, 2> twice = {call.args[0], call.args[0]};
    return apply_operation(op, {call.mgr, call.indices, twice});
  }
  return is_grouped_left(op) ? only : call.mgr.make_true();
}

}  // namespace

std::string Operator::describe_departure(std::size_t args) const {
  if (departure == Departure::number_arithmetic) {
    return "numbers are put together by - of one argument and / of two only";
  }
  try {
    check_count(name, {"argument", "arguments"}, args, standard_min_args, standard_max_args);
  } catch (const std::invalid_argument& error) {
    return error.what();
  }
  return "";
}

const Operator* find_operator(std::string_view name) {
  static const OperatorIndex index = index_by_name();
  const auto found = index.find(name);
  return found == index.end() ? nullptr : &found->second;
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
  if (op.build != nullptr) return op.build(call);
  const Operation& operation = *op.operation;
  const bool is_one = call.args.size() == 1 && operation.signature.get_arguments().size() > 1;
  return Value::of(is_one ? apply_to_one(operation, call) : apply_operation(operation, call));
}

}  // namespace vorn::smt2
