// What intermediate values have to be, by arithmetic on integers and rationals.
#ifndef VORN_TESTS_SOLVER_EXPLAINED_VALUES_H
#define VORN_TESTS_SOLVER_EXPLAINED_VALUES_H

#include <gmpxx.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/solver/explained_operation.h"

namespace vorn::solver {

/// One operand, taken apart without any circuit.
struct Parts {
  Parts(Format f, const mpz_class& bits) {
    const mpz_class hidden = mpz_class(1) << f.m;
    const mpz_class field = (bits >> f.m) & ((1L << f.e) - 1);
    fraction = bits & (hidden - 1);
    negative = mpz_tstbit(bits.get_mpz_t(), f.e + f.m) != 0;
    special = field == (1L << f.e) - 1;
    exponent = (field == 0 ? 1 : field.get_si()) - f.bias();
    significand = field == 0 || special ? fraction : mpz_class(fraction + hidden);
  }
  bool is_nan() const { return special && fraction != 0; }
  bool is_inf() const { return special && fraction == 0; }
  bool is_zero() const { return !special && significand == 0; }

  mpz_class fraction, significand;
  bool negative, special;
  long exponent;
};

/// Intermediate values by name.
class Values {
 public:
  explicit Values(const Explanation& of) : explanation(of) {}

  const Intermediate* find(const std::string& label, std::size_t occurrence = 1) const {
    for (const Intermediate& value : explanation.intermediates) {
      if (value.label == label && value.occurrence == occurrence) return &value;
    }
    return nullptr;
  }
  mpz_class get(const std::string& label) const {
    const Intermediate* value = find(label);
    if (value == nullptr) throw std::out_of_range(label);
    return value->value.get_numerator();
  }
  mpz_class get_signed(const std::string& label) const {
    const std::size_t width = find(label)->width;
    const mpz_class bits = get(label);
    return mpz_tstbit(bits.get_mpz_t(), width - 1) != 0 ? mpz_class(bits - (mpz_class(1) << width))
                                                        : bits;
  }
  /// A significand with its point behind the first `integer_bits`, times 2^exponent.
  mpq_class scaled(const std::string& label, std::size_t integer_bits, long exponent) const {
    const auto width = static_cast<long>(find(label)->width);
    return times_power(get(label), exponent + static_cast<long>(integer_bits) - width);
  }
  static mpq_class times_power(const mpq_class& x, long n) {
    mpq_class out;
    if (n < 0) {
      mpq_div_2exp(out.get_mpq_t(), x.get_mpq_t(), static_cast<unsigned long>(-n));
    } else {
      mpq_mul_2exp(out.get_mpq_t(), x.get_mpq_t(), static_cast<unsigned long>(n));
    }
    return out;
  }

 private:
  const Explanation& explanation;
};

inline mpq_class value_of(const Parts& x, Format f) {
  const mpq_class magnitude =
      Values::times_power(x.significand, x.exponent - static_cast<long>(f.m));
  return x.negative ? mpq_class(-magnitude) : magnitude;
}

inline void check_operand(const Values& values, const std::string& prefix, unsigned number,
                          const Parts& x) {
  const std::string n = std::to_string(number);
  if (values.find(prefix + "exp" + n) == nullptr) return;
  if (!x.special) {
    EXPECT_EQ(values.get_signed(prefix + "exp" + n), x.exponent) << prefix << n;
  }
  EXPECT_EQ(values.get(prefix + "mant" + n), x.significand) << prefix << n;
  if (values.find(prefix + "nan" + n) == nullptr) return;
  EXPECT_EQ(values.get(prefix + "sign" + n), x.negative ? 1 : 0) << prefix << n;
  EXPECT_EQ(values.get(prefix + "nan" + n), x.is_nan() ? 1 : 0) << prefix << n;
  EXPECT_EQ(values.get(prefix + "inf" + n), x.is_inf() ? 1 : 0) << prefix << n;
  if (values.find(prefix + "zero" + n) == nullptr) return;
  EXPECT_EQ(values.get(prefix + "zero" + n), x.is_zero() ? 1 : 0) << prefix << n;
}

/// What is exact before rounding, for finite operands.
inline void check_exact_part(const std::string& name, const Values& v, const std::vector<Parts>& x,
                             Format f) {
  if (std::ranges::any_of(x, [](const Parts& p) { return p.special; })) return;
  std::vector<mpq_class> exact;
  for (const Parts& p : x)
    exact.push_back(value_of(p, f));
  const auto magnitude = [](const mpq_class& q) { return mpq_class(abs(q)); };
  if (name == "add" || name == "sub") {
    const mpq_class second = name == "add" ? exact[1] : mpq_class(-exact[1]);
    const mpq_class sum = exact[0] + second;
    const long exp = v.get_signed("add_exp_bigger").get_si();
    EXPECT_EQ(exp, std::max(x[0].exponent, x[1].exponent));
    EXPECT_LE(v.get("add_distance"), std::abs(x[0].exponent - x[1].exponent));
    const mpq_class found = v.scaled("add_mant_res", 3, exp);
    if (v.get("add_sticky_bit") == 0) {
      EXPECT_EQ(found, magnitude(sum));
    } else {
      const mpq_class unit = Values::times_power(1, exp - static_cast<long>(f.m) - 3);
      EXPECT_LT(magnitude(found - magnitude(sum)), unit);
    }
  } else if (name == "mul") {
    EXPECT_EQ(v.get("mul_mant"), x[0].significand * x[1].significand);
    EXPECT_EQ(v.get_signed("mul_exp"), x[0].exponent + x[1].exponent + 1);
  } else if (name == "div" && !x[1].is_zero()) {
    EXPECT_EQ(v.get("div_mant1_pad"), v.get("div_div") * v.get("div_mant2_pad") + v.get("div_rem"));
    EXPECT_LT(v.get("div_rem"), v.get("div_mant2_pad"));
  } else if (name == "fma") {
    const mpq_class product = v.scaled("fma_product", 2, v.get_signed("fma_product_exp").get_si());
    EXPECT_EQ(product, magnitude(exact[0] * exact[1]));
    const long exp = v.get_signed("fma_exp").get_si();
    const mpq_class unit = Values::times_power(1, exp - 2 * static_cast<long>(f.m) - 3);
    EXPECT_LT(magnitude(v.scaled("fma_sum", 3, exp) - magnitude(exact[0] * exact[1] + exact[2])),
              unit);
  } else if (name == "sqrt" && !x[0].negative) {
    const long exp = v.get_signed("sqrt_exp").get_si();
    const mpq_class root = v.scaled("sqrt_root", 1, exp);
    const mpq_class next = root + Values::times_power(1, exp - static_cast<long>(f.m) - 1);
    EXPECT_LE(root * root, exact[0]);
    if (!x[0].is_zero()) {
      EXPECT_GT(next * next, exact[0]);
      EXPECT_EQ(v.get("sqrt_sticky_bit"), root * root == exact[0] ? 0 : 1);
    }
  }
}

/// Whether a mode goes away from zero, from IEEE 754-2019, clause 4.3.
inline bool goes_up(Mode mode, bool negative, bool least, bool half, bool rest) {
  switch (mode) {
    case Mode::nearest_even:
      return half && (rest || least);
    case Mode::nearest_away:
      return half;
    case Mode::toward_zero:
      return false;
    case Mode::plus_inf:
      return !negative && (half || rest);
    case Mode::minus_inf:
      return negative && (half || rest);
  }
  return false;
}

inline void check_rounding(const Values& v, Mode mode) {
  if (v.find("round_increment") == nullptr) return;
  if (v.get("pack_nan") != 0 || v.get("pack_inf") != 0) return;
  EXPECT_EQ(v.get("round_increment") != 0,
            goes_up(mode, v.get("pack_res_sign") != 0, v.get("round_rounding_least") != 0,
                    v.get("round_rounding_bit") != 0, v.get("round_sticky_bit") != 0));
  if (const Intermediate* kept = v.find("round_kept")) {
    EXPECT_EQ(v.get("round_body"), v.get("round_kept") + v.get("round_increment"));
    EXPECT_EQ(kept->width + 1, v.find("round_ret")->width);
  } else if (v.get("round_overflow") == 0) {
    EXPECT_EQ(v.get("mant_round_mant"), v.get("round_mant_after_chop") + v.get("round_increment"));
  }
}

}  // namespace vorn::solver

#endif
