// One operation on literals: its encoding folds into a literal.
#ifndef TESTS_FP_FOLDED_OPERATION_H
#define TESTS_FP_FOLDED_OPERATION_H

#include <gmpxx.h>

#include <memory>
#include <span>
#include <stdexcept>
#include <vector>

#include "tests/fp/operation_circuit.h"
#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/terms/term_manager.h"

namespace vorn::fp {

/// Evaluates operations by encoding literals. Sessions are renewed, so that memory stays bounded.
class Folder {
 public:
  mpz_class evaluate(OperationCircuit::Build build, IEEEFloat::rounding_mode rm,
                     std::span<const IEEEFloat::format> sorts, std::span<const mpz_class> operands,
                     IEEEFloat::format to) {
    if (mgr == nullptr || mgr->get_term_count() > kSessionTerms) {
      encoder.reset();
      mgr = std::make_unique<TermManager>();
      encoder = std::make_unique<FpBvEncoder>(mgr.get(), mgr.get());
    }
    std::vector<const Term*> terms;
    for (std::size_t i = 0; i < operands.size(); ++i) {
      terms.push_back(literal(sorts[i], QNumber::from_mpz(operands[i])));
    }
    const Term* t = build(*mgr, mgr->make_fprounding(rm), terms, to);
    QNumber bits;
    if (!mgr->is_number(encoder->get_bv_encoding(t, &constraints), &bits)) {
      throw std::logic_error("did not fold: " + t->to_string());
    }
    return bits.get_numerator();
  }

 private:
  static constexpr std::uint64_t kSessionTerms = 1U << 18U;

  const Term* literal(IEEEFloat::format sort, const QNumber& bits) {
    if (sort.m != 0) return mgr->make_fp_number(bits, sort.e, sort.m);
    const Term* v = mgr->make_bv_number(bits, sort.e);
    if (encoder->get_cached(v) == nullptr) encoder->define_encoding(v, v);
    return v;
  }

  std::unique_ptr<TermManager> mgr;
  std::unique_ptr<FpBvEncoder> encoder;
  std::vector<const Term*> constraints;
};

}  // namespace vorn::fp

#endif
