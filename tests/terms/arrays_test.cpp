// Arrays, uninterpreted functions and uninterpreted sorts: constructors and what they refuse.
#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <vector>

#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

using T = SymbolTag;
using Sorts = std::vector<const DataType*>;

class Arrays : public testing::Test {
 protected:
  const Term* constant(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }

  template <class Action>
  static std::string error(const Action& action) {
    try {
      action();
    } catch (const std::invalid_argument& e) {
      return e.what();
    }
    return "no error";
  }

  TermManager mgr{false};
  const DataType* boolean = mgr.get_bool_type();
  const DataType* mode = mgr.get_fprounding_type();
  const DataType* byte = mgr.get_bv_type(8);
  const DataType* half = mgr.get_fp_type(5, 10);
  const DataType* memory = mgr.get_array_type(byte, half);
  const DataType* person = mgr.get_uninterpreted_type("Person");
};

// Sorts ---------------------------------------------------------------------------------------

TEST_F(Arrays, SortsAreSharedByTheirParts) {
  EXPECT_EQ(mgr.get_array_type(byte, half), memory);
  EXPECT_NE(mgr.get_array_type(half, byte), memory);
  EXPECT_EQ(memory->get_kind(), DataType::Kind::array);
  EXPECT_EQ(memory->get_index(), byte);
  EXPECT_EQ(memory->get_element(), half);
  EXPECT_FALSE(memory->has_bits());
  EXPECT_FALSE(person->has_bits());
  EXPECT_TRUE(half->has_bits());
  EXPECT_EQ(memory->to_string(), "(Array (_ BitVec 8) (_ FloatingPoint 5 11))");
  EXPECT_EQ(mgr.get_array_type(memory, mode)->to_string(),
            "(Array (Array (_ BitVec 8) (_ FloatingPoint 5 11)) RoundingMode)");
}

TEST_F(Arrays, SortsAreRecognised) {
  const DataType* index = nullptr;
  const DataType* element = nullptr;
  EXPECT_TRUE(mgr.is_array_type(memory, &index, &element));
  EXPECT_EQ(index, byte);
  EXPECT_EQ(element, half);
  EXPECT_TRUE(mgr.is_array_type(memory, nullptr, nullptr));
  for (const DataType* other : {boolean, mode, byte, half, person})
    EXPECT_FALSE(mgr.is_array_type(other, &index, &element));
  for (const DataType* type : {memory, person}) {
    EXPECT_FALSE(mgr.is_bool_type(type));
    EXPECT_FALSE(mgr.is_fprounding_type(type));
    EXPECT_FALSE(mgr.is_bv_type(type, nullptr));
    EXPECT_FALSE(mgr.is_fp_type(type, nullptr, nullptr));
  }
}

TEST_F(Arrays, UninterpretedSortsAreSharedByNameAndArguments) {
  EXPECT_EQ(mgr.get_uninterpreted_type("Person"), person);
  EXPECT_EQ(person->get_kind(), DataType::Kind::uninterpreted);
  EXPECT_EQ(person->get_name(), "Person");
  EXPECT_TRUE(person->get_arguments().empty());
  const DataType* pair = mgr.get_uninterpreted_type("Pair", Sorts{person, memory});
  EXPECT_EQ(mgr.get_uninterpreted_type("Pair", Sorts{person, memory}), pair);
  EXPECT_NE(mgr.get_uninterpreted_type("Pair", Sorts{memory, person}), pair);
  EXPECT_NE(mgr.get_uninterpreted_type("Person", Sorts{person}), person);
  EXPECT_EQ(Sorts(pair->get_arguments().begin(), pair->get_arguments().end()),
            (Sorts{person, memory}));
  EXPECT_EQ(pair->to_string(), "(Pair Person (Array (_ BitVec 8) (_ FloatingPoint 5 11)))");
  EXPECT_EQ(mgr.get_array_type(person, pair)->to_string(),
            "(Array Person (Pair Person (Array (_ BitVec 8) (_ FloatingPoint 5 11))))");
}

TEST_F(Arrays, NamesOfSortsAreQuotedWhereTheyHaveTo) {
  EXPECT_EQ(mgr.get_uninterpreted_type("a b")->to_string(), "|a b|");
  EXPECT_EQ(mgr.get_uninterpreted_type("")->to_string(), "||");
  EXPECT_EQ(mgr.get_uninterpreted_type("let", Sorts{mode})->to_string(), "(|let| RoundingMode)");
}

TEST_F(Arrays, SortsWhoseTextsAreAlikeAreDifferent) {
  // A name may be the text of another sort.
  const DataType* named = mgr.get_uninterpreted_type("Bool");
  EXPECT_NE(named, boolean);
  EXPECT_NE(mgr.get_uninterpreted_type("F", Sorts{named}),
            mgr.get_uninterpreted_type("F", Sorts{boolean}));
  const DataType* applied = mgr.get_uninterpreted_type("F", Sorts{person});
  EXPECT_NE(mgr.get_uninterpreted_type("F Person"), applied);
  EXPECT_NE(mgr.get_uninterpreted_type("(F Person)"), applied);
  EXPECT_NE(mgr.get_array_type(named, byte), mgr.get_array_type(boolean, byte));
}

TEST_F(Arrays, SortsOfOtherManagersAreRefused) {
  TermManager other;
  const DataType* foreign = other.get_bv_type(8);
  const std::string text = "a sort within a sort is not one of this manager's";
  EXPECT_EQ(error([&] { mgr.get_array_type(foreign, byte); }), text);
  EXPECT_EQ(error([&] { mgr.get_array_type(byte, foreign); }), text);
  EXPECT_EQ(error([&] { mgr.get_array_type(byte, nullptr); }), text);
  EXPECT_EQ(error([&] { mgr.get_array_type(nullptr, byte); }), text);
  EXPECT_EQ(error([&] { mgr.get_uninterpreted_type("P", Sorts{byte, foreign}); }), text);
  EXPECT_EQ(error([&] { mgr.get_uninterpreted_type("P", Sorts{nullptr}); }), text);
  EXPECT_EQ(error([&] { mgr.get_uninterpreted_type("a|b"); }),
            "a symbol cannot hold a bar or a backslash: a|b");
  EXPECT_EQ(error([&] { mgr.get_uninterpreted_type("a\\b"); }),
            "a symbol cannot hold a bar or a backslash: a\\b");
}

TEST_F(Arrays, SortsNameAThousandOthersAtMost) {
  const DataType* type = boolean;
  for (std::uint32_t parts = 1; parts + 2 <= TermManager::kMaxParts; parts += 2)
    type = mgr.get_array_type(boolean, type);
  // 999 sorts by now.
  const std::string text = "a sort that names more than 1000 sorts";
  EXPECT_EQ(error([&] { mgr.get_array_type(boolean, type); }), text);
  EXPECT_EQ(error([&] { mgr.get_uninterpreted_type("Pair", Sorts{type, boolean}); }), text);
  const DataType* most = mgr.get_uninterpreted_type("Box", Sorts{type});
  EXPECT_EQ(error([&] { mgr.get_uninterpreted_type("Box", Sorts{most}); }), text);
  // Text of every part, and terms of such sorts, are made without trouble.
  EXPECT_GT(most->to_string().size(), 999 * std::string("Bool").size() / 2);
  EXPECT_EQ(constant("x", most)->get_type(), most);
  // What doubles at each step is refused long before it is made.
  const DataType* doubled = boolean;
  EXPECT_EQ(error([&] {
              for (int i = 0; i < 100; ++i)
                doubled = mgr.get_array_type(doubled, doubled);
            }),
            text);
}

// Terms ---------------------------------------------------------------------------------------

TEST_F(Arrays, ReadsWritesAndConstantsHaveTheSortsOfTheirArrays) {
  const Term* a = constant("a", memory);
  const Term* i = constant("i", byte);
  const Term* x = constant("x", half);
  const Term* read = mgr.make_select(a, i);
  EXPECT_EQ(read->get_tag(), T::array_select);
  EXPECT_EQ(read->get_type(), half);
  const Term* write = mgr.make_store(a, i, x);
  EXPECT_EQ(write->get_tag(), T::array_store);
  EXPECT_EQ(write->get_type(), memory);
  const Term* all = mgr.make_const_array(memory, x);
  EXPECT_EQ(all->get_tag(), T::array_const);
  EXPECT_EQ(all->get_type(), memory);
  EXPECT_EQ(mgr.make_select(a, i), read);
  EXPECT_EQ(mgr.make_store(a, i, x), write);
  EXPECT_EQ(mgr.make_const_array(memory, x), all);
  // The same element, but of arrays with other indices.
  EXPECT_NE(mgr.make_const_array(mgr.get_array_type(mode, half), x), all);
  EXPECT_EQ(mgr.make_equal(a, write)->get_type(), boolean);
  EXPECT_EQ(mgr.make_term_ite(mgr.make_true(), a, all)->get_type(), memory);
  EXPECT_EQ(mgr.make(T::array_store, {a, i, x}), write);
  EXPECT_EQ(mgr.make_store(all, i, mgr.make_select(write, i))->to_string(),
            "(store ((as const (Array (_ BitVec 8) (_ FloatingPoint 5 11))) x) i "
            "(select (store a i x) i))");
}

TEST_F(Arrays, IndicesAndElementsOfOtherSortsAreRefused) {
  const Term* a = constant("a", memory);
  const Term* i = constant("i", byte);
  const Term* x = constant("x", half);
  TermManager other;
  EXPECT_EQ(error([&] { mgr.make_select(a, x); }),
            "select: the index must be of (_ BitVec 8), got a term of (_ FloatingPoint 5 11)");
  EXPECT_EQ(error([&] { mgr.make_store(a, i, i); }),
            "store: the element must be of (_ FloatingPoint 5 11), got a term of (_ BitVec 8)");
  EXPECT_EQ(error([&] { mgr.make_select(i, i); }),
            "select: expected an array, got a term of (_ BitVec 8)");
  EXPECT_EQ(error([&] { mgr.make_const_array(memory, i); }),
            "const: the element must be of (_ FloatingPoint 5 11), got a term of (_ BitVec 8)");
  EXPECT_EQ(error([&] { mgr.make_const_array(byte, i); }),
            "const: expected an array sort, got (_ BitVec 8)");
  EXPECT_EQ(error([&] { mgr.make_const_array(nullptr, i); }), "const: expected an array sort");
  EXPECT_EQ(error([&] { mgr.make_const_array(memory, other.make_true()); }),
            "const: an operand is missing or belongs to another term manager");
  EXPECT_EQ(error([&] { mgr.make_const_array(memory, nullptr); }),
            "const: an operand is missing or belongs to another term manager");
  EXPECT_EQ(error([&] { mgr.make_select(a, nullptr); }), "select: an operand is missing");
  EXPECT_EQ(error([&] { mgr.make_equal(a, i); }).substr(0, 30), "=: operands of different sorts");
  EXPECT_EQ(error([&] {
              mgr.make_const_array(
                  other.get_array_type(other.get_bool_type(), other.get_bool_type()),
                  mgr.make_true());
            }),
            "const: expected an array sort, got (Array Bool Bool)");
}

TEST_F(Arrays, FunctionsApplyToTheSortsOfTheirDomain) {
  const Symbol* f = mgr.make_unique_symbol("f", Sorts{byte, person, memory}, half);
  EXPECT_TRUE(f->is_function());
  EXPECT_EQ(f->get_arity(), 3U);
  EXPECT_EQ(Sorts(f->get_domain().begin(), f->get_domain().end()), (Sorts{byte, person, memory}));
  EXPECT_EQ(f->get_output_type(), half);
  const std::vector<const Term*> args = {constant("i", byte), constant("p", person),
                                         constant("a", memory)};
  const Term* t = mgr.make_application(f, args);
  EXPECT_EQ(mgr.make_application(f, args), t);
  EXPECT_EQ(t->get_type(), half);
  EXPECT_EQ(t->get_symbol(), f);
  EXPECT_EQ(t->get_tag(), T::none);
  EXPECT_EQ(t->to_string(), "(f i p a)");
  T::tag kind = T::none;
  EXPECT_FALSE(mgr.get_symbol_kind(f, &kind));
  EXPECT_EQ(mgr.rebuild(t, args), t);
  const std::vector<const Term*> others = {constant("j", byte), args[1], args[2]};
  EXPECT_EQ(mgr.rebuild(t, others), mgr.make_application(f, others));
  EXPECT_THROW(mgr.rebuild(t, std::array{args[1], args[1], args[2]}), std::invalid_argument);
}

TEST_F(Arrays, ApplicationsToOtherArgumentsAreRefused) {
  const Symbol* f = mgr.make_unique_symbol("f", Sorts{byte, person}, boolean);
  const Symbol* constant_symbol = mgr.make_unique_symbol("c", byte);
  const Term* i = mgr.make_constant(constant_symbol);
  const Term* p = constant("p", person);
  TermManager other;
  const auto apply = [&](const Symbol* symbol, std::vector<const Term*> args) {
    return error([&] { mgr.make_application(symbol, args); });
  };
  EXPECT_EQ(apply(f, {i}), "f takes 2 arguments, got 1");
  EXPECT_EQ(apply(f, {i, p, p}), "f takes 2 arguments, got 3");
  EXPECT_EQ(apply(f, {i, i}), "f: argument 2 must be of Person, got a term of (_ BitVec 8)");
  EXPECT_EQ(apply(f, {nullptr, p}), "f: argument 1 is no term of this manager");
  EXPECT_EQ(apply(f, {i, other.make_true()}), "f: argument 2 is no term of this manager");
  const std::string text = "an application needs a function of this manager";
  EXPECT_EQ(apply(constant_symbol, {}), text);
  EXPECT_EQ(apply(mgr.make_not(mgr.make_true())->get_symbol(), {mgr.make_true()}), text);
  EXPECT_EQ(
      apply(other.make_unique_symbol("g", Sorts{other.get_bool_type()}, other.get_bool_type()),
            {mgr.make_true()}),
      text);
  EXPECT_EQ(error([&] { mgr.make_constant(f); }),
            "a constant needs a symbol of arity 0 of this manager");
  EXPECT_EQ(error([&] { mgr.make_unique_symbol("g", Sorts{other.get_bool_type()}, boolean); }),
            "the sort of symbol g is not one of this manager's");
  EXPECT_EQ(error([&] { mgr.make_unique_symbol("g", Sorts{nullptr}, boolean); }),
            "the sort of symbol g is not one of this manager's");
  EXPECT_EQ(error([&] { mgr.make_unique_symbol("a|b", Sorts{boolean}, boolean); }),
            "a symbol cannot hold a bar or a backslash: a|b");
}

TEST_F(Arrays, FunctionsShareNamesWithNobody) {
  const Symbol* f = mgr.make_unique_symbol("f", Sorts{byte}, byte);
  EXPECT_EQ(f->get_name(), "f");
  EXPECT_EQ(mgr.make_unique_symbol("f", Sorts{byte}, byte)->get_name(), "f!1");
  EXPECT_EQ(mgr.make_unique_symbol("f", byte)->get_name(), "f!2");
  // A function of no arguments is a constant.
  const Symbol* c = mgr.make_unique_symbol("c", Sorts{}, person);
  EXPECT_FALSE(c->is_function());
  EXPECT_EQ(mgr.make_constant(c)->to_string(), "c");
}

TEST_F(Arrays, ElementsOfUninterpretedSortsAreLiterals) {
  const Term* first = mgr.make_element(person, QNumber(0));
  EXPECT_EQ(mgr.make_element(person, QNumber(0)), first);
  EXPECT_EQ(first->get_type(), person);
  QNumber number;
  EXPECT_TRUE(mgr.is_number(mgr.make_element(person, QNumber(7)), &number));
  EXPECT_EQ(number, QNumber(7));
  EXPECT_EQ(mgr.make_element(person, QNumber(7))->to_string(), "(as @Person!7 Person)");
  EXPECT_EQ(mgr.make_element(mgr.get_uninterpreted_type("a b"), QNumber(1))->to_string(),
            "(as |@a b!1| |a b|)");
  const std::string text =
      "an element needs an uninterpreted sort of this manager and an integer from 0";
  TermManager other;
  for (const DataType* bad : {byte, memory, other.get_uninterpreted_type("Person"),
                              static_cast<const DataType*>(nullptr)})
    EXPECT_EQ(error([&] { mgr.make_element(bad, QNumber(1)); }), text);
  EXPECT_EQ(error([&] { mgr.make_element(person, QNumber(-1)); }), text);
  EXPECT_EQ(error([&] { mgr.make_element(person, QNumber(1) / QNumber(2)); }), text);
}

}  // namespace
}  // namespace vorn
