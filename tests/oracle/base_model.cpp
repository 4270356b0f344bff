// The circuits on integers. `Circuits` holds one method per stage, named as the stage is, with the
// widths of its intermediate values in the comments; the free functions pick a word and call it.
//
// Notation: a format (e, m); E and W are the widths of the exponent and significand that rounding
// works on, where the significand's top bit has weight 2^exponent; K = m + 1 bits are kept.
#include "tests/oracle/base_model.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include "tests/oracle/strict_bits.h"

namespace vorn::oracle::base {
namespace {

std::size_t digits(std::size_t n) {
  return bit_length(Word64{n});
}

/// Width of the exponent once the rounding driver has widened it from `width`.
std::size_t widened_exponent(Format f, std::size_t width) {
  return std::max(width, std::max<std::size_t>(digits(f.m), f.e) + 1);
}

/// The exponent of a w-bit integer's top bit, w - 1, as a signed number: at least two bits.
std::size_t integer_exponent_width(std::size_t w) {
  return std::max<std::size_t>(2, 1 + digits(w - 1));
}

template <class Word>
class Circuits {
 public:
  using Bv = StrictBits<Word>;

  /// A sum before one of its two values is chosen.
  struct Sum {
    Bv rounded;
    Bv chosen_zero;
    bool magnitude_is_zero;
  };

  Circuits(RoundingMode mode, bool symbolic_operands) : rm(mode), symbolic(symbolic_operands) {}

  // View ----------------------------------------------------------------------------------------

  static Bv number(std::size_t value, std::size_t width) { return Bv(Word{value}, width); }
  static Bv zero(std::size_t width) { return Bv(Word{0U}, width); }

  static Bv sign(const Bv& t, Format f) { return t.extract(f.e + f.m, f.e + f.m); }
  static Bv magnitude(const Bv& t, Format f) { return t.extract(f.e + f.m - 1, 0); }
  static Bv bias(Format f, std::size_t width) {
    return number(static_cast<std::size_t>(f.bias()), width);
  }

  static Bv exponent_field(const Bv& t, Format f) { return t.extract(f.m + f.e - 1, f.m); }
  static Bv fraction(const Bv& t, Format f) { return t.extract(f.m - 1, 0); }

  /// e bits, two's complement; a field of zero reads as 1 - bias.
  static Bv exponent(const Bv& t, Format f) {
    const Bv field = exponent_field(t, f);
    return (field - bias(f, f.e)) + comp(field, zero(f.e)).zero_extend(f.e - 1);
  }

  /// m + 1 bits; the hidden bit is 0 for all-zeros and all-ones exponents.
  static Bv mantissa(const Bv& t, Format f) {
    const Bv field = exponent_field(t, f);
    const Bv hidden = ~comp(field, zero(f.e)) & ~comp(field, ~zero(f.e));
    return concat(hidden, fraction(t, f));
  }

  static Bv is_nan(const Bv& t, Format f) {
    return comp(exponent_field(t, f), ~zero(f.e)) & ~comp(fraction(t, f), zero(f.m));
  }
  static Bv is_inf(const Bv& t, Format f) {
    return comp(exponent_field(t, f), ~zero(f.e)) & comp(fraction(t, f), zero(f.m));
  }
  static Bv is_zero(const Bv& t, Format f) { return comp(magnitude(t, f), zero(f.e + f.m)); }

  /// The bitwise if-then-else of one-bit values.
  static Bv flag_ite(const Bv& c, const Bv& a, const Bv& b) { return (~c | a) & (c | b); }
  static Bv differ(const Bv& a, const Bv& b) { return ~comp(a, b); }

  // Negation and comparison ---------------------------------------------------------------------

  static Bv neg(Format f, const Bv& x) {
    return concat(is_nan(x, f) | ~sign(x, f), magnitude(x, f));
  }

  enum class Comparison { lt, le, eq };

  static bool compare(Comparison kind, Format f, const Bv& a, const Bv& b) {
    const bool nan = (is_nan(a, f) | is_nan(b, f)).is_set();
    const bool zeros = (is_zero(a, f) & is_zero(b, f)).is_set();
    const bool same = equal(a, b);
    if (kind == Comparison::eq) return (same || zeros) && !nan;
    const bool signs_differ = differ(sign(a, f), sign(b, f)).is_set();
    const bool both_negative = (sign(a, f) & sign(b, f)).is_set();
    const bool by_magnitude = ult(a, b) != both_negative;
    const bool ordered = signs_differ ? sign(a, f).is_set() : by_magnitude;
    if (kind == Comparison::lt) return ordered && !same && !zeros && !nan;
    return !nan && (ordered || zeros || same);
  }

  // Rounding ------------------------------------------------------------------------------------

  /// The packed result, 1 + e + m bits.
  Bv do_rounding(Format f, const Bv& nan, const Bv& inf, const Bv& sgn, Bv exp, Bv mant,
                 std::size_t max_shift) const {
    const std::size_t width = widened_exponent(f, exp.width());
    exp = exp.sign_extend(width - exp.width());
    // Every stage needs W >= E. Zeros below the significand leave its value as it is.
    if (mant.width() < width) mant = concat(mant, zero(width - mant.width()));
    normalize(max_shift, exp, mant);
    denormalize(f, exp, mant);
    std::optional<Bv> correction = round_mantissa(f, sgn, exp, mant);
    const Bv overflowed = round_exponent(f, nan, inf, exp, mant, correction);
    return pack(f, nan, overflowed, sgn, exp, mant, correction);
  }

  void normalize(std::size_t max_shift, Bv& exp, Bv& mant) const {
    if (!symbolic) {
      normalize_constant(max_shift, exp, mant);
    } else if (max_shift != 0) {
      normalize_linear(max_shift, exp, mant);
    } else {
      normalize_logarithmic(exp, mant);
    }
  }

  static void normalize_constant(std::size_t max_shift, Bv& exp, Bv& mant) {
    const std::size_t width = mant.width();
    const std::size_t limit = max_shift == 0 ? width : std::min(max_shift, width);
    std::size_t k = 0;
    while (k < limit && !test_bit(mant.value(), width - 1 - k))
      ++k;
    if (k == limit) return;
    mant = shl(mant, number(k, width));
    exp = exp + Bv::twos_complement(-static_cast<long>(k), exp.width());
  }

  static void normalize_linear(std::size_t max_shift, Bv& exp, Bv& mant) {
    const std::size_t width = mant.width();
    const std::size_t limit = std::min(max_shift, width);
    Bv count = zero(exp.width());
    for (std::size_t i = 0; i < limit; ++i) {
      const Bv hit = comp(mant.extract(width - 1, width - 1 - i), number(1, i + 1));
      count = count | (hit.sign_extend(exp.width() - 1) & number(i, exp.width()));
    }
    mant = shl(mant, count.zero_extend(width - exp.width()));
    exp = exp - count;
  }

  static void normalize_logarithmic(Bv& exp, Bv& mant) {
    const std::size_t width = mant.width();
    const std::size_t steps = digits(width);
    const std::size_t working = std::size_t{1} << steps;
    Bv rest = mant.zero_extend(working - width);
    Bv position = zero(working);
    for (std::size_t j = steps; j-- > 0;) {
      const std::size_t s = std::size_t{1} << j;
      const Bv ones = Bv::flag(true).sign_extend(s - 1);
      const Bv mask = concat(ones, zero(s)).zero_extend(working - 2 * s);
      const Bv hit = ~comp(rest & mask, zero(working));
      const Bv step = number(s, working) & hit.sign_extend(working - 1);
      rest = lshr(rest, step);
      position = position | step;
    }
    const Bv leading_zeros = number(width - 1, working) - position;
    mant = shl(mant, leading_zeros.extract(width - 1, 0));
    exp = exp - leading_zeros.extract(exp.width() - 1, 0);
  }

  static void denormalize(Format f, Bv& exp, Bv& mant) {
    const std::size_t exp_width = exp.width();
    const std::size_t width = mant.width();
    const Bv smallest = Bv::twos_complement(1 - f.bias(), exp_width);
    const Bv distance = smallest - exp;
    const bool denormal = slt(zero(exp_width), distance);
    exp = select(denormal, Bv::twos_complement(-f.bias(), exp_width), exp);
    const Bv wide = distance.zero_extend(width - exp_width);
    const Bv cap = number(width - 1, width);
    const Bv amount = select(ult(wide, cap), wide, cap);
    mant = select(denormal, lshr(mant, amount), mant);
  }

  /// Leaves K bits in `mant`. The result is the saturation request, absent where there was no bit
  /// to round away.
  std::optional<Bv> round_mantissa(Format f, const Bv& sgn, Bv& exp, Bv& mant) const {
    const std::size_t width = mant.width();
    const std::size_t kept = f.m + 1;
    if (width < kept) mant = concat(mant, zero(kept - width));
    if (width <= kept) return std::nullopt;
    const std::size_t extra = width - kept;
    const Bv sticky =
        extra == 1 ? Bv::flag(false) : ~comp(mant.extract(extra - 2, 0), zero(extra - 1));
    const Bv guard = mant.extract(extra - 1, extra - 1);
    const Bv chopped = mant.extract(width - 1, extra);
    const Bv least = chopped.extract(0, 0);
    Bv increment = Bv::flag(false);
    Bv correction = Bv::flag(false);
    switch (rm) {
      case RoundingMode::rne:
        increment = guard & (least | sticky);
        break;
      case RoundingMode::rtz:
        correction = Bv::flag(true);
        break;
      case RoundingMode::rtp:
        increment = ~sgn & (guard | sticky);
        correction = sgn;
        break;
      case RoundingMode::rtn:
        increment = sgn & (guard | sticky);
        correction = ~sgn;
        break;
      case RoundingMode::rna:
        throw std::invalid_argument("the base circuits have no roundTiesToAway");
    }
    const Bv sum = chopped.zero_extend(1) + increment.zero_extend(kept);
    const Bv overflow = sum.extract(kept, kept);
    exp = exp + overflow.zero_extend(exp.width() - 1);
    const Bv hidden = ~comp(sum.extract(kept, f.m), zero(2));
    mant = concat(hidden, sum.extract(f.m - 1, 0));
    return correction;
  }

  /// Leaves e bits in `exp`. The result is the infinity flag with overflow included. E is always
  /// above e here, so the stage's exit for equal widths is never taken.
  static Bv round_exponent(Format f, const Bv& nan, const Bv& inf, Bv& exp, const Bv& mant,
                           std::optional<Bv>& correction) {
    const Bv limit = number(std::size_t{1} << (f.e - 1), exp.width());
    const Bv too_large = Bv::flag(!slt(exp, limit) && !equal(mant, zero(mant.width())));
    if (correction) {
      correction = flag_ite(~nan & (~inf & too_large), *correction, Bv::flag(false));
    }
    exp = exp.extract(f.e - 1, 0);
    return inf | too_large;
  }

  static Bv pack(Format f, const Bv& nan, const Bv& inf, const Bv& sgn, const Bv& exp,
                 const Bv& mant, const std::optional<Bv>& correction) {
    const Bv biased = exp + bias(f, f.e);
    const Bv denormal = (~mant.extract(f.m, f.m)).sign_extend(f.e - 1);
    const Bv field = ~denormal & biased;
    const Bv frac = mant.extract(f.m - 1, 0);
    const Bv result_sign = flag_ite(nan | sgn, Bv::flag(true), Bv::flag(false));
    const Bv special = nan | inf;
    // For m = 1 the extension's amount wraps and the extraction is empty: both are refused.
    const Bv upper = (~special).sign_extend(std::size_t{f.m} - 2) & frac.extract(f.m - 1, 1);
    const Bv lowest = nan | (~inf & frac.extract(0, 0));
    const Bv result_exp = special.sign_extend(f.e - 1) | field;
    Bv body = concat(result_exp, concat(upper, lowest));
    if (correction) body = body - correction->zero_extend(f.e + f.m - 1);
    return concat(result_sign, body);
  }

  // Operations ----------------------------------------------------------------------------------

  static Bv flip_sign(Format f, const Bv& y) { return concat(~sign(y, f), magnitude(y, f)); }

  Sum add(Format f, const Bv& x, const Bv& y) const {
    const std::size_t m = f.m;
    const Bv ex = exponent(x, f);
    const Bv ey = exponent(y, f);
    const Bv sx = sign(x, f);
    const Bv sy = sign(y, f);
    const Bv mx = mantissa(x, f);
    const Bv my = mantissa(y, f);
    const Bv same_sign = comp(sx, sy);
    const bool x_bigger = sle(ey, ex);
    const Bv exp_bigger = select(x_bigger, ex, ey);
    const Bv difference = ex - ey;
    const Bv distance = capped_distance(f, select(x_bigger, difference, -difference));
    const Bv big = select(x_bigger, mx, my);
    const Bv small = select(x_bigger, my, mx);

    // The bits of the smaller significand below its two padding bits' reach.
    const Bv lost = shl(small, number(m + 3, m + 1) - distance);
    const Bv sticky = ~comp(lost, zero(m + 1));
    const Bv shifted = lshr(concat(small, zero(2)), distance.zero_extend(2));
    const Bv a = concat(big, zero(3)).zero_extend(2);
    const Bv b = concat(shifted, sticky).zero_extend(2);
    const Bv res = select(same_sign.is_set(), a + b, a - b);
    const Bv res_sign = res.extract(m + 5, m + 5);
    const Bv mant = select(!res_sign.is_set(), res, -res);
    const Bv exp = exp_bigger.sign_extend(1) + number(2, f.e + 1);

    const Bv ix = is_inf(x, f);
    const Bv iy = is_inf(y, f);
    const Bv nan = (ix & iy & ~same_sign) | (is_nan(x, f) | is_nan(y, f));
    const Bv inf = ~nan & (ix | iy);
    const Bv finite_sign = differ(select(x_bigger, sx, sy), res_sign);
    const Bv sgn = flag_ite(inf, flag_ite(ix, sx, sy), finite_sign);
    const Bv rounded = do_rounding(f, nan, inf, sgn, exp, mant, 0);

    const Bv absolute = magnitude(rounded, f);
    const Bv zero_sign = Bv::flag(rm == RoundingMode::rtn);
    return {rounded, concat(zero_sign, absolute), absolute.is_zero()};
  }

  /// The exponents' distance, at most m + 3, in m + 1 bits. An exponent wider than that is capped
  /// before it is narrowed.
  static Bv capped_distance(Format f, const Bv& distance) {
    const std::size_t width = f.m + 1;
    if (f.e > width) {
      const Bv cap = number(f.m + 3, f.e);
      return select(ult(distance, cap), distance, cap).extract(width - 1, 0);
    }
    const Bv wide = distance.zero_extend(width - f.e);
    const Bv cap = number(f.m + 3, width);
    return select(ult(wide, cap), wide, cap);
  }

  Bv mul(Format f, const Bv& x, const Bv& y) const {
    const std::size_t k = f.m + 1;
    const Bv mant = mantissa(x, f).zero_extend(k) * mantissa(y, f).zero_extend(k);
    const Bv exp =
        exponent(x, f).sign_extend(2) + exponent(y, f).sign_extend(2) + number(1, f.e + 2);
    const Bv ix = is_inf(x, f);
    const Bv iy = is_inf(y, f);
    const Bv nan = is_nan(x, f) | is_nan(y, f) | (is_zero(x, f) & iy) | (ix & is_zero(y, f));
    return do_rounding(f, nan, ix | iy, differ(sign(x, f), sign(y, f)), exp, mant, 0);
  }

  Bv div(Format f, const Bv& x, const Bv& y) const {
    const std::size_t m = f.m;
    Bv ex = exponent(x, f).sign_extend(2);
    Bv ey = exponent(y, f).sign_extend(2);
    Bv mx = mantissa(x, f);
    Bv my = mantissa(y, f);
    normalize(0, ex, mx);
    normalize(0, ey, my);
    const Bv a = concat(mx, zero(m + 4));
    const Bv b = my.zero_extend(m + 4);
    const Bv quotient = udiv(a, b);
    const Bv remainder = urem(a, b);
    const Bv mant = concat(quotient.extract(m + 4, 0), ~comp(remainder, zero(2 * m + 5)));
    const Bv exp = ex - ey;

    const Bv ix = is_inf(x, f);
    const Bv iy = is_inf(y, f);
    const Bv zx = is_zero(x, f);
    const Bv zy = is_zero(y, f);
    const Bv sgn = differ(sign(x, f), sign(y, f));
    const Bv nan = is_nan(x, f) | is_nan(y, f) | (zx & zy) | (ix & iy);
    const Bv inf = ~nan & ((~zx & zy) | ix);
    const Bv rounded = do_rounding(f, nan, inf, sgn, exp, mant, 2);

    const Bv zero_result = ~nan & ((~inf & iy) | (zx & ~zy));
    const Bv mask = (~zero_result).sign_extend(f.e + m);
    return (mask & rounded) | concat(~nan & sgn, zero(f.e + m));
  }

  Bv cast(Format from, Format to, const Bv& x) const {
    const Bv exp = exponent(x, from);
    const Bv mant = mantissa(x, from);
    const Bv nan = is_nan(x, from);
    const Bv inf = is_inf(x, from);
    if (to.e < from.e || to.m < from.m) {
      return do_rounding(to, nan, inf, sign(x, from), exp, mant, 0);
    }
    const Bv widened = to.m == from.m ? mant : concat(mant, zero(to.m - from.m));
    return pack(to, nan, inf, sign(x, from), exp.sign_extend(to.e - from.e), widened, std::nullopt);
  }

  Bv from_integer(Format f, const Bv& sgn, const Bv& absolute) const {
    const std::size_t w = absolute.width();
    const Bv no = Bv::flag(false);
    return do_rounding(f, no, no, sgn, number(w - 1, integer_exponent_width(w)), absolute, 0);
  }
  Bv from_sbv(Format f, const Bv& v) const {
    const Bv sgn = v.extract(v.width() - 1, v.width() - 1);
    return from_integer(f, sgn, select(!sgn.is_set(), v, -v));
  }
  Bv from_ubv(Format f, const Bv& v) const { return from_integer(f, Bv::flag(false), v); }

 private:
  RoundingMode rm;
  bool symbolic;
};

/// Bits that the widest value of a circuit takes, when rounding gets E bits of exponent and W of
/// significand: the logarithmic strategy works on the next power of two above W.
std::size_t widest(Format f, std::size_t exponent, std::size_t significand) {
  const std::size_t rounding =
      std::max({significand, widened_exponent(f, exponent), std::size_t{f.m} + 2});
  return std::max<std::size_t>(f.width(), std::size_t{1} << digits(rounding));
}
std::size_t widest(Format f) {
  return widest(f, f.e + 2, 2 * f.m + 5);
}

/// Runs `compute(circuits, x, y)` on words of at least `bits` bits.
template <class Compute>
auto run(std::size_t bits, RoundingMode rm, bool symbolic, Compute compute) {
  return with_word(bits, [&]<class Word>(const Word&) {
    const auto input = [](const Bits& v, std::size_t width) {
      if (v < 0 || bit_length(v) > width) throw WidthError("pattern wider than its operand");
      return StrictBits<Word>(to_word<Word>(v), width);
    };
    return compute(Circuits<Word>(rm, symbolic), input);
  });
}

Bits sum(RoundingMode rm, Format f, const Bits& x, const Bits& y, bool symbolic, bool is_sub) {
  return run(widest(f), rm, symbolic, [&](const auto& circuits, const auto& input) {
    const auto b = input(y, f.width());
    const auto s = circuits.add(f, input(x, f.width()), is_sub ? circuits.flip_sign(f, b) : b);
    return to_mpz(s.magnitude_is_zero ? s.chosen_zero.value() : s.rounded.value());
  });
}

bool zero_conflict(RoundingMode rm, Format f, const Bits& x, const Bits& y, bool is_sub) {
  return run(widest(f), rm, true, [&](const auto& circuits, const auto& input) {
    const auto b = input(y, f.width());
    const auto s = circuits.add(f, input(x, f.width()), is_sub ? circuits.flip_sign(f, b) : b);
    return s.magnitude_is_zero && !equal(s.chosen_zero, s.rounded);
  });
}

/// Runs an operation without rounding on one or two operands of a format.
template <class Compute>
auto unrounded(Format f, Compute compute) {
  return run(f.width() + 1, RoundingMode::rne, false, compute);
}

}  // namespace

Bits add(RoundingMode rm, Format f, const Bits& x, const Bits& y, bool symbolic) {
  return sum(rm, f, x, y, symbolic, false);
}

Bits sub(RoundingMode rm, Format f, const Bits& x, const Bits& y, bool symbolic) {
  return sum(rm, f, x, y, symbolic, true);
}

Bits mul(RoundingMode rm, Format f, const Bits& x, const Bits& y, bool symbolic) {
  return run(widest(f), rm, symbolic, [&](const auto& circuits, const auto& input) {
    return to_mpz(circuits.mul(f, input(x, f.width()), input(y, f.width())).value());
  });
}

Bits div(RoundingMode rm, Format f, const Bits& x, const Bits& y, bool symbolic) {
  return run(widest(f), rm, symbolic, [&](const auto& circuits, const auto& input) {
    return to_mpz(circuits.div(f, input(x, f.width()), input(y, f.width())).value());
  });
}

Bits cast(RoundingMode rm, Format from, Format to, const Bits& x, bool symbolic) {
  const std::size_t bits = std::max<std::size_t>(widest(to, from.e, from.m + 1), from.width());
  return run(bits, rm, symbolic, [&](const auto& circuits, const auto& input) {
    return to_mpz(circuits.cast(from, to, input(x, from.width())).value());
  });
}

Bits from_sbv(RoundingMode rm, unsigned w, Format f, const Bits& v, bool symbolic) {
  const std::size_t bits = widest(f, integer_exponent_width(w), w);
  return run(bits, rm, symbolic, [&](const auto& circuits, const auto& input) {
    return to_mpz(circuits.from_sbv(f, input(v, w)).value());
  });
}

Bits from_ubv(RoundingMode rm, unsigned w, Format f, const Bits& v, bool symbolic) {
  const std::size_t bits = widest(f, integer_exponent_width(w), w);
  return run(bits, rm, symbolic, [&](const auto& circuits, const auto& input) {
    return to_mpz(circuits.from_ubv(f, input(v, w)).value());
  });
}

bool add_zero_conflict(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  return zero_conflict(rm, f, x, y, false);
}

bool sub_zero_conflict(RoundingMode rm, Format f, const Bits& x, const Bits& y) {
  return zero_conflict(rm, f, x, y, true);
}

Bits neg(Format f, const Bits& x) {
  return unrounded(f, [&](const auto& circuits, const auto& input) {
    return to_mpz(circuits.neg(f, input(x, f.width())).value());
  });
}

bool is_nan(Format f, const Bits& x) {
  return unrounded(f, [&](const auto& circuits, const auto& input) {
    return circuits.is_nan(input(x, f.width()), f).is_set();
  });
}

bool is_inf(Format f, const Bits& x) {
  return unrounded(f, [&](const auto& circuits, const auto& input) {
    return circuits.is_inf(input(x, f.width()), f).is_set();
  });
}

bool is_zero(Format f, const Bits& x) {
  return unrounded(f, [&](const auto& circuits, const auto& input) {
    return circuits.is_zero(input(x, f.width()), f).is_set();
  });
}

bool eq(Format f, const Bits& x, const Bits& y) {
  return unrounded(f, [&](const auto& circuits, const auto& input) {
    using C = std::decay_t<decltype(circuits)>;
    return C::compare(C::Comparison::eq, f, input(x, f.width()), input(y, f.width()));
  });
}

bool lt(Format f, const Bits& x, const Bits& y) {
  return unrounded(f, [&](const auto& circuits, const auto& input) {
    using C = std::decay_t<decltype(circuits)>;
    return C::compare(C::Comparison::lt, f, input(x, f.width()), input(y, f.width()));
  });
}

bool le(Format f, const Bits& x, const Bits& y) {
  return unrounded(f, [&](const auto& circuits, const auto& input) {
    using C = std::decay_t<decltype(circuits)>;
    return C::compare(C::Comparison::le, f, input(x, f.width()), input(y, f.width()));
  });
}

bool same(Format f, const Bits& x, const Bits& y) {
  return unrounded(f, [&](const auto&, const auto& input) {
    return equal(input(x, f.width()), input(y, f.width()));
  });
}

bool supports_unrounded(Format f) {
  return f.e >= 2 && f.m >= 1;
}

// Packing builds the fraction from its upper m - 1 bits and its lowest one, and so needs m >= 2.
// Nothing else narrows the choice in rounding: the exponent is widened until it holds m and is
// wider than e, and the significand is padded until it is as wide as the exponent. The other
// stages of addition would ask for no more (m + 3 must fit m + 1 bits, which is again m >= 2).
bool supports_arithmetic(Format f) {
  return f.e >= 2 && f.m >= 2;
}

// The operands' significands of m + 1 bits are normalised before the rounding driver could pad
// them. The logarithmic strategy reads the low e + 2 bits of a count that has as many bits as the
// next power of two above m + 1; the constant strategy, which folding takes, has no such need.
bool supports_division(Format f, bool symbolic) {
  const std::size_t count = std::size_t{1} << digits(f.m + 1);
  return supports_arithmetic(f) && (!symbolic || f.e + 2 <= count);
}

// Both paths end in packing. The source may have m = 1: only its fields are read.
bool supports_cast(Format from, Format to) {
  return supports_unrounded(from) && supports_arithmetic(to);
}

bool supports_integer(unsigned w, Format f) {
  return w >= 1 && supports_arithmetic(f);
}

}  // namespace vorn::oracle::base
