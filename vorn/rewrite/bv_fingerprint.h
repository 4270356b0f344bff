// A quick test of whether two polynomials can be equal: their values at a few points.
//
// Most terms that are compared differ, and multiplying them out would take longer than to see that.
#ifndef VORN_REWRITE_BV_FINGERPRINT_H
#define VORN_REWRITE_BV_FINGERPRINT_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn::rewrite {

/// Values modulo 2^64 of a term for fixed values of the factors of its polynomial, which depend on
/// identifiers alone; only the low bits mean anything for a narrower term.
using BvFingerprint = std::array<std::uint64_t, 4>;

BvFingerprint make_fingerprint(const TermManager& mgr, const Term* t);

/// False only if terms of `width` bits with these fingerprints have different polynomials, and the
/// difference is zero somewhere as far as its powers of two tell.
bool may_be_decided(const BvFingerprint& a, const BvFingerprint& b, std::size_t width);

}  // namespace vorn::rewrite

#endif
