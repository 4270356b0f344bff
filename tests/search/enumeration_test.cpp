#include "vorn/search/enumeration.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#if defined(__SSE__)
#include <xmmintrin.h>
#endif

#include "vorn/search/kernel_check.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/semantics/open_terms.h"

namespace vorn::search {
namespace {

using Outcome = Enumeration::Outcome;

constexpr std::uint64_t kNoEnd = std::uint64_t{1} << 62U;

class Never : public TerminationTest {
 public:
  bool terminate() const override { return is_over; }
  bool is_over = true;
};

class EnumerationTest : public testing::Test {
 protected:
  const Term* variable(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }
  const Term* number(std::uint64_t bits, std::size_t e, std::size_t m) {
    return mgr.make_fp_number(to_number(bits), e, m);
  }
  std::optional<Enumeration> prepare(const std::vector<const Term*>& formulas,
                                     unsigned threads = 1) {
    return Enumeration::prepare(mgr, formulas, nullptr, kNoEnd, threads);
  }
  bool holds(const std::vector<const Term*>& formulas,
             const std::map<const Term*, QNumber>& values) const {
    semantics::Evaluator evaluator(mgr, [&](const Term* c) { return values.at(c); });
    return std::ranges::all_of(formulas,
                               [&](const Term* f) { return evaluator.evaluate(f).sign() != 0; });
  }

  TermManager mgr;
  const Term* rne = mgr.make_fprounding(IEEEFloat::rounding_mode::nearest_even);
};

// Values of constants ---------------------------------------------------------------------------

class DomainTest : public EnumerationTest {
 protected:
  /// Every value of a range is there once, and nothing else that the range has not.
  static void try_domain(const DataType* type, const ranges::Range& range, bool is_tight) {
    const auto domain = Domain::make(type, &range);
    ASSERT_TRUE(domain);
    const LaneSort& sort = domain->get_sort();
    std::map<std::uint64_t, int> seen;
    for (std::uint64_t first = 0; first < domain->get_count(); first += 100) {
      const std::uint64_t rest = domain->get_count() - first;
      const std::size_t length = std::min<std::uint64_t>(rest, 100);
      std::vector<std::uint32_t> lanes(length);
      domain->fill(first, length, lanes.data());
      for (const std::uint32_t lane : lanes)
        ++seen[sort.to_word(lane)];
    }
    EXPECT_EQ(seen.size(), domain->get_count());
    for (std::uint64_t word = 0; word < std::uint64_t{1} << sort.width; ++word) {
      const bool is_value = sort.to_word(sort.to_lane(word)) == word &&
                            (sort.kind != LaneSort::Kind::mode || word < 5);
      const bool is_in = is_value && ranges::contains(range, to_number(word));
      if (is_in || is_tight) {
        EXPECT_EQ(seen.contains(word), is_in) << word << ' ' << ranges::to_string(range);
      }
    }
  }
};

TEST_F(DomainTest, OfFloatsHasTheRange) {
  for (const IEEEFloat::format f : {IEEEFloat::format{3, 3}, IEEEFloat::format{5, 3}}) {
    const DataType* type = mgr.get_fp_type(f.e, f.m);
    std::mt19937_64 random(1);
    for (int i = 0; i < 200; ++i) {
      const auto classes = static_cast<ranges::FloatClassSet>(random() % 512);
      const auto end = static_cast<std::int64_t>(random() % 256) - 128;
      const auto length = static_cast<std::int64_t>(random() % 100);
      ranges::FloatRange range = ranges::FloatRange::of_classes(f, classes);
      if (i % 2 == 0) {
        range = range.at_least(QNumber(static_cast<int>(end)))
                    .at_most(QNumber(static_cast<int>(end + length)));
      }
      if (range.is_empty()) continue;
      try_domain(type, range, true);
    }
  }
}

TEST_F(DomainTest, OfBitsHasTheRange) {
  std::mt19937_64 random(2);
  const DataType* type = mgr.get_bv_type(9);
  for (int i = 0; i < 200; ++i) {
    const std::uint64_t ones = random() & random() & 511U;
    const std::uint64_t possible = (random() | ones) & 511U;
    ranges::BitRange range = ranges::BitRange::of_bits(9, to_number(ones), to_number(possible));
    if (i % 2 == 0) {
      range = range.intersect(
          ranges::BitRange::between(9, to_number(random() % 200), to_number(200 + random() % 300)));
    }
    if (!range.is_empty()) try_domain(type, range, false);
  }
}

TEST_F(DomainTest, OfFewValuesHasTheSet) {
  const DataType* truth = mgr.get_bool_type();
  try_domain(truth, ranges::make_everything(truth), true);
  try_domain(truth, ranges::make_value(truth, QNumber(1)), true);
  const DataType* mode = mgr.get_fprounding_type();
  try_domain(mode, ranges::make_everything(mode), true);
  try_domain(mode, ranges::exclude(ranges::make_everything(mode), QNumber(2)), true);
}

TEST_F(DomainTest, OfLargeFormatsCounts) {
  const DataType* type = mgr.get_fp_type(8, 23);
  const auto domain = Domain::make(type, nullptr);
  ASSERT_TRUE(domain);
  EXPECT_EQ(domain->get_count(), (std::uint64_t{1} << 32U) - 2 * ((1U << 23U) - 1) + 1);
  std::vector<std::uint32_t> lanes(4);
  const std::uint64_t half = domain->get_count() / 2;
  domain->fill(half - 2, 4, lanes.data());
  EXPECT_EQ(lanes, (std::vector<std::uint32_t>{0x80000001, 0x80000000, 0, 1}));
  domain->fill(domain->get_count() - 2, 2, lanes.data());
  EXPECT_EQ(lanes[0], 0x7f800000U);
  EXPECT_EQ(domain->get_sort().to_word(lanes[1]), 0xff800001U);
}

// Decisions -------------------------------------------------------------------------------------

TEST_F(EnumerationTest, TriesEveryValueOfTwoFormats) {
  for (const std::size_t e : {4U, 5U}) {
    const Term* x = variable("x", mgr.get_fp_type(e, 6));
    const Term* y = variable("y", mgr.get_fp_type(3, 2));
    // No two numbers are both less than each other.
    const Term* wide = mgr.make_fp_cast(e, 6, rne, y);
    auto search = prepare({mgr.make_fp_lt(x, wide), mgr.make_fp_lt(wide, x)});
    ASSERT_TRUE(search);
    EXPECT_EQ(search->run(kNoEnd, nullptr), Outcome::refuted);
    EXPECT_EQ(search->get_tried(), search->get_count());
    EXPECT_EQ(search->get_count(), ((std::uint64_t{1} << (e + 7)) - 2 * 63 + 1) * (64 - 2 * 3 + 1));
  }
}

TEST_F(EnumerationTest, FindsEachValue) {
  const Term* x = variable("x", mgr.get_fp_type(4, 6));
  const LaneSort sort = LaneSort::of(x->get_type());
  for (std::uint64_t bits = 0; bits < 2048; ++bits) {
    if (sort.to_word(sort.to_lane(bits)) != bits) continue;
    // An equation of x itself would define it.
    const Term* pattern = mgr.make_bv_extract(9, 0, mgr.make_fp_to_bits(x));
    const Term* sign = mgr.make_fp_isnegative(x);
    const bool is_nan = bits == sort.to_word(sort.to_lane(0x7c1));
    auto search = prepare(
        {is_nan ? mgr.make_fp_isnan(x)
                : mgr.make_bv_ule(pattern, mgr.make_bv_number(to_number(bits % 1024), 10)),
         is_nan || bits >= 1024 ? mgr.make_not(mgr.make_fp_ispositive(x)) : mgr.make_not(sign),
         mgr.make_not(mgr.make_bv_ult(
             pattern, mgr.make_bv_number(to_number(is_nan ? 0 : bits % 1024), 10)))});
    ASSERT_TRUE(search);
    EXPECT_GT(search->get_count(), 1000U);
    ASSERT_EQ(search->run(kNoEnd, nullptr), Outcome::found) << bits;
    EXPECT_EQ(search->get_assignment().front().second, to_number(bits));
  }
}

TEST_F(EnumerationTest, KeepsTheZerosApartThatAreEqual) {
  const Term* x = variable("x", mgr.get_fp_type(3, 3));
  const Term* y = variable("y", mgr.get_fp_type(3, 3));
  const std::vector<const Term*> formulas = {mgr.make_fp_equal(y, mgr.make_fp_abs(x)),
                                             mgr.make_fp_isnegative(y)};
  auto search = prepare(formulas);
  ASSERT_TRUE(search);
  ASSERT_EQ(search->run(kNoEnd, nullptr), Outcome::found);
  // Where a side is no zero, the equation defines the constant.
  ranges::Propagation known(mgr);
  const Term* is_normal = mgr.make_fp_isnormal(x);
  for (const Term* f : {formulas[0], formulas[1], is_normal})
    known.add(f);
  known.propagate(1000);
  const Term* claim[] = {formulas[0], formulas[1], is_normal};
  auto defined = Enumeration::prepare(mgr, claim, &known, kNoEnd);
  if (defined) {
    EXPECT_EQ(defined->run(kNoEnd, nullptr), Outcome::refuted);
  }
}

TEST_F(EnumerationTest, RefusesWhatIsTooMuch) {
  const Term* x = variable("x", mgr.get_fp_type(8, 23));
  const Term* y = variable("y", mgr.get_fp_type(11, 52));
  const Term* f[] = {mgr.make_fp_lt(mgr.make_fp_add(rne, x, x), x)};
  EXPECT_TRUE(Enumeration::prepare(mgr, f, nullptr, std::uint64_t{1} << 36U));
  EXPECT_FALSE(Enumeration::prepare(mgr, f, nullptr, std::uint64_t{1} << 32U));
  EXPECT_FALSE(prepare({mgr.make_fp_lt(y, y), f[0]}));
  const Term* wide = variable("wide", mgr.get_bv_type(65));
  EXPECT_FALSE(prepare({mgr.make_bv_ult(wide, wide), mgr.make_equal(wide, wide), f[0],
                        mgr.make_not(mgr.make_bv_ult(wide, mgr.make_bv_neg(wide)))}));
}

TEST_F(EnumerationTest, GoesOnWhereItStopped) {
  const Term* x = variable("x", mgr.get_fp_type(5, 10));
  const Term* y = variable("y", mgr.get_fp_type(3, 3));
  const Term* wide = mgr.make_fp_cast(5, 10, rne, y);
  const std::vector<const Term*> formulas = {mgr.make_fp_lt(x, wide), mgr.make_fp_lt(wide, x)};
  Never test;
  auto search = prepare(formulas, 2);
  ASSERT_TRUE(search);
  // The test is asked after some blocks.
  EXPECT_EQ(search->run(kNoEnd, &test), Outcome::open);
  EXPECT_EQ(search->get_tried(), 0U);
  test.is_over = false;
  std::uint64_t before = 0;
  Outcome outcome = Outcome::open;
  int runs = 0;
  for (; outcome == Outcome::open && runs < 100'000; ++runs) {
    outcome = search->run(1'000'000, &test);
    EXPECT_GT(search->get_tried(), before);
    before = search->get_tried();
  }
  EXPECT_EQ(outcome, Outcome::refuted);
  EXPECT_GT(runs, 3);
  EXPECT_EQ(search->get_tried(), search->get_count());
}

TEST_F(EnumerationTest, FindsTheSameInThreads) {
  const Term* x = variable("x", mgr.get_fp_type(5, 10));
  const Term* y = variable("y", mgr.get_fp_type(3, 3));
  const Term* sum = mgr.make_fp_add(rne, x, mgr.make_fp_cast(5, 10, rne, y));
  const std::vector<const Term*> formulas = {mgr.make_fp_equal(sum, number(0x4123, 5, 10)),
                                             mgr.make_fp_lt(x, mgr.make_fp_neg(sum))};
  const auto try_threads = [&](unsigned threads) {
    auto search = prepare(formulas, threads);
    EXPECT_EQ(search->run(kNoEnd, nullptr), Outcome::found);
    return search->get_assignment();
  };
  const auto alone = try_threads(1);
  EXPECT_TRUE(holds(formulas, {alone.begin(), alone.end()}));
  EXPECT_EQ(try_threads(2), alone);
  EXPECT_EQ(try_threads(5), alone);
}

#if defined(__SSE__)
TEST_F(EnumerationTest, RefusesToComputeWithoutSubnormals) {
  const Term* x = variable("x", mgr.get_fp_type(5, 10));
  auto search = prepare({mgr.make_fp_lt(mgr.make_fp_add(rne, x, x), x), mgr.make_fp_lt(x, x)});
  ASSERT_TRUE(search);
  const unsigned before = _mm_getcsr();
  for (const unsigned flag : {0x8000U, 0x0040U}) {
    _mm_setcsr(before | flag);
    const Outcome outcome = search->run(kNoEnd, nullptr);
    _mm_setcsr(before);
    EXPECT_EQ(outcome, Outcome::unfit);
  }
}
#endif

// Random formulas -------------------------------------------------------------------------------

class RandomFormulas : public EnumerationTest, public testing::WithParamInterface<unsigned> {
 protected:
  using Terms = std::vector<const Term*>;
  const Term* pick(const Terms& terms) { return terms[random() % terms.size()]; }

  const Term* make_float() {
    const Term* x = pick(floats);
    const Term* y = pick(floats);
    switch (random() % 12) {
      case 0:
        return mgr.make_fp_add(pick(modes), x, y);
      case 1:
        return mgr.make_fp_sub(pick(modes), x, y);
      case 2:
        return mgr.make_fp_mul(pick(modes), x, y);
      case 3:
        return mgr.make_fp_div(pick(modes), x, y);
      case 4:
        return mgr.make_fp_sqrt(pick(modes), x);
      case 5:
        return mgr.make_fp_fma(pick(modes), x, y, pick(floats));
      case 6:
        return mgr.make_fp_rem(x, y);
      case 7:
        return mgr.make_fp_round_to_integral(pick(modes), x);
      case 8:
        return random() % 2 == 0 ? mgr.make_fp_min(x, y) : mgr.make_fp_max(x, y);
      case 9:
        return mgr.make_fp_from_sbv(3, 3, pick(modes), pick(bits));
      case 10:
        return mgr.make_term_ite(pick(truths), x, y);
      default:
        return mgr.make_fp_from_bits(
            3, 3, mgr.make_bv_extract(6, 0, mgr.make_bv_concat(pick(bits), pick(bits))));
    }
  }
  const Term* make_truth() {
    const Term* x = pick(floats);
    const Term* y = pick(floats);
    switch (random() % 6) {
      case 0:
        return mgr.make_fp_lt(x, y);
      case 1:
        return mgr.make_fp_equal(x, y);
      case 2:
        return mgr.make_equal(x, y);
      case 3:
        return mgr.make_xor(pick(truths), pick(truths));
      case 4:
        return mgr.make_bv_slt(pick(bits), pick(bits));
      default:
        return mgr.make_or(pick(truths), mgr.make_fp_isnegative(x));
    }
  }
  const Term* make_bits() {
    const Term* wide = mgr.make_fp_to_sbv(7, pick(modes), pick(floats));
    return random() % 2 == 0 ? mgr.make_bv_extract(5, 2, wide)
                             : mgr.make_bv_udiv(pick(bits), pick(bits));
  }

  Terms make_formulas() {
    random.seed(GetParam());
    const Term* x = variable("x", mgr.get_fp_type(3, 3));
    const Term* b = variable("b", mgr.get_bv_type(4));
    const Term* r = variable("r", mgr.get_fprounding_type());
    const Term* p = variable("p", mgr.get_bool_type());
    constants = {x, b, r, p};
    floats = {x, number(random() % 112, 3, 3)};
    bits = {b, mgr.make_bv_number(QNumber(5), 4)};
    modes = {r, rne, mgr.make_term_ite(p, r, rne)};
    truths = {p};
    for (int i = 0; i < 6; ++i) {
      floats.push_back(make_float());
      truths.push_back(make_truth());
      bits.push_back(make_bits());
    }
    const Term* y = variable("y", mgr.get_fp_type(3, 3));
    constants.push_back(y);
    return {mgr.make_equal(y, floats.back()), truths.back(),
            mgr.make_or(mgr.make_fp_lt(y, pick(floats)), truths[5])};
  }

  /// Every model, found by exact evaluation, with what the theory leaves open plain.
  std::size_t count_models(const Terms& formulas) const {
    std::size_t count = 0;
    const LaneSort sort = LaneSort::of(constants[0]->get_type());
    for (std::uint64_t i = 0; i < std::uint64_t{128} * 16 * 5 * 2; ++i) {
      const std::uint64_t word = i % 128;
      if (sort.to_word(sort.to_lane(word)) != word) continue;
      std::map<const Term*, QNumber> values = {{constants[0], to_number(word)},
                                               {constants[1], to_number(i / 128 % 16)},
                                               {constants[2], to_number(i / 2048 % 5)},
                                               {constants[3], to_number(i / 10240)}};
      semantics::Evaluator evaluator(mgr, [&](const Term* c) { return values.at(c); });
      values[constants[4]] = evaluator.evaluate(floats.back());
      bool all = true;
      for (const Term* f : formulas)
        all = all && evaluator.evaluate(f).sign() != 0;
      count += all ? 1 : 0;
    }
    return count;
  }

  std::mt19937_64 random;
  Terms constants;
  Terms floats;
  Terms bits;
  Terms modes;
  Terms truths;
};

TEST_P(RandomFormulas, AreDecidedAsByExactEvaluation) {
  const Terms formulas = make_formulas();
  const std::size_t models = count_models(formulas);
  auto search = prepare(formulas, 1 + GetParam() % 2);
  ASSERT_TRUE(search);
  const Outcome outcome = search->run(kNoEnd, nullptr);
  if (outcome == Outcome::refuted) {
    EXPECT_EQ(models, 0U);
    EXPECT_EQ(search->get_tried(), search->get_count());
    return;
  }
  ASSERT_EQ(outcome, Outcome::found);
  std::map<const Term*, QNumber> values;
  for (const Term* constant : constants)
    values[constant] = QNumber();
  for (const auto& [constant, value] : search->get_assignment())
    values[constant] = value;
  const bool is_open = !semantics::find_open_terms(formulas).empty();
  EXPECT_TRUE(holds(formulas, values) || is_open);
  EXPECT_TRUE(models != 0 || is_open);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomFormulas, testing::Range(1U, 81U));

}  // namespace
}  // namespace vorn::search
