// What both directions know of predicates and connectives.
#ifndef VORN_RANGES_PREDICATES_H
#define VORN_RANGES_PREDICATES_H

#include "vorn/ranges/float_range.h"
#include "vorn/terms/term.h"

namespace vorn::ranges {

/// The classes of which the classification of kind `tag` is true; none for another kind.
FloatClassSet classes_of(SymbolTag::tag tag);

/// The value of a binary connective of Booleans; of another kind, equality.
bool connect(SymbolTag::tag tag, bool a, bool b);

}  // namespace vorn::ranges

#endif
