// What is known of each operation besides its circuits: one row a kind. Printing, error messages
// and the rewriter read this table.
#ifndef VORN_TERMS_OPERATIONS_H
#define VORN_TERMS_OPERATIONS_H

#include <cstdint>

#include "vorn/terms/term.h"

namespace vorn {

/// Which of a symbol's indices belong to its SMT-LIB name.
enum class NameIndices : std::uint8_t {
  none,    // and
  first,   // (_ zero_extend n)
  pair,    // (_ extract msb lsb)
  format,  // (_ to_fp eb sb), from the last e and m among the indices
};

struct Operation {
  SymbolTag::tag tag;
  const char* name;  // in SMT-LIB
  NameIndices name_indices = NameIndices::none;
  std::uint8_t widths = 0;  // how many of the symbol's indices are in use
  bool commutative = false;
};

/// The row of `tag`; null for a kind without one.
const Operation* find_operation(SymbolTag::tag tag);

}  // namespace vorn

#endif
