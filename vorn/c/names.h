// Names and numbers that the C interface has in the way of SMT-LIB, and the classes in another.
#ifndef VORN_C_NAMES_H
#define VORN_C_NAMES_H

#include <cstddef>
#include <string>
#include <string_view>

#include "vorn/c/handles.h"

namespace vorn::c {

/// The width m of a significand of `sb` bits with the hidden one. Throws std::invalid_argument for
/// less than 2.
std::size_t uncount_hidden_bit(std::size_t sb);
/// Throws std::invalid_argument unless a position is below the number of things that there are.
void check_position(std::size_t position, std::size_t count, std::string_view things);
/// Declares the name of an uninterpreted sort that is applied to `count` others. Throws
/// std::invalid_argument for a name of a theory.
void declare_sort_name(vorn_manager& manager, const std::string& name, std::size_t count);

}  // namespace vorn::c

#endif
