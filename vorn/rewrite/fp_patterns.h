// What the rules ask of terms and formats.
#ifndef VORN_REWRITE_FP_PATTERNS_H
#define VORN_REWRITE_FP_PATTERNS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "vorn/terms/ieee_float.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn::rewrite {

using Format = IEEEFloat::format;
using Mode = IEEEFloat::rounding_mode;

// Formats ---------------------------------------------------------------------------------------

Format format_of(const Term* t);
/// The bias, or a number beyond all widths where it is larger.
std::uint64_t bias_of(Format f);
/// Whether every value of `narrow` is one of `wide`: at least as many bits in both fields.
bool contains(Format wide, Format narrow);
/// Whether the nearest integer of every value is a value: the integers below 2^(m+1) are.
bool has_integers(Format f);

// Literals --------------------------------------------------------------------------------------

/// A float, or none. The static analyser misreads the destructor of an optional one.
class OptionalFloat {
 public:
  OptionalFloat() : value({2, 1}, Mode::nearest_even) {}
  explicit OptionalFloat(IEEEFloat number) : value(std::move(number)), present(true) {}

  explicit operator bool() const { return present; }
  const IEEEFloat& operator*() const { return value; }
  const IEEEFloat* operator->() const { return &value; }

 private:
  IEEEFloat value;
  bool present = false;
};

bool is_float(const Term* t);
OptionalFloat float_literal(const Term* t);
std::optional<Mode> mode_literal(const TermManager& mgr, const Term* t);
IEEEFloat make_one(Format f);
bool is_one(const IEEEFloat& value);

/// The mode that rounds -x as `mode` rounds x: directions change places.
Mode mirrored(Mode mode);
bool is_symmetric(Mode mode);
bool is_directed(Mode mode);

// Terms -----------------------------------------------------------------------------------------

inline bool has_tag(const Term* t, SymbolTag::tag tag) {
  return t->get_tag() == tag;
}
/// Whether `t` casts into a format that contains the other.
bool is_widening(const Term* t);
/// The term of format `f` that `t` is an exact cast of, or would be: a widening, a literal with
/// that value, a converted integer, or the negation or absolute value of one. Null if there is
/// none.
const Term* narrowed(TermManager& mgr, const Term* t, Format f);
/// False where `t` may be NaN as far as its outermost operations tell.
bool is_never_nan(const Term* t);

/// An integer that a conversion turned into a float.
struct Integer {
  const Term* bits;
  bool is_signed;
  std::size_t width() const { return bits->get_type()->get_width(); }
};
std::optional<Integer> converted_integer(const Term* t);
/// Whether every integer of that width and kind is a value of the format.
bool is_exact(const Integer& integer, Format f);

}  // namespace vorn::rewrite

#endif
