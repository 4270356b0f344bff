// Formulas as a whole script, for solvers that know nothing of this one.
//
// A formula is a graph: every operation that occurs more than once is defined under a name of its
// own, so the script is as long as the graph is large. Operations nested deeply are named too, for
// the sake of readers that recurse.
//
// Constants, functions and sorts keep their names, between bars where need be. Symbols that begin
// with a dot or an at sign belong to solvers (SMT-LIB 2.6, section 3.1) and others to theories, and
// control characters are in no symbol: what is named so gets another name.
#ifndef VORN_TERMS_SCRIPT_PRINTER_H
#define VORN_TERMS_SCRIPT_PRINTER_H

#include <cstddef>
#include <map>
#include <ostream>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/utils/export.h"

namespace vorn {

class TermSet;

/// Prints the declarations, definitions and assertions of formulas over one manager.
class VORN_EXPORT ScriptPrinter {
 public:
  /// Formulas to be asserted, Boolean terms.
  explicit ScriptPrinter(std::span<const Term* const> assertions);

  /// Writes the script, without set-logic and check-sat.
  void print(std::ostream& out) const;
  /// The symbol that stands for an uninterpreted constant or function in the script, quoted where
  /// need be; empty if it does not occur.
  std::string get_name(const Symbol* symbol) const;
  std::string get_name(const Term* constant) const { return get_name(constant->get_symbol()); }

 private:
  /// Operations within one definition.
  static constexpr std::size_t kMaxDepth = 64;

  TermSet collect();
  void add_sorts(const DataType* type);
  void add_symbol(const Symbol* symbol);
  void name_sorts();
  void name_symbols();
  void name_operations(const TermSet& shared);
  std::string fresh_name(const std::string& prefix);
  std::string sort_text(const DataType* type) const;
  std::string head(const Symbol* symbol) const;
  std::string text(const Term* root) const;

  std::vector<const Term*> formulas;
  struct SortName {
    std::size_t arguments = 0;  // how many it takes
    std::string text;           // that stands for it in the script
  };
  std::map<std::string, SortName> sorts;  // uninterpreted ones
  std::vector<const Symbol*> symbols;     // constants and functions, in the order they are met
  std::vector<const Term*> operations;    // arguments before the operations that use them
  std::unordered_map<const Symbol*, std::string> symbol_names;
  std::unordered_map<const Term*, std::string> names;  // of definitions
  std::unordered_set<std::string> taken;
  std::size_t counter = 0;
};

}  // namespace vorn

#endif
