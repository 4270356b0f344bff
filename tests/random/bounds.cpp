#include "tests/random/bounds.h"

#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "tests/random/literals.h"

namespace vorn::random {
namespace {

constexpr const char* kClasses[] = {"fp.isNormal",   "fp.isSubnormal", "fp.isZero",
                                    "fp.isNaN",      "fp.isNaN",       "fp.isInfinite",
                                    "fp.isNegative", "fp.isPositive"};
constexpr const char* kFloatOrders[] = {"fp.leq", "fp.leq", "fp.lt"};
constexpr const char* kFloatClaims[] = {"fp.lt", "fp.leq", "fp.gt", "fp.geq", "fp.eq", "="};
constexpr const char* kBitClaims[] = {"bvult", "bvule", "bvsgt", "bvsge", "=", "distinct"};

Expression apply(const char* head, std::vector<Expression> args) {
  return {Expression::Kind::theory, head, kBool, std::move(args), {}};
}

mpz_class power(std::size_t exponent) {
  return mpz_class(1) << exponent;
}

/// Another pattern for those of NaN, which bound nothing.
mpz_class random_end(const Sort& sort, Random& random) {
  const mpz_class bits = random_pattern(sort, random);
  if (sort.kind == Sort::Kind::bits) return bits;
  const mpz_class sign = power(sort.width() - 1);
  const mpz_class infinity = (power(sort.w0) - 1) << (sort.w1 - 1);
  return bits % sign > infinity ? mpz_class(bits / sign * sign + infinity) : bits;
}

/// The place of a pattern in the order that it is compared in.
mpz_class rank_of(const Sort& sort, const mpz_class& bits, bool has_sign) {
  const mpz_class half = power(sort.width() - 1);
  if (!has_sign || bits < half) return bits;
  return sort.kind == Sort::Kind::bits ? mpz_class(bits - 2 * half) : mpz_class(half - 1 - bits);
}

/// Two ends in their order, often close to each other; now and then not in their order, which
/// leaves no value.
std::vector<Expression> random_ends(const Sort& sort, bool has_sign, Random& random) {
  mpz_class least = random_end(sort, random);
  mpz_class greatest = random_end(sort, random);
  const mpz_class space = power(sort.width() - (has_sign ? 1 : 0));
  // Patterns of one sign are in their order, or all the other way round.
  if (random.percent(50)) greatest = least - least % space + (least + random.below(4)) % space;
  const bool is_ordered = rank_of(sort, least, has_sign) <= rank_of(sort, greatest, has_sign);
  if (!is_ordered && random.percent(95)) std::swap(least, greatest);
  return {pattern_literal(sort, least, random), pattern_literal(sort, greatest, random)};
}

Expression random_interval(const Expression& term, Random& random) {
  const bool is_float = term.sort.kind == Sort::Kind::floating;
  const bool has_sign = is_float || random.percent(50);
  const auto order = [&] {
    if (is_float) return kFloatOrders[random.below(std::size(kFloatOrders))];
    return has_sign ? "bvsle" : "bvule";
  };
  const std::vector<Expression> ends = random_ends(term.sort, has_sign, random);
  const Expression from = apply(order(), {ends[0], term});
  const Expression to = apply(order(), {term, ends[1]});
  const std::size_t sides = random.below(10);
  if (sides == 0) return from;
  return sides == 1 ? to : apply("and", {from, to});
}

}  // namespace

bool has_bounds(const Sort& sort) {
  return sort.kind == Sort::Kind::bits || sort.kind == Sort::Kind::floating;
}

Expression random_bounds(const Expression& term, Random& random) {
  if (term.sort.kind == Sort::Kind::bits || random.percent(75)) {
    return random_interval(term, random);
  }
  const Expression is_of_class = apply(kClasses[random.below(std::size(kClasses))], {term});
  return random.percent(60) ? is_of_class : apply("not", {is_of_class});
}

Expression random_claim(const Expression& term, Random& random) {
  const Expression literal = random_literal(term.sort, random);
  if (term.sort.kind == Sort::Kind::bits) {
    return apply(kBitClaims[random.below(std::size(kBitClaims))], {term, literal});
  }
  return apply(kFloatClaims[random.below(std::size(kFloatClaims))], {term, literal});
}

}  // namespace vorn::random
