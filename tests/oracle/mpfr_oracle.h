// IEEE 754-2019 arithmetic a second time, through MPFR.
//
// The check on the integer oracle: nothing but the choice of patterns for special values is in
// common. roundTiesToAway, which MPFR's arithmetic lacks, is decided on exact rationals by
// comparing the result with the midpoint of its two neighbours. Names and results are those of the
// integer oracle. Exponents of more than about
// twenty bits exceed what the rationals can take.
#ifndef VORN_TESTS_ORACLE_MPFR_ORACLE_H
#define VORN_TESTS_ORACLE_MPFR_ORACLE_H

#include <optional>

#include "tests/oracle/format.h"

namespace vorn::oracle::by_mpfr {

Bits add(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Bits sub(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Bits mul(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Bits div(RoundingMode rm, Format f, const Bits& x, const Bits& y);
Bits cast(RoundingMode rm, Format from, Format to, const Bits& x);
Bits from_sbv(RoundingMode rm, unsigned w, Format f, const Bits& v);
Bits from_ubv(RoundingMode rm, unsigned w, Format f, const Bits& v);
Bits sqrt(RoundingMode rm, Format f, const Bits& x);
Bits fma(RoundingMode rm, Format f, const Bits& x, const Bits& y, const Bits& z);
Bits rem(Format f, const Bits& x, const Bits& y);
Bits rti(RoundingMode rm, Format f, const Bits& x);
std::optional<Bits> to_sbv(RoundingMode rm, Format f, unsigned w, const Bits& x);
std::optional<Bits> to_ubv(RoundingMode rm, Format f, unsigned w, const Bits& x);
Bits neg(Format f, const Bits& x);
Bits abs(Format f, const Bits& x);
std::optional<Bits> min(Format f, const Bits& x, const Bits& y);
std::optional<Bits> max(Format f, const Bits& x, const Bits& y);

bool is_normal(Format f, const Bits& x);
bool is_subnormal(Format f, const Bits& x);
bool smt_is_negative(Format f, const Bits& x);
bool smt_is_positive(Format f, const Bits& x);
bool eq(Format f, const Bits& x, const Bits& y);
bool lt(Format f, const Bits& x, const Bits& y);
bool le(Format f, const Bits& x, const Bits& y);

}  // namespace vorn::oracle::by_mpfr

#endif
