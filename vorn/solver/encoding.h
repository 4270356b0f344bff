// A decision as a bit-vector formula, and the way back from an answer that was found elsewhere.
//
// The formula leaves this process, so the constants that stand for those of the script, and for
// what the theory leaves open, have to be found again by name and by order alone. The symbol map
// says which literals of the clauses are their bits. It is written as comments of the DIMACS file,
// one line each:
//
//     vorn map VERSION VARIABLES
//     vorn constant |NAME| SORT BIT...
//     vorn choice WIDTH BIT...
//
// A bit is a literal, T or F; the most significant one comes first. Names stand between bars, with
// control characters and backslashes as `\xHH`. The choices are those of find_open_terms, in
// its order.
#ifndef VORN_SOLVER_ENCODING_H
#define VORN_SOLVER_ENCODING_H

#include <cstdint>
#include <istream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "vorn/bv/dimacs.h"
#include "vorn/terms/qnumber.h"
#include "vorn/terms/term.h"
#include "vorn/terms/term_manager.h"
#include "vorn/utils/export.h"

namespace vorn::solver {

/// How reads of arrays and applications of functions, which are constants in a formula without
/// floats, are to have values that go together.
enum class Theories : std::uint8_t {
  lemmas,  // by what a check finds to be needed, so that the formula has the check's answer
  kept,    // by arrays and functions over bits
  open,    // they need not
};

/// What a check would decide.
struct Encoding {
  std::vector<const Term*> assertions;  // as given, assumptions behind them
  std::vector<const Term*> conjuncts;   // Boolean and bit-vector formulas that say the same
  std::vector<const Term*> open_terms;  // those of the assertions
  std::vector<const Term*> choices;     // their bit-vector constants, null for one without
  /// Arrays and functions of the assertions, and those that stand for them in the conjuncts, where
  /// they are kept and these have other sorts.
  std::vector<std::pair<const Symbol*, const Symbol*>> kept;
};

/// A bit of a mapped value: a literal of DIMACS, or one of these.
inline constexpr int kTrueBit = 0x7fffffff;
inline constexpr int kFalseBit = -kTrueBit;

/// A constant of the script, or a choice.
struct MappedTerm {
  std::string name;                // of a constant
  const DataType* type = nullptr;  // null where a choice has no constant, and no bits
  /// Most significant first, DataType::get_value_width of them; a rounding mode of the base encoder
  /// has one less.
  std::vector<int> bits;
};

/// Where the clauses keep the values of a script.
struct SymbolMap {
  std::uint64_t variables = 0;        // of the clauses
  std::vector<MappedTerm> constants;  // of the script
  std::vector<MappedTerm> choices;    // in the order of find_open_terms
};

/// The symbol between bars, on one line; control characters and backslashes as `\xHH`.
VORN_EXPORT std::string line_symbol(std::string_view name);

/// The lines of the map, without "c ".
VORN_EXPORT std::vector<std::string> write_symbol_map(const SymbolMap& map);
/// Reads the comments at the head of a DIMACS file, whatever else they say. Throws
/// smt2::ScriptError.
VORN_EXPORT SymbolMap read_symbol_map(TermManager& manager, std::istream& in,
                                      const std::string& file);

/// The value of a mapped term in a solution, as an Evaluator has it.
VORN_EXPORT QNumber read_value(const MappedTerm& term, const bv::Solution& solution);

}  // namespace vorn::solver

#endif
