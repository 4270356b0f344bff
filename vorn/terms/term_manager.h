// The owner of terms: constructors, recognisers and tables.
//
// Constructors take operands in SMT-LIB order, check sorts and widths, and return the one term of
// that shape. With rewriting on they also fold constants completely and apply cheap local rules, so
// that building an operation on literals yields a literal. With rewriting off a term has exactly
// the shape that was asked for.
#ifndef VORN_TERMS_TERM_MANAGER_H
#define VORN_TERMS_TERM_MANAGER_H

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vorn/terms/ieee_float.h"
#include "vorn/terms/operations.h"
#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/utils/export.h"
#include "vorn/utils/termination_test.h"

namespace vorn {

/// What would be narrowed to an int without a word where an integer is asked for.
template <class Value>
concept NoInteger = !std::integral<Value> && !std::convertible_to<Value, QNumber>;

/// Factory and owner of terms, symbols and sorts.
///
/// All constructors throw std::invalid_argument, with a sentence that names the operation and the
/// sorts, when an operand has the wrong sort or width or belongs to another manager. Widths go from
/// 1 to kMaxWidth. Widths and indices below are in bits; (e, m) are the exponent width and the
/// significand width without the hidden bit.
///
/// A manager and what is built on it are for one thread at a time; managers share nothing.
class VORN_EXPORT TermManager {
 public:
  /// The widest bit-vector.
  static constexpr std::size_t kMaxWidth = std::size_t{1} << 20;
  /// The most arguments of an uninterpreted function.
  static constexpr std::size_t kMaxArguments = 10'000;
  /// The most sorts that the text of a sort names.
  static constexpr std::uint32_t kMaxParts = 1'000;

  /// Simplifies what it builds, unless told not to.
  explicit TermManager(bool rewrite = true);
  ~TermManager();
  TermManager(const TermManager&) = delete;
  TermManager& operator=(const TermManager&) = delete;

  /// Borrows `t`, asked now and then by whatever makes operations, which then throws Terminated:
  /// reading, rewriting and translating can make any number of terms out of a few. The manager
  /// stays as it was before that operation. Null for none.
  void set_termination_test(const TerminationTest* t) { termtest = t; }
  const TerminationTest* get_termination_test() const { return termtest; }

  // Sorts -------------------------------------------------------------------------------------

  /// The sorts.
  const DataType* get_bool_type() const { return bool_type; }
  const DataType* get_fprounding_type() const { return rounding_type; }
  const DataType* get_bv_type(std::size_t width);
  /// Exponent width e >= 2, significand width m >= 1 without the hidden bit.
  const DataType* get_fp_type(std::size_t e, std::size_t m);
  /// Arrays of elements of one sort, indexed by those of another. Any sorts, but the text of the
  /// result may not name more than kMaxParts.
  const DataType* get_array_type(const DataType* index, const DataType* element);
  /// The sort of that name applied to those sorts, of which nothing is known but that it has
  /// elements, as many as one wants. Sorts of one name and the same arguments are one sort. Throws
  /// as constructors do for a name that is no symbol, and beyond kMaxParts.
  const DataType* get_uninterpreted_type(const std::string& name,
                                         std::span<const DataType* const> arguments = {});

  /// True for the sort Bool.
  bool is_bool_type(const DataType* type) const { return type == bool_type; }
  /// True for a bit-vector sort; stores its width unless `width` is null.
  bool is_bv_type(const DataType* type, std::size_t* width) const;
  /// True for a floating-point sort; stores its widths unless null.
  bool is_fp_type(const DataType* type, std::size_t* e, std::size_t* m) const;
  bool is_fprounding_type(const DataType* type) const { return type == rounding_type; }
  /// True for an array sort; stores its sorts unless null.
  bool is_array_type(const DataType* type, const DataType** index, const DataType** element) const;

  // Symbols and constants ---------------------------------------------------------------------

  /// A new symbol of arity 0 named `name` or, if that is taken, `name` with a suffix.
  const Symbol* make_unique_symbol(const std::string& name, const DataType* type);
  /// The same for a function of arguments of these sorts, no more than kMaxArguments.
  const Symbol* make_unique_symbol(const std::string& name, std::span<const DataType* const> domain,
                                   const DataType* type);
  /// The term that applies an arity-0 symbol.
  const Term* make_constant(const Symbol* symbol);
  /// A new constant named by make_unique_symbol.
  const Term* make_constant(const std::string& name, const DataType* type) {
    return make_constant(make_unique_symbol(name, type));
  }
  /// The term that applies an uninterpreted function.
  const Term* make_application(const Symbol* function, std::span<const Term* const> args);
  /// The operation of kind `tag`: the name of each kind below is one of these. `indices` are the
  /// numerals of an indexed name, where a format is e and m; what a kind takes, and how it takes
  /// more arguments, is in the table of operations. Throws std::invalid_argument for `none` and for
  /// another number of indices or arguments.
  const Term* make(SymbolTag::tag tag, std::span<const std::size_t> indices,
                   std::span<const Term* const> args);
  const Term* make(SymbolTag::tag tag, std::initializer_list<const Term*> args) {
    return make(tag, std::span<const std::size_t>(), std::span(args.begin(), args.size()));
  }
  const Term* make(SymbolTag::tag tag, std::initializer_list<std::size_t> indices,
                   std::initializer_list<const Term*> args) {
    return make(tag, std::span(indices.begin(), indices.size()),
                std::span(args.begin(), args.size()));
  }
  /// Whether `t` is a term of this manager. False for null.
  bool owns(const Term* t) const { return t != nullptr && t->get_symbol()->owner == this; }
  /// The operation of `t` on other arguments of the same sorts.
  const Term* rebuild(const Term* t, std::span<const Term* const> args);

  /// Stores the kind of `symbol` and returns true if it has one; literals, rounding-mode constants
  /// and uninterpreted constants have none.
  bool get_symbol_kind(const Symbol* symbol, SymbolTag::tag* kind) const;
  /// The number that a literal's symbol stands for; null when it is not a literal of this manager.
  const QNumber* get_number(const Symbol* symbol) const {
    return symbol->owner == this && symbol->is_number ? &symbol->value : nullptr;
  }
  /// True for a bit-vector or floating-point literal, or an element of an uninterpreted sort;
  /// stores its bits or number unless `value` is null.
  bool is_number(const Term* term, QNumber* value) const;

  // Booleans and generic operations -----------------------------------------------------------

  /// Truth values.
  const Term* make_true() const { return true_term; }
  const Term* make_false() const { return false_term; }
  const Term* make_bool(bool value) const { return value ? true_term : false_term; }
  /// Connectives of Booleans.
  const Term* make_not(const Term* a);
  const Term* make_and(const Term* a, const Term* b);
  const Term* make_or(const Term* a, const Term* b);
  /// The same of any number of Booleans, from left to right: of none, true and false.
  const Term* make_and(std::span<const Term* const> args);
  const Term* make_and(std::initializer_list<const Term*> args) {
    return make_and(std::span(args.begin(), args.size()));
  }
  const Term* make_or(std::span<const Term* const> args);
  const Term* make_or(std::initializer_list<const Term*> args) {
    return make_or(std::span(args.begin(), args.size()));
  }
  const Term* make_xor(const Term* a, const Term* b);
  const Term* make_implies(const Term* a, const Term* b);
  const Term* make_iff(const Term* a, const Term* b);
  /// Operands of one sort, any sort.
  const Term* make_equal(const Term* a, const Term* b);
  /// c Boolean, a and b of one sort.
  const Term* make_term_ite(const Term* c, const Term* a, const Term* b);
  /// True when the symbol is an if-then-else; stores the branches' sort unless `type` is null.
  bool is_term_ite(const Symbol* symbol, const DataType** type) const;

  // Bit-vectors -------------------------------------------------------------------------------

  /// The literal of `width` bits with value modulo 2^width, whatever the value's sign and size: -1
  /// is all ones, and of a value that does not fit the low bits stay. It must be an integer.
  const Term* make_bv_number(const QNumber& value, std::size_t width);
  const Term* make_bv_number(int value, std::size_t width);
  template <std::integral Integer>
  const Term* make_bv_number(Integer value, std::size_t width) {
    if (value == 0 || value == 1) return make_bv_number(static_cast<int>(value), width);
    return make_bv_number(QNumber::from_integer(value), width);
  }
  template <NoInteger Value>
  const Term* make_bv_number(Value value, std::size_t width) = delete;
  /// Bits msb down to lsb of t: msb - lsb + 1 bits.
  const Term* make_bv_extract(std::size_t msb, std::size_t lsb, const Term* t);
  /// a above b.
  const Term* make_bv_concat(const Term* a, const Term* b);
  /// n more bits on top: zeros, or copies of t's top bit.
  const Term* make_bv_zero_extend(std::size_t n, const Term* t);
  const Term* make_bv_sign_extend(std::size_t n, const Term* t);
  const Term* make_bv_not(const Term* a);
  const Term* make_bv_neg(const Term* a);
  const Term* make_bv_and(const Term* a, const Term* b);
  const Term* make_bv_or(const Term* a, const Term* b);
  const Term* make_bv_xor(const Term* a, const Term* b);
  const Term* make_bv_add(const Term* a, const Term* b);
  const Term* make_bv_sub(const Term* a, const Term* b);
  const Term* make_bv_mul(const Term* a, const Term* b);
  /// Unsigned quotient (all ones by zero) and remainder (a by zero).
  const Term* make_bv_udiv(const Term* a, const Term* b);
  const Term* make_bv_urem(const Term* a, const Term* b);
  /// Signed quotient toward zero, remainder with the sign of a, modulus with the sign of b.
  const Term* make_bv_sdiv(const Term* a, const Term* b);
  const Term* make_bv_srem(const Term* a, const Term* b);
  const Term* make_bv_smod(const Term* a, const Term* b);
  /// a shifted by b positions, b of a's width: left, right with zeros, right with copies of the
  /// top bit.
  const Term* make_bv_lshl(const Term* a, const Term* b);
  const Term* make_bv_lshr(const Term* a, const Term* b);
  const Term* make_bv_ashr(const Term* a, const Term* b);
  /// One bit: 1 when a and b are equal.
  const Term* make_bv_comp(const Term* a, const Term* b);
  const Term* make_bv_ult(const Term* a, const Term* b);
  const Term* make_bv_ule(const Term* a, const Term* b);
  const Term* make_bv_slt(const Term* a, const Term* b);
  const Term* make_bv_sle(const Term* a, const Term* b);

  // Rounding modes ----------------------------------------------------------------------------

  /// The constant of a rounding mode.
  const Term* make_fprounding(IEEEFloat::rounding_mode mode) const;
  const Term* make_fprounding_even() const;
  const Term* make_fprounding_zero() const;
  const Term* make_fprounding_plus_inf() const;
  const Term* make_fprounding_minus_inf() const;
  const Term* make_fprounding_away() const;
  /// True for one of the five constants; stores which unless `mode` is null.
  bool is_fprounding(const Symbol* symbol, IEEEFloat::rounding_mode* mode) const;
  bool is_fprounding_even(const Symbol* symbol) const;
  bool is_fprounding_zero(const Symbol* symbol) const;
  bool is_fprounding_plus_inf(const Symbol* symbol) const;
  bool is_fprounding_minus_inf(const Symbol* symbol) const;
  bool is_fprounding_away(const Symbol* symbol) const;

  // Floating point: the terms that the encoders read. None of these is ever simplified.

  /// The literal with these bits (sign, biased exponent, trailing significand), taken modulo
  /// 2^(1+e+m). A NaN keeps its pattern; make_fp_nan gives the one that NaNs of a formula share.
  const Term* make_fp_number(const QNumber& bits, std::size_t e, std::size_t m);
  const Term* make_fp_nan(std::size_t e, std::size_t m);
  /// The literal of a value, in its format; a NaN is the one of make_fp_nan.
  const Term* make_fp_number(const IEEEFloat& value);
  /// A bit-vector of width 1+e+m read as a float.
  const Term* make_fp_from_bits(std::size_t e, std::size_t m, const Term* bits);
  /// IEEE equality and order of two floats of one format.
  const Term* make_fp_equal(const Term* a, const Term* b);
  const Term* make_fp_lt(const Term* a, const Term* b);
  const Term* make_fp_le(const Term* a, const Term* b);
  /// b < a and b <= a, which is how they are kept.
  const Term* make_fp_gt(const Term* a, const Term* b);
  const Term* make_fp_ge(const Term* a, const Term* b);
  const Term* make_fp_neg(const Term* a);
  const Term* make_fp_add(const Term* rm, const Term* a, const Term* b);
  const Term* make_fp_sub(const Term* rm, const Term* a, const Term* b);
  const Term* make_fp_mul(const Term* rm, const Term* a, const Term* b);
  const Term* make_fp_div(const Term* rm, const Term* a, const Term* b);
  /// a in the format (e, m).
  const Term* make_fp_cast(std::size_t e, std::size_t m, const Term* rm, const Term* a);
  /// The signed or unsigned integer v in the format (e, m).
  const Term* make_fp_from_sbv(std::size_t e, std::size_t m, const Term* rm, const Term* v);
  const Term* make_fp_from_ubv(std::size_t e, std::size_t m, const Term* rm, const Term* v);
  /// a as an integer of `width` bits; what an a without a value of that width gives is left open.
  const Term* make_fp_to_sbv(std::size_t width, const Term* rm, const Term* a);
  const Term* make_fp_to_ubv(std::size_t width, const Term* rm, const Term* a);
  /// The 1+e+m bits of a.
  const Term* make_fp_to_bits(const Term* a);
  const Term* make_fp_abs(const Term* a);
  /// Of zeros of opposite sign either is the result.
  const Term* make_fp_min(const Term* a, const Term* b);
  const Term* make_fp_max(const Term* a, const Term* b);
  const Term* make_fp_sqrt(const Term* rm, const Term* a);
  /// a * b + c, rounded once.
  const Term* make_fp_fma(const Term* rm, const Term* a, const Term* b, const Term* c);
  /// a - b * n for the integer n nearest to a / b.
  const Term* make_fp_rem(const Term* a, const Term* b);
  const Term* make_fp_round_to_integral(const Term* rm, const Term* a);
  const Term* make_fp_isnan(const Term* a);
  const Term* make_fp_isinf(const Term* a);
  const Term* make_fp_iszero(const Term* a);
  const Term* make_fp_isnormal(const Term* a);
  const Term* make_fp_issubnormal(const Term* a);
  const Term* make_fp_isnegative(const Term* a);
  const Term* make_fp_ispositive(const Term* a);

  // Arrays and uninterpreted sorts ------------------------------------------------------------

  /// The element of `a` at the index `i`.
  const Term* make_select(const Term* a, const Term* i);
  /// `a` with the element `v` at the index `i`.
  const Term* make_store(const Term* a, const Term* i, const Term* v);
  /// The array of sort `type` with the element `v` at every index.
  const Term* make_const_array(const DataType* type, const Term* v);
  /// The element of an uninterpreted sort that has this number, an integer from 0.
  const Term* make_element(const DataType* type, const QNumber& number);

  // Recognisers: true when the symbol is of that kind; the widths are then stored.

  /// The e and m of the operands.
  bool is_fp_equal(const Symbol* s, std::size_t* e, std::size_t* m) const;
  bool is_fp_lt(const Symbol* s, std::size_t* e, std::size_t* m) const;
  bool is_fp_le(const Symbol* s, std::size_t* e, std::size_t* m) const;
  bool is_fp_neg(const Symbol* s, std::size_t* e, std::size_t* m) const;
  bool is_fp_add(const Symbol* s, std::size_t* e, std::size_t* m) const;
  bool is_fp_sub(const Symbol* s, std::size_t* e, std::size_t* m) const;
  bool is_fp_mul(const Symbol* s, std::size_t* e, std::size_t* m) const;
  bool is_fp_div(const Symbol* s, std::size_t* e, std::size_t* m) const;
  /// The operand's e and m, then the target's.
  bool is_fp_cast(const Symbol* s, std::size_t* e1, std::size_t* m1, std::size_t* e2,
                  std::size_t* m2) const;
  /// The integer's width, then the target's e and m.
  bool is_fp_from_sbv(const Symbol* s, std::size_t* w, std::size_t* e, std::size_t* m) const;
  bool is_fp_from_ubv(const Symbol* s, std::size_t* w, std::size_t* e, std::size_t* m) const;
  bool is_fp_isnan(const Symbol* s, std::size_t* e, std::size_t* m) const;
  bool is_fp_isinf(const Symbol* s, std::size_t* e, std::size_t* m) const;
  bool is_fp_iszero(const Symbol* s, std::size_t* e, std::size_t* m) const;

  // Accounting --------------------------------------------------------------------------------

  /// Number of terms there were at most; identifiers are below it.
  std::uint64_t get_term_count() const { return next_id; }
  /// Number of terms there are.
  std::uint64_t get_live_count() const { return next_id - free_count; }
  /// Drops every term that is not in `roots`, held by a holder, or below those, with the names of
  /// the constants among them, and the functions that no term applies then. Sorts, operations'
  /// symbols, truth values and rounding modes stay.
  /// Identifiers of dropped terms are given to new ones, the smallest first among those that one
  /// call dropped and that have as many arguments, so whoever keeps terms or looks them up by
  /// identifier must have forgotten them, or be a holder as encoders are. Drops all or, where
  /// memory ends, nothing.
  void collect(std::span<const Term* const> roots);
  /// Appends the terms that somebody keeps from call to call.
  using Holder = std::function<void(std::vector<const Term*>* terms)>;
  /// Collections ask `holder` for terms to keep, as long as it is owned by others. Terms of other
  /// managers may be among them.
  void add_holder(const std::shared_ptr<const Holder>& holder);
  /// How often terms were dropped: whoever remembers terms of his own finds out by it.
  std::uint64_t get_collection_count() const { return collections; }
  /// Bytes that terms and the table that shares them take.
  std::size_t get_term_bytes() const;

 private:
  struct SymbolKey {
    SymbolTag::tag tag;
    const DataType* type;
    Symbol::Indices indices;
    bool operator==(const SymbolKey&) const = default;
  };
  struct SymbolKeyHash {
    std::size_t operator()(const SymbolKey& key) const noexcept;
  };
  struct NumberKey {
    const DataType* type;
    QNumber value;
    bool operator==(const NumberKey&) const = default;
  };
  struct NumberKeyHash {
    std::size_t operator()(const NumberKey& key) const noexcept;
  };
  // Sorts and symbols
  static std::uint64_t type_key(DataType::Kind kind, std::size_t w0, std::size_t w1);
  bool owns(const DataType* type) const;
  std::uint32_t count_parts(std::span<const DataType* const> arguments) const;
  DataType* intern_type(DataType::Kind kind, std::size_t w0, std::size_t w1);
  const Symbol* intern_symbol(SymbolTag::tag tag, std::size_t arity, const DataType* type,
                              const Symbol::Indices& indices);
  Symbol* new_symbol(SymbolTag::tag tag, std::size_t arity, const DataType* type,
                     const Symbol::Indices& indices);
  const Term* intern_number(const QNumber& value, const DataType* type);

  // Terms
  const Term* apply(const Operation& op, std::span<const std::size_t> indices,
                    std::span<const Term* const> args);
  /// The same for a kind that is known to take as many.
  const Term* apply(SymbolTag::tag tag, std::initializer_list<const Term*> args) {
    return apply(*find_operation(tag), {}, std::span(args.begin(), args.size()));
  }
  const Term* apply(SymbolTag::tag tag, std::initializer_list<std::size_t> indices,
                    std::initializer_list<const Term*> args) {
    return apply(*find_operation(tag), std::span(indices.begin(), indices.size()),
                 std::span(args.begin(), args.size()));
  }
  /// Whether one to three operands are this manager's and have the sorts of the signature; false
  /// also where it takes a closer look.
  bool fits(const Operation& op, std::span<const Term* const> args) const;
  const Term* extend(const Operation& op, std::span<const std::size_t> indices,
                     std::span<const Term* const> args);
  /// Throws, naming the operation, unless the operands have the sorts of its signature.
  void check_operands(const Operation& op, std::span<const Term* const> args) const;
  const DataType* find_result(const Operation& op, std::span<const Term* const> args);
  const DataType* find_indexed_result(const Operation& op, std::span<const std::size_t> indices,
                                      std::span<const Term* const> args);
  const Term* build(const Operation& op, const DataType* type, std::span<const Term* const> args,
                    const Symbol::Indices& indices);
  void count_step(const DataType* type);
  const Term* intern_term(const Symbol* symbol, std::span<const Term* const> args);
  Term* allocate_term(const Symbol* symbol, std::span<const Term* const> args);
  void grow_term_table();
  std::vector<bool> mark_live(std::span<const Term* const> roots) const;
  std::vector<bool> mark_functions(const std::vector<bool>& live) const;
  void make_room_for_dead(const std::vector<bool>& live, const std::vector<bool>& applied);
  void drop_operations(const std::vector<bool>& live, std::vector<const Term*>* dead);
  void drop_constants(const std::vector<bool>& live, std::vector<const Term*>* dead);
  void drop_functions(const std::vector<bool>& applied);
  void free_term(const Term* term);

  bool recognise(SymbolTag::tag tag, const Symbol* s,
                 std::initializer_list<std::size_t*> widths) const;

  const bool rewriting;
  std::deque<DataType> types;
  std::unordered_map<std::uint64_t, DataType*> type_table;
  std::unordered_map<std::string, const DataType*> named_types;  // by name and arguments
  const DataType* bool_type;
  const DataType* rounding_type;

  std::deque<Symbol> symbols;
  std::unordered_map<SymbolKey, const Symbol*, SymbolKeyHash> symbol_table;
  std::unordered_map<NumberKey, const Term*, NumberKeyHash> number_table;
  std::unordered_map<std::string, std::uint64_t> names;  // taken names, with the next suffix to try

  // What circuits ask for all the time, one step away.
  static constexpr std::size_t kCommonWidths = 256;
  std::array<const DataType*, kCommonWidths> common_bv_types = {};
  std::array<std::array<const Term*, kCommonWidths>, 2> common_numbers = {};  // 0 and 1
  std::array<const Symbol*, 2048> recent_symbols = {};                        // by hash

  std::vector<std::unique_ptr<std::byte[]>> chunks;  // storage of terms
  std::byte* chunk_free = nullptr;
  std::size_t chunk_left = 0;
  std::vector<const Term*> term_table;     // open addressing, a power of two
  std::vector<std::uint32_t> term_hashes;  // of the terms in the table
  std::size_t table_count = 0;
  std::uint64_t next_id = 0;
  std::vector<std::vector<Term*>> free_terms;  // dropped ones by arity, to be used again
  std::vector<Symbol*> free_symbols;
  std::uint64_t free_count = 0;
  std::vector<std::weak_ptr<const Holder>> holders;
  std::uint64_t collections = 0;

  const TerminationTest* termtest = nullptr;
  std::size_t steps = 0;  // for asking the test only now and then

  const Term* true_term = nullptr;
  const Term* false_term = nullptr;
  std::array<const Term*, 5> rounding_terms = {};
};

}  // namespace vorn

#endif
