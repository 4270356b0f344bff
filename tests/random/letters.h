// The sorts that the letters of a signature stand for in one application.
#ifndef VORN_TESTS_RANDOM_LETTERS_H
#define VORN_TESTS_RANDOM_LETTERS_H

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "tests/random/operators.h"
#include "tests/random/random.h"
#include "tests/random/script.h"

namespace vorn::random {

inline constexpr Sort kNoFormat = {Sort::Kind::floating};

template <class T>
T pick_from(const std::vector<T>& from, const T& none, Random& random) {
  return from.empty() ? none : random.pick(from);
}

/// The letters of one application of a signature.
class Letters {
 public:
  Letters(const Palette& preferred, Random& source) : palette(preferred), random(source) {}

  /// Binds the letter of the result. False where nothing of that letter has the sort.
  bool bind(char letter, const Sort& sort) {
    any = sort;
    switch (letter) {
      case 'B':
        return sort == kBool;
      case '1':
        return sort == bits_sort(1);
      case 'V':
        width = sort.w0;
        return sort.kind == Sort::Kind::bits;
      case 'F':
        format = sort;
        return sort.kind == Sort::Kind::floating;
      case 'T':
        return sort.kind == Sort::Kind::bits && bind_format(sort.w0);
      case 'Y':
        array = sort;
        return sort.kind == Sort::Kind::array;
      case 'E':
        return bind_element(sort);
      default:
        return letter == 'A' && sort.kind != Sort::Kind::real;
    }
  }

  /// Chooses sorts for letters that the result left open. False where the palette has none.
  bool choose(std::string_view letters, char result) {
    if (letters.find('A') != std::string_view::npos && result != 'A') {
      any = palette.random_sort(random);
    }
    if (width == 0) width = pick_from(palette.widths, std::size_t{0}, random);
    if (format.w0 == 0) format = pick_from(palette.floats, kNoFormat, random);
    second_width = pick_from(palette.widths, std::size_t{0}, random);
    second_format = pick_from(palette.floats, kNoFormat, random);
    for (const char letter : letters) {
      const Sort sort = get(letter);
      if (sort.kind == Sort::Kind::bits && sort.w0 == 0) return false;
      if (sort.kind == Sort::Kind::floating && sort.w0 == 0) return false;
      if (letter == 'H') low_width = width - sort.w0;
    }
    return true;
  }

  /// The sort of an argument; letters of free choice may get another one each time.
  Sort get(char letter) {
    switch (letter) {
      case 'B':
        return kBool;
      case 'R':
        return kMode;
      case 'Q':
        return kReal;
      case '1':
        return bits_sort(1);
      case 'A':
        return any;
      case 'V':
        return bits_sort(width);
      case 'W':
        return bits_sort(second_width);
      case 'N':
        return bits_sort(1 + random.below(width));
      case 'X':
        return bits_sort(std::max(second_width, width + random.below(4)));
      case 'D':
        return bits_sort(divisor());
      case 'H':
        if (high_width == 0 && width > 1) high_width = 1 + random.below(width - 1);
        return bits_sort(high_width);
      case 'L':
        return bits_sort(low_width);
      case 'F':
        return format;
      case 'G':
        return second_format;
      case 'T':
        return bits_sort(format.width());
      case 'P':
        return bits_sort(format.w0);
      case 'Y':
        return array;
      case 'I':
        return index_of(array);
      case 'E':
        return element_of(array);
      default:
        return bits_sort(format.w1 - 1);  // M
    }
  }

 private:
  bool bind_format(std::size_t total) {
    for (const Sort& sort : palette.floats) {
      if (sort.width() == total) format = sort;
    }
    return format.w0 != 0;
  }

  /// Any array of these elements that the palette has.
  bool bind_element(const Sort& element) {
    std::vector<Sort> fitting;
    for (const Sort& sort : palette.arrays) {
      if (element_of(sort) == element) fitting.push_back(sort);
    }
    if (!fitting.empty()) array = random.pick(fitting);
    return !fitting.empty();
  }

  std::size_t divisor() {
    std::vector<std::size_t> divisors;
    for (std::size_t d = 1; d <= width; ++d) {
      if (width % d == 0) divisors.push_back(d);
    }
    return random.pick(divisors);
  }

  const Palette& palette;
  Random& random;
  Sort any;
  Sort array;
  std::size_t width = 0;
  std::size_t second_width = 0;
  std::size_t high_width = 0;
  std::size_t low_width = 0;
  Sort format = kNoFormat;
  Sort second_format = kNoFormat;
};

}  // namespace vorn::random

#endif
