// What the encoder's tests share: an encoder whose building blocks can be called, over one manager
// or two, and short ways to make its inputs and to read its outputs.
//
// Rewriting is off, so that an encoding has exactly the shape that was built. Terms are shared, so
// a term built by hand through the target manager must be the very object that the encoder returns.
#ifndef VORN_TESTS_FP_ENCODER_FIXTURE_H
#define VORN_TESTS_FP_ENCODER_FIXTURE_H

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "vorn/fp/fp_bv_encoder.h"

namespace vorn::fp {

using Terms = std::vector<const Term*>;

/// The encoder with its building blocks in the open. `on_isnan`, when set, takes the place of the
/// NaN test's circuit: side constraints of building blocks come out of a call only.
class OpenEncoder : public FpBvEncoder {
 public:
  OpenEncoder(TermManager* src, TermManager* dst) : FpBvEncoder(src, dst) {
    set_method(SymbolTag::fp_isnan, static_cast<EncodeMethod>(&OpenEncoder::run_isnan));
  }

  using FpBvEncoder::debug_track_term;
  using FpBvEncoder::enc_add_sub_both_zero;
  using FpBvEncoder::enc_denormalization_shift;
  using FpBvEncoder::enc_do_rounding;
  using FpBvEncoder::enc_get_exponent;
  using FpBvEncoder::enc_get_mantissa;
  using FpBvEncoder::enc_is_inf;
  using FpBvEncoder::enc_is_nan;
  using FpBvEncoder::enc_is_zero;
  using FpBvEncoder::enc_make_ite;
  using FpBvEncoder::enc_make_term_cond;
  using FpBvEncoder::enc_make_term_ite;
  using FpBvEncoder::enc_normalization_shift;
  using FpBvEncoder::enc_normalization_shift_const;
  using FpBvEncoder::enc_normalization_shift_linear;
  using FpBvEncoder::enc_normalization_shift_log;
  using FpBvEncoder::enc_pack_and_bias;
  using FpBvEncoder::enc_round_exponent;
  using FpBvEncoder::enc_round_mantissa;
  using FpBvEncoder::enc_widen;
  using FpBvEncoder::encode_add;
  using FpBvEncoder::encode_cast;
  using FpBvEncoder::encode_div;
  using FpBvEncoder::encode_equality;
  using FpBvEncoder::encode_fp_equal;
  using FpBvEncoder::encode_from_sbv;
  using FpBvEncoder::encode_from_ubv;
  using FpBvEncoder::encode_isinf;
  using FpBvEncoder::encode_isnan;
  using FpBvEncoder::encode_iszero;
  using FpBvEncoder::encode_le;
  using FpBvEncoder::encode_lt;
  using FpBvEncoder::encode_mul;
  using FpBvEncoder::encode_neg;
  using FpBvEncoder::encode_number;
  using FpBvEncoder::encode_sub;

  std::function<const Term*(const Term*)> on_isnan;

 private:
  const Term* run_isnan(const Term* t) { return on_isnan ? on_isnan(t) : encode_isnan(t); }
};

/// Whether source and target manager are the same object.
enum class Managers : std::uint8_t { one, two };

inline void PrintTo(Managers managers, std::ostream* out) {
  *out << (managers == Managers::one ? "OneManager" : "TwoManagers");
}

/// A suite that runs on one manager and on two.
class EncoderTest : public ::testing::TestWithParam<Managers> {
 protected:
  using format = IEEEFloat::format;

  // Inputs --------------------------------------------------------------------------------------

  const Term* variable(const std::string& name, format fmt) {
    return src.make_constant(src.make_unique_symbol(name, src.get_fp_type(fmt.e, fmt.m)));
  }
  const Term* number(std::int64_t bits, format fmt) {
    return src.make_fp_number(QNumber(bits), fmt.e, fmt.m);
  }
  const Term* bv_variable(const std::string& name, std::size_t width) {
    return src.make_constant(src.make_unique_symbol(name, src.get_bv_type(width)));
  }
  const Term* rounding_variable(const std::string& name) {
    return src.make_constant(src.make_unique_symbol(name, src.get_fprounding_type()));
  }
  const Term* bool_variable(const std::string& name) {
    return src.make_constant(src.make_unique_symbol(name, src.get_bool_type()));
  }

  // Terms of the target --------------------------------------------------------------------------

  /// A free bit-vector or Boolean, for the building blocks.
  const Term* bits(const std::string& name, std::size_t width) {
    return dst.make_constant(dst.make_unique_symbol(name, dst.get_bv_type(width)));
  }
  const Term* flag(const std::string& name) {
    return dst.make_constant(dst.make_unique_symbol(name, dst.get_bool_type()));
  }
  const Term* bv(std::int64_t value, std::size_t width) {
    return dst.make_bv_number(QNumber(value), width);
  }

  // Calls ---------------------------------------------------------------------------------------

  /// Encodes `t`; its constraints are in `side`.
  const Term* encode(const Term* t) { return encoder.get_bv_encoding(t, &side); }

  /// Runs `body` within a call of its own and returns the constraints that it left.
  Terms constraints_of(const std::function<void()>& body) {
    encoder.on_isnan = [&](const Term*) {
      body();
      return dst.make_true();
    };
    const Term* call = src.make_fp_isnan(number(0, {2, 2}));
    Terms out;
    encoder.get_bv_encoding(call, &out);
    encoder.retract_upto(call);
    encoder.on_isnan = nullptr;
    return out;
  }

  /// The constant that stands for the if-then-else in `side`, found by its two clauses.
  const Term* chosen(const Term* c, const Term* a, const Term* b) {
    const Term* not_c = dst.make_not(c);
    for (std::size_t i = 0; i + 1 < side.size(); ++i) {
      if (side[i]->get_tag() != SymbolTag::bool_or || side[i]->get_arg(0) != not_c) continue;
      const Term* k = side[i]->get_arg(1)->get_arg(0);
      if (k->get_type() != a->get_type()) continue;
      const Term* then_clause = dst.make_or(not_c, dst.make_equal(k, a));
      const Term* else_clause = dst.make_or(c, dst.make_equal(k, b));
      if (side[i] == then_clause && side[i + 1] == else_clause) return k;
    }
    ADD_FAILURE() << "no constant stands for (ite " << c->to_string() << " ...)";
    return a;
  }

  static const std::string& name_of(const Term* t) { return t->get_symbol()->get_name(); }
  static std::size_t width_of(const Term* t) { return t->get_type()->get_width(); }

  TermManager first{false};
  TermManager second{false};
  TermManager& src = first;
  TermManager& dst = GetParam() == Managers::one ? first : second;
  OpenEncoder encoder{&src, &dst};
  Terms side;
};

/// Runs a suite derived from EncoderTest both ways.
inline auto one_and_two_managers() {
  return ::testing::Values(Managers::one, Managers::two);
}

}  // namespace vorn::fp

#endif
