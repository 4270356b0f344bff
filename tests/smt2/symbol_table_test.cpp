// The names of commands and their levels, and the names within terms.
#include "vorn/smt2/symbol_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "vorn/terms/term_manager.h"

namespace vorn::smt2 {
namespace {

class SymbolTableTest : public testing::Test {
 protected:
  const Term* constant(const std::string& name) {
    return mgr.make_constant(mgr.make_unique_symbol(name, mgr.get_bool_type()));
  }
  void define_sort(const std::string& name) { table.define_sort(name, {0, {mgr.get_bool_type()}}); }
  static std::vector<std::string> names(const std::vector<SymbolTable::Declaration>& entries) {
    std::vector<std::string> result;
    for (const SymbolTable::Declaration& entry : entries)
      result.push_back(entry.name);
    return result;
  }

  using Names = std::vector<std::string>;

  TermManager mgr;
  SymbolTable table;
  const Term* p = constant("p");
  const Term* q = constant("q");
};

TEST_F(SymbolTableTest, ANewTableIsEmptyAndOnNoLevel) {
  EXPECT_TRUE(table.is_empty());
  EXPECT_EQ(table.get_level(), 0U);
  EXPECT_EQ(table.find("p"), nullptr);
  EXPECT_EQ(table.find_sort("S"), nullptr);
}

TEST_F(SymbolTableTest, ADeclaredConstantIsAFunctionWithoutParameters) {
  table.declare("p", p);
  ASSERT_NE(table.find("p"), nullptr);
  EXPECT_EQ(table.find("p")->body, p);
  EXPECT_TRUE(table.find("p")->parameters.empty());
  EXPECT_FALSE(table.is_empty());
}

TEST_F(SymbolTableTest, ADefinedFunctionHasItsParametersAndIsNoDeclaration) {
  table.define("f", {{p, q}, mgr.make_and(p, q)});
  ASSERT_NE(table.find("f"), nullptr);
  EXPECT_EQ(table.find("f")->parameters, (std::vector<const Term*>{p, q}));
  EXPECT_EQ(table.find("f")->body, mgr.make_and(p, q));
  EXPECT_TRUE(table.get_declarations().empty());
}

TEST_F(SymbolTableTest, ADeclaredFunctionIsADeclarationAndOutlivesCollections) {
  const std::vector<const DataType*> domain{mgr.get_bool_type()};
  const Symbol* symbol = mgr.make_unique_symbol("f", domain, mgr.get_bool_type());
  table.declare("p", p);
  table.declare("f", {{q}, mgr.make_application(symbol, {&q, 1}), symbol});
  EXPECT_EQ(names(table.get_declarations()), (Names{"p", "f"}));
  EXPECT_EQ(table.get_declarations()[1].constant->get_symbol(), symbol);
  std::vector<const Term*> terms;
  table.append_terms(&terms);
  mgr.collect(terms);
  EXPECT_EQ(symbol->get_name(), "f");
  EXPECT_EQ(mgr.make_application(symbol, {&q, 1}), table.find("f")->body);
}

TEST_F(SymbolTableTest, DeclaredSortsAreListedInTheirOrder) {
  define_sort("D");
  table.define_sort("z", {0, {}, SortStep::declared("z", 0)});
  table.push();
  table.define_sort("a", {2, {}, SortStep::declared("a", 2)});
  const std::vector<const SortDefinition*> sorts = table.get_declared_sorts();
  ASSERT_EQ(sorts.size(), 2U);
  EXPECT_EQ(sorts[0], table.find_sort("z"));
  EXPECT_EQ(sorts[1], table.find_sort("a"));
  EXPECT_EQ(sorts[1]->parameters, 2U);
  table.pop();
  EXPECT_EQ(table.get_declared_sorts().size(), 1U);
}

TEST_F(SymbolTableTest, SortsThatTermsCouldNotTellApartAreOne) {
  table.push();
  define_sort("a\\b");
  EXPECT_NE(table.find_sort("a/b"), nullptr);
  EXPECT_EQ(table.find_sort("a\\b"), table.find_sort("a/b"));
  table.pop();
  EXPECT_EQ(table.find_sort("a\\b"), nullptr);
}

TEST_F(SymbolTableTest, SortsAndFunctionsAreTwoNameSpaces) {
  table.declare("S", p);
  EXPECT_EQ(table.find_sort("S"), nullptr);
  table.define_sort("S", {2, SortValue::parameter(1)});
  ASSERT_NE(table.find_sort("S"), nullptr);
  EXPECT_EQ(table.find_sort("S")->parameters, 2U);
  EXPECT_EQ(table.find_sort("S")->body.type, nullptr);
  ASSERT_EQ(table.find_sort("S")->body.steps.size(), 1U);
  EXPECT_EQ(table.find_sort("S")->body.steps[0].number, 1U);
  EXPECT_EQ(table.find("S")->body, p);
}

TEST_F(SymbolTableTest, NamesAreTakenAsTheyAre) {
  table.declare("", p);
  table.declare("a b", q);
  EXPECT_EQ(table.find("")->body, p);
  EXPECT_EQ(table.find("a b")->body, q);
  EXPECT_EQ(table.find("A B"), nullptr);
}

TEST_F(SymbolTableTest, DeclarationsAndLabelsKeepTheirOrder) {
  for (const char* name : {"z", "a", "m"}) {
    table.declare(name, constant(name));
    table.add_label(name + std::string("-label"), table.find(name)->body);
  }
  EXPECT_EQ(names(table.get_declarations()), (Names{"z", "a", "m"}));
  EXPECT_EQ(names(table.get_labels()), (Names{"z-label", "a-label", "m-label"}));
  EXPECT_EQ(table.get_labels()[1].constant, table.find("a")->body);
}

TEST_F(SymbolTableTest, AFunctionStaysWhereItIsWhileTheTableGrows) {
  table.declare("p", p);
  const Function* place = table.find("p");
  for (int i = 0; i < 10'000; ++i)
    table.declare("p" + std::to_string(i), q);
  EXPECT_EQ(table.find("p"), place);
  EXPECT_EQ(place->body, p);
}

TEST_F(SymbolTableTest, TermsOfAllNamesAreListed) {
  table.declare("p", p);
  const Term* body = mgr.make_not(q);
  table.push();
  table.define("f", {{q}, body});
  std::vector<const Term*> terms{body};
  table.append_terms(&terms);
  EXPECT_EQ(terms.size(), 4U);
  for (const Term* t : {p, q, body})
    EXPECT_EQ(std::count(terms.begin() + 1, terms.end(), t), 1) << t->to_string();
}

// Levels -----------------------------------------------------------------------------------------

TEST_F(SymbolTableTest, PopForgetsWhatCameSinceThePush) {
  table.declare("p", p);
  define_sort("S");
  table.add_label("l", p);
  table.push();
  table.declare("q", q);
  table.define("f", {{}, q});
  define_sort("T");
  table.add_label("m", q);
  EXPECT_EQ(table.get_level(), 1U);
  table.pop();
  EXPECT_EQ(table.get_level(), 0U);
  for (const char* name : {"q", "f"})
    EXPECT_EQ(table.find(name), nullptr) << name;
  EXPECT_EQ(table.find_sort("T"), nullptr);
  EXPECT_NE(table.find("p"), nullptr);
  EXPECT_NE(table.find_sort("S"), nullptr);
  EXPECT_EQ(names(table.get_declarations()), Names{"p"});
  EXPECT_EQ(names(table.get_labels()), Names{"l"});
}

TEST_F(SymbolTableTest, LevelsEndOneByOne) {
  const Names all{"a", "b", "c"};
  for (const std::string& name : all) {
    table.push();
    table.declare(name, constant(name));
  }
  for (std::size_t left = all.size(); left > 0; --left) {
    EXPECT_EQ(table.get_level(), left);
    table.pop();
    EXPECT_EQ(names(table.get_declarations()), Names(all.begin(), all.begin() + left - 1));
    for (std::size_t i = 0; i < all.size(); ++i)
      EXPECT_EQ(table.find(all[i]) != nullptr, i + 1 < left) << left << ' ' << i;
  }
  EXPECT_TRUE(table.is_empty());
}

TEST_F(SymbolTableTest, ANameOfAPoppedLevelIsFree) {
  table.push();
  table.declare("p", p);
  define_sort("S");
  table.pop();
  table.declare("p", q);
  define_sort("S");
  EXPECT_EQ(table.find("p")->body, q);
}

TEST_F(SymbolTableTest, AnEmptyLevelMayEnd) {
  table.declare("p", p);
  table.push();
  table.push();
  table.pop();
  table.pop();
  EXPECT_EQ(table.find("p")->body, p);
}

TEST_F(SymbolTableTest, GlobalNamesOutliveLevels) {
  table.set_global(true);
  table.push();
  table.declare("p", p);
  define_sort("S");
  table.pop();
  EXPECT_EQ(table.get_level(), 0U);
  ASSERT_NE(table.find("p"), nullptr);
  EXPECT_EQ(table.find("p")->body, p);
  EXPECT_NE(table.find_sort("S"), nullptr);
  table.push();
  table.clear_levels();
  EXPECT_EQ(table.get_level(), 0U);
  EXPECT_EQ(names(table.get_declarations()), Names{"p"});
}

TEST_F(SymbolTableTest, EndingAllLevelsForgetsAllNames) {
  table.declare("p", p);
  table.push();
  table.declare("q", q);
  define_sort("S");
  table.add_label("l", p);
  table.clear_levels();
  EXPECT_TRUE(table.is_empty());
  EXPECT_EQ(table.get_level(), 0U);
  EXPECT_TRUE(table.get_declarations().empty());
  EXPECT_TRUE(table.get_labels().empty());
}

TEST_F(SymbolTableTest, AClearedTableIsAsNew) {
  table.set_global(true);
  table.declare("p", p);
  table.push();
  table.clear();
  EXPECT_TRUE(table.is_empty());
  EXPECT_EQ(table.get_level(), 0U);
  EXPECT_TRUE(table.get_declarations().empty());
  table.push();
  table.declare("p", p);
  table.pop();
  EXPECT_EQ(table.find("p"), nullptr) << "names are global no longer";
}

TEST_F(SymbolTableTest, RetractingForgetsWhatCameSinceAMarkWithinALevel) {
  table.declare("p", p);
  table.push();
  table.declare("q", q);
  const SymbolTable::Mark mark = table.get_mark();
  table.define("f", {{}, q});
  table.declare("r", constant("r"));
  define_sort("S");
  table.add_label("f", q);
  table.retract(mark);
  EXPECT_EQ(table.get_level(), 1U);
  EXPECT_EQ(table.find("f"), nullptr);
  EXPECT_EQ(table.find_sort("S"), nullptr);
  EXPECT_EQ(names(table.get_declarations()), (Names{"p", "q"}));
  EXPECT_TRUE(table.get_labels().empty());
  table.pop();
  EXPECT_EQ(names(table.get_declarations()), Names{"p"});
}

TEST_F(SymbolTableTest, RetractingForgetsGlobalNamesToo) {
  table.set_global(true);
  table.declare("p", p);
  const SymbolTable::Mark mark = table.get_mark();
  table.declare("q", q);
  table.retract(mark);
  EXPECT_EQ(names(table.get_declarations()), Names{"p"});
}

// Names within terms -----------------------------------------------------------------------------

TEST_F(SymbolTableTest, TheInnermostBindingHidesTheOthers) {
  LocalScope scope;
  EXPECT_EQ(scope.find("x"), nullptr);
  EXPECT_TRUE(scope.bind("x", Value::of(p), 1));
  EXPECT_TRUE(scope.bind("x", Value::of(q), 2));
  EXPECT_EQ(scope.find("x")->term, q);
  scope.unbind("x");
  EXPECT_EQ(scope.find("x")->term, p);
  scope.unbind("x");
  EXPECT_EQ(scope.find("x"), nullptr);
}

TEST_F(SymbolTableTest, AFormBindsANameOnce) {
  LocalScope scope;
  EXPECT_TRUE(scope.bind("x", Value::of(p), 1));
  EXPECT_FALSE(scope.bind("x", Value::of(q), 1));
  EXPECT_EQ(scope.find("x")->term, p);
  EXPECT_TRUE(scope.bind("y", Value::of(q), 1));
  scope.unbind("x");
  EXPECT_EQ(scope.find("x"), nullptr);
  EXPECT_EQ(scope.find("y")->term, q);
  EXPECT_TRUE(scope.bind("x", Value::of(q), 1)) << "another form of the same depth";
}

TEST_F(SymbolTableTest, RealNumbersAreBoundAsTheyAre) {
  LocalScope scope;
  scope.bind("x", Value::of(QNumber(1) / QNumber(3)), 1);
  ASSERT_NE(scope.find("x"), nullptr);
  EXPECT_EQ(scope.find("x")->term, nullptr);
  EXPECT_EQ(*scope.find("x")->real, QNumber(1) / QNumber(3));
}

}  // namespace
}  // namespace vorn::smt2
