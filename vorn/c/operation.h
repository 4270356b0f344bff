// Operations of the C interface as constructors have them.
#ifndef VORN_C_OPERATION_H
#define VORN_C_OPERATION_H

#include <cstddef>
#include <span>

#include "vorn/c/kinds.h"
#include "vorn/terms/operations.h"

namespace vorn::c {

/// The row of a kind. Throws std::invalid_argument where there is none.
const Operation& get_operation(vorn_kind kind);

/// Stores an operation on handles; the indices are those of SMT-LIB. `function` is who was called.
vorn_status make(vorn_manager* manager, const char* function, vorn_kind kind,
                 std::span<const std::size_t> indices, std::span<vorn_term* const> arguments,
                 vorn_term** result);

}  // namespace vorn::c

#endif
