#include "tests/random/operators.h"

#include <fmt/format.h>

#include <algorithm>

namespace vorn::random {
namespace {

using enum Growth;

constexpr Operator kOperators[] = {
    // Core
    {"not", "B:B", 6},
    {"and", "B:BB+", 8},
    {"or", "B:BB+", 6},
    {"xor", "B:BB+", 3},
    {"=>", "B:BB+", 3},
    {"=", "B:AA+", 14},
    {"distinct", "B:AA+", 4},
    {"ite", "A:BAA", 5},

    // Bit-vectors
    {"concat", "V:HL"},
    {"extract", "V:X", 4, linear, 0, Index::extraction},
    {"zero_extend", "V:N", 2, linear, 0, Index::extension},
    {"sign_extend", "V:N", 3, linear, 0, Index::extension},
    {"repeat", "V:D", 1, linear, 0, Index::repetition},
    {"rotate_left", "V:V", 1, linear, 0, Index::rotation},
    {"rotate_right", "V:V", 1, linear, 0, Index::rotation},
    {"bvnot", "V:V"},
    {"bvneg", "V:V", 4, linear, 5},
    {"bvand", "V:VV+"},
    {"bvor", "V:VV+"},
    {"bvxor", "V:VV+", 4, linear, 3},
    {"bvnand", "V:VV", 1},
    {"bvnor", "V:VV", 1},
    {"bvxnor", "V:VV", 2, linear, 3},
    {"bvadd", "V:VV+", 5, linear, 10},
    {"bvsub", "V:VV", 4, linear, 10},
    {"bvmul", "V:VV+", 4, quadratic, 12},
    {"bvudiv", "V:VV", 2, quadratic, 20},
    {"bvurem", "V:VV", 2, quadratic, 20},
    {"bvsdiv", "V:VV", 2, quadratic, 25},
    {"bvsrem", "V:VV", 2, quadratic, 25},
    {"bvsmod", "V:VV", 2, quadratic, 30},
    {"bvshl", "V:VV", 3, linear, 20},
    {"bvlshr", "V:VV", 3, linear, 20},
    {"bvashr", "V:VV", 3, linear, 20},
    {"bvcomp", "1:VV", 3, linear, 3},
    {"bvult", "B:VV", 3, linear, 5},
    {"bvule", "B:VV", 3, linear, 5},
    {"bvugt", "B:VV", 2, linear, 5},
    {"bvuge", "B:VV", 2, linear, 5},
    {"bvslt", "B:VV", 3, linear, 5},
    {"bvsle", "B:VV", 3, linear, 5},
    {"bvsgt", "B:VV", 2, linear, 5},
    {"bvsge", "B:VV", 2, linear, 5},

    // Floats: fields and conversions
    {"fp", "F:1EM", 4},
    {"to_fp", "F:T", 4, linear, 1, Index::format},
    {"to_fp", "F:RG", 5, linear, 40, Index::format},
    {"to_fp", "F:RW", 3, linear, 50, Index::format},
    {"to_fp_unsigned", "F:RW", 3, linear, 50, Index::format},
    {"to_fp", "F:RQ", 2, linear, 5, Index::format},
    {"fp.to_ubv", "V:RF", 4, linear, 60, Index::width},
    {"fp.to_sbv", "V:RF", 4, linear, 60, Index::width},
    {"fp.to_ieee_bv", "T:F", 4, linear, 1},

    // Floats: tests and comparisons
    {"fp.isNaN", "B:F", 3},
    {"fp.isInfinite", "B:F", 3},
    {"fp.isZero", "B:F", 3},
    {"fp.isNormal", "B:F", 3, linear, 1},
    {"fp.isSubnormal", "B:F", 3, linear, 1},
    {"fp.isNegative", "B:F", 3, linear, 1},
    {"fp.isPositive", "B:F", 3, linear, 1},
    {"fp.eq", "B:FF+", 4, linear, 8},
    {"fp.lt", "B:FF+", 4, linear, 10},
    {"fp.leq", "B:FF+", 4, linear, 10},
    {"fp.gt", "B:FF+", 3, linear, 10},
    {"fp.geq", "B:FF+", 3, linear, 10},

    // Floats: arithmetic
    {"fp.neg", "F:F", 4},
    {"fp.abs", "F:F", 4, linear, 1},
    {"fp.min", "F:FF", 3, linear, 10},
    {"fp.max", "F:FF", 3, linear, 10},
    {"fp.add", "F:RFF", 6, linear, 90},
    {"fp.sub", "F:RFF", 4, linear, 90},
    {"fp.mul", "F:RFF", 5, quadratic, 18},
    {"fp.div", "F:RFF", 4, quadratic, 30},
    {"fp.fma", "F:RFFF", 4, quadratic, 40},
    {"fp.sqrt", "F:RF", 4, quadratic, 25},
    {"fp.rem", "F:FF", 3, exponential, 60},
    {"fp.roundToIntegral", "F:RF", 4, linear, 60},
};

constexpr Sort kNoFormat = {Sort::Kind::floating};

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
      case 'E':
        return bits_sort(format.w0);
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
  std::size_t width = 0;
  std::size_t second_width = 0;
  std::size_t high_width = 0;
  std::size_t low_width = 0;
  Sort format = kNoFormat;
  Sort second_format = kNoFormat;
};

std::string head_of(const Operator& op, const Sort& result, const Sort& arg, Random& random) {
  switch (op.index) {
    case Index::none:
      return std::string(op.name);
    case Index::format:
      return fmt::format("(_ {} {} {})", op.name, result.w0, result.w1);
    case Index::width:
      return fmt::format("(_ {} {})", op.name, result.w0);
    case Index::extraction: {
      const std::size_t low = random.below(arg.w0 - result.w0 + 1);
      return fmt::format("(_ {} {} {})", op.name, low + result.w0 - 1, low);
    }
    case Index::extension:
      return fmt::format("(_ {} {})", op.name, result.w0 - arg.w0);
    case Index::repetition:
      return fmt::format("(_ {} {})", op.name, result.w0 / arg.w0);
    case Index::rotation:
      break;
  }
  return fmt::format("(_ {} {})", op.name, random.below(2 * result.w0 + 1));
}

std::uint64_t cost_of(const Operator& op, const Sort& result, const std::vector<Sort>& args) {
  std::uint64_t width = result.width();
  std::uint64_t exponent = result.w0;
  for (const Sort& arg : args) {
    width = std::max<std::uint64_t>(width, arg.width());
    if (arg.kind == Sort::Kind::floating) exponent = std::max<std::uint64_t>(exponent, arg.w0);
  }
  std::uint64_t cost = 1 + op.factor * width * args.size();
  if (op.growth != linear)
    cost = op.factor * width * width * std::max<std::uint64_t>(1, args.size() / 2);
  if (op.growth == exponential) cost <<= std::min<std::uint64_t>(exponent, 20);
  return cost;
}

}  // namespace

std::span<const Operator> get_operators() {
  return kOperators;
}

Sort Palette::random_sort(Random& random) const {
  const std::size_t choice = random.below(10);
  if (choice == 0) return kBool;
  if (choice == 1 && !floats.empty()) return kMode;
  if (widths.empty() && floats.empty()) return kBool;
  const bool bits = floats.empty() || (!widths.empty() && choice < 5);
  return bits ? bits_sort(random.pick(widths)) : random.pick(floats);
}

bool can_make(const Operator& op, const Sort& result, const Palette& palette) {
  Random unused(0);
  return op.available && Letters(palette, unused).bind(op.result(), result);
}

std::optional<Application> apply(const Operator& op, const Sort& result, const Palette& palette,
                                 Random& random) {
  std::string letters(op.signature.substr(2));
  if (letters.back() == '+') {
    letters.pop_back();
    while (random.percent(15))
      letters.push_back(letters.back());
  }
  Letters sorts(palette, random);
  if (!sorts.bind(op.result(), result) || !sorts.choose(letters, op.result())) {
    return std::nullopt;
  }
  Application application;
  for (const char letter : letters)
    application.args.push_back(sorts.get(letter));
  application.head = head_of(op, result, application.args[0], random);
  application.cost = cost_of(op, result, application.args);
  return application;
}

}  // namespace vorn::random
