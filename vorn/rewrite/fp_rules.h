// Rules that replace a floating-point operation by an equal one that is cheaper to encode or more
// often shared.
//
// Every rule is an identity of the SMT-LIB FloatingPoint theory: of values, the one NaN, the sign
// of zeros and, unless it asks for certain modes, all five rounding modes included. None says
// anything about the circuits of an encoder, so none may be used with one that departs from the
// theory. A few rules are for bit-vectors, see bv_rules.cpp. For each rule there is a script
// tests/regress/rewrites/NAME.smt2 in which the solver refutes a counterexample without rewriting.
//
// Rules end: each of them takes away operations that none brings back (products with powers of two,
// fused products with 1, negations and widenings below other operations, comparisons of special
// operands, ...), replaces an operation by smaller ones, or puts operands in order.
#ifndef VORN_REWRITE_FP_RULES_H
#define VORN_REWRITE_FP_RULES_H

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn::rewrite {

struct FpRule {
  static constexpr std::size_t kMaxTags = 16;

  const char* name;
  /// The operations that it looks at, `none` behind them; without any, all on floats and equality.
  std::array<SymbolTag::tag, kMaxTags> tags;
  /// An equal term other than `t`, or null where the rule does not apply.
  const Term* (*apply)(TermManager& mgr, const Term* t);
};

/// Rules for literals, special operands and operands that occur twice.
std::span<const FpRule> get_arithmetic_rules();
/// Rules for negations, absolute values and the order of operands.
std::span<const FpRule> get_sign_rules();
/// Rules for conversions, and for operations between two of them.
std::span<const FpRule> get_conversion_rules();
/// Rules for comparisons and equality.
std::span<const FpRule> get_comparison_rules();
/// Rules for tests of classes.
std::span<const FpRule> get_class_rules();
/// Rules for comparisons, divisions and choices of bit-vectors.
std::span<const FpRule> get_bit_vector_rules();

/// All of these, in the order in which they are tried.
std::vector<const FpRule*> get_fp_rules();

}  // namespace vorn::rewrite

#endif
