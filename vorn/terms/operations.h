// The table of operations: what is known of each kind of term besides its value and its circuit.
//
// One row a kind. The constructors check operands by it, the printer takes names from it, and the
// reader, `vorn eval`, `vorn explain`, the benchmarks and the random tests take their operators
// from it, so that a new kind is known to all of them by its row. A kind without a row does not
// compile.
#ifndef VORN_TERMS_OPERATIONS_H
#define VORN_TERMS_OPERATIONS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

#include "vorn/terms/term.h"
#include "vorn/utils/export.h"

namespace vorn {

class TermManager;

/// What kind of thing an operation is, by the theory that it comes from.
enum class Theory : std::uint8_t { core, bit_vectors, floating_point, arrays };

/// How an operation takes more arguments than its signature has (SMT-LIB 2.6, section 3.7.1).
enum class Arity : std::uint8_t {
  fixed,          // not at all
  left,           // (f (f a b) c)
  left_from_one,  // the same, and (f a) is a
  right,          // (f a (f b c))
  chainable,      // (and (f a b) (f b c))
  pairwise,       // and over all pairs
};

/// What the numerals of an indexed name are.
enum class Indexing : std::uint8_t {
  none,
  extraction,  // (_ extract msb lsb)
  extension,   // (_ zero_extend n): n more bits
  repetition,  // (_ repeat n): n times the bits
  rotation,    // (_ rotate_left n)
  width,       // (_ fp.to_ubv n): the width of the result
  format,      // (_ to_fp eb sb): the format of the result; to constructors it is e and m
  sort,        // (as const S): no numeral, but the sort of the result
};

/// The sorts of an operation: the letter of the result, a colon, and the letters of the arguments.
///
///   A any sort, B Bool, R RoundingMode, 1 one bit
///   V bit-vector, W another one, N at most as wide as V, X at least as wide, D a divisor of its
///   width, H and L two parts of it
///   F float, G of another format, T a bit-vector of as many bits as F has
///   Y array, I of the sort of its indices, E of that of its elements
///
/// The same letter is the same sort. A rounding mode comes first where there is one.
class Signature {
 public:
  /// The position of no argument.
  static constexpr std::uint8_t kNowhere = 0xff;

  /// What a constructor asks of one argument.
  struct Argument {
    /// Its letter.
    char letter = 0;
    /// A bit for each kind of sort all of which fits.
    std::uint8_t kinds = 0;
    /// The position of the first argument of the same letter, if there is an earlier one.
    std::uint8_t like = kNowhere;

    /// Whether any sort of that kind fits.
    constexpr bool fits(DataType::Kind kind) const {
      return (kinds >> static_cast<unsigned>(kind) & 1U) != 0;
    }
  };
  /// No operation has more.
  static constexpr std::size_t kMostArguments = 4;
  /// No signature.
  constexpr Signature() = default;
  /// That of a notation as above.
  consteval Signature(const char* notation);  // NOLINT(google-explicit-constructor): in tables

  /// The notation, the letter of the result, those of the arguments, and what is asked of these.
  constexpr std::string_view get_text() const { return text; }
  constexpr char get_result() const { return result; }
  constexpr std::string_view get_letters() const { return text.substr(2); }
  constexpr std::span<const Argument> get_arguments() const { return {arguments.data(), count}; }
  /// The first argument of the letter of the result; kNowhere without one.
  constexpr std::uint8_t get_source() const { return source; }

 private:
  std::string_view text;
  std::array<Argument, kMostArguments> arguments = {};
  char result = 0;
  std::uint8_t count = 0;
  std::uint8_t source = kNowhere;
};

/// A row of the table.
struct Operation {
  /// Numerals of an indexed name, and operands.
  using Indices = std::span<const std::size_t>;
  using Args = std::span<const Term* const>;
  /// Builds an operation that is defined by others, from operands that fit its signature.
  using Derive = const Term* (*)(TermManager& mgr, Indices indices, Args args);

  /// The kind.
  SymbolTag::tag tag = SymbolTag::none;
  /// The name in SMT-LIB.
  std::string_view name = {};
  /// Sorts of the operands and of the result.
  Signature signature = {};
  /// Where it comes from.
  Theory theory = Theory::core;
  /// How it takes more operands.
  Arity arity = Arity::fixed;
  /// What its name is indexed with.
  Indexing indexing = Indexing::none;
  /// Both operands may change places.
  bool is_commutative = false;
  /// The theory leaves the value open for some operands.
  bool is_open = false;
  /// It computes with floats: `vorn explain` shows its circuit.
  bool is_explained = false;
  /// Terms of this kind print under a name that reads as another kind.
  bool is_printed_only = false;
  /// The name in a line of `vorn eval`; empty for none.
  std::string_view short_name = {};
  /// Null unless the operation is defined by others: no term is of this kind then.
  Derive derive = nullptr;

  /// How many numerals the name has.
  constexpr std::size_t get_index_count() const {
    if (indexing == Indexing::none || indexing == Indexing::sort) return 0;
    return indexing == Indexing::extraction || indexing == Indexing::format ? 2 : 1;
  }
  /// How many arguments it takes.
  constexpr std::size_t get_least_arguments() const {
    return arity == Arity::left_from_one ? 1 : signature.get_arguments().size();
  }
  constexpr std::size_t get_most_arguments() const;
  /// Whether it takes a rounding mode.
  constexpr bool is_rounded() const { return signature.get_letters().starts_with('R'); }
};

/// As many arguments as one likes.
inline constexpr std::size_t kAnyNumber = std::numeric_limits<std::size_t>::max();

constexpr std::size_t Operation::get_most_arguments() const {
  return arity == Arity::fixed ? signature.get_arguments().size() : kAnyNumber;
}

/// The row of `tag`; null for `none` and for numbers that are no kind.
VORN_EXPORT const Operation* find_operation(SymbolTag::tag tag);
/// All rows, by tag.
VORN_EXPORT std::span<const Operation> get_operations();

/// What is counted in a message, in both numbers.
struct Noun {
  /// The noun, of one thing and of several.
  std::string_view one;
  std::string_view many;
};

/// Throws "f takes 2 arguments, got 1" as a std::invalid_argument unless least <= count <= most.
VORN_EXPORT void check_count(std::string_view name, Noun noun, std::size_t count, std::size_t least,
                             std::size_t most);
/// That check for the numerals and arguments of an operation.
VORN_EXPORT void check_counts(const Operation& operation, std::size_t indices,
                              std::size_t arguments);

// Inline definitions --------------------------------------------------------------------------

consteval Signature::Signature(const char* notation) : text(notation), result(text.front()) {
  constexpr auto bit = [](DataType::Kind kind) {
    return static_cast<std::uint8_t>(1U << static_cast<unsigned>(kind));
  };
  for (const char letter : get_letters()) {
    Argument& argument = arguments[count];
    argument.letter = letter;
    if (letter == 'A') {
      argument.kinds = 0xff;
    } else if (letter == 'B') {
      argument.kinds = bit(DataType::Kind::boolean);
    } else if (letter == 'R') {
      argument.kinds = bit(DataType::Kind::rounding_mode);
    } else if (letter == 'F' || letter == 'G') {
      argument.kinds = bit(DataType::Kind::floating_point);
    } else if (letter == 'Y') {
      argument.kinds = bit(DataType::Kind::array);
    } else if (letter == '1' || letter == 'I' || letter == 'E') {
      argument.kinds = 0;  // the kind alone does not tell
    } else if (std::string_view("DHLNTVWX").find(letter) != std::string_view::npos) {
      argument.kinds = bit(DataType::Kind::bit_vector);
    } else {
      throw "no letter of a signature";
    }
    // A sort of one kind only is asked for by its kind: messages name what was expected.
    const bool is_plain = std::string_view("BR1IE").find(letter) != std::string_view::npos;
    for (std::uint8_t i = count; !is_plain && i-- > 0;) {
      if (arguments[i].letter == letter) argument.like = i;
    }
    if (letter == result && source == kNowhere) source = count;
    ++count;
  }
}

}  // namespace vorn

#endif
