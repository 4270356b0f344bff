// Operations in the notation of `vorn eval`: a name, a rounding mode, widths, and bit patterns.
#ifndef TOOLS_OPERATION_H
#define TOOLS_OPERATION_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "vorn/terms/term_manager.h"

namespace vorn::tools {

/// Whether operands must be given, or may be left to be free constants.
enum class Operands : std::uint8_t { given, free };

/// The term that the words stand for. With free operands, a rounding mode or an operand may be `_`,
/// and operands may be left out altogether: they become constants rm, x, y and z. Throws
/// std::invalid_argument with a sentence about what is wrong.
const Term* read_operation(TermManager& terms, std::span<const std::string> words,
                           Operands operands = Operands::given);

/// Whether there is an operation of that name.
bool is_operation(std::string_view name);

}  // namespace vorn::tools

#endif
