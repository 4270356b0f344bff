// Unsigned integers of three sizes under one set of names.
//
// Exhaustive tests evaluate small formats millions of times, where a machine word is an order of
// magnitude faster than GMP; the large formats need GMP. The oracles are therefore templates over
// the word they compute with, and `with_word` picks the smallest one that holds a computation.
#ifndef VORN_TESTS_ORACLE_WORD_H
#define VORN_TESTS_ORACLE_WORD_H

#include <gmpxx.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace vorn::oracle {

using Word64 = std::uint64_t;
__extension__ typedef unsigned __int128 Word128;

/// Bits that a word can hold.
template <class Word>
inline constexpr std::size_t kWordBits = 8 * sizeof(Word);
template <>
inline constexpr std::size_t kWordBits<mpz_class> = std::numeric_limits<std::size_t>::max();

/// Shifts that, unlike the operators on machine words, accept any distance.
template <class Word>
Word shift_left(const Word& v, std::size_t n) {
  return n >= kWordBits<Word> ? Word{0} : static_cast<Word>(v << n);
}
inline mpz_class shift_left(const mpz_class& v, std::size_t n) {
  return v << n;
}

template <class Word>
Word shift_right(const Word& v, std::size_t n) {
  return n >= kWordBits<Word> ? Word{0} : static_cast<Word>(v >> n);
}
inline mpz_class shift_right(const mpz_class& v, std::size_t n) {
  return v >> n;
}

/// v modulo 2^n.
template <class Word>
Word low_bits(const Word& v, std::size_t n) {
  return n >= kWordBits<Word> ? v : static_cast<Word>(v & ((Word{1} << n) - 1));
}
inline mpz_class low_bits(const mpz_class& v, std::size_t n) {
  mpz_class result;
  mpz_fdiv_r_2exp(result.get_mpz_t(), v.get_mpz_t(), n);
  return result;
}

template <class Word>
bool test_bit(const Word& v, std::size_t n) {
  return (shift_right(v, n) & 1U) != 0;
}
inline bool test_bit(const mpz_class& v, std::size_t n) {
  return mpz_tstbit(v.get_mpz_t(), n) != 0;
}

/// Number of significant bits: 0 for 0, else floor(log2 v) + 1.
inline std::size_t bit_length(Word64 v) {
  return static_cast<std::size_t>(std::bit_width(v));
}
inline std::size_t bit_length(Word128 v) {
  const auto high = static_cast<Word64>(v >> 64);
  return high != 0 ? 64 + bit_length(high) : bit_length(static_cast<Word64>(v));
}
inline std::size_t bit_length(const mpz_class& v) {
  return v == 0 ? 0 : mpz_sizeinbase(v.get_mpz_t(), 2);
}

/// Between GMP's integers and words; the value must fit.
template <class Word>
Word to_word(const mpz_class& v) {
  const Word low = mpz_get_ui(v.get_mpz_t());
  if constexpr (sizeof(Word) > sizeof(Word64)) {
    return low | Word{mpz_class(v >> 64).get_ui()} << 64;
  } else {
    return low;
  }
}
template <>
inline mpz_class to_word<mpz_class>(const mpz_class& v) {
  return v;
}

template <class Word>
std::size_t to_size(const Word& v) {
  return static_cast<std::size_t>(v);
}
inline std::size_t to_size(const mpz_class& v) {
  return v.get_ui();
}

inline mpz_class to_mpz(Word64 v) {
  return mpz_class(v);
}
inline mpz_class to_mpz(Word128 v) {
  mpz_class result = static_cast<Word64>(v >> 64);
  result <<= 64;
  result += static_cast<Word64>(v);
  return result;
}
inline mpz_class to_mpz(const mpz_class& v) {
  return v;
}

/// Calls `compute` with a value-initialised word of at least `bits` bits, for its type.
template <class Compute>
auto with_word(std::size_t bits, Compute compute) {
  if (bits <= kWordBits<Word64>) return compute(Word64{});
  if (bits <= kWordBits<Word128>) return compute(Word128{});
  return compute(mpz_class{});
}

}  // namespace vorn::oracle

#endif
