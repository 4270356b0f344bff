// Scripts with arrays, functions and an uninterpreted sort: generation, models, enumeration.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/random/generator.h"
#include "tests/random/literals.h"
#include "tests/random/model_space.h"
#include "tests/random/model_text.h"
#include "tests/random/shrinker.h"
#include "tests/random/value_space.h"
#include "vorn/terms/term_manager.h"

namespace vorn::random {
namespace {

bool contains(const Script& script, const std::string& text) {
  return to_string(script).find(text) != std::string::npos;
}

// Scripts ---------------------------------------------------------------------------------------

TEST(ArrayScripts, HaveWhatTheyAreAskedForAndNothingOfItOtherwise) {
  std::size_t with_people = 0;
  std::size_t with_functions = 0;
  std::set<std::string> operations;
  for (std::uint64_t seed = 0; seed < 300; ++seed) {
    const Script script = generate(seed, true);
    with_people += contains(script, "(declare-sort People 0)") ? 1 : 0;
    with_functions += std::ranges::any_of(script, &Command::is_function) ? 1 : 0;
    for (const char* operation : {"(select ", "(store ", "((as const ", "(distinct ", "(ite "}) {
      if (contains(script, operation)) operations.insert(operation);
    }
    const Script plain = generate(seed);
    EXPECT_FALSE(contains(plain, "Array") || contains(plain, "People")) << seed;
    EXPECT_FALSE(std::ranges::any_of(plain, &Command::is_function)) << seed;
  }
  EXPECT_GT(with_people, 60U);
  EXPECT_GT(with_functions, 100U);
  EXPECT_EQ(operations.size(), 5U);
}

TEST(ArrayScripts, WriteNoConstantArrayOverAnUninterpretedIndex) {
  // Whether two of them differ depends on how many elements there are.
  for (std::uint64_t seed = 0; seed < 1'000; ++seed)
    EXPECT_FALSE(contains(generate(seed, true), "(as const (Array People")) << seed;
}

TEST(ArrayScripts, SortsAreToldApartByTheirParts) {
  const Sort flags = array_sort(kBool, kBool);
  EXPECT_EQ(array_sort(kBool, kBool), flags);
  EXPECT_FALSE(array_sort(bits_sort(1), kBool) == flags);
  const Sort nested = array_sort(kPeople, flags);
  EXPECT_EQ(to_string(nested), "(Array People (Array Bool Bool))");
  EXPECT_EQ(index_of(nested), kPeople);
  EXPECT_EQ(element_of(nested), flags);
  EXPECT_TRUE(names_people(nested));
  EXPECT_FALSE(names_people(flags));
  EXPECT_TRUE(plain_literals(nested).empty());
  EXPECT_EQ(to_string(plain_literals(array_sort(kMode, flags))[0]),
            "((as const (Array RoundingMode (Array Bool Bool))) "
            "((as const (Array Bool Bool)) true))");
}

TEST(ArrayScripts, AreNotWellFormedWithoutTheirSort) {
  Command sort;
  sort.kind = Command::Kind::declare_sort;
  sort.keyword = "declare-sort";
  sort.sort = kPeople;
  Command function;
  function.kind = Command::Kind::declare;
  function.keyword = "declare-fun";
  function.name = "f";
  function.parameters = {{"p0", array_sort(kBool, kPeople)}};
  EXPECT_TRUE(is_well_formed({sort, function}));
  EXPECT_FALSE(is_well_formed({function, sort}));
  EXPECT_FALSE(is_well_formed({sort, sort}));
  EXPECT_EQ(to_string({sort, function}),
            "(declare-sort People 0)\n(declare-fun f ((Array Bool People)) Bool)\n");
}

TEST(ArrayScripts, ShrinkToWhatFails) {
  for (const char* operation : {"(store ", "(select ", "((as const "}) {
    const Fails fails = [operation](const Script& s) {
      return contains(s, operation) && s.back().is_check();
    };
    std::size_t found = 0;
    for (std::uint64_t seed = 0; found < 6; ++seed) {
      const Script script = generate(seed, true);
      if (!fails(script)) continue;
      ++found;
      const Script small = shrink(script, fails);
      EXPECT_TRUE(is_well_formed(small));
      EXPECT_TRUE(fails(small));
      // The sort, constants of it and of the array, the term and the check.
      EXPECT_LE(small.size(), 6U) << to_string(small);
    }
  }
}

// Models ----------------------------------------------------------------------------------------

TEST(ArrayModels, GiveConstantsAsEquationsAndFunctionsAsDefinitions) {
  const std::string f = "(define-fun f ((x!0 People) (x!1 Bool)) Bool (ite x!1 true false))";
  const std::string text =
      "(\n  (define-fun a () (Array Bool Bool) ((as const (Array Bool Bool)) "
      "true))\n  " +
      f + "\n  (define-fun p () People (as @People!0 People))\n)";
  EXPECT_EQ(read_model(text, {"a", "f", "p"}),
            (std::vector<std::string>{"(= a ((as const (Array Bool Bool)) true))",
                                      "(= p (as @People!0 People))"}));
  const auto functions = read_functions(text);
  ASSERT_EQ(functions.size(), 1U);
  EXPECT_EQ(functions.at("f"), f);
  EXPECT_THROW(read_model(text, {"a", "p"}), std::runtime_error);
}

class ArrayModelSpace : public testing::Test {
 protected:
  const Term* constant(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }
  const Term* apply(const Symbol* f, const Term* x) { return mgr.make_application(f, {&x, 1}); }
  const Term* differ(const Term* x, const Term* y) { return mgr.make_not(mgr.make_equal(x, y)); }
  Search search(const std::vector<const Term*>& assertions) {
    return search_models(mgr, assertions, 1);
  }

  TermManager mgr{false};
  const DataType* truth = mgr.get_bool_type();
  const DataType* people = mgr.get_uninterpreted_type("People");
};

TEST_F(ArrayModelSpace, NumbersTheValuesOfSorts) {
  ValueSpace values(3);
  const DataType* bit = mgr.get_bv_type(1);
  const DataType* rows = mgr.get_array_type(people, truth);
  EXPECT_EQ(values.count(people), 3U);
  EXPECT_EQ(values.count(mgr.get_array_type(bit, mgr.get_bv_type(2))), 16U);
  EXPECT_EQ(values.count(rows), 8U);
  EXPECT_EQ(values.count(mgr.get_array_type(mgr.get_bv_type(16), truth)), ValueSpace::kMost + 1);
  EXPECT_EQ(values.count(mgr.get_bv_type(100)), ValueSpace::kMost + 1);
  EXPECT_EQ(values.count_tuples(std::array{people, bit}), 6U);
  EXPECT_EQ(values.count_functions(std::array{people, bit}, truth), 64U);
  EXPECT_EQ(values.list_tuples(std::array{people, bit}).size(), 6U);
  for (const DataType* type : {people, rows, mgr.get_array_type(rows, truth)}) {
    const std::vector<QNumber>& list = values.list(type);
    EXPECT_EQ(list.size(), values.count(type));
    EXPECT_EQ(std::set<QNumber>(list.begin(), list.end()).size(), list.size());
  }
}

TEST_F(ArrayModelSpace, FindsArraysAndProvesThatThereAreNone) {
  const DataType* rows = mgr.get_array_type(truth, mgr.get_bv_type(1));
  const Term* a = constant("a", rows);
  const Term* b = constant("b", rows);
  const Term* p = constant("p", truth);
  const Search found =
      search({differ(a, b), mgr.make_equal(mgr.make_select(a, p), mgr.make_select(b, p))});
  ASSERT_TRUE(found.model);
  EXPECT_NE(found.model->find("b = ((as const (Array Bool (_ BitVec 1)))"), std::string::npos)
      << *found.model;
  // Arrays that agree at both indices are equal.
  const auto agree = [&](const Term* index) {
    return mgr.make_equal(mgr.make_select(a, index), mgr.make_select(b, index));
  };
  const Search none = search({differ(a, b), agree(p), agree(mgr.make_not(p))});
  EXPECT_FALSE(none.model);
  EXPECT_TRUE(none.complete);
}

TEST_F(ArrayModelSpace, FindsFunctionsAndProvesThatThereAreNone) {
  const Symbol* f = mgr.make_unique_symbol("f", std::array{truth}, truth);
  const Term* p = constant("p", truth);
  const Term* once = apply(f, p);
  const Term* thrice = apply(f, apply(f, once));
  const Search none = search({differ(once, thrice)});
  EXPECT_FALSE(none.model);
  EXPECT_TRUE(none.complete);
  const Search found = search({differ(once, p)});
  ASSERT_TRUE(found.model);
  EXPECT_NE(found.model->find("(f "), std::string::npos) << *found.model;
}

TEST_F(ArrayModelSpace, HasAsManyElementsAsFormulasTellApart) {
  const Term* x = constant("x", people);
  const Term* y = constant("y", people);
  const Term* z = constant("z", people);
  EXPECT_TRUE(search({differ(x, y), differ(y, z), differ(z, x)}).model);
  const Search none = search({differ(x, y), mgr.make_equal(y, z), mgr.make_equal(x, z)});
  EXPECT_FALSE(none.model);
  EXPECT_TRUE(none.complete);
  const Symbol* f = mgr.make_unique_symbol("f", std::array{people}, people);
  EXPECT_TRUE(search({differ(apply(f, x), x), differ(apply(f, apply(f, x)), x)}).model);
  // Arrays may differ where nothing is named.
  const DataType* rows = mgr.get_array_type(people, truth);
  const Term* a = constant("a", rows);
  const Term* b = constant("b", rows);
  EXPECT_TRUE(search({differ(a, b)}).model);
}

TEST_F(ArrayModelSpace, IsNotExhaustiveWhereArraysDifferWithoutBeingCompared) {
  const DataType* rows = mgr.get_array_type(people, truth);
  const Term* a = constant("a", rows);
  const Term* b = constant("b", rows);
  EXPECT_TRUE(search({differ(a, b), mgr.make_equal(a, b)}).exhaustive);
  const Symbol* f = mgr.make_unique_symbol("f", std::array{rows}, truth);
  const Search of_function = search({apply(f, a), mgr.make_not(apply(f, b))});
  EXPECT_TRUE(of_function.complete);
  EXPECT_FALSE(of_function.exhaustive);
  const Term* c = constant("c", mgr.get_array_type(rows, truth));
  const Search of_array = search({mgr.make_select(c, a), mgr.make_not(mgr.make_select(c, b))});
  EXPECT_TRUE(of_array.complete);
  EXPECT_FALSE(of_array.exhaustive);
}

}  // namespace
}  // namespace vorn::random
