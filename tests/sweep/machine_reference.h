// Operations on binary32 by the processor, in all five rounding modes.
#ifndef TESTS_SWEEP_MACHINE_REFERENCE_H
#define TESTS_SWEEP_MACHINE_REFERENCE_H

#include <cstdint>

#include "tests/sweep/operation.h"

namespace vorn::sweep::machine {

/// The results of kLanes consecutive patterns from `first` on, by mode.
void fill_sqrt(std::uint64_t first, Expected& expected);
void fill_round_to_integral(std::uint64_t first, Expected& expected);
void fill_binary64(std::uint64_t first, Expected& expected);

/// Integers of that width, signed or not; where none is right, what get_open_value says.
template <unsigned width, bool is_signed>
void fill_integer(std::uint64_t first, Expected& expected);

}  // namespace vorn::sweep::machine

#endif
