// Bit-vectors as sums of products, modulo a power of two.
//
// Sums, differences, negations, complements, products and shifts by numbers are taken apart down to
// terms of other kinds, the factors; so are the low bits of these, where products are multiplied
// out. Two terms with the same polynomial are equal. The converse does not hold modulo a power of
// two, where x * x * x * x - x * x, say, is a multiple of 4.
//
// Products of sums are multiplied out, which can take exponential space: what grows beyond a bound
// is a factor instead.
#ifndef VORN_REWRITE_BV_POLYNOMIAL_H
#define VORN_REWRITE_BV_POLYNOMIAL_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "vorn/rewrite/bv_cases.h"
#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn::rewrite {

/// A sum of products of terms of one width, each with a coefficient in [1, 2^width).
class BvPolynomial {
 public:
  /// Factors in the order of their identifiers, as often as they occur; none for the number 1.
  using Product = std::vector<const Term*>;
  struct ProductOrder {
    bool operator()(const Product& a, const Product& b) const;
  };
  using Summands = std::map<Product, QNumber, ProductOrder>;

  /// Zero. The width is in bits.
  explicit BvPolynomial(std::size_t bits) : width(bits) {}

  /// Adds coefficient * product; the coefficient is in [0, 2^width).
  void add(const Product& product, const QNumber& coefficient);
  /// Adds coefficient * other.
  void add(const BvPolynomial& other, const QNumber& coefficient);
  void add_product(const BvPolynomial& a, const BvPolynomial& b);

  const Summands& get_summands() const { return summands; }
  std::size_t get_width() const { return width; }
  bool is_zero() const { return summands.empty(); }
  bool is_constant() const;
  /// Of the product that has most.
  std::size_t count_factors() const;
  /// True only if it has the value zero under no assignment: its products come in multiples of a
  /// power of two that its constant is no multiple of.
  bool is_never_zero() const;

 private:
  std::size_t width;
  Summands summands;
};

/// How products are treated.
enum class Products : std::uint8_t {
  multiply_out,
  keep  // a product of two terms that are no numbers is a factor
};

/// The polynomial of a bit-vector term, in a case if one is given.
BvPolynomial expand(TermManager& mgr, const Term* t, Products products,
                    const BvCase* in_case = nullptr);

/// Whether `t` is a sum, difference, negation, complement, product, or shift to the left by a
/// number.
bool is_bv_arithmetic(const TermManager& mgr, const Term* t);
/// Whether `t` is an operation that `expand` takes apart.
bool is_expanded(const TermManager& mgr, const Term* t, Products products);

/// The width of a bit-vector term.
std::size_t width_of(const Term* t);
/// Whether `t` is an extract of the low bits.
bool is_low_extract(const Term* t);
/// 2^width - 1, the coefficient that subtracts.
QNumber minus_one(std::size_t width);

}  // namespace vorn::rewrite

#endif
