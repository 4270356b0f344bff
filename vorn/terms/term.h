// Terms, symbols and sorts.
//
// A term is a head symbol applied to arguments. Terms are immutable, owned by their manager and
// hash-consed: one operation on the same arguments is one object, so pointers compare as terms do.
// A term is a single allocation: identifier, symbol, then the arguments in place.
#ifndef VORN_TERMS_TERM_H
#define VORN_TERMS_TERM_H

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "vorn/terms/ieee_float.h"
#include "vorn/terms/qnumber.h"
#include "vorn/utils/export.h"
#include "vorn/utils/hashtable.h"

namespace vorn {

class Term;
class TermManager;

/// The kinds of symbols. What is known of each is its row in the table of operations.
struct SymbolTag {
  /// All kinds are below it.
  static constexpr std::uint32_t kLimit = 128;

  /// The numbers are part of the interface and stay; those that are not taken are free for any
  /// kind.
  enum tag : std::uint32_t {
    none = 0,  // uninterpreted constants and functions, literals

    // Boolean structure
    bool_true = 1,
    bool_false = 2,
    bool_not = 3,
    bool_and = 4,
    bool_or = 5,
    bool_xor = 6,
    bool_implies = 7,
    bool_iff = 8,
    equal = 11,  // of two terms of any one sort
    ite = 12,    // of two terms of any one sort

    // Bit-vectors
    bv_extract = 13,
    bv_concat = 14,
    bv_zero_extend = 15,
    bv_sign_extend = 16,
    bv_not = 17,
    bv_neg = 18,
    bv_and = 19,
    bv_or = 20,
    bv_xor = 21,
    bv_add = 22,
    bv_sub = 23,
    bv_mul = 24,
    bv_udiv = 25,
    bv_urem = 26,
    bv_sdiv = 27,
    bv_srem = 28,
    bv_smod = 29,
    bv_shl = 30,
    bv_lshr = 31,
    bv_ashr = 32,
    bv_comp = 33,
    bv_ult = 34,
    bv_ule = 35,
    bv_slt = 36,
    bv_sle = 37,

    // Floating point
    fp_from_bits = 40,  // a bit-vector read as a float
    fp_equal = 42,
    fp_lt = 43,
    fp_le = 44,
    fp_neg = 45,
    fp_add = 46,
    fp_sub = 47,
    fp_mul = 48,
    fp_div = 49,
    fp_cast = 50,
    fp_from_sbv = 51,
    fp_from_ubv = 52,
    fp_to_sbv = 53,
    fp_to_ubv = 54,
    fp_isnan = 55,
    fp_isinf = 56,
    fp_iszero = 57,
    fp_abs = 58,
    fp_min = 59,
    fp_max = 60,
    fp_sqrt = 61,
    fp_fma = 62,
    fp_rem = 63,
    fp_round_to_integral = 64,
    fp_isnormal = 65,
    fp_issubnormal = 66,
    fp_isnegative = 67,
    fp_ispositive = 68,
    fp_to_bits = 69,  // a float's bits, of which NaN has one choice

    // Arrays
    array_select = 70,
    array_store = 71,
    array_const = 72,  // one value at every index

    // Operations that are defined by others: names without terms
    distinct = 81,
    bv_repeat = 82,
    bv_rotate_left = 83,
    bv_rotate_right = 84,
    bv_nand = 85,
    bv_nor = 86,
    bv_xnor = 87,
    bv_ugt = 88,
    bv_uge = 89,
    bv_sgt = 90,
    bv_sge = 91,
    bv_nego = 92,
    bv_uaddo = 93,
    bv_saddo = 94,
    bv_usubo = 95,
    bv_ssubo = 96,
    bv_umulo = 97,
    bv_smulo = 98,
    bv_sdivo = 99,
    bv_redor = 100,
    bv_redand = 101,
    bv_redxor = 102,
    bv_ite = 103,
    fp_gt = 104,
    fp_ge = 105,
  };
};

/// A sort; compared by pointer, owned by its manager.
class VORN_EXPORT DataType {
 public:
  /// The kinds of sorts.
  enum class Kind : std::uint8_t {
    boolean,
    rounding_mode,
    bit_vector,
    floating_point,
    array,
    uninterpreted
  };

  /// Which of them this is.
  Kind get_kind() const { return kind; }
  /// A number of its own among the sorts of its manager, in the order in which they were made.
  std::uint32_t get_id() const { return id; }
  /// Width of a bit-vector sort, in bits. Other sorts are not to be asked.
  std::size_t get_width() const {
    assert(kind == Kind::bit_vector);
    return widths[0];
  }
  /// Exponent width of a floating-point sort, in bits. Other sorts are not to be asked.
  std::size_t get_e() const { return get_format().e; }
  /// Significand width of a floating-point sort, in bits and without the hidden bit. Other sorts
  /// are not to be asked.
  std::size_t get_m() const { return get_format().m; }
  /// Both widths of a floating-point sort. Other sorts are not to be asked.
  IEEEFloat::format get_format() const {
    assert(kind == Kind::floating_point);
    return {widths[0], widths[1]};
  }
  /// The sort of the indices of an array. Other sorts are not to be asked.
  const DataType* get_index() const {
    assert(kind == Kind::array);
    return index;
  }
  /// The sort of the elements of an array. Other sorts are not to be asked.
  const DataType* get_element() const {
    assert(kind == Kind::array);
    return element;
  }
  /// The symbol of an uninterpreted sort, without bars; empty for other sorts.
  const std::string& get_name() const { return name; }
  /// The sorts that an uninterpreted sort is applied to.
  std::span<const DataType* const> get_arguments() const { return arguments; }
  /// Whether values are bits: those of arrays and uninterpreted sorts are not.
  bool has_bits() const { return kind != Kind::array && kind != Kind::uninterpreted; }
  /// The number of bits in which a value is written: 1 of a Boolean, 3 of a rounding mode, since
  /// there are five, the width of a bit-vector, 1 + e + m of a float. Other sorts are not to be
  /// asked.
  std::size_t get_value_width() const {
    assert(has_bits());
    if (kind == Kind::boolean) return 1;
    if (kind == Kind::rounding_mode) return 3;
    return kind == Kind::bit_vector ? get_width() : get_format().width();
  }
  /// The sort in SMT-LIB syntax.
  std::string to_string() const;

 private:
  friend class TermManager;
  DataType(std::uint32_t identifier, Kind k, std::uint32_t w0, std::uint32_t w1)
      : id(identifier), kind(k), widths{w0, w1} {}

  std::uint32_t id;  // in the order of creation; tables hash on it
  Kind kind;
  std::array<std::uint32_t, 2> widths;  // of an array, the identifiers of its sorts
  std::uint32_t parts = 1;              // sorts that its text names
  const DataType* index = nullptr;
  const DataType* element = nullptr;
  std::string name;
  std::vector<const DataType*> arguments;
};

/// The head of a term: what it applies, its arity and its output sort. Symbols of one operation
/// with the same widths are one object; uninterpreted constants and functions are each their own.
class VORN_EXPORT Symbol {
 public:
  /// Widths and indices: msb and lsb of an extraction, the count of an extension, the widths that
  /// the recognisers of TermManager report for floating-point operations; unused ones are 0.
  using Indices = std::array<std::uint32_t, 4>;

  /// Number of arguments, sort of an application, kind, and widths.
  std::uint64_t get_arity() const { return arity; }
  const DataType* get_output_type() const { return output_type; }
  SymbolTag::tag get_tag() const { return tag; }
  const Indices& get_indices() const { return indices; }
  /// Name of an uninterpreted constant or function; empty for operations and literals.
  const std::string& get_name() const { return name; }
  /// Whether this is an uninterpreted function with arguments.
  bool is_function() const { return tag == SymbolTag::none && arity != 0; }
  /// The sorts of the arguments of an uninterpreted function; empty for every other symbol.
  std::span<const DataType* const> get_domain() const { return domain; }
  /// The bits of a literal as a non-negative integer, or the number of an element of an
  /// uninterpreted sort; null for every other symbol.
  const QNumber* get_literal() const { return is_number ? &value : nullptr; }

 private:
  friend class TermManager;
  Symbol(const TermManager* manager, std::uint32_t identifier, SymbolTag::tag kind,
         std::uint32_t arguments, const DataType* type, const Indices& widths)
      : id(identifier),
        arity(arguments),
        output_type(type),
        owner(manager),
        tag(kind),
        indices(widths) {}

  std::uint32_t id;  // in the order of creation; tables hash on it
  std::uint32_t arity;
  const DataType* output_type;
  const TermManager* owner;
  SymbolTag::tag tag;
  bool is_number = false;
  Indices indices;
  std::string name;
  std::vector<const DataType*> domain;
  QNumber value;                   // of a literal
  const Term* constant = nullptr;  // the term of an arity-0 symbol, once made
};

/// An application of a symbol to as many arguments as its arity says.
class VORN_EXPORT Term {
 public:
  /// A number below TermManager::get_term_count, unique among the terms that there are.
  std::uint64_t get_id() const { return id; }
  /// The head and the arguments.
  const Symbol* get_symbol() const { return symbol; }
  std::uint64_t get_arity() const { return symbol->get_arity(); }
  const Term* get_arg(std::size_t i) const { return first_arg()[i]; }
  std::span<const Term* const> get_args() const { return {first_arg(), get_arity()}; }
  /// Those of the head: the sort of the term, and its kind.
  const DataType* get_type() const { return symbol->get_output_type(); }
  SymbolTag::tag get_tag() const { return symbol->get_tag(); }
  /// The term in SMT-LIB syntax; subterms that occur more than once are bound by `let`.
  std::string to_string() const;

 private:
  friend class TermManager;
  Term(std::uint64_t identifier, const Symbol* head) : id(identifier), symbol(head) {}
  const Term* const* first_arg() const { return reinterpret_cast<const Term* const*>(this + 1); }

  std::uint64_t id;  // first: tables hash on this word
  const Symbol* symbol;
};

namespace hsh {

/// Terms by identifier.
template <>
struct hash<const Term*> {
  /// The hash of a key.
  std::size_t operator()(const Term* term) const noexcept { return term->get_id(); }
};

/// Kinds by number.
template <>
struct hash<SymbolTag::tag> {
  /// The hash of a key.
  std::size_t operator()(SymbolTag::tag tag) const noexcept {
    return static_cast<std::uint32_t>(tag);
  }
};

}  // namespace hsh

/// Map from terms to terms.
using TermMap = hsh::Hashtable<std::pair<const Term*, const Term*>,
                               hsh::GetKey_pair<std::pair<const Term*, const Term*>>, const Term*>;
static_assert(sizeof(TermMap::Node) == 24, "three words: link, key, value");

}  // namespace vorn

#endif
