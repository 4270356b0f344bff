// Which names scripts may not declare, since theories have them.
#ifndef VORN_TERMS_THEORY_SYMBOL_H
#define VORN_TERMS_THEORY_SYMBOL_H

#include <string_view>

namespace vorn {

/// Whether a theory that is read here has a function or constant of that name. Bars change nothing:
/// |and| is the same symbol as and (SMT-LIB 2.6, section 3.1).
bool is_theory_symbol(std::string_view name);
/// The same of sorts.
bool is_theory_sort(std::string_view name);

}  // namespace vorn

#endif
