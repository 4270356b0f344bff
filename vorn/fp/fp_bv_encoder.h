// FpBvEncoder: floating-point terms as bit-vector and Boolean terms.
//
// A floating-point value of format (e, m) is one bit-vector of width 1 + e + m in the interchange
// layout: sign at bit e + m, biased exponent E at bits e + m - 1 to m, trailing significand at bits
// m - 1 to 0. There is no other representation; fields are taken out again wherever they are
// needed, and the target manager shares them. Every operation becomes a circuit over such
// bit-vectors. Flags (sign, NaN, infinity, sticky bit) are bit-vectors of width 1; predicates that
// are handed back are Boolean terms.
//
// Methods named encode_ translate one kind of term and are called by the driver, methods named enc_
// are building blocks of circuits. They check nothing: the term managers check sorts and widths,
// and the driver's order of work makes sure that the arguments of a term are encoded before it.
#ifndef VORN_FP_FP_BV_ENCODER_H
#define VORN_FP_FP_BV_ENCODER_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <utility>
#include <vector>

#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"
#include "vorn/utils/hashtable.h"
#include "vorn/utils/logger.h"
#include "vorn/utils/termination_test.h"

namespace vorn::fp {

/// Kinds of comparison.
enum class FpComp : std::uint8_t { less_than = 0, less_or_equal = 1, equal = 2 };

/// Translates terms of one manager into terms of another (or the same) and caches what it has
/// translated. Used by one thread at a time.
class VORN_EXPORT FpBvEncoder {
 public:
  /// `src` owns the terms to read, `dst` those to build; both are borrowed and may be the same.
  FpBvEncoder(TermManager* src, TermManager* dst);
  virtual ~FpBvEncoder();
  FpBvEncoder(const FpBvEncoder&) = delete;
  FpBvEncoder& operator=(const FpBvEncoder&) = delete;

  // Configuration -----------------------------------------------------------------------------

  /// Borrows `l`; the encoder's own logger, if still in place, is deleted.
  void set_logger(Logger* l);
  /// Borrows `t`. An encoding runs to its end; the test is kept for the owner.
  void set_termination_test(const TerminationTest* t);
  const TerminationTest* get_termination_test() const { return termtest; }
  /// In debug mode every named intermediate value of a circuit is tied to a fresh constant of that
  /// name by a side constraint, so that a model shows it.
  void set_debug_flag(bool on);
  /// What becomes of a term that nothing is known of: an operation without a circuit, or an
  /// if-then-else or bits read as a float that have not been given an encoding. It is a constant,
  /// free to have any value (`on`, as from the start), or an error. Bit-vector operations are
  /// constants in either case, since get_new_bv_terms tells the owner of them.
  void set_free_constants(bool on);

  // Translation -------------------------------------------------------------------------------

  /// The encoding of `t`: Boolean for a predicate, width 1 + e + m for a float, width 2 for a
  /// rounding mode. `out` receives the constraints that define the fresh constants of this call, in
  /// the order of their making, and loses what it held; they must be asserted beside any use of the
  /// result. `t` must be a floating-point atom or term, a rounding mode, or a bit-vector argument
  /// of a conversion; the Boolean structure above them is the owner's.
  /// Throws std::invalid_argument, having changed nothing, where `t` is null or no term of the
  /// source; with a sentence of its own where there is Boolean structure or, unless free constants
  /// are asked for, something without a meaning. Exceptions of the term managers pass through.
  /// After these the owner must retract `t`, since the constraints of what was encoded on the way
  /// are lost.
  const Term* get_bv_encoding(const Term* t, std::vector<const Term*>* out);
  /// The same, but `constraints` keeps what it holds, and what the call has to say comes behind.
  /// Where an exception passes through, it is as before.
  const Term* append_bv_encoding(const Term* t, std::vector<const Term*>* constraints);

  /// The cached encoding of `t`, or null; null for null.
  const Term* get_cached(const Term* t) const;

  /// Makes `encoding` the encoding of `t`, which must not have one yet. This is how an owner gives
  /// a meaning to terms that the encoder would replace by fresh constants: if-then-else, bits read
  /// as a float, bit-vector arguments. The encoding must have no NaN but the canonical one.
  /// Throws std::invalid_argument, having changed nothing, where `t` has an encoding or is no term
  /// of the source, or where the encoding is no term of the target or has another sort than `t`
  /// calls for.
  void define_encoding(const Term* t, const Term* encoding);

  /// Whether the encoder has circuits for operations of this kind.
  bool supports(SymbolTag::tag kind) const { return dispatch.find(kind) != nullptr; }

  /// The constant that stands for what the theory leaves open of `t`, which has been encoded: the
  /// two bits that fp.min or fp.max choose the sign of their result from (bit s where the first of
  /// two different zeros has sign s; one constant serves all terms of the operation and format), or
  /// the bits of a conversion to an integer where no integer of the width is right. Null for every
  /// other operation. Two conversions of equal values must agree there: the owner sees to it.
  virtual const Term* get_choice(const Term* /*t*/) const { return nullptr; }

  /// Forgets encodings, newest first, back to and including the latest mention of `t`; all of them
  /// when `t` was never asked for. Names of fresh constants are not used again.
  void retract_upto(const Term* t);

  /// Moves into `out` the bit-vector terms of the input that were replaced by fresh constants since
  /// the last call, oldest first, and returns true; returns false and leaves `out` alone when there
  /// are none. `get_cached` of such a term is its constant, to which the owner must tie it.
  bool get_new_bv_terms(std::vector<const Term*>& out);

 protected:
  using format = IEEEFloat::format;
  using EncodeMethod = const Term* (FpBvEncoder::*)(const Term*);

  // What is virtual from here on is a stage that IeeeBvEncoder replaces.

  // The object (encoder.cpp) ----------------------------------------------------------------------

  /// As in public, with rounding modes as codes of `mode_width` bits, at least 2.
  FpBvEncoder(TermManager* src, TermManager* dst, std::size_t mode_width);
  /// Makes the number `code` of `width` bits the encoding of the rounding mode `mode`.
  const Term* seed_rounding_mode(int code, std::size_t width, const Term* mode);
  /// Makes `method` encode the terms of this kind, in place of any other.
  void set_method(SymbolTag::tag kind, EncodeMethod method);
  /// Adds a Boolean term of the target to the constraints of this call.
  void add_side_constraint(const Term* c) { side_constraints.push_back(c); }
  /// Appends the terms, of either manager, that the encoder keeps from call to call.
  virtual void append_held_terms(std::vector<const Term*>* terms) const;

  // Leaves (leaves.cpp) -------------------------------------------------------------------------

  /// A constant named ".", prefix, and the counter, which moves on.
  const Term* make_fresh_constant(const char* prefix, std::int32_t* counter, const DataType* type);
  /// The constant that stands for the variable `t`, named in the same way: a fresh one.
  virtual const Term* make_leaf(const Term* t, const char* prefix, std::int32_t* counter,
                                const DataType* type);
  /// A rounding mode: its code, or a constant as wide for a variable. Throws std::invalid_argument
  /// for roundNearestTiesToAway, which has no code of 2 bits.
  virtual const Term* encode_rounding(const Term* t);
  /// A floating-point variable: a constant, constrained to be no NaN but the canonical one.
  const Term* encode_constant(const Term* t);
  /// A bit-vector term: a fresh constant of its width; the term is listed for the owner.
  const Term* encode_bv_constant(const Term* t);
  /// A floating-point literal: its bits.
  const Term* encode_number(const Term* t);

  // Operations, one for each row of the dispatch table -------------------------------------------

  const Term* encode_equality(const Term* t);
  const Term* encode_fp_equal(const Term* t);
  const Term* encode_lt(const Term* t);
  const Term* encode_le(const Term* t);
  const Term* encode_neg(const Term* t);
  const Term* encode_add(const Term* t);
  const Term* encode_sub(const Term* t);
  const Term* encode_mul(const Term* t);
  const Term* encode_div(const Term* t);
  const Term* encode_cast(const Term* t);
  const Term* encode_from_sbv(const Term* t);
  const Term* encode_from_ubv(const Term* t);
  const Term* encode_isnan(const Term* t);
  const Term* encode_isinf(const Term* t);
  const Term* encode_iszero(const Term* t);

  // Terms of the target (view.cpp) ----------------------------------------------------------------

  /// A number of `width` bits, from its value, or of either sign in two's complement.
  const Term* bv(std::uint64_t value, std::size_t width);
  const Term* bv_signed(const QNumber& value, std::size_t width);
  /// Bits of a bit-vector term.
  std::size_t width_of(const Term* t) const;

  // Fields and classes of a packed value t of width 1 + e + m (view.cpp) --------------------------

  /// The e exponent bits; with `unbias` the exponent as a two's-complement number of e bits, 1 -
  /// bias for zeros and subnormals.
  const Term* enc_get_exponent(const Term* t, format fmt, bool unbias);
  /// The m bits of the trailing significand; with `with_hidden` m + 1 bits, the hidden bit on top,
  /// which is 1 for normal numbers only.
  const Term* enc_get_mantissa(const Term* t, format fmt, bool with_hidden);
  /// One bit: whether t is a NaN, an infinity, a zero; of either sign.
  const Term* enc_is_nan(const Term* t, format fmt);
  const Term* enc_is_inf(const Term* t, format fmt);
  const Term* enc_is_zero(const Term* t, format fmt);

  // If-then-else (view.cpp) -----------------------------------------------------------------------

  /// Connectives only: Boolean when c is, else bitwise on operands as wide as c.
  const Term* enc_make_ite(const Term* c, const Term* a, const Term* b);
  /// A fresh constant that is a where the Boolean c holds and b elsewhere, or the if-then-else
  /// itself where the manager simplifies it away.
  virtual const Term* enc_make_term_ite(const Term* c, const Term* a, const Term* b);
  /// A fresh constant that is values[i] where conds[i] holds. The conditions must exclude each
  /// other and cover every case. Called by the base's circuits only.
  const Term* enc_make_term_cond(const std::vector<const Term*>& conds,
                                 const std::vector<const Term*>& values);

  // Comparison (comparison.cpp) -------------------------------------------------------------------

  const Term* enc_fp_comparison(const Term* t, FpComp kind);

  // Normalisation (normalisation.cpp) -------------------------------------------------------------

  /// Brings the leading one of `mant`, whose top bit has the weight 2^exp, to its top and lowers
  /// `exp` (signed) to match; widths stay. `max_shift` bounds the leading zeros that are looked
  /// for; 0 means no bound.
  void enc_normalization_shift(format fmt, const Term** exp, const Term** mant,
                               std::uint64_t max_shift);
  void enc_normalization_shift_const(format fmt, const Term** exp, const Term** mant,
                                     std::uint64_t max_shift);
  void enc_normalization_shift_linear(format fmt, const Term** exp, const Term** mant,
                                      std::uint64_t max_shift);
  virtual void enc_normalization_shift_log(format fmt, const Term** exp, const Term** mant);

  // Rounding modes (rounding_choice.cpp) ----------------------------------------------------------

  /// What a rounding mode does, one bit each: whether to increment the kept bits, and the
  /// correction bit, 1 where an overflow gives the largest finite magnitude.
  struct RoundingChoice {
    const Term* increment;
    const Term* correction;
  };
  /// The choice of a constant mode, from the sign, the first bit below the kept ones, the last kept
  /// bit and whether anything else is below; one bit each.
  RoundingChoice enc_rounding_choice(const Term* mode, const Term* sign, const Term* round,
                                     const Term* least, const Term* sticky);
  /// The choice of `rm`, constant or not.
  virtual RoundingChoice enc_select_rounding(const Term* rm, const Term* sign, const Term* round,
                                             const Term* least, const Term* sticky);

  // Rounding (rounding.cpp, packing.cpp) ----------------------------------------------------------

  /// A value on its way to rounding, and what is known of it that may save gates.
  struct Unrounded {
    const Term* nan;  // flags and sign of 1 bit
    const Term* inf;
    const Term* sign;
    const Term* exp;             // signed, any width
    const Term* mant;            // any width, its top bit of weight 2^exp
    bool may_underflow = true;   // whether exp may lie below that of the smallest normal number
    std::size_t lead_limit = 0;  // bound on the leading zeros of mant; 0: none
    bool is_field = false;  // exact: exp is the exponent field of the top bit, unsigned, from 1
  };
  /// The packed value of format `fmt` nearest to `value` in mode `rm`.
  virtual const Term* enc_round(const Term* rm, format fmt, const Unrounded& value);

  // What follows are the base's stages of enc_round. Slots passed as `const Term**` are read and
  // replaced; `sign`, `is_nan` and `is_inf` have 1 bit, `exp` and `mant` are as in Unrounded.

  /// All stages; `max_shift` as in normalisation.
  const Term* enc_do_rounding(const Term* rm, format fmt, const Term* is_nan, const Term* is_inf,
                              const Term* sign, const Term* exp, const Term* mant,
                              std::uint64_t max_shift);
  /// Widens `exp` so that the stages below cannot overflow it, and `mant` to at least its width.
  void enc_widen(format fmt, const Term** exp, const Term** mant);
  /// Shifts a result below the smallest normal exponent into the subnormal range and sets its
  /// exponent to -bias. The bits shifted out are lost.
  void enc_denormalization_shift(format fmt, const Term** exp, const Term** mant);
  /// Replaces `mant` by its rounded m + 1 bits, raises `exp` if that carried to 2.0, and, where
  /// there were bits to round, sets `correction`.
  void enc_round_mantissa(const Term* rm, format fmt, const Term* sign, const Term** exp,
                          const Term** mant, const Term** correction);
  /// Turns an exponent that is too large into infinity or, where `correction` asks for it, keeps
  /// the request to saturate; narrows `exp` to e bits.
  void enc_round_exponent(format fmt, const Term* is_nan, const Term* mant, const Term** exp,
                          const Term** is_inf, const Term** correction);
  /// The packed value of an e-bit unbiased exponent and an (m + 1)-bit significand, m >= 2;
  /// `correction` may be null.
  const Term* enc_pack_and_bias(format fmt, const Term* is_nan, const Term* is_inf,
                                const Term* sign, const Term* exp, const Term* mant,
                                const Term* correction);

  // Arithmetic and conversion ---------------------------------------------------------------------

  /// A packed operand and its parts: unbiased exponent (e bits), significand with hidden bit
  /// (m + 1 bits), and 1-bit flags.
  struct Operand {
    const Term* packed;
    const Term* exp;
    const Term* sign;
    const Term* mant;
    const Term* inf;
    const Term* nan;
    const Term* zero;
  };
  /// Unpacks arguments 1 and 2 of t and tracks their parts under `prefix`.
  void enc_unpack_operands(const Term* t, format fmt, const char* prefix, Operand* x, Operand* y);

  /// The operands of an addition, ordered by exponent.
  struct Addends {
    const Term* sx;  // signs of the operands as given
    const Term* sy;
    const Term* samesign;    // 1 bit
    const Term* x_bigger;    // Boolean: x has the larger exponent, or they tie; exact: magnitude
    const Term* exp_bigger;  // e bits, signed; exact: a field, unsigned, 1 for subnormals
    const Term* distance;    // e bits, unsigned
    const Term* big;         // m + 1 bits each
    const Term* small;
    bool has_field = false;  // exp_bigger is a field
  };
  const Term* enc_add_sub(const Term* t, bool is_sub);
  virtual Addends enc_add_unpack(format fmt, const Term* x, const Term* y);
  /// The exponent of the sum's top bit but one, or its field: e + 1 bits.
  virtual const Term* enc_add_exponent(format fmt, const Addends& in);
  /// The distance capped at m + 3, in m + 1 bits.
  const Term* enc_add_distance(format fmt, const Term* dist0);
  /// `small` (m + 1 bits) moved down by dist0 within m + 4 bits, three of them below its own; the
  /// lowest bit is the sticky bit of what was lost.
  virtual const Term* enc_add_align(format fmt, const Term* small, const Term* dist0,
                                    const Term** sticky);
  /// The magnitude of the sum in m + 6 bits, and the sign of the difference.
  virtual const Term* enc_add_significands(format fmt, const Addends& in, const Term** res_sign);
  /// The final result, once the sign of an exact zero is chosen.
  virtual const Term* enc_add_zero_result(const Term* rm, format fmt, const Term* x, const Term* y,
                                          const Term* rounded);
  /// The sign rule for the sum of two zeros (IEEE 754-2019, clause 6.3), as two Boolean terms: the
  /// operands are zeros and their sum is +0, or -0. Returns the second.
  const Term* enc_add_sub_both_zero(const Term* rm, format fmt, bool is_sub, const Term* x,
                                    const Term* y, const Term** pos_zero_out,
                                    const Term** neg_zero_out);
  /// Bits by which a divider's exponents are wider than e.
  virtual std::size_t enc_div_extension(format fmt) const;
  /// The quotient's m + 5 bits with a sticky bit below, and its exponent.
  const Term* enc_div_significands(format fmt, const Operand& x, const Operand& y,
                                   const Term** exp);
  /// Rounds an unpacked value of format `from` into the format `to`, or packs it where nothing
  /// needs rounding.
  virtual const Term* enc_cast_finish(const Term* rm, format from, format to,
                                      const Unrounded& value);

  // Debugging -------------------------------------------------------------------------------------

  bool is_debugging() const { return debug; }
  /// In debug mode, ties a non-null `t` to a fresh constant called `name`.
  void debug_track_term(const Term* t, const char* name);
  /// The same for a part of an operand, called "<prefix><part><number>".
  void debug_track_part(const char* prefix, const char* part, std::size_t number, const Term* t);
  /// In debug mode, tracks what the comparison `t` reads, before it is built: nothing.
  virtual void debug_track_comparison(const Term* t);

  /// The cached encoding of argument i of t.
  const Term* encoded_arg(const Term* t, std::size_t i) const { return get_cached(t->get_arg(i)); }

 private:
  using DispatchRow = std::pair<SymbolTag::tag, EncodeMethod>;
  using DispatchTable = hsh::Hashtable<DispatchRow, hsh::GetKey_pair<DispatchRow>, SymbolTag::tag>;
  static_assert(sizeof(DispatchTable::Node) == 32, "link, tag and a two-word method pointer");

  void enc_test_fields(const Term* t, format fmt, const Term** at_max, const Term** no_fraction);
  void constrain_nan(const Term* k, format fmt);
  const Term* find_ite_constant(const Term* ite) const;
  const Term* make_ite_constant(const Term* ite);
  bool push_missing_args(const Term* t);
  const Term* encode(const Term* t);
  void check_leaf(const Term* t) const;
  const DataType* find_encoding_type(const DataType* type);

  // Protected are the members that circuits of derived encoders read. The order is fixed.
 protected:
  TermManager* src_mgr;  // manager of the input, borrowed
  TermManager* dst_mgr;  // manager of the encodings, borrowed

 private:
  Logger* logger;                   // diagnostic output
  bool own_logger;                  // whether `logger` is the encoder's to delete
  bool debug;                       // whether debug_track_term does anything
  const TerminationTest* termtest;  // kept for the owner, borrowed
  DispatchTable dispatch;           // kind of a symbol to the method that encodes it

 protected:
  const Term* rm_even_bv;       // codes of the rounding modes, all of one width: 0
  const Term* rm_zero_bv;       // 1
  const Term* rm_plus_inf_bv;   // 2
  const Term* rm_minus_inf_bv;  // 3

 private:
  TermMap cache;                              // term to encoding, kept from call to call
  std::vector<const Term*> side_constraints;  // of the current call
  TermMap ite_cache;                    // if-then-else to its fresh constant, of the current call
  std::vector<const Term*> work_stack;  // of the current call
  std::vector<const Term*> trail;       // terms in the order in which they entered the cache
  std::ostringstream name_buf;          // where fresh names are put together

  std::int32_t rounding_counter;  // next number of a ".fp.r" name
  std::int32_t const_counter;     // of a ".fp.f" or ".fp.bv" name: they share it
  std::int32_t ite_counter;       // of a ".fp.i" name

 protected:
  std::int32_t spare_counter;  // of a name that only a derived encoder makes

 private:
  std::vector<const Term*> new_bv_terms;  // for get_new_bv_terms

  bool free_constants = true;                         // see set_free_constants
  std::shared_ptr<const TermManager::Holder> holder;  // append_held_terms, for collections
};

}  // namespace vorn::fp

#endif
