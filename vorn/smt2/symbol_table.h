// The names of a script: what the user declared and defined, and what `let` and parameters bind.
//
// Declarations live on levels that push and pop open and close. Names bound inside of a term are
// another matter: they hide everything else, nest as deep as terms do, and end with their form.
// Each kind has its own class, and a lookup costs one probe whatever the depth.
#ifndef VORN_SMT2_SYMBOL_TABLE_H
#define VORN_SMT2_SYMBOL_TABLE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vorn/smt2/instances.h"
#include "vorn/smt2/sort_value.h"
#include "vorn/smt2/value.h"
#include "vorn/terms/term.h"
#include "vorn/utils/export.h"
#include "vorn/utils/trail.h"

namespace vorn::smt2 {

/// The name that terms print for a name of a script: the standard has no backslashes in symbols, so
/// there are none in terms, and slashes instead.
VORN_EXPORT std::string make_term_name(std::string_view name);

/// What a function symbol stands for: `body` with terms in place of the parameters, which are fresh
/// constants. A constant, declared or defined, has no parameters.
struct Function {
  std::vector<const Term*> parameters;
  const Term* body = nullptr;
  /// Of a declared function. The body is its application to the parameters, by which the symbol
  /// outlives collections.
  const Symbol* symbol = nullptr;
};

/// The names that commands introduce.
class VORN_EXPORT SymbolTable {
 public:
  struct Declaration {
    std::string name;
    const Term* constant;  // or the body of a declared function, or the term that a label names
  };

  // Functions and sorts are two name spaces. Names must be new; the readers of names see to it.
  // Sorts are known under the names that terms have for them, lest two that are declared be one.
  void declare(std::string_view name, const Term* constant) { declare(name, {{}, constant}); }
  void declare(std::string_view name, const Function& function);
  void define(std::string_view name, const Function& function);
  void define_sort(std::string_view name, const SortDefinition& definition);

  /// Null when the name is unknown. A function stays where it is until its level is popped.
  const Function* find(std::string_view name) const;
  const SortDefinition* find_sort(std::string_view name) const;
  /// The sorts that were declared and not defined, in the order of their declarations.
  std::vector<const SortDefinition*> get_declared_sorts() const;
  /// The declared constants and functions in the order of their declarations.
  const std::vector<Declaration>& get_declarations() const { return declarations; }
  /// Notes that a Boolean term was given a name with :named, which is defined as any other.
  void add_label(std::string_view name, const Term* term);
  /// The named Boolean terms in the order of their naming.
  const std::vector<Declaration>& get_labels() const { return labels; }
  /// What applications of functions have become.
  InstanceCache& get_instances() { return instances; }
  /// All terms that names stand for, and the parameters of functions.
  void append_terms(std::vector<const Term*>* terms) const;

  bool is_empty() const { return functions.empty() && sorts.empty(); }
  /// Whether names outlive the levels in which they came; the table must be empty.
  void set_global(bool on) { global = on; }
  std::size_t get_level() const { return changes.get_level(); }
  void push();
  /// Forgets what came since the last push, of which there must be one.
  void pop();
  /// Forgets everything, but for names that outlive levels.
  void clear_levels();
  /// Forgets everything.
  void clear();

  /// A point in time within a level.
  using Mark = std::size_t;
  Mark get_mark() const { return changes.get_size(); }
  /// Forgets what came since then, which is within the current level.
  void retract(Mark mark);

 private:
  struct StringHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view s) const { return std::hash<std::string_view>{}(s); }
  };
  template <class T>
  using Table = std::unordered_map<std::string, T, StringHash, std::equal_to<>>;
  /// Something that came: the function or sort of that name, or the last of a list.
  struct Change {
    enum class Kind : std::uint8_t { function, sort, declaration, label };

    Kind kind;
    std::string name;
  };

  void add_to(std::vector<Declaration>* list, Change::Kind kind, Declaration entry);
  void undo(const Change& change);

  Table<Function> functions;
  Table<SortDefinition> sorts;
  std::vector<Declaration> declarations;
  std::vector<Declaration> labels;
  Trail<Change> changes;
  InstanceCache instances;
  bool global = false;
};

/// The names that forms inside of a term bind; views into the text of the script.
class VORN_EXPORT LocalScope {
 public:
  /// Binds `name` for a form at this nesting depth. False when that form has bound it already.
  bool bind(std::string_view name, const Value& value, std::size_t depth);
  /// Undoes the innermost binding of `name`.
  void unbind(std::string_view name);
  /// The innermost value; null when there is none.
  const Value* find(std::string_view name) const;

 private:
  struct Binding {
    Value value;
    std::size_t depth;
  };

  std::unordered_map<std::string_view, std::vector<Binding>> bindings;
};

}  // namespace vorn::smt2

#endif
