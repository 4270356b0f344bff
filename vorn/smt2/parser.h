// The reader of scripts: commands are opened and closed one at a time, and what stands inside is
// read piece by piece by whoever executes the command.
//
// Terms nest as deep as their text is long, so they are read with a stack of open forms and a stack
// of values, never by native recursion. Every name is resolved where it stands: a definition that
// comes later changes nothing before it.
#ifndef VORN_SMT2_PARSER_H
#define VORN_SMT2_PARSER_H

#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "vorn/smt2/operators.h"
#include "vorn/smt2/symbol_table.h"
#include "vorn/smt2/token_stream.h"
#include "vorn/smt2/value.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"
#include "vorn/utils/termination_test.h"

namespace vorn::smt2 {

/// A term and where it stands.
struct ParsedTerm {
  const Term* term = nullptr;
  Position position;
  std::string_view text;
  std::optional<std::string_view> name = {};  // that :named gives the whole of it, within the text
};

/// A parameter of a function definition and the fresh constant that stands for it in the body.
struct Parameter {
  std::string_view name;
  const Term* constant = nullptr;
};

/// Reads one script. Terms are built by the manager; the symbol table says what names mean, and
/// takes the names that `:named` gives to terms. Everything throws ScriptError at the place that is
/// wrong, and LimitError where the poll ends it. The text must outlive the parser; after
/// either a parser is of no more use.
class VORN_EXPORT Parser {
 public:
  /// `start` is the place of the text in the file; what the hooks point to is borrowed.
  Parser(TermManager& manager, SymbolTable& table, std::string_view text, std::string file,
         Position start = {}, ReaderHooks hooks = {});

  // Commands ----------------------------------------------------------------------------------

  /// Reads "(name" and returns the name; nothing at the end of the text.
  std::optional<Token> open_command();
  /// Reads the ")" of the command.
  void close_command();

  // Pieces of commands ------------------------------------------------------------------------

  /// The tokens themselves, for pieces that are neither sorts nor terms.
  TokenStream& get_tokens() { return tokens; }
  /// A symbol that may be declared: neither a theory's nor known already.
  Token read_new_symbol();
  /// The same for a sort.
  Token read_new_sort_symbol();
  const DataType* read_sort();
  /// "(sort sort)"
  std::vector<const DataType*> read_sorts();
  /// "(X Y) sort": the parameters of a sort definition and its body.
  SortDefinition read_sort_definition();
  ParsedTerm read_term();
  /// A term of the sort Bool; `what` names it in the error.
  ParsedTerm read_formula(std::string_view what);
  /// "((x sort) (y sort))"
  std::vector<Parameter> read_parameters();
  /// A term in which the parameters are bound.
  ParsedTerm read_body(std::span<const Parameter> parameters);

  [[noreturn]] void fail(Position place, const std::string& message) const {
    tokens.fail(place, message);
  }
  /// Throws the StateError of a command that has been read to its end; `unknown` says that it is
  /// owed to the answer unknown.
  [[noreturn]] void fail_state(Position place, const std::string& message,
                               bool unknown = false) const {
    tokens.fail_state(place, message, unknown);
  }

 private:
  /// An open form. Values and names that belong to it lie on the stacks from `first_value` and
  /// `first_name` on.
  struct Frame {
    enum class Kind : std::uint8_t { application, let_bindings, let_body, annotation };

    Kind kind;
    Token head;
    const Operator* op = nullptr;  // of an application: one of these two
    const Function* function = nullptr;
    const DataType* sort = nullptr;  // of (as const sort)
    std::size_t first_index;
    std::size_t first_value;
    std::size_t first_name;
  };

  Value read_value();
  std::optional<Value> read_step(const Token& token);
  std::optional<Value> open_form();
  bool deliver(Value* value);

  void open_frame(Frame::Kind kind, const Token& head, const Operator* op = nullptr,
                  const Function* function = nullptr, const DataType* sort = nullptr);
  void close_frame();

  // Atoms and heads
  Value atom(const Token& token);
  Value symbol(const Token& name);
  std::optional<Value> indexed_constant();
  Value annotated_constant(const Token& as);
  Value element(const Token& name);
  Value signed_number(const Token& name) const;
  void open_application(const Token& head);
  void open_qualified_application();
  void open_constant_array(const Token& as);
  static bool is_plain(const Operator* op);
  const Operator& find_indexed(const Token& name) const;
  void read_indices();
  [[noreturn]] void fail_unknown(const Token& name) const;
  [[noreturn]] void fail_annotation(const Token& as) const;

  // Forms
  Value close_application(const Token& close);
  Value apply(const Frame& frame, std::span<const Value> args);
  Value apply_function(const Frame& frame, std::span<const Value> args);
  void read_binding();
  void end_let(const Frame& frame);
  void read_attributes(const Value& value);
  void name_term(const Value& value);
  /// Runs `build`; what the term manager refuses is an error at `place`, and what the poll ends is
  /// ended there.
  template <class Build>
  auto build_at(Position place, const Build& build) const {
    try {
      return build();
    } catch (const std::invalid_argument& error) {
      fail(place, error.what());
    } catch (const Terminated&) {
      tokens.interrupt(place);
    }
  }

  TermManager& mgr;
  SymbolTable& symbols;
  TokenStream tokens;
  LocalScope locals;
  bool in_macro = false;  // inside the body of a definition with parameters

  std::vector<Frame> frames;
  std::vector<std::uint32_t> indices;
  std::vector<Value> values;
  std::vector<Token> let_names;
  std::optional<std::string_view> outer_name;  // that :named has given the whole term
};

}  // namespace vorn::smt2

#endif
