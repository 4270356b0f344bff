// What the names of intermediate values mean: one row a label.
//
// In debug mode the encoders tie each intermediate value to a constant of its name. A row says in
// which stage of the operation the value comes up and how its bits are to be read; what the row of
// a significand says about its point and its exponent makes a number of it. Ties are found among
// the side constraints of an encoding in the order in which the circuit was built.
#ifndef VORN_FP_LABELS_H
#define VORN_FP_LABELS_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn::fp {

/// Stages of an operation.
enum class Stage : std::uint8_t {
  unpack,
  compare,
  select,
  normalise_operands,
  align,
  add,
  multiply,
  divide,
  root,
  reduce,
  integer,
  special,
  scale,
  normalise,
  denormalise,
  round,
  pack,
  result,
  other,  // of a label without a row
};

/// The name that tables and pictures have for a stage.
VORN_EXPORT std::string_view get_stage_name(Stage stage);

/// How the bits of a value are to be read.
enum class Reading : std::uint8_t {
  bits,                // as they are
  flag,                // not zero is yes
  sign,                // 1 is minus
  mode,                // the code of a rounding mode
  exponent,            // a two's-complement number
  exponent_field,      // a biased exponent
  count,               // a non-negative number
  significand,         // a non-negative number with a point, times a power of two
  signed_significand,  // the same in two's complement
  magnitude,           // a packed float without its sign
  source,              // a packed float of the operands' format
  target,              // a packed float of the result's format, or the result as it is
};

/// The name of a reading, as in `vorn explain --json`.
VORN_EXPORT std::string_view get_reading_name(Reading reading);

/// The power of two that goes with a significand.
enum class Scale : std::uint8_t {
  none,
  exponent,   // 2 to the value of the label
  subnormal,  // likewise, but of an exponent that packing takes for a subnormal that of these
  biased,     // the label is an exponent field
};

/// What is known of the intermediate values of one name.
struct Label {
  /// The name; `*` stands for the operation and `#` for the number of an operand, also in
  /// `exponent`.
  std::string_view name;
  Stage stage;
  Reading reading;
  /// Of a significand: the label of its exponent, and how many bits stand before the point.
  std::string_view exponent = {};
  std::size_t integer_bits = 1;
  Scale scale = Scale::exponent;
  /// What is to be added to the exponent.
  int offset = 0;
};

/// The row of a label; one of no name, in no stage, where there is none.
VORN_EXPORT const Label& find_label(std::string_view name);

/// The label of the exponent that the row of the label `name` speaks of.
VORN_EXPORT std::string get_exponent_label(std::string_view name, const Label& row);

/// A value and the constant that it is tied to.
struct Tie {
  /// The debug label, which is how the constant's name begins.
  std::string label;
  /// Counts the ties of that label, from 1 on.
  std::size_t occurrence;
  /// The named constant.
  const Term* constant;
  /// What it is equal to.
  const Term* value;
};

/// The ties among the side constraints of encodings in debug mode, in order. The constants that
/// `is_input` holds for are none of a tie, whatever their names.
VORN_EXPORT std::vector<Tie> find_ties(TermManager& manager,
                                       std::span<const Term* const> constraints,
                                       const std::function<bool(const Term*)>& is_input);

}  // namespace vorn::fp

#endif
