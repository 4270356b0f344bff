// A model comes from afar: from another program, another machine, maybe from another formula. With
// the script at hand it is evaluated as the solver's own models are, before anything is printed.
// Arrays and functions have no bits in it: those that go with its constants are looked for.
#include "tools/lift.h"

#include <fmt/format.h>

#include <cstdint>
#include <exception>
#include <fstream>
#include <iostream>
#include <map>
#include <span>
#include <sstream>
#include <stdexcept>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tools/failure.h"
#include "tools/script.h"
#include "tools/solve.h"
#include "vorn/bv/dimacs.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/semantics/open_terms.h"
#include "vorn/smt2/model_text.h"
#include "vorn/solver/encoding.h"
#include "vorn/terms/printer.h"

namespace vorn::tools {
namespace {

using Result = bv::SatSolver::Result;

/// Characters of an assertion that a message repeats.
constexpr std::size_t kMaxQuote = 200;

solver::SymbolMap read_map(TermManager& manager, const std::string& file) {
  // Of a formula that may be large, only the head is read.
  std::ifstream in(file, std::ios::binary);
  if (!in) read_all(file);  // says why
  return solver::read_symbol_map(manager, in, file);
}

bv::Solution read_answer(const std::string& file, std::uint64_t variables) {
  std::istringstream in(read_all(file));
  try {
    return bv::read_solution(in, variables);
  } catch (const bv::DimacsError& error) {
    throw std::runtime_error(
        fmt::format("{}:{}: error: {}", display_name(file), error.get_line(), error.what()));
  }
}

/// The values of mapped constants.
class Model {
 public:
  Model(const solver::SymbolMap& symbol_map, const bv::Solution& solution, const LiftOptions& files)
      : map(symbol_map), options(files) {
    for (const solver::MappedTerm& constant : map.constants) {
      QNumber value = solver::read_value(constant, solution);
      const bool is_mode = constant.type->get_kind() == DataType::Kind::rounding_mode;
      if (is_mode && value > QNumber(static_cast<int>(IEEEFloat::rounding_mode::nearest_away))) {
        throw std::runtime_error(fmt::format("{}: error: the value of {} is no rounding mode",
                                             display_name(options.solution),
                                             quote_symbol(constant.name)));
      }
      values.emplace(constant.name, std::pair(constant.type, std::move(value)));
    }
    for (const solver::MappedTerm& choice : map.choices)
      choices.push_back(solver::read_value(choice, solution));
  }

  std::string print(TermManager& manager) const {
    std::string text = "(\n";
    for (const solver::MappedTerm& constant : map.constants) {
      const QNumber& value = values.at(constant.name).second;
      text += fmt::format("  (define-fun {} () {} {})\n", quote_symbol(constant.name),
                          constant.type->to_string(),
                          semantics::make_literal(manager, constant.type, value)->to_string());
    }
    return text + ")";
  }

  /// Evaluates the assertions of the script. Throws std::runtime_error where one does not hold.
  void check(const TermManager& manager, const FirstCheck& script) {
    const std::unordered_map<const Term*, QNumber> constants = find_constants(script);
    const std::vector<const Term*>& open_terms = script.encoding.open_terms;
    if (open_terms.size() != choices.size()) fail_map("another number of choices");
    for (std::size_t i = 0; i < open_terms.size(); ++i)
      positions.emplace(open_terms[i], i);

    semantics::Evaluator evaluator(
        manager, [&](const Term* constant) { return constants.at(constant); },
        [this](const Term* t, std::span<const QNumber> operands) { return choose(t, operands); });
    for (const Term* assertion : script.encoding.assertions) {
      if (evaluator.evaluate(assertion).sign() == 0) fail_assertion(assertion->to_string());
    }
  }

  /// Finds what else the script declares, as `print` has it, to go with the constants. Throws
  /// std::runtime_error where there is no such thing.
  std::string complete(TermManager& manager, const FirstCheck& script) const {
    std::vector<const Term*> formulas = script.encoding.assertions;
    for (const auto& [constant, value] : find_constants(script)) {
      formulas.push_back(manager.make_equal(
          constant, semantics::make_literal(manager, constant->get_type(), value)));
    }
    // The session ends at a check of its own; this one is the solver's.
    if (script.engine->solver::Solver::check_sat(formulas) != Answer::sat) {
      fail_assertion("the assertions, whatever the arrays and functions are");
    }
    std::string text = "(\n";
    for (const smt2::SymbolTable::Declaration& d : script.symbols.get_declarations())
      text += fmt::format("  {}\n", smt2::define_in_model(*script.engine, script.symbols, d));
    return text + ")";
  }

 private:
  [[noreturn]] void fail_map(const std::string& what) const {
    throw std::runtime_error(fmt::format("{}: error: the map has {}, so it was not made from {}",
                                         options.map, what, display_name(options.script)));
  }

  [[noreturn]] void fail_assertion(std::string text) const {
    if (text.size() > kMaxQuote) text = text.substr(0, kMaxQuote) + "...";
    throw std::runtime_error(fmt::format("{}: error: the model does not satisfy {}",
                                         display_name(options.solution), text));
  }

  /// The values of the script's constants.
  std::unordered_map<const Term*, QNumber> find_constants(const FirstCheck& script) const {
    std::unordered_map<const Term*, QNumber> constants;
    for (const auto& [name, constant] : script.constants) {
      const auto found = values.find(name);
      if (found == values.end() || found->second.first != constant->get_type()) {
        fail_map(
            fmt::format("no {} of sort {}", quote_symbol(name), constant->get_type()->to_string()));
      }
      constants.emplace(constant, found->second.second);
    }
    return constants;
  }

  /// What the model makes of an application that the theory leaves open.
  QNumber choose(const Term* t, std::span<const QNumber> operands) {
    const QNumber& own = choices[positions.at(t)];
    if (semantics::is_selection(t)) {
      return semantics::get_chosen_sign(own, t->get_type(), operands[0]);
    }
    const auto [first, is_new] = results.emplace(
        std::pair(t->get_symbol(), std::vector(operands.begin(), operands.end())), own);
    if (!is_new && first->second != own) {
      throw std::runtime_error(
          fmt::format("{}: error: the model gives a conversion two results for equal arguments",
                      display_name(options.solution)));
    }
    return own;
  }

  const solver::SymbolMap& map;
  const LiftOptions& options;
  std::unordered_map<std::string, std::pair<const DataType*, QNumber>> values;
  std::vector<QNumber> choices;
  std::unordered_map<const Term*, std::size_t> positions;  // of open terms
  std::map<std::pair<const Symbol*, std::vector<QNumber>>, QNumber> results;
};

/// The model in words, checked against the script if there is one.
std::string describe(TermManager& manager, Model* model, const LiftOptions& options) {
  if (options.script.empty()) return model->print(manager);
  // The exact encoder has every operation, so no script that was encoded is refused here.
  const std::string text = read_all(options.script);
  const FirstCheck script = read_first_check(manager, text, options.script, {});
  if (!script.has_bits_only()) return model->complete(manager, script);
  model->check(manager, script);
  return model->print(manager);
}

void print_answer(const LiftOptions& options) {
  TermManager manager;
  const solver::SymbolMap map = read_map(manager, options.map);
  const bv::Solution solution = read_answer(options.solution, map.variables);
  if (solution.result != Result::sat) {
    std::cout << (solution.result == Result::unsat ? "unsat\n" : "unknown\n");
    return;
  }
  Model model(map, solution, options);
  const std::string definitions = describe(manager, &model, options);
  std::cout << "sat\n" << definitions << '\n';
}

}  // namespace

int lift(const LiftOptions& options) {
  try {
    print_answer(options);
    std::cout.flush();
  } catch (const std::exception&) {
    return report_failure(options.map, "with the files that it was given.");
  }
  return kDone;
}

}  // namespace vorn::tools
