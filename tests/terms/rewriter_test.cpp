// The rules must never change the value of a term. Every term here is built twice, by a manager
// that rewrites and by one that does not, and both are evaluated by plain integer arithmetic that
// shares nothing with the library.
#include "vorn/terms/rewriter.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

using T = SymbolTag;
using Word = std::uint64_t;

Word mask(std::size_t width) {
  return (Word{1} << width) - 1;
}

std::int64_t as_signed(Word x, std::size_t width) {
  const bool negative = ((x >> (width - 1)) & 1) != 0;
  return static_cast<std::int64_t>(x) - (negative ? std::int64_t{1} << width : 0);
}

std::size_t width_of(const Term* t) {
  return t->get_type()->get_kind() == DataType::Kind::boolean ? 1 : t->get_type()->get_width();
}

Word signed_division(T::tag tag, std::int64_t a, std::int64_t b) {
  if (tag == T::bv_sdiv) return static_cast<Word>(b == 0 ? (a < 0 ? 1 : -1) : a / b);
  if (b == 0) return static_cast<Word>(a);
  const std::int64_t r = a % b;
  const bool shift = tag == T::bv_smod && r != 0 && (r < 0) != (b < 0);
  return static_cast<Word>(shift ? r + b : r);
}

/// The value of an operation on values; Booleans are 0 and 1. `w` is the width of the first operand
/// and `v` that of the second.
Word apply(const Term* t, const std::array<Word, 3>& args, std::size_t w, std::size_t v) {
  const Word a = args[0];
  const Word b = args[1];
  const auto& indices = t->get_symbol()->get_indices();
  switch (t->get_tag()) {
    case T::bool_true:
      return 1;
    case T::bool_false:
      return 0;
    case T::bool_not:
      return 1 - a;
    case T::bool_and:
    case T::bv_and:
      return a & b;
    case T::bool_or:
    case T::bv_or:
      return a | b;
    case T::bool_xor:
    case T::bv_xor:
      return a ^ b;
    case T::bool_implies:
      return a <= b ? 1 : 0;
    case T::bool_iff:
    case T::equal:
    case T::bv_comp:
      return a == b ? 1 : 0;
    case T::ite:
      return a != 0 ? b : args[2];
    case T::bv_extract:
      return a >> indices[1];
    case T::bv_concat:
      return (a << v) + b;
    case T::bv_zero_extend:
      return a;
    case T::bv_sign_extend:
      return static_cast<Word>(as_signed(a, w));
    case T::bv_not:
      return ~a;
    case T::bv_neg:
      return Word{0} - a;
    case T::bv_add:
      return a + b;
    case T::bv_sub:
      return a - b;
    case T::bv_mul:
      return a * b;
    case T::bv_udiv:
      return b == 0 ? mask(w) : a / b;
    case T::bv_urem:
      return b == 0 ? a : a % b;
    case T::bv_sdiv:
    case T::bv_srem:
    case T::bv_smod:
      return signed_division(t->get_tag(), as_signed(a, w), as_signed(b, w));
    case T::bv_shl:
      return b >= w ? 0 : a << b;
    case T::bv_lshr:
      return b >= w ? 0 : a >> b;
    case T::bv_ashr:
      return static_cast<Word>(as_signed(a, w) >> (b >= w ? w - 1 : b));
    case T::bv_ult:
      return a < b ? 1 : 0;
    case T::bv_ule:
      return a <= b ? 1 : 0;
    case T::bv_slt:
      return as_signed(a, w) < as_signed(b, w) ? 1 : 0;
    case T::bv_sle:
      return as_signed(a, w) <= as_signed(b, w) ? 1 : 0;
    default:
      ADD_FAILURE() << "no value for " << t->to_string();
      return 0;
  }
}

/// Values of the terms of one manager under one assignment.
class Evaluator {
 public:
  explicit Evaluator(const TermManager& mgr) : values(mgr.get_term_count(), kUnknown) {}

  void assign(const Term* variable, Word value) { values[variable->get_id()] = value; }

  Word value(const Term* t) {
    Word& known = values[t->get_id()];
    if (known != kUnknown) return known;
    if (const QNumber* literal = t->get_symbol()->get_literal()) {
      std::int64_t word = 0;
      EXPECT_TRUE(literal->get_int64(&word));
      return known = static_cast<Word>(word);
    }
    std::array<Word, 3> args = {};
    for (std::size_t i = 0; i < t->get_arity(); ++i)
      args[i] = value(t->get_arg(i));
    const std::size_t w = t->get_arity() > 0 ? width_of(t->get_arg(0)) : 0;
    const std::size_t v = t->get_arity() > 1 ? width_of(t->get_arg(1)) : 0;
    return known = apply(t, args, w, v) & mask(width_of(t));
  }

 private:
  static constexpr Word kUnknown = ~Word{0};  // wider than any value here
  std::vector<Word> values;
};

/// One term as it was asked for and as the rewriting manager gave it.
struct Twin {
  const Term* plain;
  const Term* simple;
};

using Make1 = const Term* (TermManager::*)(const Term*);
using Make2 = const Term* (TermManager::*)(const Term*, const Term*);

constexpr Make2 kBooleanMakers[] = {&TermManager::make_and,     &TermManager::make_or,
                                    &TermManager::make_xor,     &TermManager::make_iff,
                                    &TermManager::make_implies, &TermManager::make_equal};

constexpr Make2 kBitVectorMakers[] = {
    &TermManager::make_bv_and,  &TermManager::make_bv_or,   &TermManager::make_bv_xor,
    &TermManager::make_bv_add,  &TermManager::make_bv_sub,  &TermManager::make_bv_mul,
    &TermManager::make_bv_udiv, &TermManager::make_bv_urem, &TermManager::make_bv_sdiv,
    &TermManager::make_bv_srem, &TermManager::make_bv_smod, &TermManager::make_bv_lshl,
    &TermManager::make_bv_lshr, &TermManager::make_bv_ashr};

constexpr Make2 kPredicateMakers[] = {&TermManager::make_bv_ult, &TermManager::make_bv_ule,
                                      &TermManager::make_bv_slt, &TermManager::make_bv_sle,
                                      &TermManager::make_equal};

/// Builds terms in both managers and compares them.
class Twins {
 public:
  Twin variable(const std::string& name, std::size_t width) {
    const auto make = [&](TermManager& mgr) {
      const DataType* type = width == 0 ? mgr.get_bool_type() : mgr.get_bv_type(width);
      return mgr.make_constant(mgr.make_unique_symbol(name, type));
    };
    variables.push_back({make(plain), make(simple)});
    return variables.back();
  }
  Twin number(Word value, std::size_t width) {
    return twin([&](TermManager& mgr) {
      return mgr.make_bv_number(QNumber(static_cast<std::int64_t>(value)), width);
    });
  }
  Twin boolean(bool value) {
    return twin([&](TermManager& mgr) { return mgr.make_bool(value); });
  }
  Twin unary(Make1 make, Twin a) { return add((plain.*make)(a.plain), (simple.*make)(a.simple)); }
  Twin binary(Make2 make, Twin a, Twin b) {
    return add((plain.*make)(a.plain, b.plain), (simple.*make)(a.simple, b.simple));
  }
  Twin ite(Twin c, Twin a, Twin b) {
    return add(plain.make_term_ite(c.plain, a.plain, b.plain),
               simple.make_term_ite(c.simple, a.simple, b.simple));
  }
  Twin extract(std::size_t msb, std::size_t lsb, Twin a) {
    return add(plain.make_bv_extract(msb, lsb, a.plain),
               simple.make_bv_extract(msb, lsb, a.simple));
  }
  Twin zero_extend(std::size_t n, Twin a) {
    return add(plain.make_bv_zero_extend(n, a.plain), simple.make_bv_zero_extend(n, a.simple));
  }
  Twin sign_extend(std::size_t n, Twin a) {
    return add(plain.make_bv_sign_extend(n, a.plain), simple.make_bv_sign_extend(n, a.simple));
  }

  /// Compares all terms built so far under the assignment that `choose` makes, variable by
  /// variable. Returns false after the first difference.
  bool agree_under(const std::function<Word(std::size_t)>& choose) {
    Evaluator of_plain(plain);
    Evaluator of_simple(simple);
    std::string assignment;
    for (const Twin& v : variables) {
      const Word value = choose(width_of(v.plain));
      of_plain.assign(v.plain, value);
      of_simple.assign(v.simple, value);
      assignment += " " + v.plain->to_string() + "=" + std::to_string(value);
    }
    for (const Twin& t : built) {
      const Word expected = of_plain.value(t.plain);
      const Word actual = of_simple.value(t.simple);
      if (expected == actual) continue;
      ADD_FAILURE() << t.plain->to_string() << " is " << expected << " but\n"
                    << t.simple->to_string() << " is " << actual << " under" << assignment;
      return false;
    }
    return true;
  }

  /// Compares all terms under every assignment.
  bool agree_everywhere() {
    std::size_t bits = 0;
    for (const Twin& v : variables)
      bits += width_of(v.plain);
    for (Word all = 0; all <= mask(bits); ++all) {
      Word rest = all;
      const bool agree = agree_under([&](std::size_t width) {
        const Word value = rest & mask(width);
        rest >>= width;
        return value;
      });
      if (!agree) return false;
    }
    return true;
  }

  std::size_t size() const { return built.size(); }

 private:
  Twin twin(const std::function<const Term*(TermManager&)>& make) {
    return {make(plain), make(simple)};
  }
  Twin add(const Term* p, const Term* s) {
    EXPECT_EQ(p->get_type()->to_string(), s->get_type()->to_string());
    built.push_back({p, s});
    return built.back();
  }

  TermManager plain{false};
  TermManager simple{true};
  std::vector<Twin> variables;
  std::vector<Twin> built;
};

// Soundness
// -----------------------------------------------------------------------------------------

TEST(Rewriter, BooleanRulesKeepTheValueOfEveryNestingOfThreeLevels) {
  Twins twins;
  const Twin p = twins.variable("p", 0);
  const Twin q = twins.variable("q", 0);
  const Twin r = twins.variable("r", 0);
  std::vector<Twin> parts = {p, q, r, twins.boolean(true), twins.boolean(false)};
  for (const Twin& a : {p, q})
    parts.push_back(twins.unary(&TermManager::make_not, a));
  for (const Make2 make : kBooleanMakers)
    parts.push_back(twins.binary(make, p, q));
  parts.push_back(twins.unary(&TermManager::make_not, parts.back()));
  parts.push_back(twins.ite(p, q, r));

  std::vector<Twin> pairs;
  for (const Make2 make : kBooleanMakers) {
    for (const Twin& a : parts) {
      for (const Twin& b : parts)
        pairs.push_back(twins.binary(make, a, b));
    }
  }
  for (const Twin& a : parts) {
    for (const Twin& b : parts) {
      for (const Twin& c : parts)
        twins.ite(a, b, c);
    }
  }
  for (const Make2 make : kBooleanMakers) {
    for (const Twin& a : pairs) {
      for (const Twin& b : {p, q, parts[5]}) {
        twins.binary(make, a, b);
        twins.binary(make, b, a);
      }
    }
  }
  ASSERT_TRUE(twins.agree_everywhere());
}

TEST(Rewriter, BitVectorRulesKeepTheValueOfEveryNestingOfTwoLevels) {
  for (const std::size_t w : {std::size_t{1}, std::size_t{2}, std::size_t{3}}) {
    Twins twins;
    const Twin p = twins.variable("p", 0);
    const Twin x = twins.variable("x", w);
    const Twin y = twins.variable("y", w);
    const Twin joined = twins.binary(&TermManager::make_bv_concat, x, y);
    std::vector<Twin> parts = {x, y};
    for (Word value = 0; value <= mask(w); ++value)
      parts.push_back(twins.number(value, w));
    for (const Make1 make : {&TermManager::make_bv_not, &TermManager::make_bv_neg}) {
      parts.push_back(twins.unary(make, x));
      parts.push_back(twins.unary(make, y));
      parts.push_back(twins.unary(make, parts.back()));
    }
    for (const Make2 make : {&TermManager::make_bv_and, &TermManager::make_bv_or,
                             &TermManager::make_bv_xor, &TermManager::make_bv_add}) {
      parts.push_back(twins.binary(make, x, y));
      parts.push_back(twins.unary(&TermManager::make_bv_not, parts.back()));
    }
    parts.push_back(twins.ite(p, x, y));
    parts.push_back(twins.extract(w, 1, joined));
    parts.push_back(twins.extract(w - 1, 0, twins.sign_extend(2, x)));
    parts.push_back(twins.extract(w, 1, twins.sign_extend(1, x)));
    parts.push_back(twins.extract(w, 1, twins.zero_extend(1, y)));

    for (const Twin& a : parts) {
      for (const Twin& b : parts) {
        for (const Make2 make : kBitVectorMakers)
          twins.binary(make, a, b);
        for (const Make2 make : kPredicateMakers)
          twins.binary(make, a, b);
        twins.binary(&TermManager::make_bv_comp, a, b);
        twins.ite(p, a, b);
      }
    }
    ASSERT_TRUE(twins.agree_everywhere());
  }
}

TEST(Rewriter, EveryExtractionOfEveryCompositionKeepsItsValue) {
  Twins twins;
  const Twin x = twins.variable("x", 3);
  const Twin y = twins.variable("y", 2);
  std::vector<Twin> parts = {x, y, twins.number(5, 3), twins.number(1, 2)};
  for (const Twin& a : {x, y}) {
    for (std::size_t n = 0; n < 3; ++n) {
      parts.push_back(twins.zero_extend(n, a));
      parts.push_back(twins.sign_extend(n, a));
      parts.push_back(twins.zero_extend(2, parts.back()));
      parts.push_back(twins.sign_extend(n, parts.back()));
      parts.push_back(twins.sign_extend(1, parts.back()));
    }
  }
  for (std::size_t msb = 0; msb < 3; ++msb) {
    for (std::size_t lsb = 0; lsb <= msb; ++lsb)
      parts.push_back(twins.extract(msb, lsb, x));
  }
  std::vector<Twin> wholes = parts;
  for (const Twin& a : parts) {
    for (const Twin& b : parts) {
      wholes.push_back(twins.binary(&TermManager::make_bv_concat, a, b));
    }
  }
  for (const Twin& whole : wholes) {
    const std::size_t width = width_of(whole.plain);
    for (std::size_t msb = 0; msb < width; ++msb) {
      for (std::size_t lsb = 0; lsb <= msb; ++lsb)
        twins.extract(msb, lsb, whole);
    }
  }
  ASSERT_TRUE(twins.agree_everywhere());
}

/// Random terms over few variables, each built from those before.
class RandomTerms {
 public:
  explicit RandomTerms(std::uint64_t seed) : random(seed) {
    for (const char* name : {"p", "q"})
      pools[0].push_back(twins.variable(name, 0));
    const std::size_t w = 1 + pick(5);
    const std::size_t v = 1 + pick(5);
    for (const std::size_t width : {w, v}) {
      const std::string suffix = std::to_string(width);
      for (const char* name : {"x", "y"}) {
        pools[width].push_back(twins.variable(name + suffix, width));
      }
      for (const Word value : {Word{0}, Word{1}, mask(width), Word{1} << (width - 1), random()}) {
        pools[width].push_back(twins.number(value & mask(width), width));
      }
    }
    pools[0].push_back(twins.boolean(true));
    pools[0].push_back(twins.boolean(false));
  }

  /// Adds one random term.
  void grow() {
    switch (pick(6)) {
      case 0:
        grow_boolean();
        break;
      case 1:
        grow_predicate();
        break;
      case 2:
        grow_shape();
        break;
      default:
        grow_bit_vector();
    }
  }

  bool agree() {
    for (int i = 0; i < 16; ++i) {
      // The corners first, then anything.
      const auto choose = [&](std::size_t width) {
        return i == 0 ? 0 : i == 1 ? mask(width) : random() & mask(width);
      };
      if (!twins.agree_under(choose)) return false;
    }
    return true;
  }

 private:
  static constexpr std::size_t kWidest = 12;

  std::size_t pick(std::size_t n) { return random() % n; }
  std::size_t pick_width() {
    for (;;) {
      const std::size_t width = 1 + pick(kWidest);
      if (!pools[width].empty()) return width;
    }
  }
  Twin any(std::size_t width) { return pools[width][pick(pools[width].size())]; }
  void keep(Twin t) {
    const bool boolean = t.plain->get_type()->get_kind() == DataType::Kind::boolean;
    pools[boolean ? 0 : width_of(t.plain)].push_back(t);
  }

  void grow_boolean() {
    switch (pick(8)) {
      case 0:
        return keep(twins.unary(&TermManager::make_not, any(0)));
      case 1:
        return keep(twins.ite(any(0), any(0), any(0)));
      default:
        return keep(twins.binary(kBooleanMakers[pick(std::size(kBooleanMakers))], any(0), any(0)));
    }
  }
  void grow_predicate() {
    const std::size_t width = pick_width();
    keep(twins.binary(kPredicateMakers[pick(std::size(kPredicateMakers))], any(width), any(width)));
  }
  void grow_shape() {
    const std::size_t width = pick_width();
    const std::size_t n = pick(3);
    switch (pick(4)) {
      case 0: {
        const std::size_t msb = pick(width);
        return keep(twins.extract(msb, pick(msb + 1), any(width)));
      }
      case 1: {
        const std::size_t low = pick_width();
        if (width + low > kWidest) return;
        return keep(twins.binary(&TermManager::make_bv_concat, any(width), any(low)));
      }
      case 2:
        if (width + n <= kWidest) keep(twins.zero_extend(n, any(width)));
        return;
      default:
        if (width + n <= kWidest) keep(twins.sign_extend(n, any(width)));
    }
  }
  void grow_bit_vector() {
    const std::size_t width = pick_width();
    switch (pick(10)) {
      case 0:
        return keep(twins.unary(&TermManager::make_bv_not, any(width)));
      case 1:
        return keep(twins.unary(&TermManager::make_bv_neg, any(width)));
      case 2:
        return keep(twins.ite(any(0), any(width), any(width)));
      case 3:
        return keep(twins.binary(&TermManager::make_bv_comp, any(width), any(width)));
      default:
        return keep(twins.binary(kBitVectorMakers[pick(std::size(kBitVectorMakers))], any(width),
                                 any(width)));
    }
  }

  std::mt19937_64 random;
  Twins twins;
  std::array<std::vector<Twin>, kWidest + 1> pools;  // by width; Booleans at 0
};

TEST(Rewriter, RandomTermsKeepTheirValues) {
  for (std::uint64_t seed = 0; seed < 3000; ++seed) {
    RandomTerms terms(seed);
    for (int i = 0; i < 100; ++i)
      terms.grow();
    ASSERT_TRUE(terms.agree()) << "seed " << seed;
  }
}

// Constants fold completely
// -------------------------------------------------------------------------

TEST(Rewriter, OperationsOnLiteralsAreLiterals) {
  for (const std::size_t w : {std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{70}}) {
    TermManager mgr;
    std::vector<const Term*> literals;
    for (int value = -4; value < 4; ++value)
      literals.push_back(mgr.make_bv_number(value, w));
    for (const Term* a : literals) {
      for (const Term* b : literals) {
        for (const Make2 make : kBitVectorMakers) {
          EXPECT_TRUE(mgr.is_number((mgr.*make)(a, b), nullptr));
        }
        for (const Make2 make : kPredicateMakers) {
          const Term* t = (mgr.*make)(a, b);
          EXPECT_TRUE(t == mgr.make_true() || t == mgr.make_false());
        }
        EXPECT_TRUE(mgr.is_number(mgr.make_bv_comp(a, b), nullptr));
        EXPECT_TRUE(mgr.is_number(mgr.make_bv_concat(a, b), nullptr));
      }
      for (const Term* t : {mgr.make_bv_not(a), mgr.make_bv_neg(a), mgr.make_bv_zero_extend(3, a),
                            mgr.make_bv_sign_extend(3, a), mgr.make_bv_extract(w - 1, w / 2, a),
                            mgr.make_term_ite(mgr.make_true(), a, a)}) {
        EXPECT_TRUE(mgr.is_number(t, nullptr));
      }
    }
  }
}

TEST(Rewriter, WideLiteralsFoldExactly) {
  TermManager mgr;
  const Term* ones = mgr.make_bv_number(-1, 100);
  const Term* one = mgr.make_bv_number(1, 100);
  EXPECT_EQ(mgr.make_bv_add(ones, one), mgr.make_bv_number(0, 100));
  EXPECT_EQ(mgr.make_bv_mul(ones, ones), one);
  EXPECT_EQ(mgr.make_bv_slt(ones, one), mgr.make_true());
  EXPECT_EQ(mgr.make_bv_ult(ones, one), mgr.make_false());
  EXPECT_EQ(mgr.make_bv_lshr(ones, mgr.make_bv_number(99, 100)), one);
  EXPECT_EQ(mgr.make_bv_ashr(ones, ones), ones);
  EXPECT_EQ(mgr.make_bv_extract(99, 99, ones), mgr.make_bv_number(1, 1));
}

TEST(Rewriter, BooleanConstantsFold) {
  TermManager mgr;
  for (const bool a : {false, true}) {
    EXPECT_EQ(mgr.make_not(mgr.make_bool(a)), mgr.make_bool(!a));
    for (const bool b : {false, true}) {
      const Term* s = mgr.make_bool(a);
      const Term* t = mgr.make_bool(b);
      EXPECT_EQ(mgr.make_and(s, t), mgr.make_bool(a && b));
      EXPECT_EQ(mgr.make_or(s, t), mgr.make_bool(a || b));
      EXPECT_EQ(mgr.make_xor(s, t), mgr.make_bool(a != b));
      EXPECT_EQ(mgr.make_iff(s, t), mgr.make_bool(a == b));
      EXPECT_EQ(mgr.make_equal(s, t), mgr.make_bool(a == b));
      EXPECT_EQ(mgr.make_implies(s, t), mgr.make_bool(!a || b));
    }
  }
}

// The rules fire
// --------------------------------------------------------------------------------------

class Rules : public testing::Test {
 protected:
  const Term* constant(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }

  TermManager mgr;
  const Term* p = constant("p", mgr.get_bool_type());
  const Term* q = constant("q", mgr.get_bool_type());
  const Term* x = constant("x", mgr.get_bv_type(8));
  const Term* y = constant("y", mgr.get_bv_type(8));
  const Term* bit = constant("bit", mgr.get_bv_type(1));
  const Term* yes = mgr.make_true();
  const Term* no = mgr.make_false();
  const Term* zero = mgr.make_bv_number(0, 8);
  const Term* one = mgr.make_bv_number(1, 8);
  const Term* ones = mgr.make_bv_number(255, 8);
};

TEST_F(Rules, BooleanUnitsAbsorbersAndComplements) {
  const Term* not_p = mgr.make_not(p);
  EXPECT_EQ(mgr.make_not(not_p), p);
  EXPECT_EQ(mgr.make_and(p, yes), p);
  EXPECT_EQ(mgr.make_and(p, no), no);
  EXPECT_EQ(mgr.make_and(p, p), p);
  EXPECT_EQ(mgr.make_and(p, not_p), no);
  EXPECT_EQ(mgr.make_or(p, no), p);
  EXPECT_EQ(mgr.make_or(p, yes), yes);
  EXPECT_EQ(mgr.make_or(p, p), p);
  EXPECT_EQ(mgr.make_or(not_p, p), yes);
  EXPECT_EQ(mgr.make_xor(p, p), no);
  EXPECT_EQ(mgr.make_xor(p, not_p), yes);
  EXPECT_EQ(mgr.make_xor(p, no), p);
  EXPECT_EQ(mgr.make_xor(p, yes), not_p);
  EXPECT_EQ(mgr.make_iff(p, p), yes);
  EXPECT_EQ(mgr.make_iff(p, yes), p);
  EXPECT_EQ(mgr.make_iff(p, not_p), no);
  EXPECT_EQ(mgr.make_implies(p, p), yes);
  EXPECT_EQ(mgr.make_implies(no, p), yes);
  EXPECT_EQ(mgr.make_implies(yes, p), p);
  EXPECT_EQ(mgr.make_implies(p, no), not_p);
}

TEST_F(Rules, BooleanAbsorption) {
  const Term* both = mgr.make_and(p, q);
  const Term* either = mgr.make_or(p, q);
  EXPECT_EQ(mgr.make_and(p, both), both);
  EXPECT_EQ(mgr.make_or(p, both), p);
  EXPECT_EQ(mgr.make_and(either, q), q);
  EXPECT_EQ(mgr.make_or(either, q), either);
  EXPECT_EQ(mgr.make_and(mgr.make_not(p), both), no);
  EXPECT_EQ(mgr.make_or(mgr.make_not(p), both), mgr.make_or(mgr.make_not(p), q));
}

TEST_F(Rules, ExclusiveOrsOfComplementsShareATerm) {
  EXPECT_EQ(mgr.make_xor(mgr.make_not(p), q), mgr.make_not(mgr.make_xor(p, q)));
  EXPECT_EQ(mgr.make_xor(mgr.make_not(p), mgr.make_not(q)), mgr.make_xor(p, q));
  EXPECT_EQ(mgr.make_iff(p, q), mgr.make_not(mgr.make_xor(p, q)));
}

TEST_F(Rules, EqualityOfEqualsAndOfLiterals) {
  EXPECT_EQ(mgr.make_equal(x, x), yes);
  EXPECT_EQ(mgr.make_equal(zero, one), no);
  EXPECT_EQ(mgr.make_equal(x, mgr.make_bv_not(x)), no);
  EXPECT_EQ(mgr.make_equal(p, q), mgr.make_iff(p, q));
  EXPECT_EQ(mgr.make_equal(mgr.make_fprounding_even(), mgr.make_fprounding_zero()), no);
  const Term* r = constant("r", mgr.get_fprounding_type());
  EXPECT_EQ(mgr.make_equal(r, mgr.make_fprounding_zero())->get_tag(), T::equal);
}

TEST_F(Rules, FloatLiteralsOfDifferentPatternsMayBeEqual) {
  const Term* nan = mgr.make_fp_nan(3, 4);
  const Term* other_nan = mgr.make_fp_number(QNumber(0b01111000), 3, 4);
  EXPECT_EQ(mgr.make_equal(nan, other_nan)->get_tag(), T::equal);
  EXPECT_EQ(mgr.make_equal(nan, nan), yes);
}

TEST_F(Rules, IfThenElseWithEqualOrConstantParts) {
  EXPECT_EQ(mgr.make_term_ite(yes, x, y), x);
  EXPECT_EQ(mgr.make_term_ite(no, x, y), y);
  EXPECT_EQ(mgr.make_term_ite(p, x, x), x);
  EXPECT_FALSE(mgr.is_term_ite(mgr.make_term_ite(p, x, x)->get_symbol(), nullptr));
  EXPECT_EQ(mgr.make_term_ite(mgr.make_not(p), x, y), mgr.make_term_ite(p, y, x));
  EXPECT_EQ(mgr.make_term_ite(p, yes, no), p);
  EXPECT_EQ(mgr.make_term_ite(p, no, yes), mgr.make_not(p));
  EXPECT_EQ(mgr.make_term_ite(p, yes, q), mgr.make_or(p, q));
  EXPECT_EQ(mgr.make_term_ite(p, q, no), mgr.make_and(p, q));
  EXPECT_EQ(mgr.make_term_ite(p, p, q), mgr.make_or(p, q));
  EXPECT_EQ(mgr.make_term_ite(p, q, p), mgr.make_and(p, q));
}

TEST_F(Rules, ExtractionsReachThroughCompositions) {
  EXPECT_EQ(mgr.make_bv_extract(7, 0, x), x);
  EXPECT_EQ(mgr.make_bv_extract(2, 1, mgr.make_bv_extract(6, 3, x)), mgr.make_bv_extract(5, 4, x));
  const Term* joined = mgr.make_bv_concat(x, y);
  EXPECT_EQ(mgr.make_bv_extract(15, 8, joined), x);
  EXPECT_EQ(mgr.make_bv_extract(7, 0, joined), y);
  EXPECT_EQ(mgr.make_bv_extract(10, 9, joined), mgr.make_bv_extract(2, 1, x));
  EXPECT_EQ(mgr.make_bv_extract(8, 7, joined)->get_tag(), T::bv_extract);
  EXPECT_EQ(mgr.make_bv_extract(7, 0, mgr.make_bv_zero_extend(4, x)), x);
  EXPECT_EQ(mgr.make_bv_extract(11, 8, mgr.make_bv_zero_extend(4, x)), mgr.make_bv_number(0, 4));
  EXPECT_EQ(mgr.make_bv_extract(9, 9, mgr.make_bv_sign_extend(4, x)), mgr.make_bv_extract(7, 7, x));
}

TEST_F(Rules, NeighbouringExtractionsJoin) {
  EXPECT_EQ(mgr.make_bv_concat(mgr.make_bv_extract(7, 4, x), mgr.make_bv_extract(3, 0, x)), x);
  EXPECT_EQ(mgr.make_bv_concat(mgr.make_bv_extract(6, 4, x), mgr.make_bv_extract(3, 2, x)),
            mgr.make_bv_extract(6, 2, x));
  EXPECT_EQ(
      mgr.make_bv_concat(mgr.make_bv_extract(3, 0, x), mgr.make_bv_extract(7, 4, x))->get_tag(),
      T::bv_concat);
}

TEST_F(Rules, ExtensionsCombine) {
  EXPECT_EQ(mgr.make_bv_zero_extend(0, x), x);
  EXPECT_EQ(mgr.make_bv_sign_extend(0, x), x);
  EXPECT_EQ(mgr.make_bv_zero_extend(2, mgr.make_bv_zero_extend(3, x)),
            mgr.make_bv_zero_extend(5, x));
  EXPECT_EQ(mgr.make_bv_sign_extend(2, mgr.make_bv_sign_extend(3, x)),
            mgr.make_bv_sign_extend(5, x));
}

TEST_F(Rules, BitwiseIdentities) {
  const Term* not_x = mgr.make_bv_not(x);
  EXPECT_EQ(mgr.make_bv_not(not_x), x);
  EXPECT_EQ(mgr.make_bv_neg(mgr.make_bv_neg(x)), x);
  EXPECT_EQ(mgr.make_bv_and(x, zero), zero);
  EXPECT_EQ(mgr.make_bv_and(ones, x), x);
  EXPECT_EQ(mgr.make_bv_and(x, x), x);
  EXPECT_EQ(mgr.make_bv_and(x, not_x), zero);
  EXPECT_EQ(mgr.make_bv_or(zero, x), x);
  EXPECT_EQ(mgr.make_bv_or(x, ones), ones);
  EXPECT_EQ(mgr.make_bv_or(x, not_x), ones);
  EXPECT_EQ(mgr.make_bv_xor(x, x), zero);
  EXPECT_EQ(mgr.make_bv_xor(x, zero), x);
  EXPECT_EQ(mgr.make_bv_xor(x, ones), not_x);
  EXPECT_EQ(mgr.make_bv_xor(x, not_x), ones);
  EXPECT_EQ(mgr.make_bv_and(x, mgr.make_bv_or(x, y)), x);
  EXPECT_EQ(mgr.make_bv_or(x, mgr.make_bv_and(y, x)), x);
  EXPECT_EQ(mgr.make_bv_and(x, mgr.make_bv_and(x, y)), mgr.make_bv_and(x, y));
}

TEST_F(Rules, ArithmeticIdentities) {
  EXPECT_EQ(mgr.make_bv_add(x, zero), x);
  EXPECT_EQ(mgr.make_bv_add(zero, x), x);
  EXPECT_EQ(mgr.make_bv_sub(x, zero), x);
  EXPECT_EQ(mgr.make_bv_sub(x, x), zero);
  EXPECT_EQ(mgr.make_bv_sub(zero, x), mgr.make_bv_neg(x));
  EXPECT_EQ(mgr.make_bv_mul(x, one), x);
  EXPECT_EQ(mgr.make_bv_mul(zero, x), zero);
  EXPECT_EQ(mgr.make_bv_udiv(x, one), x);
  EXPECT_EQ(mgr.make_bv_udiv(x, zero), ones);
  EXPECT_EQ(mgr.make_bv_urem(x, one), zero);
  EXPECT_EQ(mgr.make_bv_urem(x, zero), x);
}

TEST_F(Rules, ShiftsByNothingAndByEverything) {
  for (const Make2 make :
       {&TermManager::make_bv_lshl, &TermManager::make_bv_lshr, &TermManager::make_bv_ashr}) {
    EXPECT_EQ((mgr.*make)(x, zero), x);
    EXPECT_EQ((mgr.*make)(zero, x), zero);
  }
  const Term* eight = mgr.make_bv_number(8, 8);
  EXPECT_EQ(mgr.make_bv_lshl(x, eight), zero);
  EXPECT_EQ(mgr.make_bv_lshr(x, eight), zero);
  EXPECT_EQ(mgr.make_bv_ashr(x, eight)->get_tag(), T::bv_ashr);
  EXPECT_EQ(mgr.make_bv_lshl(x, mgr.make_bv_number(7, 8))->get_tag(), T::bv_shl);
}

TEST_F(Rules, ComparisonsOfEqualsAndWithExtremes) {
  EXPECT_EQ(mgr.make_bv_ult(x, x), no);
  EXPECT_EQ(mgr.make_bv_ule(x, x), yes);
  EXPECT_EQ(mgr.make_bv_slt(x, x), no);
  EXPECT_EQ(mgr.make_bv_sle(x, x), yes);
  EXPECT_EQ(mgr.make_bv_ult(x, zero), no);
  EXPECT_EQ(mgr.make_bv_ule(zero, x), yes);
  EXPECT_EQ(mgr.make_bv_comp(x, x), mgr.make_bv_number(1, 1));
  EXPECT_EQ(mgr.make_bv_comp(x, mgr.make_bv_not(x)), mgr.make_bv_number(0, 1));
  EXPECT_EQ(mgr.make_bv_comp(bit, mgr.make_bv_number(1, 1)), bit);
  EXPECT_EQ(mgr.make_bv_comp(mgr.make_bv_number(0, 1), bit), mgr.make_bv_not(bit));
}

TEST(Rewriter, ExtractionFromDeepCompositionsNeedsNoNativeStack) {
  TermManager mgr;
  const Term* x = mgr.make_constant(mgr.make_unique_symbol("x", mgr.get_bv_type(1)));
  const Term* left = x;
  const Term* right = x;
  const Term* extended = x;
  constexpr std::size_t kDepth = 200'000;
  for (std::size_t i = 0; i < kDepth; ++i) {
    left = mgr.make_bv_concat(left, x);
    right = mgr.make_bv_concat(x, right);
    extended = mgr.make_bv_sign_extend(1, mgr.make_bv_concat(extended, x));
  }
  EXPECT_EQ(mgr.make_bv_extract(kDepth, kDepth, left), x);
  EXPECT_EQ(mgr.make_bv_extract(0, 0, right), x);
  EXPECT_EQ(mgr.make_bv_extract(2 * kDepth, 2 * kDepth, extended), x);
}

}  // namespace
}  // namespace vorn
