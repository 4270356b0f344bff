// Terms of arrays, functions and uninterpreted sorts as text, as scripts, and when they are
// dropped.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "vorn/terms/script_printer.h"
#include "vorn/terms/term_manager.h"

namespace vorn {
namespace {

using Sorts = std::vector<const DataType*>;

class ArrayText : public testing::Test {
 protected:
  const Term* constant(const std::string& name, const DataType* type) {
    return mgr.make_constant(mgr.make_unique_symbol(name, type));
  }
  static std::string print(const std::vector<const Term*>& formulas) {
    std::ostringstream out;
    ScriptPrinter(formulas).print(out);
    return out.str();
  }

  TermManager mgr{false};
  const DataType* boolean = mgr.get_bool_type();
  const DataType* byte = mgr.get_bv_type(8);
};

TEST_F(ArrayText, QuotesNamesOfFunctionsAndBindsWhatIsShared) {
  const DataType* odd = mgr.get_uninterpreted_type("a b");
  const Symbol* f = mgr.make_unique_symbol("f g", Sorts{odd, odd}, odd);
  const Symbol* bound = mgr.make_unique_symbol(".s1", Sorts{odd}, odd);
  const Term* x = constant("x", odd);
  const Term* once = mgr.make_application(f, std::vector{x, x});
  const Term* twice = mgr.make_application(f, std::vector{once, once});
  EXPECT_EQ(twice->to_string(), "(let ((.s1 (|f g| x x))) (|f g| .s1 .s1))");
  // No bound name is that of a function below it.
  const Term* hidden = mgr.make_application(bound, std::vector{once});
  EXPECT_EQ(mgr.make_application(f, std::vector{hidden, once})->to_string(),
            "(let ((.s2 (|f g| x x))) (|f g| (.s1 .s2) .s2))");
}

TEST_F(ArrayText, PrintsDeepChainsWithoutRecursion) {
  const DataType* memory = mgr.get_array_type(byte, byte);
  const Term* a = constant("a", memory);
  const Term* x = constant("x", byte);
  const Symbol* f = mgr.make_unique_symbol("f", Sorts{byte}, byte);
  for (int n = 0; n < 100'000; ++n) {
    a = mgr.make_store(a, x, x);
    x = mgr.make_application(f, {&x, 1});
  }
  EXPECT_GT(a->to_string().size(), 1'000'000U);
  EXPECT_GT(print({mgr.make_equal(a, a)}).size(), 1'000'000U);
}

TEST_F(ArrayText, ScriptsDeclareSortsAndFunctionsOfFormulas) {
  const DataType* people = mgr.get_uninterpreted_type("People");
  const DataType* box = mgr.get_uninterpreted_type("Box", Sorts{people, byte});
  const DataType* inner = mgr.get_uninterpreted_type("in ner");
  const DataType* memory = mgr.get_array_type(inner, box);
  const Term* a = constant("a", memory);
  const Symbol* f = mgr.make_unique_symbol("f", Sorts{memory, boolean}, inner);
  const Term* index = mgr.make_application(f, std::vector{a, mgr.make_true()});
  const Symbol* g = mgr.make_unique_symbol("g h", Sorts{box}, boolean);
  const Term* read = mgr.make_select(a, index);
  EXPECT_EQ(print({mgr.make_application(g, {&read, 1})}),
            "(declare-sort Box 2)\n"
            "(declare-sort People 0)\n"
            "(declare-sort |in ner| 0)\n"
            "(declare-const a (Array |in ner| (Box People (_ BitVec 8))))\n"
            "(declare-fun f ((Array |in ner| (Box People (_ BitVec 8))) Bool) |in ner|)\n"
            "(declare-fun |g h| ((Box People (_ BitVec 8))) Bool)\n"
            "(assert (|g h| (select a (f a true))))\n");
}

TEST_F(ArrayText, ScriptsDeclareSortsThatOnlyAnArrayConstantNames) {
  const DataType* people = mgr.get_uninterpreted_type("People");
  const Term* all = mgr.make_const_array(mgr.get_array_type(people, boolean), mgr.make_true());
  EXPECT_EQ(print({mgr.make_equal(all, all)}),
            "(declare-sort People 0)\n"
            "(define-fun s1 () (Array People Bool) ((as const (Array People Bool)) true))\n"
            "(assert (= s1 s1))\n");
}

TEST_F(ArrayText, ScriptsGiveNamesThatBelongToSolversToNoFunction) {
  const Symbol* dotted = mgr.make_unique_symbol(".f", Sorts{boolean}, boolean);
  const Symbol* at = mgr.make_unique_symbol("@f", Sorts{boolean}, boolean);
  const Symbol* taken = mgr.make_unique_symbol("vorn.f", Sorts{boolean}, boolean);
  const Term* t = mgr.make_true();
  for (const Symbol* f : {dotted, at, taken})
    t = mgr.make_application(f, {&t, 1});
  EXPECT_EQ(print({t}),
            "(declare-fun c1 (Bool) Bool)\n"
            "(declare-fun vorn@f (Bool) Bool)\n"
            "(declare-fun vorn.f (Bool) Bool)\n"
            "(assert (vorn.f (vorn@f (c1 true))))\n");
}

TEST_F(ArrayText, ScriptsGiveNamesThatBelongToSolversToNoSort) {
  const DataType* dotted = mgr.get_uninterpreted_type(".S");
  const DataType* at = mgr.get_uninterpreted_type("@S", Sorts{dotted});
  const DataType* taken = mgr.get_uninterpreted_type("vorn.S");
  const DataType* memory = mgr.get_array_type(dotted, at);
  const Term* a = constant("a", memory);
  const Term* t = constant("t", taken);
  const Symbol* f = mgr.make_unique_symbol("f", Sorts{memory, taken}, boolean);
  EXPECT_EQ(print({mgr.make_application(f, std::vector{a, t})}),
            "(declare-sort S1 0)\n"
            "(declare-sort vorn@S 1)\n"
            "(declare-sort vorn.S 0)\n"
            "(declare-const a (Array S1 (vorn@S S1)))\n"
            "(declare-const t vorn.S)\n"
            "(declare-fun f ((Array S1 (vorn@S S1)) vorn.S) Bool)\n"
            "(assert (f a t))\n");
}

// Dropping ------------------------------------------------------------------------------------

TEST_F(ArrayText, CollectionsDropFunctionsThatNoLiveTermApplies) {
  const Symbol* kept = mgr.make_unique_symbol("kept", Sorts{byte}, byte);
  const Symbol* dropped = mgr.make_unique_symbol("dropped", Sorts{byte, byte}, boolean);
  mgr.make_unique_symbol("never", Sorts{byte}, byte);
  const Term* x = constant("x", byte);
  const Term* root = mgr.make_application(kept, {&x, 1});
  mgr.make_application(dropped, std::vector{x, root});
  const std::uint64_t before = mgr.get_live_count();
  mgr.collect({&root, 1});
  EXPECT_EQ(mgr.get_live_count(), before - 1);
  EXPECT_EQ(root->to_string(), "(kept x)");
  EXPECT_EQ(mgr.make_application(kept, {&x, 1}), root);
  // Names are free again, that of the function that is kept is not.
  EXPECT_EQ(mgr.make_unique_symbol("never", byte)->get_name(), "never");
  EXPECT_EQ(mgr.make_unique_symbol("kept", byte)->get_name(), "kept!1");
  // The symbol of the function that went is used again, of another arity and domain.
  const Symbol* again = mgr.make_unique_symbol("dropped", Sorts{boolean}, byte);
  EXPECT_EQ(again->get_name(), "dropped");
  EXPECT_EQ(again->get_arity(), 1U);
  const Term* truth = mgr.make_true();
  EXPECT_EQ(mgr.make_application(again, {&truth, 1})->to_string(), "(dropped true)");
  EXPECT_THROW(mgr.make_application(again, {&x, 1}), std::invalid_argument);
}

TEST_F(ArrayText, SessionsThatMakeAndDropFunctionsStayBounded) {
  const DataType* people = mgr.get_uninterpreted_type("People");
  const DataType* memory = mgr.get_array_type(people, byte);
  const Term* kept = mgr.make_select(constant("a", memory), mgr.make_element(people, QNumber(0)));
  std::vector<const Symbol*> seen;
  for (int round = 0; round < 10'000; ++round) {
    const Symbol* f = mgr.make_unique_symbol("f", Sorts(1 + round % 3, byte), people);
    ASSERT_EQ(f->get_name(), "f") << round;
    if (round < 10) seen.push_back(f);
    const Term* t = constant("m", memory);
    const std::vector<const Term*> args(1 + round % 3, mgr.make_bv_number(round % 200, 8));
    t = mgr.make_store(t, mgr.make_application(f, args), kept);
    t = mgr.make_store(t, mgr.make_element(people, QNumber(round)), kept);
    ASSERT_EQ(mgr.make_equal(t, mgr.make_const_array(memory, args[0]))->get_type(), boolean);
    mgr.collect({&kept, 1});
  }
  EXPECT_LT(mgr.get_term_count(), 100U);
  EXPECT_LT(mgr.get_term_bytes(), 1'000'000U);
  EXPECT_EQ(kept->to_string(), "(select a (as @People!0 People))");
  const Symbol* last = mgr.make_unique_symbol("f", Sorts{byte}, people);
  EXPECT_NE(std::ranges::find(seen, last), seen.end()) << "symbols are used again";
}

}  // namespace
}  // namespace vorn
