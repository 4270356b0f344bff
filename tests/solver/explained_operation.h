// Operations on literals, to be explained and to be folded.
#ifndef VORN_TESTS_SOLVER_EXPLAINED_OPERATION_H
#define VORN_TESTS_SOLVER_EXPLAINED_OPERATION_H

#include <gmpxx.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "tests/oracle/format.h"
#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/solver/explanation.h"

namespace vorn::solver {

using oracle::Format;
using Mode = IEEEFloat::rounding_mode;
using Terms = std::vector<const Term*>;

/// Builds an operation; `to` is a second format, or {width, 0}.
using Build = const Term* (*)(TermManager& t, const Term* rm, const Terms& x, Format to);

struct Operation {
  const char* name;
  std::size_t arity;
  bool in_base;
  bool has_bits;  // its operand is a bit-vector of the width `to.e`
  Build build;
};

inline const Operation kOperations[] = {
    {"add", 2, true, false,
     [](TermManager& t, const Term* rm, const Terms& x, Format) {
       return t.make_fp_add(rm, x[0], x[1]);
     }},
    {"sub", 2, true, false,
     [](TermManager& t, const Term* rm, const Terms& x, Format) {
       return t.make_fp_sub(rm, x[0], x[1]);
     }},
    {"mul", 2, true, false,
     [](TermManager& t, const Term* rm, const Terms& x, Format) {
       return t.make_fp_mul(rm, x[0], x[1]);
     }},
    {"div", 2, true, false,
     [](TermManager& t, const Term* rm, const Terms& x, Format) {
       return t.make_fp_div(rm, x[0], x[1]);
     }},
    {"fma", 3, false, false,
     [](TermManager& t, const Term* rm, const Terms& x, Format) {
       return t.make_fp_fma(rm, x[0], x[1], x[2]);
     }},
    {"sqrt", 1, false, false,
     [](TermManager& t, const Term* rm, const Terms& x, Format) {
       return t.make_fp_sqrt(rm, x[0]);
     }},
    {"rem", 2, false, false,
     [](TermManager& t, const Term*, const Terms& x, Format) { return t.make_fp_rem(x[0], x[1]); }},
    {"rti", 1, false, false,
     [](TermManager& t, const Term* rm, const Terms& x, Format) {
       return t.make_fp_round_to_integral(rm, x[0]);
     }},
    {"min", 2, false, false,
     [](TermManager& t, const Term*, const Terms& x, Format) { return t.make_fp_min(x[0], x[1]); }},
    {"max", 2, false, false,
     [](TermManager& t, const Term*, const Terms& x, Format) { return t.make_fp_max(x[0], x[1]); }},
    {"cast", 1, true, false,
     [](TermManager& t, const Term* rm, const Terms& x, Format to) {
       return t.make_fp_cast(to.e, to.m, rm, x[0]);
     }},
    {"to_sbv", 1, false, false,
     [](TermManager& t, const Term* rm, const Terms& x, Format to) {
       return t.make_fp_to_sbv(to.e, rm, x[0]);
     }},
    {"to_ubv", 1, false, false,
     [](TermManager& t, const Term* rm, const Terms& x, Format to) {
       return t.make_fp_to_ubv(to.e, rm, x[0]);
     }},
    {"from_sbv", 1, true, true,
     [](TermManager& t, const Term* rm, const Terms& x, Format) {
       return t.make_fp_from_sbv(5, 10, rm, x[0]);
     }},
    {"from_ubv", 1, true, true,
     [](TermManager& t, const Term* rm, const Terms& x, Format) {
       return t.make_fp_from_ubv(5, 10, rm, x[0]);
     }},
    {"lt", 2, true, false,
     [](TermManager& t, const Term*, const Terms& x, Format) { return t.make_fp_lt(x[0], x[1]); }},
    {"le", 2, true, false,
     [](TermManager& t, const Term*, const Terms& x, Format) { return t.make_fp_le(x[0], x[1]); }},
    {"eq", 2, true, false,
     [](TermManager& t, const Term*, const Terms& x, Format) {
       return t.make_fp_equal(x[0], x[1]);
     }},
    {"neg", 1, true, false,
     [](TermManager& t, const Term*, const Terms& x, Format) { return t.make_fp_neg(x[0]); }},
    {"abs", 1, false, false,
     [](TermManager& t, const Term*, const Terms& x, Format) { return t.make_fp_abs(x[0]); }},
    {"isnan", 1, true, false,
     [](TermManager& t, const Term*, const Terms& x, Format) { return t.make_fp_isnan(x[0]); }},
    {"isnormal", 1, false, false,
     [](TermManager& t, const Term*, const Terms& x, Format) { return t.make_fp_isnormal(x[0]); }},
    {"isnegative", 1, false, false,
     [](TermManager& t, const Term*, const Terms& x, Format) {
       return t.make_fp_isnegative(x[0]);
     }},
    {"to_bits", 1, false, false,
     [](TermManager& t, const Term*, const Terms& x, Format) { return t.make_fp_to_bits(x[0]); }},
};

/// Of a second format: a wider one, a narrower one, one of each kind.
inline Format other_format(Format f, unsigned choice) {
  switch (choice % 4) {
    case 0:
      return {f.e + 1, f.m + 2};
    case 1:
      return {std::max(2U, f.e - 1), std::max(2U, f.m - 1)};
    case 2:
      return {f.e, std::max(2U, f.m - 1)};
    default:
      return {f.e + 2, std::max(2U, f.m - 1)};
  }
}

/// An operation on operands: as a term over literals, and what its encoding folds into.
class Instance {
 public:
  Instance(const Operation& of, Format f, Format to, Mode mode, const std::vector<mpz_class>& bits,
           EncoderKind kind)
      : encoder(make_encoder(kind, mgr)) {
    Terms args;
    for (const mpz_class& x : bits) {
      const QNumber value = QNumber::from_mpz(x);
      args.push_back(of.has_bits ? mgr.make_bv_number(value, to.e)
                                 : mgr.make_fp_number(value, f.e, f.m));
      if (of.has_bits) encoder->define_encoding(args.back(), args.back());
    }
    term = of.build(mgr, mgr.make_fprounding(mode), args, to);
  }

  /// None where the result is left open. Throws where the encoder does not support it.
  std::optional<QNumber> fold() {
    Terms constraints;
    const Term* encoding = encoder->get_bv_encoding(term, &constraints);
    if (mgr.is_bool_type(encoding->get_type())) {
      return QNumber(encoding == mgr.make_true() ? 1 : 0);
    }
    QNumber value;
    if (!mgr.is_number(encoding, &value)) return std::nullopt;
    return value;
  }

  Explanation explain(EncoderKind kind, const QNumber* model_value = nullptr) {
    return solver::explain(mgr, term, read_literals(mgr, term->get_args()), kind, model_value);
  }

  TermManager mgr;
  std::unique_ptr<fp::FpBvEncoder> encoder;
  const Term* term = nullptr;
};

}  // namespace vorn::solver

#endif
