// One operation as a circuit that runs on 512 operand tuples at a time.
//
// The operation is encoded over free bit-vectors, blasted and compiled for the simulator, so that
// what is tested is what the solver would get, and millions of operands take seconds.
#ifndef TESTS_FP_OPERATION_CIRCUIT_H
#define TESTS_FP_OPERATION_CIRCUIT_H

#include <gmpxx.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "vorn/bv/aig.h"
#include "vorn/bv/bit_blaster.h"
#include "vorn/bv/simulator.h"
#include "vorn/fp/fp_bv_encoder.h"
#include "vorn/terms/term_manager.h"

namespace vorn::fp {

class OperationCircuit {
 public:
  /// Builds the operation's term on the given operands.
  using Build = const Term* (*)(TermManager& t, const Term* rm, std::span<const Term* const> x,
                                IEEEFloat::format to);

  /// `sorts` gives an operand's format, or its width as {width, 0} for a bit-vector. Without a
  /// `mode` the rounding mode is a variable, whose code is the next operand. What the theory leaves
  /// open of the operation is the last.
  template <typename Encoder>
  static OperationCircuit make(Build build, std::span<const IEEEFloat::format> sorts,
                               IEEEFloat::format to, std::optional<IEEEFloat::rounding_mode> mode) {
    OperationCircuit circuit;
    circuit.encoder = std::make_unique<Encoder>(circuit.mgr.get(), circuit.mgr.get());
    circuit.compile(build, sorts, to, mode);
    return circuit;
  }

  static constexpr std::size_t kLanes = bv::Simulator::kLanes;

  /// Operands first, first + 1, ... with the first operand in the lowest bits.
  void run_from(std::uint64_t first) {
    std::size_t position = 0;
    for (const std::span<const bv::Lit> bits : operands) {
      for (const bv::Lit bit : bits) {
        simulator->set_input(bit, bv::Simulator::count_from(first, position++));
      }
    }
    simulator->run();
    read_outputs();
  }

  void set_operand(std::size_t i, std::size_t lane, const mpz_class& value) {
    for (std::size_t bit = 0; bit < operands[i].size(); ++bit) {
      inputs[i][bit].set(lane, mpz_tstbit(value.get_mpz_t(), bit) != 0);
    }
  }

  /// Runs on what set_operand has set.
  void run() {
    for (std::size_t i = 0; i < operands.size(); ++i) {
      for (std::size_t bit = 0; bit < operands[i].size(); ++bit) {
        simulator->set_input(operands[i][bit], inputs[i][bit]);
      }
    }
    simulator->run();
    read_outputs();
  }

  mpz_class result(std::size_t lane) const {
    mpz_class value;
    for (std::size_t bit = 0; bit < outputs.size(); ++bit) {
      if (outputs[bit].get(lane)) mpz_setbit(value.get_mpz_t(), bit);
    }
    return value;
  }

  /// The side constraints of the encoding.
  const std::vector<const Term*>& get_constraints() const { return constraints; }

 private:
  OperationCircuit() : mgr(std::make_unique<TermManager>()), aig(std::make_unique<bv::Aig>()) {
    blaster = std::make_unique<bv::BitBlaster>(*mgr, *aig);
  }

  const Term* variable(const DataType* type) {
    return mgr->make_constant(mgr->make_unique_symbol("x", type));
  }

  void compile(Build build, std::span<const IEEEFloat::format> sorts, IEEEFloat::format to,
               std::optional<IEEEFloat::rounding_mode> mode) {
    std::vector<const Term*> terms;
    for (const IEEEFloat::format sort : sorts) {
      const bool is_float = sort.m != 0;
      const std::size_t width = is_float ? sort.width() : sort.e;
      terms.push_back(
          variable(is_float ? mgr->get_fp_type(sort.e, sort.m) : mgr->get_bv_type(width)));
      add_operand(terms.back(), variable(mgr->get_bv_type(width)));
    }
    const Term* rm = mode ? mgr->make_fprounding(*mode) : variable(mgr->get_fprounding_type());
    const Term* t = build(*mgr, rm, terms, to);
    const Term* encoding = encoder->get_bv_encoding(t, &constraints);
    if (!mode) operands.push_back(blaster->blast_bits(encoder->get_cached(rm)));
    if (const Term* choice = encoder->get_choice(t)) {
      operands.push_back(blaster->blast_bits(choice));
    }
    std::vector<bv::Lit> results;
    if (mgr->is_bool_type(encoding->get_type())) {
      results.push_back(blaster->blast_bool(encoding));
    } else {
      const std::span<const bv::Lit> bits = blaster->blast_bits(encoding);
      results.assign(bits.begin(), bits.end());
    }
    simulator = std::make_unique<bv::Simulator>(*aig, results);
    outputs.resize(results.size());
    for (const auto& bits : operands)
      inputs.emplace_back(bits.size());
  }

  void add_operand(const Term* t, const Term* bits) {
    encoder->define_encoding(t, bits);
    operands.push_back(blaster->blast_bits(bits));
  }

  void read_outputs() {
    for (std::size_t i = 0; i < outputs.size(); ++i)
      outputs[i] = simulator->get_output(i);
  }

  std::unique_ptr<TermManager> mgr;
  std::unique_ptr<FpBvEncoder> encoder;
  std::unique_ptr<bv::Aig> aig;
  std::unique_ptr<bv::BitBlaster> blaster;
  std::unique_ptr<bv::Simulator> simulator;
  std::vector<const Term*> constraints;
  std::vector<std::span<const bv::Lit>> operands;
  std::vector<std::vector<bv::Simulator::Block>> inputs;
  std::vector<bv::Simulator::Block> outputs;
};

/// How a term of each operation is built, for tables of tests.
namespace build {

using Args = std::span<const Term* const>;
using Format = IEEEFloat::format;

inline const Term* add(TermManager& t, const Term* rm, Args x, Format /*to*/) {
  return t.make_fp_add(rm, x[0], x[1]);
}
inline const Term* sub(TermManager& t, const Term* rm, Args x, Format /*to*/) {
  return t.make_fp_sub(rm, x[0], x[1]);
}
inline const Term* mul(TermManager& t, const Term* rm, Args x, Format /*to*/) {
  return t.make_fp_mul(rm, x[0], x[1]);
}
inline const Term* div(TermManager& t, const Term* rm, Args x, Format /*to*/) {
  return t.make_fp_div(rm, x[0], x[1]);
}
inline const Term* cast(TermManager& t, const Term* rm, Args x, Format to) {
  return t.make_fp_cast(to.e, to.m, rm, x[0]);
}
inline const Term* from_sbv(TermManager& t, const Term* rm, Args x, Format to) {
  return t.make_fp_from_sbv(to.e, to.m, rm, x[0]);
}
inline const Term* from_ubv(TermManager& t, const Term* rm, Args x, Format to) {
  return t.make_fp_from_ubv(to.e, to.m, rm, x[0]);
}
inline const Term* neg(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_neg(x[0]);
}
inline const Term* fma(TermManager& t, const Term* rm, Args x, Format /*to*/) {
  return t.make_fp_fma(rm, x[0], x[1], x[2]);
}
inline const Term* sqrt(TermManager& t, const Term* rm, Args x, Format /*to*/) {
  return t.make_fp_sqrt(rm, x[0]);
}
inline const Term* rem(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_rem(x[0], x[1]);
}
inline const Term* rti(TermManager& t, const Term* rm, Args x, Format /*to*/) {
  return t.make_fp_round_to_integral(rm, x[0]);
}
/// `to` is {width, 0}.
inline const Term* to_sbv(TermManager& t, const Term* rm, Args x, Format to) {
  return t.make_fp_to_sbv(to.e, rm, x[0]);
}
inline const Term* to_ubv(TermManager& t, const Term* rm, Args x, Format to) {
  return t.make_fp_to_ubv(to.e, rm, x[0]);
}
inline const Term* min(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_min(x[0], x[1]);
}
inline const Term* max(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_max(x[0], x[1]);
}
inline const Term* abs(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_abs(x[0]);
}
inline const Term* to_bits(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_to_bits(x[0]);
}
inline const Term* isnormal(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_isnormal(x[0]);
}
inline const Term* issubnormal(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_issubnormal(x[0]);
}
inline const Term* isnegative(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_isnegative(x[0]);
}
inline const Term* ispositive(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_ispositive(x[0]);
}
inline const Term* eq(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_equal(x[0], x[1]);
}
inline const Term* lt(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_lt(x[0], x[1]);
}
inline const Term* le(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_le(x[0], x[1]);
}
inline const Term* isnan(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_isnan(x[0]);
}
inline const Term* isinf(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_isinf(x[0]);
}
inline const Term* iszero(TermManager& t, const Term* /*rm*/, Args x, Format /*to*/) {
  return t.make_fp_iszero(x[0]);
}

}  // namespace build

}  // namespace vorn::fp

#endif
