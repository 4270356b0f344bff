// Models as get-model prints them.
#ifndef VORN_SMT2_MODEL_TEXT_H
#define VORN_SMT2_MODEL_TEXT_H

#include <string>

#include "vorn/smt2/symbol_table.h"
#include "vorn/terms/engine.h"
#include "vorn/utils/export.h"

namespace vorn::smt2 {

/// The define-fun of a constant or function of the symbols, which has its value in the engine's
/// model. Throws as the engine does.
VORN_EXPORT std::string define_in_model(Engine& engine, const SymbolTable& symbols,
                                        const SymbolTable::Declaration& declared);

}  // namespace vorn::smt2

#endif
