// Bit-vector values of a strict width.
//
// The value half of a bit-vector theory: every operation demands the operand widths that the
// theory demands and throws otherwise, in every build. A circuit written over this type is checked
// for well-formed widths by being run, which is how the tests know which formats it supports.
#ifndef VORN_TESTS_ORACLE_STRICT_BITS_H
#define VORN_TESTS_ORACLE_STRICT_BITS_H

#include <cstddef>
#include <stdexcept>

#include "tests/oracle/word.h"

namespace vorn::oracle {

/// Operand widths that no bit-vector operation accepts.
class WidthError : public std::logic_error {
 public:
  using std::logic_error::logic_error;
};

/// Out of line, so that the checks, a few hundred an evaluation, are inlined as one comparison.
[[noreturn, gnu::noinline, gnu::cold]] inline void refuse_widths(const char* what) {
  throw WidthError(what);
}

/// An unsigned value of exactly `width()` bits, held in a Word.
template <class Word>
class StrictBits {
 public:
  /// The value must fit the width.
  StrictBits(const Word& value, std::size_t width) : bits(value), length(width) {
    require(width >= 1 && width <= kMaxWidth, "width out of range");
    require(width <= kWordBits<Word>, "width above the word's");
    require(low_bits(value, width) == value, "value above the width's range");
  }
  /// The value modulo 2^width.
  static StrictBits modulo(const Word& value, std::size_t width) {
    return StrictBits(low_bits(value, width), width);
  }
  /// The two's complement of a signed value, modulo 2^width.
  static StrictBits twos_complement(long value, std::size_t width) {
    return modulo(static_cast<Word>(value), width);
  }
  static StrictBits flag(bool value) { return StrictBits(Word{value ? 1U : 0U}, 1); }

  const Word& value() const { return bits; }
  std::size_t width() const { return length; }
  bool is_zero() const { return bits == 0; }
  bool top_bit() const { return test_bit(bits, length - 1); }
  /// Whether this one-bit value is 1.
  bool is_set() const {
    require(length == 1, "a flag is one bit wide");
    return bits != 0;
  }

  StrictBits extract(std::size_t msb, std::size_t lsb) const {
    require(lsb <= msb && msb < length, "extract outside its operand");
    return modulo(shift_right(bits, lsb), msb - lsb + 1);
  }
  StrictBits zero_extend(std::size_t n) const {
    require(n <= kMaxWidth, "negative extension");
    return StrictBits(bits, length + n);
  }
  StrictBits sign_extend(std::size_t n) const {
    require(n <= kMaxWidth, "negative extension");
    if (n == 0 || !top_bit()) return zero_extend(n);
    return ~(~*this).zero_extend(n);
  }

  StrictBits operator~() const {
    return modulo(Word(shift_left(Word{1}, length) - 1 - bits), length);
  }
  StrictBits operator-() const { return modulo(Word(Word{0} - bits), length); }

  friend StrictBits operator&(const StrictBits& a, const StrictBits& b) {
    return StrictBits(Word(a.bits & b.bits), common_width(a, b));
  }
  friend StrictBits operator|(const StrictBits& a, const StrictBits& b) {
    return StrictBits(Word(a.bits | b.bits), common_width(a, b));
  }
  friend StrictBits operator+(const StrictBits& a, const StrictBits& b) {
    return modulo(Word(a.bits + b.bits), common_width(a, b));
  }
  friend StrictBits operator-(const StrictBits& a, const StrictBits& b) {
    return modulo(Word(a.bits - b.bits), common_width(a, b));
  }
  friend StrictBits operator*(const StrictBits& a, const StrictBits& b) {
    return modulo(Word(a.bits * b.bits), common_width(a, b));
  }

  /// Unsigned quotient; all ones for a zero divisor.
  friend StrictBits udiv(const StrictBits& a, const StrictBits& b) {
    const std::size_t width = common_width(a, b);
    return b.is_zero() ? ~b : StrictBits(Word(a.bits / b.bits), width);
  }
  /// Unsigned remainder; the dividend for a zero divisor.
  friend StrictBits urem(const StrictBits& a, const StrictBits& b) {
    const std::size_t width = common_width(a, b);
    return b.is_zero() ? a : StrictBits(Word(a.bits % b.bits), width);
  }
  friend StrictBits shl(const StrictBits& a, const StrictBits& b) {
    const std::size_t width = common_width(a, b);
    return b.reaches(width) ? StrictBits(Word{0}, width)
                            : modulo(shift_left(a.bits, to_size(b.bits)), width);
  }
  friend StrictBits lshr(const StrictBits& a, const StrictBits& b) {
    const std::size_t width = common_width(a, b);
    return b.reaches(width) ? StrictBits(Word{0}, width)
                            : StrictBits(shift_right(a.bits, to_size(b.bits)), width);
  }
  friend StrictBits concat(const StrictBits& high, const StrictBits& low) {
    const std::size_t width = high.length + low.length;
    return StrictBits(Word(shift_left(high.bits, low.length) | low.bits), width);
  }

  /// The one-bit equality.
  friend StrictBits comp(const StrictBits& a, const StrictBits& b) { return flag(equal(a, b)); }
  friend bool equal(const StrictBits& a, const StrictBits& b) {
    common_width(a, b);
    return a.bits == b.bits;
  }
  friend bool ult(const StrictBits& a, const StrictBits& b) {
    common_width(a, b);
    return a.bits < b.bits;
  }
  friend bool slt(const StrictBits& a, const StrictBits& b) {
    common_width(a, b);
    return a.top_bit() != b.top_bit() ? a.top_bit() : a.bits < b.bits;
  }
  friend bool sle(const StrictBits& a, const StrictBits& b) { return !slt(b, a); }
  /// If-then-else: the branches must agree in width whichever is taken.
  friend StrictBits select(bool c, const StrictBits& a, const StrictBits& b) {
    common_width(a, b);
    return c ? a : b;
  }

 private:
  /// Far above any circuit's, so that a width that wrapped below zero is caught.
  static constexpr std::size_t kMaxWidth = std::size_t{1} << 20;

  static void require(bool condition, const char* what) {
    if (!condition) refuse_widths(what);
  }
  static std::size_t common_width(const StrictBits& a, const StrictBits& b) {
    require(a.length == b.length, "operands of different widths");
    return a.length;
  }
  bool reaches(std::size_t n) const { return bits >= static_cast<unsigned long>(n); }

  Word bits;
  std::size_t length;
};

}  // namespace vorn::oracle

#endif
