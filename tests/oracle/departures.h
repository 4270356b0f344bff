// Where the base encoder's circuits depart from IEEE 754.
//
// For each operation, a predicate on format, mode and operands, in terms of the exact result and
// the widths that the circuit gives rounding. Outside them the circuits agree with the standard on
// every bit; inside they give another result. The predicates are for formats that the circuits
// support and for the four modes that they know.
#ifndef VORN_TESTS_ORACLE_DEPARTURES_H
#define VORN_TESTS_ORACLE_DEPARTURES_H

#include "tests/oracle/format.h"

namespace vorn::oracle {

/// The kinds of departure that apply to one evaluation.
struct Departures {
  /// A subnormal result whose rounding turns on bits that denormalisation has shifted out.
  bool lost_sticky = false;
  /// A result below the smallest normal number that rounds up to it: packed as zero.
  bool rounds_up_to_normal = false;
  /// The sum of two zeros of one sign, where that sign is not the one that the mode gives zeros.
  bool zero_sum = false;
  /// A subnormal cast to a format of more exponent bits and no fewer significand bits.
  bool widened_subnormal = false;
  /// No bit is rounded away, so that overflow is infinity in every mode and denormalisation
  /// truncates, but for keeping the last bit of a value however small.
  bool narrow_significand = false;
  /// The exponent of the exact result, or its distance from the smallest normal exponent, is beyond
  /// the exponent's width and wraps around.
  bool wrapped_exponent = false;
  /// A NaN that is not the canonical one keeps its payload under negation and is told from other
  /// NaNs by equality of terms.
  bool nan_payload = false;

  bool any() const {
    return lost_sticky || rounds_up_to_normal || zero_sum || widened_subnormal ||
           narrow_significand || wrapped_exponent || nan_payload;
  }
};

namespace departures {

Departures add(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Departures sub(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Departures mul(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Departures div(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Departures cast(RoundingMode rm, Format from, Format to, const Bits& x);
Departures from_sbv(RoundingMode rm, unsigned w, Format f, const Bits& v);
Departures from_ubv(RoundingMode rm, unsigned w, Format f, const Bits& v);
Departures neg(Format f, const Bits& x);
Departures same(Format f, const Bits& x, const Bits& y);

}  // namespace departures
}  // namespace vorn::oracle

#endif
