// The options of a solver by name, for the C interface.
#ifndef VORN_C_OPTIONS_H
#define VORN_C_OPTIONS_H

#include <string>
#include <string_view>

#include "vorn/c/handles.h"

namespace vorn::c {

/// Sets an option of a solver that has not begun, or one that can be set at any time. Throws
/// Failure for another name or state, std::invalid_argument for another value.
void set_option(vorn_solver& solver, std::string_view name, std::string_view value);
/// The value of an option. Throws Failure for another name.
std::string get_option(const vorn_solver& solver, std::string_view name);

}  // namespace vorn::c

#endif
