// The base and the exact encoder proved equal by the solver, for each operation on small formats,
// wherever no departure applies. The departures are those of docs/semantics.md, as a table of the
// operands that they cover; the proof is that no other operand tells the encoders apart.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/fp/operation_circuit.h"
#include "tests/oracle/departures.h"
#include "vorn/bv/cnf.h"
#include "vorn/bv/sat_solver.h"
#include "vorn/fp/ieee_bv_encoder.h"

namespace vorn::fp {
namespace {

using oracle::Bits;
using oracle::Departures;
using oracle::RoundingMode;

oracle::Format plain(IEEEFloat::format f) {
  return {static_cast<unsigned>(f.e), static_cast<unsigned>(f.m)};
}

/// Two encodings of one operation over the same bits, in one solver.
class Difference {
 public:
  Difference(OperationCircuit::Build build, IEEEFloat::rounding_mode rm,
             std::span<const IEEEFloat::format> sorts, IEEEFloat::format to)
      : base(&mgr, &mgr),
        exact(&mgr, &mgr),
        blaster(mgr, aig),
        sat(bv::make_cadical_solver()),
        cnf(aig, *sat) {
    std::vector<const Term*> terms;
    for (const IEEEFloat::format sort : sorts) {
      const DataType* type =
          sort.m != 0 ? mgr.get_fp_type(sort.e, sort.m) : mgr.get_bv_type(sort.e);
      const std::size_t width = sort.m != 0 ? sort.width() : sort.e;
      terms.push_back(mgr.make_constant(mgr.make_unique_symbol("x", type)));
      const Term* bits = mgr.make_constant(mgr.make_unique_symbol("b", mgr.get_bv_type(width)));
      base.define_encoding(terms.back(), bits);
      exact.define_encoding(terms.back(), bits);
      for (const bv::Lit bit : blaster.blast_bits(bits))
        operands.push_back(cnf.literal(bit));
    }
    const Term* t = build(mgr, mgr.make_fprounding(rm), terms, to);
    std::vector<const Term*> constraints;
    const Term* ours = base.get_bv_encoding(t, &constraints);
    for (const Term* c : constraints)
      cnf.assert_true(blaster.blast_bool(c));
    const Term* theirs = exact.get_bv_encoding(t, &constraints);
    cnf.assert_true(!blaster.blast_bool(mgr.make_equal(ours, theirs)));
  }

  /// Leaves out the operands `value`, which holds all their bits, the first operand's lowest.
  void exclude(std::uint64_t value) {
    std::vector<int> clause;
    for (std::size_t bit = 0; bit < operands.size(); ++bit) {
      clause.push_back((value >> bit & 1U) != 0 ? -operands[bit] : operands[bit]);
    }
    sat->add_clause(clause);
  }

  std::size_t get_bits() const { return operands.size(); }
  bool exists() { return sat->solve() != bv::SatSolver::Result::unsat; }

 private:
  TermManager mgr;
  FpBvEncoder base;
  IeeeBvEncoder exact;
  bv::Aig aig;
  bv::BitBlaster blaster;
  std::unique_ptr<bv::SatSolver> sat;
  bv::Cnf cnf;
  std::vector<int> operands;
};

Bits low(std::uint64_t value, std::size_t width) {
  return Bits(static_cast<unsigned long>(value & ((std::uint64_t{1} << width) - 1)));
}

class Agreement : public testing::TestWithParam<IEEEFloat::format> {
 protected:
  template <typename Departs>
  void prove(const char* name, OperationCircuit::Build build,
             std::span<const IEEEFloat::format> sorts, IEEEFloat::format to,
             const Departs& departs) {
    std::uint64_t excluded = 0;
    for (const RoundingMode rm : oracle::kBaseModes) {
      Difference difference(build, static_cast<IEEEFloat::rounding_mode>(rm), sorts, to);
      const std::uint64_t count = std::uint64_t{1} << difference.get_bits();
      for (std::uint64_t i = 0; i < count; ++i) {
        if (!departs(rm, i)) continue;
        difference.exclude(i);
        ++excluded;
      }
      EXPECT_LT(excluded, 4 * count) << name;
      EXPECT_FALSE(difference.exists()) << name << " mode " << static_cast<int>(rm);
    }
  }
};

TEST_P(Agreement, OfArithmeticIsProvedOutsideTheDepartures) {
  const IEEEFloat::format f = GetParam();
  const std::size_t w = f.width();
  const IEEEFloat::format sorts[] = {f, f};
  const struct {
    const char* name;
    OperationCircuit::Build build;
    Departures (*departures)(RoundingMode, oracle::Format, const Bits&, const Bits&);
  } rows[] = {{"add", build::add, oracle::departures::add},
              {"sub", build::sub, oracle::departures::sub},
              {"mul", build::mul, oracle::departures::mul},
              {"div", build::div, oracle::departures::div}};
  for (const auto& row : rows) {
    prove(row.name, row.build, sorts, f, [&](RoundingMode rm, std::uint64_t i) {
      return row.departures(rm, plain(f), low(i, w), low(i >> w, w)).any();
    });
  }
}

TEST_P(Agreement, OfConversionsIsProvedOutsideTheDepartures) {
  const IEEEFloat::format f = GetParam();
  for (const IEEEFloat::format to : {IEEEFloat::format{3, 3}, {4, 3}, {3, 4}, {2, 2}, {5, 10}}) {
    const IEEEFloat::format sorts[] = {f};
    prove("cast", build::cast, sorts, to, [&](RoundingMode rm, std::uint64_t i) {
      return oracle::departures::cast(rm, plain(f), plain(to), low(i, f.width())).any();
    });
  }
  for (unsigned w = 1; w <= 8; ++w) {
    const IEEEFloat::format sorts[] = {{w, 0}};
    prove("from_sbv", build::from_sbv, sorts, f, [&](RoundingMode rm, std::uint64_t i) {
      return oracle::departures::from_sbv(rm, w, plain(f), low(i, w)).any();
    });
    prove("from_ubv", build::from_ubv, sorts, f, [&](RoundingMode rm, std::uint64_t i) {
      return oracle::departures::from_ubv(rm, w, plain(f), low(i, w)).any();
    });
  }
}

TEST_P(Agreement, OfWhatDoesNotRoundIsProvedEverywhere) {
  const IEEEFloat::format f = GetParam();
  const IEEEFloat::format one[] = {f};
  const IEEEFloat::format two[] = {f, f};
  const auto nowhere = [](RoundingMode, std::uint64_t) { return false; };
  prove("neg", build::neg, one, f, nowhere);
  prove("isnan", build::isnan, one, f, nowhere);
  prove("isinf", build::isinf, one, f, nowhere);
  prove("iszero", build::iszero, one, f, nowhere);
  prove("eq", build::eq, two, f, nowhere);
  prove("lt", build::lt, two, f, nowhere);
  prove("le", build::le, two, f, nowhere);
}

INSTANTIATE_TEST_SUITE_P(Encoders, Agreement,
                         testing::Values(IEEEFloat::format{3, 3}, IEEEFloat::format{4, 3}),
                         [](const auto& parameter) {
                           return "e" + std::to_string(parameter.param.e) + "m" +
                                  std::to_string(parameter.param.m);
                         });

}  // namespace
}  // namespace vorn::fp
