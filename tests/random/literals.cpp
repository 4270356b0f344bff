#include "tests/random/literals.h"

#include <fmt/format.h>

#include <iterator>
#include <string>

namespace vorn::random {
namespace {

constexpr const char* kModes[] = {"RNE",
                                  "RNA",
                                  "RTP",
                                  "RTN",
                                  "RTZ",
                                  "roundNearestTiesToEven",
                                  "roundNearestTiesToAway",
                                  "roundTowardPositive",
                                  "roundTowardNegative",
                                  "roundTowardZero"};

constexpr const char* kReals[] = {
    "0.0",     "1.0",     "1",       "0.5",       "0.1",       "1.5",        "2.75",   "3",
    "100.0",   "65504.0", "65520.0", "1000000.0", "0.0000001", "0.015625",   "0.4375", "(- 0.0)",
    "(- 1.0)", "(/ 1 3)", "(- 2.5)", "(- 0.1)",   "(/ 7 8)",   "(- (/ 2 3))"};

mpz_class power(std::size_t exponent) {
  return mpz_class(1) << exponent;
}

mpz_class random_bits(std::size_t width, Random& random) {
  mpz_class value;
  for (std::size_t i = 0; i < width; ++i) {
    value = 2 * value + static_cast<unsigned>(random.below(2));
  }
  return value;
}

/// A field at or near the ends or the middle of its range.
mpz_class border(std::size_t width, Random& random) {
  const mpz_class all = power(width) - 1;
  switch (random.below(6)) {
    case 0:
      return 0;
    case 1:
      return width > 0 ? 1 : 0;
    case 2:
      return all;
    case 3:
      return all / 2;
    case 4:
      return width > 0 ? power(width - 1) : 0;
    default:
      return all > 0 ? mpz_class(all - 1) : all;
  }
}

mpz_class random_field(std::size_t width, Random& random) {
  return random.percent(65) ? border(width, random) : random_bits(width, random);
}

std::string binary(const mpz_class& value, std::size_t width) {
  const std::string digits = value.get_str(2);
  return "#b" + std::string(width - digits.size(), '0') + digits;
}

std::string bits_text(const mpz_class& value, std::size_t width, Random& random) {
  if (random.percent(20)) return fmt::format("(_ bv{} {})", value.get_str(), width);
  if (width % 4 != 0 || random.percent(50)) return binary(value, width);
  const std::string digits = value.get_str(16);
  return "#x" + std::string(width / 4 - digits.size(), '0') + digits;
}

std::string special(const char* name, const Sort& sort) {
  return fmt::format("(_ {} {} {})", name, sort.w0, sort.w1);
}

std::string float_text(const Sort& sort, const mpz_class& bits, Random& random) {
  const std::size_t m = sort.w1 - 1;
  const mpz_class fraction = bits % power(m);
  const mpz_class exponent = bits / power(m) % power(sort.w0);
  const bool negative = bits >= power(sort.width() - 1);
  if (random.percent(60)) {
    const bool top = exponent == power(sort.w0) - 1;
    if (top && fraction != 0) return special("NaN", sort);
    if (top) return special(negative ? "-oo" : "+oo", sort);
    if (exponent == 0 && fraction == 0) return special(negative ? "-zero" : "+zero", sort);
  }
  if (random.percent(30)) {
    return fmt::format("((_ to_fp {} {}) {})", sort.w0, sort.w1,
                       bits_text(bits, sort.width(), random));
  }
  return fmt::format("(fp {} {} {})", negative ? "#b1" : "#b0", binary(exponent, sort.w0),
                     bits_text(fraction, m, random));
}

std::string pattern_text(const Sort& sort, const mpz_class& bits, Random& random) {
  return sort.kind == Sort::Kind::bits ? bits_text(bits, sort.w0, random)
                                       : float_text(sort, bits, random);
}

std::string literal_text(const Sort& sort, Random& random) {
  switch (sort.kind) {
    case Sort::Kind::boolean:
      return random.percent(50) ? "true" : "false";
    case Sort::Kind::mode:
      return kModes[random.below(std::size(kModes))];
    case Sort::Kind::real:
      return kReals[random.below(std::size(kReals))];
    default:
      break;
  }
  return pattern_text(sort, random_pattern(sort, random), random);
}

Expression literal(std::string text, const Sort& sort) {
  return {Expression::Kind::theory, std::move(text), sort, {}, {}};
}

Expression constant_array(const Sort& sort, Expression element) {
  std::string head = fmt::format("(as const {})", to_string(sort));
  return {Expression::Kind::theory, std::move(head), sort, {std::move(element)}, {}};
}

}  // namespace

mpz_class random_pattern(const Sort& sort, Random& random) {
  if (sort.kind == Sort::Kind::bits) return random_field(sort.w0, random);
  const mpz_class sign = static_cast<unsigned>(random.below(2));
  const mpz_class exponent = random_field(sort.w0, random);
  const mpz_class fraction = random_field(sort.w1 - 1, random);
  return ((sign << sort.w0 | exponent) << (sort.w1 - 1)) | fraction;
}

bool has_literals(const Sort& sort) {
  return !names_people(sort);
}

Expression random_literal(const Sort& sort, Random& random) {
  if (sort.kind == Sort::Kind::array) {
    return constant_array(sort, random_literal(element_of(sort), random));
  }
  return literal(literal_text(sort, random), sort);
}

Expression pattern_literal(const Sort& sort, const mpz_class& bits, Random& random) {
  return literal(pattern_text(sort, bits, random), sort);
}

std::vector<Expression> plain_literals(const Sort& sort) {
  std::vector<std::string> texts;
  if (!has_literals(sort)) return {};
  switch (sort.kind) {
    case Sort::Kind::boolean:
      texts = {"true", "false"};
      break;
    case Sort::Kind::mode:
      texts = {"RNE", "RTZ", "RTP", "RTN", "RNA"};
      break;
    case Sort::Kind::real:
      texts = {"0.0", "1.0"};
      break;
    case Sort::Kind::bits:
      for (const mpz_class& value : {mpz_class(0), mpz_class(1), mpz_class(power(sort.w0) - 1)}) {
        texts.push_back(binary(value, sort.w0));
      }
      break;
    case Sort::Kind::array:
      return {constant_array(sort, plain_literals(element_of(sort))[0])};
    case Sort::Kind::uninterpreted:
      break;
    case Sort::Kind::floating:
      for (const char* name : {"+zero", "-zero", "NaN", "+oo", "-oo"}) {
        texts.push_back(special(name, sort));
      }
  }
  std::vector<Expression> literals;
  for (const std::string& text : texts)
    literals.push_back(literal(text, sort));
  return literals;
}

}  // namespace vorn::random
