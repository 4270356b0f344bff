// IEEE 754-2019 arithmetic a second time, through MPFR.
//
// The check on the integer oracle: nothing but the choice of patterns for special values is in
// common. roundTiesToAway, which MPFR's arithmetic lacks, is decided on exact rationals by
// comparing the result with the midpoint of its two neighbours. Exponents of more than about
// twenty bits exceed what the rationals can take.
#ifndef VORN_TESTS_ORACLE_MPFR_ORACLE_H
#define VORN_TESTS_ORACLE_MPFR_ORACLE_H

#include "tests/oracle/format.h"

namespace vorn::oracle::by_mpfr {

Bits add(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Bits sub(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Bits mul(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Bits div(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Bits cast(RoundingMode rm, Format from, Format to, const Bits& x);
Bits from_sbv(RoundingMode rm, unsigned w, Format f, const Bits& v);
Bits from_ubv(RoundingMode rm, unsigned w, Format f, const Bits& v);
Bits neg(Format f, const Bits& x);

bool eq(Format f, const Bits& x, const Bits& y);
bool lt(Format f, const Bits& x, const Bits& y);
bool le(Format f, const Bits& x, const Bits& y);

}  // namespace vorn::oracle::by_mpfr

#endif
