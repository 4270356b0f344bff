// Scripts as trees: what the generator makes, the checker runs and the shrinker cuts down.
//
// The trees know the sort of every term and nothing of what operators mean. They are kept apart
// from the library's terms on purpose: text is what users hand in, and a script must be the same
// text whatever the library does to its terms.
#ifndef VORN_TESTS_RANDOM_SCRIPT_H
#define VORN_TESTS_RANDOM_SCRIPT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vorn::random {

struct Sort {
  enum class Kind : std::uint8_t { boolean, mode, bits, floating, real, array, uninterpreted };

  Kind kind = Kind::boolean;
  /// Of bit-vectors the width; of floats the widths of exponent and significand, the latter with
  /// the hidden bit; of arrays the number of the pair of their sorts, see array_sort.
  std::size_t w0 = 0;
  std::size_t w1 = 0;

  /// Of a bit-vector or float; of other sorts about what a value is worth in bits.
  std::size_t width() const;
  bool operator==(const Sort&) const = default;
};

inline constexpr Sort kBool = {Sort::Kind::boolean};
inline constexpr Sort kMode = {Sort::Kind::mode};
inline constexpr Sort kReal = {Sort::Kind::real};  // of literals below to_fp only
constexpr Sort bits_sort(std::size_t width) {
  return {Sort::Kind::bits, width};
}
constexpr Sort float_sort(std::size_t eb, std::size_t sb) {
  return {Sort::Kind::floating, eb, sb};
}

/// Any sorts but Real.
Sort array_sort(const Sort& index, const Sort& element);
const Sort& index_of(const Sort& array);
const Sort& element_of(const Sort& array);
/// The one uninterpreted sort that a script has, if any.
inline constexpr Sort kPeople = {Sort::Kind::uninterpreted};
/// Whether the sort is kPeople or an array that has to do with it.
bool names_people(const Sort& sort);

struct Expression {
  enum class Kind : std::uint8_t {
    theory,  // an operator of a theory, with its indices, or a literal
    name,    // what the script declared, defined or bound
    let,     // `bound` to all arguments but the last, which is the body
    named    // the only argument, labelled `head`
  };

  Kind kind = Kind::theory;
  std::string head;
  Sort sort;
  std::vector<Expression> args;
  std::vector<std::string> bound;

  bool operator==(const Expression&) const = default;
};

struct Parameter {
  std::string name;
  Sort sort;
};

struct Command {
  enum class Kind : std::uint8_t {
    declare_sort,
    declare,
    define,
    assertion,
    push,
    pop,
    reset_assertions,
    check,
    check_assuming
  };

  Kind kind = Kind::check;
  std::string keyword;  // as printed: there are two ways to declare and to define
  std::string name;
  Sort sort;
  std::vector<Parameter> parameters;
  std::vector<Expression> terms;  // body, assertion or assumptions
  std::size_t levels = 0;         // of push and pop

  bool is_function() const { return kind == Kind::declare && !parameters.empty(); }
  bool is_check() const { return kind == Kind::check || kind == Kind::check_assuming; }
};

using Script = std::vector<Command>;

std::string to_string(const Sort& sort);
std::string to_string(const Expression& e);
std::string to_string(const Command& command);
std::string to_string(const Script& script);

Command make_assertion(Expression formula);
Command make_check();

/// The script with a label for each assertion that has none as a whole.
Script name_assertions(Script script);

/// All terms and subterms, each before its arguments. Pointers hold until the script changes.
std::vector<Expression*> nodes_of(Script& script);
std::vector<const Expression*> nodes_of(const Expression& e);

/// Whether every name is declared where it is used, with the sorts that the use supposes, none
/// twice at a time, and every pop has its push.
bool is_well_formed(const Script& script);

}  // namespace vorn::random

#endif
