#include "tests/reals/model_values.h"

#include "vorn/terms/ieee_float.h"

namespace vorn::reals {

QNumber real_of(const Term* t, const QNumber& value) {
  if (t->get_type()->get_kind() != DataType::Kind::floating_point) return value;
  return IEEEFloat::from_bits(t->get_type()->get_format(), value).get_value();
}

QNumber evaluate(const Polynomial& p, const ranges::Propagation& ranges,
                 semantics::Evaluator& model) {
  QNumber sum;
  for (const auto& [monomial, coefficient] : p.get_terms()) {
    QNumber product = coefficient;
    for (const std::uint32_t unknown : monomial) {
      const Term* t = ranges.get_term(unknown);
      product *= real_of(t, model.evaluate(t));
    }
    sum += product;
  }
  return sum;
}

}  // namespace vorn::reals
