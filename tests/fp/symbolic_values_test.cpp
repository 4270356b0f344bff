// Symbolic operands that are given values: the constraints have one solution for the result, the
// value that folding gives, or none where the two constraints of an exact zero sum contradict each
// other.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/fp/folded_operation.h"
#include "tests/fp/operation_circuit.h"
#include "tests/oracle/base_model.h"
#include "tests/oracle/random_operands.h"
#include "vorn/bv/cnf.h"
#include "vorn/bv/sat_solver.h"

namespace vorn::fp {
namespace {

using oracle::Bits;
using oracle::RoundingMode;

/// An operation on variables, encoded by the base, with a solver that can be asked for the result
/// on given operands again and again.
class SymbolicOperation {
 public:
  SymbolicOperation(OperationCircuit::Build build, IEEEFloat::rounding_mode rm,
                    std::span<const IEEEFloat::format> sorts, IEEEFloat::format to)
      : encoder(&mgr, &mgr), blaster(mgr, aig), sat(bv::make_cadical_solver()), cnf(aig, *sat) {
    std::vector<const Term*> terms;
    for (const IEEEFloat::format sort : sorts) {
      const DataType* type =
          sort.m != 0 ? mgr.get_fp_type(sort.e, sort.m) : mgr.get_bv_type(sort.e);
      terms.push_back(mgr.make_constant(mgr.make_unique_symbol("x", type)));
    }
    std::vector<const Term*> constraints;
    const Term* encoding =
        encoder.get_bv_encoding(build(mgr, mgr.make_fprounding(rm), terms, to), &constraints);
    for (const Term* c : constraints)
      cnf.assert_true(blaster.blast_bool(c));
    for (const Term* t : terms)
      operands.push_back(literals(encoder.get_cached(t)));
    result = literals(encoding);
  }

  /// Whether the constraints can hold for these operands; stores the result if so.
  bool solve(std::span<const Bits> values, Bits* value) {
    for (std::size_t i = 0; i < operands.size(); ++i)
      assume(operands[i], values[i]);
    if (sat->solve() != bv::SatSolver::Result::sat) return false;
    *value = 0;
    for (std::size_t bit = 0; bit < result.size(); ++bit) {
      if (sat->value(result[bit])) mpz_setbit(value->get_mpz_t(), bit);
    }
    return true;
  }

 private:
  std::vector<int> literals(const Term* bits) {
    std::vector<int> lits;
    for (const bv::Lit bit : blaster.blast_bits(bits))
      lits.push_back(cnf.literal(bit));
    return lits;
  }
  void assume(const std::vector<int>& lits, const Bits& value) {
    for (std::size_t bit = 0; bit < lits.size(); ++bit) {
      sat->assume(mpz_tstbit(value.get_mpz_t(), bit) != 0 ? lits[bit] : -lits[bit]);
    }
  }

  TermManager mgr;
  FpBvEncoder encoder;
  bv::Aig aig;
  bv::BitBlaster blaster;
  std::unique_ptr<bv::SatSolver> sat;
  bv::Cnf cnf;
  std::vector<std::vector<int>> operands;
  std::vector<int> result;
};

struct Binary {
  const char* name;
  OperationCircuit::Build build;
  bool (*conflict)(RoundingMode, oracle::Format, const Bits&, const Bits&);
};

bool never(RoundingMode, oracle::Format, const Bits&, const Bits&) {
  return false;
}

constexpr Binary kBinary[] = {{"add", build::add, oracle::base::add_zero_conflict},
                              {"sub", build::sub, oracle::base::sub_zero_conflict},
                              {"mul", build::mul, never},
                              {"div", build::div, never}};

/// A pattern that a formula's variable can have: NaNs are the canonical one.
Bits canonical(IEEEFloat::format f, const Bits& x) {
  IEEEFloat value = IEEEFloat::from_bits(f, QNumber::from_mpz(x));
  if (value.is_nan()) value.self_nan();
  return value.get_bits().get_numerator();
}

class Symbolic : public testing::TestWithParam<IEEEFloat::format> {};

TEST_P(Symbolic, ArithmeticHasTheFoldedValueOrNoneForASumOfZeroOfTheOtherSign) {
  const IEEEFloat::format f = GetParam();
  const oracle::Format plain{static_cast<unsigned>(f.e), static_cast<unsigned>(f.m)};
  const IEEEFloat::format sorts[] = {f, f};
  oracle::RandomOperands random(f.width());
  Folder folder;
  int conflicts = 0;
  for (const Binary& op : kBinary) {
    for (const RoundingMode rm : oracle::kBaseModes) {
      const auto mode = static_cast<IEEEFloat::rounding_mode>(rm);
      SymbolicOperation symbolic(op.build, mode, sorts, f);
      const Bits zeros[] = {0, Bits(1) << (f.width() - 1)};
      for (int i = 0; i < 40; ++i) {
        const Bits x = i < 4 ? zeros[i % 2] : canonical(f, random.float_pattern(plain));
        const Bits y = i < 4 ? zeros[i / 2] : canonical(f, random.partner(plain, x));
        const Bits operands[] = {x, y};
        Bits value;
        const bool solvable = symbolic.solve(operands, &value);
        const bool conflict = op.conflict(rm, plain, x, y);
        conflicts += conflict ? 1 : 0;
        ASSERT_EQ(solvable, !conflict) << op.name << " " << x.get_str(16) << " " << y.get_str(16);
        if (conflict) continue;
        ASSERT_EQ(value, folder.evaluate(op.build, mode, sorts, operands, f))
            << op.name << " " << x.get_str(16) << " " << y.get_str(16);
      }
    }
  }
  EXPECT_GT(conflicts, 0);
}

TEST_P(Symbolic, ConversionsHaveTheFoldedValue) {
  const IEEEFloat::format f = GetParam();
  const oracle::Format plain{static_cast<unsigned>(f.e), static_cast<unsigned>(f.m)};
  oracle::RandomOperands random(f.width() + 1);
  Folder folder;
  const struct {
    OperationCircuit::Build build;
    IEEEFloat::format from, to;
  } rows[] = {{build::cast, f, {4, 6}},
              {build::cast, f, {15, 112}},
              {build::from_sbv, {17, 0}, f},
              {build::from_ubv, {17, 0}, f}};
  for (const auto& row : rows) {
    for (const RoundingMode rm : oracle::kBaseModes) {
      const auto mode = static_cast<IEEEFloat::rounding_mode>(rm);
      const IEEEFloat::format sorts[] = {row.from};
      SymbolicOperation symbolic(row.build, mode, sorts, row.to);
      for (int i = 0; i < 25; ++i) {
        const Bits operands[] = {row.from.m == 0 ? random.bits(17)
                                                 : canonical(f, random.source(plain, {4, 6}))};
        Bits value;
        ASSERT_TRUE(symbolic.solve(operands, &value)) << operands[0].get_str(16);
        ASSERT_EQ(value, folder.evaluate(row.build, mode, sorts, operands, row.to))
            << operands[0].get_str(16);
      }
    }
  }
}

std::string format_name(const testing::TestParamInfo<IEEEFloat::format>& info) {
  return "e" + std::to_string(info.param.e) + "m" + std::to_string(info.param.m);
}

INSTANTIATE_TEST_SUITE_P(Base, Symbolic,
                         testing::Values(IEEEFloat::format{3, 3}, IEEEFloat::format{5, 10},
                                         IEEEFloat::format{8, 7}, IEEEFloat::format{8, 23},
                                         IEEEFloat::format{11, 52}),
                         format_name);

}  // namespace
}  // namespace vorn::fp
