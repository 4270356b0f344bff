// What operations say of ranges in the formats that are used, on operands near the ends of formats
// and of each other.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "tests/oracle/random_operands.h"
#include "tests/ranges/small_operation.h"
#include "vorn/ranges/transfer.h"
#include "vorn/semantics/application.h"

namespace vorn::ranges {
namespace {

using T = SymbolTag;

class LargeFormats : public testing::TestWithParam<std::array<unsigned, 2>> {
 protected:
  LargeFormats()
      : format{GetParam()[0], GetParam()[1]},
        type(mgr.get_fp_type(format.e, format.m)),
        engine(format.e) {
    const Term* rm = make_constant(mgr.get_fprounding_type());
    const Term* x = make_constant(type);
    const Term* y = make_constant(type);
    const Term* z = make_constant(type);
    for (const T::tag tag : {T::fp_add, T::fp_sub, T::fp_mul, T::fp_div})
      terms.push_back(mgr.make(tag, {rm, x, y}));
    for (const T::tag tag : {T::fp_rem, T::fp_min, T::fp_max, T::fp_lt, T::fp_le, T::fp_equal})
      terms.push_back(mgr.make(tag, {x, y}));
    for (const T::tag tag : {T::fp_sqrt, T::fp_round_to_integral})
      terms.push_back(mgr.make(tag, {rm, x}));
    for (const T::tag tag : {T::fp_abs, T::fp_neg, T::fp_isnormal, T::fp_to_bits})
      terms.push_back(mgr.make(tag, {x}));
    terms.push_back(mgr.make(T::fp_fma, {rm, x, y, z}));
    for (const auto& [e, m] : {std::pair{5, 10}, {8, 23}, {11, 52}, {8, 7}})
      terms.push_back(mgr.make(T::fp_cast, {std::size_t(e), std::size_t(m)}, {rm, x}));
    for (const std::size_t width : {8U, 32U, 64U}) {
      const Term* integer = make_constant(mgr.get_bv_type(width));
      for (const T::tag tag : {T::fp_from_sbv, T::fp_from_ubv})
        terms.push_back(mgr.make(tag, {format.e, format.m}, {rm, integer}));
      for (const T::tag tag : {T::fp_to_sbv, T::fp_to_ubv})
        terms.push_back(mgr.make(tag, {width}, {rm, x}));
    }
    const Term* bits = make_constant(mgr.get_bv_type(type->get_value_width()));
    terms.push_back(mgr.make(T::fp_from_bits, {format.e, format.m}, {bits}));
  }

  const Term* make_constant(const DataType* sort) {
    return mgr.make_constant(mgr.make_unique_symbol("x", sort));
  }

  /// Values for the arguments of `t`, later floats near the first.
  std::vector<QNumber> make_values(const Term* t) {
    std::vector<QNumber> values;
    oracle::Bits first;
    bool is_first = true;
    for (const Term* arg : t->get_args()) {
      if (arg->get_type()->get_kind() == DataType::Kind::rounding_mode) {
        values.emplace_back(static_cast<int>(operands.below(5)));
      } else if (arg->get_type()->get_kind() == DataType::Kind::bit_vector) {
        const auto width = static_cast<unsigned>(arg->get_type()->get_width());
        values.push_back(QNumber::from_mpz(operands.bits(width)));
      } else {
        const oracle::Format f{GetParam()[0], GetParam()[1]};
        const oracle::Bits pattern =
            is_first ? operands.float_pattern(f) : operands.partner(f, first);
        first = pattern;
        is_first = false;
        values.push_back(semantics::canonical_bits(arg->get_type(), QNumber::from_mpz(pattern)));
      }
    }
    return values;
  }

  QNumber apply(const Term* t, const std::vector<QNumber>& values) {
    std::vector<const QNumber*> args;
    for (const QNumber& value : values)
      args.push_back(&value);
    return semantics::apply(t, args, [this](const Term* open, std::span<const QNumber> /*args*/) {
      const bool is_sign = open->get_type()->get_kind() == DataType::Kind::floating_point;
      const std::size_t width = is_sign ? 1 : open->get_type()->get_width();
      return QNumber::from_mpz(operands.bits(static_cast<unsigned>(width)));
    });
  }

  /// Ranges with these values and a few others, or none; and the values in them that are tried.
  struct Operands {
    std::vector<Range> ranges;
    std::vector<std::vector<QNumber>> values;
  };
  Operands make_operands(const Term* t) {
    Operands result;
    const std::vector<QNumber> first = make_values(t);
    const std::vector<QNumber> second = make_values(t);
    for (std::size_t i = 0; i < first.size(); ++i) {
      const DataType* sort = t->get_arg(i)->get_type();
      Range range = make_value(sort, first[i]);
      std::vector<QNumber> values = {first[i]};
      if (operands.below(4) != 0) {
        range = hull(range, make_value(sort, second[i]));
        values.push_back(second[i]);
        add_ends(range, &values);
      }
      result.ranges.push_back(range);
      result.values.push_back(std::move(values));
    }
    return result;
  }

  /// Ends, and what is next to zeros and infinities, if it is in the range.
  static void add_ends(const Range& range, std::vector<QNumber>* values) {
    if (const auto* bits = std::get_if<BitRange>(&range)) {
      values->push_back(bits->get_least());
      values->push_back(bits->get_greatest());
    }
    const auto* floats = std::get_if<FloatRange>(&range);
    if (floats == nullptr || !floats->has(kNumbers)) return;
    const IEEEFloat::format f = floats->get_format();
    const QNumber infinity = infinity_rank(f);
    for (const QNumber& rank :
         {floats->get_least(), floats->get_greatest(), QNumber(-2), QNumber(-1), QNumber(0),
          QNumber(1), infinity - QNumber(1), negate_rank(infinity - QNumber(1))}) {
      if (rank < floats->get_least() || floats->get_greatest() < rank) continue;
      const IEEEFloat x = float_of_rank(f, rank);
      if (floats->contains(x)) values->push_back(x.get_bits());
    }
  }

  /// Calls `visit` with combinations of values: all of them, or those that a sample gives.
  template <class Visit>
  void visit(const Operands& some, const Visit& visit) {
    std::size_t count = 1;
    for (const std::vector<QNumber>& values : some.values)
      count *= values.size();
    for (std::size_t i = 0; i < count; ++i) {
      if (count > 64 && engine() % count >= 64) continue;
      std::vector<QNumber> chosen;
      std::size_t rest = i;
      for (const std::vector<QNumber>& values : some.values) {
        chosen.push_back(values[rest % values.size()]);
        rest /= values.size();
      }
      visit(chosen);
    }
  }

  std::string describe(const Term* t, const Operands& some) {
    std::string text(find_operation(t->get_tag())->name);
    for (const Range& range : some.ranges)
      text += ' ' + to_string(range);
    return text;
  }

  TermManager mgr{false};
  IEEEFloat::format format;
  const DataType* type;
  std::vector<const Term*> terms;
  std::mt19937_64 engine;
  oracle::RandomOperands operands{GetParam()[0]};
};

std::string name_of(const testing::TestParamInfo<std::array<unsigned, 2>>& info) {
  return "Float" + std::to_string(1 + info.param[0] + info.param[1]);
}

INSTANTIATE_TEST_SUITE_P(Floats, LargeFormats,
                         testing::Values(std::array{5U, 10U}, std::array{8U, 23U},
                                         std::array{11U, 52U}, std::array{15U, 112U},
                                         std::array{40U, 3U}),
                         name_of);

TEST_P(LargeFormats, NothingPossibleIsLeftOut) {
  for (const Term* t : terms) {
    for (int i = 0; i < 300; ++i) {
      const Operands some = make_operands(t);
      const Range range = forward(mgr, t, some.ranges);
      visit(some, [&](const std::vector<QNumber>& values) {
        const QNumber result = apply(t, values);
        ASSERT_TRUE(contains(range, result)) << describe(t, some) << " gives " << to_string(range);
        // Alone, and with more beside it.
        Range wanted = make_value(t->get_type(), result);
        if (engine() % 2 == 0) {
          wanted = hull(wanted, make_value(t->get_type(), apply(t, make_values(t))));
        }
        std::vector<Range> narrowed = some.ranges;
        backward(t, wanted, narrowed);
        for (std::size_t arg = 0; arg < values.size(); ++arg) {
          ASSERT_TRUE(contains(narrowed[arg], values[arg]))
              << describe(t, some) << " with " << to_string(wanted) << " leaves "
              << to_string(narrowed[arg]) << " of argument " << arg;
          ASSERT_EQ(intersect(narrowed[arg], some.ranges[arg]), narrowed[arg]);
        }
      });
    }
  }
}

TEST_P(LargeFormats, ResultsAtTheEndsAreReached) {
  for (const Term* t : terms) {
    if (t->get_type()->get_kind() != DataType::Kind::floating_point) continue;
    if (t->get_tag() == T::fp_rem) continue;
    for (const bool greatest : {false, true}) {
      std::size_t noticed = 0;
      for (int i = 0; i < 200; ++i) {
        const Operands some = make_operands(t);
        const Range whole = forward(mgr, t, some.ranges);
        const std::optional<Range> range = drop_end(whole, greatest);
        bool is_noticed = false;
        visit(some, [&](const std::vector<QNumber>& values) {
          is_noticed = is_noticed || (range && !contains(*range, apply(t, values)));
        });
        noticed += is_noticed ? 1 : 0;
      }
      EXPECT_GT(noticed, 10U) << find_operation(t->get_tag())->name;
    }
  }
}

}  // namespace
}  // namespace vorn::ranges
