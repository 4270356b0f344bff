// An operation is explained on the operands given, a script on the model of its first check: there
// every floating-point operation has operands with values, and is explained as if they were given.
#include "tools/explain.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iostream>
#include <span>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "tools/explain_table.h"
#include "tools/failure.h"
#include "tools/operation.h"
#include "tools/reading.h"
#include "tools/script.h"
#include "tools/solve.h"
#include "vorn/semantics/evaluator.h"
#include "vorn/semantics/open_terms.h"
#include "vorn/smt2/command_reader.h"
#include "vorn/solver/explanation.h"
#include "vorn/terms/engine.h"
#include "vorn/terms/post_order.h"
#include "vorn/terms/printer.h"

namespace vorn::tools {
namespace {

constexpr std::size_t kTermLimit = 120;

const char* name_of(solver::EncoderKind kind) {
  return kind == solver::EncoderKind::base ? "base" : "ieee";
}

/// The beginning of a term in SMT-LIB syntax, without `let`: what is longer ends in dots.
std::string short_text(const Term* root) {
  std::string text;
  std::vector<const Term*> stack{root};  // null for a closing parenthesis
  while (!stack.empty() && text.size() <= kTermLimit) {
    const Term* t = stack.back();
    stack.pop_back();
    if (t == nullptr) {
      text += ')';
      continue;
    }
    if (!text.empty()) text += ' ';
    if (t->get_arity() == 0) {
      text += head_text(t->get_symbol());
      continue;
    }
    text += '(' + head_text(t->get_symbol());
    stack.push_back(nullptr);
    for (std::size_t i = t->get_arity(); i-- > 0;)
      stack.push_back(t->get_arg(i));
  }
  if (text.size() > kTermLimit) {
    // Not within a character of UTF-8.
    std::size_t end = kTermLimit;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0U) == 0x80U)
      --end;
    text = text.substr(0, end) + "...";
  }
  std::ranges::replace_if(
      text, [](unsigned char c) { return c < 0x20; }, ' ');
  return text;
}

/// Says so where the circuit departs from the standard, whose value is `exact`.
void compare(Table& table, const solver::Explanation& explanation, const QNumber& exact) {
  if (explanation.is_open || explanation.result == exact) return;
  const DataType* type = explanation.operation->get_type();
  const std::string value = value_text(type, exact, false);
  if (value == table.result.reading) return;  // another pattern of a NaN
  table.notes.push_back(
      fmt::format("IEEE 754 has {} here, {}", digits_text(exact, table.result.width, 16), value));
}

void print(const ExplainOptions& options, std::string_view answer,
           const std::vector<Table>& tables) {
  if (options.json) {
    print_json(std::cout, name_of(options.encoder), answer, tables);
  } else {
    const char* separator = "";
    if (!answer.empty()) {
      std::cout << answer << '\n';
      separator = "\n";
    }
    for (const Table& table : tables) {
      std::cout << separator;
      print_table(std::cout, table);
      separator = "\n";
    }
  }
  std::cout.flush();
}

void explain_operation(const ExplainOptions& options, const std::vector<std::string>& words) {
  try {
    TermManager manager;
    const Term* operation = read_operation(manager, words);
    const std::vector<QNumber> operands = solver::read_literals(manager, operation->get_args());
    const solver::Explanation explanation =
        solver::explain(manager, operation, operands, options.encoder);
    std::vector<Table> tables{make_table(explanation, fmt::format("{}", fmt::join(words, " ")))};
    semantics::Evaluator exact(manager, {});
    compare(tables.front(), explanation, exact.evaluate(operation));
    print(options, "", tables);
  } catch (const std::invalid_argument& error) {
    throw std::runtime_error(fmt::format("error: {}", error.what()));
  }
}

/// Tables for all operations of the assertions in the model of the check.
std::vector<Table> make_tables(TermManager& manager, const FirstCheck& check,
                               solver::EncoderKind encoder) {
  solver::Solver& engine = *check.engine;
  const auto model_value = [&](const Term* t) {
    const Term* value = engine.get_value(t);
    return solver::read_literals(manager, {&value, 1}).front();
  };
  const auto open_value = [&](const Term* t, std::span<const QNumber> /*values*/) {
    QNumber value = model_value(t);
    if (!semantics::is_selection(t)) return value;
    const IEEEFloat zero = IEEEFloat::from_bits(t->get_type()->get_format(), value);
    return QNumber(zero.is_sign_set() ? 1 : 0);
  };
  semantics::Evaluator model(manager, model_value, open_value);
  std::vector<Table> tables;
  for (const Term* operation : list_post_order(check.encoding.assertions)) {
    if (!solver::is_explainable(operation)) continue;
    std::vector<QNumber> operands;
    for (const Term* arg : operation->get_args())
      operands.push_back(model.evaluate(arg));
    const QNumber& value = model.evaluate(operation);
    const solver::Explanation explanation =
        solver::explain(manager, operation, operands, encoder, &value);
    tables.push_back(make_table(explanation, short_text(operation)));
    compare(tables.back(), explanation, value);
  }
  return tables;
}

int explain_script(const ExplainOptions& options, const std::string& file) {
  const std::string text = read_all(file);
  TermManager manager;
  solver::Options solver_options;
  solver_options.encoder = options.encoder;
  const FirstCheck check = read_first_check(manager, text, file, solver_options,
                                            {.strict = options.strict, .decide = true});
  if (const std::size_t checks = smt2::count_checks(text, file); checks > 1) {
    std::cerr << fmt::format("{}: note: only the first of {} checks is explained\n",
                             display_name(file), checks);
  }
  switch (check.answer.value()) {
    case Answer::sat:
      print(options, "sat", make_tables(manager, check, options.encoder));
      return kDone;
    case Answer::unsat:
      print(options, "unsat", {});
      std::cerr << fmt::format("{}: note: there is no model, so there are no values to show\n",
                               display_name(file));
      return kDone;
    case Answer::unknown:
      break;
  }
  print(options, "unknown", {});
  std::cerr << fmt::format("{}: note: there are no values to show: {}\n", display_name(file),
                           check.engine->get_reason_unknown());
  return check.engine->get_statistics().interrupted ? kLimitReached : kDone;
}

bool is_file(const std::string& name) {
  std::error_code error;
  return std::filesystem::exists(name, error);
}

int explain_words(const ExplainOptions& options) {
  if (options.words.size() == 1) {
    const std::string& word = options.words.front();
    std::vector<std::string> words;
    std::istringstream split(word);
    for (std::string part; split >> part;)
      words.push_back(part);
    // A line of `vorn eval` may come as one word.
    const bool is_line = !words.empty() && is_operation(words.front()) && !is_file(word);
    if (!is_line) return explain_script(options, word);
    explain_operation(options, words);
    return kDone;
  }
  explain_operation(options, options.words);
  return kDone;
}

}  // namespace

int explain(const ExplainOptions& options) {
  try {
    return explain_words(options);
  } catch (const std::exception&) {
    return report_failure(options.words.size() == 1 ? display_name(options.words.front()) : "",
                          "with what was explained.");
  }
}

}  // namespace vorn::tools
