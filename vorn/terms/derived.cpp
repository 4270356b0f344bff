#include "vorn/terms/derived.h"

#include <stdexcept>
#include <string>

#include "vorn/terms/bv_number.h"
#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

using Indices = Operation::Indices;
using Args = Operation::Args;

std::size_t width_of(const Term* t) {
  return t->get_type()->get_width();
}

const Term* rotate(TermManager& mgr, const Term* t, std::size_t left) {
  if (left == 0) return t;
  const std::size_t width = width_of(t);
  const Term* high = mgr.make_bv_extract(width - 1 - left, 0, t);
  return mgr.make_bv_concat(high, mgr.make_bv_extract(width - 1, width - left, t));
}

using Binary = const Term* (TermManager::*)(const Term*, const Term*);

/// Whether the exact result, which fits twice the width, is no number of the width.
template <Binary make>
const Term* unsigned_overflow(TermManager& mgr, Args args) {
  const std::size_t w = width_of(args[0]);
  const Term* a = mgr.make_bv_zero_extend(w, args[0]);
  const Term* exact = (mgr.*make)(a, mgr.make_bv_zero_extend(w, args[1]));
  const Term* high = mgr.make_bv_extract(2 * w - 1, w, exact);
  return mgr.make_not(mgr.make_equal(high, mgr.make_bv_number(0, w)));
}

template <Binary make>
const Term* signed_overflow(TermManager& mgr, Args args) {
  const std::size_t w = width_of(args[0]);
  const Term* a = mgr.make_bv_sign_extend(w, args[0]);
  const Term* exact = (mgr.*make)(a, mgr.make_bv_sign_extend(w, args[1]));
  const Term* fitting = mgr.make_bv_sign_extend(w, mgr.make_bv_extract(w - 1, 0, exact));
  return mgr.make_not(mgr.make_equal(exact, fitting));
}

/// Whether `t` is the negative number without a negation.
const Term* is_least(TermManager& mgr, const Term* t) {
  const std::size_t w = width_of(t);
  return mgr.make_equal(t, mgr.make_bv_number(BVNumber::power_of_two(w - 1), w));
}

}  // namespace

const Term* derive_distinct(TermManager& mgr, Indices /*indices*/, Args args) {
  return mgr.make_not(mgr.make_equal(args[0], args[1]));
}

// Rearrangements ------------------------------------------------------------------------------

/// Doubles the term along the bits of the count, so that few and small terms are built.
const Term* derive_repeat(TermManager& mgr, Indices indices, Args args) {
  const std::size_t width = width_of(args[0]);
  std::size_t count = indices[0];
  if (count == 0) throw std::invalid_argument("repeat: the count must be at least 1, got 0");
  if (count > TermManager::kMaxWidth / width) {
    throw std::invalid_argument("repeat: " + std::to_string(count) +
                                " times a bit-vector of width " + std::to_string(width) +
                                "; widths go up to " + std::to_string(TermManager::kMaxWidth));
  }
  const Term* power = args[0];
  const Term* result = nullptr;
  for (; count != 0; count /= 2) {
    if (count % 2 != 0) result = result == nullptr ? power : mgr.make_bv_concat(power, result);
    if (count > 1) power = mgr.make_bv_concat(power, power);
  }
  return result;
}

const Term* derive_rotate_left(TermManager& mgr, Indices indices, Args args) {
  return rotate(mgr, args[0], indices[0] % width_of(args[0]));
}

const Term* derive_rotate_right(TermManager& mgr, Indices indices, Args args) {
  const std::size_t width = width_of(args[0]);
  return rotate(mgr, args[0], (width - indices[0] % width) % width);
}

// Bit by bit ----------------------------------------------------------------------------------

const Term* derive_bv_nand(TermManager& mgr, Indices /*indices*/, Args args) {
  return mgr.make_bv_not(mgr.make_bv_and(args[0], args[1]));
}

const Term* derive_bv_nor(TermManager& mgr, Indices /*indices*/, Args args) {
  return mgr.make_bv_not(mgr.make_bv_or(args[0], args[1]));
}

const Term* derive_bv_xnor(TermManager& mgr, Indices /*indices*/, Args args) {
  return mgr.make_bv_not(mgr.make_bv_xor(args[0], args[1]));
}

const Term* derive_bv_redor(TermManager& mgr, Indices /*indices*/, Args args) {
  return mgr.make_bv_not(mgr.make_bv_comp(args[0], mgr.make_bv_number(0, width_of(args[0]))));
}

const Term* derive_bv_redand(TermManager& mgr, Indices /*indices*/, Args args) {
  const std::size_t w = width_of(args[0]);
  return mgr.make_bv_comp(args[0], mgr.make_bv_number(BVNumber::all_ones(w), w));
}

/// Folds the upper half onto the lower one, so that the depth is the logarithm of the width.
const Term* derive_bv_redxor(TermManager& mgr, Indices /*indices*/, Args args) {
  const Term* rest = args[0];
  const Term* odd = mgr.make_bv_number(0, 1);
  for (std::size_t w = width_of(rest); w > 1; w /= 2) {
    if (w % 2 != 0) odd = mgr.make_bv_xor(odd, mgr.make_bv_extract(w - 1, w - 1, rest));
    const std::size_t half = w / 2;
    rest = mgr.make_bv_xor(mgr.make_bv_extract(2 * half - 1, half, rest),
                           mgr.make_bv_extract(half - 1, 0, rest));
  }
  return mgr.make_bv_xor(odd, rest);
}

const Term* derive_bv_ite(TermManager& mgr, Indices /*indices*/, Args args) {
  return mgr.make_term_ite(mgr.make_equal(args[0], mgr.make_bv_number(1, 1)), args[1], args[2]);
}

// Order ---------------------------------------------------------------------------------------

const Term* derive_bv_ugt(TermManager& mgr, Indices /*indices*/, Args args) {
  return mgr.make_bv_ult(args[1], args[0]);
}

const Term* derive_bv_uge(TermManager& mgr, Indices /*indices*/, Args args) {
  return mgr.make_bv_ule(args[1], args[0]);
}

const Term* derive_bv_sgt(TermManager& mgr, Indices /*indices*/, Args args) {
  return mgr.make_bv_slt(args[1], args[0]);
}

const Term* derive_bv_sge(TermManager& mgr, Indices /*indices*/, Args args) {
  return mgr.make_bv_sle(args[1], args[0]);
}

const Term* derive_fp_gt(TermManager& mgr, Indices /*indices*/, Args args) {
  return mgr.make_fp_lt(args[1], args[0]);
}

const Term* derive_fp_ge(TermManager& mgr, Indices /*indices*/, Args args) {
  return mgr.make_fp_le(args[1], args[0]);
}

// Overflow ------------------------------------------------------------------------------------

const Term* derive_bv_nego(TermManager& mgr, Indices /*indices*/, Args args) {
  return is_least(mgr, args[0]);
}

const Term* derive_bv_uaddo(TermManager& mgr, Indices /*indices*/, Args args) {
  return unsigned_overflow<&TermManager::make_bv_add>(mgr, args);
}

const Term* derive_bv_saddo(TermManager& mgr, Indices /*indices*/, Args args) {
  return signed_overflow<&TermManager::make_bv_add>(mgr, args);
}

/// A difference of non-negative numbers is out of range where it is negative.
const Term* derive_bv_usubo(TermManager& mgr, Indices /*indices*/, Args args) {
  return mgr.make_bv_ult(args[0], args[1]);
}

const Term* derive_bv_ssubo(TermManager& mgr, Indices /*indices*/, Args args) {
  return signed_overflow<&TermManager::make_bv_sub>(mgr, args);
}

const Term* derive_bv_umulo(TermManager& mgr, Indices /*indices*/, Args args) {
  return unsigned_overflow<&TermManager::make_bv_mul>(mgr, args);
}

const Term* derive_bv_smulo(TermManager& mgr, Indices /*indices*/, Args args) {
  return signed_overflow<&TermManager::make_bv_mul>(mgr, args);
}

const Term* derive_bv_sdivo(TermManager& mgr, Indices /*indices*/, Args args) {
  const Term* no_bit = mgr.make_bv_number(0, width_of(args[0]));
  const Term* by_minus_one = mgr.make_equal(args[1], mgr.make_bv_not(no_bit));
  return mgr.make_and(is_least(mgr, args[0]), by_minus_one);
}

}  // namespace vorn
