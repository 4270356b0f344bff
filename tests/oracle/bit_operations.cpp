#include "tests/oracle/bit_operations.h"

#include <functional>
#include <map>
#include <string>

namespace vorn::oracle {
namespace {

mpz_class power(std::size_t exponent) {
  return mpz_class(1) << exponent;
}

/// The remainder that is not negative.
mpz_class modulo(const mpz_class& value, std::size_t width) {
  mpz_class result;
  mpz_fdiv_r_2exp(result.get_mpz_t(), value.get_mpz_t(), width);
  return result;
}

/// The two's-complement reading.
mpz_class to_signed(const BitOperand& x) {
  return x.value >= power(x.width - 1) ? mpz_class(x.value - power(x.width)) : x.value;
}

bool fits_unsigned(const mpz_class& value, std::size_t width) {
  return value >= 0 && value < power(width);
}

bool fits_signed(const mpz_class& value, std::size_t width) {
  return value >= -power(width - 1) && value < power(width - 1);
}

bool bit(const BitOperand& x, std::size_t i) {
  return mpz_tstbit(x.value.get_mpz_t(), i) != 0;
}

/// A bit-vector of which bit i is f(i).
mpz_class collect(std::size_t width, const std::function<bool(std::size_t)>& f) {
  mpz_class result;
  for (std::size_t i = 0; i < width; ++i) {
    if (f(i)) mpz_setbit(result.get_mpz_t(), i);
  }
  return result;
}

mpz_class quotient_unsigned(const BitOperand& x, const BitOperand& y) {
  return y.value == 0 ? mpz_class(power(x.width) - 1) : mpz_class(x.value / y.value);
}

mpz_class remainder_unsigned(const BitOperand& x, const BitOperand& y) {
  return y.value == 0 ? x.value : mpz_class(x.value % y.value);
}

/// Truncated; by zero the theory's definition by cases comes to 1 for a negative x, else -1.
mpz_class quotient_signed(const BitOperand& x, const BitOperand& y) {
  if (y.value == 0) return to_signed(x) < 0 ? mpz_class(1) : mpz_class(power(x.width) - 1);
  return modulo(to_signed(x) / to_signed(y), x.width);
}

mpz_class remainder_signed(const BitOperand& x, const BitOperand& y) {
  if (y.value == 0) return x.value;
  return modulo(to_signed(x) % to_signed(y), x.width);
}

mpz_class modulus_signed(const BitOperand& x, const BitOperand& y) {
  if (y.value == 0) return x.value;
  mpz_class result;
  mpz_fdiv_r(result.get_mpz_t(), to_signed(x).get_mpz_t(), to_signed(y).get_mpz_t());
  return modulo(result, x.width);
}

using Indices = std::span<const std::size_t>;
using Operands = std::span<const BitOperand>;
using Value = std::function<mpz_class(Indices, Operands)>;

using Predicate = std::function<bool(const BitOperand&, const BitOperand&)>;

Value predicate(Predicate holds) {
  return [holds](Indices, Operands o) { return mpz_class(holds(o[0], o[1]) ? 1 : 0); };
}

Value bitwise(const std::function<bool(bool, bool)>& f) {
  return [f](Indices, Operands o) {
    return collect(o[0].width, [&](std::size_t i) { return f(bit(o[0], i), bit(o[1], i)); });
  };
}

using Function = std::function<mpz_class(const BitOperand&, const BitOperand&)>;

Value arithmetic(Function f) {
  return [f](Indices, Operands o) { return modulo(f(o[0], o[1]), o[0].width); };
}

Value overflow(bool is_signed, std::function<mpz_class(const mpz_class&, const mpz_class&)> f) {
  return predicate([is_signed, f](const BitOperand& x, const BitOperand& y) {
    if (is_signed) return !fits_signed(f(to_signed(x), to_signed(y)), x.width);
    return !fits_unsigned(f(x.value, y.value), x.width);
  });
}

std::size_t count_ones(const BitOperand& x) {
  return mpz_popcount(x.value.get_mpz_t());
}

std::map<std::string_view, Value> list_core() {
  return {
      {"true", [](Indices, Operands) { return mpz_class(1); }},
      {"false", [](Indices, Operands) { return mpz_class(0); }},
      {"not", [](Indices, Operands o) { return mpz_class(1 - o[0].value); }},
      {"and", bitwise([](bool a, bool b) { return a && b; })},
      {"or", bitwise([](bool a, bool b) { return a || b; })},
      {"xor", bitwise([](bool a, bool b) { return a != b; })},
      {"=>", bitwise([](bool a, bool b) { return !a || b; })},
      {"=", predicate([](const BitOperand& a, const BitOperand& b) { return a.value == b.value; })},
      {"distinct",
       predicate([](const BitOperand& a, const BitOperand& b) { return a.value != b.value; })},
      {"ite", [](Indices, Operands o) { return o[0].value == 1 ? o[1].value : o[2].value; }},
  };
}

std::map<std::string_view, Value> list_rearrangements() {
  return {
      {"extract",
       [](Indices i, Operands o) {
         return collect(i[0] - i[1] + 1, [&](std::size_t k) { return bit(o[0], i[1] + k); });
       }},
      {"concat",
       [](Indices, Operands o) { return mpz_class(o[0].value * power(o[1].width) + o[1].value); }},
      {"zero_extend", [](Indices, Operands o) { return o[0].value; }},
      {"sign_extend",
       [](Indices i, Operands o) { return modulo(to_signed(o[0]), o[0].width + i[0]); }},
      {"repeat",
       [](Indices i, Operands o) {
         return collect(i[0] * o[0].width,
                        [&](std::size_t k) { return bit(o[0], k % o[0].width); });
       }},
      {"rotate_left",
       [](Indices i, Operands o) {
         const std::size_t w = o[0].width;
         return collect(w, [&](std::size_t k) { return bit(o[0], (k + w - i[0] % w) % w); });
       }},
      {"rotate_right",
       [](Indices i, Operands o) {
         const std::size_t w = o[0].width;
         return collect(w, [&](std::size_t k) { return bit(o[0], (k + i[0]) % w); });
       }},
      {"bvredor", [](Indices, Operands o) { return mpz_class(o[0].value != 0 ? 1 : 0); }},
      {"bvredand",
       [](Indices, Operands o) { return mpz_class(count_ones(o[0]) == o[0].width ? 1 : 0); }},
      {"bvredxor", [](Indices, Operands o) { return mpz_class(count_ones(o[0]) % 2); }},
      {"bvite", [](Indices, Operands o) { return o[0].value == 1 ? o[1].value : o[2].value; }},
  };
}

std::map<std::string_view, Value> list_arithmetic() {
  const auto distance = [](const BitOperand& y, std::size_t limit) {
    return y.value < limit ? y.value.get_ui() : limit;
  };
  return {
      {"bvnot", [](Indices, Operands o) { return mpz_class(power(o[0].width) - 1 - o[0].value); }},
      {"bvneg", [](Indices, Operands o) { return modulo(-o[0].value, o[0].width); }},
      {"bvand", bitwise([](bool a, bool b) { return a && b; })},
      {"bvor", bitwise([](bool a, bool b) { return a || b; })},
      {"bvxor", bitwise([](bool a, bool b) { return a != b; })},
      {"bvnand", bitwise([](bool a, bool b) { return !(a && b); })},
      {"bvnor", bitwise([](bool a, bool b) { return !(a || b); })},
      {"bvxnor", bitwise([](bool a, bool b) { return a == b; })},
      {"bvadd",
       arithmetic([](const BitOperand& x, const BitOperand& y) { return x.value + y.value; })},
      {"bvsub",
       arithmetic([](const BitOperand& x, const BitOperand& y) { return x.value - y.value; })},
      {"bvmul",
       arithmetic([](const BitOperand& x, const BitOperand& y) { return x.value * y.value; })},
      {"bvudiv", arithmetic(quotient_unsigned)},
      {"bvurem", arithmetic(remainder_unsigned)},
      {"bvsdiv", arithmetic(quotient_signed)},
      {"bvsrem", arithmetic(remainder_signed)},
      {"bvsmod", arithmetic(modulus_signed)},
      {"bvshl", arithmetic([distance](const BitOperand& x, const BitOperand& y) {
         return mpz_class(x.value << distance(y, x.width));
       })},
      {"bvlshr", arithmetic([distance](const BitOperand& x, const BitOperand& y) {
         return mpz_class(x.value >> distance(y, x.width));
       })},
      // GMP shifts negative numbers toward minus infinity, as copies of the sign do.
      {"bvashr", arithmetic([distance](const BitOperand& x, const BitOperand& y) {
         return mpz_class(to_signed(x) >> distance(y, x.width));
       })},
  };
}

std::map<std::string_view, Value> list_predicates() {
  const auto least = [](const BitOperand& x) { return x.value == power(x.width - 1); };
  return {
      {"bvcomp",
       predicate([](const BitOperand& x, const BitOperand& y) { return x.value == y.value; })},
      {"bvult",
       predicate([](const BitOperand& x, const BitOperand& y) { return x.value < y.value; })},
      {"bvule",
       predicate([](const BitOperand& x, const BitOperand& y) { return x.value <= y.value; })},
      {"bvugt",
       predicate([](const BitOperand& x, const BitOperand& y) { return x.value > y.value; })},
      {"bvuge",
       predicate([](const BitOperand& x, const BitOperand& y) { return x.value >= y.value; })},
      {"bvslt", predicate([](const BitOperand& x, const BitOperand& y) {
         return to_signed(x) < to_signed(y);
       })},
      {"bvsle", predicate([](const BitOperand& x, const BitOperand& y) {
         return to_signed(x) <= to_signed(y);
       })},
      {"bvsgt", predicate([](const BitOperand& x, const BitOperand& y) {
         return to_signed(x) > to_signed(y);
       })},
      {"bvsge", predicate([](const BitOperand& x, const BitOperand& y) {
         return to_signed(x) >= to_signed(y);
       })},
      {"bvnego", [least](Indices, Operands o) { return mpz_class(least(o[0]) ? 1 : 0); }},
      {"bvuaddo", overflow(false, std::plus<mpz_class>())},
      {"bvsaddo", overflow(true, std::plus<mpz_class>())},
      {"bvusubo", overflow(false, std::minus<mpz_class>())},
      {"bvssubo", overflow(true, std::minus<mpz_class>())},
      {"bvumulo", overflow(false, std::multiplies<mpz_class>())},
      {"bvsmulo", overflow(true, std::multiplies<mpz_class>())},
      // Division by zero has a result, which is a number of the width.
      {"bvsdivo", predicate([least](const BitOperand& x, const BitOperand& y) {
         return least(x) && to_signed(y) == -1;
       })},
  };
}

std::map<std::string_view, Value> list_all() {
  std::map<std::string_view, Value> all = list_core();
  all.merge(list_rearrangements());
  all.merge(list_arithmetic());
  all.merge(list_predicates());
  return all;
}

}  // namespace

std::optional<mpz_class> apply_bit_operation(std::string_view name,
                                             std::span<const std::size_t> indices,
                                             std::span<const BitOperand> operands) {
  static const std::map<std::string_view, Value> kAll = list_all();
  const auto found = kAll.find(name);
  if (found == kAll.end()) return std::nullopt;
  return found->second(indices, operands);
}

}  // namespace vorn::oracle
