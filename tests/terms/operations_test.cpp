// The table of operations against itself, and the one constructor that works from it.
#include "vorn/terms/operations.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

using T = SymbolTag;

class OperationsTest : public testing::Test {
 protected:
  const Term* constant(const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol("c", type));
  }

  /// Arrays of floats, so that index and element are told apart.
  const DataType* array_sort() {
    return mgr.get_array_type(mgr.get_bv_type(3), mgr.get_fp_type(5, 6));
  }

  /// An operand of the sort that a letter stands for, in formats (3, 4) and (5, 6); letters that
  /// fix a width by another operand or by the result fit those.
  const Term* operand(char letter) {
    switch (letter) {
      case 'B':
        return constant(mgr.get_bool_type());
      case 'R':
        return constant(mgr.get_fprounding_type());
      case '1':
        return constant(mgr.get_bv_type(1));
      case 'F':
        return constant(mgr.get_fp_type(3, 4));
      case 'G':
        return constant(mgr.get_fp_type(5, 6));
      case 'Y':
        return constant(array_sort());
      case 'I':
        return constant(array_sort()->get_index());
      case 'E':
        return constant(array_sort()->get_element());
      default:
        return constant(mgr.get_bv_type(8));  // A, and all bit-vectors
    }
  }

  std::vector<const Term*> operands(const Operation& op) {
    std::vector<const Term*> args;
    for (const char letter : op.signature.get_letters())
      args.push_back(operand(letter));
    return args;
  }

  static std::vector<std::size_t> indices(const Operation& op) {
    if (op.indexing == Indexing::format) return {3, 4};
    return op.get_index_count() == 2 ? std::vector<std::size_t>{5, 2}
                                     : std::vector<std::size_t>(op.get_index_count(), 3);
  }

  /// The application to operands as many as the signature has; one kind needs to be told its sort.
  const Term* make(const Operation& op, const std::vector<const Term*>& args) {
    if (op.indexing == Indexing::sort) return mgr.make_const_array(array_sort(), args[0]);
    return mgr.make(op.tag, indices(op), args);
  }

  std::string operand_error(const Operation& op, const std::vector<const Term*>& args) {
    try {
      make(op, args);
    } catch (const std::invalid_argument& e) {
      return e.what();
    }
    return "no error";
  }

  std::string error(T::tag tag, std::vector<std::size_t> numerals, std::vector<const Term*> args) {
    try {
      mgr.make(tag, numerals, args);
    } catch (const std::invalid_argument& e) {
      return e.what();
    }
    return "no error";
  }

  TermManager mgr{false};
};

TEST_F(OperationsTest, HaveOneRowEachUnderTheirOwnNumber) {
  std::set<T::tag> seen;
  for (const Operation& op : get_operations()) {
    EXPECT_EQ(find_operation(op.tag), &op) << op.name;
    EXPECT_TRUE(seen.insert(op.tag).second) << op.name;
  }
  EXPECT_EQ(find_operation(T::none), nullptr);
  EXPECT_EQ(find_operation(static_cast<T::tag>(T::kLimit - 1)), nullptr);
  EXPECT_EQ(find_operation(static_cast<T::tag>(~0U)), nullptr);
}

TEST_F(OperationsTest, ShareNamesOnlyWhereTheReaderTellsThemApart) {
  std::set<std::string_view> names;
  for (const Operation& op : get_operations()) {
    if (op.is_printed_only || op.name == "to_fp") continue;
    EXPECT_TRUE(names.insert(op.name).second) << op.name;
  }
}

TEST_F(OperationsTest, TakeARoundingModeFirstIfAtAll) {
  for (const Operation& op : get_operations()) {
    const std::string_view letters = op.signature.get_letters();
    EXPECT_EQ(letters.find('R', op.is_rounded() ? 1 : 0), std::string_view::npos) << op.name;
  }
}

TEST_F(OperationsTest, BecomeTermsOfTheirKindUnlessOthersDefineThem) {
  for (const Operation& op : get_operations()) {
    const std::vector<const Term*> args = operands(op);
    const Term* t = make(op, args);
    if (op.derive != nullptr) {
      EXPECT_NE(t->get_tag(), op.tag) << op.name;
      continue;
    }
    EXPECT_EQ(t->get_tag(), op.tag) << op.name;
    EXPECT_TRUE(std::ranges::equal(t->get_args(), args)) << op.name;
    const bool is_predicate = op.signature.get_result() == 'B';
    EXPECT_EQ(t->get_type() == mgr.get_bool_type(), is_predicate) << op.name;
    EXPECT_EQ(mgr.rebuild(t, args), t) << op.name;
  }
}

TEST_F(OperationsTest, RefuseOperandsOfOtherSortsByTheirName) {
  TermManager other;
  const Term* foreign = other.make_true();
  for (const Operation& op : get_operations()) {
    const std::vector<const Term*> args = operands(op);
    for (std::size_t i = 0; i < args.size(); ++i) {
      std::vector<const Term*> wrong = args;
      for (const Term* bad : {foreign, static_cast<const Term*>(nullptr)}) {
        wrong[i] = bad;
        EXPECT_TRUE(operand_error(op, wrong).starts_with(std::string(op.name) + ": an op"))
            << op.name;
      }
      // Any sort will do where there is no other operand of the same letter.
      const char letter = op.signature.get_letters()[i];
      if (letter == 'A') continue;
      wrong[i] = letter == 'R' ? mgr.make_true() : mgr.make_fprounding_even();
      const std::string text = operand_error(op, wrong);
      EXPECT_TRUE(text.starts_with(std::string(op.name) + ": ")) << text;
      EXPECT_NE(text.find(wrong[i]->get_type()->to_string()), std::string::npos) << text;
    }
  }
}

TEST_F(OperationsTest, RefuseOtherNumbersOfArgumentsAndIndices) {
  for (const Operation& op : get_operations()) {
    std::vector<const Term*> args = operands(op);
    std::vector<std::size_t> numerals = indices(op);
    numerals.push_back(1);
    EXPECT_NE(error(op.tag, numerals, args).find(op.get_index_count() == 1 ? " index" : " indices"),
              std::string::npos)
        << op.name;
    if (op.arity == Arity::fixed) {
      args.push_back(mgr.make_true());
      EXPECT_NE(error(op.tag, indices(op), args).find(" takes "), std::string::npos) << op.name;
    }
    if (op.get_least_arguments() > 0) {
      EXPECT_NE(error(op.tag, indices(op), {}).find(", got 0"), std::string::npos) << op.name;
    }
  }
  EXPECT_EQ(error(T::none, {}, {}), "there is no operation of the kind 0");
  EXPECT_EQ(error(T::bv_add, {}, {operand('V')}), "bvadd takes at least 2 arguments, got 1");
  EXPECT_EQ(error(T::bv_extract, {1}, {operand('V')}), "extract takes 2 indices, got 1");
  EXPECT_EQ(error(T::array_const, {}, {operand('E')}), "const: needs the sort of the array");
}

TEST_F(OperationsTest, ExtendToMoreArgumentsAsTheirRowsSay) {
  const Term* a = operand('V');
  const Term* b = operand('V');
  const Term* c = operand('V');
  const Term* p = operand('B');
  const Term* q = operand('B');
  const Term* r = operand('B');
  EXPECT_EQ(mgr.make(T::bv_add, {a, b, c}), mgr.make_bv_add(mgr.make_bv_add(a, b), c));
  EXPECT_EQ(mgr.make(T::bool_and, {p}), mgr.make_and(p, p));
  EXPECT_EQ(mgr.make(T::bool_implies, {p, q, r}), mgr.make_implies(p, mgr.make_implies(q, r)));
  EXPECT_EQ(mgr.make(T::equal, {a, b, c}),
            mgr.make_and(mgr.make_equal(a, b), mgr.make_equal(b, c)));
  const auto differ = [&](const Term* x, const Term* y) {
    return mgr.make_not(mgr.make_equal(x, y));
  };
  EXPECT_EQ(mgr.make(T::distinct, {a, b, c}),
            mgr.make_and(mgr.make_and(differ(a, b), differ(a, c)), differ(b, c)));
  const Term* x = operand('F');
  const Term* y = operand('F');
  const Term* z = operand('F');
  EXPECT_EQ(mgr.make(T::fp_gt, {x, y, z}),
            mgr.make_and(mgr.make_fp_lt(y, x), mgr.make_fp_lt(z, y)));
}

TEST_F(OperationsTest, RefuseNumeralsThatDoNotFit) {
  const Term* a = operand('V');
  EXPECT_EQ(error(T::bv_extract, {8, 0}, {a}),
            "extract: bits 8 down to 0 of a bit-vector of width 8");
  EXPECT_EQ(error(T::bv_repeat, {0}, {a}), "repeat: the count must be at least 1, got 0");
  EXPECT_EQ(error(T::bv_repeat, {1U << 18U}, {a}),
            "repeat: 262144 times a bit-vector of width 8; widths go up to 1048576");
  EXPECT_EQ(error(T::bv_zero_extend, {~std::size_t{0}}, {a}),
            "zero_extend: a bit-vector of width 8 extended by 18446744073709551615 bits; widths go "
            "up to 1048576");
  EXPECT_EQ(error(T::fp_from_bits, {3, 5}, {a}),
            "to_fp: a bit-vector of width 8 is no (_ FloatingPoint 3 6)");
  EXPECT_NE(error(T::fp_cast, {1, 1}, {operand('R'), operand('F')}).find("exponent width 1"),
            std::string::npos);
}

std::string read_file(const std::string& name) {
  std::ifstream in(VORN_SOURCE_DIR "/" + name);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST_F(OperationsTest, AreAmongTheWordsOfTheFuzzer) {
  const std::string words = read_file("tests/fuzz/smt2.dict");
  for (const Operation& op : get_operations()) {
    const std::string name(op.name);
    const bool is_there = words.find('"' + name + '"') != std::string::npos ||
                          words.find("(_ " + name + ' ') != std::string::npos;
    EXPECT_TRUE(is_there) << name;
  }
}

}  // namespace
}  // namespace vorn
