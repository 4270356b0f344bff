// What terms are as real numbers: polynomials, but for what rounding adds.
//
// A rounded sum differs from the sum by half a unit in the last place, or one in directed modes. So
// where ranges say how large results get, a term is a polynomial in the constants and an error that
// is bounded, and terms that are computed in different orders, or of the same operands, can be told
// to be near to each other, which their intervals cannot. Such forms of programs are in Darulova
// and Kuncak, "Sound Compilation of Reals", 2014, and in Solovyev, Baranowski, Briggs, Jacobsen,
// Rakamaric and Gopalakrishnan, "Rigorous Estimation of Floating-Point Round-Off Errors with
// Symbolic Taylor Expansions", 2018.
#ifndef VORN_REALS_FORMS_H
#define VORN_REALS_FORMS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "vorn/ranges/propagation.h"
#include "vorn/reals/bounds.h"
#include "vorn/reals/interval.h"
#include "vorn/reals/polynomial.h"
#include "vorn/reals/residues.h"
#include "vorn/terms/ieee_float.h"
#include "vorn/terms/qnumber.h"

namespace vorn::reals {

/// A value is that of the polynomial, but for an error of at most `error`, and an integral multiple
/// of 2^quantum.
struct Form {
  Polynomial value;
  QNumber error;
  std::int64_t quantum;
};

/// A rounded operation on finite operands, and where its exact result lies.
struct ExactResult {
  ranges::Propagation::Slot slot;
  Interval interval;
};

/// The forms of the floats of some formulas, in all their models, and of bit-vectors that floats
/// are converted from, as numbers without a sign.
class Forms {
 public:
  using Slot = ranges::Propagation::Slot;

  /// Borrows the ranges, which must not change before all forms are made, and bounds of
  /// polynomials. Unknowns of these are slots. Terms that come up after `most_work` coefficients
  /// were computed have no form.
  Forms(const ranges::Propagation& propagation, Bounds& intervals, std::uint64_t most_work);

  /// The form of a term; null where it has none, or may be no finite number.
  const Form* find(Slot slot) const;
  /// Of results that may be infinite as far as ranges know, and so have no form.
  const std::vector<ExactResult>& get_large_results() const { return large_results; }
  /// Coefficients that were computed.
  std::uint64_t get_work() const { return work + residues.get_work(); }
  /// Whether any bit-vector is converted to a float.
  bool has_integers() const { return residues.has_any(); }

 private:
  std::optional<Form> find_form(Slot slot);
  Form make_unknown(Slot slot) const;
  std::optional<Form> find_integer(Slot slot);
  void note_large(Slot slot);
  std::optional<Form> combine(Slot slot);
  std::optional<Form> compute(Slot slot);
  std::optional<Form> multiply(Slot a, Slot b);
  std::optional<Form> divide(Slot a, Slot b) const;
  std::optional<Form> convert_integer(Slot slot, Slot bits) const;
  std::optional<Form> take_absolute(Slot a) const;
  std::optional<Form> choose(Slot condition, Slot a, Slot b) const;
  Slot argument(Slot slot, std::size_t i) const { return ranges.get_argument(slot, i); }
  static std::int64_t find_unit(IEEEFloat::format f, const Form& form);
  bool is_exact(Slot slot, const Form& form) const;
  bool round(Slot slot, Form* form) const;
  void round_to_integer(Slot slot, Form* form) const;
  bool is_nearest(Slot slot) const;

  const ranges::Propagation& ranges;
  Bounds& bounds;
  Residues residues;
  std::vector<std::optional<Form>> forms;  // by slot
  std::vector<ExactResult> large_results;
  std::uint64_t work = 0;
};

}  // namespace vorn::reals

#endif
