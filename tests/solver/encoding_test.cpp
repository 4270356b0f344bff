// What leaves the solver as a formula, and the map that leads back.
#include "vorn/solver/encoding.h"

#include <sstream>
#include <string>
#include <vector>

#include "tests/solver/solver_fixture.h"
#include "vorn/semantics/open_terms.h"
#include "vorn/smt2/error.h"

namespace vorn::solver {
namespace {

std::string join(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines)
    text += "c " + line + "\n";
  return text;
}

class SymbolMapTest : public testing::Test {
 protected:
  SymbolMap read(const std::string& text) {
    std::istringstream in(text);
    return read_symbol_map(mgr, in, "m.cnf");
  }

  TermManager mgr;
};

TEST_F(SymbolMapTest, IsReadAsItWasWritten) {
  SymbolMap map;
  map.variables = 9;
  map.constants = {{"x", mgr.get_bv_type(3), {1, -2, kTrueBit}},
                   {"", mgr.get_bool_type(), {kFalseBit}},
                   {"two\nlines\x7f (a) \t;c", mgr.get_fp_type(2, 1), {9, 8, 7, -6}},
                   {"r", mgr.get_fprounding_type(), {3, 4, 5}},
                   {"base", mgr.get_fprounding_type(), {4, 5}}};
  map.choices = {{"", mgr.get_bv_type(2), {-9, 1}}, {"", nullptr, {}}};
  const std::string text = join(write_symbol_map(map));
  EXPECT_NE(
      text.find(
          "c vorn constant |two\\x0alines\\x7f (a) \\x09;c| (_ FloatingPoint 2 2) 9 8 7 -6\n"),
      std::string::npos)
      << text;
  const SymbolMap back = read("c other comments\nc\n" + text + "p cnf 9 1\nc vorn beyond\n");
  EXPECT_EQ(back.variables, 9U);
  const auto expect_same = [](const std::vector<MappedTerm>& a, const std::vector<MappedTerm>& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
      EXPECT_EQ(a[i].name, b[i].name);
      EXPECT_EQ(a[i].type, b[i].type);
      EXPECT_EQ(a[i].bits, b[i].bits);
    }
  };
  expect_same(back.constants, map.constants);
  expect_same(back.choices, map.choices);
}

TEST_F(SymbolMapTest, IsRefusedWhereItIsWrong) {
  struct Case {
    std::string text;
    smt2::Position place;
    std::string message;
  };
  const std::string head = "c vorn map 1 5\n";
  const Case cases[] = {
      {"", {1, 1}, "no symbol map"},
      {"p cnf 1 0\n" + head, {1, 1}, "no symbol map"},
      {"c vorn map 2 5\n", {1, 13}, "only version 1"},
      {"c vorn map 1 x\n", {1, 15}, "'x' is no number"},
      {head + head, {2, 11}, "a second head"},
      {"c vorn constant |x| Bool 1\n", {1, 16}, "must come first"},
      {head + "c vorn thing\n", {2, 13}, "unknown entry 'thing'"},
      {head + "c vorn constant x Bool 1\n", {2, 17}, "a name between bars"},
      {head + "c vorn constant |x Bool 1\n", {2, 17}, "a name between bars"},
      {head + "c vorn constant |\\x| Bool 1\n", {2, 17}, "a backslash"},
      {head + "c vorn constant |a\\b| Bool 1\n", {2, 17}, "a backslash"},
      {head + "c vorn constant |a\\x5| Bool 1\n", {2, 17}, "a backslash"},
      {head + "c vorn constant |a\\x-5| Bool 1\n", {2, 17}, "a backslash"},
      {head + "c vorn constant |a\\x7cb| Bool 1\n", {2, 17}, "a name cannot hold a bar"},
      {head + "c vorn constant |x| Int 1\n", {2, 21}, "Int"},
      {head + "c vorn constant |x| Bool 6\n", {2, 27}, "'6' is no bit"},
      {head + "c vorn constant |x| Bool 0\n", {2, 27}, "'0' is no bit"},
      {head + "c vorn constant |x| Bool 1 2\n", {2, 29}, "Bool has 1 bits, got 2"},
      {head + "c vorn choice 2 1\n", {2, 18}, "a choice of 2 bits, got 1"},
  };
  for (const Case& c : cases) {
    try {
      read(c.text);
      ADD_FAILURE() << "accepted: " << c.text;
    } catch (const smt2::ScriptError& error) {
      EXPECT_EQ(error.get_line(), c.place.line) << c.text << error.what();
      EXPECT_EQ(error.get_column(), c.place.column) << c.text << error.what();
      EXPECT_NE(std::string(error.what()).find(c.message), std::string::npos) << error.what();
    }
  }
}

TEST_F(SymbolMapTest, ANameHasABackslashByItsEscape) {
  const SymbolMap map = read("c vorn map 1 5\nc vorn constant |a\\x5cb\\x5C| Bool 1\n");
  ASSERT_EQ(map.constants.size(), 1U);
  EXPECT_EQ(map.constants[0].name, "a\\b\\");
}

TEST_F(SymbolMapTest, TellsValuesInASolution) {
  std::istringstream text("s SATISFIABLE\nv 1 -2 3 0\n");
  const bv::Solution solution = bv::read_solution(text, 4);
  EXPECT_EQ(read_value({"", mgr.get_bv_type(6), {1, 2, -2, 4, kTrueBit, kFalseBit}}, solution),
            QNumber(0b101010));
}

class EncodingTest : public SolverTest {
 protected:
  const DataType* half = mgr.get_fp_type(5, 10);
  const Term* x = variable("x", half);
  const Term* y = variable("y", half);
  const Term* rne = mgr.make_fprounding_even();
};

TEST_F(EncodingTest, HasWhatIsInForce) {
  const Term* a = mgr.make_fp_lt(x, y);
  const Term* b = mgr.make_fp_isnan(x);
  const Term* c = mgr.make_fp_iszero(y);
  solver.assert_formula(a);
  solver.push();
  solver.assert_formula(b);
  solver.pop();
  solver.push();
  const std::vector<const Term*> assumed = {c};
  const Encoding encoding = solver.encode(assumed);
  EXPECT_EQ(encoding.assertions, (std::vector<const Term*>{a, c}));
  ASSERT_GE(encoding.conjuncts.size(), 2U);
  for (const Term* conjunct : encoding.conjuncts) {
    const std::string text = conjunct->to_string();
    EXPECT_EQ(text.find("fp.lt"), std::string::npos) << text;
    EXPECT_EQ(text.find("fp.is"), std::string::npos) << text;
  }
  EXPECT_EQ(solver.get_encoding(x)->get_type(), mgr.get_bv_type(16));
  EXPECT_EQ(solver.get_encoding(variable("z", half)), nullptr);
  const Term* bits = variable("bits", mgr.get_bv_type(4));
  EXPECT_EQ(solver.get_encoding(bits), bits);
  EXPECT_EQ(solver.check_sat(), Answer::sat) << "assumptions hold for one call";
}

TEST_F(EncodingTest, StatesThatConversionsAreFunctions) {
  const Term* of_x = mgr.make_fp_to_ubv(8, rne, x);
  const Term* of_y = mgr.make_fp_to_ubv(8, rne, y);
  const Term* wide = mgr.make_fp_to_ubv(9, rne, y);
  const Term* differ = mgr.make_not(mgr.make_equal(of_x, of_y));
  const Term* small = mgr.make_bv_ult(wide, mgr.make_bv_number(7, 9));
  solver.assert_formula(mgr.make_equal(x, y));
  solver.assert_formula(mgr.make_fp_isnan(x));
  solver.assert_formula(differ);
  solver.assert_formula(small);
  const Encoding encoding = solver.encode({});
  EXPECT_EQ(encoding.open_terms, (std::vector<const Term*>{of_x, of_y, wide}));
  ASSERT_EQ(encoding.choices.size(), 3U);

  // Decided as bit-vectors alone, by a solver that could state nothing afterwards.
  Solver bits(mgr);
  for (const Term* conjunct : encoding.conjuncts)
    bits.assert_formula(conjunct);
  EXPECT_EQ(bits.check_sat(), Answer::unsat);
}

TEST_F(EncodingTest, FindsOpenTermsOnce) {
  const Term* low = mgr.make_fp_min(x, y);
  const Term* high = mgr.make_fp_max(low, x);
  const std::vector<const Term*> formulas = {mgr.make_fp_isnan(high), mgr.make_fp_iszero(low)};
  EXPECT_EQ(semantics::find_open_terms(formulas), (std::vector<const Term*>{low, high}));
}

TEST_F(EncodingTest, OfATracedCheckIsOfThatCheckOnly) {
  Options options;
  options.cnf_file = testing::TempDir() + "vorn_traced_check.cnf";
  Solver traced(mgr, options);
  traced.push();
  traced.assert_formula(mgr.make_fp_lt(x, x));
  traced.pop();
  traced.push();
  traced.assert_formula(mgr.make_fp_lt(x, y));
  traced.set_seed(7);  // starts over
  const std::vector<const Term*> assumed = {mgr.make_fp_lt(y, x)};
  ASSERT_EQ(traced.check_sat(assumed), Answer::unsat);
  EXPECT_EQ(traced.get_unsat_assumptions(), std::vector<std::size_t>{0});
  EXPECT_THROW(traced.check_sat(), std::invalid_argument);

  expect_clauses_of(traced, options.cnf_file, 10);
}

TEST_F(EncodingTest, OfATracedCheckHasAModel) {
  Options options;
  options.cnf_file = testing::TempDir() + "vorn_traced_model.cnf";
  Solver traced(mgr, options);
  traced.assert_formula(mgr.make_fp_lt(x, y));
  ASSERT_EQ(traced.check_sat(), Answer::sat);
  EXPECT_EQ(traced.get_value(mgr.make_fp_lt(x, y)), mgr.make_true());
}

}  // namespace
}  // namespace vorn::solver
