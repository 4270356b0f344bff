// Faults of the substitution of definitions, for random scripts to find. The linker sends the calls
// here (--wrap); the variable FAULT of the environment says what goes wrong.
#include <unordered_map>
#include <vector>

#include "tests/defects/wrap.h"
#include "vorn/rewrite/top_level.h"
#include "vorn/terms/post_order.h"

namespace vorn::rewrite {

using defects::is_wanted;

namespace {

/// `root` with another constant of its name and sort in place of `constant`.
const Term* rename(TermManager& mgr, const Term* root, const Term* constant) {
  std::unordered_map<const Term*, const Term*> renamed;
  const Symbol* symbol = constant->get_symbol();
  const auto is_done = [&](const Term* t) { return renamed.contains(t); };
  walk_post_order<ArgumentOrder::first_to_last>(root, is_done, [&](const Term* t) {
    std::vector<const Term*> args;
    for (const Term* arg : t->get_args())
      args.push_back(renamed.at(arg));
    renamed[t] = t == constant ? mgr.make_constant(mgr.make_unique_symbol(
                                     symbol->get_name(), symbol->get_output_type()))
                               : mgr.rebuild(t, args);
  });
  return renamed.at(root);
}

}  // namespace

void real_pop(TopLevel* self) __asm__("__real__ZN4vorn7rewrite8TopLevel3popEv");
void wrong_pop(TopLevel* self) __asm__("__wrap__ZN4vorn7rewrite8TopLevel3popEv");
std::vector<Definition> real_read(TermManager& manager, const Term* formula) __asm__(
    "__real__ZN4vorn7rewrite16read_definitionsERNS_11TermManagerEPKNS_4TermE");
std::vector<Definition> wrong_read(TermManager& manager, const Term* formula) __asm__(
    "__wrap__ZN4vorn7rewrite16read_definitionsERNS_11TermManagerEPKNS_4TermE");

/// Definitions of a level outlast it.
void wrong_pop(TopLevel* self) {
  if (!is_wanted("pop_keeps")) real_pop(self);
}

/// A constant that occurs in its own value is taken for another there, as where nobody looks
/// whether it does; or an equation of floats that says nothing of their signs for one that does.
std::vector<Definition> wrong_read(TermManager& manager, const Term* formula) {
  std::vector<Definition> found = real_read(manager, formula);
  if (is_wanted("no_occurrence_check")) {
    for (Definition& definition : found)
      definition.value = rename(manager, definition.value, definition.constant);
  }
  const bool is_number = formula->get_tag() == SymbolTag::fp_equal;
  if (is_wanted("zeros_are_one") && is_number && found.empty()) {
    for (const int side : {0, 1}) {
      const Term* constant = formula->get_arg(side);
      const Term* value = formula->get_arg(1 - side);
      if (is_bit_constant(manager, constant)) found.push_back({constant, value});
    }
  }
  return found;
}

}  // namespace vorn::rewrite
