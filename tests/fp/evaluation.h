// Running the circuits on numerals, and references that share nothing with them: exact rationals
// for small formats, the processor for the two that it has.
#ifndef VORN_TESTS_FP_EVALUATION_H
#define VORN_TESTS_FP_EVALUATION_H

#include <gmpxx.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>
#include <type_traits>
#include <vector>

#include "vorn/fp/fp_bv_encoder.h"

namespace vorn::fp {

/// Encodes terms over literals. The target manager folds what the circuits build; the source
/// manager must not, or there would be nothing left to encode.
class Evaluator {
 public:
  explicit Evaluator(IEEEFloat::format f) : fmt(f) {}

  const Term* literal(std::uint64_t pattern) {
    return source.make_fp_number(number(pattern), fmt.e, fmt.m);
  }
  bool holds(const Term* atom) {
    const Term* value = fold(atom);
    EXPECT_TRUE(value == target.make_true() || value == target.make_false());
    return value == target.make_true();
  }
  std::uint64_t pattern_of(const Term* t) {
    QNumber value;
    EXPECT_TRUE(target.is_number(fold(t), &value));
    return value.get_numerator().get_ui();
  }

  TermManager source{false};

 private:
  static QNumber number(std::uint64_t value) { return QNumber::from_mpz(mpz_class(value)); }
  const Term* fold(const Term* t) {
    const Term* value = encoder.get_bv_encoding(t, &side);
    EXPECT_TRUE(side.empty());
    return value;
  }

  IEEEFloat::format fmt;
  TermManager target;
  FpBvEncoder encoder{&source, &target};
  std::vector<const Term*> side;
};

/// A value of a small format, read off its pattern.
class SmallFloat {
 public:
  SmallFloat(std::uint64_t pattern, IEEEFloat::format f)
      : sign(pattern >> (f.e + f.m) & 1),
        exponent(pattern >> f.m & ((1U << f.e) - 1)),
        fraction(pattern & ((1U << f.m) - 1)),
        fmt(f) {}

  bool is_nan() const { return at_top() && fraction != 0; }
  bool is_inf() const { return at_top() && fraction == 0; }
  bool is_zero() const { return exponent == 0 && fraction == 0; }
  /// The exact value, scaled so that the smallest subnormal is 1; an infinity counts as the value
  /// that its pattern would have were it finite, which is above all others.
  mpq_class value() const {
    const std::uint64_t hidden = exponent == 0 ? 0 : std::uint64_t{1} << fmt.m;
    const std::uint64_t scale = exponent == 0 ? 0 : exponent - 1;
    mpz_class magnitude(fraction + hidden);
    magnitude <<= scale;
    return sign == 0 ? mpq_class(magnitude) : mpq_class(-magnitude);
  }

 private:
  bool at_top() const { return exponent == (1U << fmt.e) - 1; }

  std::uint64_t sign;
  std::uint64_t exponent;
  std::uint64_t fraction;
  IEEEFloat::format fmt;
};

/// The format and pattern type of one of the processor's own floats.
template <class Float>
struct Hardware {
  static constexpr bool kSingle = std::is_same_v<Float, float>;
  using Pattern = std::conditional_t<kSingle, std::uint32_t, std::uint64_t>;
  static constexpr IEEEFloat::format kFormat =
      kSingle ? IEEEFloat::format{8, 23} : IEEEFloat::format{11, 52};

  static Float value(std::uint64_t pattern) {
    return std::bit_cast<Float>(static_cast<Pattern>(pattern));
  }
};

/// Patterns of both signs around the ends of each class.
inline std::vector<std::uint64_t> boundary_patterns(IEEEFloat::format f) {
  const std::uint64_t normal = std::uint64_t{1} << f.m;  // the smallest normal number
  const std::uint64_t infinity = ((std::uint64_t{1} << f.e) - 1) << f.m;
  const std::uint64_t one = ((std::uint64_t{1} << (f.e - 1)) - 1) << f.m;
  const std::uint64_t magnitudes[] = {0,
                                      1,
                                      2,
                                      normal / 2,
                                      normal - 1,
                                      normal,
                                      normal + 1,
                                      one,
                                      one - 1,
                                      one + 1,
                                      infinity - 1,
                                      infinity,
                                      infinity + 1,
                                      infinity + normal / 2,
                                      infinity + normal - 1};
  std::vector<std::uint64_t> patterns;
  for (const std::uint64_t magnitude : magnitudes) {
    patterns.push_back(magnitude);
    patterns.push_back(magnitude | std::uint64_t{1} << (f.e + f.m));
  }
  return patterns;
}

/// `count` random patterns of a format, the same on every run.
inline std::vector<std::uint64_t> random_patterns(IEEEFloat::format f, std::size_t count) {
  std::mt19937_64 random(2019);
  std::vector<std::uint64_t> patterns(count);
  for (std::uint64_t& pattern : patterns)
    pattern = random() >> (64 - f.width());
  return patterns;
}

}  // namespace vorn::fp

#endif
