// Lemmas: each kind finds what it is for, follows levels, and is true under every assignment of
// small formats and under random and special operands of large ones.
#include "vorn/rewrite/relations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "tests/rewrite/rewriting.h"
#include "vorn/rewrite/fp_rewriter.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/terms/post_order.h"

namespace vorn::rewrite {
namespace {

/// Formulas over operands x, y, z and modes r, s, in which the kind finds lemmas.
struct Row {
  const char* kind;
  const char* formula;
  std::uint64_t lemmas;
};

constexpr Row kRows[] = {
    {"integral-order",
     "(distinct (fp.roundToIntegral RTN x) (fp.roundToIntegral RTP x) (fp.roundToIntegral RTZ x) "
     "(fp.roundToIntegral RNE x) (fp.roundToIntegral RNA x))",
     4},
    {"integral-nearest",
     "(and (fp.lt (fp.sub r x (fp.roundToIntegral RTN x)) (fp.sub s (fp.roundToIntegral RTP x) x)) "
     "(= (fp.roundToIntegral RNE x) (fp.roundToIntegral RNA x)))",
     3},
    {"selection-associates", "(= (fp.min (fp.min x y) z) (fp.min x (fp.min y z)))", 1},
    {"selection-associates", "(= (fp.max x (fp.max y z)) (fp.max (fp.max x y) z))", 1},
    {"sum-and-difference", "(and (fp.lt y (fp.add r z x)) (fp.lt x (fp.sub s y z)))", 1},
    {"sum-and-difference", "(and (fp.lt y (fp.sub r z x)) (fp.lt x (fp.sub s z y)))", 2},
    {"sum-and-difference", "(and (fp.lt (fp.sub r z x) c) (fp.lt x (fp.add s z d)))", 1},
    {"quotient-beside-one", "(and (fp.lt (fp.div r x y) one) (fp.lt y x))", 1},
    {"quotient-and-product", "(and (fp.lt z (fp.div r x y)) (fp.lt x (fp.mul s z y)))", 1},
    {"shared-operand", "(fp.lt (fp.add r x y) (fp.add r y z))", 1},
    {"shared-operand", "(fp.lt (fp.sub r x y) (fp.sub r x z))", 1},
    {"shared-operand", "(fp.lt (fp.sub r y x) (fp.sub r z x))", 1},
    {"shared-operand", "(fp.lt (fp.mul r x y) (fp.mul r z x))", 1},
    {"shared-operand", "(fp.lt (fp.div r y x) (fp.div r z x))", 1},
    {"monotone", "(fp.lt (fp.add r x c) (fp.add r y c))", 1},
    {"monotone", "(fp.lt (fp.sub r c x) (fp.sub r c y))", 1},
    {"monotone", "(and (fp.lt (fp.mul r c x) z) (fp.lt x (fp.mul r c y)))", 1},
    {"monotone", "(fp.lt (fp.mul r d x) (fp.mul r y d))", 1},
    {"monotone", "(fp.lt (fp.div r x c) (fp.div r y c))", 1},
    {"monotone", "(fp.lt (fp.div r x d) (fp.div r y d))", 1},
    {"monotone", "(and (= (fp.sqrt r x) (fp.sqrt r y)) (fp.lt x y))", 1},
    {"monotone", "(and (= (fp.roundToIntegral r x) (fp.roundToIntegral r y)) (fp.lt x y))", 1},
    {"monotone", "(and (= ((_ to_fp 3 2) r x) ((_ to_fp 3 2) r y)) (fp.lt x y))", 1},
    {"monotone", "(fp.lt ((_ to_fp 3 2) r v) ((_ to_fp 3 2) r w))", 1},
    {"monotone", "(fp.lt ((_ to_fp_unsigned 3 2) r v) ((_ to_fp_unsigned 3 2) r w))", 1},
    {"sum-beside-operand", "(fp.lt (fp.add r x y) y)", 1},
    {"sum-beside-operand", "(fp.leq x (fp.sub r x y))", 1},
    {"product-beside-operand", "(fp.lt x (fp.mul r y x))", 1},
    {"quotient-beside-operand", "(fp.lt x (fp.div r x y))", 1},
    {"remainder-bounds", "(fp.lt z (fp.rem x y))", 1},
    {"root-beside-one", "(fp.lt z (fp.sqrt r x))", 1},
    {"exact-difference", "(fp.lt z (fp.add r y (fp.sub s x y)))", 1},
    {"exact-difference", "(fp.lt z (fp.add r (fp.sub s x y) y))", 1},
    {"exact-difference", "(fp.lt z (fp.sub r x (fp.sub s x y)))", 1},
    {"reversed-difference", "(fp.lt (fp.sub RNE x y) (fp.sub RNE y x))", 1},
    {"reversed-difference", "(fp.lt (fp.sub RNA x y) (fp.sub RNA y x))", 1},
    {"reversed-difference", "(fp.lt (fp.sub RTZ x y) (fp.sub RTZ y x))", 1},
};

/// Formulas like them that ask for nothing, or for which no theorem holds.
constexpr const char* kWithout[] = {
    "(fp.lt (fp.roundToIntegral RTN x) x)",
    "(= (fp.min (fp.min x y) z) (fp.max x (fp.min y z)))",
    "(= (fp.add r z x) (fp.sub s y z))",
    "(fp.lt (fp.div r x y) z)",
    "(= (fp.div r x y) (fp.mul s z y))",
    "(fp.lt (fp.add r x c) (fp.add s y c))",
    "(fp.lt (fp.add r x (_ +oo 5 11)) (fp.add r y (_ +oo 5 11)))",
    "(fp.lt (fp.mul r x (_ +zero 5 11)) (fp.mul r y (_ +zero 5 11)))",
    "(fp.lt (fp.div r c x) (fp.div r c y))",
    "(= (fp.sqrt r x) (fp.sqrt r y))",
    "(fp.lt (fp.sub r x y) (fp.sub r z x))",
    "(fp.lt (fp.div r x y) (fp.div r x z))",
    "(fp.lt (fp.add r x y) (fp.add s x z))",
    "(fp.lt (fp.sub r x y) y)",
    "(fp.lt (fp.div r x y) y)",
    "(fp.lt z (fp.add r (fp.sub s x y) x))",
    "(fp.lt z (fp.sub r (fp.sub s x y) x))",
    "(fp.lt (fp.sub RTP x y) (fp.sub RTP y x))",
};

std::string declare(IEEEFloat::format f, const std::string& literal) {
  const std::string sort = std::to_string(f.e) + ' ' + std::to_string(f.m + 1);
  return "(define-sort F () (_ FloatingPoint " + sort +
         "))(declare-const r RoundingMode)(declare-const s RoundingMode)"
         "(declare-const x F)(declare-const y F)(declare-const z F)"
         "(declare-const v (_ BitVec 5))(declare-const w (_ BitVec 5))"
         "(define-fun one () F ((_ to_fp " +
         sort + ") RNE 1.0))(define-fun c () F ((_ to_fp " + sort + ") RNE " + literal +
         "))(define-fun d () F ((_ to_fp " + sort + ") RNE (- " + literal + ")))";
}

std::vector<const Term*> find_lemmas(Relations& relations, const Term* formula) {
  for (const Term* t : list_post_order({&formula, 1}))
    relations.add(t);
  return relations.take_lemmas();
}

/// Values at which operations do something special, and random ones.
class Operands {
 public:
  explicit Operands(unsigned seed) : random(seed) {}

  QNumber pick(const DataType* type, const std::vector<QNumber>& others) {
    if (type->get_kind() == DataType::Kind::rounding_mode) return number(random() % 5);
    const auto width = static_cast<unsigned>(type->get_value_width());
    const std::uint64_t mask = (width == 64 ? 0 : std::uint64_t{1} << width) - 1;
    if (type->get_kind() != DataType::Kind::floating_point) return number(random() & mask);
    const IEEEFloat::format f = type->get_format();
    IEEEFloat value(f, IEEEFloat::rounding_mode::nearest_even);
    switch (random() % 8) {
      case 0:
        value.self_zero(random() % 2 == 0);
        return value.get_bits();
      case 1:
        value.self_inf(random() % 2 == 0);
        return value.get_bits();
      case 2:  // an integer, one halfway between two, and those next to them
        value.self_round(QNumber(static_cast<std::int64_t>(random() % 41) - 20) / QNumber(2));
        return next_to(value);
      case 3:
      case 4:
        if (others.empty()) break;
        return next_to(IEEEFloat::from_bits(f, others[random() % others.size()]));
      default:
        break;
    }
    return bits_of(IEEEFloat::from_bits(f, number(random() & mask)));
  }

 private:
  /// Those of the one NaN for any.
  static QNumber bits_of(IEEEFloat value) {
    if (value.is_nan()) value.self_nan();
    return value.get_bits();
  }
  /// The value itself, or one of those beside it.
  QNumber next_to(const IEEEFloat& value) {
    if (value.is_zero() || value.is_nan()) return bits_of(value);
    const QNumber bits = value.get_bits() + QNumber(static_cast<int>(random() % 3) - 1);
    return bits_of(IEEEFloat::from_bits(value.get_format(), bits));
  }
  static QNumber number(std::uint64_t n) {
    return QNumber(static_cast<std::int64_t>(n >> 1U)) * QNumber(2) +
           QNumber(static_cast<int>(n & 1U));
  }

  std::mt19937_64 random;
};

/// An assignment under which the lemma is false, among `count`; empty for none.
std::string find_counterexample(const TermManager& mgr, const Term* lemma, unsigned count) {
  const std::vector<const Term*> constants = find_constants(mgr, lemma);
  Operands operands(1);
  for (unsigned i = 0; i < count; ++i) {
    std::vector<QNumber> values;
    std::vector<QNumber> floats;
    for (const Term* constant : constants) {
      values.push_back(operands.pick(constant->get_type(), floats));
      if (constant->get_type()->get_kind() == DataType::Kind::floating_point) {
        floats.push_back(values.back());
      }
    }
    const auto value_of = [&](const Term* wanted) {
      const auto at = std::ranges::find(constants, wanted) - constants.begin();
      return values[static_cast<std::size_t>(at)];
    };
    semantics::Evaluator evaluator(mgr, value_of, choose_open);
    if (evaluator.evaluate(lemma) == QNumber(1)) continue;
    std::string text;
    for (std::size_t k = 0; k < constants.size(); ++k)
      text += constants[k]->to_string() + " = " + values[k].to_string() + ' ';
    return text;
  }
  return "";
}

TEST(Relations, EachKindFindsItsLemmas) {
  for (const Row& row : kRows) {
    TermReader reader(declare({5, 10}, "0.3"));
    Relations relations(reader.get_manager());
    find_lemmas(relations, reader.read("Bool", row.formula));
    EXPECT_EQ(relations.get_count(row.kind), row.lemmas)
        << row.formula << ": " << relations.describe_counts();
  }
}

TEST(Relations, OtherFormulasHaveNone) {
  for (const char* formula : kWithout) {
    TermReader reader(declare({5, 10}, "0.3"));
    Relations relations(reader.get_manager());
    EXPECT_TRUE(find_lemmas(relations, reader.read("Bool", formula)).empty())
        << formula << ": " << relations.describe_counts();
  }
}

TEST(Relations, LemmasAreTrueInEveryFormat) {
  constexpr IEEEFloat::format kFormats[] = {{2, 1},  {3, 2}, {3, 3},  {4, 7},  {6, 2},
                                            {5, 10}, {8, 7}, {8, 23}, {11, 52}};
  for (const IEEEFloat::format f : kFormats) {
    for (const char* literal : {"0.3", "1.0", "3.0"}) {
      for (const Row& row : kRows) {
        TermReader reader(declare(f, literal));
        TermManager& mgr = reader.get_manager();
        Relations relations(mgr);
        for (const Term* lemma : find_lemmas(relations, reader.read("Bool", row.formula))) {
          EXPECT_EQ(find_counterexample(mgr, lemma, 400), "")
              << f.e << ' ' << f.m << ' ' << lemma->to_string();
        }
      }
    }
  }
}

/// What a lemma must not say is found out by the operands that the test of lemmas tries.
TEST(Relations, OperandsTellWhatIsNoTheorem) {
  constexpr const char* kFalse[] = {
      "(=> (fp.lt y (fp.add r x z)) (fp.lt (fp.sub s y z) x))",
      "(=> (fp.leq y (fp.add r x z)) (fp.leq (fp.sub s y z) x))",
      "(=> (fp.lt y (fp.sub r z x)) (fp.leq (fp.sub s z y) x))",
      "(=> (fp.lt one (fp.div r x y)) (fp.lt y x))",
      "(=> (and (fp.lt (_ +zero 5 11) y) (fp.leq x y)) (fp.leq (fp.div r x y) one))",
      "(=> (fp.lt z (fp.div r x y)) (fp.leq (fp.mul s z y) x))",
      "(=> (fp.lt (fp.mul r x y) (fp.mul r x z)) (fp.lt y z))",
      "(=> (fp.leq (fp.add r x y) (fp.add r x z)) (fp.leq y z))",
      "(=> (fp.lt x y) (fp.lt (fp.mul r x c) (fp.mul r y c)))",
      "(=> (fp.leq x y) (fp.leq (fp.add r x c) (fp.add s y c)))",
      "(=> (fp.leq x y) (fp.leq (fp.sqrt r x) (fp.sqrt r y)))",
      "(= (fp.roundToIntegral RTZ x) (fp.roundToIntegral RTN x))",
      "(fp.leq (fp.roundToIntegral RTN x) x)",
      "(=> (fp.eq (fp.sub r x (fp.roundToIntegral RTN x)) (fp.sub s (fp.roundToIntegral RTP x) x))"
      " (= (fp.roundToIntegral RNA x) (fp.roundToIntegral RTN x)))",
      "(= (fp.min (fp.min x y) z) (fp.min x (fp.max y z)))",
      "(=> (fp.lt x (fp.div r x y)) (fp.lt y one))",
      "(=> (fp.lt (fp.mul r x y) x) (fp.lt y one))",
      "(=> (and (fp.lt (_ +zero 5 11) x) (fp.lt (fp.div r x y) x)) (fp.lt one y))",
      "(fp.leq (fp.abs (fp.rem x y)) (fp.abs x))",
      "(=> (fp.leq one (fp.sqrt r x)) (fp.lt one x))",
      "(=> (fp.leq (fp.abs (fp.sub s x y)) (fp.abs x)) (fp.eq (fp.add r y (fp.sub s x y)) x))",
      "(=> (fp.leq (fp.abs (fp.sub s x y)) (fp.abs y)) (fp.eq (fp.sub r x (fp.sub s x y)) y))",
      "(or (fp.isNaN x) (fp.isNaN y) (fp.eq (fp.sub RTP x y) (fp.neg (fp.sub RTP y x))))",
  };
  TermReader reader(declare({5, 10}, "0.3"));
  for (const char* formula : kFalse) {
    const Term* t = reader.read("Bool", formula);
    EXPECT_NE(find_counterexample(reader.get_manager(), t, 20'000), "") << formula;
  }
}

TEST(Relations, LemmasLeaveWithTheirLevel) {
  TermReader reader(declare({5, 10}, "0.3"));
  Relations relations(reader.get_manager());
  const Term* sum = reader.read("F", "(fp.add r x z)");
  const Term* comparison = reader.read("Bool", "(fp.lt y (fp.add r x z))");
  const Term* difference = reader.read("F", "(fp.sub s y z)");
  relations.add(sum);
  relations.push();
  relations.add(comparison);
  relations.add(difference);
  EXPECT_EQ(relations.take_lemmas().size(), 1U);
  relations.pop();
  relations.push();
  relations.add(difference);
  EXPECT_TRUE(relations.take_lemmas().empty()) << "nothing is compared on this level";
  relations.add(comparison);
  EXPECT_EQ(relations.take_lemmas().size(), 1U) << "it was forgotten";
  relations.pop();
  relations.add(comparison);
  relations.push();
  relations.add(difference);
  EXPECT_EQ(relations.take_lemmas().size(), 1U);
}

TEST(Relations, LemmasAreNoMoreThanTerms) {
  TermManager mgr;
  Relations relations(mgr);
  const DataType* type = mgr.get_fp_type(5, 10);
  const auto constant = [&] { return mgr.make_constant(mgr.make_unique_symbol("x", type)); };
  const Term* rm = mgr.make_fprounding_even();
  const Term* three = mgr.make_fp_number(QNumber(0x4200), 5, 10);
  const Term* bound = constant();
  std::size_t terms = 0;
  std::size_t lemmas = 0;
  for (int i = 0; i < 200; ++i) {
    const Term* product = mgr.make_fp_mul(rm, three, constant());
    for (const Term* t : {product, mgr.make_fp_lt(product, bound)}) {
      relations.add(t);
      ++terms;
    }
    lemmas += relations.take_lemmas().size();
  }
  EXPECT_GT(lemmas, 100U);
  EXPECT_LE(lemmas, terms + 8);
}

TEST(Relations, EachKindIsProvedByCircuits) {
  for (const RelationKind& kind : get_relation_kinds()) {
    const std::string name = kind.name;
    const auto is_its = [&name](const std::filesystem::directory_entry& entry) {
      return entry.path().filename().string().starts_with(name);
    };
    const std::filesystem::directory_iterator scripts(VORN_RELATION_SCRIPTS);
    EXPECT_TRUE(std::ranges::any_of(scripts, is_its)) << name;
  }
}

}  // namespace
}  // namespace vorn::rewrite
