// Faults of the ranges, for random scripts to find.
#include <vector>

#include "tests/defects/wrap.h"
#include "vorn/ranges/bit_transfer.h"
#include "vorn/ranges/float_transfer.h"
#include "vorn/ranges/propagation.h"
#include "vorn/solver/solver.h"

namespace vorn::ranges {

using defects::is_wanted;

namespace {

FloatRange without_greatest(const FloatRange& x) {
  if (x.get_least() >= x.get_greatest()) return x;
  return x.at_most(x.get_greatest() - 1);
}

using Modes = RoundingModeSet;

/// Whether the last step back was one out of a contradiction, and none forward came since.
bool has_left_contradiction = false;

}  // namespace

VORN_WRAP(
    real_add, wrong_add,
    "_ZN4vorn6ranges3addENS0_9FiniteSetINS_9IEEEFloat13rounding_modeELj5EEERKNS0_10FloatRangeES7_",
    FloatRange, Modes modes, const FloatRange& x, const FloatRange& y);
VORN_WRAP(
    real_mul, wrong_mul,
    "_ZN4vorn6ranges3mulENS0_9FiniteSetINS_9IEEEFloat13rounding_modeELj5EEERKNS0_10FloatRangeES7_",
    FloatRange, Modes modes, const FloatRange& x, const FloatRange& y);
VORN_WRAP(real_round, wrong_round,
          "_ZN4vorn6ranges17round_to_integralENS0_9FiniteSetINS_9IEEEFloat13rounding_modeELj5EEE"
          "RKNS0_10FloatRangeE",
          FloatRange, Modes modes, const FloatRange& x);
VORN_WRAP(real_narrow_add, wrong_narrow_add,
          "_ZN4vorn6ranges10narrow_addENS0_9FiniteSetINS_9IEEEFloat13rounding_modeELj5EEERKNS0_"
          "10FloatRangeEPS5_S8_",
          void, Modes modes, const FloatRange& result, FloatRange* x, FloatRange* y);
VORN_WRAP(real_narrow_less, wrong_narrow_less,
          "_ZN4vorn6ranges11narrow_lessEbPNS0_10FloatRangeES2_", void, bool truth, FloatRange* x,
          FloatRange* y);
VORN_WRAP(real_to_integer, wrong_to_integer,
          "_ZN4vorn6ranges10to_integerEmNS0_9FiniteSetINS_9IEEEFloat13rounding_modeELj5EEERKNS0_"
          "10FloatRangeEb",
          BitRange, std::uint64_t width, Modes modes, const FloatRange& x, bool is_signed);
VORN_WRAP(real_apply_bits, wrong_apply_bits,
          "_ZN4vorn6ranges10apply_bitsEPKNS_4TermERKNS0_8BitRangeES6_", Range, const Term* t,
          const BitRange& x, const BitRange& y);
VORN_WRAP(real_push, noted_push, "_ZN4vorn6ranges11Propagation4pushEv", void, Propagation* self);
VORN_WRAP(real_pop, wrong_pop, "_ZN4vorn6ranges11Propagation3popEv", void, Propagation* self);
VORN_WRAP(
    real_narrow, wrong_narrow,
    "_ZN4vorn6ranges11Propagation6narrowEjRKSt7variantIJSt9monostateNS0_9FiniteSetIbLj2EEENS4_INS_"
    "9IEEEFloat13rounding_modeELj5EEENS0_8BitRangeENS0_10FloatRangeEEE",
    void, Propagation* self, Propagation::Slot slot, const Range& set);

// What operations say ---------------------------------------------------------------------------

FloatRange wrong_add(Modes modes, const FloatRange& x, const FloatRange& y) {
  const FloatRange sum = real_add(modes, x, y);
  return is_wanted("add_short") ? without_greatest(sum) : sum;
}

FloatRange wrong_mul(Modes modes, const FloatRange& x, const FloatRange& y) {
  const FloatRange product = real_mul(modes, x, y);
  return is_wanted("mul_number") ? product.restrict_to(kNumbers) : product;
}

FloatRange wrong_round(Modes modes, const FloatRange& x) {
  const Modes others = modes.without(Modes::of(IEEEFloat::rounding_mode::plus_inf));
  return real_round(is_wanted("round_mode") && !others.is_empty() ? others : modes, x);
}

void wrong_narrow_add(Modes modes, const FloatRange& result, FloatRange* x, FloatRange* y) {
  real_narrow_add(modes, result, x, y);
  if (is_wanted("narrow_add_short")) *x = without_greatest(*x);
}

void wrong_narrow_less(bool truth, FloatRange* x, FloatRange* y) {
  real_narrow_less(truth, x, y);
  if (is_wanted("narrow_less_short") && truth) *y = without_greatest(*y);
}

BitRange wrong_to_integer(std::uint64_t width, Modes modes, const FloatRange& x, bool is_signed) {
  const BitRange integer = real_to_integer(width, modes, x, is_signed);
  const bool is_closed = is_wanted("to_integer_closed") && integer == BitRange::everything(width);
  return is_closed ? integer.without_end(integer.get_greatest()) : integer;
}

Range wrong_apply_bits(const Term* t, const BitRange& x, const BitRange& y) {
  Range result = real_apply_bits(t, x, y);
  const auto* bits = std::get_if<BitRange>(&result);
  const bool is_short = is_wanted("bits_short") && bits != nullptr && !bits->is_value();
  return is_short ? Range(bits->without_end(bits->get_greatest())) : result;
}

// Levels and cases ------------------------------------------------------------------------------

void noted_push(Propagation* self) {
  has_left_contradiction = false;
  real_push(self);
}

void wrong_pop(Propagation* self) {
  has_left_contradiction = self->is_contradiction();
  real_pop(self);
  if (!is_wanted("pop_keeps") || !has_left_contradiction || self->get_size() == 0) return;
  self->narrow(0, make_nothing(self->get_term(0)->get_type()));
}

/// Where a case was refuted, what is left is taken to be refuted too.
void wrong_narrow(Propagation* self, Propagation::Slot slot, const Range& set) {
  const bool is_rest = is_wanted("forget_rest") && has_left_contradiction;
  has_left_contradiction = false;
  real_narrow(self, slot, is_rest ? make_nothing(self->get_term(slot)->get_type()) : set);
}

}  // namespace vorn::ranges

namespace vorn::solver {

using Places = std::vector<std::size_t>;

VORN_WRAP(real_blame, wrong_blame, "_ZN4vorn6solver6Solver23get_refuted_assumptionsEv", Places,
          Solver* self);

Places wrong_blame(Solver* self) {
  Places blamed = real_blame(self);
  if (defects::is_wanted("blame_short") && !blamed.empty()) blamed.pop_back();
  return blamed;
}

}  // namespace vorn::solver
