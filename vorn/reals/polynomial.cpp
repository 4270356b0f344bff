#include "vorn/reals/polynomial.h"

#include <algorithm>
#include <iterator>

namespace vorn::reals {

Polynomial Polynomial::of_constant(const QNumber& value) {
  Polynomial p;
  if (value.sign() != 0) p.terms.emplace(Monomial(), value);
  return p;
}

Polynomial Polynomial::of_unknown(std::uint32_t unknown) {
  Polynomial p;
  p.terms.emplace(Monomial{unknown}, QNumber(1));
  return p;
}

QNumber Polynomial::get_constant() const {
  const auto found = terms.find(Monomial());
  return found == terms.end() ? QNumber() : found->second;
}

void Polynomial::add_term(const Monomial& monomial, const QNumber& coefficient) {
  const auto [place, is_new] = terms.try_emplace(monomial);
  place->second += coefficient;
  if (place->second.sign() == 0) terms.erase(place);
}

void Polynomial::add(const Polynomial& other, const QNumber& factor) {
  for (const auto& [monomial, coefficient] : other.terms)
    add_term(monomial, coefficient * factor);
}

Polynomial Polynomial::negate() const {
  Polynomial result;
  result.add(*this, QNumber(-1));
  return result;
}

std::optional<Polynomial> Polynomial::multiply(const Polynomial& a, const Polynomial& b) {
  Polynomial product;
  for (const auto& [left, x] : a.terms) {
    for (const auto& [right, y] : b.terms) {
      if (left.size() + right.size() > kHighestDegree) return std::nullopt;
      Monomial both;
      std::merge(left.begin(), left.end(), right.begin(), right.end(), std::back_inserter(both));
      const auto [place, is_new] = product.terms.try_emplace(std::move(both));
      place->second += x * y;
      if (place->second.sign() == 0) product.terms.erase(place);
    }
    if (product.terms.size() > kMostTerms) return std::nullopt;
  }
  return product;
}

}  // namespace vorn::reals
