// Reading what debug tracking leaves among the side constraints, and the part of it that all
// rounded operations have in common.
#ifndef VORN_TESTS_FP_TRACKED_LABELS_H
#define VORN_TESTS_FP_TRACKED_LABELS_H

#include <gtest/gtest.h>

#include <bit>
#include <string>
#include <utility>
#include <vector>

#include "tests/fp/encoder_fixture.h"

namespace vorn::fp {

/// Labels in order, each with its value's width; 0 for a Boolean.
using Labels = std::vector<std::pair<std::string, std::size_t>>;

/// The values tracked among some constraints.
class Tracked {
 public:
  /// Constraints that are no equality or equivalence define fresh constants and are passed over.
  Tracked(TermManager& mgr, const Terms& constraints) {
    for (const Term* constraint : constraints) {
      const SymbolTag::tag tag = constraint->get_tag();
      if (tag != SymbolTag::equal && tag != SymbolTag::bool_iff) continue;
      const Term* value = constraint->get_arg(0);
      const Term* shown = constraint->get_arg(1);
      const bool is_bool = value->get_type() == mgr.get_bool_type();
      EXPECT_EQ(constraint, is_bool ? mgr.make_iff(value, shown) : mgr.make_equal(value, shown));
      // A label that is taken gets a suffix.
      const std::string& name = shown->get_symbol()->get_name();
      labels.emplace_back(name.substr(0, name.find('!')),
                          is_bool ? 0 : value->get_type()->get_width());
      values.push_back(value);
    }
  }

  /// The value under the n-th mention of `label`.
  const Term* get(const std::string& label, int n = 1) const {
    for (std::size_t i = 0; i < labels.size(); ++i) {
      if (labels[i].first == label && --n == 0) return values[i];
    }
    ADD_FAILURE() << label << " is not tracked that often";
    return nullptr;
  }

  Labels labels;

 private:
  Terms values;
};

inline Labels operator+(Labels a, const Labels& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

/// What packing tracks.
inline Labels packing_labels(IEEEFloat::format fmt) {
  const auto [e, m] = fmt;
  return {{"biased_exp", e},    {"pack_denormal", e}, {"pack_res_sign", 1}, {"pack_res_exp", e},
          {"pack_res_mant", m}, {"pack_nan", 1},      {"pack_inf", 1}};
}

/// What normalisation by bisection tracks for an exponent of E bits and a significand of W bits.
inline Labels bisection_labels(std::size_t E, std::size_t W) {
  return {{"norm_shift_exp", E},
          {"norm_shift_mant", W},
          {"enc_norm_log_shift", std::bit_ceil(W + 1)},
          {"enc_norm_log_mant", W}};
}

/// What rounding tracks after normalisation.
inline Labels rounding_labels(IEEEFloat::format fmt, std::size_t E, std::size_t W) {
  const auto [e, m] = fmt;
  const std::size_t K = m + 1;
  Labels out = {
      {"denorm_shift_exp", E},      {"denorm_shift_mant", W},   {"denorm_shift_smallexp", E},
      {"denorm_shift_denormal", 0}, {"denorm_shift_rshift", W}, {"denorm_shift_out_mant", W},
      {"denorm_shift_out_exp", E},  {"round_mant_before", W},   {"round_rounding", 2}};
  if (W > K + 1) out.emplace_back("round_mant_lastbits", W - K - 1);
  if (W > K) {
    out = out + Labels{{"round_sticky_bit", 1},      {"round_rounding_bit", 1},
                       {"round_mant_after_chop", K}, {"round_rounding_least", 1},
                       {"round_increment", 1},       {"out_correction_bit", 1},
                       {"round_overflow", 1},        {"mant_round_mant", K},
                       {"exp_round_mant", E}};
  }
  out.emplace_back("exp_exponent_too_large", 1);
  if (W > K) out.emplace_back("exp_out_correction_bit", 1);
  out.emplace_back("exp_round_exp", e);
  if (W > K) out.emplace_back("round_correction_bit", 1);
  out = out + packing_labels(fmt);
  out.emplace_back("round_ret", 1 + e + m);
  return out;
}

}  // namespace vorn::fp

#endif
