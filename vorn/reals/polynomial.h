// Polynomials with rational coefficients, of few terms.
#ifndef VORN_REALS_POLYNOMIAL_H
#define VORN_REALS_POLYNOMIAL_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "vorn/terms/qnumber.h"

namespace vorn::reals {

/// The factors of a product, in order, a power as often as its exponent says; 1 has none.
using Monomial = std::vector<std::uint32_t>;

/// A sum of products. No coefficient is 0, so equal polynomials are equal objects.
class Polynomial {
 public:
  static constexpr std::size_t kMostTerms = 128;
  static constexpr std::size_t kHighestDegree = 12;

  /// 0, a constant, and an unknown.
  Polynomial() = default;
  static Polynomial of_constant(const QNumber& value);
  static Polynomial of_unknown(std::uint32_t unknown);

  const std::map<Monomial, QNumber>& get_terms() const { return terms; }
  QNumber get_constant() const;
  /// Whether it has no unknown.
  bool is_constant() const { return terms.empty() || terms.rbegin()->first.empty(); }

  Polynomial negate() const;
  void add_term(const Monomial& monomial, const QNumber& coefficient);
  /// Adds `factor` times `other`.
  void add(const Polynomial& other, const QNumber& factor);
  /// None where the product is too large.
  static std::optional<Polynomial> multiply(const Polynomial& a, const Polynomial& b);

  bool operator==(const Polynomial&) const = default;

 private:
  std::map<Monomial, QNumber> terms;
};

}  // namespace vorn::reals

#endif
