#include "vorn/terms/term_manager.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "vorn/terms/ieee_float.h"
#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/utils/termination_test.h"

namespace vorn {
namespace {

const Term* constant(TermManager& mgr, const std::string& name, const DataType* type) {
  return mgr.make_constant(mgr.make_unique_symbol(name, type));
}

// Sorts -----------------------------------------------------------------------------------------

TEST(TermManager, SortsAreShared) {
  TermManager mgr;
  EXPECT_EQ(mgr.get_bv_type(8), mgr.get_bv_type(8));
  EXPECT_NE(mgr.get_bv_type(8), mgr.get_bv_type(9));
  EXPECT_EQ(mgr.get_fp_type(5, 10), mgr.get_fp_type(5, 10));
  EXPECT_NE(mgr.get_fp_type(5, 10), mgr.get_fp_type(10, 5));
  EXPECT_EQ(mgr.get_bool_type(), mgr.make_true()->get_type());
}

TEST(TermManager, SortTestsStoreWidthsUnlessNull) {
  TermManager mgr;
  std::size_t width = 0;
  EXPECT_TRUE(mgr.is_bv_type(mgr.get_bv_type(17), &width));
  EXPECT_EQ(width, 17U);
  EXPECT_TRUE(mgr.is_bv_type(mgr.get_bv_type(17), nullptr));
  EXPECT_FALSE(mgr.is_bv_type(mgr.get_bool_type(), &width));
  EXPECT_FALSE(mgr.is_bv_type(mgr.get_fp_type(8, 8), &width));
  EXPECT_EQ(width, 17U);

  std::size_t e = 0;
  std::size_t m = 0;
  EXPECT_TRUE(mgr.is_fp_type(mgr.get_fp_type(5, 10), &e, &m));
  EXPECT_EQ(e, 5U);
  EXPECT_EQ(m, 10U);
  EXPECT_TRUE(mgr.is_fp_type(mgr.get_fp_type(5, 10), nullptr, nullptr));
  EXPECT_FALSE(mgr.is_fp_type(mgr.get_bv_type(16), &e, &m));

  EXPECT_TRUE(mgr.is_fprounding_type(mgr.get_fprounding_type()));
  EXPECT_FALSE(mgr.is_fprounding_type(mgr.get_bool_type()));
  EXPECT_TRUE(mgr.is_bool_type(mgr.get_bool_type()));
  EXPECT_FALSE(mgr.is_bool_type(mgr.get_bv_type(1)));
}

TEST(TermManager, EverySortSaysHowWideItsValuesAre) {
  TermManager mgr;
  EXPECT_EQ(mgr.get_bool_type()->get_value_width(), 1U);
  EXPECT_EQ(mgr.get_fprounding_type()->get_value_width(), 3U);
  EXPECT_EQ(mgr.get_bv_type(77)->get_value_width(), 77U);
  EXPECT_EQ(mgr.get_fp_type(5, 10)->get_value_width(), 16U);
  EXPECT_EQ(mgr.get_fp_type(5, 10)->get_format(), (IEEEFloat::format{5, 10}));
}

TEST(TermManager, WidthsGoFrom1To2ToThe20) {
  TermManager mgr;
  const std::size_t most = std::size_t{1} << 20;
  EXPECT_EQ(TermManager::kMaxWidth, most);
  EXPECT_EQ(mgr.get_bv_type(1)->get_width(), 1U);
  EXPECT_EQ(mgr.get_bv_type(most)->get_width(), most);
  for (const std::size_t width : {std::size_t{0}, most + 1, SIZE_MAX}) {
    EXPECT_THROW(mgr.get_bv_type(width), std::invalid_argument);
    EXPECT_THROW(mgr.make_bv_number(0, width), std::invalid_argument);
    EXPECT_THROW(mgr.make_bv_number(QNumber(0), width), std::invalid_argument);
  }
  EXPECT_EQ(mgr.get_fp_type(19, most - 20)->get_m(), most - 20);
  EXPECT_THROW(mgr.get_fp_type(19, most - 19), std::invalid_argument);
  EXPECT_THROW(mgr.get_fp_type(SIZE_MAX, 3), std::invalid_argument);
  EXPECT_THROW(mgr.get_fp_type(3, SIZE_MAX), std::invalid_argument);
  EXPECT_THROW(mgr.get_fp_type(0, 3), std::invalid_argument);
  EXPECT_THROW(mgr.get_fp_type(3, 0), std::invalid_argument);
}

TEST(TermManager, ARefusedWidthIsNamed) {
  TermManager mgr;
  try {
    mgr.get_bv_type(1048577);
    FAIL();
  } catch (const std::invalid_argument& error) {
    EXPECT_NE(std::string(error.what()).find("1048577"), std::string::npos) << error.what();
  }
}

// Symbols and constants ---------------------------------------------------------------------------

TEST(TermManager, UniqueSymbolsTakeTheirNameIfItIsFree) {
  TermManager mgr;
  const Symbol* s = mgr.make_unique_symbol("x", mgr.get_bv_type(4));
  EXPECT_EQ(s->get_name(), "x");
  EXPECT_EQ(s->get_arity(), 0U);
  EXPECT_EQ(s->get_output_type(), mgr.get_bv_type(4));
}

TEST(TermManager, UniqueSymbolsNeverShareAName) {
  TermManager mgr;
  std::set<std::string> names;
  std::set<const Symbol*> symbols;
  const char* wishes[] = {"x", "x!1", "x", "x!2", "x", "x!1", "x!1!1", "y", "x", "roundTowardZero"};
  for (int round = 0; round < 20; ++round) {
    for (const char* name : wishes) {
      const Symbol* s = mgr.make_unique_symbol(name, mgr.get_bool_type());
      EXPECT_TRUE(names.insert(s->get_name()).second) << s->get_name();
      EXPECT_TRUE(symbols.insert(s).second);
      EXPECT_EQ(s->get_name().rfind(name, 0), 0U) << "the wish stays recognisable";
    }
  }
  EXPECT_EQ(names.count("roundTowardZero"), 0U) << "the rounding modes have their names already";
}

TEST(TermManager, ASymbolHasOneConstant) {
  TermManager mgr;
  const Symbol* s = mgr.make_unique_symbol("x", mgr.get_bv_type(4));
  const Term* x = mgr.make_constant(s);
  EXPECT_EQ(mgr.make_constant(s), x);
  EXPECT_EQ(x->get_symbol(), s);
  EXPECT_EQ(x->get_arity(), 0U);
  EXPECT_NE(constant(mgr, "x", mgr.get_bv_type(4)), x);
}

TEST(TermManager, ConstantsNeedASymbolOfArityZeroOfTheManager) {
  TermManager mgr;
  TermManager other;
  EXPECT_THROW(other.make_constant(mgr.make_unique_symbol("x", mgr.get_bool_type())),
               std::invalid_argument);
  const Term* x = constant(mgr, "x", mgr.get_bool_type());
  EXPECT_THROW(mgr.make_constant(mgr.make_not(x)->get_symbol()), std::invalid_argument);
}

// Terms -------------------------------------------------------------------------------------------

TEST(TermManager, ATermStartsWithItsIdentifier) {
  TermManager mgr;
  const Term* x = constant(mgr, "x", mgr.get_bv_type(4));
  const Term* t = mgr.make_bv_add(x, mgr.make_bv_not(x));
  EXPECT_EQ(*reinterpret_cast<const std::uint64_t*>(t), t->get_id());
  EXPECT_EQ(hsh::hash<const Term*>()(t), t->get_id());
  EXPECT_EQ(hsh::hash<SymbolTag::tag>()(SymbolTag::fp_add), 46U);
}

TEST(TermManager, IdentifiersAreUnique) {
  TermManager mgr(false);
  std::set<std::uint64_t> ids;
  const Term* t = constant(mgr, "x", mgr.get_bool_type());
  for (int i = 0; i < 1000; ++i) {
    EXPECT_TRUE(ids.insert(t->get_id()).second);
    EXPECT_LT(t->get_id(), mgr.get_term_count());
    t = mgr.make_not(t);
  }
}

TEST(TermManager, OneOperationOnTheSameArgumentsIsOneTerm) {
  for (const bool rewrite : {true, false}) {
    TermManager mgr(rewrite);
    const Term* x = constant(mgr, "x", mgr.get_bv_type(4));
    const Term* y = constant(mgr, "y", mgr.get_bv_type(4));
    const Term* sum = mgr.make_bv_add(x, y);
    EXPECT_EQ(mgr.make_bv_add(x, y), sum);
    EXPECT_NE(mgr.make_bv_sub(x, y), sum);
    EXPECT_EQ(mgr.make_bv_extract(2, 1, sum), mgr.make_bv_extract(2, 1, sum));
    EXPECT_NE(mgr.make_bv_extract(2, 1, sum), mgr.make_bv_extract(2, 0, sum));
    EXPECT_EQ(mgr.make_bv_add(x, y) == mgr.make_bv_add(y, x), rewrite);
  }
}

TEST(TermManager, SharingSurvivesTheGrowthOfTheTable) {
  TermManager mgr(false);
  const Term* x = constant(mgr, "x", mgr.get_bv_type(4));
  const auto chain = [&] {
    std::vector<const Term*> terms{x};
    for (int i = 0; i < 100000; ++i)
      terms.push_back(mgr.make_bv_add(terms.back(), x));
    return terms;
  };
  const std::vector<const Term*> first = chain();
  const std::uint64_t count = mgr.get_term_count();
  EXPECT_EQ(chain(), first);
  EXPECT_EQ(mgr.get_term_count(), count);
}

TEST(TermManager, ABinaryTermTakesAtMost64Bytes) {
  TermManager mgr(false);
  const Term* x = constant(mgr, "x", mgr.get_bv_type(4));
  const Term* t = x;
  constexpr std::size_t kTerms = 200000;
  for (std::size_t i = 0; i < kTerms; ++i)
    t = mgr.make_bv_add(t, x);
  EXPECT_LE(mgr.get_term_bytes(), 64 * kTerms);
}

TEST(TermManager, RebuildAppliesTheSameOperation) {
  TermManager mgr;
  const Term* x = constant(mgr, "x", mgr.get_bv_type(4));
  const Term* y = constant(mgr, "y", mgr.get_bv_type(4));
  const Term* t = mgr.make_bv_extract(2, 1, x);
  const std::array<const Term*, 1> args = {y};
  EXPECT_EQ(mgr.rebuild(t, args), mgr.make_bv_extract(2, 1, y));
  EXPECT_EQ(mgr.rebuild(x, {}), x);

  const std::array<const Term*, 1> literal = {mgr.make_bv_number(6, 4)};
  EXPECT_EQ(mgr.rebuild(t, literal), mgr.make_bv_number(3, 2));

  const std::array<const Term*, 1> wider = {constant(mgr, "z", mgr.get_bv_type(5))};
  EXPECT_THROW(mgr.rebuild(t, wider), std::invalid_argument);
  const std::array<const Term*, 2> two = {y, y};
  EXPECT_THROW(mgr.rebuild(t, two), std::invalid_argument);
  TermManager other;
  EXPECT_THROW(other.rebuild(t, args), std::invalid_argument);
}

// Numbers
// -------------------------------------------------------------------------------------------

TEST(TermManager, BothFormsOfANumberAreOneTerm) {
  TermManager mgr;
  EXPECT_EQ(mgr.make_bv_number(3, 2), mgr.make_bv_number(QNumber(3), 2));
  EXPECT_EQ(mgr.make_bv_number(3, 64),
            mgr.make_bv_number(QNumber(mpz_class(mpz_class(3) << 90), mpz_class(1)) /
                                   QNumber(mpz_class(mpz_class(1) << 90), mpz_class(1)),
                               64));
  EXPECT_NE(mgr.make_bv_number(3, 2), mgr.make_bv_number(3, 3));
}

TEST(TermManager, NumbersAreReducedToTheirWidth) {
  TermManager mgr;
  EXPECT_EQ(mgr.make_bv_number(300, 8), mgr.make_bv_number(44, 8));
  EXPECT_EQ(mgr.make_bv_number(-1, 8), mgr.make_bv_number(255, 8));
  QNumber value;
  EXPECT_TRUE(mgr.is_number(mgr.make_bv_number(-1, 100), &value));
  EXPECT_EQ(value.to_string(16), std::string(25, 'f'));
}

template <class Integer>
class NumbersOf : public testing::Test {};
using Integers =
    testing::Types<bool, char, signed char, unsigned char, char8_t, wchar_t, short, unsigned short,
                   int, unsigned, long, unsigned long, long long, unsigned long long>;
TYPED_TEST_SUITE(NumbersOf, Integers);

TYPED_TEST(NumbersOf, EveryTypeOfIntegersMeanTheirValues) {
  TermManager mgr;
  using Limits = std::numeric_limits<TypeParam>;
  for (const TypeParam value : {TypeParam{0}, TypeParam{1}, Limits::min(), Limits::max()}) {
    const QNumber number = QNumber::from_string(std::to_string(value));
    EXPECT_EQ(mgr.make_bv_number(value, 8), mgr.make_bv_number(number, 8)) << +value;
    EXPECT_EQ(mgr.make_bv_number(value, 100), mgr.make_bv_number(number, 100)) << +value;
  }
}

template <class Value>
concept IsNumber = requires(TermManager& mgr, Value value) {
  mgr.make_bv_number(value, 8);
};

TEST(TermManager, NothingIsNarrowedToANumber) {
  EXPECT_TRUE(IsNumber<QNumber>);
  EXPECT_TRUE(IsNumber<SymbolTag::tag>);
  EXPECT_FALSE(IsNumber<double>);
  EXPECT_FALSE(IsNumber<float>);
  EXPECT_FALSE(IsNumber<mpz_class>);
}

TEST(TermManager, FractionsAreNoBitVectors) {
  TermManager mgr;
  const QNumber half(mpz_class(1), mpz_class(2));
  EXPECT_THROW(mgr.make_bv_number(half, 8), std::invalid_argument);
  EXPECT_THROW(mgr.make_fp_number(half, 3, 4), std::invalid_argument);
  try {
    mgr.make_bv_number(half, 8);
  } catch (const std::invalid_argument& error) {
    EXPECT_NE(std::string(error.what()).find("1/2"), std::string::npos) << error.what();
  }
}

TEST(TermManager, EachManagerKnowsItsOwnNumbers) {
  TermManager mgr;
  TermManager other;
  const Symbol* five = mgr.make_bv_number(5, 4)->get_symbol();
  ASSERT_NE(mgr.get_number(five), nullptr);
  EXPECT_EQ(*mgr.get_number(five), QNumber(5));
  EXPECT_EQ(other.get_number(five), nullptr);
  EXPECT_FALSE(other.is_number(mgr.make_bv_number(5, 4), nullptr));
  EXPECT_EQ(mgr.get_number(mgr.make_true()->get_symbol()), nullptr);
  EXPECT_EQ(mgr.get_number(mgr.make_unique_symbol("x", mgr.get_bv_type(4))), nullptr);
}

TEST(TermManager, FloatLiteralsKeepTheirBits) {
  TermManager mgr;
  const Term* one = mgr.make_fp_number(QNumber(0x3c00), 5, 10);
  EXPECT_EQ(one->get_type(), mgr.get_fp_type(5, 10));
  QNumber bits;
  EXPECT_TRUE(mgr.is_number(one, &bits));
  EXPECT_EQ(bits, QNumber(0x3c00));
  EXPECT_EQ(mgr.make_fp_number(QNumber(0x13c00), 5, 10), one) << "modulo 2^16";
  EXPECT_NE(mgr.make_fp_number(QNumber(0x3c00), 8, 7), one);
  EXPECT_TRUE(mgr.is_number(one, nullptr));
}

TEST(TermManager, TheNanLiteralIsTheCanonicalPattern) {
  TermManager mgr;
  EXPECT_EQ(mgr.make_fp_nan(3, 4), mgr.make_fp_number(QNumber(0b11110001), 3, 4));
  EXPECT_NE(mgr.make_fp_nan(3, 4), mgr.make_fp_number(QNumber(0b01111000), 3, 4));
}

TEST(TermManager, AFloatIsItsLiteralAndEveryNanIsTheOne) {
  TermManager mgr;
  const IEEEFloat::format f = {3, 4};
  for (int bits = 0; bits < 256; ++bits) {
    const IEEEFloat value = IEEEFloat::from_bits(f, QNumber(bits));
    const Term* literal =
        value.is_nan() ? mgr.make_fp_nan(3, 4) : mgr.make_fp_number(QNumber(bits), 3, 4);
    EXPECT_EQ(mgr.make_fp_number(value), literal) << bits;
  }
}

// Symbol kinds
// --------------------------------------------------------------------------------------

TEST(TermManager, KindsHaveTheirPinnedValues) {
  EXPECT_EQ(SymbolTag::none, 0U);
  EXPECT_EQ(SymbolTag::equal, 11U);
  EXPECT_EQ(SymbolTag::ite, 12U);
  EXPECT_EQ(SymbolTag::fp_from_bits, 40U);
  EXPECT_EQ(SymbolTag::fp_equal, 42U);
  EXPECT_EQ(SymbolTag::fp_lt, 43U);
  EXPECT_EQ(SymbolTag::fp_le, 44U);
  EXPECT_EQ(SymbolTag::fp_neg, 45U);
  EXPECT_EQ(SymbolTag::fp_add, 46U);
  EXPECT_EQ(SymbolTag::fp_sub, 47U);
  EXPECT_EQ(SymbolTag::fp_mul, 48U);
  EXPECT_EQ(SymbolTag::fp_div, 49U);
  EXPECT_EQ(SymbolTag::fp_cast, 50U);
  EXPECT_EQ(SymbolTag::fp_from_sbv, 51U);
  EXPECT_EQ(SymbolTag::fp_from_ubv, 52U);
  EXPECT_EQ(SymbolTag::fp_isnan, 55U);
  EXPECT_EQ(SymbolTag::fp_isinf, 56U);
  EXPECT_EQ(SymbolTag::fp_iszero, 57U);
}

TEST(TermManager, OperationsHaveAKindAndLeavesHaveNone) {
  TermManager mgr;
  TermManager other;
  SymbolTag::tag kind = SymbolTag::none;
  const Term* x = constant(mgr, "x", mgr.get_fp_type(3, 4));
  const Symbol* isnan = mgr.make_fp_isnan(x)->get_symbol();
  EXPECT_TRUE(mgr.get_symbol_kind(isnan, &kind));
  EXPECT_EQ(kind, SymbolTag::fp_isnan);
  EXPECT_FALSE(other.get_symbol_kind(isnan, &kind)) << "the table is the manager's own";
  EXPECT_FALSE(mgr.get_symbol_kind(x->get_symbol(), &kind));
  EXPECT_FALSE(mgr.get_symbol_kind(mgr.make_bv_number(1, 2)->get_symbol(), &kind));
  EXPECT_FALSE(mgr.get_symbol_kind(mgr.make_fprounding_even()->get_symbol(), &kind));
}

// Rounding modes
// --------------------------------------------------------------------------------------

TEST(TermManager, RoundingModesAreFiveConstantsOfTheirSort) {
  TermManager mgr;
  const Term* modes[] = {mgr.make_fprounding_even(), mgr.make_fprounding_zero(),
                         mgr.make_fprounding_plus_inf(), mgr.make_fprounding_minus_inf(),
                         mgr.make_fprounding_away()};
  for (std::size_t i = 0; i < 5; ++i) {
    const Symbol* s = modes[i]->get_symbol();
    EXPECT_EQ(modes[i]->get_type(), mgr.get_fprounding_type());
    EXPECT_EQ(mgr.is_fprounding_even(s), i == 0);
    EXPECT_EQ(mgr.is_fprounding_zero(s), i == 1);
    EXPECT_EQ(mgr.is_fprounding_plus_inf(s), i == 2);
    EXPECT_EQ(mgr.is_fprounding_minus_inf(s), i == 3);
    EXPECT_EQ(mgr.is_fprounding_away(s), i == 4);
    IEEEFloat::rounding_mode mode = IEEEFloat::rounding_mode::nearest_even;
    EXPECT_TRUE(mgr.is_fprounding(s, &mode));
    EXPECT_EQ(static_cast<std::size_t>(mode), i);
    EXPECT_TRUE(mgr.is_fprounding(s, nullptr));
    EXPECT_EQ(mgr.make_fprounding(mode), modes[i]);
  }
}

TEST(TermManager, OtherSymbolsAreNoRoundingModes) {
  TermManager mgr;
  TermManager other;
  const Symbol* variable = mgr.make_unique_symbol("r", mgr.get_fprounding_type());
  EXPECT_FALSE(mgr.is_fprounding(variable, nullptr));
  EXPECT_FALSE(mgr.is_fprounding_even(variable));
  EXPECT_FALSE(mgr.is_fprounding(other.make_fprounding_even()->get_symbol(), nullptr));
}

TEST(TermManager, RefusesSymbolsThatCannotBeWritten) {
  TermManager mgr;
  EXPECT_THROW(mgr.make_unique_symbol("a|b", mgr.get_bool_type()), std::invalid_argument);
  EXPECT_THROW(mgr.make_unique_symbol("a\\b", mgr.get_bool_type()), std::invalid_argument);
}

TEST(TermManager, RefusesSymbolsOfAForeignSort) {
  TermManager mgr;
  TermManager other;
  EXPECT_THROW(mgr.make_unique_symbol("a", other.get_bool_type()), std::invalid_argument);
  EXPECT_THROW(mgr.make_unique_symbol("a", nullptr), std::invalid_argument);
}

// Termination -----------------------------------------------------------------------------------

class Stop final : public TerminationTest {
 public:
  bool terminate() const override { return stops; }
  bool stops = true;
};

/// How many of the variables were negated before the test ended that.
int negate_until_stopped(TermManager& mgr, const std::vector<const Term*>& variables) {
  int built = 0;
  try {
    for (const Term* variable : variables) {
      mgr.make_bv_not(variable);
      ++built;
    }
  } catch (const Terminated&) {
  }
  return built;
}

TEST(TermManager, IsAsItWasAfterAnOperationThatTheTestEnded) {
  TermManager mgr;
  std::vector<const Term*> variables;
  for (int i = 0; i < 20'000; ++i)
    variables.push_back(constant(mgr, "x" + std::to_string(i), mgr.get_bv_type(8)));
  const auto leaves = mgr.get_term_count();
  Stop stop;
  mgr.set_termination_test(&stop);
  EXPECT_EQ(mgr.get_termination_test(), &stop);
  const int built = negate_until_stopped(mgr, variables);
  EXPECT_GT(built, 0);
  EXPECT_LT(built, 20'000);
  EXPECT_EQ(mgr.get_term_count(), leaves + static_cast<std::uint64_t>(built));

  // What was built is found again, and the rest is built.
  stop.stops = false;
  EXPECT_EQ(negate_until_stopped(mgr, variables), 20'000);
  EXPECT_EQ(mgr.get_term_count(), leaves + 20'000);
  stop.stops = true;
  mgr.set_termination_test(nullptr);
  EXPECT_EQ(negate_until_stopped(mgr, variables), 20'000);
  EXPECT_EQ(mgr.get_term_count(), leaves + 20'000);
}

TEST(TermManager, AsksSoonerWhereOperationsAreWide) {
  TermManager mgr;
  const Term* wide = constant(mgr, "x", mgr.get_bv_type(TermManager::kMaxWidth));
  std::vector<const Term*> variables;
  for (int i = 0; i < 20'000; ++i)
    variables.push_back(constant(mgr, "y" + std::to_string(i), mgr.get_bv_type(8)));
  const Stop stop;
  mgr.set_termination_test(&stop);
  EXPECT_LT(negate_until_stopped(mgr, std::vector<const Term*>(20'000, wide)),
            negate_until_stopped(mgr, variables));
}

TEST(TermManager, ConnectivesTakeAnyNumberOfOperands) {
  for (const bool rewrite : {false, true}) {
    TermManager mgr(rewrite);
    const Term* p = mgr.make_constant("p", mgr.get_bool_type());
    const Term* q = mgr.make_constant("q", mgr.get_bool_type());
    const Term* r = mgr.make_constant("r", mgr.get_bool_type());
    EXPECT_EQ(mgr.make_and({}), mgr.make_true());
    EXPECT_EQ(mgr.make_or({}), mgr.make_false());
    EXPECT_EQ(mgr.make_and(std::vector<const Term*>()), mgr.make_true());
    EXPECT_EQ(mgr.make_or(std::vector<const Term*>()), mgr.make_false());
    EXPECT_EQ(mgr.make_and({p, q}), mgr.make_and(p, q));
    EXPECT_EQ(mgr.make_or({p, q}), mgr.make_or(p, q));
    const std::vector<const Term*> three = {p, q, r};
    EXPECT_EQ(mgr.make_and(three), mgr.make_and(mgr.make_and(p, q), r));
    EXPECT_EQ(mgr.make_or(three), mgr.make_or(mgr.make_or(p, q), r));
    EXPECT_THROW(mgr.make_and({mgr.make_bv_number(1, 1)}), std::invalid_argument);
    EXPECT_THROW(mgr.make_or({p, nullptr, q}), std::invalid_argument);
  }
  TermManager mgr;
  const Term* p = mgr.make_constant("p", mgr.get_bool_type());
  EXPECT_EQ(mgr.make_and({p}), p);
  EXPECT_EQ(mgr.make_or({p}), p);
}

TEST(TermManager, GreaterIsLessOfSwappedOperands) {
  TermManager mgr;
  const Term* x = mgr.make_constant("x", mgr.get_fp_type(5, 10));
  const Term* y = mgr.make_constant("y", mgr.get_fp_type(5, 10));
  EXPECT_EQ(mgr.make_fp_gt(x, y), mgr.make_fp_lt(y, x));
  EXPECT_EQ(mgr.make_fp_ge(x, y), mgr.make_fp_le(y, x));
  EXPECT_THROW(mgr.make_fp_gt(x, mgr.make_true()), std::invalid_argument);
}

TEST(TermManager, ConstantsOfOneNameAreApart) {
  TermManager mgr;
  const Term* first = mgr.make_constant("x y", mgr.get_bv_type(8));
  const Term* second = mgr.make_constant("x y", mgr.get_bv_type(8));
  EXPECT_NE(first, second);
  EXPECT_EQ(mgr.make_bv_ult(first, second)->to_string(), "(bvult |x y| |x y!1|)");
  EXPECT_THROW(mgr.make_constant("x|y", mgr.get_bv_type(8)), std::invalid_argument);
  EXPECT_THROW(mgr.make_constant("z", nullptr), std::invalid_argument);
}

}  // namespace
}  // namespace vorn
