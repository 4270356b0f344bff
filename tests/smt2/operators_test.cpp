// What a name of a script stands for, and what is said of operands that do not fit it.
#include "vorn/smt2/operators.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "vorn/terms/operations.h"
#include "vorn/terms/term_manager.h"
#include "vorn/terms/theory_symbol.h"

namespace vorn::smt2 {
namespace {

class OperatorsTest : public testing::Test {
 protected:
  Value constant(const DataType* type) {
    return Value::of(mgr.make_constant(mgr.make_unique_symbol("c", type)));
  }
  static Value number(int numerator, int denominator = 1) {
    return Value::of(QNumber(numerator) / QNumber(denominator));
  }

  Value apply(const std::string& name, const std::vector<std::uint32_t>& indices,
              const std::vector<Value>& args) {
    return apply_operator(*find_operator(name), {mgr, indices, args});
  }
  std::string print(const std::string& name, const std::vector<std::uint32_t>& indices,
                    const std::vector<Value>& args) {
    return apply(name, indices, args).term->to_string();
  }
  std::string error(const std::string& name, const std::vector<std::uint32_t>& indices,
                    const std::vector<Value>& args) {
    try {
      apply(name, indices, args);
    } catch (const std::invalid_argument& e) {
      return e.what();
    }
    return "no error";
  }

  TermManager mgr{false};
  Value p = constant(mgr.get_bool_type());
  Value v = constant(mgr.get_bv_type(8));
  Value w = constant(mgr.get_bv_type(8));
  Value x = constant(mgr.get_fp_type(3, 4));
  Value y = constant(mgr.get_fp_type(3, 4));
  Value rm = constant(mgr.get_fprounding_type());
};

TEST_F(OperatorsTest, EveryOperationIsReadUnderItsName) {
  for (const Operation& op : get_operations()) {
    const Operator* found = find_operator(op.name);
    ASSERT_NE(found, nullptr) << op.name;
    EXPECT_TRUE(found->is_supported()) << op.name;
    if (found->build != nullptr || op.is_printed_only) continue;
    EXPECT_EQ(found->operation, &op) << op.name;
    EXPECT_EQ(found->standard_min_args, op.signature.get_arguments().size()) << op.name;
    EXPECT_LE(found->min_args, op.get_least_arguments()) << op.name;
    EXPECT_EQ(found->max_args, op.get_most_arguments()) << op.name;
    EXPECT_EQ(found->indices, op.get_index_count()) << op.name;
  }
}

TEST_F(OperatorsTest, OfTwoKindsThatPrintAlikeTheGeneralOneIsRead) {
  EXPECT_EQ(find_operator("=")->operation->tag, SymbolTag::equal);
  EXPECT_EQ(apply("=", {}, {p, p}).term->get_tag(), SymbolTag::equal);
}

TEST_F(OperatorsTest, NamesThatNothingBuildsAreKnown) {
  for (const char* name : {"fp.to_real", "bv2nat", "is_int"}) {
    ASSERT_NE(find_operator(name), nullptr) << name;
    EXPECT_FALSE(find_operator(name)->is_supported()) << name;
  }
  for (const char* name : {"", "fp.foo", "BVADD", "bvadd ", "let"})
    EXPECT_EQ(find_operator(name), nullptr) << name;
}

TEST_F(OperatorsTest, ToFpIsWhatItsOperandsAsk) {
  const Value bits = constant(mgr.get_bv_type(10));
  EXPECT_EQ(apply("to_fp", {4, 6}, {bits}).term->get_tag(), SymbolTag::fp_from_bits);
  EXPECT_EQ(apply("to_fp", {4, 6}, {rm, x}).term->get_tag(), SymbolTag::fp_cast);
  EXPECT_EQ(apply("to_fp", {4, 6}, {rm, v}).term->get_tag(), SymbolTag::fp_from_sbv);
  EXPECT_EQ(apply("to_fp_unsigned", {4, 6}, {rm, v}).term->get_tag(), SymbolTag::fp_from_ubv);
  EXPECT_EQ(print("to_fp", {3, 5}, {Value::of(mgr.make_fprounding_zero()), number(1, 3)}),
            "(fp #b0 #b001 #b0101)");
  EXPECT_EQ(apply("to_fp", {3, 5}, {rm, number(1, 2)}).term->get_tag(), SymbolTag::ite);
}

TEST_F(OperatorsTest, ToFpSaysWhatItLacks) {
  EXPECT_EQ(error("to_fp", {3, 5}, {number(1)}),
            "to_fp of a number takes a rounding mode before it");
  EXPECT_EQ(error("to_fp", {3, 5}, {x}), "to_fp of a float takes a rounding mode before it");
  EXPECT_EQ(error("to_fp", {3, 5}, {number(1), x}),
            "to_fp: expected a rounding mode, got a number");
  EXPECT_EQ(error("to_fp", {3, 5}, {p, number(1)}),
            "to_fp: expected a rounding mode, got a term of Bool");
  EXPECT_EQ(error("to_fp", {3, 5}, {rm, p}),
            "to_fp: expected a float, a bit-vector or a number, got a term of Bool");
  EXPECT_EQ(error("to_fp", {3, 6}, {v}),
            "to_fp: a bit-vector of width 8 is no (_ FloatingPoint 3 6)");
  EXPECT_EQ(error("to_fp", {3}, {rm, x}), "to_fp takes 2 indices, got 1");
  EXPECT_EQ(error("to_fp", {3, 5}, {}), "to_fp takes 1 to 3 arguments, got 0");
}

TEST_F(OperatorsTest, LiteralsOfFloatsHaveTheFormatOfTheirNumerals) {
  EXPECT_EQ(print("NaN", {3, 5}, {}), "(_ NaN 3 5)");
  EXPECT_EQ(print("+oo", {3, 5}, {}), "(_ +oo 3 5)");
  EXPECT_EQ(print("-oo", {3, 5}, {}), "(_ -oo 3 5)");
  EXPECT_EQ(print("+zero", {3, 5}, {}), "(_ +zero 3 5)");
  EXPECT_EQ(print("-zero", {3, 5}, {}), "(_ -zero 3 5)");
  EXPECT_EQ(error("NaN", {1, 5}, {}),
            "a floating-point sort with exponent width 1 and significand width 5: both must be "
            "greater than 1");
}

TEST_F(OperatorsTest, ModesHaveShortAndLongNames) {
  const std::pair<const char*, const char*> names[] = {{"RNE", "roundNearestTiesToEven"},
                                                       {"RNA", "roundNearestTiesToAway"},
                                                       {"RTP", "roundTowardPositive"},
                                                       {"RTN", "roundTowardNegative"},
                                                       {"RTZ", "roundTowardZero"}};
  for (const auto& [brief, full] : names) {
    EXPECT_EQ(apply(brief, {}, {}).term, apply(full, {}, {}).term);
    EXPECT_EQ(print(brief, {}, {}), full);
  }
}

TEST_F(OperatorsTest, ToFpScalesANumber) {
  const Value rtz = Value::of(mgr.make_fprounding_zero());
  EXPECT_EQ(print("to_fp", {3, 5}, {rtz, number(1, 3), number(2)}), "(fp #b0 #b011 #b0101)");
  EXPECT_EQ(print("to_fp", {3, 5}, {rtz, number(-3), number(-2)}), "(fp #b1 #b010 #b1000)");
  EXPECT_EQ(error("to_fp", {3, 5}, {rtz, number(3), number(1, 2)}),
            "to_fp: the exponent must be an integer, got 1/2");
  EXPECT_EQ(error("to_fp", {3, 5}, {rtz, x, number(1)}),
            "to_fp: expected a number, got a term of (_ FloatingPoint 3 5)");
  EXPECT_EQ(error("to_fp", {3, 5}, {rtz, number(1), v}),
            "to_fp: expected a number, got a term of (_ BitVec 8)");
  EXPECT_EQ(error("to_fp", {3, 5}, {number(1), number(1), number(1)}),
            "to_fp: expected a rounding mode, got a number");
  EXPECT_EQ(error("to_fp", {3, 5}, {v, number(1), number(1)}),
            "to_fp: expected a rounding mode, got a term of (_ BitVec 8)");
}

TEST_F(OperatorsTest, WhatGroupsToTheLeftIsItsOnlyArgument) {
  for (const char* name : {"and", "or", "xor"})
    EXPECT_EQ(apply(name, {}, {p}).term, p.term) << name;
  for (const char* name : {"bvand", "bvor", "bvxor", "bvadd", "bvmul", "concat"})
    EXPECT_EQ(apply(name, {}, {v}).term, v.term) << name;
  EXPECT_EQ(error("bvxnor", {}, {v}), "bvxnor takes at least 2 arguments, got 1");
  EXPECT_EQ(error("xor", {}, {v}), "xor: expected a Bool, got a term of (_ BitVec 8)");
  EXPECT_EQ(error("bvadd", {}, {p}), "bvadd: expected a bit-vector, got a term of Bool");
  EXPECT_EQ(error("concat", {}, {x}),
            "concat: expected a bit-vector, got a term of (_ FloatingPoint 3 5)");
  EXPECT_TRUE(error("bvadd", {}, {number(1)}).starts_with("bvadd: a number is no operand here"));
}

TEST_F(OperatorsTest, OneValueIsEqualToAllAndDistinctFromAllOthers) {
  for (const char* name : {"=", "distinct"}) {
    for (const Value& only : {p, v, x, rm})
      EXPECT_EQ(apply(name, {}, {only}).term, mgr.make_true()) << name;
  }
  EXPECT_EQ(error("fp.lt", {}, {x}), "fp.lt takes at least 2 arguments, got 1");
}

TEST_F(OperatorsTest, NumbersAreComputedExactlyFromLeftToRight) {
  EXPECT_EQ(*apply("+", {}, {number(1, 3), number(1, 6), number(2)}).real, QNumber(5) / QNumber(2));
  EXPECT_EQ(*apply("-", {}, {number(1, 3), number(1), number(1)}).real, QNumber(-5) / QNumber(3));
  EXPECT_EQ(*apply("*", {}, {number(2, 3), number(3, 2)}).real, QNumber(1));
  EXPECT_EQ(*apply("/", {}, {number(7), number(2), number(-3)}).real, QNumber(-7) / QNumber(6));
  EXPECT_EQ(*apply("+", {}, {number(5)}).real, QNumber(5));
  EXPECT_EQ(*apply("*", {}, {number(5)}).real, QNumber(5));
  EXPECT_EQ(error("/", {}, {number(1), number(2), number(0)}), "/: division by zero");
  EXPECT_EQ(error("/", {}, {number(1)}), "/ takes at least 2 arguments, got 1");
  EXPECT_EQ(error("+", {}, {number(1), v}), "+: expected a number, got a term of (_ BitVec 8)");
}

TEST_F(OperatorsTest, NumbersDoNotGrowWithoutBound) {
  Value big = number(2);
  std::string message;
  for (int i = 0; i < 100 && message.empty(); ++i) {
    try {
      big = apply("*", {}, {big, big});
    } catch (const std::invalid_argument& e) {
      message = e.what();
    }
  }
  EXPECT_EQ(message, "*: a number of 1048578 bits; results go up to 1048576");
  EXPECT_EQ(error("/", {}, {number(1), big, big}),
            "/: a number of 1048578 bits; results go up to 1048576");
}

TEST_F(OperatorsTest, DeparturesAreWhatTheStandardDoesNotHave) {
  EXPECT_TRUE(find_operator("and")->is_departure(1));
  EXPECT_FALSE(find_operator("and")->is_departure(2));
  EXPECT_FALSE(find_operator("and")->is_departure(9));
  EXPECT_TRUE(find_operator("to_fp")->is_departure(3));
  EXPECT_FALSE(find_operator("to_fp")->is_departure(2));
  EXPECT_FALSE(find_operator("-")->is_departure(1));
  EXPECT_TRUE(find_operator("-")->is_departure(2));
  EXPECT_FALSE(find_operator("/")->is_departure(2));
  EXPECT_TRUE(find_operator("/")->is_departure(3));
  for (const char* name : {"+", "*"}) {
    EXPECT_TRUE(find_operator(name)->is_departure(1)) << name;
    EXPECT_TRUE(find_operator(name)->is_departure(2)) << name;
  }
  // What is no application at all is an error, whatever the dialect.
  EXPECT_FALSE(find_operator("and")->is_departure(0));
  EXPECT_FALSE(find_operator("fp.lt")->is_departure(1));
  EXPECT_EQ(find_operator("xor")->describe_departure(1), "xor takes at least 2 arguments, got 1");
}

TEST_F(OperatorsTest, NumbersAreNegatedAndDivided) {
  EXPECT_EQ(*apply("-", {}, {number(3)}).real, QNumber(-3));
  EXPECT_EQ(*apply("/", {}, {number(1), number(4)}).real, QNumber(1) / QNumber(4));
  EXPECT_EQ(error("/", {}, {number(1), number(0)}), "/: division by zero");
  EXPECT_EQ(error("-", {}, {v}), "-: expected a number, got a term of (_ BitVec 8)");
}

TEST_F(OperatorsTest, ANumberIsNoOperandElsewhere) {
  EXPECT_TRUE(error("bvadd", {}, {v, number(1)}).starts_with("bvadd: a number is no operand here"));
  EXPECT_TRUE(error("=", {}, {number(1), number(1)}).starts_with("=: a number is no operand here"));
}

TEST_F(OperatorsTest, ComplaintsNameWhatWasWrittenAndOperandsInTheirOrder) {
  const Value narrow = constant(mgr.get_bv_type(5));
  EXPECT_EQ(error("bvugt", {}, {v, narrow}),
            "bvugt: operands of different sorts, (_ BitVec 8) and (_ BitVec 5)");
  EXPECT_EQ(error("fp.gt", {}, {v, x}),
            "fp.gt: expected a floating-point term, got a term of (_ BitVec 8)");
  EXPECT_EQ(error("bvnand", {}, {p, v}), "bvnand: expected a bit-vector, got a term of Bool");
  EXPECT_EQ(error("distinct", {}, {x, v}),
            "distinct: operands of different sorts, (_ FloatingPoint 3 5) and (_ BitVec 8)");
  EXPECT_EQ(error("bvite", {}, {v, v, w}),
            "bvite: expected a bit-vector of width 1, got a term of (_ BitVec 8)");
  EXPECT_EQ(error("ite", {}, {p, v}), "ite takes 3 arguments, got 2");
  EXPECT_EQ(error("=>", {}, {p}), "=> takes at least 2 arguments, got 1");
}

TEST_F(OperatorsTest, AreTheNamesThatPrintedScriptsDoNotDeclare) {
  std::vector<std::string_view> names = {"RNE",
                                         "RNA",
                                         "RTP",
                                         "RTN",
                                         "RTZ",
                                         "roundNearestTiesToEven",
                                         "fp",
                                         "NaN",
                                         "+oo",
                                         "-oo",
                                         "+zero",
                                         "roundNearestTiesToAway",
                                         "-",
                                         "/",
                                         "-zero",
                                         "to_fp",
                                         "+",
                                         "roundTowardPositive",
                                         "*",
                                         "x",
                                         "div",
                                         "abs",
                                         "<",
                                         "roundTowardNegative",
                                         "",
                                         "mod",
                                         "is",
                                         "const",
                                         "let",
                                         "roundTowardZero",
                                         "to_fp_unsigned"};
  for (const Operation& operation : get_operations())
    names.push_back(operation.name);
  for (const std::string_view name : names) {
    const Operator* op = find_operator(name);
    EXPECT_EQ(is_theory_symbol(name), op != nullptr && op->is_supported() && !op->needs_sort())
        << name;
  }
}

TEST_F(OperatorsTest, ManyArgumentsAreAppliedInOrder) {
  std::vector<Value> many(20, v);
  many.back() = w;
  const Term* t = apply("bvadd", {}, many).term;
  EXPECT_EQ(t->get_arg(1), w.term);
  for (int depth = 0; depth < 18; ++depth)
    t = t->get_arg(0);
  EXPECT_EQ(t, mgr.make_bv_add(v.term, v.term));
}

}  // namespace
}  // namespace vorn::smt2
