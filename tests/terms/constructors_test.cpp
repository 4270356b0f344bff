// Constructors checked one by one: sorts, widths, shapes without rewriting, refusals, recognisers.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

using T = SymbolTag;
using Unary = const Term* (TermManager::*)(const Term*);
using Binary = const Term* (TermManager::*)(const Term*, const Term*);
using Ternary = const Term* (TermManager::*)(const Term*, const Term*, const Term*);

struct BinaryRow {
  Binary make;
  T::tag tag;
};

constexpr BinaryRow kBooleanOperations[] = {
    {&TermManager::make_and, T::bool_and},         {&TermManager::make_or, T::bool_or},
    {&TermManager::make_xor, T::bool_xor},         {&TermManager::make_iff, T::bool_iff},
    {&TermManager::make_implies, T::bool_implies},
};

constexpr BinaryRow kBitVectorOperations[] = {
    {&TermManager::make_bv_and, T::bv_and},   {&TermManager::make_bv_or, T::bv_or},
    {&TermManager::make_bv_xor, T::bv_xor},   {&TermManager::make_bv_add, T::bv_add},
    {&TermManager::make_bv_sub, T::bv_sub},   {&TermManager::make_bv_mul, T::bv_mul},
    {&TermManager::make_bv_udiv, T::bv_udiv}, {&TermManager::make_bv_urem, T::bv_urem},
    {&TermManager::make_bv_sdiv, T::bv_sdiv}, {&TermManager::make_bv_srem, T::bv_srem},
    {&TermManager::make_bv_smod, T::bv_smod}, {&TermManager::make_bv_lshl, T::bv_shl},
    {&TermManager::make_bv_lshr, T::bv_lshr}, {&TermManager::make_bv_ashr, T::bv_ashr},
};

constexpr BinaryRow kBitVectorPredicates[] = {
    {&TermManager::make_bv_ult, T::bv_ult},
    {&TermManager::make_bv_ule, T::bv_ule},
    {&TermManager::make_bv_slt, T::bv_slt},
    {&TermManager::make_bv_sle, T::bv_sle},
};

constexpr BinaryRow kFloatComparisons[] = {
    {&TermManager::make_fp_equal, T::fp_equal},
    {&TermManager::make_fp_lt, T::fp_lt},
    {&TermManager::make_fp_le, T::fp_le},
};

struct UnaryRow {
  Unary make;
  T::tag tag;
};

constexpr UnaryRow kFloatTests[] = {
    {&TermManager::make_fp_isnan, T::fp_isnan},
    {&TermManager::make_fp_isinf, T::fp_isinf},
    {&TermManager::make_fp_iszero, T::fp_iszero},
};

struct ArithmeticRow {
  Ternary make;
  T::tag tag;
};

constexpr ArithmeticRow kFloatArithmetic[] = {
    {&TermManager::make_fp_add, T::fp_add},
    {&TermManager::make_fp_sub, T::fp_sub},
    {&TermManager::make_fp_mul, T::fp_mul},
    {&TermManager::make_fp_div, T::fp_div},
};

const Term* constant(TermManager& mgr, const std::string& name, const DataType* type) {
  return mgr.make_constant(mgr.make_unique_symbol(name, type));
}

/// One constant of each sort that the tests need, in a manager that does not rewrite.
class Constructors : public testing::Test {
 protected:
  void expect_shape(const Term* t, T::tag tag, const DataType* type,
                    std::initializer_list<const Term*> args) const {
    EXPECT_EQ(t->get_tag(), tag);
    EXPECT_EQ(t->get_type(), type);
    ASSERT_EQ(t->get_arity(), args.size());
    std::size_t i = 0;
    for (const Term* arg : args)
      EXPECT_EQ(t->get_arg(i++), arg);
  }

  /// `action` must throw an exception whose text has every one of `words`.
  static void expect_refused(const std::function<void()>& action,
                             std::initializer_list<const char*> words) {
    try {
      action();
      ADD_FAILURE() << "accepted";
    } catch (const std::invalid_argument& error) {
      for (const char* word : words) {
        EXPECT_NE(std::string(error.what()).find(word), std::string::npos)
            << "no \"" << word << "\" in: " << error.what();
      }
    }
  }

  TermManager mgr{false};
  TermManager other{false};
  const Term* p = constant(mgr, "p", mgr.get_bool_type());
  const Term* q = constant(mgr, "q", mgr.get_bool_type());
  const Term* x = constant(mgr, "x", mgr.get_bv_type(8));
  const Term* y = constant(mgr, "y", mgr.get_bv_type(8));
  const Term* narrow = constant(mgr, "narrow", mgr.get_bv_type(5));
  const Term* f = constant(mgr, "f", mgr.get_fp_type(3, 4));
  const Term* g = constant(mgr, "g", mgr.get_fp_type(3, 4));
  const Term* wide = constant(mgr, "wide", mgr.get_fp_type(5, 10));
  const Term* rm = constant(mgr, "rm", mgr.get_fprounding_type());
  const Term* foreign_p = constant(other, "p", other.get_bool_type());
  const Term* foreign_x = constant(other, "x", other.get_bv_type(8));
  const Term* foreign_f = constant(other, "f", other.get_fp_type(3, 4));
  const Term* foreign_rm = constant(other, "rm", other.get_fprounding_type());
};

// Shapes without rewriting ------------------------------------------------------------------------

TEST_F(Constructors, BooleanOperationsHaveTheShapeAskedFor) {
  for (const BinaryRow& row : kBooleanOperations) {
    expect_shape((mgr.*row.make)(p, q), row.tag, mgr.get_bool_type(), {p, q});
    expect_shape((mgr.*row.make)(q, p), row.tag, mgr.get_bool_type(), {q, p});
    expect_shape((mgr.*row.make)(p, p), row.tag, mgr.get_bool_type(), {p, p});
    expect_shape((mgr.*row.make)(mgr.make_true(), mgr.make_false()), row.tag, mgr.get_bool_type(),
                 {mgr.make_true(), mgr.make_false()});
  }
  const Term* negated = mgr.make_not(p);
  expect_shape(negated, T::bool_not, mgr.get_bool_type(), {p});
  expect_shape(mgr.make_not(negated), T::bool_not, mgr.get_bool_type(), {negated});
}

TEST_F(Constructors, BitVectorOperationsHaveTheShapeAskedFor) {
  const Term* zero = mgr.make_bv_number(0, 8);
  for (const BinaryRow& row : kBitVectorOperations) {
    expect_shape((mgr.*row.make)(x, y), row.tag, mgr.get_bv_type(8), {x, y});
    expect_shape((mgr.*row.make)(y, x), row.tag, mgr.get_bv_type(8), {y, x});
    expect_shape((mgr.*row.make)(zero, zero), row.tag, mgr.get_bv_type(8), {zero, zero});
  }
  for (const BinaryRow& row : kBitVectorPredicates) {
    expect_shape((mgr.*row.make)(x, y), row.tag, mgr.get_bool_type(), {x, y});
    expect_shape((mgr.*row.make)(zero, zero), row.tag, mgr.get_bool_type(), {zero, zero});
  }
  expect_shape(mgr.make_bv_comp(y, x), T::bv_comp, mgr.get_bv_type(1), {y, x});
  expect_shape(mgr.make_bv_not(zero), T::bv_not, mgr.get_bv_type(8), {zero});
  expect_shape(mgr.make_bv_neg(zero), T::bv_neg, mgr.get_bv_type(8), {zero});
}

TEST_F(Constructors, ExtractionsHaveTheirIndices) {
  const Term* t = mgr.make_bv_extract(5, 2, x);
  expect_shape(t, T::bv_extract, mgr.get_bv_type(4), {x});
  EXPECT_EQ(t->get_symbol()->get_indices(), (Symbol::Indices{5, 2, 0, 0}));
  expect_shape(mgr.make_bv_extract(7, 0, x), T::bv_extract, mgr.get_bv_type(8), {x});
  expect_shape(mgr.make_bv_extract(7, 7, x), T::bv_extract, mgr.get_bv_type(1), {x});
  expect_shape(mgr.make_bv_extract(1, 1, t), T::bv_extract, mgr.get_bv_type(1), {t});
}

TEST_F(Constructors, ConcatenationPutsTheFirstOperandOnTop) {
  expect_shape(mgr.make_bv_concat(x, narrow), T::bv_concat, mgr.get_bv_type(13), {x, narrow});
}

TEST_F(Constructors, ExtensionsHaveTheShapeAskedForByZeroBitsToo) {
  for (const std::size_t n : {std::size_t{0}, std::size_t{1}, std::size_t{9}}) {
    const Term* z = mgr.make_bv_zero_extend(n, x);
    const Term* s = mgr.make_bv_sign_extend(n, x);
    expect_shape(z, T::bv_zero_extend, mgr.get_bv_type(8 + n), {x});
    expect_shape(s, T::bv_sign_extend, mgr.get_bv_type(8 + n), {x});
    EXPECT_EQ(z->get_symbol()->get_indices()[0], n);
    EXPECT_EQ(s->get_symbol()->get_indices()[0], n);
  }
}

TEST_F(Constructors, EqualityAndIfThenElseTakeAnySort) {
  for (const Term* t : {p, x, f, rm}) {
    expect_shape(mgr.make_equal(t, t), T::equal, mgr.get_bool_type(), {t, t});
    expect_shape(mgr.make_term_ite(p, t, t), T::ite, t->get_type(), {p, t, t});
  }
  expect_shape(mgr.make_equal(y, x), T::equal, mgr.get_bool_type(), {y, x});
  expect_shape(mgr.make_term_ite(mgr.make_true(), x, y), T::ite, mgr.get_bv_type(8),
               {mgr.make_true(), x, y});
}

TEST_F(Constructors, FloatingPointOperationsHaveTheShapeAskedFor) {
  const DataType* type = mgr.get_fp_type(3, 4);
  for (const BinaryRow& row : kFloatComparisons) {
    expect_shape((mgr.*row.make)(g, f), row.tag, mgr.get_bool_type(), {g, f});
  }
  for (const UnaryRow& row : kFloatTests) {
    expect_shape((mgr.*row.make)(f), row.tag, mgr.get_bool_type(), {f});
  }
  for (const ArithmeticRow& row : kFloatArithmetic) {
    expect_shape((mgr.*row.make)(rm, g, f), row.tag, type, {rm, g, f});
  }
  expect_shape(mgr.make_fp_neg(f), T::fp_neg, type, {f});
  expect_shape(mgr.make_fp_cast(3, 4, rm, wide), T::fp_cast, type, {rm, wide});
  expect_shape(mgr.make_fp_from_sbv(3, 4, rm, x), T::fp_from_sbv, type, {rm, x});
  expect_shape(mgr.make_fp_from_ubv(3, 4, rm, x), T::fp_from_ubv, type, {rm, x});
  expect_shape(mgr.make_fp_from_bits(3, 4, x), T::fp_from_bits, type, {x});
}

TEST_F(Constructors, FloatingPointOperationsAreNeverSimplified) {
  TermManager rewriting(true);
  const Term* one = rewriting.make_fp_number(QNumber(0x30), 3, 4);
  const Term* even = rewriting.make_fprounding_even();
  EXPECT_EQ(rewriting.make_fp_add(even, one, one)->get_tag(), T::fp_add);
  EXPECT_EQ(rewriting.make_fp_neg(rewriting.make_fp_neg(one))->get_tag(), T::fp_neg);
  EXPECT_EQ(rewriting.make_fp_equal(one, one)->get_tag(), T::fp_equal);
  EXPECT_EQ(rewriting.make_fp_isnan(one)->get_tag(), T::fp_isnan);
  EXPECT_EQ(rewriting.make_fp_cast(3, 4, even, one)->get_tag(), T::fp_cast);
}

// Recognisers
// -----------------------------------------------------------------------------------------

TEST_F(Constructors, RecognisersStoreTheFormatOfTheOperands) {
  using Recogniser = bool (TermManager::*)(const Symbol*, std::size_t*, std::size_t*) const;
  struct Row {
    Recogniser is;
    const Term* term;
  };
  const std::vector<Row> rows = {
      {&TermManager::is_fp_equal, mgr.make_fp_equal(f, g)},
      {&TermManager::is_fp_lt, mgr.make_fp_lt(f, g)},
      {&TermManager::is_fp_le, mgr.make_fp_le(f, g)},
      {&TermManager::is_fp_neg, mgr.make_fp_neg(f)},
      {&TermManager::is_fp_add, mgr.make_fp_add(rm, f, g)},
      {&TermManager::is_fp_sub, mgr.make_fp_sub(rm, f, g)},
      {&TermManager::is_fp_mul, mgr.make_fp_mul(rm, f, g)},
      {&TermManager::is_fp_div, mgr.make_fp_div(rm, f, g)},
      {&TermManager::is_fp_isnan, mgr.make_fp_isnan(f)},
      {&TermManager::is_fp_isinf, mgr.make_fp_isinf(f)},
      {&TermManager::is_fp_iszero, mgr.make_fp_iszero(f)},
  };
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (std::size_t j = 0; j < rows.size(); ++j) {
      std::size_t e = 0;
      std::size_t m = 0;
      const Symbol* head = rows[j].term->get_symbol();
      EXPECT_EQ((mgr.*rows[i].is)(head, &e, &m), i == j);
      EXPECT_EQ(e, i == j ? 3U : 0U);
      EXPECT_EQ(m, i == j ? 4U : 0U);
      EXPECT_FALSE((other.*rows[i].is)(head, &e, &m)) << "symbols of another manager";
    }
  }
}

TEST_F(Constructors, TheCastRecogniserStoresTheOperandsWidthsFirst) {
  const Symbol* cast = mgr.make_fp_cast(3, 4, rm, wide)->get_symbol();
  std::size_t e1 = 0;
  std::size_t m1 = 0;
  std::size_t e2 = 0;
  std::size_t m2 = 0;
  ASSERT_TRUE(mgr.is_fp_cast(cast, &e1, &m1, &e2, &m2));
  EXPECT_EQ(e1, 5U);
  EXPECT_EQ(m1, 10U);
  EXPECT_EQ(e2, 3U);
  EXPECT_EQ(m2, 4U);
  EXPECT_FALSE(mgr.is_fp_cast(mgr.make_fp_neg(f)->get_symbol(), &e1, &m1, &e2, &m2));
}

TEST_F(Constructors, TheIntegerConversionRecognisersStoreTheIntegersWidthFirst) {
  const Symbol* sbv = mgr.make_fp_from_sbv(3, 4, rm, x)->get_symbol();
  const Symbol* ubv = mgr.make_fp_from_ubv(5, 10, rm, narrow)->get_symbol();
  std::size_t w = 0;
  std::size_t e = 0;
  std::size_t m = 0;
  ASSERT_TRUE(mgr.is_fp_from_sbv(sbv, &w, &e, &m));
  EXPECT_EQ(w, 8U);
  EXPECT_EQ(e, 3U);
  EXPECT_EQ(m, 4U);
  ASSERT_TRUE(mgr.is_fp_from_ubv(ubv, &w, &e, &m));
  EXPECT_EQ(w, 5U);
  EXPECT_EQ(e, 5U);
  EXPECT_EQ(m, 10U);
  EXPECT_FALSE(mgr.is_fp_from_sbv(ubv, &w, &e, &m));
  EXPECT_FALSE(mgr.is_fp_from_ubv(sbv, &w, &e, &m));
}

TEST_F(Constructors, IfThenElseIsRecognisedWithTheSortOfItsBranches) {
  const DataType* type = nullptr;
  const Symbol* head = mgr.make_term_ite(p, x, y)->get_symbol();
  EXPECT_TRUE(mgr.is_term_ite(head, &type));
  EXPECT_EQ(type, mgr.get_bv_type(8));
  EXPECT_TRUE(mgr.is_term_ite(head, nullptr));
  EXPECT_FALSE(mgr.is_term_ite(x->get_symbol(), nullptr));
  EXPECT_FALSE(other.is_term_ite(head, nullptr));
}

TEST_F(Constructors, OperationsOnDifferentWidthsHaveDifferentSymbols) {
  const Term* v = constant(mgr, "v", mgr.get_bv_type(5));
  EXPECT_EQ(mgr.make_bv_add(x, y)->get_symbol(), mgr.make_bv_add(y, x)->get_symbol());
  EXPECT_NE(mgr.make_bv_add(x, y)->get_symbol(), mgr.make_bv_add(v, v)->get_symbol());
  EXPECT_NE(mgr.make_fp_isnan(f)->get_symbol(), mgr.make_fp_isnan(wide)->get_symbol());
}

// Refusals
// --------------------------------------------------------------------------------------------

TEST_F(Constructors, BooleanOperationsRefuseOtherSorts) {
  for (const BinaryRow& row : kBooleanOperations) {
    expect_refused([&] { (mgr.*row.make)(p, x); }, {"Bool", "(_ BitVec 8)"});
    expect_refused([&] { (mgr.*row.make)(x, p); }, {"Bool", "(_ BitVec 8)"});
    expect_refused([&] { (mgr.*row.make)(p, foreign_p); }, {"another term manager"});
    expect_refused([&] { (mgr.*row.make)(nullptr, p); }, {"missing"});
  }
  expect_refused([&] { mgr.make_and(p, x); }, {"and: "});
  expect_refused([&] { mgr.make_not(f); }, {"not: ", "(_ FloatingPoint 3 5)"});
  expect_refused([&] { mgr.make_not(foreign_p); }, {"not: ", "another term manager"});
  expect_refused([&] { mgr.make_not(nullptr); }, {"not: "});
}

TEST_F(Constructors, BitVectorOperationsRefuseOtherSortsAndWidths) {
  std::vector<BinaryRow> rows(std::begin(kBitVectorOperations), std::end(kBitVectorOperations));
  rows.insert(rows.end(), std::begin(kBitVectorPredicates), std::end(kBitVectorPredicates));
  rows.push_back({&TermManager::make_bv_comp, T::bv_comp});
  for (const BinaryRow& row : rows) {
    expect_refused([&] { (mgr.*row.make)(x, narrow); }, {"bv", "(_ BitVec 8)", "(_ BitVec 5)"});
    expect_refused([&] { (mgr.*row.make)(narrow, x); }, {"bv", "(_ BitVec 8)", "(_ BitVec 5)"});
    expect_refused([&] { (mgr.*row.make)(p, p); }, {"bv", "Bool"});
    expect_refused([&] { (mgr.*row.make)(x, foreign_x); }, {"bv", "another term manager"});
    expect_refused([&] { (mgr.*row.make)(foreign_x, x); }, {"bv", "another term manager"});
    expect_refused([&] { (mgr.*row.make)(x, nullptr); }, {"bv", "missing"});
  }
  expect_refused([&] { mgr.make_bv_add(x, narrow); }, {"bvadd: "});
  expect_refused([&] { mgr.make_bv_not(p); }, {"bvnot: ", "Bool"});
  expect_refused([&] { mgr.make_bv_neg(rm); }, {"bvneg: ", "RoundingMode"});
}

TEST_F(Constructors, ExtractionRefusesBitsThatAreNotThere) {
  expect_refused([&] { mgr.make_bv_extract(8, 0, x); }, {"extract: ", "8", "0"});
  expect_refused([&] { mgr.make_bv_extract(2, 3, x); }, {"extract: ", "2", "3", "8"});
  expect_refused([&] { mgr.make_bv_extract(SIZE_MAX, 0, x); }, {"extract: "});
  expect_refused([&] { mgr.make_bv_extract(0, SIZE_MAX, x); }, {"extract: "});
  expect_refused([&] { mgr.make_bv_extract(0, 0, p); }, {"extract: ", "Bool"});
  expect_refused([&] { mgr.make_bv_extract(0, 0, foreign_x); }, {"extract: "});
}

TEST_F(Constructors, ResultsAreNoWiderThanTheLimit) {
  const std::size_t most = TermManager::kMaxWidth;
  const Term* widest = constant(mgr, "widest", mgr.get_bv_type(most));
  EXPECT_EQ(mgr.make_bv_zero_extend(most - 8, x)->get_type(), widest->get_type());
  for (const std::size_t n : {most - 7, most, SIZE_MAX, SIZE_MAX - 7}) {
    expect_refused([&] { mgr.make_bv_zero_extend(n, x); }, {"zero_extend: ", "8"});
    expect_refused([&] { mgr.make_bv_sign_extend(n, x); }, {"sign_extend: ", "8"});
  }
  expect_refused([&] { mgr.make_bv_sign_extend(1, widest); }, {"sign_extend: ", "1048576"});
  expect_refused([&] { mgr.make_bv_concat(widest, x); }, {"1048584"});
  expect_refused([&] { mgr.make_bv_zero_extend(1, f); }, {"zero_extend: ", "FloatingPoint"});
}

TEST_F(Constructors, ConcatenationRefusesOtherSorts) {
  expect_refused([&] { mgr.make_bv_concat(x, p); }, {"concat: ", "Bool"});
  expect_refused([&] { mgr.make_bv_concat(foreign_x, x); }, {"concat: "});
}

TEST_F(Constructors, EqualityAndIfThenElseRefuseDifferentSorts) {
  expect_refused([&] { mgr.make_equal(x, narrow); }, {"=: ", "(_ BitVec 8)", "(_ BitVec 5)"});
  expect_refused([&] { mgr.make_equal(p, x); }, {"=: ", "Bool"});
  expect_refused([&] { mgr.make_equal(f, wide); }, {"=: ", "(_ FloatingPoint 5 11)"});
  expect_refused([&] { mgr.make_equal(x, foreign_x); }, {"=: ", "another term manager"});
  expect_refused([&] { mgr.make_equal(nullptr, x); }, {"=: "});
  expect_refused([&] { mgr.make_term_ite(x, x, x); }, {"ite: ", "Bool"});
  expect_refused([&] { mgr.make_term_ite(p, x, narrow); }, {"ite: ", "(_ BitVec 5)"});
  expect_refused([&] { mgr.make_term_ite(p, p, x); }, {"ite: "});
  expect_refused([&] { mgr.make_term_ite(foreign_p, x, x); }, {"ite: ", "another term manager"});
  expect_refused([&] { mgr.make_term_ite(p, foreign_x, foreign_x); },
                 {"ite: ", "another term manager"});
}

TEST_F(Constructors, FloatingPointOperationsRefuseOtherSortsAndFormats) {
  for (const BinaryRow& row : kFloatComparisons) {
    expect_refused([&] { (mgr.*row.make)(f, wide); },
                   {"fp.", "(_ FloatingPoint 3 5)", "(_ FloatingPoint 5 11)"});
    expect_refused([&] { (mgr.*row.make)(x, x); }, {"fp.", "(_ BitVec 8)"});
    expect_refused([&] { (mgr.*row.make)(f, foreign_f); }, {"fp.", "another term manager"});
  }
  for (const UnaryRow& row : kFloatTests) {
    expect_refused([&] { (mgr.*row.make)(x); }, {"fp.", "(_ BitVec 8)"});
    expect_refused([&] { (mgr.*row.make)(foreign_f); }, {"fp.", "another term manager"});
  }
  for (const ArithmeticRow& row : kFloatArithmetic) {
    expect_refused([&] { (mgr.*row.make)(f, f, f); }, {"fp.", "rounding mode"});
    expect_refused([&] { (mgr.*row.make)(rm, f, wide); },
                   {"fp.", "(_ FloatingPoint 3 5)", "(_ FloatingPoint 5 11)"});
    expect_refused([&] { (mgr.*row.make)(rm, x, x); }, {"fp.", "(_ BitVec 8)"});
    expect_refused([&] { (mgr.*row.make)(foreign_rm, f, f); }, {"fp.", "another term manager"});
    expect_refused([&] { (mgr.*row.make)(rm, f, foreign_f); }, {"fp.", "another term manager"});
  }
  expect_refused([&] { mgr.make_fp_neg(p); }, {"fp.neg: ", "Bool"});
}

TEST_F(Constructors, ConversionsRefuseOtherSortsAndFormatsThatAreNone) {
  expect_refused([&] { mgr.make_fp_cast(3, 4, p, f); }, {"to_fp: ", "rounding mode"});
  expect_refused([&] { mgr.make_fp_cast(3, 4, rm, x); }, {"to_fp: ", "(_ BitVec 8)"});
  expect_refused([&] { mgr.make_fp_cast(0, 4, rm, f); }, {"exponent width 0"});
  expect_refused([&] { mgr.make_fp_from_sbv(3, 4, rm, f); }, {"to_fp: ", "FloatingPoint"});
  expect_refused([&] { mgr.make_fp_from_ubv(3, 4, x, x); }, {"to_fp_unsigned: "});
  expect_refused([&] { mgr.make_fp_from_ubv(3, 0, rm, x); }, {"significand width 0"});
  expect_refused([&] { mgr.make_fp_from_bits(3, 5, x); },
                 {"to_fp: ", "8", "(_ FloatingPoint 3 6)"});
  expect_refused([&] { mgr.make_fp_from_bits(3, 4, f); }, {"to_fp: "});
}

TEST_F(Constructors, ARefusalLeavesTheManagerUsable) {
  const std::uint64_t before = mgr.get_term_count();
  EXPECT_THROW(mgr.make_bv_add(x, narrow), std::invalid_argument);
  EXPECT_EQ(mgr.get_term_count(), before);
  expect_shape(mgr.make_bv_add(x, y), T::bv_add, mgr.get_bv_type(8), {x, y});
}

}  // namespace
}  // namespace vorn
