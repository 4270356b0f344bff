// Values of the operations of Bool and of bit-vectors, by integer arithmetic alone: what the
// theories Core and FixedSizeBitVectors of SMT-LIB 2.7 say of each, and the reductions and `bvite`
// as their names have it.
#ifndef VORN_TESTS_ORACLE_BIT_OPERATIONS_H
#define VORN_TESTS_ORACLE_BIT_OPERATIONS_H

#include <gmpxx.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace vorn::oracle {

/// A bit-vector as a non-negative integer below 2^width; a Boolean is 0 or 1 and has width 1.
struct BitOperand {
  mpz_class value;
  std::size_t width;
};

/// The value of the operation of that name and these numerals on two operands, or on as many as it
/// has; none for a name that is not known here.
std::optional<mpz_class> apply_bit_operation(std::string_view name,
                                             std::span<const std::size_t> indices,
                                             std::span<const BitOperand> operands);

}  // namespace vorn::oracle

#endif
